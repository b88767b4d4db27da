#include <AppComponents/log/CLogManager.h>

#include <AppComponents/log/Utf8Locale.h>

namespace
{

const wchar_t* typeText(LogType type)
{
    switch (type) {
    case textLog:
        return L"textLog";
    case matrixLog:
        return L"matrixLog";
    case seqienceLog:
        return L"seqienceLog";
    case graphicLog:
        return L"graphicLog";
    }
    return L"";
}

bool isKnown(LogType type)
{
    return type >= textLog && type < logTypeCount;
}

} // namespace

CLogManager::CLogManager()
{
    managerLog.imbue(utf8Locale());
}

CLogManager::~CLogManager()
{
    // The deleted logs may still write to the manager log.
    for (CBaseLog* const log : gcLogs)
        delete log;
    managerLog.close();
}

CLogManager& CLogManager::getInstance()
{
    static CLogManager instance;
    return instance;
}

std::wostream& CLogManager::getManagerLog()
{
    return getInstance().managerLog;
}

void CLogManager::setManagerLogFileName(std::string fileName)
{
    if (managerLog.is_open())
        managerLog.close();
    managerLog.open(fileName, std::ios_base::out | std::ios_base::trunc);
}

void CLogManager::registerLog(CBaseLog* log, std::wstring name)
{
    CLogManager& manager = getInstance();
    const LogType type = log->getType();
    if (manager.managerLog.is_open())
        manager.managerLog << L"Registered " << typeText(type) << L" as \"" << name << L'"'
                           << std::endl;
    if (!isKnown(type))
        return;
    manager.logLists[type][name].insert(log);
    if (name.empty())
        defLog.addLog(log);
}

void CLogManager::registerLogAndAddToGC(CBaseLog* log, std::wstring name)
{
    registerLog(log, name);
    getInstance().gcLogs.insert(log);
}

std::set<CBaseLog*>& CLogManager::getLogList(LogType type, std::wstring name)
{
    return getInstance().logLists[type][name];
}

void CLogManager::forget(CBaseLog* log)
{
    for (auto& logsByName : getInstance().logLists)
        for (auto& [name, logs] : logsByName)
            logs.erase(log);
    defLog.removeLog(log);
}
