#include <AppComponents/imgproc/orvimg.h>

#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "OrvimgTestSupport.h"
#include <orvimg/reference/reference.h>

namespace
{

using orvimg::reference::ColorSettings;
using Bytes = std::vector<std::uint8_t>;
using Array = GuardedArray<std::uint8_t>;

class ColorContext
{
public:
    ColorContext()
        : handle(color_correction_init())
    {
    }
    explicit ColorContext(const ColorSettings& settings)
        : ColorContext()
    {
        set(settings);
    }
    ColorContext(const ColorContext&) = delete;
    ColorContext& operator=(const ColorContext&) = delete;
    ~ColorContext() { color_correction_done(handle); }

    void set(const ColorSettings& s)
    {
        color_correction_set(handle, s.redGain, s.redOffset, s.greenGain, s.greenOffset, s.blueGain,
                             s.blueOffset, s.hue, s.saturation, s.lightness, s.offset);
    }
    void apply(std::uint8_t* rgb, int width, int height)
    {
        color_correction24(handle, rgb, width, height);
    }
    Bytes applied(Bytes rgb)
    {
        apply(rgb.data(), static_cast<int>(rgb.size() / 3), 1);
        return rgb;
    }

private:
    void* handle;
};

int largestDifference(const Bytes& a, const Bytes& b)
{
    return std::inner_product(
        a.begin(), a.end(), b.begin(), 0, [](int x, int y) { return std::max(x, y); },
        [](int x, int y) { return std::abs(x - y); });
}

void expectCloseToReference(const ColorSettings& settings, int width, int height)
{
    const auto pixels = static_cast<std::size_t>(width) * height;
    const auto picture = randomPicture<std::uint8_t>(3 * pixels, 0, 255, 7U * width + height);
    ColorContext context(settings);
    for (const auto side : {Array::Against::LowerPage, Array::Against::UpperPage}) {
        const Array corrected(picture, side);
        context.apply(corrected.data(), width, height);
        Bytes expected = picture;
        orvimg::reference::colorCorrection(settings, expected.data(), pixels);
        ASSERT_LE(largestDifference(corrected.content(), expected), 1) << width << " x " << height;
        ASSERT_TRUE(corrected.isSpareUntouched());
    }
}

// Gains and offsets of red, green and blue in turn; hue, saturation, lightness, offset.
const ColorSettings settingsTable[] = {
    {1.3, 0, 1, 0, 1.7, 0, 10, 1.2, 1.05, 0}, {1, 0.1, 1, -0.2, 1, 0.3, 0, 1, 1, -0.05},
    {0.25, 0, 1, 0, 4, 0, -75, 2, 1.5, 0.02}, {4, 0, 4, 0, 4, 0, 180, 8, 4, -3},
    {1, 0, 1, 0, 1, 0, 36e6 - 45, 1, 1, 0},   {-1, 1, 0.5, 0, 300, 0, 45, 3, -1, 0.5},
    {1, 0, 1, 0, 1, 0, 0, -1, 1, 0},          {1e5, -1e5, 1, 0, 1, 0, 0, 1, 1, 0},
};

TEST(ColorCorrectionTest, IsWithinOneOfTheModel)
{
    onEveryTarget([] {
        for (const ColorSettings& settings : settingsTable) {
            for (const int width : awkwardWidths)
                expectCloseToReference(settings, width, 3);
        }
        orvimg_set_threads(3);
        expectCloseToReference(settingsTable[0], 67, 401);
        orvimg_set_threads(1);
    });
}

TEST(ColorCorrectionTest, SaturationZeroGivesThreeEqualBytes)
{
    const auto picture = randomPicture<std::uint8_t>(3 * 5000, 0, 255, 5);
    ColorContext context({1.37, 0.1, 0.71, 0.1, 1.93, 0.1, 33, 0, 1.21, -0.03});
    onEveryTarget([&] {
        const Bytes grey = context.applied(picture);
        for (std::size_t i = 0; i < grey.size(); i += 3) {
            ASSERT_EQ(grey[i], grey[i + 1]);
            ASSERT_EQ(grey[i], grey[i + 2]);
        }
    });
}

TEST(ColorModelTest, OrdersGainsSaturationLightnessAndOffset)
{
    // Luma 0.299 x 200 + 0.587 x 50 + 0.114 x 20 = 91.43
    const Bytes pixel{100, 50, 20};
    EXPECT_EQ(ColorContext({2, 0, 1, 0, 1, 0, 0, 0, 1, 0}).applied(pixel), (Bytes{91, 91, 91}));
    EXPECT_EQ(ColorContext({2, 0.1, 1, 0, 1, -0.1, 0, 0, 0.5, 0.2}).applied(pixel),
              (Bytes{122, 97, 71}));
    // Saturation 2 doubles each distance from the luma, 61.53.
    EXPECT_EQ(ColorContext({1, 0, 1, 0, 1, 0, 0, 2, 1, 0}).applied(pixel), (Bytes{138, 38, 0}));
    // Cb' = -Cr, so B = 61.53 - 0.713 x 38.47 / 0.564; Cr' = Cb.
    EXPECT_EQ(ColorContext({1, 0, 1, 0, 1, 0, -90, 1, 1, 0}).applied(pixel), (Bytes{29, 88, 13}));
}

TEST(ColorModelTest, NeutralSettingsLeaveEveryByte)
{
    Bytes picture(3 * 256);
    for (std::size_t i = 0; i < picture.size(); ++i)
        picture[i] = static_cast<std::uint8_t>(i % 256 ^ i / 256 * 85);
    ColorContext context;
    EXPECT_EQ(context.applied(picture), picture);
    context.set({1, 0, 1, 0, 1, 0, 720, 1, 1, 0});
    EXPECT_EQ(context.applied(picture), picture);
    context.set({2, 0, 1, 0, 1, 0, 0, 1, 1, 0});
    EXPECT_NE(context.applied(picture), picture);
    context.set({});
    EXPECT_EQ(context.applied(picture), picture);
}

TEST(ColorModelTest, NotANumberIsNeutralAndInfinityIsLimited)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Bytes pixels{0, 1, 254, 100, 50, 255};
    EXPECT_EQ(ColorContext({nan, nan, nan, nan, nan, nan, nan, nan, nan, nan}).applied(pixels),
              pixels);
    ColorContext({infinity, -infinity, infinity, infinity, infinity, infinity, infinity, infinity,
                  infinity, -infinity})
        .applied(pixels);
    EXPECT_EQ(ColorContext({1, 0, 1, 0, 1, 0, 0, 1, infinity, 0}).applied(pixels),
              (Bytes{0, 255, 255, 255, 255, 255}));
}

TEST(ColorModelTest, NothingHappensOnWrongArguments)
{
    Bytes pixel{1, 2, 3};
    ColorContext context({2, 0, 2, 0, 2, 0, 0, 1, 1, 0});
    context.apply(nullptr, 1, 1);
    context.apply(pixel.data(), 0, 1);
    context.apply(pixel.data(), 1, std::numeric_limits<int>::min());
    color_correction24(nullptr, pixel.data(), 1, 1);
    color_correction_set(nullptr, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1);
    color_correction_done(nullptr);
    EXPECT_EQ(pixel, (Bytes{1, 2, 3}));
}

} // namespace
