#include "ProcessingModel.h"

ProcessingModel::ProcessingModel(QObject* parent)
    : QObject(parent)
{
    // Ten histograms a second are as many as an eye can follow.
    current.histogramPeriod = std::chrono::milliseconds(100);
    // The best picture that still runs in real time; a sensor without a mosaic stays grey.
    current.correction.colorReconstructionMethod = 4;
}

void ProcessingModel::setSettings(const ProcessingSettings& settings)
{
    current = settings;
    emit changed(current);
}
