#include "Support.h"

#include "core/LiveSession.h"

#include <atomic>

#include <support/AllocationCounter.h>

#include <gtest/gtest.h>

namespace
{

/// Compares the allocations of the whole program at two pictures of a stream.
class CountingObserver : public SessionObserver
{
public:
    void pictureReady(const ProcessedFrame&) override
    {
        ++pictures;
        if (pictures == 50)
            begin = allocations;
        if (pictures == 250)
            end = long(allocations);
    }

    void streamChanged(StreamEvent, const QString&) override { ended = true; }

    int pictures = 0;
    long begin = 0;
    long end = -1;
    std::atomic<bool> ended{false};
};

TEST(Allocations, ASteadyStreamMakesNonePerPicture)
{
    for (const Delivery delivery : {Delivery::EveryFrame, Delivery::NewestWins}) {
        CountingObserver observer;
        LiveSession session(openCamera("sim?width=128&height=96"), observer);
        ProcessingSettings settings;
        settings.correction.colorReconstructionMethod = 2;
        settings.correction.setFlag(CS_APPLY_LUT | CS_COLOR_CORRECTION, true);
        settings.averageFrames = 4;
        session.setProcessing(settings);
        session.start(delivery, 300);
        while (!observer.ended)
            std::this_thread::yield();
        session.stop();
        // A frame may join the pool late, when a thread is held up; none is made per picture.
        EXPECT_LT(observer.end - observer.begin, 50);
        EXPECT_GE(observer.end, observer.begin);
    }
}

} // namespace
