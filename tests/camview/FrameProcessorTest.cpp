#include "Support.h"

#include "core/FrameProcessor.h"
#include "core/FrameSlot.h"

#include <gmock/gmock.h>

namespace
{

using Bytes = std::vector<unsigned char>;

Bytes bytesOf(const FrameEx2& picture)
{
    const int channels = picture.params.bitsPerPixel / 8;
    const unsigned char* first = picture.getImageBuffer();
    return Bytes(first, first + std::ptrdiff_t(picture.imgWidth) * picture.imgHeight * channels);
}

/// Sends one frame of a camera through a processor.
class ProcessorTest : public testing::Test
{
protected:
    class Sink : public FrameSink
    {
    public:
        void frameArrived(PooledFrame arrived) override { slot.put(std::move(arrived)); }
        void streamChanged(StreamEvent, const QString&) override {}
        FrameSlot slot;
    };

    PooledFrame frameOf(const QString& source,
                        const std::function<void(CameraSettings&)>& change = {})
    {
        const auto camera = openCamera(source);
        CameraSettings settings = camera->settings();
        if (change)
            change(settings);
        camera->apply(settings);
        Sink sink;
        sink.slot.open(Delivery::EveryFrame);
        camera->start(sink);
        PooledFrame frame = sink.slot.take();
        sink.slot.close();
        camera->stop();
        return frame;
    }

    Bytes pictureOf(const QString& source, const ProcessingSettings& settings)
    {
        const PooledFrame frame = frameOf(source);
        FrameProcessor processor;
        processor.setSettings(settings);
        return bytesOf(processor.process(*frame).picture);
    }

    QString savePhoto(const QImage& photo)
    {
        const QString path = folder.filePath("photo.png");
        photo.save(path);
        return "photo:" + path;
    }

    QTemporaryDir folder;
};

TEST_F(ProcessorTest, EveryColourMethodShowsThePhotographAsItWas)
{
    const QImage photo = smoothPhoto(160, 120);
    const QString source = savePhoto(photo);
    for (int method = 2; method <= 8; ++method) {
        for (const char* bits : {"8", "10", "12"}) {
            ProcessingSettings settings;
            settings.correction.colorReconstructionMethod = method;
            const Bytes picture = pictureOf(source + "?noise=0&bits=" + bits, settings);
            ASSERT_EQ(picture.size(), 160U * 120 * 3);
            double error = 0;
            for (int y = 0; y < 120; ++y) {
                const uchar* row = photo.constScanLine(y);
                for (int i = 0; i < 160 * 3; ++i)
                    error += std::abs(int(row[i]) - int(picture[std::size_t(y) * 480 + i]));
            }
            EXPECT_LT(error / double(picture.size()), 2.0) << method << " at " << bits;
        }
    }
}

TEST_F(ProcessorTest, AMeanThatIsSwitchedOnAgainBeginsAnew)
{
    const auto greyLevel = [&](FrameProcessor& processor, int average, QColor colour) {
        ProcessingSettings settings;
        settings.correction.colorReconstructionMethod = 1;
        settings.averageFrames = average;
        processor.setSettings(settings);
        const QString photo = "photo:" + flatPhoto(folder, colour);
        const PooledFrame frame = frameOf(photo + "?bits=8&mono=1&noise=0");
        return int(bytesOf(processor.process(*frame).picture).front());
    };
    FrameProcessor processor;
    const int white = greyLevel(processor, 4, Qt::white);
    EXPECT_LT(greyLevel(processor, 4, Qt::black), white) << "the mean of both";
    const int black = greyLevel(processor, 1, Qt::black);
    EXPECT_EQ(greyLevel(processor, 4, Qt::black), black);
}

TEST_F(ProcessorTest, ARawFileShowsThePictureThatItWasMadeFrom)
{
    const QString source = savePhoto(smoothPhoto(64, 48)) + "?noise=0";
    const PooledFrame frame = frameOf(source);
    const QString path = folder.filePath("copy.raw");
    writeFile(path, QByteArray(reinterpret_cast<const char*>(frame->raw.getImageBuffer()),
                               int(frame->raw.frameSizeInByte())));
    const QString raw = "raw:" + path + "?width=64&height=48&bits=16";
    for (int method = 0; method <= 7; ++method) {
        ProcessingSettings settings;
        settings.correction.colorReconstructionMethod = method;
        settings.correction.setFlag(CS_APPLY_LUT, true);
        settings.correction.gamma = 0.6;
        EXPECT_EQ(pictureOf(raw, settings), pictureOf(source, settings)) << method;
    }
}

// The engine mirrors the frame that it was given, which is not always the picture.
TEST_F(ProcessorTest, MirrorsThePictureOnceWhicheverFrameOfTheChainItIs)
{
    const QString photo = savePhoto(smoothPhoto(64, 48));
    for (const char* bits : {"8", "12"}) {
        for (const int method : {0, 1, 2}) {
            for (const bool lut : {false, true}) {
                const QString source = photo + "?noise=0&bits=" + bits;
                ProcessingSettings settings;
                settings.correction.colorReconstructionMethod = method;
                settings.correction.setFlag(CS_APPLY_LUT, lut);
                const Bytes plain = pictureOf(source, settings);
                settings.correction.flipH = true;
                Bytes mirrored = pictureOf(source, settings);
                const std::size_t pixel = method == 2 ? 3 : 1;
                for (std::size_t i = 0; i < plain.size(); i += pixel) {
                    const std::size_t x = i / pixel % 64;
                    const std::size_t other = i + (63 - 2 * x) * pixel;
                    for (std::size_t c = 0; c < pixel; ++c)
                        ASSERT_EQ(mirrored[other + c], plain[i + c])
                            << bits << ' ' << method << ' ' << lut;
                }
            }
        }
    }
}

TEST_F(ProcessorTest, AveragesTheLastFramesAndLeavesTheRawDataAlone)
{
    const auto camera = openCamera("photo:" + flatPhoto(folder, Qt::gray) + "?mono=1");
    ProcessingSettings settings;
    settings.averageFrames = 2;
    FrameProcessor processor;
    processor.setSettings(settings);
    std::vector<Bytes> shown;
    std::vector<std::vector<int>> samples;
    for (const auto& picture : take(*camera, 4)) {
        CameraFrame frame;
        _FrameParams params = picture.params;
        frame.raw.InitFrame(params, 12);
        frame.raw.invalidateFrame();
        auto* raw = reinterpret_cast<std::uint16_t*>(frame.raw.getImageBuffer());
        std::copy(picture.samples.begin(), picture.samples.end(), raw);
        shown.push_back(bytesOf(processor.process(frame).picture));
        samples.push_back(picture.samples);
        EXPECT_TRUE(std::equal(picture.samples.begin(), picture.samples.end(), raw));
    }
    for (std::size_t i = 0; i < shown[3].size(); ++i)
        ASSERT_EQ(shown[3][i], ((samples[2][i] + samples[3][i]) / 2) >> 4);
}

TEST_F(ProcessorTest, CountsEverySampleOfTheRawRegion)
{
    const PooledFrame frame =
        frameOf("photo:" + flatPhoto(folder, QColor(255, 128, 0)) + "?noise=0");
    FrameProcessor processor;
    ProcessingSettings settings;
    settings.correction.colorReconstructionMethod = 2;
    processor.setSettings(settings);
    const ProcessedFrame result = processor.process(*frame);
    const Histograms& histograms = result.histograms;
    ASSERT_EQ(histograms.raw.size(), 1024U);
    const int pixels = 48 * 32;
    EXPECT_EQ(histograms.raw[0], pixels / 4);
    EXPECT_EQ(histograms.raw[1023], pixels / 4);
    EXPECT_EQ(histograms.raw[(128 * 4095 / 255 + 1) / 4], pixels / 2);
    EXPECT_NEAR(histograms.meanLevel, (0.25 * 255 + 0.5 * 128) / 255, 0.001);
    EXPECT_TRUE(histograms.colour);
    EXPECT_EQ(histograms.channels[0][255], pixels);
    EXPECT_EQ(histograms.channels[1][128], pixels);
    EXPECT_EQ(histograms.channels[2][0], pixels);
}

TEST_F(ProcessorTest, AutomaticStretchSpreadsTheLevelsAndGivesTheUsersTableBack)
{
    QImage dim = smoothPhoto(64, 48);
    for (int y = 0; y < dim.height(); ++y) {
        for (int i = 0; i < dim.width() * 3; ++i)
            dim.scanLine(y)[i] = uchar(100 + dim.constScanLine(y)[i] / 16);
    }
    const QString photo = savePhoto(dim);
    for (const char* bits : {"8", "10", "12"}) {
        const QString source = photo + "?noise=0&mono=1&bits=" + bits;
        const QString otherDepth = photo + "?noise=0&mono=1&bits=" + (*bits == '8' ? "12" : "8");
        ProcessingSettings settings;
        settings.correction.colorReconstructionMethod = 1;
        settings.correction.setFlag(CS_APPLY_LUT, true);
        FrameProcessor processor;
        processor.setSettings(settings);
        const Bytes plain = bytesOf(processor.process(*frameOf(source)).picture);
        settings.autoStretch = true;
        processor.setSettings(settings);
        const Bytes wide = bytesOf(processor.process(*frameOf(source)).picture);
        EXPECT_LT(*std::min_element(wide.begin(), wide.end()), 40) << bits;
        EXPECT_GT(*std::max_element(wide.begin(), wide.end()), 215) << bits;
        // The table that is plotted is the one that made the picture, at every depth.
        const auto frame = frameOf(source);
        const ProcessedFrame stretched = processor.process(*frame);
        const auto sample = [&](int i) {
            const unsigned char* raw = frame->raw.getImageBuffer();
            return *bits == '8' ? raw[i] : reinterpret_cast<const quint16*>(raw)[i];
        };
        for (int i = 0; i < 64 * 48; ++i)
            ASSERT_EQ(stretched.toneTable[sample(i)], wide[i]) << bits;

        // Meanwhile another depth came by; no automatic table may survive at either.
        processor.process(*frameOf(otherDepth));
        settings.autoStretch = false;
        processor.setSettings(settings);
        processor.process(*frameOf(otherDepth));
        EXPECT_EQ(bytesOf(processor.process(*frameOf(source)).picture), plain) << bits;
    }
}

TEST_F(ProcessorTest, GreyFromMosaicAndMonochromeSensorsGiveOneBytePerPixel)
{
    const QString photo = "photo:" + flatPhoto(folder, QColor(90, 90, 90));
    ProcessingSettings settings;
    settings.correction.colorReconstructionMethod = 2;
    EXPECT_EQ(pictureOf(photo + "?mono=1&noise=0", settings), Bytes(48 * 32, 90));
    settings.greyFromMosaic = true;
    const Bytes grey = pictureOf(photo + "?noise=0", settings);
    ASSERT_EQ(grey.size(), 48U * 32);
    EXPECT_EQ(grey[10 * 48 + 10], 90); // the conversion's borders follow rules of their own
}

} // namespace
