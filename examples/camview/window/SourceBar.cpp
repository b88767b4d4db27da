#include "SourceBar.h"

#include "cameras/CameraFactory.h"
#include "core/Camera.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

SourceBar::SourceBar(QWidget* parent)
    : QToolBar(tr("Source"), parent)
    , sources(new QComboBox(this))
{
    setObjectName(QStringLiteral("sourceBar"));
    sources->setEditable(true);
    sources->setInsertPolicy(QComboBox::InsertAtTop);
    sources->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    sources->setMinimumContentsLength(24);
    sources->setToolTip(sourceHelp());
    sources->setAccessibleName(tr("Source"));
    sources->addItems({QStringLiteral("sim"), QStringLiteral("sim?bits=12"),
                       QStringLiteral("sim?mono=1&bits=10")});
    for (const QString& name : listCameras())
        sources->addItem(QStringLiteral("genicam:") + name);

    auto* label = new QLabel(tr(" S&ource "), this);
    label->setBuddy(sources);
    addWidget(label);
    addWidget(sources);
    pause = addAction(tr("Pause"));
    pause->setCheckable(true);
    pause->setShortcut(Qt::Key_Space);
    step = addAction(tr("Step"));
    step->setShortcut(Qt::Key_Period);
    loop = addAction(tr("Loop"));
    loop->setCheckable(true);
    setPlayback(nullptr);

    connect(sources->lineEdit(), &QLineEdit::returnPressed, this,
            [this] { emit openRequested(source()); });
    connect(sources, QOverload<int>::of(&QComboBox::activated), this,
            [this] { emit openRequested(source()); });
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

void SourceBar::setSource(const QString& source)
{
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
        action->setChecked(false);
        action->setVisible(control != nullptr);
        action->setEnabled(control != nullptr);
    }
    step->setEnabled(false);
}

void SourceBar::focusSource()
{
    sources->setFocus(Qt::ShortcutFocusReason);
    sources->lineEdit()->selectAll();
}
