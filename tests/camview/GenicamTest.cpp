#include "Support.h"
#include "cameras/GenicamCamera.h"

#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{

/// Aravis' fake camera on the loopback address, as a process of its own. There can be one per
/// machine: others wait for their turn.
class FakeCamera
{
public:
    explicit FakeCamera(const QStringList& options = {})
    {
        turn.setFileName("/tmp/camview-fake-camera.lock");
        turn.open(QIODevice::ReadWrite);
        flock(turn.handle(), LOCK_EX);
        plugIn(options);
    }

    ~FakeCamera() { unplug(); }

    void plugIn(const QStringList& options = {})
    {
        process.start(program(), QStringList{"-i", "127.0.0.1", "-s", serial()} + options);
        process.waitForStarted();
        while (!listCameras().contains(name()) && process.state() == QProcess::Running)
            usleep(50000);
    }

    void unplug()
    {
        process.kill();
        process.waitForFinished();
    }

    static QString program() { return CAMVIEW_FAKE_CAMERA; }
    QString serial() const { return "CAMVIEW" + QString::number(getpid()); }
    QString name() const { return "Aravis-Fake-" + serial(); }
    QString source() const { return "genicam:" + name(); }

private:
    QFile turn;
    QProcess process;
};

TEST(Genicam, StreamsTheRegionThatWasSet)
{
    const FakeCamera fake;
    const auto camera = openCamera(fake.source());
    EXPECT_TRUE(camera->info().live);
    EXPECT_GE(camera->info().sensorWidth, 1024);
    CameraSettings settings = camera->settings();
    settings.region = {64, 32, 128, 96};
    settings.exposureMs = 3;
    settings.gainDb = 4;
    settings.frameRate = 40;
    settings = camera->apply(settings);
    EXPECT_EQ(settings.region, (SensorRegion{64, 32, 128, 96}));
    EXPECT_NEAR(settings.exposureMs, 3, 0.1);
    EXPECT_NEAR(settings.gainDb, 4, 1);
    EXPECT_NEAR(settings.frameRate, 40, 2);

    const auto frames = take(*camera, 5);
    for (const auto& frame : frames) {
        EXPECT_GE(frame.params.posX, 64);
        EXPECT_LE(frame.params.posX, 65);
        EXPECT_LE(frame.params.posX + frame.params.width, 64 + 128);
        EXPECT_GE(frame.columns, 124);
        EXPECT_GE(frame.rows, 94);
    }
    EXPECT_GT(frames.back().stamp.number, frames.front().stamp.number);
    EXPECT_GT(frames.back().stamp.cameraTime, frames.front().stamp.cameraTime);
}

TEST(Genicam, MovesTheRegionUnderARunningStream)
{
    const FakeCamera fake;
    const auto camera = openCamera(fake.source());
    CollectingSink sink(100000);
    camera->start(sink);
    std::size_t before = 0;
    for (const int x : {0, 128, 256}) {
        CameraSettings settings = camera->settings();
        settings.region = {x, 0, 64, 64};
        camera->apply(settings);
        before = sink.count();
        while (sink.count() < before + 2)
            usleep(1000);
    }
    camera->stop();
    EXPECT_GE(sink.pictures.back().params.posX, 256);
    EXPECT_THAT(sink.events, testing::IsEmpty());
}

TEST(Genicam, CountsTheFramesThatPacketsWereLostOf)
{
    const FakeCamera fake({"-r", "30"});
    const auto camera = openCamera(fake.source());
    CameraSettings settings = camera->settings();
    settings.region = {0, 0, 128, 128};
    settings.frameRate = 100;
    camera->apply(settings);
    CollectingSink sink(100000);
    camera->start(sink);
    while (camera->losses().incomplete < 3 || sink.count() < 5)
        usleep(10000);
    camera->stop();
    const CameraLosses losses = camera->losses();
    const std::uint64_t exposed = sink.pictures.back().stamp.number;
    // What came, what came with holes, and what never came is all that was exposed (frames with
    // holes may have followed the last whole one).
    EXPECT_LE(exposed, sink.pictures.size() + losses.incomplete + losses.lost);
    EXPECT_GE(exposed, sink.pictures.size());
}

TEST(Genicam, ACameraThatVanishesIsTakenUpAgainWhenItReturns)
{
    FakeCamera fake;
    const auto camera = openCamera(fake.source());
    CameraSettings settings = camera->settings();
    settings.region = {32, 32, 64, 64};
    settings = camera->apply(settings);
    CollectingSink sink(100000);
    camera->start(sink);
    while (sink.count() < 3)
        usleep(10000);
    fake.unplug();
    sink.waitFor(StreamEvent::Vanished);
    const std::size_t before = sink.count();
    fake.plugIn();
    sink.waitFor(StreamEvent::Returned);
    while (sink.count() < before + 3)
        usleep(10000);
    camera->stop();
    EXPECT_THAT(sink.events, testing::ElementsAre(StreamEvent::Vanished, StreamEvent::Returned));
    EXPECT_EQ(sink.pictures.back().params.width, sink.pictures.front().params.width);
    EXPECT_GT(sink.pictures.back().stamp.number, sink.pictures[before - 1].stamp.number);
    EXPECT_EQ(camera->settings().region, settings.region);
}

TEST(Genicam, WhatIsAskedOfAVanishedCameraHoldsWhenItReturns)
{
    FakeCamera fake;
    const auto camera = openCamera(fake.source());
    CollectingSink sink(100000);
    camera->start(sink);
    while (sink.count() < 1)
        usleep(10000);
    fake.unplug();
    CameraSettings settings = camera->settings();
    settings.region = {32, 64, 128, 96};
    try {
        camera->apply(settings);
    } catch (const CameraError&) {
        // Unless the loss was noticed before, the camera refuses; the stream looks for it anyway.
    }
    sink.waitFor(StreamEvent::Vanished);
    camera->apply(settings);
    fake.plugIn();
    sink.waitFor(StreamEvent::Returned);
    const std::size_t before = sink.count();
    while (sink.count() < before + 2)
        usleep(10000);
    camera->stop();
    EXPECT_EQ(camera->settings().region, settings.region);
}

TEST(Genicam, AVanishedCameraCanBeStopped)
{
    FakeCamera fake;
    const auto camera = openCamera(fake.source());
    CollectingSink sink(1);
    camera->start(sink);
    sink.wait();
    fake.unplug();
    sink.waitFor(StreamEvent::Vanished);
    camera->stop();
    EXPECT_THROW(openCamera(fake.source()), CameraError);
}

// Pictures of every phase are brought into the one that the mirror flags stand for, in place.
TEST(Genicam, BringsEveryMosaicIntoPhase)
{
    for (const char* name : {"BayerGR8", "BayerRG8", "BayerGB8", "BayerBG8"}) {
        for (const bool mirrorH : {false, true}) {
            for (const bool mirrorV : {false, true}) {
                const PixelFormat& format = *PixelFormat::byName(name);
                constexpr int columns = 18;
                constexpr int rows = 7;
                std::vector<std::uint8_t> samples(columns * rows);
                for (int y = 0; y < rows; ++y) {
                    for (int x = 0; x < columns; ++x) {
                        const bool red =
                            (x - format.phase->redX) % 2 == 0 && (y - format.phase->redY) % 2 == 0;
                        samples[y * columns + x] = red ? 255 : 10;
                    }
                }
                CameraSettings settings;
                settings.mirrorH = mirrorH;
                settings.mirrorV = mirrorV;
                const GenicamImage image{samples.data(), &format, 100, 50, columns, rows, 1, {}};
                CameraFrame frame;
                copyInPhase(image, samples.data(), settings, frame);
                const BayerPhase wanted = BayerPhase::ofMirroring(mirrorH, mirrorV);
                EXPECT_EQ(frame.raw.imgWidth, 16);
                EXPECT_EQ(frame.raw.imgHeight, 6);
                for (int y = 0; y < 6; ++y) {
                    for (int x = 0; x < 16; ++x) {
                        const bool red = x % 2 == wanted.redX && y % 2 == wanted.redY;
                        ASSERT_EQ(frame.raw.getImageBuffer()[y * 16 + x], red ? 255 : 10) << name;
                    }
                }
                EXPECT_GE(frame.raw.params.posX, 100);
                EXPECT_LE(frame.raw.params.posX + 16, 100 + columns);
                EXPECT_GE(frame.raw.params.posY, 50);
                EXPECT_LE(frame.raw.params.posY + 6, 50 + rows);
            }
        }
    }
}

} // namespace
