#include "TonePanel.h"

#include "LivePicture.h"
#include "ProcessingModel.h"
#include "SliderRow.h"

#include <AppComponents/analysis/LUTPlot.h>
#include <AppComponents/imgproc/ImgCorrectionLimits.h>

#include <QCheckBox>
#include <QFormLayout>
#include <QVBoxLayout>

namespace
{
const ImgCorrectionLimits limits;
} // namespace

TonePanel::TonePanel(ProcessingModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
    , applyTable(new QCheckBox(tr("Apply the &table"), this))
    , autoStretch(new QCheckBox(tr("Automatic &stretch"), this))
    , brightness(new SliderRow(tr("&Brightness"), limits.brightnessMin, limits.brightnessMax, 0.0))
    , contrast(new SliderRow(tr("&Contrast"), limits.contrastMin, limits.contrastMax, 1.0))
    , gamma(new SliderRow(tr("&Gamma"), limits.gammaMin, limits.gammaMax, 1.0))
    , plot(new LUTPlot(this))
{
    autoStretch->setToolTip(tr("Spread the levels of each frame over the display. "
                               "Display only: recordings hold the raw data."));
    plot->setMinimumHeight(100);
    plot->setMaximumHeight(255);
    plot->setAccessibleName(tr("Lookup table"));

    auto* form = new QFormLayout;
    for (SliderRow* row : {brightness, contrast, gamma})
        row->addTo(form);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(applyTable);
    layout->addWidget(autoStretch);
    layout->addLayout(form);
    layout->addWidget(plot, 1);
    layout->addStretch();

    connectControls();
    followModel(model.settings());
}

void TonePanel::connectControls()
{
    connect(&model, &ProcessingModel::changed, this, &TonePanel::followModel);
    connect(applyTable, &QCheckBox::toggled, this, [this](bool on) {
        model.change([on](ProcessingSettings& s) { s.correction.setFlag(CS_APPLY_LUT, on); });
    });
    connect(autoStretch, &QCheckBox::toggled, this,
            [this](bool on) { model.change([on](ProcessingSettings& s) { s.autoStretch = on; }); });

    const auto edits = [this](SliderRow* row, double ImgCorrectionSettings::*field) {
        connect(row, &SliderRow::valueChanged, this, [this, field](double value) {
            model.change([&](ProcessingSettings& s) { s.correction.*field = value; });
        });
    };
    edits(brightness, &ImgCorrectionSettings::brightness);
    edits(contrast, &ImgCorrectionSettings::contrast);
    edits(gamma, &ImgCorrectionSettings::gamma);
}

void TonePanel::followModel(const ProcessingSettings& settings)
{
    ImgCorrectionSettings correction = settings.correction;
    const QSignalBlocker blockTable(applyTable);
    const QSignalBlocker blockStretch(autoStretch);
    const bool applies = correction.isFlagSet(CS_APPLY_LUT);
    applyTable->setChecked(applies || settings.autoStretch);
    applyTable->setEnabled(!settings.autoStretch);
    autoStretch->setChecked(settings.autoStretch);
    brightness->setValue(correction.brightness);
    contrast->setValue(correction.contrast);
    gamma->setValue(correction.gamma);
    for (SliderRow* row : {brightness, contrast, gamma})
        row->setEnabled(applies && !settings.autoStretch);
}

void TonePanel::showPicture(const LivePicture& picture)
{
    if (picture.toneTable == plotted)
        return;
    plotted = picture.toneTable;
    plot->setLUTData(plotted.data(), static_cast<int>(plotted.size()));
}
