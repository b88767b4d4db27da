#include <AppComponents/imgproc/BayerPhase.h>
#include <AppComponents/imgproc/ImgProcessor.h>
#include <AppComponents/imgproc/MosaicToLuma.h>
#include <AppComponents/imgproc/orvimg.h>

namespace
{

constexpr int methodDepthOnly = 0;
constexpr int methodGrey = 1;

constexpr int oneSamplePerPixel = 0; // colour flag of the median filters
constexpr int threeSamplesPerPixel = 1;

int debayerAlgorithm(int method)
{
    switch (method) {
    case 1:
    case 2:
        return 2;
    case 3:
        return 4;
    case 4:
        return 6;
    case 5:
        return 3;
    case 6:
        return 5;
    case 7:
        return 1;
    default:
        return 0;
    }
}

int patternCode(BayerPhase phase)
{
    switch (phase) {
    case BayerPhase::RGGB:
        return 0;
    case BayerPhase::GRBG:
        return 1;
    case BayerPhase::GBRG:
        return 2;
    case BayerPhase::BGGR:
        break;
    }
    return 3;
}

BayerPhase phaseOf(const FrameEx2* frame)
{
    return bayerPhase(frame->params.mirrorV, frame->params.mirrorH);
}

// The frame behind the source, made fit for a result of 8 bits per sample.
FrameEx2* derivedFrame(FrameEx2* src, int bitsPerPixel)
{
    _FrameParams params = src->params;
    params.bitsPerPixel = bitsPerPixel;
    FrameEx2* const derived = src->adaptProcessedFrame(params, 8);
    derived->frameTag = src->frameTag;
    return derived;
}

void setFinished(FrameEx2* frame, bool finished)
{
    frame->isValid = finished;
    frame->isFilled = finished;
}

} // namespace

void ImgProcessor::ProcessFrame(FrameEx2* frame, int bpp)
{
    if (bpp != 8)
        throw "Not implemented BPP";
    ProcessFrame8(frame);
    frame->flip(flipH, flipV);
    frame->isValid = true;
}

void ImgProcessor::ProcessFrame8(FrameEx2* frame)
{
    const bool bypass = isipFlagSet(CS_BYPASS);
    if (!bypass)
        frame->params.bitsPerPixel = 8;

    if (colorReconstructionMethod == methodDepthOnly) {
        convertTo8bit(frame);
    } else {
        applyPreprocessFilters(frame);
        BuildMonoFrame8(frame);
        if (colorReconstructionMethod != methodGrey)
            BuildColorFrame8(frame);
        else if (!bypass && isCapabilityFlagSet(CC_COLOR_SENSOR))
            processGreyOfColorSensor(frame);
    }
    frame->isValid = true;
}

// A mosaic becomes a faithful grey picture through its colours, corrected with saturation 0.
void ImgProcessor::processGreyOfColorSensor(FrameEx2* frame)
{
    setipFlag(CS_COLOR_CORRECTION, true);
    setColorCorrectionParams(1.0, 1.0, 1.0, 0.0, 0.0, 1.0);
    BuildColorFrame8(frame);
    frame->getLasFrameInChain(true)->colorToMono1();
}

bool ImgProcessor::BuildMonoFrame8(FrameEx2* frame)
{
    if (!frame)
        return false;
    FrameEx2* const src = frame->getLasFrameInChain(true);
    FrameEx2* const derived = derivedFrame(src, 8);
    setFinished(derived, true);

    unsigned char* const samples = src->getImageBuffer();
    unsigned char* const grey = derived->getImageBuffer();
    const int count = src->imgWidth * src->imgHeight;
    if (isipFlagSet(CS_APPLY_LUT) && colorReconstructionMethod != methodDepthOnly) {
        if (src->rawBitDepth == 8)
            apply_LUT8(samples, count, grey);
        else if (src->rawBitDepth == 10)
            apply_LUT10_8(reinterpret_cast<unsigned short*>(samples), count, grey);
        else if (src->rawBitDepth == 12)
            apply_LUT12_8(reinterpret_cast<unsigned short*>(samples), count, grey);
        return true;
    }
    if (src->rawBitDepth > 8) {
        convertTo8bit(samples, static_cast<unsigned int>(src->getImageBuffSize()), grey,
                      static_cast<unsigned int>(derived->getImageBuffSize()),
                      static_cast<unsigned int>(count), src->rawBitDepth);
        return true;
    }
    setFinished(derived, false); // samples of 8 bits are the picture themselves
    return true;
}

bool ImgProcessor::BuildColorFrame8(FrameEx2* frame)
{
    if (!frame)
        return false;
    FrameEx2* const src = frame->getLasFrameInChain(true);
    if (src->params.bitsPerPixel > 8)
        return false;
    FrameEx2* const derived = derivedFrame(src, 24);

    if (isipFlagSet(CS_AUTO_WHITE_BALANCE))
        balanceWhite(src);
    debayer24(src->getImageBuffer(), src->imgWidth, src->imgHeight, patternCode(phaseOf(src)),
              debayerAlgorithm(colorReconstructionMethod), derived->getImageBuffer());
    if (isipFlagSet(CS_AUTO_WHITE_BALANCE) || isipFlagSet(CS_COLOR_CORRECTION)) {
        configureColorCorrection();
        color_correction24(ccHandle, derived->getImageBuffer(), derived->imgWidth,
                           derived->imgHeight);
    }
    setFinished(derived, true);
    return true;
}

// Estimates the gains anew for every frame, from neutral ones.
void ImgProcessor::balanceWhite(FrameEx2* mosaic)
{
    ccDirty = true;
    colorBalanceR = 1.0;
    colorBalanceG = 1.0;
    colorBalanceB = 1.0;
    unsigned char* const samples = mosaic->getImageBuffer();
    const int width = mosaic->imgWidth;
    const int height = mosaic->imgHeight;
    switch (phaseOf(mosaic)) {
    case BayerPhase::GBRG:
        white_balance8gbrg(samples, width, height, &colorBalanceR, &colorBalanceB);
        break;
    case BayerPhase::BGGR:
        white_balance8bggr(samples, width, height, &colorBalanceR, &colorBalanceB);
        break;
    case BayerPhase::RGGB:
        white_balance8rggb(samples, width, height, &colorBalanceR, &colorBalanceB);
        break;
    case BayerPhase::GRBG:
        white_balance8grbg(samples, width, height, &colorBalanceR, &colorBalanceB);
        break;
    }
}

void ImgProcessor::configureColorCorrection()
{
    if (!ccHandle)
        ccHandle = color_correction_init();
    if (!ccDirty)
        return;
    const bool corrects = isipFlagSet(CS_COLOR_CORRECTION); // or white balance alone
    color_correction_set(ccHandle, colorBalanceR, 0.0, colorBalanceG, 0.0, colorBalanceB, 0.0,
                         corrects ? hue : 0.0, corrects ? saturation : 1.0,
                         corrects ? luminance : 1.0, 0.0);
    ccDirty = false;
}

void ImgProcessor::applyPreprocessFilters(FrameEx2* frame)
{
    if (!isipFlagSet(CS_MEDIAN_FILTER) || isipFlagSet(CS_BYPASS))
        return;
    const auto filter = frame->rawBitDepth == 8 ? &::median_filter8 : &::median_filter16;
    filter(frame->getImageBuffer(), frame->imgWidth, frame->imgHeight, oneSamplePerPixel);
}

void ImgProcessor::flipImage(FrameEx2* frame)
{
    frame->getLasFrameInChain(true)->flip(flipH, flipV);
}

void ImgProcessor::median_filter(FrameEx2* frame)
{
    const auto filter = frame->rawBitDepth == 8 ? &::median_filter8 : &::median_filter16;
    filter(frame->getImageBuffer(), frame->imgWidth, frame->imgHeight,
           frame->params.bitsPerPixel == 24 ? threeSamplesPerPixel : oneSamplePerPixel);
}

void ImgProcessor::median_filter8(void* data, int width, int height, int color)
{
    ::median_filter8(data, width, height, color);
}

void ImgProcessor::median_filter16(void* data, int width, int height, int color)
{
    ::median_filter16(data, width, height, color);
}

void ImgProcessor::bayerToMono(unsigned char* src, int rows, int cols, unsigned char* dst,
                               bool mirrorV, bool mirrorH)
{
    mosaicToLuma(bayerPhase(mirrorV, mirrorH), src, rows, cols, dst);
}

bool ImgProcessor::convertToMonochrome(FrameEx2* frame)
{
    if (!frame)
        return false;
    FrameEx2* const src = frame->getLasFrameInChain(true);
    FrameEx2* const derived = derivedFrame(src, 8);
    setFinished(derived, true);
    mosaicToLuma(phaseOf(src), src->getImageBuffer(), src->imgHeight, src->imgWidth,
                 derived->getImageBuffer());
    return true;
}

// Equality, not a test for the bit: a combination of flags marks nothing as stale.
void ImgProcessor::setipFlag(CamStateFlag flag, bool on)
{
    if (on && flag == CS_APPLY_LUT && !isipFlagSet(flag))
        lutDirty = true;
    else if (on && flag == CS_COLOR_CORRECTION && !isipFlagSet(flag))
        ccDirty = true;
    ipFlags = on ? (ipFlags | flag) : (ipFlags & ~flag);
}

void ImgProcessor::setipFlags(const int& flags)
{
    const int added = flags & ~ipFlags;
    if (added & CS_APPLY_LUT)
        lutDirty = true;
    if (added & CS_COLOR_CORRECTION)
        ccDirty = true;
    ipFlags = flags;
}

void ImgProcessor::setColorCorrectionParams(double red, double green, double blue,
                                            double hueDegrees, double saturationFactor,
                                            double luminanceFactor)
{
    // Compared by ==, so that a NaN counts as a difference.
    if (red == colorBalanceR && green == colorBalanceG && blue == colorBalanceB &&
        hueDegrees == hue && saturationFactor == saturation && luminanceFactor == luminance)
        return;
    colorBalanceR = red;
    colorBalanceG = green;
    colorBalanceB = blue;
    hue = hueDegrees;
    saturation = saturationFactor;
    luminance = luminanceFactor;
    ccDirty = true;
}

void ImgProcessor::setColorBalanceR(double gain)
{
    colorBalanceR = gain;
    ccDirty = true;
}

void ImgProcessor::setColorBalanceG(double gain)
{
    colorBalanceG = gain;
    ccDirty = true;
}

void ImgProcessor::setColorBalanceB(double gain)
{
    colorBalanceB = gain;
    ccDirty = true;
}

void ImgProcessor::setHue(double degrees)
{
    hue = degrees;
    ccDirty = true;
}

void ImgProcessor::setSaturation(double factor)
{
    saturation = factor;
    ccDirty = true;
}

void ImgProcessor::setLuminance(double factor)
{
    luminance = factor;
    ccDirty = true;
}
