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
    {"Mono8", 0x01080001, 8, Packing::Bytes, {}},
    {"Mono10", 0x01100003, 10, Packing::Words, {}},
    {"Mono12", 0x01100005, 12, Packing::Words, {}},
    {"Mono10Packed", 0x010c0004, 10, Packing::Grouped, {}},
    {"Mono12Packed", 0x010c0006, 12, Packing::Grouped, {}},
    {"Mono10p", 0x010a0046, 10, Packing::Stream, {}},
    {"Mono12p", 0x010c0047, 12, Packing::Stream, {}},
    {"BayerGR8", 0x01080008, 8, Packing::Bytes, GR},
    {"BayerRG8", 0x01080009, 8, Packing::Bytes, RG},
    {"BayerGB8", 0x0108000a, 8, Packing::Bytes, GB},
    {"BayerBG8", 0x0108000b, 8, Packing::Bytes, BG},
    {"BayerGR10", 0x0110000c, 10, Packing::Words, GR},
    {"BayerRG10", 0x0110000d, 10, Packing::Words, RG},
    {"BayerGB10", 0x0110000e, 10, Packing::Words, GB},
    {"BayerBG10", 0x0110000f, 10, Packing::Words, BG},
    {"BayerGR12", 0x01100010, 12, Packing::Words, GR},
    {"BayerRG12", 0x01100011, 12, Packing::Words, RG},
    {"BayerGB12", 0x01100012, 12, Packing::Words, GB},
    {"BayerBG12", 0x01100013, 12, Packing::Words, BG},
    {"BayerGR10Packed", 0x010c0026, 10, Packing::Grouped, GR},
    {"BayerRG10Packed", 0x010c0027, 10, Packing::Grouped, RG},
    {"BayerGB10Packed", 0x010c0028, 10, Packing::Grouped, GB},
    {"BayerBG10Packed", 0x010c0029, 10, Packing::Grouped, BG},
    {"BayerGR12Packed", 0x010c002a, 12, Packing::Grouped, GR},
    {"BayerRG12Packed", 0x010c002b, 12, Packing::Grouped, RG},
    {"BayerGB12Packed", 0x010c002c, 12, Packing::Grouped, GB},
    {"BayerBG12Packed", 0x010c002d, 12, Packing::Grouped, BG},
    {"BayerGR10p", 0x010a0056, 10, Packing::Stream, GR},
    {"BayerRG10p", 0x010a0058, 10, Packing::Stream, RG},
    {"BayerGB10p", 0x010a0054, 10, Packing::Stream, GB},
    {"BayerBG10p", 0x010a0052, 10, Packing::Stream, BG},
    {"BayerGR12p", 0x010c0057, 12, Packing::Stream, GR},
    {"BayerRG12p", 0x010c0059, 12, Packing::Stream, RG},
    {"BayerGB12p", 0x010c0055, 12, Packing::Stream, GB},
    {"BayerBG12p", 0x010c0053, 12, Packing::Stream, BG},
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
