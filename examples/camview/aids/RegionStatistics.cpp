#include "RegionStatistics.h"

#include <algorithm>
#include <cmath>

namespace
{

struct Sums {
    quint64 levels = 0;
    quint64 squares = 0; // 64 bits hold 12-bit squares of more samples than a frame can have
    int smallest = 0xFFFF;
    int largest = 0;
};

template <typename Sample>
void addRow(const Sample* row, int count, Sums& sums)
{
    for (int i = 0; i < count; ++i) {
        const quint32 level = row[i];
        sums.levels += level;
        sums.squares += static_cast<quint64>(level) * level;
        sums.smallest = std::min(sums.smallest, static_cast<int>(level));
        sums.largest = std::max(sums.largest, static_cast<int>(level));
    }
}

template <typename Sample>
Sums sumsOf(const FrameEx2& frame, const QRect& part)
{
    const auto* samples = reinterpret_cast<const Sample*>(frame.getImageBuffer());
    Sums sums;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto start = static_cast<qint64>(y) * frame.imgWidth + part.left();
        addRow(samples + start, part.width(), sums);
    }
    return sums;
}

} // namespace

RegionStatistics measureRegion(const RawPicture& picture, const QRect& area)
{
    RegionStatistics result;
    const QRect part = picture.inFrame(area);
    if (part.isEmpty())
        return result;

    const FrameEx2& frame = picture.record();
    const Sums sums =
        frame.rawBitDepth <= 8 ? sumsOf<quint8>(frame, part) : sumsOf<quint16>(frame, part);
    result.count = static_cast<qint64>(part.width()) * part.height();
    const auto count = static_cast<double>(result.count);
    result.mean = static_cast<double>(sums.levels) / count;
    const double variance = static_cast<double>(sums.squares) / count - result.mean * result.mean;
    // A flat region may come out a rounding error below zero.
    result.deviation = std::sqrt(std::max(variance, 0.0));
    result.smallest = sums.smallest;
    result.largest = sums.largest;
    return result;
}
