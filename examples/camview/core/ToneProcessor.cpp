#include "ToneProcessor.h"

#include "Stopwatch.h"

#include <AppComponents/imgproc/orvimg.h>

#include <array>
#include <numeric>

void ToneProcessor::setAutoStretch(bool on)
{
    if (autoStretch && !on)
        rebuildTables();
    autoStretch = on;
}

// The automatic tables stand where the user's were, perhaps at several depths. Only a step that
// changes has the engine rebuild the tables of all depths.
void ToneProcessor::rebuildTables()
{
    const double chosen = getBrightnessD();
    double lowest = 0;
    double highest = 0;
    getBrightnessMinMax(lowest, highest);
    setBrightnessD(chosen == lowest ? highest : lowest);
    setBrightnessD(chosen);
}

const unsigned char* ToneProcessor::tableInPlace(int depth)
{
    if (depth == 8)
        return autoStretch ? best8.data() : getLUT8();
    return depth == 12 ? getLUT12() : readTable10();
}

// The engine has no getter for this one: it is read by mapping each level once.
const unsigned char* ToneProcessor::readTable10()
{
    std::array<unsigned short, 1024> ramp{};
    std::iota(ramp.begin(), ramp.end(), static_cast<unsigned short>(0));
    ImgProcessor::apply_LUT10_8(ramp.data(), static_cast<int>(ramp.size()), table10.data());
    return table10.data();
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
    // A stale table is rebuilt now, whatever the count, and not over the best one later.
    ImgProcessor::apply_LUT10_8(src, autoStretch ? 0 : count, dst);
    if (autoStretch)
        apply_best_LUT10_8(src, count, dst);
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
    for (std::size_t level = 0; level < best8.size(); ++level)
        best8[level] = wide[4 * level];
    ImgProcessor::apply_LUT8(src, count, best8.data(), dst);
}
