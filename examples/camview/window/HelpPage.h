#pragma once

#include <QDialog>

#include <vector>

class QAction;

/// All commands with their shortcuts, and what the mouse does.
class HelpPage : public QDialog
{
    Q_OBJECT

public:
    explicit HelpPage(const std::vector<QAction*>& actions, QWidget* parent = nullptr);

    static QString html(const std::vector<QAction*>& actions);
};
