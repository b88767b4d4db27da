#pragma once

#include <AppComponents/log/CTextLogPorcessor.h>

#include <QPlainTextEdit>
#include <QTimer>

#include <atomic>

/// Shows what the library's in-memory text log collects. Writers on any thread only raise a
/// flag; the text is fetched on the GUI thread, so a flood of messages costs one drain.
class LogPanel : public QPlainTextEdit, private CTextLogPorcessor
{
    Q_OBJECT

public:
    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;

    /// Shows at once what has been written so far.
    void drain();

private:
    void process() override;

    std::atomic<bool> textWaits{true}; // what was written before the panel came
    QTimer timer;
};
