#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/cell.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/picture_writer-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// The samples of a vector's cells in one of their rows.
struct CellRow {
    ByteVector chroma;
    ByteVector green;
};

HWY_INLINE CellRow cellRow(const std::uint8_t* samples, ByteMask isLeft, ByteMask isChroma)
{
    const Bytes d;
    const auto own = hn::LoadU(d, samples);
    const auto partner =
        hn::IfThenElse(isLeft, hn::LoadU(d, samples + 1), hn::LoadU(d, samples - 1));
    return {hn::IfThenElse(isChroma, own, partner), hn::IfThenElse(isChroma, partner, own)};
}

template <typename AnyPhase>
HWY_INLINE PixelVector cellPixels(AnyPhase phase, const Row<1>& row, int x)
{
    const int otherRow = (row.y & 1) == 0 ? 1 : -1;
    const ByteMask isChroma = phase.chromaLanes();
    const ByteMask isGreen = hn::Not(isChroma);
    const ByteMask isLeft = row.chromaColumn == 0 ? isChroma : isGreen;
    const CellRow own = cellRow(row[0] + x, isLeft, isChroma);
    const CellRow other = cellRow(row[otherRow] + x, isLeft, isGreen);
    return {own.chroma, hn::AverageRound(own.green, other.green), other.chroma};
}

void cellRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    writeRows<1>(mosaic, band, rgb, [](auto phase, const Row<1>& row, int x) HWY_ATTR {
        return cellPixels(phase, row, x);
    });
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(cellRows);

void debayerCell(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(cellRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
