#include <AppComponents/imgproc/MosaicToLuma.h>

#include <AppComponents/imgproc/LumaRow.h>

#include <cstddef>
#include <initializer_list>

namespace
{

constexpr unsigned redWeight = 299;
constexpr unsigned greenWeight = 587;
constexpr unsigned blueWeight = 114;
constexpr unsigned weightSum = 1000;

// Where the weighted sum exceeds full scale, the low 8 bits remain.
unsigned char scaled(unsigned weighted)
{
    return static_cast<unsigned char>(weighted / weightSum);
}

unsigned char luma(unsigned red, unsigned green, unsigned blue)
{
    return scaled(redWeight * red + greenWeight * green + blueWeight * blue);
}

unsigned mean(unsigned a, unsigned b)
{
    return (a + b) / 2;
}

/// The samples of a mosaic, addressed row after row: what lies left of a row is the end of the
/// row above it.
struct Mosaic {
    const unsigned char* samples;
    std::ptrdiff_t rows;
    std::ptrdiff_t cols;

    std::ptrdiff_t size() const { return rows * cols; }
};

/// One sample of a mosaic and its neighbours.
class Site
{
public:
    Site(const Mosaic& picture, std::ptrdiff_t position)
        : mosaic(picture)
        , index(position)
    {
    }

    unsigned own() const { return mosaic.samples[index]; }
    unsigned left() const { return at(index - 1); }
    unsigned right() const { return at(index + 1); }
    unsigned above() const { return at(index - mosaic.cols); }
    unsigned below() const { return at(index + mosaic.cols); }
    unsigned upperLeft() const { return at(index - mosaic.cols - 1); }
    unsigned upperRight() const { return at(index - mosaic.cols + 1); }
    unsigned lowerLeft() const { return at(index + mosaic.cols - 1); }
    unsigned lowerRight() const { return at(index + mosaic.cols + 1); }

private:
    // The spare byte behind the picture may be read like a sample.
    unsigned at(std::ptrdiff_t position) const
    {
        return position >= 0 && position <= mosaic.size() ? mosaic.samples[position] : own();
    }

    const Mosaic& mosaic;
    std::ptrdiff_t index;
};

using Rule = unsigned char (*)(const Site&);

/// The rules at two kinds of sites: those of even and those of odd number.
struct RulePair {
    Rule even;
    Rule odd;

    unsigned char operator()(const Mosaic& mosaic, std::ptrdiff_t index,
                             std::ptrdiff_t number) const
    {
        return (number % 2 == 0 ? even : odd)(Site(mosaic, index));
    }
};

/// What tells the four phases apart.
struct Variant {
    RulePair firstRow;    // even and odd columns; the first and the last one have no rule
    RulePair lastRow;     // even and odd positions in the whole picture
    RulePair firstColumn; // even and odd rows
    RulePair lastColumn;
    std::ptrdiff_t lastRowBegins; // columns without a rule at the ends of the last row
    std::ptrdiff_t lastRowLeaves;
    bool copiesLastPixel; // else the byte behind it
    MosaicRow evenRows;
    MosaicRow oddRows;
};

// The first row of both phases whose read-out is mirrored top to bottom.
constexpr RulePair redFirstRow{[](const Site& s) {
                                   return scaled(redWeight * s.own() +
                                                 greenWeight * (s.left() + s.right()) / 2 +
                                                 blueWeight * s.lowerLeft());
                               },
                               [](const Site& s) { return luma(s.right(), s.own(), s.below()); }};

// The two greens are added without halving, as in several rules below; bright pixels wrap.
constexpr Variant variantGBRG{
    {[](const Site& s) { return luma(s.below(), s.own(), s.right()); },
     [](const Site& s) { return luma(s.lowerRight(), s.left() + s.right(), s.own()); }},
    {[](const Site& s) { return luma(s.own(), s.left(), s.upperLeft()); },
     [](const Site& s) { return luma(s.left(), s.own(), s.above()); }},
    {[](const Site& s) { return luma(s.above() + s.below(), s.own(), s.right()); },
     [](const Site& s) { return luma(s.own(), s.right(), s.upperRight()); }},
    {[](const Site& s) { return luma(mean(s.upperLeft(), s.left()), s.left(), s.own()); },
     [](const Site& s) { return luma(s.left(), s.own(), s.above()); }},
    0,
    0,
    false,
    {false, true},
    {true, false}};

constexpr Variant variantBGGR{
    {[](const Site& s) { return luma(s.lowerRight(), s.right(), s.own()); },
     [](const Site& s) {
         return scaled(redWeight * s.below() + greenWeight * s.own() +
                       blueWeight / 2 * (s.left() + s.right()));
     }},
    {[](const Site& s) { return luma(s.left(), s.own(), s.above()); },
     [](const Site& s) { return luma(s.own(), s.left(), s.upperLeft()); }},
    {[](const Site& s) { return luma(mean(s.upperRight(), s.lowerRight()), s.right(), s.own()); },
     [](const Site& s) { return luma(s.right(), s.own(), s.below()); }},
    {[](const Site& s) { return luma(mean(s.above(), s.below()), s.own(), s.left()); },
     [](const Site& s) { return luma(s.own(), s.left(), s.lowerLeft()); }},
    1,
    1,
    true,
    {false, false},
    {true, true}};

constexpr Variant variantRGGB{
    redFirstRow,
    {[](const Site& s) { return luma(s.above(), s.own(), s.left()); },
     [](const Site& s) { return luma(s.upperRight(), s.above(), s.own()); }},
    {[](const Site& s) { return luma(s.own(), s.right(), s.lowerRight()); },
     [](const Site& s) { return luma(s.above(), s.own(), s.right()); }},
    {[](const Site& s) { return luma(s.left(), s.own(), s.below()); },
     [](const Site& s) { return luma(s.lowerLeft(), s.left(), s.own()); }},
    0,
    0,
    false,
    {true, false},
    {false, true}};

constexpr Variant variantGRBG{
    redFirstRow,
    {[](const Site& s) { return luma(s.upperRight(), s.left() + s.right(), s.own()); },
     [](const Site& s) { return luma(s.above(), s.own(), s.left()); }},
    {[](const Site& s) { return luma(s.right(), s.own(), s.above()); },
     [](const Site& s) { return luma(s.upperRight(), s.right(), s.own()); }},
    {[](const Site& s) { return luma(s.own(), s.left(), s.upperLeft()); },
     [](const Site& s) { return luma(s.above(), s.own(), s.left()); }},
    0,
    1,
    false,
    {true, true},
    {false, false}};

void convert(const Variant& variant, const Mosaic& mosaic, unsigned char* dst)
{
    const std::ptrdiff_t rows = mosaic.rows;
    const std::ptrdiff_t cols = mosaic.cols;
    if (rows <= 0 || cols <= 0)
        return;

    const std::ptrdiff_t lastRow = (rows - 1) * cols;
    const std::ptrdiff_t end = mosaic.size() - (variant.copiesLastPixel ? 1 : 0);
    for (const std::ptrdiff_t index : {std::ptrdiff_t{0}, cols, lastRow, end})
        dst[index] = mosaic.samples[index];

    for (std::ptrdiff_t x = 1; x < cols - 1; ++x)
        dst[x] = variant.firstRow(mosaic, x, x);
    for (std::ptrdiff_t x = variant.lastRowBegins; x < cols - variant.lastRowLeaves; ++x)
        dst[lastRow + x] = variant.lastRow(mosaic, lastRow + x, lastRow + x);
    for (std::ptrdiff_t y = 1; y < rows - 1; ++y) {
        const std::ptrdiff_t row = y * cols;
        dst[row] = variant.firstColumn(mosaic, row, y);
        dst[row + cols - 1] = variant.lastColumn(mosaic, row + cols - 1, y);
        lumaRow(y % 2 == 0 ? variant.evenRows : variant.oddRows, mosaic.samples + row, cols,
                dst + row);
    }
}

} // namespace

void mosaicToLuma(BayerPhase phase, const unsigned char* src, int rows, int cols,
                  unsigned char* dst)
{
    switch (phase) {
    case BayerPhase::GBRG:
        return mosaicToLumaGBRG(src, rows, cols, dst);
    case BayerPhase::BGGR:
        return mosaicToLumaBGGR(src, rows, cols, dst);
    case BayerPhase::RGGB:
        return mosaicToLumaRGGB(src, rows, cols, dst);
    case BayerPhase::GRBG:
        return mosaicToLumaGRBG(src, rows, cols, dst);
    }
}

void mosaicToLumaGBRG(const unsigned char* src, int rows, int cols, unsigned char* dst)
{
    convert(variantGBRG, {src, rows, cols}, dst);
}

void mosaicToLumaBGGR(const unsigned char* src, int rows, int cols, unsigned char* dst)
{
    convert(variantBGGR, {src, rows, cols}, dst);
}

void mosaicToLumaRGGB(const unsigned char* src, int rows, int cols, unsigned char* dst)
{
    convert(variantRGGB, {src, rows, cols}, dst);
}

void mosaicToLumaGRBG(const unsigned char* src, int rows, int cols, unsigned char* dst)
{
    convert(variantGRBG, {src, rows, cols}, dst);
}
