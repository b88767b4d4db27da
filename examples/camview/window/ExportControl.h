#pragma once

#include "core/ProcessingSettings.h"

#include <AppComponents/calc/ICalculationInfo.h>

#include <QObject>

#include <atomic>
#include <thread>

class RecordingExport;

/// What a calculation on another thread tells the GUI thread, and the user's wish to end it.
class ExportProgress : public QObject, public ICalculationInfo
{
    Q_OBJECT

public:
    void requestStop(bool on) { stopRequested = on; }

    bool isStopRequested() override { return stopRequested; }
    void setStepCount(int count) override { emit stepCountKnown(count); }
    void setStep(int step) override { emit stepDone(step); }

signals:
    void stepCountKnown(int count);
    void stepDone(int step);

private:
    std::atomic<bool> stopRequested{false};
};

/// Exports recordings beside the live picture, one at a time: on a thread of its own, with a
/// dialogue that shows how far it is and lets the user stop it.
class ExportControl : public QObject
{
    Q_OBJECT

public:
    /// \param window the parent of the dialogues
    explicit ExportControl(QWidget& window);
    /// Stops an export that runs.
    ~ExportControl() override;

    /// Starts a RecordingExport, unless one runs.
    void start(const QString& recordingFile, const QString& folder,
               const ProcessingSettings& processing);
    bool isRunning() const { return running; }

signals:
    void runningChanged(bool running);
    /// How it ended, for the status bar.
    void ended(const QString& text);
    void failed(const QString& why);

private:
    void showProgress();
    void work(RecordingExport& calculation);
    void conclude(const QString& end, const QString& problem);
    void setRunning(bool on);

    QWidget& window;
    ExportProgress progress;
    std::thread worker;
    bool running = false;
};
