#include <AppComponents/log/CDelayedValueSequenceLog.h>

#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/LogMutex.h>

#include <mutex>

CValProcessor::~CValProcessor() = default;

CDelayedValueSequenceLog::CDelayedValueSequenceLog()
{
    CLogManager::getInstance(); // is destroyed later, because it was there first
}

CDelayedValueSequenceLog::~CDelayedValueSequenceLog()
{
    CLogManager::forget(this);
    const bool isLastCopy = subLogs.use_count() == 1;
    if (isLastCopy)
        deleteHeldSubLogs(); // now, while the streams can still notify
}

CDelayedValueSequenceLog& CDelayedValueSequenceLog::getInstance()
{
    static CDelayedValueSequenceLog instance;
    return instance;
}

void CDelayedValueSequenceLog::resetPorcesor(CValProcessor* newProcessor)
{
    const std::lock_guard lock(*mutex);
    processor = newProcessor;
}

void CDelayedValueSequenceLog::getGraphicsSet(std::map<std::wstring, CGraphicValues>& out)
{
    const std::lock_guard lock(*mutex);
    out.clear();
    for (const auto& [name, writer] : *subLogs)
        out.emplace_hint(out.end(), name, *static_cast<const CGraphicValues*>(writer));
}

CSequenceWriter* CDelayedValueSequenceLog::createSubLog(const std::wstring&)
{
    return new CGraphicValues(this); // owned by the log that stores it
}

void CDelayedValueSequenceLog::notifyProcessor()
{
    if (processor)
        processor->process();
}
