#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include <hwy/aligned_allocator.h>
#include <hwy/cache_control.h>

#include <orvimg/median_band.h>
#include <orvimg/mirror.h>
#include <orvimg/parallel.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/median.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg::HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

template <class V>
HWY_INLINE V MedianOf3(V a, V b, V c)
{
    return hn::Max(hn::Min(a, b), hn::Min(hn::Max(a, b), c));
}

/// The vertical neighbours of each sample of a row, sorted.
template <typename Sample>
struct SortedColumns {
    Sample* lowest;
    Sample* middle;
    Sample* highest;
};

template <typename Sample>
struct ColumnSources {
    const Sample* above;
    const Sample* here;
    const Sample* below;
};

template <class D, typename Sample = hn::TFromD<D>>
HWY_INLINE void SortColumnsAt(D d, const ColumnSources<Sample>& rows,
                              const SortedColumns<Sample>& sorted, Sample* saved, std::ptrdiff_t x)
{
    const auto above = hn::LoadU(d, rows.above + x);
    const auto here = hn::LoadU(d, rows.here + x);
    const auto below = hn::LoadU(d, rows.below + x);
    const auto lower = hn::Min(above, here);
    const auto higher = hn::Max(above, here);
    const auto rest = hn::Max(lower, below);
    hn::StoreU(hn::Min(lower, below), d, sorted.lowest + x);
    hn::StoreU(hn::Min(higher, rest), d, sorted.middle + x);
    hn::StoreU(hn::Max(higher, rest), d, sorted.highest + x);
    hn::StoreU(here, d, saved + x);
}

/// The median of nine is the median of the highest of the three lowest, the middle of the three
/// middle ones and the lowest of the three highest.
template <class D, typename Sample = hn::TFromD<D>>
HWY_INLINE void MedianAt(D d, const SortedColumns<Sample>& sorted, std::ptrdiff_t step, Sample* row,
                         std::ptrdiff_t x)
{
    const Sample* const low = sorted.lowest + x;
    const Sample* const mid = sorted.middle + x;
    const Sample* const high = sorted.highest + x;
    const auto lowest =
        hn::Max(hn::Max(hn::LoadU(d, low - step), hn::LoadU(d, low)), hn::LoadU(d, low + step));
    const auto middle =
        MedianOf3(hn::LoadU(d, mid - step), hn::LoadU(d, mid), hn::LoadU(d, mid + step));
    const auto highest =
        hn::Min(hn::Min(hn::LoadU(d, high - step), hn::LoadU(d, high)), hn::LoadU(d, high + step));
    hn::StoreU(MedianOf3(lowest, middle, highest), d, row + x);
}

template <typename Sample>
void SortColumns(const ColumnSources<Sample>& rows, const SortedColumns<Sample>& sorted,
                 Sample* saved, std::ptrdiff_t samples)
{
    const hn::ScalableTag<Sample> d;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
    if (samples < lanes) {
        for (std::ptrdiff_t x = 0; x < samples; ++x)
            SortColumnsAt(hn::CappedTag<Sample, 1>(), rows, sorted, saved, x);
        return;
    }
    for (std::ptrdiff_t x = 0; x < samples - lanes; x += lanes)
        SortColumnsAt(d, rows, sorted, saved, x);
    SortColumnsAt(d, rows, sorted, saved, samples - lanes);
}

template <typename Sample>
void TakeMedians(const SortedColumns<Sample>& sorted, std::ptrdiff_t step, Sample* row,
                 std::ptrdiff_t samples, const Sample* ahead)
{
    const hn::ScalableTag<Sample> d;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
    if (samples < lanes) {
        for (std::ptrdiff_t x = 0; x < samples; ++x)
            MedianAt(hn::CappedTag<Sample, 1>(), sorted, step, row, x);
        return;
    }
    for (std::ptrdiff_t x = 0; x < samples - lanes; x += lanes) {
        hwy::Prefetch(ahead + x);
        MedianAt(d, sorted, step, row, x);
    }
    MedianAt(d, sorted, step, row, samples - lanes);
}

/// The samples that continue a row beyond its two ends by its mirror image.
class MirroredEnds
{
public:
    MirroredEnds(std::ptrdiff_t width, std::ptrdiff_t channels, std::ptrdiff_t distance)
    {
        for (std::ptrdiff_t i = 1; i <= distance; ++i) {
            addPixel(-i, width, channels);
            addPixel(width - 1 + i, width, channels);
        }
    }

    template <typename Sample>
    void fill(Sample* row) const
    {
        for (std::size_t i = 0; i < count; ++i)
            row[copies[i].to] = row[copies[i].from];
    }

private:
    struct Copy {
        std::ptrdiff_t to;
        std::ptrdiff_t from;
    };

    void addPixel(std::ptrdiff_t to, std::ptrdiff_t width, std::ptrdiff_t channels)
    {
        const std::ptrdiff_t from = mirrored(to, width);
        for (std::ptrdiff_t channel = 0; channel < channels; ++channel)
            copies[count++] = {to * channels + channel, from * channels + channel};
    }

    std::array<Copy, 6> copies{}; // two ends of two samples or of one pixel of three
    std::size_t count = 0;
};

template <typename Sample>
class BandFilter
{
public:
    explicit BandFilter(const MedianBand<Sample>& filtered)
        : band(filtered)
        , rowSamples(filtered.rowSamples())
        , savedRows(filtered.scratch)
        , ends(filtered.width, filtered.channels, filtered.distance)
    {
        const std::ptrdiff_t rounded = roundedToMargin(rowSamples);
        Sample* const columns = savedRows + (band.distance + 1) * rounded + medianMargin;
        const std::ptrdiff_t pitch = rounded + 2 * medianMargin;
        sorted = {columns, columns + pitch, columns + 2 * pitch};
    }

    void run() const
    {
        for (std::ptrdiff_t i = 0; band.rowsAbove != nullptr && i < band.distance; ++i)
            std::copy_n(band.rowsAbove + i * rowSamples, rowSamples,
                        savedRow(band.firstRow - band.distance + i));
        for (std::ptrdiff_t y = band.firstRow; y < band.endRow; ++y)
            filterRow(y);
    }

private:
    void filterRow(std::ptrdiff_t y) const
    {
        Sample* const row = band.picture + y * rowSamples;
        const ColumnSources<Sample> rows{original(mirrored(y - band.distance, band.height), y), row,
                                         original(mirrored(y + band.distance, band.height), y)};
        SortColumns(rows, sorted, savedRow(y), rowSamples);
        ends.fill(sorted.lowest);
        ends.fill(sorted.middle);
        ends.fill(sorted.highest);
        const std::ptrdiff_t ahead = std::min(y + band.distance + 1, band.height - 1);
        TakeMedians(sorted, band.distance * band.channels, row, rowSamples,
                    band.picture + ahead * rowSamples);
    }

    /// Row \p index as it was before filtering, while row \p current is the next to be filtered.
    const Sample* original(std::ptrdiff_t index, std::ptrdiff_t current) const
    {
        if (index < current)
            return savedRow(index);
        if (index < band.endRow)
            return band.picture + index * rowSamples;
        return band.rowsBelow + (index - band.endRow) * rowSamples;
    }

    Sample* savedRow(std::ptrdiff_t index) const
    {
        return savedRows + index % (band.distance + 1) * roundedToMargin(rowSamples);
    }

    const MedianBand<Sample>& band;
    std::ptrdiff_t rowSamples;
    Sample* savedRows;
    MirroredEnds ends;
    SortedColumns<Sample> sorted{};
};

void FilterBand8(const MedianBand<std::uint8_t>& band)
{
    BandFilter<std::uint8_t>(band).run();
}

void FilterBand16(const MedianBand<std::uint16_t>& band)
{
    BandFilter<std::uint16_t>(band).run();
}

} // namespace orvimg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace orvimg
{

namespace
{

HWY_EXPORT(FilterBand8);
HWY_EXPORT(FilterBand16);

constexpr int minimumRowsPerBand = 64;

void filterBand(const MedianBand<std::uint8_t>& band)
{
    HWY_DYNAMIC_DISPATCH(FilterBand8)(band);
}

void filterBand(const MedianBand<std::uint16_t>& band)
{
    HWY_DYNAMIC_DISPATCH(FilterBand16)(band);
}

/// Working memory that a thread keeps, so that a stream of pictures allocates nothing.
template <typename Sample>
Sample* scratch(std::ptrdiff_t samples)
{
    thread_local hwy::AlignedFreeUniquePtr<Sample[]> memory;
    thread_local std::ptrdiff_t size = 0;
    if (size < samples) {
        size = 0;
        memory = hwy::AllocateAligned<Sample>(static_cast<std::size_t>(samples));
        if (!memory)
            throw std::bad_alloc();
        size = samples;
    }
    return memory.get();
}

/// The rows around the borders between bands: bands filter in place, each needs a few rows of its
/// neighbours as they were.
template <typename Sample>
class BorderRows
{
public:
    BorderRows(const MedianBand<Sample>& picture, int bands)
        : blockSize(2 * picture.distance * picture.rowSamples())
        , rows(static_cast<std::size_t>(blockSize * (bands - 1)))
    {
        for (int border = 1; border < bands; ++border) {
            const std::ptrdiff_t row =
                rowBand(static_cast<int>(picture.height), border, bands).first - picture.distance;
            std::copy_n(picture.picture + row * picture.rowSamples(), blockSize, block(border));
        }
    }

    /// The rows above and then those below the upper border of band \p index.
    Sample* block(int index) { return rows.data() + blockSize * (index - 1); }

private:
    std::ptrdiff_t blockSize;
    std::vector<Sample> rows;
};

template <typename Sample>
void filterBands(const MedianBand<Sample>& whole)
{
    const int height = static_cast<int>(whole.height);
    const int bands = rowBandCount(height, minimumRowsPerBand);
    BorderRows<Sample> borders(whole, bands);
    forEachBand(bands, [&](int index) {
        MedianBand<Sample> band = whole;
        band.firstRow = rowBand(height, index, bands).first;
        band.endRow = rowBand(height, index, bands).last;
        if (index > 0)
            band.rowsAbove = borders.block(index);
        if (index + 1 < bands)
            band.rowsBelow = borders.block(index + 1) + band.distance * band.rowSamples();
        band.scratch = scratch<Sample>(medianScratchSize(band.rowSamples(), band.distance));
        filterBand(band);
    });
}

template <typename Sample>
void filter(void* picture, int width, int height, int color)
{
    if (picture == nullptr || width <= 0 || height <= 0)
        return;
    MedianBand<Sample> whole{};
    whole.picture = static_cast<Sample*>(picture);
    whole.width = width;
    whole.height = height;
    whole.channels = color == 1 ? 3 : 1;
    whole.distance = color == 1 ? 1 : 2;
    asFarAsMemoryAllows([&] { filterBands(whole); });
}

} // namespace

} // namespace orvimg

void median_filter8(void* picture, int width, int height, int color)
{
    orvimg::filter<std::uint8_t>(picture, width, height, color);
}

void median_filter16(void* picture, int width, int height, int color)
{
    orvimg::filter<std::uint16_t>(picture, width, height, color);
}

#endif
