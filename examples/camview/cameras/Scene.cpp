#include "Scene.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float pi = 3.14159265358979F;
constexpr float full = 65535.0F;
constexpr int stripPeriod = 64;

struct Colour {
    float rgb[3];
};

Colour grey(float level)
{
    return {{level, level, level}};
}

// Natural and pure colours in four rows of six; the last row is a grey scale.
constexpr Colour patches[24] = {
    {{.45F, .32F, .27F}}, {{.77F, .58F, .51F}}, {{.38F, .48F, .61F}}, {{.34F, .42F, .26F}},
    {{.52F, .50F, .69F}}, {{.38F, .74F, .67F}}, {{.85F, .48F, .18F}}, {{.28F, .35F, .65F}},
    {{.77F, .33F, .38F}}, {{.36F, .23F, .41F}}, {{.62F, .74F, .24F}}, {{.89F, .63F, .16F}},
    {{.15F, .22F, .58F}}, {{.26F, .58F, .28F}}, {{.69F, .19F, .22F}}, {{.92F, .78F, .10F}},
    {{.74F, .33F, .58F}}, {{.05F, .52F, .64F}}, {{.95F, .95F, .95F}}, {{.78F, .78F, .78F}},
    {{.62F, .62F, .62F}}, {{.47F, .47F, .47F}}, {{.33F, .33F, .33F}}, {{.18F, .18F, .18F}},
};

// The places of the chart, as fractions of the sensor.
struct Field {
    float left;
    float top;
    float right;
    float bottom;
    bool holds(float x, float y) const { return x >= left && x < right && y >= top && y < bottom; }
    float u(float x) const { return (x - left) / (right - left); }
    float v(float y) const { return (y - top) / (bottom - top); }
};
constexpr Field patchField{0.05F, 0.08F, 0.35F, 0.43F};
constexpr Field ringField{0.40F, 0.08F, 0.60F, 0.43F};
constexpr Field starField{0.65F, 0.08F, 0.95F, 0.43F};
constexpr Field lineField{0.05F, 0.55F, 0.47F, 0.67F};
constexpr Field rampField{0.53F, 0.55F, 0.95F, 0.67F};

Colour patchColour(float u, float v)
{
    const float column = u * 6;
    const float row = v * 4;
    const bool gap = column - std::floor(column) > 0.92F || row - std::floor(row) > 0.92F;
    if (gap)
        return grey(0.08F);
    return patches[std::min(3, int(row)) * 6 + std::min(5, int(column))];
}

// Rings whose spacing shrinks outwards to two samples: shows aliasing and false colour.
Colour ringColour(float dx, float dy, float radius)
{
    const float r2 = dx * dx + dy * dy;
    return grey(0.5F + 0.4F * std::cos(pi * 0.5F * r2 / radius));
}

Colour starColour(float dx, float dy)
{
    return grey(std::sin(36 * std::atan2(dy, dx)) > 0 ? 0.85F : 0.1F);
}

// Vertical lines in five groups, from eight samples wide to one.
Colour lineColour(float u, int x)
{
    constexpr int widths[] = {8, 4, 3, 2, 1};
    const int group = std::min(4, int(u * 5));
    return grey((x / widths[group]) % 2 == 0 ? 0.9F : 0.08F);
}

Colour rampColour(float u, float v)
{
    if (v < 0.5F)
        return grey(u);
    return {{0.5F + 0.45F * std::cos(2 * pi * u), 0.5F + 0.45F * std::cos(2 * pi * (u - 1 / 3.0F)),
             0.5F + 0.45F * std::cos(2 * pi * (u - 2 / 3.0F))}};
}

Colour backgroundColour(float fx, float fy)
{
    const float shade = 0.20F + 0.12F * fx + 0.10F * fy;
    return {{shade, shade * 1.02F, shade * 1.10F}};
}

Colour chartColour(int x, int y, int width, int height)
{
    const float fx = (float(x) + 0.5F) / float(width);
    const float fy = (float(y) + 0.5F) / float(height);
    if (patchField.holds(fx, fy))
        return patchColour(patchField.u(fx), patchField.v(fy));
    if (lineField.holds(fx, fy))
        return lineColour(lineField.u(fx), x);
    if (rampField.holds(fx, fy))
        return rampColour(rampField.u(fx), rampField.v(fy));
    for (const Field* field : {&ringField, &starField}) {
        const float dx = float(x) - (field->left + field->right) / 2 * float(width);
        const float dy = float(y) - (field->top + field->bottom) / 2 * float(height);
        const float radius = (field->bottom - field->top) / 2 * float(height);
        if (dx * dx + dy * dy < radius * radius)
            return field == &ringField ? ringColour(dx, dy, radius) : starColour(dx, dy);
    }
    return backgroundColour(fx, fy);
}

} // namespace

std::uint16_t Scene::filtered(int x, int y, const float rgb[3]) const
{
    float light = 0.299F * rgb[0] + 0.587F * rgb[1] + 0.114F * rgb[2];
    if (mosaic)
        light = (x + y) % 2 == 0 ? rgb[1] : (y % 2 == 0 ? rgb[2] : rgb[0]);
    return static_cast<std::uint16_t>(std::lround(std::clamp(light, 0.0F, 1.0F) * full));
}

ChartScene::ChartScene(int width, int height, bool isMosaic)
    : Scene(width, height, isMosaic)
    , discSize(std::max(4, std::min(width, height) / 6) & ~1)
    , stripTop(height - height / 8)
    , chart(std::size_t(width) * height)
    , strip(2 * std::size_t(width + stripPeriod))
{
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            const Colour colour = chartColour(x, y, columns, rows);
            chart[std::size_t(y) * columns + x] = filtered(x, y, colour.rgb);
        }
    }
    const int stride = columns + stripPeriod;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < stride; ++x) {
            const float wave = 0.5F + 0.35F * std::sin(2 * pi * float(x) / stripPeriod * 8);
            const Colour colour = {{wave, 0.8F * wave, x % stripPeriod < 4 ? 0.9F : 0.2F}};
            strip[std::size_t(y) * stride + x] = filtered(x, y, colour.rgb);
        }
    }
    seen = chart;
}

const std::uint16_t* ChartScene::light(std::uint64_t frame)
{
    eraseDisc();
    drawn = discAt(frame);
    drawStrip(frame);
    drawDisc(drawn);
    return seen.data();
}

ChartScene::Disc ChartScene::discAt(std::uint64_t frame) const
{
    const float turn = 2 * pi * float(frame % 240) / 240;
    const float x = 0.5F + 0.4F * std::cos(turn);
    const float y = 0.5F + 0.4F * std::sin(turn);
    return {int(x * float(columns - discSize)), int(y * float(rows - discSize))};
}

void ChartScene::eraseDisc()
{
    for (int y = drawn.top; y < drawn.top + discSize; ++y) {
        const auto from = chart.begin() + std::ptrdiff_t(y) * columns + drawn.left;
        std::copy_n(from, discSize, seen.begin() + std::ptrdiff_t(y) * columns + drawn.left);
    }
}

void ChartScene::drawDisc(const Disc& disc)
{
    const float radius = float(discSize) / 2;
    for (int row = 0; row < discSize; ++row) {
        for (int column = 0; column < discSize; ++column) {
            const float dx = (float(column) + 0.5F) / radius - 1;
            const float dy = (float(row) + 0.5F) / radius - 1;
            const float depth2 = 1 - dx * dx - dy * dy;
            if (depth2 <= 0)
                continue;
            const float shade =
                0.25F + 0.65F * std::max(0.0F, std::sqrt(depth2) - 0.4F * (dx + dy));
            const bool band = (column / std::max(2, discSize / 8)) % 2 == 0;
            const float rgb[3] = {shade, band ? 0.35F * shade : 0.9F * shade, 0.25F * shade};
            const int x = disc.left + column;
            const int y = disc.top + row;
            seen[std::size_t(y) * columns + x] = filtered(x, y, rgb);
        }
    }
}

void ChartScene::drawStrip(std::uint64_t frame)
{
    // An even shift keeps each sample under the filter of its own colour.
    const int shift = int(frame % (stripPeriod / 2)) * 2;
    for (int y = stripTop; y < rows; ++y) {
        const std::size_t row = std::size_t(y % 2) * (columns + stripPeriod) + shift;
        std::copy_n(strip.begin() + std::ptrdiff_t(row), columns,
                    seen.begin() + std::ptrdiff_t(y) * columns);
    }
}

PhotoScene::PhotoScene(const QImage& photograph, bool isMosaic)
    : Scene(photograph.width() & ~3, photograph.height() & ~1, isMosaic)
    , samples(std::size_t(columns) * rows)
{
    const QImage picture = photograph.convertToFormat(QImage::Format_RGB888);
    for (int y = 0; y < rows; ++y) {
        const uchar* pixel = picture.constScanLine(y);
        for (int x = 0; x < columns; ++x, pixel += 3) {
            const float rgb[3] = {float(pixel[0]) / 255, float(pixel[1]) / 255,
                                  float(pixel[2]) / 255};
            samples[std::size_t(y) * columns + x] = filtered(x, y, rgb);
        }
    }
}
