#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

/// A file of wide text, written as UTF-8. A stream of the standard library costs more than the
/// writing itself where every message is flushed, and is of no use any more after one failed.
///
/// Failures are silent: what cannot be written is dropped. Allocates nothing after construction.
/// Threads that share a file may interleave what they write, nothing worse.
class Utf8File
{
public:
    /// Creates or truncates the file.
    explicit Utf8File(const std::string& fileName);
    Utf8File(const Utf8File&) = delete;
    Utf8File& operator=(const Utf8File&) = delete;
    ~Utf8File(); ///< closes the file

    /// Hands the pieces to the system, in one go if they come to less than 4 KiB.
    void write(std::initializer_list<std::wstring_view> pieces) const;

private:
    int descriptor;
};
