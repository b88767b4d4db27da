#pragma once

#include <QList>

class QDockWidget;
class QMainWindow;
class QWidget;

/// Shows nothing but the picture, and brings everything back as it was.
class FullScreen
{
public:
    explicit FullScreen(QMainWindow& mainWindow)
        : window(mainWindow)
    {
    }

    bool isOn() const { return on; }
    void enter();
    void leave();

private:
    QMainWindow& window;
    bool on = false;
    bool wasMaximized = false;
    QList<QWidget*> hidden;
    QList<QDockWidget*> inFront; ///< of those that share a place, the ones that were seen
};
