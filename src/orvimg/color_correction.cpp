#include <AppComponents/imgproc/orvimg.h>

#include <memory>

#include <orvimg/reference/reference.h>

using orvimg::reference::ColorSettings;

void* color_correction_init(void)
{
    return std::make_unique<ColorSettings>().release();
}

void color_correction_set(void* context, double redGain, double redOffset, double greenGain,
                          double greenOffset, double blueGain, double blueOffset, double hue,
                          double saturation, double lightness, double offset)
{
    if (context == nullptr)
        return;
    *static_cast<ColorSettings*>(context) =
        ColorSettings{redGain,    redOffset, greenGain,  greenOffset, blueGain,
                      blueOffset, hue,       saturation, lightness,   offset};
}

void color_correction24(void* context, unsigned char* rgb, int width, int height)
{
    if (context == nullptr || rgb == nullptr || width <= 0 || height <= 0)
        return;
    orvimg::reference::colorCorrection(*static_cast<const ColorSettings*>(context), rgb,
                                       static_cast<std::size_t>(width) *
                                           static_cast<std::size_t>(height));
}

void color_correction_done(void* context)
{
    const std::unique_ptr<ColorSettings> owned(static_cast<ColorSettings*>(context));
}
