#include "RecordingReader.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

namespace
{

// The image engine uses samples as table indices: a damaged file must not hold larger ones.
void limitSamples(FrameEx2& frame)
{
    auto* sample = reinterpret_cast<quint16*>(frame.getImageBuffer());
    const auto largest = static_cast<quint16>((1 << frame.rawBitDepth) - 1);
    const int count = frame.imgWidth * frame.imgHeight;
    for (int i = 0; i < count; ++i)
        sample[i] = std::min(qFromLittleEndian(sample[i]), largest);
}

} // namespace

RecordingReader::RecordingReader(const QString& fileName)
    : content(Recording::open(recordingBaseOf(fileName)))
    , data(dataFileOf(recordingBaseOf(fileName)))
{
    if (!data.open(QIODevice::ReadOnly))
        throw RecordingError(QString("%1: %2").arg(data.fileName(), data.errorString()));
}

QString RecordingReader::name() const
{
    return QFileInfo(data.fileName()).completeBaseName();
}

void RecordingReader::read(std::size_t index, CameraFrame& frame)
{
    const Recording::Entry& entry = content.entries[index];
    const qint64 bytes = content.layout.frameBytes();
    _FrameParams params = entry.params;
    frame.mosaic = content.layout.mosaic;
    frame.stamp = entry.stamp;
    frame.raw.InitFrame(params, static_cast<unsigned char>(content.layout.bitDepth));
    auto* out = reinterpret_cast<char*>(frame.raw.getImageBuffer());
    if (!data.seek(qint64(index) * bytes) || data.read(out, bytes) != bytes)
        throw RecordingError(QString("%1: %2").arg(data.fileName(), data.errorString()));
    if (content.layout.bitDepth > 8)
        limitSamples(frame.raw);
}
