#include <orvimg/reference/reference.h>

#include <algorithm>
#include <cmath>

namespace orvimg::reference
{

namespace
{

constexpr double fullScale = 255.0;

std::uint8_t toByte(double value)
{
    return static_cast<std::uint8_t>(std::clamp(std::floor(value + 0.5), 0.0, fullScale));
}

void correctPixel(const ColorSettings& s, std::uint8_t* rgb)
{
    const double gainedRed = rgb[0] * s.redGain;
    const double gainedGreen = rgb[1] * s.greenGain;
    const double gainedBlue = rgb[2] * s.blueGain;

    const double luma = 0.299 * gainedRed + 0.587 * gainedGreen + 0.114 * gainedBlue;
    const double cb = 0.564 * (gainedBlue - luma);
    const double cr = 0.713 * (gainedRed - luma);

    const double angle = s.hue * std::acos(-1.0) / 180.0;
    const double turnedCb = s.saturation * (cb * std::cos(angle) + cr * std::sin(angle));
    const double turnedCr = s.saturation * (cr * std::cos(angle) - cb * std::sin(angle));

    const double red = luma + turnedCr / 0.713;
    const double blue = luma + turnedCb / 0.564;
    const double green = (luma - 0.299 * red - 0.114 * blue) / 0.587;

    rgb[0] = toByte(red * s.lightness + (s.redOffset + s.offset) * fullScale);
    rgb[1] = toByte(green * s.lightness + (s.greenOffset + s.offset) * fullScale);
    rgb[2] = toByte(blue * s.lightness + (s.blueOffset + s.offset) * fullScale);
}

} // namespace

void colorCorrection(const ColorSettings& settings, std::uint8_t* rgb, std::size_t pixels)
{
    for (std::size_t i = 0; i < pixels; ++i)
        correctPixel(settings, rgb + 3 * i);
}

} // namespace orvimg::reference
