#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/log/COutBuf.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // accessors are never deleted through a base
#endif

/// What a component that logs holds: a wide output stream whose text goes to the text logs that
/// the accessor knows, and the lists of sequence logs.
///
/// Select the category, insert the text and end every message with a flush:
/// \code
/// log(InfoLogType) << L"camera opened, " << count << L" modes" << std::endl;
/// \endcode
/// The category is attached when the text is flushed, not when it is inserted.
///
/// An accessor knows the default logs and those of its name that were registered before it was
/// built; later ones reach it only through addLog() and addLogList(). It owns none of them.
/// Writing never fails: without a log the text is discarded.
///
/// Not synchronised: an accessor belongs to one thread at a time.
class APPCOMPONENTS_EXPORT CLogAccessor
{
public:
    /// An accessor of the default logs.
    CLogAccessor();
    /// An accessor of the default logs and of those registered under \p name.
    explicit CLogAccessor(const std::wstring& name);
    CLogAccessor(const CLogAccessor&) = delete;
    CLogAccessor& operator=(const CLogAccessor&) = delete;
    /// Delivers the text that was not flushed.
    ~CLogAccessor();

    /// The stream, after the category of the next chunk was set to \p type.
    std::basic_ostream<wchar_t>& operator()(TextLogType type) const;

    /// Adds one log, unless the accessor has it already. \p log must outlive the accessor.
    virtual void addLog(CBaseLog* log);

    /// Adds the logs of every kind that are registered under \p name now.
    virtual void addLogList(const std::wstring& name);

    /// Whether anybody receives what is written to logs of kind \p type.
    bool isWriting(LogType type) const;

private:
    friend class CLogManager;
    friend class DefLogLifetime;
    friend class SubLogAccessor;

    void removeLog(CBaseLog* log);
    void deliverAndForgetLogs();

    std::unique_ptr<COutBuf> outBuf;
    mutable std::basic_ostream<wchar_t> stream;
    COutBuf::LogArray logs;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// The accessor of code that has none of its own: knows every default log, also those registered
/// later. Ready before the first static object of any file that includes this header. At process
/// exit its pending text reaches the logs before the registry deletes them; what is written after
/// that is discarded.
APPCOMPONENTS_EXPORT extern CLogAccessor& defLog;

/// Sets up `defLog` before the first file that includes this header is initialised, and winds it
/// up after the last one. Not for use.
class APPCOMPONENTS_EXPORT DefLogLifetime
{
public:
    DefLogLifetime();
    DefLogLifetime(const DefLogLifetime&) = delete;
    DefLogLifetime& operator=(const DefLogLifetime&) = delete;
    ~DefLogLifetime();
};

static const DefLogLifetime defLogLifetime;
