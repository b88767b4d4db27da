#include "CameraPanel.h"

#include "SpinRow.h"

#include <AppComponents/controls/ComboBoxSelection.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>

namespace
{

const SpinRow::Range exposureRange{ScaleMapper::Scale::Logarithmic, 0.01, 2000.0, 10.0};
const SpinRow::Range gainRange{ScaleMapper::Scale::Linear, 0.0, 36.0, 0.0};
// The lower end stands for "as fast as the camera can", which the interface spells 0.
const SpinRow::Range rateRange{ScaleMapper::Scale::Linear, 0.0, 200.0, 0.0};

QComboBox* choice(const QStringList& entries, const QString& name, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    box->addItems(entries);
    box->setAccessibleName(name);
    return box;
}

} // namespace

CameraPanel::CameraPanel(QWidget* parent)
    : QWidget(parent)
    , exposure(new SpinRow(tr("&Exposure"), tr(" ms"), exposureRange))
    , gain(new SpinRow(tr("&Gain"), tr(" dB"), gainRange))
    , frameRate(new SpinRow(tr("Frame &rate"), tr(" fps"), rateRange))
    , depth(choice({"8", "10", "12"}, tr("Depth"), this))
    , decimation(choice({"1", "2", "3", "4", "8"}, tr("Decimation"), this))
    , mirrorH(new QCheckBox(tr("Read out mirrored &left to right"), this))
    , mirrorV(new QCheckBox(tr("Read out mirrored &top to bottom"), this))
{
    frameRate->getSpinBox()->setSpecialValueText(tr("fastest"));
    auto* form = new QFormLayout(this);
    for (SpinRow* row : {exposure, gain, frameRate})
        row->addTo(form);
    form->addRow(tr("Bit &depth"), depth);
    form->addRow(tr("De&cimation"), decimation);
    form->addRow(mirrorH);
    form->addRow(mirrorV);
    connectControls();
}

template <typename Edit>
void CameraPanel::request(Edit edit)
{
    CameraSettings wanted = current;
    edit(wanted);
    emit settingsRequested(wanted);
}

void CameraPanel::connectControls()
{
    const auto sets = [this](SpinRow* row, double CameraSettings::*field) {
        connect(row, &SpinRow::valueChanged, this, [this, field](double value) {
            request([&](CameraSettings& s) { s.*field = value; });
        });
    };
    sets(exposure, &CameraSettings::exposureMs);
    sets(gain, &CameraSettings::gainDb);
    sets(frameRate, &CameraSettings::frameRate);

    const auto selects = [this](QComboBox* box, int CameraSettings::*field) {
        connect(box, &QComboBox::currentTextChanged, this, [this, field](const QString& text) {
            request([&](CameraSettings& s) { s.*field = text.toInt(); });
        });
    };
    selects(depth, &CameraSettings::bitDepth);
    selects(decimation, &CameraSettings::decimation);

    const auto switches = [this](QCheckBox* box, bool CameraSettings::*field) {
        connect(box, &QCheckBox::toggled, this,
                [this, field](bool on) { request([&](CameraSettings& s) { s.*field = on; }); });
    };
    switches(mirrorH, &CameraSettings::mirrorH);
    switches(mirrorV, &CameraSettings::mirrorV);
}

void CameraPanel::setCamera(const CameraInfo& info)
{
    for (QWidget* control : {static_cast<QWidget*>(depth), static_cast<QWidget*>(decimation),
                             static_cast<QWidget*>(mirrorH), static_cast<QWidget*>(mirrorV)})
        control->setEnabled(!info.fixedGeometry);
    setEnabled(true);
}

void CameraPanel::setSettings(const CameraSettings& settings)
{
    current = settings;
    exposure->setValue(settings.exposureMs);
    gain->setValue(settings.gainDb);
    frameRate->setValue(settings.frameRate);
    setCmbValue(depth, QString::number(settings.bitDepth));
    setCmbValue(decimation, QString::number(settings.decimation));
    const QSignalBlocker blockH(mirrorH);
    const QSignalBlocker blockV(mirrorV);
    mirrorH->setChecked(settings.mirrorH);
    mirrorV->setChecked(settings.mirrorV);
}
