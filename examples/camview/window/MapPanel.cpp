#include "MapPanel.h"

#include "LivePicture.h"

#include <AppComponents/view/ViewportMap.h>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
constexpr int picturesPerDrawing = 15; // the map gives an overview, not the motion
}

MapPanel::MapPanel(QWidget* parent)
    : QWidget(parent)
    , map(new ViewportMap(this))
    , label(new QLabel(this))
{
    map->setAccessibleName(tr("Map of the sensor"));
    map->setToolTip(tr("Drag the rectangle to move the region, an edge to resize it; "
                       "click beside it to centre it there."));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* whole = new QPushButton(tr("Whole sensor"), this);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(map, 0, Qt::AlignHCenter);
    layout->addWidget(label);
    layout->addWidget(whole);
    layout->addStretch();

    connect(map, &ViewportMap::setCameraViewport, this, [this](int x, int y, int w, int h) {
        emit regionRequested({x, y, w, h});
        map->update(); // the dragged outline goes also when the camera refuses
    });
    connect(whole, &QPushButton::clicked, this, [this] {
        emit regionRequested({0, 0, camera.sensorWidth, camera.sensorHeight});
    });
}

void MapPanel::setCamera(const CameraInfo& info)
{
    camera = info;
    map->setFlipping(false, false);
    map->setMaxVPSize(info.sensorWidth, info.sensorHeight);
    map->fillBackground(palette().color(QPalette::Mid));
    setEnabled(!info.fixedGeometry);
}

void MapPanel::setSettings(const CameraSettings& settings)
{
    const SensorRegion& region = settings.region;
    map->setViewport(region.x, region.y, region.width, region.height);
    label->setText(
        tr("%1 × %2 at %3, %4").arg(region.width).arg(region.height).arg(region.x).arg(region.y));
    picturesUntilDrawn = 0;
}

void MapPanel::showPicture(const LivePicture& picture)
{
    if (--picturesUntilDrawn > 0)
        return;
    picturesUntilDrawn = picturesPerDrawing;
    // The map lies as the picture does, whoever mirrored it.
    map->setFlipping(picture.params.mirrorH, picture.params.mirrorV);
    map->drawOnViewPort(*picture.image);
}
