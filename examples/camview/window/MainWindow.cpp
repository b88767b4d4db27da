#include "MainWindow.h"

#include "CameraPanel.h"
#include "HelpPage.h"
#include "HistogramPanel.h"
#include "MapPanel.h"
#include "MeasurePanel.h"
#include "NoticeBar.h"
#include "Palettes.h"
#include "PanelDocks.h"
#include "PictureArea.h"
#include "RecordingPanel.h"
#include "SettingsJson.h"
#include "SourceBar.h"
#include "StatusPanel.h"
#include "TonePanel.h"
#include "WindowActions.h"
#include "aids/Snapshot.h"
#include "cameras/CameraFactory.h"
#include "cameras/SourceText.h"

#include <AppComponents/log/DiagnosticPrinting.h>

#include <QCloseEvent>
#include <QDateTime>
#include <QFileDialog>
#include <QIcon>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace
{

constexpr int counterMs = 250;
constexpr int messageMs = 8000;
constexpr int silenceMs = 3000; // longer than any exposure

/// A source for a file that the user picked.
QString sourceOfFile(const QString& fileName)
{
    const QString kind = QFileInfo(fileName).suffix().toLower();
    const bool picture = QStringList{"png", "jpg", "jpeg", "bmp", "ppm"}.contains(kind);
    return (picture ? QStringLiteral("photo:") : QStringLiteral("play:")) + fileName;
}

} // namespace

MainWindow::MainWindow(const WindowOptions& windowOptions)
    : options(windowOptions)
    , log(L"camview")
    , control(feed)
    , actions(new WindowActions(this))
    , area(new PictureArea(this))
    , notice(new NoticeBar(this))
    , status(new StatusPanel(*statusBar()))
    , sourceBar(new SourceBar(this))
    , docks(new PanelDocks(*this, model))
{
    setWindowIcon(QIcon(QStringLiteral(":/camview/icons/camview.svg")));
    resize(1440, 900);
    buildCentre();
    connectView();
    connectCamera();
    connectRecording();
    connectExport();
    connectAids();
    connectCommands();
    connectColors();
    followProcessing(model.settings());
}

MainWindow::~MainWindow()
{
    control.close();
}

void MainWindow::buildCentre()
{
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(notice);
    layout->addWidget(area, 1);
    centre->setFocusProxy(&area->liveView());
    setCentralWidget(centre);

    auto* tools = addToolBar(tr("Tools"));
    tools->setObjectName(QStringLiteral("tools"));
    actions->fillToolBar(*tools);
    addToolBar(sourceBar);

    std::vector<QAction*> switches = docks->switches();
    switches.push_back(tools->toggleViewAction());
    switches.push_back(sourceBar->toggleViewAction());
    actions->fillMenus(*menuBar(), switches);
}

void MainWindow::connectView()
{
    LifeView& view = area->liveView();
    connect(&feed, &LiveFeed::pictureWaiting, this, &MainWindow::showNewestPicture);
    connect(&view, &LifeView::showViewFramerate, status, &StatusPanel::showFrameRate);
    connect(&view, &Viewer::showZoom, status, &StatusPanel::showZoom);
    // Position and colour of LifeView's signals suit undecimated pictures that are not mirrored;
    // here they hold for all.
    connect(&view, &LifeView::pinColor, this, [this, &view] {
        const QImage& shown = view.getBitmap();
        status->showPinnedColor(shown.valid(hoveredPixel) ? shown.pixelColor(hoveredPixel)
                                                          : QColor());
    });
    connect(&view, &LifeView::toggleFullScreen, this, &MainWindow::toggleFullScreen);
    connect(&view, &LifeView::setCameraViewport, this, [this](ViewPort wanted) {
        control.requestRegion({wanted.startX, wanted.startY, wanted.width, wanted.height});
    });
    connect(area, &PictureArea::hovered, this, [this](const QPoint& pixel) {
        hoveredPixel = pixel;
        status->showPixel(hoveredPixel, newest);
    });
}

void MainWindow::connectCamera()
{
    connect(&feed, &LiveFeed::streamEvent, this, &MainWindow::showStreamEvent);
    connect(&model, &ProcessingModel::changed, this, &MainWindow::followProcessing);
    connect(docks->map, &MapPanel::regionRequested, &control, &CameraControl::requestRegion);
    connect(docks->camera, &CameraPanel::settingsRequested, &control, &CameraControl::apply);
    connect(&control, &CameraControl::settingsChanged, docks->camera, &CameraPanel::setSettings);
    connect(&control, &CameraControl::settingsChanged, docks->map, &MapPanel::setSettings);
    connect(&control, &CameraControl::failed, this, &MainWindow::tell);
    connect(&control, &CameraControl::closed, this, [this] {
        feed.takePicture(); // what still waits is of the camera that is gone
        newest = nullptr;
        showNoCamera();
    });
    showNoCamera();
    connect(sourceBar->loopAction(), &QAction::toggled, statusBar(), &QStatusBar::clearMessage);
    connect(sourceBar, &SourceBar::openRequested, this, &MainWindow::openSource);
    connect(sourceBar, &SourceBar::camerasFound, this, [this](int count) {
        statusBar()->showMessage(tr("%n camera(s) found", nullptr, count), messageMs);
    });
    connect(&counterTimer, &QTimer::timeout, this, [this] {
        status->showCounters(control.counters());
        // The view counts only while pictures come.
        if (sincePicture.isValid() && sincePicture.hasExpired(silenceMs))
            status->showFrameRate(0);
    });
    counterTimer.start(counterMs);
}

void MainWindow::connectRecording()
{
    docks->recording->setRecordAction(actions->record);
    docks->recording->setFolder(options.outputFolder);
    connect(actions->record, &QAction::triggered, this, [this](bool on) {
        if (on)
            recording.start(docks->recording->request());
        else
            recording.requestStop();
        actions->record->setChecked(recording.isRunning());
    });
    connect(docks->recording, &RecordingPanel::preTriggerChanged, &recording,
            &RecordingControl::setPreTrigger);
    connect(&recording, &RecordingControl::runningChanged, actions->record, &QAction::setChecked);
    connect(&recording, &RecordingControl::runningChanged, &area->liveView(),
            &Viewer::showRecordVideo);
    connect(&recording, &RecordingControl::statusChanged, docks->recording,
            &RecordingPanel::showStatus);
    connect(&recording, &RecordingControl::failed, this, &MainWindow::tell);
}

void MainWindow::connectExport()
{
    connect(actions->exportPictures, &QAction::triggered, this, &MainWindow::chooseExport);
    connect(&exports, &ExportControl::runningChanged, actions->exportPictures,
            &QAction::setDisabled);
    connect(&exports, &ExportControl::failed, this, &MainWindow::tell);
    connect(&exports, &ExportControl::ended, this,
            [this](const QString& text) { statusBar()->showMessage(text, messageMs); });
}

void MainWindow::connectAids()
{
    connect(actions->ruler, &QAction::toggled, area, &PictureArea::showRuler);
    connect(area, &PictureArea::rulerShown, actions->ruler, &QAction::setChecked);
    connect(area, &PictureArea::rulerShown, docks->measure, &MeasurePanel::setRulerShown);
    connect(area, &PictureArea::rulerChanged, docks->measure, &MeasurePanel::setRuler);
    connect(docks->measure, &MeasurePanel::rulerRequested, area, &PictureArea::setRulerLine);
    connect(docks->measure, &MeasurePanel::scaleChanged, this,
            [this](double magnification, const QString& unit) {
                area->liveView().setMagnification(static_cast<float>(magnification), unit);
                area->liveView().getRuller().updateRuller();
            });
    connect(actions->grid, &QAction::toggled, &area->liveView(), &Viewer::onShowGrid);
    connect(actions->crossHair, &QAction::toggled, area, &PictureArea::showCrossHair);
    connect(actions->clipping, &QAction::toggled, this, [this](bool on) {
        feed.setClippingWanted(on);
        area->showClipping(on);
    });
    connect(actions->measure, &QAction::toggled, this, [this](bool on) {
        area->showMeasureFrame(on);
        docks->measure->setArea(on ? area->measureFrame().getArea() : QRect());
    });
    // Only when the user asks for it: restored settings bring their layout with them.
    connect(actions->measure, &QAction::triggered, this, [this](bool on) {
        if (on)
            docks->bringUp(*docks->measure);
    });
    connect(&area->measureFrame(), &MeasureFrame::areaChanged, this, [this](const QRect& measured) {
        if (actions->measure->isChecked())
            docks->measure->setArea(measured);
    });
    connect(docks->measure, &MeasurePanel::areaRequested, this, [this](const QRect& wanted) {
        area->measureFrame().setArea(wanted);
        docks->measure->setArea(area->measureFrame().getArea()); // which may be unchanged
    });
    connect(actions->wideHistogram, &QAction::toggled, docks->histogram, &HistogramPanel::setWide);
    connect(actions->stretch, &QAction::toggled, this,
            [this](bool on) { model.change([on](ProcessingSettings& s) { s.autoStretch = on; }); });
}

void MainWindow::connectCommands()
{
    LifeView& view = area->liveView();
    connect(actions->openFile, &QAction::triggered, this, &MainWindow::chooseFile);
    connect(actions->chooseSource, &QAction::triggered, sourceBar, &SourceBar::focusSource);
    connect(actions->snapshot, &QAction::triggered, this, [this] { saveSnapshot(false); });
    connect(actions->rawSnapshot, &QAction::triggered, this, [this] { saveSnapshot(true); });
    connect(actions->quit, &QAction::triggered, this, &QWidget::close);
    connect(actions->copyPicture, &QAction::triggered, &view, &Viewer::copyImageToBuffer);
    connect(actions->fit, &QAction::triggered, area, &PictureArea::fit);
    connect(actions->actualSize, &QAction::triggered, this, [&view] {
        // The step leaves the fitted state, so that a resize keeps the zoom.
        view.scaleView(1.0 / view.transform().m11());
    });
    connect(actions->zoomIn, &QAction::triggered, &view, &Viewer::scaleViewIn);
    connect(actions->zoomOut, &QAction::triggered, &view, &Viewer::scaleViewOut);
    connect(actions->fullScreen, &QAction::triggered, this, &MainWindow::toggleFullScreen);
    connect(actions->focusPicture, &QAction::triggered, &view,
            [&view] { view.setFocus(Qt::ShortcutFocusReason); });
    connect(actions->help, &QAction::triggered, this, [this] {
        std::vector<QAction*> all;
        for (QAction* action : findChildren<QAction*>())
            all.push_back(action);
        auto* page = new HelpPage(all, this);
        page->setAttribute(Qt::WA_DeleteOnClose);
        page->show();
    });
}

void MainWindow::connectColors()
{
    const auto applies = [this](QAction* action, ColorScheme scheme) {
        action->setData(nameOf(scheme));
        connect(action, &QAction::triggered, this, [scheme] { applyColorScheme(scheme); });
    };
    applies(actions->systemColors, ColorScheme::System);
    applies(actions->lightColors, ColorScheme::Light);
    applies(actions->darkColors, ColorScheme::Dark);
}

bool MainWindow::openSource(const QString& source)
{
    leaveFullScreen();
    try {
        // A camera may allow one user only: the one before is let go first.
        saveSettings();
        control.close();
        useCamera(openCamera(source), source);
        return true;
    } catch (const CameraError& error) {
        area->liveView().clearViewer();
        tell(QString::fromUtf8(error.what()));
        return false;
    }
}

void MainWindow::useCamera(std::unique_ptr<Camera> camera, const QString& source)
{
    leaveFullScreen();
    saveSettings();
    control.close();
    notice->showNotice({});
    statusBar()->clearMessage();

    const CameraInfo info = camera->info();
    store.emplace(options.settingsRoot, info.name);
    CameraSettings settings = camera->settings();
    // Left to itself, a simulated source runs as fast as the machine can.
    if (settings.frameRate == 0)
        settings.frameRate = info.naturalRate;
    if (options.restoreSettings) {
        const SettingsStore::Content content = store->load(ProcessingModel::defaults().correction);
        const int openedDepth = settings.bitDepth;
        settings = cameraSettingsFrom(content.window["camera"].toObject(), settings, info);
        if (SourceText(source).has("bits")) // asked for by name, it goes before what was saved
            settings.bitDepth = openedDepth;
        restore(content);
    }
    camera->apply(settings);
    area->setSensorSize(info.sensorWidth, info.sensorHeight);
    docks->camera->setCamera(info);
    docks->map->setCamera(info);
    sourceBar->setSource(source);
    setWindowTitle(QStringLiteral("%1 – camview").arg(info.name));
    control.open(std::move(camera));
    sourceBar->setPlayback(control.playback());
    log(InfoLogType) << "Streaming from " << info.name << std::endl;
}

void MainWindow::showNoCamera()
{
    setWindowTitle(QStringLiteral("camview"));
    sourceBar->setPlayback(nullptr);
    docks->camera->setEnabled(false);
    docks->map->setEnabled(false);
    docks->histogram->clear();
    status->showPixel({}, nullptr);
    status->showPinnedColor({});
}

void MainWindow::showNewestPicture()
{
    LivePicture* picture = feed.takePicture();
    if (picture == nullptr || !control.isOpen())
        return;
    const bool first = std::exchange(newest, picture) == nullptr;
    area->showPicture(*picture);
    // The view was disabled until now; keys are meant for it, not for some text field.
    if (first)
        area->liveView().setFocus(Qt::OtherFocusReason);
    control.countShown();
    ++shownPictures;
    sincePicture.start();
    showPanels(*picture);
    emit pictureShown();
}

void MainWindow::showPanels(LivePicture& picture)
{
    if (picture.newHistograms && PanelDocks::isSeen(*docks->histogram))
        docks->histogram->showHistograms(picture.histograms);
    if (PanelDocks::isSeen(*docks->tone))
        docks->tone->showPicture(picture);
    if (PanelDocks::isSeen(*docks->map))
        docks->map->showPicture(picture);
    if (PanelDocks::isSeen(*docks->measure))
        docks->measure->setPicture(picture);
    if (hoveredPixel.x() >= 0)
        status->showPixel(hoveredPixel, &picture);
}

void MainWindow::showStreamEvent(int event, const QString& detail)
{
    switch (static_cast<StreamEvent>(event)) {
    case StreamEvent::Ended:
        statusBar()->showMessage(tr("The source has ended."), messageMs);
        break;
    case StreamEvent::Failed:
        tell(tr("The stream broke down: %1").arg(detail));
        break;
    case StreamEvent::Vanished:
        tell(tr("The camera is gone; waiting for it to come back. %1").arg(detail));
        break;
    case StreamEvent::Returned:
        notice->showNotice({});
        statusBar()->showMessage(tr("The camera is back."), messageMs);
        break;
    }
}

void MainWindow::followProcessing(const ProcessingSettings& settings)
{
    feed.setFlips(settings.correction.flipH, settings.correction.flipV);
    control.setProcessing(settings);
    const QSignalBlocker block(actions->stretch);
    actions->stretch->setChecked(settings.autoStretch);
}

void MainWindow::toggleFullScreen()
{
    if (fullScreen.isOn())
        fullScreen.leave();
    else
        fullScreen.enter();
    actions->fullScreen->setChecked(fullScreen.isOn());
}

// The layout is saved and restored per camera, and is not what full screen makes of it.
void MainWindow::leaveFullScreen()
{
    if (fullScreen.isOn())
        toggleFullScreen();
}

void MainWindow::chooseFile()
{
    const QString fileName = QFileDialog::getOpenFileName(
        this, tr("Open a recording or photograph"), options.outputFolder,
        tr("Recordings and photographs (*.dat *.png *.jpg *.jpeg *.bmp *.ppm);;All files (*)"));
    if (!fileName.isEmpty())
        openSource(sourceOfFile(fileName));
}

void MainWindow::chooseExport()
{
    const QString recorded =
        QFileDialog::getOpenFileName(this, tr("Recording to make pictures of"),
                                     options.outputFolder, tr("Recordings (*.dat);;All files (*)"));
    if (recorded.isEmpty())
        return;
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Folder for the pictures"),
                                                             QFileInfo(recorded).absolutePath());
    if (!folder.isEmpty())
        exports.start(recorded, folder, model.settings());
}

void MainWindow::saveSnapshot(bool raw)
{
    if (newest == nullptr) {
        tell(tr("There is no picture to save."));
        return;
    }
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    const QString fileName =
        QStringLiteral("%1/camview-%2.%3").arg(options.outputFolder, stamp, raw ? "raw" : "png");
    const QString complaint = raw ? saveRawSnapshot(newest->raw, fileName)
                                  : savePictureSnapshot(*newest->image, fileName);
    if (!complaint.isEmpty()) {
        tell(complaint);
        return;
    }
    statusBar()->showMessage(tr("Saved %1").arg(QFileInfo(fileName).fileName()), messageMs);
    log(InfoLogType) << "Saved "
                     << (raw ? rawSource(newest->raw, newest->mosaic, fileName) : fileName)
                     << std::endl;
}

void MainWindow::tell(const QString& text)
{
    notice->showNotice(text);
    log(InfoLogType) << text << std::endl;
}

SettingsStore::Content MainWindow::currentContent()
{
    QJsonObject switches;
    for (const QAction* action : actions->keptSwitches())
        switches[action->objectName()] = action->isChecked();
    QString colors;
    for (const QAction* scheme : {actions->systemColors, actions->lightColors, actions->darkColors})
        if (scheme->isChecked())
            colors = scheme->data().toString();

    SettingsStore::Content content;
    content.image = model.correction();
    content.window = {{"geometry", QString::fromLatin1(saveGeometry().toBase64())},
                      {"layout", QString::fromLatin1(saveState().toBase64())},
                      {"colors", colors},
                      {"switches", switches},
                      {"camera", toJson(control.settings(), control.info())},
                      {"recording", docks->recording->save()},
                      {"processing", toJson(model.settings())},
                      {"magnification", docks->measure->magnification()},
                      {"unit", docks->measure->unit()}};
    return content;
}

void MainWindow::saveSettings()
{
    if (!store || !control.isOpen() || !options.restoreSettings)
        return;
    const QString complaint = store->save(currentContent());
    if (!complaint.isEmpty())
        tell(complaint);
}

void MainWindow::restore(const SettingsStore::Content& content)
{
    const QJsonObject& window = content.window;
    ProcessingSettings settings = ProcessingModel::defaults();
    settings.correction = content.image;
    readProcessing(window["processing"].toObject(), settings);
    model.setSettings(settings);

    restoreGeometry(QByteArray::fromBase64(window["geometry"].toString().toLatin1()));
    restoreState(QByteArray::fromBase64(window["layout"].toString().toLatin1()));
    for (QAction* scheme : {actions->systemColors, actions->lightColors, actions->darkColors})
        if (scheme->data().toString() == window["colors"].toString())
            scheme->trigger();
    const QJsonObject switches = window["switches"].toObject();
    for (QAction* action : actions->keptSwitches())
        action->setChecked(switches[action->objectName()].toBool());
    docks->recording->restore(window["recording"].toObject());
    if (options.outputFolderGiven)
        docks->recording->setFolder(options.outputFolder);
    docks->measure->setScale(window["magnification"].toDouble(1.0),
                             window["unit"].toString(QStringLiteral("pix")));
    for (const QString& complaint : content.complaints)
        tell(complaint);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    leaveFullScreen();
    saveSettings();
    recording.stop();
    if (control.isOpen())
        log(InfoLogType) << StatusPanel::countersText(control.counters()) << std::endl;
    control.close();
    QMainWindow::closeEvent(event);
}

void MainWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && fullScreen.isOn())
        toggleFullScreen();
    else
        QMainWindow::keyPressEvent(event);
}
