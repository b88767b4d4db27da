#include "LiveSession.h"

LiveSession::LiveSession(std::unique_ptr<Camera> what, SessionObserver& who)
    : source(std::move(what))
    , observer(who)
{
}

LiveSession::~LiveSession()
{
    stop();
}

void LiveSession::setProcessing(const ProcessingSettings& settings)
{
    const std::lock_guard lock(settingsMutex);
    wanted = settings;
    settingsChanged = true;
}

void LiveSession::start(Delivery how, std::uint64_t limit)
{
    stop();
    delivery = how;
    frameLimit = limit;
    slot.open(delivery);
    processing = std::thread([this] { processFrames(); });
    source->start(*this);
}

void LiveSession::stop()
{
    // A source that waits for the slot must be let go before it can end. One that does not wait
    // ends first, so that no frame comes between the two and is recorded but not received.
    if (delivery == Delivery::EveryFrame)
        slot.close();
    source->stop();
    slot.close();
    if (processing.joinable())
        processing.join();
    // The limit, or a failure, may leave a frame that nobody took.
    if (slot.take())
        ++dropped;
}

SessionCounters LiveSession::counters() const
{
    SessionCounters counters;
    counters.received = received;
    counters.processed = processed;
    counters.shown = shown;
    counters.dropped = dropped;
    counters.recorded = recording.status().recorded;
    counters.camera = source->losses();
    return counters;
}

void LiveSession::frameArrived(PooledFrame frame)
{
    if (limitReached())
        return;
    ++received;
    recording.offer(*frame, delivery == Delivery::EveryFrame);
    if (slot.put(std::move(frame)) != PutResult::Stored)
        ++dropped;
}

// Where every frame becomes a picture no more are taken in than the limit allows; where frames
// may be dropped, only the pictures count.
bool LiveSession::limitReached() const
{
    const std::uint64_t count = delivery == Delivery::EveryFrame ? received : processed;
    return frameLimit > 0 && count >= frameLimit;
}

void LiveSession::streamChanged(StreamEvent event, const QString& detail)
{
    observer.streamChanged(event, detail);
}

void LiveSession::processFrames()
{
    try {
        while (const PooledFrame frame = slot.take()) {
            adoptSettings();
            processFrame(*frame);
            if (frameLimit > 0 && processed == frameLimit) {
                slot.close();
                observer.streamChanged(StreamEvent::Ended, QString());
                return;
            }
        }
    } catch (const std::exception& error) {
        slot.close();
        observer.streamChanged(StreamEvent::Failed, QString::fromUtf8(error.what()));
    }
}

void LiveSession::processFrame(CameraFrame& frame)
{
    const bool keep = rawWanted;
    if (keep)
        copyRaw(frame, rawCopy);
    ProcessedFrame result = processor.process(frame);
    result.untouched = keep ? &rawCopy : nullptr;
    ++processed;
    observer.pictureReady(result);
}

void LiveSession::adoptSettings()
{
    const std::lock_guard lock(settingsMutex);
    if (!settingsChanged)
        return;
    processor.setSettings(wanted);
    settingsChanged = false;
}
