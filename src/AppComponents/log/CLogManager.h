#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/log/CBaseLog.h>
#include <AppComponents/log/CLogAccessor.h>

#include <array>
#include <fstream>
#include <map>
#include <set>
#include <string>

/// The process-wide registry of logs: maps a name to the set of logs registered under it.
///
/// The empty name means "default": every accessor receives the default logs. Any other name makes
/// a group that only accessors of that name receive. A log may be registered under several names.
/// Nothing is unregistered, so a log that the registry does not own must outlive every accessor
/// that may still write to it.
///
/// The registry also keeps the manager log, a file for its own diagnostics (UTF-8).
///
/// Takes no lock: registration is a start-up activity of one thread. No operation throws of its
/// own accord; a manager log that cannot be opened stays silent.
class APPCOMPONENTS_EXPORT CLogManager
{
public:
    CLogManager(const CLogManager&) = delete;
    CLogManager& operator=(const CLogManager&) = delete;

    /// The single instance, created on the first call and destroyed at process exit.
    static CLogManager& getInstance();

    /// The stream of the registry's diagnostics; closed until a file name is set.
    static std::wostream& getManagerLog();

    /// Opens the manager log on \p fileName, truncating the file; closes the one open before.
    void setManagerLogFileName(std::string fileName);

    /// Adds \p log (not null) to the logs of its kind under \p name. A default log is handed to
    /// `defLog` at once.
    static void registerLog(CBaseLog* log, std::wstring name);

    /// As registerLog(), and the registry deletes \p log at process exit, once, however often it
    /// was registered.
    static void registerLogAndAddToGC(CBaseLog* log, std::wstring name);

    /// The logs of kind \p type under \p name, an empty set if there are none. The reference stays
    /// valid as long as the registry.
    static std::set<CBaseLog*>& getLogList(LogType type, std::wstring name);

protected:
    CLogManager();
    virtual ~CLogManager();

private:
    friend class CDelayedProcessorTextLog;
    friend class CDelayedValueSequenceLog;

    // Takes a log that is about to disappear out of the registry and of defLog.
    static void forget(CBaseLog* log);

    std::wofstream managerLog;
    std::array<std::map<std::wstring, std::set<CBaseLog*>>, logTypeCount> logLists;
    std::set<CBaseLog*> gcLogs;
};
