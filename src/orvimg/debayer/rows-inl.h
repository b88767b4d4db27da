// Included once per target by each kernel file.

#if defined(ORVIMG_DEBAYER_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVIMG_DEBAYER_ROWS_INL_H_
#undef ORVIMG_DEBAYER_ROWS_INL_H_
#else
#define ORVIMG_DEBAYER_ROWS_INL_H_
#endif

#include <cstring>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include <orvimg/debayer/padded_rows.h>
#include <orvimg/parallel.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

/// Rows are padded for vectors of up to 64 bytes.
using Bytes = hn::CappedTag<std::uint8_t, 64>;
using Words = hn::RepartitionToWide<Bytes>;
using Shorts = hn::RebindToSigned<Words>;
using ByteVector = hn::Vec<Bytes>;
using ShortVector = hn::Vec<Shorts>;

/// Pixels that a kernel makes at once.
HWY_INLINE int pixelsAtOnce()
{
    return static_cast<int>(hn::Lanes(Bytes()));
}

/// The samples at sample[0], sample[2], sample[4] ... : one kind of site of a mosaic row.
HWY_INLINE ShortVector everySecond(const std::uint8_t* sample)
{
    const Bytes bytes;
    const Words words;
    const auto pairs = hn::BitCast(words, hn::LoadU(bytes, sample));
    return hn::BitCast(Shorts(), hn::And(pairs, hn::Set(words, 0xFF)));
}

/// Sites side by side again, each limited to a byte.
HWY_INLINE ByteVector joined(ShortVector even, ShortVector odd)
{
    const Shorts shorts;
    const auto zero = hn::Zero(shorts);
    const auto most = hn::Set(shorts, 255);
    const auto low = hn::Min(hn::Max(even, zero), most);
    const auto high = hn::Min(hn::Max(odd, zero), most);
    return hn::BitCast(Bytes(), hn::Or(low, hn::ShiftLeft<8>(high)));
}

/// Writes triples. As 3 and 16 have no common factor, each channel takes one permutation of its
/// 16-byte blocks, after which every byte is at its place in one of three blocks of triples.
HWY_INLINE void storeTriples(ByteVector red, ByteVector green, ByteVector blue, std::uint8_t* rgb)
{
    const Bytes d;
#if HWY_TARGET == HWY_AVX2 || HWY_TARGET == HWY_AVX3
    alignas(16) static constexpr std::uint8_t order[3][16] = {
        {0, 11, 6, 1, 12, 7, 2, 13, 8, 3, 14, 9, 4, 15, 10, 5},
        {5, 0, 11, 6, 1, 12, 7, 2, 13, 8, 3, 14, 9, 4, 15, 10},
        {10, 5, 0, 11, 6, 1, 12, 7, 2, 13, 8, 3, 14, 9, 4, 15}};
    alignas(16) static constexpr std::uint8_t places[16] = {0, 1, 2, 0, 1, 2, 0, 1,
                                                            2, 0, 1, 2, 0, 1, 2, 0};
    const auto place = hn::LoadDup128(d, places);
    const auto first = hn::Eq(place, hn::Zero(d));
    const auto second = hn::Eq(place, hn::Set(d, 1));
    const auto third = hn::Eq(place, hn::Set(d, 2));
    const auto r = hn::TableLookupBytes(red, hn::LoadDup128(d, order[0]));
    const auto g = hn::TableLookupBytes(green, hn::LoadDup128(d, order[1]));
    const auto b = hn::TableLookupBytes(blue, hn::LoadDup128(d, order[2]));
    hn::detail::StoreTransposedBlocks3(hn::IfThenElse(first, r, hn::IfThenElse(second, g, b)),
                                       hn::IfThenElse(third, r, hn::IfThenElse(first, g, b)),
                                       hn::IfThenElse(second, r, hn::IfThenElse(third, g, b)), d,
                                       rgb);
#else
    hn::StoreInterleaved3(red, green, blue, d, rgb);
#endif
}

/// \param chroma, other the chroma that the mosaic row has, and the other one
HWY_INLINE void storePixels(bool isRedRow, ByteVector chroma, ByteVector green, ByteVector other,
                            std::uint8_t* rgb)
{
    if (isRedRow)
        storeTriples(chroma, green, other, rgb);
    else
        storeTriples(other, green, chroma, rgb);
}

/// Writes finished rows into the picture.
class RowWriter
{
public:
    static std::size_t scratchBytes(int width)
    {
        return rowBytes(width) + leftMargin + rightMargin + Scratch::blockOverhead;
    }
    RowWriter(const BayerMosaic& mosaic, std::uint8_t* rgb, Scratch& scratch)
        : picture(rgb)
        , bytes(rowBytes(mosaic.width))
        , bypassesCache(bytes * static_cast<std::size_t>(mosaic.height) >= largePicture)
        , line(scratch.take<std::uint8_t>(bytes + leftMargin + rightMargin) + leftMargin)
    {
    }
    ~RowWriter()
    {
        if (bypassesCache)
            hwy::FlushStream();
    }
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    /// \return the first pixel of a row in the making; a vector may run over both ends.
    std::uint8_t* row() const { return line; }
    /// Copies pixels of row() to row \p y of the picture, from \p first to before \p end.
    void write(int y, int first, int end) const
    {
        std::uint8_t* const target = picture + bytes * static_cast<std::size_t>(y);
        const std::size_t from = 3 * static_cast<std::size_t>(first);
        const std::size_t to = 3 * static_cast<std::size_t>(end);
        if (bypassesCache)
            stream(target, from, to);
        else
            std::memcpy(target + from, line + from, to - from);
    }

private:
    static constexpr std::size_t leftMargin = 64;
    static constexpr std::size_t rightMargin = 3 * 64 + 64;
    // Above this the picture cannot stay in a cache anyway, and reading each line of it before it
    // is overwritten would cost a third of the memory traffic.
    static constexpr std::size_t largePicture = std::size_t{12} << 20;

    static std::size_t rowBytes(int width) { return 3 * static_cast<std::size_t>(width); }

    void stream(std::uint8_t* target, std::size_t from, std::size_t to) const
    {
        const Bytes d;
        const std::size_t lanes = hn::Lanes(d);
        const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(target + from) % lanes;
        std::size_t i = from + (misaligned == 0 ? 0 : lanes - misaligned);
        if (i > to)
            i = to;
        std::memcpy(target + from, line + from, i - from);
        for (; i + lanes <= to; i += lanes)
            hn::Stream(hn::LoadU(d, line + i), d, target + i);
        std::memcpy(target + i, line + i, to - i);
    }

    std::uint8_t* picture;
    std::size_t bytes;
    bool bypassesCache;
    std::uint8_t* line;
};

/// One row of a mosaic with its neighbours, and where its pixels go.
template <int reach>
struct Row {
    const std::uint8_t* samples[2 * reach + 1];
    int first; ///< the first chroma: column 0, or -1 where the row starts with green
    int end;
    bool isRed;
    std::uint8_t* rgb;

    /// \return sample 0 of the row \p dy rows below.
    HWY_INLINE const std::uint8_t* operator[](int dy) const { return samples[dy + reach]; }
};

template <int reach>
HWY_INLINE Row<reach> rowAt(const BayerMosaic& mosaic, const PaddedRows& rows, int y,
                            std::uint8_t* rgb)
{
    Row<reach> row;
    for (int dy = -reach; dy <= reach; ++dy)
        row.samples[dy + reach] = rows.row(y + dy);
    row.first = -mosaic.chromaColumn(y);
    row.end = mosaic.width;
    row.isRed = mosaic.isRedRow(y);
    row.rgb = rgb;
    return row;
}

/// Has kernel(row) fill the pixels of row \p y and writes them. Both take turns, a piece of the
/// row each, so that the memory is never idle while the kernel computes; the row after the window
/// is fetched.
template <int reach, typename Kernel>
HWY_INLINE void fillRow(Row<reach> row, int y, const PaddedRows& rows, const RowWriter& writer,
                        Kernel kernel)
{
    constexpr int piece = 512; // pixels
    const int width = row.end;
    for (int written = 0; written < width;) {
        const int end = row.first + piece < width ? row.first + piece : width;
        row.end = end;
        rows.prefetch(y + reach + 1, written, end);
        kernel(row);
        writer.write(y, written, end);
        written = end;
        row.first += piece;
    }
}

/// Has kernel(row) fill the pixels of each row of the band.
template <int reach, typename Kernel>
HWY_INLINE void forEachRow(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb,
                           Kernel kernel)
{
    constexpr int held = 2 * reach + 1;
    Scratch scratch(PaddedRows::scratchBytes(mosaic.width, held) +
                    RowWriter::scratchBytes(mosaic.width));
    PaddedRows rows(mosaic, held, scratch);
    const RowWriter writer(mosaic, rgb, scratch);
    rows.load(band.first - reach, band.first + reach);
    for (int y = band.first; y < band.last; ++y) {
        rows.load(y + reach);
        fillRow(rowAt<reach>(mosaic, rows, y, writer.row()), y, rows, writer, kernel);
    }
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#endif
