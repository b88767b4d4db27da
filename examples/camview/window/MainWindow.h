#pragma once

#include "CameraControl.h"
#include "ExportControl.h"
#include "FullScreen.h"
#include "LiveFeed.h"
#include "ProcessingModel.h"
#include "RecordingControl.h"
#include "SettingsStore.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>

#include <AppComponents/log/CLogAccessor.h>

#include <functional>
#include <memory>
#include <optional>

class NoticeBar;
class PanelDocks;
class PictureArea;
class SourceBar;
class StatusPanel;
class WindowActions;

/// How the window is to start.
struct WindowOptions {
    QString settingsRoot; ///< folder of the settings of all cameras
    QString outputFolder; ///< where snapshots and recordings go
    bool outputFolderGiven =
        false; ///< asked for by name: recordings do not go where they went before
    bool restoreSettings =
        true; ///< false: start with defaults, keep the saved settings as they are
};

/// The window: it builds the parts and connects them. What a part does stands in its own class.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const WindowOptions& options);
    ~MainWindow() override;

    /// Opens what the text names. \return whether it could be opened; the user is told why not
    bool openSource(const QString& source);

    /// Shows \p camera with the settings that were saved for it.
    void useCamera(std::unique_ptr<Camera> camera, const QString& source);

    CameraControl& cameraControl() { return control; }
    RecordingControl& recordingControl() { return recording; }
    ExportControl& exportControl() { return exports; }
    ProcessingModel& processingModel() { return model; }
    PictureArea& pictureArea() { return *area; }
    PanelDocks& panels() { return *docks; }
    WindowActions& windowActions() { return *actions; }
    StatusPanel& statusPanel() { return *status; }
    NoticeBar& noticeBar() { return *notice; }
    std::uint64_t picturesShown() const { return shownPictures; }

    /// Writes what the user has set for the open camera.
    void saveSettings();

signals:
    /// A picture has been shown.
    void pictureShown();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildCentre();
    void connectView();
    void connectCamera();
    void connectRecording();
    void connectExport();
    void connectAids();
    void connectCommands();
    void connectColors();

    void showNoCamera();
    void showNewestPicture();
    void showPanels(LivePicture& picture);
    void showStreamEvent(int event, const QString& detail);
    void followProcessing(const ProcessingSettings& settings);
    void toggleFullScreen();
    void leaveFullScreen();
    void chooseFile();
    void chooseExport();
    void saveSnapshot(bool raw);
    void tell(const QString& text);

    SettingsStore::Content currentContent();
    void restore(const SettingsStore::Content& content);

    const WindowOptions options;
    CLogAccessor log;
    ProcessingModel model;
    LiveFeed feed;
    CameraControl control; // after the feed: its threads end before the feed is gone
    RecordingControl recording{control};
    ExportControl exports{*this};
    FullScreen fullScreen{*this};
    std::optional<SettingsStore> store;

    WindowActions* actions;
    PictureArea* area;
    NoticeBar* notice;
    StatusPanel* status;
    SourceBar* sourceBar;
    PanelDocks* docks;

    LivePicture* newest = nullptr; ///< what is shown; owned by the feed
    QPoint hoveredPixel{-1, -1};
    QTimer counterTimer;
    std::uint64_t shownPictures = 0;
    QElapsedTimer sincePicture;
};
