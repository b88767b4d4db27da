#include "Support.h"

#include <gmock/gmock.h>

#include <random>

namespace
{

class PhaseTest : public testing::TestWithParam<std::tuple<bool, bool, int>>
{
};

// A flat colour shows which filter each sample lay under.
TEST_P(PhaseTest, FollowsTheMirrorFlagsAtEveryDecimation)
{
    const auto [mirrorV, mirrorH, decimation] = GetParam();
    const QTemporaryDir folder;
    const auto camera =
        openCamera("photo:" + flatPhoto(folder, QColor(200, 100, 50)) + "?noise=0&bits=8");
    CameraSettings settings = camera->settings();
    settings.mirrorV = mirrorV;
    settings.mirrorH = mirrorH;
    settings.decimation = decimation;
    settings.region = {6, 2, 36, 24};
    camera->apply(settings);

    const auto frame = take(*camera, 1).at(0);
    constexpr int R = 200, G = 100, B = 50;
    const std::vector<int> cells[2][2] = {{{G, B, R, G}, {B, G, G, R}},
                                          {{R, G, G, B}, {G, R, B, G}}};
    for (int y = 0; y + 1 < frame.rows; y += 2) {
        for (int x = 0; x + 1 < frame.columns; x += 2) {
            const std::vector<int> cell = {frame.at(x, y), frame.at(x + 1, y), frame.at(x, y + 1),
                                           frame.at(x + 1, y + 1)};
            ASSERT_EQ(cell, cells[mirrorV][mirrorH]) << x << ',' << y;
        }
    }
    EXPECT_EQ(frame.params.mirrorV, mirrorV);
    EXPECT_EQ(frame.params.mirrorH, mirrorH);
    EXPECT_EQ(frame.columns, frame.params.width / decimation);
}

INSTANTIATE_TEST_SUITE_P(Cameras, PhaseTest,
                         testing::Combine(testing::Bool(), testing::Bool(),
                                          testing::Values(1, 2, 3)));

TEST(SimulatedSensor, ReadsTheRegionWhereItLiesAndMirrorsIt)
{
    const auto camera = openCamera("sim?width=320&height=240&noise=0");
    const auto whole = take(*camera, 1).at(0);
    for (const bool mirrorH : {false, true}) {
        for (const bool mirrorV : {false, true}) {
            const auto part = openCamera("sim?width=320&height=240&noise=0");
            CameraSettings settings = part->settings();
            settings.region = {40, 60, 120, 80};
            settings.mirrorH = mirrorH;
            settings.mirrorV = mirrorV;
            part->apply(settings);
            const auto frame = take(*part, 1).at(0);
            ASSERT_EQ(frame.params.posX, 40);
            ASSERT_EQ(frame.params.posY, 60);
            for (int y = 0; y < 80; ++y) {
                for (int x = 0; x < 120; ++x)
                    ASSERT_EQ(frame.at(x, y),
                              whole.at(40 + (mirrorH ? 119 - x : x), 60 + (mirrorV ? 79 - y : y)));
            }
        }
    }
}

TEST(SimulatedSensor, KeepsEveryWantedRegionInsideTheSensor)
{
    const auto camera = openCamera("sim?width=644&height=482");
    std::mt19937 engine(1);
    std::uniform_int_distribution<int> any(-2000, 2000);
    for (int i = 0; i < 2000; ++i) {
        CameraSettings wanted;
        wanted.region = {any(engine), any(engine), any(engine), any(engine)};
        wanted.decimation = any(engine);
        const CameraSettings got = camera->apply(wanted);
        ASSERT_GE(got.decimation, 1);
        ASSERT_GE(got.region.x, 0);
        ASSERT_GE(got.region.y, 0);
        ASSERT_LE(got.region.x + got.region.width, 644);
        ASSERT_LE(got.region.y + got.region.height, 482);
        ASSERT_GT(got.region.width, 0);
        ASSERT_EQ(got.region.width % (4 * got.decimation), 0);
        ASSERT_EQ(got.region.height % (2 * got.decimation), 0);
        ASSERT_EQ((got.region.x | got.region.y) % 2, 0);
    }
}

double meanLevel(const CollectingSink::Picture& picture)
{
    double sum = 0;
    for (const int sample : picture.samples)
        sum += sample;
    return sum / double(picture.samples.size());
}

TEST(SimulatedSensor, FillsTheRangeOfEachDepthAndClipsThere)
{
    const QTemporaryDir folder;
    const QString photo = flatPhoto(folder, Qt::white);
    for (const int bits : {8, 10, 12}) {
        const auto camera = openCamera(QString("photo:%1?mono=1&bits=%2").arg(photo).arg(bits));
        CameraSettings settings = camera->settings();
        settings.exposureMs = 40;
        camera->apply(settings);
        const auto frame = take(*camera, 1).at(0);
        EXPECT_EQ(frame.depth, bits);
        EXPECT_FALSE(frame.mosaic);
        EXPECT_THAT(frame.samples, testing::Each((1 << bits) - 1));
    }
}

TEST(SimulatedSensor, AnswersToExposureAndGain)
{
    const QTemporaryDir folder;
    const auto camera =
        openCamera("photo:" + flatPhoto(folder, QColor(60, 60, 60)) + "?mono=1&noise=0");
    const double base = meanLevel(take(*camera, 1).at(0));
    EXPECT_NEAR(base, 60 * 4095 / 255.0, 1);
    CameraSettings settings = camera->settings();
    settings.exposureMs *= 2;
    camera->apply(settings);
    EXPECT_NEAR(meanLevel(take(*camera, 1).at(0)), 2 * base, 1);
    settings.gainDb = 6.0206;
    camera->apply(settings);
    EXPECT_NEAR(meanLevel(take(*camera, 1).at(0)), 4 * base, 2);
}

TEST(SimulatedSensor, NoiseGrowsWithLightAndStaysUnbiased)
{
    const QTemporaryDir folder;
    double deviations[2] = {};
    for (const int level : {20, 180}) {
        const QString photo = flatPhoto(folder, QColor(level, level, level), 256, 256);
        const auto camera = openCamera("photo:" + photo + "?mono=1");
        const auto frames = take(*camera, 2);
        EXPECT_NE(frames.at(0).samples, frames.at(1).samples);
        const double mean = meanLevel(frames[0]);
        EXPECT_NEAR(mean, level * 4095 / 255.0, 1.0);
        double squares = 0;
        for (const int sample : frames[0].samples)
            squares += (sample - mean) * (sample - mean);
        deviations[level > 100] = std::sqrt(squares / double(frames[0].samples.size()));
    }
    EXPECT_NEAR(deviations[1] / deviations[0], 3, 0.3); // light times 9, photon noise times 3
}

TEST(SimulatedSensor, ChartMovesAndIsTheSameInEveryRun)
{
    const auto first = take(*openCamera("sim?width=320&height=240"), 3);
    const auto again = take(*openCamera("sim?width=320&height=240"), 3);
    EXPECT_EQ(first.at(2).samples, again.at(2).samples);
    const auto still = take(*openCamera("sim?width=320&height=240&noise=0"), 2);
    EXPECT_NE(still.at(0).samples, still.at(1).samples);
}

} // namespace
