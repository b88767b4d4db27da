#include <AppComponents/log/CDelayedProcessorTextLog.h>

#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/LogMutex.h>

#include <cstddef>
#include <mutex>

CTextLogPorcessor::~CTextLogPorcessor() = default;

CDelayedProcessorTextLog::CDelayedProcessorTextLog()
    : mutex(std::make_unique<LogMutex>())
{
    CLogManager::getInstance(); // is destroyed later, because it was there first
}

CDelayedProcessorTextLog::~CDelayedProcessorTextLog()
{
    CLogManager::forget(this);
}

CDelayedProcessorTextLog& CDelayedProcessorTextLog::getInstance()
{
    static CDelayedProcessorTextLog instance;
    return instance;
}

void CDelayedProcessorTextLog::getStringAndClear(std::wstring& out)
{
    const std::lock_guard lock(*mutex);
    out.clear();
    out.swap(buffer); // the reader's memory serves as the next buffer
}

void CDelayedProcessorTextLog::resetPorcesor(CTextLogPorcessor* newProcessor)
{
    const std::lock_guard lock(*mutex);
    processor = newProcessor;
}

void CDelayedProcessorTextLog::writeInternal(const wchar_t* text, int length)
{
    const std::lock_guard lock(*mutex);
    buffer.append(text, static_cast<std::size_t>(length));
    if (processor)
        processor->process();
}
