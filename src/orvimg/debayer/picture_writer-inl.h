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

/// Where the pixels of a row go.
/// \tparam bypassesCache whether whole vectors are written around the caches, which takes aligned
///   addresses
template <bool bypassesCache>
struct PixelRow {
    std::uint8_t* out;
    int width;
    bool isRed; ///< the chroma that the mosaic has there

    /// Writes those of the pixels from column \p x on that lie in the picture.
    HWY_INLINE void put(PixelVector pixels, int x, std::false_type /*isInside*/) const
    {
        if (x < 0 || x + pixelsAtOnce() > width)
            putPart(pixels, x);
        else
            put(pixels, x, std::true_type());
    }

    HWY_INLINE void put(PixelVector pixels, int x, std::true_type /*isInside*/) const
    {
        if constexpr (bypassesCache)
            stream(pixels, out + std::ptrdiff_t{3} * x);
        else
            storePixels(isRed, pixels, out + std::ptrdiff_t{3} * x);
    }

    HWY_INLINE void putPart(PixelVector pixels, int x) const
    {
        std::uint8_t triples[3 * longestVector];
        storePixels(isRed, pixels, triples);
        const int first = std::max(x, 0);
        const int end = std::min(x + pixelsAtOnce(), width);
        std::memcpy(out + std::ptrdiff_t{3} * first, triples + std::ptrdiff_t{3} * (first - x),
                    3 * static_cast<std::size_t>(end - first));
    }

    HWY_INLINE void stream(PixelVector pixels, std::uint8_t* to) const
    {
        const Bytes d;
        const std::size_t lanes = hn::Lanes(d);
        HWY_ALIGN std::uint8_t triples[3 * longestVector]; // stays in registers
        storePixels(isRed, pixels, triples);
        for (std::size_t i = 0; i < 3 * lanes; i += lanes)
            hn::Stream(hn::Load(d, triples + i), d, to + i);
    }
};

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

    /// Writes a row with the vectors pixelsAt(phase, row, x).
    /// \param ahead a row of the mosaic that is fetched meanwhile
    template <int reach, typename PixelsAt>
    HWY_INLINE void write(const WholeRow<reach>& row, int ahead, PixelsAt pixelsAt) const
    {
        if (bypassesCache)
            fill<true>(row, mosaic.row(ahead), pixelsAt);
        else
            fill<false>(row, mosaic.row(ahead), pixelsAt);
    }

private:
    // Above this the picture cannot stay in a cache anyway, and reading each line of it before it
    // is overwritten would cost a third of the memory traffic.
    static constexpr std::size_t largePicture = std::size_t{12} << 20;

    template <bool around, int reach, typename PixelsAt>
    HWY_INLINE void fill(const WholeRow<reach>& row, const std::uint8_t* ahead,
                         PixelsAt pixelsAt) const
    {
        const int y = row.inPlace.y;
        const PixelRow<around> pixels{picture + rowBytes * static_cast<std::size_t>(y),
                                      mosaic.width, mosaic.isRedRow(y)};
        const int aligned = around ? pixelsUntilAligned(pixels.out) : 0;
        const int first = aligned == 0 ? 0 : aligned - pixelsAtOnce();
        const auto fillFrom = [=, &row](auto phase) HWY_ATTR ORVIMG_INLINED {
            forEachVector(row, first, pixels.width,
                          [=](const Row<reach>& samples, int x, auto isInside)
                              HWY_ATTR ORVIMG_INLINED {
                                  hwy::Prefetch(ahead + std::max(x, 0));
                                  pixels.put(pixelsAt(phase, samples, x), x, isInside);
                              });
        };
        if (((first ^ row.inPlace.chromaColumn) & 1) == 0)
            fillFrom(Phase<true>());
        else
            fillFrom(Phase<false>());
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
        ends.load(y);
    for (int y = band.first; y < band.last; ++y) {
        ends.load(y + reach);
        writer.write(wholeRow<reach>(mosaic, ends, y), y + reach + 1, pixelsAt);
    }
}

} // namespace HWY_NAMESPACE
} // namespace orvimg
HWY_AFTER_NAMESPACE();

#endif
