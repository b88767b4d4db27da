#pragma once

#include <AppComponents/log/CTextLog.h>

#include <memory>
#include <string>

class Utf8File;

/// Writes to one file, as UTF-8, and flushes after every chunk, so that the file is complete
/// should the program crash.
///
/// The file is truncated by the constructor and stays open until destruction. A file that cannot
/// be opened is not reported; the log then drops what it is handed. So does a
/// chunk that cannot be written, while the disk is full, say.
class APPCOMPONENTS_EXPORT CFileTextLog : public CTextLog
{
public:
    /// Opens \p fileName, which the process's current directory resolves if it is relative.
    explicit CFileTextLog(std::string fileName);
    CFileTextLog(const CFileTextLog&) = delete;
    CFileTextLog& operator=(const CFileTextLog&) = delete;
    ~CFileTextLog() override;

    /// The name that the constructor was given.
    std::string getFileName() const;

protected:
    void writeInternal(const wchar_t* text, int length) override;

private:
    std::string fileName;
    std::unique_ptr<Utf8File> file;
};
