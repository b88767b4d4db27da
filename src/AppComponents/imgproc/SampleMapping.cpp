#include <AppComponents/imgproc/SampleMapping.h>

#include <cstdint>
#include <cstring>

void mapThroughTable8(const unsigned char* src, std::ptrdiff_t count, const unsigned char* table,
                      unsigned char* dst)
{
    for (std::ptrdiff_t i = 0; i < count; ++i)
        dst[i] = table[src[i]];
}

void mapThroughTable16(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                       unsigned char* dst)
{
    for (std::ptrdiff_t i = 0; i < count; ++i)
        dst[i] = table[src[i]];
}

void shiftTo8Bits(const void* src, std::ptrdiff_t count, int shift, unsigned char* dst)
{
    const unsigned char* samples = static_cast<const unsigned char*>(src);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        std::uint16_t sample;
        std::memcpy(&sample, samples + 2 * i, sizeof(sample));
        dst[i] = shift < 16 ? static_cast<unsigned char>(sample >> shift) : 0;
    }
}
