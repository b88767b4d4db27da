#include "FileNamePattern.h"

namespace
{

QString expanded(const QString& pattern, const QString& camera, const QDateTime& time,
                 const QString& number)
{
    QString name;
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%' || i + 1 == pattern.size()) {
            name += pattern[i];
            continue;
        }
        const QChar code = pattern[++i];
        if (code == 'c')
            name += camera;
        else if (code == 'd')
            name += time.toString("yyyyMMdd");
        else if (code == 't')
            name += time.toString("HHmmss");
        else if (code == 'n')
            name += number;
        else
            name += code == '%' ? QString("%") : QString("%") + code;
    }
    return name;
}

QString cleaned(QString name)
{
    for (QChar& letter : name) {
        const bool allowed = letter.isLetterOrNumber() || QString("-_.+,@%=()").contains(letter);
        if (!allowed)
            letter = '_';
    }
    // A leading dot would hide the file, a leading dash looks like an option.
    if (name.isEmpty() || name[0] == '.' || name[0] == '-')
        name.prepend('_');
    return name;
}

} // namespace

QString fileNameFrom(const QString& pattern, const QString& camera, const QDateTime& time,
                     const std::function<bool(const QString&)>& isTaken)
{
    QString plain = cleaned(expanded(pattern, camera, time, QString()));
    const bool numbered = cleaned(expanded(pattern, camera, time, "0")) != plain;
    if (!numbered && !isTaken(plain))
        return plain;
    const QString counted = numbered ? pattern : pattern + "_%n";
    for (int number = 1;; ++number) {
        const QString text = QString::number(number).rightJustified(3, '0');
        QString name = cleaned(expanded(counted, camera, time, text));
        if (!isTaken(name))
            return name;
    }
}
