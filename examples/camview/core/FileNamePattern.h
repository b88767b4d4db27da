#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

/// Makes a file name from a pattern. %c stands for the camera's name, %d for the date as
/// 20301231, %t for the time as 235959, %n for a number that counts up from 001 until the name is
/// free, %% for a percent sign. Without %n a number is added only when the name is taken.
/// What does not belong into a file name becomes an underscore.
/// \param isTaken tells whether a name cannot be used
QString fileNameFrom(const QString& pattern, const QString& camera, const QDateTime& time,
                     const std::function<bool(const QString&)>& isTaken);
