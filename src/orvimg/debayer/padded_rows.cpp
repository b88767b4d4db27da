#include <orvimg/debayer/padded_rows.h>

#include <algorithm>
#include <cstring>

#include <hwy/cache_control.h>

#include <orvimg/mirror.h>

namespace orvimg
{

namespace
{

constexpr std::size_t longestVector = 64;
constexpr int cacheLine = 64;

} // namespace

std::size_t PaddedRows::strideFor(int width)
{
    return (static_cast<std::size_t>(width) + 2 * margin + 2 * longestVector) / longestVector *
           longestVector;
}

std::size_t PaddedRows::scratchBytes(int width, int count)
{
    return strideFor(width) * static_cast<std::size_t>(count) + Scratch::blockOverhead;
}

PaddedRows::PaddedRows(const BayerMosaic& source, int heldRows, Scratch& scratch)
    : mosaic(source)
    , count(heldRows)
    , stride(strideFor(source.width))
    , rows(scratch.take<std::uint8_t>(stride * static_cast<std::size_t>(heldRows)))
{
}

void PaddedRows::load(int y)
{
    const std::ptrdiff_t width = mosaic.width;
    const std::uint8_t* const from = mosaic.samples + mirrored(y, mosaic.height) * width;
    std::uint8_t* const to = rows + slot(y) * stride + margin;
    std::memcpy(to, from, static_cast<std::size_t>(width));
    if (width > margin) {
        for (std::ptrdiff_t i = 1; i <= margin; ++i) {
            to[-i] = from[i];
            to[width - 1 + i] = from[width - 1 - i];
        }
        return;
    }
    for (std::ptrdiff_t i = 1; i <= margin; ++i) {
        to[-i] = from[mirrored(-i, width)];
        to[width - 1 + i] = from[mirrored(width - 1 + i, width)];
    }
}

void PaddedRows::prefetch(int y, int first, int end) const
{
    if (y < 0 || y >= mosaic.height)
        return;
    const std::uint8_t* const from = mosaic.samples + std::ptrdiff_t{y} * mosaic.width;
    for (int x = first; x < end; x += cacheLine)
        hwy::Prefetch(from + x);
}

void PaddedRows::load(int first, int end)
{
    for (int y = first; y < end; ++y)
        load(y);
}

} // namespace orvimg
