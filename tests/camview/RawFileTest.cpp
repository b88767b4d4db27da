#include "Support.h"

#include <gmock/gmock.h>

namespace
{

QByteArray words(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values) {
        bytes.append(char(value & 0xff));
        bytes.append(char(value >> 8));
    }
    return bytes;
}

class RawFileTest : public testing::Test
{
protected:
    std::unique_ptr<Camera> open(const QByteArray& content, const QString& parameters)
    {
        writeFile(path, content);
        return openCamera("raw:" + path + "?" + parameters);
    }

    QTemporaryDir folder;
    const QString path = folder.filePath("a?b.raw");
};

TEST_F(RawFileTest, DeliversFrameAfterFrameAndThenEnds)
{
    const auto camera = open(QByteArray("abcdefghijkl"), "width=3&height=2&bits=8");
    EXPECT_EQ(camera->info().frameCount, 2U);
    CollectingSink sink(10);
    camera->start(sink);
    sink.wait();
    camera->stop();
    ASSERT_EQ(sink.pictures.size(), 2U);
    EXPECT_THAT(sink.pictures[0].samples, testing::ElementsAre('a', 'b', 'c', 'd', 'e', 'f'));
    EXPECT_THAT(sink.pictures[1].samples, testing::ElementsAre('g', 'h', 'i', 'j', 'k', 'l'));
    EXPECT_EQ(sink.pictures[1].stamp.number, 1U);
    EXPECT_THAT(sink.events, testing::ElementsAre(StreamEvent::Ended));
}

TEST_F(RawFileTest, LoopsWhenAsked)
{
    const auto camera = open(QByteArray("abcd"), "width=2&height=1&bits=8&loop=1");
    EXPECT_EQ(camera->info().frameCount, 0U);
    const auto frames = take(*camera, 3);
    EXPECT_THAT(frames.at(2).samples, testing::ElementsAre('a', 'b'));
}

TEST_F(RawFileTest, ReadsWordsOfEachDepthIntoItsRange)
{
    const struct {
        const char* bits;
        std::vector<int> stored;
        int depth;
        std::vector<int> delivered;
    } rows[] = {{"10", {0, 5, 1023, 1024}, 10, {0, 5, 1023, 1023}}, // too large: clipped
                {"12", {0, 5, 4095, 65535}, 12, {0, 5, 4095, 4095}},
                {"16", {0, 5, 4095, 256}, 12, {0, 5, 4095, 256}},       // words of a 12-bit camera
                {"16", {0, 160, 65535, 4096}, 12, {0, 10, 4095, 256}}}; // the whole range is used
    for (const auto& row : rows) {
        const auto& s = row.stored;
        const auto camera = open(words({s[0], s[1], s[2], s[3]}),
                                 QString("width=2&height=2&mono=1&bits=%1").arg(row.bits));
        const auto frame = take(*camera, 1).at(0);
        EXPECT_EQ(frame.depth, row.depth);
        EXPECT_FALSE(frame.mosaic);
        EXPECT_EQ(frame.samples, row.delivered) << row.bits;
    }
}

TEST_F(RawFileTest, MirrorFlagsSetThePhaseAndNothingElseCanBeSet)
{
    const auto camera = open(QByteArray("abcdef"), "width=3&height=2&bits=8&mirrorv=1");
    CameraSettings wanted = camera->settings();
    wanted.region = {1, 1, 1, 1};
    wanted.decimation = 2;
    wanted.mirrorV = false;
    const CameraSettings got = camera->apply(wanted);
    EXPECT_EQ(got.region, (SensorRegion{0, 0, 3, 2}));
    EXPECT_EQ(got.decimation, 1);
    EXPECT_TRUE(got.mirrorV);
    EXPECT_TRUE(take(*camera, 1).at(0).params.mirrorV);
}

} // namespace
