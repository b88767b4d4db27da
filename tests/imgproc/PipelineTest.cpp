#include "OrvimgRecorder.h"

#include <AppComponents/imgproc/ImgProcessor.h>

#include <gmock/gmock.h>

#include <cmath>
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
    Calls expectedCalls(const Setting& s, ImgProcessor& processor, FrameEx2& raw, bool firstFrame,
                        const void* context)
    {
        Calls calls;
        const double w = width;
        const double h = height;
        if (s.median())
            calls.push_back({s.depth == 8 ? "median_filter8" : "median_filter16",
                             {raw.getImageBuffer()},
                             {w, h, 0}});
        if (s.table() && firstFrame) {
            const int shift = s.depth == 8 ? 0 : 256;
            if (s.depth == 12)
                calls.push_back({"create_BCG_LUT12_8", {processor.getLUT12()}, {0, 1, 1}});
            else
                calls.push_back({s.depth == 8 ? "create_BCG_LUT8" : "create_BCG_LUT10_8",
                                 {processor.getLUT8() + shift},
                                 {0, 1, 1}});
        }
        if (s.color())
            appendColorCalls(calls, s, raw, firstFrame, context);
        return calls;
    }

    static void appendColorCalls(Calls& calls, const Setting& s, FrameEx2& raw, bool firstFrame,
                                 const void* context)
    {
        static const int codes[] = {0, 2, 2, 4, 6, 3, 5, 1};
        const double algorithm = s.method >= 1 && s.method <= 7 ? codes[s.method] : 0;
        const double pattern = s.mirrorV ? (s.mirrorH ? 1 : 0) : (s.mirrorH ? 3 : 2);
        const double w = width;
        const double h = height;
        FrameEx2* const mosaic = s.makesGrey() ? raw.processed : &raw;
        const void* const rgb = mosaic->processed->getImageBuffer();
        const bool balances = s.has(CS_AUTO_WHITE_BALANCE);

        if (balances)
            calls.push_back(
                {"white_balance8" + s.phase(), {mosaic->getImageBuffer()}, {w, h, 1, 1}});
        calls.push_back({"debayer24", {mosaic->getImageBuffer(), rgb}, {w, h, pattern, algorithm}});
        if (!balances && !s.corrects())
            return;
        std::vector<double> values{1.1, 0, 1.2, 0, 1.3, 0, 10, 0.5, 2, 0};
        if (s.greyOfColor())
            values = {1, 0, 1, 0, 1, 0, 0, 0, 1, 0};
        if (balances) {
            values[0] = estimatedRedGain;
            values[2] = 1;
            values[4] = estimatedBlueGain;
        }
        if (!s.corrects()) {
            values[6] = 0;
            values[7] = 1;
            values[8] = 1;
        }
        // The grey of a colour sensor overwrites the gains that white balance has just found.
        const bool configures = firstFrame || balances;
        if (firstFrame)
            calls.push_back({"color_correction_init", {}, {}});
        if (configures)
            calls.push_back({"color_correction_set", {context}, values});
        calls.push_back({"color_correction24", {context, rgb}, {w, h}});
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
        for (const bool firstFrame : {true, false}) {
            refill(raw);
            processor.ProcessFrame(&raw, 8);
            EXPECT_EQ(take(), expectedCalls(s, processor, raw, firstFrame, context));
            checkChain(s, raw);
        }
    }
};

TEST_F(Pipeline, EveryMethodCallsItsStagesInOrder)
{
    for (const int method : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8})
        for (int bits = 0; bits < 32; ++bits)
            for (const int depth : {8, 10, 12})
                for (const bool colorSensor : {false, true}) {
                    const int flags = (bits & 1 ? CS_APPLY_LUT : 0) | (bits & 2 ? CS_BYPASS : 0) |
                                      (bits & 4 ? CS_AUTO_WHITE_BALANCE : 0) |
                                      (bits & 8 ? CS_COLOR_CORRECTION : 0) |
                                      (bits & 16 ? CS_MEDIAN_FILTER : 0);
                    check({method, flags, depth, false, false, colorSensor});
                    if (HasFailure())
                        return;
                }
}

TEST_F(Pipeline, MirrorFlagsDecideThePhase)
{
    for (const bool mirrorV : {false, true})
        for (const bool mirrorH : {false, true})
            check({3, CS_AUTO_WHITE_BALANCE, 12, mirrorV, mirrorH});
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

TEST_F(Pipeline, MirrorsTheRawFrameAndOnRequestTheResult)
{
    FrameEx2 raw(params({}), 12);
    refill(raw);
    ImgProcessor processor;
    processor.setFlipH(true);
    processor.ProcessFrame(&raw, 8);
    FrameEx2* const grey = raw.getLasFrameInChain(true);
    EXPECT_EQ(grey->getImageBuffer()[5], rawSample(5) >> 4);
    unsigned short first;
    std::memcpy(&first, raw.getImageBuffer(), 2);
    EXPECT_EQ(first, rawSample(width - 1));
    processor.setFlipV(true);
    processor.flipImage(&raw);
    EXPECT_EQ(grey->getImageBuffer()[0], rawSample(pixels - 1) >> 4);
}

TEST_F(Pipeline, BypassKeepsTheRawFormat)
{
    FrameEx2 raw({0, 0, width, height, 1, 24, false, false}, 8);
    raw.invalidateFrame();
    ImgProcessor processor;
    processor.setipFlags(CS_BYPASS);
    processor.setColorReconstructionMethod(2);
    processor.ProcessFrame(&raw, 8);
    EXPECT_EQ(raw.params.bitsPerPixel, 24);
    EXPECT_THAT(take(), IsEmpty()); // three samples per pixel are no mosaic
    processor.setipFlags(0);
    processor.ProcessFrame(&raw, 8);
    EXPECT_EQ(raw.params.bitsPerPixel, 8);
    EXPECT_EQ(take().size(), 1U);
}

TEST_F(Pipeline, UnknownDepthLeavesTheGreyFrameValidAndUntouched)
{
    FrameEx2 raw(params({}), 14);
    ImgProcessor processor;
    processor.setColorReconstructionMethod(1);
    processor.setipFlags(CS_APPLY_LUT);
    FrameEx2* const grey = raw.adaptProcessedFrame(params({}), 8);
    std::memset(grey->getImageBuffer(), 77, pixels);
    EXPECT_TRUE(processor.BuildMonoFrame8(&raw));
    EXPECT_TRUE(grey->isValid && grey->isFilled);
    EXPECT_EQ(grey->getImageBuffer()[pixels - 1], 77);
}

TEST_F(Pipeline, GreyOfAColorSensorTakesOverTheColorSettings)
{
    const Setting s{1, 0, 12, false, false, true};
    FrameEx2 raw(params(s), 12);
    ImgProcessor processor;
    apply(processor, s);
    refill(raw);
    processor.ProcessFrame(&raw, 8);
    EXPECT_TRUE(processor.isipFlagSet(CS_COLOR_CORRECTION));
    EXPECT_EQ(processor.getColorBalanceR(), 1.0);
    EXPECT_EQ(processor.getColorBalanceG(), 1.0);
    EXPECT_EQ(processor.getColorBalanceB(), 1.0);
    EXPECT_EQ(processor.getHue(), 0.0);
    EXPECT_EQ(processor.getSaturation(), 0.0);
    EXPECT_EQ(processor.getLuminance(), 1.0);
}

/// How often color_correction_set is called for one more frame.
class ColorConfiguration : public Pipeline
{
protected:
    void SetUp() override
    {
        processor.setColorReconstructionMethod(2);
        processor.setipFlags(CS_COLOR_CORRECTION);
        configurations();
    }
    int configurations()
    {
        refill(raw);
        processor.ProcessFrame(&raw, 8);
        int count = 0;
        for (const Call& call : take())
            count += call.function == "color_correction_set" ? 1 : 0;
        return count;
    }
    FrameEx2 raw{params({}), 8};
    ImgProcessor processor;
};

TEST_F(ColorConfiguration, FollowsEveryChange)
{
    EXPECT_EQ(configurations(), 0);
    processor.setColorCorrectionParams(1, 1, 1, 0, 1, 1); // as they are
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
}

TEST_F(ColorConfiguration, FollowsSwitchingTheCorrectionOnAlone)
{
    processor.setipFlag(CS_COLOR_CORRECTION, true); // was on
    EXPECT_EQ(configurations(), 0);
    processor.setipFlag(CS_COLOR_CORRECTION, false);
    processor.setipFlag(CS_COLOR_CORRECTION, true);
    EXPECT_EQ(configurations(), 1);
    processor.setipFlags(0);
    processor.setipFlag(CS_COLOR_CORRECTION | CS_APPLY_LUT, true);
    EXPECT_EQ(configurations(), 0);
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

TEST_F(Pipeline, CallsReplacedTableOperations)
{
    for (const int depth : {8, 10, 12}) {
        FrameEx2 raw(params({}), static_cast<unsigned char>(depth));
        OwnTables processor;
        processor.setColorReconstructionMethod(1);
        processor.setipFlags(CS_APPLY_LUT);
        processor.ProcessFrame(&raw, 8);
        EXPECT_EQ(processor.used, depth);
    }
}

TEST_F(Pipeline, DepthReductionWorksOnTheFrameItIsGiven)
{
    FrameEx2 raw(params({}), 12);
    refill(raw);
    FrameEx2* const derived = raw.adaptProcessedFrame(params({}), 8);
    FrameEx2* const beyond = derived->adaptProcessedFrame(params({}), 8);
    derived->isValid = true;
    beyond->isValid = true;
    ImgProcessor processor;
    processor.convertTo8bit(&raw);
    EXPECT_EQ(raw.getLasFrameInChain(true), derived);
    EXPECT_EQ(derived->getImageBuffer()[20], rawSample(20) >> 4);
}

} // namespace
