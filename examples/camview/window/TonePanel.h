#pragma once

#include <QImage>
#include <QWidget>

#include <vector>

class LUTPlot;
class ProcessingModel;
class QCheckBox;
class SliderRow;
struct LivePicture;
struct ProcessingSettings;

/// Brightness, contrast and gamma, with the table that they make.
class TonePanel : public QWidget
{
    Q_OBJECT

public:
    explicit TonePanel(ProcessingModel& edited, QWidget* parent = nullptr);

    /// Plots the table with which the picture was made.
    void showPicture(const LivePicture& picture);

private:
    void connectControls();
    void followModel(const ProcessingSettings& settings);

    ProcessingModel& model;
    QCheckBox* applyTable;
    QCheckBox* autoStretch;
    SliderRow* brightness;
    SliderRow* contrast;
    SliderRow* gamma;
    LUTPlot* plot;
    std::vector<unsigned char> plotted;
};
