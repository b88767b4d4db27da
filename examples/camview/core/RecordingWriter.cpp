#include "RecordingWriter.h"

#include <AppComponents/log/CFileFrameSequenceLog.h>
#include <AppComponents/log/CLogManager.h>

#include <QFileInfo>

#include <algorithm>

namespace
{

// The log buffers less than this.
constexpr qint64 bufferAllowance = 1 << 20;

} // namespace

std::wstring frameLogOf(const QString& folder)
{
    const std::wstring path = QFileInfo(folder).absoluteFilePath().toStdWString();
    std::wstring name = L"camview recordings in " + path;
    if (CLogManager::getLogList(seqienceLog, name).empty())
        CLogManager::registerLogAndAddToGC(new CFileFrameSequenceLog(path), name);
    return name;
}

RecordingWriter::RecordingWriter(CLogAccessor& logs, const QString& base,
                                 const RecordingLayout& what)
    : baseName(base)
    , dataPath(dataFileOf(base).toStdWString())
    , layout(what)
    , stamps(base, what)
    , data(logs, QFileInfo(base).fileName().toStdWString())
{
    // The log counts one byte per pixel: a row of words is twice as wide.
    data.open(layout.rowBytes(), layout.rows);
}

RecordingWriter::~RecordingWriter()
{
    finish();
}

void RecordingWriter::write(const CameraFrame& frame)
{
    // The data first: a line without its frame would claim what is not there.
    data.write(frame.raw.getImageBuffer());
    const qint64 expected = (written + 1) * layout.frameBytes();
    // The log does not tell whether the disk took the frame; the file's size does.
    if (bytesOnDisk() + bufferAllowance < expected || !stamps.append(frame))
        throw RecordingError("the disk does not take any more");
    ++written;
}

qint64 RecordingWriter::finish()
{
    if (open) {
        data.closeAccessor();
        stamps.close();
        open = false;
    }
    const qint64 bytes = bytesOnDisk();
    const qint64 whole = std::min(written, bytes / layout.frameBytes());
    if (bytes != whole * layout.frameBytes() || whole != written)
        trimRecording(baseName, layout, whole);
    return whole;
}

qint64 RecordingWriter::bytesOnDisk() const
{
    std::error_code error;
    const auto size = std::filesystem::file_size(dataPath, error);
    return error ? 0 : qint64(size);
}
