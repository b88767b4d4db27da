#pragma once

#include <QWidget>

class ProcessingModel;
class QCheckBox;
class QSpinBox;
struct ProcessingSettings;

/// The switches that are neither tone nor colour: averaging, filter, mirroring, bypass.
class ProcessingPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ProcessingPanel(ProcessingModel& edited, QWidget* parent = nullptr);

private:
    void connectControls();
    void followModel(const ProcessingSettings& settings);

    ProcessingModel& model;
    QSpinBox* average;
    QCheckBox* median;
    QCheckBox* bypass;
    QCheckBox* greyFromMosaic;
    QCheckBox* flipH;
    QCheckBox* flipV;
};
