#pragma once

#include <AppComponents/log/CTextLog.h>

/// Writes to the process's standard wide output stream, without flushing it.
///
/// One instance is shared by everybody who wants the console. It exists before any code runs and
/// is never taken down, so it may be written to from the constructors and destructors of static
/// objects.
class APPCOMPONENTS_EXPORT CConsoleTextLog : public CTextLog
{
public:
    constexpr CConsoleTextLog() = default;

    /// The shared instance.
    static CConsoleTextLog& getDebugLog();

protected:
    void writeInternal(const wchar_t* text, int length) override;

    static CConsoleTextLog& consoleLog; ///< the shared instance
};
