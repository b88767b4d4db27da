#include "Recorder.h"

#include "FileNamePattern.h"
#include "RecordingWriter.h"

#include <AppComponents/log/DiagnosticPrinting.h>

#include <QDir>
#include <QFileInfo>

#include <optional>

namespace
{

// The accessor that a recording takes to its own thread.
struct FrameLogs {
    explicit FrameLogs(const std::wstring& name)
        : accessor(name)
    {
    }
    CLogAccessor accessor;
};

constexpr std::size_t firstTriggerFrames = 64;

double seconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double>(time).count();
}

qint64 freeBytesOf(const std::filesystem::path& folder)
{
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    return error ? 0 : qint64(space.available);
}

QString inMegabytes(qint64 bytes)
{
    return QString("%1 MB").arg(bytes >> 20);
}

} // namespace

Recorder::~Recorder()
{
    stop();
}

void Recorder::setPreTrigger(double wantedSeconds, qint64 memoryBytes)
{
    const std::lock_guard lock(mutex);
    preTriggerSeconds = wantedSeconds;
    preTriggerBytes = memoryBytes;
    if (phase == Phase::Idle && wantedSeconds <= 0)
        queue.clear();
}

QString Recorder::start(const RecordingRequest& wanted, const QString& camera)
{
    stop();
    const QFileInfo folder(wanted.folder);
    if (!folder.isDir() || !folder.isWritable())
        throw RecordingError(QString("%1: not a folder that can be written").arg(wanted.folder));
    const qint64 freeBytes = freeBytesOf(wanted.folder.toStdWString());
    if (freeBytes < wanted.stopBytes)
        throw RecordingError(
            QString("%1: only %2 left on the disk, the limit is %3")
                .arg(wanted.folder, inMegabytes(freeBytes), inMegabytes(wanted.stopBytes)));
    const QDir dir(wanted.folder);
    const auto isTaken = [&dir](const QString& name) {
        return recordingExists(dir.filePath(name));
    };
    const QString name = wanted.name.isEmpty() ? fileNameFrom(wanted.pattern, camera,
                                                              QDateTime::currentDateTime(), isTaken)
                                               : wanted.name;
    if (isTaken(name))
        throw RecordingError(QString("%1: there is a recording already").arg(dir.filePath(name)));
    auto logs = std::make_shared<FrameLogs>(frameLogOf(wanted.folder));

    const std::lock_guard lock(mutex);
    request = wanted;
    folderPath = wanted.folder.toStdWString();
    cameraName = camera;
    state = {};
    state.recording = true;
    state.baseName = dir.filePath(name);
    state.freeBytes = freeBytes;
    startTime = hostNow();
    // No newer frame has pushed out what waits since the camera paused or a recording ended.
    forgetOlderThanTrigger(startTime);
    accepted = queue.size();
    acceptedFromStart = 0;
    queue.setCapacity(queue.size() + std::max<std::size_t>(wanted.queueFrames, 1));
    phase = Phase::Recording;
    writer = std::thread([this, logs] { writeFrames(logs->accessor); });
    return state.baseName;
}

void Recorder::requestStop()
{
    const std::lock_guard lock(mutex);
    if (phase == Phase::Recording)
        finish(QString());
}

void Recorder::stop()
{
    requestStop();
    if (writer.joinable())
        writer.join();
}

void Recorder::offer(const CameraFrame& frame, bool mayWait)
{
    {
        std::unique_lock lock(mutex);
        if (!admit(lock, frame, mayWait))
            return;
    }
    PooledFrame copy = pool.take();
    copyRaw(frame, *copy);
    const std::lock_guard lock(mutex);
    if (phase == Phase::Finishing || queue.full())
        return;
    queue.push(std::move(copy));
    if (phase == Phase::Idle)
        return;
    ++accepted;
    ++acceptedFromStart;
    if (request.frameLimit > 0 && acceptedFromStart >= request.frameLimit)
        finish(QString());
    changed.notify_all();
}

// Decides whether a frame is to be copied, and makes sure that the queue has room for it.
bool Recorder::admit(std::unique_lock<std::mutex>& lock, const CameraFrame& frame, bool mayWait)
{
    if (phase == Phase::Idle) {
        if (preTriggerSeconds <= 0)
            return false;
        makeRoomForTrigger(frame);
        return true;
    }
    if (phase == Phase::Finishing)
        return false;
    if (accepted == 0 && queue.empty())
        layout = RecordingLayout::of(frame);
    if (!layout.fits(frame)) {
        finish("the size or the depth of the picture changed");
        return false;
    }
    if (request.secondsLimit > 0 &&
        seconds(frame.stamp.hostTime - startTime) >= request.secondsLimit) {
        finish(QString());
        return false;
    }
    if (queue.full() && mayWait)
        changed.wait(lock, [this] { return !queue.full() || phase != Phase::Recording; });
    if (queue.full() && phase == Phase::Recording)
        finish(QString("the disk is too slow: %1 frames were waiting").arg(queue.size()));
    return phase == Phase::Recording;
}

void Recorder::makeRoomForTrigger(const CameraFrame& frame)
{
    if (!queue.empty() && !layout.fits(frame))
        queue.clear();
    layout = RecordingLayout::of(frame);
    forgetOlderThanTrigger(frame.stamp.hostTime);
    while (!queue.empty() && qint64(queue.size() + 1) * layout.frameBytes() > preTriggerBytes)
        queue.pop();
    if (queue.full())
        queue.setCapacity(std::max(firstTriggerFrames, 2 * queue.size()));
}

void Recorder::forgetOlderThanTrigger(std::chrono::nanoseconds now)
{
    const auto tooOld = [&] {
        return seconds(now - queue.front().stamp.hostTime) > preTriggerSeconds;
    };
    while (!queue.empty() && tooOld())
        queue.pop();
}

// The mutex is held. What waits in the queue is still written.
void Recorder::finish(const QString& why)
{
    phase = Phase::Finishing;
    if (state.problem.isEmpty())
        state.problem = why;
    changed.notify_all();
}

PooledFrame Recorder::next()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return !queue.empty() || phase != Phase::Recording; });
    if (queue.empty())
        return {};
    PooledFrame frame = queue.pop();
    changed.notify_all();
    return frame;
}

void Recorder::writeFrames(CLogAccessor& logs)
{
    std::optional<RecordingWriter> files;
    const auto begin = hostNow();
    try {
        while (const PooledFrame frame = next()) {
            if (!files) {
                RecordingLayout described = RecordingLayout::of(*frame);
                described.cameraName = cameraName;
                files.emplace(logs, state.baseName, described);
            }
            files->write(*frame);
            watchDisk(qint64(frame->raw.frameSizeInByte()), begin);
        }
    } catch (const std::exception& error) {
        const std::lock_guard lock(mutex);
        queue.clear();
        finish(QString::fromUtf8(error.what()));
    }
    const qint64 whole = files ? files->finish() : 0;
    if (files)
        logs(InfoLogType) << L"recorded " << whole << L" frames in " << state.baseName << std::endl;
    const std::lock_guard lock(mutex);
    if (files && whole < files->framesWritten())
        finish("the disk did not take the last frames");
    state.recorded = std::uint64_t(whole);
    state.unwritten = accepted - state.recorded;
    state.recording = false;
    phase = Phase::Idle;
    changed.notify_all();
}

void Recorder::watchDisk(qint64 frameBytes, std::chrono::nanoseconds begin)
{
    const qint64 freeBytes = freeBytesOf(folderPath);
    const double elapsed = seconds(hostNow() - begin);
    const std::lock_guard lock(mutex);
    ++state.recorded;
    state.freeBytes = freeBytes;
    state.diskLow = freeBytes < request.warnBytes;
    const double rate = elapsed > 0 ? double(frameBytes) * double(state.recorded) / elapsed : 0;
    if (rate > 0)
        state.secondsLeft = std::max(0.0, double(freeBytes - request.stopBytes) / rate);
    if (freeBytes < request.stopBytes && phase == Phase::Recording) {
        queue.clear();
        finish(QString("only %1 left on the disk").arg(inMegabytes(freeBytes)));
    }
}

RecorderStatus Recorder::status() const
{
    const std::lock_guard lock(mutex);
    RecorderStatus now = state;
    now.waiting = queue.size();
    return now;
}
