#include <AppComponents/log/LogConfig.h>

#include <AppComponents/calc/FileOpenError.h>
#include <AppComponents/log/CConsoleTextLog.h>
#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CFolderOfTextLog.h>
#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/LogsElement.h>
#include <AppComponents/log/QDebugTextLog.h>

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QVariant>

#include <memory>
#include <vector>

namespace
{

std::wostream& managerLog()
{
    return CLogManager::getManagerLog();
}

bool ensureFolderExists(const QString& path)
{
    if (path.isEmpty() || QDir().mkpath(path))
        return true;
    managerLog() << L"can't create path " << path.toStdWString() << std::endl;
    return false;
}

bool ensureFileCanExist(const QString& fileName)
{
    if (fileName.isEmpty()) {
        managerLog() << L"File path is \"\"" << std::endl;
        return false;
    }
    const int lastSeparator = fileName.lastIndexOf(QLatin1Char('/'));
    if (lastSeparator == fileName.size() - 1) {
        managerLog() << L"File path can't ends with /" << std::endl;
        return false;
    }
    return lastSeparator < 0 || ensureFolderExists(fileName.left(lastSeparator));
}

// "TimeLogType" is left out on purpose: files have it, and it never had an effect.
void applyTypeFlags(CTextLog& log, const QXmlStreamAttributes& attributes)
{
    static constexpr struct {
        const char* attribute;
        TextLogType type;
    } flags[] = {
        {"AllLogType", AllLogType}, {"InfoLogType", InfoLogType}, {"DebugLogType", DebugLogType}};
    for (const auto& flag : flags) {
        const QLatin1String name(flag.attribute);
        if (attributes.hasAttribute(name))
            log.setTextLogTypeWriting(flag.type,
                                      QVariant(attributes.value(name).toString()).toBool());
    }
}

void registerOwned(std::unique_ptr<CTextLog> log, const LogElement& element)
{
    applyTypeFlags(*log, element.attributes);
    for (const std::wstring& name : element.names)
        CLogManager::registerLogAndAddToGC(log.get(), name);
    // A log that nobody registered keeps its file open as long as the program runs.
    static std::vector<std::unique_ptr<CTextLog>> unregistered;
    if (element.names.empty())
        unregistered.push_back(std::move(log));
    else
        static_cast<void>(log.release()); // belongs to the registry now
}

void registerShared(CBaseLog& log, const LogElement& element)
{
    for (const std::wstring& name : element.names)
        CLogManager::registerLog(&log, name);
}

void registerShared(CTextLog& log, const LogElement& element)
{
    applyTypeFlags(log, element.attributes);
    registerShared(static_cast<CBaseLog&>(log), element);
}

void addFileLog(const LogElement& element)
{
    const QString fileName = element.attributes.value(QLatin1String("FileName")).toString();
    if (ensureFileCanExist(fileName))
        registerOwned(std::make_unique<CFileTextLog>(fileName.toStdString()), element);
}

void addFolderLog(const LogElement& element)
{
    const QString folder = element.attributes.value(QLatin1String("FilePath")).toString();
    if (!ensureFolderExists(folder))
        return;
    const QString absolute = QDir(folder).absolutePath();
    registerOwned(std::make_unique<CFolderOfTextLog>(absolute.toStdString()), element);
}

void addLog(const LogElement& element)
{
    managerLog() << element.tag.toStdWString() << std::endl;
    if (element.tag == QLatin1String("CFileTextLog"))
        addFileLog(element);
    else if (element.tag == QLatin1String("CFolderOfTextLog"))
        addFolderLog(element);
    else if (element.tag == QLatin1String("QDebugTextLog"))
        registerOwned(std::make_unique<QDebugTextLog>(), element);
    else if (element.tag == QLatin1String("CConsoleTextLog"))
        registerShared(CConsoleTextLog::getDebugLog(), element);
    else if (element.tag == QLatin1String("CDelayedProcessorTextLog"))
        registerShared(CDelayedProcessorTextLog::getInstance(), element);
    else if (element.tag == QLatin1String("CDelayedValueSequenceLog"))
        registerShared(CDelayedValueSequenceLog::getInstance(), element);
    else // without an end of line, as readers of these files know it
        managerLog() << L"Unknown log type" << element.tag.toStdWString();
}

QDomElement logElement(QDomDocument& document, const QString& tag)
{
    QDomElement element = document.createElement(tag);
    element.appendChild(document.createElement(QStringLiteral("Register")));
    return element;
}

QDomElement defaultLogsElement(QDomDocument& document, const QString& fileName,
                               const QString& build)
{
    QDomElement logs = document.createElement(QStringLiteral("Logs"));
    logs.setAttribute(QStringLiteral("ManagerLogFile"), QStringLiteral("ManagerLog.txt"));
    if (build != QLatin1String("release"))
        logs.appendChild(logElement(document, QStringLiteral("QDebugTextLog")));
    QDomElement folderLog = logElement(document, QStringLiteral("CFolderOfTextLog"));
    folderLog.setAttribute(QStringLiteral("FilePath"),
                           QFileInfo(fileName).path() + QStringLiteral("/log"));
    logs.appendChild(folderLog);
    return logs;
}

QDomDocument defaultDocument(const QString& fileName, const QString& build)
{
    QDomDocument document(QStringLiteral("Settings"));
    QDomElement settings = document.createElement(QStringLiteral("Settings"));
    settings.setAttribute(QStringLiteral("version"), 1);
    document.appendChild(settings);
    settings.appendChild(defaultLogsElement(document, fileName, build));
    QDomElement autoTuneType = document.createElement(QStringLiteral("autoTuneType"));
    autoTuneType.setAttribute(QStringLiteral("value"), QStringLiteral("1"));
    settings.appendChild(autoTuneType);
    return document;
}

} // namespace

void LogConfig::LoadFromFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw FileOpenError(fileName, file.errorString());
    const LogsElement logs(file, fileName);
    file.close();
    if (!logs.managerLogFile().isEmpty())
        CLogManager::getInstance().setManagerLogFileName(logs.managerLogFile().toStdString());
    managerLog() << L"---Start parsing log settings" << std::endl;
    logs.forEachLog(addLog);
    managerLog() << L"---End parsing log settings" << std::endl;
}

void LogConfig::CreateDefaultConfigFile(const QString& fileName, const QString& build)
{
    const QDomDocument document = defaultDocument(fileName, build);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadWrite))
        throw FileOpenError(fileName, file.errorString());
    constexpr int indentation = 4;
    QTextStream stream(&file);
    document.save(stream, indentation, QDomNode::EncodingFromDocument);
}

void LogConfig::ApplyDefaultConfig()
{
    CLogManager::registerLogAndAddToGC(std::make_unique<QDebugTextLog>().release(), {});
    CLogManager::registerLogAndAddToGC(std::make_unique<CFolderOfTextLog>("log").release(), {});
}

QString LogConfig::GetLogFileName()
{
    for (CBaseLog* const log : CLogManager::getLogList(textLog, {})) {
        if (const auto* const folderLog = dynamic_cast<CFolderOfTextLog*>(log))
            return QString::fromStdString(folderLog->getFilePath());
        if (const auto* const fileLog = dynamic_cast<CFileTextLog*>(log))
            return QString::fromStdString(fileLog->getFileName());
    }
    return {};
}
