#include "ProcessingPanel.h"

#include "ProcessingModel.h"

#include <AppComponents/frames/RingFrameBuffer.h>

#include <QCheckBox>
#include <QFormLayout>
#include <QSpinBox>

ProcessingPanel::ProcessingPanel(ProcessingModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
    , average(new QSpinBox(this))
    , median(new QCheckBox(tr("&Median filter"), this))
    , bypass(new QCheckBox(tr("B&ypass the filters"), this))
    , greyFromMosaic(new QCheckBox(tr("&Grey from the mosaic"), this))
    , flipH(new QCheckBox(tr("Mirror the display left to &right"), this))
    , flipV(new QCheckBox(tr("Mirror the display top to &bottom"), this))
{
    average->setRange(1, RingFrameBuffer::maxFrames);
    average->setSuffix(tr(" frames"));
    average->setSpecialValueText(tr("no averaging"));
    average->setAccessibleName(tr("Average of"));
    auto* form = new QFormLayout(this);
    form->addRow(tr("Average &of"), average);
    for (QCheckBox* box : {median, bypass, greyFromMosaic, flipH, flipV})
        form->addRow(box);
    connectControls();
    followModel(model.settings());
}

void ProcessingPanel::connectControls()
{
    connect(&model, &ProcessingModel::changed, this, &ProcessingPanel::followModel);
    connect(average, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int frames) {
        model.change([frames](ProcessingSettings& s) { s.averageFrames = frames; });
    });
    connect(greyFromMosaic, &QCheckBox::toggled, this, [this](bool on) {
        model.change([on](ProcessingSettings& s) { s.greyFromMosaic = on; });
    });
    const auto setsFlag = [this](QCheckBox* box, CamStateFlag flag) {
        connect(box, &QCheckBox::toggled, this, [this, flag](bool on) {
            model.change([=](ProcessingSettings& s) { s.correction.setFlag(flag, on); });
        });
    };
    setsFlag(median, CS_MEDIAN_FILTER);
    setsFlag(bypass, CS_BYPASS);
    const auto sets = [this](QCheckBox* box, bool ImgCorrectionSettings::*field) {
        connect(box, &QCheckBox::toggled, this, [this, field](bool on) {
            model.change([=](ProcessingSettings& s) { s.correction.*field = on; });
        });
    };
    sets(flipH, &ImgCorrectionSettings::flipH);
    sets(flipV, &ImgCorrectionSettings::flipV);
}

void ProcessingPanel::followModel(const ProcessingSettings& settings)
{
    ImgCorrectionSettings correction = settings.correction;
    const auto show = [](auto* control, auto setter, auto value) {
        const QSignalBlocker block(control);
        (control->*setter)(value);
    };
    show(average, &QSpinBox::setValue, settings.averageFrames);
    show(median, &QCheckBox::setChecked, correction.isFlagSet(CS_MEDIAN_FILTER));
    show(bypass, &QCheckBox::setChecked, correction.isFlagSet(CS_BYPASS));
    show(greyFromMosaic, &QCheckBox::setChecked, settings.greyFromMosaic);
    show(flipH, &QCheckBox::setChecked, correction.flipH);
    show(flipV, &QCheckBox::setChecked, correction.flipV);
}
