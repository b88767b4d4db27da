#pragma once

#include "Stopwatch.h"

#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CTimerLog.h>

#include <optional>

/// Times one stage of the processing: exactly, into a sum, and, where a log is given, as a line
/// of the library's timer log.
class StageWatch
{
public:
    StageWatch(double& milliseconds, const wchar_t* stage, const CLogAccessor* where)
        : watch(milliseconds)
        , log(where)
    {
        if (log)
            timer.emplace(stage);
    }
    StageWatch(const StageWatch&) = delete;
    StageWatch& operator=(const StageWatch&) = delete;
    ~StageWatch()
    {
        if (log)
            (*log)(TimeLogType) << *timer << std::endl;
    }

private:
    const Stopwatch watch;
    std::optional<CTimerLog> timer; // its name takes memory, which most frames can do without
    const CLogAccessor* const log;
};
