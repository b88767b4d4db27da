#include "WindowPictures.h"

#include "HelpPage.h"
#include "MainWindow.h"
#include "PanelDocks.h"
#include "PictureArea.h"
#include "WindowActions.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QImage>
#include <QTextStream>

namespace
{

constexpr int patienceMs = 60000;

/// Lets the window run until it has shown some more pictures, so that graphs have curves.
bool runFor(MainWindow& window, std::uint64_t pictures)
{
    const std::uint64_t enough = window.picturesShown() + pictures;
    QElapsedTimer clock;
    clock.start();
    while (window.picturesShown() < enough && clock.elapsed() < patienceMs)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return window.picturesShown() >= enough;
}

bool write(QWidget& widget, const QString& fileName, double density)
{
    QImage image(widget.size() * density, QImage::Format_RGB32);
    image.setDevicePixelRatio(density);
    widget.render(&image);
    return image.save(fileName, "PNG", 0);
}

bool writeDocks(MainWindow& window, const QString& folder)
{
    bool written = true;
    for (QDockWidget* dock : window.findChildren<QDockWidget*>()) {
        dock->raise();
        written &= runFor(window, 3);
        written &=
            write(*dock, QStringLiteral("%1/dock-%2.png").arg(folder, dock->objectName()), 1.0);
    }
    return written;
}

} // namespace

int writeWindowPictures(MainWindow& window, const QString& folder)
{
    WindowActions& actions = window.windowActions();
    const auto file = [&](const char* name) {
        return QStringLiteral("%1/%2.png").arg(folder, QLatin1String(name));
    };
    bool written = QDir().mkpath(folder);
    actions.lightColors->trigger();
    written &= runFor(window, 20) && write(window, file("camview-light"), 1.0);

    for (QAction* aid : {actions.ruler, actions.measure, actions.crossHair, actions.clipping})
        aid->setChecked(true);
    if (auto* dock = window.findChild<QDockWidget*>(QStringLiteral("measure")))
        dock->raise();
    written &= runFor(window, 5) && write(window, file("camview-aids"), 1.0);
    actions.darkColors->trigger();
    written &= runFor(window, 5) && write(window, file("camview-dark"), 1.0);
    written &= write(window, file("camview-dense"), 2.0);

    written &= writeDocks(window, folder);
    actions.help->trigger();
    if (auto* help = window.findChild<HelpPage*>())
        written &= write(*help, file("camview-help"), 1.0);
    if (!written)
        QTextStream(stderr) << "camview: not all pictures could be written to " << folder << '\n';
    return written ? 0 : 1;
}
