#pragma once

#include "LivePicture.h"
#include "core/LiveSession.h"

#include <QObject>

#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <atomic>
#include <memory>
#include <mutex>

/// The bridge from the processing thread to the window. It keeps one picture waiting: a window
/// that is slow sees the newest picture next and never makes a queue grow.
///
/// It also writes the numbers that the graphs show, through accessors of its own, because an
/// accessor belongs to one thread.
class LiveFeed : public QObject, public SessionObserver
{
    Q_OBJECT

public:
    explicit LiveFeed(QObject* parent = nullptr);
    ~LiveFeed() override;

    /// The newest picture since the last call, or null. It is valid until the next call.
    LivePicture* takePicture();

    /// How the display mirrors the picture; any thread may call these.
    void setFlips(bool flipH, bool flipV);
    /// Whether pictures come with a clipping mask.
    void setClippingWanted(bool wanted) { clippingWanted = wanted; }

    void pictureReady(const ProcessedFrame& frame) override;
    void streamChanged(StreamEvent event, const QString& detail) override;

signals:
    /// A picture waits. Not repeated until it has been taken.
    void pictureWaiting();
    /// What became of the stream, from any thread.
    void streamEvent(int event, const QString& detail);

private:
    struct Graphs {
        CLogAccessor log;
        CValSeqWriterAccessor rate{log, L"Frame rate, fps"};
        CValSeqWriterAccessor processing{log, L"Processing, ms"};
        CValSeqWriterAccessor tone{log, L"Tone stage, ms"};
        CValSeqWriterAccessor level{log, L"Mean level, %"};
    };

    void fill(LivePicture& picture, const ProcessedFrame& frame) const;
    void writeGraphs(const ProcessedFrame& frame);

    std::unique_ptr<LivePicture> writing = std::make_unique<LivePicture>();
    std::unique_ptr<LivePicture> waiting = std::make_unique<LivePicture>();
    std::unique_ptr<LivePicture> shown = std::make_unique<LivePicture>();
    std::mutex mutex; // guards waiting and isWaiting
    bool isWaiting = false;

    std::atomic<bool> flipH{false};
    std::atomic<bool> flipV{false};
    std::atomic<bool> clippingWanted{false};

    Graphs graphs;
    std::chrono::nanoseconds lastArrival{0};
    double meanDistance = 0.0; // seconds between frames
};
