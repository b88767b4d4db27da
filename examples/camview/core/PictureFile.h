#pragma once

#include <AppComponents/frames/FrameEx2.h>

#include <QString>

/// Writes a finished picture as PNG, whole or not at all.
/// \return an empty text, or why it could not be written
QString writePng(FrameEx2& picture, const QString& fileName);
