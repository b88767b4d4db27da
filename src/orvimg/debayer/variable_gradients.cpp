#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/variable_gradients.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/picture_writer-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// The 5x5 samples around a site.
class Window
{
public:
    HWY_INLINE Window(const Row<2>& row, int x)
    {
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx)
                samples[dy + 2][dx + 2] = everySecond(row[dy] + x + dx);
        }
    }
    HWY_INLINE ShortVector operator()(int x, int y) const { return samples[y + 2][x + 2]; }

private:
    ShortVector samples[5][5];
};

HWY_INLINE ShortVector twice(ShortVector v)
{
    return hn::Add(v, v);
}

HWY_INLINE ShortVector distance(ShortVector a, ShortVector b)
{
    return hn::Abs(hn::Sub(a, b));
}

/// Twice the gradients towards the eight neighbours: up, down, left, right and the diagonals
/// up-left, up-right, down-left, down-right.
struct Gradients {
    ShortVector towards[8];
};

/// Those of two opposite directions.
struct GradientPair {
    ShortVector back;
    ShortVector forth;
};

/// Looks at the window as it is, or with rows and columns exchanged.
template <bool transposed>
HWY_INLINE ShortVector turned(const Window& w, int aside, int ahead)
{
    return transposed ? w(ahead, aside) : w(aside, ahead);
}

/// The gradients up and down, or with \p transposed left and right.
template <bool transposed>
HWY_INLINE GradientPair straightGradients(const Window& w)
{
    const auto change = [&](int aside, int ahead) HWY_ATTR {
        return distance(turned<transposed>(w, aside, ahead),
                        turned<transposed>(w, aside, ahead - 2));
    };
    const auto common = hn::Add(twice(change(0, 1)), hn::Add(change(-1, 1), change(1, 1)));
    const auto back = hn::Add(twice(change(0, 0)), hn::Add(change(-1, 0), change(1, 0)));
    const auto forth = hn::Add(twice(change(0, 2)), hn::Add(change(-1, 2), change(1, 2)));
    return {hn::Add(common, back), hn::Add(common, forth)};
}

/// The gradients at a chroma site along one diagonal: towards (-1, -side) and (1, side).
template <int side>
HWY_INLINE GradientPair diagonalAtChroma(const Window& w)
{
    const auto step = [&](int x, int y)
                          HWY_ATTR { return distance(w(x, side * y), w(x - 1, side * (y - 1))); };
    const auto common =
        hn::Add(twice(distance(w(1, side), w(-1, -side))), hn::Add(step(1, 0), step(0, 1)));
    const auto back = hn::Add(hn::Add(common, twice(distance(w(0, 0), w(-2, -2 * side)))),
                              hn::Add(step(0, -1), step(-1, 0)));
    const auto forth = hn::Add(hn::Add(common, twice(distance(w(0, 0), w(2, 2 * side)))),
                               hn::Add(step(2, 1), step(1, 2)));
    return {back, forth};
}

/// The same at a green site.
template <int side>
HWY_INLINE GradientPair diagonalAtGreen(const Window& w)
{
    const auto common = distance(w(1, side), w(-1, -side));
    const auto sum = [&](int way) HWY_ATTR {
        const auto far = distance(w(0, 0), w(2 * way, 2 * way * side));
        const auto wide = distance(w(2 * way, way * side), w(0, -way * side));
        const auto high = distance(w(way, 2 * way * side), w(-way, 0));
        return twice(hn::Add(hn::Add(common, far), hn::Add(wide, high)));
    };
    return {sum(-1), sum(1)};
}

/// Sums over the directions that were chosen, four times what they add up to.
struct Sums {
    ShortVector first;  // of the differences to one of the missing colours
    ShortVector second; // and to the other
    ShortVector count;
};

/// Adds a direction whose four samples each, or weighed to as many, are given per colour.
HWY_INLINE void addDirection(Sums* sums, hn::Mask<Shorts> chosen, ShortVector own,
                             ShortVector first, ShortVector second)
{
    const auto one = hn::Set(Shorts(), 1);
    sums->first = hn::Add(sums->first, hn::IfThenElseZero(chosen, hn::Sub(first, own)));
    sums->second = hn::Add(sums->second, hn::IfThenElseZero(chosen, hn::Sub(second, own)));
    sums->count = hn::Add(sums->count, hn::IfThenElseZero(chosen, one));
}

/// The directions whose gradient is at most 1.5 min + 0.5 (max - min).
struct Choice {
    Gradients gradients;
    ShortVector limit; // just above twice the threshold

    HWY_INLINE hn::Mask<Shorts> operator()(int direction) const
    {
        return hn::Lt(twice(gradients.towards[direction]), limit);
    }
};

HWY_INLINE Choice choose(const Gradients& gradients)
{
    const ShortVector* const g = gradients.towards;
    auto least = g[0];
    auto most = g[0];
    for (int i = 1; i < 8; ++i) {
        least = hn::Min(least, g[i]);
        most = hn::Max(most, g[i]);
    }
    return {gradients, hn::Add(hn::Add(twice(least), most), hn::Set(Shorts(), 1))};
}

template <bool atGreen>
HWY_INLINE Gradients gradientsAt(const Window& w)
{
    const GradientPair upright = straightGradients<false>(w);
    const GradientPair across = straightGradients<true>(w);
    const GradientPair falling = atGreen ? diagonalAtGreen<1>(w) : diagonalAtChroma<1>(w);
    const GradientPair rising = atGreen ? diagonalAtGreen<-1>(w) : diagonalAtChroma<-1>(w);
    return {{upright.back, upright.forth, across.back, across.forth, falling.back, rising.forth,
             rising.back, falling.forth}};
}

HWY_INLINE Sums noSums()
{
    const auto zero = hn::Zero(Shorts());
    return {zero, zero, zero};
}

/// The first missing colour is green, the second the other chroma.
HWY_INLINE Sums sumsAtChroma(const Window& w)
{
    const Choice chosen = choose(gradientsAt<false>(w));
    Sums sums = noSums();
    const auto straight = [&](int index, int x, int y) HWY_ATTR {
        addDirection(&sums, chosen(index), twice(hn::Add(w(0, 0), w(2 * x, 2 * y))),
                     hn::ShiftLeft<2>(w(x, y)), twice(hn::Add(w(x + y, y + x), w(x - y, y - x))));
    };
    const auto diagonal = [&](int index, int x, int y) HWY_ATTR {
        const auto near = hn::Add(w(x, 0), w(0, y));
        const auto far = hn::Add(w(2 * x, y), w(x, 2 * y));
        addDirection(&sums, chosen(index), twice(hn::Add(w(0, 0), w(2 * x, 2 * y))),
                     hn::Add(near, far), hn::ShiftLeft<2>(w(x, y)));
    };
    straight(0, 0, -1);
    straight(1, 0, 1);
    straight(2, -1, 0);
    straight(3, 1, 0);
    diagonal(4, -1, -1);
    diagonal(5, 1, -1);
    diagonal(6, -1, 1);
    diagonal(7, 1, 1);
    return sums;
}

/// The first missing colour is the chroma left and right, the second that above and below.
HWY_INLINE Sums sumsAtGreen(const Window& w)
{
    const Choice chosen = choose(gradientsAt<true>(w));
    Sums sums = noSums();
    const auto upright = [&](int index, int y) HWY_ATTR {
        const auto aside = hn::Add(hn::Add(w(-1, 0), w(1, 0)), hn::Add(w(-1, 2 * y), w(1, 2 * y)));
        addDirection(&sums, chosen(index), twice(hn::Add(w(0, 0), w(0, 2 * y))), aside,
                     hn::ShiftLeft<2>(w(0, y)));
    };
    const auto across = [&](int index, int x) HWY_ATTR {
        const auto aside = hn::Add(hn::Add(w(0, -1), w(0, 1)), hn::Add(w(2 * x, -1), w(2 * x, 1)));
        addDirection(&sums, chosen(index), twice(hn::Add(w(0, 0), w(2 * x, 0))),
                     hn::ShiftLeft<2>(w(x, 0)), aside);
    };
    const auto diagonal = [&](int index, int x, int y) HWY_ATTR {
        addDirection(&sums, chosen(index), hn::ShiftLeft<2>(w(x, y)),
                     twice(hn::Add(w(x, 0), w(x, 2 * y))), twice(hn::Add(w(0, y), w(2 * x, y))));
    };
    upright(0, -1);
    upright(1, 1);
    across(2, -1);
    across(3, 1);
    diagonal(4, -1, -1);
    diagonal(5, 1, -1);
    diagonal(6, -1, 1);
    diagonal(7, 1, 1);
    return sums;
}

/// sum / (4 count), count being 1 ... 8: 8192 / count in 15-bit fixed point times the sum.
HWY_INLINE ShortVector quotient(ShortVector sum, ShortVector count)
{
    alignas(16) static constexpr std::int16_t reciprocals[8] = {8192, 4096, 2731, 2048,
                                                                1638, 1365, 1170, 1024};
    const Shorts d;
    const auto table = hn::LoadDup128(d, reciprocals);
    // Each 16-bit lane names the two bytes of its entry.
    const auto entry = hn::Add(hn::ShiftLeft<1>(count), hn::ShiftLeft<9>(count));
    const auto index = hn::Add(entry, hn::Set(d, 0x0100 - 0x0202));
    const auto bytes =
        hn::TableLookupBytes(hn::BitCast(Bytes(), table), hn::BitCast(Bytes(), index));
    return hn::MulFixedPoint15(sum, hn::BitCast(d, bytes));
}

template <typename AnyPhase>
HWY_NOINLINE PixelVector variableGradientsPixels(AnyPhase phase, const Row<2>& row, int x)
{
    const auto chroma = everySecond(row[0] + x + phase.chroma);
    const auto green = everySecond(row[0] + x + phase.green);
    const Sums c = sumsAtChroma(Window(row, x + phase.chroma));
    const auto greenAtChroma = hn::Add(chroma, quotient(c.first, c.count));
    const auto otherAtChroma = hn::Add(chroma, quotient(c.second, c.count));
    const Sums g = sumsAtGreen(Window(row, x + phase.green));
    const auto chromaAtGreen = hn::Add(green, quotient(g.first, g.count));
    const auto otherAtGreen = hn::Add(green, quotient(g.second, g.count));
    return {phase.joined(chroma, chromaAtGreen), phase.joined(greenAtChroma, green),
            phase.joined(otherAtChroma, otherAtGreen)};
}

void variableGradientsRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    writeRows<2>(mosaic, band, rgb, [](auto phase, const Row<2>& row, int x) HWY_ATTR {
        return variableGradientsPixels(phase, row, x);
    });
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(variableGradientsRows);

void debayerVariableGradients(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(variableGradientsRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
