#include <AppComponents/analysis/LUTPlot.h>

#include <algorithm>

#include <QPainter>

namespace
{

constexpr int minTableSize = 256;
constexpr QRgb backgroundColour = qRgb(240, 239, 241);
constexpr QRgb barColour = qRgb(223, 228, 234);

} // namespace

LUTPlot::LUTPlot(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent); // each repaint starts with an opaque fill
}

LUTPlot::~LUTPlot() = default;

void LUTPlot::setLUTData(unsigned char* levels, int size)
{
    if (!levels || size < minTableSize)
        return;
    table.assign(levels, levels + size);
    dirty = true;
    update();
}

void LUTPlot::paintEvent(QPaintEvent*)
{
    PaintLUTPlot();
}

void LUTPlot::resizeEvent(QResizeEvent* event)
{
    dirty = true;
    QWidget::resizeEvent(event);
}

void LUTPlot::PaintLUTPlot()
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(backgroundColour));
    if (table.empty())
        return;
    recalcData();

    // Each bar covers what a line of width 2 with square caps covers, from the bottom to the top of
    // its column. Filled as a rectangle it takes a small part of the time that stroking takes.
    const QColor bar(barColour);
    const int columnCount = static_cast<int>(columns.size());
    for (int x = 0; x < columnCount; ++x)
        painter.fillRect(x - 1, height() - columns[x] - 1, 2, columns[x] + 2, bar);
}

void LUTPlot::recalcData()
{
    if (!dirty || table.empty())
        return;
    dirty = false;
    columns.assign(std::max(width(), 0), 0);
    const int lastEntry = static_cast<int>(table.size()) - 1;
    const double ratio = static_cast<double>(table.size()) / width();
    for (int x = 0; x < width(); ++x) {
        // On a plot more than twice as wide as its table the last index rounds up past the end.
        const int index = std::min(qRound(x * ratio), lastEntry);
        columns[x] = static_cast<unsigned char>(height() * table[index] / 255);
    }
}
