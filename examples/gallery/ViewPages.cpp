#include "Gallery.h"
#include "TestPicture.h"

#include <AppComponents/view/LifeView.h>
#include <AppComponents/view/ViewportMap.h>

#include <QApplication>
#include <QMouseEvent>

namespace
{

const QSize sensorSize(1280, 960);

std::unique_ptr<QWidget> createLiveView()
{
    auto view = std::make_unique<LifeView>();
    view->setBackground(QApplication::palette().color(QPalette::Window));
    view->setMaxImageSize(sensorSize.width(), sensorSize.height());
    view->setMagnification(0.32F, QStringLiteral(" µm"));
    view->resize(640, 480);
    return view;
}

TFrameParams wholeSensor()
{
    TFrameParams params{};
    params.width = sensorSize.width();
    params.height = sensorSize.height();
    params.decimation = 1;
    params.bitsPerPixel = 24;
    return params;
}

LifeView& showPicture(QWidget& widget)
{
    auto& view = static_cast<LifeView&>(widget);
    const auto picture =
        QSharedPointer<QImage>::create(cellPicture(sensorSize.width(), sensorSize.height()));
    view.viewFrame(wholeSensor(), picture, 0);
    view.setMinZoom();
    return view;
}

void sendMouse(QWidget& target, QEvent::Type type, const QPointF& position,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, target.mapToGlobal(position.toPoint()), Qt::LeftButton,
                      buttons, modifiers);
    QApplication::sendEvent(&target, &event);
}

void showFitted(QWidget& widget)
{
    showPicture(widget);
}

void showCloseUp(QWidget& widget)
{
    LifeView& view = showPicture(widget);
    view.scaleView(16.0);
    view.centerOn(sensorSize.width() / 2.0, sensorSize.height() / 2.0);
}

void showGrid(QWidget& widget)
{
    showPicture(widget).onShowGrid(true);
}

void showRuler(QWidget& widget)
{
    Ruller& ruler = showPicture(widget).getRuller();
    const QList<QGraphicsItem*> items = ruler.childItems();
    items[0]->setPos(300, 700);
    items[1]->setPos(980, 300);
    ruler.setVisible(true);
}

void showRecording(QWidget& widget)
{
    showPicture(widget).showRecordVideo(true);
}

std::unique_ptr<QWidget> createMap()
{
    auto map = std::make_unique<ViewportMap>();
    map->setMaxVPSize(sensorSize.width(), sensorSize.height());
    map->setFlipping(false, false);
    map->fillBackground(cellPicture(sensorSize.width(), sensorSize.height()));
    map->setViewport(320, 200, 560, 480);
    map->resize(map->minimumSize());
    return map;
}

void dragMap(QWidget& map, const QPointF& from, const QPointF& to)
{
    sendMouse(map, QEvent::MouseButtonPress, from);
    sendMouse(map, QEvent::MouseMove, to);
}

void moveViewport(QWidget& map)
{
    dragMap(map, {90, 70}, {130, 100});
}

void resizeViewport(QWidget& map)
{
    dragMap(map, {50, 31}, {20, 12});
}

} // namespace

Pages viewPages()
{
    return {
        {QStringLiteral("live-view-fitted"), createLiveView, showFitted},
        {QStringLiteral("live-view-close-up"), createLiveView, showCloseUp},
        {QStringLiteral("live-view-grid"), createLiveView, showGrid},
        {QStringLiteral("live-view-ruler"), createLiveView, showRuler},
        {QStringLiteral("live-view-recording"), createLiveView, showRecording},
        {QStringLiteral("live-view-empty"), createLiveView, nullptr},
        {QStringLiteral("viewport-map"), createMap, nullptr},
        {QStringLiteral("viewport-map-moving"), createMap, moveViewport},
        {QStringLiteral("viewport-map-resizing"), createMap, resizeViewport},
    };
}
