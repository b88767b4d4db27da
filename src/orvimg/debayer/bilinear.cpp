#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/bilinear.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/picture_writer-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// A mean of two samples, and in the lowest bit whether it was rounded up.
struct PairMean {
    ByteVector mean;
    ByteVector roundedUp;
};

HWY_INLINE PairMean meanOf(ByteVector a, ByteVector b)
{
    return {hn::AverageRound(a, b), hn::Xor(a, b)};
}

/// The mean of four, rounded to nearest: the mean of two rounded means is one too high where one
/// of them was rounded up and their sum is odd.
HWY_INLINE ByteVector meanOf(PairMean a, PairMean b)
{
    const auto one = hn::Set(Bytes(), 1);
    const auto excess = hn::And(hn::Or(a.roundedUp, b.roundedUp), hn::Xor(a.mean, b.mean));
    return hn::Sub(hn::AverageRound(a.mean, b.mean), hn::And(excess, one));
}

HWY_INLINE PairMean meanAt(const std::uint8_t* one, const std::uint8_t* another)
{
    return meanOf(hn::LoadU(Bytes(), one), hn::LoadU(Bytes(), another));
}

template <typename AnyPhase>
HWY_INLINE PixelVector bilinearPixels(AnyPhase phase, const Row<1>& row, int x)
{
    const ByteMask isChroma = phase.chromaLanes();
    const auto own = hn::LoadU(Bytes(), row[0] + x);
    const PairMean across = meanAt(row[0] + x - 1, row[0] + x + 1);
    const PairMean upright = meanAt(row[-1] + x, row[1] + x);
    const auto diagonal =
        meanOf(meanAt(row[-1] + x - 1, row[1] + x - 1), meanAt(row[-1] + x + 1, row[1] + x + 1));
    return {hn::IfThenElse(isChroma, own, across.mean),
            hn::IfThenElse(isChroma, meanOf(across, upright), own),
            hn::IfThenElse(isChroma, diagonal, upright.mean)};
}

void bilinearRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    writeRows<1>(mosaic, band, rgb, [](auto phase, const Row<1>& row, int x) HWY_ATTR {
        return bilinearPixels(phase, row, x);
    });
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(bilinearRows);

void debayerBilinear(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(bilinearRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
