#pragma once

#include <array>
#include <cstdint>

namespace orvimg
{

/// output = coefficients * (red, green, blue) + offsets, in levels.
struct ColorMatrix {
    using Row = std::array<float, 3>;

    std::array<Row, 3> coefficients{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    Row offsets{};
};

/// The same in 16 bits, for moderate settings. A sum has 4 bits of fraction and is raised so that
/// full scale lies at the top of the range: saturation then limits it for nothing.
struct FixedColorMatrix {
    using Row = std::array<std::int16_t, 3>;

    static constexpr int coefficientScale = 1 << 12;
    static constexpr int levelScale = 1 << 4;
    static constexpr int zeroLevel = 0x7000;

    std::array<Row, 3> coefficients{};
    Row offsets{}; ///< on top of the zero level, with the half that rounds to nearest
};

} // namespace orvimg
