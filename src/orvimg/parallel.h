#pragma once

#include <new>
#include <type_traits>

namespace orvimg
{

/// Rows \p first ... \p last - 1 of a picture.
struct RowBand {
    int first;
    int last;
};

/// The number of bands into which the rows of a picture are to be shared out: 1 while a single
/// thread is set, and no more than keeps \p minimumRows in each band.
int rowBandCount(int rows, int minimumRows);

/// Band \p index of \p count. Bands start at even rows, so that no cell of a mosaic is split.
inline RowBand rowBand(int rows, int index, int count)
{
    const auto start = [rows, count](int band) {
        return band == count ? rows : static_cast<int>((1LL * rows * band / count) & ~1LL);
    };
    return {start(index), start(index + 1)};
}

/// Calls \p task(context, index) for the indices 0 ... count - 1 on the threads that are set and
/// returns when all calls have. When one throws, those not yet begun are left out.
void runOnThreads(int count, void (*task)(void* context, int index), void* context);

/// Calls \p function(index) for the indices 0 ... count - 1, on this thread alone when it is
/// only one.
template <typename Function>
void forEachBand(int count, Function&& function)
{
    if (count == 1) {
        function(0);
        return;
    }
    using Called = std::remove_reference_t<Function>;
    runOnThreads(
        count, [](void* context, int index) { (*static_cast<Called*>(context))(index); },
        &function);
}

/// Calls \p function(firstRow, endRow) for bands that together cover 0 ... rows - 1.
template <typename Function>
void forEachRowBand(int rows, int minimumRows, Function&& function)
{
    const int count = rowBandCount(rows, minimumRows);
    forEachBand(count, [&](int index) {
        const RowBand band = rowBand(rows, index, count);
        function(band.first, band.last);
    });
}

/// Calls \p work(). The C interface can neither throw nor report: a picture for which there is no
/// memory stays unfinished.
template <typename Work>
void asFarAsMemoryAllows(Work&& work) noexcept
{
    try {
        work();
    } catch (const std::bad_alloc&) {
    }
}

} // namespace orvimg
