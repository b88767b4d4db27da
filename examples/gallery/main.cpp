#include "Gallery.h"

#include <QApplication>
#include <QCommandLineParser>

namespace
{

bool displayAvailable()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

} // namespace

int main(int argc, char** argv)
{
    if (!displayAvailable() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argc, argv);

    const QCommandLineOption grab(QStringLiteral("grab"),
                                  QStringLiteral("Write every page to <folder> and leave."),
                                  QStringLiteral("folder"));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Use a dark palette."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows each widget of AppComponents in its telling states."));
    parser.addHelpOption();
    parser.addOption(grab);
    parser.addOption(dark);
    parser.process(application);

    if (parser.isSet(grab))
        return grabPages(parser.value(grab)) ? 0 : 1;
    applyPalette(parser.isSet(dark));
    const auto window = createGalleryWindow();
    window->resize(1100, 760);
    window->show();
    return QApplication::exec();
}
