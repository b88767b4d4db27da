#pragma once

#include "SimulatedSensor.h"
#include "SourceText.h"
#include "StreamingCamera.h"

/// The simulated sensor as a camera: before the test chart ("sim") or a photograph ("photo").
class SimCamera : public StreamingCamera
{
public:
    static std::unique_ptr<Camera> openChart(const SourceText& source);
    static std::unique_ptr<Camera> openPhoto(const SourceText& source);

    SimCamera(QString cameraName, std::unique_ptr<SimulatedSensor> what, int bitDepth);
    ~SimCamera() override;

    CameraInfo info() const override;

protected:
    CameraSettings adjusted(const CameraSettings& wanted) const override;
    bool fill(CameraFrame& frame, const CameraSettings& now) override;

private:
    const QString name;
    const std::unique_ptr<SimulatedSensor> sensor;
};
