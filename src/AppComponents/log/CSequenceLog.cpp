#include <AppComponents/log/CSequenceLog.h>

#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/LogMutex.h>

#include <mutex>

CSequenceLog::CSequenceLog()
    : mutex(std::make_shared<LogMutex>())
    , subLogs(std::make_shared<SubLogs>())
{
}

CSequenceLog::~CSequenceLog()
{
    const bool isLastCopy = subLogs.use_count() == 1;
    if (isLastCopy)
        deleteHeldSubLogs();
}

CSequenceWriter* CSequenceLog::getSubLog(const std::wstring& name)
{
    const std::lock_guard lock(*mutex);
    const auto found = subLogs->find(name);
    if (found != subLogs->end()) {
        ++found->second->refCount;
        return found->second;
    }
    CSequenceWriter* const writer = createSubLog(name);
    subLogs->emplace(name, writer);
    return writer;
}

void CSequenceLog::releaseSubLog(const std::wstring& name)
{
    const std::lock_guard lock(*mutex);
    const auto found = subLogs->find(name);
    if (found == subLogs->end() || --found->second->refCount > 0)
        return;
    delete found->second; // before the name is free: the next writer may open the same file
    subLogs->erase(found);
}

void CSequenceLog::deleteHeldSubLogs()
{
    SubLogs held;
    {
        const std::lock_guard lock(*mutex);
        held.swap(*subLogs);
    }
    if (!held.empty())
        CLogManager::getManagerLog() << L"ERROR: Not all subLogs are released" << std::endl;
    for (const auto& [name, writer] : held)
        delete writer;
}

LogType CValueSequenceLog::getType()
{
    return graphicLog;
}

LogType CFrameSeqienceLog::getType()
{
    return seqienceLog;
}
