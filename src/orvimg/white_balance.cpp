#include <AppComponents/imgproc/orvimg.h>

#include <orvimg/reference/reference.h>

namespace
{

void balance(const unsigned char* mosaic, int width, int height, double* redGain, double* blueGain,
             orvimg::reference::RedPosition red)
{
    if (mosaic == nullptr || width <= 0 || height <= 0 || redGain == nullptr || blueGain == nullptr)
        return;
    const auto gains = orvimg::reference::whiteBalance(mosaic, width, height, red);
    *redGain = gains.red;
    *blueGain = gains.blue;
}

} // namespace

void white_balance8rggb(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    balance(mosaic, width, height, redGain, blueGain, {0, 0});
}

void white_balance8bggr(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    balance(mosaic, width, height, redGain, blueGain, {1, 1});
}

void white_balance8gbrg(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    balance(mosaic, width, height, redGain, blueGain, {0, 1});
}

void white_balance8grbg(const unsigned char* mosaic, int width, int height, double* redGain,
                        double* blueGain)
{
    balance(mosaic, width, height, redGain, blueGain, {1, 0});
}
