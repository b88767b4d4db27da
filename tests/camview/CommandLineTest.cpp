#include "CommandLine.h"
#include "Support.h"

#include <QDir>

#include <gmock/gmock.h>

namespace
{

class CommandLineTest : public testing::Test
{
protected:
    static QByteArray bytesOf(const QString& fileName)
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

    QStringList pictures() const { return QDir(output).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir folder;
    const QString output = folder.filePath("out");
};

TEST_F(CommandLineTest, WrongUseIsOneLineStatusTwoAndNothingWritten)
{
    writeFile(folder.filePath("short.raw"), QByteArray(1000, 'x'));
    writeFile(folder.filePath("file"), "a file where a folder should be");
    writeFile(folder.filePath("taken.dat"), "an older recording");
    const QString shortFile = "raw:" + folder.filePath("short.raw");
    const QStringList lines[] = {
        {"--nonsense"},
        {"stray"},
        {"--frames"},
        {"--frames", "0"},
        {"--frames", "-3"},
        {"--frames", "many"},
        {"--frames", "1e3"},
        {"--frames", "3", "--frames", "4"},
        {"--duration", "0"},
        {"--duration", "nan"},
        {"--method", "9"},
        {"--method", "-1"},
        {"--average", "0"},
        {"--average", "65"},
        {"--brightness", "0.6"},
        {"--contrast", "0.2"},
        {"--gamma", "3.1"},
        {"--gamma", "inf"},
        {"--color-correction", "1,1,1"},
        {"--color-correction", "1,1,1,0,1,x"},
        {"--bits", "9"},
        {"--decimation", "0"},
        {"--region", "0,0,0,10"},
        {"--region", "0,0,10"},
        {"--region", "-2,0,10,10"},
        {"--rate", "0"},
        {"--source", ""},
        {"--source", "nowhere"},
        {"--source", "photo:/no/such/file.jpg"},
        {"--source", shortFile},
        {"--source", shortFile + "?width=40&height=40&bits=8"},
        {"--source", shortFile + "?width=0&height=40&bits=8"},
        {"--source", shortFile + "?width=10&height=10&bits=8", "--frames", "11"},
        {"--record", folder.filePath("nowhere/rec")},
        {"--record", folder.filePath("taken.dat")},
        {"--snapshot", folder.filePath("nowhere/shot.png")},
        {"--settings", folder.filePath("file")},
        {"--settings", folder.filePath("nowhere/settings.xml")},
        {"--log-config", folder.filePath("file")},
        {"--log-config", folder.filePath("nowhere.xml")},
        {"--output", folder.filePath("file")},
        {"--output", folder.filePath("file/below")},
    };
    for (const QStringList& line : lines) {
        QStringList arguments{"--headless"};
        if (!line.contains("--output"))
            arguments << "--output" << output;
        const Outcome outcome = runCamview(arguments + line);
        const std::string what = line.join(' ').toStdString();
        EXPECT_EQ(outcome.status, 2) << what;
        EXPECT_EQ(outcome.err.count('\n'), 1) << what << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.startsWith("camview: ")) << what;
        EXPECT_TRUE(outcome.out.isEmpty()) << what;
        EXPECT_FALSE(QFile::exists(output)) << what;
    }
}

TEST_F(CommandLineTest, WritesThePicturesAndASummaryForMachines)
{
    const Outcome outcome = runCamview(
        {"--headless", "--source", "sim?width=128&height=96", "--frames", "3", "--output", output,
         "--lut", "--gamma", "0.5", "--white-balance", "--color-correction", "1.1,1,0.9,5,1.2,1",
         "--median", "--flip-h", "--average", "2", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_EQ(pictures(),
              QStringList({"frame_000001.png", "frame_000002.png", "frame_000003.png"}));
    EXPECT_EQ(QImage(output + "/frame_000003.png").size(), QSize(128, 96));
    const QJsonObject summary = outcome.json();
    EXPECT_EQ(summary["frames"].toInt(), 3);
    EXPECT_EQ(summary["width"].toInt(), 128);
    EXPECT_EQ(summary["counters"].toObject()["dropped"].toInt(), 0);
    EXPECT_GT(summary["stageMilliseconds"].toObject()["process"].toDouble(), 0);
    EXPECT_GT(summary["framesPerSecond"].toDouble(), 0);
}

TEST_F(CommandLineTest, PicturesOfAnyWidthAreWrittenStraight)
{
    // Three columns: rows that a picture format would pad.
    writeFile(folder.filePath("odd.raw"), QByteArray("\x00\x80\xff\x00\x80\xff\x00\x80\xff", 9));
    const QString source = "raw:" + folder.filePath("odd.raw") + "?width=3&height=3&bits=8&mono=1";
    ASSERT_EQ(runCamview({"--headless", "--source", source, "--output", output}).status, 0);
    const QImage picture(output + "/frame_000001.png");
    ASSERT_EQ(picture.size(), QSize(3, 3));
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(qGray(picture.pixel(0, y)), 0);
        EXPECT_EQ(qGray(picture.pixel(1, y)), 128);
        EXPECT_EQ(qGray(picture.pixel(2, y)), 255);
    }
}

TEST_F(CommandLineTest, ProcessesAllThatAFileHoldsAndSaysSoInWords)
{
    writeFile(folder.filePath("four.raw"), QByteArray(4 * 16 * 8 * 2, '\x01'));
    const QString source = "raw:" + folder.filePath("four.raw") + "?width=16&height=8&bits=12";
    const Outcome outcome = runCamview({"--headless", "--source", source});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out.toStdString(), testing::HasSubstr("4 frames of 16 x 8"));
    EXPECT_THAT(outcome.out.toStdString(), testing::HasSubstr("frames per second"));
}

TEST_F(CommandLineTest, RecordsRawDataWhateverIsShownOfIt)
{
    const QString source = "sim?width=128&height=96&bits=12";
    const QString plain = folder.filePath("plain");
    const QString adorned = folder.filePath("adorned");
    ASSERT_EQ(
        runCamview({"--headless", "--source", source, "--frames", "4", "--record", plain}).status,
        0);
    const Outcome outcome = runCamview(
        {"--headless", "--source", source, "--frames", "4", "--record", adorned, "--method", "0",
         "--bits", "12", "--median", "--flip-h", "--average", "3", "--gamma", "0.5", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.json()["counters"].toObject()["recorded"].toInt(), 4);
    EXPECT_EQ(bytesOf(plain + ".dat"), bytesOf(adorned + ".dat"));
    EXPECT_EQ(bytesOf(plain + ".dat").size(), 4 * 128 * 96 * 2);
    EXPECT_EQ(bytesOf(plain + ".dat.dim"), "0256x0096");
    const Outcome played = runCamview(
        {"--headless", "--source", "play:" + adorned + ".dat", "--json", "--output", output});
    EXPECT_EQ(played.json()["frames"].toInt(), 4);
    const Outcome shown = runCamview(
        {"--headless", "--source", source, "--frames", "4", "--output", folder.filePath("direct")});
    EXPECT_EQ(bytesOf(output + "/frame_000004.png"),
              bytesOf(folder.filePath("direct/frame_000004.png")));
}

TEST_F(CommandLineTest, ALiveRecordingHoldsAsManyFramesAsAskedFor)
{
    const QString name = folder.filePath("live");
    const Outcome outcome =
        runCamview({"--headless", "--source", "sim?width=128&height=96&bits=8", "--rate", "500",
                    "--frames", "50", "--record", name, "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_EQ(bytesOf(name + ".dat").size(), 50 * 128 * 96);
    EXPECT_EQ(bytesOf(name + ".csv").count('\n'), 7 + 50);
}

TEST_F(CommandLineTest, ASnapshotsRawFrameShowsTheSamePicture)
{
    const QString png = folder.filePath("shot.png");
    const Outcome outcome =
        runCamview({"--headless", "--source", "sim?width=128&height=96", "--frames", "2",
                    "--mirror-h", "--median", "--snapshot", png, "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    const QString raw = outcome.json()["snapshotSource"].toString();
    ASSERT_EQ(runCamview({"--headless", "--source", raw, "--median", "--output", output}).status, 0)
        << raw.toStdString();
    EXPECT_EQ(QImage(output + "/frame_000001.png"), QImage(png));
}

TEST_F(CommandLineTest, ASnapshotsSourceNamesTheFileWhateverIsInItsName)
{
    const QString png = folder.filePath("80%2 grey.png");
    const Outcome outcome = runCamview({"--headless", "--source", "sim?width=64&height=48",
                                        "--frames", "1", "--snapshot", png, "--json"});
    EXPECT_TRUE(outcome.json()["snapshotSource"].toString().startsWith(
        "raw:" + folder.filePath("80%2 grey.raw") + "?width=64&height=48"))
        << outcome.out.toStdString();
}

TEST_F(CommandLineTest, ASnapshotThatNoPictureCameForIsAFailure)
{
    const QString png = folder.filePath("shot.png");
    const Outcome outcome = runCamview({"--headless", "--source", "sim?width=64&height=48",
                                        "--rate", "0.1", "--duration", "0.05", "--snapshot", png});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err.count('\n'), 1) << outcome.err.toStdString();
    EXPECT_FALSE(QFile::exists(png));
}

// Writing pictures takes time that a live source does not wait for.
TEST_F(CommandLineTest, ALiveStreamIsNeverFasterThanItsCamera)
{
    const Outcome outcome =
        runCamview({"--headless", "--source", "sim?width=320&height=240", "--rate", "50",
                    "--frames", "10", "--output", output, "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err.toStdString();
    EXPECT_GE(outcome.json()["seconds"].toDouble(), 10 / 50.0);
    EXPECT_LE(outcome.json()["framesPerSecond"].toDouble(), 50);
}

TEST_F(CommandLineTest, SettingsAreReadOverruledAndWrittenBack)
{
    const QString file = folder.filePath("settings.xml");
    const QStringList base{"--headless", "--source", "sim?width=64&height=48", "--settings", file};
    ASSERT_EQ(runCamview(base + QStringList{"--gamma", "0.5", "--method", "4"}).status, 0);
    EXPECT_TRUE(bytesOf(file).contains("<Gamma>0.5</Gamma>"));
    ASSERT_EQ(runCamview(base + QStringList{"--contrast", "2"}).status, 0);
    const QByteArray settings = bytesOf(file);
    EXPECT_TRUE(settings.contains("<Gamma>0.5</Gamma>"));
    EXPECT_TRUE(settings.contains("<Contrast>2</Contrast>"));
    EXPECT_TRUE(settings.contains("<ColorReconstructionMethod>4</ColorReconstructionMethod>"));
}

TEST_F(CommandLineTest, LogsStageTimesWhereTheConfigurationSaysSo)
{
    writeFile(folder.filePath("log.xml"),
              "<Settings><Logs><CFileTextLog FileName=\"times.txt\"><Register value=\"camview\"/>"
              "</CFileTextLog></Logs></Settings>");
    ASSERT_EQ(runCamview({"--headless", "--source", "sim?width=64&height=48", "--log-config",
                          folder.filePath("log.xml")})
                  .status,
              0);
    EXPECT_TRUE(bytesOf(folder.filePath("times.txt")).contains("process "));
}

TEST_F(CommandLineTest, NeedsNoDisplayHoweverTheOptionIsWritten)
{
    EXPECT_EQ(runCamview({"-headless", "-frames=1", "-source=sim?width=64&height=48"}).status, 0);
    EXPECT_EQ(runCamview({"-help"}).status, 0);
}

TEST_F(CommandLineTest, EndsWhenTheTimeIsUp)
{
    const Outcome outcome = runCamview({"--headless", "--source", "sim?width=64&height=48",
                                        "--duration", "0.2", "--rate", "100", "--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_GT(outcome.json()["frames"].toInt(), 0);
}

TEST_F(CommandLineTest, HelpNamesEveryOption)
{
    const Outcome outcome = runCamview({"--help"});
    EXPECT_EQ(outcome.status, 0);
    for (const char* option : {"--source", "--average", "--color-correction", "raw:FILE"})
        EXPECT_THAT(outcome.out.toStdString(), testing::HasSubstr(option));
}

} // namespace
