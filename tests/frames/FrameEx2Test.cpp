#include <AppComponents/frames/FrameEx2.h>

#include <support/EveryTarget.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <thread>
#include <tuple>
#include <vector>

namespace
{

using testing::ElementsAre;

_FrameParams geometry(int width, int height, int bitsPerPixel = 8, int decimation = 1)
{
    return {0, 0, width, height, decimation, bitsPerPixel, false, false};
}

void fill(FrameEx2& frame, const std::vector<unsigned char>& bytes)
{
    std::memcpy(frame.getImageBuffer(), bytes.data(), bytes.size());
}

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
        EXPECT_EQ(frame.frameTag, -1);
    }
    EXPECT_EQ(FrameEx2().frameTag, 0);
}

TEST(FrameEx2, BufferNeverShrinksAndHugePicturesAreRefused)
{
    FrameEx2 frame(geometry(100, 100), 8);
    unsigned char* const buffer = frame.getBuffer();
    frame.isValid = true;
    _FrameParams params = geometry(10, 10);
    frame.InitFrame(params, 12);
    EXPECT_TRUE(frame.getBuffer() == buffer);
    EXPECT_EQ(frame.getBuffSize(), 10000);
    EXPECT_EQ(frame.frameSizeInByte(), 200U);
    EXPECT_EQ(frame.frameTag, 0);
    EXPECT_TRUE(frame.isValid);

    params = geometry(40000, 40000, 24); // 4.8 GB would wrap to a small 32-bit size
    EXPECT_THROW(frame.InitFrame(params, 8), std::bad_alloc);
    EXPECT_TRUE(frame.getBuffer() == nullptr);
    frame.flip(true, true);
    frame.colorToMono1();

    params = geometry(-5, -4, 24); // as many bytes as a picture of 5 x 4
    frame.InitFrame(params, 8);
    frame.flip(true, false);
    frame.colorToMono1();
    EXPECT_TRUE(frame.getImage()->isNull());
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
    EXPECT_EQ(third->frameTag, -1);
}

TEST(FrameEx2, DerivedFrameIsReinitialisedOnlyWhenItsFormatChanges)
{
    FrameEx2 head(geometry(8, 8), 12);
    FrameEx2* const derived = head.adaptProcessedFrame(geometry(8, 8), 8);
    derived->isValid = true;
    derived->imageOffset = 3; // survives unless the frame is initialised anew
    const _FrameParams moved{5, 6, 8, 8, 1, 8, true, true};
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

void checkFlip(int bits, int depth, int w, int h, bool flipH, bool flipV)
{
    FrameEx2 frame(geometry(w, h + 1, bits), static_cast<unsigned char>(depth));
    frame.imgHeight = h; // a row behind the picture must stay as it is
    const int px = (depth > 8 ? 2 : 1) * bits / 8;
    std::vector<unsigned char> expected(static_cast<std::size_t>(frame.getBuffSize()));
    for (std::size_t i = 0; i < expected.size(); ++i)
        expected[i] = static_cast<unsigned char>(i * 7 + i / 256);
    fill(frame, expected);
    for (int i = 0; i < w * h * px; ++i) {
        const int x = i / px % w;
        const int y = i / px / w;
        const int to = (flipV ? h - 1 - y : y) * w + (flipH ? w - 1 - x : x);
        expected[static_cast<std::size_t>(to * px + i % px)] = frame.getBuffer()[i];
    }
    frame.flip(flipH, flipV);
    ASSERT_EQ(std::memcmp(frame.getBuffer(), expected.data(), expected.size()), 0)
        << w << 'x' << h << " of " << px << " bytes, " << flipH << flipV;
}

TEST(FrameEx2, FlipMirrorsEveryPixelSizeAndNothingElse)
{
    onEveryTarget([] {
        for (const auto& [bits, depth] : {std::pair(8, 8), {8, 12}, {24, 8}, {24, 10}})
            for (const auto& [w, h] : {std::pair(1, 1), {3, 2}, {64, 3}, {131, 5}, {257, 4}})
                for (const int sides : {0, 1, 2, 3})
                    checkFlip(bits, depth, w, h, sides & 1, sides & 2);
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
        }
    });
    FrameEx2 deep(geometry(2, 1, 24), 10);
    deep.colorToMono1();
    EXPECT_EQ(deep.params.bitsPerPixel, 24);
}

TEST(FrameEx2, ImageHoldsThePackedBytes)
{
    FrameEx2 grey(geometry(3, 2), 8);
    fill(grey, {1, 2, 3, 4, 5, 6});
    const QSharedPointer<QImage> image = grey.getImage();
    ASSERT_EQ(image->format(), QImage::Format_Indexed8);
    // Rows of the image are 4 bytes long, so the packed rows come out sheared.
    EXPECT_THAT(std::vector<int>(image->constBits(), image->constBits() + 8),
                ElementsAre(1, 2, 3, 4, 5, 6, 0, 0));
    EXPECT_EQ(image->colorTable(), FrameEx2::getStandardColorTable());
    EXPECT_EQ(image->color(128), 0xFF808080U);

    FrameEx2 color(geometry(2, 1, 24), 8);
    fill(color, {10, 20, 30, 40, 50, 60});
    EXPECT_EQ(color.getImage()->format(), QImage::Format_RGB888);
    EXPECT_EQ(color.getImage()->pixel(1, 0), qRgb(40, 50, 60));
    EXPECT_TRUE(FrameEx2().getImage()->isNull());
    _FrameParams wide = geometry(100000000, 1, 24); // more bits in a row than QImage can count
    color.InitFrame(wide, 8);
    EXPECT_TRUE(color.getImage()->isNull());
}

TEST(FrameEx2, ImagesKeepTheirBytesWhateverBecomesOfOthers)
{
    FrameEx2 frame(geometry(64, 3, 24), 8);
    FrameEx2 other(geometry(16, 3, 24), 8);
    QVector<QSharedPointer<QImage>> held;
    for (int n = 0; n < 20; ++n) {
        std::memset(frame.getImageBuffer(), n, 64 * 3 * 3);
        QImage changed = *frame.getImage(); // its memory goes round with the picture
        changed.fill(Qt::white);
        const QImage copy = changed.copy(1, 1, 8, 2);
        held.append(frame.getImage());
        if (n % 3 == 2)
            std::thread([first = held.takeFirst()]() mutable { first.clear(); }).join();
        if (n % 7 == 6)
            other.getImage(); // another size takes its turn
        EXPECT_EQ(copy.pixel(7, 1), qRgb(255, 255, 255));
        for (const QSharedPointer<QImage>& image : held)
            EXPECT_EQ(image->pixel(63, 2), image->pixel(0, 0));
    }
    EXPECT_EQ(held.front()->pixel(5, 1), qRgb(6, 6, 6));
    EXPECT_EQ(held.back()->pixel(5, 1), qRgb(19, 19, 19));
}

/// Made before everything else, therefore destroyed after it.
struct LateUser {
    ~LateUser()
    {
        image.clear();
        if (frame.getBuffer()[0] != frame.getImage()->constBits()[0])
            std::abort();
    }
    FrameEx2 frame{geometry(4, 4, 24), 8};
    QSharedPointer<QImage> image;
} lateUser;

TEST(FrameEx2, ImagesMayBeMadeAndHeldAfterTheEndOfMain)
{
    std::memset(lateUser.frame.getImageBuffer(), 77, 4 * 4 * 3);
    lateUser.image = lateUser.frame.getImage();
    EXPECT_EQ(lateUser.image->pixel(0, 0), qRgb(77, 77, 77));
}

TEST(FrameEx2, BusyFrameCannotBeTakenAgain)
{
    FrameEx2 frame;
    frame.setIsBusy(true);
    try {
        frame.setIsBusy(true);
        FAIL();
    } catch (const char* text) {
        EXPECT_STREQ(text, "FrameEx2::setIsBusy -> Frame already busy!");
    }
    EXPECT_TRUE(frame.isBusy());
    frame.setIsBusy(false);
    frame.setIsBusy(false);
    EXPECT_FALSE(frame.isBusy());
}

/// Counts its kind, so that a test sees when a chain is released.
struct CountedFrame : FrameEx2 {
    CountedFrame() { ++alive; }
    ~CountedFrame() override { --alive; }
    static int alive;
};
int CountedFrame::alive = 0;

class FrameChain : public testing::Test
{
protected:
    void SetUp() override
    {
        CountedFrame::alive = 0;
        fill(*head, {1, 2, 3, 4});
        head->processed = new CountedFrame;
        head->processed->processed = new CountedFrame;
    }
    std::unique_ptr<FrameEx2> head = std::make_unique<FrameEx2>(geometry(4, 1), 8);
};

TEST_F(FrameChain, CopyShowsItBesideBytesOfItsOwn)
{
    head->frameTag = 7;
    head->reserved[71] = 9;
    head->setIsBusy(true);
    FrameEx2 copy(geometry(2, 2), 8);
    unsigned char* const own = copy.getBuffer();
    copy = *head;
    EXPECT_TRUE(copy.getBuffer() == own); // four bytes fit
    EXPECT_EQ(std::memcmp(copy.getBuffer(), head->getBuffer(), 4), 0);
    EXPECT_EQ(copy.imgWidth, 4);
    EXPECT_EQ(copy.frameTag, 7);
    EXPECT_EQ(copy.reserved[71], 9);
    EXPECT_TRUE(copy.isBusy());
    EXPECT_EQ(copy.processed, head->processed);
}

TEST_F(FrameChain, IsReleasedByTheLastRecordThatShowsIt)
{
    auto copy = std::make_unique<FrameEx2>(*head);
    FrameEx2 copyOfCopy(*copy);
    head.reset();
    copy.reset();
    EXPECT_EQ(CountedFrame::alive, 2);
    copyOfCopy.adaptProcessedFrame(geometry(8, 8), 8);
    copyOfCopy = FrameEx2(copyOfCopy);
    EXPECT_EQ(CountedFrame::alive, 2);
    copyOfCopy = FrameEx2();
    EXPECT_EQ(CountedFrame::alive, 0);
}

TEST_F(FrameChain, SurvivesAssignmentsWithinItself)
{
    FrameEx2* const second = head->processed;
    FrameEx2* const third = second->processed;
    *second = *head; // would link the frame to itself
    EXPECT_EQ(second->processed, third);
    EXPECT_EQ(second->imgWidth, 4);
    *head = *second; // the second frame goes with the chain that showed it
    EXPECT_EQ(head->processed, third);
    EXPECT_EQ(CountedFrame::alive, 1);
    head.reset();
    EXPECT_EQ(CountedFrame::alive, 0);
}

TEST_F(FrameChain, MayBeOfAnyLength)
{
    FrameEx2* last = head->processed->processed;
    for (int i = 0; i < 200000; ++i)
        last = last->processed = new FrameEx2;
    last->processed = new CountedFrame;
    head.reset();
    EXPECT_EQ(CountedFrame::alive, 0);
}

} // namespace
