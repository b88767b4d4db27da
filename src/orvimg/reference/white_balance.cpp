#include <orvimg/reference/reference.h>

#include <algorithm>

namespace orvimg::reference
{

namespace
{

bool isUsable(std::uint8_t sample)
{
    return sample > 5 && sample < 250;
}

struct CellSums {
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    std::uint64_t cells = 0;
};

void addCell(CellSums& sums, const std::uint8_t* cell, std::size_t stride, RedPosition red)
{
    const std::uint8_t samples[2][2] = {{cell[0], cell[1]}, {cell[stride], cell[stride + 1]}};
    if (!isUsable(samples[0][0]) || !isUsable(samples[0][1]) || !isUsable(samples[1][0]) ||
        !isUsable(samples[1][1]))
        return;
    sums.red += samples[red.row][red.column];
    sums.blue += samples[1 - red.row][1 - red.column];
    sums.green += samples[red.row][1 - red.column] + samples[1 - red.row][red.column];
    ++sums.cells;
}

} // namespace

WhiteBalanceGains whiteBalance(const std::uint8_t* mosaic, int width, int height, RedPosition red)
{
    const std::size_t stride = static_cast<std::size_t>(width);
    CellSums sums;
    for (std::size_t y = 0; y + 1 < static_cast<std::size_t>(height); y += 2) {
        for (std::size_t x = 0; x + 1 < stride; x += 2)
            addCell(sums, mosaic + y * stride + x, stride, red);
    }

    const std::uint64_t allCells = (stride / 2) * (static_cast<std::size_t>(height) / 2);
    if (sums.cells == 0 || sums.cells * 100 < allCells)
        return {1.0, 1.0};
    const double green = static_cast<double>(sums.green) / 2;
    return {std::clamp(green / static_cast<double>(sums.red), 0.25, 4.0),
            std::clamp(green / static_cast<double>(sums.blue), 0.25, 4.0)};
}

} // namespace orvimg::reference
