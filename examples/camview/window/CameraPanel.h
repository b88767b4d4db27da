#pragma once

#include "core/Camera.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class SpinRow;

/// The camera's own controls. What the user wants is asked for; what is shown is what the camera
/// confirmed.
class CameraPanel : public QWidget
{
    Q_OBJECT

public:
    explicit CameraPanel(QWidget* parent = nullptr);

    void setCamera(const CameraInfo& info);
    /// Shows what holds.
    void setSettings(const CameraSettings& settings);

signals:
    void settingsRequested(const CameraSettings& wanted);

private:
    void connectControls();
    template <typename Edit>
    void request(Edit edit);

    SpinRow* exposure;
    SpinRow* gain;
    SpinRow* frameRate;
    QComboBox* depth;
    QComboBox* decimation;
    QCheckBox* mirrorH;
    QCheckBox* mirrorV;
    CameraSettings current;
};
