#include "ColorPanel.h"

#include "ProcessingModel.h"
#include "SpinRow.h"

#include <AppComponents/imgproc/ImgCorrectionLimits.h>

#include <AppComponents/controls/ComboBoxSelection.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QPushButton>

ColorPanel::ColorPanel(ProcessingModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
    , method(new QComboBox(this))
    , whiteBalance(new QCheckBox(tr("Automatic &white balance"), this))
    , correction(new QCheckBox(tr("C&olour correction"), this))
    , reset(new QPushButton(tr("&Neutral colours"), this))
{
    // The index is the engine's method.
    method->addItems({tr("Bit reduction"), tr("Grey"), tr("Bilinear"), tr("Edge-directed"),
                      tr("Best in real time"), tr("Gradient-corrected"), tr("Variable gradients"),
                      tr("One colour per cell"), tr("Nearest neighbour")});
    method->setAccessibleName(tr("Method"));

    auto* form = new QFormLayout(this);
    form->addRow(tr("&Method"), method);
    form->addRow(whiteBalance);
    form->addRow(correction);
    buildRows();
    for (const Row& row : rows)
        row.row->addTo(form);
    form->addRow(reset);
    connectControls();
    followModel(model.settings());
}

void ColorPanel::buildRows()
{
    using Linear = SpinRow::Range;
    const ImgCorrectionLimits limits;
    const Linear gain{ScaleMapper::Scale::Linear, 0.0, 4.0, 1.0};
    const Linear hue{ScaleMapper::Scale::Linear, limits.hueMin, limits.hueMax, 0.0};
    using Settings = ImgCorrectionSettings;
    rows = {{new SpinRow(tr("&Red"), {}, gain), &Settings::colorCorrectionRed},
            {new SpinRow(tr("&Green"), {}, gain), &Settings::colorCorrectionGreen},
            {new SpinRow(tr("&Blue"), {}, gain), &Settings::colorCorrectionBlue},
            {new SpinRow(tr("Hu&e"), tr("°"), hue), &Settings::colorCorrectionHue},
            {new SpinRow(tr("Satura&tion"), {}, gain), &Settings::colorCorrectionSaturation},
            {new SpinRow(tr("&Lightness"), {}, gain), &Settings::colorCorrectionLightness}};
}

void ColorPanel::connectControls()
{
    connect(&model, &ProcessingModel::changed, this, &ColorPanel::followModel);
    connect(method, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        model.change(
            [index](ProcessingSettings& s) { s.correction.colorReconstructionMethod = index; });
    });
    const auto switches = [this](QCheckBox* box, CamStateFlag flag) {
        connect(box, &QCheckBox::toggled, this, [this, flag](bool on) {
            model.change([=](ProcessingSettings& s) { s.correction.setFlag(flag, on); });
        });
    };
    switches(whiteBalance, CS_AUTO_WHITE_BALANCE);
    switches(correction, CS_COLOR_CORRECTION);
    for (const Row& row : rows)
        connect(row.row, &SpinRow::valueChanged, this, [this, field = row.field](double value) {
            model.change([&](ProcessingSettings& s) { s.correction.*field = value; });
        });
    connect(reset, &QPushButton::clicked, this, [this] {
        model.change([](ProcessingSettings& s) {
            ImgCorrectionSettings::fillDefault(s.correction,
                                               ImgCorrectionSettings::ColorCorrectionGroup);
        });
    });
}

void ColorPanel::followModel(const ProcessingSettings& settings)
{
    ImgCorrectionSettings values = settings.correction;
    const QSignalBlocker blockBalance(whiteBalance);
    const QSignalBlocker blockCorrection(correction);
    setCmbIndex(method, values.colorReconstructionMethod);
    whiteBalance->setChecked(values.isFlagSet(CS_AUTO_WHITE_BALANCE));
    correction->setChecked(values.isFlagSet(CS_COLOR_CORRECTION));
    for (const Row& row : rows) {
        row.row->setValue(values.*row.field);
        row.row->setEnabled(correction->isChecked());
    }
}
