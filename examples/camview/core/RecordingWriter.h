#pragma once

#include "RecordingFiles.h"

#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <filesystem>

/// The name under which the library's frame-sequence log of a folder is registered. The first
/// call for a folder makes and registers the log.
std::wstring frameLogOf(const QString& folder);

/// Writes the files of one recording and makes sure that they arrive.
class RecordingWriter
{
public:
    /// \param logs an accessor of the folder's frame-sequence log
    /// \throws RecordingError, or what the log throws, when the files cannot be made
    RecordingWriter(CLogAccessor& logs, const QString& baseName, const RecordingLayout& layout);
    ~RecordingWriter();

    /// \throws RecordingError when the disk did not take the frame
    void write(const CameraFrame& frame);
    qint64 framesWritten() const { return written; }
    /// Closes the files and cuts off what is not whole.
    /// \return the frames that the recording holds
    qint64 finish();

private:
    qint64 bytesOnDisk() const;

    const QString baseName;
    const std::filesystem::path dataPath;
    const RecordingLayout layout;
    StampWriter stamps;
    CFrameSeqWriterAccessor data;
    qint64 written = 0;
    bool open = true;
};
