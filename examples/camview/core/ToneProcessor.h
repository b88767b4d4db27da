#pragma once

#include <AppComponents/imgproc/ImgProcessor.h>

#include <array>
#include <vector>

/// The image engine with its tone stage replaced: it can find the best table for each frame by
/// itself, and it tells how long the stage took.
class ToneProcessor : public ImgProcessor
{
public:
    void setAutoStretch(bool on);

    /// The table in place for samples of 8, 10 or 12 bits, valid until the next call.
    const unsigned char* tableInPlace(int depth);

    /// Milliseconds spent in the tone stage since the last call.
    double takeToneTime();

    void apply_LUT8(unsigned char* src, int count, unsigned char* dst) override;
    void apply_LUT10_8(unsigned short* src, int count, unsigned char* dst) override;
    void apply_LUT12_8(unsigned short* src, int count, unsigned char* dst) override;

private:
    void applyBest8(unsigned char* src, int count, unsigned char* dst);

    void rebuildTables();
    const unsigned char* readTable10();

    bool autoStretch = false;
    double toneTime = 0;
    std::vector<int> levels; ///< histogram of the automatic table for 8-bit samples
    std::array<unsigned char, 256> best8{};
    std::array<unsigned char, 1024> table10{}; ///< as last read
};
