#include <AppComponents/frames/RunningMean.h>

#include <cstring>

namespace
{

template <typename Sample>
void append(const RunningMean& mean, const unsigned char* frame, unsigned char* slot,
            unsigned char* average)
{
    for (std::size_t i = 0; i < mean.samples; ++i) {
        Sample added;
        Sample leaving;
        std::memcpy(&added, frame + i * sizeof(Sample), sizeof(Sample));
        std::memcpy(&leaving, slot + i * sizeof(Sample), sizeof(Sample));
        mean.sums[i] += added - (mean.replaces ? leaving : 0);
        const Sample result = static_cast<Sample>(mean.sums[i] / mean.count);
        std::memcpy(slot + i * sizeof(Sample), &added, sizeof(Sample));
        std::memcpy(average + i * sizeof(Sample), &result, sizeof(Sample));
    }
}

} // namespace

void RunningMean::append8(const unsigned char* frame, unsigned char* slot,
                          unsigned char* average) const
{
    append<std::uint8_t>(*this, frame, slot, average);
}

void RunningMean::append16(const unsigned char* frame, unsigned char* slot,
                           unsigned char* average) const
{
    append<std::uint16_t>(*this, frame, slot, average);
}
