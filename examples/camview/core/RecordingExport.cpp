#include "RecordingExport.h"

#include "PictureFile.h"
#include "RecordingReader.h"

#include <AppComponents/log/DiagnosticPrinting.h>

#include <QDir>

namespace
{

constexpr auto withoutHistograms = std::chrono::hours(24 * 365);

ProcessingSettings forPicturesAlone(ProcessingSettings settings)
{
    settings.histogramPeriod = withoutHistograms;
    return settings;
}

} // namespace

RecordingExport::RecordingExport(QString recording, QString folder,
                                 const ProcessingSettings& wanted)
    : recordingFile(std::move(recording))
    , outputFolder(std::move(folder))
{
    processor.setSettings(forPicturesAlone(wanted));
}

void RecordingExport::runInternal()
{
    written = 0;
    RecordingReader reader(recordingFile);
    CameraFrame frame;
    const auto count = static_cast<int>(reader.frameCount());
    if (info != nullptr)
        info->setStepCount(count);
    while (written < count) {
        checkStopFlag();
        const QString fileName = nextPicture(reader.name());
        reader.read(static_cast<std::size_t>(written), frame);
        frame.raw.invalidateFrame();
        const QString complaint = writePng(processor.process(frame).picture, fileName);
        if (!complaint.isEmpty())
            throw RecordingError(QString("%1: %2").arg(fileName, complaint));
        ++written;
        if (info != nullptr)
            info->setStep(written);
    }
    log(InfoLogType) << "Exported " << count << " pictures of " << reader.name() << " to "
                     << outputFolder << std::endl;
    if (info != nullptr)
        info->setFinished();
}

QString RecordingExport::nextPicture(const QString& recordingName) const
{
    const QString number = QString("%1").arg(written + 1, 6, 10, QChar('0'));
    QString fileName = QDir(outputFolder).filePath(recordingName + '_' + number + ".png");
    if (QFile::exists(fileName))
        throw RecordingError(QString("%1: is there already").arg(fileName));
    return fileName;
}
