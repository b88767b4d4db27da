// Runs camview's window on its simulated camera for a long time while the region moves, settings
// change and recordings come and go, and prints the memory in use. Fails when the median of the
// last quarter of the run lies more than 5 % above that of the second quarter (in the first the
// buffers are still growing to the largest region), or when a frame is missing from the counts.
//
//   camview_soak MINUTES

#include "core/Camera.h"
#include "window/MainWindow.h"
#include "window/WindowLogs.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <random>
#include <unistd.h>
#include <vector>

namespace
{

constexpr int actionPeriodMs = 700;
constexpr int recordingPeriod = 20; // actions from one recording to the next
constexpr double allowedGrowth = 1.05;

double residentMegabytes()
{
    QFile statm("/proc/self/statm");
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The user who never rests: one action at a time, drawn by chance.
class RestlessUser
{
public:
    RestlessUser(MainWindow& where, QString recordingFolder)
        : window(where)
        , folder(std::move(recordingFolder))
    {
    }

    void act()
    {
        ++actions;
        if (actions % recordingPeriod == 0)
            record();
        else if (actions % 2 == 0)
            moveRegion();
        else
            changeSettings();
    }

    int recordingsMade() const { return recordings; }

private:
    int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }

    void record()
    {
        window.recordingControl().stop();
        for (const QString& name : QDir(folder).entryList(QDir::Files))
            QFile::remove(QDir(folder).filePath(name));
        RecordingRequest request;
        request.folder = folder;
        request.frameLimit = 60;
        window.recordingControl().start(request);
        ++recordings;
    }

    void moveRegion()
    {
        if (window.recordingControl().isRunning())
            return; // another size would end the recording
        const CameraInfo info = window.cameraControl().info();
        SensorRegion region;
        region.width = pick(1, 4) * info.sensorWidth / 4 / 4 * 4;
        region.height = pick(1, 4) * info.sensorHeight / 4 / 4 * 4;
        region.x = pick(0, (info.sensorWidth - region.width) / 2) * 2;
        region.y = pick(0, (info.sensorHeight - region.height) / 2) * 2;
        window.cameraControl().requestRegion(region);
    }

    void changeSettings()
    {
        window.processingModel().change([this](ProcessingSettings& settings) {
            settings.correction.colorReconstructionMethod = pick(0, 7);
            settings.correction.gamma = pick(5, 20) / 10.0;
            settings.correction.setFlag(CS_APPLY_LUT, pick(0, 1) == 1);
            settings.correction.setFlag(CS_AUTO_WHITE_BALANCE, pick(0, 1) == 1);
            settings.correction.flipH = pick(0, 1) == 1;
            settings.averageFrames = pick(1, 4);
            settings.autoStretch = pick(0, 3) == 0;
        });
    }

    MainWindow& window;
    const QString folder;
    std::mt19937 random{20};
    int actions = 0;
    int recordings = 0;
};

bool everyFrameIsCounted(const SessionCounters& counters)
{
    // One frame may wait in the slot and one may be on its way through the processing.
    const auto known = counters.processed + counters.dropped;
    return known <= counters.received && counters.received - known <= 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const double minutes = argc > 1 ? QByteArray(argv[1]).toDouble() : 20.0;
    const qint64 lastMs = static_cast<qint64>(minutes * 60000);

    registerWindowLogs();
    QTemporaryDir folder;
    MainWindow window({folder.path(), folder.path(), false});
    window.resize(1440, 900);
    window.show();
    if (!window.openSource("sim"))
        return 2;
    CameraSettings camera = window.cameraControl().settings();
    camera.frameRate = 30;
    window.cameraControl().apply(camera);

    RestlessUser user(window, folder.path());
    QElapsedTimer clock;
    clock.start();
    std::vector<double> quarters[4];
    QTimer actions;
    QObject::connect(&actions, &QTimer::timeout, [&] {
        user.act();
        const qint64 quarter = std::min<qint64>(3, 4 * clock.elapsed() / lastMs);
        quarters[quarter].push_back(residentMegabytes());
        if (clock.elapsed() > lastMs)
            application.quit();
    });
    QTimer reports;
    QObject::connect(&reports, &QTimer::timeout, [&] {
        const SessionCounters counters = window.cameraControl().counters();
        std::printf("%5.1f min  %7.1f MB  received %llu processed %llu shown %llu dropped %llu\n",
                    static_cast<double>(clock.elapsed()) / 60000, residentMegabytes(),
                    static_cast<unsigned long long>(counters.received),
                    static_cast<unsigned long long>(counters.processed),
                    static_cast<unsigned long long>(counters.shown),
                    static_cast<unsigned long long>(counters.dropped));
        std::fflush(stdout);
    });
    actions.start(actionPeriodMs);
    reports.start(static_cast<int>(std::clamp<qint64>(lastMs / 20, 1000, 60000)));
    application.exec();

    const SessionCounters counters = window.cameraControl().counters();
    const double early = median(quarters[1]);
    const double late = median(quarters[3]);
    const bool flat = late <= early * allowedGrowth;
    const bool counted = everyFrameIsCounted(counters);
    std::printf("memory %.1f MB in the second quarter, %.1f MB in the last: %s\n"
                "%d recordings; every frame is counted: %s\n",
                early, late, flat ? "flat" : "GROWN", user.recordingsMade(),
                counted ? "yes" : "NO");
    return flat && counted ? 0 : 1;
}
