#include <AppComponents/log/CLogAccessor.h>

#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/Utf8Locale.h>

#include <algorithm>
#include <new>
#include <set>

namespace
{

bool isKnown(LogType type)
{
    return type >= textLog && type < logTypeCount;
}

// Room for defLog without a constructor or destructor of its own; see DefLogLifetime.
union DefLogRoom {
    constexpr DefLogRoom()
        : none()
    {
    }
    ~DefLogRoom() {} // NOLINT(modernize-use-equals-default): that would be a deleted one
    char none;
    CLogAccessor accessor;
};

DefLogRoom defLogRoom;
int defLogUsers = 0; // files that are initialised, or being so, by one thread at a time

} // namespace

CLogAccessor& defLog = defLogRoom.accessor;

DefLogLifetime::DefLogLifetime()
{
    if (defLogUsers++ > 0)
        return;
    utf8Locale(); // built when the library is loaded, whatever the global locale becomes later
    new (&defLogRoom.accessor) CLogAccessor;
}

DefLogLifetime::~DefLogLifetime()
{
    // The object stays usable: a log that is deleted by the registry may write to it.
    if (--defLogUsers == 0)
        defLog.deliverAndForgetLogs();
}

CLogAccessor::CLogAccessor()
    : outBuf(std::make_unique<COutBuf>(&logs))
    , stream(outBuf.get())
{
    CLogAccessor::addLogList({});
}

CLogAccessor::CLogAccessor(const std::wstring& name)
    : CLogAccessor()
{
    CLogAccessor::addLogList(name);
}

CLogAccessor::~CLogAccessor()
{
    outBuf.reset(); // before the list of the logs to which it delivers
}

std::basic_ostream<wchar_t>& CLogAccessor::operator()(TextLogType type) const
{
    outBuf->setType(type);
    return stream;
}

void CLogAccessor::addLog(CBaseLog* log)
{
    const LogType type = log->getType();
    if (!isKnown(type))
        return;
    auto& known = logs[type];
    if (std::find(known.begin(), known.end(), log) == known.end())
        known.push_back(log);
}

void CLogAccessor::addLogList(const std::wstring& name)
{
    for (int type = 0; type < logTypeCount; ++type) {
        auto& known = logs[type];
        std::set<CBaseLog*> merged(known.begin(), known.end());
        const auto& registered = CLogManager::getLogList(static_cast<LogType>(type), name);
        merged.insert(registered.begin(), registered.end());
        known.assign(merged.begin(), merged.end());
    }
}

bool CLogAccessor::isWriting(LogType type) const
{
    return isKnown(type) && !logs[type].empty();
}

void CLogAccessor::removeLog(CBaseLog* log)
{
    for (auto& known : logs)
        known.erase(std::remove(known.begin(), known.end(), log), known.end());
}

void CLogAccessor::deliverAndForgetLogs()
{
    stream.flush();
    for (auto& known : logs)
        known.clear();
}
