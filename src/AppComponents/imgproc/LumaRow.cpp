#include <AppComponents/imgproc/LumaRow.h>

void lumaRow(MosaicRow kind, const unsigned char* row, std::size_t cols, unsigned char* dst)
{
    const unsigned char* above = row - cols;
    const unsigned char* below = row + cols;
    const unsigned own = kind.red ? 299 : 114;
    const unsigned other = kind.red ? 114 : 299;
    for (std::size_t x = 1; x + 1 < cols; ++x) {
        const unsigned sides = (row[x - 1] + row[x + 1]) / 2U;
        const bool green = (x % 2 == 0) == kind.greenIsEven;
        const unsigned sum =
            green ? own * sides + 587U * row[x] + other * ((above[x] + below[x]) / 2U)
                  : own * row[x] + 587U * sides + other * ((above[x - 1] + below[x + 1]) / 2U);
        dst[x] = static_cast<unsigned char>(sum / 1000);
    }
}
