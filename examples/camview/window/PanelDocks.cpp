#include "PanelDocks.h"

#include "CameraPanel.h"
#include "ColorPanel.h"
#include "GraphsPanel.h"
#include "HistogramPanel.h"
#include "LogPanel.h"
#include "MapPanel.h"
#include "MeasurePanel.h"
#include "ProcessingPanel.h"
#include "RecordingPanel.h"
#include "TonePanel.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QScrollArea>
#include <QScrollBar>

namespace
{

/// Lets a panel be smaller than its content on a small screen.
QWidget* scrolling(QWidget* panel)
{
    if (qobject_cast<QAbstractScrollArea*>(panel) != nullptr)
        return panel;
    auto* area = new QScrollArea;
    area->setWidget(panel);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setMinimumWidth(panel->minimumSizeHint().width() +
                          area->verticalScrollBar()->sizeHint().width());
    return area;
}

} // namespace

PanelDocks::PanelDocks(QMainWindow& mainWindow, ProcessingModel& model)
    : QObject(&mainWindow)
    , camera(new CameraPanel)
    , tone(new TonePanel(model))
    , color(new ColorPanel(model))
    , processing(new ProcessingPanel(model))
    , histogram(new HistogramPanel)
    , map(new MapPanel)
    , recording(new RecordingPanel)
    , graphs(new GraphsPanel)
    , log(new LogPanel)
    , measure(new MeasurePanel)
    , window(mainWindow)
{
    arrange();
}

QDockWidget* PanelDocks::addDock(Qt::DockWidgetArea area, const char* name, const QString& title,
                                 QWidget* panel)
{
    auto* dock = new QDockWidget(title, &window);
    dock->setObjectName(QLatin1String(name)); // the window's saved layout goes by it
    dock->setWidget(scrolling(panel));
    window.addDockWidget(area, dock);
    docks << dock;
    // The signal comes while the docks are being laid out; what counts is how they lie then.
    connect(dock, &QDockWidget::visibilityChanged, this, &PanelDocks::disableHiddenPanels,
            Qt::QueuedConnection);
    return dock;
}

void PanelDocks::arrange()
{
    window.setDockNestingEnabled(true);
    window.setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    window.setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);

    QDockWidget* mapDock = addDock(Qt::LeftDockWidgetArea, "map", tr("Sensor"), map);
    addDock(Qt::LeftDockWidgetArea, "recording", tr("Recording"), recording);
    QDockWidget* cameraDock = addDock(Qt::RightDockWidgetArea, "camera", tr("Camera"), camera);
    QDockWidget* toneDock = addDock(Qt::RightDockWidgetArea, "tone", tr("Tone"), tone);
    QDockWidget* colorDock = addDock(Qt::RightDockWidgetArea, "color", tr("Colour"), color);
    QDockWidget* processingDock =
        addDock(Qt::RightDockWidgetArea, "processing", tr("Processing"), processing);
    for (QDockWidget* dock : {toneDock, colorDock, processingDock})
        window.tabifyDockWidget(cameraDock, dock);
    cameraDock->raise();
    QDockWidget* histogramDock =
        addDock(Qt::RightDockWidgetArea, "histogram", tr("Histograms"), histogram);

    QDockWidget* graphsDock = addDock(Qt::BottomDockWidgetArea, "graphs", tr("Graphs"), graphs);
    QDockWidget* measureDock =
        addDock(Qt::BottomDockWidgetArea, "measure", tr("Measurements"), measure);
    QDockWidget* logDock = addDock(Qt::BottomDockWidgetArea, "log", tr("Log"), log);
    window.tabifyDockWidget(graphsDock, measureDock);
    window.tabifyDockWidget(graphsDock, logDock);
    graphsDock->raise();
    window.resizeDocks({graphsDock}, {195}, Qt::Vertical);
    window.resizeDocks({mapDock, cameraDock}, {250, 410}, Qt::Horizontal);
    window.resizeDocks({cameraDock, histogramDock}, {340, 460}, Qt::Vertical);
}

bool PanelDocks::isSeen(const QWidget& panel)
{
    if (!panel.isVisible())
        return false;
    const QWidget* top = panel.window(); // a floating dock is its own
    return top->rect().intersects(QRect(panel.mapTo(top, QPoint(0, 0)), panel.size()));
}

void PanelDocks::bringUp(const QWidget& panel)
{
    for (QDockWidget* dock : docks) {
        if (!dock->isAncestorOf(&panel))
            continue;
        dock->show();
        dock->raise();
    }
}

void PanelDocks::disableHiddenPanels()
{
    // A dock behind a tab lies off the window but counts as visible: its mnemonics would act on
    // controls that nobody sees.
    for (QDockWidget* dock : docks) {
        const bool seen = isSeen(*dock);
        // Left to itself the focus would go on to some text field, and swallow shortcuts there.
        if (!seen && dock->isAncestorOf(QApplication::focusWidget()))
            window.centralWidget()->setFocus();
        dock->widget()->setEnabled(seen);
    }
}

std::vector<QAction*> PanelDocks::switches() const
{
    std::vector<QAction*> actions;
    for (QDockWidget* dock : docks)
        actions.push_back(dock->toggleViewAction());
    return actions;
}
