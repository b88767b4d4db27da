#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include <hwy/cache_control.h>

#include <orvimg/color_matrix.h>
#include <orvimg/parallel.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/color_correction.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

// A processor without byte shuffles: vectors of one lane cannot be regrouped.
void CorrectPixels(const ColorMatrix& matrix, std::uint8_t* rgb, std::size_t pixels)
{
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, rgb += 3) {
        const ColorMatrix::Row input{float(rgb[0]), float(rgb[1]), float(rgb[2])};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const ColorMatrix::Row& row = matrix.coefficients[channel];
            const float level =
                matrix.offsets[channel] + row[0] * input[0] + row[1] * input[1] + row[2] * input[2];
            rgb[channel] = static_cast<std::uint8_t>(std::clamp(level, 0.0F, 255.0F) + 0.5F);
        }
    }
}

void CorrectPixelsFixed(const FixedColorMatrix& matrix, std::uint8_t* rgb, std::size_t pixels)
{
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, rgb += 3) {
        const std::array<int, 3> input{rgb[0], rgb[1], rgb[2]};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const FixedColorMatrix::Row& row = matrix.coefficients[channel];
            const int sum = row[0] * input[0] + row[1] * input[1] + row[2] * input[2];
            constexpr int scale = FixedColorMatrix::coefficientScale / FixedColorMatrix::levelScale;
            const int level = sum / scale + matrix.offsets[channel] - FixedColorMatrix::zeroLevel;
            rgb[channel] =
                static_cast<std::uint8_t>(std::clamp(level / FixedColorMatrix::levelScale, 0, 255));
        }
    }
}

#else

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::int16_t, Bytes>;
using Levels = hn::Repartition<std::int32_t, Bytes>;
using Bits = hn::RebindToUnsigned<Levels>;
using Floats = hn::RebindToFloat<Levels>;

/// A vector of each channel; every fourth pixel is taken at a time, so that no lane ever moves.
struct Pixels {
    hn::Vec<Bits> red;
    hn::Vec<Bits> green;
    hn::Vec<Bits> blue;
};

template <int place>
HWY_INLINE hn::Vec<Floats> LevelsAt(hn::Vec<Bits> channel)
{
    auto level = hn::ShiftRight<8 * place>(channel);
    if (place < 3)
        level = hn::And(level, hn::Set(Bits(), 0xFF));
    return hn::ConvertTo(Floats(), hn::BitCast(Levels(), level));
}

HWY_INLINE hn::Vec<Bits> Corrected(hn::Vec<Floats> red, hn::Vec<Floats> green, hn::Vec<Floats> blue,
                                   const ColorMatrix::Row& row, float offset)
{
    const Floats floats;
    auto level = hn::MulAdd(red, hn::Set(floats, row[0]), hn::Set(floats, offset));
    level = hn::MulAdd(green, hn::Set(floats, row[1]), level);
    level = hn::MulAdd(blue, hn::Set(floats, row[2]), level);
    level = hn::Min(hn::Max(level, hn::Zero(floats)), hn::Set(floats, 255.0F));
    // At this magnitude the last bit of a float is worth one: the sum is rounded to nearest and
    // its lowest byte is the level.
    return hn::BitCast(Bits(), hn::Add(level, hn::Set(floats, 8388608.0F)));
}

template <int place>
HWY_INLINE Pixels CorrectedAt(const Pixels& pixels, const ColorMatrix& matrix)
{
    const auto red = LevelsAt<place>(pixels.red);
    const auto green = LevelsAt<place>(pixels.green);
    const auto blue = LevelsAt<place>(pixels.blue);
    const auto& rows = matrix.coefficients;
    return {Corrected(red, green, blue, rows[0], matrix.offsets[0]),
            Corrected(red, green, blue, rows[1], matrix.offsets[1]),
            Corrected(red, green, blue, rows[2], matrix.offsets[2])};
}

HWY_INLINE hn::Vec<Bits> Joined(hn::Vec<Bits> first, hn::Vec<Bits> second, hn::Vec<Bits> third,
                                hn::Vec<Bits> fourth)
{
    // Only the first is not shifted clear of the float's exponent.
    const auto low = hn::Or(hn::And(first, hn::Set(Bits(), 0xFF)), hn::ShiftLeft<8>(second));
    return hn::Or(low, hn::Or(hn::ShiftLeft<16>(third), hn::ShiftLeft<24>(fourth)));
}

HWY_INLINE void CorrectVector(const ColorMatrix& matrix, std::uint8_t* HWY_RESTRICT rgb)
{
    const Bytes bytes;
    const Bits bits;
    hn::Vec<Bytes> red;
    hn::Vec<Bytes> green;
    hn::Vec<Bytes> blue;
    hn::LoadInterleaved3(bytes, rgb, red, green, blue);
    const Pixels pixels{hn::BitCast(bits, red), hn::BitCast(bits, green), hn::BitCast(bits, blue)};
    const Pixels first = CorrectedAt<0>(pixels, matrix);
    const Pixels second = CorrectedAt<1>(pixels, matrix);
    const Pixels third = CorrectedAt<2>(pixels, matrix);
    const Pixels fourth = CorrectedAt<3>(pixels, matrix);
    hn::StoreInterleaved3(
        hn::BitCast(bytes, Joined(first.red, second.red, third.red, fourth.red)),
        hn::BitCast(bytes, Joined(first.green, second.green, third.green, fourth.green)),
        hn::BitCast(bytes, Joined(first.blue, second.blue, third.blue, fourth.blue)), bytes, rgb);
}

/// Every other byte of a channel, scaled by 128 so that a product keeps its fraction.
HWY_INLINE hn::Vec<Words> EvenBytes(hn::Vec<Bytes> channel)
{
    const Words words;
    return hn::And(hn::ShiftLeft<7>(hn::BitCast(words, channel)), hn::Set(words, 0x7F80));
}

HWY_INLINE hn::Vec<Words> OddBytes(hn::Vec<Bytes> channel)
{
    const Words words;
    return hn::And(hn::ShiftRight<1>(hn::BitCast(words, channel)), hn::Set(words, 0x7F80));
}

HWY_INLINE hn::Vec<Words> RaisedLevel(hn::Vec<Words> red, hn::Vec<Words> green, hn::Vec<Words> blue,
                                      const FixedColorMatrix::Row& row, std::int16_t offset)
{
    const Words words;
    const auto warm = hn::Add(hn::MulFixedPoint15(red, hn::Set(words, row[0])),
                              hn::MulFixedPoint15(green, hn::Set(words, row[1])));
    const auto sum = hn::Add(warm, hn::MulFixedPoint15(blue, hn::Set(words, row[2])));
    return hn::Max(hn::SaturatedAdd(sum, hn::Set(words, offset)),
                   hn::Set(words, FixedColorMatrix::zeroLevel));
}

HWY_INLINE void CorrectVector(const FixedColorMatrix& matrix, std::uint8_t* HWY_RESTRICT rgb)
{
    const Bytes bytes;
    hn::Vec<Bytes> red;
    hn::Vec<Bytes> green;
    hn::Vec<Bytes> blue;
    hn::LoadInterleaved3(bytes, rgb, red, green, blue);
    const auto evenRed = EvenBytes(red);
    const auto evenGreen = EvenBytes(green);
    const auto evenBlue = EvenBytes(blue);
    const auto oddRed = OddBytes(red);
    const auto oddGreen = OddBytes(green);
    const auto oddBlue = OddBytes(blue);
    const auto corrected = [&](std::size_t channel) HWY_ATTR {
        const FixedColorMatrix::Row& row = matrix.coefficients[channel];
        const std::int16_t offset = matrix.offsets[channel];
        const auto even = RaisedLevel(evenRed, evenGreen, evenBlue, row, offset);
        const auto odd = RaisedLevel(oddRed, oddGreen, oddBlue, row, offset);
        // The eight bits of the level lie in the middle of the word.
        return hn::OddEven(hn::BitCast(bytes, hn::ShiftLeft<4>(odd)),
                           hn::BitCast(bytes, hn::ShiftRight<4>(even)));
    };
    hn::StoreInterleaved3(corrected(0), corrected(1), corrected(2), bytes, rgb);
}

/// The processor does not look ahead beyond the end of a page; touching memory early here does.
constexpr std::size_t prefetchDistance = 2048;

template <class Matrix>
HWY_INLINE void CorrectAll(const Matrix& matrix, std::uint8_t* rgb, std::size_t pixels)
{
    const std::size_t lanes = hn::Lanes(Bytes());
    // A copy that nothing else can point to stays in registers.
    const Matrix constants = matrix;
    for (; pixels >= lanes; pixels -= lanes, rgb += 3 * lanes) {
        for (std::size_t vector = 0; vector < 3; ++vector)
            hwy::Prefetch(rgb + prefetchDistance + vector * lanes);
        CorrectVector(constants, rgb);
    }
    if (pixels == 0)
        return;
    HWY_ALIGN std::uint8_t rest[3 * hn::MaxLanes(Bytes())] = {};
    std::memcpy(rest, rgb, 3 * pixels);
    CorrectVector(constants, rest);
    std::memcpy(rgb, rest, 3 * pixels);
}

void CorrectPixels(const ColorMatrix& matrix, std::uint8_t* rgb, std::size_t pixels)
{
    CorrectAll(matrix, rgb, pixels);
}

void CorrectPixelsFixed(const FixedColorMatrix& matrix, std::uint8_t* rgb, std::size_t pixels)
{
    CorrectAll(matrix, rgb, pixels);
}

#endif

} // namespace orvimg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace orvimg
{

namespace
{

HWY_EXPORT(CorrectPixels);
HWY_EXPORT(CorrectPixelsFixed);

constexpr int minimumRowsPerBand = 64;

struct ColorContext {
    ColorMatrix matrix;
    FixedColorMatrix fixedMatrix;
    bool isIdentity = true;
    bool fitsFixed = false;
};

/// Brings an argument into a range within which no product overflows a float; NaN is neutral.
double sane(double value, double neutral)
{
    constexpr double limit = 1e6;
    return std::isnan(value) ? neutral : std::clamp(value, -limit, limit);
}

constexpr std::array<double, 3> lumaWeights{0.299, 0.587, 0.114};
constexpr double cbScale = 0.564;
constexpr double crScale = 0.713;

using Vector = std::array<double, 3>; ///< one weight for each of red, green and blue

Vector combined(double a, const Vector& first, double b, const Vector& second)
{
    return {a * first[0] + b * second[0], a * first[1] + b * second[1],
            a * first[2] + b * second[2]};
}

/// The three output channels as weights of the gained input, before lightness and offsets.
std::array<Vector, 3> chromaMatrix(double hueDegrees, double saturation)
{
    const Vector& luma = lumaWeights;
    const Vector cb = combined(cbScale, {0, 0, 1}, -cbScale, luma);
    const Vector cr = combined(crScale, {1, 0, 0}, -crScale, luma);
    constexpr double degree = 3.14159265358979323846 / 180;
    const double angle = hueDegrees * degree;
    const double cosine = saturation * std::cos(angle);
    const double sine = saturation * std::sin(angle);
    const Vector turnedCb = combined(cosine, cb, sine, cr);
    const Vector turnedCr = combined(cosine, cr, -sine, cb);

    // Each row is the luma plus a chroma part, so that no saturation leaves three equal rows.
    const Vector redChroma = combined(1 / crScale, turnedCr, 0, turnedCr);
    const Vector blueChroma = combined(1 / cbScale, turnedCb, 0, turnedCb);
    const Vector greenChroma =
        combined(-luma[0] / luma[1], redChroma, -luma[2] / luma[1], blueChroma);
    return {combined(1, luma, 1, redChroma), combined(1, luma, 1, greenChroma),
            combined(1, luma, 1, blueChroma)};
}

/// Settings that are neutral but for rounding must not change a byte, and cost nothing.
bool isIdentity(const ColorMatrix& matrix)
{
    constexpr float tolerance = 1e-6F;
    const ColorMatrix identity;
    for (std::size_t row = 0; row < 3; ++row) {
        if (matrix.offsets[row] != 0)
            return false;
        for (std::size_t column = 0; column < 3; ++column) {
            if (std::abs(matrix.coefficients[row][column] - identity.coefficients[row][column]) >
                tolerance)
                return false;
        }
    }
    return true;
}

/// Whether no sum of 16 bits can overflow before it is limited.
bool fitsFixed(const ColorMatrix& matrix)
{
    constexpr float largestRow = 7.99F; // times 255 levels and the scale: just below 2^15
    constexpr float largestOffset = 255.0F;
    for (std::size_t row = 0; row < 3; ++row) {
        const ColorMatrix::Row& weights = matrix.coefficients[row];
        if (std::abs(weights[0]) + std::abs(weights[1]) + std::abs(weights[2]) > largestRow ||
            std::abs(matrix.offsets[row]) > largestOffset)
            return false;
    }
    return true;
}

FixedColorMatrix toFixed(const ColorMatrix& matrix)
{
    FixedColorMatrix fixed;
    constexpr int half = FixedColorMatrix::levelScale / 2;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            fixed.coefficients[row][column] = static_cast<std::int16_t>(
                std::lround(matrix.coefficients[row][column] * FixedColorMatrix::coefficientScale));
        fixed.offsets[row] = static_cast<std::int16_t>(
            FixedColorMatrix::zeroLevel + half +
            std::lround(matrix.offsets[row] * FixedColorMatrix::levelScale));
    }
    return fixed;
}

void correct(const ColorContext& color, std::uint8_t* rgb, std::size_t pixels)
{
    if (color.fitsFixed)
        HWY_DYNAMIC_DISPATCH(CorrectPixelsFixed)(color.fixedMatrix, rgb, pixels);
    else
        HWY_DYNAMIC_DISPATCH(CorrectPixels)(color.matrix, rgb, pixels);
}

} // namespace

} // namespace orvimg

void* color_correction_init(void)
{
    return new (std::nothrow) orvimg::ColorContext;
}

void color_correction_set(void* context, double redGain, double redOffset, double greenGain,
                          double greenOffset, double blueGain, double blueOffset, double hue,
                          double saturation, double lightness, double offset)
{
    using orvimg::sane;
    if (context == nullptr)
        return;
    const std::array<double, 3> gains{sane(redGain, 1), sane(greenGain, 1), sane(blueGain, 1)};
    const std::array<double, 3> offsets{sane(redOffset, 0), sane(greenOffset, 0),
                                        sane(blueOffset, 0)};
    const double scale = sane(lightness, 1);
    const double commonOffset = sane(offset, 0);
    const double turn = sane(std::remainder(hue, 360.0), 0); // of an endless hue: none
    const auto chroma = orvimg::chromaMatrix(turn, sane(saturation, 1));

    auto& color = *static_cast<orvimg::ColorContext*>(context);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            color.matrix.coefficients[row][column] =
                static_cast<float>(scale * chroma[row][column] * gains[column]);
        color.matrix.offsets[row] = static_cast<float>((offsets[row] + commonOffset) * 255);
    }
    color.isIdentity = orvimg::isIdentity(color.matrix);
    color.fitsFixed = orvimg::fitsFixed(color.matrix);
    if (color.fitsFixed)
        color.fixedMatrix = orvimg::toFixed(color.matrix);
}

void color_correction24(void* context, unsigned char* rgb, int width, int height)
{
    if (context == nullptr || rgb == nullptr || width <= 0 || height <= 0)
        return;
    const auto& color = *static_cast<const orvimg::ColorContext*>(context);
    if (color.isIdentity)
        return;
    const auto rowPixels = static_cast<std::size_t>(width);
    const auto correctRows = [&](int firstRow, int endRow) {
        const auto first = static_cast<std::size_t>(firstRow) * rowPixels;
        const auto end = static_cast<std::size_t>(endRow) * rowPixels;
        orvimg::correct(color, rgb + 3 * first, end - first);
    };
    orvimg::asFarAsMemoryAllows(
        [&] { orvimg::forEachRowBand(height, orvimg::minimumRowsPerBand, correctRows); });
}

void color_correction_done(void* context)
{
    const std::unique_ptr<orvimg::ColorContext> owned(static_cast<orvimg::ColorContext*>(context));
}

#endif
