#pragma once

#include <AppComponents/frames/FrameEx2.h>

#include <QImage>
#include <QString>

/// Both write the file whole or not at all.
/// \return an empty text, or one line for the user why nothing was written

/// Writes the picture as it is shown, as PNG.
QString savePictureSnapshot(const QImage& picture, const QString& fileName);

/// Writes the samples as the camera sent them, without a header; above 8 bits as little-endian
/// words. What is needed to read them again is told by rawSource().
QString saveRawSnapshot(const FrameEx2& raw, const QString& fileName);

/// The source text with which camview opens a raw snapshot again.
QString rawSource(const FrameEx2& raw, bool mosaic, const QString& fileName);
