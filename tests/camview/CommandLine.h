#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

/// What a run of the program left.
struct Outcome {
    int status = -1;
    QByteArray out;
    QByteArray err;

    QJsonObject json() const;
};

/// Runs camview as a process of its own, of the user whose home is \p home, by default of one with
/// an empty home.
Outcome runCamview(const QStringList& arguments, const QString& home = {});
