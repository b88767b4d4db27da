#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <hwy/base.h>

namespace
{

constexpr std::size_t samplesPerWord = 4;

/// The bits of four packed samples that are clear when all four are below \p levels.
constexpr std::uint64_t bitsAbove(std::size_t levels)
{
    return (0xFFFFU & ~(levels - 1)) * 0x0001'0001'0001'0001U;
}

template <std::size_t levels>
void countChecked(const unsigned short* samples, std::size_t count, int* histogram)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (samples[i] < levels)
            ++histogram[samples[i]];
    }
}

template <std::size_t levels>
void count(const unsigned short* samples, std::size_t count, int* histogram)
{
    // Neighbours often share a level. Counted into two arrays in turn, an increment need not wait
    // for the store of the one before it.
    alignas(64) std::array<int, levels> others{};
    std::size_t i = 0;
    for (; i + samplesPerWord <= count; i += samplesPerWord) {
        std::uint64_t word = 0;
        std::memcpy(&word, samples + i, sizeof word);
        if (HWY_LIKELY((word & bitsAbove(levels)) == 0)) {
            ++histogram[word & 0xFFFF];
            ++others[(word >> 16) & 0xFFFF];
            ++histogram[(word >> 32) & 0xFFFF];
            ++others[word >> 48];
        } else {
            countChecked<levels>(samples + i, samplesPerWord, histogram);
        }
    }
    countChecked<levels>(samples + i, count - i, histogram);
    for (std::size_t level = 0; level < levels; ++level)
        histogram[level] += others[level];
}

template <std::size_t levels>
void fillHistogram(const unsigned short* samples, int sampleCount, int* histogram)
{
    if (samples == nullptr || sampleCount <= 0 || histogram == nullptr)
        return;
    std::fill_n(histogram, levels, 0);
    count<levels>(samples, static_cast<std::size_t>(sampleCount), histogram);
}

} // namespace

void histogram10(const unsigned short* samples, int count, int* histogram)
{
    fillHistogram<1024>(samples, count, histogram);
}

void histogram12(const unsigned short* samples, int count, int* histogram)
{
    fillHistogram<4096>(samples, count, histogram);
}
