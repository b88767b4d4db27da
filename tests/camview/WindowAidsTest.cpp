#include "aids/ClippingMask.h"
#include "aids/LineProfile.h"
#include "aids/RegionStatistics.h"
#include "aids/Snapshot.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

namespace
{

/// A frame whose sample (x, y) is 10 * y + x.
FrameEx2 counted(int width, int height, int bitDepth)
{
    _FrameParams params;
    params.width = width;
    params.height = height;
    params.decimation = 1;
    params.bitsPerPixel = 8;
    FrameEx2 frame(params, static_cast<unsigned char>(bitDepth));
    for (int i = 0; i < width * height; ++i) {
        const int level = 10 * (i / width) + i % width;
        if (bitDepth > 8)
            reinterpret_cast<quint16*>(frame.getImageBuffer())[i] = static_cast<quint16>(level);
        else
            frame.getImageBuffer()[i] = static_cast<unsigned char>(level);
    }
    return frame;
}

class Depths : public testing::TestWithParam<int>
{
};

TEST_P(Depths, MirroringMapsPixelsToTheirSamples)
{
    const FrameEx2 frame = counted(4, 3, GetParam());
    EXPECT_EQ(RawPicture(frame).sample(3, 1), 13);
    EXPECT_EQ(RawPicture(frame, true, false).sample(3, 1), 10);
    EXPECT_EQ(RawPicture(frame, false, true).sample(3, 0), 23);
    EXPECT_EQ(RawPicture(frame, true, true).sample(0, 0), 23);
}

TEST_P(Depths, MeasuresTheShownRectangle)
{
    const FrameEx2 frame = counted(4, 3, GetParam());
    const RegionStatistics plain = measureRegion(RawPicture(frame), {0, 0, 2, 2});
    EXPECT_EQ(plain.count, 4);
    EXPECT_DOUBLE_EQ(plain.mean, (0 + 1 + 10 + 11) / 4.0);
    EXPECT_NEAR(plain.deviation, std::sqrt((5.5 * 5.5 + 4.5 * 4.5) / 2.0), 1e-9);
    EXPECT_EQ(plain.smallest, 0);
    EXPECT_EQ(plain.largest, 11);

    const RegionStatistics mirrored = measureRegion(RawPicture(frame, true, true), {0, 0, 2, 2});
    EXPECT_DOUBLE_EQ(mirrored.mean, (12 + 13 + 22 + 23) / 4.0);
}

TEST_P(Depths, MeasuresOnlyWhatLiesInsideThePicture)
{
    const FrameEx2 frame = counted(4, 3, GetParam());
    const RawPicture picture(frame);
    EXPECT_EQ(measureRegion(picture, {3, 2, 50, 50}).count, 1);
    EXPECT_DOUBLE_EQ(measureRegion(picture, {3, 2, 50, 50}).mean, 23.0);
    EXPECT_EQ(measureRegion(picture, {40, 40, 5, 5}).count, 0);
}

TEST_P(Depths, ProfileFollowsTheLine)
{
    const FrameEx2 frame = counted(4, 3, GetParam());
    const RawPicture picture(frame);
    EXPECT_EQ(lineProfile(picture, {0.5, 1.5, 3.5, 1.5}, false),
              (std::vector<double>{10, 11, 12, 13}));
    EXPECT_EQ(lineProfile(picture, {3.5, 1.5, 0.5, 1.5}, false),
              (std::vector<double>{13, 12, 11, 10}));
    EXPECT_EQ(lineProfile(picture, {0.5, 0.5, 2.5, 2.5}, false), (std::vector<double>{0, 11, 22}));
    EXPECT_EQ(lineProfile(picture, {0.5, 0.5, 3.5, 0.5}, true).front(), (0 + 1 + 10 + 11) / 4.0);
    EXPECT_TRUE(lineProfile(picture, QLineF(), false).empty());
    EXPECT_TRUE(lineProfile(picture, {0, 50, 100, 50}, false).empty());
}

TEST_P(Depths, ProfileOfAHugeRulerStaysInsideThePicture)
{
    const FrameEx2 frame = counted(4, 3, GetParam());
    const auto levels = lineProfile(RawPicture(frame), {-1e9, 1.5, 1e9, 1.5}, false);
    ASSERT_GE(levels.size(), 3U);
    EXPECT_LE(levels.size(), 5U);
    EXPECT_EQ(levels.front(), 10);
}

INSTANTIATE_TEST_SUITE_P(AllSampleSizes, Depths, testing::Values(8, 12));

TEST(ClippingMaskTest, MarksBlackAndSaturatedSamplesOnly)
{
    FrameEx2 frame = counted(3, 1, 10);
    auto* samples = reinterpret_cast<quint16*>(frame.getImageBuffer());
    samples[1] = 1022;
    samples[2] = 1023;
    QImage mask;
    clippingMask(RawPicture(frame), mask);
    EXPECT_EQ(qAlpha(mask.pixel(1, 0)), 0);
    EXPECT_GT(qBlue(mask.pixel(0, 0)), qRed(mask.pixel(0, 0)));
    EXPECT_GT(qRed(mask.pixel(2, 0)), qBlue(mask.pixel(2, 0)));

    const uchar* memory = mask.constBits();
    clippingMask(RawPicture(frame), mask);
    EXPECT_EQ(mask.constBits(), memory) << "a mask of the same size is made in place";

    const QImage shown = mask; // somebody still draws it
    samples[0] = 5;
    clippingMask(RawPicture(frame, true, false), mask);
    EXPECT_NE(qAlpha(shown.pixel(0, 0)), 0);
    EXPECT_GT(qRed(mask.pixel(0, 0)), 0) << "the mask is mirrored with the picture";
    EXPECT_EQ(qAlpha(mask.pixel(2, 0)), 0);
}

TEST(RawSnapshotTest, HoldsTheSamplesAndSaysHowToReadThem)
{
    const QTemporaryDir folder;
    FrameEx2 frame = counted(4, 3, 12);
    frame.params.mirrorV = true;
    const QString name = folder.filePath("shots/one.raw");
    EXPECT_EQ(saveRawSnapshot(frame, name), QString());
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(),
              QByteArray(reinterpret_cast<const char*>(frame.getImageBuffer()), 24));
    EXPECT_EQ(rawSource(frame, false, "x"), "raw:x?width=4&height=3&bits=12&mono=1&mirrorv=1");
}

} // namespace
