#include <support/BenchmarkSupport.h>

#include <AppComponents/frames/FrameEx2.h>
#include <AppComponents/frames/RingFrameBuffer.h>

#include <cstring>

#ifdef BENCHMARK_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace
{

using bench::PictureSize;

constexpr int ringFrames = 8;

FrameEx2 randomFrame(PictureSize size, int bitsPerPixel)
{
    FrameEx2 frame({0, 0, size.width, size.height, 1, bitsPerPixel, false, false}, 8);
    const std::size_t bytes = static_cast<std::size_t>(frame.getBuffSize());
    const auto samples = bench::randomSamples<std::uint8_t>(bytes, 255);
    std::memcpy(frame.getImageBuffer(), samples.data(), bytes);
    return frame;
}

/// Fails unless the picture is \p before turned by half a circle \p turns times.
void checkTurned(benchmark::State& state, const FrameEx2& frame, const FrameEx2& before,
                 benchmark::IterationCount turns)
{
    const int bytes = frame.params.bitsPerPixel / 8;
    const int pixels = frame.imgWidth * frame.imgHeight;
    for (int i = 0; i < pixels; ++i) {
        const int from = turns % 2 ? pixels - 1 - i : i;
        if (std::memcmp(frame.getImageBuffer() + bytes * i, before.getImageBuffer() + bytes * from,
                        static_cast<std::size_t>(bytes)) != 0)
            return state.SkipWithError("the picture is not flipped");
    }
}

void flipBoth(benchmark::State& state, PictureSize size, int bitsPerPixel)
{
    FrameEx2 frame = randomFrame(size, bitsPerPixel);
    const FrameEx2 before(frame);
    for (auto _ : state) {
        frame.flip(true, true);
        benchmark::ClobberMemory();
    }
    checkTurned(state, frame, before, state.iterations());
}

void getImage(benchmark::State& state, PictureSize size)
{
    FrameEx2 frame = randomFrame(size, 24);
    for (auto _ : state)
        benchmark::DoNotOptimize(frame.getImage()->constBits());
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

void ring(benchmark::State& state, PictureSize size)
{
    const std::size_t pixels = static_cast<std::size_t>(size.pixels());
    const auto samples = bench::randomSamples<std::uint16_t>(pixels, 4095);
    const auto average = bench::filledSamples<std::uint8_t>(2 * pixels, 0);
    unsigned char* const frame = reinterpret_cast<unsigned char*>(samples.data());
    RingFrameBuffer buffer(1, size.width, ringFrames, 12, false, false, size.height);
    for (int n = 0; n < ringFrames; ++n)
        buffer.appendFrame(frame, average.data());
    for (auto _ : state) {
        buffer.appendFrame(frame, average.data());
        benchmark::ClobberMemory();
    }
}

#ifdef BENCHMARK_WITH_OPENCV
void flipBothPeer(benchmark::State& state, PictureSize size, int type)
{
    cv::Mat picture(size.height, size.width, type);
    cv::randu(picture, 0, 255);
    for (auto _ : state) {
        cv::flip(picture, picture, -1); // in place, as ours
        benchmark::ClobberMemory();
    }
}

void getImagePeer(benchmark::State& state, PictureSize size)
{
    cv::Mat from(size.height, size.width, CV_8UC3);
    cv::randu(from, 0, 255);
    for (auto _ : state)
        benchmark::DoNotOptimize(from.clone().data);
}

// The steps of a full ring: take out the oldest frame, store and add the new one, divide.
void ringPeer(benchmark::State& state, PictureSize size)
{
    const cv::Size area(size.width, size.height);
    cv::Mat frame(area, CV_16U);
    cv::randu(frame, 0, 4096);
    std::vector<cv::Mat> ringSlots(ringFrames);
    cv::Mat sums(area, CV_32S, cv::Scalar(0));
    for (cv::Mat& slot : ringSlots) {
        frame.copyTo(slot);
        cv::add(sums, slot, sums, cv::noArray(), CV_32S);
    }
    cv::Mat average(area, CV_16U, cv::Scalar(0));
    std::size_t oldest = 0;
    for (auto _ : state) {
        cv::subtract(sums, ringSlots[oldest], sums, cv::noArray(), CV_32S);
        frame.copyTo(ringSlots[oldest]);
        cv::add(sums, frame, sums, cv::noArray(), CV_32S);
        sums.convertTo(average, CV_16U, 1.0 / ringFrames);
        oldest = (oldest + 1) % ringSlots.size();
        benchmark::ClobberMemory();
    }
}
#endif

void registerAll()
{
    const auto bytes = [](PictureSize size, std::size_t perPixel) {
        return static_cast<std::size_t>(size.pixels()) * perPixel;
    };
    bench::registerWork("flip_both", "ours",
                        [](benchmark::State& s, PictureSize size) { flipBoth(s, size, 8); });
    bench::registerWork("flip_both_color", "ours",
                        [](benchmark::State& s, PictureSize size) { flipBoth(s, size, 24); });
    bench::registerWork("ring_8x12bit", "ours", ring);
    bench::registerWork("getImage", "ours", getImage);
#ifdef BENCHMARK_WITH_OPENCV
    bench::registerWork("flip_both", "opencv", [](benchmark::State& s, PictureSize size) {
        flipBothPeer(s, size, CV_8UC1);
    });
    bench::registerWork("flip_both_color", "opencv", [](benchmark::State& s, PictureSize size) {
        flipBothPeer(s, size, CV_8UC3);
    });
    bench::registerWork("ring_8x12bit", "opencv", ringPeer);
    bench::registerWork("getImage", "opencv", getImagePeer);
#endif
    // The same traffic: what is written of each pixel, as much being read.
    for (const auto& [work, perPixel] : {std::pair("flip_both", std::size_t{1}),
                                         {"flip_both_color", std::size_t{3}},
                                         {"ring_8x12bit", std::size_t{8}},
                                         {"getImage", std::size_t{3}}}) {
        const std::size_t written = perPixel;
        bench::registerWork(work, "memcpy", [=](benchmark::State& s, PictureSize size) {
            copyBytes(s, bytes(size, written));
        });
    }
}

} // namespace

int main(int argc, char** argv)
{
    registerAll();
    return bench::runBenchmarks(argc, argv);
}
