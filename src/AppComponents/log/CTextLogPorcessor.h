#pragma once

#include <AppComponents/AppComponentsExport.h>

/// Told by the delayed text log that text is waiting; implemented by the application.
class APPCOMPONENTS_EXPORT CTextLogPorcessor
{
public:
    /// New text has arrived. Called on the writer's thread while the log is locked: schedule the
    /// draining (with a queued signal, say), do not call back into the log.
    virtual void process() = 0;

    CTextLogPorcessor() = default;
    CTextLogPorcessor(const CTextLogPorcessor&) = default;
    CTextLogPorcessor(CTextLogPorcessor&&) = default;
    CTextLogPorcessor& operator=(const CTextLogPorcessor&) = default;
    CTextLogPorcessor& operator=(CTextLogPorcessor&&) = default;
    virtual ~CTextLogPorcessor();
};
