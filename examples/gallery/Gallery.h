#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

/// One widget in one telling state.
struct Page {
    QString name; ///< lower case with dashes: also the name of the page's picture
    std::function<std::unique_ptr<QWidget>()> create;
    std::function<void(QWidget&)> settle; ///< may be empty; runs once, after the widget is shown
};

using Pages = std::vector<Page>;

Pages viewPages();
Pages analysisPages();
Pages controlPages();

/// Every page of the gallery, in the order of the list.
Pages allPages();

/// A window with the list of pages on its left and the chosen page on its right.
std::unique_ptr<QWidget> createGalleryWindow();

/// Writes every page to \p folder as `<name>-<light|dark>-<1|2>x.png`.
/// \return whether all of them were written
bool grabPages(const QString& folder);

/// Gives the application a light or a dark palette.
void applyPalette(bool dark);
