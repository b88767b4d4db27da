#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace
{

constexpr int steps = 127;

double limited(int step)
{
    return std::clamp(step, -steps, steps);
}

double contrastOf(int step)
{
    // The half and the double are given exactly: people ask for just these two.
    if (step == -64)
        return 0.5;
    if (step == 64)
        return 2.0;
    return std::pow(4.0, limited(step) / steps);
}

unsigned char toLevel(double value)
{
    return static_cast<unsigned char>(std::clamp(std::floor(256.0 * value), 0.0, 255.0));
}

void fillToneTable(int brightnessStep, int contrastStep, int gammaStep, int entries,
                   unsigned char* table)
{
    if (table == nullptr)
        return;
    const double brightness = limited(brightnessStep) / (2 * steps);
    const double contrast = contrastOf(contrastStep);
    const double gamma = std::pow(3.0, limited(gammaStep) / steps);
    for (int i = 0; i < entries; ++i) {
        const double x = (i + 0.5) / entries;
        table[i] = toLevel(contrast * (std::pow(x, gamma) - 0.5) + 0.5 + brightness);
    }
}

/// The darkest and the brightest of every 2000 samples do not decide the range.
constexpr std::int64_t ignoredShare = 2000;

/// The first entry, counted from \p first on, at which more than \p threshold samples are passed.
template <typename Iterator>
std::ptrdiff_t firstBeyond(Iterator first, Iterator last, std::int64_t threshold)
{
    std::int64_t passed = 0;
    return std::find_if(first, last, [&](int samples) { return (passed += samples) > threshold; }) -
           first;
}

void fillShiftTable(std::ptrdiff_t entries, unsigned char* table)
{
    for (std::ptrdiff_t i = 0; i < entries; ++i)
        table[i] = static_cast<unsigned char>(i * 256 / entries);
}

void fillBestTable(const int* histogram, std::ptrdiff_t entries, unsigned char* table)
{
    if (histogram == nullptr || table == nullptr)
        return;
    const int* const end = histogram + entries;
    const std::int64_t samples = std::accumulate(histogram, end, std::int64_t{0});
    const std::int64_t threshold = samples / ignoredShare;
    const std::ptrdiff_t low = firstBeyond(histogram, end, threshold);
    const std::ptrdiff_t high = entries - 1 -
                                firstBeyond(std::make_reverse_iterator(end),
                                            std::make_reverse_iterator(histogram), threshold);
    if (samples <= 0 || high <= low) {
        fillShiftTable(entries, table);
        return;
    }
    // Twice the numerator and the denominator keeps the half within integers.
    const std::ptrdiff_t levels = 2 * (high - low + 1);
    for (std::ptrdiff_t i = 0; i < entries; ++i) {
        const std::ptrdiff_t position = std::max<std::ptrdiff_t>(2 * (i - low) + 1, 0);
        table[i] =
            static_cast<unsigned char>(std::min<std::ptrdiff_t>(256 * position / levels, 255));
    }
}

} // namespace

void create_BCG_LUT8(int brightness, int contrast, int gamma, unsigned char* table)
{
    fillToneTable(brightness, contrast, gamma, 256, table);
}

void create_BCG_LUT10_8(int brightness, int contrast, int gamma, unsigned char* table)
{
    fillToneTable(brightness, contrast, gamma, 1024, table);
}

void create_BCG_LUT12_8(int brightness, int contrast, int gamma, unsigned char* table)
{
    fillToneTable(brightness, contrast, gamma, 4096, table);
}

void best_lookup_table10to8(const int* histogram, unsigned char* table)
{
    fillBestTable(histogram, 1024, table);
}

void best_lookup_table12to8(const int* histogram, unsigned char* table)
{
    fillBestTable(histogram, 4096, table);
}
