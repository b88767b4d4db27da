#include <AppComponents/imgproc/orvimg.h>

#include <cstddef>

#include <orvimg/mirror.h>

namespace
{

using orvimg::mirrored;

struct Mosaic {
    const unsigned char* samples;
    std::ptrdiff_t width;
    std::ptrdiff_t height;
    int redColumn;
    int redRow;

    unsigned char at(std::ptrdiff_t x, std::ptrdiff_t y) const
    {
        return samples[mirrored(y, height) * width + mirrored(x, width)];
    }
};

Mosaic describe(const unsigned char* mosaic, int width, int height, int pattern)
{
    const int known = pattern >= 0 && pattern <= 3 ? pattern : 2;
    return {mosaic, width, height, known & 1, known >> 1};
}

/// Takes each missing colour from the neighbour right, below or diagonally below.
void nearestPixel(const Mosaic& mosaic, std::ptrdiff_t x, std::ptrdiff_t y, unsigned char* rgb)
{
    const int column = static_cast<int>((x + mosaic.redColumn) & 1);
    const int row = static_cast<int>((y + mosaic.redRow) & 1);
    rgb[0] = mosaic.at(x + column, y + row);
    rgb[1] = column != row ? mosaic.at(x, y) : mosaic.at(x + 1, y);
    rgb[2] = mosaic.at(x + 1 - column, y + 1 - row);
}

} // namespace

void debayer24(const unsigned char* mosaic, int width, int height, int pattern, int /*algorithm*/,
               unsigned char* rgb)
{
    if (mosaic == nullptr || width <= 0 || height <= 0 || rgb == nullptr)
        return;
    const Mosaic described = describe(mosaic, width, height, pattern);
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        for (std::ptrdiff_t x = 0; x < width; ++x, rgb += 3)
            nearestPixel(described, x, y, rgb);
    }
}
