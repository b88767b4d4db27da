#include "Support.h"

#include "core/Recorder.h"

#include <QDir>

#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int columns = 320;
constexpr int rows = 200;

/// Offers frames that a test makes, in the place of a camera.
class RecorderTest : public testing::Test
{
protected:
    RecordingRequest request() const
    {
        RecordingRequest wanted;
        wanted.folder = folder.path();
        wanted.name = "rec";
        wanted.stopBytes = 0;
        return wanted;
    }

    /// A frame whose samples all hold its number.
    void offer(std::uint64_t number, double atSeconds = 0, int width = columns)
    {
        CameraFrame frame;
        _FrameParams params;
        params.width = width;
        params.height = rows;
        params.decimation = 1;
        params.bitsPerPixel = 8;
        frame.raw.InitFrame(params, 8);
        std::memset(frame.raw.getImageBuffer(), int(number), std::size_t(width) * rows);
        frame.stamp.number = number;
        const auto later = std::chrono::duration<double>(atSeconds);
        frame.stamp.hostTime = epoch + std::chrono::duration_cast<std::chrono::nanoseconds>(later);
        recorder.offer(frame, true);
    }

    std::vector<std::uint64_t> recordedNumbers() const
    {
        std::vector<std::uint64_t> numbers;
        for (const auto& picture : play(100)) {
            numbers.push_back(picture.stamp.number);
            EXPECT_THAT(picture.samples, testing::Each(int(picture.stamp.number)));
        }
        return numbers;
    }

    std::vector<CollectingSink::Picture> play(std::size_t frames) const
    {
        const auto camera = openCamera("play:" + base + ".dat");
        CollectingSink sink(frames);
        camera->start(sink);
        sink.wait();
        camera->stop();
        return sink.pictures;
    }

    RecorderStatus waitForEnd() const
    {
        while (recorder.status().recording)
            std::this_thread::yield();
        return recorder.status();
    }

    QTemporaryDir folder;
    const QString base = folder.filePath("rec");
    const std::chrono::nanoseconds epoch = hostNow();
    Recorder recorder;
};

TEST_F(RecorderTest, PlaysBackEveryBitOfWhatTheCameraSent)
{
    for (const char* source :
         {"sim?width=96&height=64&bits=12", "sim?width=96&height=64&bits=8&mono=1",
          "sim?width=96&height=64&bits=10"}) {
        const auto camera = openCamera(source);
        CameraSettings settings = camera->settings();
        settings.region = {8, 4, 64, 40};
        settings.mirrorV = true;
        camera->apply(settings);
        // The recorder sees what the sink sees.
        class Both : public CollectingSink
        {
        public:
            explicit Both(Recorder& to)
                : CollectingSink(5)
                , recorder(to)
            {
            }
            void frameArrived(PooledFrame frame) override
            {
                recorder.offer(*frame, true);
                CollectingSink::frameArrived(std::move(frame));
            }
            Recorder& recorder;
        } sink(recorder);
        RecordingRequest wanted = request();
        wanted.frameLimit = 5;
        recorder.start(wanted, "a camera");
        camera->start(sink);
        sink.wait();
        camera->stop();
        EXPECT_EQ(waitForEnd().recorded, 5U);

        const auto played = play(100);
        ASSERT_EQ(played.size(), 5U);
        for (std::size_t i = 0; i < 5; ++i) {
            const auto& sent = sink.pictures[i];
            EXPECT_EQ(played[i].samples, sent.samples);
            EXPECT_EQ(played[i].stamp.number, sent.stamp.number);
            EXPECT_EQ(played[i].stamp.cameraTime, sent.stamp.cameraTime);
            EXPECT_EQ(played[i].depth, sent.depth);
            EXPECT_EQ(played[i].mosaic, sent.mosaic);
            EXPECT_EQ(played[i].params.posX, 8);
            EXPECT_TRUE(played[i].params.mirrorV);
        }
        QDir(folder.path()).removeRecursively();
        QDir().mkpath(folder.path());
    }
}

TEST_F(RecorderTest, StopsByCountAndByTime)
{
    RecordingRequest wanted = request();
    wanted.frameLimit = 3;
    recorder.start(wanted, "cam");
    for (int i = 0; i < 10; ++i)
        offer(i);
    EXPECT_EQ(waitForEnd().problem, "");
    EXPECT_THAT(recordedNumbers(), testing::ElementsAre(0, 1, 2));

    wanted = request();
    wanted.name = "timed";
    wanted.secondsLimit = 100;
    const QString timed = recorder.start(wanted, "cam");
    for (int i = 0; i < 10; ++i)
        offer(i, 30 * i);
    EXPECT_EQ(waitForEnd().recorded, 4U);
    EXPECT_EQ(Recording::open(timed).entries.size(), 4U);
}

TEST_F(RecorderTest, BeginsWithTheSecondsBeforeTheTrigger)
{
    recorder.setPreTrigger(2.0);
    for (int i = 0; i < 200; ++i)
        offer(i, 0.1 * i);
    EXPECT_EQ(recorder.status().waiting, 21U);
    recorder.start(request(), "cam");
    offer(200, 20.0);
    recorder.stop();
    const auto numbers = recordedNumbers();
    ASSERT_EQ(numbers.size(), 22U);
    EXPECT_EQ(numbers.front(), 179U);
    EXPECT_EQ(numbers.back(), 200U);
}

// A camera that was paused sends nothing that would push old frames out.
TEST_F(RecorderTest, FramesOlderThanThePreTriggerDoNotBeginARecording)
{
    recorder.setPreTrigger(600.0);
    offer(1, -1200.0);
    offer(2, -700.0);
    offer(3, -200.0);
    EXPECT_EQ(recorder.status().waiting, 2U);
    recorder.start(request(), "cam");
    recorder.stop();
    EXPECT_THAT(recordedNumbers(), testing::ElementsAre(3));
}

TEST_F(RecorderTest, PreTriggerKeepsToItsMemoryAndForgetsAnotherGeometry)
{
    recorder.setPreTrigger(1e6, 10 * columns * rows);
    for (int i = 0; i < 500; ++i)
        offer(i);
    EXPECT_EQ(recorder.status().waiting, 10U);
    offer(500, 0, 160);
    EXPECT_EQ(recorder.status().waiting, 1U);
    recorder.setPreTrigger(0);
    EXPECT_EQ(recorder.status().waiting, 0U);
}

// The writer hangs in opening a pipe that nobody reads: a disk that is infinitely slow.
TEST_F(RecorderTest, AnOverflowStopsTheRecordingAndSaysWhy)
{
    RecordingRequest wanted = request();
    wanted.queueFrames = 4;
    recorder.start(wanted, "cam");
    ASSERT_EQ(mkfifo((base + ".dat").toLocal8Bit().constData(), 0600), 0);
    CameraFrame frame;
    _FrameParams params;
    params.width = columns;
    params.height = rows;
    params.decimation = 1;
    params.bitsPerPixel = 8;
    frame.raw.InitFrame(params, 8);
    for (int i = 0; i < 10; ++i)
        recorder.offer(frame, false);
    EXPECT_THAT(recorder.status().problem.toStdString(), testing::HasSubstr("too slow"));
    const int reader = open((base + ".dat").toLocal8Bit().constData(), O_RDONLY);
    char sink[65536];
    while (read(reader, sink, sizeof sink) > 0) {
    }
    close(reader);
    const RecorderStatus end = waitForEnd();
    EXPECT_THAT(end.problem.toStdString(), testing::HasSubstr("too slow"));
    EXPECT_GT(end.unwritten, 0U);
}

/// Limits the size of the files that this process writes, as a full disk would.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before); }

private:
    rlimit before{};
};

TEST_F(RecorderTest, AFullDiskLeavesARecordingThatOpens)
{
    {
        const FileSizeLimit full(40 * columns * rows + 1000);
        recorder.start(request(), "cam");
        for (int i = 0; i < 100; ++i)
            offer(i);
        const RecorderStatus end = waitForEnd();
        EXPECT_THAT(end.problem.toStdString(), testing::HasSubstr("disk"));
        EXPECT_EQ(end.recorded, 40U);
        EXPECT_GT(end.unwritten, 0U);
    }
    EXPECT_EQ(QFile(base + ".dat").size(), 40 * columns * rows);
    const auto numbers = recordedNumbers();
    ASSERT_EQ(numbers.size(), 40U);
    EXPECT_EQ(numbers.back(), 39U);
}

TEST_F(RecorderTest, ADiskThatTakesNothingIsNoticedAtTheEndAtTheLatest)
{
    recorder.start(request(), "cam");
    ASSERT_TRUE(QFile::link("/dev/full", base + ".dat"));
    offer(0);
    recorder.stop();
    EXPECT_EQ(recorder.status().recorded, 0U);
    EXPECT_EQ(recorder.status().unwritten, 1U);
    EXPECT_NE(recorder.status().problem, "");
}

TEST_F(RecorderTest, AnotherPictureSizeEndsTheRecording)
{
    recorder.start(request(), "cam");
    offer(0);
    offer(1);
    offer(2, 0, columns / 2);
    offer(3);
    const RecorderStatus end = waitForEnd();
    EXPECT_THAT(end.problem.toStdString(), testing::HasSubstr("changed"));
    EXPECT_THAT(recordedNumbers(), testing::ElementsAre(0, 1));
}

TEST_F(RecorderTest, RefusesAFullDiskABadFolderAndATakenName)
{
    RecordingRequest wanted = request();
    wanted.stopBytes = std::numeric_limits<qint64>::max();
    EXPECT_THROW(recorder.start(wanted, "cam"), RecordingError);
    wanted = request();
    wanted.folder = folder.filePath("nowhere");
    EXPECT_THROW(recorder.start(wanted, "cam"), RecordingError);
    writeFile(base + ".csv", "mine");
    EXPECT_THROW(recorder.start(request(), "cam"), RecordingError);
    EXPECT_FALSE(recorder.status().recording);
}

TEST_F(RecorderTest, OpensWhatACrashLeft)
{
    recorder.start(request(), "cam");
    for (int i = 0; i < 4; ++i)
        offer(i, 0.1 * i);
    recorder.stop();
    QFile::resize(base + ".dat", 4 * columns * rows - 5); // the last frame is torn
    EXPECT_THAT(recordedNumbers(), testing::ElementsAre(0, 1, 2));
    QFile stamps(base + ".csv");
    QFile::resize(base + ".csv", stamps.size() - 70); // and so are its line and the one before
    ASSERT_EQ(play(100).size(), 3U);
    EXPECT_EQ(play(100).back().stamp.number, 2U); // counted on
    ASSERT_TRUE(QFile::remove(base + ".csv"));
    const auto bare = play(100);
    ASSERT_EQ(bare.size(), 3U);
    EXPECT_EQ(bare.front().columns, columns);
}

TEST_F(RecorderTest, RefusesToPlayWhatIsNoRecording)
{
    const char* const heads[] = {"", "# columns 0\n# rows 5\n", "# columns 70000\n# rows 70000\n",
                                 "# columns 4\n# rows 4\n# bits 9\n", "# columns x\n# rows 4\n"};
    writeFile(base + ".dat", QByteArray(64, 'x'));
    EXPECT_THROW(openCamera("play:" + base), CameraError); // neither stamps nor dimensions
    for (const char* head : heads) {
        writeFile(base + ".csv", head);
        EXPECT_THROW(openCamera("play:" + base), CameraError) << head;
    }
    writeFile(base + ".csv", "# columns 100\n# rows 100\n# bits 8\n");
    EXPECT_THROW(openCamera("play:" + base), CameraError); // no whole frame
    EXPECT_THROW(openCamera("play:" + folder.filePath("none.dat")), CameraError);
}

TEST_F(RecorderTest, PlaybackPausesStepsAndLoops)
{
    recorder.start(request(), "cam");
    for (int i = 0; i < 3; ++i)
        offer(i);
    recorder.stop();
    const auto camera = openCamera("play:" + base);
    camera->playback()->setPaused(true);
    camera->playback()->setLoop(true);
    CollectingSink sink(1000);
    camera->start(sink);
    for (int i = 0; i < 5; ++i)
        camera->playback()->step();
    while (sink.count() < 5)
        std::this_thread::yield();
    camera->stop();
    ASSERT_EQ(sink.pictures.size(), 5U);
    EXPECT_EQ(sink.pictures[3].stamp.number, 0U);
    EXPECT_EQ(sink.pictures[4].stamp.number, 1U);
}

} // namespace
