#include <orvimg/reference/reference.h>

#include <algorithm>

namespace orvimg::reference
{

void histogram(const std::uint16_t* samples, std::size_t count, std::size_t levels, int* bins)
{
    std::fill_n(bins, levels, 0);
    for (std::size_t i = 0; i < count; ++i) {
        if (samples[i] < levels)
            ++bins[samples[i]];
    }
}

} // namespace orvimg::reference
