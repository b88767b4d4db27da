#pragma once

#include <cstdint>

namespace orvimg::reference
{

/// debayer24() written straight from the formulas, pixel by pixel. Arguments are trusted:
/// pointers are valid, sizes positive, \p pattern 0 ... 3 and \p algorithm 0 ... 6.
void debayer(const std::uint8_t* mosaic, int width, int height, int pattern, int algorithm,
             std::uint8_t* rgb);

/// Method 6 of debayer(), for pictures of at least two rows and columns.
void debayerBest(const std::uint8_t* mosaic, int width, int height, int pattern, std::uint8_t* rgb);

} // namespace orvimg::reference
