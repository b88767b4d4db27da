#include <AppComponents/log/CFileFrameSequenceLog.h>

#include <AppComponents/calc/FileOpenError.h>

#include <QString>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <utility>

namespace
{

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

void writeDimensions(const QByteArray& fileName, int width, int height)
{
    const FilePointer file(std::fopen(fileName.constData(), "w"));
    if (!file)
        throw FileOpenError(QString::fromUtf8(fileName), qt_error_string(errno));
    std::fprintf(file.get(), "%04dx%04d", width, height);
}

} // namespace

CFileFrameSequenceWriter::CFileFrameSequenceWriter(std::wstring name)
    : baseName(std::move(name))
{
}

CFileFrameSequenceWriter::~CFileFrameSequenceWriter()
{
    if (file)
        std::fclose(file);
}

void CFileFrameSequenceWriter::open(int width, int height)
{
    // The file in use stays open, and must not write into the new one when the program ends.
    if (file)
        std::fflush(file);
    file = nullptr;
    const QByteArray dataName = QString::fromStdWString(baseName).toUtf8() + ".dat";
    writeDimensions(dataName + ".dim", width, height);
    frameSize = static_cast<std::size_t>(std::max(width, 0)) *
                static_cast<std::size_t>(std::max(height, 0));
    file = std::fopen(dataName.constData(), "wb");
}

void CFileFrameSequenceWriter::write(const unsigned char* frame)
{
    if (!file)
        throw std::runtime_error("not opend");
    std::fwrite(frame, 1, frameSize, file);
}

CFileFrameSequenceLog::CFileFrameSequenceLog(std::wstring folderPath)
    : folder(std::move(folderPath) + L'/')
{
}

CSequenceWriter* CFileFrameSequenceLog::createSubLog(const std::wstring& name)
{
    return new CFileFrameSequenceWriter(folder + name); // owned by the log that stores it
}
