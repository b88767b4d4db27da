#include <AppComponents/analysis/LUTPlot.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include <QImage>

#include <gtest/gtest.h>

namespace
{

constexpr QRgb background = qRgb(240, 239, 241);
constexpr QRgb bar = qRgb(223, 228, 234);

using Table = std::vector<unsigned char>;

Table rampOf(int size)
{
    Table table(size);
    for (int i = 0; i < size; ++i)
        table[i] = static_cast<unsigned char>(i * 256LL / size);
    return table;
}

QImage painted(LUTPlot& plot)
{
    QImage image(plot.size(), QImage::Format_RGB32);
    plot.render(&image);
    return image;
}

/// A bar is two pixels wide, from x - 1 to x, and its cap adds a pixel at the top.
QImage predicted(const std::vector<int>& heights, int height)
{
    const int width = static_cast<int>(heights.size());
    QImage image(width, height, QImage::Format_RGB32);
    for (int x = 0; x < width; ++x) {
        const int top = height - 1 - std::max(heights[x], heights[std::min(x + 1, width - 1)]);
        for (int y = 0; y < height; ++y)
            image.setPixel(x, y, y >= top ? bar : background);
    }
    return image;
}

std::vector<int> sampledHeights(const Table& table, int width, int height)
{
    std::vector<int> heights;
    for (int x = 0; x < width; ++x) {
        const int index = qRound(x * (static_cast<double>(table.size()) / width));
        const int level = table[std::min<std::size_t>(index, table.size() - 1)];
        heights.push_back(height * level / 255 % 256);
    }
    return heights;
}

struct PlotCase {
    const char* name;
    Table table;
    QSize size;
};

void PrintTo(const PlotCase& row, std::ostream* out)
{
    *out << row.name;
}

class LUTPlotPicture : public testing::TestWithParam<PlotCase>
{
};

TEST_P(LUTPlotPicture, ShowsTheSampledTable)
{
    const auto& [name, table, size] = GetParam();
    LUTPlot plot(nullptr);
    plot.resize(size);
    Table copy = table;
    plot.setLUTData(copy.data(), static_cast<int>(copy.size()));
    std::fill(copy.begin(), copy.end(), 0);
    EXPECT_EQ(painted(plot),
              predicted(sampledHeights(table, size.width(), size.height()), size.height()));
}

INSTANTIATE_TEST_SUITE_P(Sizes, LUTPlotPicture,
                         testing::Values(PlotCase{"EveryEntry", rampOf(256), {256, 100}},
                                         PlotCase{"EverySecondEntry", rampOf(256), {128, 255}},
                                         PlotCase{"EverySixteenthEntry", rampOf(4096), {256, 100}},
                                         PlotCase{"OddWidth", rampOf(4096), {301, 77}},
                                         PlotCase{
                                             "LastIndexBeyondTheTable", rampOf(256), {700, 50}},
                                         PlotCase{"HeightWrapsTo44", Table(256, 255), {40, 300}}),
                         [](const auto& row) { return row.param.name; });

TEST(LUTPlot, ShowsOnlyTheBackgroundUntilATableIsAccepted)
{
    LUTPlot plot(nullptr);
    plot.resize(64, 32);
    const QImage empty = painted(plot);
    EXPECT_EQ(empty.pixel(63, 31), background);

    Table full(256, 255);
    plot.setLUTData(nullptr, 4096);
    plot.setLUTData(full.data(), 255);
    EXPECT_EQ(painted(plot), empty);

    plot.setLUTData(full.data(), 256);
    EXPECT_EQ(painted(plot), predicted(std::vector<int>(64, 32), 32));
    plot.setLUTData(full.data(), 0);
    EXPECT_EQ(painted(plot), predicted(std::vector<int>(64, 32), 32));
}

TEST(LUTPlot, FollowsAResize)
{
    LUTPlot plot(nullptr);
    Table ramp = rampOf(256);
    plot.resize(256, 100);
    plot.setLUTData(ramp.data(), 256);
    painted(plot);
    plot.resize(90, 60);
    EXPECT_EQ(painted(plot), predicted(sampledHeights(ramp, 90, 60), 60));
}

} // namespace
