#include "HeadlessRun.h"

#include "cameras/CameraFactory.h"
#include "core/Logging.h"
#include "core/PictureFile.h"
#include "core/SettingsFile.h"
#include "core/Stopwatch.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <csignal>

namespace
{

using namespace std::chrono_literals;

constexpr std::uint64_t framesByDefault = 10;

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int)
{
    interrupted = 1;
}

} // namespace

HeadlessRun::HeadlessRun(const Options& wanted)
    : options(wanted)
{
}

int HeadlessRun::run()
{
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    prepare();
    stream();
    if (!options.snapshotName.isEmpty())
        complain(options.snapshotName, snapshot.isEmpty() ? QString("no picture came")
                                                          : snapshot.write(options.snapshotName));
    if (!options.settingsFile.isEmpty())
        complain(options.settingsFile,
                 writeSettingsFile(options.settingsFile, options.processing.correction));
    const SessionCounters counters = session->counters();
    printSummary(counters);
    if (!failure.isEmpty())
        QTextStream(stderr) << "camview: " << failure << '\n';
    return failure.isEmpty() ? 0 : 1;
}

void HeadlessRun::stream()
{
    // Frames that are recorded are counted by the recorder, pictures by the session.
    const std::uint64_t pictureLimit = recordsLive() ? 0 : wantedFrames;
    const Stopwatch watch(elapsedMs);
    session->start(isLive() ? Delivery::NewestWins : Delivery::EveryFrame, pictureLimit);
    waitForEnd();
    session->stop();
    session->recorder().stop();
    complain("recording stopped", session->recorder().status().problem);
}

// A source that runs at a rate of its own waits for nobody.
bool HeadlessRun::isLive() const
{
    return session->camera().settings().frameRate > 0 || session->camera().info().live;
}

bool HeadlessRun::recordsLive() const
{
    return !options.recordName.isEmpty() && isLive();
}

void HeadlessRun::prepare()
{
    if (options.logConfigFile.isEmpty())
        setUpUserLogging();
    else
        setUpLogging(options.logConfigFile);
    session = std::make_unique<LiveSession>(openCamera(options.source), *this);
    Camera& camera = session->camera();
    camera.apply(options.camera.appliedTo(camera.settings()));
    session->setProcessing(options.processing);

    const std::uint64_t available = camera.info().frameCount;
    if (options.frames)
        wantedFrames = *options.frames;
    else if (available == 0 && !options.durationS)
        wantedFrames = framesByDefault;
    if (available > 0 && wantedFrames > available)
        throw CameraError(QString("%1: too short: holds %2 frames, not %3")
                              .arg(options.source)
                              .arg(available)
                              .arg(wantedFrames));
    startRecording();
    makeOutputFolder();
}

void HeadlessRun::startRecording()
{
    if (options.recordName.isEmpty())
        return;
    const QFileInfo target(options.recordName);
    RecordingRequest request;
    request.folder = target.absolutePath();
    request.name = target.fileName();
    request.frameLimit = recordsLive() ? wantedFrames : 0;
    session->recorder().start(request, session->camera().info().name);
}

void HeadlessRun::makeOutputFolder()
{
    session->keepRaw(!options.snapshotName.isEmpty());
    for (const QString& file : {options.snapshotName, options.settingsFile}) {
        const QFileInfo folder(QFileInfo(file).absolutePath());
        if (!file.isEmpty() && (!folder.isDir() || !folder.isWritable()))
            throw UsageError(QString("%1: not in a folder that can be written").arg(file));
    }
    if (!options.outputFolder.isEmpty() && !QDir().mkpath(options.outputFolder))
        throw UsageError(QString("%1: the folder cannot be made").arg(options.outputFolder));
}

void HeadlessRun::waitForEnd()
{
    using Seconds = std::chrono::duration<double>;
    const auto start = std::chrono::steady_clock::now();
    const auto end = start + Seconds(options.durationS.value_or(1e9));
    std::unique_lock lock(mutex);
    // A signal handler can wake nobody: the flag that it sets is looked at now and then.
    // And the recorder, which may stop by itself, is asked.
    while (!finished && !interrupted && std::chrono::steady_clock::now() < end) {
        const Seconds left = end - std::chrono::steady_clock::now();
        changed.wait_for(lock, std::min<Seconds>(20ms, left));
        if (!options.recordName.isEmpty() && !session->recorder().status().recording)
            break;
    }
}

void HeadlessRun::complain(const QString& what, const QString& problem)
{
    if (!problem.isEmpty())
        finish(QString("%1: %2").arg(what, problem));
}

void HeadlessRun::finish(const QString& problem)
{
    const std::lock_guard lock(mutex);
    if (failure.isEmpty())
        failure = problem;
    finished = true;
    changed.notify_all();
}

void HeadlessRun::pictureReady(const ProcessedFrame& frame)
{
    ++pictures;
    sum += frame.times;
    pictureWidth = frame.picture.imgWidth;
    pictureHeight = frame.picture.imgHeight;
    session->countShown();
    if (!options.outputFolder.isEmpty()) {
        const Stopwatch watch(writingMs);
        const QString name = QString("frame_%1.png").arg(pictures, 6, 10, QChar('0'));
        const QString path = QDir(options.outputFolder).filePath(name);
        complain(path, writePng(frame.picture, path));
    }
    if (!options.snapshotName.isEmpty()) {
        const Stopwatch watch(writingMs);
        snapshot.take(frame);
    }
}

void HeadlessRun::streamChanged(StreamEvent event, const QString& detail)
{
    switch (event) {
    case StreamEvent::Ended:
        finish(QString());
        break;
    case StreamEvent::Failed:
        finish(detail);
        break;
    case StreamEvent::Vanished:
        QTextStream(stderr) << "camview: waiting for the camera to return: " << detail << '\n';
        break;
    case StreamEvent::Returned:
        QTextStream(stderr) << "camview: the camera is back\n";
        break;
    }
}
