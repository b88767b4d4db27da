#include <AppComponents/frames/RingFrameBuffer.h>

#include <support/EveryTarget.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <random>
#include <vector>

namespace
{

/// The mean of the last frames by the definition: keep them all, add them up.
template <typename Sample>
class PlainMean
{
public:
    explicit PlainMean(std::size_t frames)
        : capacity(frames)
    {
    }

    std::vector<Sample> append(const std::vector<Sample>& frame)
    {
        held.push_back(frame);
        if (held.size() > capacity)
            held.pop_front();
        std::vector<Sample> mean;
        for (std::size_t i = 0; i < frame.size(); ++i)
            mean.push_back(static_cast<Sample>(sum(i) / held.size()));
        return mean;
    }
    /// The largest sample that leaves the next mean just short of an integer.
    Sample worst(std::size_t i, unsigned highest) const
    {
        const bool full = held.size() == capacity;
        const std::size_t before = sum(i) - (full ? held.front()[i] : 0);
        const std::size_t count = held.size() + (full ? 0 : 1);
        for (std::size_t sample = highest; sample + count > highest; --sample)
            if ((before + sample) % count == count - 1)
                return static_cast<Sample>(sample);
        return static_cast<Sample>(highest);
    }

private:
    std::size_t sum(std::size_t i) const
    {
        std::size_t total = 0;
        for (const auto& frame : held)
            total += frame[i];
        return total;
    }
    std::size_t capacity;
    std::deque<std::vector<Sample>> held;
};

template <typename Sample>
void compareWithPlainMean(int capacity, int bits, int width, int height)
{
    const unsigned highest = sizeof(Sample) == 1 ? 255 : 65535;
    const std::size_t samples = static_cast<std::size_t>(width * height);
    std::mt19937 random(7);
    PlainMean<Sample> plain(static_cast<std::size_t>(capacity));
    RingFrameBuffer ring;
    ring.Reset(capacity, bits, width, height, 1, false, false);
    // One byte in front makes the words of the frame unaligned; one behind is a guard.
    std::vector<unsigned char> average(samples * sizeof(Sample) + 2, 0xA5);
    std::vector<unsigned char> input(samples * sizeof(Sample) + 1);
    for (int n = 0; n < 2 * capacity + 2; ++n) {
        std::vector<Sample> frame(samples);
        for (std::size_t i = 0; i < samples; ++i)
            frame[i] = i % 2 ? plain.worst(i, highest) : static_cast<Sample>(random());
        std::memcpy(input.data() + 1, frame.data(), samples * sizeof(Sample));
        ring.appendFrame(input.data() + 1, average.data() + 1);
        const std::vector<Sample> expected = plain.append(frame);
        ASSERT_EQ(std::memcmp(average.data() + 1, expected.data(), samples * sizeof(Sample)), 0)
            << "frame " << n << ", capacity " << capacity << ", " << bits << " bits";
        ASSERT_EQ(average.front(), 0xA5);
        ASSERT_EQ(average.back(), 0xA5);
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

TEST(RingFrameBuffer, ConstructorAndResetOrderTheirArgumentsDifferently)
{
    RingFrameBuffer ring(2, 640, 8, 12, true, false, 480);
    EXPECT_EQ(ring.getDecimation(), 2);
    EXPECT_EQ(ring.getWidth(), 640);
    EXPECT_EQ(ring.getHeight(), 480);
    EXPECT_EQ(ring.getCapacity(), 8);
    EXPECT_EQ(ring.geBitsPerPixel(), 12);
    EXPECT_TRUE(ring.getMirrorV());
    EXPECT_FALSE(ring.getMirrorH());

    ring.Reset(3, 10, 20, 30, -4, true, false);
    EXPECT_EQ(ring.getCapacity(), 3);
    EXPECT_EQ(ring.geBitsPerPixel(), 10);
    EXPECT_EQ(ring.getWidth(), 20);
    EXPECT_EQ(ring.getHeight(), 30);
    EXPECT_EQ(ring.getDecimation(), -4);
    EXPECT_TRUE(ring.getMirrorH());
    EXPECT_FALSE(ring.getMirrorV());

    const RingFrameBuffer unset;
    EXPECT_EQ(unset.getCapacity(), -1);
    EXPECT_EQ(unset.getWidth(), -1);
    EXPECT_EQ(unset.geBitsPerPixel(), 0);
}

TEST(RingFrameBuffer, RefusesTooManyFramesFirstAndTooManyBitsThen)
{
    EXPECT_THROW(RingFrameBuffer(1, 8, 65, 17, false, false, 8), MaxBufferLengthException);
    EXPECT_THROW(RingFrameBuffer(1, 8, 64, 17, false, false, 8), MaxColorDepthException);
    EXPECT_NO_THROW(RingFrameBuffer(1, 8, 64, 16, false, false, 8));
    try {
        RingFrameBuffer(1, 8, 65, 8, false, false, 8);
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "");
    }
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
    assigned = assigned;
    EXPECT_EQ(appended(assigned, {14}), std::vector<unsigned char>{13});
}

} // namespace
