#include <AppComponents/log/SubLogAccessor.h>

#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CSequenceLog.h>

SubLogAccessor::SubLogAccessor() = default;

SubLogAccessor::~SubLogAccessor()
{
    closeAccessor();
}

void SubLogAccessor::closeAccessor()
{
    for (CBaseLog* const log : logs)
        static_cast<CSequenceLog*>(log)->releaseSubLog(name);
    logs.clear();
}

void SubLogAccessor::initAccessor(CLogAccessor& accessor, LogType type, std::wstring& streamName)
{
    closeAccessor();
    name = streamName;
    logs = accessor.logs[type];
    for (CBaseLog* const log : logs)
        writers.push_back(static_cast<CSequenceLog*>(log)->getSubLog(name));
}

CValSeqWriterAccessor::CValSeqWriterAccessor() = default;

CValSeqWriterAccessor::CValSeqWriterAccessor(CLogAccessor& accessor, std::wstring streamName)
{
    SubLogAccessor::initAccessor(accessor, graphicLog, streamName);
}

void CValSeqWriterAccessor::initAccessor(CLogAccessor& accessor, std::wstring streamName)
{
    SubLogAccessor::initAccessor(accessor, graphicLog, streamName);
}

void CValSeqWriterAccessor::write(double value)
{
    for (CSequenceWriter* const writer : writers)
        static_cast<CValueSequenceWriter*>(writer)->write(value);
}

CFrameSeqWriterAccessor::CFrameSeqWriterAccessor() = default;

CFrameSeqWriterAccessor::CFrameSeqWriterAccessor(CLogAccessor& accessor, std::wstring streamName)
{
    SubLogAccessor::initAccessor(accessor, seqienceLog, streamName);
}

void CFrameSeqWriterAccessor::initAccessor(CLogAccessor& accessor, std::wstring streamName)
{
    SubLogAccessor::initAccessor(accessor, seqienceLog, streamName);
}

void CFrameSeqWriterAccessor::open(int width, int height)
{
    for (CSequenceWriter* const writer : writers)
        static_cast<CFrameSequenceWriter*>(writer)->open(width, height);
}

void CFrameSeqWriterAccessor::write(const unsigned char* frame)
{
    for (CSequenceWriter* const writer : writers)
        static_cast<CFrameSequenceWriter*>(writer)->write(frame);
}
