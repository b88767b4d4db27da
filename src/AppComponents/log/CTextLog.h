#pragma once

#include <AppComponents/log/CBaseLog.h>

/// A sink of wide text. Accessors hand it chunks of text, each with a category; the log takes
/// those that its filter lets pass.
///
/// Not synchronised, unless a derived class says otherwise.
class APPCOMPONENTS_EXPORT CTextLog : public CBaseLog
{
public:
    constexpr CTextLog() = default;

    /// Writes \p length characters at \p text if the filter lets \p type pass. The text needs no
    /// terminating zero and may hold any number of line ends.
    virtual void write(const wchar_t* text, int length, TextLogType type);

    /// Sets the filter flag of \p type. While the flag of `AllLogType` is set (as it is at first)
    /// everything is written; otherwise only the types whose flag is set, and `AllLogType` itself.
    void setTextLogTypeWriting(TextLogType type, bool enable);

protected:
    LogType getType() override;

    /// Writes one chunk that passed the filter.
    virtual void writeInternal(const wchar_t* text, int length) = 0;

private:
    bool typeWriting[textLogTypeCount] = {true, false, false, false};
};
