#include "WindowSupport.h"

#include "window/CameraPanel.h"
#include "window/HelpPage.h"
#include "window/HistogramPanel.h"
#include "window/LogPanel.h"
#include "window/MapPanel.h"
#include "window/MeasurePanel.h"
#include "window/NoticeBar.h"
#include "window/PanelDocks.h"
#include "window/PictureArea.h"
#include "window/RecordingPanel.h"
#include "window/SourceBar.h"
#include "window/StatusPanel.h"
#include "window/WindowActions.h"
#include "window/WindowRun.h"

#include <AppComponents/view/ViewportMap.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMenuBar>
#include <QProgressDialog>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStatusBar>

#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>

using window_test::eventually;
using window_test::OpenWindow;
using window_test::ScriptedCamera;

namespace
{

int flat(int, int)
{
    return 1000;
}

void drag(QWidget* widget, const QPoint& from, const QPoint& to,
          Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::mousePress(widget, Qt::LeftButton, modifiers, from);
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     modifiers);
    QApplication::sendEvent(widget, &move);
    QTest::mouseRelease(widget, Qt::LeftButton, modifiers, to);
}

class WindowTest : public testing::Test
{
protected:
    const QTemporaryDir root;
    OpenWindow window{root.path()};

    LifeView& view() { return window->pictureArea().liveView(); }
    QPoint onScreen(const QPointF& pixel) { return view().mapFromScene(pixel); }
    SensorRegion region() { return window->cameraControl().settings().region; }
    QAction& action(const char* name) { return *window->findChild<QAction*>(name); }
};

TEST_F(WindowTest, ADragInTheLiveViewMovesTheSensorsRegion)
{
    ASSERT_TRUE(window->openSource("sim"));
    CameraSettings settings = window->cameraControl().settings();
    settings.region = {400, 300, 640, 480};
    window->cameraControl().apply(settings);
    ASSERT_TRUE(eventually([&] { return view().getBitmap().size() == QSize(640, 480); }));
    ASSERT_EQ(view().dragMode(), QGraphicsView::NoDrag) << "the picture is fitted";

    drag(view().viewport(), onScreen({320, 240}), onScreen({220, 180}));
    ASSERT_TRUE(eventually([&] { return region().x > 480 && region().y > 340; }));
    EXPECT_NEAR(region().x, 500, 8);
    EXPECT_NEAR(region().y, 360, 8);
    EXPECT_EQ(region().width, 640);
    // The map has the confirmed region, and the picture comes from there.
    EXPECT_EQ(window->panels().map->getMap()->getCameraViewport(),
              QRect(region().x, region().y, 640, 480));
}

TEST_F(WindowTest, ADragOnTheMapMovesTheSensorsRegion)
{
    ASSERT_TRUE(window->openSource("sim"));
    CameraSettings settings = window->cameraControl().settings();
    settings.region = {0, 0, 960, 540};
    window->cameraControl().apply(settings);
    ViewportMap* map = window->panels().map->getMap();
    drag(map, {50, 28}, {90, 40}); // 200 map pixels are 1920 sensor pixels
    ASSERT_TRUE(eventually([&] { return region().x > 0; }));
    EXPECT_NEAR(region().x, 384, 12);
    EXPECT_NEAR(region().y, 115, 12);
}

TEST_F(WindowTest, ACornerOfTheMapResizesTheRegion)
{
    ASSERT_TRUE(window->openSource("sim"));
    ASSERT_TRUE(window.waitForPictures(1));
    drag(window->panels().map->getMap(), {199, 111}, {100, 56});
    ASSERT_TRUE(eventually([&] { return region().width < 1920; }));
    EXPECT_NEAR(region().width, 960, 24);
    EXPECT_NEAR(region().height, 540, 24);
}

TEST_F(WindowTest, AShiftClickWithoutADragChangesNothing)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    const SensorRegion before = region();
    drag(view().viewport(), onScreen({100, 100}), onScreen({100, 100}), Qt::ShiftModifier);
    QTest::qWait(50);
    EXPECT_EQ(region(), before);
}

TEST_F(WindowTest, ShowsRawValuePositionAndColourUnderThePointer)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, [](int x, int y) { return x * 8 + y; }));
    const QPoint point = onScreen({100.5, 50.5});
    QMouseEvent move(QEvent::MouseMove, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &move);
    const QString text = window->statusPanel().text();
    // The view may be scaled down: the pointer then falls on a neighbour.
    const QPointF hit = view().mapToScene(point);
    const int raw = int(hit.x()) * 8 + int(hit.y());
    EXPECT_TRUE(text.contains(QString("raw %1 ").arg(raw))) << text.toStdString();
    EXPECT_TRUE(text.contains(QString("rgb %1 %1 %1").arg(raw >> 4))) << text.toStdString();
    const QString position = QString("x %1  y %2").arg(int(hit.x())).arg(int(hit.y()));
    EXPECT_TRUE(text.contains(position)) << text.toStdString();

    // Mirrored and decimated, the pixel shows another place of the sensor.
    window->processingModel().change([](ProcessingSettings& s) { s.correction.flipH = true; });
    CameraSettings halved = window->cameraControl().settings();
    halved.decimation = 2;
    window->cameraControl().apply(halved);
    ASSERT_TRUE(window.show(camera, flat));
    const QPoint middle = onScreen({100.5, 75.5});
    QMouseEvent moveBack(QEvent::MouseMove, middle, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &moveBack);
    const QPointF now = view().mapToScene(middle);
    EXPECT_TRUE(window->statusPanel().text().contains(
        QString("x %1  y %2").arg(398 - 2 * int(now.x())).arg(2 * int(now.y()))))
        << window->statusPanel().text().toStdString();

    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(view().viewport(), &leave);
    EXPECT_FALSE(window->statusPanel().text().contains("raw"));
}

TEST_F(WindowTest, TheControlsReachTheCameraAndThePicture)
{
    ASSERT_TRUE(window->openSource("sim"));
    auto* depth = window->panels().camera->findChildren<QComboBox*>().first();
    depth->setCurrentText("8");
    EXPECT_EQ(window->cameraControl().settings().bitDepth, 8);
    auto* exposure = window->panels().camera->findChildren<QDoubleSpinBox*>().first();
    exposure->selectAll();
    QTest::keyClicks(exposure, "20");
    QTest::keyClick(exposure, Qt::Key_Return);
    EXPECT_EQ(window->cameraControl().settings().exposureMs, 20);
    EXPECT_EQ(exposure->value(), 20) << "not the slider's nearest step";
    auto* mirror = window->panels().camera->findChildren<QCheckBox*>().first();
    mirror->click();
    EXPECT_TRUE(window->cameraControl().settings().mirrorH);

    ASSERT_TRUE(window.waitForPictures(1));
    const auto* largest = window->findChild<QLineEdit*>("txtRawMax");
    EXPECT_TRUE(eventually([&] { return !largest->text().isEmpty(); })) << "the histogram lives";
    QTest::keyClick(&*window, Qt::Key_T);
    EXPECT_TRUE(window->processingModel().settings().autoStretch);
    EXPECT_TRUE(window.waitForPictures(2));

    ASSERT_TRUE(window->openSource("sim?bits=10"));
    EXPECT_EQ(window->cameraControl().settings().bitDepth, 10) << "asked for, and 8 was saved";
}

TEST_F(WindowTest, TheMeasuredAreaShowsTheRawDataUnderIt)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    action("measure").trigger(); // brings its panel up
    QTest::qWait(1);
    const auto halves = [](int x, int) { return x < 200 ? 100 : 300; };
    ASSERT_TRUE(window.show(camera, halves));
    window->pictureArea().measureFrame().setArea({190, 10, 20, 20});
    ASSERT_TRUE(window.show(camera, halves));
    const MeasurePanel& panel = *window->panels().measure;
    EXPECT_TRUE(panel.statisticsText().contains("mean 200.00   deviation 100.00   min 100"))
        << panel.statisticsText().toStdString();

    // Display mirroring moves the picture, and what is measured with it.
    window->processingModel().change([](ProcessingSettings& s) { s.correction.flipH = true; });
    window->pictureArea().measureFrame().setArea({0, 10, 20, 20});
    ASSERT_TRUE(window.show(camera, halves));
    EXPECT_TRUE(panel.statisticsText().contains("mean 300.00"))
        << panel.statisticsText().toStdString();
}

TEST_F(WindowTest, TheMeasuredAreaIsDraggedAndStaysInsideThePicture)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    action("measure").trigger();
    MeasureFrame& frame = window->pictureArea().measureFrame();
    frame.setArea({100, 100, 100, 80});
    drag(view().viewport(), onScreen({150, 140}), onScreen({190, 160}));
    EXPECT_NEAR(frame.getArea().x(), 140, 2);
    EXPECT_NEAR(frame.getArea().y(), 120, 2);
    EXPECT_EQ(frame.getArea().size(), QSize(100, 80));
    EXPECT_EQ(region(), (SensorRegion{0, 0, 400, 300})) << "the drag is not the camera's";

    frame.setArea({-50, 290, 5000, 5});
    EXPECT_EQ(frame.getArea(), QRect(0, 290, 400, 5));
}

TEST_F(WindowTest, TheCrossHairTakesNoClicks)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    CameraSettings settings = window->cameraControl().settings();
    settings.region = {100, 100, 200, 100};
    window->cameraControl().apply(settings);
    ASSERT_TRUE(window.show(camera, flat));
    action("crossHair").trigger();
    // From the very middle, where both lines are.
    drag(view().viewport(), onScreen({100, 50}), onScreen({60, 50}));
    EXPECT_TRUE(eventually([&] { return region().x > 120; }));
}

TEST_F(WindowTest, ClippingIsDrawnOverThePictureAndOffByDefault)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    const auto clipped = [](int x, int) { return x < 200 ? 0 : 4095; };
    ASSERT_TRUE(window.show(camera, clipped));
    const auto colorAt = [&](const QPointF& pixel) {
        return QColor(view().viewport()->grab().toImage().pixel(onScreen(pixel)));
    };
    EXPECT_EQ(colorAt({50, 150}).saturation(), 0);
    action("clipping").trigger();
    ASSERT_TRUE(window.show(camera, clipped));
    EXPECT_GT(colorAt({50, 150}).blue(), colorAt({50, 150}).red());
    EXPECT_GT(colorAt({350, 150}).red(), colorAt({350, 150}).blue());
    EXPECT_EQ(view().getBitmap().pixelColor(50, 150), QColor(Qt::black))
        << "the picture is untouched";
}

TEST_F(WindowTest, TheRulerObeysTheKeyboardAndStaysInsideThePicture)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    action("ruler").trigger();
    EXPECT_TRUE(view().getRuller().isVisible());
    EXPECT_NEAR(window->pictureArea().rulerLine().length(), 200, 2);

    window->findChild<QDockWidget*>("measure")->raise();
    QTest::qWait(1);
    auto* endX = window->panels().measure->findChildren<QSpinBox*>().at(2);
    endX->selectAll();
    QTest::keyClicks(endX, "399");
    QTest::keyClick(endX, Qt::Key_Return);
    EXPECT_EQ(window->pictureArea().rulerLine().x2(), 399);
    CameraSettings smaller = window->cameraControl().settings();
    smaller.region = {0, 0, 200, 100};
    window->cameraControl().apply(smaller);
    ASSERT_TRUE(window.show(camera, flat));
    EXPECT_LE(window->pictureArea().rulerLine().x2(), 200) << "the end stays in reach";

    QTest::keyClick(&view(), Qt::Key_Escape);
    EXPECT_FALSE(action("ruler").isChecked());
    EXPECT_TRUE(window->pictureArea().rulerLine().isNull());
}

TEST_F(WindowTest, PixelsTypedOutsideThePictureAreCorrectedWhereTheyWereTyped)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    action("measure").trigger();
    action("ruler").trigger();
    const auto boxNamed = [&](const char* name) -> QSpinBox& {
        for (QSpinBox* box : window->panels().measure->findChildren<QSpinBox*>())
            if (box->accessibleName() == QLatin1String(name))
                return *box;
        throw std::out_of_range(name);
    };
    QSpinBox& left = boxNamed("Left");
    QSpinBox& end = boxNamed("Ruler's end, x");
    for (int wanted : {4000, 5000}) { // from inside, and with both at the border already
        left.setValue(wanted);
        EXPECT_EQ(left.value(), 300);
        end.setValue(wanted);
        EXPECT_EQ(end.value(), 400);
    }
}

TEST_F(WindowTest, ADoubleClickSwitchesFullScreenAndBack)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    QDockWidget* map = window->findChild<QDockWidget*>("map");
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, onScreen({200, 150}));
    EXPECT_TRUE(window->isFullScreen());
    EXPECT_FALSE(map->isVisible());
    QTest::keyClick(&*window, Qt::Key_F11);
    EXPECT_FALSE(window->isFullScreen());
    EXPECT_TRUE(map->isVisible());
}

TEST_F(WindowTest, FullScreenDoesNotTouchTheLayout)
{
    window.useScriptedCamera();
    window->findChild<QDockWidget*>("tone")->raise();
    QApplication::processEvents();
    const auto expectLayout = [&] {
        QApplication::processEvents();
        EXPECT_TRUE(PanelDocks::isSeen(*window->panels().map));
        EXPECT_TRUE(PanelDocks::isSeen(*window->findChild<QDockWidget*>("tone")));
        EXPECT_FALSE(PanelDocks::isSeen(*window->panels().camera));
    };
    action("fullScreen").trigger();
    action("fullScreen").trigger();
    expectLayout();

    // Another camera brings its own layout; the one of this camera is saved before.
    action("fullScreen").trigger();
    ASSERT_TRUE(window->openSource("sim?width=320&height=240"));
    EXPECT_FALSE(action("fullScreen").isChecked());
    window.useScriptedCamera();
    expectLayout();
}

TEST_F(WindowTest, RecordsTheAskedNumberAndPlaysItBack)
{
    ASSERT_TRUE(window->openSource("sim?bits=8&width=320&height=240"));
    RecordingPanel& panel = *window->panels().recording;
    panel.restore({{"length", 1}, {"count", 5}, {"pattern", "take"}, {"stopBelow", 0}});
    action("record").trigger();
    ASSERT_TRUE(window->recordingControl().isRunning())
        << window->noticeBar().notice().toStdString();
    EXPECT_TRUE(action("record").isChecked());
    ASSERT_TRUE(eventually([&] { return !window->recordingControl().isRunning(); }));
    EXPECT_FALSE(action("record").isChecked());
    EXPECT_EQ(window->cameraControl().counters().recorded, 5U);
    EXPECT_TRUE(eventually([&] { return panel.statusText().contains("5 frames"); }));

    ASSERT_TRUE(window->openSource("play:" + root.filePath("output/take")))
        << window->noticeBar().notice().toStdString();
    EXPECT_TRUE(window.waitForPictures(1));
    EXPECT_EQ(window->cameraControl().info().frameCount, 5U);
    EXPECT_EQ(view().getBitmap().size(), QSize(320, 240));
}

TEST_F(WindowTest, ExportsARecordingBesideTheLivePicture)
{
    ASSERT_TRUE(window->openSource("sim?bits=8&width=320&height=240"));
    window->panels().recording->restore({{"length", 1}, {"count", 3}, {"pattern", "take"}});
    action("record").trigger();
    ASSERT_TRUE(eventually([&] { return !window->recordingControl().isRunning(); }));

    ExportControl& exports = window->exportControl();
    const auto dialogIsSeen = [&] {
        const auto* dialog = window->findChild<QProgressDialog*>();
        return dialog != nullptr && dialog->isVisible();
    };
    const auto run = [&] {
        exports.start(root.filePath("output/take.dat"), root.path(),
                      window->processingModel().settings());
        EXPECT_FALSE(action("exportPictures").isEnabled());
        EXPECT_TRUE(dialogIsSeen());
        EXPECT_TRUE(eventually([&] { return !exports.isRunning(); }));
        EXPECT_TRUE(action("exportPictures").isEnabled());
        EXPECT_TRUE(eventually([&] { return !dialogIsSeen(); }));
    };
    run();
    EXPECT_EQ(window->statusBar()->currentMessage(), "3 picture(s) exported");
    EXPECT_EQ(QImage(root.filePath("take_000003.png")).size(), QSize(320, 240));
    EXPECT_TRUE(window.waitForPictures(1));

    run();
    EXPECT_TRUE(window->noticeBar().notice().contains("take_000001.png: is there already"));
}

TEST_F(WindowTest, PlaybackPausesStepsAndLoops)
{
    ASSERT_TRUE(window->openSource("sim?bits=8&width=320&height=240"));
    window->panels().recording->restore({{"length", 1}, {"count", 3}, {"pattern", "loop"}});
    action("record").trigger();
    ASSERT_TRUE(eventually([&] { return !window->recordingControl().isRunning(); }));
    ASSERT_TRUE(window->openSource("play:" + root.filePath("output/loop") + "?loop=1"));
    SourceBar& bar = *window->findChild<SourceBar*>();
    EXPECT_TRUE(bar.loopAction()->isChecked()) << "as the source says";
    ASSERT_TRUE(window->openSource("play:" + root.filePath("output/loop")));
    EXPECT_FALSE(bar.loopAction()->isChecked());
    const QString ended = "The source has ended.";
    ASSERT_TRUE(eventually([&] { return window->statusBar()->currentMessage() == ended; }));
    bar.loopAction()->trigger(); // after the end, too
    EXPECT_TRUE(window.waitForPictures(6)) << "three frames, over and over";

    bar.pauseAction()->trigger();
    const auto received = [&] { return window->cameraControl().counters().received; };
    const auto before = received();
    bar.stepAction()->trigger();
    ASSERT_TRUE(eventually([&] { return received() > before; }));
    QTest::qWait(200); // a dozen frames, were it not for the pause
    EXPECT_LE(received(), before + 2) << "the step, and a frame that was under way";

    // The recording is let go before the next source is known to open.
    EXPECT_FALSE(window->openSource("play:" + root.filePath("output/none")));
    EXPECT_FALSE(bar.pauseAction()->isVisible());
    bar.stepAction()->trigger();
    action("snapshot").trigger();
    EXPECT_TRUE(QDir(root.filePath("output")).entryList({"*.png"}).isEmpty());
}

// The disk is a pipe that nobody reads at first.
TEST_F(WindowTest, StoppingWaitsForNoDisk)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    window->panels().recording->restore({{"pattern", "take"}, {"stopBelow", 0}});
    action("record").trigger();
    const QByteArray pipe = root.filePath("output/take.dat").toLocal8Bit();
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    ASSERT_TRUE(window.show(camera, flat));
    action("record").trigger();
    EXPECT_TRUE(window->recordingControl().isRunning());
    EXPECT_TRUE(action("record").isChecked());
    EXPECT_TRUE(window.show(camera, flat)) << "the live picture goes on";
    std::thread reader([&] {
        QFile file(pipe);
        if (file.open(QIODevice::ReadOnly))
            file.readAll();
    });
    EXPECT_TRUE(eventually([&] { return !window->recordingControl().isRunning(); }));
    EXPECT_FALSE(action("record").isChecked());
    reader.join();
}

TEST_F(WindowTest, AFullDiskStopsTheRecordingAndSaysSo)
{
    ASSERT_TRUE(window->openSource("sim?width=320&height=240"));
    // No disk has as much room as is to be kept free.
    window->panels().recording->restore({{"stopBelow", 10'000'000}, {"warnBelow", 10'000'000}});
    action("record").trigger();
    ASSERT_TRUE(eventually([&] { return !window->noticeBar().notice().isEmpty(); }));
    EXPECT_FALSE(window->recordingControl().isRunning());
    EXPECT_FALSE(action("record").isChecked());
    EXPECT_TRUE(window.waitForPictures(2)) << "the live picture goes on";
}

TEST_F(WindowTest, ARecordingThatCannotStartSaysSo)
{
    window.useScriptedCamera();
    QFile file(root.filePath("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    window->panels().recording->setFolder(root.filePath("file/folder"));
    action("record").trigger();
    EXPECT_FALSE(action("record").isChecked());
    EXPECT_FALSE(window->noticeBar().notice().isEmpty());
}

TEST_F(WindowTest, AVanishedCameraIsToldUntilItReturns)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    camera.announce(StreamEvent::Vanished, "cable");
    ASSERT_TRUE(eventually([&] { return window->noticeBar().notice().contains("cable"); }));
    camera.announce(StreamEvent::Returned, {});
    ASSERT_TRUE(eventually([&] { return window->noticeBar().notice().isEmpty(); }));
    EXPECT_TRUE(window.show(camera, flat));
}

TEST_F(WindowTest, ASourceThatDoesNotOpenLeavesTheWindowUsable)
{
    window.useScriptedCamera();
    EXPECT_FALSE(window->openSource("raw:/nowhere/at-all?width=8&height=8&bits=8"));
    EXPECT_TRUE(window->noticeBar().notice().contains("nowhere"));
    EXPECT_EQ(window->windowTitle(), "camview") << "not the camera that is gone";
    EXPECT_FALSE(window->panels().camera->isEnabled()) << "there is nothing to set";
    EXPECT_FALSE(window->panels().map->isEnabled());
    action("snapshot").trigger();
    EXPECT_TRUE(window->noticeBar().notice().contains("no picture"));
    action("record").trigger();
    EXPECT_FALSE(window->recordingControl().isRunning());
    EXPECT_TRUE(window->openSource("sim?width=320&height=240"));
    EXPECT_TRUE(window.waitForPictures(1));
    EXPECT_TRUE(window->noticeBar().notice().isEmpty());
}

TEST_F(WindowTest, TheSourceFieldOpensOnceAndOnlyWhatIsAskedFor)
{
    SourceBar& bar = *window->findChild<SourceBar*>();
    auto* box = bar.findChild<QComboBox*>();
    QSignalSpy asked(&bar, &SourceBar::openRequested);
    box->lineEdit()->selectAll();
    QTest::keyClicks(box, "sim?width=320&height=240");
    QTest::keyClick(box, Qt::Key_Return);
    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked[0][0].toString(), "sim?width=320&height=240");
    EXPECT_EQ(box->currentIndex(), box->findText("sim?width=320&height=240")) << "kept in the list";

    // Typed and left, walked through, scrolled over: the camera that runs goes on.
    box->setEditText("genicam");
    QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(box, &leave);
    QWheelEvent wheel({5, 5}, box->mapToGlobal({5, 5}), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(box, &wheel);
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(asked.count(), 1);
    QTest::keyClick(box->view(), Qt::Key_Escape);
}

TEST_F(WindowTest, SnapshotsHoldThePictureAndTheRawFrame)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    action("snapshot").trigger();
    action("rawSnapshot").trigger();
    const QDir output(root.filePath("output"));
    const QStringList pictures = output.entryList({"*.png"});
    const QStringList raws = output.entryList({"*.raw"});
    ASSERT_EQ(pictures.size(), 1);
    ASSERT_EQ(raws.size(), 1);
    EXPECT_EQ(QImage(output.filePath(pictures[0])).size(), QSize(400, 300));
    EXPECT_EQ(QFileInfo(output.filePath(raws[0])).size(), 400 * 300 * 2);
    // The log says how to open it again.
    window->panels().log->drain();
    EXPECT_TRUE(window->panels().log->toPlainText().contains("width=400&height=300&bits=12"));
}

TEST_F(WindowTest, OptionsThatOnlyARunWithoutAWindowKnowsAreRefused)
{
    for (const QStringList& line :
         {QStringList{"--json"}, {"--frames", "3"}, {"--record", "x"}, {"--snapshot", "x.png"}})
        EXPECT_THROW(runWindow(parseOptions(line)), UsageError) << line[0].toStdString();
}

TEST_F(WindowTest, OptionsChangeOnlyWhatTheyName)
{
    window->close();
    qputenv("XDG_CONFIG_HOME", root.path().toLocal8Bit());
    QFile noLogs(root.filePath("log.xml"));
    ASSERT_TRUE(noLogs.open(QIODevice::WriteOnly));
    noLogs.write("<Settings><Logs/></Settings>");
    noLogs.close();
    const auto runWith = [&](const QStringList& options) {
        const QStringList base{"--source", "sim?width=64&height=48", "--duration",
                               "0.05",     "--log-config",           noLogs.fileName()};
        EXPECT_EQ(runWindow(parseOptions(base + options)), 0);
        return SettingsStore(SettingsStore::defaultRoot(), "sim").load();
    };
    const auto folderOf = [](const SettingsStore::Content& saved) {
        return saved.window["recording"].toObject()["folder"].toString();
    };
    runWith({"--gamma", "0.5", "--method", "3", "--output", root.filePath("first")});
    const SettingsStore::Content kept = runWith({"--flip-h"});
    EXPECT_EQ(kept.image.gamma, 0.5);
    EXPECT_EQ(kept.image.colorReconstructionMethod, 3);
    EXPECT_TRUE(kept.image.flipH);
    EXPECT_EQ(folderOf(kept), root.filePath("first"));

    const QString file = root.filePath("settings.xml");
    EXPECT_EQ(folderOf(runWith({"--output", root.filePath("second"), "--settings", file})),
              root.filePath("second"));
    ImgCorrectionSettings written;
    ASSERT_TRUE(ImgCorrectionSettings::readSettings(file, written));
    EXPECT_EQ(written.gamma, 0.5);
}

TEST_F(WindowTest, SettingsComeBackForTheSameCamera)
{
    window.useScriptedCamera();
    EXPECT_EQ(window->processingModel().correction().colorReconstructionMethod, 4)
        << "a new camera starts with colours";
    window->processingModel().change([](ProcessingSettings& s) {
        s.correction.gamma = 2.0;
        s.averageFrames = 4;
    });
    CameraSettings settings = window->cameraControl().settings();
    settings.exposureMs = 33.0;
    window->cameraControl().apply(settings);
    action("grid").setChecked(true);
    window->panels().measure->setScale(0.5, "mm");
    window->useCamera(std::make_unique<ScriptedCamera>("new"), "new");
    EXPECT_EQ(window->panels().measure->magnification(), 1.0) << "its pixels are its own";
    EXPECT_EQ(window->panels().measure->unit(), "pix");
    window->close();

    OpenWindow second(root.path());
    second.useScriptedCamera();
    EXPECT_EQ(second->processingModel().correction().gamma, 2.0);
    EXPECT_EQ(second->processingModel().settings().averageFrames, 4);
    EXPECT_EQ(second->cameraControl().settings().exposureMs, 33.0);
    EXPECT_TRUE(second->findChild<QAction*>("grid")->isChecked());
    EXPECT_EQ(second->panels().measure->unit(), "mm");

    OpenWindow withoutRestore(root.path(), false);
    withoutRestore.useScriptedCamera();
    EXPECT_EQ(withoutRestore->processingModel().correction().gamma, 1.0);
    withoutRestore->close();
    EXPECT_EQ(SettingsStore(root.path() + "/settings", "scripted").load().image.gamma, 2.0)
        << "a start without the settings does not overwrite them";
}

TEST_F(WindowTest, ARegionComesBackOnlyForASensorOfItsSize)
{
    ASSERT_TRUE(window->openSource("sim?width=320&height=240"));
    CameraSettings part = window->cameraControl().settings();
    part.region = {0, 0, 160, 120};
    window->cameraControl().apply(part);
    ASSERT_TRUE(window->openSource("sim?width=320&height=240"));
    EXPECT_EQ(region(), part.region);
    ASSERT_TRUE(window->openSource("sim?width=640&height=480"));
    EXPECT_EQ(region(), (SensorRegion{0, 0, 640, 480}));
}

TEST_F(WindowTest, DamagedSettingsAreTold)
{
    window.useScriptedCamera();
    window->close();
    QFile file(root.filePath("settings/scripted/window.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("{");
    file.close();
    OpenWindow second(root.path());
    second.useScriptedCamera();
    EXPECT_TRUE(second->noticeBar().notice().contains("damaged"));
}

TEST_F(WindowTest, MessagesAreShownWholeAndAsTheyAre)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    const auto* counters = window->statusBar()->findChild<QLabel*>();
    ASSERT_TRUE(eventually([&] { return counters->text().startsWith("received"); }));
    window->statusBar()->showMessage("Saved a file of a long name");
    EXPECT_FALSE(counters->isVisible()) << "gives its place";
    window->statusBar()->clearMessage();
    EXPECT_TRUE(counters->isVisible());

    EXPECT_FALSE(window->openSource("<b>bold</b>"));
    const auto* notice = window->noticeBar().findChild<QLabel*>();
    EXPECT_EQ(notice->textFormat(), Qt::PlainText);
    RecorderStatus status;
    status.baseName = "/a<b>/take";
    window->panels().recording->showStatus(status);
    EXPECT_TRUE(window->panels().recording->statusText().contains("/a&lt;b&gt;/take"));
}

TEST_F(WindowTest, ASlowWindowSeesTheNewestPictureAndNothingPilesUp)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    const std::uint64_t shown = window->picturesShown();
    for (int i = 1; i <= 20; ++i) // the event loop does not run meanwhile
        camera.send([i](int, int) { return i * 100; });
    ASSERT_TRUE(eventually([&] { return view().getBitmap().pixelColor(5, 5).red() == 2000 >> 4; }));
    EXPECT_LE(window->picturesShown() - shown, 2U + 1U);
}

TEST_F(WindowTest, MnemonicsReachOnlyWhatIsSeen)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    window->processingModel().change(
        [](ProcessingSettings& s) { s.correction.setFlag(CS_APPLY_LUT, true); });
    window->findChild<QDockWidget*>("tone")->raise();
    // Gamma here, and the gain behind the camera's tab.
    ASSERT_TRUE(eventually([&] { return !window->panels().camera->isEnabled(); }));
    QTest::keyClick(&*window, Qt::Key_G, Qt::AltModifier);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageUp);
    EXPECT_TRUE(eventually([&] { return window->processingModel().correction().gamma > 1.2; }));
    EXPECT_EQ(window->cameraControl().settings().gainDb, 0.0);
    window->findChild<QDockWidget*>("camera")->raise();
    EXPECT_TRUE(eventually([&] { return window->panels().camera->isEnabled(); }));
    EXPECT_FALSE(window->findChild<QDockWidget*>("tone")->widget()->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), &view()) << "keys are the picture's again";
}

TEST_F(WindowTest, NoTwoThingsThatAreSeenTogetherShareAMnemonic)
{
    ScriptedCamera& camera = window.useScriptedCamera();
    ASSERT_TRUE(window.show(camera, flat));
    for (const char* aid : {"ruler", "measure"}) // enables what moves them
        action(aid).trigger();
    const auto expectDistinct = [&](const char* right, const char* bottom) {
        window->findChild<QDockWidget*>(right)->raise();
        window->findChild<QDockWidget*>(bottom)->raise();
        QTest::qWait(1);
        QMap<QString, QString> owners;
        const auto take = [&](const QString& text) {
            const QString key = QKeySequence::mnemonic(text).toString();
            EXPECT_TRUE(key.isEmpty() || !owners.contains(key))
                << key.toStdString() << ": " << text.toStdString() << ", "
                << owners[key].toStdString();
            owners[key] = text;
        };
        for (const QAction* menu : window->menuBar()->actions())
            take(menu->text());
        for (const QLabel* label : window->findChildren<QLabel*>())
            if (label->buddy() != nullptr && label->buddy()->isEnabled() &&
                PanelDocks::isSeen(*label->parentWidget()))
                take(label->text());
        for (const QAbstractButton* button : window->findChildren<QAbstractButton*>())
            if (button->isEnabled() && PanelDocks::isSeen(*button))
                take(button->text());
    };
    for (const char* right : {"camera", "tone", "color", "processing"})
        for (const char* bottom : {"graphs", "measure", "log"})
            expectDistinct(right, bottom);
}

TEST_F(WindowTest, EveryControlCanBeReachedByTheKeyboard)
{
    window.useScriptedCamera();
    for (const QWidget* panel : {static_cast<QWidget*>(window->panels().camera),
                                 static_cast<QWidget*>(window->panels().recording),
                                 static_cast<QWidget*>(window->panels().measure)}) {
        for (const QWidget* control : panel->findChildren<QWidget*>()) {
            const bool takesInput =
                control->inherits("QAbstractButton") || control->inherits("QAbstractSlider") ||
                control->inherits("QAbstractSpinBox") || control->inherits("QComboBox");
            if (!takesInput || control->inherits("QScrollBar") ||
                control->objectName().startsWith("qt_"))
                continue;
            EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus)
                << control->metaObject()->className() << " "
                << control->accessibleName().toStdString();
        }
    }
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr && label->text().contains('&')) {
            EXPECT_NE(label->buddy()->focusPolicy(), Qt::NoFocus) << label->text().toStdString();
        }
    }
    for (const QAction* command : window->findChild<SourceBar*>()->actions())
        EXPECT_TRUE(command->text().isEmpty() || !command->shortcut().isEmpty())
            << command->text().toStdString() << ": the buttons of a tool bar take no focus";
    const QString help = HelpPage::html({&action("snapshot"), &action("ruler")});
    EXPECT_TRUE(help.contains("Ctrl+S") && help.contains("Shift-drag"));
}

} // namespace
