#include "Gallery.h"

#include <QApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPalette>
#include <QPixmap>
#include <QStackedWidget>
#include <QTextStream>

namespace
{

std::unique_ptr<QWidget> createShown(const Page& page)
{
    std::unique_ptr<QWidget> widget = page.create();
    widget->setAttribute(Qt::WA_DontShowOnScreen);
    widget->show();
    QCoreApplication::processEvents();
    if (page.settle)
        page.settle(*widget);
    QCoreApplication::processEvents();
    return widget;
}

bool grabPage(const Page& page, const QDir& folder, const QString& palette)
{
    const std::unique_ptr<QWidget> widget = createShown(page);
    for (const int ratio : {1, 2}) {
        QPixmap picture(widget->size() * ratio);
        picture.setDevicePixelRatio(ratio);
        widget->render(&picture);
        const QString file =
            folder.filePath(QStringLiteral("%1-%2-%3x.png").arg(page.name, palette).arg(ratio));
        if (!picture.save(file)) {
            QTextStream(stderr) << "cannot write " << file << '\n';
            return false;
        }
    }
    return true;
}

// The page's widget centred at its own size, so that no page is stretched.
std::unique_ptr<QWidget> createFrame(const Page& page)
{
    auto frame = std::make_unique<QWidget>();
    auto* layout = new QHBoxLayout(frame.get());
    QWidget* widget = page.create().release();
    widget->setFixedSize(widget->size());
    layout->addWidget(widget, 0, Qt::AlignCenter);
    return frame;
}

} // namespace

Pages allPages()
{
    Pages all;
    for (const Pages& pages : {viewPages(), analysisPages(), controlPages()})
        all.insert(all.end(), pages.begin(), pages.end());
    return all;
}

std::unique_ptr<QWidget> createGalleryWindow()
{
    auto window = std::make_unique<QWidget>();
    window->setWindowTitle(QStringLiteral("AppComponents gallery"));
    auto* layout = new QHBoxLayout(window.get());
    auto* list = new QListWidget;
    list->setMaximumWidth(220);
    auto* stack = new QStackedWidget;
    layout->addWidget(list);
    layout->addWidget(stack, 1);

    const Pages pages = allPages();
    std::vector<bool> settled(pages.size(), false);
    for (const Page& page : pages) {
        list->addItem(page.name);
        stack->addWidget(createFrame(page).release());
    }
    const auto show = [stack, pages, settled](int row) mutable {
        stack->setCurrentIndex(row);
        const auto index = static_cast<std::size_t>(row);
        if (settled[index] || !pages[index].settle)
            return;
        settled[index] = true;
        QCoreApplication::processEvents(); // the page gets its size before it is put in its state
        pages[index].settle(*stack->widget(row)->layout()->itemAt(0)->widget());
    };
    QObject::connect(list, &QListWidget::currentRowChanged, stack, show);
    return window;
}

bool grabPages(const QString& folder)
{
    const QDir target(folder);
    if (!target.mkpath(QStringLiteral("."))) {
        QTextStream(stderr) << "cannot create " << folder << '\n';
        return false;
    }
    for (const bool dark : {false, true}) {
        applyPalette(dark);
        for (const Page& page : allPages())
            if (!grabPage(page, target, dark ? QStringLiteral("dark") : QStringLiteral("light")))
                return false;
    }
    return true;
}

void applyPalette(bool dark)
{
    QPalette palette(dark ? QColor(53, 53, 53) : QColor(239, 239, 239));
    if (dark) {
        palette.setColor(QPalette::Base, QColor(35, 35, 35));
        palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    }
    QApplication::setPalette(palette);
}
