#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/nearest.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/picture_writer-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

template <typename AnyPhase>
HWY_INLINE PixelVector nearestPixels(AnyPhase phase, const Row<1>& row, int x)
{
    const Bytes d;
    const ByteMask isChroma = phase.chromaLanes();
    const auto own = hn::LoadU(d, row[0] + x);
    const auto right = hn::LoadU(d, row[0] + x + 1);
    const auto below = hn::LoadU(d, row[1] + x);
    const auto diagonal = hn::LoadU(d, row[1] + x + 1);
    return {hn::IfThenElse(isChroma, own, right), hn::IfThenElse(isChroma, right, own),
            hn::IfThenElse(isChroma, diagonal, below)};
}

void nearestRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    writeRows<1>(mosaic, band, rgb, [](auto phase, const Row<1>& row, int x) HWY_ATTR {
        return nearestPixels(phase, row, x);
    });
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
