#pragma once

#include <AppComponents/log/CValProcessor.h>

#include <QTimer>
#include <QWidget>

#include <atomic>
#include <map>
#include <string>

class CurvePlot;
class QHBoxLayout;

/// One small plot per stream of the library's value-sequence log. Whoever writes a new stream
/// gets a plot without anything being done here.
class GraphsPanel : public QWidget, private CValProcessor
{
    Q_OBJECT

public:
    explicit GraphsPanel(QWidget* parent = nullptr);
    ~GraphsPanel() override;

    /// Takes over the newest values at once.
    void refresh();

private:
    void process() override;
    CurvePlot* plotOf(const std::wstring& name);

    std::atomic<bool> changed{true};
    QTimer timer;
    QHBoxLayout* plotLayout;
    std::map<std::wstring, CurvePlot*> plots;
};
