#include "RecordingLog.h"

#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CLogManager.h>

#include <gmock/gmock.h>

#include <stdexcept>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class ThrowingLog : public CTextLog
{
protected:
    void writeInternal(const wchar_t*, int) override { throw std::runtime_error("broken sink"); }
};

class TalkativeLog : public RecordingLog
{
public:
    CLogAccessor* accessor = nullptr;

protected:
    void writeInternal(const wchar_t* text, int length) override
    {
        RecordingLog::writeInternal(text, length);
        (*accessor)(DebugLogType) << std::wstring(2000, L'!') << std::endl;
    }
};

// An accessor and a log that only this accessor knows.
class AccessorTest : public testing::Test
{
protected:
    AccessorTest() { accessor.addLog(&log); }

    RecordingLog log;
    CLogAccessor accessor;
};

} // namespace

TEST_F(AccessorTest, DeliversTheLineWithItsTypeOnEndl)
{
    accessor(InfoLogType) << L"modes: " << 3 << ' ' << "narrow" << std::endl;
    accessor(AllLogType) << std::flush;
    EXPECT_THAT(log.chunks, ElementsAre(Chunk{L"modes: 3 narrow\n", InfoLogType}));
}

TEST_F(AccessorTest, The254thCharacterFinishesAChunk)
{
    auto& stream = accessor(DebugLogType);
    stream << std::wstring(253, L'a');
    EXPECT_THAT(log.chunks, IsEmpty());
    stream << L'b';
    const Chunk full{std::wstring(253, L'a') + L'b', DebugLogType};
    EXPECT_THAT(log.chunks, ElementsAre(full));
    stream << std::endl;
    EXPECT_THAT(log.chunks, ElementsAre(full, Chunk{L"\n", DebugLogType}));
}

TEST_F(AccessorTest, TakesTheTypeThatIsSetWhenTheTextLeavesAtTheLatestWhenItDies)
{
    {
        CLogAccessor mortal;
        mortal.addLog(&log);
        mortal(InfoLogType) << L"load";
        mortal(TimeLogType) << L" 5ms" << std::endl << L"last words";
        mortal(DebugLogType);
    }
    EXPECT_THAT(log.chunks,
                ElementsAre(Chunk{L"load 5ms\n", TimeLogType}, Chunk{L"last words", DebugLogType}));
}

TEST_F(AccessorTest, AFailingLogHarmsNeitherTheWriterNorTheOtherLogs)
{
    ThrowingLog broken;
    CLogAccessor other;
    other.addLog(&broken);
    other.addLog(&log);
    auto& stream = other(AllLogType);
    stream << L"one" << std::endl << std::wstring(300, L'x') << L"two" << std::endl;
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(log.written, L"one\n" + std::wstring(300, L'x') + L"two\n");
}

TEST_F(AccessorTest, DropsWhatALogWritesBackIntoTheSameAccessor)
{
    TalkativeLog talkative;
    talkative.accessor = &accessor;
    accessor.addLog(&talkative);
    accessor(AllLogType) << L"hello" << std::endl << L"again" << std::endl;
    EXPECT_EQ(log.written, L"hello\nagain\n");
    EXPECT_EQ(talkative.written, L"hello\nagain\n");
}

TEST_F(AccessorTest, KeepsALogOnceHoweverOftenItIsAdded)
{
    CLogManager::registerLog(&log, L"AddedTwice");
    accessor.addLog(&log);
    accessor.addLogList(L"AddedTwice");
    accessor.addLogList({});
    accessor(AllLogType) << L"x" << std::endl;
    EXPECT_EQ(log.written, L"x\n");
    CLogManager::getLogList(textLog, L"AddedTwice").clear();
}

TEST(CLogAccessor, SeesOnlyTheLogsRegisteredBeforeItWasBuilt)
{
    RecordingLog early;
    RecordingLog late;
    CLogManager::registerLog(&early, L"Camera");
    CLogAccessor camera(L"Camera");
    CLogAccessor stranger(L"Lens");
    CLogManager::registerLog(&late, L"Camera");
    camera(AllLogType) << L"a" << std::endl;
    stranger(AllLogType) << L"b" << std::endl;
    EXPECT_EQ(early.written, L"a\n");
    EXPECT_EQ(late.written, L"");

    camera.addLogList(L"Camera");
    camera(AllLogType) << L"c" << std::endl;
    EXPECT_EQ(early.written, L"a\nc\n");
    EXPECT_EQ(late.written, L"c\n");
    CLogManager::getLogList(textLog, L"Camera").clear();
}
