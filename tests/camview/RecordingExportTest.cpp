#include "Support.h"

#include "core/Recorder.h"
#include "core/RecordingExport.h"

#include <AppComponents/calc/ICalculationInfo.h>

#include <QDir>

#include <gmock/gmock.h>

namespace
{

/// Keeps what it is told, and asks for a stop after some steps.
class Info : public ICalculationInfo
{
public:
    explicit Info(int stepsUntilStop = 1000)
        : limit(stepsUntilStop)
    {
    }
    bool isStopRequested() override { return int(steps.size()) >= limit; }
    void setStepCount(int all) override { count = all; }
    void setStep(int step) override { steps.push_back(step); }
    void setFinished() override { finished = true; }

    const int limit;
    int count = 0;
    std::vector<int> steps;
    bool finished = false;
};

/// A recording of four grey frames whose samples all hold ten times their number.
class RecordingExportTest : public testing::Test
{
protected:
    RecordingExportTest()
    {
        Recorder recorder;
        RecordingRequest request;
        request.folder = folder.path();
        request.name = "take %2";
        request.stopBytes = 0;
        recorder.start(request, "a camera");
        for (int i = 1; i <= 4; ++i) {
            CameraFrame frame;
            _FrameParams params;
            params.width = 30;
            params.height = 20;
            params.decimation = 1;
            params.bitsPerPixel = 8;
            frame.raw.InitFrame(params, 8);
            std::memset(frame.raw.getImageBuffer(), 10 * i, 30 * 20);
            frame.stamp.number = std::uint64_t(i);
            recorder.offer(frame, true);
        }
        recorder.stop();
        pictures.mkpath(".");
        processing.correction.flags = 0;
        processing.correction.colorReconstructionMethod = 1;
    }

    QStringList names() const { return pictures.entryList(QDir::Files); }

    const QTemporaryDir folder;
    const QDir pictures{folder.filePath("pictures")};
    ProcessingSettings processing;
};

TEST_F(RecordingExportTest, MakesAPictureOfEachFrame)
{
    Info info;
    RecordingExport job(folder.filePath("take %2.dat"), pictures.path(), processing);
    job.run(&info);
    ASSERT_EQ(names(), QStringList({"take %2_000001.png", "take %2_000002.png",
                                    "take %2_000003.png", "take %2_000004.png"}));
    for (int i = 0; i < 4; ++i) {
        const QImage picture(pictures.filePath(names().at(i)));
        EXPECT_EQ(picture.size(), QSize(30, 20));
        EXPECT_EQ(qGray(picture.pixel(29, 19)), 10 * (i + 1));
    }
    EXPECT_EQ(info.count, 4);
    EXPECT_THAT(info.steps, testing::ElementsAre(1, 2, 3, 4));
    EXPECT_TRUE(info.finished);
}

TEST_F(RecordingExportTest, StopsBetweenTwoPicturesWhenAsked)
{
    Info info(2);
    RecordingExport job(folder.filePath("take %2"), pictures.path(), processing);
    EXPECT_THROW(job.run(&info), CCalculationBlock::DeviceFunctionException);
    EXPECT_EQ(job.picturesWritten(), 2);
    EXPECT_EQ(names().size(), 2);
    EXPECT_FALSE(info.finished);
}

TEST_F(RecordingExportTest, SaysWhatStandsInTheWayAndReplacesNothing)
{
    const QString there = pictures.filePath("take %2_000002.png");
    writeFile(there, "mine");
    const auto complaintOf = [this](const QString& recording, const QString& output) {
        RecordingExport job(recording, output, processing);
        try {
            job.run(nullptr);
        } catch (const RecordingError& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    const QString take = folder.filePath("take %2.dat");
    EXPECT_EQ(complaintOf(take, pictures.path()), (there + ": is there already").toStdString());
    EXPECT_EQ(QFileInfo(there).size(), 4);
    EXPECT_EQ(names().size(), 2) << "the picture before it stays";
    EXPECT_THAT(complaintOf(take, folder.filePath("missing")), testing::HasSubstr("missing"));
    EXPECT_THAT(complaintOf(folder.filePath("none"), pictures.path()), testing::HasSubstr("none"));
}

} // namespace
