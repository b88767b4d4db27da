#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/nearest.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/rows-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

HWY_INLINE void nearestRow(const Row<1>& row)
{
    const Bytes d;
    const auto isChroma = hn::MaskFromVec(hn::BitCast(d, hn::Set(Words(), 0x00FF)));
    for (int x = row.first; x < row.end; x += pixelsAtOnce()) {
        const auto own = hn::LoadU(d, row[0] + x);
        const auto right = hn::LoadU(d, row[0] + x + 1);
        const auto below = hn::LoadU(d, row[1] + x);
        const auto diagonal = hn::LoadU(d, row[1] + x + 1);
        storePixels(row.isRed, hn::IfThenElse(isChroma, own, right),
                    hn::IfThenElse(isChroma, right, own), hn::IfThenElse(isChroma, diagonal, below),
                    row.rgb + 3 * x);
    }
}

void nearestRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    forEachRow<1>(mosaic, band, rgb, [](const Row<1>& row) HWY_ATTR { nearestRow(row); });
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(nearestRows);

void debayerNearest(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(nearestRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
