#include "cameras/PixelFormat.h"

#include <gmock/gmock.h>

#include <vector>

namespace
{

std::vector<std::uint16_t> unpacked(const char* name, const std::vector<std::uint8_t>& bytes,
                                    std::size_t samples)
{
    const PixelFormat* format = PixelFormat::byName(name);
    EXPECT_EQ(format->bytesFor(samples), bytes.size()) << name;
    std::vector<std::uint16_t> out(samples);
    unpackSamples(*format, bytes.data(), samples, out.data());
    return out;
}

TEST(PixelFormat, UnpacksEachPacking)
{
    using testing::ElementsAre;
    EXPECT_THAT(unpacked("Mono12", {0xbc, 0xfa, 0x01, 0x00}, 2), ElementsAre(0xabc, 0x001));
    EXPECT_THAT(unpacked("BayerRG10", {0xff, 0xff}, 1), ElementsAre(0x3ff));
    // Two samples, 0xabc and 0x123: high bytes outside, the low nibbles between.
    EXPECT_THAT(unpacked("Mono12Packed", {0xab, 0x3c, 0x12}, 2), ElementsAre(0xabc, 0x123));
    EXPECT_THAT(unpacked("BayerGB12Packed", {0xab, 0x3c, 0x12, 0xff, 0x0f}, 3),
                ElementsAre(0xabc, 0x123, 0xfff));
    EXPECT_THAT(unpacked("Mono10Packed", {0xab, 0x21, 0xcd}, 2), ElementsAre(0x2ad, 0x336));
    // A stream of bits from the lowest on: 0xabc then 0x123.
    EXPECT_THAT(unpacked("Mono12p", {0xbc, 0x3a, 0x12}, 2), ElementsAre(0xabc, 0x123));
    // 1, 2, 0x3ff, 0x200 in ten bits each.
    EXPECT_THAT(unpacked("BayerBG10p", {0x01, 0x08, 0xf0, 0x3f, 0x80}, 4),
                ElementsAre(1, 2, 0x3ff, 0x200));
    EXPECT_THAT(unpacked("Mono10p", {0xff, 0x03}, 1), ElementsAre(0x3ff));
}

TEST(PixelFormat, TellsThePhaseThatFramesExpect)
{
    const struct {
        bool mirrorH;
        bool mirrorV;
        const char* format;
    } rows[] = {{false, false, "BayerGB8"},
                {true, false, "BayerBG8"},
                {false, true, "BayerRG8"},
                {true, true, "BayerGR8"}};
    for (const auto& row : rows) {
        const BayerPhase phase = BayerPhase::ofMirroring(row.mirrorH, row.mirrorV);
        const BayerPhase named = *PixelFormat::byName(row.format)->phase;
        EXPECT_EQ(phase.redX, named.redX) << row.format;
        EXPECT_EQ(phase.redY, named.redY) << row.format;
    }
    EXPECT_EQ(PixelFormat::byCode(0x02180014), nullptr); // RGB8 is not taken
    EXPECT_STREQ(PixelFormat::byCode(0x010c0059)->name, "BayerRG12p");
}

} // namespace
