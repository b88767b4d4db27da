#include "Snapshot.h"

#include "PictureFile.h"

#include <QFileInfo>
#include <QSaveFile>

void Snapshot::take(const ProcessedFrame& frame)
{
    copyPixels(frame.picture, picture);
    hasRaw = frame.untouched != nullptr;
    if (hasRaw)
        copyRaw(*frame.untouched, raw);
    empty = false;
}

QString Snapshot::write(const QString& pngName)
{
    QString problem = writePng(picture, pngName);
    if (!problem.isEmpty() || !hasRaw)
        return problem;
    QSaveFile file(rawNameOf(pngName));
    const auto* samples = reinterpret_cast<const char*>(raw.raw.getImageBuffer());
    const auto bytes = qint64(raw.raw.frameSizeInByte());
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(samples, bytes) == bytes && file.commit();
    return written ? QString() : file.errorString();
}

QString Snapshot::rawSource(const QString& pngName) const
{
    if (!hasRaw)
        return {};
    const FrameEx2& frame = raw.raw;
    return QString("raw:%1?width=%2&height=%3&bits=%4&mono=%5&mirrorh=%6&mirrorv=%7")
        .arg(rawNameOf(pngName))
        .arg(int(frame.imgWidth))
        .arg(int(frame.imgHeight))
        .arg(int(frame.rawBitDepth))
        .arg(int(!raw.mosaic))
        .arg(int(frame.params.mirrorH))
        .arg(int(frame.params.mirrorV));
}

QString Snapshot::rawNameOf(const QString& pngName)
{
    const QFileInfo file(pngName);
    return file.path() + '/' + file.completeBaseName() + ".raw";
}
