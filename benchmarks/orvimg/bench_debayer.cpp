/// \file
/// Each debayer method beside OpenCV's and beside memcpy of the same traffic.

#include <AppComponents/imgproc/orvimg.h>

#include <cstring>
#include <string>

#include <orvimg/orvimg_threads.h>
#include <support/BenchmarkSupport.h>

#ifdef BENCHMARK_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace
{

constexpr int algorithms = 7;
constexpr int rggb = 0;

void registerOurs(const std::string& work, const std::string& who, int algorithm, int threads)
{
    bench::registerWork(
        work, who, [algorithm, threads](benchmark::State& state, bench::PictureSize size) {
            orvimg_set_threads(threads);
            const auto mosaic = bench::randomSamples<unsigned char>(size.pixels(), 255);
            const auto rgb = bench::filledSamples<unsigned char>(3 * size.pixels(), 0);
            for (auto _ : state) {
                debayer24(mosaic.data(), size.width, size.height, rggb, algorithm, rgb.data());
                benchmark::ClobberMemory();
            }
            orvimg_set_threads(1);
        });
}

/// Copies as many bytes as a debayer method must read and write.
void registerMemcpy(const std::string& work)
{
    bench::registerWork(work, "memcpy", [](benchmark::State& state, bench::PictureSize size) {
        const std::size_t bytes = 2 * static_cast<std::size_t>(size.pixels());
        const auto source = bench::filledSamples<unsigned char>(bytes, 1);
        const auto target = bench::filledSamples<unsigned char>(bytes, 0);
        for (auto _ : state) {
            std::memcpy(target.data(), source.data(), bytes);
            benchmark::ClobberMemory();
        }
    });
}

#ifdef BENCHMARK_WITH_OPENCV
void registerOpenCv(const std::string& work, const std::string& who, int code)
{
    bench::registerWork(work, who, [code](benchmark::State& state, bench::PictureSize size) {
        const auto mosaic = bench::randomSamples<unsigned char>(size.pixels(), 255);
        const cv::Mat source(size.height, size.width, CV_8UC1, mosaic.data());
        cv::Mat target(size.height, size.width, CV_8UC3, cv::Scalar(0));
        for (auto _ : state) {
            cv::cvtColor(source, target, code);
            benchmark::ClobberMemory();
        }
    });
}
#endif

} // namespace

int main(int argc, char** argv)
{
    for (int algorithm = 0; algorithm < algorithms; ++algorithm) {
        const std::string work = "debayer" + std::to_string(algorithm);
        registerOurs(work, "ours", algorithm, 1);
        registerOurs(work, "threads2", algorithm, 2);
        registerMemcpy(work);
#ifdef BENCHMARK_WITH_OPENCV
        if (algorithm == 5)
            registerOpenCv(work, "opencv_vng", cv::COLOR_BayerBG2RGB_VNG);
        else if (algorithm == 4 || algorithm == 6)
            registerOpenCv(work, "opencv_ea", cv::COLOR_BayerBG2RGB_EA);
        else
            registerOpenCv(work, "opencv", cv::COLOR_BayerBG2RGB);
#endif
    }
    return bench::runBenchmarks(argc, argv);
}
