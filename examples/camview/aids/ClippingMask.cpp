#include "ClippingMask.h"

#include <QVector>

namespace
{

enum Marking : quint8 { Unmarked, Black, Saturated };

const QVector<QRgb>& colors()
{
    static const QVector<QRgb> table = {qRgba(0, 0, 0, 0), qRgba(40, 90, 255, 255),
                                        qRgba(255, 40, 40, 255)};
    return table;
}

template <typename Sample>
void markRow(const Sample* row, int count, int fullScale, quint8* marks)
{
    for (int i = 0; i < count; ++i)
        marks[i] = static_cast<quint8>((row[i] == 0 ? Black : Unmarked) |
                                       (row[i] >= fullScale ? Saturated : Unmarked));
}

template <typename Sample>
void markAll(const RawPicture& picture, QImage& mask)
{
    const auto* samples = reinterpret_cast<const Sample*>(picture.record().getImageBuffer());
    const int width = picture.width();
    for (int y = 0; y < picture.height(); ++y)
        markRow(samples + static_cast<qint64>(y) * width, width, picture.fullScale(),
                mask.scanLine(y));
}

} // namespace

void clippingMask(const RawPicture& picture, QImage& reuse)
{
    if (reuse.size() != picture.rect().size() || !reuse.isDetached()) {
        reuse = QImage(picture.rect().size(), QImage::Format_Indexed8);
        reuse.setColorTable(colors());
    }
    if (picture.record().rawBitDepth <= 8)
        markAll<quint8>(picture, reuse);
    else
        markAll<quint16>(picture, reuse);
    if (picture.flippedH() || picture.flippedV())
        reuse = reuse.mirrored(picture.flippedH(), picture.flippedV());
}
