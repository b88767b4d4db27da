#include <AppComponents/view/ViewportMap.h>

#include "ViewTestSupport.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

class MapProbe : public ViewportMap
{
public:
    MapProbe()
        : ViewportMap(nullptr)
    {
    }
    using ViewportMap::cameraToScreen;
    using ViewportMap::getPointPosition;
    using ViewportMap::matchViewPortMove;
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
        map.show();
    }
    QRect drag(QPointF from, QPointF to)
    {
        mouse.press(from);
        mouse.move(to);
        mouse.release(to);
        return requested();
    }
    QRect requested() const
    {
        if (request.empty())
            return {};
        const QList<QVariant>& v = request.last();
        return {v[0].toInt(), v[1].toInt(), v[2].toInt(), v[3].toInt()};
    }
    QImage picture() { return map.grab().toImage(); }

    MapProbe map;
    Mouse mouse{&map};
    QSignalSpy request{&map, &ViewportMap::setCameraViewport};
};

TEST_F(MapTest, TakesTheShapeOfTheSensor)
{
    map.setMaxVPSize(2048, 1536);
    EXPECT_EQ(map.minimumSize(), QSize(200, 150));
    EXPECT_EQ(map.maximumSize(), QSize(200, 150));
    map.setMaxVPSize(0, 5);
    map.setMaxVPSize(5, 0);
    EXPECT_EQ(map.maximumSize(), QSize(200, 150));
    MapProbe hidden;
    for (int longer = 1; longer < 9000; ++longer) {
        hidden.setMaxVPSize(std::max(1, longer / 3), longer);
        ASSERT_EQ(hidden.maximumHeight(), 200) << longer;
    }
}

TEST_F(MapTest, MirrorsBothAxesByDefault)
{
    MapProbe mirrored;
    mirrored.setMaxVPSize(2000, 1000);
    EXPECT_EQ(mirrored.cameraToScreen({0, 0, 1000, 500}), QRectF(100, 50, 100, 50));
    EXPECT_EQ(mirrored.screenToCamera({100, 50, 100, 50}), QRect(0, 0, 1000, 500));
    mirrored.setFlipping(true, false);
    EXPECT_EQ(mirrored.cameraToScreen({0, 0, 500, 500}), QRectF(150, 0, 50, 50));
    mirrored.setFlipping(false, true);
    EXPECT_EQ(mirrored.cameraToScreen({0, 0, 500, 200}), QRectF(0, 80, 50, 20));
}

TEST_F(MapTest, LosesAtMostOnePixelOnTheWayBack)
{
    MapProbe hidden;
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        const int width = 100 + int(random() % 5000);
        const int height = 100 + int(random() % 5000);
        hidden.setMaxVPSize(width, height);
        hidden.setFlipping(random() % 2, random() % 2);
        const QRect r(int(random() % 50), int(random() % 50), 1 + int(random() % 50),
                      1 + int(random() % 50));
        const QRect back = hidden.screenToCamera(hidden.cameraToScreen(r));
        for (const int lost : {r.x() - back.x(), r.y() - back.y(), r.width() - back.width(),
                               r.height() - back.height()})
            ASSERT_TRUE(lost == 0 || lost == 1) << lost;
    }
}

struct HitCase {
    QPointF point;
    PointRelativePosition position;
};

void expectHits(const MapProbe& map, std::initializer_list<HitCase> cases)
{
    for (const HitCase& c : cases)
        EXPECT_EQ(map.getPointPosition(c.point), c.position) << c.point.x() << ' ' << c.point.y();
}

TEST_F(MapTest, FindsWhatLiesUnderThePoint)
{
    map.setViewport(500, 200, 800, 600); // (50, 20) to (130, 80) on the map
    expectHits(map, {{{45, 50}, LeftEdge},
                     {{44.9, 50}, Outside},
                     {{55, 50}, LeftEdge},
                     {{55.1, 50}, Inside},
                     {{135, 50}, RightEdge},
                     {{90, 15}, TopEdge},
                     {{90, 85}, BottomEdge},
                     {{90, 85.1}, Outside},
                     {{45, 15}, TopLeftCorner},
                     {{135, 15}, TopRightCorner},
                     {{45, 85}, BottomLeftCorner},
                     {{135, 85}, BottomRightCorner},
                     {{50, 10}, Outside},
                     {{10, 20}, Outside}});
}

TEST_F(MapTest, FavoursLeftAndTopOnASmallRectangle)
{
    map.setViewport(500, 200, 30, 600); // 3 map pixels wide
    expectHits(
        map, {{{52.5, 50}, LeftEdge}, {{52.5, 20}, TopLeftCorner}, {{52.5, 80}, BottomLeftCorner}});
    map.setViewport(500, 200, 800, 30);
    expectHits(map, {{{90, 22.5}, TopEdge}, {{130, 22.5}, TopRightCorner}});
    map.setViewport(500, 200, 30, 30);
    expectHits(map, {{{52.5, 22.5}, TopLeftCorner}});
    map.setViewport(500, 200, 0, 0);
    expectHits(map, {{{60, 60}, Outside}});
}

TEST_F(MapTest, ShowsTheGestureInTheCursor)
{
    map.setViewport(500, 200, 800, 600);
    const auto hover = [&](double x, double y) {
        mouse.move({x, y});
        return map.cursor().shape();
    };
    EXPECT_EQ(hover(90, 50), Qt::OpenHandCursor);
    EXPECT_EQ(hover(90, 20), Qt::SizeVerCursor);
    EXPECT_EQ(hover(130, 50), Qt::SizeHorCursor);
    EXPECT_EQ(hover(130, 80), Qt::SizeFDiagCursor);
    EXPECT_EQ(hover(50, 80), Qt::SizeBDiagCursor);
    EXPECT_EQ(hover(10, 10), Qt::ArrowCursor);
    mouse.press({90, 50});
    EXPECT_EQ(map.cursor().shape(), Qt::ClosedHandCursor);
    mouse.move({90, 20});
    EXPECT_EQ(map.cursor().shape(), Qt::ClosedHandCursor);
    mouse.release({90, 20});
    EXPECT_EQ(map.cursor().shape(), Qt::OpenHandCursor);
}

TEST_F(MapTest, MovesTheViewportWithinTheMap)
{
    map.setViewport(500, 200, 800, 600);
    EXPECT_EQ(drag({90, 50}, {100, 40}), QRect(600, 100, 800, 600));
    EXPECT_EQ(drag({90, 50}, {199, 99}), QRect(1200, 400, 800, 600));
    EXPECT_EQ(drag({90, 50}, {0, 0}), QRect(0, 0, 800, 600));
    EXPECT_EQ(map.getCameraViewport(), QRect(500, 200, 800, 600)) << "nothing was confirmed";
    mouse.press({90, 50});
    mouse.release({90, 50});
    EXPECT_EQ(requested(), QRect(500, 200, 800, 600)) << "a click sends the viewport again";
}

TEST_F(MapTest, CentresOnAPressBesideTheRectangleUntilTheFirstMove)
{
    map.setViewport(0, 0, 400, 400);
    mouse.press({100, 50});
    mouse.release({100, 50});
    EXPECT_EQ(requested(), QRect(800, 300, 400, 400));
    mouse.press({199, 99});
    mouse.release({199, 99});
    EXPECT_EQ(requested(), QRect(1600, 600, 400, 400));
    EXPECT_EQ(drag({100, 50}, {101, 52}), QRect(10, 20, 400, 400));
}

TEST_F(MapTest, EndsARectangleLargerThanTheMapAtItsFarEdge)
{
    QRectF large(-20, 30, 300, 50);
    EXPECT_EQ(map.matchViewPortMove(large), QRectF(-100, 30, 300, 50));
    EXPECT_EQ(large.left(), -100);
}

// The dragged edges of a rectangle follow the mouse, stay on the map and keep one map pixel.
QRectF resizedModel(const QRectF& r, bool left, bool top, bool right, bool bottom, QPointF d)
{
    double x1 = r.left();
    double y1 = r.top();
    double x2 = r.right();
    double y2 = r.bottom();
    if (left)
        x1 = std::clamp(x1 + d.x(), 0.0, x2 - 1);
    if (right)
        x2 = std::clamp(x2 + d.x(), x1 + 1, 200.0);
    if (top)
        y1 = std::clamp(y1 + d.y(), 0.0, y2 - 1);
    if (bottom)
        y2 = std::clamp(y2 + d.y(), y1 + 1, 100.0);
    return {x1, y1, x2 - x1, y2 - y1};
}

TEST_F(MapTest, ResizesByEveryHandle)
{
    map.setViewport(500, 200, 800, 600);
    const QRectF r(50, 20, 80, 60);
    const QPointF distances[] = {{0, 0},   {10, 5},      {-10, -5}, {300, 0},
                                 {0, 300}, {-300, -300}, {79, 59},  {-79, -59}};
    for (const double x : {r.left(), r.center().x(), r.right()})
        for (const double y : {r.top(), r.center().y(), r.bottom()})
            for (const QPointF d : distances) {
                const QPointF handle(x, y);
                if (handle == r.center())
                    continue;
                const QRectF expected = resizedModel(r, x == r.left(), y == r.top(), x == r.right(),
                                                     y == r.bottom(), d);
                EXPECT_EQ(drag(handle, handle + d), map.screenToCamera(expected))
                    << x << ' ' << y << ' ' << d.x() << ' ' << d.y();
            }
}

TEST_F(MapTest, PaintsMapViewportAndGesture)
{
    const QColor frame(41, 163, 204);
    const QColor gesture(200, 200, 16);
    map.fillBackground(QColor(Qt::white));
    map.setViewport(500, 200, 800, 600);
    EXPECT_EQ(picture().pixelColor(50, 50), frame);
    EXPECT_EQ(picture().pixelColor(90, 20), frame);
    EXPECT_EQ(picture().pixelColor(90, 50), QColor(Qt::white));
    mouse.press({90, 50});
    mouse.move({110, 60});
    int dashes = 0;
    int gaps = 0;
    const QImage moving = picture();
    for (int y = 32; y < 88; ++y)
        ++(moving.pixelColor(70, y) == gesture ? dashes : gaps);
    EXPECT_GT(dashes, 20);
    EXPECT_GT(gaps, 5);
    EXPECT_EQ(moving.pixelColor(50, 50), frame);
    mouse.release({110, 60});
    EXPECT_EQ(picture().pixelColor(70, 32), QColor(Qt::white));
}

TEST_F(MapTest, DrawsPicturesAtTheirPlace)
{
    const QColor grey(127, 127, 127);
    map.setViewport(500, 200, 800, 600);
    map.drawOnViewPort(plainPicture(16, 16));
    EXPECT_EQ(picture().pixelColor(90, 50), QColor(Qt::green));
    EXPECT_EQ(picture().pixelColor(20, 50), grey);
    map.drawOnViewPort(plainPicture(16, 16), 0, 0, 400, 400);
    EXPECT_EQ(picture().pixelColor(20, 20), QColor(Qt::green));
    EXPECT_EQ(picture().pixelColor(90, 60), grey);
    map.drawOnViewPort(0, 0, 400, 400);
    EXPECT_EQ(picture().pixelColor(20, 20), grey);
    map.fillBackground(plainPicture(2, 2, Qt::red));
    EXPECT_EQ(picture().pixelColor(199, 99), QColor(Qt::red));
    map.setMaxVPSize(2000, 1000); // transparent again
    EXPECT_NE(picture().pixelColor(20, 20), QColor(Qt::red));
}

TEST_F(MapTest, MirrorsTheShownRectangleWithTheNextViewport)
{
    const QColor frame(41, 163, 204);
    map.setViewport(0, 0, 400, 400);
    map.setFlipping(true, true);
    EXPECT_EQ(picture().pixelColor(40, 20), frame);
    map.setViewport(0, 0, 400, 400);
    EXPECT_EQ(picture().pixelColor(160, 80), frame);
    EXPECT_NE(picture().pixelColor(40, 20), frame);
}

TEST(ViewportMap, IsInertBeforeItKnowsTheSensor)
{
    MapProbe map;
    Mouse mouse(&map);
    QSignalSpy request(&map, &ViewportMap::setCameraViewport);
    EXPECT_EQ(map.minimumSize(), QSize(200, 200));
    EXPECT_TRUE(map.hasMouseTracking());
    const QImage untouched = map.grab().toImage();
    map.setViewport(1, 2, 30, 40);
    map.drawOnViewPort(plainPicture(4, 4));
    map.fillBackground(QColor(Qt::red));
    mouse.press({50, 50});
    mouse.move({60, 60});
    mouse.release({60, 60});
    EXPECT_TRUE(request.empty());
    EXPECT_EQ(map.grab().toImage(), untouched);
    EXPECT_EQ(map.getCameraViewport(), QRect(1, 2, 30, 40));
}

TEST(ViewportMap, SurvivesASensorTooNarrowForTheMap)
{
    MapProbe map;
    map.setMaxVPSize(10000, 10); // a fifth of a map pixel high
    map.drawOnViewPort(plainPicture(4, 4));
    map.fillBackground(plainPicture(4, 4));
    EXPECT_EQ(map.maximumSize(), QSize(200, 0));
}

} // namespace
