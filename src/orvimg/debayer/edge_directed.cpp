#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/edge_directed.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/rows-inl.h>

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
    /// \return the entry of the site at column row.first of row \p y.
    HWY_INLINE std::int16_t* row(int y) const { return rows[(y + 3) % 3]; }

    /// Sites known on either side of the picture.
    static constexpr int margin = 16;

private:
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

HWY_INLINE void differenceRow(const Row<2>& row, std::int16_t* differences)
{
    const Shorts d;
    const int margin = DifferenceRows::margin;
    const int sites = (row.end - row.first) / 2 + 2;
    for (int i = -margin; i < sites; i += pixelsAtOnce() / 2) {
        const int x = row.first + 2 * i;
        hn::StoreU(hn::Sub(everySecond(row[0] + x), greenAt(row, x)), d, differences + i);
    }
}

/// \param above, here, below the differences at the site of column \p origin, and at the sites left
///   of it in the neighbouring rows
HWY_INLINE void edgeDirectedRow(const Row<2>& row, int origin, const std::int16_t* above,
                                const std::int16_t* here, const std::int16_t* below)
{
    const Shorts d;
    const auto one = hn::Set(d, 1);
    const auto two = hn::Set(d, 2);
    for (int x = row.first; x < row.end; x += pixelsAtOnce()) {
        const int i = (x - origin) / 2;
        const auto chroma = everySecond(row[0] + x);
        const auto green = everySecond(row[0] + x + 1);
        const auto difference = hn::LoadU(d, here + i);
        const auto greenAtChroma = hn::Sub(chroma, difference);
        const auto across = hn::Add(difference, hn::LoadU(d, here + i + 1));
        const auto left = hn::Add(hn::LoadU(d, above + i), hn::LoadU(d, below + i));
        const auto right = hn::Add(hn::LoadU(d, above + i + 1), hn::LoadU(d, below + i + 1));
        const auto chromaAtGreen = hn::Add(green, rounded(across, one, 1));
        const auto otherAtChroma = hn::Add(greenAtChroma, rounded(hn::Add(left, right), two, 2));
        const auto otherAtGreen = hn::Add(green, rounded(right, one, 1));
        storePixels(row.isRed, joined(chroma, chromaAtGreen), joined(greenAtChroma, green),
                    joined(otherAtChroma, otherAtGreen), row.rgb + 3 * x);
    }
}

void edgeDirectedRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    constexpr int held = 6;
    Scratch scratch(PaddedRows::scratchBytes(mosaic.width, held) +
                    RowWriter::scratchBytes(mosaic.width) +
                    DifferenceRows::scratchBytes(mosaic.width));
    PaddedRows rows(mosaic, held, scratch);
    const RowWriter writer(mosaic, rgb, scratch);
    const DifferenceRows differences(mosaic.width, scratch);
    rows.load(band.first - 3, band.first + 2);
    for (int y = band.first - 1; y <= band.last; ++y) {
        rows.load(y + 2);
        differenceRow(rowAt<2>(mosaic, rows, y, writer.row()), differences.row(y));
        const int done = y - 1;
        if (done < band.first)
            continue;
        const Row<2> row = rowAt<2>(mosaic, rows, done, writer.row());
        // A row that starts with chroma lies between rows that start left of the picture.
        const int left = row.first == 0 ? 0 : -1;
        const std::int16_t* const above = differences.row(done - 1) + left;
        const std::int16_t* const here = differences.row(done);
        const std::int16_t* const below = differences.row(done + 1) + left;
        const int origin = row.first;
        fillRow(row, done, rows, writer, [=](const Row<2>& piece) HWY_ATTR {
            edgeDirectedRow(piece, origin, above, here, below);
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
