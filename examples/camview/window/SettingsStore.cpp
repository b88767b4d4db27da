#include "SettingsStore.h"

#include "core/SettingsFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

namespace
{

constexpr char imageFile[] = "image.xml";
constexpr char windowFile[] = "window.json";

/// Moves a damaged file out of the way. \return the line that tells the user
QString keepAside(const QString& fileName)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString base = fileName + QStringLiteral(".damaged-") + stamp;
    QString aside = base;
    for (int i = 2; QFile::exists(aside); ++i)
        aside = base + QStringLiteral("-%1").arg(i);
    if (QFile::rename(fileName, aside))
        return QStringLiteral("The settings in %1 are damaged and were not used; "
                              "the file is kept as %2.")
            .arg(fileName, aside);
    return QStringLiteral("The settings in %1 are damaged and were not used.").arg(fileName);
}

QString writeWhole(const QString& fileName, const QByteArray& content)
{
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return {};
    return QStringLiteral("Cannot save settings to %1: %2").arg(fileName, file.errorString());
}

} // namespace

SettingsStore::SettingsStore(const QString& root, const QString& camera)
    // Percent-encoding makes a folder name of every camera name, and no two names share one.
    : path(root + QLatin1Char('/') +
           QString::fromLatin1(QUrl::toPercentEncoding(camera, " ", ".~")))
{
}

QString SettingsStore::defaultRoot()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QStringLiteral("/cameras");
}

QString SettingsStore::fileName(const char* name) const
{
    return path + QLatin1Char('/') + QLatin1String(name);
}

QString SettingsStore::loadImage(ImgCorrectionSettings& settings) const
{
    const QString name = fileName(imageFile);
    if (!QFile::exists(name))
        return {};
    // The library's reader keeps what it read before a break, which is right for a file edited
    // by hand and wrong for a torn one.
    if (!isSettingsFile(name))
        return keepAside(name);
    ImgCorrectionSettings::readSettings(name, settings);
    return {};
}

QString SettingsStore::loadWindow(QJsonObject& window) const
{
    QFile file(fileName(windowFile));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    file.close();
    if (!document.isObject())
        return keepAside(file.fileName());
    window = document.object();
    return {};
}

SettingsStore::Content SettingsStore::load(const ImgCorrectionSettings& defaults) const
{
    Content content;
    content.image = defaults;
    content.complaints << loadImage(content.image) << loadWindow(content.window);
    content.complaints.removeAll(QString());
    return content;
}

QString SettingsStore::save(const Content& content) const
{
    if (!QDir().mkpath(path))
        return QStringLiteral("Cannot save settings: the folder %1 cannot be made.").arg(path);
    const QString name = fileName(imageFile);
    const QString complaint = writeSettingsFile(name, content.image);
    if (!complaint.isEmpty())
        return QStringLiteral("Cannot save settings to %1: %2").arg(name, complaint);
    return writeWhole(fileName(windowFile), QJsonDocument(content.window).toJson());
}
