#pragma once

#include "FrameProcessor.h"
#include "ProcessingSettings.h"

#include <AppComponents/calc/CRunneble.h>

#include <QString>

/// Makes a PNG picture of each frame of a recording: NAME_000001.png and so on.
///
/// Built on the thread that registers logs, it runs on the one that calls run(), tells its caller's
/// ICalculationInfo how far it is and asks it before each frame whether to go on. What is written
/// stays when it is stopped or fails.
class RecordingExport : public CRunneble
{
public:
    /// \param recordingFile the recording's name or one of its files
    /// \param outputFolder must exist; pictures that are in it are never replaced
    RecordingExport(QString recordingFile, QString outputFolder,
                    const ProcessingSettings& processing);

    int picturesWritten() const { return written; }

protected:
    /// \throws RecordingError when the recording cannot be read or a picture not be written
    void runInternal() override;

private:
    QString nextPicture(const QString& recordingName) const;

    const QString recordingFile;
    const QString outputFolder;
    FrameProcessor processor;
    int written = 0;
};
