#include "SettingsFile.h"

#include <QFile>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

bool isSettingsFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("ImgCorrectionSettings"))
        return false;
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

QString writeSettingsFile(const QString& fileName, const ImgCorrectionSettings& settings)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    QXmlStreamWriter writer(&file);
    if (!ImgCorrectionSettings::saveSettings(writer, settings) || writer.hasError() ||
        !file.commit())
        return file.errorString();
    return {};
}
