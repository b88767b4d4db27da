#pragma once

#include <AppComponents/log/CTextLog.h>
#include <AppComponents/log/CTextLogPorcessor.h>

#include <memory>
#include <string>

class LogMutex;

/// Collects text in memory until a component of the user interface drains it.
///
/// Writing, getStringAndClear() and resetPorcesor() may be called from several threads. The
/// buffer grows until it is drained. A processor that calls back into the log from process() gets
/// a std::system_error (resource_deadlock_would_occur).
class APPCOMPONENTS_EXPORT CDelayedProcessorTextLog : public CTextLog
{
public:
    CDelayedProcessorTextLog(const CDelayedProcessorTextLog&) = delete;
    CDelayedProcessorTextLog& operator=(const CDelayedProcessorTextLog&) = delete;

    /// The single instance, created on the first call and destroyed at process exit.
    static CDelayedProcessorTextLog& getInstance();

    /// Moves the collected text to \p out, whose former text is lost.
    void getStringAndClear(std::wstring& out);

    /// Sets whom to notify of every chunk, null for nobody. The processor is not owned: take it
    /// out before it dies.
    void resetPorcesor(CTextLogPorcessor* newProcessor);

protected:
    CDelayedProcessorTextLog();
    ~CDelayedProcessorTextLog() override;

    void writeInternal(const wchar_t* text, int length) override;

private:
    std::wstring buffer;
    CTextLogPorcessor* processor = nullptr;
    std::unique_ptr<LogMutex> mutex;
};
