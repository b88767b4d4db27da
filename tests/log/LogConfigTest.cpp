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
#include <QDomDocument>
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

    static void loadLogs(const QByteArray& logs)
    {
        load("<Settings><Logs ManagerLogFile='manager.txt'>" + logs + "</Logs></Settings>");
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

// Ten entities, each ten times the one before.
QByteArray entityBomb()
{
    QByteArray bomb = "<!DOCTYPE S [<!ENTITY e0 'lol'>";
    for (char i = '1'; i <= '9'; ++i)
        bomb += QByteArray("<!ENTITY e") + i + " '" +
                ("&e" + QByteArray(1, char(i - 1)) + ";").repeated(10) + "'>";
    return bomb + "]><S><Logs a='&e9;'/></S>";
}

QByteArray repeatedEntity(int length, int references)
{
    return "<!DOCTYPE S [<!ENTITY e '" + QByteArray(length, 'x') + "'>]><S><Logs/>" +
           QByteArray("&e;").repeated(references) + "</S>";
}

QByteArray manyAttributes(int count)
{
    QByteArray attributes;
    for (int i = 0; i < count; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    return "<S><Logs" + attributes + "/></S>";
}

QByteArray chainOfEntities(int count)
{
    QByteArray chain = "<!DOCTYPE S [<!ENTITY e0 'x'>";
    for (int i = 1; i < count; ++i)
        chain += "<!ENTITY e" + QByteArray::number(i) + " '&e" + QByteArray::number(i - 1) + ";'>";
    return chain + "]><S><Logs/>&e" + QByteArray::number(count - 1) + ";</S>";
}

// References to parameter entities, each of which holds ten of the one before.
QByteArray parameterEntityBomb()
{
    QByteArray bomb = "<!DOCTYPE S [<!ENTITY % p0 '          '>";
    for (char i = '1'; i <= '9'; ++i)
        bomb += QByteArray("<!ENTITY % p") + i + " '" +
                ("&#37;p" + QByteArray(1, char(i - 1)) + ";").repeated(10) + "'>";
    return bomb + "%p9;]><S><Logs/></S>";
}

// Entities of 210 characters of markup.
QByteArray markupEntities(int references)
{
    return "<!DOCTYPE S [<!ENTITY e '" + QByteArray("<a b=\"1\"/>").repeated(21) +
           "'>]><S><Logs/>" + QByteArray("&e;").repeated(references) + "</S>";
}

QByteArray declaredAttributes(int tags)
{
    QByteArray declarations;
    for (int i = 0; i < 250; ++i)
        declarations += " b" + QByteArray::number(i) + " CDATA ''";
    return "<!DOCTYPE S [<!ATTLIST a" + declarations + ">]><S><Logs/>" +
           QByteArray("<a/>").repeated(tags) + "</S>";
}

// An entity with a long name, which counts as it was declared first.
QByteArray entityDeclaredTwice()
{
    const QByteArray name(1500, 'n');
    return "<!DOCTYPE S [<!ENTITY " + name + " '" + QByteArray(10000, 'x') + "'><!ENTITY " + name +
           " ''>]><S><Logs/>" + ("&" + name + ";").repeated(105) + "</S>";
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
        Fault{"Empty", "", invalid}, Fault{"NoXml", "ManagerLogFile=m.txt\n", invalid},
        Fault{"Truncated", "<S><Logs ManagerLogFile='m.txt'><CConsoleTextLog/></Logs>", invalid},
        Fault{"CutInTheMiddleOfATag", "<S><Logs><CConsoleTe", invalid},
        Fault{"TwoDocumentElements", "<S><Logs/></S><S/>", invalid},
        Fault{"InvalidUtf8", "<S><Logs ManagerLogFile='m\xFF.txt'/></S>", invalid},
        Fault{"CutUtf8", "<S><Logs/></S><!--\xD0", invalid},
        Fault{"ZeroBytes", QByteArray("<S><Logs/>\0</S>", 15), invalid},
        Fault{"UnknownEncoding", "<?xml version='1.0' encoding='klingon'?><S><Logs/></S>", invalid},
        Fault{"UndeclaredEntity", "<S><Logs/>&nope;</S>", invalid},
        Fault{"EntityBomb", entityBomb(), invalid},
        Fault{"EntityLoop", "<!DOCTYPE S [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><S><Logs/>&a;</S>",
              invalid},
        Fault{"EntityOfTooMuchText", repeatedEntity(4000, 263), invalid},
        Fault{"AMillionReferences", repeatedEntity(4000, 1000000), invalid},
        Fault{"LongChainOfEntities", chainOfEntities(101), invalid},
        Fault{"LongDocumentType", "<!DOCTYPE S [" + QByteArray(1 << 14, ' ') + "]><S><Logs/></S>",
              invalid},
        Fault{"ParameterEntityBomb", parameterEntityBomb(), invalid},
        Fault{"MarkupEntityBomb", markupEntities(24), invalid},
        Fault{"DeclaredAttributesTimesTags", declaredAttributes(20000), invalid},
        Fault{"EntityDeclaredTwice", entityDeclaredTwice(), invalid},
        Fault{"AttributesBehindACommentInAnEntity",
              "<!DOCTYPE S [<!ENTITY e '> <!-- '>]>" + manyAttributes(200000) + "<!-- -->",
              invalid},
        Fault{"NestedTooDeeply", "<S><Logs/>" + nested(1000) + "</S>", invalid},
        Fault{"NestedAMillionDeep", nested(1000000), invalid},
        Fault{"TooManyAttributes", manyAttributes(8192), invalid},
        Fault{"NoLogs", "<Settings><logs/><autoTuneType/></Settings>", noLogs},
        Fault{"LogsIsTheDocumentElement", "<Logs ManagerLogFile='m.txt'/>", noLogs},
        Fault{"TwoLogs", "<S><Logs ManagerLogFile='m.txt'/><x><Logs/></x></S>", twoLogs},
        Fault{"LogsInsideLogs", "<S><Logs ManagerLogFile='m.txt'><Logs/></Logs></S>", twoLogs}),
    [](const auto& row) { return row.param.name; });

TEST_F(LogConfigTest, ReadsWhatLiesJustInsideTheBounds)
{
    for (const QByteArray& document :
         {"<S><Logs/>" + nested(999) + "</S>", repeatedEntity(4000, 262), repeatedEntity(16000, 65),
          manyAttributes(8191), "<S><Logs/><!--" + QByteArray(10 << 20, '"') + "--></S>",
          "<S><Logs b='" + QByteArray(10 << 20, 'x') + "'/></S>",
          QByteArray("\xEF\xBB\xBF<S><Logs/></S>\r\n"), markupEntities(23), chainOfEntities(100),
          declaredAttributes(1000)})
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
    EXPECT_EQ(contents("manager.txt"), "---Start parsing log settings\n"
                                       "CDelayedProcessorTextLog\n"
                                       "Registered textLog as \"Camera\"\n"
                                       "---End parsing log settings\n");
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
    for (const QString name : {"missing.xml", "."}) {
        try {
            LogConfig::LoadFromFile(name);
            ADD_FAILURE() << name.toStdString();
        } catch (const FileOpenError& error) {
            EXPECT_EQ(error.getFilename(), name);
            EXPECT_FALSE(error.getErrorMsg().isEmpty());
            EXPECT_EQ(QString::fromUtf8(error.what()),
                      "Can't open file '" + name + "'. " + error.getErrorMsg());
        }
    }
    EXPECT_THROW(LogConfig::CreateDefaultConfigFile("no/such/folder.xml", "release"),
                 FileOpenError);
    EXPECT_THROW(LogConfig::LoadFromFile("/dev/zero"), std::runtime_error); // and it ends
}

TEST_F(LogConfigTest, BuildsEveryKindOfLogAndTellsTheManagerLog)
{
    load("<Root><x><Logs ManagerLogFile='manager.txt'> text <!-- comment -->"
         "<CFileTextLog FileName='logs/deep/run.txt'><Register/><Register value='Camera'/>"
         "<Other value='Time'/></CFileTextLog>"
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
    EXPECT_EQ(textLogs(L"Camera").count(&CDelayedProcessorTextLog::getInstance()), 1u);
    EXPECT_EQ(
        CLogManager::getLogList(graphicLog, L"").count(&CDelayedValueSequenceLog::getInstance()),
        1u);
    CLogAccessor(L"Camera")(InfoLogType) << L"hello" << std::endl;
    EXPECT_EQ(contents("logs/deep/run.txt"), "hello\n");
    EXPECT_EQ(QDir("folder").entryList({"*.txt"}).size(), 1);
}

TEST_F(LogConfigTest, SkipsLogsWhosePathsCannotBeMade)
{
    ASSERT_TRUE(writeFile("file", "in the way"));
    loadLogs("<CFileTextLog><Register/></CFileTextLog>"
             "<CFileTextLog FileName='a/b/'><Register/></CFileTextLog>"
             "<CFileTextLog FileName='file/b.txt'><Register/></CFileTextLog>"
             "<CFolderOfTextLog FilePath='/proc/nowhere/x'><Register/></CFolderOfTextLog>"
             "<CFileTextLog FileName='good.txt'/>");
    EXPECT_EQ(contents("manager.txt"), "---Start parsing log settings\n"
                                       "CFileTextLog\n"
                                       "File path is \"\"\n"
                                       "CFileTextLog\n"
                                       "File path can't ends with /\n"
                                       "CFileTextLog\n"
                                       "can't create path file\n"
                                       "CFolderOfTextLog\n"
                                       "can't create path /proc/nowhere/x\n"
                                       "CFileTextLog\n"
                                       "---End parsing log settings\n");
    EXPECT_THAT(textLogs(L""), IsEmpty());
    EXPECT_FALSE(QFile::exists("a"));
    EXPECT_EQ(contents("good.txt"), ""); // opened, though nobody registered it
}

TEST_F(LogConfigTest, AnEmptyFolderMeansTheCurrentOne)
{
    loadLogs("<CFolderOfTextLog><Register/></CFolderOfTextLog>");
    const QString file = LogConfig::GetLogFileName();
    EXPECT_EQ(QFileInfo(file).path(), QDir::currentPath());
    EXPECT_TRUE(QFile::exists(file));
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
        loadLogs("<CFileTextLog FileName='" + name + "' " + row.attributes +
                 "><Register value='Time'/></CFileTextLog>");
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
        QDomDocument document;
        ASSERT_TRUE(document.setContent(contents(fileName)));
        EXPECT_EQ(document.doctype().name(), "Settings");
        EXPECT_EQ(document.documentElement().attribute("version"), "1");
        const QDomElement logs = document.documentElement().firstChildElement();
        EXPECT_EQ(logs.attribute("ManagerLogFile"), "ManagerLog.txt");
        EXPECT_EQ(logs.firstChildElement("QDebugTextLog").isNull(), build[0] == 'r');
        EXPECT_EQ(logs.lastChildElement("CFolderOfTextLog").attribute("FilePath"), "sub/log");
        EXPECT_EQ(logs.nextSiblingElement().tagName(), "autoTuneType");
        EXPECT_EQ(logs.nextSiblingElement().attribute("value"), "1");
        EXPECT_TRUE(contents(fileName).contains("\n        <CFolderOfTextLog")) << "indentation";
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
}
