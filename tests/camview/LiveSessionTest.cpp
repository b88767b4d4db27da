#include "Support.h"

#include "core/LiveSession.h"

#include <gmock/gmock.h>

namespace
{

PooledFrame numbered(FramePool& pool, std::uint64_t number)
{
    PooledFrame frame = pool.take();
    frame->stamp.number = number;
    return frame;
}

TEST(FrameSlot, LiveKeepsTheNewestOfManyFrames)
{
    FramePool pool;
    FrameSlot slot;
    slot.open(Delivery::NewestWins);
    EXPECT_EQ(slot.put(numbered(pool, 1)), PutResult::Stored);
    EXPECT_EQ(slot.put(numbered(pool, 2)), PutResult::Replaced);
    EXPECT_EQ(slot.put(numbered(pool, 3)), PutResult::Replaced);
    EXPECT_EQ(slot.take()->stamp.number, 3U);
}

TEST(FrameSlot, ClosedGivesTheLastFrameAndRefusesNewOnes)
{
    FramePool pool;
    FrameSlot slot;
    slot.open(Delivery::EveryFrame);
    slot.put(numbered(pool, 1));
    std::thread waiting([&] { EXPECT_EQ(slot.put(numbered(pool, 2)), PutResult::Refused); });
    slot.close();
    waiting.join();
    EXPECT_EQ(slot.take()->stamp.number, 1U);
    EXPECT_EQ(slot.take(), nullptr);
}

TEST(FramePool, GivesFramesBackWithTheirMemory)
{
    FramePool pool;
    PooledFrame frame = pool.take();
    frame->raw.allocate(100);
    const CameraFrame* const first = frame.get();
    PooledFrame other = pool.take();
    EXPECT_NE(other.get(), first);
    frame.reset();
    frame = pool.take();
    EXPECT_EQ(frame.get(), first);
    EXPECT_EQ(frame->raw.getBuffSize(), 100);
}

/// Waits for the end of a session and keeps the frame numbers of its pictures.
class Observer : public SessionObserver
{
public:
    void pictureReady(const ProcessedFrame& frame) override
    {
        numbers.push_back(frame.source.stamp.number);
        widths.push_back(frame.picture.imgWidth);
        const std::lock_guard lock(gate); // held by a test that plays the slow display
        const std::lock_guard counting(mutex);
        ++count;
        changed.notify_all();
    }

    void streamChanged(StreamEvent, const QString&) override
    {
        const std::lock_guard lock(mutex);
        ended = true;
        changed.notify_all();
    }

    void waitForEnd()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return ended; });
    }

    void waitForPictures(int pictures)
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this, pictures] { return count >= pictures; });
    }

    std::mutex gate;
    std::vector<std::uint64_t> numbers;
    std::vector<int> widths;

private:
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
    bool ended = false;
};

TEST(LiveSession, BatchProcessesEveryFrameAndStopsAtTheLimit)
{
    Observer observer;
    LiveSession session(openCamera("sim?width=64&height=48"), observer);
    session.start(Delivery::EveryFrame, 20);
    observer.waitForEnd();
    session.stop();
    ASSERT_EQ(observer.numbers.size(), 20U);
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_EQ(observer.numbers[i], i);
    const SessionCounters counters = session.counters();
    EXPECT_EQ(counters.received, 20U);
    EXPECT_EQ(counters.processed, 20U);
    EXPECT_EQ(counters.dropped, 0U);
}

TEST(LiveSession, LiveDropsAndCountsWhatASlowReaderMisses)
{
    Observer observer;
    LiveSession session(openCamera("sim?width=64&height=48"), observer);
    {
        const std::lock_guard slow(observer.gate);
        session.start(Delivery::NewestWins);
        while (session.counters().dropped < 50)
            std::this_thread::yield();
    }
    observer.waitForPictures(2);
    session.stop();
    const SessionCounters counters = session.counters();
    EXPECT_GE(counters.dropped, 50U);
    EXPECT_GE(observer.numbers.at(1), 50U); // the newest, not the next
    EXPECT_EQ(counters.received, counters.processed + counters.dropped);
}

TEST(LiveSession, CountsTheFrameThatTheLimitLeavesOver)
{
    for (int round = 0; round < 100; ++round) {
        Observer observer;
        LiveSession session(openCamera("sim?width=16&height=16"), observer);
        session.start(Delivery::NewestWins, 3);
        observer.waitForEnd();
        session.stop();
        const SessionCounters counters = session.counters();
        EXPECT_EQ(counters.processed, 3U);
        ASSERT_EQ(counters.received, counters.processed + counters.dropped);
    }
}

TEST(LiveSession, TakesNewSettingsAndRegionsWhileItRuns)
{
    Observer observer;
    LiveSession session(openCamera("sim?width=128&height=96"), observer);
    session.start(Delivery::NewestWins);
    for (int round = 0; round < 20; ++round) {
        ProcessingSettings settings;
        settings.correction.colorReconstructionMethod = round % 8;
        settings.averageFrames = 1 + round % 3;
        session.setProcessing(settings);
        CameraSettings camera = session.camera().settings();
        camera.region = {2 * round, 2 * round, 64 + 4 * (round % 5), 48};
        camera.decimation = 1 + round % 2;
        camera.bitDepth = round % 2 ? 8 : 12;
        session.camera().apply(camera);
        observer.waitForPictures(3 * (round + 1));
    }
    session.stop();
    const std::size_t pictures = observer.numbers.size();
    session.start(Delivery::NewestWins, session.counters().processed + 5);
    observer.waitForEnd();
    session.stop();
    EXPECT_EQ(observer.numbers.size(), pictures + 5);
}

} // namespace
