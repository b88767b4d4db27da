#include "Inputs.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace
{

// Hands every input of a corpus to its reader; a fault shows as a crash.
void replay(const char* corpus, void (*read)(const std::uint8_t*, std::size_t))
{
    const QDir folder(QStringLiteral(FUZZ_CORPUS "/") + QLatin1String(corpus));
    const QStringList names = folder.entryList(QDir::Files);
    ASSERT_FALSE(names.isEmpty());
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        read(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
             static_cast<std::size_t>(bytes.size()));
    }
}

} // namespace

TEST(FuzzReplay, LogConfig)
{
    replay("log_config", readLogConfig);
}

TEST(FuzzReplay, CorrectionSettings)
{
    replay("settings", readCorrectionSettings);
}
