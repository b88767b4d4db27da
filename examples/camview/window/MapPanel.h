#pragma once

#include "core/Camera.h"

#include <QWidget>

struct LivePicture;
class QLabel;
class ViewportMap;

/// The map of the sensor on which the user moves the region that the camera reads out.
class MapPanel : public QWidget
{
    Q_OBJECT

public:
    explicit MapPanel(QWidget* parent = nullptr);

    void setCamera(const CameraInfo& info);
    /// Confirms the region that now holds.
    void setSettings(const CameraSettings& settings);
    /// Draws the picture into the region, now and then.
    void showPicture(const LivePicture& picture);
    ViewportMap* getMap() { return map; }

signals:
    void regionRequested(const SensorRegion& region);

private:
    ViewportMap* map;
    QLabel* label;
    CameraInfo camera;
    int picturesUntilDrawn = 0;
};
