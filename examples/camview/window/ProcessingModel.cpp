#include "ProcessingModel.h"

ProcessingModel::ProcessingModel(QObject* parent)
    : QObject(parent)
{
}

ProcessingSettings ProcessingModel::defaults()
{
    ProcessingSettings settings;
    // Ten histograms a second are as many as an eye can follow.
    settings.histogramPeriod = std::chrono::milliseconds(100);
    // The best picture that still runs in real time; a sensor without a mosaic stays grey.
    settings.correction.colorReconstructionMethod = 4;
    return settings;
}

void ProcessingModel::setSettings(const ProcessingSettings& settings)
{
    current = settings;
    emit changed(current);
}
