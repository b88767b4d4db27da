#pragma once

class MainWindow;
class QString;

/// Writes pictures of the window in its telling states into a folder: light, dark, on a screen
/// of double density, and each panel that hides behind another. Needs no display.
/// \return the process's exit status
int writeWindowPictures(MainWindow& window, const QString& folder);
