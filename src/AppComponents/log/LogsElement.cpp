#include <AppComponents/log/LogsElement.h>

#include <AppComponents/log/BoundedXml.h>

#include <QXmlStreamReader>

#include <stdexcept>
#include <utility>

namespace
{

// Finds the "Logs" element of a document; reads the whole document, for its faults.
class LogsReader
{
public:
    LogsReader(const QString& text, std::function<void(const LogElement&)> useLog)
        : reader(text)
        , use(std::move(useLog))
    {
        reader.setNamespaceProcessing(false);
        reader.setEntityExpansionLimit(maxXmlExpansion);
    }

    bool read() // whether the document is XML
    {
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement())
                enterElement();
            else if (reader.isEndElement())
                leaveElement();
        }
        return !reader.hasError();
    }

    int logsCount = 0;
    QString managerLogFile; // of the first "Logs" element

private:
    void enterElement()
    {
        if (++depth > maxXmlDepth)
            reader.raiseError(QStringLiteral("nested too deeply"));
        const QString tag = reader.qualifiedName().toString();
        if (logsDepth > 0)
            enterInsideLogs(tag);
        if (depth > 1 && tag == QLatin1String("Logs"))
            enterLogs();
    }

    void enterLogs()
    {
        if (++logsCount > 1)
            return;
        logsDepth = depth;
        managerLogFile = reader.attributes().value(QLatin1String("ManagerLogFile")).toString();
    }

    void enterInsideLogs(const QString& tag)
    {
        if (depth == logsDepth + 1)
            log = {tag, reader.attributes(), {}};
        else if (depth == logsDepth + 2 && tag == QLatin1String("Register"))
            log.names.push_back(
                reader.attributes().value(QLatin1String("value")).toString().toStdWString());
    }

    void leaveElement()
    {
        if (logsDepth > 0 && depth == logsDepth + 1)
            use(log);
        if (depth-- == logsDepth)
            logsDepth = 0;
    }

    QXmlStreamReader reader;
    std::function<void(const LogElement&)> use;
    LogElement log; // the one being read
    int depth = 0;
    int logsDepth = 0; // where the "Logs" element stands that is being read
};

[[noreturn]] void fail(const char* message, const QString& fileName)
{
    throw std::runtime_error(QString::fromLatin1(message).arg(fileName).toStdString());
}

} // namespace

LogsElement::LogsElement(QIODevice& device, const QString& fileName)
    : text(readBoundedXml(device))
{
    LogsReader reader(text, [](const LogElement&) {});
    if (!reader.read())
        fail("Invalid file format. Can't read XML in file '%0'", fileName);
    if (reader.logsCount == 0)
        fail("Node 'Logs' not found in the document. File: '%0'", fileName);
    if (reader.logsCount > 1)
        fail("Only one node 'Logs' is allowed in the document. File: '%0'", fileName);
    managerLog = reader.managerLogFile;
}

void LogsElement::forEachLog(const std::function<void(const LogElement&)>& use) const
{
    LogsReader(text, use).read();
}
