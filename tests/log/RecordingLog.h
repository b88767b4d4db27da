#pragma once

#include <AppComponents/log/CTextLog.h>

#include <string>
#include <vector>

/// One chunk of text as a log received it.
struct Chunk {
    std::wstring text;
    TextLogType type;

    bool operator==(const Chunk& other) const { return text == other.text && type == other.type; }
};

/// A text log that keeps what it is handed, before its filter (`chunks`) and behind it (`written`).
class RecordingLog : public CTextLog
{
public:
    void write(const wchar_t* text, int length, TextLogType type) override
    {
        chunks.push_back({std::wstring(text, static_cast<std::size_t>(length)), type});
        CTextLog::write(text, length, type);
    }

    std::vector<Chunk> chunks;
    std::wstring written;

protected:
    void writeInternal(const wchar_t* text, int length) override
    {
        written.append(text, static_cast<std::size_t>(length));
    }
};
