#pragma once

#include "core/Recorder.h"

#include <QObject>
#include <QTimer>

class CameraControl;

/// The window's hand on the recorder: starts and stops it, and watches what becomes of it.
class RecordingControl : public QObject
{
    Q_OBJECT

public:
    explicit RecordingControl(CameraControl& camera, QObject* parent = nullptr);

    /// Starts a recording of the open camera; a failure is announced.
    void start(const RecordingRequest& request);
    /// Ends it as soon as what waits is written, which a slow disk may take its time for.
    void requestStop();
    /// The same, and waits.
    void stop();
    bool isRunning() const { return running; }

    /// Seconds before the start that recordings begin with; kept for the cameras to come.
    void setPreTrigger(double seconds);

signals:
    void runningChanged(bool running);
    /// How it goes, several times a second while a camera is open.
    void statusChanged(const RecorderStatus& status);
    /// A recording could not be started, or stopped though nobody asked.
    void failed(const QString& why);

private:
    Recorder* recorder();
    void watch();
    void setRunning(bool on);

    CameraControl& camera;
    QTimer watchTimer;
    double preTriggerSeconds = 0.0;
    bool running = false;
};
