#include <AppComponents/imgproc/orvimg.h>

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "OrvimgTestSupport.h"
#include <orvimg/reference/reference.h>

namespace
{

void filter(std::uint8_t* picture, int width, int height, int color)
{
    median_filter8(picture, width, height, color);
}

void filter(std::uint16_t* picture, int width, int height, int color)
{
    median_filter16(picture, width, height, color);
}

template <typename Sample>
void expectSameAsReference(int width, int height, int color, unsigned highest)
{
    const int channels = color == 1 ? 3 : 1;
    auto picture = randomPicture<Sample>(static_cast<std::size_t>(width) * height * channels, 0,
                                         highest, static_cast<unsigned>(width * 1000 + height));
    using Array = GuardedArray<Sample>;
    for (const auto side : {Array::Against::LowerPage, Array::Against::UpperPage}) {
        const Array filtered(picture, side);
        filter(filtered.data(), width, height, color);
        auto expected = picture;
        orvimg::reference::median(expected.data(), width, height, channels);
        ASSERT_EQ(filtered.content(), expected)
            << width << " x " << height << ", colour " << color << ", up to " << highest;
        ASSERT_TRUE(filtered.isSpareUntouched());
    }
}

TEST(MedianTest, EqualsTheReferenceAtEverySize)
{
    onEveryTarget([] {
        for (const int color : {0, 1}) {
            for (const int height : awkwardHeights) {
                for (const int width : awkwardWidths) {
                    expectSameAsReference<std::uint8_t>(width, height, color, 255);
                    expectSameAsReference<std::uint16_t>(width, height, color, 65535);
                    expectSameAsReference<std::uint16_t>(width, height, color, 3);
                    ASSERT_FALSE(testing::Test::HasFailure());
                }
            }
        }
        for (const int threads : {2, 3, 5, 1}) {
            orvimg_set_threads(threads);
            expectSameAsReference<std::uint8_t>(70, 401, 0, 255);
            expectSameAsReference<std::uint16_t>(33, 321, 1, 65535);
        }
    });
}

TEST(MedianTest, FiltersEachPhaseByItself)
{
    // Four flat colours stay as they are; a hot pixel gives way to its own colour.
    std::vector<std::uint8_t> mosaic(8 * 8);
    for (std::size_t i = 0; i < mosaic.size(); ++i)
        mosaic[i] = static_cast<std::uint8_t>(10 + 40 * (i % 2) + 80 * (i / 8 % 2));
    const auto flat = mosaic;
    mosaic[3 * 8 + 4] = 255;
    mosaic[0] = 0;
    median_filter8(mosaic.data(), 8, 8, 0);
    EXPECT_EQ(mosaic, flat);
}

TEST(MedianTest, NothingHappensWithoutAPicture)
{
    std::vector<std::uint16_t> picture{1, 900, 2, 3, 4, 5, 6, 7, 8};
    const auto untouched = picture;
    median_filter8(nullptr, 3, 3, 0);
    median_filter16(nullptr, 3, 3, 1);
    for (const int size : {0, -1, std::numeric_limits<int>::min()}) {
        median_filter8(picture.data(), size, 3, 0);
        median_filter16(picture.data(), 3, size, 1);
    }
    EXPECT_EQ(picture, untouched);
}

} // namespace
