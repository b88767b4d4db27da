#include "FileContents.h"
#include "Processors.h"

#include <AppComponents/calc/FileOpenError.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileFrameSequenceLog.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include <memory>
#include <numeric>
#include <system_error>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StrEq;

namespace
{

// Several of these may live, unlike the singleton.
class ValueLog : public CDelayedValueSequenceLog
{
public:
    ValueLog() = default;
};

std::map<std::wstring, CGraphicValues> snapshot(CDelayedValueSequenceLog& log)
{
    std::map<std::wstring, CGraphicValues> values;
    values[L"stale"].write(1.0);
    log.getGraphicsSet(values);
    return values;
}

std::vector<double> ringOf(const CGraphicValues& values)
{
    return {values.getArray(), values.getArray() + CGraphicValues::arraySize};
}

class ValueLogs : public testing::Test
{
protected:
    ValueLogs() { accessor.addLog(&log); }

    CLogAccessor accessor;
    ValueLog log;
};

class FrameLogs : public testing::Test
{
protected:
    FrameLogs()
        : log(folder.path().toStdWString())
    {
        accessor.addLog(&log);
    }

    QByteArray file(const char* name) const { return contents(folder.filePath(name)); }

    QTemporaryDir folder;
    CFileFrameSequenceLog log;
    CLogAccessor accessor;
};

} // namespace

TEST(CGraphicValues, TheFirstValueFillsTheRing)
{
    CGraphicValues values;
    EXPECT_TRUE(values.isEmpty());
    EXPECT_THAT(ringOf(values), Each(0.0));
    values.write(7.5);
    EXPECT_THAT(ringOf(values), Each(7.5));
    EXPECT_EQ(values.getIterStart(), 1);
    for (int i = 1; i <= 300; ++i)
        values.write(i);
    EXPECT_EQ(values.getIterStart(), 1);
    std::vector<double> expected(300);
    std::iota(expected.begin() + 1, expected.end(), 1.0);
    expected[0] = 300.0;
    EXPECT_EQ(ringOf(values), expected);
}

TEST_F(ValueLogs, AccessorsOfOneNameShareAStreamUntilTheLastLetsGo)
{
    auto first = std::make_unique<CValSeqWriterAccessor>(accessor, L"fps");
    auto second = std::make_unique<CValSeqWriterAccessor>();
    second->initAccessor(accessor, L"fps");
    first->write(1.0);
    first.reset();
    second->write(2.0);
    const auto streams = snapshot(log);
    ASSERT_EQ(streams.size(), 1u);
    EXPECT_EQ(streams.at(L"fps").getIterStart(), 2);
    second->closeAccessor();
    EXPECT_THAT(snapshot(log), IsEmpty());
}

TEST_F(ValueLogs, NotifiesOncePerValueAndOncePerDeletedStream)
{
    Processor<CValProcessor> processor;
    CValSeqWriterAccessor first(accessor, L"a");
    CValSeqWriterAccessor sharer(accessor, L"a");
    log.resetPorcesor(&processor);
    const CValSeqWriterAccessor unused(accessor, L"b");
    first.write(1.0);
    EXPECT_EQ(processor.calls, 1);
    auto copies = snapshot(log);
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_TRUE(copies.at(L"b").isEmpty());
    EXPECT_THAT(ringOf(copies.at(L"b")), Each(0.0));
    copies.at(L"a").write(2.0);
    copies.clear();
    first.closeAccessor();
    EXPECT_EQ(processor.calls, 1);
    sharer.closeAccessor();
    EXPECT_EQ(processor.calls, 2);
}

TEST_F(ValueLogs, AProcessorThatCallsBackGetsAnErrorInsteadOfADeadlock)
{
    Processor<CValProcessor> processor;
    processor.callBack = [this] { snapshot(log); };
    CValSeqWriterAccessor values(accessor, L"a");
    log.resetPorcesor(&processor);
    EXPECT_THROW(values.write(1.0), std::system_error);
    values.closeAccessor(); // the notification of the end fails quietly
    EXPECT_THAT(snapshot(log), IsEmpty());
}

TEST(SequenceLogs, ALogThatDiesWithHeldStreamsSaysSoAndStillNotifies)
{
    const QTemporaryDir folder;
    const QString managerLog = folder.filePath("manager.txt");
    CLogManager::getInstance().setManagerLogFileName(managerLog.toStdString());
    Processor<CValProcessor> processor;
    {
        ValueLog log;
        log.resetPorcesor(&processor);
        log.getSubLog(L"a");
        log.getSubLog(L"b");
        CFileFrameSequenceLog frames(L"unused");
        frames.getSubLog(L"c");
        CFileFrameSequenceLog released(L"unused");
        released.getSubLog(L"d");
        released.releaseSubLog(L"d");
    }
    EXPECT_EQ(contents(managerLog),
              QByteArray("ERROR: Not all subLogs are released\n").repeated(2));
    EXPECT_EQ(processor.calls, 2);
    CLogManager::getInstance().setManagerLogFileName("");
}

TEST_F(FrameLogs, OpeningAgainStartsNewFilesAndKeepsTheOldHandle)
{
    const QDir handles("/proc/self/fd");
    const unsigned char frame[] = "0123456789abcdefX";
    const auto before = handles.count();
    {
        CFrameSeqWriterAccessor frames(accessor, L"raw\x416");
        frames.open(12345, 1);
        EXPECT_EQ(file("raw\xD0\x96.dat.dim"), "12345x0001");
        frames.open(4, 1);
        frames.write(frame);
        frames.open(8, 2);
        for (int i = 0; i < 3; ++i)
            frames.write(frame);
    }
    EXPECT_EQ(file("raw\xD0\x96.dat"), QByteArray("0123456789abcdef").repeated(3));
    EXPECT_EQ(file("raw\xD0\x96.dat.dim"), "0008x0002");
    handles.refresh();
    EXPECT_EQ(handles.count(), before + 2);
}

TEST_F(FrameLogs, WritingWithoutAnOpenDataFileThrows)
{
    const unsigned char frame[] = {1};
    CFrameSeqWriterAccessor frames(accessor, L"raw");
    const auto write = [&] { frames.write(frame); };
    EXPECT_THAT(write, testing::ThrowsMessage<std::runtime_error>(StrEq("not opend")));
    ASSERT_TRUE(QDir(folder.path()).mkdir("raw.dat")); // in the way of the data file
    frames.open(1, 1);
    EXPECT_THAT(write, testing::ThrowsMessage<std::runtime_error>(StrEq("not opend")));

    CFrameSeqWriterAccessor nowhere(accessor, L"no/such/folder");
    EXPECT_THROW(nowhere.open(1, 1), FileOpenError);
    EXPECT_THROW(nowhere.write(frame), std::runtime_error);
}
