#include "WindowLogs.h"

#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CLogManager.h>

void registerWindowLogs()
{
    static const bool registered = [] {
        // Registered under the empty name, a log reaches every accessor, defLog included. Both
        // are the library's own and live until the process ends.
        CLogManager::registerLog(&CDelayedProcessorTextLog::getInstance(), L"");
        CLogManager::registerLog(&CDelayedValueSequenceLog::getInstance(), L"");
        return true;
    }();
    static_cast<void>(registered);
}
