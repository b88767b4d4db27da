#include <AppComponents/frames/RunningMean.h>

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "AppComponents/frames/RunningMean.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace running_mean::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR // the plain loops behind the kernels do everything

std::size_t append8(const RunningMean&, const std::uint8_t*, std::uint8_t*, std::uint8_t*)
{
    return 0;
}

std::size_t append16(const RunningMean&, const std::uint16_t*, std::uint16_t*, std::uint16_t*)
{
    return 0;
}

#else

using Sums = hn::ScalableTag<std::int32_t>;
using SumVector = hn::Vec<Sums>;
using Floats = hn::RebindToFloat<Sums>;

// sum / count, truncated. A sum is at most 64 * 65535, so that sum + 0.5 is exact, and the half
// keeps the quotient at least 1/126 away from an integer where the reciprocal is rounded: more
// than the two roundings of a quotient below 65536 can amount to.
SumVector mean(SumVector sum, hn::Vec<Floats> reciprocal)
{
    const Floats d;
    const auto shifted = hn::Add(hn::ConvertTo(d, sum), hn::Set(d, 0.5F));
    return hn::ConvertTo(Sums(), hn::Mul(shifted, reciprocal));
}

template <typename Sample, bool replaces>
std::size_t appendSamples(const RunningMean& run, const Sample* frame, Sample* slot,
                          Sample* average)
{
    const Sums d;
    const hn::Rebind<Sample, Sums> samples;
    const std::size_t lanes = hn::Lanes(d);
    const auto reciprocal = hn::Set(Floats(), 1.0F / static_cast<float>(run.count));
    std::size_t i = 0;
    for (; i + lanes <= run.samples; i += lanes) {
        const auto added = hn::LoadU(samples, frame + i);
        SumVector sum = hn::Add(hn::LoadU(d, run.sums + i), hn::PromoteTo(d, added));
        if (replaces)
            sum = hn::Sub(sum, hn::PromoteTo(d, hn::LoadU(samples, slot + i)));
        hn::StoreU(sum, d, run.sums + i);
        hn::StoreU(added, samples, slot + i);
        hn::StoreU(hn::DemoteTo(samples, mean(sum, reciprocal)), samples, average + i);
    }
    return i;
}

std::size_t append8(const RunningMean& run, const std::uint8_t* frame, std::uint8_t* slot,
                    std::uint8_t* average)
{
    return run.replaces ? appendSamples<std::uint8_t, true>(run, frame, slot, average)
                        : appendSamples<std::uint8_t, false>(run, frame, slot, average);
}

std::size_t append16(const RunningMean& run, const std::uint16_t* frame, std::uint16_t* slot,
                     std::uint16_t* average)
{
    return run.replaces ? appendSamples<std::uint16_t, true>(run, frame, slot, average)
                        : appendSamples<std::uint16_t, false>(run, frame, slot, average);
}

#endif // HWY_TARGET

} // namespace running_mean::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace running_mean
{
HWY_EXPORT(append8);
HWY_EXPORT(append16);

template <typename Sample>
void appendRest(const RunningMean& run, std::size_t from, const unsigned char* frame,
                unsigned char* slot, unsigned char* average)
{
    for (std::size_t i = from; i < run.samples; ++i) {
        const std::size_t at = i * sizeof(Sample);
        Sample added;
        Sample leaving;
        std::memcpy(&added, frame + at, sizeof(Sample));
        std::memcpy(&leaving, slot + at, sizeof(Sample));
        run.sums[i] += added - (run.replaces ? leaving : 0);
        const Sample result = static_cast<Sample>(run.sums[i] / run.count);
        std::memcpy(slot + at, &added, sizeof(Sample));
        std::memcpy(average + at, &result, sizeof(Sample));
    }
}
} // namespace running_mean

void RunningMean::append8(const unsigned char* frame, unsigned char* slot,
                          unsigned char* average) const
{
    using namespace running_mean;
    const std::size_t done = HWY_DYNAMIC_DISPATCH(append8)(*this, frame, slot, average);
    appendRest<std::uint8_t>(*this, done, frame, slot, average);
}

void RunningMean::append16(const unsigned char* frame, unsigned char* slot,
                           unsigned char* average) const
{
    using namespace running_mean;
    // The kernel loads and stores vectors at any address; no single word is touched in it.
    const void* const words = frame;
    void* const slotWords = slot;
    void* const averageWords = average;
    const std::size_t done = HWY_DYNAMIC_DISPATCH(append16)(
        *this, static_cast<const std::uint16_t*>(words), static_cast<std::uint16_t*>(slotWords),
        static_cast<std::uint16_t*>(averageWords));
    appendRest<std::uint16_t>(*this, done, frame, slot, average);
}
#endif
