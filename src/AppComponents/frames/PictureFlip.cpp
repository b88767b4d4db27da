#include <AppComponents/frames/PictureFlip.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "AppComponents/frames/PictureFlip.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace flip::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR // the plain loops behind the kernels do everything

std::size_t reverseEnds(unsigned char*, std::size_t, std::size_t)
{
    return 0;
}

std::size_t firstOfThree(unsigned char*, std::size_t)
{
    return 0;
}

#else

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using Vector = hn::Vec<Bytes>;

Vector reversedWords(Vector v)
{
    return hn::BitCast(Bytes(), hn::Reverse(Words(), hn::BitCast(Words(), v)));
}

Vector reversedBytes(Vector v)
{
    const auto words = hn::BitCast(Words(), reversedWords(v));
    return hn::BitCast(Bytes(), hn::Or(hn::ShiftLeft<8>(words), hn::ShiftRight<8>(words)));
}

// Vectors from both ends change places. Returns how many bytes are done at each end.
template <class Reversal>
std::size_t swapEnds(unsigned char* first, std::size_t bytes, Reversal reversed)
{
    const Bytes d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t done = 0;
    for (; 2 * (done + lanes) <= bytes; done += lanes) {
        unsigned char* const front = first + done;
        unsigned char* const back = first + bytes - done - lanes;
        const Vector fromFront = hn::LoadU(d, front);
        const Vector fromBack = hn::LoadU(d, back);
        hn::StoreU(reversed(fromBack), d, front);
        hn::StoreU(reversed(fromFront), d, back);
    }
    return done;
}

std::size_t swapEndsOfTriples(unsigned char* first, std::size_t bytes)
{
    const Bytes d;
    const std::size_t step = 3 * hn::Lanes(d);
    std::size_t done = 0;
    for (; 2 * (done + step) <= bytes; done += step) {
        unsigned char* const front = first + done;
        unsigned char* const back = first + bytes - done - step;
        Vector front0, front1, front2, back0, back1, back2;
        hn::LoadInterleaved3(d, front, front0, front1, front2);
        hn::LoadInterleaved3(d, back, back0, back1, back2);
        hn::StoreInterleaved3(reversedBytes(back0), reversedBytes(back1), reversedBytes(back2), d,
                              front);
        hn::StoreInterleaved3(reversedBytes(front0), reversedBytes(front1), reversedBytes(front2),
                              d, back);
    }
    return done;
}

std::size_t reverseEnds(unsigned char* first, std::size_t bytes, std::size_t pixelBytes)
{
    switch (pixelBytes) {
    case 1:
        return swapEnds(first, bytes, [](Vector v) { return reversedBytes(v); });
    case 2:
        return swapEnds(first, bytes, [](Vector v) { return reversedWords(v); });
    case 3:
        return swapEndsOfTriples(first, bytes);
    default:
        return 0;
    }
}

// In place: what is written never lies ahead of what has been read.
std::size_t firstOfThree(unsigned char* picture, std::size_t pixels)
{
    const Bytes d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t done = 0;
    for (; done + lanes <= pixels; done += lanes) {
        Vector first, second, third;
        hn::LoadInterleaved3(d, picture + 3 * done, first, second, third);
        hn::StoreU(first, d, picture + done);
    }
    return done;
}

#endif // HWY_TARGET

} // namespace flip::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace flip
{
HWY_EXPORT(reverseEnds);
HWY_EXPORT(firstOfThree);

void reversePixels(unsigned char* first, std::size_t bytes, std::size_t pixelBytes)
{
    const std::size_t done = HWY_DYNAMIC_DISPATCH(reverseEnds)(first, bytes, pixelBytes);
    unsigned char* front = first + done;
    unsigned char* back = first + bytes - done - pixelBytes;
    for (; front < back; front += pixelBytes, back -= pixelBytes)
        std::swap_ranges(front, front + pixelBytes, back);
}
} // namespace flip

void flipPicture(unsigned char* picture, int width, int height, int bytesPerPixel, bool flipH,
                 bool flipV)
{
    const std::size_t rows = static_cast<std::size_t>(height);
    const std::size_t pixelBytes = static_cast<std::size_t>(bytesPerPixel);
    const std::size_t rowBytes = static_cast<std::size_t>(width) * pixelBytes;
    if (flipH && flipV) { // rows follow each other without a gap: the whole picture is one row
        flip::reversePixels(picture, rows * rowBytes, pixelBytes);
    } else if (flipH) {
        for (std::size_t y = 0; y < rows; ++y)
            flip::reversePixels(picture + y * rowBytes, rowBytes, pixelBytes);
    } else if (flipV) {
        for (std::size_t y = 0; y < rows / 2; ++y)
            std::swap_ranges(picture + y * rowBytes, picture + (y + 1) * rowBytes,
                             picture + (rows - 1 - y) * rowBytes);
    }
}

void keepFirstOfThree(unsigned char* picture, std::size_t pixels)
{
    using namespace flip;
    for (std::size_t i = HWY_DYNAMIC_DISPATCH(firstOfThree)(picture, pixels); i < pixels; ++i)
        picture[i] = picture[3 * i];
}
#endif
