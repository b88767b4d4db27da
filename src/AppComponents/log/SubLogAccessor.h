#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/log/LogTypes.h>

#include <string>
#include <vector>

class CBaseLog;
class CLogAccessor;
class CSequenceWriter;

/// What a component holds to write one stream: the writers of that name in every sequence log of
/// one kind that a log accessor knows.
///
/// initAccessor() is called at most once, and nothing is written after closeAccessor(). A copy
/// takes no hold of its own: of two copies only one may be closed or destroyed while the writers
/// are in use. An accessor belongs to one thread at a time.
class APPCOMPONENTS_EXPORT SubLogAccessor
{
public:
    SubLogAccessor();
    SubLogAccessor(const SubLogAccessor&) = default;
    SubLogAccessor& operator=(const SubLogAccessor&) = default;
    virtual ~SubLogAccessor(); ///< as closeAccessor()

    /// Gives the writers back.
    void closeAccessor();

protected:
    /// Takes the writers of the stream \p streamName from the logs of kind \p type.
    void initAccessor(CLogAccessor& accessor, LogType type, std::wstring& streamName);

    std::vector<CBaseLog*> logs;           ///< sequence logs, not owned
    std::vector<CSequenceWriter*> writers; ///< one per log, in the same order

private:
    std::wstring name;
};

/// Writes one stream of numbers.
class APPCOMPONENTS_EXPORT CValSeqWriterAccessor : public SubLogAccessor
{
public:
    CValSeqWriterAccessor(); ///< writes nowhere until initAccessor()
    CValSeqWriterAccessor(CLogAccessor& accessor, std::wstring streamName);

    /// Takes the writers of \p streamName from the value logs of \p accessor.
    void initAccessor(CLogAccessor& accessor, std::wstring streamName);

    /// Appends one value to the stream in every log.
    void write(double value);
};

/// Writes one stream of frames.
class APPCOMPONENTS_EXPORT CFrameSeqWriterAccessor : public SubLogAccessor
{
public:
    CFrameSeqWriterAccessor(); ///< writes nowhere until initAccessor()
    CFrameSeqWriterAccessor(CLogAccessor& accessor, std::wstring streamName);

    /// Takes the writers of \p streamName from the frame logs of \p accessor.
    void initAccessor(CLogAccessor& accessor, std::wstring streamName);

    /// Starts the stream in every log; see CFrameSequenceWriter::open().
    void open(int width, int height);

    /// Appends one frame of width x height bytes in every log.
    void write(const unsigned char* frame);
};
