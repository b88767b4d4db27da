#pragma once

#include "core/Camera.h"
#include "core/ProcessingSettings.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <stdexcept>

/// Something on the command line is wrong; what() is one line for the user.
class UsageError : public std::runtime_error
{
public:
    explicit UsageError(const QString& message)
        : std::runtime_error(message.toStdString())
    {
    }
};

/// The camera settings that were asked for; the others stay as the camera has them.
struct CameraWishes {
    std::optional<SensorRegion> region;
    std::optional<int> decimation;
    std::optional<int> bitDepth;
    std::optional<double> exposureMs;
    std::optional<double> gainDb;
    std::optional<double> frameRate;
    std::optional<bool> mirrorH;
    std::optional<bool> mirrorV;

    CameraSettings appliedTo(CameraSettings settings) const;
};

/// What the command line asks for.
struct Options {
    bool headless = false;
    bool listCameras = false;
    bool help = false;
    bool version = false;
    QString source = "sim";
    std::optional<std::uint64_t> frames;
    std::optional<double> durationS;
    QString outputFolder;
    QString recordName;   ///< base name of a recording, or empty
    QString snapshotName; ///< PNG file of the last picture, or empty
    QString logConfigFile;
    QString settingsFile;
    bool json = false;
    CameraWishes camera;
    ProcessingSettings processing; ///< of a run without a window
    /// Sets what was asked for; the rest stays, as it was saved for a camera.
    std::function<void(ProcessingSettings&)> adjustProcessing;
    QString grabFolder; ///< for pictures of the window, or empty
};

/// \param arguments without the program's name
/// \throws UsageError
Options parseOptions(const QStringList& arguments);

QString optionsHelp();
