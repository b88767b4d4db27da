#include "WindowRun.h"

#include "MainWindow.h"
#include "WindowLogs.h"
#include "WindowPictures.h"
#include "core/Logging.h"

#include <QApplication>
#include <QIcon>
#include <QStandardPaths>

namespace
{

WindowOptions windowOptions(const Options& options)
{
    WindowOptions window;
    window.settingsRoot = SettingsStore::defaultRoot();
    window.outputFolder = options.outputFolder;
    if (window.outputFolder.isEmpty())
        window.outputFolder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    // A window that does not come up with the saved settings must be able to come up without.
    const bool shiftHeld = QGuiApplication::queryKeyboardModifiers() & Qt::ShiftModifier;
    window.restoreSettings = !shiftHeld && options.grabFolder.isEmpty();
    return window;
}

} // namespace

int runWindow(QApplication& application, const Options& options)
{
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
    if (options.processingGiven || !options.settingsFile.isEmpty())
        window.processingModel().setSettings(options.processing);
    if (!options.grabFolder.isEmpty())
        return writeWindowPictures(window, options.grabFolder);
    return application.exec();
}
