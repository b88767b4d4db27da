#include "Logging.h"

#include <AppComponents/log/LogConfig.h>

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace
{

#ifdef NDEBUG
const char* const buildName = "release";
#else
const char* const buildName = "debug";
#endif

/// Makes a folder the current one for a while.
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& folder) { QDir::setCurrent(folder); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    ~CurrentFolder() { QDir::setCurrent(before); }

private:
    const QString before = QDir::currentPath();
};

} // namespace

void setUpLogging(const QString& configFile)
{
    const QFileInfo file(configFile);
    const QString path = file.absoluteFilePath();
    const CurrentFolder folder(file.absolutePath());
    LogConfig::LoadFromFile(path);
}

void setUpUserLogging()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    const QString path = folder + "/log.xml";
    try {
        if (!QFileInfo::exists(path) && QDir().mkpath(folder))
            LogConfig::CreateDefaultConfigFile(path, buildName);
        setUpLogging(path);
    } catch (const std::exception&) {
        // A home that cannot be written, or a file that was damaged there, is no reason not to
        // show a picture.
        return;
    }
}
