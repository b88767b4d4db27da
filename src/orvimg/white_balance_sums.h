#pragma once

#include <cstdint>

namespace orvimg
{

/// The sums over the usable 2x2 cells of a mosaic, by the sample's place in its cell.
struct CellSums {
    std::uint64_t topLeft = 0;
    std::uint64_t topRight = 0;
    std::uint64_t bottomLeft = 0;
    std::uint64_t bottomRight = 0;
    std::uint64_t cells = 0;
};

constexpr std::uint8_t darkestUsable = 6;     ///< below lies the noise floor
constexpr std::uint8_t brightestUsable = 249; ///< above lies clipping

} // namespace orvimg
