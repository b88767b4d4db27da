#include "LogPanel.h"

#include <AppComponents/log/CDelayedProcessorTextLog.h>

#include <QFontDatabase>

namespace
{
constexpr int drainMs = 100;
constexpr int keptLines = 5000;
} // namespace

LogPanel::LogPanel(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTabChangesFocus(true);
    setMaximumBlockCount(keptLines);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setAccessibleName(tr("Log"));
    CDelayedProcessorTextLog::getInstance().resetPorcesor(this);
    connect(&timer, &QTimer::timeout, this, &LogPanel::drain);
    timer.start(drainMs);
}

LogPanel::~LogPanel()
{
    CDelayedProcessorTextLog::getInstance().resetPorcesor(nullptr);
}

void LogPanel::process()
{
    // Runs on the writer's thread under the log's lock: no call back into the log from here.
    textWaits = true;
}

void LogPanel::drain()
{
    if (!textWaits.exchange(false))
        return;
    std::wstring text;
    CDelayedProcessorTextLog::getInstance().getStringAndClear(text);
    QString lines = QString::fromStdWString(text);
    if (lines.endsWith(QLatin1Char('\n')))
        lines.chop(1);
    if (!lines.isEmpty())
        appendPlainText(lines);
}
