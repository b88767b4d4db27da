#pragma once

#include <orvimg/debayer/bayer_mosaic.h>
#include <orvimg/debayer/scratch.h>

namespace orvimg
{

/// A window of rows of a mosaic that rolls down the picture. The rows are copies, mirrored
/// beyond their ends, so that a kernel needs no border rules and may run over both ends.
class PaddedRows
{
public:
    /// Samples of the mirrored picture on either side of a row.
    static constexpr int margin = 64;

    /// \param count rows held at a time
    static std::size_t scratchBytes(int width, int count);
    PaddedRows(const BayerMosaic& source, int count, Scratch& scratch);

    /// Holds row \p y, any row of the endless mirrored picture, in place of row y - count.
    void load(int y);
    void load(int first, int end);

    /// Asks for samples of row \p y that will be loaded soon: the processor's own prefetching stops
    /// at the end of each page, which is about each row.
    void prefetch(int y, int first, int end) const;

    /// \return sample 0 of row \p y, which must be held.
    const std::uint8_t* row(int y) const { return rows + slot(y) * stride + margin; }

private:
    static std::size_t strideFor(int width);
    std::size_t slot(int y) const
    {
        // Rows start a little above the picture.
        return static_cast<std::size_t>(y + margin * count) % static_cast<std::size_t>(count);
    }

    BayerMosaic mosaic;
    int count;
    std::size_t stride;
    std::uint8_t* rows;
};

} // namespace orvimg
