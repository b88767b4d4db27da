#include "FileContents.h"
#include "RecordingLog.h"

#include <AppComponents/calc/FileOpenError.h>
#include <AppComponents/log/CConsoleTextLog.h>
#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CFolderOfTextLog.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/LogConfig.h>
#include <AppComponents/log/QDebugTextLog.h>

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

using testing::IsEmpty;
using testing::StrEq;
using testing::UnorderedElementsAre;
using testing::WhenDynamicCastTo;

namespace
{

// Runs in a folder of its own as the current one, and forgets the registrations of other tests.
class LogConfigTest : public testing::Test
{
protected:
    LogConfigTest()
        : previous(QDir::currentPath())
    {
        QDir::setCurrent(folder.path());
        forgetLogs();
    }
    ~LogConfigTest() override
    {
        forgetLogs();
        CLogManager::getInstance().setManagerLogFileName("");
        QDir::setCurrent(previous);
    }

    static void forgetLogs()
    {
        for (const wchar_t* name : {L"", L"Camera", L"Time"})
            for (const LogType type : {textLog, seqienceLog, graphicLog})
                CLogManager::getLogList(type, name).clear();
    }

    static void load(const QByteArray& document)
    {
        ASSERT_TRUE(writeFile("config.xml", document));
        LogConfig::LoadFromFile("config.xml");
    }

    static std::set<CBaseLog*>& textLogs(const wchar_t* name)
    {
        return CLogManager::getLogList(textLog, name);
    }

    QTemporaryDir folder;
    QString previous;
};

struct Fault {
    const char* name;
    QByteArray document;
    const char* message;
};

constexpr char invalid[] = "Invalid file format. Can't read XML in file 'config.xml'";
constexpr char noLogs[] = "Node 'Logs' not found in the document. File: 'config.xml'";
constexpr char twoLogs[] = "Only one node 'Logs' is allowed in the document. File: 'config.xml'";

QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

QByteArray declaring(const QByteArray& declarations, const QByteArray& content)
{
    return "<!DOCTYPE S [" + declarations + "]><S><Logs/>" + content + "</S>";
}

QByteArray repeatedEntity(const QByteArray& value, int references)
{
    return declaring("<!ENTITY e '" + value + "'>", QByteArray("&e;").repeated(references));
}

QByteArray repeatedEntity(int length, int references)
{
    return repeatedEntity(QByteArray(length, 'x'), references);
}

const QByteArray markup = QByteArray("<a b=\"1\"/>").repeated(21);

// Entities that each hold the one before several times.
QByteArray nestedEntities(int count, const char* kind, const char* reference, int times)
{
    QByteArray declarations;
    for (int i = 0; i < count; ++i)
        declarations += QByteArray("<!ENTITY ") + kind + "e" + QByteArray::number(i) + " '" +
                        (reference + QByteArray("e") + QByteArray::number(i - 1) + ";")
                            .repeated(i ? times : 0) +
                        "x'>";
    return declarations;
}

QByteArray numbered(const char* before, int count, const char* after)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += before + QByteArray::number(i) + after;
    return text;
}

QByteArray manyAttributes(int count)
{
    return "<S><Logs" + numbered(" a", count, "=\"\"") + "/></S>";
}

QByteArray declaredAttributes(int tags)
{
    return declaring("<!ATTLIST a" + numbered(" b", 250, " CDATA ''") + ">",
                     QByteArray("<a/>").repeated(tags));
}

// An entity with a long name, which counts as it was declared first.
QByteArray entityDeclaredTwice()
{
    const QByteArray name(1500, 'n');
    return declaring("<!ENTITY " + name + " '" + QByteArray(10000, 'x') + "'><!ENTITY " + name +
                         " ''>",
                     ("&" + name + ";").repeated(105));
}

class LogConfigFault : public LogConfigTest, public testing::WithParamInterface<Fault>
{
};

} // namespace

TEST_P(LogConfigFault, ThrowsAndBuildsNothing)
{
    const auto loading = [] { load(GetParam().document); };
    EXPECT_THAT(loading, testing::ThrowsMessage<std::runtime_error>(StrEq(GetParam().message)));
    EXPECT_THAT(textLogs(L""), IsEmpty());
    EXPECT_FALSE(QFile::exists("m.txt"));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, LogConfigFault,
    testing::Values(
        Fault{"Empty", "", invalid},
        Fault{"Truncated", "<S><Logs ManagerLogFile='m.txt'><CConsoleTextLog/></Logs>", invalid},
        Fault{"InvalidUtf8", "<S><Logs ManagerLogFile='m\xFF.txt'/></S>", invalid},
        Fault{"CutUtf8", "<S><Logs/></S><!--\xD0", invalid},
        Fault{"UnknownEncoding", "<?xml version='1.0' encoding='klingon'?><S><Logs/></S>", invalid},
        Fault{"UndeclaredEntity", "<S><Logs/>&nope;</S>", invalid},
        Fault{"EntityBomb", declaring(nestedEntities(10, "", "&", 10), "<a b='&e9;'/>"), invalid},
        Fault{"EntityLoop", declaring("<!ENTITY a '&b;'><!ENTITY b '&a;'>", "&a;"), invalid},
        Fault{"AMillionReferences", repeatedEntity(4000, 1000000), invalid},
        Fault{"EntitiesJustTooLong", repeatedEntity(4000, 263), invalid},
        Fault{"MarkupJustTooLong", repeatedEntity(markup, 24), invalid},
        Fault{"EntityDeclaredTwice", entityDeclaredTwice(), invalid},
        Fault{"ChainOfEntities", declaring(nestedEntities(101, "", "&", 1), "&e100;"), invalid},
        Fault{"ParameterEntityBomb", declaring(nestedEntities(10, "% ", "&#37;", 10) + "%e9;", ""),
              invalid},
        Fault{"LongDocumentType", declaring(QByteArray(1 << 14, ' '), ""), invalid},
        Fault{"DeclaredAttributesTimesTags", declaredAttributes(20000), invalid},
        Fault{"TooManyAttributes", manyAttributes(8192), invalid},
        Fault{"AttributesBehindAnApostrophe", "<!DOCTYPE S [<!-- ' -->]>" + manyAttributes(8192),
              invalid},
        Fault{"NestedTooDeeply", "<S><Logs/>" + nested(1000) + "</S>", invalid},
        Fault{"NoLogs", "<Settings><logs/><autoTuneType/></Settings>", noLogs},
        Fault{"LogsIsTheDocumentElement", "<Logs ManagerLogFile='m.txt'/>", noLogs},
        Fault{"TwoLogs", "<S><Logs ManagerLogFile='m.txt'/><x><Logs/></x></S>", twoLogs},
        Fault{"LogsInsideLogs", "<S><Logs ManagerLogFile='m.txt'><Logs/></Logs></S>", twoLogs}),
    [](const auto& row) { return row.param.name; });

TEST_F(LogConfigTest, ReadsWhatLiesJustInsideTheBounds)
{
    for (const QByteArray& document :
         {"<S><Logs/>" + nested(999) + "</S>", repeatedEntity(4000, 262), repeatedEntity(16000, 65),
          repeatedEntity(markup, 23), declaring(nestedEntities(100, "", "&", 1), "&e99;"),
          declaredAttributes(1000), manyAttributes(8191),
          "<S><Logs/><!--" + QByteArray(10 << 20, '"') + "--></S>",
          QByteArray("\xEF\xBB\xBF<S><Logs/></S>\r\n")})
        EXPECT_NO_THROW(load(document)) << document.left(50).constData();
}

TEST_F(LogConfigTest, FollowsADocumentType)
{
    load("<?xml version='1.0'?><!-- <!DOCTYPE --><!DOCTYPE S SYSTEM 'settings.dtd' ["
         "<!ENTITY % inside '<!ENTITY camera \"Cam&#101;ra\">'> %inside;"
         "<!ENTITY logs '<CDelayedProcessorTextLog><Register value=\"&camera;\"/>"
         "</CDelayedProcessorTextLog>'>"
         "<!ATTLIST Logs ManagerLogFile CDATA 'manager.txt' other (a|b) #IMPLIED>"
         "<!ENTITY % outside SYSTEM 'outside.ent'> "
         "%outside;]><S><Logs>&logs;&defined_outside;</Logs></S>");
    EXPECT_TRUE(contents("manager.txt").contains("Registered textLog as \"Camera\""));
}

TEST_F(LogConfigTest, RefusesAFileBeyond64MiB)
{
    const auto loading = [] { LogConfig::LoadFromFile("config.xml"); };
    QFile file("config.xml");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<S><Logs/></S>");
    ASSERT_TRUE(file.write(QByteArray((64 << 20) - 13, ' ')) > 0);
    file.close();
    EXPECT_THAT(loading, testing::ThrowsMessage<std::runtime_error>(StrEq(invalid)));
    ASSERT_TRUE(file.resize(64 << 20));
    EXPECT_NO_THROW(loading());
}

TEST_F(LogConfigTest, AFileThatCannotBeOpenedThrowsFileOpenError)
{
    EXPECT_THAT([] { LogConfig::LoadFromFile("missing.xml"); },
                testing::ThrowsMessage<FileOpenError>(
                    StrEq("Can't open file 'missing.xml'. No such file or directory")));
    EXPECT_THROW(LogConfig::LoadFromFile("."), FileOpenError);
    EXPECT_THROW(LogConfig::CreateDefaultConfigFile("no/such/folder.xml", "release"),
                 FileOpenError);
    EXPECT_THROW(LogConfig::LoadFromFile("/dev/zero"), std::runtime_error); // and it ends
}

TEST_F(LogConfigTest, BuildsEveryKindOfLogAndTellsTheManagerLog)
{
    ASSERT_TRUE(writeFile("file", "in the way"));
    load("<Root><x><Logs ManagerLogFile='manager.txt'> text <!-- comment -->"
         "<CFileTextLog FileName='logs/deep/run.txt'><Register/><Register value='Camera'/>"
         "<Other value='Time'/></CFileTextLog>"
         "<CFileTextLog FileName='unregistered.txt'/>"
         "<CFileTextLog><Register/></CFileTextLog>"
         "<CFileTextLog FileName='a/b/'><Register/></CFileTextLog>"
         "<CFileTextLog FileName='file/b.txt'><Register/></CFileTextLog>"
         "<CFolderOfTextLog FilePath='/proc/nowhere/x'><Register/></CFolderOfTextLog>"
         "<CFolderOfTextLog FilePath='folder/'><Register value=''/></CFolderOfTextLog>"
         "<QDebugTextLog><Register value='Time'/></QDebugTextLog>"
         "<Nonsense a='1'><Register/></Nonsense>"
         "<CConsoleTextLog><x><Register/></x></CConsoleTextLog>"
         "<CDelayedProcessorTextLog><Register value='Camera'/></CDelayedProcessorTextLog>"
         "<CDelayedValueSequenceLog><Register/></CDelayedValueSequenceLog>"
         "</Logs></x></Root>");
    EXPECT_EQ(contents("manager.txt"), "---Start parsing log settings\n"
                                       "CFileTextLog\n"
                                       "Registered textLog as \"\"\n"
                                       "Registered textLog as \"Camera\"\n"
                                       "CFileTextLog\n"
                                       "CFileTextLog\n"
                                       "File path is \"\"\n"
                                       "CFileTextLog\n"
                                       "File path can't ends with /\n"
                                       "CFileTextLog\n"
                                       "can't create path file\n"
                                       "CFolderOfTextLog\n"
                                       "can't create path /proc/nowhere/x\n"
                                       "CFolderOfTextLog\n"
                                       "Registered textLog as \"\"\n"
                                       "QDebugTextLog\n"
                                       "Registered textLog as \"Time\"\n"
                                       "Nonsense\n"
                                       "Unknown log typeNonsenseCConsoleTextLog\n"
                                       "CDelayedProcessorTextLog\n"
                                       "Registered textLog as \"Camera\"\n"
                                       "CDelayedValueSequenceLog\n"
                                       "Registered graphicLog as \"\"\n"
                                       "---End parsing log settings\n");
    EXPECT_THAT(textLogs(L""),
                UnorderedElementsAre(WhenDynamicCastTo<CFileTextLog*>(testing::NotNull()),
                                     WhenDynamicCastTo<CFolderOfTextLog*>(testing::NotNull())));
    EXPECT_THAT(CLogManager::getLogList(graphicLog, L""),
                UnorderedElementsAre(&CDelayedValueSequenceLog::getInstance()));
    CLogAccessor(L"Camera")(InfoLogType) << L"hello" << std::endl;
    std::wstring delayed;
    CDelayedProcessorTextLog::getInstance().getStringAndClear(delayed);
    EXPECT_EQ(delayed, L"hello\n");
    EXPECT_EQ(contents("logs/deep/run.txt"), "hello\n");
    EXPECT_EQ(contents("unregistered.txt"), "");
    EXPECT_FALSE(QFile::exists("a"));
    EXPECT_EQ(QDir("folder").entryList({"*.txt"}).size(), 1);
}

TEST_F(LogConfigTest, TypeFlagsFilterButTheTimeFlagDoesNothing)
{
    struct {
        QByteArray attributes;
        const char* expected;
    } const cases[] = {
        {"", "AIDT"},
        {"DebugLogType='true'", "AIDT"},
        {"AllLogType='false'", "A"},
        {"AllLogType='0' InfoLogType='1'", "AI"},
        {"AllLogType='' DebugLogType='yes' InfoLogType='False'", "AD"},
        {"AllLogType='false' TimeLogType='true'", "A"},
    };
    int number = 0;
    for (const auto& row : cases) {
        const QByteArray name = "f" + QByteArray::number(number++) + ".txt";
        load("<S><Logs><CFileTextLog FileName='" + name + "' " + row.attributes +
             "><Register value='Time'/></CFileTextLog></Logs></S>");
        for (CBaseLog* const log : textLogs(L"Time")) {
            auto* const text = static_cast<CTextLog*>(log);
            text->write(L"A", 1, AllLogType);
            text->write(L"I", 1, InfoLogType);
            text->write(L"D", 1, DebugLogType);
            text->write(L"T", 1, TimeLogType);
        }
        textLogs(L"Time").clear();
        EXPECT_EQ(contents(name), row.expected) << row.attributes.constData();
    }
}

TEST_F(LogConfigTest, TheDefaultFileLoadsAndDependsOnTheBuild)
{
    ASSERT_TRUE(QDir().mkdir("sub"));
    for (const char* build : {"release", "Release"}) {
        const QString fileName = QStringLiteral("sub/%1.xml").arg(build);
        LogConfig::CreateDefaultConfigFile(fileName, build);
        const QByteArray debugLog = "        <QDebugTextLog>\n"
                                    "            <Register/>\n"
                                    "        </QDebugTextLog>\n";
        EXPECT_EQ(contents(fileName), "<!DOCTYPE Settings>\n"
                                      "<Settings version=\"1\">\n"
                                      "    <Logs ManagerLogFile=\"ManagerLog.txt\">\n" +
                                          (build[0] == 'r' ? "" : debugLog) +
                                          "        <CFolderOfTextLog FilePath=\"sub/log\">\n"
                                          "            <Register/>\n"
                                          "        </CFolderOfTextLog>\n"
                                          "    </Logs>\n"
                                          "    <autoTuneType value=\"1\"/>\n"
                                          "</Settings>\n");
    }
    LogConfig::LoadFromFile("sub/release.xml");
    EXPECT_TRUE(LogConfig::GetLogFileName().startsWith(QDir::currentPath() + "/sub/log/"));
    EXPECT_TRUE(QFile::exists("ManagerLog.txt"));
}

TEST_F(LogConfigTest, TheDefaultFileDoesNotTruncateALongerOne)
{
    ASSERT_TRUE(writeFile("config.xml", QByteArray(5000, '~')));
    LogConfig::CreateDefaultConfigFile("config.xml", "release");
    EXPECT_EQ(contents("config.xml").size(), 5000);
    EXPECT_TRUE(contents("config.xml").endsWith("~~~"));
}

TEST_F(LogConfigTest, TheDefaultConfigurationNeedsNoFile)
{
    EXPECT_TRUE(LogConfig::GetLogFileName().isNull());
    LogConfig::ApplyDefaultConfig(); // the folder "log" is missing: nothing is written
    EXPECT_FALSE(QFile::exists("log"));
    EXPECT_THAT(textLogs(L""),
                UnorderedElementsAre(WhenDynamicCastTo<QDebugTextLog*>(testing::NotNull()),
                                     WhenDynamicCastTo<CFolderOfTextLog*>(testing::NotNull())));
    EXPECT_TRUE(LogConfig::GetLogFileName().startsWith("log/"));

    forgetLogs();
    load("<S><Logs><CFolderOfTextLog><Register/></CFolderOfTextLog></Logs></S>");
    EXPECT_TRUE(LogConfig::GetLogFileName().startsWith(QDir::currentPath() + "/2"));
}
