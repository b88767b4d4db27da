#pragma once

#include "core/Camera.h"
#include "core/ProcessingSettings.h"

#include <QJsonObject>

/// What the settings file keeps of a camera. What is missing stays as in \p fallback, and so does
/// the region where the sensor had another size.
QJsonObject toJson(const CameraSettings& settings, const CameraInfo& info);
CameraSettings cameraSettingsFrom(const QJsonObject& json, const CameraSettings& fallback,
                                  const CameraInfo& info);

/// What the library's own settings file does not hold.
QJsonObject toJson(const ProcessingSettings& settings);
void readProcessing(const QJsonObject& json, ProcessingSettings& settings);
