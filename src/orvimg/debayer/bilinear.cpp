#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/bilinear.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/rows-inl.h>

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

HWY_INLINE void bilinearRow(const Row<1>& row)
{
    const Bytes d;
    const auto isChroma = hn::MaskFromVec(hn::BitCast(d, hn::Set(Words(), 0x00FF)));
    for (int x = row.first; x < row.end; x += pixelsAtOnce()) {
        const auto own = hn::LoadU(d, row[0] + x);
        const PairMean across = meanAt(row[0] + x - 1, row[0] + x + 1);
        const PairMean upright = meanAt(row[-1] + x, row[1] + x);
        const auto diagonal = meanOf(meanAt(row[-1] + x - 1, row[1] + x - 1),
                                     meanAt(row[-1] + x + 1, row[1] + x + 1));
        storePixels(row.isRed, hn::IfThenElse(isChroma, own, across.mean),
                    hn::IfThenElse(isChroma, meanOf(across, upright), own),
                    hn::IfThenElse(isChroma, diagonal, upright.mean), row.rgb + 3 * x);
    }
}

void bilinearRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    forEachRow<1>(mosaic, band, rgb, [](const Row<1>& row) HWY_ATTR { bilinearRow(row); });
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
