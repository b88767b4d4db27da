#pragma once

class HistogramProcessedWidget;
class HistogramRawWidget;
class QCheckBox;
class QGridLayout;
class QLineEdit;
class QWidget;

/// The child widgets of HistogramBox. They belong to the box; this only points to them.
/// The object names of the painters decide which slots of the box their signals reach.
class HistogramBoxForm
{
public:
    /// The read-outs beside one histogram.
    struct ReadOuts {
        QLineEdit* min = nullptr;
        QLineEdit* max = nullptr;
        QLineEdit* range = nullptr;
        QLineEdit* average = nullptr;
    };

    /// Lays the form out on \p box and connects the slots of the box by name.
    explicit HistogramBoxForm(QWidget& box);

    ReadOuts raw;
    ReadOuts processed;
    HistogramRawWidget* wgtHistogram = nullptr;
    HistogramProcessedWidget* wgtProcessedHistogram = nullptr;
    QCheckBox* cbLogarithmic = nullptr;
    QCheckBox* chR = nullptr;
    QCheckBox* chG = nullptr;
    QCheckBox* chB = nullptr;

private:
    void layOutRaw(QGridLayout& grid, QWidget& box);
    void layOutProcessed(QGridLayout& grid, QWidget& box);
    void layOutOptions(QGridLayout& grid, QWidget& box);
};
