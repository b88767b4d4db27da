#include "CameraFrame.h"

#include <cstring>

void copyPixels(const FrameEx2& from, FrameEx2& to)
{
    _FrameParams params = from.params;
    to.InitFrame(params, from.rawBitDepth);
    std::memcpy(to.getImageBuffer(), from.getImageBuffer(), from.frameSizeInByte());
}

void copyRaw(const CameraFrame& from, CameraFrame& to)
{
    copyPixels(from.raw, to.raw);
    to.stamp = from.stamp;
    to.mosaic = from.mosaic;
}
