// The primitives but for the debayer, beside OpenCV's equivalents and the copy of the same bytes.

#include <AppComponents/imgproc/orvimg.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include <orvimg/orvimg_threads.h>
#include <support/BenchmarkSupport.h>

#ifdef BENCHMARK_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace
{

using bench::PictureSize;
using bench::randomSamples;
using bench::registerWork;
using benchmark::DoNotOptimize;
using benchmark::State;

constexpr int histogramLevels = 4096;

std::size_t pixelsOf(PictureSize size)
{
    return static_cast<std::size_t>(size.pixels());
}

/// Reads and writes as many bytes as a kernel that works in place on \p bytesPerPixel.
auto copyOf(std::size_t bytesPerPixel)
{
    return [bytesPerPixel](State& state, PictureSize size) {
        const auto source = randomSamples<std::uint8_t>(bytesPerPixel * pixelsOf(size), 255);
        const auto target = bench::filledSamples<std::uint8_t>(source.size(), 1);
        for (auto _ : state) {
            std::memcpy(target.data(), source.data(), source.size());
            benchmark::ClobberMemory();
        }
    };
}

void countLevels(State& state, PictureSize size)
{
    const auto samples = randomSamples<std::uint16_t>(pixelsOf(size), histogramLevels - 1);
    int histogram[histogramLevels];
    for (auto _ : state) {
        histogram12(samples.data(), size.pixels(), histogram);
        DoNotOptimize(histogram);
    }
}

void countLevelsPlainly(State& state, PictureSize size)
{
    const auto samples = randomSamples<std::uint16_t>(pixelsOf(size), histogramLevels - 1);
    int histogram[histogramLevels];
    for (auto _ : state) {
        std::memset(histogram, 0, sizeof histogram);
        for (const std::uint16_t sample : samples)
            ++histogram[sample];
        DoNotOptimize(histogram);
    }
}

void balance(State& state, PictureSize size)
{
    const auto mosaic = randomSamples<std::uint8_t>(pixelsOf(size), 255);
    double red = 1;
    double blue = 1;
    for (auto _ : state) {
        white_balance8rggb(mosaic.data(), size.width, size.height, &red, &blue);
        DoNotOptimize(red);
        DoNotOptimize(blue);
    }
}

struct ColorContextDeleter {
    void operator()(void* context) const { color_correction_done(context); }
};

void correct(State& state, PictureSize size)
{
    const auto picture = randomSamples<std::uint8_t>(3 * pixelsOf(size), 255);
    const std::unique_ptr<void, ColorContextDeleter> context(color_correction_init());
    color_correction_set(context.get(), 1.3, 0, 1, 0, 1.7, 0, 10, 1.2, 1.05, 0);
    for (auto _ : state) {
        color_correction24(context.get(), picture.data(), size.width, size.height);
        benchmark::ClobberMemory();
    }
}

template <typename Sample>
auto median(void (*filter)(void*, int, int, int), unsigned highest, int color)
{
    return [=](State& state, PictureSize size) {
        const std::size_t channels = color == 0 ? 1 : 3;
        const auto picture = randomSamples<Sample>(channels * pixelsOf(size), highest);
        for (auto _ : state) {
            filter(picture.data(), size.width, size.height, color);
            benchmark::ClobberMemory();
        }
    };
}

/// A work with both cores, for the speed-up that sharing rows gives.
template <typename Body>
auto onTwoThreads(Body body)
{
    return [=](State& state, PictureSize size) {
        orvimg_set_threads(2);
        body(state, size);
        orvimg_set_threads(1);
    };
}

#ifdef BENCHMARK_WITH_OPENCV

template <typename Sample>
cv::Mat view(const bench::AlignedArray<Sample>& samples, PictureSize size, int type)
{
    return {size.height, size.width, type, samples.data()};
}

void countLevelsOpenCv(State& state, PictureSize size)
{
    const auto samples = randomSamples<std::uint16_t>(pixelsOf(size), histogramLevels - 1);
    const cv::Mat picture = view(samples, size, CV_16UC1);
    const int channel = 0;
    const float range[] = {0, histogramLevels};
    const float* ranges = range;
    cv::Mat histogram;
    for (auto _ : state) {
        cv::calcHist(&picture, 1, &channel, cv::Mat(), histogram, 1, &histogramLevels, &ranges);
        DoNotOptimize(histogram.data);
    }
}

const cv::Matx33f colorMatrix(1.3F, 0.1F, -0.2F, 0.1F, 0.9F, 0.1F, -0.1F, 0.2F, 1.6F);

/// The same work as ours: the result replaces the picture. OpenCV copies the picture for that.
void correctOpenCv(State& state, PictureSize size)
{
    const auto samples = randomSamples<std::uint8_t>(3 * pixelsOf(size), 255);
    cv::Mat picture = view(samples, size, CV_8UC3);
    for (auto _ : state) {
        cv::transform(picture, picture, colorMatrix);
        benchmark::ClobberMemory();
    }
}

/// OpenCV at its best: the result goes to a second picture that is there already.
void correctApartOpenCv(State& state, PictureSize size)
{
    const auto samples = randomSamples<std::uint8_t>(3 * pixelsOf(size), 255);
    const cv::Mat picture = view(samples, size, CV_8UC3);
    cv::Mat corrected;
    for (auto _ : state) {
        cv::transform(picture, corrected, colorMatrix);
        DoNotOptimize(corrected.data);
    }
}

template <typename Sample>
auto medianOpenCv(unsigned highest, int channels)
{
    return [=](State& state, PictureSize size) {
        const auto samples =
            randomSamples<Sample>(static_cast<std::size_t>(channels) * pixelsOf(size), highest);
        const cv::Mat picture =
            view(samples, size, CV_MAKETYPE(cv::DataType<Sample>::depth, channels));
        cv::Mat filtered;
        for (auto _ : state) {
            cv::medianBlur(picture, filtered, 3);
            DoNotOptimize(filtered.data);
        }
    };
}

void registerOpenCv()
{
    registerWork("histogram12", "opencv", countLevelsOpenCv);
    registerWork("color_correction24", "opencv", correctOpenCv);
    registerWork("color_correction24", "opencv_apart", correctApartOpenCv);
    registerWork("median_filter8", "opencv", medianOpenCv<std::uint8_t>(255, 1));
    registerWork("median_filter16", "opencv", medianOpenCv<std::uint16_t>(4095, 1));
    registerWork("median_filter8_color", "opencv", medianOpenCv<std::uint8_t>(255, 3));
}

#endif

void registerOurs()
{
    const auto median8 = median<std::uint8_t>(median_filter8, 255, 0);
    const auto median16 = median<std::uint16_t>(median_filter16, 4095, 0);
    registerWork("histogram12", "ours", countLevels);
    registerWork("white_balance", "ours", balance);
    registerWork("color_correction24", "ours", correct);
    registerWork("median_filter8", "ours", median8);
    registerWork("median_filter16", "ours", median16);
    registerWork("median_filter8_color", "ours", median<std::uint8_t>(median_filter8, 255, 1));

    registerWork("white_balance", "threads2", onTwoThreads(balance));
    registerWork("color_correction24", "threads2", onTwoThreads(correct));
    registerWork("median_filter8", "threads2", onTwoThreads(median8));
    registerWork("median_filter16", "threads2", onTwoThreads(median16));
}

} // namespace

int main(int argc, char** argv)
{
    registerOurs();
#ifdef BENCHMARK_WITH_OPENCV
    registerOpenCv();
#endif
    registerWork("histogram12", "loop", countLevelsPlainly);
    registerWork("histogram12", "memcpy", copyOf(2));
    registerWork("white_balance", "memcpy", copyOf(1));
    registerWork("color_correction24", "memcpy", copyOf(3));
    registerWork("median_filter8", "memcpy", copyOf(1));
    registerWork("median_filter16", "memcpy", copyOf(2));
    registerWork("median_filter8_color", "memcpy", copyOf(3));
    return bench::runBenchmarks(argc, argv);
}
