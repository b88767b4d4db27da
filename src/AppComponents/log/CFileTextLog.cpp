#include <AppComponents/log/CFileTextLog.h>

#include <AppComponents/log/Utf8File.h>

#include <cstddef>
#include <utility>

CFileTextLog::CFileTextLog(std::string name)
    : fileName(std::move(name))
    , file(std::make_unique<Utf8File>(fileName))
{
}

CFileTextLog::~CFileTextLog() = default;

std::string CFileTextLog::getFileName() const
{
    return fileName;
}

void CFileTextLog::writeInternal(const wchar_t* text, int length)
{
    file->write({{text, static_cast<std::size_t>(length)}});
}
