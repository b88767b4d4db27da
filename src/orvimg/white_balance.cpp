#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <orvimg/parallel.h>
#include <orvimg/white_balance_sums.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/white_balance.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

// Vectors of one lane cannot hold a cell.
CellSums SumCells(const std::uint8_t* mosaic, std::size_t width, std::size_t firstRow,
                  std::size_t endRow)
{
    CellSums sums;
    for (std::size_t y = firstRow; y + 1 < endRow; y += 2) {
        const std::uint8_t* const top = mosaic + y * width;
        const std::uint8_t* const bottom = top + width;
        for (std::size_t x = 0; x + 1 < width; x += 2) {
            const auto [lowest, highest] =
                std::minmax({top[x], top[x + 1], bottom[x], bottom[x + 1]});
            if (lowest < darkestUsable || highest > brightestUsable)
                continue;
            sums.topLeft += top[x];
            sums.topRight += top[x + 1];
            sums.bottomLeft += bottom[x];
            sums.bottomRight += bottom[x + 1];
            ++sums.cells;
        }
    }
    return sums;
}

#else

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using Sums = hn::Repartition<std::uint64_t, Bytes>;

struct SumVectors {
    hn::Vec<Sums> top;
    hn::Vec<Sums> topLeft;
    hn::Vec<Sums> bottom;
    hn::Vec<Sums> bottomLeft;
    hn::Vec<Sums> cells;
};

HWY_INLINE hn::Vec<Sums> SumsOfWordBytes(hn::Vec<Words> samples)
{
    return hn::SumsOf8(hn::BitCast(Bytes(), samples));
}

/// Adds a vector of cells, of which \p top and \p bottom hold the two rows.
HWY_INLINE void AddCells(const std::uint8_t* HWY_RESTRICT top,
                         const std::uint8_t* HWY_RESTRICT bottom, SumVectors& sums)
{
    const Bytes bytes;
    const Words words;
    const auto topSamples = hn::LoadU(bytes, top);
    const auto bottomSamples = hn::LoadU(bytes, bottom);
    const auto lowest = hn::Min(topSamples, bottomSamples);
    const auto highest = hn::Max(topSamples, bottomSamples);
    const auto excess = hn::Or(hn::SaturatedSub(hn::Set(bytes, darkestUsable), lowest),
                               hn::SaturatedSub(highest, hn::Set(bytes, brightestUsable)));
    // A word holds both columns of a cell, so one comparison judges all four samples.
    const auto usable = hn::Eq(hn::BitCast(words, excess), hn::Zero(words));
    const auto usableTop = hn::IfThenElseZero(usable, hn::BitCast(words, topSamples));
    const auto usableBottom = hn::IfThenElseZero(usable, hn::BitCast(words, bottomSamples));

    const auto left = hn::Set(words, 0x00FF);
    sums.top = hn::Add(sums.top, SumsOfWordBytes(usableTop));
    sums.topLeft = hn::Add(sums.topLeft, SumsOfWordBytes(hn::And(usableTop, left)));
    sums.bottom = hn::Add(sums.bottom, SumsOfWordBytes(usableBottom));
    sums.bottomLeft = hn::Add(sums.bottomLeft, SumsOfWordBytes(hn::And(usableBottom, left)));
    const auto one = hn::IfThenElseZero(usable, hn::Set(words, 1));
    sums.cells = hn::Add(sums.cells, SumsOfWordBytes(one));
}

/// Adds the \p samples (less than a vector) at the end of a pair of rows.
HWY_NOINLINE void AddLastCells(const std::uint8_t* top, const std::uint8_t* bottom,
                               std::size_t samples, SumVectors& sums)
{
    // The filling zeros lie in the noise floor and so do not count.
    HWY_ALIGN std::uint8_t rows[2][hn::MaxLanes(Bytes())] = {};
    std::memcpy(rows[0], top, samples);
    std::memcpy(rows[1], bottom, samples);
    AddCells(rows[0], rows[1], sums);
}

HWY_INLINE std::uint64_t Total(hn::Vec<Sums> sums)
{
    return hn::GetLane(hn::SumOfLanes(Sums(), sums));
}

CellSums SumCells(const std::uint8_t* mosaic, std::size_t width, std::size_t firstRow,
                  std::size_t endRow)
{
    const std::size_t lanes = hn::Lanes(Bytes());
    const std::size_t samples = width & ~std::size_t{1};
    const auto none = hn::Zero(Sums());
    SumVectors sums{none, none, none, none, none};
    for (std::size_t y = firstRow; y + 1 < endRow; y += 2) {
        const std::uint8_t* const top = mosaic + y * width;
        const std::uint8_t* const bottom = top + width;
        std::size_t x = 0;
        for (; x + lanes <= samples; x += lanes)
            AddCells(top + x, bottom + x, sums);
        if (x < samples)
            AddLastCells(top + x, bottom + x, samples - x, sums);
    }
    const std::uint64_t topLeft = Total(sums.topLeft);
    const std::uint64_t bottomLeft = Total(sums.bottomLeft);
    return {topLeft, Total(sums.top) - topLeft, bottomLeft, Total(sums.bottom) - bottomLeft,
            Total(sums.cells)};
}

#endif

} // namespace orvimg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace orvimg
{

namespace
{

HWY_EXPORT(SumCells);

constexpr int minimumRowsPerBand = 64;

CellSums sumCells(const std::uint8_t* mosaic, int width, int height)
{
    std::atomic<std::uint64_t> topLeft{0};
    std::atomic<std::uint64_t> topRight{0};
    std::atomic<std::uint64_t> bottomLeft{0};
    std::atomic<std::uint64_t> bottomRight{0};
    std::atomic<std::uint64_t> cells{0};
    const auto addRows = [&](int firstRow, int endRow) {
        const CellSums band = HWY_DYNAMIC_DISPATCH(SumCells)(
            mosaic, static_cast<std::size_t>(width), static_cast<std::size_t>(firstRow),
            static_cast<std::size_t>(endRow));
        topLeft += band.topLeft;
        topRight += band.topRight;
        bottomLeft += band.bottomLeft;
        bottomRight += band.bottomRight;
        cells += band.cells;
    };
    asFarAsMemoryAllows([&] { forEachRowBand(height, minimumRowsPerBand, addRows); });
    return {topLeft, topRight, bottomLeft, bottomRight, cells};
}

double gain(std::uint64_t greens, std::uint64_t color)
{
    // A cell has two green samples and one of the other colour.
    return std::clamp(static_cast<double>(greens) / 2 / static_cast<double>(color), 0.25, 4.0);
}

/// The place of the colours in the cell of a mosaic.
struct CellColors {
    std::uint64_t CellSums::*red;
    std::uint64_t CellSums::*firstGreen;
    std::uint64_t CellSums::*secondGreen;
    std::uint64_t CellSums::*blue;
};

void balance(const std::uint8_t* mosaic, int width, int height, double* redGain, double* blueGain,
             const CellColors& colors)
{
    if (mosaic == nullptr || width <= 0 || height <= 0 || redGain == nullptr || blueGain == nullptr)
        return;
    *redGain = 1.0;
    *blueGain = 1.0;
    const CellSums sums = sumCells(mosaic, width, height);
    const std::uint64_t allCells =
        (static_cast<std::uint64_t>(width) / 2) * (static_cast<std::uint64_t>(height) / 2);
    if (sums.cells == 0 || sums.cells * 100 < allCells)
        return;
    const std::uint64_t greens = sums.*colors.firstGreen + sums.*colors.secondGreen;
    *redGain = gain(greens, sums.*colors.red);
    *blueGain = gain(greens, sums.*colors.blue);
}

} // namespace

} // namespace orvimg

using orvimg::CellSums;

void white_balance8rggb(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    orvimg::balance(
        mosaic, width, height, redGain, blueGain,
        {&CellSums::topLeft, &CellSums::topRight, &CellSums::bottomLeft, &CellSums::bottomRight});
}

void white_balance8bggr(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    orvimg::balance(
        mosaic, width, height, redGain, blueGain,
        {&CellSums::bottomRight, &CellSums::topRight, &CellSums::bottomLeft, &CellSums::topLeft});
}

void white_balance8gbrg(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    orvimg::balance(
        mosaic, width, height, redGain, blueGain,
        {&CellSums::bottomLeft, &CellSums::topLeft, &CellSums::bottomRight, &CellSums::topRight});
}

void white_balance8grbg(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    orvimg::balance(
        mosaic, width, height, redGain, blueGain,
        {&CellSums::topRight, &CellSums::topLeft, &CellSums::bottomRight, &CellSums::bottomLeft});
}

#endif
