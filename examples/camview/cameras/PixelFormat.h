#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// How the samples of a pixel format lie in memory.
enum class Packing {
    Bytes,   ///< one byte each
    Words,   ///< little-endian words, value in the low bits
    Grouped, ///< two samples in three bytes, the high bits in the outer ones (GigE Vision)
    Stream   ///< a little-endian stream of bits without gaps (PFNC names ending in p)
};

/// Where red lies in the 2x2 cell at the picture's upper left corner.
struct BayerPhase {
    int redX = 0;
    int redY = 0;

    /// What FrameEx2 expects of a frame with these mirror flags: G B / R G when unmirrored.
    static BayerPhase ofMirroring(bool mirrorH, bool mirrorV);
};

/// A pixel format of the PFNC naming convention that camview can take.
struct PixelFormat {
    const char* name = "";  ///< the camera's name for it, such as BayerRG12Packed
    std::uint32_t code = 0; ///< the 32-bit value of the convention
    int bitDepth = 8;
    Packing packing = Packing::Bytes;
    std::optional<BayerPhase> phase; ///< none for a monochrome format

    static const PixelFormat* byCode(std::uint32_t code);
    static const PixelFormat* byName(const char* name);

    /// The bytes that so many samples take.
    std::size_t bytesFor(std::size_t samples) const;
};

/// Unpacks samples of a format of more than 8 bits into words. \p packed holds
/// format.bytesFor(samples) bytes.
void unpackSamples(const PixelFormat& format, const std::uint8_t* packed, std::size_t samples,
                   std::uint16_t* out);
