#include "SourceText.h"

#include "core/Camera.h"

#include <QFileInfo>

SourceText::SourceText(const QString& text)
{
    const int colon = text.indexOf(':');
    const int question = text.lastIndexOf('?');
    // A question mark may belong to a file's name.
    const bool hasList = question >= 0 && text.indexOf('=', question) > 0;
    const QString head = hasList ? text.left(question) : text;
    if (colon >= 0 && colon < head.size()) {
        schemeName = head.left(colon);
        pathName = head.mid(colon + 1);
    } else {
        schemeName = head;
    }
    if (hasList)
        readParameters(text.mid(question + 1));
}

void SourceText::readParameters(const QString& list)
{
    for (const QString& item : list.split('&', Qt::SkipEmptyParts)) {
        const int equals = item.indexOf('=');
        if (equals <= 0)
            throw CameraError(QString("source parameter \"%1\" is not key=value").arg(item));
        const QString key = item.left(equals).toLower();
        if (parameters.contains(key))
            throw CameraError(QString("source parameter \"%1\" is given twice").arg(key));
        parameters.insert(key, item.mid(equals + 1));
    }
}

void SourceText::allowOnly(const QStringList& keys) const
{
    for (const QString& key : parameters.keys()) {
        if (!keys.contains(key))
            throw CameraError(QString("source \"%1\" has no parameter \"%2\"; it takes: %3")
                                  .arg(schemeName, key, keys.join(", ")));
    }
}

void SourceText::requirePath() const
{
    if (pathName.isEmpty())
        throw CameraError(QString("source \"%1\" needs a file: %1:FILE").arg(schemeName));
    if (QFileInfo(pathName).isDir())
        throw CameraError(QString("%1: is a folder, not a file").arg(pathName));
}

void SourceText::refusePath() const
{
    if (!pathName.isEmpty())
        throw CameraError(QString("source \"%1\" takes no file").arg(schemeName));
}

int SourceText::integer(const QString& key, int fallback, int smallest, int largest) const
{
    if (!has(key))
        return fallback;
    bool ok = false;
    const int value = parameters.value(key).toInt(&ok);
    if (!ok || value < smallest || value > largest)
        throw CameraError(QString("source parameter %1=%2 is not a whole number from %3 to %4")
                              .arg(key, parameters.value(key))
                              .arg(smallest)
                              .arg(largest));
    return value;
}

int SourceText::requiredInteger(const QString& key, int smallest, int largest) const
{
    if (!has(key))
        throw CameraError(QString("source \"%1\" needs the parameter %2").arg(schemeName, key));
    return integer(key, 0, smallest, largest);
}

double SourceText::number(const QString& key, double fallback, double smallest,
                          double largest) const
{
    if (!has(key))
        return fallback;
    bool ok = false;
    const double value = parameters.value(key).toDouble(&ok);
    if (!ok || !(value >= smallest && value <= largest))
        throw CameraError(QString("source parameter %1=%2 is not a number from %3 to %4")
                              .arg(key, parameters.value(key))
                              .arg(smallest)
                              .arg(largest));
    return value;
}

bool SourceText::flag(const QString& key, bool fallback) const
{
    return integer(key, fallback ? 1 : 0, 0, 1) != 0;
}

int SourceText::bitDepth(int fallback) const
{
    const int bits = integer("bits", fallback, 8, 12);
    if (bits != 8 && bits != 10 && bits != 12)
        throw CameraError(QString("source parameter bits=%1 is not 8, 10 or 12").arg(bits));
    return bits;
}
