#include <AppComponents/imgproc/ImgProcessor.h>

#include <support/AllocationCounter.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

constexpr int width = 333;
constexpr int height = 77;

void capture(FrameEx2& frame, unsigned seed)
{
    std::minstd_rand random(seed);
    frame.invalidateFrame();
    const int samples = width * height;
    if (frame.rawBitDepth == 8) {
        for (int i = 0; i < samples; ++i)
            frame.getImageBuffer()[i] = static_cast<unsigned char>(random());
        return;
    }
    unsigned short* const words = reinterpret_cast<unsigned short*>(frame.getImageBuffer());
    for (int i = 0; i < samples; ++i)
        words[i] = static_cast<unsigned short>(random() % (1U << frame.rawBitDepth));
}

TEST(Stream, AllocatesNothingAfterItsFirstFrame)
{
    const int everything =
        CS_APPLY_LUT | CS_AUTO_WHITE_BALANCE | CS_COLOR_CORRECTION | CS_MEDIAN_FILTER;
    for (const int depth : {8, 10, 12})
        for (const int flags : {0, everything, everything & ~CS_APPLY_LUT})
            for (int method = 0; method <= 8; ++method) {
                FrameEx2 frame({0, 0, width, height, 1, 8, false, true},
                               static_cast<unsigned char>(depth));
                ImgProcessor processor;
                processor.setipFlags(flags);
                processor.setCapabilityFlags(CC_COLOR_SENSOR);
                processor.setColorReconstructionMethod(method);
                processor.setFlipH(true);
                processor.setFlipV(true);
                capture(frame, 1);
                const long atStart = allocations;
                processor.ProcessFrame(&frame, 8);
                if (depth > 8) {
                    ASSERT_GT(allocations, atStart); // the counter counts
                }
                for (unsigned n = 2; n < 6; ++n) {
                    capture(frame, n);
                    const long before = allocations;
                    processor.ProcessFrame(&frame, 8);
                    processor.flipImage(&frame);
                    EXPECT_EQ(allocations - before, 0)
                        << "method " << method << ", flags " << flags << ", " << depth << " bits";
                }
            }
}

TEST(Stream, FlatGreyStaysFlatGreyOnEveryPath)
{
    for (int method = 0; method <= 8; ++method) {
        FrameEx2 frame({0, 0, width, height, 1, 8, true, false}, 12);
        ImgProcessor processor;
        processor.setCapabilityFlags(CC_COLOR_SENSOR);
        processor.setColorReconstructionMethod(method);
        processor.setContrastD(1.0);
        processor.setGammaD(1.0);
        processor.setipFlags(CS_APPLY_LUT | CS_AUTO_WHITE_BALANCE | CS_COLOR_CORRECTION |
                             CS_MEDIAN_FILTER);
        frame.invalidateFrame();
        unsigned short* const words = reinterpret_cast<unsigned short*>(frame.getImageBuffer());
        std::fill_n(words, width * height, static_cast<unsigned short>(0x640));
        processor.ProcessFrame(&frame, 8);
        const FrameEx2* const last = frame.getLasFrameInChain(true);
        for (unsigned long i = 0; i < last->frameSizeInByte(); ++i)
            ASSERT_EQ(last->getImageBuffer()[i], 0x64) << "method " << method << ", byte " << i;
    }
}

} // namespace
