#include <AppComponents/log/CTimerLog.h>

#include <chrono>
#include <cstdint>
#include <sstream>
#include <utility>

CTimerLog::CTimerLog()
    : start(getTicks())
{
}

CTimerLog::CTimerLog(std::wstring newName)
{
    reset(std::move(newName));
}

void CTimerLog::reset(std::wstring newName)
{
    name = std::move(newName);
    start = getTicks();
}

unsigned long long CTimerLog::elapsed() const
{
    return getTicks() - start;
}

std::wstring CTimerLog::toWString() const
{
    std::wostringstream text;
    text << *this;
    return text.str();
}

unsigned long long CTimerLog::getTicks()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out, const CTimerLog& timer)
{
    const auto ms = static_cast<std::uint32_t>(timer.elapsed());
    out << timer.name << L' ';
    if (ms < 1000)
        return out << ms << L"ms";
    return out << static_cast<float>(ms) / 1000.0f << L's';
}
