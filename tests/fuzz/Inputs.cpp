#include "Inputs.h"

#include <AppComponents/imgproc/ImgCorrectionSettings.h>
#include <AppComponents/log/LogsElement.h>

#include <QBuffer>
#include <QFile>
#include <QString>

#include <cstdlib>
#include <stdexcept>

#include <sys/mman.h>
#include <unistd.h>

namespace
{

QByteArray bytesOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), static_cast<int>(size)};
}

// A file in memory, since thousands of inputs per second are read.
class MemoryFile
{
public:
    MemoryFile()
        : descriptor(memfd_create("input", 0))
    {
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor); }

    void fill(const QByteArray& bytes) const
    {
        if (ftruncate(descriptor, 0) != 0 ||
            pwrite(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) !=
                bytes.size())
            std::abort();
    }

    QString name() const { return QStringLiteral("/proc/self/fd/%1").arg(descriptor); }

private:
    int descriptor;
};

} // namespace

void readLogConfig(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes = bytesOf(data, size);
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    try {
        const LogsElement logs(device, QStringLiteral("input"));
        logs.forEachLog([](const LogElement&) {});
    } catch (const std::runtime_error&) {
        // The prescribed answer to a document that is no configuration; any other one is a find.
    }
}

void readCorrectionSettings(const std::uint8_t* data, std::size_t size)
{
    static const MemoryFile file;
    file.fill(bytesOf(data, size));
    ImgCorrectionSettings settings;
    if (!ImgCorrectionSettings::readSettings(file.name(), settings))
        std::abort(); // no bytes whatever make reading fail
}
