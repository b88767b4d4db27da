#include <AppComponents/log/CFileTextLog.h>

#include <AppComponents/log/Utf8Locale.h>

#include <utility>

CFileTextLog::CFileTextLog(std::string name)
    : fileName(std::move(name))
{
    stream.imbue(utf8Locale());
    stream.open(fileName, std::ios_base::out | std::ios_base::trunc | std::ios_base::binary);
}

CFileTextLog::~CFileTextLog() = default;

std::string CFileTextLog::getFileName() const
{
    return fileName;
}

void CFileTextLog::writeInternal(const wchar_t* text, int length)
{
    stream.write(text, length);
    stream.flush();
}
