#include <AppComponents/view/ViewportMap.h>

#include "ViewTestSupport.h"

#include <algorithm>

namespace
{

struct MapProbe : ViewportMap {
    using ViewportMap::cameraToScreen;
    using ViewportMap::getPointPosition;
    using ViewportMap::screenToCamera;
};

class MapTest : public testing::Test
{
protected:
    // A 200 x 100 map of a 2000 x 1000 sensor, not mirrored.
    void SetUp() override
    {
        map.setMaxVPSize(2000, 1000);
        map.setFlipping(false, false);
        map.setViewport(500, 200, 800, 600); // (50, 20) to (130, 80) on the map
        map.show();
    }
    QRect dragged(QPointF from, QPointF to)
    {
        mouse.drag(from, to);
        const QList<QVariant> v = request.takeLast();
        return {v[0].toInt(), v[1].toInt(), v[2].toInt(), v[3].toInt()};
    }
    QColor shown(int x, int y) { return map.grab().toImage().pixelColor(x, y); }

    MapProbe map;
    Mouse mouse{&map};
    QSignalSpy request{&map, &ViewportMap::setCameraViewport};
    const QColor frame{41, 163, 204};
};

TEST_F(MapTest, TakesTheShapeOfTheSensorWithTheLongerSideAt200)
{
    for (int longer = 1; longer < 9000; ++longer) {
        map.setMaxVPSize(std::max(1, longer / 3), longer);
        ASSERT_EQ(map.maximumHeight(), 200) << longer;
    }
}

TEST_F(MapTest, MirrorsBetweenSensorAndMap)
{
    const QRect sensor(100, 50, 500, 200);
    for (int i = 0; i < 4; ++i) {
        map.setFlipping(i % 2, i / 2);
        const QRectF place(i % 2 ? 140 : 10, i / 2 ? 75 : 5, 50, 20);
        EXPECT_EQ(map.cameraToScreen(sensor), place);
        EXPECT_EQ(map.screenToCamera(place), sensor);
    }
    EXPECT_EQ(shown(50, 50), frame) << "the rectangle follows with the next viewport";
    map.setViewport(500, 200, 800, 600);
    EXPECT_EQ(shown(70, 50), frame);
}

TEST_F(MapTest, FindsWhatLiesUnderThePoint)
{
    const double xs[] = {44.9, 45, 55.1, 90, 124.9, 135, 135.1};
    const double ys[] = {14.9, 15, 25.1, 74.9, 85, 85.1};
    const char* const positions[] = {"0000000", "0622270", "0411150",
                                     "0411150", "0833390", "0000000"};
    for (int row = 0; row < 6; ++row) {
        QString found;
        for (const double x : xs)
            found += QString::number(map.getPointPosition({x, ys[row]}));
        EXPECT_EQ(found.toStdString(), positions[row]) << ys[row];
    }
    map.setViewport(500, 200, 30, 600); // ties go to the left and to the top
    EXPECT_EQ(map.getPointPosition({52.5, 50}), LeftEdge);
    EXPECT_EQ(map.getPointPosition({52.5, 80}), BottomLeftCorner);
    map.setViewport(500, 200, 800, 30);
    EXPECT_EQ(map.getPointPosition({90, 22.5}), TopEdge);
    EXPECT_EQ(map.getPointPosition({130, 22.5}), TopRightCorner);
}

TEST_F(MapTest, MovesTheViewportWithinTheMap)
{
    EXPECT_EQ(dragged({90, 50}, {100, 40}), QRect(600, 100, 800, 600));
    EXPECT_EQ(dragged({90, 50}, {199, 99}), QRect(1200, 400, 800, 600));
    EXPECT_EQ(dragged({90, 50}, {0, 0}), QRect(0, 0, 800, 600));
    EXPECT_EQ(map.getCameraViewport(), QRect(500, 200, 800, 600)) << "nothing was confirmed";
    map.setViewport(0, 0, 400, 400);
    mouse.press({100, 50}); // centres the rectangle, but only until the first move
    mouse.release({100, 50});
    EXPECT_EQ(request.last(), (QList<QVariant>{800, 300, 400, 400}));
    EXPECT_EQ(dragged({100, 50}, {101, 52}), QRect(10, 20, 400, 400));
}

// Dragged edges follow the mouse, stay on the map and keep one map pixel.
TEST_F(MapTest, ResizesByEveryHandle)
{
    const QPointF distances[] = {{0, 0},   {10, 5},      {-10, -5}, {300, 0},
                                 {0, 300}, {-300, -300}, {79, 59},  {-79, -59}};
    for (int i = 0; i < 9; ++i)
        for (const QPointF d : distances) {
            const QPointF handle(50 + i % 3 * 40, 20 + i / 3 * 30);
            if (i == 4)
                continue; // the middle moves
            QRectF expected(50, 20, 80, 60);
            if (handle.x() == 50)
                expected.setLeft(std::clamp(50 + d.x(), 0.0, 129.0));
            if (handle.x() == 130)
                expected.setRight(std::clamp(130 + d.x(), 51.0, 200.0));
            if (handle.y() == 20)
                expected.setTop(std::clamp(20 + d.y(), 0.0, 79.0));
            if (handle.y() == 80)
                expected.setBottom(std::clamp(80 + d.y(), 21.0, 100.0));
            EXPECT_EQ(dragged(handle, handle + d), map.screenToCamera(expected))
                << handle.x() << ' ' << handle.y() << " by " << d.x() << ' ' << d.y();
        }
}

TEST_F(MapTest, PaintsPicturesViewportAndGesture)
{
    map.drawOnViewPort(plainPicture(16, 16));
    EXPECT_EQ(shown(90, 50), QColor(Qt::green));
    map.drawOnViewPort(plainPicture(16, 16), 0, 0, 400, 400);
    EXPECT_EQ(shown(20, 20), QColor(Qt::green));
    EXPECT_EQ(shown(90, 60), QColor(127, 127, 127));
    map.drawOnViewPort(0, 0, 400, 400);
    EXPECT_EQ(shown(20, 20), QColor(127, 127, 127));

    mouse.press({90, 50});
    mouse.move({110, 20});
    EXPECT_EQ(shown(50, 50), frame);
    int dashes = 0;
    for (int x = 72; x < 128; ++x)
        dashes += shown(x, 60) == QColor(200, 200, 16);
    EXPECT_TRUE(dashes > 20 && dashes < 51) << dashes;
}

} // namespace
