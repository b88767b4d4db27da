#pragma once

#include <AppComponents/log/CSequenceLog.h>

#include <cstddef>
#include <cstdio>
#include <string>

/// Dumps the raw frames of one stream into a file, one after another, without a header: the base
/// name followed by ".dat". A second file, named after the first with ".dim" added, holds the
/// dimensions as text, "%04dx%04d" (width first).
///
/// Takes no lock: one thread writes a stream.
class APPCOMPONENTS_EXPORT CFileFrameSequenceWriter : public CFrameSequenceWriter
{
public:
    /// \p name is the path and the name of the stream, without an extension.
    explicit CFileFrameSequenceWriter(std::wstring name);
    CFileFrameSequenceWriter(const CFileFrameSequenceWriter&) = delete;
    CFileFrameSequenceWriter& operator=(const CFileFrameSequenceWriter&) = delete;
    /// Closes the data file.
    ~CFileFrameSequenceWriter() override;

    /// Starts new files, truncating older ones of the same name. The data file in use is completed,
    /// but its handle stays open until the program ends.
    /// A data file that cannot be created shows at the next write().
    /// \throws FileOpenError if the dimension file cannot be created; write() throws then.
    void open(int width, int height) override;

    /// Appends width x height bytes; does not flush.
    /// \throws std::runtime_error ("not opend") unless a data file is open.
    void write(const unsigned char* frame) override;

private:
    std::FILE* file = nullptr;
    std::size_t frameSize = 0; // bytes
    std::wstring baseName;
};

/// Writes each stream of frames into a pair of files in a folder; see CFileFrameSequenceWriter.
class APPCOMPONENTS_EXPORT CFileFrameSequenceLog : public CFrameSeqienceLog
{
public:
    /// \p folderPath must exist; "/" is added to it.
    explicit CFileFrameSequenceLog(std::wstring folderPath);

protected:
    CSequenceWriter* createSubLog(const std::wstring& name) override;

private:
    std::wstring folder;
};
