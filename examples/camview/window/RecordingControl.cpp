#include "RecordingControl.h"

#include "CameraControl.h"

#include <QDir>

namespace
{
constexpr int watchMs = 200;
} // namespace

RecordingControl::RecordingControl(CameraControl& source, QObject* parent)
    : QObject(parent)
    , camera(source)
{
    connect(&watchTimer, &QTimer::timeout, this, &RecordingControl::watch);
    connect(&camera, &CameraControl::opened, this, [this] { setPreTrigger(preTriggerSeconds); });
    watchTimer.start(watchMs);
}

Recorder* RecordingControl::recorder()
{
    LiveSession* session = camera.liveSession();
    return session == nullptr ? nullptr : &session->recorder();
}

void RecordingControl::setPreTrigger(double seconds)
{
    preTriggerSeconds = seconds;
    if (Recorder* target = recorder())
        target->setPreTrigger(seconds);
}

void RecordingControl::start(const RecordingRequest& request)
{
    Recorder* target = recorder();
    if (target == nullptr) {
        emit failed(tr("There is no camera to record."));
        return;
    }
    try {
        if (!QDir().mkpath(request.folder))
            throw RecordingError(tr("the folder %1 cannot be made").arg(request.folder));
        target->start(request, camera.info().name);
        setRunning(true);
    } catch (const std::exception& error) {
        emit failed(tr("Cannot record: %1").arg(QString::fromUtf8(error.what())));
    }
}

void RecordingControl::requestStop()
{
    if (Recorder* target = recorder())
        target->requestStop();
}

void RecordingControl::stop()
{
    if (Recorder* target = recorder()) {
        target->stop();
        emit statusChanged(target->status());
    }
    setRunning(false);
}

void RecordingControl::watch()
{
    Recorder* source = recorder();
    const RecorderStatus status = source == nullptr ? RecorderStatus() : source->status();
    if (source != nullptr)
        emit statusChanged(status);
    if (!running || status.recording)
        return;
    setRunning(false);
    if (!status.problem.isEmpty())
        emit failed(tr("The recording has stopped: %1").arg(status.problem));
}

void RecordingControl::setRunning(bool on)
{
    if (std::exchange(running, on) != on)
        emit runningChanged(on);
}
