#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// The bytes of a file, "(cannot open)" if there is none.
inline QByteArray contents(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot open)");
}

/// Makes a file of these bytes.
inline bool writeFile(const QString& fileName, const QByteArray& bytes)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
