#pragma once

#include <AppComponents/log/CTextLog.h>

#include <memory>
#include <string>

class Utf8File;

/// Writes to a new file in a folder, named after the local time of construction
/// ("%Y-%m-%d_%H-%M-%S.txt"), as UTF-8, and flushes after every chunk. Each chunk (not each line)
/// begins with a time stamp.
///
/// Before it opens its file, the log deletes all but the `fileNumLimit` last (by name) of the
/// "*.txt" files in the folder, whoever made them. The folder must exist. A file that cannot be
/// opened is not reported; the log then drops what it is handed. Two logs built for one folder
/// within the same second share the name of the file, and the second truncates it.
class APPCOMPONENTS_EXPORT CFolderOfTextLog : public CTextLog
{
public:
    /// How many earlier files are kept.
    static constexpr int fileNumLimit = 10;

    /// \p folderPath without a separator at its end; empty means the current directory.
    explicit CFolderOfTextLog(std::string folderPath);
    CFolderOfTextLog(const CFolderOfTextLog&) = delete;
    CFolderOfTextLog(CFolderOfTextLog&& other) noexcept;
    CFolderOfTextLog& operator=(const CFolderOfTextLog&) = delete;
    CFolderOfTextLog& operator=(CFolderOfTextLog&& other) noexcept;
    ~CFolderOfTextLog() override;

    /// The full name of the file that this log writes: the folder, "/" and the file's name.
    std::string getFilePath() const;

protected:
    void writeInternal(const wchar_t* text, int length) override;

private:
    std::string filePath;
    std::unique_ptr<Utf8File> file;
};
