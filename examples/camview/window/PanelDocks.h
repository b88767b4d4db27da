#pragma once

#include <QList>
#include <QObject>

#include <vector>

class CameraPanel;
class ColorPanel;
class GraphsPanel;
class HistogramPanel;
class LogPanel;
class MapPanel;
class MeasurePanel;
class ProcessingModel;
class ProcessingPanel;
class RecordingPanel;
class QAction;
class QDockWidget;
class QMainWindow;
class TonePanel;

/// The panels around the picture, each in a dock of its own.
class PanelDocks : public QObject
{
    Q_OBJECT

public:
    PanelDocks(QMainWindow& window, ProcessingModel& model);

    CameraPanel* const camera;
    TonePanel* const tone;
    ColorPanel* const color;
    ProcessingPanel* const processing;
    HistogramPanel* const histogram;
    MapPanel* const map;
    RecordingPanel* const recording;
    GraphsPanel* const graphs;
    LogPanel* const log;
    MeasurePanel* const measure;

    /// Whether the user can see any of the panel now.
    static bool isSeen(const QWidget& panel);

    /// Shows the dock of \p panel in front of those that it shares its place with.
    void bringUp(const QWidget& panel);

    /// The switches that show and hide the docks.
    std::vector<QAction*> switches() const;

private:
    QDockWidget* addDock(Qt::DockWidgetArea area, const char* name, const QString& title,
                         QWidget* panel);
    void arrange();
    void disableHiddenPanels();

    QMainWindow& window;
    QList<QDockWidget*> docks;
};
