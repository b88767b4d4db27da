#include <AppComponents/view/LifeView.h>

#include <QGraphicsScene>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPen>

#include <cstdlib>
#include <utility>

namespace
{

constexpr qint64 rateIntervalMs = 1000;

// At load time, so that a camera thread can emit these types with no further step. A signal may
// name the frame parameters either way.
const bool metaTypesRegistered = [] {
    qRegisterMetaType<TFrameParams>("TFrameParams");
    qRegisterMetaType<_FrameParams>("_FrameParams");
    qRegisterMetaType<ViewPort>("ViewPort");
    qRegisterMetaType<QSharedPointer<QImage>>("QSharedPointer<QImage>");
    return true;
}();

bool shiftHeld()
{
    return QGuiApplication::keyboardModifiers() & Qt::ShiftModifier;
}

} // namespace

LifeView::LifeView(QWidget* parent)
    : Viewer(parent)
{
    viewport()->setMouseTracking(true);
    fpsClock.start();
}

LifeView::~LifeView() = default;

void LifeView::setMagnification(float newMagnification, QString unit)
{
    magnification = newMagnification;
    magnificationUnit = std::move(unit);
    getRuller().setMagnification(static_cast<float>(decimation) * magnification, magnificationUnit);
}

void LifeView::viewFrame(TFrameParams frameParams, QSharedPointer<QImage> pImg, qlonglong)
{
    const int signedDecimation = frameParams.decimation;
    if (signedDecimation != decimation)
        getRuller().setMagnification(static_cast<float>(signedDecimation) * magnification,
                                     magnificationUnit);

    const int newDecimation = std::abs(signedDecimation);
    const bool geometryChanged = newDecimation != decimation ||
                                 frameParams.width != cameraViewport.width ||
                                 frameParams.height != cameraViewport.height;
    if (geometryChanged)
        mouseMode = NoGesture;
    cameraViewport = {frameParams.posX, frameParams.posY, frameParams.width, frameParams.height};
    mirrorV = frameParams.mirrorV != 0;
    mirrorH = frameParams.mirrorH != 0;

    setBitmap(*pImg);
    decimation = newDecimation;
    viewport()->update();
    if (geometryChanged)
        scaleView(1.0); // leaves the zoom, but fits a picture that would float in the view
    countFrame();
}

void LifeView::countFrame()
{
    ++frameCount;
    if (fpsClock.elapsed() <= rateIntervalMs)
        return;
    const auto elapsed = static_cast<float>(fpsClock.restart());
    emit showViewFramerate(static_cast<float>(frameCount) / elapsed * 1000.0F);
    frameCount = 0;
}

void LifeView::mousePressEvent(QMouseEvent* event)
{
    Viewer::mousePressEvent(event);
    if (event->isAccepted() || event->button() != Qt::LeftButton)
        return;

    const QPointF scenePos = mapToScene(event->pos());
    if (shiftHeld()) {
        beginSelection(clampedToScene(scenePos));
    } else if (dragMode() != ScrollHandDrag) {
        pressScenePos = scenePos;
        if (sceneRect().contains(scenePos)) {
            dragStartOrigin = {cameraViewport.startX, cameraViewport.startY};
            mouseMode = MovingViewport;
        }
    }
}

void LifeView::beginSelection(const QPointF& scenePos)
{
    pressScenePos = scenePos;
    mouseMode = SelectingRectangle;
    selectionRect.setPen(QPen(QBrush(Qt::yellow), 0)); // one screen pixel wide at any zoom
    selectionRect.setRect(QRectF(scenePos, QSizeF(0, 0)));
    // An abandoned selection is still there.
    if (selectionRect.scene() != scene())
        scene()->addItem(&selectionRect);
}

void LifeView::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF scenePos = mapToScene(event->pos());
    reportSensorPosition(scenePos);
    if (dragMode() == ScrollHandDrag)
        mouseMode = NoGesture;

    switch (mouseMode) {
    case MovingViewport:
        requestMovedViewport(scenePos);
        break;
    case SelectingRectangle:
        selectionRect.setRect(QRectF(clampedToScene(scenePos), pressScenePos).normalized());
        break;
    case NoGesture:
        Viewer::mouseMoveEvent(event);
        break;
    }
}

void LifeView::requestMovedViewport(const QPointF& scenePos)
{
    QPointF distance = (scenePos - pressScenePos) * decimation;
    if (mirrorH)
        distance.rx() = -distance.x();
    if (mirrorV)
        distance.ry() = -distance.y();
    emit setCameraViewport({static_cast<int>(dragStartOrigin.x() - distance.x()),
                            static_cast<int>(dragStartOrigin.y() - distance.y()),
                            cameraViewport.width, cameraViewport.height});
}

void LifeView::mouseReleaseEvent(QMouseEvent* event)
{
    Viewer::mouseReleaseEvent(event);
    if (mouseMode == SelectingRectangle)
        requestSelectedViewport();
    mouseMode = NoGesture;
    reportColor(mapToScene(event->pos()));
}

void LifeView::requestSelectedViewport()
{
    scene()->removeItem(&selectionRect);
    const QRectF selected = selectionRect.rect();
    QRectF r(selected.topLeft() * decimation, selected.size() * decimation);
    if (mirrorH)
        r.moveLeft(cameraViewport.width - r.right());
    if (mirrorV)
        r.moveTop(cameraViewport.height - r.bottom());
    r.translate(cameraViewport.startX, cameraViewport.startY);
    emit setCameraViewport({static_cast<int>(r.x()), static_cast<int>(r.y()),
                            static_cast<int>(r.width()), static_cast<int>(r.height())});
}

void LifeView::mouseDoubleClickEvent(QMouseEvent*)
{
    emit toggleFullScreen();
}

// The decimation counts in the containment test and twice in the position: receivers of the signal
// rely on these figures.
void LifeView::reportSensorPosition(const QPointF& scenePos)
{
    const QPoint q = scaledByDecimation(scenePos);
    if (!getBitmap().rect().contains(q)) {
        emit sensorePosition(QPointF(-1, -1));
        return;
    }
    const auto k = static_cast<float>(decimation);
    const float x = static_cast<float>(cameraViewport.startX) + k * static_cast<float>(q.x());
    const float y = static_cast<float>(cameraViewport.startY) + k * static_cast<float>(q.y());
    emit sensorePosition(QPointF(static_cast<double>(x), static_cast<double>(y)));
}

void LifeView::reportColor(const QPointF& scenePos)
{
    const QPoint q = scaledByDecimation(scenePos);
    // Read before the test, so that Qt's warning tells of a release outside the picture.
    const QRgb pixel = getBitmap().pixel(q);
    emit pinColor(getBitmap().rect().contains(q) ? QColor(pixel) : QColor());
}

QPointF LifeView::clampedToScene(const QPointF& scenePos) const
{
    return {qBound(0.0, scenePos.x(), sceneRect().width()),
            qBound(0.0, scenePos.y(), sceneRect().height())};
}

QPoint LifeView::scaledByDecimation(const QPointF& scenePos) const
{
    return (scenePos * decimation).toPoint();
}
