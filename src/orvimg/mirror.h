#pragma once

#include <cstddef>

namespace orvimg
{

/// The index that stands in for \p index in a row of \p size samples: the picture is mirrored at
/// its edges without repeating the edge sample, which keeps the phase of a Bayer mosaic. A row of
/// one sample is that sample everywhere.
constexpr std::ptrdiff_t mirrored(std::ptrdiff_t index, std::ptrdiff_t size)
{
    if (size == 1)
        return 0;
    const std::ptrdiff_t period = 2 * (size - 1);
    const std::ptrdiff_t wrapped = ((index % period) + period) % period;
    return wrapped < size ? wrapped : period - wrapped;
}

} // namespace orvimg
