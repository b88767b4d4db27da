#include "HistogramRawWidget.h"

#include <algorithm>

#include <QPainter>

#include "HistogramBars.h"

HistogramRawWidget::HistogramRawWidget(QWidget* parent)
    : QWidget(parent)
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("HistogramRawWidget"));
    resize(400, 200);
    setWindowTitle(tr("Form"));
    setAttribute(Qt::WA_OpaquePaintEvent); // each repaint starts with an opaque fill
}

void HistogramRawWidget::setHistogramData(int size, const int* h)
{
    bins.assign(h, h + std::max(size, 0));
}

void HistogramRawWidget::clearData()
{
    bins.clear();
}

void HistogramRawWidget::setLogarithmic(bool value)
{
    logarithmic = value;
}

void HistogramRawWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (bins.empty())
        return;
    const int max = *std::max_element(bins.begin(), bins.end());
    if (max <= 0)
        return;
    const Statistics statistics = layOutOutline(max);
    draw(painter, statistics);
    painter.end();
    emit dataBoundsChange(statistics.lowZero, statistics.hiZero,
                          statistics.hiZero - statistics.lowZero + 1, statistics.average);
}

/// Builds the outline of the bars and gathers their statistics in the same pass.
HistogramRawWidget::Statistics HistogramRawWidget::layOutOutline(int max)
{
    const int n = static_cast<int>(bins.size());
    const HistogramBars bars(max, height(), logarithmic);
    Statistics statistics;
    int count = 0;
    double weightedSum = 0;
    bool isDataSeen = false;

    outline.resize(n + 2);
    outline[0] = QPoint(0, height());
    for (int i = 0; i < n; ++i) {
        const int value = bins[i];
        outline[i + 1] = QPoint(i + 1, height() - bars.height(value));
        count = wrappingSum(count, value);
        weightedSum += wrappingProduct(i, value);
        if (value > 0) {
            statistics.hiZero = i;
            isDataSeen = true;
        } else if (!isDataSeen) {
            statistics.lowZero = i;
        }
    }
    outline[n + 1] = QPoint(n + 1, height());
    statistics.average = weightedSum / count;
    return statistics;
}

void HistogramRawWidget::draw(QPainter& painter, const Statistics& statistics)
{
    const int n = static_cast<int>(bins.size());
    const QColor shade(emptyRangeShade);
    if (statistics.lowZero > 0)
        painter.fillRect(0, 0, statistics.lowZero - 1, height(), shade);
    painter.fillRect(statistics.hiZero + 1, 0, n, height(), shade);

    painter.setPen(Qt::black);
    painter.setBrush(Qt::gray);
    painter.drawPolygon(outline, Qt::OddEvenFill);
}
