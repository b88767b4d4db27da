#pragma once

#include <QWidget>

#include <vector>

class ProcessingModel;
class QCheckBox;
class QComboBox;
class QPushButton;
class SpinRow;
class ImgCorrectionSettings;
struct ProcessingSettings;

/// How a mosaic becomes colour: method, white balance, and the six correction values.
class ColorPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ColorPanel(ProcessingModel& edited, QWidget* parent = nullptr);

private:
    struct Row {
        SpinRow* row;
        double ImgCorrectionSettings::*field;
    };

    void buildRows();
    void connectControls();
    void followModel(const ProcessingSettings& settings);

    ProcessingModel& model;
    QComboBox* method;
    QCheckBox* whiteBalance;
    QCheckBox* correction;
    std::vector<Row> rows;
    QPushButton* reset;
};
