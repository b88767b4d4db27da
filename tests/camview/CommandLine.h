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

/// Runs camview as a process of its own.
Outcome runCamview(const QStringList& arguments);
