#include "RecordingPanel.h"

#include <AppComponents/controls/ComboBoxSelection.h>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTime>
#include <QToolButton>

namespace
{

constexpr qint64 mebibyte = 1 << 20;

QSpinBox* mebibytes(const QString& name, qint64 value, QWidget* parent)
{
    auto* box = new QSpinBox(parent);
    box->setRange(0, 10'000'000);
    box->setSingleStep(64);
    box->setSuffix(QStringLiteral(" MiB"));
    box->setValue(static_cast<int>(value / mebibyte));
    box->setAccessibleName(name);
    box->setToolTip(name);
    return box;
}

QDoubleSpinBox* secondsBox(const QString& name, double value, QWidget* parent)
{
    auto* box = new QDoubleSpinBox(parent);
    box->setRange(0.0, 86400.0);
    box->setDecimals(1);
    box->setSuffix(QStringLiteral(" s"));
    box->setValue(value);
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    return box;
}

QWidget* inRow(const QList<QWidget*>& parts, QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* part : parts)
        layout->addWidget(part);
    row->setFocusProxy(parts.first());
    return row;
}

} // namespace

RecordingPanel::RecordingPanel(QWidget* parent)
    : QWidget(parent)
    , folder(new QLineEdit(this))
    , pattern(new QLineEdit(RecordingRequest().pattern, this))
    , length(new QComboBox(this))
    , count(new QSpinBox(this))
    , seconds(secondsBox(tr("Seconds to record"), 10.0, this))
    , preTrigger(secondsBox(tr("Seconds before the start"), 0.0, this))
    , warnBelow(mebibytes(tr("Warn below"), RecordingRequest().warnBytes, this))
    , stopBelow(mebibytes(tr("Stop below"), RecordingRequest().stopBytes, this))
    , status(new QLabel(this))
{
    pattern->setToolTip(tr("%c camera, %d date, %t time, %n number"));
    preTrigger->setMaximum(60.0);
    status->setWordWrap(true);
    status->setAccessibleName(tr("State of the recording"));

    auto* form = new QFormLayout(this);
    form->setRowWrapPolicy(QFormLayout::WrapAllRows);
    form->addRow(status);
    form->addRow(tr("Folder"), folderRow());
    form->addRow(tr("File name"), pattern);
    form->addRow(tr("Length"), lengthRow());
    form->addRow(tr("Before the start"), preTrigger);
    form->addRow(tr("Warn when the dis&k has less than"), warnBelow);
    form->addRow(tr("Stop when the disk has less than"), stopBelow);
    connect(preTrigger, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &RecordingPanel::preTriggerChanged);
    followLength();
    showStatus({});
}

QWidget* RecordingPanel::folderRow()
{
    folder->setMinimumWidth(110);
    auto* choose = new QToolButton(this);
    choose->setText(QStringLiteral("…"));
    choose->setFocusPolicy(Qt::TabFocus);
    choose->setAccessibleName(tr("Choose the folder"));
    connect(choose, &QToolButton::clicked, this, [this] {
        const QString chosen =
            QFileDialog::getExistingDirectory(this, tr("Folder of recordings"), folder->text());
        if (!chosen.isEmpty())
            folder->setText(chosen);
    });
    return inRow({folder, choose}, this);
}

QWidget* RecordingPanel::lengthRow()
{
    length->addItems({tr("Until stopped"), tr("Frames"), tr("Seconds")});
    length->setAccessibleName(tr("Length of a recording"));
    count->setRange(1, 100'000'000);
    count->setValue(100);
    count->setAccessibleName(tr("Frames to record"));
    connect(length, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &RecordingPanel::followLength);
    return inRow({length, count, seconds}, this);
}

void RecordingPanel::followLength()
{
    count->setVisible(length->currentIndex() == ByCount);
    seconds->setVisible(length->currentIndex() == ByTime);
}

void RecordingPanel::setRecordAction(QAction* action)
{
    auto* button = new QToolButton(this);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::TabFocus);
    static_cast<QFormLayout*>(layout())->insertRow(0, button);
}

void RecordingPanel::setFolder(const QString& path)
{
    folder->setText(path);
}

RecordingRequest RecordingPanel::request() const
{
    RecordingRequest wanted;
    wanted.folder = folder->text();
    wanted.pattern = pattern->text();
    if (length->currentIndex() == ByCount)
        wanted.frameLimit = static_cast<std::uint64_t>(count->value());
    if (length->currentIndex() == ByTime)
        wanted.secondsLimit = seconds->value();
    wanted.warnBytes = warnBelow->value() * mebibyte;
    wanted.stopBytes = stopBelow->value() * mebibyte;
    return wanted;
}

double RecordingPanel::preTriggerSeconds() const
{
    return preTrigger->value();
}

void RecordingPanel::showStatus(const RecorderStatus& now)
{
    QStringList lines;
    if (now.recording)
        lines << tr("Recording to %1").arg(now.baseName.toHtmlEscaped());
    else if (!now.baseName.isEmpty())
        lines << tr("Recorded %1").arg(now.baseName.toHtmlEscaped());
    lines << tr("%1 frames, %2 waiting").arg(now.recorded).arg(now.waiting);
    if (now.unwritten > 0)
        lines << tr("%1 frames did not reach the disk").arg(now.unwritten);
    if (now.freeBytes > 0)
        lines << tr("%1 free").arg(QLocale().formattedDataSize(now.freeBytes));
    if (now.recording && now.secondsLeft > 0)
        lines << tr("room for %1 more")
                     .arg(QTime(0, 0).addSecs(qMin(86399, int(now.secondsLeft))).toString());
    if (now.diskLow)
        lines << QStringLiteral("<b>%1</b>").arg(tr("The disk is getting full."));
    if (!now.problem.isEmpty())
        lines << QStringLiteral("<b>%1</b>").arg(now.problem.toHtmlEscaped());
    const QString text = lines.join(QStringLiteral("<br>"));
    if (text == status->text() && status->width() == fittedWidth)
        return;
    status->setText(text);
    // The form reckons with a line too few for text that it has to wrap.
    fittedWidth = status->width();
    status->setMinimumHeight(0); // the label's answer never falls below it
    status->setMinimumHeight(status->heightForWidth(fittedWidth));
}

QString RecordingPanel::statusText() const
{
    return status->text();
}

QJsonObject RecordingPanel::save() const
{
    return {{"folder", folder->text()},         {"pattern", pattern->text()},
            {"length", length->currentIndex()}, {"count", count->value()},
            {"seconds", seconds->value()},      {"preTrigger", preTrigger->value()},
            {"warnBelow", warnBelow->value()},  {"stopBelow", stopBelow->value()}};
}

void RecordingPanel::restore(const QJsonObject& json)
{
    folder->setText(json["folder"].toString(folder->text()));
    pattern->setText(json["pattern"].toString(pattern->text()));
    setCmbIndex(length, json["length"].toInt(length->currentIndex()));
    followLength();
    count->setValue(json["count"].toInt(count->value()));
    seconds->setValue(json["seconds"].toDouble(seconds->value()));
    preTrigger->setValue(json["preTrigger"].toDouble(preTrigger->value()));
    warnBelow->setValue(json["warnBelow"].toInt(warnBelow->value()));
    stopBelow->setValue(json["stopBelow"].toInt(stopBelow->value()));
}
