#include <support/BenchmarkSupport.h>

#include <AppComponents/imgproc/ImgProcessor.h>

#include <cstring>
#include <vector>

#ifdef BENCHMARK_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace
{

using bench::PictureSize;

std::size_t pixelsOf(PictureSize size)
{
    return static_cast<std::size_t>(size.pixels());
}

/// Runs \p work(source, count, destination) on random samples.
template <typename Sample, typename Work>
void mapSamples(benchmark::State& state, PictureSize size, Work work)
{
    const auto from =
        bench::randomSamples<Sample>(pixelsOf(size), sizeof(Sample) == 1 ? 255 : 4095);
    const auto to = bench::filledSamples<std::uint8_t>(pixelsOf(size) + 1, 0);
    for (auto _ : state) {
        work(from.data(), size.pixels(), to.data());
        benchmark::ClobberMemory();
    }
}

void applyLut8(benchmark::State& state, PictureSize size)
{
    ImgProcessor processor;
    mapSamples<std::uint8_t>(state, size, [&](std::uint8_t* from, int count, std::uint8_t* to) {
        processor.apply_LUT8(from, count, to);
    });
}

void applyLut12(benchmark::State& state, PictureSize size, double contrast)
{
    ImgProcessor processor;
    processor.setContrastD(contrast);
    mapSamples<std::uint16_t>(state, size, [&](std::uint16_t* from, int count, std::uint8_t* to) {
        processor.apply_LUT12_8(from, count, to);
    });
}

/// The loop that one would write.
template <typename Sample>
void plainLookUp(benchmark::State& state, PictureSize size)
{
    ImgProcessor processor;
    const unsigned char* const table =
        sizeof(Sample) == 1 ? processor.getLUT8() : processor.getLUT12();
    mapSamples<Sample>(state, size, [=](const Sample* from, int count, std::uint8_t* to) {
        for (int i = 0; i < count; ++i)
            to[i] = table[from[i]];
    });
}

void convert12(benchmark::State& state, PictureSize size)
{
    mapSamples<std::uint16_t>(state, size, &ImgProcessor::convert12_8);
}

void mosaicToGrey(benchmark::State& state, PictureSize size)
{
    ImgProcessor processor;
    const auto from = bench::randomSamples<std::uint8_t>(pixelsOf(size) + 1, 255);
    const auto to = bench::filledSamples<std::uint8_t>(pixelsOf(size) + 1, 0);
    for (auto _ : state) {
        processor.bayerToMono(from.data(), size.height, size.width, to.data(), false, false);
        benchmark::ClobberMemory();
    }
}

/// A stream of frames of 12 bits; the copy of the camera picture is not part of the work.
void process(benchmark::State& state, PictureSize size, int method, int flags)
{
    FrameEx2 frame({0, 0, size.width, size.height, 1, 8, false, false}, 12);
    const auto samples = bench::randomSamples<std::uint16_t>(pixelsOf(size), 4095);
    std::memcpy(frame.getImageBuffer(), samples.data(), 2 * pixelsOf(size));
    ImgProcessor processor;
    processor.setColorReconstructionMethod(method);
    processor.setipFlags(flags);
    processor.setColorCorrectionParams(1.2, 1.0, 1.4, 10.0, 1.1, 1.0);
    frame.invalidateFrame();
    processor.ProcessFrame(&frame, 8); // obtains the memory of the chain, once in a stream
    for (auto _ : state) {
        frame.invalidateFrame();
        processor.ProcessFrame(&frame, 8);
        benchmark::ClobberMemory();
    }
}

void copyBytes(benchmark::State& state, std::size_t bytes)
{
    const auto from = bench::randomSamples<std::uint8_t>(bytes, 255);
    const auto to = bench::filledSamples<std::uint8_t>(bytes, 0);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
}

#ifdef BENCHMARK_WITH_OPENCV
cv::Mat randomPicture(PictureSize size, int type, int levels)
{
    cv::Mat picture(size.height, size.width, type);
    cv::randu(picture, 0, levels);
    return picture;
}

cv::Mat blankPicture(PictureSize size, int type)
{
    return cv::Mat(size.height, size.width, type, cv::Scalar::all(0));
}

cv::Mat identityTable()
{
    cv::Mat table(1, 256, CV_8U);
    for (int level = 0; level < 256; ++level)
        table.at<unsigned char>(level) = static_cast<unsigned char>(level);
    return table;
}

/// Runs \p work(source, destination) on a random picture.
template <typename Work>
void peer(benchmark::State& state, PictureSize size, int fromType, int toType, Work work)
{
    const cv::Mat from = randomPicture(size, fromType, fromType == CV_16U ? 4096 : 256);
    cv::Mat to = blankPicture(size, toType);
    for (auto _ : state) {
        work(from, to);
        benchmark::ClobberMemory();
    }
}

void applyLut8Peer(benchmark::State& state, PictureSize size)
{
    const cv::Mat table = identityTable();
    peer(state, size, CV_8U, CV_8U,
         [&](const cv::Mat& from, cv::Mat& to) { cv::LUT(from, table, to); });
}

// OpenCV looks up 8-bit samples only: reduce the depth, then look up.
void toneMapPeer(const cv::Mat& raw, const cv::Mat& table, cv::Mat& reduced, cv::Mat& grey)
{
    raw.convertTo(reduced, CV_8U, 1.0 / 16);
    cv::LUT(reduced, table, grey);
}

void processGreyPeer(benchmark::State& state, PictureSize size)
{
    const cv::Mat table = identityTable();
    cv::Mat reduced = blankPicture(size, CV_8U);
    peer(state, size, CV_16U, CV_8U,
         [&](const cv::Mat& raw, cv::Mat& grey) { toneMapPeer(raw, table, reduced, grey); });
}

void processColorPeer(benchmark::State& state, PictureSize size)
{
    const cv::Mat table = identityTable();
    const cv::Matx34f correction(1.2F, 0.1F, -0.1F, 0.0F, 0.1F, 1.0F, -0.1F, 0.0F, -0.1F, 0.1F,
                                 1.4F, 0.0F);
    cv::Mat reduced = blankPicture(size, CV_8U);
    cv::Mat grey = blankPicture(size, CV_8U);
    cv::Mat color = blankPicture(size, CV_8UC3);
    peer(state, size, CV_16U, CV_8UC3, [&](const cv::Mat& raw, cv::Mat& corrected) {
        toneMapPeer(raw, table, reduced, grey);
        cv::cvtColor(grey, color, cv::COLOR_BayerGR2RGB);
        cv::transform(color, corrected, correction);
    });
}

void registerPeers()
{
    bench::registerWork("apply_LUT8", "opencv", applyLut8Peer);
    bench::registerWork("convert12_8", "opencv", [](benchmark::State& s, PictureSize size) {
        peer(s, size, CV_16U, CV_8U,
             [](const cv::Mat& from, cv::Mat& to) { from.convertTo(to, CV_8U, 1.0 / 16); });
    });
    bench::registerWork("bayerToMono", "opencv", [](benchmark::State& s, PictureSize size) {
        peer(s, size, CV_8U, CV_8U, [](const cv::Mat& from, cv::Mat& to) {
            cv::cvtColor(from, to, cv::COLOR_BayerGR2GRAY);
        });
    });
    bench::registerWork("process_grey12", "opencv", processGreyPeer);
    bench::registerWork("process_color12", "opencv", processColorPeer);
}
#endif

void registerOurs()
{
    bench::registerWork("apply_LUT8", "ours", applyLut8);
    bench::registerWork("apply_LUT8", "loop", plainLookUp<std::uint8_t>);
    // A table that jumps by more than three levels within sixteen entries is the harder one.
    for (const auto& [work, contrast] : {std::pair("apply_LUT12_8", 1.5), {"steep_LUT12_8", 4.0}}) {
        const double value = contrast;
        bench::registerWork(work, "ours", [value](benchmark::State& s, PictureSize size) {
            applyLut12(s, size, value);
        });
        bench::registerWork(work, "loop", plainLookUp<std::uint16_t>);
    }
    bench::registerWork("convert12_8", "ours", convert12);
    bench::registerWork("bayerToMono", "ours", mosaicToGrey);
    bench::registerWork("process_grey12", "ours", [](benchmark::State& s, PictureSize size) {
        process(s, size, 1, CS_APPLY_LUT);
    });
    bench::registerWork("process_color12", "ours", [](benchmark::State& s, PictureSize size) {
        process(s, size, 2, CS_APPLY_LUT | CS_COLOR_CORRECTION);
    });
}

// The bytes that must move for a pixel, half of them read and half written.
void registerCopies()
{
    struct Traffic {
        const char* work;
        double bytesPerPixel;
    };
    for (const Traffic& traffic :
         {Traffic{"apply_LUT8", 1}, Traffic{"apply_LUT12_8", 1.5}, Traffic{"convert12_8", 1.5},
          Traffic{"bayerToMono", 1}, Traffic{"process_grey12", 1.5},
          Traffic{"process_color12", 6.5}}) {
        const double bytesPerPixel = traffic.bytesPerPixel;
        bench::registerWork(traffic.work, "memcpy", [=](benchmark::State& s, PictureSize size) {
            copyBytes(s, static_cast<std::size_t>(bytesPerPixel * size.pixels()));
        });
    }
}

} // namespace

int main(int argc, char** argv)
{
    registerOurs();
#ifdef BENCHMARK_WITH_OPENCV
    registerPeers();
#endif
    registerCopies();
    return bench::runBenchmarks(argc, argv);
}
