#include "SourceBar.h"

#include "cameras/CameraFactory.h"
#include "core/Camera.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

SourceBar::SourceBar(QWidget* parent)
    : QToolBar(tr("Source"), parent)
    , sources(new QComboBox(this))
{
    setObjectName(QStringLiteral("sourceBar"));
    fillSources();
    addWidget(new QLabel(tr(" Source "), this));
    addWidget(sources);
    find = addAction(tr("Find cameras"));
    find->setShortcut(tr("Ctrl+D"));
    pause = addAction(tr("Pause"));
    pause->setCheckable(true);
    pause->setShortcut(tr("Ctrl+P"));
    step = addAction(tr("Step"));
    step->setShortcut(tr("Ctrl+."));
    loop = addAction(tr("Loop"));
    loop->setCheckable(true);
    loop->setShortcut(tr("Ctrl+Shift+P"));
    setPlayback(nullptr);

    connect(sources->lineEdit(), &QLineEdit::returnPressed, this,
            [this] { emit openRequested(source()); });
    connect(sources, QOverload<int>::of(&QComboBox::activated), this,
            [this] { emit openRequested(source()); });
    connect(find, &QAction::triggered, this, &SourceBar::findCameras);
    connect(pause, &QAction::toggled, this, [this](bool on) {
        step->setEnabled(on);
        if (playback)
            playback->setPaused(on);
    });
    connect(step, &QAction::triggered, this, [this] {
        if (playback)
            playback->step();
    });
    connect(loop, &QAction::toggled, this, [this](bool on) {
        if (playback)
            playback->setLoop(on);
    });
}

void SourceBar::fillSources()
{
    sources->setEditable(true);
    sources->setInsertPolicy(QComboBox::NoInsert);
    sources->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    sources->setMinimumContentsLength(24);
    sources->setToolTip(sourceHelp());
    sources->setAccessibleName(tr("Source"));
    sources->addItems({QStringLiteral("sim"), QStringLiteral("sim?bits=12"),
                       QStringLiteral("sim?mono=1&bits=10"), QStringLiteral("genicam")});

    sources->installEventFilter(this);
    sources->completer()->setCaseSensitivity(Qt::CaseSensitive); // as file names are
    // The box itself would open what stands there as soon as the focus moves on.
    disconnect(sources->lineEdit(), &QLineEdit::editingFinished, sources, nullptr);
}

void SourceBar::findCameras()
{
    // Asking the network takes a second; that is why it is not done at every start.
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QStringList found = listCameras();
    QApplication::restoreOverrideCursor();
    for (const QString& name : found) {
        const QString text = QStringLiteral("genicam:") + name;
        if (sources->findText(text) < 0)
            sources->addItem(text);
    }
    emit camerasFound(found.size());
}

void SourceBar::setSource(const QString& source)
{
    int index = sources->findText(source);
    if (index < 0) {
        index = 0;
        sources->insertItem(index, source);
    }
    sources->setCurrentIndex(index);
    sources->setEditText(source);
}

QString SourceBar::source() const
{
    return sources->currentText().trimmed();
}

void SourceBar::setPlayback(PlaybackControl* control)
{
    playback = control;
    for (QAction* action : {pause, step, loop}) {
        const QSignalBlocker block(action);
        action->setChecked(action == loop && control != nullptr && control->loops());
        action->setVisible(control != nullptr);
        action->setEnabled(control != nullptr);
    }
    step->setEnabled(false);
}

// The wheel and the arrow keys would open one source after the other on the way to the wanted one.
bool SourceBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Wheel)
        return true;
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            sources->showPopup();
            return true;
        }
    }
    return QToolBar::eventFilter(watched, event);
}

void SourceBar::focusSource()
{
    sources->setFocus(Qt::ShortcutFocusReason);
    sources->lineEdit()->selectAll();
}
