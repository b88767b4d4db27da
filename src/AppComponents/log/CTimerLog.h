#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <ostream>
#include <string>

/// A named stopwatch with millisecond resolution that prints itself as its name, a blank and the
/// time since its reset: "load 250ms", from one second on "load 1.5s".
/// \code
/// CTimerLog timer(L"load");
/// ...
/// log(TimeLogType) << timer << std::endl;
/// \endcode
class APPCOMPONENTS_EXPORT CTimerLog
{
public:
    CTimerLog(); ///< without a name, started
    explicit CTimerLog(std::wstring newName);

    /// Names the timer and starts it anew.
    void reset(std::wstring newName);

    /// Milliseconds since the last reset.
    unsigned long long elapsed() const;

    /// The text that insertion into a fresh wide stream gives.
    std::wstring toWString() const;

protected:
    /// Milliseconds of the steady clock, from an arbitrary origin.
    static unsigned long long getTicks();

private:
    friend APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>&
    operator<<(std::basic_ostream<wchar_t>& out, const CTimerLog& timer);

    unsigned long long start = 0;
    std::wstring name;
};

APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out,
                                                             const CTimerLog& timer);
