#include <AppComponents/view/Viewer.h>

#include "ViewTestSupport.h"

#include <QClipboard>
#include <QGraphicsLineItem>
#include <QScrollBar>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

namespace
{

double zoomOf(const Viewer& viewer)
{
    return viewer.transform().m11();
}

class ViewerTest : public testing::Test
{
protected:
    void showPicture(int width, int height, QSize viewSize = QSize(400, 300))
    {
        viewer.setMaxImageSize(width, height);
        viewer.setBitmap(plainPicture(width, height));
        resizeViewport(viewSize);
        viewer.show();
        QCoreApplication::processEvents();
    }
    // The viewport is what remains of the widget beside the scroll bars.
    void resizeViewport(QSize size)
    {
        viewer.resize(viewer.size() + size - viewer.viewport()->size());
        viewer.show();
        QCoreApplication::processEvents();
        if (viewer.viewport()->size() != size)
            viewer.resize(viewer.size() + size - viewer.viewport()->size());
        ASSERT_EQ(viewer.viewport()->size(), size);
    }
    double fitZoom() const
    {
        return std::min(viewer.viewport()->width() / viewer.sceneRect().width(),
                        viewer.viewport()->height() / viewer.sceneRect().height());
    }
    bool isFitted() const { return viewer.dragMode() == QGraphicsView::NoDrag; }
    void expectReported(QSignalSpy& spy, double zoom)
    {
        ASSERT_EQ(spy.size(), 1);
        EXPECT_FLOAT_EQ(spy.takeFirst()[0].toFloat(), static_cast<float>(zoom));
    }
    QList<QGraphicsItem*> gridLines() const
    {
        for (QGraphicsItem* item : viewer.scene()->items())
            if (item->type() == QGraphicsRectItem::Type)
                return item->childItems();
        return {};
    }
    QGraphicsItem* indicator() const
    {
        for (QGraphicsItem* item : viewer.scene()->items())
            if (qobject_cast<RecordIndicator*>(item->toGraphicsObject()))
                return item;
        return nullptr;
    }

    Viewer viewer;
};

TEST_F(ViewerTest, StartsFittedAndRefitsOnResize)
{
    EXPECT_EQ(viewer.dragMode(), QGraphicsView::ScrollHandDrag);
    showPicture(1000, 500);
    EXPECT_TRUE(isFitted());
    QSignalSpy zoom(&viewer, &Viewer::showZoom);
    resizeViewport({600, 450});
    EXPECT_DOUBLE_EQ(zoomOf(viewer), 0.6);
    ASSERT_FALSE(zoom.empty());
    EXPECT_FLOAT_EQ(zoom.last()[0].toFloat(), 0.6F);
    EXPECT_TRUE(isFitted());
}

TEST_F(ViewerTest, KeepsTheShownAreaOfAFreeViewOnResize)
{
    showPicture(2000, 2000);
    viewer.setMinZoom();
    viewer.scaleView(4.0);
    EXPECT_FALSE(isFitted());
    const double before = zoomOf(viewer);
    resizeViewport({800, 600});
    EXPECT_NEAR(zoomOf(viewer), 2 * before, 1e-9);
    resizeViewport({800, 150});
    EXPECT_NEAR(zoomOf(viewer), before, 1e-9);
}

TEST_F(ViewerTest, StopsZoomingOutAtTheFit)
{
    showPicture(1000, 500);
    viewer.scaleView(1.3);
    QSignalSpy zoom(&viewer, &Viewer::showZoom);
    viewer.scaleViewOut(); // 1.04 times the fit: the picture still fills the width
    EXPECT_NEAR(zoomOf(viewer), fitZoom() * 1.04, 1e-9);
    EXPECT_FALSE(isFitted());
    expectReported(zoom, zoomOf(viewer));
    viewer.scaleViewOut();
    EXPECT_DOUBLE_EQ(zoomOf(viewer), fitZoom());
    EXPECT_TRUE(isFitted());
    expectReported(zoom, fitZoom());
}

TEST_F(ViewerTest, RefusesTheCloseUpStepButStillReports)
{
    showPicture(1000, 1000);
    QSignalSpy zoom(&viewer, &Viewer::showZoom);
    viewer.setZoom(1.0);
    zoom.clear();
    viewer.scaleView(29.0); // 300 / 29 = 10.3 pixels down remain
    EXPECT_NEAR(zoomOf(viewer), 29.0, 1e-9);
    expectReported(zoom, 29.0);
    viewer.scaleView(30.0 / 29.0); // exactly 10 would remain
    EXPECT_NEAR(zoomOf(viewer), 29.0, 1e-9);
    expectReported(zoom, 29.0);
    viewer.setZoom(20.0);
    resizeViewport({400, 150});
    viewer.setZoom(20.0); // 7.5 pixels: a step back is always allowed
    viewer.scaleView(0.9);
    EXPECT_NEAR(zoomOf(viewer), 18.0, 1e-9);
}

TEST_F(ViewerTest, ClampsTheAbsoluteZoom)
{
    showPicture(1000, 1000);
    QSignalSpy zoom(&viewer, &Viewer::showZoom);
    EXPECT_EQ(viewer.setZoom(100), 20.0);
    expectReported(zoom, 20.0);
    EXPECT_EQ(viewer.setZoom(0.01), 0.1);
    expectReported(zoom, 0.1);
    EXPECT_EQ(viewer.setZoom(std::nan("")), 0.1);
    viewer.setMaxZoom();
    EXPECT_EQ(zoomOf(viewer), 20.0);
    EXPECT_TRUE(isFitted()) << "an absolute zoom leaves the state alone";
}

TEST_F(ViewerTest, ZoomsByWheelWithoutScrolling)
{
    showPicture(2000, 2000);
    viewer.setZoom(1.0);
    viewer.scaleView(1.0);
    const auto turn = [this](QPoint angle) {
        QWheelEvent event(QPointF(200, 150), viewer.mapToGlobal(QPoint(200, 150)), QPoint(), angle,
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewer.viewport(), &event);
    };
    turn({0, 120});
    EXPECT_NEAR(zoomOf(viewer), std::pow(2.0, 0.25), 1e-9);
    turn({0, -240});
    EXPECT_NEAR(zoomOf(viewer), std::pow(2.0, -0.25), 1e-9);
    turn({120, 0}); // a sideways wheel turns the same way
    EXPECT_NEAR(zoomOf(viewer), 1.0, 1e-9);
}

TEST_F(ViewerTest, ZoomsAndScrollsByKeys)
{
    showPicture(2000, 2000);
    viewer.setZoom(1.0);
    viewer.scaleView(1.0);
    QTest::keyClick(&viewer, Qt::Key_Plus);
    QTest::keyClick(&viewer, Qt::Key_Equal);
    EXPECT_NEAR(zoomOf(viewer), 1.44, 1e-9);
    QTest::keyClick(&viewer, Qt::Key_Minus);
    EXPECT_NEAR(zoomOf(viewer), 1.152, 1e-9);

    QScrollBar& bar = *viewer.horizontalScrollBar();
    bar.setValue(100);
    QTest::keyClick(&viewer, Qt::Key_Right);
    EXPECT_EQ(bar.value(), 100 + 2 * bar.singleStep());

    viewer.getRuller().setVisible(true);
    QTest::keyClick(&viewer, Qt::Key_Escape);
    EXPECT_FALSE(viewer.getRuller().isVisible());
}

TEST_F(ViewerTest, ScrollsByHandUnlessShiftIsHeld)
{
    showPicture(2000, 2000);
    viewer.setZoom(1.0);
    viewer.scaleView(1.0);
    Mouse mouse(viewer.viewport());
    const auto drag = [&](Qt::KeyboardModifiers modifiers) {
        const int before = viewer.horizontalScrollBar()->value();
        mouse.press({200, 150}, modifiers);
        mouse.move({180, 150}, modifiers);
        mouse.release({180, 150}, modifiers);
        return viewer.horizontalScrollBar()->value() - before;
    };
    EXPECT_EQ(drag(Qt::NoModifier), 20);
    EXPECT_EQ(drag(Qt::ShiftModifier), 0);
}

TEST_F(ViewerTest, KeepsZoomAndPlaceForAPictureOfTheSameSize)
{
    showPicture(2000, 2000);
    viewer.setZoom(2.0);
    viewer.horizontalScrollBar()->setValue(300);
    QSignalSpy zoom(&viewer, &Viewer::showZoom);
    viewer.setBitmap(plainPicture(2000, 2000, Qt::blue));
    EXPECT_TRUE(zoom.empty());
    EXPECT_EQ(viewer.horizontalScrollBar()->value(), 300);

    viewer.setBitmap(plainPicture(1500, 1000));
    expectReported(zoom, 2.0);
    EXPECT_EQ(viewer.sceneRect(), QRectF(0, 0, 1500, 1000));
    viewer.scaleView(14.0);
    zoom.clear();
    viewer.setBitmap(plainPicture(1501, 1000));
    expectReported(zoom, 20.0);
}

TEST_F(ViewerTest, SharesThePictureAndCopiesItOnlyWhenAsked)
{
    const QImage picture = plainPicture(300, 200);
    viewer.setBitmap(picture); // no grid exists
    EXPECT_EQ(viewer.getBitmap().constBits(), picture.constBits());
    const QImage copy = viewer.getBitmapSafe();
    EXPECT_NE(copy.constBits(), picture.constBits());
    EXPECT_EQ(copy, picture);
}

TEST_F(ViewerTest, LetsSlotsTakeACopyWhileThePictureChanges)
{
    QImage copy;
    QObject::connect(&viewer, &Viewer::showZoom, [&] { copy = viewer.getBitmapSafe(); });
    QImage early; // taken while the viewer itself holds the lock
    QObject::connect(viewer.scene(), &QGraphicsScene::sceneRectChanged,
                     [&] { early = viewer.getBitmapSafe(); });
    viewer.setBitmap(plainPicture(300, 200));
    EXPECT_EQ(copy.size(), QSize(300, 200));
    EXPECT_EQ(early.size(), QSize(300, 200));

    QClipboard& clipboard = *QGuiApplication::clipboard();
    const auto changed = QObject::connect(&clipboard, &QClipboard::dataChanged,
                                          [&] { copy = viewer.getBitmapSafe(); });
    copy = QImage();
    viewer.copyImageToBuffer();
    QObject::disconnect(changed);
    EXPECT_EQ(copy.size(), QSize(300, 200));
    EXPECT_EQ(clipboard.image().size(), QSize(300, 200));
    viewer.clearViewer();
    viewer.copyImageToBuffer();
    EXPECT_EQ(clipboard.image().size(), QSize(300, 200));
}

TEST_F(ViewerTest, GivesWholePicturesToOtherThreads)
{
    showPicture(200, 100);
    std::atomic<bool> stop{false};
    std::atomic<int> copies{0};
    std::atomic<int> torn{0};
    std::thread reader([&] {
        while (!stop) {
            const QImage copy = viewer.getBitmapSafe();
            ++copies;
            const bool wide = copy.width() == 200;
            QImage expected(copy.size(), copy.format());
            expected.fill(wide ? Qt::green : Qt::red);
            if (copy != expected)
                ++torn;
        }
    });
    for (int i = 0; i < 300 || copies < 50; ++i) {
        viewer.setBitmap(i % 2 == 0 ? plainPicture(160, 120, Qt::red) : plainPicture(200, 100));
        viewer.viewport()->repaint();
    }
    stop = true;
    reader.join();
    EXPECT_EQ(torn, 0);
}

TEST_F(ViewerTest, DrawsGridLinesInsideTheExtentOnly)
{
    viewer.setMaxImageSize(250, 100);
    QList<QLineF> lines;
    for (QGraphicsItem* item : gridLines())
        lines << static_cast<QGraphicsLineItem*>(item)->line();
    EXPECT_EQ(lines, (QList<QLineF>{{100, 0, 100, 100}, {200, 0, 200, 100}}));
    EXPECT_EQ(viewer.sceneRect(), QRectF(0, 0, 250, 100));
    viewer.setMaxImageSize(301, 301);
    EXPECT_EQ(gridLines().size(), 6);
    viewer.setMaxImageSize(0, 0);
    EXPECT_TRUE(gridLines().isEmpty());
}

TEST_F(ViewerTest, ShowsTheGridOnlyOverAPictureAndCutsItThere)
{
    viewer.setMaxImageSize(300, 300);
    const QGraphicsItem* grid = gridLines().first()->parentItem();
    viewer.onShowGrid(true);
    EXPECT_FALSE(grid->isVisible());
    viewer.setBitmap(plainPicture(150, 120));
    EXPECT_TRUE(grid->isVisible());
    EXPECT_EQ(static_cast<const QGraphicsRectItem*>(grid)->rect(), QRectF(0, 0, 150, 120));
    EXPECT_TRUE(grid->flags() & QGraphicsItem::ItemClipsChildrenToShape);
    viewer.onShowGrid(false);
    EXPECT_FALSE(grid->isVisible());
    viewer.onShowGrid(true);
    viewer.clearViewer();
    EXPECT_FALSE(grid->isVisible());
}

TEST_F(ViewerTest, PaintsHardPixelsOnlyWhenMagnified)
{
    QImage stripes(400, 300, QImage::Format_RGB888);
    stripes.fill(Qt::black);
    for (int x = 0; x < 400; x += 2)
        for (int y = 0; y < 300; ++y)
            stripes.setPixelColor(x, y, Qt::white);
    showPicture(400, 300);
    viewer.setBitmap(stripes);
    const auto greys = [this] {
        int count = 0;
        const QImage shown = viewer.viewport()->grab().toImage();
        for (int x = 60; x < 340; ++x) {
            const int level = qGray(shown.pixel(x, 150));
            count += level > 40 && level < 215 ? 1 : 0;
        }
        return count;
    };
    viewer.setZoom(2.5);
    EXPECT_EQ(greys(), 0);
    viewer.setZoom(0.7);
    EXPECT_GT(greys(), 100);
}

TEST_F(ViewerTest, KeepsTheRecordingIndicatorInTheCorner)
{
    showPicture(2000, 2000);
    viewer.showRecordVideo(true);
    EXPECT_TRUE(indicator()->isVisible());
    viewer.setZoom(1.0);
    viewer.horizontalScrollBar()->setValue(600);
    viewer.verticalScrollBar()->setValue(250);
    viewer.viewport()->repaint();
    EXPECT_EQ(indicator()->pos(), viewer.mapToScene(5, 5));
    EXPECT_EQ(indicator()->pos(), QPointF(605, 255));
    viewer.clearViewer();
    EXPECT_FALSE(indicator()->isVisible());
}

TEST_F(ViewerTest, IsHarmlessWithoutAPicture)
{
    QSignalSpy zoom(&viewer, &Viewer::showZoom);
    viewer.scaleViewIn();
    EXPECT_TRUE(zoom.empty());
    showPicture(400, 300);
    viewer.setZoom(3.0);
    zoom.clear();
    viewer.clearViewer();
    EXPECT_FALSE(viewer.isEnabled());
    EXPECT_EQ(zoomOf(viewer), 1.0);
    EXPECT_FLOAT_EQ(zoom.last()[0].toFloat(), 1.0F);
    resizeViewport({200, 200});
    viewer.viewport()->repaint();
    EXPECT_TRUE(viewer.transform().isInvertible());
    viewer.setBitmap(plainPicture(400, 300));
    EXPECT_TRUE(viewer.isEnabled());
}

TEST_F(ViewerTest, ClearsWhatThePictureDoesNotCover)
{
    showPicture(400, 300, {600, 300});
    QPixmap window(viewer.viewport()->size());
    const auto shownAt = [&](int x) { // painted over what was there before
        viewer.viewport()->render(&window);
        return window.toImage().pixelColor(x, 150);
    };
    const QColor base = viewer.viewport()->palette().color(QPalette::Base);
    window.fill(Qt::magenta);
    EXPECT_EQ(shownAt(20), base);
    EXPECT_EQ(shownAt(99), base);
    EXPECT_EQ(shownAt(100), QColor(Qt::green));
    QImage glass(400, 300, QImage::Format_ARGB32);
    glass.fill(Qt::transparent);
    viewer.setBitmap(glass);
    EXPECT_EQ(shownAt(300), base);
    viewer.setBitmap(plainPicture(400, 300));
    EXPECT_EQ(shownAt(300), QColor(Qt::green));
    viewer.clearViewer();
    EXPECT_EQ(shownAt(300), viewer.viewport()->palette().color(QPalette::Base));
}

TEST_F(ViewerTest, ColoursItsBackground)
{
    showPicture(400, 300, {600, 300});
    viewer.setBackground(QColor(10, 200, 30, 77));
    EXPECT_EQ(viewer.styleSheet(), QStringLiteral("background-color:#0ac81e;"));
    const QImage shown = viewer.viewport()->grab().toImage();
    EXPECT_EQ(shown.pixelColor(20, 150), QColor(10, 200, 30));
    EXPECT_EQ(shown.pixelColor(300, 150), QColor(Qt::green));
    EXPECT_EQ(viewer.getAsWidget(), &viewer);
}

} // namespace
