#include <orvimg/parallel.h>

#include <algorithm>
#include <atomic>

#include <oneapi/tbb/parallel_for.h>

#include <orvimg/orvimg_threads.h>

namespace
{

constexpr int maximumThreads = 256;
std::atomic<int> threadCount{1};

} // namespace

void orvimg_set_threads(int threads)
{
    threadCount = std::clamp(threads, 1, maximumThreads);
}

namespace orvimg
{

int rowBandCount(int rows, int minimumRows)
{
    return std::clamp(rows / std::max(minimumRows, 2), 1, threadCount.load());
}

void runOnThreads(int count, void (*task)(void* context, int index), void* context)
{
    // There are no more bands than threads are set, so this is all that limits them; with an arena
    // of our own, helpers came too late for short work more often.
    oneapi::tbb::parallel_for(0, count, [=](int index) { task(context, index); });
}

} // namespace orvimg
