#include "CommandLine.h"

#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

QJsonObject Outcome::json() const
{
    return QJsonDocument::fromJson(out).object();
}

Outcome runCamview(const QStringList& arguments)
{
    // A user with an empty home: nothing of the tester's own configuration takes part.
    const QTemporaryDir home;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home.path());
    process.start(CAMVIEW_PROGRAM, arguments);
    process.waitForFinished(240000);
    Outcome outcome;
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}
