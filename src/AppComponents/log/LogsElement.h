#pragma once

#include <QString>
#include <QXmlStreamAttributes>

#include <functional>
#include <string>
#include <vector>

class QIODevice;

/// One log of a settings file.
struct LogElement {
    QString tag;
    QXmlStreamAttributes attributes;
    std::vector<std::wstring> names; ///< of its "Register" children
};

/// The "Logs" element of a settings file. Its logs are read from the text each time they are asked
/// for, because many of them take far more memory than the text.
class LogsElement
{
public:
    /// Reads the document in \p device, which errors call \p fileName.
    /// \throws std::runtime_error if the document is no XML or exceeds the bounds of
    ///   readBoundedXml(), or has not exactly one such element below its document element.
    LogsElement(QIODevice& device, const QString& fileName);

    /// The attribute "ManagerLogFile", empty if there is none.
    const QString& managerLogFile() const { return managerLog; }

    /// Calls \p use with each log, in the order of the document.
    void forEachLog(const std::function<void(const LogElement&)>& use) const;

private:
    QString text;
    QString managerLog;
};
