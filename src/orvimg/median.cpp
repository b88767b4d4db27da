#include <AppComponents/imgproc/orvimg.h>

#include <orvimg/reference/reference.h>

namespace
{

template <typename Sample>
void filter(void* picture, int width, int height, int color)
{
    if (picture != nullptr && width > 0 && height > 0)
        orvimg::reference::median(static_cast<Sample*>(picture), width, height, color == 1 ? 3 : 1);
}

} // namespace

void median_filter8(void* picture, int width, int height, int color)
{
    filter<std::uint8_t>(picture, width, height, color);
}

void median_filter16(void* picture, int width, int height, int color)
{
    filter<std::uint16_t>(picture, width, height, color);
}
