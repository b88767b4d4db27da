#include "WindowActions.h"

#include <QActionGroup>
#include <QIcon>
#include <QMenuBar>
#include <QToolBar>
#include <QWidget>

namespace
{

QAction* command(QWidget* window, const char* name, const QString& text,
                 const QKeySequence& shortcut = {}, const char* icon = nullptr)
{
    auto* action = new QAction(text, window);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    if (icon != nullptr)
        action->setIcon(QIcon(QStringLiteral(":/camview/icons/%1.svg").arg(QLatin1String(icon))));
    if (!shortcut.isEmpty())
        action->setToolTip(QStringLiteral("%1 (%2)").arg(
            QString(text).remove(QLatin1Char('&')), shortcut.toString(QKeySequence::NativeText)));
    // Without this the shortcuts would go when full screen hides the menus.
    window->addAction(action);
    return action;
}

QAction* toggle(QWidget* window, const char* name, const QString& text,
                const QKeySequence& shortcut = {}, const char* icon = nullptr)
{
    QAction* action = command(window, name, text, shortcut, icon);
    action->setCheckable(true);
    return action;
}

} // namespace

WindowActions::WindowActions(QWidget* w)
    : QObject(w)
    , openFile(command(w, "openFile", tr("&Open a recording or photograph…"), QKeySequence::Open))
    , chooseSource(command(w, "chooseSource", tr("Choose the so&urce"), tr("Ctrl+L")))
    , snapshot(command(w, "snapshot", tr("&Snapshot as PNG"), QKeySequence::Save, "snapshot"))
    , rawSnapshot(command(w, "rawSnapshot", tr("Snapshot of the raw &frame"), tr("Ctrl+Shift+S")))
    , record(toggle(w, "record", tr("&Record"), tr("Ctrl+R"), "record"))
    , exportPictures(
          command(w, "exportPictures", tr("&Export a recording as pictures…"), tr("Ctrl+E")))
    , quit(command(w, "quit", tr("&Quit"), tr("Ctrl+Q")))
    , copyPicture(command(w, "copy", tr("&Copy the picture"), tr("Ctrl+Shift+C")))
    , fit(command(w, "fit", tr("&Fit"), tr("F"), "fit"))
    , actualSize(command(w, "actualSize", tr("&Actual pixels"), tr("1"), "actual"))
    , zoomIn(command(w, "zoomIn", tr("Zoom &in"), QKeySequence::ZoomIn, "zoom-in"))
    , zoomOut(command(w, "zoomOut", tr("Zoom &out"), QKeySequence::ZoomOut, "zoom-out"))
    , fullScreen(toggle(w, "fullScreen", tr("F&ull screen"), tr("F11"), "full-screen"))
    , focusPicture(command(w, "focusPicture", tr("Go to the &picture"), tr("F6")))
    , stretch(toggle(w, "stretch", tr("Automatic &stretch"), tr("T"), "stretch"))
    , ruler(toggle(w, "ruler", tr("&Ruler"), tr("R"), "ruler"))
    , grid(toggle(w, "grid", tr("&Grid"), tr("G"), "grid"))
    , crossHair(toggle(w, "crossHair", tr("&Cross hair"), tr("X"), "cross-hair"))
    , clipping(toggle(w, "clipping", tr("C&lipped samples"), tr("C"), "clipping"))
    , measure(toggle(w, "measure", tr("&Measured area"), tr("M"), "measure"))
    , wideHistogram(toggle(w, "wideHistogram", tr("&Wide histogram"), tr("Ctrl+H")))
    , systemColors(toggle(w, "systemColors", tr("&System colours")))
    , lightColors(toggle(w, "lightColors", tr("&Light")))
    , darkColors(toggle(w, "darkColors", tr("&Dark")))
    , help(command(w, "help", tr("&Controls and shortcuts"), QKeySequence::HelpContents, "help"))
{
    auto* schemes = new QActionGroup(this);
    for (QAction* scheme : {systemColors, lightColors, darkColors})
        schemes->addAction(scheme);
    systemColors->setChecked(true);
}

void WindowActions::fillMenus(QMenuBar& bar, const std::vector<QAction*>& docks)
{
    QMenu* file = bar.addMenu(tr("&File"));
    file->addActions({openFile, chooseSource, exportPictures});
    file->addSeparator();
    file->addActions({snapshot, rawSnapshot, record, copyPicture});
    file->addSeparator();
    file->addAction(quit);

    QMenu* view = bar.addMenu(tr("&View"));
    view->addActions({fit, actualSize, zoomIn, zoomOut, fullScreen, focusPicture});
    view->addSeparator();
    view->addActions({systemColors, lightColors, darkColors});

    QMenu* aids = bar.addMenu(tr("&Aids"));
    aids->addActions({stretch, clipping, ruler, grid, crossHair, measure, wideHistogram});

    QMenu* panels = bar.addMenu(tr("&Panels"));
    for (QAction* dock : docks)
        panels->addAction(dock);

    bar.addMenu(tr("&Help"))->addAction(help);
}

void WindowActions::fillToolBar(QToolBar& bar)
{
    bar.addActions({record, snapshot});
    bar.addSeparator();
    bar.addActions({fit, actualSize, zoomIn, zoomOut, fullScreen});
    bar.addSeparator();
    bar.addActions({stretch, clipping, ruler, grid, crossHair, measure});
}

std::vector<QAction*> WindowActions::keptSwitches() const
{
    return {ruler, grid, crossHair, clipping, measure, wideHistogram};
}
