#include "Snapshot.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

// Light compression: the window stands still meanwhile, and noise hardly shrinks further.
constexpr int pngQuality = 80;

QString failure(const QSaveFile& file)
{
    return QStringLiteral("Cannot write %1: %2").arg(file.fileName(), file.errorString());
}

bool openInFolder(QSaveFile& file)
{
    QDir().mkpath(QFileInfo(file.fileName()).path());
    return file.open(QIODevice::WriteOnly);
}

} // namespace

QString savePictureSnapshot(const QImage& picture, const QString& fileName)
{
    QSaveFile file(fileName);
    if (openInFolder(file) && picture.save(&file, "PNG", pngQuality) && file.commit())
        return {};
    return failure(file);
}

QString saveRawSnapshot(const FrameEx2& raw, const QString& fileName)
{
    QSaveFile file(fileName);
    const auto size = static_cast<qint64>(raw.frameSizeInByte());
    const auto* samples = reinterpret_cast<const char*>(raw.getImageBuffer());
    if (openInFolder(file) && file.write(samples, size) == size && file.commit())
        return {};
    return failure(file);
}

QString rawSource(const FrameEx2& raw, bool mosaic, const QString& fileName)
{
    QString source = QStringLiteral("raw:%1?width=%2&height=%3&bits=%4")
                         .arg(fileName)
                         .arg(raw.imgWidth)
                         .arg(raw.imgHeight)
                         .arg(raw.rawBitDepth);
    if (!mosaic)
        source += QStringLiteral("&mono=1");
    if (raw.params.mirrorH)
        source += QStringLiteral("&mirrorh=1");
    if (raw.params.mirrorV)
        source += QStringLiteral("&mirrorv=1");
    return source;
}
