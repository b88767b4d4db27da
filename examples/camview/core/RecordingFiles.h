#pragma once

#include "CameraFrame.h"

#include <QFile>
#include <QString>

#include <stdexcept>
#include <vector>

/// A recording that cannot be started, written or opened; what() is one line for the user.
class RecordingError : public std::runtime_error
{
public:
    explicit RecordingError(const QString& message)
        : std::runtime_error(message.toStdString())
    {
    }
};

/// What all frames of a recording have in common.
///
/// A recording called B is three files. B.dat holds the raw frames, one after the other, and
/// B.dat.dim the bytes of a row and the number of rows: the library writes both. B.csv, written
/// by camview, begins with this record in lines that start with "#", then has a line of names
/// and one line per frame: its number, the camera's and the host's time in nanoseconds, and its
/// place on the sensor.
struct RecordingLayout {
    QString cameraName;
    int columns = 0;
    int rows = 0;
    int bitDepth = 8;
    bool mosaic = false;

    /// The samples of a frame as the files count them: one byte each.
    int rowBytes() const { return columns * (bitDepth > 8 ? 2 : 1); }
    qint64 frameBytes() const { return qint64(rowBytes()) * rows; }

    static RecordingLayout of(const CameraFrame& frame);
    bool fits(const CameraFrame& frame) const;
};

QString dataFileOf(const QString& baseName);
QString stampFileOf(const QString& baseName);
/// B for B, B.dat, B.dat.dim and B.csv.
QString recordingBaseOf(const QString& fileName);
/// Whether any file of a recording of that name is there.
bool recordingExists(const QString& baseName);

/// Writes the stamp file of a recording, so that it is whole after each frame.
class StampWriter
{
public:
    /// \throws RecordingError when the file cannot be written
    StampWriter(const QString& baseName, const RecordingLayout& layout);
    /// \return whether the line is on its way to the disk
    bool append(const CameraFrame& frame);
    void close() { file.close(); }

private:
    QFile file;
};

/// A recording as it is found on the disk.
struct Recording {
    struct Entry {
        FrameStamp stamp;
        _FrameParams params;
    };

    RecordingLayout layout;
    std::vector<Entry> entries; ///< one per frame that is whole in the data file

    /// Reads what a recording says about itself. Frames without a line, as a crash may leave
    /// them, follow the last line evenly; without a stamp file the frames are taken as 8-bit
    /// samples of a mosaic.
    /// \throws RecordingError
    static Recording open(const QString& baseName);
};

/// Shortens a recording to its first \p frames frames, in both files.
void trimRecording(const QString& baseName, const RecordingLayout& layout, qint64 frames);
