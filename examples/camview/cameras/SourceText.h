#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// A source as the user writes it: scheme[:path][?key=value&key=value...].
/// Everything that is wrong with it is thrown as CameraError.
class SourceText
{
public:
    explicit SourceText(const QString& text);

    QString scheme() const { return schemeName; }
    QString path() const { return pathName; }

    /// Refuses parameters that the source does not know.
    void allowOnly(const QStringList& keys) const;
    /// A path is required, or none is allowed.
    void requirePath() const;
    void refusePath() const;

    bool has(const QString& key) const { return parameters.contains(key); }
    int integer(const QString& key, int fallback, int smallest, int largest) const;
    int requiredInteger(const QString& key, int smallest, int largest) const;
    double number(const QString& key, double fallback, double smallest, double largest) const;
    bool flag(const QString& key, bool fallback) const;
    /// A bit depth of raw samples: 8, 10 or 12.
    int bitDepth(int fallback) const;

private:
    void readParameters(const QString& list);

    QString schemeName;
    QString pathName;
    QMap<QString, QString> parameters;
};
