#include <AppComponents/imgproc/orvimg.h>

#include <orvimg/debayer/kernels.h>
#include <orvimg/parallel.h>

namespace
{

using orvimg::BayerMosaic;

using Kernel = void (*)(const BayerMosaic& mosaic, orvimg::RowBand band, std::uint8_t* rgb);

Kernel kernelFor(int algorithm)
{
    switch (algorithm) {
    case 1:
        return orvimg::debayerCell;
    case 2:
        return orvimg::debayerBilinear;
    case 3:
        return orvimg::debayerGradientCorrected;
    case 4:
        return orvimg::debayerEdgeDirected;
    case 5:
        return orvimg::debayerVariableGradients;
    case 6:
        return orvimg::debayerBest;
    default:
        return orvimg::debayerNearest;
    }
}

BayerMosaic describe(const std::uint8_t* mosaic, int width, int height, int pattern)
{
    const int known = pattern >= 0 && pattern <= 3 ? pattern : 2;
    return {mosaic, width, height, known & 1, known >> 1};
}

} // namespace

void debayer24(const unsigned char* mosaic, int width, int height, int pattern, int algorithm,
               unsigned char* rgb)
{
    if (mosaic == nullptr || width <= 0 || height <= 0 || rgb == nullptr)
        return;
    const BayerMosaic picture = describe(mosaic, width, height, pattern);
    if (width == 1 || height == 1) {
        orvimg::debayerThin(picture, algorithm >= 0 && algorithm <= 6 ? algorithm : 0, rgb);
        return;
    }
    constexpr int smallestBand = 32; // rows; below, starting a thread costs more than it saves
    const Kernel kernel = kernelFor(algorithm);
    orvimg::asFarAsMemoryAllows([&] {
        orvimg::forEachRowBand(height, smallestBand, [&](int first, int end) {
            kernel(picture, {first, end}, rgb);
        });
    });
}
