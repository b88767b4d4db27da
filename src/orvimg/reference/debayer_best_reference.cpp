#include <orvimg/reference/debayer_reference.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include <orvimg/mirror.h>

namespace orvimg::reference
{

namespace
{

constexpr int margin = 16; // how far the picture is continued, more than the stages reach
constexpr std::array<std::array<int, 2>, 4> diagonals{{{-1, -1}, {1, -1}, {-1, 1}, {1, 1}}};
constexpr std::array<std::array<int, 2>, 4> neighbours{{{0, -1}, {-1, 0}, {1, 0}, {0, 1}}};

/// A value for each pixel of the picture and of its margin.
class Field
{
public:
    Field(int pictureWidth, int pictureHeight)
        : width(pictureWidth)
        , height(pictureHeight)
        , values(static_cast<std::size_t>(width + 2 * margin) *
                 static_cast<std::size_t>(height + 2 * margin))
    {
    }
    float& operator()(int x, int y)
    {
        return values[static_cast<std::size_t>(y + margin) *
                          static_cast<std::size_t>(width + 2 * margin) +
                      static_cast<std::size_t>(x + margin)];
    }

    /// Calls function(x, y) for the picture and \p reach pixels around it.
    template <typename Function>
    void forEach(int reach, Function function) const
    {
        for (int y = -reach; y < height + reach; ++y) {
            for (int x = -reach; x < width + reach; ++x)
                function(x, y);
        }
    }

private:
    int width;
    int height;
    std::vector<float> values;
};

struct Phase {
    int redColumn;
    int redRow;

    bool isGreen(int x, int y) const { return ((x + redColumn + y + redRow) & 1) != 0; }
    /// The chroma of a row: 0 red, 1 blue.
    int chroma(int y) const { return (y + redRow) & 1; }
};

/// What is known along one axis, (dx, dy) being one step.
struct Axis {
    int dx;
    int dy;
    Field difference; // green less chroma, with every second sample interpolated
    Field smooth;     // the same, low-pass filtered

    Axis(int stepX, int stepY, int width, int height)
        : dx(stepX)
        , dy(stepY)
        , difference(width, height)
        , smooth(width, height)
    {
    }

    void analyse(Field& mosaic, Phase phase);
    /// \return the estimate of the difference and its expected squared error.
    std::array<float, 2> estimate(int x, int y);
};

void Axis::analyse(Field& mosaic, Phase phase)
{
    mosaic.forEach(10, [&](int x, int y) {
        const auto at = [&](int steps) { return mosaic(x + steps * dx, y + steps * dy); };
        const float interpolated =
            0.5F * (at(-1) + at(1)) + 0.1875F * (2 * at(0) - (at(-2) + at(2)));
        difference(x, y) = phase.isGreen(x, y) ? at(0) - interpolated : interpolated - at(0);
    });
    mosaic.forEach(7, [&](int x, int y) {
        const auto at = [&](int steps) { return difference(x + steps * dx, y + steps * dy); };
        smooth(x, y) =
            (20 * at(0) + 15 * (at(-1) + at(1)) + 6 * (at(-2) + at(2)) + (at(-3) + at(3))) / 64;
    });
}

std::array<float, 2> Axis::estimate(int x, int y)
{
    constexpr float floorOfVariance = 1.0F / 1024;
    const auto squaredNoise = [&](int px, int py) {
        const float noise = difference(px, py) - smooth(px, py);
        return noise * noise;
    };
    float sum = 0;
    float squares = 0;
    float noise = 0;
    for (int i = -3; i <= 3; ++i) {
        const int px = x + i * dx;
        const int py = y + i * dy;
        const float value = smooth(px, py);
        sum += value;
        squares += value * value;
        noise +=
            squaredNoise(px - dy, py - dx) + squaredNoise(px, py) + squaredNoise(px + dy, py + dx);
    }
    const float mean = sum * (1.0F / 7);
    const float signal = std::max(squares * (1.0F / 7) - mean * mean, 0.0F) + floorOfVariance;
    const float error = noise * (1.0F / 21) + floorOfVariance;
    const float share = 1.0F / (signal + error);
    return {(smooth(x, y) * error + difference(x, y) * signal) * share, signal * error * share};
}

Field greenOf(Field& mosaic, Phase phase, int width, int height)
{
    Axis across(1, 0, width, height);
    Axis upright(0, 1, width, height);
    across.analyse(mosaic, phase);
    upright.analyse(mosaic, phase);
    Field green(width, height);
    green.forEach(3, [&](int x, int y) {
        green(x, y) = mosaic(x, y);
        if (phase.isGreen(x, y))
            return;
        const auto [valueAcross, errorAcross] = across.estimate(x, y);
        const auto [valueUpright, errorUpright] = upright.estimate(x, y);
        const float difference = (valueAcross * errorUpright + valueUpright * errorAcross) /
                                 (errorAcross + errorUpright);
        green(x, y) = std::clamp(mosaic(x, y) + difference, 0.0F, 255.0F);
    });
    return green;
}

constexpr float greenShare = 0.875F; // of the detail of green that a chroma is taken to have

/// The mean of four values with the weights 1 / change, each multiplied by the four changes.
float weightedMean(const std::array<float, 4>& values, const std::array<float, 4>& changes)
{
    const float first = changes[0] * changes[1];
    const float second = changes[2] * changes[3];
    const std::array<float, 4> weights{changes[1] * second, changes[0] * second, changes[3] * first,
                                       changes[2] * first};
    float sum = values[0] * weights[0];
    float whole = weights[0];
    for (std::size_t i = 1; i < 4; ++i) {
        sum += values[i] * weights[i];
        whole += weights[i];
    }
    return sum / whole;
}

/// What a chroma has beyond its share of green, red first, at the chroma sites of both.
std::array<Field, 2> chromaRests(Field& mosaic, Field& green, Phase phase, int width, int height)
{
    std::array<Field, 2> rests{Field(width, height), Field(width, height)};
    mosaic.forEach(2, [&](int x, int y) {
        if (!phase.isGreen(x, y))
            rests[phase.chroma(y)](x, y) = mosaic(x, y) - greenShare * green(x, y);
    });
    mosaic.forEach(1, [&](int x, int y) {
        if (phase.isGreen(x, y))
            return;
        Field& other = rests[1 - phase.chroma(y)];
        std::array<float, 4> values{};
        std::array<float, 4> changes{};
        for (std::size_t i = 0; i < 4; ++i) {
            const auto [dx, dy] = diagonals[i];
            values[i] = other(x + dx, y + dy);
            changes[i] = std::abs(mosaic(x + dx, y + dy) - mosaic(x - dx, y - dy)) +
                         std::abs(green(x, y) - green(x + dx, y + dy)) +
                         std::abs(green(x, y) - green(x + 2 * dx, y + 2 * dy)) + 1.0F;
        }
        other(x, y) = weightedMean(values, changes);
    });
    return rests;
}

float restAtGreen(Field& rest, Field& green, int x, int y)
{
    std::array<float, 4> values{};
    std::array<float, 4> changes{};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto [dx, dy] = neighbours[i];
        values[i] = rest(x + dx, y + dy);
        changes[i] = std::abs(green(x, y) - green(x + 2 * dx, y + 2 * dy)) +
                     std::abs(rest(x + dx, y + dy) - rest(x - dx, y - dy)) + 1.0F;
    }
    return weightedMean(values, changes);
}

std::uint8_t toByte(float value)
{
    const float raised = std::clamp(value, 0.0F, 255.0F) + 0.5F;
    return static_cast<std::uint8_t>(raised);
}

} // namespace

void debayerBest(const std::uint8_t* samples, int width, int height, int pattern, std::uint8_t* rgb)
{
    const Phase phase{pattern & 1, pattern >> 1};
    Field mosaic(width, height);
    mosaic.forEach(margin, [&](int x, int y) {
        mosaic(x, y) = samples[mirrored(y, height) * width + mirrored(x, width)];
    });
    Field green = greenOf(mosaic, phase, width, height);
    std::array<Field, 2> rests = chromaRests(mosaic, green, phase, width, height);
    mosaic.forEach(0, [&](int x, int y) {
        std::array<float, 2> chromas{};
        for (const int chroma : {0, 1}) {
            const bool isOwn = !phase.isGreen(x, y) && phase.chroma(y) == chroma;
            const float rest =
                phase.isGreen(x, y) ? restAtGreen(rests[chroma], green, x, y) : rests[chroma](x, y);
            chromas[chroma] = isOwn ? mosaic(x, y) : greenShare * green(x, y) + rest;
        }
        *rgb++ = toByte(chromas[0]);
        *rgb++ = toByte(green(x, y));
        *rgb++ = toByte(chromas[1]);
    });
}

} // namespace orvimg::reference
