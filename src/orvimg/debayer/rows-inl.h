// Included once per target by each kernel file.

#if defined(ORVIMG_DEBAYER_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVIMG_DEBAYER_ROWS_INL_H_
#undef ORVIMG_DEBAYER_ROWS_INL_H_
#else
#define ORVIMG_DEBAYER_ROWS_INL_H_
#endif

#include <type_traits>

#include <hwy/highway.h>

/// For lambdas that are called for each vector: a call would cost more than many of them do.
#define ORVIMG_INLINED __attribute__((always_inline))

#include <orvimg/debayer/padded_rows.h>

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
using ByteMask = hn::Mask<Bytes>;
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
/// 16-byte blocks, after which every byte is at its place in one of three blocks of triples. The
/// blocks are put in order by the last step of Highway's own StoreInterleaved3, which is not part
/// of its documented interface.
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

/// A vector of pixels: the chroma that their mosaic row has, green and the other chroma.
struct PixelVector {
    ByteVector chroma;
    ByteVector green;
    ByteVector other;
};

HWY_INLINE void storePixels(bool isRedRow, PixelVector pixels, std::uint8_t* rgb)
{
    if (isRedRow)
        storeTriples(pixels.chroma, pixels.green, pixels.other, rgb);
    else
        storeTriples(pixels.other, pixels.green, pixels.chroma, rgb);
}

/// Which sites of a mosaic row a vector holds: it starts with a chroma site or with a green one.
template <bool startsWithChroma>
struct Phase {
    /// Columns from the start of the vector to its first chroma and its first green site.
    static constexpr int chroma = startsWithChroma ? 0 : 1;
    static constexpr int green = 1 - chroma;

    static HWY_INLINE ByteMask chromaLanes()
    {
        constexpr std::uint16_t lanes = startsWithChroma ? 0x00FF : 0xFF00;
        return hn::MaskFromVec(hn::BitCast(Bytes(), hn::Set(Words(), lanes)));
    }
    static HWY_INLINE ByteVector joined(ShortVector atChroma, ShortVector atGreen)
    {
        return startsWithChroma ? orvimg::HWY_NAMESPACE::joined(atChroma, atGreen)
                                : orvimg::HWY_NAMESPACE::joined(atGreen, atChroma);
    }
};

/// One row of a mosaic with its neighbours.
template <int reach>
struct Row {
    const std::uint8_t* samples[2 * reach + 1];
    int y;
    int chromaColumn; ///< 0 or 1: the first chroma site

    /// \return sample 0 of the row \p dy rows below.
    HWY_INLINE const std::uint8_t* operator[](int dy) const { return samples[dy + reach]; }
};

/// \param rowAt where each row, also one above or below the picture, has its sample 0
template <int reach, typename RowAt>
HWY_INLINE Row<reach> windowAround(const BayerMosaic& mosaic, int y, RowAt rowAt)
{
    Row<reach> row;
    for (int dy = -reach; dy <= reach; ++dy)
        row.samples[dy + reach] = rowAt(y + dy);
    row.y = y;
    row.chromaColumn = mosaic.chromaColumn(y);
    return row;
}

/// A row of a mosaic where it is, and copies of its ends that a vector may run over.
template <int reach>
struct WholeRow {
    Row<reach> inPlace;
    Row<reach> padded;
    int width;
};

template <int reach>
HWY_INLINE WholeRow<reach> wholeRow(const BayerMosaic& mosaic, const PaddedRows& ends, int y)
{
    return {windowAround<reach>(mosaic, y, [&](int row) { return mosaic.row(row); }),
            windowAround<reach>(mosaic, y, [&](int row) { return ends.row(row); }), mosaic.width};
}

/// Calls function(row, x, isInside) for each vector from \p first on that starts before \p end.
/// The constant isInside tells that the vector does not run over an end.
template <int reach, typename Function>
HWY_INLINE void forEachVector(const WholeRow<reach>& row, int first, int end, Function function)
{
    const int lanes = pixelsAtOnce();
    const Row<reach> padded = row.padded;
    const Row<reach> inPlace = row.inPlace;
    // Loading every second sample reads one beyond the last of them.
    const int insideEnd = row.width - lanes - reach;
    int x = first;
    for (; x < reach; x += lanes)
        function(padded, x, std::false_type());
    for (; x < insideEnd; x += lanes)
        function(inPlace, x, std::true_type());
    for (; x < end; x += lanes)
        function(padded, x, std::false_type());
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#endif
