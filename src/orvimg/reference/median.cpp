#include <orvimg/reference/reference.h>

#include <algorithm>
#include <array>
#include <vector>

#include <orvimg/mirror.h>

namespace orvimg::reference
{

namespace
{

template <typename Sample>
Sample medianAt(const Sample* picture, std::ptrdiff_t width, std::ptrdiff_t height, int channels,
                std::ptrdiff_t x, std::ptrdiff_t y, int channel)
{
    const std::ptrdiff_t distance = channels == 1 ? 2 : 1;
    std::array<Sample, 9> neighbours{};
    auto next = neighbours.begin();
    for (std::ptrdiff_t dy = -distance; dy <= distance; dy += distance) {
        for (std::ptrdiff_t dx = -distance; dx <= distance; dx += distance) {
            const std::ptrdiff_t pixel = mirrored(y + dy, height) * width + mirrored(x + dx, width);
            *next++ = picture[pixel * channels + channel];
        }
    }
    std::nth_element(neighbours.begin(), neighbours.begin() + 4, neighbours.end());
    return neighbours[4];
}

template <typename Sample>
void medianOf(Sample* picture, int width, int height, int channels)
{
    const std::size_t samples = static_cast<std::size_t>(width) * height * channels;
    const std::vector<Sample> source(picture, picture + samples);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int channel = 0; channel < channels; ++channel)
                *picture++ = medianAt(source.data(), width, height, channels, x, y, channel);
        }
    }
}

} // namespace

void median(std::uint8_t* picture, int width, int height, int channels)
{
    medianOf(picture, width, height, channels);
}

void median(std::uint16_t* picture, int width, int height, int channels)
{
    medianOf(picture, width, height, channels);
}

} // namespace orvimg::reference
