#include <AppComponents/imgproc/orvimg.h>

#include <orvimg/reference/debayer_reference.h>

void debayer24(const unsigned char* mosaic, int width, int height, int pattern, int algorithm,
               unsigned char* rgb)
{
    if (mosaic == nullptr || width <= 0 || height <= 0 || rgb == nullptr)
        return;
    const int knownPattern = pattern >= 0 && pattern <= 3 ? pattern : 2;
    const int knownAlgorithm = algorithm >= 0 && algorithm <= 6 ? algorithm : 0;
    orvimg::reference::debayer(mosaic, width, height, knownPattern, knownAlgorithm, rgb);
}
