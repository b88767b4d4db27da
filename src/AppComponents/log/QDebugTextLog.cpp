#include <AppComponents/log/QDebugTextLog.h>

#include <QDebug>
#include <QMessageLogger>
#include <QString>

void QDebugTextLog::writeInternal(const wchar_t* text, int length)
{
    QString message = QString::fromWCharArray(text, length);
    if (message.endsWith(QLatin1Char('\n')))
        message.chop(1);
    QMessageLogger().debug() << message;
}
