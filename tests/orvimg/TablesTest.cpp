#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Table = std::vector<unsigned char>;

Table toneTable(std::size_t entries, int brightness, int contrast, int gamma)
{
    Table table(entries + 1, 0xA5);
    const auto create = entries == 256    ? create_BCG_LUT8
                        : entries == 1024 ? create_BCG_LUT10_8
                                          : create_BCG_LUT12_8;
    create(brightness, contrast, gamma, table.data());
    EXPECT_EQ(table.back(), 0xA5) << "wrote beyond the table";
    table.pop_back();
    return table;
}

Table shiftTable(std::size_t entries)
{
    Table table(entries);
    for (std::size_t i = 0; i < entries; ++i)
        table[i] = static_cast<unsigned char>(i * 256 / entries);
    return table;
}

int expectedLevel(std::size_t i, std::size_t entries, long double brightness, long double contrast,
                  long double gamma)
{
    const long double x = (static_cast<long double>(i) + 0.5L) / static_cast<long double>(entries);
    const long double y = contrast * (std::pow(x, gamma) - 0.5L) + 0.5L + brightness;
    return static_cast<int>(std::clamp(std::floor(256 * y), 0.0L, 255.0L));
}

constexpr std::size_t tableSizes[] = {256, 1024, 4096};

TEST(ToneTableTest, NeutralStepsAreThePlainShift)
{
    for (const std::size_t entries : tableSizes)
        EXPECT_EQ(toneTable(entries, 0, 0, 0), shiftTable(entries));
}

TEST(ToneTableTest, FollowsTheCurveAndNeverDecreases)
{
    for (const std::size_t entries : tableSizes) {
        for (const int brightness : {-127, -50, 0, 1, 127}) {
            for (const int contrast : {-127, -64, -63, 0, 31, 64, 127}) {
                for (const int gamma : {-127, -1, 0, 90, 127}) {
                    const Table table = toneTable(entries, brightness, contrast, gamma);
                    EXPECT_TRUE(std::is_sorted(table.begin(), table.end()));
                    // Doubling and halving are exact.
                    const long double factor = contrast == 64    ? 2
                                               : contrast == -64 ? 0.5
                                                                 : std::pow(4, contrast / 127.0L);
                    for (const std::size_t i :
                         {std::size_t{0}, entries / 3, entries / 2, 3 * entries / 4, entries - 1})
                        EXPECT_EQ(table[i], expectedLevel(i, entries, brightness / 254.0L, factor,
                                                          std::pow(3.0L, gamma / 127.0L)));
                }
            }
        }
    }
}

TEST(ToneTableTest, StepsBeyondTheRangeCountAsTheNearest)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    EXPECT_EQ(toneTable(256, lowest, highest, lowest), toneTable(256, -127, 127, -127));
    EXPECT_EQ(toneTable(4096, highest, lowest, highest), toneTable(4096, 127, -127, 127));
    create_BCG_LUT8(0, 0, 0, nullptr);
}

Table bestTable(const std::vector<int>& histogram)
{
    Table table(histogram.size() + 1, 0xA5);
    const auto fill = histogram.size() == 1024 ? best_lookup_table10to8 : best_lookup_table12to8;
    fill(histogram.data(), table.data());
    EXPECT_EQ(table.back(), 0xA5) << "wrote beyond the table";
    table.pop_back();
    return table;
}

TEST(BestTableTest, SpreadsTheRangeOfLevels)
{
    std::vector<int> histogram(4096);
    histogram[1000] = 500;
    histogram[1255] = 500;
    const Table table = bestTable(histogram);
    for (std::size_t i = 0; i < table.size(); ++i)
        ASSERT_EQ(table[i], std::clamp(static_cast<int>(i) - 1000, 0, 255)) << i;

    histogram[1255] = 0;
    histogram[1511] = 500; // 512 levels now: two to each output level
    EXPECT_EQ(bestTable(histogram)[1255], 127);
    EXPECT_EQ(bestTable(histogram)[1256], 128);
}

TEST(BestTableTest, AFewOutliersDoNotDecide)
{
    std::vector<int> histogram(1024);
    histogram[100] = histogram[355] = 9990;
    histogram[0] = histogram[1023] = 10; // exactly 0.05 % each: ignored
    EXPECT_EQ(bestTable(histogram)[100], 0);
    EXPECT_EQ(bestTable(histogram)[228], 128);
    EXPECT_EQ(bestTable(histogram)[355], 255);

    histogram[0] = 11; // one more decides: 356 levels
    EXPECT_EQ(bestTable(histogram)[100], 256 * 201 / (2 * 356));
}

TEST(BestTableTest, WithoutARangeOfLevelsIsThePlainShift)
{
    for (const std::size_t entries : {1024, 4096}) {
        std::vector<int> histogram(entries);
        EXPECT_EQ(bestTable(histogram), shiftTable(entries));
        histogram[77] = 5;
        EXPECT_EQ(bestTable(histogram), shiftTable(entries));
    }
}

TEST(BestTableTest, SumsBeyond32Bits)
{
    // Wrapped sums would see no samples at all here.
    std::vector<int> histogram(1024);
    for (const std::size_t level : {256, 257, 510, 511})
        histogram[level] = 1 << 30;
    const Table table = bestTable(histogram);
    EXPECT_EQ(table[255], 0);
    EXPECT_EQ(table[384], 128);
    EXPECT_EQ(table[511], 255);
}

TEST(BestTableTest, NullPointersDoNothing)
{
    const std::vector<int> histogram(4096, 1);
    Table table(4096, 9);
    best_lookup_table10to8(nullptr, table.data());
    best_lookup_table12to8(nullptr, table.data());
    best_lookup_table12to8(histogram.data(), nullptr);
    EXPECT_EQ(table, Table(4096, 9));
}

} // namespace
