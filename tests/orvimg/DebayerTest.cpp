#include <AppComponents/imgproc/orvimg.h>

#include <cmath>
#include <cstdint>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "OrvimgTestSupport.h"
#include <orvimg/reference/debayer_reference.h>

namespace
{

using Bytes = std::vector<unsigned char>;

constexpr int patterns = 4;
constexpr int algorithms = 7;
constexpr unsigned char canary = 0xA5;

struct Size {
    int width;
    int height;
};

std::size_t pixels(Size size)
{
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

/// Every tiny size, and widths around the lengths of vectors.
std::vector<Size> awkwardSizes()
{
    std::vector<Size> sizes;
    for (int width = 1; width <= 7; ++width) {
        for (int height = 1; height <= 7; ++height)
            sizes.push_back({width, height});
    }
    for (const int width : {15, 16, 17, 31, 33, 63, 64, 65, 66, 129, 200, 500})
        sizes.push_back({width, 6});
    sizes.push_back({5, 90});
    return sizes;
}

/// Random samples, a third of them black or white, so that every limit is met.
Bytes randomMosaic(Size size)
{
    static std::mt19937 generator(7);
    Bytes mosaic(pixels(size));
    for (unsigned char& sample : mosaic) {
        const unsigned random = generator();
        sample = static_cast<unsigned char>(random % 3 == 0 ? 255 * (random >> 31) : random >> 24);
    }
    return mosaic;
}

/// \return the pixels, having checked that nothing beside them was written.
Bytes interpolated(const Bytes& mosaic, Size size, int pattern, int algorithm)
{
    using Array = GuardedArray<unsigned char>;
    const Array input(mosaic, Array::Against::UpperPage);
    const Array rgb(Bytes(3 * pixels(size), canary), Array::Against::UpperPage);
    debayer24(input.data(), size.width, size.height, pattern, algorithm, rgb.data());
    EXPECT_TRUE(rgb.isSpareUntouched());
    return rgb.content();
}

Bytes expected(const Bytes& mosaic, Size size, int pattern, int algorithm)
{
    Bytes rgb(3 * pixels(size));
    orvimg::reference::debayer(mosaic.data(), size.width, size.height, pattern, algorithm,
                               rgb.data());
    return rgb;
}

int channelAt(int x, int y, int pattern)
{
    return ((x + (pattern & 1)) & 1) + ((y + (pattern >> 1)) & 1);
}

/// A mosaic of the picture color(x, y, channel).
template <typename Color>
Bytes mosaicOf(Size size, int pattern, Color color)
{
    Bytes mosaic;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x)
            mosaic.push_back(color(x, y, channelAt(x, y, pattern)));
    }
    return mosaic;
}

class DebayerMethod : public testing::TestWithParam<int>
{
};

INSTANTIATE_TEST_SUITE_P(Codes, DebayerMethod, testing::Range(0, algorithms));

TEST_P(DebayerMethod, EqualsTheFormulasOnEveryTarget)
{
    const int algorithm = GetParam();
    onEveryTarget([algorithm] {
        for (const Size size : awkwardSizes()) {
            for (int pattern = 0; pattern < patterns; ++pattern) {
                const Bytes mosaic = randomMosaic(size);
                ASSERT_EQ(interpolated(mosaic, size, pattern, algorithm),
                          expected(mosaic, size, pattern, algorithm))
                    << size.width << 'x' << size.height << " pattern " << pattern;
            }
        }
    });
}

TEST_P(DebayerMethod, KeepsFlatColours)
{
    const int algorithm = GetParam();
    constexpr unsigned char colors[][3] = {{0, 0, 0},   {255, 255, 255}, {255, 0, 255},
                                           {0, 255, 0}, {13, 200, 77},   {90, 91, 250}};
    for (const Size size : {Size{2, 2}, Size{3, 5}, Size{70, 9}}) {
        for (int pattern = 0; pattern < patterns; ++pattern) {
            for (const auto& color : colors) {
                const Bytes rgb = interpolated(
                    mosaicOf(size, pattern, [&](int, int, int channel) { return color[channel]; }),
                    size, pattern, algorithm);
                for (std::size_t i = 0; i < rgb.size(); ++i)
                    ASSERT_EQ(rgb[i], color[i % 3]) << "pattern " << pattern << ", byte " << i;
            }
        }
    }
}

TEST_P(DebayerMethod, IsTheSameOnAnyNumberOfThreads)
{
    const Size size{131, 300};
    const Bytes mosaic = randomMosaic(size);
    const Bytes alone = interpolated(mosaic, size, 1, GetParam());
    orvimg_set_threads(4);
    const Bytes shared = interpolated(mosaic, size, 1, GetParam());
    orvimg_set_threads(1);
    EXPECT_EQ(alone, shared);
}

TEST(Debayer, WritesLargePicturesWholeOnEveryTarget)
{
    const Size size{2051, 2101}; // more than is kept in caches, and no two rows are aligned alike
    const Bytes mosaic = randomMosaic(size);
    for (const int algorithm : {0, 1, 2, 3, 4}) {
        const Bytes wanted = expected(mosaic, size, 3, algorithm);
        onEveryTarget([&] {
            EXPECT_TRUE(interpolated(mosaic, size, 3, algorithm) == wanted)
                << "method " << algorithm;
        });
    }
}

TEST(Debayer, TakesOtherCodesAsTheDocumentedOnes)
{
    const Size size{9, 6};
    const Bytes mosaic = randomMosaic(size);
    for (const int unknown : {-1, 7, 1 << 30}) {
        EXPECT_EQ(interpolated(mosaic, size, 1, unknown), interpolated(mosaic, size, 1, 0));
        EXPECT_EQ(interpolated(mosaic, size, unknown, 2), interpolated(mosaic, size, 2, 2));
    }
    const Size line{5, 1};
    EXPECT_EQ(interpolated(mosaic, line, 1, 99), interpolated(mosaic, line, 1, 0));
}

TEST(Debayer, DoesNothingWithoutAPicture)
{
    const Bytes mosaic(4, 1);
    Bytes rgb(12, canary);
    debayer24(nullptr, 2, 2, 0, 2, rgb.data());
    debayer24(mosaic.data(), 0, 2, 0, 2, rgb.data());
    debayer24(mosaic.data(), 2, -2, 0, 2, rgb.data());
    debayer24(mosaic.data(), 2, 2, 0, 2, nullptr);
    EXPECT_EQ(rgb, Bytes(12, canary));
}

TEST(Debayer, BilinearIsTheMeanOfTheNearest)
{
    const Size size{4, 4};
    // R G R G / G B G B, the inner red sample at (2, 2)
    const Bytes mosaic{10, 20, 30, 40, 50, 60, 70, 81, 90, 100, 110, 121, 130, 140, 150, 161};
    const Bytes rgb = interpolated(mosaic, size, 0, 2);
    const auto pixel = [&](int x, int y) {
        const unsigned char* p = rgb.data() + 3 * (4 * y + x);
        return std::make_tuple(int(p[0]), int(p[1]), int(p[2]));
    };
    EXPECT_EQ(pixel(2, 2),
              std::make_tuple(110, (100 + 121 + 70 + 150 + 2) / 4, (60 + 81 + 140 + 161 + 2) / 4));
    EXPECT_EQ(pixel(1, 2), std::make_tuple((90 + 110) / 2, 100, (60 + 140) / 2));
    EXPECT_EQ(pixel(2, 1), std::make_tuple((30 + 110) / 2, 70, (60 + 81 + 1) / 2));
    EXPECT_EQ(pixel(0, 0), std::make_tuple(10, (20 + 50 + 1) / 2, 60)) << "mirrored corner";
}

TEST(Debayer, ThinPicturesUseTheirOwnSampleForAMissingColour)
{
    const Bytes row{10, 20, 30};
    EXPECT_EQ(interpolated(row, {3, 1}, 0, 2), (Bytes{10, 20, 10, 20, 20, 20, 30, 20, 30}));
    EXPECT_EQ(interpolated(row, {1, 3}, 3, 4), (Bytes{10, 20, 10, 20, 20, 20, 30, 20, 30}));
    EXPECT_EQ(interpolated(row, {3, 1}, 1, 6), (Bytes{20, 10, 10, 20, 20, 20, 20, 30, 30}));
    EXPECT_EQ(interpolated({42}, {1, 1}, 2, 3), (Bytes{42, 42, 42}));
}

/// Grey steps along one axis leave no colour and no blur behind an edge-directed method.
TEST(Debayer, EdgeDirectedKeepsStraightGreyEdges)
{
    const Size size{24, 24};
    for (const bool upright : {true, false}) {
        for (int pattern = 0; pattern < patterns; ++pattern) {
            const auto grey = [upright](int x, int y, int) -> unsigned char {
                return (upright ? x : y) < 12 ? 40 : 200;
            };
            const Bytes rgb = interpolated(mosaicOf(size, pattern, grey), size, pattern, 4);
            for (int y = 4; y < 20; ++y) {
                for (int x = 4; x < 20; ++x)
                    EXPECT_EQ(rgb[3 * (24 * y + x) + 1], grey(x, y, 1)) << x << ',' << y;
            }
        }
    }
}

double squaredError(const Bytes& rgb, const Bytes& picture)
{
    double sum = 0;
    for (std::size_t i = 0; i < rgb.size(); ++i)
        sum += (rgb[i] - picture[i]) * (rgb[i] - picture[i]);
    return sum;
}

TEST(Debayer, BetterMethodsAreCloserToTheScene)
{
    const Size size{160, 160};
    // Rings that grow finer outwards, under slowly turning colours.
    const auto scene = [](int x, int y, int channel) {
        const double ring = std::cos(0.006 * (x * x + y * y));
        const double tint = std::sin(0.02 * x + 0.03 * y + 2.0 * channel);
        return static_cast<unsigned char>(std::lround(128 + 70 * ring + 40 * tint));
    };
    Bytes picture;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            for (int channel = 0; channel < 3; ++channel)
                picture.push_back(scene(x, y, channel));
        }
    }
    const Bytes mosaic = mosaicOf(size, 2, scene);
    const auto error = [&](int algorithm) {
        return squaredError(interpolated(mosaic, size, 2, algorithm), picture);
    };
    EXPECT_LT(error(6), error(4));
    EXPECT_LT(error(4), error(2));
    EXPECT_LT(error(5), error(2));
    EXPECT_LT(error(3), error(2));
    EXPECT_LT(error(2), error(0));
    EXPECT_LT(error(2), error(1));
}

} // namespace
