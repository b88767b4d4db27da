#pragma once

#include <array>

namespace orvimg
{

/// output = coefficients * (red, green, blue) + offsets, in levels.
struct ColorMatrix {
    using Row = std::array<float, 3>;

    std::array<Row, 3> coefficients{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    Row offsets{};
};

} // namespace orvimg
