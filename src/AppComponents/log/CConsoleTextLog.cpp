#include <AppComponents/log/CConsoleTextLog.h>

#include <fstream>
#include <iostream>

namespace
{

// A union member is not destroyed with its union: the log outlives every static object.
union SharedLog {
    constexpr SharedLog()
        : log()
    {
    }
    ~SharedLog() {} // NOLINT(modernize-use-equals-default): that would be a deleted one
    CConsoleTextLog log;
};

SharedLog sharedLog;

} // namespace

CConsoleTextLog& CConsoleTextLog::consoleLog = sharedLog.log;

CConsoleTextLog& CConsoleTextLog::getDebugLog()
{
    return consoleLog;
}

void CConsoleTextLog::writeInternal(const wchar_t* text, int length)
{
    // The stream may not be set up yet when a static object of another file logs.
    static const std::ios_base::Init streams;
    std::wcout.write(text, length);
    // One character that the locale cannot express must not silence the console for good. Where
    // the stream was detached from stdio it has a file buffer, which may not be used further.
    if (!std::wcout && !dynamic_cast<std::wfilebuf*>(std::wcout.rdbuf()))
        std::wcout.clear();
}
