#include <AppComponents/imgproc/orvimg.h>

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "OrvimgTestSupport.h"
#include <orvimg/reference/reference.h>

namespace
{

using Bytes = std::vector<std::uint8_t>;

struct Phase {
    void (*balance)(const unsigned char*, int, int, double*, double*);
    orvimg::reference::RedPosition red;
};

const Phase phases[] = {{white_balance8rggb, {0, 0}},
                        {white_balance8grbg, {1, 0}},
                        {white_balance8gbrg, {0, 1}},
                        {white_balance8bggr, {1, 1}}};

void expectSameAsReference(int width, int height, unsigned lowest, unsigned highest)
{
    const auto picture = randomPicture<std::uint8_t>(static_cast<std::size_t>(width) * height,
                                                     lowest, highest, 11U * width + height);
    using Array = GuardedArray<std::uint8_t>;
    const Array lower(picture, Array::Against::LowerPage);
    const Array upper(picture, Array::Against::UpperPage);
    for (const Phase& phase : phases) {
        const auto expected =
            orvimg::reference::whiteBalance(picture.data(), width, height, phase.red);
        for (const Array* mosaic : {&lower, &upper}) {
            double red = -1;
            double blue = -1;
            phase.balance(mosaic->data(), width, height, &red, &blue);
            ASSERT_DOUBLE_EQ(red, expected.red) << width << " x " << height;
            ASSERT_DOUBLE_EQ(blue, expected.blue) << width << " x " << height;
        }
    }
}

TEST(WhiteBalanceTest, EqualsTheReferenceAtEverySize)
{
    onEveryTarget([] {
        for (const int height : awkwardHeights) {
            for (const int width : awkwardWidths) {
                expectSameAsReference(width, height, 0, 255);
                expectSameAsReference(width, height, 4, 9);
                expectSameAsReference(width, height, 246, 252);
            }
        }
        orvimg_set_threads(3);
        expectSameAsReference(67, 401, 3, 252);
        orvimg_set_threads(1);
    });
}

struct Gains {
    double red = -1;
    double blue = -1;
};

Gains balanced(const Bytes& mosaic, int width, int height)
{
    Gains gains;
    white_balance8rggb(mosaic.data(), width, height, &gains.red, &gains.blue);
    return gains;
}

TEST(WhiteBalanceGainsTest, MakeTheMeanGrey)
{
    const Gains gains = balanced({50, 110, 90, 200}, 2, 2);
    EXPECT_DOUBLE_EQ(gains.red, 2.0);
    EXPECT_DOUBLE_EQ(gains.blue, 0.5);
}

TEST(WhiteBalanceGainsTest, AreLimited)
{
    const Gains gains = balanced({10, 240, 240, 249}, 2, 2);
    EXPECT_DOUBLE_EQ(gains.red, 4.0);
    EXPECT_DOUBLE_EQ(balanced({249, 20, 20, 6}, 2, 2).red, 0.25);
    EXPECT_DOUBLE_EQ(balanced({249, 20, 20, 6}, 2, 2).blue, 20.0 / 6.0);
}

TEST(WhiteBalanceGainsTest, StayOneBelowOnePercentOfUsableCells)
{
    Bytes mosaic(200 * 2, 255); // 100 cells in a row
    mosaic[20] = 50;
    mosaic[21] = mosaic[220] = 100;
    mosaic[221] = 200;
    EXPECT_DOUBLE_EQ(balanced(mosaic, 200, 2).red, 2.0);

    mosaic.assign(202 * 2, 255); // one cell more: less than 1 %
    mosaic[20] = 50;
    mosaic[21] = mosaic[222] = 100;
    mosaic[223] = 200;
    EXPECT_DOUBLE_EQ(balanced(mosaic, 202, 2).red, 1.0);
    EXPECT_DOUBLE_EQ(balanced(mosaic, 202, 2).blue, 1.0);

    EXPECT_DOUBLE_EQ(balanced({90}, 1, 1).red, 1.0);
}

TEST(WhiteBalanceGainsTest, KeepTheirValuesOnWrongArguments)
{
    const Bytes mosaic{50, 100, 100, 200};
    double red = 3;
    double blue = 5;
    white_balance8rggb(nullptr, 2, 2, &red, &blue);
    white_balance8bggr(mosaic.data(), 2, 2, nullptr, &blue);
    white_balance8gbrg(mosaic.data(), 2, 2, &red, nullptr);
    white_balance8grbg(mosaic.data(), std::numeric_limits<int>::min(), 2, &red, &blue);
    white_balance8grbg(mosaic.data(), 2, 0, &red, &blue);
    EXPECT_EQ(red, 3);
    EXPECT_EQ(blue, 5);
}

} // namespace
