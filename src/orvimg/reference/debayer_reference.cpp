#include <orvimg/reference/debayer_reference.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

#include <orvimg/mirror.h>

namespace orvimg::reference
{

namespace
{

using Index = std::ptrdiff_t;
using Rgb = std::array<int, 3>;

constexpr int red = 0;
constexpr int green = 1;
constexpr int blue = 2;

/// The mosaic, continued without end by mirroring.
struct Mosaic {
    const std::uint8_t* samples;
    Index width;
    Index height;
    int redColumn;
    int redRow;

    int at(Index x, Index y) const
    {
        return samples[mirrored(y, height) * width + mirrored(x, width)];
    }
    int color(Index x, Index y) const
    {
        const Index column = (x + redColumn) & 1;
        const Index row = (y + redRow) & 1;
        return column != row ? green : column == 0 ? red : blue;
    }
};

int clamped(int value)
{
    return std::clamp(value, 0, 255);
}

/// \return value / 2^bits, rounded to nearest, halves up.
int rounded(int value, int bits)
{
    return (value + (1 << (bits - 1))) >> bits;
}

int mean(int a, int b)
{
    return rounded(a + b, 1);
}

int horizontalPair(const Mosaic& m, Index x, Index y, int distance)
{
    return m.at(x - distance, y) + m.at(x + distance, y);
}

int verticalPair(const Mosaic& m, Index x, Index y, int distance)
{
    return m.at(x, y - distance) + m.at(x, y + distance);
}

int diagonalFour(const Mosaic& m, Index x, Index y)
{
    return horizontalPair(m, x, y - 1, 1) + horizontalPair(m, x, y + 1, 1);
}

/// Each missing colour from the neighbour right, below or diagonally below.
Rgb nearest(const Mosaic& m, Index x, Index y)
{
    const int own = m.color(x, y);
    Rgb pixel{};
    pixel[own] = m.at(x, y);
    pixel[m.color(x + 1, y)] = m.at(x + 1, y);
    if (own == green)
        pixel[m.color(x, y + 1)] = m.at(x, y + 1);
    else
        pixel[2 - own] = m.at(x + 1, y + 1);
    return pixel;
}

Rgb cell(const Mosaic& m, Index x, Index y)
{
    const Index left = x & ~Index{1};
    const Index top = y & ~Index{1};
    Rgb sums{};
    for (const Index row : {top, top + 1}) {
        for (const Index column : {left, left + 1})
            sums[m.color(column, row)] += m.at(column, row);
    }
    return {sums[red], rounded(sums[green], 1), sums[blue]};
}

Rgb bilinear(const Mosaic& m, Index x, Index y)
{
    const int own = m.color(x, y);
    Rgb pixel{};
    pixel[own] = m.at(x, y);
    if (own == green) {
        pixel[m.color(x + 1, y)] = rounded(horizontalPair(m, x, y, 1), 1);
        pixel[m.color(x, y + 1)] = rounded(verticalPair(m, x, y, 1), 1);
    } else {
        pixel[green] = rounded(horizontalPair(m, x, y, 1) + verticalPair(m, x, y, 1), 2);
        pixel[2 - own] = rounded(diagonalFour(m, x, y), 2);
    }
    return pixel;
}

/// Malvar, He and Cutler, "High-quality linear interpolation for demosaicing of Bayer-patterned
/// color images", ICASSP 2004.
Rgb gradientCorrected(const Mosaic& m, Index x, Index y)
{
    const int own = m.color(x, y);
    const int centre = m.at(x, y);
    const int across = horizontalPair(m, x, y, 1);
    const int upright = verticalPair(m, x, y, 1);
    const int farAcross = horizontalPair(m, x, y, 2);
    const int farUpright = verticalPair(m, x, y, 2);
    const int diagonal = diagonalFour(m, x, y);
    Rgb pixel{};
    pixel[own] = centre;
    if (own == green) {
        const int common = 10 * centre - 2 * diagonal;
        pixel[m.color(x + 1, y)] =
            clamped(rounded(common + 8 * across - 2 * farAcross + farUpright, 4));
        pixel[m.color(x, y + 1)] =
            clamped(rounded(common + 8 * upright - 2 * farUpright + farAcross, 4));
    } else {
        const int far = farAcross + farUpright;
        pixel[green] = clamped(rounded(4 * centre + 2 * (across + upright) - far, 3));
        pixel[2 - own] = clamped(rounded(12 * centre + 4 * diagonal - 3 * far, 4));
    }
    return pixel;
}

/// Green by Hamilton and Adams, US patent 5629734, 1997: along the direction of the smaller
/// gradient, corrected by the second derivative of the chroma. The mean of both directions is
/// taken unless one gradient is more than twice the other, as a near tie is mostly noise.
int edgeDirectedGreen(const Mosaic& m, Index x, Index y)
{
    const int centre = m.at(x, y);
    if (m.color(x, y) == green)
        return centre;
    const int curvatureAcross = 2 * centre - horizontalPair(m, x, y, 2);
    const int curvatureUpright = 2 * centre - verticalPair(m, x, y, 2);
    const int changeAcross = std::abs(m.at(x - 1, y) - m.at(x + 1, y)) + std::abs(curvatureAcross);
    const int changeUpright =
        std::abs(m.at(x, y - 1) - m.at(x, y + 1)) + std::abs(curvatureUpright);
    const int across = 2 * horizontalPair(m, x, y, 1) + curvatureAcross;
    const int upright = 2 * verticalPair(m, x, y, 1) + curvatureUpright;
    if (changeUpright > 2 * changeAcross)
        return clamped(rounded(across, 2));
    if (changeAcross > 2 * changeUpright)
        return clamped(rounded(upright, 2));
    return clamped(rounded(across + upright, 3));
}

/// The chroma of the site less its green.
int colorDifference(const Mosaic& m, Index x, Index y)
{
    return m.at(x, y) - edgeDirectedGreen(m, x, y);
}

Rgb edgeDirected(const Mosaic& m, Index x, Index y)
{
    const auto difference = [&](Index dx, Index dy) { return colorDifference(m, x + dx, y + dy); };
    const int own = m.color(x, y);
    const int luma = edgeDirectedGreen(m, x, y);
    Rgb pixel{};
    pixel[own] = m.at(x, y);
    pixel[green] = luma;
    if (own == green) {
        pixel[m.color(x + 1, y)] = clamped(luma + mean(difference(-1, 0), difference(1, 0)));
        pixel[m.color(x, y + 1)] = clamped(luma + mean(difference(0, -1), difference(0, 1)));
    } else {
        const int sum =
            difference(-1, -1) + difference(1, -1) + difference(-1, 1) + difference(1, 1);
        pixel[2 - own] = clamped(luma + rounded(sum, 2));
    }
    return pixel;
}

/// What lies in one of the eight directions: twice its gradient, and four times the mean of each
/// colour on that side of the pixel.
struct Direction {
    int gradient = 0;
    Rgb means{};
};

/// Looks along (dx, dy), one of the four axis directions.
Direction lookStraight(const Mosaic& m, Index x, Index y, int dx, int dy)
{
    // (u, v) counts steps ahead and steps aside.
    const auto at = [&](int u, int v) { return m.at(x + u * dx + v * dy, y + u * dy + v * dx); };
    const auto change = [&](int u, int v) { return std::abs(at(u, v) - at(u - 2, v)); };
    Direction result;
    result.gradient = 2 * (change(1, 0) + change(2, 0)) + change(1, 1) + change(1, -1) +
                      change(2, 1) + change(2, -1);
    const int own = m.color(x, y);
    const int ahead = m.color(x + dx, y + dy);
    result.means[own] = 2 * (at(0, 0) + at(2, 0));
    result.means[ahead] = 4 * at(1, 0);
    if (own == green)
        result.means[2 - ahead] = at(0, 1) + at(0, -1) + at(2, 1) + at(2, -1);
    else
        result.means[2 - own] = 2 * (at(1, 1) + at(1, -1));
    return result;
}

/// Looks along (dx, dy), one of the four diagonals.
Direction lookDiagonally(const Mosaic& m, Index x, Index y, int dx, int dy)
{
    const auto at = [&](int u, int v) { return m.at(x + u * dx, y + v * dy); };
    const auto change = [&](int u, int v) { return std::abs(at(u, v) - at(u - 2, v - 2)); };
    const auto step = [&](int u, int v) { return std::abs(at(u, v) - at(u - 1, v - 1)); };
    Direction result;
    const int own = m.color(x, y);
    if (own == green) {
        result.gradient = 2 * (change(1, 1) + change(2, 2) + change(2, 1) + change(1, 2));
        result.means[green] = 4 * at(1, 1);
        result.means[m.color(x + 1, y)] = 2 * (at(1, 0) + at(1, 2));
        result.means[m.color(x, y + 1)] = 2 * (at(0, 1) + at(2, 1));
    } else {
        result.gradient =
            2 * (change(1, 1) + change(2, 2)) + step(1, 0) + step(0, 1) + step(2, 1) + step(1, 2);
        result.means[own] = 2 * (at(0, 0) + at(2, 2));
        result.means[green] = at(1, 0) + at(0, 1) + at(2, 1) + at(1, 2);
        result.means[2 - own] = 4 * at(1, 1);
    }
    return result;
}

/// Chang, Cheung and Pang, "Color filter array recovery using a threshold-based variable number
/// of gradients", SPIE 3650, 1999.
Rgb variableGradients(const Mosaic& m, Index x, Index y)
{
    const std::array<Direction, 8> directions{
        lookStraight(m, x, y, 0, -1),    lookStraight(m, x, y, 0, 1),
        lookStraight(m, x, y, -1, 0),    lookStraight(m, x, y, 1, 0),
        lookDiagonally(m, x, y, -1, -1), lookDiagonally(m, x, y, 1, -1),
        lookDiagonally(m, x, y, -1, 1),  lookDiagonally(m, x, y, 1, 1)};
    const auto [least, most] = std::minmax_element(
        directions.begin(), directions.end(),
        [](const Direction& a, const Direction& b) { return a.gradient < b.gradient; });
    // The paper's 1.5 min + 0.5 (max - min), doubled.
    const int threshold = 2 * least->gradient + most->gradient;
    const int own = m.color(x, y);
    Rgb sums{};
    int count = 0;
    for (const Direction& direction : directions) {
        if (2 * direction.gradient > threshold)
            continue;
        ++count;
        for (const int color : {red, green, blue})
            sums[color] += direction.means[color] - direction.means[own];
    }
    // Division by 4 count as a product of 16-bit fixed point.
    const int reciprocal = (8192 + count / 2) / count;
    Rgb pixel{};
    for (const int color : {red, green, blue})
        pixel[color] = clamped(m.at(x, y) + rounded(sums[color] * reciprocal, 15));
    return pixel;
}

/// A picture of one row or column: what it has of the other colour along the line, the pixel's
/// own sample for a colour that it has nowhere.
Rgb thin(const Mosaic& m, Index x, Index y, int algorithm)
{
    const Index dx = m.width > 1 ? 1 : 0;
    const Index dy = m.height > 1 ? 1 : 0;
    const int own = m.at(x, y);
    const int next = m.at(x + dx, y + dy);
    const int previous = m.at(x - dx, y - dy);
    Rgb pixel{own, own, own};
    if (dx + dy == 0)
        return pixel;
    const bool secondOfCell = ((x + y) & 1) != 0;
    const int other = algorithm == 0   ? next
                      : algorithm == 1 ? (secondOfCell ? previous : next)
                                       : mean(previous, next);
    pixel[m.color(x + dx, y + dy)] = other;
    return pixel;
}

Rgb interpolated(const Mosaic& m, Index x, Index y, int algorithm)
{
    if (m.width == 1 || m.height == 1)
        return thin(m, x, y, algorithm);
    switch (algorithm) {
    case 1:
        return cell(m, x, y);
    case 2:
        return bilinear(m, x, y);
    case 3:
        return gradientCorrected(m, x, y);
    case 4:
        return edgeDirected(m, x, y);
    case 5:
        return variableGradients(m, x, y);
    default:
        return nearest(m, x, y);
    }
}

} // namespace

void debayer(const std::uint8_t* mosaic, int width, int height, int pattern, int algorithm,
             std::uint8_t* rgb)
{
    if (algorithm == 6 && width > 1 && height > 1) {
        debayerBest(mosaic, width, height, pattern, rgb);
        return;
    }
    const Mosaic m{mosaic, width, height, pattern & 1, pattern >> 1};
    for (Index y = 0; y < height; ++y) {
        for (Index x = 0; x < width; ++x) {
            for (const int value : interpolated(m, x, y, algorithm))
                *rgb++ = static_cast<std::uint8_t>(value);
        }
    }
}

} // namespace orvimg::reference
