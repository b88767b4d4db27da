#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/log/CBaseLog.h>

#include <array>
#include <streambuf>
#include <vector>

/// Stream buffer of a log accessor: collects characters and hands each finished chunk to the text
/// logs of the accessor, with the category chosen last.
///
/// A chunk is finished by a flush, or when more than 253 characters are waiting (it then holds
/// 254). Whatever the logs do, the stream never sees a failure. Text written through the same
/// accessor from inside a log's write is dropped.
class APPCOMPONENTS_EXPORT COutBuf : public std::basic_streambuf<wchar_t>
{
public:
    /// The logs of an accessor by kind, and in it the vector of the text logs.
    using LogArray = std::array<std::vector<CBaseLog*>, logTypeCount>;

    /// \p logs belongs to the accessor and must outlive the buffer.
    explicit COutBuf(LogArray* logs);
    COutBuf(const COutBuf&) = delete;
    COutBuf& operator=(const COutBuf&) = delete;
    /// Delivers the text that was not flushed.
    ~COutBuf() override;

    /// Sets the category that the next chunk will carry, text already waiting included.
    void setType(TextLogType type) { currentType = type; }

protected:
    int_type overflow(int_type character = traits_type::eof()) override;
    int sync() override;

private:
    void deliver(int length);

    static constexpr int putAreaSize = 253;

    LogArray* logList;
    TextLogType currentType = AllLogType;
    bool delivering = false;
    wchar_t buffer[putAreaSize + 3]; // the spare room takes the character that overflow gets
};
