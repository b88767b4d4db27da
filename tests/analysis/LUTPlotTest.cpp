#include <AppComponents/analysis/LUTPlot.h>

#include <algorithm>
#include <vector>

#include <QImage>

#include <gtest/gtest.h>

namespace
{

using Table = std::vector<unsigned char>;

Table rampOf(int size)
{
    Table table(size);
    for (int i = 0; i < size; ++i)
        table[i] = static_cast<unsigned char>(i * 256LL / size);
    return table;
}

/// Height of the area in column \p x, with the pixel that the cap of a bar adds.
int heightAt(LUTPlot& plot, int x)
{
    QImage image(plot.size(), QImage::Format_RGB32);
    plot.render(&image);
    int y = 0;
    while (y < image.height() && image.pixel(x, y) == qRgb(240, 239, 241))
        ++y;
    for (int below = y; below < image.height(); ++below)
        EXPECT_EQ(image.pixel(x, below), qRgb(223, 228, 234));
    return image.height() - y;
}

TEST(LUTPlot, ShowsTheSampledTableAtEverySize)
{
    // A bar reaches one column to the left, where the higher one of two neighbours shows.
    struct {
        Table table;
        QSize size;
        int column;
        int height;
    } const cases[] = {
        {rampOf(256), {128, 255}, 63, 128 + 1},   // entry 128 of the bar at 64
        {rampOf(4096), {256, 100}, 99, 39 + 1},   // entry 1600, level 100
        {rampOf(256), {700, 255}, 699, 255 + 1},  // the index rounds up past the table
        {Table(256, 255), {40, 300}, 20, 44 + 1}, // 300 wraps
    };
    LUTPlot plot(nullptr);
    for (const auto& [table, size, column, height] : cases) {
        Table copy = table;
        plot.setLUTData(copy.data(), static_cast<int>(copy.size()));
        std::fill(copy.begin(), copy.end(), 0);
        heightAt(plot, 0);
        plot.resize(size);
        EXPECT_EQ(heightAt(plot, column), std::min(height, size.height())) << column;
    }
}

TEST(LUTPlot, IgnoresNullAndShortTables)
{
    LUTPlot plot(nullptr);
    plot.resize(64, 32);
    Table full(256, 255);
    plot.setLUTData(nullptr, 4096);
    plot.setLUTData(full.data(), 255);
    EXPECT_EQ(heightAt(plot, 63), 0);
    plot.setLUTData(full.data(), 256);
    EXPECT_EQ(heightAt(plot, 63), 32);
}

} // namespace
