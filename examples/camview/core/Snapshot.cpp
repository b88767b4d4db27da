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
    // The file's name stays out of the pattern: it may hold percent signs itself.
    return "raw:" + rawNameOf(pngName) +
           QString("?width=%1&height=%2&bits=%3&mono=%4&mirrorh=%5&mirrorv=%6")
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
