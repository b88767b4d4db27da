#include "WindowLogs.h"

#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CLogManager.h>

void registerWindowLogs()
{
    static const bool registered = [] {
        // Registered under the empty name, a log reaches every accessor, defLog included. Both
        // are the library's own and live until the process ends.
        // Stage times have graphs of their own; line after line they would bury the messages.
        CDelayedProcessorTextLog& messages = CDelayedProcessorTextLog::getInstance();
        messages.setTextLogTypeWriting(AllLogType, false);
        messages.setTextLogTypeWriting(InfoLogType, true);
        messages.setTextLogTypeWriting(DebugLogType, true);
        CLogManager::registerLog(&messages, L"");
        CLogManager::registerLog(&CDelayedValueSequenceLog::getInstance(), L"");
        return true;
    }();
    static_cast<void>(registered);
}
