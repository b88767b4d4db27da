#include "cameras/CameraFactory.h"
#include "headless/HeadlessRun.h"

#include "window/WindowRun.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QTextStream>

#include <algorithm>
#include <memory>

namespace
{

constexpr int usageStatus = 2;

int runCamview(const QStringList& arguments)
{
    const Options options = parseOptions(arguments);
    if (options.help) {
        QTextStream(stdout) << optionsHelp();
        return 0;
    }
    if (options.version) {
        QTextStream(stdout) << "camview " << CAMVIEW_VERSION << '\n';
        return 0;
    }
    if (options.listCameras) {
        for (const QString& name : listCameras())
            QTextStream(stdout) << name << '\n';
        return 0;
    }
    if (qobject_cast<QApplication*>(QCoreApplication::instance()))
        return runWindow(options);
    return HeadlessRun(options).run();
}

/// Before there is an application to ask, and in every form that the options are read in.
bool isGiven(const QByteArray& option, int argc, char* argv[])
{
    return std::any_of(argv + 1, argv + argc, [&option](const QByteArray& argument) {
        const QByteArray name = argument.split('=').constFirst();
        return name == "-" + option || name == "--" + option;
    });
}

/// Only a window needs a display; a run without one must work where there is none.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char* argv[])
{
    for (const char* option : {"headless", "help", "version", "list"})
        if (isGiven(option, argc, argv))
            return std::make_unique<QCoreApplication>(argc, argv);
    if (isGiven("grab", argc, argv) && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char* argv[])
{
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName("camview");
    // Readers of picture files grumble about harmless details on standard error.
    QLoggingCategory::setFilterRules("qt.gui.imageio.warning=false");
    try {
        return runCamview(QCoreApplication::arguments().mid(1));
    } catch (const std::exception& error) {
        QTextStream(stderr) << "camview: " << error.what() << '\n';
        return usageStatus;
    }
}
