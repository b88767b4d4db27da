#pragma once

#include "Stopwatch.h"

#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CTimerLog.h>

/// Times one stage of the processing: exactly, into a sum, and, where a log is given, as a line
/// of the library's timer log.
class StageWatch
{
public:
    StageWatch(double& milliseconds, const wchar_t* stage, const CLogAccessor* where)
        : watch(milliseconds)
        , timer(stage)
        , log(where)
    {
    }
    StageWatch(const StageWatch&) = delete;
    StageWatch& operator=(const StageWatch&) = delete;
    ~StageWatch()
    {
        if (log)
            (*log)(TimeLogType) << timer << std::endl;
    }

private:
    const Stopwatch watch;
    const CTimerLog timer;
    const CLogAccessor* const log;
};
