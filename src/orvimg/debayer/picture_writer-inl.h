// Included once per target by each kernel file.

#if defined(ORVIMG_DEBAYER_PICTURE_WRITER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVIMG_DEBAYER_PICTURE_WRITER_INL_H_
#undef ORVIMG_DEBAYER_PICTURE_WRITER_INL_H_
#else
#define ORVIMG_DEBAYER_PICTURE_WRITER_INL_H_
#endif

#include <algorithm>
#include <cstring>

#include <hwy/cache_control.h>

#include <orvimg/debayer/rows-inl.h>
#include <orvimg/parallel.h>

HWY_BEFORE_NAMESPACE();
namespace orvimg
{
namespace HWY_NAMESPACE
{

/// Writes the rows of a picture straight from registers: the fast kernels would lose a third of
/// their time to a line in between, even though it stays in the first-level cache. Large pictures
/// are written around the caches, which takes aligned vectors; so the kernels start a row wherever
/// one of its pixels is aligned.
class PictureWriter
{
public:
    PictureWriter(const BayerMosaic& source, std::uint8_t* rgb)
        : mosaic(source)
        , picture(rgb)
        , rowBytes(3 * static_cast<std::size_t>(source.width))
        , bypassesCache(rowBytes * static_cast<std::size_t>(source.height) >= largePicture)
    {
    }
    ~PictureWriter()
    {
        if (bypassesCache)
            hwy::FlushStream();
    }
    PictureWriter(const PictureWriter&) = delete;
    PictureWriter& operator=(const PictureWriter&) = delete;

    /// Writes a row with the vectors pixelsAt(phase, row, x). The row after the window is fetched
    /// meanwhile.
    /// \param padded, inPlace the same row with ends that a vector may run over, and without
    template <int reach, typename PixelsAt>
    HWY_INLINE void write(const Row<reach>& padded, const Row<reach>& inPlace,
                          PixelsAt pixelsAt) const
    {
        std::uint8_t* const out = picture + rowBytes * static_cast<std::size_t>(padded.y);
        const int aligned = bypassesCache ? pixelsUntilAligned(out) : 0;
        const int first = aligned == 0 ? 0 : aligned - pixelsAtOnce();
        if (((first ^ padded.chromaColumn) & 1) == 0)
            fill(Phase<true>(), padded, inPlace, first, out, pixelsAt);
        else
            fill(Phase<false>(), padded, inPlace, first, out, pixelsAt);
    }

private:
    // Above this the picture cannot stay in a cache anyway, and reading each line of it before it
    // is overwritten would cost a third of the memory traffic.
    static constexpr std::size_t largePicture = std::size_t{12} << 20;

    template <typename AnyPhase, int reach, typename PixelsAt>
    HWY_INLINE void fill(AnyPhase phase, const Row<reach>& padded, const Row<reach>& inPlace,
                         int first, std::uint8_t* out, PixelsAt pixelsAt) const
    {
        const int lanes = pixelsAtOnce();
        const std::uint8_t* const ahead = mosaic.row(padded.y + reach + 1);
        const auto fillUntil = [&](int x, int end, const Row<reach>& row) HWY_ATTR {
            for (; x < end; x += lanes) {
                hwy::Prefetch(ahead + std::max(x, 0));
                put(row.isRed, pixelsAt(phase, row, x), x, out);
            }
            return x;
        };
        int x = fillUntil(first, reach, padded);
        // Loading every second sample reads one beyond the last of them.
        x = fillUntil(x, mosaic.width - lanes - reach, inPlace);
        fillUntil(x, mosaic.width, padded);
    }

    HWY_INLINE void put(bool isRedRow, PixelVector pixels, int x, std::uint8_t* out) const
    {
        if (x < 0 || x + pixelsAtOnce() > mosaic.width)
            putPart(isRedRow, pixels, x, out);
        else if (bypassesCache)
            stream(isRedRow, pixels, out + std::ptrdiff_t{3} * x);
        else
            storePixels(isRedRow, pixels, out + std::ptrdiff_t{3} * x);
    }

    HWY_INLINE void putPart(bool isRedRow, PixelVector pixels, int x, std::uint8_t* out) const
    {
        std::uint8_t triples[3 * longestVector];
        storePixels(isRedRow, pixels, triples);
        const int first = std::max(x, 0);
        const int end = std::min(x + pixelsAtOnce(), mosaic.width);
        std::memcpy(out + std::ptrdiff_t{3} * first, triples + 3 * (first - x),
                    3 * static_cast<std::size_t>(end - first));
    }

    static HWY_INLINE void stream(bool isRedRow, PixelVector pixels, std::uint8_t* out)
    {
        const Bytes d;
        const std::size_t lanes = hn::Lanes(d);
        HWY_ALIGN std::uint8_t triples[3 * longestVector]; // stays in registers
        storePixels(isRedRow, pixels, triples);
        for (std::size_t i = 0; i < 3 * lanes; i += lanes)
            hn::Stream(hn::Load(d, triples + i), d, out + i);
    }

    /// \return how many pixels from \p out on lie before the first at an aligned address: as
    ///   three is odd, a vector of pixels has one.
    static int pixelsUntilAligned(const std::uint8_t* out)
    {
        constexpr std::uintptr_t inverseOfThree = 171; // 3 * 171 = 2 * 256 + 1
        const auto lanes = static_cast<std::uintptr_t>(pixelsAtOnce());
        const auto address = reinterpret_cast<std::uintptr_t>(out);
        return static_cast<int>((0 - address) * inverseOfThree % lanes);
    }

    const BayerMosaic& mosaic;
    std::uint8_t* picture;
    std::size_t rowBytes;
    bool bypassesCache;
};

/// Writes the rows of the band with the vectors pixelsAt(phase, row, x). The mosaic is read where
/// it is, but for the ends of its rows.
template <int reach, typename PixelsAt>
HWY_INLINE void writeRows(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb,
                          PixelsAt pixelsAt)
{
    constexpr int held = 2 * reach + 1;
    Scratch scratch(PaddedRows::scratchBytes(mosaic.width, held));
    PaddedRows ends(mosaic, held, scratch);
    const PictureWriter writer(mosaic, rgb);
    for (int y = band.first - reach; y < band.first + reach; ++y)
        ends.loadEnds(y);
    for (int y = band.first; y < band.last; ++y) {
        ends.loadEnds(y + reach);
        writer.write(rowOfCopies<reach>(mosaic, ends, y), rowInPlace<reach>(mosaic, y), pixelsAt);
    }
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#endif
