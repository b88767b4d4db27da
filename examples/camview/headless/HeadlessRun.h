#pragma once

#include "Options.h"
#include "core/LiveSession.h"
#include "core/Snapshot.h"

#include <condition_variable>
#include <mutex>

/// One run without a window: opens the source, sends its frames through the processing, writes
/// what was asked for, and prints a summary.
class HeadlessRun : public SessionObserver
{
public:
    explicit HeadlessRun(const Options& wanted);

    /// \return the process's exit status: 0, or 1 when the run broke off
    /// \throws UsageError, CameraError before anything was written
    int run();

private:
    void pictureReady(const ProcessedFrame& frame) override;
    void streamChanged(StreamEvent event, const QString& detail) override;

    void prepare();
    void startRecording();
    void stream();
    bool isLive() const;
    bool recordsLive() const;
    void waitForEnd();
    void finish(const QString& problem);
    void complain(const QString& what, const QString& problem);
    void makeOutputFolder();
    void printSummary(const SessionCounters& counters) const;

    const Options options;
    std::unique_ptr<LiveSession> session;
    std::uint64_t wantedFrames = 0; ///< 0: until the source or the time ends

    std::mutex mutex;
    std::condition_variable changed;
    bool finished = false;
    QString failure;

    Snapshot snapshot;
    std::uint64_t pictures = 0;
    int pictureWidth = 0;
    int pictureHeight = 0;
    StageTimes sum;
    double writingMs = 0;
    double elapsedMs = 0;
};
