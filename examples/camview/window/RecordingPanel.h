#pragma once

#include "core/Recorder.h"

#include <QJsonObject>
#include <QWidget>

class QAction;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QSpinBox;

/// What to record and where, and how the recording goes.
class RecordingPanel : public QWidget
{
    Q_OBJECT

public:
    explicit RecordingPanel(QWidget* parent = nullptr);

    /// Adds a button for the command that starts and stops.
    void setRecordAction(QAction* action);
    void setFolder(const QString& folder);

    RecordingRequest request() const;
    double preTriggerSeconds() const;
    void showStatus(const RecorderStatus& status);
    QString statusText() const;

    QJsonObject save() const;
    /// What is missing stays as it is.
    void restore(const QJsonObject& json);

signals:
    void preTriggerChanged(double seconds);

private:
    enum Length { UntilStopped, ByCount, ByTime };

    QWidget* lengthRow();
    QWidget* folderRow();
    void followLength();

    QLineEdit* folder;
    QLineEdit* pattern;
    QComboBox* length;
    QSpinBox* count;
    QDoubleSpinBox* seconds;
    QDoubleSpinBox* preTrigger;
    QSpinBox* warnBelow; ///< MiB
    QSpinBox* stopBelow; ///< MiB
    QLabel* status;
    int fittedWidth = -1; ///< the status has its height for this width
};
