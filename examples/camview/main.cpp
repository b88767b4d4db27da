#include "headless/HeadlessRun.h"

#include <QCoreApplication>
#include <QTextStream>

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
    if (!options.headless)
        throw UsageError("this build has no window: use --headless");
    return HeadlessRun(options).run();
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("camview");
    try {
        return runCamview(QCoreApplication::arguments().mid(1));
    } catch (const std::exception& error) {
        QTextStream(stderr) << "camview: " << error.what() << '\n';
        return usageStatus;
    }
}
