#include "PictureFile.h"

#include <QSaveFile>

namespace
{

// Light compression: pictures of a noisy sensor hardly shrink further, however long it takes.
constexpr int pngQuality = 80;

} // namespace

QString writePng(FrameEx2& picture, const QString& fileName)
{
    // FrameEx2::getImage() packs its rows, which suits widths that are multiples of 4. A view
    // of the buffer with its true row length serves every width, without a copy.
    const bool colour = picture.params.bitsPerPixel == 24;
    const QImage image(picture.getImageBuffer(), picture.imgWidth, picture.imgHeight,
                       picture.imgWidth * (colour ? 3 : 1),
                       colour ? QImage::Format_RGB888 : QImage::Format_Grayscale8);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (!image.save(&file, "PNG", pngQuality) || !file.commit())
        return file.error() != QFileDevice::NoError ? file.errorString()
                                                    : QString("the picture cannot be encoded");
    return {};
}
