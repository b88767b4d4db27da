/// \file
/// Prints how faithful each debayer method is: `demosaic_quality DIR` mosaics every PNG picture
/// of a folder to 8 bits in all four phases, interpolates it and compares with the original.

#include <AppComponents/imgproc/orvimg.h>

#include <QtCore/QDir>
#include <QtGui/QImage>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#ifdef BENCHMARK_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace
{

constexpr int border = 10; // pixels left out, as methods differ in how they treat edges
constexpr int phases = 4;
constexpr std::array<const char*, phases> phaseNames{"RGGB", "GRBG", "GBRG", "BGGR"};

struct Mosaic {
    std::vector<unsigned char> samples;
    int width;
    int height;
    int pattern;
};

struct Method {
    std::string name;
    void (*interpolate)(const Mosaic& mosaic, unsigned char* rgb);
};

template <int algorithm>
void ours(const Mosaic& mosaic, unsigned char* rgb)
{
    debayer24(mosaic.samples.data(), mosaic.width, mosaic.height, mosaic.pattern, algorithm, rgb);
}

#ifdef BENCHMARK_WITH_OPENCV
/// \param codes the conversion to RGB of each phase
template <int rggb, int grbg, int gbrg, int bggr>
void opencv(const Mosaic& mosaic, unsigned char* rgb)
{
    constexpr std::array<int, phases> codes{rggb, grbg, gbrg, bggr};
    const cv::Mat source(mosaic.height, mosaic.width, CV_8UC1,
                         const_cast<unsigned char*>(mosaic.samples.data()));
    cv::Mat target(mosaic.height, mosaic.width, CV_8UC3, rgb);
    cv::cvtColor(source, target, codes[mosaic.pattern]);
}

/// OpenCV 4.6 writes each row of its gradient method two rows too high.
template <int rggb, int grbg, int gbrg, int bggr>
void opencvLowered(const Mosaic& mosaic, unsigned char* rgb)
{
    opencv<rggb, grbg, gbrg, bggr>(mosaic, rgb);
    constexpr int rows = 2;
    const std::size_t row = 3 * static_cast<std::size_t>(mosaic.width);
    std::memmove(rgb + rows * row, rgb, row * static_cast<std::size_t>(mosaic.height - rows));
}
#endif

std::vector<Method> allMethods()
{
    return {
        {"0 nearest", ours<0>},
        {"1 cell", ours<1>},
        {"2 bilinear", ours<2>},
        {"3 gradient-corrected", ours<3>},
        {"4 edge-directed", ours<4>},
        {"5 variable gradients", ours<5>},
        {"6 best", ours<6>},
#ifdef BENCHMARK_WITH_OPENCV
        // OpenCV names a phase after the second pixel of the second row.
        {"OpenCV bilinear", opencv<cv::COLOR_BayerBG2RGB, cv::COLOR_BayerGB2RGB,
                                   cv::COLOR_BayerGR2RGB, cv::COLOR_BayerRG2RGB>},
        {"OpenCV gradients", opencvLowered<cv::COLOR_BayerBG2RGB_VNG, cv::COLOR_BayerGB2RGB_VNG,
                                           cv::COLOR_BayerGR2RGB_VNG, cv::COLOR_BayerRG2RGB_VNG>},
        {"OpenCV edge-aware", opencv<cv::COLOR_BayerBG2RGB_EA, cv::COLOR_BayerGB2RGB_EA,
                                     cv::COLOR_BayerGR2RGB_EA, cv::COLOR_BayerRG2RGB_EA>},
#endif
    };
}

/// The channel that the sensor has at a pixel.
int channelAt(int x, int y, int pattern)
{
    const int column = (x + (pattern & 1)) & 1;
    const int row = (y + (pattern >> 1)) & 1;
    return column + row;
}

Mosaic mosaicked(const QImage& picture, int pattern)
{
    Mosaic mosaic{{}, picture.width(), picture.height(), pattern};
    mosaic.samples.reserve(static_cast<std::size_t>(mosaic.width) * mosaic.height);
    for (int y = 0; y < mosaic.height; ++y) {
        const uchar* row = picture.constScanLine(y);
        for (int x = 0; x < mosaic.width; ++x)
            mosaic.samples.push_back(row[3 * x + channelAt(x, y, pattern)]);
    }
    return mosaic;
}

/// \return the peak signal-to-noise ratio in dB over all three channels.
double fidelity(const QImage& picture, const std::vector<unsigned char>& rgb)
{
    double squares = 0;
    for (int y = border; y < picture.height() - border; ++y) {
        const uchar* original = picture.constScanLine(y);
        const unsigned char* found = rgb.data() + static_cast<std::size_t>(y) * picture.width() * 3;
        for (int i = 3 * border; i < 3 * (picture.width() - border); ++i) {
            const int error = original[i] - found[i];
            squares += error * error;
        }
    }
    const double count = 3.0 * (picture.width() - 2 * border) * (picture.height() - 2 * border);
    constexpr double highestFidelity = 99; // a perfect picture has no finite ratio
    return squares == 0 ? highestFidelity : 10 * std::log10(255.0 * 255.0 * count / squares);
}

/// Prints one line per method and adds each method's mean over the phases to \p sums.
void ratePicture(const QString& name, const QImage& picture, const std::vector<Method>& methods,
                 std::vector<double>& sums)
{
    std::printf("%-22s", qPrintable(name));
    for (const char* phase : phaseNames)
        std::printf("%8s", phase);
    std::printf("%8s\n", "mean");
    std::vector<unsigned char> rgb(static_cast<std::size_t>(picture.width()) * picture.height() *
                                   3);
    for (std::size_t i = 0; i < methods.size(); ++i) {
        std::printf("%-22s", methods[i].name.c_str());
        double sum = 0;
        for (int pattern = 0; pattern < phases; ++pattern) {
            methods[i].interpolate(mosaicked(picture, pattern), rgb.data());
            const double decibels = fidelity(picture, rgb);
            std::printf("%8.2f", decibels);
            sum += decibels;
        }
        std::printf("%8.2f\n", sum / phases);
        sums[i] += sum / phases;
    }
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: demosaic_quality DIR   (a folder of PNG pictures)\n");
        return EXIT_FAILURE;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const std::vector<Method> methods = allMethods();
    std::vector<double> sums(methods.size());
    int pictures = 0;
    for (const QString& name : folder.entryList({QStringLiteral("*.png")}, QDir::Files)) {
        const QImage picture = QImage(folder.filePath(name)).convertToFormat(QImage::Format_RGB888);
        if (std::min(picture.width(), picture.height()) <= 2 * border) {
            std::fprintf(stderr, "demosaic_quality: %s left out: unreadable or too small\n",
                         qPrintable(name));
            continue;
        }
        ratePicture(name, picture, methods, sums);
        ++pictures;
    }
    if (pictures == 0) {
        std::fprintf(stderr, "demosaic_quality: no usable PNG picture in %s\n", argv[1]);
        return EXIT_FAILURE;
    }
    std::printf("mean of %d pictures, dB\n", pictures);
    for (std::size_t i = 0; i < methods.size(); ++i)
        std::printf("%-22s%8.3f\n", methods[i].name.c_str(), sums[i] / pictures);
    return EXIT_SUCCESS;
}
