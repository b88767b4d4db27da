#include <orvimg/debayer/padded_rows.h>

#include <cstring>

#include <orvimg/mirror.h>

namespace orvimg
{

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
    constexpr int end = 3 * margin;
    if (mosaic.width <= 2 * end) {
        loadWhole(y);
        return;
    }
    const std::uint8_t* const from = mosaic.row(y);
    std::uint8_t* const to = target(y);
    const int last = mosaic.width - end;
    std::memcpy(to, from, end);
    std::memcpy(to + last, from + last, end);
    mirrorEnds(from, to);
}

void PaddedRows::loadWhole(int y)
{
    const std::uint8_t* const from = mosaic.row(y);
    std::memcpy(target(y), from, static_cast<std::size_t>(mosaic.width));
    mirrorEnds(from, target(y));
}

void PaddedRows::mirrorEnds(const std::uint8_t* from, std::uint8_t* to) const
{
    const std::ptrdiff_t width = mosaic.width;
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

} // namespace orvimg
