#include <orvimg/debayer/kernels.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "orvimg/debayer/cell.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <orvimg/debayer/rows-inl.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// Both pixels of a cell alike.
HWY_INLINE ByteVector twice(ShortVector v)
{
    return hn::BitCast(Bytes(), hn::Or(v, hn::ShiftLeft<8>(v)));
}

/// Colours the cells of the rows \p top and the next one.
HWY_INLINE void cellRow(const BayerMosaic& mosaic, const PaddedRows& rows, int top,
                        std::uint8_t* out)
{
    const Shorts d;
    const int width = mosaic.width;
    const int chromaColumn = mosaic.chromaColumn(top);
    const std::uint8_t* const upper = rows.row(top);
    const std::uint8_t* const lower = rows.row(top + 1);
    const bool isRedRow = mosaic.isRedRow(top);
    const auto one = hn::Set(d, 1);
    for (int x = 0; x < width; x += pixelsAtOnce()) {
        const auto chroma = everySecond(upper + x + chromaColumn);
        const auto upperGreen = everySecond(upper + x + 1 - chromaColumn);
        const auto lowerGreen = everySecond(lower + x + chromaColumn);
        const auto other = everySecond(lower + x + 1 - chromaColumn);
        const auto green = hn::ShiftRight<1>(hn::Add(hn::Add(upperGreen, lowerGreen), one));
        storePixels(isRedRow, twice(chroma), twice(green), twice(other), out + 3 * x);
    }
}

void cellRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    Scratch scratch(PaddedRows::scratchBytes(mosaic.width, 2) +
                    RowWriter::scratchBytes(mosaic.width));
    PaddedRows rows(mosaic, 2, scratch);
    const RowWriter writer(mosaic, rgb, scratch);
    // Bands start at even rows, thus with a whole cell.
    for (int y = band.first; y < band.last; y += 2) {
        rows.load(y, y + 2);
        cellRow(mosaic, rows, y, writer.row());
        writer.write(y, 0, mosaic.width);
        if (y + 1 < band.last)
            writer.write(y + 1, 0, mosaic.width);
    }
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvimg
{

HWY_EXPORT(cellRows);

void debayerCell(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb)
{
    HWY_DYNAMIC_DISPATCH(cellRows)(mosaic, band, rgb);
}

} // namespace orvimg
#endif
