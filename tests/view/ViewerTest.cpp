#include <AppComponents/view/Viewer.h>

#include "ViewTestSupport.h"

#include <QClipboard>
#include <QGraphicsLineItem>
#include <QScrollBar>

#include <atomic>
#include <cmath>
#include <thread>
#include <tuple>

namespace
{

class ViewerTest : public testing::Test
{
protected:
    void showPicture(int width, int height)
    {
        viewer.setBitmap(plainPicture(width, height));
        showWithViewport(viewer, {400, 300});
        reported.clear();
    }
    // The zoom, of which exactly one report must have been made.
    void expectZoom(double zoom)
    {
        EXPECT_NEAR(viewer.transform().m11(), zoom, 1e-9);
        ASSERT_EQ(reported.size(), 1);
        EXPECT_FLOAT_EQ(reported.takeFirst()[0].toFloat(), static_cast<float>(zoom));
    }
    const QGraphicsRectItem* grid() const
    {
        for (const QGraphicsItem* item : viewer.scene()->items())
            if (const auto* rect = qgraphicsitem_cast<const QGraphicsRectItem*>(item))
                return rect;
        return nullptr;
    }

    Viewer viewer;
    QScrollBar& bar = *viewer.horizontalScrollBar();
    QSignalSpy reported{&viewer, &Viewer::showZoom};
};

TEST_F(ViewerTest, RefitsOnResizeOrKeepsTheShownArea)
{
    showPicture(1000, 500);
    const QSize size = viewer.size();
    viewer.resize(size + QSize(200, 150));
    expectZoom(0.6);
    viewer.resize(size);
    viewer.scaleView(4.0);
    viewer.resize(size + viewer.viewport()->size());
    EXPECT_NEAR(viewer.transform().m11(), 3.2, 1e-9);
}

TEST_F(ViewerTest, LimitsTheZoomAndReportsEachStep)
{
    showPicture(1000, 500);
    // At the fit the width is filled; then 10.3 and exactly 10 pixels remain from top to bottom.
    const std::tuple<double, double, bool> steps[] = {
        {1.3, 0.52, false},      {0.8, 0.416, false},      {0.8, 0.4, true},
        {29 / 0.4, 29.0, false}, {30 / 29.0, 29.0, false}, {0.9, 26.1, false}};
    for (const auto& [factor, zoom, fitted] : steps) {
        viewer.scaleView(factor);
        expectZoom(zoom);
        EXPECT_EQ(viewer.dragMode() == QGraphicsView::NoDrag, fitted);
    }

    const std::pair<double, double> zooms[] = {{100, 20.0}, {0.01, 0.1}, {std::nan(""), 0.1}};
    for (const auto& [wanted, zoom] : zooms) {
        EXPECT_EQ(viewer.setZoom(wanted), zoom);
        expectZoom(zoom);
    }
    viewer.scaleView(250.0);
    expectZoom(25.0);
    bar.setValue(300);
    viewer.setBitmap(plainPicture(1000, 500, Qt::blue));
    EXPECT_TRUE(reported.empty() && bar.value() == 300) << "the same size changes nothing";
    viewer.setBitmap(plainPicture(1500, 1000));
    expectZoom(20.0);
    EXPECT_EQ(viewer.sceneRect(), QRectF(0, 0, 1500, 1000));
}

TEST_F(ViewerTest, ZoomsAndScrollsByWheelKeysAndHand)
{
    showPicture(2000, 2000);
    viewer.scaleView(1.0 / 0.15);
    expectZoom(1.0);
    const std::pair<QPoint, double> turns[] = {{{0, 120}, 0.25}, {{0, -240}, -0.25}, {{120, 0}, 0}};
    for (const auto& [angle, octaves] : turns) {
        QWheelEvent event(QPointF(200, 150), viewer.mapToGlobal(QPoint(200, 150)), QPoint(), angle,
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewer.viewport(), &event);
        expectZoom(std::exp2(octaves));
    }
    const std::pair<Qt::Key, double> keys[] = {
        {Qt::Key_Plus, 1.2}, {Qt::Key_Equal, 1.44}, {Qt::Key_Minus, 1.152}};
    for (const auto& [key, zoom] : keys) {
        QTest::keyClick(&viewer, key);
        expectZoom(zoom);
    }
    bar.setValue(100);
    QTest::keyClick(&viewer, Qt::Key_Right);
    EXPECT_EQ(bar.value(), 100 + 2 * bar.singleStep()) << "such a key counts twice";

    bar.setValue(500);
    Mouse mouse{viewer.viewport()};
    mouse.drag({200, 150}, {180, 150});
    EXPECT_EQ(bar.value(), 520);
    mouse.modifiers = Qt::ShiftModifier;
    mouse.drag({200, 150}, {180, 150});
    EXPECT_EQ(bar.value(), 520);
}

TEST_F(ViewerTest, GivesWholePicturesToSlotsAndOtherThreads)
{
    const QImage pictures[] = {plainPicture(200, 100), plainPicture(160, 120, Qt::red)};
    std::atomic<int> copies{0};
    std::atomic<int> torn{0};
    const auto copy = [&] {
        const QImage picture = viewer.getBitmapSafe();
        torn += picture != pictures[0] && picture != pictures[1];
        ++copies;
    };
    viewer.setBitmap(pictures[0]);
    EXPECT_NE(viewer.getBitmapSafe().constBits(), pictures[0].constBits());
    // Two of these signals come while the viewer itself holds the lock.
    QObject::connect(&viewer, &Viewer::showZoom, copy);
    QObject::connect(viewer.scene(), &QGraphicsScene::sceneRectChanged, copy);
    QObject::connect(qApp->clipboard(), &QClipboard::dataChanged, &viewer, copy);
    viewer.copyImageToBuffer();
    EXPECT_EQ(copies, 1);
    std::atomic<bool> stop{false};
    std::thread reader([&] {
        while (!stop)
            copy();
    });
    for (int i = 0; i < 300 || copies < 1000; ++i) {
        viewer.setBitmap(pictures[i % 2].copy());
        viewer.viewport()->repaint();
    }
    stop = true;
    reader.join();
    EXPECT_EQ(torn, 0);
}

TEST_F(ViewerTest, ShowsTheGridOverThePictureOnly)
{
    viewer.setMaxImageSize(250, 100);
    QList<QLineF> lines;
    for (const QGraphicsItem* item : grid()->childItems())
        lines << static_cast<const QGraphicsLineItem*>(item)->line();
    EXPECT_EQ(lines, (QList<QLineF>{{100, 0, 100, 100}, {200, 0, 200, 100}}));
    EXPECT_EQ(viewer.sceneRect(), QRectF(0, 0, 250, 100));
    viewer.onShowGrid(true);
    EXPECT_FALSE(grid()->isVisible());
    viewer.setBitmap(plainPicture(150, 80));
    EXPECT_TRUE(grid()->isVisible());
    EXPECT_EQ(grid()->rect(), QRectF(0, 0, 150, 80));
    viewer.clearViewer();
    EXPECT_FALSE(grid()->isVisible());
}

TEST_F(ViewerTest, LetsASlotChangeTheGridBeingBuilt)
{
    QObject::connect(&viewer, &Viewer::showZoom, [&] {
        EXPECT_FALSE(grid()) << "the zoom is reported before the grid is in the scene";
        viewer.setMaxImageSize(0, 0);
    });
    viewer.setMaxImageSize(500, 500);
    EXPECT_FALSE(grid());
}

TEST_F(ViewerTest, CutsTheGridAtThePictureThatASlotSets)
{
    viewer.setMaxImageSize(500, 500);
    QObject::connect(&viewer, &Viewer::showZoom, [&] { viewer.setBitmap(plainPicture(60, 40)); });
    viewer.setBitmap(plainPicture(150, 80));
    EXPECT_EQ(grid()->rect(), QRectF(0, 0, 60, 40));
}

TEST_F(ViewerTest, PaintsHardPixelsOnlyWhenMagnified)
{
    QImage stripes(1000, 1000, QImage::Format_Mono);
    std::fill_n(stripes.bits(), stripes.sizeInBytes(), uchar(0x55));
    showPicture(1000, 1000);
    viewer.setBitmap(stripes);
    const auto isGrey = [&] {
        const QImage shown = viewer.viewport()->grab().toImage();
        return std::abs(qGray(shown.pixel(200, 150)) - 127) < 100;
    };
    viewer.setZoom(2.5);
    EXPECT_FALSE(isGrey());
    viewer.setZoom(0.5);
    EXPECT_TRUE(isGrey());
}

// Some of its repaints draw no picture.
class BareViewer : public Viewer
{
public:
    using Viewer::Viewer;
    bool bare = false;

protected:
    void drawBackground(QPainter* painter, const QRectF& rect) override
    {
        if (!bare)
            Viewer::drawBackground(painter, rect);
    }
};

int uncoveredPixels(QWidget& widget)
{
    QImage target(widget.size(), QImage::Format_RGB32);
    target.fill(Qt::magenta);
    widget.render(&target);
    int count = 0;
    for (int y = 0; y < target.height(); ++y)
        for (int x = 0; x < target.width(); ++x)
            count += target.pixelColor(x, y) == QColor(Qt::magenta);
    return count;
}

TEST(ViewerBackgroundTest, IsClearedWhereverNoPictureComes)
{
    BareViewer view(nullptr);
    showWithViewport(view, {300, 200});
    const auto staysClean = [&view] {
        return uncoveredPixels(*view.viewport()) + uncoveredPixels(*view.viewport()) == 0;
    };
    EXPECT_TRUE(staysClean()) << "no picture";
    view.setBitmap(plainPicture(100, 100));
    EXPECT_TRUE(staysClean()) << "beside a fitted picture";
    QImage dense = plainPicture(100, 100, Qt::red);
    dense.setDevicePixelRatio(2.0);
    view.setBitmap(dense);
    EXPECT_TRUE(staysClean()) << "with a pixel ratio of its own";
    view.setZoom(0.333);
    EXPECT_TRUE(staysClean()) << "at fractions of a pixel";
    view.rotate(30);
    EXPECT_TRUE(staysClean()) << "turned";
    view.setBackground(Qt::darkBlue);
    EXPECT_TRUE(staysClean()) << "coloured";
    view.bare = true;
    uncoveredPixels(*view.viewport());
    EXPECT_TRUE(staysClean()) << "another background";
    view.bare = false;
    QImage transparent(100, 100, QImage::Format_ARGB32);
    transparent.fill(Qt::transparent);
    view.setBitmap(transparent);
    uncoveredPixels(*view.viewport());
    EXPECT_TRUE(staysClean()) << "a picture to see through";
}

TEST_F(ViewerTest, KeepsTheRecordingIndicatorInTheCorner)
{
    showPicture(2000, 2000);
    viewer.setZoom(1.0);
    viewer.showRecordVideo(true);
    bar.setValue(600);
    viewer.verticalScrollBar()->setValue(250);
    viewer.viewport()->repaint();
    const QList<QGraphicsItem*> items = viewer.scene()->items(QRectF(601, 251, 10, 10));
    ASSERT_EQ(items.size(), 2); // with its text
    EXPECT_EQ(items.last()->pos(), QPointF(605, 255));
}

} // namespace
