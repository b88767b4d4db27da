#include "RecordingFiles.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>

namespace
{

constexpr int largestSide = 65535;
const char* const columnNames =
    "number,camera_ns,host_ns,x,y,width,height,decimation,mirror_h,mirror_v\n";

QByteArray headOf(const RecordingLayout& layout)
{
    QString head;
    QTextStream(&head) << "# camview recording 1\n"
                       << "# camera " << QString(layout.cameraName).replace('\n', ' ') << '\n'
                       << "# columns " << layout.columns << '\n'
                       << "# rows " << layout.rows << '\n'
                       << "# bits " << layout.bitDepth << '\n'
                       << "# mosaic " << int(layout.mosaic) << '\n'
                       << columnNames;
    return head.toUtf8();
}

void readHeadLine(const QString& line, RecordingLayout& layout)
{
    const QString key = line.section(' ', 1, 1);
    const QString value = line.section(' ', 2);
    if (key == "camera")
        layout.cameraName = value;
    else if (key == "columns")
        layout.columns = value.toInt();
    else if (key == "rows")
        layout.rows = value.toInt();
    else if (key == "bits")
        layout.bitDepth = value.toInt();
    else if (key == "mosaic")
        layout.mosaic = value.toInt() != 0;
}

bool readEntry(const QByteArray& line, Recording::Entry& entry)
{
    const QList<QByteArray> parts = line.trimmed().split(',');
    if (!line.endsWith('\n') || parts.size() != 10)
        return false;
    bool allGood = true;
    const auto integer = [&](int part) {
        bool good = false;
        const qint64 value = parts[part].toLongLong(&good);
        allGood = allGood && good;
        return value;
    };
    entry.stamp.number = std::uint64_t(integer(0));
    entry.stamp.cameraTime = std::chrono::nanoseconds(integer(1));
    entry.stamp.hostTime = std::chrono::nanoseconds(integer(2));
    entry.params.posX = int(integer(3));
    entry.params.posY = int(integer(4));
    entry.params.width = int(integer(5));
    entry.params.height = int(integer(6));
    entry.params.decimation = int(integer(7));
    entry.params.bitsPerPixel = 8;
    entry.params.mirrorH = integer(8) != 0;
    entry.params.mirrorV = integer(9) != 0;
    return allGood;
}

bool describes(const _FrameParams& params, const RecordingLayout& layout)
{
    return params.decimation != 0 && params.width / std::abs(params.decimation) == layout.columns &&
           params.height / std::abs(params.decimation) == layout.rows;
}

void readStamps(QFile& file, Recording& recording)
{
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.startsWith('#')) {
            readHeadLine(QString::fromUtf8(line).trimmed(), recording.layout);
            continue;
        }
        Recording::Entry entry;
        if (readEntry(line, entry) && describes(entry.params, recording.layout))
            recording.entries.push_back(entry);
        else if (line != columnNames)
            return; // a line cut off by a crash: what follows cannot be trusted
    }
}

void readDimensions(const QString& baseName, RecordingLayout& layout)
{
    QFile file(dataFileOf(baseName) + ".dim");
    if (!file.open(QIODevice::ReadOnly))
        throw RecordingError(QString("%1: %2").arg(file.fileName(), file.errorString()));
    const auto match =
        QRegularExpression("^(\\d{4,5})x(\\d{4,5})$").match(QString::fromLatin1(file.read(20)));
    if (!match.hasMatch())
        throw RecordingError(QString("%1: no dimensions in it").arg(file.fileName()));
    layout.columns = match.captured(1).toInt();
    layout.rows = match.captured(2).toInt();
    layout.mosaic = true;
}

// Gives frames without a line the place of the one before and even steps of time.
void completeEntries(Recording& recording, std::size_t frames)
{
    std::vector<Recording::Entry>& entries = recording.entries;
    if (entries.empty()) {
        Recording::Entry first;
        first.params.width = recording.layout.columns;
        first.params.height = recording.layout.rows;
        first.params.decimation = 1;
        first.params.bitsPerPixel = 8;
        entries.push_back(first);
    }
    while (entries.size() < frames) {
        Recording::Entry next = entries.back();
        ++next.stamp.number;
        if (entries.size() > 1) {
            const FrameStamp& before = entries[entries.size() - 2].stamp;
            next.stamp.cameraTime += next.stamp.cameraTime - before.cameraTime;
            next.stamp.hostTime += next.stamp.hostTime - before.hostTime;
        }
        entries.push_back(next);
    }
    entries.resize(frames);
}

} // namespace

RecordingLayout RecordingLayout::of(const CameraFrame& frame)
{
    RecordingLayout layout;
    layout.columns = frame.raw.imgWidth;
    layout.rows = frame.raw.imgHeight;
    layout.bitDepth = frame.raw.rawBitDepth;
    layout.mosaic = frame.mosaic;
    return layout;
}

bool RecordingLayout::fits(const CameraFrame& frame) const
{
    return frame.raw.imgWidth == columns && frame.raw.imgHeight == rows &&
           frame.raw.rawBitDepth == bitDepth && frame.mosaic == mosaic;
}

QString dataFileOf(const QString& baseName)
{
    return baseName + ".dat";
}

QString stampFileOf(const QString& baseName)
{
    return baseName + ".csv";
}

QString recordingBaseOf(const QString& fileName)
{
    for (const char* ending : {".dat.dim", ".dat", ".csv"}) {
        if (fileName.endsWith(ending))
            return fileName.left(fileName.size() - int(qstrlen(ending)));
    }
    return fileName;
}

bool recordingExists(const QString& baseName)
{
    const QString data = dataFileOf(baseName);
    return QFile::exists(data) || QFile::exists(data + ".dim") ||
           QFile::exists(stampFileOf(baseName));
}

StampWriter::StampWriter(const QString& baseName, const RecordingLayout& layout)
    : file(stampFileOf(baseName))
{
    const QByteArray head = headOf(layout);
    const bool written =
        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(head) == head.size();
    if (!written)
        throw RecordingError(QString("%1: %2").arg(file.fileName(), file.errorString()));
}

bool StampWriter::append(const CameraFrame& frame)
{
    const _FrameParams& params = frame.raw.params;
    char line[200];
    const int length =
        qsnprintf(line, sizeof line, "%llu,%lld,%lld,%d,%d,%d,%d,%d,%d,%d\n",
                  static_cast<unsigned long long>(frame.stamp.number),
                  static_cast<long long>(frame.stamp.cameraTime.count()),
                  static_cast<long long>(frame.stamp.hostTime.count()), int(params.posX),
                  int(params.posY), int(params.width), int(params.height), int(params.decimation),
                  int(params.mirrorH), int(params.mirrorV));
    return file.write(line, length) == length;
}

Recording Recording::open(const QString& baseName)
{
    Recording recording;
    const QFileInfo data(dataFileOf(baseName));
    if (!data.isFile() || !data.isReadable())
        throw RecordingError(QString("%1: cannot be read").arg(data.filePath()));
    QFile stamps(stampFileOf(baseName));
    if (stamps.open(QIODevice::ReadOnly))
        readStamps(stamps, recording);
    else
        readDimensions(baseName, recording.layout);

    const RecordingLayout& layout = recording.layout;
    const bool possible = layout.columns > 0 && layout.columns <= largestSide && layout.rows > 0 &&
                          layout.rows <= largestSide &&
                          (layout.bitDepth == 8 || layout.bitDepth == 10 || layout.bitDepth == 12);
    if (!possible)
        throw RecordingError(QString("%1: not a recording of camview").arg(stamps.fileName()));
    const qint64 frames = data.size() / layout.frameBytes();
    if (frames == 0)
        throw RecordingError(QString("%1: no whole frame in it").arg(data.filePath()));
    completeEntries(recording, std::size_t(frames));
    return recording;
}

void trimRecording(const QString& baseName, const RecordingLayout& layout, qint64 frames)
{
    QFile::resize(dataFileOf(baseName), frames * layout.frameBytes());
    QFile stamps(stampFileOf(baseName));
    QSaveFile kept(stampFileOf(baseName));
    if (!stamps.open(QIODevice::ReadOnly) || !kept.open(QIODevice::WriteOnly))
        return;
    for (qint64 lines = 0; lines < frames && !stamps.atEnd();) {
        const QByteArray line = stamps.readLine();
        kept.write(line);
        if (!line.startsWith('#') && line != columnNames)
            ++lines;
    }
    stamps.close();
    kept.commit();
}
