#include "HistogramProcessedWidget.h"

#include <algorithm>

#include <QPainter>

#include "HistogramBars.h"

namespace
{

constexpr int chartHeight = 128;
constexpr int levelCount = 256;
constexpr int outlineSize = levelCount + 2;

/// How a colour channel is drawn.
struct ChannelStyle {
    QColor fill;
    QColor pictureOutline;
    QColor outline;
};

const ChannelStyle& styleOf(std::size_t channel)
{
    static const QColor red(255, 0, 0, 128);
    static const QColor green(0, 255, 0, 128);
    static const QColor blue(0, 0, 255, 128);
    static const std::array<ChannelStyle, 3> styles = {{
        {red, red, Qt::red},
        {green, Qt::darkGreen, Qt::darkGreen},
        {blue, Qt::darkBlue, Qt::darkBlue},
    }};
    return styles[channel];
}

void drawPicture(QImage& picture, const QPolygon& outline, const QColor& pen, const QColor& brush)
{
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.drawPolygon(outline, Qt::OddEvenFill);
}

} // namespace

HistogramProcessedWidget::HistogramProcessedWidget(QWidget* parent)
    : QWidget(parent)
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("HistogramProcessedWidget"));
    resize(400, 200);
    setWindowTitle(tr("Form"));
}

void HistogramProcessedWidget::setHistogramData(int size, const int* h1, const int* h2,
                                                const int* h3)
{
    const int binTotal = std::max(size, 0);
    const std::array<const int*, 3> sources = {h1, h2, h3};
    for (std::size_t i = 0; i < channels.size(); ++i) {
        Channel& channel = channels[i];
        channel.bins.resize(binTotal);
        channel.isPresent = sources[i] != nullptr;
        if (channel.isPresent)
            std::copy_n(sources[i], binTotal, channel.bins.begin());
    }
    if (binTotal == 0 || channels[0].picture.width() == binTotal)
        return;
    for (Channel& channel : channels)
        channel.picture = QImage(binTotal, chartHeight, QImage::Format_RGB888);
}

void HistogramProcessedWidget::clearData()
{
    for (Channel& channel : channels) {
        channel.isPresent = false;
        channel.bins.clear();
    }
}

bool HistogramProcessedWidget::isColor() const
{
    return std::all_of(channels.begin(), channels.end(),
                       [](const Channel& channel) { return channel.isPresent; });
}

void HistogramProcessedWidget::setChanelVisibility(bool h1, bool h2, bool h3)
{
    channels[0].isVisible = h1;
    channels[1].isVisible = h2;
    channels[2].isVisible = h3;
}

void HistogramProcessedWidget::setLogarithmic(bool value)
{
    logarithmic = value;
}

void HistogramProcessedWidget::paintEvent(QPaintEvent*)
{
    if (binCount() == 0)
        return;
    const int largest = largestValue();
    if (largest <= 0)
        return;
    layOutOutlines(largest);
    const Statistics bounds = statistics();
    {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::RasterOp_SourceAndDestination);
        drawChannelPictures(painter);
        drawOutlines(painter);
        shadeEmptyEnds(painter, bounds);
    }
    emit dataBoundsChange(bounds.lo, bounds.hi, bounds.hi - bounds.lo + 1, bounds.average);
}

int HistogramProcessedWidget::binCount() const
{
    return static_cast<int>(channels[0].bins.size());
}

/// Display pixels per level.
int HistogramProcessedWidget::step() const
{
    return binCount() / levelCount;
}

/// A grey picture is shown whatever the switch of the red channel says.
bool HistogramProcessedWidget::isShown(const Channel& channel) const
{
    const bool isGrey = &channel == &channels[0] && !isColor();
    return channel.isPresent && (channel.isVisible || isGrey);
}

int HistogramProcessedWidget::largestValue() const
{
    const auto largestOf = [](const Channel& channel) {
        return *std::max_element(channel.bins.begin(), channel.bins.end());
    };
    const int first = largestOf(channels[0]);
    if (!isColor())
        return first;
    return std::max({first, largestOf(channels[1]), largestOf(channels[2])});
}

void HistogramProcessedWidget::layOutOutlines(int largest)
{
    const bool isColour = isColor();
    for (Channel& channel : channels) {
        const bool isFilled = isColour || &channel == &channels[0];
        channel.outline.fill(QPoint(), outlineSize);
        channel.outline[0] = QPoint(0, chartHeight);
        channel.outline[outlineSize - 1] = QPoint((levelCount - 1) * step(), chartHeight);
        if (!isFilled)
            continue;
        // Linear heights compare the channels; logarithmic ones show each at its best.
        const int max =
            logarithmic ? *std::max_element(channel.bins.begin(), channel.bins.end()) : largest;
        layOutOutline(channel, max);
    }
}

void HistogramProcessedWidget::layOutOutline(Channel& channel, int max) const
{
    const HistogramBars bars(max, chartHeight, logarithmic);
    const int levels = std::min(levelCount, binCount());
    for (int b = 0; b < levels; ++b)
        channel.outline[b + 1] =
            QPoint((b + 1) * step(), chartHeight - bars.height(channel.bins[b]));
}

HistogramProcessedWidget::Statistics HistogramProcessedWidget::statistics() const
{
    Statistics result;
    int count = 0;
    double weightedSum = 0;
    bool isDataSeen = false;
    const int levels = std::min(levelCount, binCount());
    for (int b = 0; b < levels; ++b) {
        // The first channel counts even when it is absent.
        int combined = channels[0].bins[b];
        bool isOccupied = false;
        for (std::size_t i = 0; i < channels.size(); ++i) {
            if (!channels[i].isPresent)
                continue;
            isOccupied = isOccupied || channels[i].bins[b] > 0;
            if (i > 0)
                combined = wrappingSum(combined, channels[i].bins[b]);
        }
        count = wrappingSum(count, combined);
        weightedSum += static_cast<double>(b) * combined;
        if (isOccupied) {
            result.hi = (b + 1) * step() - 1;
            isDataSeen = true;
        } else if (!isDataSeen) {
            result.lo = b * step();
        }
    }
    result.average = step() * weightedSum / count;
    return result;
}

void HistogramProcessedWidget::drawChannelPictures(QPainter& painter)
{
    const bool isColour = isColor();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        Channel& channel = channels[i];
        if (!isShown(channel))
            continue;
        const bool isGrey = i == 0 && !isColour;
        const ChannelStyle& style = styleOf(i);
        drawPicture(channel.picture, channel.outline, isGrey ? Qt::gray : style.pictureOutline,
                    isGrey ? Qt::gray : style.fill);
        painter.drawImage(0, 0, channel.picture);
    }
}

void HistogramProcessedWidget::drawOutlines(QPainter& painter) const
{
    if (!isColor()) {
        painter.setPen(Qt::black);
        painter.drawPolyline(channels[0].outline);
        return;
    }
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (!isShown(channels[i]))
            continue;
        painter.setPen(styleOf(i).outline);
        painter.drawPolyline(channels[i].outline);
    }
}

void HistogramProcessedWidget::shadeEmptyEnds(QPainter& painter, const Statistics& bounds) const
{
    const QColor shade(emptyRangeShade);
    if (bounds.lo > 0)
        painter.fillRect(0, 0, bounds.lo - 1, chartHeight, shade);
    if (bounds.hi < binCount())
        painter.fillRect(bounds.hi + step(), 0, binCount(), chartHeight, shade);
}
