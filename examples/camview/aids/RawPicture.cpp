#include "RawPicture.h"

RawPicture::RawPicture(const FrameEx2& raw, bool mirroredH, bool mirroredV)
    : frame(raw)
    , flipH(mirroredH)
    , flipV(mirroredV)
{
}

int RawPicture::sample(int x, int y) const
{
    const int column = flipH ? width() - 1 - x : x;
    const int row = flipV ? height() - 1 - y : y;
    const auto index = static_cast<qint64>(row) * width() + column;
    const unsigned char* samples = frame.getImageBuffer();
    if (frame.rawBitDepth <= 8)
        return samples[index];
    return reinterpret_cast<const quint16*>(samples)[index];
}

QRect RawPicture::inFrame(const QRect& area) const
{
    QRect part = area.intersected(rect());
    if (flipH)
        part.moveLeft(width() - part.x() - part.width());
    if (flipV)
        part.moveTop(height() - part.y() - part.height());
    return part;
}
