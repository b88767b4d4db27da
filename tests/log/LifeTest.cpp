#include "FileContents.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace
{

// Runs the helper program as a process of its own; its files land in a folder of the test.
class Life : public testing::Test
{
protected:
    QByteArray run(const QString& program, const QStringList& arguments, const QString& locale)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LOG_LIFE_FOLDER", folder.path());
        environment.insert("LC_ALL", locale);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder.path());
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        const QByteArray output = process.readAll();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << output.constData();
        EXPECT_EQ(process.exitCode(), 0) << output.constData();
        return output;
    }

    QByteArray file(const char* name) const { return contents(folder.filePath(name)); }

    QTemporaryDir folder;
};

} // namespace

TEST_F(Life, LogsServeFromTheFirstConstructorToTheLastDestructor)
{
    ASSERT_TRUE(writeFile(folder.filePath("config.xml"),
                          "<Settings><Logs ManagerLogFile='manager.txt'>"
                          "<CFileTextLog FileName='run.txt'><Register/>"
                          "<Register value='Camera'/></CFileTextLog>"
                          "<CConsoleTextLog><Register/></CConsoleTextLog>"
                          "<CDelayedProcessorTextLog><Register/></CDelayedProcessorTextLog>"
                          "<CDelayedValueSequenceLog><Register value='x'/>"
                          "</CDelayedValueSequenceLog></Logs></Settings>"));
    const QByteArray console = run(LOG_LIFE_PROGRAM, {}, "C");

    // The static objects of the two files are built in the one order and destroyed in the other.
    EXPECT_EQ(file("first.txt"), "begin first\nbegin last\nto the camera\n"
                                 "pendingend last\nend first\n");
    EXPECT_EQ(file("last.txt"), "begin last\nto the camera\npendingend last\nend first\n");
    EXPECT_EQ(file("run.txt"), "to the camera\npendingend last\nend first\n");
    EXPECT_EQ(file("deleted.txt"), "to the camera\npendingend last\nend first\n|\n");
    EXPECT_EQ(console, "console\nconsole\nto the camera\npendingend last\nend\nend first\nend\n");
    EXPECT_TRUE(file("manager.txt")
                    .endsWith("Registered textLog as \"again\"\n"
                              "ERROR: Not all subLogs are released\n"))
        << file("manager.txt").constData();
}

TEST_F(Life, TheExecutablesFolderComesInTheUsersEncodingOrInLowBytes)
{
    const QString name = QString::fromUtf8("\xD0\x96\xC3\xA9"); // U+0416 U+00E9
    ASSERT_TRUE(QDir(folder.path()).mkdir(name));
    const QString program = folder.filePath(name + "/program");
    ASSERT_TRUE(QFile::copy(LOG_LIFE_PROGRAM, program));
    const QByteArray start = QDir(folder.path()).canonicalPath().toUtf8() + '/';

    run(program, {"path"}, "C.UTF-8");
    EXPECT_EQ(file("wide.txt"), start + "\xD0\x96\xC3\xA9");
    EXPECT_EQ(file("narrow.txt"), start + "\xD0\x96\xC3\xA9");
    for (const char* locale : {"C", "no_SUCH"}) {
        run(program, {"path"}, locale);
        EXPECT_EQ(file("narrow.txt"), start + "\x16\xE9") << locale;
    }
}
