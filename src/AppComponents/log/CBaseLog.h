#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/log/LogTypes.h>

/// Root of every log. A log is handled through its address, which is its identity.
class APPCOMPONENTS_EXPORT CBaseLog
{
public:
    constexpr CBaseLog() = default;
    CBaseLog(const CBaseLog&) = default;
    CBaseLog(CBaseLog&&) = default;
    CBaseLog& operator=(const CBaseLog&) = default;
    CBaseLog& operator=(CBaseLog&&) = default;
    virtual ~CBaseLog();

    /// The kind of this log; never changes during its life.
    virtual LogType getType() = 0;
};
