#include "Histograms.h"

#include <AppComponents/imgproc/orvimg.h>

#include <numeric>

namespace
{

double meanOf(const std::vector<int>& histogram)
{
    double count = 0;
    double sum = 0;
    for (std::size_t level = 0; level < histogram.size(); ++level) {
        count += histogram[level];
        sum += double(level) * histogram[level];
    }
    return count > 0 ? sum / count / double(histogram.size() - 1) : 0;
}

// Neighbouring samples are often alike; counting them in tables of their own keeps one count
// from waiting for the last.
template <int Channels>
void countInterleaved(const unsigned char* samples, int pixels,
                      std::array<std::vector<int>*, 3> out)
{
    constexpr int lanes = 4;
    std::array<std::array<std::array<int, 256>, Channels>, lanes> part{};
    const int whole = pixels / lanes * lanes;
    for (int i = 0; i < whole; i += lanes) {
        for (int lane = 0; lane < lanes; ++lane) {
            for (int channel = 0; channel < Channels; ++channel)
                ++part[lane][channel][samples[(i + lane) * Channels + channel]];
        }
    }
    for (int i = whole; i < pixels; ++i) {
        for (int channel = 0; channel < Channels; ++channel)
            ++part[0][channel][samples[i * Channels + channel]];
    }
    for (const auto& lane : part) {
        for (int channel = 0; channel < Channels; ++channel) {
            for (int level = 0; level < 256; ++level)
                (*out[channel])[level] += lane[channel][level];
        }
    }
}

} // namespace

void Histograms::countRaw(const FrameEx2& frame)
{
    const int count = frame.imgWidth * frame.imgHeight;
    if (frame.rawBitDepth == 8) {
        raw.assign(256, 0);
        countInterleaved<1>(frame.getImageBuffer(), count, {&raw, nullptr, nullptr});
        meanLevel = meanOf(raw);
        return;
    }
    const auto* samples = reinterpret_cast<const unsigned short*>(frame.getImageBuffer());
    levels.resize(std::size_t(1) << frame.rawBitDepth);
    if (frame.rawBitDepth == 10)
        histogram10(samples, count, levels.data());
    else
        histogram12(samples, count, levels.data());
    meanLevel = meanOf(levels);

    raw.assign(1024, 0);
    const std::size_t levelsPerBin = levels.size() / raw.size();
    for (std::size_t level = 0; level < levels.size(); ++level)
        raw[level / levelsPerBin] += levels[level];
}

void Histograms::countPicture(const FrameEx2& picture)
{
    colour = picture.params.bitsPerPixel == 24;
    for (auto& channel : channels)
        channel.assign(raw.size(), 0);
    const int pixels = picture.imgWidth * picture.imgHeight;
    if (colour)
        countInterleaved<3>(picture.getImageBuffer(), pixels,
                            {&channels[0], &channels[1], &channels[2]});
    else
        countInterleaved<1>(picture.getImageBuffer(), pixels, {&channels[0], nullptr, nullptr});
}
