#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/frames/FrameEx2.h>
#include <AppComponents/imgproc/ProcessingFlags.h>

#include <cstdint>

/// The image engine: turns raw sensor data (8, 10 or 12 bits per sample, grey or a Bayer mosaic)
/// into an 8-bit grey or a 24-bit colour picture.
///
/// Each stage writes its result into the next frame of the chain of the frame that it is given;
/// the picture to show is `frame->getLasFrameInChain(true)->getImage()`. A steady stream of
/// same-sized frames under fixed settings allocates nothing after the first one.
///
/// Not synchronised: one thread at a time processes with it or changes its settings.
class APPCOMPONENTS_EXPORT ImgProcessor
{
public:
    ImgProcessor();
    /// Copies every setting, table and histogram. The colour-correction context is not shared:
    /// the copy makes and configures its own on first need.
    ImgProcessor(const ImgProcessor& other);
    ImgProcessor& operator=(const ImgProcessor& other);

    virtual ~ImgProcessor();

    /// Maps \p count samples through the table for their depth, rebuilding it first when it is
    /// stale. Of a sample outside its table (256, 1024, 4096 entries) the low bits count.
    virtual void apply_LUT8(unsigned char* src, int count, unsigned char* dst);
    virtual void apply_LUT10_8(unsigned short* src, int count, unsigned char* dst);
    virtual void apply_LUT12_8(unsigned short* src, int count, unsigned char* dst);

    /// Replaces the table for the depth by one that best spreads the levels of these samples,
    /// and maps them through it. The steps, getLUTnumber() and the other tables stay.
    virtual void apply_best_LUT10_8(unsigned short* src, int count, unsigned char* dst);
    virtual void apply_best_LUT12_8(unsigned short* src, int count, unsigned char* dst);

    /// dst[i] = lut[src[i]] with any table of 256 bytes; \p dst may be \p src.
    static void apply_LUT8(unsigned char* src, int count, unsigned char* const lut, void* dst);

    /// Each takes the smallest step whose value is not below \p value (the last one if there is
    /// none) and rebuilds the three tables when the step changed.
    void setBrightnessD(double value); ///< -0.5 ... 0.5, a fraction of full scale
    void setContrastD(double value);   ///< 0.25 ... 4, a factor
    void setGammaD(double value);      ///< 1/3 ... 3, an exponent

    double getBrightnessD() const;
    double getContrastD() const;
    double getGammaD() const;
    void getBrightnessMinMax(double& min, double& max) const;
    void getContrastMinMax(double& min, double& max) const;
    void getGammaMinMax(double& min, double& max) const;

    /// The tables in place, 256 and 4096 entries; valid as long as the processor lives.
    unsigned char* getLUT8() { return lut8; }
    unsigned char* getLUT12() { return lut12; }
    /// Counts the rebuilds of the tables from the steps, so that a viewer knows when to redraw.
    int getLUTnumber() const { return lutNumber; }

    /// dst[i] = low 8 bits of src[i] >> 2 or 4; \p dst may be \p src.
    static void convert10_8(unsigned short* src, int count, unsigned char* dst);
    static void convert12_8(unsigned short* src, int count, unsigned char* dst);

    /// Reduces samples to 8 bits, as many as both buffers (sizes in bytes) and \p pixels allow.
    /// A depth of 8 or less copies bytes, unless \p dst is \p src.
    /// \return the number of bytes written.
    unsigned int convertTo8bit(unsigned char* src, unsigned int srcSize, unsigned char* dst,
                               unsigned int dstSize, unsigned int pixels,
                               unsigned char rawBitDepth);
    /// Puts an 8-bit copy of a frame of more than 8 bits into the next frame of its chain.
    void convertTo8bit(FrameEx2* frame);

    /// Processes a frame that has just been filled and whose chain has been invalidated.
    /// The frame itself is mirrored as set, not the end of its chain; flipImage() does that.
    /// \param bpp must be 8.
    /// \throws const char* "Not implemented BPP" for any other \p bpp, before touching the frame.
    void ProcessFrame(FrameEx2* frame, int bpp);
    /// The same without the mirroring.
    void ProcessFrame8(FrameEx2* frame);

    /// The grey stage. \return false only for a null frame.
    bool BuildMonoFrame8(FrameEx2* frame);
    /// The colour stage. \return false, doing nothing, for a null frame and when the end of the
    /// chain is not a picture of one sample per pixel.
    bool BuildColorFrame8(FrameEx2* frame);
    /// Median-filters the raw data in place if that is switched on and not bypassed.
    void applyPreprocessFilters(FrameEx2* frame);
    /// Mirrors the end of the frame's chain as set.
    void flipImage(FrameEx2* frame);

    /// Median-filters a frame of any depth and format in place.
    static void median_filter(FrameEx2* frame);
    /// \param color 0: one sample per pixel, 1: three interleaved ones.
    static void median_filter8(void* data, int width, int height, int color);
    static void median_filter16(void* data, int width, int height, int color);

    /// Computes a grey picture from an 8-bit Bayer mosaic without colour processing. The borders
    /// follow rules of their own; the last pixel of the first row is never written.
    /// \param src,dst rows x cols bytes each, apart, with one spare byte behind them.
    /// \param mirrorV,mirrorH the read-out flags, which fix the Bayer phase.
    void bayerToMono(unsigned char* src, int rows, int cols, unsigned char* dst, bool mirrorV,
                     bool mirrorH);
    /// bayerToMono() from the end of the frame's chain into the frame after it.
    /// \return false only for a null frame.
    bool convertToMonochrome(FrameEx2* frame);

    /// Adds or removes the bits of \p flag. Switching exactly CS_APPLY_LUT on marks the tables
    /// stale, exactly CS_COLOR_CORRECTION the colour correction; combined values mark nothing.
    void setipFlag(CamStateFlag flag, bool on);
    /// Replaces all bits; marks what CS_APPLY_LUT and CS_COLOR_CORRECTION newly switch on.
    void setipFlags(const int& flags);
    int getipFlags() const { return ipFlags; }
    /// \return whether all bits of \p flag are set.
    bool isipFlagSet(CamStateFlag flag) const { return (ipFlags & flag) == flag; }

    void setCapabilityFlags(const int& flags) { capabilityFlags = flags; }
    /// \return whether all bits of \p flag are set.
    bool isCapabilityFlagSet(CamCapabilityFlag flag) const
    {
        return (capabilityFlags & flag) == flag;
    }

    /// 0: bit-depth reduction only; 1: grey; 2 ... 7: colour by bilinear, edge-directed, best,
    /// gradient-corrected, variable-gradients and cell-wise demosaicing; any other: nearest.
    void setColorReconstructionMethod(int method) { colorReconstructionMethod = method; }
    int getColorReconstructionMethod() const { return colorReconstructionMethod; }

    /// Takes all six values when any of them differs from what is set.
    void setColorCorrectionParams(double red, double green, double blue, double hueDegrees,
                                  double saturationFactor, double luminanceFactor);
    /// Each takes the value and has the colour correction configured anew, also when the value
    /// is what was set.
    void setColorBalanceR(double gain);
    void setColorBalanceG(double gain);
    void setColorBalanceB(double gain);
    void setHue(double degrees);
    void setSaturation(double factor);
    void setLuminance(double factor);
    double getColorBalanceR() const { return colorBalanceR; }
    double getColorBalanceG() const { return colorBalanceG; }
    double getColorBalanceB() const { return colorBalanceB; }
    double getHue() const { return hue; }
    double getSaturation() const { return saturation; }
    double getLuminance() const { return luminance; }

    void setFlipH(bool on) { flipH = on; }
    void setFlipV(bool on) { flipV = on; }
    bool getFlipH() const { return flipH; }
    bool getFlipV() const { return flipV; }

private:
    void setStep(std::int32_t& step, int chosen);
    void rebuildTables();
    void refreshTable(void (*create)(int, int, int, unsigned char*), unsigned char* table);
    void processGreyOfColorSensor(FrameEx2* frame);
    void balanceWhite(FrameEx2* mosaic);
    void configureColorCorrection();
    void copySettings(const ImgProcessor& other);

    std::int32_t ipFlags = 0;
    std::int32_t capabilityFlags = 0;
    std::int32_t brightness = 0;
    std::int32_t contrast = 1;
    std::int32_t gamma = 1;
    void* ccHandle = nullptr; // made on first need
    double colorBalanceR = 1.0;
    double colorBalanceG = 1.0;
    double colorBalanceB = 1.0;
    double hue = 0.0;
    double saturation = 1.0;
    double luminance = 1.0;
    bool flipH = false;
    bool flipV = false;
    bool lutDirty = false;
    bool ccDirty = true;
    std::int32_t lutNumber = 0;
    unsigned char lut8[256];
    unsigned char lut10[1024];
    unsigned char lut12[4096];
    std::int32_t hist8[256] = {};
    std::int32_t hist10[1024] = {};
    std::int32_t hist12[4096] = {};
    std::int32_t colorReconstructionMethod = 0;
};
