#pragma once

#include <vector>

#include <QWidget>

#include <AppComponents/AppComponentsExport.h>

/// Plots a lookup table as an area: input levels from left to right over the whole width, 8-bit
/// output levels upwards. Meant for heights up to 255 pixels; higher, the bars wrap. GUI thread
/// only.
class APPCOMPONENTS_EXPORT LUTPlot : public QWidget
{
    Q_OBJECT

public:
    explicit LUTPlot(QWidget* parent = nullptr);
    ~LUTPlot() override;

    /// Copies the \p size output levels of \p levels and requests a repaint. Null, and tables of
    /// fewer than 256 entries, are ignored.
    void setLUTData(unsigned char* levels, int size);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void PaintLUTPlot();
    void recalcData();

    std::vector<unsigned char> table;
    std::vector<unsigned char> columns; ///< bar height of each pixel column
    bool dirty = false;
};
