#include <AppComponents/imgproc/ImgProcessor.h>

#include <support/EveryTarget.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr unsigned char canary = 0xA5;

/// The rules of one phase at the borders, each for even and odd sites: the samples that stand
/// for red, green and blue. o is the own sample, l r u d its neighbours left, right, up and down
/// (two letters: diagonally). x+y is their sum, x/y their mean, x*y their weighted sum, halved.
struct Phase {
    const char* cell;
    const char* firstRow[2];
    const char* lastRow[2]; // by the position in the whole picture
    const char* firstColumn[2];
    const char* lastColumn[2];
    int lastRowBegins, lastRowLeaves; // columns without a rule at the ends of the last row
};

const Phase phases[] = {{"GBRG",
                         {"d o r", "dr l+r o"},
                         {"o l ul", "l o u"},
                         {"u+d o r", "o r ur"},
                         {"ul/l l o", "l o u"},
                         0,
                         0},
                        {"BGGR",
                         {"dr r o", "d o l*r"},
                         {"l o u", "o l ul"},
                         {"ur/dr r o", "r o d"},
                         {"u/d o l", "o l dl"},
                         1,
                         1},
                        {"RGGB",
                         {"o l*r dl", "r o d"},
                         {"u o l", "ur u o"},
                         {"o r dr", "u o r"},
                         {"l o d", "dl l o"},
                         0,
                         0},
                        {"GRBG",
                         {"o l*r dl", "r o d"},
                         {"ur l+r o", "u o l"},
                         {"r o u", "ur r o"},
                         {"o l ul", "u o l"},
                         0,
                         1}};

/// The grey picture pixel by pixel.
struct Model {
    const std::vector<unsigned char>& samples;
    int rows, cols;
    const Phase& phase;
    bool outside = false; // the last rule reached outside the picture and its spare byte

    unsigned sample(int i, const std::string& where)
    {
        for (const char step : where)
            i += step == 'l' ? -1 : step == 'r' ? 1 : step == 'u' ? -cols : step == 'd' ? cols : 0;
        outside = outside || i < 0 || i > rows * cols;
        return outside ? 0 : samples[static_cast<std::size_t>(i)];
    }
    unsigned weighted(int i, const std::string& term, unsigned weight)
    {
        const std::size_t sign = term.find_first_of("+/*");
        if (sign == std::string::npos)
            return weight * sample(i, term);
        const unsigned sum = sample(i, term.substr(0, sign)) + sample(i, term.substr(sign + 1));
        return term[sign] == '+'   ? weight * sum
               : term[sign] == '/' ? weight * (sum / 2)
                                   : weight * sum / 2;
    }
    unsigned grey(int i, const std::string& rule)
    {
        std::string red, green, blue;
        std::istringstream(rule) >> red >> green >> blue;
        return (weighted(i, red, 299) + weighted(i, green, 587) + weighted(i, blue, 114)) / 1000;
    }
    const char* insideRule(int x, int y) const
    {
        const char own = phase.cell[y % 2 * 2 + x % 2];
        if (own != 'G')
            return own == 'R' ? "o l/r ul/dr" : "ul/dr l/r o";
        return phase.cell[y % 2 * 2 + (x + 1) % 2] == 'R' ? "l/r o u/d" : "u/d o l/r";
    }
    unsigned at(int i)
    {
        const int x = i % cols;
        const int y = i / cols;
        outside = false;
        if (y == rows - 1 && x >= phase.lastRowBegins && x < cols - phase.lastRowLeaves)
            return grey(i, phase.lastRow[i % 2]);
        if (y > 0 && y < rows - 1)
            return grey(i, x == cols - 1 ? phase.lastColumn[y % 2]
                           : x == 0      ? phase.firstColumn[y % 2]
                                         : insideRule(x, y));
        if (y == 0 && x > 0 && x < cols - 1)
            return grey(i, phase.firstRow[x % 2]);
        const int end = rows * cols - (phase.lastRowBegins == 1 ? 1 : 0);
        const bool copied = i == 0 || i == cols || i == (rows - 1) * cols || i == end;
        return copied ? samples[static_cast<std::size_t>(i)] : canary;
    }
};

void compare(int rows, int cols, int phase, unsigned seed)
{
    const std::size_t size = static_cast<std::size_t>(rows * cols) + 1;
    std::mt19937 random(seed);
    // The mosaic ends where its memory does, so that the address sanitizer sees a step too far.
    std::vector<unsigned char> mosaic(size);
    for (unsigned char& sample : mosaic)
        sample = static_cast<unsigned char>(seed % 2 ? random() : 255 - random() % 2);
    std::vector<unsigned char> grey(size + 64, canary);
    ImgProcessor().bayerToMono(mosaic.data(), rows, cols, grey.data() + 32, phase / 2, phase % 2);

    Model model{mosaic, rows, cols, phases[phase]};
    for (int i = -32; i < static_cast<int>(size) + 32; ++i) {
        const bool inside = i >= 0 && i < static_cast<int>(size);
        const unsigned expected = inside ? model.at(i) & 0xFF : canary;
        if (!inside || !model.outside) {
            ASSERT_EQ(grey[static_cast<std::size_t>(i + 32)], expected)
                << rows << 'x' << cols << ' ' << phases[phase].cell << ", position " << i;
        }
    }
}

TEST(MosaicToLuma, FollowsTheRulesOfEveryPhaseAndSize)
{
    onEveryTarget([] {
        for (int phase = 0; phase < 4; ++phase) {
            for (int rows = 1; rows <= 6; ++rows)
                for (int cols = 1; cols <= 8; ++cols)
                    compare(rows, cols, phase, 1);
            for (const int cols : {17, 18, 19, 65, 66, 67, 68, 127, 131, 200})
                for (const unsigned seed : {1U, 2U})
                    compare(5, cols, phase, seed);
        }
    });
}

TEST(MosaicToLuma, UnhalvedSumsWrap)
{
    for (const auto& [level, wrapped] : {std::pair(100, 158), {255, 148}}) {
        std::vector<unsigned char> mosaic(10, static_cast<unsigned char>(level));
        std::vector<unsigned char> grey(10, canary);
        ImgProcessor().bayerToMono(mosaic.data(), 3, 3, grey.data(), false, false);
        EXPECT_EQ(grey[1], wrapped);
        EXPECT_EQ(grey[2], canary);
        ImgProcessor().bayerToMono(mosaic.data(), 0, 1, mosaic.data(), false, false);
        ImgProcessor().bayerToMono(mosaic.data(), 5, -1, mosaic.data(), false, false);
    }
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
    std::generate_n(end->getImageBuffer(), 15, std::minstd_rand(1));
    ASSERT_TRUE(processor.convertToMonochrome(&frame));
    const FrameEx2* const grey = end->processed;
    EXPECT_TRUE(grey->isValid && grey->isFilled);
    EXPECT_EQ(grey->frameTag, 42);
    EXPECT_EQ(grey->params.posY, 2);
    std::vector<unsigned char> expected(16);
    processor.bayerToMono(end->getImageBuffer(), 5, 3, expected.data(), true, false);
    EXPECT_EQ(std::memcmp(grey->getImageBuffer() + 3, expected.data() + 3, 12), 0);
}

} // namespace
