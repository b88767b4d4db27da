#include "PixelFormat.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{

constexpr BayerPhase GR{1, 0};
constexpr BayerPhase RG{0, 0};
constexpr BayerPhase GB{0, 1};
constexpr BayerPhase BG{1, 1};

// For each kind of sensor the formats that need the least work stand first.
constexpr PixelFormat formats[] = {
    {0x01080001, "Mono8", 8, Packing::Bytes, {}},
    {0x01100003, "Mono10", 10, Packing::Words, {}},
    {0x01100005, "Mono12", 12, Packing::Words, {}},
    {0x010c0004, "Mono10Packed", 10, Packing::Grouped, {}},
    {0x010c0006, "Mono12Packed", 12, Packing::Grouped, {}},
    {0x010a0046, "Mono10p", 10, Packing::Stream, {}},
    {0x010c0047, "Mono12p", 12, Packing::Stream, {}},
    {0x01080008, "BayerGR8", 8, Packing::Bytes, GR},
    {0x01080009, "BayerRG8", 8, Packing::Bytes, RG},
    {0x0108000a, "BayerGB8", 8, Packing::Bytes, GB},
    {0x0108000b, "BayerBG8", 8, Packing::Bytes, BG},
    {0x0110000c, "BayerGR10", 10, Packing::Words, GR},
    {0x0110000d, "BayerRG10", 10, Packing::Words, RG},
    {0x0110000e, "BayerGB10", 10, Packing::Words, GB},
    {0x0110000f, "BayerBG10", 10, Packing::Words, BG},
    {0x01100010, "BayerGR12", 12, Packing::Words, GR},
    {0x01100011, "BayerRG12", 12, Packing::Words, RG},
    {0x01100012, "BayerGB12", 12, Packing::Words, GB},
    {0x01100013, "BayerBG12", 12, Packing::Words, BG},
    {0x010c0026, "BayerGR10Packed", 10, Packing::Grouped, GR},
    {0x010c0027, "BayerRG10Packed", 10, Packing::Grouped, RG},
    {0x010c0028, "BayerGB10Packed", 10, Packing::Grouped, GB},
    {0x010c0029, "BayerBG10Packed", 10, Packing::Grouped, BG},
    {0x010c002a, "BayerGR12Packed", 12, Packing::Grouped, GR},
    {0x010c002b, "BayerRG12Packed", 12, Packing::Grouped, RG},
    {0x010c002c, "BayerGB12Packed", 12, Packing::Grouped, GB},
    {0x010c002d, "BayerBG12Packed", 12, Packing::Grouped, BG},
    {0x010a0056, "BayerGR10p", 10, Packing::Stream, GR},
    {0x010a0058, "BayerRG10p", 10, Packing::Stream, RG},
    {0x010a0054, "BayerGB10p", 10, Packing::Stream, GB},
    {0x010a0052, "BayerBG10p", 10, Packing::Stream, BG},
    {0x010c0057, "BayerGR12p", 12, Packing::Stream, GR},
    {0x010c0059, "BayerRG12p", 12, Packing::Stream, RG},
    {0x010c0055, "BayerGB12p", 12, Packing::Stream, GB},
    {0x010c0053, "BayerBG12p", 12, Packing::Stream, BG},
};

void unpackWords(const std::uint8_t* in, std::size_t samples, int bits, std::uint16_t* out)
{
    const int mask = (1 << bits) - 1;
    for (std::size_t i = 0; i < samples; ++i)
        out[i] = static_cast<std::uint16_t>((in[2 * i] | in[2 * i + 1] << 8) & mask);
}

void unpackGrouped(const std::uint8_t* in, std::size_t samples, int bits, std::uint16_t* out)
{
    const int low = bits - 8; // bits of a sample in the shared middle byte
    const int mask = (1 << low) - 1;
    for (std::size_t i = 0; i + 1 < samples; i += 2, in += 3) {
        out[i] = static_cast<std::uint16_t>(in[0] << low | (in[1] & mask));
        out[i + 1] = static_cast<std::uint16_t>(in[2] << low | (in[1] >> 4 & mask));
    }
    if (samples % 2 != 0)
        out[samples - 1] = static_cast<std::uint16_t>(in[0] << low | (in[1] & mask));
}

void unpackStream(const std::uint8_t* in, std::size_t samples, int bits, std::uint16_t* out)
{
    const std::uint32_t mask = (1U << bits) - 1;
    std::uint32_t pending = 0;
    int held = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        while (held < bits) {
            pending |= std::uint32_t(*in++) << held;
            held += 8;
        }
        out[i] = static_cast<std::uint16_t>(pending & mask);
        pending >>= bits;
        held -= bits;
    }
}

} // namespace

BayerPhase BayerPhase::ofMirroring(bool mirrorH, bool mirrorV)
{
    return {mirrorH ? 1 : 0, mirrorV ? 0 : 1};
}

const PixelFormat* PixelFormat::byCode(std::uint32_t code)
{
    const auto found = std::find_if(std::begin(formats), std::end(formats),
                                    [code](const PixelFormat& f) { return f.code == code; });
    return found != std::end(formats) ? found : nullptr;
}

const PixelFormat* PixelFormat::byName(const char* name)
{
    const auto found =
        std::find_if(std::begin(formats), std::end(formats),
                     [name](const PixelFormat& f) { return std::strcmp(f.name, name) == 0; });
    return found != std::end(formats) ? found : nullptr;
}

std::size_t PixelFormat::bytesFor(std::size_t samples) const
{
    switch (packing) {
    case Packing::Words:
        return 2 * samples;
    case Packing::Grouped:
        return (3 * samples + 1) / 2;
    case Packing::Stream:
        return (samples * std::size_t(bitDepth) + 7) / 8;
    case Packing::Bytes:
        break;
    }
    return samples;
}

void unpackSamples(const PixelFormat& format, const std::uint8_t* packed, std::size_t samples,
                   std::uint16_t* out)
{
    if (format.packing == Packing::Words)
        unpackWords(packed, samples, format.bitDepth, out);
    else if (format.packing == Packing::Grouped)
        unpackGrouped(packed, samples, format.bitDepth, out);
    else
        unpackStream(packed, samples, format.bitDepth, out);
}
