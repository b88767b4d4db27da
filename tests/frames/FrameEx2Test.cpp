#include <AppComponents/frames/FrameEx2.h>

#include <support/EveryTarget.h>

#include <gmock/gmock.h>

#include <cstring>
#include <numeric>
#include <random>
#include <tuple>
#include <type_traits>
#include <vector>

namespace
{

using testing::Each;
using testing::ElementsAre;

_FrameParams geometry(int width, int height, int bitsPerPixel = 8, int decimation = 1)
{
    return {0, 0, width, height, decimation, bitsPerPixel, false, false};
}

std::vector<int> picture(const FrameEx2& frame, int bytes)
{
    return {frame.getImageBuffer(), frame.getImageBuffer() + bytes};
}

void fill(FrameEx2& frame, const std::vector<unsigned char>& bytes)
{
    std::memcpy(frame.getImageBuffer(), bytes.data(), bytes.size());
}

/// Counts its kind, so that a test sees when a chain is released.
struct CountedFrame : FrameEx2 {
    CountedFrame() { ++alive; }
    ~CountedFrame() override { --alive; }
    static int alive;
};
int CountedFrame::alive = 0;

static_assert(std::is_same_v<TFrameParams, _FrameParams> && sizeof(_FrameParams) == 26);

TEST(FrameEx2, SizesFollowGeometryDepthAndFormat)
{
    struct Case {
        _FrameParams params;
        unsigned char depth;
        int columns, rows, bytes;
    };
    for (const Case& c :
         {Case{geometry(1000, 800, 8, -2), 12, 500, 400, 400000},
          Case{geometry(1000, 800, 24, -2), 12, 500, 400, 1200000},
          Case{geometry(1000, 800, 24, 3), 8, 333, 266, 333 * 266 * 3},
          Case{geometry(7, 5, 9), 8, 7, 5, 105}, Case{geometry(0, 5), 8, 0, 5, 0}}) {
        const FrameEx2 frame(c.params, c.depth);
        EXPECT_EQ(frame.imgWidth, c.columns);
        EXPECT_EQ(frame.imgHeight, c.rows);
        EXPECT_EQ(frame.getBuffSize(), c.bytes);
        EXPECT_EQ(frame.frameSizeInByte(), static_cast<unsigned long>(c.bytes));
        EXPECT_EQ(frame.frameTag, -1);
        EXPECT_EQ(frame.getBuffer() == nullptr, c.bytes == 0);
    }
    EXPECT_EQ(FrameEx2().frameTag, 0);
}

TEST(FrameEx2, BufferNeverShrinks)
{
    FrameEx2 frame(geometry(100, 100), 8);
    unsigned char* const buffer = frame.getBuffer();
    frame.isValid = true;
    _FrameParams smaller = geometry(10, 10);
    frame.InitFrame(smaller, 12);
    EXPECT_TRUE(frame.getBuffer() == buffer);
    EXPECT_EQ(frame.getBuffSize(), 10000);
    EXPECT_EQ(frame.frameSizeInByte(), 200U);
    EXPECT_EQ(frame.frameTag, 0);
    EXPECT_TRUE(frame.isValid);
}

TEST(FrameEx2, PictureBeyondAnyBufferIsRefused)
{
    FrameEx2 frame(geometry(4, 4), 8);
    _FrameParams huge = geometry(40000, 40000, 24); // 4.8 GB would wrap to a small 32-bit size
    EXPECT_THROW(frame.InitFrame(huge, 8), std::bad_alloc);
    EXPECT_TRUE(frame.getBuffer() == nullptr);
    EXPECT_EQ(frame.getBuffSize(), 0);
    frame.flip(true, true);
    frame.colorToMono1();
}

TEST(FrameEx2, WalkStopsAtTheFirstInvalidLink)
{
    FrameEx2 head(geometry(4, 4), 8);
    FrameEx2* const second = head.adaptProcessedFrame(geometry(4, 4), 8);
    FrameEx2* const third = second->adaptProcessedFrame(geometry(4, 4, 24), 8);
    third->isValid = true;
    EXPECT_EQ(head.getLasFrameInChain(true), &head);
    second->isValid = true;
    EXPECT_EQ(head.getLasFrameInChain(true), third);
    EXPECT_EQ(head.getLasFrameInChain(false), &head);

    third->isFilled = true;
    third->processing[31] = 1;
    head.invalidateFrame();
    EXPECT_FALSE(third->isValid || third->isFilled || second->isValid);
    EXPECT_EQ(third->processing[31], 0);
    EXPECT_EQ(std::make_tuple(head.frameTag + 0, second->frameTag + 0, third->frameTag + 0),
              std::make_tuple(-1, -1, -1));
}

TEST(FrameEx2, DerivedFrameIsReinitialisedOnlyWhenItsFormatChanges)
{
    FrameEx2 head(geometry(8, 8), 12);
    FrameEx2* const derived = head.adaptProcessedFrame(geometry(8, 8), 8);
    derived->isValid = true;
    derived->imageOffset = 3; // survives unless the frame is initialised anew

    _FrameParams moved = geometry(8, 8);
    moved.posX = 5;
    moved.posY = 6;
    moved.mirrorH = true;
    EXPECT_EQ(head.adaptProcessedFrame(moved, 8), derived);
    EXPECT_EQ(std::memcmp(&derived->params, &moved, sizeof(moved)), 0);
    EXPECT_EQ(derived->imageOffset, 3);
    EXPECT_FALSE(derived->isValid);

    for (const auto& [params, depth] :
         {std::make_tuple(geometry(8, 8, 24), 8), std::make_tuple(geometry(8, 8, 24), 10),
          std::make_tuple(geometry(8, 8, 24, 2), 10), std::make_tuple(geometry(8, 4, 24, 2), 10)}) {
        derived->imageOffset = 3;
        EXPECT_EQ(head.adaptProcessedFrame(params, static_cast<unsigned char>(depth)), derived);
        EXPECT_EQ(derived->imageOffset, 0);
        EXPECT_EQ(derived->frameTag, -1);
    }
}

TEST(FrameEx2, FlipMirrorsEveryPixelSizeAndNothingElse)
{
    onEveryTarget([] {
        std::mt19937 random(1);
        for (const auto& [bits, depth] : {std::pair(8, 8), {8, 12}, {24, 8}, {24, 10}, {32, 8}})
            for (const auto& [w, h] :
                 {std::pair(1, 1), {3, 2}, {64, 3}, {131, 5}, {400, 2}, {257, 4}})
                for (const auto& [flipH, flipV] :
                     {std::pair(true, false), {false, true}, {true, true}}) {
                    FrameEx2 frame(geometry(w, h + 1, bits), static_cast<unsigned char>(depth));
                    frame.imgHeight = h;
                    const int px = (depth > 8 ? 2 : 1) * bits / 8;
                    if (w * h * px > frame.getBuffSize())
                        continue;
                    std::vector<unsigned char> expected;
                    for (int i = 0; i < frame.getBuffSize(); ++i)
                        expected.push_back(static_cast<unsigned char>(random()));
                    fill(frame, expected);
                    const std::vector<unsigned char> before = expected;
                    for (int i = 0; i < w * h * px; ++i) {
                        const int x = i / px % w;
                        const int y = i / px / w;
                        const int to = (flipV ? h - 1 - y : y) * w + (flipH ? w - 1 - x : x);
                        expected[static_cast<std::size_t>(to * px + i % px)] =
                            before[static_cast<std::size_t>(i)];
                    }
                    frame.flip(flipH, flipV);
                    ASSERT_EQ(std::memcmp(frame.getBuffer(), expected.data(), expected.size()), 0)
                        << w << 'x' << h << " of " << px << " bytes, " << flipH << flipV;
                }
    });
}

TEST(FrameEx2, FirstByteOfEachTripleIsKept)
{
    onEveryTarget([] {
        for (const int width : {1, 2, 63, 64, 200, 331}) {
            FrameEx2 frame(geometry(width, 1, 24), 8);
            std::iota(frame.getBuffer(), frame.getBuffer() + 3 * width,
                      static_cast<unsigned char>(0));
            frame.colorToMono1();
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(frame.getBuffer()[x], 3 * x % 256) << x;
            EXPECT_EQ(frame.params.bitsPerPixel, 8);
            EXPECT_EQ(frame.getBuffSize(), 3 * width);
            ASSERT_EQ(frame.getBuffer()[3 * width - 1], (3 * width - 1) % 256);
        }
    });
    FrameEx2 deep(geometry(2, 1, 24), 10);
    fill(deep, {10, 20, 30, 40});
    deep.colorToMono1();
    EXPECT_THAT(picture(deep, 4), ElementsAre(10, 20, 30, 40));
    EXPECT_EQ(deep.params.bitsPerPixel, 24);
}

TEST(FrameEx2, ImageHoldsThePackedBytes)
{
    FrameEx2 grey(geometry(3, 2), 8);
    fill(grey, {1, 2, 3, 4, 5, 6});
    const QSharedPointer<QImage> image = grey.getImage();
    ASSERT_EQ(image->format(), QImage::Format_Indexed8);
    EXPECT_EQ(image->size(), QSize(3, 2));
    // Rows of the image are 4 bytes long, so the packed rows come out sheared.
    EXPECT_THAT(std::vector<int>(image->constBits(), image->constBits() + 8),
                ElementsAre(1, 2, 3, 4, 5, 6, 0, 0));
    EXPECT_EQ(image->colorTable(), FrameEx2::getStandardColorTable());
    EXPECT_EQ(image->color(128), 0xFF808080U);

    FrameEx2 color(geometry(2, 1, 24), 8);
    fill(color, {10, 20, 30, 40, 50, 60});
    EXPECT_EQ(color.getImage()->format(), QImage::Format_RGB888);
    EXPECT_EQ(color.getImage()->pixel(1, 0), qRgb(40, 50, 60));
    EXPECT_NE(color.getImage(), color.getImage());
    EXPECT_TRUE(FrameEx2().getImage()->isNull());
}

TEST(FrameEx2, ImagesKeepTheirBytesWhateverBecomesOfOthers)
{
    FrameEx2 frame(geometry(64, 3, 24), 8);
    QVector<QSharedPointer<QImage>> held;
    for (int n = 0; n < 20; ++n) {
        std::memset(frame.getImageBuffer(), n, 64 * 3 * 3);
        QImage changed = *frame.getImage(); // its memory goes round with the picture
        changed.fill(Qt::white);
        held.append(frame.getImage());
        if (n % 3 == 2)
            held.removeFirst();
        for (const QSharedPointer<QImage>& image : held)
            EXPECT_EQ(image->pixel(63, 2), image->pixel(0, 0));
    }
    EXPECT_EQ(held.front()->pixel(5, 1), qRgb(6, 6, 6));
    EXPECT_EQ(held.back()->pixel(5, 1), qRgb(19, 19, 19));
}

TEST(FrameEx2, BusyFrameCannotBeTakenAgain)
{
    FrameEx2 frame;
    frame.setIsBusy(false);
    frame.setIsBusy(true);
    try {
        frame.setIsBusy(true);
        FAIL();
    } catch (const char* text) {
        EXPECT_STREQ(text, "FrameEx2::setIsBusy -> Frame already busy!");
    }
    EXPECT_TRUE(frame.isBusy());
    frame.setIsBusy(false);
    EXPECT_FALSE(frame.isBusy());
}

TEST(FrameEx2, CopyHasItsOwnBytesAndTheSameChain)
{
    FrameEx2 original(geometry(4, 1), 8);
    fill(original, {1, 2, 3, 4});
    original.frameTag = 7;
    original.reserved[71] = 9;
    original.setIsBusy(true);
    FrameEx2* const derived = original.adaptProcessedFrame(geometry(4, 1), 8);

    FrameEx2 copy(geometry(2, 2), 8);
    unsigned char* const tooSmall = copy.getBuffer();
    copy = original;
    EXPECT_TRUE(copy.getBuffer() == tooSmall); // four bytes fit
    EXPECT_TRUE(copy.getBuffer() != original.getBuffer());
    EXPECT_THAT(picture(copy, 4), ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(copy.imgWidth, 4);
    EXPECT_EQ(copy.frameTag, 7);
    EXPECT_EQ(copy.reserved[71], 9);
    EXPECT_TRUE(copy.isBusy());
    EXPECT_EQ(copy.processed, derived);
    EXPECT_EQ(original.processed, derived);
}

class FrameChain : public testing::Test
{
protected:
    void SetUp() override
    {
        CountedFrame::alive = 0;
        head.reset(new FrameEx2(geometry(2, 2), 8));
        head->processed = new CountedFrame;
        head->processed->processed = new CountedFrame;
    }
    std::unique_ptr<FrameEx2> head;
};

TEST_F(FrameChain, IsReleasedByTheLastRecordThatShowsIt)
{
    auto copy = std::make_unique<FrameEx2>(*head);
    auto copyOfCopy = std::make_unique<FrameEx2>(*copy);
    head.reset();
    EXPECT_EQ(CountedFrame::alive, 2);
    copy.reset();
    EXPECT_EQ(CountedFrame::alive, 2);
    // One holder may still adapt what it shows.
    copyOfCopy->adaptProcessedFrame(geometry(8, 8), 8);
    copyOfCopy.reset();
    EXPECT_EQ(CountedFrame::alive, 0);
}

TEST_F(FrameChain, IsReleasedWhenItsHolderIsAssignedOver)
{
    FrameEx2 copy(*head);
    *head = FrameEx2();
    EXPECT_EQ(head->processed, nullptr);
    EXPECT_EQ(CountedFrame::alive, 2);
    copy = copy;
    copy = FrameEx2(copy);
    EXPECT_EQ(CountedFrame::alive, 2);
    copy = *head;
    EXPECT_EQ(CountedFrame::alive, 0);
}

TEST_F(FrameChain, SurvivesAssignmentsWithinItself)
{
    FrameEx2* const second = head->processed;
    FrameEx2* const third = second->processed;
    third->frameTag = 3;
    *second = *head; // would link the frame to itself
    EXPECT_EQ(second->processed, third);
    EXPECT_EQ(second->imgWidth, 2);
    *head = *second; // the second frame goes with the chain that showed it
    EXPECT_EQ(head->processed, third);
    EXPECT_EQ(third->frameTag, 3);
    EXPECT_EQ(CountedFrame::alive, 1);
    head.reset();
    EXPECT_EQ(CountedFrame::alive, 0);
}

TEST_F(FrameChain, MayBeOfAnyLength)
{
    FrameEx2* last = head->processed->processed;
    for (int i = 0; i < 200000; ++i) {
        last->processed = new FrameEx2;
        last = last->processed;
    }
    last->processed = new CountedFrame;
    head.reset();
    EXPECT_EQ(CountedFrame::alive, 0);
}

} // namespace
