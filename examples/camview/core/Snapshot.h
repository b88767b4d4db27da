#pragma once

#include "FrameProcessor.h"

#include <QString>

/// A copy of one picture with the raw frame that it was made of, to be written to disk.
class Snapshot
{
public:
    bool isEmpty() const { return empty; }

    /// Copies the picture, and the raw samples where the session keeps them.
    void take(const ProcessedFrame& frame);

    /// Writes the picture as PNG and, beside it with the ending ".raw", the raw frame.
    /// \return an empty text, or why they could not be written
    QString write(const QString& pngName);

    /// The source that shows the raw frame again.
    QString rawSource(const QString& pngName) const;

private:
    static QString rawNameOf(const QString& pngName);

    FrameEx2 picture;
    CameraFrame raw;
    bool empty = true;
    bool hasRaw = false;
};
