#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/gradient_corrected.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/picture_writer-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// The sums of the samples around a site that the filters weigh alike.
struct Surroundings {
    ShortVector centre;
    ShortVector across;    // left and right
    ShortVector upright;   // above and below
    ShortVector farAcross; // two apart
    ShortVector farUpright;
    ShortVector diagonal;
};

HWY_INLINE Surroundings lookAround(const Row<2>& row, int x)
{
    const auto at = [&](int dx, int dy) HWY_ATTR { return everySecond(row[dy] + x + dx); };
    return {at(0, 0),
            hn::Add(at(-1, 0), at(1, 0)),
            hn::Add(at(0, -1), at(0, 1)),
            hn::Add(at(-2, 0), at(2, 0)),
            hn::Add(at(0, -2), at(0, 2)),
            hn::Add(hn::Add(at(-1, -1), at(1, -1)), hn::Add(at(-1, 1), at(1, 1)))};
}

/// (value + half) / 2^bits
template <int bits>
HWY_INLINE ShortVector rounded(ShortVector value)
{
    return hn::ShiftRight<bits>(hn::Add(value, hn::Set(Shorts(), 1 << (bits - 1))));
}

HWY_INLINE ShortVector times3(ShortVector v)
{
    return hn::Add(hn::Add(v, v), v);
}

/// Green at a chroma site: (4 c + 2 near - far) / 8.
HWY_INLINE ShortVector greenAtChroma(const Surroundings& s)
{
    const auto near = hn::Add(hn::Add(s.across, s.upright), hn::Add(s.centre, s.centre));
    return rounded<3>(hn::Sub(hn::Add(near, near), hn::Add(s.farAcross, s.farUpright)));
}

/// The other chroma at a chroma site: (12 c + 4 diagonal - 3 far) / 16.
HWY_INLINE ShortVector chromaAtChroma(const Surroundings& s)
{
    const auto close = hn::ShiftLeft<2>(hn::Add(times3(s.centre), s.diagonal));
    return rounded<4>(hn::Sub(close, times3(hn::Add(s.farAcross, s.farUpright))));
}

/// A chroma at a green site with its samples along one axis:
/// (10 c + 8 near - 2 (diagonal + far along the axis) + far across the axis) / 16.
HWY_INLINE ShortVector chromaAtGreen(const Surroundings& s, ShortVector near, ShortVector farAlong,
                                     ShortVector farAside)
{
    const auto fivefold = hn::Add(hn::ShiftLeft<2>(hn::Add(s.centre, near)), s.centre);
    const auto half = hn::Sub(fivefold, hn::Add(s.diagonal, farAlong));
    return rounded<4>(hn::Add(hn::Add(half, half), farAside));
}

template <typename AnyPhase>
HWY_INLINE PixelVector gradientCorrectedPixels(AnyPhase phase, const Row<2>& row, int x)
{
    const Surroundings c = lookAround(row, x + phase.chroma);
    const Surroundings g = lookAround(row, x + phase.green);
    const auto ownAtGreen = chromaAtGreen(g, g.across, g.farAcross, g.farUpright);
    const auto otherAtGreen = chromaAtGreen(g, g.upright, g.farUpright, g.farAcross);
    return {phase.joined(c.centre, ownAtGreen), phase.joined(greenAtChroma(c), g.centre),
            phase.joined(chromaAtChroma(c), otherAtGreen)};
}

void gradientCorrectedRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    writeRows<2>(mosaic, band, rgb, [](auto phase, const Row<2>& row, int x) HWY_ATTR {
        return gradientCorrectedPixels(phase, row, x);
    });
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(gradientCorrectedRows);

void debayerGradientCorrected(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(gradientCorrectedRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
