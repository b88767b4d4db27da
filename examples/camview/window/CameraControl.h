#pragma once

#include "core/LiveSession.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

/// The window's hand on the camera: opens a source, applies settings, and confirms what holds.
class CameraControl : public QObject
{
    Q_OBJECT

public:
    /// \param results gets the results of every session; must outlive this object
    explicit CameraControl(SessionObserver& results, QObject* parent = nullptr);
    ~CameraControl() override;

    /// Streams from \p camera; the one before is closed.
    void open(std::unique_ptr<Camera> camera);
    void close();
    bool isOpen() const { return session != nullptr; }

    CameraInfo info() const { return cameraInfo; }
    CameraSettings settings() const { return current; }
    SessionCounters counters() const;
    PlaybackControl* playback();
    LiveSession* liveSession() { return session.get(); }

    /// Settings for the frames to come; kept for the next session too.
    void setProcessing(const ProcessingSettings& settings);
    void countShown();

public slots:
    /// Sets what is wanted as nearly as the camera can; settingsChanged tells what holds.
    void apply(const CameraSettings& wanted);

    /// Asks for another part of the sensor. Requests in quick succession, as a drag makes them,
    /// are gathered, so that a slow camera gets the last one and not all of them.
    void requestRegion(const SensorRegion& region);

signals:
    /// Another camera is open.
    void opened();
    /// The camera that was open is gone, with everything that belonged to it.
    void closed();
    /// The camera refused.
    void failed(const QString& why);
    /// What now holds at the camera.
    void settingsChanged(const CameraSettings& settings);

private:
    void passProcessing();
    void applyRequestedRegion();

    SessionObserver& observer;
    std::unique_ptr<LiveSession> session;
    CameraInfo cameraInfo;
    CameraSettings current;
    ProcessingSettings processing;
    std::optional<SensorRegion> requested;
    QTimer requestTimer;
};
