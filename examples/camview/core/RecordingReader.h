#pragma once

#include "RecordingFiles.h"

/// Reads the frames of a recording as the camera delivered them.
class RecordingReader
{
public:
    /// \param fileName the recording's name or one of its files
    /// \throws RecordingError when there is no recording of that name
    explicit RecordingReader(const QString& fileName);

    const Recording& recording() const { return content; }
    std::size_t frameCount() const { return content.entries.size(); }
    /// The recording's name, without folder and endings.
    QString name() const;

    /// Reads frame \p index, counted from 0, into \p frame.
    /// \throws RecordingError when the file does not give it
    void read(std::size_t index, CameraFrame& frame);

private:
    const Recording content;
    QFile data;
};
