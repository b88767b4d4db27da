#include "ToneProcessor.h"

#include "Stopwatch.h"

#include <AppComponents/imgproc/orvimg.h>

#include <array>

void ToneProcessor::setAutoStretch(bool on)
{
    if (autoStretch && !on) {
        // The automatic tables stand where the user's were: switching the flag on anew makes
        // the engine rebuild them from the steps.
        setipFlag(CS_APPLY_LUT, false);
        setipFlag(CS_APPLY_LUT, true);
    }
    autoStretch = on;
}

double ToneProcessor::takeToneTime()
{
    const double taken = toneTime;
    toneTime = 0;
    return taken;
}

void ToneProcessor::apply_LUT8(unsigned char* src, int count, unsigned char* dst)
{
    const Stopwatch watch(toneTime);
    if (autoStretch)
        applyBest8(src, count, dst);
    else
        ImgProcessor::apply_LUT8(src, count, dst);
}

void ToneProcessor::apply_LUT10_8(unsigned short* src, int count, unsigned char* dst)
{
    const Stopwatch watch(toneTime);
    if (autoStretch)
        apply_best_LUT10_8(src, count, dst);
    else
        ImgProcessor::apply_LUT10_8(src, count, dst);
}

void ToneProcessor::apply_LUT12_8(unsigned short* src, int count, unsigned char* dst)
{
    const Stopwatch watch(toneTime);
    if (autoStretch)
        apply_best_LUT12_8(src, count, dst);
    else
        ImgProcessor::apply_LUT12_8(src, count, dst);
}

// The library finds best tables for 10 and 12 bits: 8-bit levels are looked at as every fourth
// level of 10 bits.
void ToneProcessor::applyBest8(unsigned char* src, int count, unsigned char* dst)
{
    std::array<int, 1024> spread{};
    levels.assign(256, 0);
    for (int i = 0; i < count; ++i)
        ++levels[src[i]];
    for (std::size_t level = 0; level < levels.size(); ++level)
        spread[4 * level] = levels[level];
    std::array<unsigned char, 1024> wide{};
    best_lookup_table10to8(spread.data(), wide.data());
    std::array<unsigned char, 256> table{};
    for (std::size_t level = 0; level < table.size(); ++level)
        table[level] = wide[4 * level];
    ImgProcessor::apply_LUT8(src, count, table.data(), dst);
}
