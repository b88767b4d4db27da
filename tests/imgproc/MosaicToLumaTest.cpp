#include <AppComponents/imgproc/ImgProcessor.h>

#include <support/EveryTarget.h>

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <random>
#include <vector>

namespace
{

/// The grey picture by the rules as they are written down, pixel by pixel. Rules that reach
/// outside the mosaic give no value.
class Model
{
public:
    Model(const std::vector<unsigned char>& mosaic, int rowCount, int colCount, bool mirrorV,
          bool mirrorH)
        : samples(mosaic)
        , rows(rowCount)
        , cols(colCount)
        , variant((mirrorV ? 2 : 0) + (mirrorH ? 1 : 0))
    {
    }

    /// \return the byte at position i, \p before where nothing is written.
    std::optional<unsigned> at(int i, unsigned before)
    {
        outside = false;
        const unsigned value = valueAt(i, before) & 0xFF;
        return outside ? std::nullopt : std::optional(value);
    }

private:
    enum { GBRG, BGGR, RGGB, GRBG };

    unsigned S(int i)
    {
        outside = outside || i < 0 || i > rows * cols;
        return outside ? 0 : samples[static_cast<std::size_t>(i)];
    }
    static unsigned grey(unsigned r, unsigned g, unsigned b)
    {
        return (299 * r + 587 * g + 114 * b) / 1000;
    }
    unsigned avg(int i, int k) { return (S(i) + S(k)) / 2; }

    unsigned valueAt(int i, unsigned before)
    {
        const int y = i / cols;
        const int x = i % cols;
        if (i == rows * cols)
            return variant == BGGR && rows > 1 ? before : S(i);
        const bool lastColumnOfLastRow = x == cols - 1 && (variant == BGGR || variant == GRBG);
        const bool firstColumnOfLastRow = x == 0 && variant == BGGR;
        if (y == rows - 1 && !lastColumnOfLastRow && !firstColumnOfLastRow)
            return lastRow(i);
        if (y > 0 && y < rows - 1)
            return x == cols - 1 ? lastColumn(i, y) : x == 0 ? firstColumn(i, y) : inside(i, x, y);
        if (y == 0 && x > 0 && x < cols - 1)
            return firstRow(i, x);
        const bool copied = i == 0 || i == cols || i == (rows - 1) * cols ||
                            (variant == BGGR && i == rows * cols - 1);
        return copied ? S(i) : before;
    }

    unsigned firstRow(int i, int x)
    {
        const bool even = x % 2 == 0;
        switch (variant) {
        case GBRG:
            return even ? grey(S(i + cols), S(i), S(i + 1))
                        : grey(S(i + cols + 1), S(i - 1) + S(i + 1), S(i));
        case BGGR:
            return even ? grey(S(i + cols + 1), S(i + 1), S(i))
                        : (299 * S(i + cols) + 587 * S(i) + 57 * S(i - 1) + 57 * S(i + 1)) / 1000;
        default:
            return even ? (299 * S(i) + 587 * (S(i - 1) + S(i + 1)) / 2 + 114 * S(i + cols - 1)) /
                              1000
                        : grey(S(i + 1), S(i), S(i + cols));
        }
    }

    unsigned lastRow(int i)
    {
        const bool even = i % 2 == 0;
        switch (variant) {
        case GBRG:
            return even ? grey(S(i), S(i - 1), S(i - cols - 1)) : grey(S(i - 1), S(i), S(i - cols));
        case BGGR:
            return even ? grey(S(i - 1), S(i), S(i - cols)) : grey(S(i), S(i - 1), S(i - cols - 1));
        case RGGB:
            return even ? grey(S(i - cols), S(i), S(i - 1))
                        : grey(S(i - cols + 1), S(i - cols), S(i));
        default:
            return even ? grey(S(i - cols + 1), S(i - 1) + S(i + 1), S(i))
                        : grey(S(i - cols), S(i), S(i - 1));
        }
    }

    unsigned firstColumn(int i, int y)
    {
        const bool even = y % 2 == 0;
        switch (variant) {
        case GBRG:
            return even ? grey(S(i - cols) + S(i + cols), S(i), S(i + 1))
                        : grey(S(i), S(i + 1), S(i - cols + 1));
        case BGGR:
            return even ? grey(avg(i - cols + 1, i + cols + 1), S(i + 1), S(i))
                        : grey(S(i + 1), S(i), S(i + cols));
        case RGGB:
            return even ? grey(S(i), S(i + 1), S(i + cols + 1)) : grey(S(i - cols), S(i), S(i + 1));
        default:
            return even ? grey(S(i + 1), S(i), S(i - cols)) : grey(S(i - cols + 1), S(i + 1), S(i));
        }
    }

    unsigned lastColumn(int i, int y)
    {
        const bool even = y % 2 == 0;
        switch (variant) {
        case GBRG:
            return even ? grey(avg(i - cols - 1, i - 1), S(i - 1), S(i))
                        : grey(S(i - 1), S(i), S(i - cols));
        case BGGR:
            return even ? grey(avg(i - cols, i + cols), S(i), S(i - 1))
                        : grey(S(i), S(i - 1), S(i + cols - 1));
        case RGGB:
            return even ? grey(S(i - 1), S(i), S(i + cols)) : grey(S(i + cols - 1), S(i - 1), S(i));
        default:
            return even ? grey(S(i), S(i - 1), S(i - cols - 1)) : grey(S(i - cols), S(i), S(i - 1));
        }
    }

    unsigned inside(int i, int x, int y)
    {
        static const char* const cells[] = {"GBRG", "BGGR", "RGGB", "GRBG"};
        const char* const cell = cells[variant];
        const char own = cell[y % 2 * 2 + x % 2];
        const unsigned sides = avg(i - 1, i + 1);
        if (own == 'R')
            return grey(S(i), sides, avg(i + cols + 1, i - cols - 1));
        if (own == 'B')
            return grey(avg(i + cols + 1, i - cols - 1), sides, S(i));
        const unsigned column = avg(i - cols, i + cols);
        const bool redRow = cell[y % 2 * 2 + (x + 1) % 2] == 'R';
        return redRow ? grey(sides, S(i), column) : grey(column, S(i), sides);
    }

    const std::vector<unsigned char>& samples;
    int rows;
    int cols;
    int variant;
    bool outside = false;
};

void compare(int rows, int cols, bool mirrorV, bool mirrorH, unsigned seed)
{
    constexpr unsigned char canary = 0xA5;
    const std::size_t size = static_cast<std::size_t>(rows * cols) + 1;
    std::mt19937 random(seed);
    // The mosaic ends where its memory does, so that the address sanitizer sees a step too far.
    std::vector<unsigned char> mosaic(size);
    for (unsigned char& sample : mosaic)
        sample = static_cast<unsigned char>(seed % 2 ? random() : 255 - random() % 2);
    std::vector<unsigned char> grey(size + 64, canary);
    ImgProcessor processor;
    processor.bayerToMono(mosaic.data(), rows, cols, grey.data() + 32, mirrorV, mirrorH);

    Model model(mosaic, rows, cols, mirrorV, mirrorH);
    for (std::size_t i = 0; i < grey.size(); ++i) {
        const bool inside = i >= 32 && i < 32 + size;
        const std::optional<unsigned> expected =
            inside ? model.at(static_cast<int>(i) - 32, canary) : std::optional<unsigned>(canary);
        if (expected) {
            ASSERT_EQ(grey[i], *expected) << rows << 'x' << cols << " V" << mirrorV << " H"
                                          << mirrorH << ", position " << static_cast<int>(i) - 32;
        }
    }
}

TEST(MosaicToLuma, FollowsTheRulesOfEveryPhaseAndSize)
{
    onEveryTarget([] {
        for (const bool mirrorV : {false, true})
            for (const bool mirrorH : {false, true}) {
                for (int rows = 1; rows <= 6; ++rows)
                    for (int cols = 1; cols <= 8; ++cols)
                        compare(rows, cols, mirrorV, mirrorH, 1);
                for (const int cols : {17, 18, 19, 65, 66, 67, 68, 127, 131, 200})
                    for (const unsigned seed : {1U, 2U})
                        compare(5, cols, mirrorV, mirrorH, seed);
            }
    });
}

TEST(MosaicToLuma, UnhalvedSumsWrap)
{
    ImgProcessor processor;
    for (const auto& [level, wrapped] : {std::pair(100, 158), {255, 148}}) {
        std::vector<unsigned char> mosaic(10, static_cast<unsigned char>(level));
        std::vector<unsigned char> grey(10, 7);
        processor.bayerToMono(mosaic.data(), 3, 3, grey.data(), false, false);
        EXPECT_EQ(grey[0], level);
        EXPECT_EQ(grey[1], wrapped);
        EXPECT_EQ(grey[2], 7);
        EXPECT_EQ(grey[4], level);
    }
}

TEST(MosaicToLuma, EmptyPicturesAreLeftAlone)
{
    ImgProcessor processor;
    unsigned char byte = 9;
    for (const auto& [rows, cols] : {std::pair(0, 1), {1, 0}, {-1, 5}, {5, -1}})
        processor.bayerToMono(&byte, rows, cols, &byte, false, false);
    EXPECT_EQ(byte, 9);
}

TEST(ConvertToMonochrome, WritesTheFrameAfterTheEndOfTheChain)
{
    ImgProcessor processor;
    EXPECT_FALSE(processor.convertToMonochrome(nullptr));
    // The picture fills its buffer, so that the byte behind it is the spare one.
    FrameEx2 frame({1, 2, 3, 5, 1, 8, true, false}, 8);
    FrameEx2* const end = frame.adaptProcessedFrame(frame.params, 8);
    end->isValid = true;
    end->frameTag = 42;
    for (int i = 0; i < 15; ++i)
        end->getImageBuffer()[i] = static_cast<unsigned char>(16 * i);
    ASSERT_TRUE(processor.convertToMonochrome(&frame));
    const FrameEx2* const grey = end->processed;
    EXPECT_TRUE(grey->isValid && grey->isFilled);
    EXPECT_EQ(grey->frameTag, 42);
    EXPECT_EQ(grey->params.bitsPerPixel, 8);
    EXPECT_EQ(grey->params.posY, 2);
    std::vector<unsigned char> expected(16);
    processor.bayerToMono(end->getImageBuffer(), 5, 3, expected.data(), true, false);
    EXPECT_EQ(std::memcmp(grey->getImageBuffer(), expected.data(), 2), 0);
    EXPECT_EQ(std::memcmp(grey->getImageBuffer() + 3, expected.data() + 3, 12), 0);
}

} // namespace
