#include "Support.h"

#include <gmock/gmock.h>

#include <thread>

namespace
{

TEST(CameraFactory, RefusesWhatItCannotOpen)
{
    const QTemporaryDir folder;
    writeFile(folder.filePath("not.png"), "this is no picture");
    writeFile(folder.filePath("seven.raw"), "1234567");
    const QString notPicture = folder.filePath("not.png");
    const QString seven = folder.filePath("seven.raw");
    const QString sources[] = {"",
                               "nonsense",
                               "sim:file",
                               "sim?width=0",
                               "sim?width=abc",
                               "sim?width=18&height=16",
                               "sim?width=16384&height=16384",
                               "sim?bits=9",
                               "sim?bits=14",
                               "sim?colour=1",
                               "sim?width=64&width=64",
                               "sim?noise=nan",
                               "photo",
                               "photo:",
                               "photo:/no/such/file.png",
                               "photo:" + notPicture,
                               "photo:" + folder.path(),
                               "raw:" + seven,
                               "raw:" + seven + "?width=2&height=2",
                               "raw:" + seven + "?width=4&height=2&bits=8", // too short
                               "raw:" + seven +
                                   "?width=2&height=2&bits=8", // not a whole number of frames
                               "raw:" + seven + "?width=65535&height=65535&bits=16",
                               "raw:" + seven + "?width=1&height=7&bits=9",
                               "raw:" + seven + "?width=-1&height=7&bits=8",
                               "raw:/no/such?width=1&height=1&bits=8",
                               "raw:" + folder.path() + "?width=1&height=1&bits=8"};
    for (const QString& source : sources) {
        try {
            openCamera(source);
            ADD_FAILURE() << source.toStdString() << " was opened";
        } catch (const CameraError& error) {
            EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("\n")));
            EXPECT_STRNE(error.what(), "");
        }
    }
}

TEST(StreamingCamera, CountsOnAcrossARestart)
{
    const auto camera = openCamera("sim?width=16&height=16");
    const std::uint64_t last = take(*camera, 3).at(2).stamp.number;
    EXPECT_GT(take(*camera, 1).at(0).stamp.number, last);
}

TEST(StreamingCamera, KeepsItsPaceAndStampsItsClock)
{
    const auto camera = openCamera("sim?width=16&height=16");
    CameraSettings settings = camera->settings();
    settings.frameRate = 250;
    camera->apply(settings);
    const auto frames = take(*camera, 40);
    for (std::size_t i = 1; i < frames.size(); ++i) {
        const auto step = frames[i].stamp.number - frames[i - 1].stamp.number;
        EXPECT_EQ((frames[i].stamp.cameraTime - frames[i - 1].stamp.cameraTime).count(),
                  std::int64_t(step) * 4000000);
        EXPECT_GE(frames[i].stamp.hostTime, frames[i - 1].stamp.hostTime);
    }
    // The host may be late, never early.
    EXPECT_GE((frames.back().stamp.hostTime - frames.front().stamp.hostTime).count(),
              std::int64_t(frames.size() - 1 - 18) * 4000000);
}

// A camera's thread that waits for its next frame ends at once.
TEST(StreamingCamera, StopsInTheMiddleOfAWait)
{
    const auto camera = openCamera("sim?width=16&height=16");
    CameraSettings settings = camera->settings();
    settings.frameRate = 0.001;
    camera->apply(settings);
    CollectingSink sink(1);
    camera->start(sink);
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // time to begin to wait
    camera->stop();
    EXPECT_TRUE(sink.pictures.empty());
}

TEST(StreamingCamera, AnotherRateHoldsAtOnce)
{
    const auto camera = openCamera("sim?width=16&height=16");
    CameraSettings settings = camera->settings();
    settings.frameRate = 0.001;
    camera->apply(settings);
    CollectingSink sink(2);
    camera->start(sink);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    settings.frameRate = 500;
    camera->apply(settings);
    sink.wait();
    camera->stop();
    EXPECT_EQ(camera->losses().lost, 0U);
}

} // namespace
