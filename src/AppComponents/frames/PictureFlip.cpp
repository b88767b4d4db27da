#include <AppComponents/frames/PictureFlip.h>

#include <algorithm>
#include <cstddef>

namespace
{

void reversePixels(unsigned char* first, std::size_t count, std::size_t bytesPerPixel)
{
    unsigned char* last = first + (count - 1) * bytesPerPixel;
    for (; first < last; first += bytesPerPixel, last -= bytesPerPixel)
        std::swap_ranges(first, first + bytesPerPixel, last);
}

} // namespace

void flipPicture(unsigned char* picture, int width, int height, int bytesPerPixel, bool flipH,
                 bool flipV)
{
    const std::size_t columns = static_cast<std::size_t>(width);
    const std::size_t rows = static_cast<std::size_t>(height);
    const std::size_t pixelBytes = static_cast<std::size_t>(bytesPerPixel);
    const std::size_t rowBytes = columns * pixelBytes;
    if (flipH && flipV) {
        reversePixels(picture, columns * rows, pixelBytes);
    } else if (flipH) {
        for (std::size_t y = 0; y < rows; ++y)
            reversePixels(picture + y * rowBytes, columns, pixelBytes);
    } else if (flipV) {
        for (std::size_t y = 0; y < rows / 2; ++y)
            std::swap_ranges(picture + y * rowBytes, picture + (y + 1) * rowBytes,
                             picture + (rows - 1 - y) * rowBytes);
    }
}

void keepFirstOfThree(unsigned char* picture, long long pixels)
{
    for (long long i = 0; i < pixels; ++i)
        picture[i] = picture[3 * i];
}
