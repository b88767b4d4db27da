#pragma once

#include <QString>
#include <QXmlStreamAttributes>

#include <string>
#include <vector>

class QIODevice;

/// One log of a settings file.
struct LogElement {
    QString tag;
    QXmlStreamAttributes attributes;
    std::vector<std::wstring> names; ///< of its "Register" children
};

/// The "Logs" element of a settings file.
struct LogsElement {
    QString managerLogFile;
    std::vector<LogElement> logs;
};

/// Reads the "Logs" element of the document in \p device, which errors call \p fileName.
/// \throws std::runtime_error if the document is no XML or exceeds the bounds of
///   readBoundedXml(), or has not exactly one such element below its document element.
LogsElement readLogsElement(QIODevice& device, const QString& fileName);
