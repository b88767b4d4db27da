#pragma once

/// \file
/// What every benchmark program shares: names that one script can compare, aligned random
/// pictures and a peer that runs on one thread.
///
/// A benchmark is called `<work>/<who>/<width>x<height>`, who being one of ours, opencv, memcpy
/// and loop; the ratio of a work is the time of a peer divided by the time of ours.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <utility>

#ifdef BENCHMARK_WITH_OPENCV
#include <opencv2/core.hpp>
#endif

namespace bench
{

struct PictureSize {
    int width;
    int height;

    int pixels() const { return width * height; }
};

constexpr std::array<PictureSize, 2> pictureSizes{{{1920, 1080}, {4096, 3072}}};

/// An uninitialised array whose start is aligned for every vector unit and every page.
template <typename T>
class AlignedArray
{
public:
    explicit AlignedArray(std::size_t count)
        : elements(static_cast<T*>(std::aligned_alloc(alignment, bytesFor(count))))
        , length(count)
    {
        if (!elements)
            throw std::bad_alloc();
    }
    T* data() const { return elements.get(); }
    std::size_t size() const { return length; }
    T& operator[](std::size_t i) const { return elements[i]; }
    T* begin() const { return data(); }
    T* end() const { return data() + length; }

private:
    static constexpr std::size_t alignment = 4096;
    struct Free {
        void operator()(T* memory) const { std::free(memory); }
    };
    static std::size_t bytesFor(std::size_t count)
    {
        return (count * sizeof(T) / alignment + 1) * alignment;
    }

    std::unique_ptr<T[], Free> elements;
    std::size_t length;
};

/// \return \p count samples spread evenly over 0 ... \p highest, the same in every run.
template <typename T>
AlignedArray<T> randomSamples(std::size_t count, unsigned highest)
{
    AlignedArray<T> samples(count);
    std::mt19937 generator(20240229);
    const std::uint64_t levels = std::uint64_t(highest) + 1;
    for (T& sample : samples)
        sample = static_cast<T>((generator() * levels) >> 32);
    return samples;
}

/// \return \p count samples all set to \p value: memory that has been touched.
template <typename T>
AlignedArray<T> filledSamples(std::size_t count, T value)
{
    AlignedArray<T> samples(count);
    for (T& sample : samples)
        sample = value;
    return samples;
}

/// Registers `<work>/<who>/<width>x<height>` for each picture size. \p body is called with the
/// benchmark state and the size; it prepares its pictures and runs the timing loop.
template <typename Body>
void registerWork(const std::string& work, const std::string& who, Body body)
{
    for (const PictureSize size : pictureSizes) {
        const std::string name =
            work + '/' + who + '/' + std::to_string(size.width) + 'x' + std::to_string(size.height);
        benchmark::RegisterBenchmark(name.c_str(),
                                     [body, size](benchmark::State& state) {
                                         body(state, size);
                                         state.counters["MPx/s"] = benchmark::Counter(
                                             1e-6 * size.pixels() *
                                                 static_cast<double>(state.iterations()),
                                             benchmark::Counter::kIsRate);
                                     })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
}

/// The main function of a benchmark program, after its works have been registered.
inline int runBenchmarks(int argc, char** argv)
{
#ifdef BENCHMARK_WITH_OPENCV
    cv::setNumThreads(1);
#endif
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}

} // namespace bench
