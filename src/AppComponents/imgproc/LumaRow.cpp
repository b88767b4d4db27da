#include <AppComponents/imgproc/LumaRow.h>

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "AppComponents/imgproc/LumaRow.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace luma::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR // the plain loops behind the kernels do everything

bool anyRow(MosaicRow, const unsigned char*, std::ptrdiff_t, unsigned char*)
{
    return false;
}

#else

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using Vector = hn::Vec<Words>; // two neighbouring samples in each lane

Vector load(const unsigned char* at)
{
    return hn::BitCast(Words(), hn::LoadU(Bytes(), at));
}

Vector low(Vector pair)
{
    return hn::And(pair, hn::Set(Words(), 0xFF));
}

Vector high(Vector pair)
{
    return hn::ShiftRight<8>(pair);
}

Vector mean(Vector a, Vector b)
{
    return hn::ShiftRight<1>(hn::Add(a, b));
}

// (299 red + 587 green + 114 blue) / 1000 without leaving 16 bits: first an eighth of the sum,
// 37 red + 73 green + 14 blue + (3 red + 3 green + 2 blue) / 8, at most 31875, then a 125th of
// that as (x * 33555) >> 22. Both divisions are exact for every colour.
template <bool rowIsRed>
Vector weighted(Vector rowColor, Vector green, Vector otherColor)
{
    const Words d;
    const Vector red = rowIsRed ? rowColor : otherColor;
    const Vector blue = rowIsRed ? otherColor : rowColor;
    const Vector redAndGreen = hn::Add(red, green);
    const Vector small =
        hn::Add(hn::Add(redAndGreen, redAndGreen), hn::Add(redAndGreen, hn::Add(blue, blue)));
    const Vector large =
        hn::Add(hn::Add(hn::Mul(red, hn::Set(d, 37)), hn::Mul(green, hn::Set(d, 73))),
                hn::Mul(blue, hn::Set(d, 14)));
    const Vector eighth = hn::Add(large, hn::ShiftRight<3>(small));
    return hn::ShiftRight<6>(hn::MulHigh(eighth, hn::Set(d, 33555)));
}

/// One vector of pixels, the first of which is a green site or not.
template <bool rowIsRed, bool greenFirst>
void pixels(const unsigned char* at, std::ptrdiff_t cols, unsigned char* dst)
{
    const Vector center = load(at);
    const Vector sidesOfLow = mean(low(load(at - 1)), high(center));
    const Vector sidesOfHigh = mean(low(center), high(load(at + 1)));
    const Vector above = load(at - cols);
    const Vector below = load(at + cols);
    Vector lowLuma;
    Vector highLuma;
    if (greenFirst) {
        lowLuma = weighted<rowIsRed>(sidesOfLow, low(center), mean(low(above), low(below)));
        highLuma = weighted<rowIsRed>(high(center), sidesOfHigh,
                                      mean(low(above), high(load(at + cols + 1))));
    } else {
        lowLuma = weighted<rowIsRed>(low(center), sidesOfLow,
                                     mean(low(load(at - cols - 1)), high(below)));
        highLuma = weighted<rowIsRed>(sidesOfHigh, high(center), mean(high(above), high(below)));
    }
    hn::StoreU(hn::BitCast(Bytes(), hn::Or(lowLuma, hn::ShiftLeft<8>(highLuma))), Bytes(), dst);
}

template <bool rowIsRed, bool greenIsOdd>
bool row(const unsigned char* samples, std::ptrdiff_t cols, unsigned char* dst)
{
    const std::ptrdiff_t lanes = hn::Lanes(Bytes());
    if (cols < lanes + 2)
        return false;
    const std::ptrdiff_t last = cols - 1 - lanes;
    for (std::ptrdiff_t x = 1; x < last; x += lanes)
        pixels<rowIsRed, greenIsOdd>(samples + x, cols, dst + x);
    if (last % 2 == 1)
        pixels<rowIsRed, greenIsOdd>(samples + last, cols, dst + last);
    else
        pixels<rowIsRed, !greenIsOdd>(samples + last, cols, dst + last);
    return true;
}

/// \return false, having done nothing, for rows too short for a vector.
bool anyRow(MosaicRow kind, const unsigned char* samples, std::ptrdiff_t cols, unsigned char* dst)
{
    if (kind.red)
        return kind.greenIsEven ? row<true, false>(samples, cols, dst)
                                : row<true, true>(samples, cols, dst);
    return kind.greenIsEven ? row<false, false>(samples, cols, dst)
                            : row<false, true>(samples, cols, dst);
}

#endif // HWY_TARGET

} // namespace luma::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace luma
{
HWY_EXPORT(anyRow);

void shortRow(MosaicRow kind, const unsigned char* row, std::ptrdiff_t cols, unsigned char* dst)
{
    const unsigned char* const above = row - cols;
    const unsigned char* const below = row + cols;
    const unsigned own = kind.red ? 299 : 114;
    const unsigned other = kind.red ? 114 : 299;
    for (std::ptrdiff_t x = 1; x < cols - 1; ++x) {
        const unsigned sides = (row[x - 1] + row[x + 1]) / 2U;
        const bool green = (x % 2 == 0) == kind.greenIsEven;
        const unsigned sum =
            green ? own * sides + 587U * row[x] + other * ((above[x] + below[x]) / 2U)
                  : own * row[x] + 587U * sides + other * ((above[x - 1] + below[x + 1]) / 2U);
        dst[x] = static_cast<unsigned char>(sum / 1000);
    }
}
} // namespace luma

void lumaRow(MosaicRow kind, const unsigned char* row, std::ptrdiff_t cols, unsigned char* dst)
{
    using namespace luma;
    if (!HWY_DYNAMIC_DISPATCH(anyRow)(kind, row, cols, dst))
        shortRow(kind, row, cols, dst);
}
#endif
