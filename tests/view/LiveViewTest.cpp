#include <AppComponents/view/LifeView.h>

#include "ViewTestSupport.h"

#include <QGraphicsRectItem>
#include <QSignalSpy>
#include <QThread>

#include <gtest/gtest.h>

#include <ostream>
#include <thread>

namespace
{

TFrameParams params(int posX, int posY, int width, int height, int decimation = 1)
{
    TFrameParams result{};
    result.posX = posX;
    result.posY = posY;
    result.width = width;
    result.height = height;
    result.decimation = decimation;
    result.bitsPerPixel = 24;
    return result;
}

class LiveViewTest : public testing::Test
{
protected:
    LiveViewTest()
        : mouse(view.viewport())
    {
        view.setMaxImageSize(400, 300);
        view.resize(420, 320);
        view.show();
        QCoreApplication::processEvents();
        view.resize(view.size() + QSize(400, 300) - view.viewport()->size());
        QCoreApplication::processEvents();
    }

    // A picture of the frame's size, fitted.
    void showFrame(const TFrameParams& p)
    {
        const int k = std::abs(int(p.decimation));
        view.viewFrame(p, QSharedPointer<QImage>::create(plainPicture(p.width / k, p.height / k)),
                       0);
    }
    void showFitted(const TFrameParams& p)
    {
        showFrame(p);
        view.setMinZoom();
    }
    // Where the viewport shows a scene point; exact for the zooms that the tests use.
    QPointF at(double x, double y) const { return view.viewportTransform().map(QPointF(x, y)); }
    const QGraphicsRectItem* selection() const
    {
        for (const QGraphicsItem* item : view.scene()->items()) {
            const auto* rect = qgraphicsitem_cast<const QGraphicsRectItem*>(item);
            if (rect && rect->pen().color() == QColor(Qt::yellow))
                return rect;
        }
        return nullptr;
    }
    static ViewPort requested(const QSignalSpy& spy)
    {
        return spy.empty() ? ViewPort{-1, -1, -1, -1} : spy.last()[0].value<ViewPort>();
    }
    static QString lengthOf(Ruller& ruler)
    {
        ruler.updateRuller();
        return static_cast<QGraphicsTextItem*>(ruler.childItems().at(2))->toPlainText();
    }

    LifeView view;
    Mouse mouse;
    QSignalSpy position{&view, &LifeView::sensorePosition};
    QSignalSpy color{&view, &LifeView::pinColor};
    QSignalSpy request{&view, &LifeView::setCameraViewport};
};

TEST_F(LiveViewTest, ReportsTheSensorPosition)
{
    showFitted(params(100, 200, 200, 150)); // two screen pixels per picture pixel
    mouse.move(at(10, 20));
    EXPECT_EQ(position.last()[0].toPointF(), QPointF(110, 220));
    mouse.move(at(199.5, 10)); // rounds to column 200, which does not exist
    EXPECT_EQ(position.last()[0].toPointF(), QPointF(-1, -1));
}

TEST_F(LiveViewTest, AppliesTheDecimationTwiceToThePosition)
{
    showFitted(params(100, 200, 400, 300, 2));
    mouse.move(at(10, 20)); // q = (20, 40)
    EXPECT_EQ(position.last()[0].toPointF(), QPointF(140, 280));
    mouse.move(at(110, 20)); // q = (220, 40) lies beside the 200 columns
    EXPECT_EQ(position.last()[0].toPointF(), QPointF(-1, -1));
}

TEST_F(LiveViewTest, ReportsTheColourOnEveryRelease)
{
    auto picture = QSharedPointer<QImage>::create(plainPicture(200, 150, Qt::blue));
    picture->setPixelColor(30, 40, QColor(1, 2, 3));
    view.viewFrame(params(0, 0, 200, 150), picture, 0);
    view.setMinZoom();
    mouse.press(at(30, 40));
    mouse.release(at(30, 40));
    EXPECT_EQ(color.last()[0].value<QColor>(), QColor(1, 2, 3));
    mouse.release(at(199.5, 40));
    EXPECT_FALSE(color.last()[0].value<QColor>().isValid());
}

struct MoveCase {
    bool mirrorH;
    bool mirrorV;
    int x;
    int y;
};

void PrintTo(const MoveCase& c, std::ostream* stream)
{
    *stream << (c.mirrorH ? "mirrorH " : "") << (c.mirrorV ? "mirrorV" : "");
}

class LiveViewMove : public LiveViewTest, public testing::WithParamInterface<MoveCase>
{
};

TEST_P(LiveViewMove, AsksForTheViewportUnderTheMouse)
{
    const MoveCase& c = GetParam();
    TFrameParams p = params(100, 200, 400, 300, 2);
    p.mirrorH = c.mirrorH;
    p.mirrorV = c.mirrorV;
    showFitted(p);
    mouse.press(at(50, 50));
    EXPECT_TRUE(request.empty());
    mouse.move(at(55, 57));
    EXPECT_EQ(requested(request), (ViewPort{c.x, c.y, 400, 300}));
    // The camera's answer moves the origin, but not the drag.
    p.posX = c.x;
    p.posY = c.y;
    showFrame(p);
    mouse.move(at(55, 57));
    EXPECT_EQ(requested(request), (ViewPort{c.x, c.y, 400, 300}));
    EXPECT_EQ(request.size(), 2);
    mouse.release(at(55, 57));
    mouse.move(at(60, 60));
    EXPECT_EQ(request.size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Mirrors, LiveViewMove,
                         testing::Values(MoveCase{false, false, 90, 186},
                                         MoveCase{true, false, 110, 186},
                                         MoveCase{false, true, 90, 214},
                                         MoveCase{true, true, 110, 214}));

TEST_F(LiveViewTest, TruncatesTheRequestedOriginTowardZero)
{
    showFitted(params(0, 0, 200, 150));
    mouse.press(at(50, 50));
    mouse.move(at(51.5, 48.5));
    EXPECT_EQ(requested(request), (ViewPort{-1, 1, 200, 150}));
}

TEST_F(LiveViewTest, StartsAMoveOnlyOnTheFittedPictureWithTheLeftButton)
{
    showFitted(params(0, 0, 200, 100)); // leaves a margin above and below
    mouse.press(at(50, -5));
    mouse.move(at(60, 10));
    mouse.release(at(60, 10));
    QTest::mousePress(view.viewport(), Qt::RightButton, Qt::NoModifier, at(50, 50).toPoint());
    mouse.move(at(60, 60));
    QTest::mouseRelease(view.viewport(), Qt::RightButton, Qt::NoModifier, at(60, 60).toPoint());
    view.scaleView(1.5);
    mouse.press(at(50, 50));
    mouse.move(at(60, 60));
    EXPECT_TRUE(request.empty());
}

TEST_F(LiveViewTest, LeavesThePressOnARulerHandleToTheRuler)
{
    showFitted(params(0, 0, 200, 150));
    view.getRuller().setVisible(true);
    view.getRuller().childItems().at(0)->setPos(100, 75);
    mouse.press(at(100, 75));
    mouse.move(at(110, 75));
    mouse.release(at(110, 75));
    EXPECT_TRUE(request.empty());
    EXPECT_EQ(view.getRuller().childItems().at(0)->pos(), QPointF(110, 75));
}

TEST_F(LiveViewTest, EndsAMoveWhenTheViewIsZoomedIn)
{
    showFitted(params(0, 0, 200, 150));
    mouse.press(at(50, 50));
    view.scaleView(1.5);
    mouse.move(at(60, 60));
    view.setMinZoom();
    mouse.move(at(60, 60));
    EXPECT_TRUE(request.empty());
}

TEST_F(LiveViewTest, SelectsAClampedRectangle)
{
    showFitted(params(100, 200, 200, 300, 2)); // 100 x 150: margins left and right
    mouse.press(at(10, 10), Qt::ShiftModifier);
    ASSERT_TRUE(selection());
    EXPECT_EQ(selection()->pen().widthF(), 0.0);
    mouse.move(at(-5, 30), Qt::ShiftModifier);
    EXPECT_EQ(selection()->rect(), QRectF(0, 10, 10, 20));
    mouse.release(at(-5, 30), Qt::ShiftModifier);
    EXPECT_EQ(requested(request), (ViewPort{100, 220, 20, 40}));
    EXPECT_FALSE(selection());
}

TEST_F(LiveViewTest, MirrorsTheSelection)
{
    TFrameParams p = params(100, 200, 400, 300, 2);
    p.mirrorH = true;
    p.mirrorV = true;
    showFitted(p);
    mouse.press(at(10, 20), Qt::ShiftModifier);
    mouse.move(at(40, 70), Qt::ShiftModifier);
    mouse.release(at(40, 70), Qt::ShiftModifier);
    EXPECT_EQ(requested(request), (ViewPort{100 + 400 - 80, 200 + 300 - 140, 60, 100}));
    mouse.press(at(10, 20), Qt::ShiftModifier);
    mouse.release(at(10, 20), Qt::ShiftModifier);
    EXPECT_EQ(requested(request), (ViewPort{480, 460, 0, 0}));
}

TEST_F(LiveViewTest, LeavesAnAbandonedSelectionUntilTheNextIsCompleted)
{
    showFitted(params(0, 0, 200, 150));
    mouse.press(at(10, 10), Qt::ShiftModifier);
    mouse.move(at(40, 40), Qt::ShiftModifier);
    showFitted(params(0, 0, 100, 75)); // a new size abandons the gesture
    mouse.release(at(20, 20), Qt::ShiftModifier);
    EXPECT_TRUE(request.empty());
    EXPECT_TRUE(selection());
    mouse.press(at(10, 10), Qt::ShiftModifier);
    mouse.release(at(10, 10), Qt::ShiftModifier);
    EXPECT_FALSE(selection());
    EXPECT_EQ(request.size(), 1);
}

TEST_F(LiveViewTest, FitsAPictureThatWouldFloatAndKeepsTheZoomOtherwise)
{
    showFrame(params(0, 0, 4000, 3000));
    view.setZoom(1.0);
    view.scaleView(1.0);
    showFrame(params(50, 60, 4000, 3000));
    showFrame(params(50, 60, 2000, 1500));
    EXPECT_EQ(view.transform().m11(), 1.0);
    EXPECT_EQ(view.dragMode(), QGraphicsView::ScrollHandDrag);
    showFrame(params(50, 60, 200, 150));
    EXPECT_DOUBLE_EQ(view.transform().m11(), 2.0);
    EXPECT_EQ(view.dragMode(), QGraphicsView::NoDrag);
}

TEST_F(LiveViewTest, GivesTheRulerTheSignedDecimation)
{
    Ruller& ruler = view.getRuller();
    ruler.childItems().at(1)->setPos(10, 0);
    view.setMagnification(0.5F, QStringLiteral("um"));
    EXPECT_EQ(lengthOf(ruler), QStringLiteral("5.00um"));
    showFrame(params(0, 0, 400, 300, -2));
    EXPECT_EQ(lengthOf(ruler), QStringLiteral("-10.00um"));
    view.setMagnification(0.5F, QStringLiteral("um"));
    EXPECT_EQ(lengthOf(ruler), QStringLiteral("10.00um"));
    showFrame(params(0, 0, 400, 300, -2));
    EXPECT_EQ(lengthOf(ruler), QStringLiteral("-10.00um"));
    showFrame(params(0, 0, 400, 300, 2));
    EXPECT_EQ(lengthOf(ruler), QStringLiteral("-10.00um")) << "2 is what is stored already";
}

TEST_F(LiveViewTest, AsksForFullScreenOnADoubleClick)
{
    QSignalSpy toggled(&view, &LifeView::toggleFullScreen);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    EXPECT_EQ(toggled.size(), 1);
}

TEST_F(LiveViewTest, ReportsTheFrameRateAfterASecond)
{
    QElapsedTimer sinceBefore;
    sinceBefore.start();
    LifeView fresh;
    QElapsedTimer sinceAfter;
    sinceAfter.start();
    QSignalSpy rate(&fresh, &LifeView::showViewFramerate);
    const auto picture = QSharedPointer<QImage>::create(plainPicture(20, 10));
    int frames = 0;
    qint64 shortest = 0;
    while (rate.empty()) {
        QTest::qSleep(20);
        shortest = sinceAfter.elapsed();
        fresh.viewFrame(params(0, 0, 20, 10), picture, 0);
        ++frames;
    }
    const qint64 longest = sinceBefore.elapsed();
    EXPECT_GT(longest, 1000);
    const float fps = rate[0][0].toFloat();
    EXPECT_GE(fps, 1000.0F * static_cast<float>(frames) / static_cast<float>(longest + 1));
    EXPECT_LE(fps, 1000.0F * static_cast<float>(frames) / static_cast<float>(shortest - 1));
    fresh.viewFrame(params(0, 0, 20, 10), picture, 0);
    EXPECT_EQ(rate.size(), 1);
}

TEST_F(LiveViewTest, SharesThePictureOfAFrame)
{
    const auto picture = QSharedPointer<QImage>::create(plainPicture(200, 150));
    view.viewFrame(params(0, 0, 200, 150), picture, 0);
    EXPECT_EQ(view.getBitmap().constBits(), picture->constBits());
}

class CameraThread : public QObject
{
    Q_OBJECT

signals:
    void frameReady(TFrameParams params, QSharedPointer<QImage> picture, qlonglong fillTime);
    void viewportSet(ViewPort viewport);
};

TEST_F(LiveViewTest, ReceivesFramesOfAnotherThread)
{
    for (const char* type : {"TFrameParams", "_FrameParams", "ViewPort", "QSharedPointer<QImage>"})
        EXPECT_NE(QMetaType::type(type), int(QMetaType::UnknownType)) << type;
    CameraThread camera;
    QObject::connect(&camera, SIGNAL(frameReady(TFrameParams, QSharedPointer<QImage>, qlonglong)),
                     &view, SLOT(viewFrame(TFrameParams, QSharedPointer<QImage>, qlonglong)));
    std::thread thread([&camera] {
        const auto picture = QSharedPointer<QImage>::create(plainPicture(64, 48));
        emit camera.frameReady(params(0, 0, 64, 48), picture, 0);
    });
    thread.join();
    EXPECT_TRUE(view.getBitmap().isNull());
    QCoreApplication::processEvents();
    EXPECT_EQ(view.getBitmap().size(), QSize(64, 48));
}

} // namespace

#include "test_live_view.moc"
