#include <AppComponents/imgproc/ImgProcessor.h>

#include <AppComponents/imgproc/SampleMapping.h>
#include <AppComponents/imgproc/StepTables.h>
#include <AppComponents/imgproc/orvimg.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace
{

constexpr int neutralIndex = 127;

int stepFor(double value, const StepTable& table)
{
    // The last entry takes whatever none of the others covers. NaN is less than nothing.
    const auto entry = std::lower_bound(table.begin(), table.end() - 1, value);
    return static_cast<int>(entry - table.begin()) - neutralIndex;
}

double valueOf(int step, const StepTable& table)
{
    return table.begin()[step + neutralIndex];
}

} // namespace

// The tables start as plain shifts whatever the starting steps would give.
ImgProcessor::ImgProcessor()
{
    for (int level = 0; level < 256; ++level)
        lut8[level] = static_cast<unsigned char>(level);
    for (int level = 0; level < 1024; ++level)
        lut10[level] = static_cast<unsigned char>(level / 4);
    for (int level = 0; level < 4096; ++level)
        lut12[level] = static_cast<unsigned char>(level / 16);
}

ImgProcessor::ImgProcessor(const ImgProcessor& other)
{
    copySettings(other);
}

ImgProcessor& ImgProcessor::operator=(const ImgProcessor& other)
{
    if (this != &other)
        copySettings(other);
    return *this;
}

ImgProcessor::~ImgProcessor()
{
    color_correction_done(ccHandle);
}

// Everything but the colour-correction context, which stays the own one and is configured anew.
void ImgProcessor::copySettings(const ImgProcessor& other)
{
    ipFlags = other.ipFlags;
    capabilityFlags = other.capabilityFlags;
    brightness = other.brightness;
    contrast = other.contrast;
    gamma = other.gamma;
    colorBalanceR = other.colorBalanceR;
    colorBalanceG = other.colorBalanceG;
    colorBalanceB = other.colorBalanceB;
    hue = other.hue;
    saturation = other.saturation;
    luminance = other.luminance;
    flipH = other.flipH;
    flipV = other.flipV;
    lutDirty = other.lutDirty;
    ccDirty = true;
    lutNumber = other.lutNumber;
    std::copy(std::begin(other.lut8), std::end(other.lut8), lut8);
    std::copy(std::begin(other.lut10), std::end(other.lut10), lut10);
    std::copy(std::begin(other.lut12), std::end(other.lut12), lut12);
    std::copy(std::begin(other.hist8), std::end(other.hist8), hist8);
    std::copy(std::begin(other.hist10), std::end(other.hist10), hist10);
    std::copy(std::begin(other.hist12), std::end(other.hist12), hist12);
    colorReconstructionMethod = other.colorReconstructionMethod;
}

void ImgProcessor::setBrightnessD(double value)
{
    setStep(brightness, stepFor(value, brightnessSteps));
}

void ImgProcessor::setContrastD(double value)
{
    setStep(contrast, stepFor(value, contrastSteps));
}

void ImgProcessor::setGammaD(double value)
{
    setStep(gamma, stepFor(value, gammaSteps));
}

void ImgProcessor::setStep(std::int32_t& step, int chosen)
{
    if (step == chosen)
        return;
    step = chosen;
    rebuildTables();
}

void ImgProcessor::rebuildTables()
{
    create_BCG_LUT8(brightness, contrast, gamma, lut8);
    create_BCG_LUT10_8(brightness, contrast, gamma, lut10);
    create_BCG_LUT12_8(brightness, contrast, gamma, lut12);
    ++lutNumber;
    lutDirty = false;
}

double ImgProcessor::getBrightnessD() const
{
    return valueOf(brightness, brightnessSteps);
}

double ImgProcessor::getContrastD() const
{
    return valueOf(contrast, contrastSteps);
}

double ImgProcessor::getGammaD() const
{
    return valueOf(gamma, gammaSteps);
}

void ImgProcessor::getBrightnessMinMax(double& min, double& max) const
{
    min = brightnessSteps.front();
    max = brightnessSteps.back();
}

void ImgProcessor::getContrastMinMax(double& min, double& max) const
{
    min = contrastSteps.front();
    max = contrastSteps.back();
}

void ImgProcessor::getGammaMinMax(double& min, double& max) const
{
    min = gammaSteps.front();
    max = gammaSteps.back();
}

// Whichever table is used first clears the mark for all: a camera delivers one depth at a time.
void ImgProcessor::refreshTable(void (*create)(int, int, int, unsigned char*), unsigned char* table)
{
    if (!lutDirty)
        return;
    create(brightness, contrast, gamma, table);
    ++lutNumber;
    lutDirty = false;
}

void ImgProcessor::apply_LUT8(unsigned char* src, int count, unsigned char* dst)
{
    refreshTable(create_BCG_LUT8, lut8);
    mapThroughTable8(src, count, lut8, dst);
}

void ImgProcessor::apply_LUT10_8(unsigned short* src, int count, unsigned char* dst)
{
    refreshTable(create_BCG_LUT10_8, lut10);
    mapThroughTable10(src, count, lut10, dst);
}

void ImgProcessor::apply_LUT12_8(unsigned short* src, int count, unsigned char* dst)
{
    refreshTable(create_BCG_LUT12_8, lut12);
    mapThroughTable12(src, count, lut12, dst);
}

void ImgProcessor::apply_best_LUT10_8(unsigned short* src, int count, unsigned char* dst)
{
    histogram10(src, count, hist10);
    best_lookup_table10to8(hist10, lut10);
    mapThroughTable10(src, count, lut10, dst);
}

void ImgProcessor::apply_best_LUT12_8(unsigned short* src, int count, unsigned char* dst)
{
    histogram12(src, count, hist12);
    best_lookup_table12to8(hist12, lut12);
    mapThroughTable12(src, count, lut12, dst);
}

void ImgProcessor::apply_LUT8(unsigned char* src, int count, unsigned char* const lut, void* dst)
{
    mapThroughTable8(src, count, lut, static_cast<unsigned char*>(dst));
}

void ImgProcessor::convert10_8(unsigned short* src, int count, unsigned char* dst)
{
    shiftTo8Bits(src, count, 2, dst);
}

void ImgProcessor::convert12_8(unsigned short* src, int count, unsigned char* dst)
{
    shiftTo8Bits(src, count, 4, dst);
}

unsigned int ImgProcessor::convertTo8bit(unsigned char* src, unsigned int srcSize,
                                         unsigned char* dst, unsigned int dstSize,
                                         unsigned int pixels, unsigned char rawBitDepth)
{
    if (rawBitDepth > 8) {
        const unsigned int count = std::min({srcSize / 2, dstSize, pixels});
        shiftTo8Bits(src, count, rawBitDepth - 8, dst);
        return count;
    }
    if (dst == src)
        return 0;
    const unsigned int count = std::min({srcSize, dstSize, pixels});
    if (count > 0)
        std::memmove(dst, src, count);
    return count;
}

void ImgProcessor::convertTo8bit(FrameEx2* frame)
{
    if (frame->rawBitDepth == 8)
        return;
    _FrameParams params = frame->params;
    params.bitsPerPixel = 8;
    FrameEx2* const derived = frame->adaptProcessedFrame(params, 8);
    derived->frameTag = frame->frameTag;
    convertTo8bit(frame->getImageBuffer(), static_cast<unsigned int>(frame->getImageBuffSize()),
                  derived->getImageBuffer(), static_cast<unsigned int>(derived->getImageBuffSize()),
                  static_cast<unsigned int>(frame->imgWidth) *
                      static_cast<unsigned int>(frame->imgHeight),
                  frame->rawBitDepth);
    derived->isValid = true;
    derived->isFilled = true;
}
