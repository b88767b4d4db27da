#include "LineProfile.h"

#include <algorithm>
#include <cmath>

namespace
{

double cellMean(const RawPicture& picture, int x, int y)
{
    const int left = std::clamp(x, 0, std::max(picture.width() - 2, 0));
    const int top = std::clamp(y, 0, std::max(picture.height() - 2, 0));
    const int right = std::min(left + 1, picture.width() - 1);
    const int bottom = std::min(top + 1, picture.height() - 1);
    return (picture.sample(left, top) + picture.sample(right, top) + picture.sample(left, bottom) +
            picture.sample(right, bottom)) /
           4.0;
}

/// The part of the line inside the picture, so that a ruler drawn far outside costs nothing.
QLineF clipped(const QLineF& line, const QRect& area)
{
    double from = 0.0;
    double to = 1.0;
    const auto keepBetween = [&](double start, double step, double low, double high) {
        if (step == 0.0) {
            if (start < low || start > high)
                to = -1.0;
            return;
        }
        const double a = (low - start) / step;
        const double b = (high - start) / step;
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
    };
    keepBetween(line.x1(), line.dx(), 0.0, area.width());
    keepBetween(line.y1(), line.dy(), 0.0, area.height());
    if (to <= from)
        return {};
    return {line.pointAt(from), line.pointAt(to)};
}

} // namespace

std::vector<double> lineProfile(const RawPicture& picture, const QLineF& line, bool mosaic)
{
    const QLineF inside = clipped(line, picture.rect());
    const int steps =
        static_cast<int>(std::ceil(std::max(std::abs(inside.dx()), std::abs(inside.dy()))));
    std::vector<double> levels;
    levels.reserve(static_cast<std::size_t>(steps) + 1);
    for (int i = 0; steps > 0 && i <= steps; ++i) {
        const QPointF point = inside.pointAt(static_cast<double>(i) / steps);
        const int x = static_cast<int>(std::floor(point.x()));
        const int y = static_cast<int>(std::floor(point.y()));
        if (!picture.rect().contains(x, y))
            continue;
        levels.push_back(mosaic ? cellMean(picture, x, y) : picture.sample(x, y));
    }
    return levels;
}
