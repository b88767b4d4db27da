#pragma once

#include <array>
#include <cstddef>
#include <string>

/// A file of wide text, written as UTF-8. A stream of the standard library costs more than the
/// writing itself where every message is flushed, and is of no use any more after one failed.
///
/// Failures are silent: what cannot be written is dropped. Allocates nothing after construction.
class Utf8File
{
public:
    /// Creates or truncates the file.
    explicit Utf8File(const std::string& fileName);
    Utf8File(const Utf8File&) = delete;
    Utf8File& operator=(const Utf8File&) = delete;
    ~Utf8File(); ///< closes the file

    void append(const wchar_t* text, std::size_t length);

    /// Hands what was appended to the system, in one piece if it fits the buffer.
    void flush();

private:
    std::array<char, 4096> buffer;
    std::size_t used = 0;
    int descriptor;
};
