#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/edge_directed.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/picture_writer-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// Differences chroma - green of three rows of a mosaic, at the chroma sites.
class DifferenceRows
{
public:
    static std::size_t scratchBytes(int width)
    {
        return 3 * (strideFor(width) * sizeof(std::int16_t) + Scratch::blockOverhead);
    }
    DifferenceRows(int width, Scratch& scratch)
    {
        for (std::int16_t*& row : rows)
            row = scratch.take<std::int16_t>(strideFor(width)) + margin;
    }
    /// \return the entry of the first chroma site of row \p y, counted from column 0 or -1.
    HWY_INLINE std::int16_t* row(int y) const { return rows[(y + 3) % 3]; }

private:
    // Sites on either side of the picture that a vector may hold.
    static constexpr int margin = longestVector / 2 + 8;

    static std::size_t strideFor(int width)
    {
        return static_cast<std::size_t>(width) / 2 + 2 * margin + 64;
    }

    std::int16_t* rows[3];
};

HWY_INLINE ShortVector rounded(ShortVector value, ShortVector half, int bits)
{
    return hn::ShiftRightSame(hn::Add(value, half), bits);
}

/// Green at the chroma sites from \p x on, 0 ... 255.
HWY_INLINE ShortVector greenAt(const Row<2>& row, int x)
{
    const Shorts d;
    const auto at = [&](int dx, int dy) HWY_ATTR { return everySecond(row[dy] + x + dx); };
    const auto centre = at(0, 0);
    const auto twice = hn::Add(centre, centre);
    const auto left = at(-1, 0);
    const auto right = at(1, 0);
    const auto above = at(0, -1);
    const auto below = at(0, 1);
    const auto curvatureAcross = hn::Sub(twice, hn::Add(at(-2, 0), at(2, 0)));
    const auto curvatureUpright = hn::Sub(twice, hn::Add(at(0, -2), at(0, 2)));
    const auto changeAcross = hn::Add(hn::Abs(hn::Sub(left, right)), hn::Abs(curvatureAcross));
    const auto changeUpright = hn::Add(hn::Abs(hn::Sub(above, below)), hn::Abs(curvatureUpright));
    const auto sumAcross = hn::Add(left, right);
    const auto sumUpright = hn::Add(above, below);
    const auto across = hn::Add(hn::Add(sumAcross, sumAcross), curvatureAcross);
    const auto upright = hn::Add(hn::Add(sumUpright, sumUpright), curvatureUpright);
    const auto isUpright = hn::Gt(changeAcross, hn::Add(changeUpright, changeUpright));
    const auto isAcross = hn::Gt(changeUpright, hn::Add(changeAcross, changeAcross));
    // Where neither stands out the mean of both is taken: doubled, one formula serves all.
    const auto chosenAcross = hn::IfThenElse(isUpright, upright, across);
    const auto chosenUpright = hn::IfThenElse(isAcross, across, upright);
    const auto green = rounded(hn::Add(chosenAcross, chosenUpright), hn::Set(d, 4), 3);
    return hn::Min(hn::Max(green, hn::Zero(d)), hn::Set(d, 255));
}

/// The chroma site from which the sites of a row are counted: column 0, or -1 where the row starts
/// with green.
HWY_INLINE int origin(const Row<2>& row)
{
    return -row.chromaColumn;
}

HWY_INLINE void differenceRow(const WholeRow<2>& row, std::int16_t* differences)
{
    const int start = origin(row.inPlace);
    const int end = row.width + 4; // two more sites
    forEachVector(row, start - pixelsAtOnce(), end,
                  [=](const Row<2>& samples, int x, auto) HWY_ATTR ORVIMG_INLINED {
                      hn::StoreU(hn::Sub(everySecond(samples[0] + x), greenAt(samples, x)),
                                 Shorts(), differences + (x - start) / 2);
                  });
}

/// The differences around a row: its own at the origin, and at the sites left of that in the
/// neighbouring rows.
struct Differences {
    const std::int16_t* above;
    const std::int16_t* here;
    const std::int16_t* below;
};

HWY_INLINE Differences differencesAround(const Row<2>& row, const DifferenceRows& rows)
{
    // A row that starts with chroma lies between rows that start left of the picture.
    const int left = origin(row) == 0 ? 0 : -1;
    return {rows.row(row.y - 1) + left, rows.row(row.y), rows.row(row.y + 1) + left};
}

template <typename AnyPhase>
HWY_INLINE PixelVector edgeDirectedPixels(AnyPhase phase, const Row<2>& row, int x,
                                          const Differences& differences)
{
    const Shorts d;
    const auto one = hn::Set(d, 1);
    const auto two = hn::Set(d, 2);
    // Sites of chroma, and those left of green.
    const int c = (x + phase.chroma - origin(row)) / 2;
    const int g = c - phase.chroma;
    const auto sum = [d](const std::int16_t* a, const std::int16_t* b)
                         HWY_ATTR { return hn::Add(hn::LoadU(d, a), hn::LoadU(d, b)); };
    const auto chroma = everySecond(row[0] + x + phase.chroma);
    const auto green = everySecond(row[0] + x + phase.green);
    const auto greenAtChroma = hn::Sub(chroma, hn::LoadU(d, differences.here + c));
    const auto across = sum(differences.here + g, differences.here + g + 1);
    const auto left = sum(differences.above + c, differences.below + c);
    const auto right = sum(differences.above + c + 1, differences.below + c + 1);
    const auto upright = sum(differences.above + g + 1, differences.below + g + 1);
    const auto chromaAtGreen = hn::Add(green, rounded(across, one, 1));
    const auto otherAtChroma = hn::Add(greenAtChroma, rounded(hn::Add(left, right), two, 2));
    const auto otherAtGreen = hn::Add(green, rounded(upright, one, 1));
    return {phase.joined(chroma, chromaAtGreen), phase.joined(greenAtChroma, green),
            phase.joined(otherAtChroma, otherAtGreen)};
}

void edgeDirectedRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    constexpr int held = 6;
    Scratch scratch(PaddedRows::scratchBytes(mosaic.width, held) +
                    DifferenceRows::scratchBytes(mosaic.width));
    PaddedRows rows(mosaic, held, scratch);
    const PictureWriter writer(mosaic, rgb);
    const DifferenceRows differences(mosaic.width, scratch);
    for (int y = band.first - 3; y < band.first + 1; ++y)
        rows.load(y);
    for (int y = band.first - 1; y <= band.last; ++y) {
        rows.load(y + 2);
        differenceRow(wholeRow<2>(mosaic, rows, y), differences.row(y));
        if (y - 1 < band.first)
            continue;
        const WholeRow<2> row = wholeRow<2>(mosaic, rows, y - 1);
        const Differences around = differencesAround(row.inPlace, differences);
        writer.write(row, y + 3, [around](auto phase, const Row<2>& samples, int x) HWY_ATTR {
            return edgeDirectedPixels(phase, samples, x, around);
        });
    }
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(edgeDirectedRows);

void debayerEdgeDirected(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(edgeDirectedRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
