#include "OrvimgRecorder.h"

#include <AppComponents/imgproc/ImgProcessor.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace
{

using namespace orvimg_recorder;
using testing::IsEmpty;

constexpr int width = 6;
constexpr int height = 4;
constexpr int pixels = width * height;

struct Setting {
    int method = 2;
    int flags = 0;
    int depth = 8;
    bool mirrorV = false;
    bool mirrorH = false;
    bool colorSensor = false;

    bool has(CamStateFlag flag) const { return (flags & flag) != 0; }
    bool bypass() const { return has(CS_BYPASS); }
    bool corrects() const { return has(CS_COLOR_CORRECTION) || greyOfColor(); }
    bool greyOfColor() const { return method == 1 && colorSensor && !bypass(); }
    bool color() const { return method > 1 || method < 0 || greyOfColor(); }
    bool median() const { return has(CS_MEDIAN_FILTER) && !bypass() && method != 0; }
    bool table() const { return has(CS_APPLY_LUT) && method != 0; }
    bool makesGrey() const { return depth > 8 || table(); }
    std::string phase() const
    {
        return mirrorV ? (mirrorH ? "grbg" : "rggb") : (mirrorH ? "bggr" : "gbrg");
    }
};

std::ostream& operator<<(std::ostream& out, const Setting& s)
{
    return out << "method " << s.method << ", flags 0x" << std::hex << s.flags << std::dec << ", "
               << s.depth << " bits, " << s.phase() << (s.colorSensor ? ", colour sensor" : "");
}

_FrameParams params(const Setting& s)
{
    return {0, 0, width, height, 1, 8, s.mirrorV, s.mirrorH};
}

int rawSample(int i)
{
    return i * 9;
}

void refill(FrameEx2& frame)
{
    frame.invalidateFrame();
    frame.frameTag = 42;
    for (int i = 0; i < pixels; ++i) {
        const unsigned short sample = static_cast<unsigned short>(rawSample(i));
        if (frame.rawBitDepth > 8)
            std::memcpy(frame.getImageBuffer() + 2 * i, &sample, 2);
        else
            frame.getImageBuffer()[i] = static_cast<unsigned char>(sample);
    }
}

void apply(ImgProcessor& processor, const Setting& s)
{
    processor.setColorReconstructionMethod(s.method);
    processor.setipFlags(s.flags);
    processor.setCapabilityFlags(s.colorSensor ? CC_COLOR_SENSOR : 0);
    processor.setColorCorrectionParams(1.1, 1.2, 1.3, 10.0, 0.5, 2.0);
}

/// The byte of the grey stage, or the raw byte where there is none.
unsigned char greyByte(const Setting& s, int i)
{
    const int sample = rawSample(i) + (s.median() ? medianIncrement : 0);
    if (s.table())
        return tableEntry(sample, 0, 1, 1);
    return static_cast<unsigned char>(sample >> (s.depth - 8));
}

std::vector<unsigned char> expectedPicture(const Setting& s)
{
    std::vector<unsigned char> picture;
    const bool corrected = s.color() && (s.corrects() || s.has(CS_AUTO_WHITE_BALANCE));
    for (int i = 0; i < pixels; ++i)
        for (int channel = 0; channel < (s.color() && !s.greyOfColor() ? 3 : 1); ++channel)
            picture.push_back(static_cast<unsigned char>(greyByte(s, i) + channel +
                                                         (corrected ? correctionIncrement : 0)));
    return picture;
}

class Pipeline : public testing::Test
{
protected:
    void SetUp() override { take(); }

    /// The calls that one frame makes, in their order.
    static Calls expectedCalls(const Setting& s, ImgProcessor& processor, FrameEx2& raw, bool first,
                               const void* context)
    {
        Calls calls;
        const auto call = [&](const std::string& function, std::vector<const void*> pointers,
                              std::vector<double> numbers) {
            calls.push_back({function, std::move(pointers), std::move(numbers)});
        };
        if (s.median())
            call(s.depth == 8 ? "median_filter8" : "median_filter16", {raw.getImageBuffer()},
                 {width, height, 0});
        if (s.table() && first) {
            const auto depth = std::to_string(s.depth);
            call("create_BCG_LUT" + depth + (s.depth > 8 ? "_8" : ""),
                 {s.depth == 12 ? processor.getLUT12()
                                : processor.getLUT8() + (s.depth == 10 ? 256 : 0)},
                 {0, 1, 1});
        }
        if (!s.color())
            return calls;
        static const int codes[] = {0, 2, 2, 4, 6, 3, 5, 1};
        const double algorithm = s.method >= 1 && s.method <= 7 ? codes[s.method] : 0;
        const double pattern = s.mirrorV ? (s.mirrorH ? 1 : 0) : (s.mirrorH ? 3 : 2);
        FrameEx2* const mosaic = s.makesGrey() ? raw.processed : &raw;
        const void* const rgb = mosaic->processed->getImageBuffer();
        const bool balances = s.has(CS_AUTO_WHITE_BALANCE);
        if (balances)
            call("white_balance8" + s.phase(), {mosaic->getImageBuffer()}, {width, height, 1, 1});
        call("debayer24", {mosaic->getImageBuffer(), rgb}, {width, height, pattern, algorithm});
        if (!balances && !s.corrects())
            return calls;
        if (first)
            call("color_correction_init", {}, {});
        const double red = balances ? estimatedRedGain : s.greyOfColor() ? 1 : 1.1;
        const double green = balances || s.greyOfColor() ? 1 : 1.2;
        const double blue = balances ? estimatedBlueGain : s.greyOfColor() ? 1 : 1.3;
        std::vector<double> values{red, 0, green, 0, blue, 0, 10, 0.5, 2, 0};
        if (s.greyOfColor())
            values = {red, 0, green, 0, blue, 0, 0, 0, 1, 0};
        else if (!s.corrects())
            values = {red, 0, green, 0, blue, 0, 0, 1, 1, 0};
        if (first || balances) // the gains that were found make it stale again
            call("color_correction_set", {context}, values);
        call("color_correction24", {context, rgb}, {width, height});
        return calls;
    }

    void checkChain(const Setting& s, FrameEx2& raw)
    {
        FrameEx2* const last = raw.getLasFrameInChain(true);
        int length = 1;
        for (FrameEx2* frame = &raw; frame != last; frame = frame->processed) {
            ++length;
            EXPECT_EQ(frame->processed->frameTag, 42);
            EXPECT_TRUE(frame->processed->isFilled);
        }
        EXPECT_EQ(length, 1 + (s.makesGrey() ? 1 : 0) + (s.color() ? 1 : 0));
        EXPECT_EQ(last->params.bitsPerPixel, s.color() && !s.greyOfColor() ? 24 : 8);
        EXPECT_EQ(last->params.mirrorV, s.mirrorV);
        EXPECT_TRUE(raw.isValid);
        const std::vector<unsigned char> expected = expectedPicture(s);
        EXPECT_EQ(std::memcmp(last->getImageBuffer(), expected.data(), expected.size()), 0);
    }

    void check(const Setting& s)
    {
        SCOPED_TRACE(s);
        FrameEx2 raw(params(s), static_cast<unsigned char>(s.depth));
        ImgProcessor processor;
        apply(processor, s);
        take(); // what the processor before released
        const void* const context = nextContext();
        for (const bool first : {true, false}) {
            refill(raw);
            processor.ProcessFrame(&raw, 8);
            EXPECT_EQ(take(), expectedCalls(s, processor, raw, first, context));
            checkChain(s, raw);
        }
        EXPECT_EQ(processor.isipFlagSet(CS_COLOR_CORRECTION), s.corrects());
        EXPECT_EQ(processor.getSaturation(), s.greyOfColor() ? 0.0 : 0.5);
    }
};

TEST_F(Pipeline, EveryMethodCallsItsStagesInOrder)
{
    constexpr CamStateFlag switches[] = {CS_APPLY_LUT, CS_BYPASS, CS_AUTO_WHITE_BALANCE,
                                         CS_COLOR_CORRECTION, CS_MEDIAN_FILTER};
    for (int method = -1; method <= 8; ++method)
        for (int bits = 0; bits < 256 && !HasFailure(); ++bits)
            for (const int depth : {8, 10, 12}) {
                int flags = 0;
                for (int k = 0; k < 5; ++k)
                    flags |= bits >> k & 1 ? switches[k] : 0;
                check({method, flags, depth, (bits & 32) != 0, (bits & 64) != 0, bits >= 128});
            }
}

TEST_F(Pipeline, RefusesOtherDepthsBeforeTouchingTheFrame)
{
    FrameEx2 raw(params({}), 8);
    raw.params.bitsPerPixel = 24;
    ImgProcessor processor;
    try {
        processor.ProcessFrame(&raw, 16);
        FAIL();
    } catch (const char* text) {
        EXPECT_STREQ(text, "Not implemented BPP");
    }
    EXPECT_FALSE(raw.isValid);
    EXPECT_EQ(raw.params.bitsPerPixel, 24);
    EXPECT_FALSE(processor.BuildMonoFrame8(nullptr));
    EXPECT_FALSE(processor.BuildColorFrame8(nullptr));
    EXPECT_THAT(take(), IsEmpty());
}

/// How often color_correction_set is called for one more frame.
class ColorConfiguration : public Pipeline
{
protected:
    ColorConfiguration()
    {
        processor.setColorReconstructionMethod(2);
        processor.setipFlags(CS_COLOR_CORRECTION);
        configurations();
    }
    int configurations()
    {
        refill(raw);
        processor.ProcessFrame(&raw, 8);
        const Calls calls = take();
        return static_cast<int>(std::count_if(calls.begin(), calls.end(), [](const Call& call) {
            return call.function == "color_correction_set";
        }));
    }
    FrameEx2 raw{params({}), 8};
    ImgProcessor processor;
};

TEST_F(ColorConfiguration, FollowsEveryChange)
{
    processor.setColorCorrectionParams(1, 1, 1, 0, 1, 1); // as they are
    processor.setipFlag(CS_COLOR_CORRECTION, true);
    EXPECT_EQ(configurations(), 0);
    processor.setColorCorrectionParams(1, 1, 1, 0, 1, 1.5);
    EXPECT_EQ(configurations(), 1);
    for (const auto setter : {&ImgProcessor::setColorBalanceR, &ImgProcessor::setColorBalanceG,
                              &ImgProcessor::setColorBalanceB, &ImgProcessor::setHue,
                              &ImgProcessor::setSaturation, &ImgProcessor::setLuminance}) {
        (processor.*setter)(1.0); // also where this is the value already
        EXPECT_EQ(configurations(), 1);
    }
    processor.setHue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(configurations(), 1);
    processor.setColorCorrectionParams(1, 1, 1, processor.getHue(), 1, 1);
    EXPECT_EQ(configurations(), 1); // NaN never is what was set

    processor.setipFlags(0);
    processor.setipFlag(CS_COLOR_CORRECTION | CS_APPLY_LUT, true); // a combination marks nothing
    EXPECT_EQ(configurations(), 0);
    processor.setipFlag(CS_COLOR_CORRECTION, false);
    processor.setipFlag(CS_COLOR_CORRECTION, true);
    EXPECT_EQ(configurations(), 1);
    processor.setipFlags(0);
    processor.setipFlags(CS_COLOR_CORRECTION | CS_APPLY_LUT);
    EXPECT_EQ(configurations(), 1);
}

TEST_F(ColorConfiguration, EachCopyHasAContextOfItsOwn)
{
    const void* const second = nextContext();
    {
        ImgProcessor copy(processor);
        refill(raw);
        copy.ProcessFrame(&raw, 8);
        const Calls calls = take();
        ASSERT_EQ(calls.size(), 4U);
        EXPECT_EQ(calls[1].function, "color_correction_init");
        EXPECT_EQ(calls[2].function, "color_correction_set");
        EXPECT_EQ(calls[2].pointers.front(), second);
        copy = processor;
        EXPECT_EQ(configurations(), 0); // the original goes on with its own
        refill(raw);
        copy.ProcessFrame(&raw, 8);
        EXPECT_EQ(take()[1].function, "color_correction_set");
    }
    EXPECT_EQ(take(), (Calls{{"color_correction_done", {second}, {}}}));
}

TEST_F(Pipeline, MedianFilterOfAFrameFollowsDepthAndFormat)
{
    FrameEx2 grey(params({}), 8);
    FrameEx2 deep(params({}), 10);
    FrameEx2 color({0, 0, width, height, 1, 24, false, false}, 8);
    ImgProcessor::median_filter(&grey);
    ImgProcessor::median_filter(&deep);
    ImgProcessor::median_filter(&color);
    ImgProcessor::median_filter8(color.getBuffer(), 2, 3, 4);
    ImgProcessor::median_filter16(deep.getBuffer(), 1, 2, 3);
    EXPECT_EQ(take(), (Calls{{"median_filter8", {grey.getBuffer()}, {width, height, 0}},
                             {"median_filter16", {deep.getBuffer()}, {width, height, 0}},
                             {"median_filter8", {color.getBuffer()}, {width, height, 1}},
                             {"median_filter8", {color.getBuffer()}, {2, 3, 4}},
                             {"median_filter16", {deep.getBuffer()}, {1, 2, 3}}}));
}

/// An application may replace the table look-ups; the pipeline must find the replacements.
struct OwnTables : ImgProcessor {
    using ImgProcessor::apply_LUT8;
    void apply_LUT8(unsigned char*, int, unsigned char*) override { used = 8; }
    void apply_LUT10_8(unsigned short*, int, unsigned char*) override { used = 10; }
    void apply_LUT12_8(unsigned short*, int, unsigned char*) override { used = 12; }
    int used = 0;
};

TEST_F(Pipeline, CallsReplacedTableOperationsForTheirDepthsAlone)
{
    for (const int depth : {8, 10, 12, 14}) {
        FrameEx2 raw(params({}), static_cast<unsigned char>(depth));
        OwnTables processor;
        processor.setColorReconstructionMethod(1);
        processor.setipFlags(CS_APPLY_LUT);
        processor.ProcessFrame(&raw, 8);
        EXPECT_EQ(processor.used, depth == 14 ? 0 : depth);
        EXPECT_TRUE(raw.processed->isValid && raw.processed->isFilled);
    }
}

TEST_F(Pipeline, MirrorsTheRawFrameAndOnRequestTheResult)
{
    FrameEx2 raw(params({}), 12);
    refill(raw);
    raw.params.bitsPerPixel = 24; // a raw frame is one sample per pixel from its processing on
    ImgProcessor processor;
    processor.setFlipH(true);
    processor.ProcessFrame(&raw, 8);
    EXPECT_EQ(raw.params.bitsPerPixel, 8);
    const unsigned char* const grey = raw.processed->getImageBuffer();
    EXPECT_EQ(grey[5], rawSample(5) >> 4);
    EXPECT_EQ(raw.getImageBuffer()[0], rawSample(width - 1));
    processor.setFlipV(true);
    processor.flipImage(&raw);
    EXPECT_EQ(grey[0], rawSample(pixels - 1) >> 4);
}

TEST_F(Pipeline, BypassKeepsTheRawFormat)
{
    FrameEx2 raw({0, 0, width, height, 1, 24, false, false}, 8);
    ImgProcessor processor;
    processor.setipFlags(CS_BYPASS);
    processor.setColorReconstructionMethod(2);
    processor.ProcessFrame(&raw, 8);
    EXPECT_EQ(raw.params.bitsPerPixel, 24);
    EXPECT_THAT(take(), IsEmpty()); // three samples per pixel are no mosaic
}

} // namespace
