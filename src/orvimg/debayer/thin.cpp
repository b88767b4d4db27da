#include <orvimg/debayer/kernels.h>

#include <cstddef>

#include <orvimg/mirror.h>

namespace orvimg
{

void debayerThin(const BayerMosaic& mosaic, int algorithm, std::uint8_t* rgb)
{
    const std::uint8_t* const line = mosaic.samples;
    const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(mosaic.width) * mosaic.height;
    const bool isColumn = mosaic.width == 1;
    for (std::ptrdiff_t i = 0; i < count; ++i, rgb += 3) {
        const int next = line[mirrored(i + 1, count)];
        const int previous = line[mirrored(i - 1, count)];
        const int cellPartner = (i & 1) != 0 ? previous : next;
        const int other = algorithm == 0   ? next
                          : algorithm == 1 ? cellPartner
                                           : (previous + next + 1) >> 1;
        const int y = isColumn ? static_cast<int>(i & 1) : 0;
        const int x = isColumn ? 0 : static_cast<int>(i & 1);
        const bool isChroma = mosaic.chromaColumn(y) == x;
        // Along a column the chroma of a green sample is that of the next row.
        const bool lineIsRed = mosaic.isRedRow(isColumn && !isChroma ? y + 1 : y);
        rgb[0] = rgb[1] = rgb[2] = line[i];
        if (count > 1)
            rgb[isChroma ? 1 : lineIsRed ? 0 : 2] = static_cast<std::uint8_t>(other);
    }
}

} // namespace orvimg
