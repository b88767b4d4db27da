#include "FullScreen.h"

#include "PanelDocks.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

void FullScreen::enter()
{
    if (on)
        return;
    on = true;
    wasMaximized = window.isMaximized();
    QList<QWidget*> parts = {window.menuBar(), window.statusBar()};
    for (QToolBar* bar : window.findChildren<QToolBar*>())
        parts << bar;
    for (QDockWidget* dock : window.findChildren<QDockWidget*>())
        parts << dock;
    hidden.clear();
    inFront.clear();
    for (QDockWidget* dock : window.findChildren<QDockWidget*>())
        if (PanelDocks::isSeen(*dock))
            inFront << dock;
    for (QWidget* part : parts) {
        if (part->isHidden())
            continue;
        hidden << part;
        part->hide();
    }
    window.showFullScreen();
}

void FullScreen::leave()
{
    if (!on)
        return;
    on = false;
    for (QWidget* part : hidden)
        part->show();
    for (QDockWidget* dock : inFront)
        dock->raise();
    if (wasMaximized)
        window.showMaximized();
    else
        window.showNormal();
}
