#include "ExportControl.h"

#include "core/RecordingExport.h"

#include <QProgressDialog>

#include <memory>

ExportControl::ExportControl(QWidget& parentOfDialogues)
    : window(parentOfDialogues)
{
}

ExportControl::~ExportControl()
{
    progress.requestStop(true);
    if (worker.joinable())
        worker.join();
}

void ExportControl::start(const QString& recordingFile, const QString& folder,
                          const ProcessingSettings& processing)
{
    if (running)
        return;
    progress.requestStop(false);
    setRunning(true);
    showProgress();
    // Its accessors look for their logs here, on the thread that registers logs.
    const auto calculation = std::make_shared<RecordingExport>(recordingFile, folder, processing);
    worker = std::thread([this, calculation] { work(*calculation); });
}

// On the worker's thread.
void ExportControl::work(RecordingExport& calculation)
{
    QString end;
    QString problem;
    try {
        calculation.run(&progress);
    } catch (const CCalculationBlock::DeviceFunctionException& stop) {
        end = QStringLiteral("%1: ").arg(QLatin1String(stop.what()));
    } catch (const std::exception& error) {
        problem = QString::fromUtf8(error.what());
    }
    end += tr("%n picture(s) exported", nullptr, calculation.picturesWritten());
    QMetaObject::invokeMethod(
        this, [this, end, problem] { conclude(end, problem); }, Qt::QueuedConnection);
}

void ExportControl::showProgress()
{
    auto* dialog = new QProgressDialog(tr("Making pictures of the recording…"), tr("Stop"), 0, 0,
                                       &window, Qt::Dialog);
    dialog->setWindowTitle(tr("Export"));
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    dialog->setMinimumDuration(0);
    connect(&progress, &ExportProgress::stepCountKnown, dialog, &QProgressDialog::setMaximum);
    connect(&progress, &ExportProgress::stepDone, dialog, &QProgressDialog::setValue);
    connect(dialog, &QProgressDialog::canceled, this, [this] { progress.requestStop(true); });
    connect(this, &ExportControl::runningChanged, dialog, &QObject::deleteLater);
    dialog->show();
}

void ExportControl::conclude(const QString& end, const QString& problem)
{
    worker.join();
    setRunning(false);
    if (problem.isEmpty())
        emit ended(end);
    else
        emit failed(tr("The export has stopped: %1. %2").arg(problem, end));
}

void ExportControl::setRunning(bool on)
{
    running = on;
    emit runningChanged(on);
}
