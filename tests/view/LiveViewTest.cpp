#include <AppComponents/view/LifeView.h>

#include "ViewTestSupport.h"

#include <QDeadlineTimer>

#include <thread>
#include <tuple>

namespace
{

TFrameParams params(int posX, int posY, int width, int height, int decimation = 1)
{
    return {posX, posY, width, height, decimation, 24, false, false};
}

class LiveViewTest : public testing::Test
{
protected:
    LiveViewTest() { showWithViewport(view, {400, 300}); }

    void showFrame(const TFrameParams& p, bool fitted = true)
    {
        const int k = std::abs(int(p.decimation));
        const auto picture = QSharedPointer<QImage>::create(
            plainPicture(p.width / k, p.height / k, QColor(1, 2, 3)));
        view.viewFrame(p, picture, 0);
        if (fitted)
            view.setMinZoom();
        EXPECT_EQ(view.getBitmap().constBits(), picture->constBits()) << "the picture is shared";
    }
    // Where the viewport shows a scene point; exact for the zooms that the tests use.
    QPointF at(QPointF scene) const { return view.viewportTransform().map(scene); }
    ViewPort takeRequest() { return request.takeFirst()[0].value<ViewPort>(); }

    const QDeadlineTimer born = QDeadlineTimer::current();
    LifeView view;
    Mouse mouse{view.viewport()};
    QSignalSpy request{&view, &LifeView::setCameraViewport};
};

TEST_F(LiveViewTest, ReportsPositionAndColourUnderTheMouse)
{
    // The decimation counts in the test for inside and twice in the position.
    const std::tuple<int, QPointF, QPointF> cases[] = {{1, {10, 20}, {110, 220}},
                                                       {1, {199.5, 20}, {-1, -1}},
                                                       {2, {10, 20}, {140, 280}},
                                                       {2, {110, 20}, {-1, -1}}};
    QSignalSpy position(&view, &LifeView::sensorePosition);
    QSignalSpy color(&view, &LifeView::pinColor);
    for (const auto& [k, point, expected] : cases) {
        showFrame(params(100, 200, 200 * k, 150 * k, k));
        mouse.move(at(point));
        EXPECT_EQ(position.takeFirst()[0].toPointF(), expected);
        mouse.release(at(point));
        EXPECT_EQ(color.takeFirst()[0].value<QColor>(),
                  expected.x() < 0 ? QColor() : QColor(1, 2, 3));
    }
}

TEST_F(LiveViewTest, AsksForTheViewportUnderTheMouse)
{
    for (const int mirrors : {0, 1, 2, 3}) {
        TFrameParams p = params(100, 200, 400, 300, 2);
        p.mirrorH = mirrors & 1;
        p.mirrorV = mirrors & 2;
        const ViewPort expected{p.mirrorH ? 110 : 90, p.mirrorV ? 214 : 186, 400, 300};
        showFrame(p);
        mouse.press(at({50, 50}));
        EXPECT_TRUE(request.empty());
        mouse.move(at({55, 57}));
        EXPECT_EQ(takeRequest(), expected);
        p.posX = expected.startX; // the camera's answer moves the origin, but not the drag
        p.posY = expected.startY;
        showFrame(p);
        mouse.move(at({55, 57}));
        EXPECT_EQ(takeRequest(), expected);
        mouse.release(at({55, 57}));
    }
    showFrame(params(0, 0, 200, 150));
    mouse.drag(at({50, 50}), at({51.5, 48.5}));
    EXPECT_EQ(takeRequest(), (ViewPort{-1, 1, 200, 150})) << "truncated toward zero";
}

TEST_F(LiveViewTest, MovesOnlyTheFittedPicture)
{
    showFrame(params(0, 0, 200, 100)); // leaves a margin above and below
    mouse.drag(at({50, -5}), at({60, 10}));
    QGraphicsItem& handle = *view.getRuller().childItems()[0];
    handle.setPos(100, 75);
    view.getRuller().setVisible(true);
    mouse.drag(at({100, 75}), at({110, 75}));
    EXPECT_EQ(handle.pos(), QPointF(110, 75)) << "the press belongs to the ruler";
    mouse.press(at({50, 50}));
    view.scaleView(1.5); // ends the gesture for good
    mouse.move(at({60, 60}));
    view.setMinZoom();
    mouse.move(at({60, 60}));
    EXPECT_TRUE(request.empty());
}

TEST_F(LiveViewTest, SelectsAClampedAndMirroredRectangle)
{
    mouse.modifiers = Qt::ShiftModifier;
    TFrameParams p = params(100, 200, 200, 300, 2); // 100 x 150: margins left and right
    showFrame(p);
    mouse.drag(at({10, 10}), at({-5, 30}));
    EXPECT_EQ(takeRequest(), (ViewPort{100, 220, 20, 40}));
    p.mirrorH = p.mirrorV = true;
    showFrame(p);
    mouse.drag(at({10, 20}), at({40, 70}));
    EXPECT_EQ(takeRequest(), (ViewPort{100 + 200 - 80, 200 + 300 - 140, 60, 100}));

    const int items = view.scene()->items().size();
    mouse.press(at({10, 10}));
    showFrame(params(0, 0, 100, 75)); // abandons the gesture, whose rectangle stays
    mouse.release(at({20, 20}));
    EXPECT_TRUE(request.empty());
    EXPECT_EQ(view.scene()->items().size(), items + 1);
    mouse.drag(at({10, 10}), at({10, 10}));
    EXPECT_EQ(view.scene()->items().size(), items);
    EXPECT_EQ(takeRequest(), (ViewPort{10, 10, 0, 0}));
}

TEST_F(LiveViewTest, FitsAPictureThatWouldFloatAndKeepsTheZoomOtherwise)
{
    showFrame(params(0, 0, 4000, 3000));
    view.scaleView(10.0);
    showFrame(params(50, 60, 2000, 1500), false);
    EXPECT_DOUBLE_EQ(view.transform().m11(), 1.0);
    EXPECT_EQ(view.dragMode(), QGraphicsView::ScrollHandDrag);
    showFrame(params(50, 60, 200, 150), false);
    EXPECT_DOUBLE_EQ(view.transform().m11(), 2.0);
    EXPECT_EQ(view.dragMode(), QGraphicsView::NoDrag);
}

TEST_F(LiveViewTest, GivesTheRulerTheSignedDecimationWhereItDiffers)
{
    Ruller& ruler = view.getRuller();
    ruler.childItems()[1]->setPos(10, 0);
    const auto length = [&] {
        ruler.updateRuller();
        return static_cast<QGraphicsTextItem*>(ruler.childItems()[2])->toPlainText().toStdString();
    };
    view.setMagnification(0.5F, QStringLiteral("um"));
    EXPECT_EQ(length(), "5.00um");
    showFrame(params(0, 0, 400, 300, -2));
    EXPECT_EQ(length(), "-10.00um");
    showFrame(params(0, 0, 400, 300, 2)); // 2 is what is stored already
    EXPECT_EQ(length(), "-10.00um");
}

TEST_F(LiveViewTest, ReportsTheFrameRateAfterASecond)
{
    QSignalSpy rate(&view, &LifeView::showViewFramerate);
    float frames = 0;
    for (; rate.empty(); ++frames) {
        QTest::qSleep(20);
        showFrame(params(0, 0, 20, 10));
    }
    const float fps = rate[0][0].toFloat();
    EXPECT_LT(fps, frames) << "the interval is longer than a second";
    EXPECT_GE(fps, 1000 * frames / static_cast<float>(QDeadlineTimer::current() - born + 1));
}

TEST_F(LiveViewTest, ReceivesFramesOfAnotherThreadByName)
{
    std::thread([&] {
        const auto picture = QSharedPointer<QImage>::create(plainPicture(64, 48));
        EXPECT_TRUE(QMetaObject::invokeMethod(
            &view, "viewFrame", Qt::QueuedConnection, Q_ARG(TFrameParams, params(0, 0, 64, 48)),
            Q_ARG(QSharedPointer<QImage>, picture), Q_ARG(qlonglong, 0)));
    }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(view.getBitmap().size(), QSize(64, 48));
}

} // namespace
