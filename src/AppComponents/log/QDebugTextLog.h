#pragma once

#include <AppComponents/log/CTextLog.h>

/// Sends each chunk as one message to Qt's debug channel, without the line feed at its end.
class APPCOMPONENTS_EXPORT QDebugTextLog : public CTextLog
{
protected:
    void writeInternal(const wchar_t* text, int length) override;
};
