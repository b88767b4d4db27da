#include "OrvimgRecorder.h"

#include <AppComponents/imgproc/ImgProcessor.h>

#include <support/EveryTarget.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace
{

using namespace orvimg_recorder;
using testing::IsEmpty;

std::vector<std::string> functionsCalled()
{
    std::vector<std::string> names;
    for (const Call& call : take())
        names.push_back(call.function);
    return names;
}

std::vector<unsigned short> randomWords(std::size_t count)
{
    std::vector<unsigned short> words(count);
    std::generate(words.begin(), words.end(), std::mt19937(3));
    return words;
}

class ToneMapping : public testing::Test
{
protected:
    void SetUp() override { take(); }
    ImgProcessor processor;
};

TEST_F(ToneMapping, StartsWithPlainTablesWhateverItsStepsSay)
{
    EXPECT_EQ(processor.getBrightnessD(), 0.0);
    EXPECT_EQ(processor.getContrastD(), 1.01097549728898);
    EXPECT_EQ(processor.getGammaD(), 1.00868801407575);
    EXPECT_EQ(processor.getLUTnumber(), 0);
    EXPECT_EQ(processor.getLUT8()[200], 200);
    EXPECT_EQ(processor.getLUT12()[4095], 255);
    std::vector<unsigned short> levels{1023, 4, 3};
    unsigned char mapped[3];
    processor.apply_LUT10_8(levels.data(), 3, mapped);
    EXPECT_THAT(mapped, testing::ElementsAre(255, 1, 0));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(ToneMapping, ChangedStepRebuildsTheThreeTablesOnce)
{
    processor.setContrastD(1.0);
    processor.setContrastD(1.0);
    processor.setBrightnessD(0.5);
    processor.setGammaD(1.0);
    const Calls calls = take();
    ASSERT_EQ(calls.size(), 9U);
    const std::vector<std::vector<double>> steps{{0, 0, 1}, {127, 0, 1}, {127, 0, 0}};
    for (std::size_t i = 0; i < calls.size(); i += 3) {
        EXPECT_EQ(calls[i].function, "create_BCG_LUT8");
        EXPECT_EQ(calls[i].pointers.front(), processor.getLUT8());
        EXPECT_EQ(calls[i + 1].function, "create_BCG_LUT10_8");
        EXPECT_EQ(calls[i + 2].function, "create_BCG_LUT12_8");
        EXPECT_EQ(calls[i + 2].pointers.front(), processor.getLUT12());
        for (std::size_t k = i; k < i + 3; ++k)
            EXPECT_EQ(calls[k].numbers, steps[i / 3]);
    }
    EXPECT_EQ(processor.getLUTnumber(), 3);
}

TEST_F(ToneMapping, FirstTableUsedAfterSwitchingOnIsTheOnlyOneRebuilt)
{
    unsigned short word = 5;
    unsigned char byte = 5;
    unsigned char mapped = 0;
    processor.setipFlag(CS_APPLY_LUT, true);
    processor.apply_LUT10_8(&word, 1, &mapped);
    EXPECT_EQ(mapped, tableEntry(5, 0, 1, 1));
    processor.apply_LUT12_8(&word, 1, &mapped);
    EXPECT_EQ(mapped, 0); // still the plain shift
    processor.apply_LUT8(&byte, 1, &mapped);
    EXPECT_EQ(functionsCalled(), std::vector<std::string>{"create_BCG_LUT10_8"});
    EXPECT_EQ(processor.getLUTnumber(), 1);

    processor.setipFlag(CS_APPLY_LUT, true); // was on
    processor.apply_LUT8(&byte, 1, &mapped);
    EXPECT_THAT(take(), IsEmpty());
    processor.setipFlags(0);
    processor.setipFlags(CS_APPLY_LUT | CS_BYPASS);
    processor.apply_LUT8(&byte, 1, &mapped);
    processor.setipFlag(CS_APPLY_LUT, false);
    processor.setipFlag(CS_APPLY_LUT, true);
    processor.apply_LUT12_8(&word, 1, &mapped);
    EXPECT_EQ(functionsCalled(),
              (std::vector<std::string>{"create_BCG_LUT8", "create_BCG_LUT12_8"}));
    EXPECT_EQ(processor.getLUTnumber(), 3);

    processor.setipFlags(0);
    processor.setipFlag(CS_APPLY_LUT | CS_COLOR_CORRECTION, true);
    processor.apply_LUT8(&byte, 1, &mapped);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(processor.getipFlags(), 0x110000);
}

TEST_F(ToneMapping, BestTablesComeFromTheHistogramOfTheSamples)
{
    unsigned short samples[2] = {1000, 3};
    unsigned char mapped[2];
    processor.setipFlag(CS_APPLY_LUT, true); // stays pending
    processor.apply_best_LUT10_8(samples, 2, mapped);
    EXPECT_THAT(mapped, testing::ElementsAre(bestTableEntry(1000), bestTableEntry(3)));
    processor.apply_best_LUT12_8(samples, 2, mapped);
    const Calls calls = take();
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_EQ(calls[0].function, "histogram10");
    EXPECT_EQ(calls[1].function, "best_lookup_table10to8");
    EXPECT_EQ(calls[0].pointers.back(), calls[1].pointers.front());
    EXPECT_EQ(calls[2], (Call{"histogram12", {samples, calls[3].pointers[0]}, {2}}));
    EXPECT_EQ(calls[3].pointers.back(), processor.getLUT12());
    EXPECT_EQ(processor.getLUTnumber(), 0);
    processor.apply_LUT10_8(samples, 2, mapped);
    EXPECT_EQ(functionsCalled(), std::vector<std::string>{"create_BCG_LUT10_8"});
}

TEST_F(ToneMapping, EachStepValueFindsItsOwnStepOthersTheNext)
{
    for (int step = -127; step <= 127; ++step) {
        const double tolerance = 1e-14;
        processor.setBrightnessD(step / 254.0 - tolerance);
        EXPECT_NEAR(processor.getBrightnessD(), step / 254.0, tolerance);
        const double contrast = step == -64 ? 0.5 : step == 64 ? 2.0 : std::pow(4.0, step / 127.0);
        processor.setContrastD(contrast - tolerance);
        EXPECT_NEAR(processor.getContrastD(), contrast, tolerance);
        processor.setGammaD(std::pow(3.0, step / 127.0) - tolerance);
        EXPECT_NEAR(processor.getGammaD(), std::pow(3.0, step / 127.0), tolerance);
        take();
        processor.setBrightnessD(processor.getBrightnessD());
        processor.setContrastD(processor.getContrastD());
        processor.setGammaD(processor.getGammaD());
        EXPECT_THAT(take(), IsEmpty());
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [value, expected] :
         {std::pair(0.001, 0.00393700787401575), {-3.0, -0.5}, {9.0, 0.5}, {nan, -0.5}}) {
        processor.setBrightnessD(value);
        EXPECT_EQ(processor.getBrightnessD(), expected) << value;
    }
}

/// Tables of 4096 entries: falling, rising by up to `rises` within sixteen entries, and random.
void fillTable(unsigned char* table, int rises)
{
    std::minstd_rand random(static_cast<unsigned>(rises) + 1);
    for (int level = 0, entry = 0; level < 4096; ++level) {
        entry = level % 16 == 0 ? static_cast<int>(random() % 250) : entry;
        entry += level % 16 && rises > 0 && random() % 4 == 0 && entry % 8 < rises ? 1 : 0;
        table[level] = static_cast<unsigned char>(rises < 0 ? random() : entry);
    }
}

TEST_F(ToneMapping, KernelsDoEverySampleOfAnyCountAndNoMore)
{
    unsigned char* const lut10 = processor.getLUT8() + 256; // stands behind the other
    onEveryTarget([&] {
        for (const int count : {-3, 0, 1, 8, 63, 64, 65, 447, 449, 640, 641, 1500, 40000})
            for (const int rises : {-1, 0, 1, 3, 8}) {
                fillTable(processor.getLUT12(), rises);
                std::generate_n(lut10, 1024, std::minstd_rand(5));
                const std::size_t size = static_cast<std::size_t>(std::max(count, 0));
                const std::vector<unsigned short> words = randomWords(size);
                std::vector<unsigned char> bytes(size + 1, 0xA5);
                const auto expect = [&](const char* what, auto expected) {
                    for (std::size_t i = 0; i < size; ++i)
                        ASSERT_EQ(bytes[i], expected(words[i])) << what << i << " of " << count;
                    ASSERT_EQ(bytes[size], 0xA5);
                };
                std::vector<unsigned short> src = words;
                processor.apply_LUT12_8(src.data(), count, bytes.data());
                expect("12 bits ", [&](int s) { return processor.getLUT12()[s & 4095]; });
                processor.apply_LUT10_8(src.data(), count, bytes.data());
                expect("10 bits ", [&](int s) { return lut10[s & 1023]; });
                ImgProcessor::convert10_8(src.data(), count, bytes.data());
                expect("shift ", [](int s) { return s >> 2 & 255; });
                ImgProcessor::convert12_8(src.data(), count, bytes.data());
                expect("shift ", [](int s) { return s >> 4 & 255; });
                ImgProcessor::apply_LUT8(bytes.data(), count, lut10, bytes.data());
                expect("8 bits ", [&](int s) { return lut10[s >> 4 & 255]; });
            }
    });
}

TEST_F(ToneMapping, ConversionIsLimitedByTheSmallestSize)
{
    unsigned char src[9] = {0xEE, 0xFF, 0x0F, 0x00, 0x01, 0xFF, 0x03, 0x34, 0x12};
    unsigned char* const words = src + 1; // at an odd address
    unsigned char dst[8];
    const auto convert = [&](unsigned srcSize, unsigned dstSize, unsigned pixels, int depth) {
        std::memset(dst, 0xA5, sizeof(dst));
        return processor.convertTo8bit(words, srcSize, dst, dstSize, pixels,
                                       static_cast<unsigned char>(depth));
    };
    EXPECT_EQ(convert(8, 8, 8, 12), 4U);
    EXPECT_THAT(dst, testing::ElementsAre(255, 16, 0x3F, 0x23, 0xA5, 0xA5, 0xA5, 0xA5));
    EXPECT_EQ(convert(5, 8, 8, 10), 2U);
    EXPECT_EQ(convert(8, 1, 8, 10), 1U);
    EXPECT_EQ(convert(8, 8, 3, 10), 3U);
    EXPECT_THAT(dst, testing::ElementsAre(255, 64, 255, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5));
    EXPECT_EQ(convert(8, 8, 8, 255), 4U);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(convert(8, 5, 6, 8), 5U);
    EXPECT_EQ(std::memcmp(dst, words, 5), 0);
    EXPECT_EQ(dst[5], 0xA5);
    EXPECT_EQ(processor.convertTo8bit(src, 8, src, 8, 8, 8), 0U);
}

TEST(ImgProcessorCopy, HasTheSettingsAndTablesButNoContext)
{
    take();
    {
        ImgProcessor original;
        original.setGammaD(2.0);
        original.setHue(30.0);
        original.setipFlags(CS_MEDIAN_FILTER | static_cast<CamStateFlag>(0x80000000));
        original.setCapabilityFlags(CC_COLOR_SENSOR);
        original.setColorReconstructionMethod(5);
        original.setFlipV(true);
        const ImgProcessor copy(original);
        ImgProcessor assigned;
        assigned = copy;
        const auto settings = [](ImgProcessor& p) {
            return std::make_tuple(p.getGammaD(), p.getHue(), p.getipFlags(), p.getFlipV(),
                                   p.getFlipH(), p.getLUTnumber(),
                                   p.getColorReconstructionMethod());
        };
        EXPECT_EQ(settings(assigned), settings(original));
        EXPECT_TRUE(assigned.isCapabilityFlagSet(CC_COLOR_SENSOR));
        EXPECT_FALSE(assigned.isipFlagSet(CS_MEDIAN_FILTER | CS_BYPASS));
        EXPECT_EQ(std::memcmp(assigned.getLUT12(), original.getLUT12(), 4096), 0);
        take();
    }
    EXPECT_EQ(take(), Calls(3, Call{"color_correction_done", {nullptr}, {}}));
}

} // namespace
