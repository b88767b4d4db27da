#pragma once

#include <AppComponents/log/CBaseLog.h>
#include <AppComponents/log/CSequenceWriter.h>

#include <map>
#include <memory>
#include <string>

class LogMutex;

/// A log of named streams ("sub-logs"). The writer of a stream is made when its name is first
/// asked for, shared by everybody who asks for that name, and deleted by the last release.
///
/// getSubLog() and releaseSubLog() may be called from several threads. Copies share the lock and
/// the streams of the original.
class APPCOMPONENTS_EXPORT CSequenceLog : public CBaseLog
{
public:
    CSequenceLog();
    CSequenceLog(const CSequenceLog&) = default;
    CSequenceLog& operator=(const CSequenceLog&) = default;
    /// Deletes the writers that are still held, and says so in the manager log.
    ~CSequenceLog() override;

    /// The writer of the stream \p name. Give it back with releaseSubLog().
    CSequenceWriter* getSubLog(const std::wstring& name);

    /// Gives one hold of the stream \p name back.
    void releaseSubLog(const std::wstring& name);

protected:
    /// Makes the writer of a new stream; the log owns it. Called under the lock, as the writer is
    /// deleted by the last release.
    virtual CSequenceWriter* createSubLog(const std::wstring& name) = 0;

    /// Does the destructor's work early, for a class whose writers refer to it when they go.
    void deleteHeldSubLogs();

    using SubLogs = std::map<std::wstring, CSequenceWriter*>;

    std::shared_ptr<LogMutex> mutex; ///< guards `subLogs`
    std::shared_ptr<SubLogs> subLogs;
};

/// A log of streams of numbers.
class APPCOMPONENTS_EXPORT CValueSequenceLog : public CSequenceLog
{
public:
    LogType getType() override; ///< `graphicLog`
};

/// A log of streams of frames.
class APPCOMPONENTS_EXPORT CFrameSeqienceLog : public CSequenceLog
{
public:
    LogType getType() override; ///< `seqienceLog`
};
