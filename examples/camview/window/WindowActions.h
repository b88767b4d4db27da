#pragma once

#include <QAction>
#include <QObject>

#include <vector>

class QMenuBar;
class QToolBar;

/// Every command of the window, each once: menus, tool bar, shortcuts and the help page are made
/// of these.
class WindowActions : public QObject
{
    Q_OBJECT

public:
    explicit WindowActions(QWidget* window);

    QAction* const openFile;
    QAction* const chooseSource;
    QAction* const snapshot;
    QAction* const rawSnapshot;
    QAction* const record;
    QAction* const exportPictures;
    QAction* const quit;

    QAction* const copyPicture;

    QAction* const fit;
    QAction* const actualSize;
    QAction* const zoomIn;
    QAction* const zoomOut;
    QAction* const fullScreen;
    QAction* const focusPicture;

    QAction* const stretch;
    QAction* const ruler;
    QAction* const grid;
    QAction* const crossHair;
    QAction* const clipping;
    QAction* const measure;
    QAction* const wideHistogram;

    QAction* const systemColors;
    QAction* const lightColors;
    QAction* const darkColors;

    QAction* const help;

    /// \param docks the switches of the docks and bars
    void fillMenus(QMenuBar& bar, const std::vector<QAction*>& docks);
    void fillToolBar(QToolBar& bar);

    /// The switches whose state is kept between sessions, by the name of the action.
    std::vector<QAction*> keptSwitches() const;
};
