#include "WindowRun.h"

#include "MainWindow.h"
#include "WindowLogs.h"
#include "WindowPictures.h"
#include "core/Logging.h"
#include "core/SettingsFile.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTextStream>
#include <QTimer>

#include <csignal>

namespace
{

constexpr int signalWatchMs = 100;

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int)
{
    interrupted = 1;
}

WindowOptions windowOptions(const Options& options)
{
    WindowOptions window;
    window.settingsRoot = SettingsStore::defaultRoot();
    window.outputFolder = options.outputFolder;
    window.outputFolderGiven = !options.outputFolder.isEmpty();
    if (!window.outputFolderGiven)
        window.outputFolder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    // A window that does not come up with the saved settings must be able to come up without.
    const bool shiftHeld = QGuiApplication::queryKeyboardModifiers() & Qt::ShiftModifier;
    window.restoreSettings = !shiftHeld && options.grabFolder.isEmpty();
    return window;
}

/// What is asked for and not done must not pass in silence.
void refuseHeadlessOptions(const Options& options)
{
    if (options.json || options.frames || !options.recordName.isEmpty() ||
        !options.snapshotName.isEmpty())
        throw UsageError(
            QStringLiteral("--json, --frames, --record and --snapshot need --headless"));
}

bool writeSettings(const Options& options, const ImgCorrectionSettings& settings)
{
    if (options.settingsFile.isEmpty())
        return true;
    const QString complaint = writeSettingsFile(options.settingsFile, settings);
    if (complaint.isEmpty())
        return true;
    QTextStream(stderr) << "camview: " << options.settingsFile << ": " << complaint << '\n';
    return false;
}

} // namespace

int runWindow(const Options& options)
{
    refuseHeadlessOptions(options);
    // Logging comes first: components know the logs that are there when they are made.
    registerWindowLogs();
    if (options.logConfigFile.isEmpty())
        setUpUserLogging();
    else
        setUpLogging(options.logConfigFile);
    MainWindow window(windowOptions(options));
    window.show();
    if (window.openSource(options.source)) {
        CameraControl& camera = window.cameraControl();
        camera.apply(options.camera.appliedTo(camera.settings()));
    }
    window.processingModel().change(options.adjustProcessing);
    if (!options.grabFolder.isEmpty())
        return writeWindowPictures(window, options.grabFolder);
    // Whoever ends the process from outside gets a finished recording and saved settings, too.
    QTimer signalWatch;
    QObject::connect(&signalWatch, &QTimer::timeout, &window, [&window] {
        if (interrupted != 0)
            window.close();
    });
    signalWatch.start(signalWatchMs);
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    if (options.durationS)
        QTimer::singleShot(static_cast<int>(*options.durationS * 1000.0), &window, &QWidget::close);
    const int status = QApplication::exec();
    return writeSettings(options, window.processingModel().correction()) ? status : 1;
}
