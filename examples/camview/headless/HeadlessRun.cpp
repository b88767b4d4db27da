#include "HeadlessRun.h"

#include "PictureFile.h"
#include "cameras/CameraFactory.h"
#include "core/Stopwatch.h"

#include <QDir>
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
    const bool realTime = session->camera().settings().frameRate > 0;
    {
        const Stopwatch watch(elapsedMs);
        session->start(realTime ? Delivery::NewestWins : Delivery::EveryFrame, wantedFrames);
        waitForEnd();
        session->stop();
    }
    const SessionCounters counters = session->counters();
    printSummary(counters);
    if (!failure.isEmpty())
        QTextStream(stderr) << "camview: " << failure << '\n';
    return failure.isEmpty() ? 0 : 1;
}

void HeadlessRun::prepare()
{
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
    makeOutputFolder();
}

void HeadlessRun::makeOutputFolder() const
{
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
    while (!finished && !interrupted && std::chrono::steady_clock::now() < end)
        changed.wait_for(lock, std::min<Seconds>(100ms, end - std::chrono::steady_clock::now()));
    finished = true;
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
        const QString problem = writePng(frame.picture, path);
        if (!problem.isEmpty())
            finish(QString("%1: %2").arg(path, problem));
    }
}

void HeadlessRun::streamChanged(StreamEvent event, const QString& detail)
{
    if (event == StreamEvent::Failed)
        finish(detail);
    else if (event == StreamEvent::Ended)
        finish(QString());
}
