#include "FileContents.h"
#include "RecordingLog.h"

#include <AppComponents/log/CLogManager.h>

#include <gmock/gmock.h>

#include <QTemporaryDir>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class LogOfKind : public CBaseLog
{
public:
    explicit LogOfKind(LogType logType)
        : type(logType)
    {
    }
    LogType getType() override { return type; }

private:
    LogType type;
};

void setManagerLogFileName(const QString& fileName)
{
    CLogManager::getInstance().setManagerLogFileName(fileName.toStdString());
}

// Manager log files in a folder of the test's own; the manager log is closed afterwards.
class ManagerLogTest : public testing::Test
{
protected:
    ~ManagerLogTest() override { setManagerLogFileName(folder.filePath("no/such/folder")); }

    QTemporaryDir folder;
};

} // namespace

TEST_F(ManagerLogTest, AnnouncesEveryRegistrationUnderItsKindAndName)
{
    LogOfKind text(textLog), matrix(matrixLog), frames(seqienceLog), values(graphicLog);
    LogOfKind unknown(static_cast<LogType>(7));
    CLogManager::registerLog(&text, L"unheard");
    CLogManager::registerLog(&text, L"unheard");
    const QString fileName = folder.filePath("manager.txt");
    setManagerLogFileName(fileName);
    CLogManager::registerLog(&text, L"Camera");
    CLogManager::registerLog(&matrix, L"m");
    CLogManager::registerLog(&frames, L"\x416\xD800z"); // a letter beyond ASCII, a broken one
    CLogManager::registerLog(&values, L"");
    CLogManager::registerLog(&unknown, L"u");
    EXPECT_EQ(contents(fileName), "Registered textLog as \"Camera\"\n"
                                  "Registered matrixLog as \"m\"\n"
                                  "Registered seqienceLog as \"\xD0\x96\xEF\xBF\xBDz\"\n"
                                  "Registered graphicLog as \"\"\n"
                                  "Registered  as \"u\"\n");
    EXPECT_THAT(CLogManager::getLogList(textLog, L"unheard"), ElementsAre(&text));
    EXPECT_THAT(CLogManager::getLogList(graphicLog, L""), ElementsAre(&values));
    CLogManager::getLogList(graphicLog, L"").clear();
}

TEST_F(ManagerLogTest, ANewFileNameTruncatesAndRecoversFromOneThatCannotBeOpened)
{
    RecordingLog log;
    const QString first = folder.filePath("first.txt");
    const QString second = folder.filePath("second.txt");
    setManagerLogFileName(second);
    CLogManager::getManagerLog() << L"old" << std::endl;
    setManagerLogFileName(first);
    CLogManager::getManagerLog() << L"kept"; // not flushed
    setManagerLogFileName(folder.path());    // a directory
    EXPECT_TRUE(CLogManager::getManagerLog().fail());
    CLogManager::registerLog(&log, L"Silent");
    EXPECT_THAT(CLogManager::getLogList(textLog, L"Silent"), ElementsAre(&log));
    setManagerLogFileName(second);
    CLogManager::getManagerLog() << L"new" << std::endl;
    EXPECT_EQ(contents(first), "kept");
    EXPECT_EQ(contents(second), "new\n");
}

TEST(CLogManager, OnlyADefaultLogReachesDefLogAtOnce)
{
    RecordingLog named;
    static RecordingLog unnamed; // stays known to defLog
    CLogManager::registerLog(&named, L"Motor");
    CLogManager::registerLog(&unnamed, L"");
    defLog(InfoLogType) << L"hello" << std::endl;
    EXPECT_THAT(named.chunks, IsEmpty());
    EXPECT_THAT(unnamed.chunks, ElementsAre(Chunk{L"hello\n", InfoLogType}));
    EXPECT_TRUE(defLog.isWriting(textLog));
    EXPECT_FALSE(defLog.isWriting(matrixLog));
}
