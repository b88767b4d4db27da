#pragma once

#include "Camera.h"
#include "FrameQueue.h"
#include "RecordingFiles.h"

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

class CLogAccessor;

/// What to record, and where.
struct RecordingRequest {
    QString folder;               ///< must exist
    QString name;                 ///< of the recording; empty: made from the pattern
    QString pattern = "%c_%d_%t"; ///< see fileNameFrom()
    std::uint64_t frameLimit = 0; ///< frames from the start on; 0: until stopped
    double secondsLimit = 0;      ///< seconds from the start on; 0: until stopped
    std::size_t queueFrames = 64; ///< frames that may wait for the disk
    qint64 stopBytes = 256 << 20; ///< recording stops when the disk has less left
    qint64 warnBytes = 2LL << 30; ///< RecorderStatus::diskLow is set when it has less
};

/// How a recording goes, or how the last one went.
struct RecorderStatus {
    bool recording = false;
    QString baseName;            ///< path without the files' endings
    std::uint64_t recorded = 0;  ///< frames written
    std::uint64_t unwritten = 0; ///< frames accepted that did not get to the disk
    std::size_t waiting = 0;     ///< frames in the queue, those kept for a trigger included
    QString problem;             ///< why it stopped though nobody asked; empty otherwise
    qint64 freeBytes = 0;
    double secondsLeft = 0; ///< until stopBytes is reached at the present rate; 0: not known
    bool diskLow = false;
};

/// Writes raw frames to disk through the library's frame-sequence log, from a bounded queue and
/// on a thread of its own, so that neither display nor processing matters to a recording. A
/// frame is never lost in silence: when the queue overflows or the disk fails, the recording
/// stops, says why, and leaves files that hold every frame up to there.
///
/// offer() belongs to the camera's thread, everything else to the controlling thread; status()
/// may be called on any.
class Recorder
{
public:
    Recorder() = default;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder();

    /// While nothing is recorded, keeps the frames of the last seconds (as far as they take no
    /// more than \p memoryBytes): the next recording begins with them. 0 keeps none.
    void setPreTrigger(double seconds, qint64 memoryBytes = 512 << 20);

    /// Starts a recording; one that runs is finished first.
    /// \return the base name of its files
    /// \throws RecordingError when it cannot be started
    QString start(const RecordingRequest& request, const QString& cameraName);
    /// Takes no more frames. What is queued is still written, while the caller goes on.
    void requestStop();
    /// The same, and returns when the files are closed.
    void stop();

    /// Copies the frame if it is wanted.
    /// \param mayWait for a source that can wait: waits for room in the queue
    void offer(const CameraFrame& frame, bool mayWait);

    RecorderStatus status() const;

private:
    enum class Phase { Idle, Recording, Finishing };

    bool admit(std::unique_lock<std::mutex>& lock, const CameraFrame& frame, bool mayWait);
    void makeRoomForTrigger(const CameraFrame& frame);
    void forgetOlderThanTrigger(std::chrono::nanoseconds now);
    void finish(const QString& why);
    PooledFrame next();
    void writeFrames(CLogAccessor& logs);
    void watchDisk(qint64 frameBytes, std::chrono::nanoseconds begin);

    mutable std::mutex mutex;
    std::condition_variable changed;
    FramePool pool;
    FrameQueue queue;
    Phase phase = Phase::Idle;
    double preTriggerSeconds = 0;
    qint64 preTriggerBytes = 0;
    RecordingRequest request;
    std::filesystem::path folderPath;
    QString cameraName;
    std::chrono::nanoseconds startTime{0};
    std::uint64_t accepted = 0;
    std::uint64_t acceptedFromStart = 0;
    RecordingLayout layout;
    RecorderStatus state;
    std::thread writer;
};
