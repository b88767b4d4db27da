#pragma once

#include "core/Histograms.h"

#include <QScrollArea>

class HistogramBox;

/// The library's histogram box in a frame that scrolls, because the box has a fixed width.
/// Histograms of 1024 bins are shown in 256 unless the user wants the wide form.
class HistogramPanel : public QScrollArea
{
    Q_OBJECT

public:
    explicit HistogramPanel(QWidget* parent = nullptr);

    void showHistograms(const Histograms& newest);
    HistogramBox* getBox() { return box; }

public slots:
    void setWide(bool on) { wide = on; }
    void clear();

private:
    void adoptWidth(int histogramWidth);

    HistogramBox* box;
    bool wide = false;
    std::vector<int> narrowed;
};
