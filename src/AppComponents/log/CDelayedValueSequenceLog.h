#pragma once

#include <AppComponents/log/CGraphicValues.h>
#include <AppComponents/log/CSequenceLog.h>
#include <AppComponents/log/CValProcessor.h>

#include <map>
#include <string>

/// Keeps the recent values of each stream in memory, for a graph in the user interface.
///
/// All operations, and writing to the streams, may be called from several threads. A processor
/// that calls back into the log from process() gets a std::system_error
/// (resource_deadlock_would_occur).
class APPCOMPONENTS_EXPORT CDelayedValueSequenceLog : public CValueSequenceLog
{
public:
    /// The single instance, created on the first call and destroyed at process exit.
    static CDelayedValueSequenceLog& getInstance();

    ~CDelayedValueSequenceLog() override;

    /// Sets whom to notify of every value and of every stream that goes, null for nobody. The
    /// processor is not owned: take it out before it dies.
    void resetPorcesor(CValProcessor* newProcessor);

    /// Replaces the contents of \p out by a snapshot of every stream, by name. A stream to which
    /// nothing was written yet gives an empty, all-zero snapshot.
    void getGraphicsSet(std::map<std::wstring, CGraphicValues>& out);

protected:
    CDelayedValueSequenceLog();

    CSequenceWriter* createSubLog(const std::wstring& name) override;

private:
    friend class CGraphicValues;

    void notifyProcessor(); // under the lock

    CValProcessor* processor = nullptr;
};
