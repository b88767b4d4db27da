#include "CameraControl.h"

namespace
{
constexpr int gatherMs = 15;
} // namespace

CameraControl::CameraControl(SessionObserver& results, QObject* parent)
    : QObject(parent)
    , observer(results)
{
    requestTimer.setSingleShot(true);
    requestTimer.setInterval(gatherMs);
    connect(&requestTimer, &QTimer::timeout, this, &CameraControl::applyRequestedRegion);
}

CameraControl::~CameraControl() = default;

void CameraControl::open(std::unique_ptr<Camera> camera)
{
    close();
    cameraInfo = camera->info();
    current = camera->settings();
    session = std::make_unique<LiveSession>(std::move(camera), observer);
    passProcessing();
    emit opened();
    emit settingsChanged(current);
    session->start(Delivery::NewestWins);
}

void CameraControl::close()
{
    requestTimer.stop();
    requested.reset();
    if (!session)
        return;
    session.reset();
    emit closed();
}

SessionCounters CameraControl::counters() const
{
    return session ? session->counters() : SessionCounters();
}

PlaybackControl* CameraControl::playback()
{
    return session ? session->camera().playback() : nullptr;
}

void CameraControl::setProcessing(const ProcessingSettings& settings)
{
    processing = settings;
    passProcessing();
}

void CameraControl::passProcessing()
{
    if (!session)
        return;
    session->setProcessing(processing);
    // These two work in the frame's own samples, which the window measures.
    ImgCorrectionSettings& correction = processing.correction;
    session->keepRaw(correction.isFlagSet(CS_MEDIAN_FILTER) || correction.flipH ||
                     correction.flipV);
}

void CameraControl::countShown()
{
    if (session)
        session->countShown();
}

void CameraControl::apply(const CameraSettings& wanted)
{
    if (!session)
        return;
    try {
        current = session->camera().apply(wanted);
    } catch (const std::exception& error) {
        emit failed(QString::fromUtf8(error.what()));
    }
    // Also after a refusal: who showed what was wanted shows what holds.
    emit settingsChanged(current);
}

void CameraControl::requestRegion(const SensorRegion& region)
{
    // A Shift-click without a drag asks for an empty region.
    if (!session || cameraInfo.fixedGeometry || region.width < 1 || region.height < 1)
        return;
    requested = region;
    if (!requestTimer.isActive())
        requestTimer.start();
}

void CameraControl::applyRequestedRegion()
{
    if (!requested)
        return;
    CameraSettings wanted = current;
    wanted.region = *requested;
    requested.reset();
    apply(wanted);
}
