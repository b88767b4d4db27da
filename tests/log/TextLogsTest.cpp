#include "FileContents.h"
#include "Processors.h"

#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CFolderOfTextLog.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/QDebugTextLog.h>

#include <gmock/gmock.h>

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

using testing::ElementsAre;

namespace
{

void send(CTextLog& log, const std::wstring& text, TextLogType type = AllLogType)
{
    log.write(text.data(), static_cast<int>(text.size()), type);
}

class FileLogs : public testing::Test
{
protected:
    std::string path(const char* name) const { return folder.filePath(name).toStdString(); }
    QStringList fileNames() const { return QDir(folder.path()).entryList(QDir::Files); }
    void makeFiles(const QStringList& names) const
    {
        for (const QString& name : names)
            ASSERT_TRUE(writeFile(folder.filePath(name), "old"));
    }

    QTemporaryDir folder;
};

QStringList stampNames(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names += QStringLiteral("2020-01-%1_00-00-00.txt").arg(i + 1, 2, 10, QLatin1Char('0'));
    return names;
}

QStringList messages;

void recordMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    messages += message;
}

class DelayedLog : public testing::Test
{
protected:
    DelayedLog() { drained(); }
    ~DelayedLog() override { log.resetPorcesor(nullptr); }

    std::wstring drained()
    {
        std::wstring text = L"old";
        log.getStringAndClear(text);
        return text;
    }

    CDelayedProcessorTextLog& log = CDelayedProcessorTextLog::getInstance();
};

} // namespace

TEST_F(FileLogs, WideTextIsWrittenAsUtf8AndWhatIsNoCharacterReplaced)
{
    ASSERT_TRUE(writeFile(folder.filePath("a.txt"), "a long old text"));
    CFileTextLog log(path("a.txt"));
    EXPECT_EQ(contents(folder.filePath("a.txt")), "");
    send(log, {wchar_t(0xD800), wchar_t(0xDFFF), wchar_t(0x110000), wchar_t(-1), L'\x416'});
    send(log, {wchar_t(0xD7FF), wchar_t(0xE000), wchar_t(0x10FFFF), wchar_t(0)});
    send(log, std::wstring(100000, L'\x20AC'));
    const QByteArray replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(contents(folder.filePath("a.txt")),
              replacement.repeated(4) + "\xD0\x96\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF" +
                  QByteArray(1, '\0') + QByteArray("\xE2\x82\xAC").repeated(100000));
}

TEST_F(FileLogs, AFileThatCannotTakeTextIsSilent)
{
    CFileTextLog missing(path("no/such/folder.txt"));
    CFileTextLog directory(folder.path().toStdString());
    CFileTextLog full("/dev/full");
    CFolderOfTextLog noFolder(path("nowhere"));
    for (CTextLog* const log :
         std::initializer_list<CTextLog*>{&missing, &directory, &full, &noFolder})
        for (int i = 0; i < 1000; ++i)
            EXPECT_NO_THROW(send(*log, L"a line that goes nowhere\n"));
    EXPECT_EQ(missing.getFileName(), path("no/such/folder.txt"));
}

TEST_F(FileLogs, AFolderLogStampsEachChunkNotEachLine)
{
    CFolderOfTextLog log(folder.path().toStdString());
    const QString filePath = QString::fromStdString(log.getFilePath());
    const QRegularExpression stampName("^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.txt$");
    EXPECT_EQ(fileNames(), QStringList(filePath.mid(folder.path().size() + 1)));
    EXPECT_TRUE(stampName.match(fileNames().value(0)).hasMatch()) << filePath.toStdString();

    send(log, L"a\nb\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(1001));
    CFolderOfTextLog moved = std::move(log);
    send(moved, L"c\n");
    const QRegularExpression lines(
        "^(\\d{4}-\\d\\d-\\d\\d \\S+) a\nb\n(\\d{4}-\\d\\d-\\d\\d \\S+) c\n$");
    const auto match = lines.match(contents(filePath));
    ASSERT_TRUE(match.hasMatch()) << contents(filePath).constData();
    EXPECT_LT(match.captured(1), match.captured(2)); // a second later
}

TEST_F(FileLogs, AFolderLogKeepsTheTenLastNamesBesideItsOwn)
{
    makeFiles(stampNames(12) + QStringList{"notes.txt", "notes.TXT", "x.txt.bak"});
    const CFolderOfTextLog log(folder.path().toStdString());
    const QString own = QString::fromStdString(log.getFilePath()).section('/', -1);
    QStringList expected = stampNames(12).mid(3);
    expected << own << "notes.TXT"
             << "notes.txt"
             << "x.txt.bak";
    expected.sort();
    QStringList found = fileNames();
    found.sort();
    EXPECT_EQ(found, expected);
}

TEST_F(FileLogs, AFolderLogDeletesNothingUpToTenFilesAndNeverAFolder)
{
    makeFiles(stampNames(9));
    ASSERT_TRUE(QDir(folder.path()).mkdir("0.txt")); // counts, as the smallest of ten
    const CFolderOfTextLog first(folder.path().toStdString());
    EXPECT_EQ(fileNames().size(), 10);
    const CFolderOfTextLog second(folder.path().toStdString());
    EXPECT_TRUE(QDir(folder.filePath("0.txt")).exists());
    EXPECT_TRUE(fileNames().contains(stampNames(1).value(0)));
}

TEST(QDebugTextLog, SendsOneQuotedMessageWithoutTheLastLineFeed)
{
    messages.clear();
    QtMessageHandler previous = qInstallMessageHandler(recordMessage);
    QDebugTextLog log;
    send(log, L"x\n\n");
    send(log, L"\x416 no end");
    send(log, L"\n");
    qInstallMessageHandler(previous);
    EXPECT_EQ(messages,
              QStringList({QStringLiteral("\"x\\n\""), QString::fromUtf8("\"\xD0\x96 no end\""),
                           QStringLiteral("\"\"")}));
}

TEST_F(DelayedLog, CollectsNotifiesAndEmpties)
{
    Processor<CTextLogPorcessor> processor;
    send(log, L"before ");
    log.resetPorcesor(&processor);
    send(log, L"one ");
    send(log, L"two", DebugLogType);
    log.resetPorcesor(nullptr);
    send(log, L"\n");
    EXPECT_EQ(processor.calls, 2);
    EXPECT_EQ(drained(), L"before one two\n");
    EXPECT_EQ(drained(), L"");
}

TEST_F(DelayedLog, AProcessorThatCallsBackGetsAnErrorInsteadOfADeadlock)
{
    Processor<CTextLogPorcessor> processor;
    processor.callBack = [this] { drained(); };
    log.resetPorcesor(&processor);
    EXPECT_THROW(send(log, L"x"), std::system_error);
    CLogAccessor accessor;
    accessor.addLog(&log);
    EXPECT_TRUE((accessor(AllLogType) << L"y" << std::endl).good());
    log.resetPorcesor(nullptr);
    EXPECT_EQ(drained(), L"xy\n");
}
