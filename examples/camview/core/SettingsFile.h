#pragma once

#include <AppComponents/imgproc/ImgCorrectionSettings.h>

#include <QString>

/// Whether a file is a whole settings file: the library's reader takes what it finds in any text
/// and reports no damage.
bool isSettingsFile(const QString& fileName);

/// Writes a settings file, whole or not at all.
/// \return an empty text, or why it could not be written
QString writeSettingsFile(const QString& fileName, const ImgCorrectionSettings& settings);
