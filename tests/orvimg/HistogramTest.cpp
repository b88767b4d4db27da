#include <AppComponents/imgproc/orvimg.h>

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "OrvimgTestSupport.h"
#include <orvimg/reference/reference.h>

namespace
{

/// The number of levels.
class HistogramTest : public testing::TestWithParam<std::size_t>
{
protected:
    const std::size_t levels = GetParam();
    void (*const histogram)(const unsigned short*, int, int*) = levels == 1024 ? histogram10
                                                                               : histogram12;
};

TEST_P(HistogramTest, CountsEachLevelAndLeavesOutWhatIsAbove)
{
    const auto highest = static_cast<unsigned>(levels) - 1;
    // The last range mixes valid and foreign samples within one word, the others do not.
    for (const unsigned top : {highest, highest + 1, 65535U, 4 * highest}) {
        for (const std::size_t count : {1, 2, 3, 4, 5, 7, 8, 9, 1000, 100003}) {
            const auto samples = randomPicture<std::uint16_t>(count, 0, top, top);
            const GuardedArray<std::uint16_t> input(
                samples, GuardedArray<std::uint16_t>::Against::UpperPage);
            const GuardedArray<int> bins(std::vector<int>(levels, -7),
                                         GuardedArray<int>::Against::UpperPage);
            histogram(input.data(), static_cast<int>(count), bins.data());

            std::vector<int> expected(levels);
            orvimg::reference::histogram(samples.data(), count, levels, expected.data());
            ASSERT_EQ(bins.content(), expected) << count << " samples up to " << top;
            ASSERT_TRUE(bins.isSpareUntouched());
        }
    }
}

TEST_P(HistogramTest, DoesNothingWithoutSamples)
{
    std::vector<int> bins(levels, -7);
    const auto untouched = bins;
    const unsigned short sample = 1;
    histogram(nullptr, 1, bins.data());
    histogram(&sample, 0, bins.data());
    histogram(&sample, std::numeric_limits<int>::min(), bins.data());
    histogram(&sample, 1, nullptr);
    EXPECT_EQ(bins, untouched);
}

INSTANTIATE_TEST_SUITE_P(Levels, HistogramTest, testing::Values(1024, 4096));

} // namespace
