#include "HeadlessRun.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace
{

double perFrame(double sum, std::uint64_t frames)
{
    return frames > 0 ? sum / double(frames) : 0;
}

double perSecond(std::uint64_t frames, double milliseconds)
{
    return milliseconds > 0 ? double(frames) * 1000 / milliseconds : 0;
}

QJsonObject countersAsJson(const SessionCounters& counters)
{
    return {{"received", double(counters.received)},
            {"processed", double(counters.processed)},
            {"shown", double(counters.shown)},
            {"dropped", double(counters.dropped)},
            {"recorded", double(counters.recorded)},
            {"lost", double(counters.camera.lost)},
            {"incomplete", double(counters.camera.incomplete)}};
}

QJsonObject timesAsJson(const StageTimes& sum, std::uint64_t frames)
{
    return {
        {"average", perFrame(sum.average, frames)}, {"histogram", perFrame(sum.histogram, frames)},
        {"process", perFrame(sum.process, frames)}, {"tone", perFrame(sum.tone, frames)},
        {"grey", perFrame(sum.grey, frames)},       {"flip", perFrame(sum.flip, frames)},
        {"total", perFrame(sum.total(), frames)}};
}

void printTimes(QTextStream& out, const StageTimes& sum, std::uint64_t frames)
{
    const struct {
        const char* name;
        double sum;
    } stages[] = {{"average", sum.average}, {"process", sum.process}, {"  of it tone", sum.tone},
                  {"grey", sum.grey},       {"flip", sum.flip},       {"histogram", sum.histogram},
                  {"total", sum.total()}};
    for (const auto& stage : stages)
        out << QString("  %1 %2 ms\n")
                   .arg(stage.name, -14)
                   .arg(perFrame(stage.sum, frames), 8, 'f', 3);
}

} // namespace

void HeadlessRun::printSummary(const SessionCounters& counters) const
{
    // Encoding the pictures shares the processing thread: it is left out of the rates, unless
    // the source has a rate of its own and went on meanwhile.
    const double streamMs = isLive() ? elapsedMs : elapsedMs - writingMs;
    QTextStream out(stdout);
    if (options.json) {
        const QJsonObject summary{{"source", session->camera().info().name},
                                  {"width", pictureWidth},
                                  {"height", pictureHeight},
                                  {"frames", double(pictures)},
                                  {"seconds", streamMs / 1000},
                                  {"framesPerSecond", perSecond(pictures, streamMs)},
                                  {"processingFramesPerSecond", perSecond(pictures, sum.total())},
                                  {"stageMilliseconds", timesAsJson(sum, pictures)},
                                  {"counters", countersAsJson(counters)},
                                  {"recording", session->recorder().status().baseName},
                                  {"snapshotSource", snapshot.rawSource(options.snapshotName)},
                                  {"failure", failure}};
        out << QJsonDocument(summary).toJson(QJsonDocument::Compact) << '\n';
        return;
    }
    out << QString("%1: %2 frames of %3 x %4 in %5 s, %6 frames per second\n")
               .arg(session->camera().info().name)
               .arg(pictures)
               .arg(pictureWidth)
               .arg(pictureHeight)
               .arg(streamMs / 1000, 0, 'f', 3)
               .arg(perSecond(pictures, streamMs), 0, 'f', 1);
    out << QString("received %1, processed %2, dropped %3, recorded %4, lost %5, incomplete %6\n")
               .arg(counters.received)
               .arg(counters.processed)
               .arg(counters.dropped)
               .arg(counters.recorded)
               .arg(counters.camera.lost)
               .arg(counters.camera.incomplete);
    out << "time per frame\n";
    printTimes(out, sum, pictures);
    out << QString("processing alone: %1 frames per second\n")
               .arg(perSecond(pictures, sum.total()), 0, 'f', 1);
}
