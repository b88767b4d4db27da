#include <orvimg/debayer/kernels.h>

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/best.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <hwy/cache_control.h>
#include <orvimg/debayer/rows-inl.h>
#include <orvimg/debayer/strip_plane.h>
#include <orvimg/mirror.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

using Floats = hn::CappedTag<float, 16>;
using FloatVector = hn::Vec<Floats>;

/// Strips are cut such that they start with a red sample: even rows are red, odd ones blue.
HWY_INLINE int chromaColumnOf(int row)
{
    return row & 1;
}

HWY_INLINE FloatVector constant(float value)
{
    return hn::Set(Floats(), value);
}

HWY_INLINE FloatVector load(const StripPlane& plane, int row, int column, int step)
{
    return hn::LoadU(Floats(), plane.at(row, column) + step);
}

HWY_INLINE void store(FloatVector value, const StripPlane& plane, int row, int column, int step)
{
    hn::StoreU(value, Floats(), plane.at(row, column) + step);
}

HWY_INLINE FloatVector square(FloatVector v)
{
    return hn::Mul(v, v);
}

HWY_INLINE FloatVector distance(FloatVector a, FloatVector b)
{
    return hn::Abs(hn::Sub(a, b));
}

/// Calls function(step) for all vectors of a row of sites.
template <typename Function>
HWY_INLINE void forEachStep(Function function)
{
    const int lanes = static_cast<int>(hn::Lanes(Floats()));
    for (int step = StripPlane::firstStep; step < StripPlane::endStep; step += lanes)
        function(step);
}

// Planes are passed by value: a vector store could otherwise change them, as far as the compiler
// knows, and their addresses would be computed again for each vector.

/// What is known along one axis of a strip.
struct AxisPlanes {
    StripPlane difference; // green less chroma, with every second sample interpolated
    StripPlane smooth;     // the same, low-pass filtered
    StripPlane noise;      // squared deviation of the two, summed over three lines

    explicit AxisPlanes(Scratch& scratch)
        : difference(scratch)
        , smooth(scratch)
        , noise(scratch)
    {
    }
};

/// Interpolates along (dx, dy) and takes the difference, at the sites from \p column on.
template <int dx, int dy, bool isGreen>
HWY_INLINE void differenceRow(StripPlane mosaic, StripPlane difference, int y, int column)
{
    forEachStep([&](int step) HWY_ATTR {
        const auto at = [&](int n)
                            HWY_ATTR { return load(mosaic, y + n * dy, column + n * dx, step); };
        const auto centre = at(0);
        const auto curvature = hn::Sub(hn::Add(centre, centre), hn::Add(at(-2), at(2)));
        const auto near = hn::Mul(constant(0.5F), hn::Add(at(-1), at(1)));
        // A quarter would be exact where colours change alike; they mostly change less.
        const auto interpolated = hn::Add(near, hn::Mul(constant(0.1875F), curvature));
        store(isGreen ? hn::Sub(centre, interpolated) : hn::Sub(interpolated, centre), difference,
              y, column, step);
    });
}

template <int dx, int dy>
HWY_INLINE void smoothRow(AxisPlanes axis, int y, int column)
{
    forEachStep([&](int step) HWY_ATTR {
        const auto at = [&](int n) HWY_ATTR {
            return load(axis.difference, y + n * dy, column + n * dx, step);
        };
        auto sum = hn::Mul(constant(20), at(0));
        sum = hn::Add(sum, hn::Mul(constant(15), hn::Add(at(-1), at(1))));
        sum = hn::Add(sum, hn::Mul(constant(6), hn::Add(at(-2), at(2))));
        sum = hn::Add(sum, hn::Add(at(-3), at(3)));
        store(hn::Mul(sum, constant(1.0F / 64)), axis.smooth, y, column, step);
    });
}

template <int dx, int dy>
HWY_INLINE void noiseRow(AxisPlanes axis, int y, int column)
{
    forEachStep([&](int step) HWY_ATTR {
        const auto at = [&](int n) HWY_ATTR {
            const int row = y + n * dx;
            const int aside = column + n * dy;
            return square(hn::Sub(load(axis.difference, row, aside, step),
                                  load(axis.smooth, row, aside, step)));
        };
        store(hn::Add(hn::Add(at(-1), at(0)), at(1)), axis.noise, y, column, step);
    });
}

struct Estimate {
    FloatVector value;
    FloatVector error; // expected square
};

/// The linear estimate of least expected squared error: as far as the difference varies by more
/// than noise it is taken as it is, otherwise smoothed.
template <int dx, int dy>
HWY_INLINE Estimate estimateAt(AxisPlanes axis, int y, int column, int step)
{
    auto sum = constant(0);
    auto squares = constant(0);
    auto noise = constant(0);
    for (int n = -3; n <= 3; ++n) {
        const auto value = load(axis.smooth, y + n * dy, column + n * dx, step);
        sum = hn::Add(sum, value);
        squares = hn::Add(squares, square(value));
        noise = hn::Add(noise, load(axis.noise, y + n * dy, column + n * dx, step));
    }
    const auto floorOfVariance = constant(1.0F / 1024);
    const auto mean = hn::Mul(sum, constant(1.0F / 7));
    const auto variance = hn::Sub(hn::Mul(squares, constant(1.0F / 7)), square(mean));
    const auto signal = hn::Add(hn::Max(variance, constant(0)), floorOfVariance);
    const auto error = hn::Add(hn::Mul(noise, constant(1.0F / 21)), floorOfVariance);
    const auto share = hn::Div(constant(1), hn::Add(signal, error));
    const auto smooth = load(axis.smooth, y, column, step);
    const auto difference = load(axis.difference, y, column, step);
    const auto weighted = hn::Add(hn::Mul(smooth, error), hn::Mul(difference, signal));
    return {hn::Mul(weighted, share), hn::Mul(hn::Mul(signal, error), share)};
}

HWY_INLINE void greenRow(StripPlane mosaic, AxisPlanes across, AxisPlanes upright, StripPlane green,
                         int y)
{
    const int column = chromaColumnOf(y);
    forEachStep([&](int step) HWY_ATTR {
        const Estimate h = estimateAt<1, 0>(across, y, column, step);
        const Estimate v = estimateAt<0, 1>(upright, y, column, step);
        const auto weighted = hn::Add(hn::Mul(h.value, v.error), hn::Mul(v.value, h.error));
        const auto difference = hn::Div(weighted, hn::Add(h.error, v.error));
        const auto value = hn::Add(load(mosaic, y, column, step), difference);
        store(hn::Min(hn::Max(value, constant(0)), constant(255)), green, y, column, step);
        store(load(mosaic, y, 1 - column, step), green, y, 1 - column, step);
    });
}

/// Of the detail of green a chroma mostly has somewhat less.
constexpr float greenShare = 0.875F;

HWY_INLINE FloatVector shareOf(FloatVector green)
{
    return hn::Mul(constant(greenShare), green);
}

/// The mean of four values of which each weighs the less, the more the picture changes towards
/// it: weights 1 / change, all multiplied by the four changes so that one division does.
HWY_INLINE FloatVector weightedMean(const FloatVector (&values)[4], const FloatVector (&changes)[4])
{
    const auto first = hn::Mul(changes[0], changes[1]);
    const auto second = hn::Mul(changes[2], changes[3]);
    const FloatVector weights[4] = {hn::Mul(changes[1], second), hn::Mul(changes[0], second),
                                    hn::Mul(changes[3], first), hn::Mul(changes[2], first)};
    auto sum = hn::Mul(values[0], weights[0]);
    auto whole = weights[0];
    for (int i = 1; i < 4; ++i) {
        sum = hn::Add(sum, hn::Mul(values[i], weights[i]));
        whole = hn::Add(whole, weights[i]);
    }
    return hn::Div(sum, whole);
}

/// What the row's own chroma has beyond its share of green.
HWY_INLINE void ownRestRow(StripPlane mosaic, StripPlane green, StripPlane rest, int y)
{
    const int column = chromaColumnOf(y);
    forEachStep([&](int step) HWY_ATTR {
        store(hn::Sub(load(mosaic, y, column, step), shareOf(load(green, y, column, step))), rest,
              y, column, step);
    });
}

/// The same of the other chroma, from the four diagonal neighbours.
HWY_INLINE void otherRestRow(StripPlane mosaic, StripPlane green, StripPlane rest, int y)
{
    const int column = chromaColumnOf(y);
    constexpr int directions[4][2] = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
    forEachStep([&](int step) HWY_ATTR {
        const auto centre = load(green, y, column, step);
        FloatVector values[4];
        FloatVector changes[4];
        for (int i = 0; i < 4; ++i) {
            const auto at = [&](StripPlane plane, int n) HWY_ATTR {
                return load(plane, y + n * directions[i][1], column + n * directions[i][0], step);
            };
            const auto across = distance(at(mosaic, 1), at(mosaic, -1));
            const auto near = distance(centre, at(green, 1));
            const auto far = distance(centre, at(green, 2));
            values[i] = at(rest, 1);
            changes[i] = hn::Add(hn::Add(hn::Add(across, near), far), constant(1));
        }
        store(weightedMean(values, changes), rest, y, column, step);
    });
}

HWY_INLINE FloatVector restAtGreen(StripPlane green, StripPlane rest, int y, int column, int step)
{
    const auto centre = load(green, y, column, step);
    const auto above = load(rest, y - 1, column, step);
    const auto left = load(rest, y, column - 1, step);
    const auto right = load(rest, y, column + 1, step);
    const auto below = load(rest, y + 1, column, step);
    const auto across = distance(left, right);
    const auto upright = distance(above, below);
    const auto change = [&](int dx, int dy, FloatVector opposite) HWY_ATTR {
        const auto far = load(green, y + 2 * dy, column + 2 * dx, step);
        return hn::Add(hn::Add(distance(centre, far), opposite), constant(1));
    };
    return weightedMean({above, left, right, below}, {change(0, -1, upright), change(-1, 0, across),
                                                      change(1, 0, across), change(0, 1, upright)});
}

/// The planes of a strip. The rests take the place of differences that are no longer needed.
struct StripPlanes {
    StripPlane mosaic;
    StripPlane green;
    AxisPlanes across;
    AxisPlanes upright;

    static std::size_t scratchBytes() { return 8 * StripPlane::scratchBytes(); }
    explicit StripPlanes(Scratch& scratch)
        : mosaic(scratch)
        , green(scratch)
        , across(scratch)
        , upright(scratch)
    {
    }
    /// \param chroma 0 red, 1 blue
    const StripPlane& rest(int chroma) const
    {
        return chroma == 0 ? across.difference : upright.difference;
    }
};

/// Differences along both axes and what follows from them. The axis across is some rows late, as
/// its estimates look no further down than its noise does.
HWY_INLINE void analyseRows(const StripPlanes& strip, int y)
{
    differenceRow<0, 1, false>(strip.mosaic, strip.upright.difference, y, chromaColumnOf(y));
    differenceRow<0, 1, true>(strip.mosaic, strip.upright.difference, y, 1 - chromaColumnOf(y));
    const int late = y - 5;
    differenceRow<1, 0, false>(strip.mosaic, strip.across.difference, late, chromaColumnOf(late));
    differenceRow<1, 0, true>(strip.mosaic, strip.across.difference, late,
                              1 - chromaColumnOf(late));
    for (const int column : {0, 1}) {
        smoothRow<0, 1>(strip.upright, y - 3, column);
        smoothRow<1, 0>(strip.across, late, column);
    }
    for (const int column : {0, 1}) {
        noiseRow<0, 1>(strip.upright, y - 3, column);
        noiseRow<1, 0>(strip.across, late - 1, column);
    }
}

// How far the stages run ahead of the finished row.
constexpr int lead = 10;
constexpr int mosaicLead = lead + 2;

/// All stages take turns row by row, each as many rows late as it needs of the ones before, so
/// that what they hand on is still in the first-level cache. Brings row y - lead to its end.
HWY_INLINE void interpolateRow(const StripPlanes& strip, int y)
{
    analyseRows(strip, y);
    greenRow(strip.mosaic, strip.across, strip.upright, strip.green, y - 6);
    ownRestRow(strip.mosaic, strip.green, strip.rest(y & 1), y - 8);
    otherRestRow(strip.mosaic, strip.green, strip.rest(y & 1), y - 9);
}

/// One finished row, its columns parted into even and odd.
struct FinishedRow {
    static constexpr int length = StripPlane::columns / 2 + 32;
    HWY_ALIGN std::int16_t samples[3][2][length];

    HWY_INLINE void set(int channel, int column, int step, FloatVector value)
    {
        const hn::Rebind<std::int32_t, Floats> ints;
        const hn::Rebind<std::int16_t, Floats> shorts;
        const auto limited = hn::Min(hn::Max(value, constant(0)), constant(255));
        const auto rounded = hn::ConvertTo(ints, hn::Add(limited, constant(0.5F)));
        hn::StoreU(hn::DemoteTo(shorts, rounded), shorts, samples[channel][column] + step);
    }
};

HWY_INLINE void finishRow(const StripPlanes& strip, int y, FinishedRow* row)
{
    const int chroma = y & 1;
    const int channel = 2 * chroma;
    const int site = chromaColumnOf(y);
    const int greenSite = 1 - site;
    const int lanes = static_cast<int>(hn::Lanes(Floats()));
    for (int step = 0; step < StripPlane::columns / 2; step += lanes) {
        const auto green = load(strip.green, y, site, step);
        const auto other = load(strip.rest(1 - chroma), y, site, step);
        row->set(channel, site, step, load(strip.mosaic, y, site, step));
        row->set(1, site, step, green);
        row->set(2 - channel, site, step, hn::Add(shareOf(green), other));
        const auto known = load(strip.green, y, greenSite, step);
        const auto share = shareOf(known);
        row->set(1, greenSite, step, known);
        for (const int c : {0, 1}) {
            const auto rest = restAtGreen(strip.green, strip.rest(c), y, greenSite, step);
            row->set(2 * c, greenSite, step, hn::Add(share, rest));
        }
    }
}

HWY_INLINE void interleave(const FinishedRow& row, std::uint8_t* rgb)
{
    const Shorts d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int step = 0; step < StripPlane::columns / 2; step += lanes) {
        const auto channel = [&](int c) HWY_ATTR {
            return joined(hn::LoadU(d, row.samples[c][0] + step),
                          hn::LoadU(d, row.samples[c][1] + step));
        };
        storeTriples(channel(0), channel(1), channel(2), rgb + 6 * step);
    }
}

/// Parts a row of samples, the first one of column -columnHalo, into even and odd columns.
HWY_INLINE void partLine(const std::uint8_t* line, StripPlane plane, int y)
{
    const Floats floats;
    const hn::Rebind<std::int32_t, Floats> ints;
    const hn::Rebind<std::uint16_t, Floats> words;
    const hn::Repartition<std::uint8_t, decltype(words)> bytes;
    const auto whole = [&](hn::Vec<decltype(words)> samples)
                           HWY_ATTR { return hn::ConvertTo(floats, hn::PromoteTo(ints, samples)); };
    forEachStep([&](int step) HWY_ATTR {
        const std::uint8_t* const pair = line + 2 * (step - StripPlane::firstStep);
        const auto pairs = hn::BitCast(words, hn::LoadU(bytes, pair));
        store(whole(hn::And(pairs, hn::Set(words, 0xFF))), plane, y, 0, step);
        store(whole(hn::ShiftRight<8>(pairs)), plane, y, 1, step);
    });
}

/// Columns of the mosaic, mirrored at its edges, and the rows that a strip needs of them.
class StripCutter
{
public:
    StripCutter(const BayerMosaic& source, int left)
        : mosaic(source)
        , first(left - StripPlane::columnHalo)
        , isInside(first >= 0 && first + width <= source.width)
    {
        for (int i = 0; i < width; ++i)
            columns[i] = static_cast<int>(mirrored(first + i, mosaic.width));
    }

    /// Fills row \p y of the plane with row \p top + y of the mosaic.
    void cut(int top, int y, StripPlane plane) const
    {
        const std::uint8_t* const from = rowAt(top + y);
        HWY_ALIGN std::uint8_t line[width + 64];
        if (isInside) {
            prefetch(rowAt(top + y + prefetchedRows));
            std::memcpy(line, from + first, width);
        } else {
            for (int i = 0; i < width; ++i)
                line[i] = from[columns[i]];
        }
        partLine(line, plane, y);
    }

private:
    static constexpr int width = StripPlane::columns + 2 * StripPlane::columnHalo;
    static constexpr int prefetchedRows = 4;

    const std::uint8_t* rowAt(int y) const
    {
        return mosaic.samples + mirrored(y, mosaic.height) * mosaic.width;
    }
    // Rows of a strip are too short for the processor to foresee the next ones.
    void prefetch(const std::uint8_t* row) const
    {
        constexpr int cacheLine = 64;
        for (int i = 0; i < width; i += cacheLine)
            hwy::Prefetch(row + first + i);
    }

    const BayerMosaic& mosaic;
    int first;
    bool isInside;
    int columns[width];
};

/// Interpolates the columns from \p left on of the rows of the band. Row 0 of the strip is row
/// \p top of the picture.
void bestStrip(const BayerMosaic& mosaic, RowBand band, int left, int top, const StripPlanes& strip,
               std::uint8_t* line, std::uint8_t* rgb)
{
    const StripCutter cutter(mosaic, left);
    const int firstColumn = left < 0 ? 0 : left;
    const int endColumn = std::min(left + StripPlane::columns, mosaic.width);
    constexpr int firstRow = 1 - lead;
    constexpr int ahead = mosaicLead - lead;
    for (int y = -mosaicLead; y < firstRow + ahead; ++y)
        cutter.cut(top, y, strip.mosaic);
    FinishedRow row;
    for (int y = firstRow; y < band.last - top + lead; ++y) {
        cutter.cut(top, y + ahead, strip.mosaic);
        interpolateRow(strip, y);
        const int done = y - lead;
        if (done + top < band.first)
            continue;
        finishRow(strip, done, &row);
        interleave(row, line);
        const std::size_t pixel = static_cast<std::size_t>(done + top) * mosaic.width + firstColumn;
        std::memcpy(rgb + 3 * pixel, line + 3 * (firstColumn - left),
                    3 * static_cast<std::size_t>(endColumn - firstColumn));
    }
}

void bestRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    constexpr std::size_t lineBytes = 3 * StripPlane::columns + 256;
    Scratch scratch(StripPlanes::scratchBytes() + lineBytes + Scratch::blockOverhead);
    const StripPlanes strip(scratch);
    std::uint8_t* const line = scratch.take<std::uint8_t>(lineBytes);
    const int top = band.first - mosaic.redRow; // bands start at even rows
    for (int left = -mosaic.redColumn; left < mosaic.width; left += StripPlane::columns)
        bestStrip(mosaic, band, left, top, strip, line, rgb);
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(bestRows);

void debayerBest(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(bestRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
