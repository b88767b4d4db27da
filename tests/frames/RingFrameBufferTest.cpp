#include <AppComponents/frames/RingFrameBuffer.h>

#include <support/EveryTarget.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <random>
#include <tuple>
#include <vector>

namespace
{

/// Compares with the mean by its definition: keep all frames, add them up.
template <typename Sample>
void compareWithPlainMean(std::size_t capacity, int bits, int width, int height)
{
    const unsigned highest = sizeof(Sample) == 1 ? 255 : 65535;
    const std::size_t samples = static_cast<std::size_t>(width * height);
    const std::size_t bytes = samples * sizeof(Sample);
    std::mt19937 random(7);
    std::deque<std::vector<Sample>> held;
    RingFrameBuffer ring;
    ring.Reset(static_cast<int>(capacity), bits, width, height, 1, false, false);
    // One byte in front makes the words of the frame unaligned; one behind is a guard.
    std::vector<unsigned char> average(bytes + 2, 0xA5);
    std::vector<unsigned char> input(bytes + 1);
    for (std::size_t n = 0; n < 2 * capacity + 2; ++n) {
        if (held.size() == capacity)
            held.pop_front();
        const std::size_t count = held.size() + 1;
        std::vector<Sample> frame;
        std::vector<Sample> mean;
        for (std::size_t i = 0; i < samples; ++i) {
            std::size_t sum = 0;
            for (const auto& earlier : held)
                sum += earlier[i];
            // Every other sample leaves the mean just short of an integer, where rounding shows.
            unsigned sample = i % 2 ? highest : random() & highest;
            while (i % 2 && (sum + sample) % count != count - 1 && sample + count > highest)
                --sample;
            frame.push_back(static_cast<Sample>(sample));
            mean.push_back(static_cast<Sample>((sum + sample) / count));
        }
        std::memcpy(input.data() + 1, frame.data(), bytes);
        held.push_back(std::move(frame));
        ring.appendFrame(input.data() + 1, average.data() + 1);
        ASSERT_EQ(std::memcmp(average.data() + 1, mean.data(), bytes), 0)
            << "frame " << n << ", capacity " << capacity << ", " << bits << " bits";
        ASSERT_EQ(average.front() + average.back(), 2 * 0xA5);
    }
}

std::vector<unsigned char> appended(RingFrameBuffer& ring, std::vector<unsigned char> frame)
{
    ring.appendFrame(frame.data(), frame.data()); // in place
    return frame;
}

TEST(RingFrameBuffer, AveragesTheLastFramesExactly)
{
    onEveryTarget([] {
        for (const int capacity : {1, 3, 7, 63, 64}) {
            compareWithPlainMean<std::uint8_t>(capacity, 8, 13, 5);
            compareWithPlainMean<std::uint16_t>(capacity, 12, 13, 5);
        }
        compareWithPlainMean<std::uint8_t>(5, 1, 1, 1);
        compareWithPlainMean<std::uint16_t>(49, 16, 47, 3);
    });
}

TEST(RingFrameBuffer, WordsAreLittleEndian)
{
    RingFrameBuffer ring(1, 1, 4, 12, false, false, 1);
    EXPECT_EQ(appended(ring, {0xFF, 0x0F}), (std::vector<unsigned char>{0xFF, 0x0F}));
    EXPECT_EQ(appended(ring, {0x01, 0x00}), (std::vector<unsigned char>{0x00, 0x08}));
}

auto settingsOf(RingFrameBuffer ring)
{
    return std::make_tuple(ring.getCapacity(), ring.geBitsPerPixel(), ring.getWidth(),
                           ring.getHeight(), ring.getDecimation(), ring.getMirrorH(),
                           ring.getMirrorV());
}

TEST(RingFrameBuffer, ConstructorAndResetOrderTheirArgumentsDifferently)
{
    RingFrameBuffer ring(2, 640, 8, 12, true, false, 480);
    EXPECT_EQ(settingsOf(ring), std::make_tuple(8, 12, 640, 480, 2, false, true));
    ring.Reset(3, 10, 20, 30, -4, true, false);
    EXPECT_EQ(settingsOf(ring), std::make_tuple(3, 10, 20, 30, -4, true, false));
    EXPECT_EQ(settingsOf({}), std::make_tuple(-1, 0, -1, -1, 0, false, false));
}

TEST(RingFrameBuffer, RefusesTooManyFramesFirstAndTooManyBitsThen)
{
    EXPECT_THROW(RingFrameBuffer(1, 8, 65, 17, false, false, 8), MaxBufferLengthException);
    EXPECT_THROW(RingFrameBuffer(1, 8, 64, 17, false, false, 8), MaxColorDepthException);
    EXPECT_NO_THROW(RingFrameBuffer(1, 8, 64, 16, false, false, 8));
}

TEST(RingFrameBuffer, HoldsNothingAfterAResetThatThrew)
{
    RingFrameBuffer ring(1, 2, 4, 8, false, false, 1);
    appended(ring, {10, 10});
    EXPECT_THROW(ring.Reset(65, 8, 2, 1, 1, false, false), MaxBufferLengthException);
    RingFrameBuffer copy(ring);
    EXPECT_EQ(appended(copy, {20, 20}), (std::vector<unsigned char>{20, 20}));
    EXPECT_EQ(appended(ring, {20, 20}), (std::vector<unsigned char>{20, 20}));
    // 2^32 samples have no place in the counters of a frame.
    EXPECT_THROW(ring.Reset(64, 16, 65536, 65536, 1, false, false), std::bad_alloc);
    ring.Reset(4, 8, 2, 1, 1, false, false);
    appended(ring, {0, 0});
    EXPECT_EQ(appended(ring, {20, 21}), (std::vector<unsigned char>{10, 10}));
}

TEST(RingFrameBuffer, EmptyGeometriesAndCapacitiesAreHarmless)
{
    RingFrameBuffer ring(1, 2, 0, 8, false, false, 1);
    EXPECT_EQ(appended(ring, {1, 2}), (std::vector<unsigned char>{1, 2}));
    ring.Reset(-1, 8, 2, 1, 1, false, false);
    EXPECT_EQ(appended(ring, {1, 2}), (std::vector<unsigned char>{1, 2}));
    ring.Reset(2, 8, -5, 4, 1, false, false);
    EXPECT_EQ(appended(ring, {1, 2}), (std::vector<unsigned char>{1, 2}));
}

TEST(RingFrameBuffer, CopiesHaveFramesOfTheirOwn)
{
    RingFrameBuffer ring(1, 1, 2, 8, false, false, 1);
    appended(ring, {10});
    RingFrameBuffer copy(ring);
    RingFrameBuffer assigned(3, 9, 5, 16, true, true, 9);
    assigned = ring;
    EXPECT_EQ(appended(ring, {30}), std::vector<unsigned char>{20});
    EXPECT_EQ(appended(copy, {50}), std::vector<unsigned char>{30});
    EXPECT_EQ(appended(copy, {70}), std::vector<unsigned char>{60});
    EXPECT_EQ(appended(assigned, {12}), std::vector<unsigned char>{11});
    EXPECT_EQ(assigned.getDecimation(), 1);
    assigned = static_cast<const RingFrameBuffer&>(assigned);
    EXPECT_EQ(appended(assigned, {14}), std::vector<unsigned char>{13});
}

} // namespace
