#include <AppComponents/view/ViewportMap.h>

#include <QMouseEvent>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double edgeTolerance = 5.0;
constexpr double penWidth = 2.0;
constexpr int bytesPerPixel = 4;

enum EdgeBit : unsigned { LeftBit = 1, RightBit = 2, TopBit = 4, BottomBit = 8 };

// The edges of a rectangle that a handle stands for.
unsigned edgesOf(PointRelativePosition position)
{
    switch (position) {
    case TopEdge:
        return TopBit;
    case BottomEdge:
        return BottomBit;
    case LeftEdge:
        return LeftBit;
    case RightEdge:
        return RightBit;
    case TopLeftCorner:
        return TopBit | LeftBit;
    case TopRightCorner:
        return TopBit | RightBit;
    case BottomLeftCorner:
        return BottomBit | LeftBit;
    case BottomRightCorner:
        return BottomBit | RightBit;
    case Outside:
    case Inside:
        break;
    }
    return 0;
}

unsigned edgesNear(const QRectF& rect, const QPointF& point)
{
    const auto near = [](double edge, double coordinate) {
        return std::abs(edge - coordinate) <= edgeTolerance;
    };
    unsigned edges = 0;
    if (near(rect.left(), point.x()))
        edges |= LeftBit;
    if (near(rect.right(), point.x()))
        edges |= RightBit;
    if (near(rect.top(), point.y()))
        edges |= TopBit;
    if (near(rect.bottom(), point.y()))
        edges |= BottomBit;
    return edges;
}

// Ties on a small rectangle go to the left and to the top.
PointRelativePosition cornerAt(unsigned edges)
{
    if (edges & TopBit)
        return edges & LeftBit ? TopLeftCorner : TopRightCorner;
    return edges & LeftBit ? BottomLeftCorner : BottomRightCorner;
}

Qt::CursorShape hoverCursor(PointRelativePosition position)
{
    switch (position) {
    case Inside:
        return Qt::OpenHandCursor;
    case TopEdge:
    case BottomEdge:
        return Qt::SizeVerCursor;
    case LeftEdge:
    case RightEdge:
        return Qt::SizeHorCursor;
    case TopLeftCorner:
    case BottomRightCorner:
        return Qt::SizeFDiagCursor;
    case TopRightCorner:
    case BottomLeftCorner:
        return Qt::SizeBDiagCursor;
    case Outside:
        break;
    }
    return Qt::ArrowCursor;
}

// How far an edge may be dragged: not beyond the lower limit, nor, where the two cross, above it.
double limited(double distance, double lowest, double highest)
{
    return lowest > distance ? lowest : std::min(highest, distance);
}

// The side in map pixels; the longer one must not lose a pixel to a rounding error.
double mapSide(int side, int longer, double scale, int mapLength)
{
    return side == longer ? mapLength : side * scale;
}

QPen framePen(const QColor& color, Qt::PenStyle style)
{
    return {QBrush(color), penWidth, style, Qt::SquareCap, Qt::MiterJoin};
}

} // namespace

ViewportMap::ViewportMap(QWidget* parent)
    : QWidget(parent)
{
    setMinimumSize(widgetSize, widgetSize);
    setMaximumSize(widgetSize, widgetSize);
    setAttribute(Qt::WA_MouseTracking);
}

ViewportMap::~ViewportMap() = default;

void ViewportMap::setMaxVPSize(int width, int height)
{
    if (width <= 0 || height <= 0)
        return;
    const int longer = std::max(width, height);
    scale = static_cast<double>(widgetSize) / longer;
    mapSize = QSizeF(mapSide(width, longer, scale, widgetSize),
                     mapSide(height, longer, scale, widgetSize));
    const QSize pixels(static_cast<int>(mapSize.width()), static_cast<int>(mapSize.height()));
    setMinimumSize(pixels);
    setMaximumSize(pixels);

    mapImage = QImage(); // lets go of the pixels before they move
    mapPixels.fill(0, pixels.width() * pixels.height() * bytesPerPixel);
    mapImage = QImage(reinterpret_cast<uchar*>(mapPixels.data()), pixels.width(), pixels.height(),
                      QImage::Format_ARGB32);
}

void ViewportMap::setViewport(int startX, int startY, int width, int height)
{
    cameraViewport = QRect(startX, startY, width, height);
    screenViewport = cameraToScreen(cameraViewport);
    update();
}

QRect ViewportMap::getCameraViewport() const
{
    return cameraViewport;
}

void ViewportMap::setFlipping(bool newFlipX, bool newFlipY)
{
    flipX = newFlipX;
    flipY = newFlipY;
    update();
}

void ViewportMap::drawOnViewPort(const QImage& image)
{
    drawOnViewPort(image, cameraViewport);
    screenViewport = cameraToScreen(cameraViewport);
    update();
}

void ViewportMap::drawOnViewPort(const QImage& image, const QRect& rect)
{
    fillBackground(backgroundColor);
    if (mapImage.isNull())
        return;
    QPainter painter(&mapImage);
    painter.drawImage(cameraToScreen(rect), image);
}

void ViewportMap::drawOnViewPort(const QImage& image, int x, int y, int width, int height)
{
    drawOnViewPort(image, QRect(x, y, width, height));
}

void ViewportMap::drawOnViewPort(int, int, int, int)
{
    fillBackground(backgroundColor);
}

void ViewportMap::fillBackground(const QColor& color)
{
    if (mapImage.isNull())
        return;
    QPainter painter(&mapImage);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(mapImage.rect(), color);
}

void ViewportMap::fillBackground(const QImage& image)
{
    if (mapImage.isNull())
        return;
    QPainter painter(&mapImage);
    painter.drawImage(mapImage.rect(), image);
}

QRectF ViewportMap::cameraToScreen(const QRect& rect) const
{
    return mirrored(
        QRectF(rect.x() * scale, rect.y() * scale, rect.width() * scale, rect.height() * scale));
}

QRect ViewportMap::screenToCamera(const QRectF& rect) const
{
    const QRectF r = mirrored(rect);
    return {static_cast<int>(r.x() / scale), static_cast<int>(r.y() / scale),
            static_cast<int>(r.width() / scale), static_cast<int>(r.height() / scale)};
}

QRectF ViewportMap::mirrored(QRectF rect) const
{
    if (flipX)
        rect.moveLeft(mapSize.width() - rect.right());
    if (flipY)
        rect.moveTop(mapSize.height() - rect.bottom());
    return rect;
}

PointRelativePosition ViewportMap::getPointPosition(const QPointF& point) const
{
    const QRectF& r = screenViewport;
    const unsigned edges = edgesNear(r, point);
    const bool nearSide = edges & (LeftBit | RightBit);
    const bool nearLevel = edges & (TopBit | BottomBit);
    if (nearSide && nearLevel)
        return cornerAt(edges);
    if (nearSide && r.top() <= point.y() && point.y() <= r.bottom())
        return edges & LeftBit ? LeftEdge : RightEdge;
    if (nearLevel && r.left() <= point.x() && point.x() <= r.right())
        return edges & TopBit ? TopEdge : BottomEdge;
    return r.contains(point) ? Inside : Outside;
}

QRectF& ViewportMap::matchViewPortMove(QRectF& rect) const
{
    if (rect.left() < 0)
        rect.moveLeft(0);
    if (rect.left() > mapSize.width() - rect.width())
        rect.moveLeft(mapSize.width() - rect.width());
    if (rect.top() < 0)
        rect.moveTop(0);
    if (rect.top() > mapSize.height() - rect.height())
        rect.moveTop(mapSize.height() - rect.height());
    return rect;
}

void ViewportMap::mousePressEvent(QMouseEvent* event)
{
    if (!hasSize())
        return;
    pressPos = event->localPos();
    dragRect = screenViewport;
    const PointRelativePosition position = getPointPosition(pressPos);
    if (edgesOf(position) != 0) {
        resizing = true;
        resizeHandle = position;
        return;
    }
    moving = true;
    if (position == Outside)
        dragRect.moveTopLeft(pressPos - QPointF(dragRect.width() / 2, dragRect.height() / 2));
    setCursor(Qt::ClosedHandCursor);
    matchViewPortMove(dragRect);
}

void ViewportMap::mouseMoveEvent(QMouseEvent* event)
{
    if (!hasSize())
        return;
    const QPointF point = event->localPos();
    if (!moving && !resizing) {
        setCursor(hoverCursor(getPointPosition(point)));
        return;
    }
    const QPointF distance = point - pressPos;
    if (moving) {
        // Always from the viewport in force: a press beside it centres there only until it moves.
        dragRect = screenViewport.translated(distance);
        matchViewPortMove(dragRect);
    }
    if (resizing)
        dragRect = resizedViewport(distance);
    update();
}

QRectF ViewportMap::resizedViewport(QPointF distance) const
{
    const QRectF& r = screenViewport;
    const unsigned edges = edgesOf(resizeHandle);
    double dx = distance.x();
    double dy = distance.y();
    if (edges & TopBit)
        dy = limited(dy, -r.y(), r.height() - 1);
    if (edges & BottomBit)
        dy = limited(dy, 1 - r.height(), mapSize.height() - r.y() - r.height());
    if (edges & LeftBit)
        dx = limited(dx, -r.x(), r.width() - 1);
    if (edges & RightBit)
        dx = limited(dx, 1 - r.width(), mapSize.width() - r.x() - r.width());
    return r.adjusted(edges & LeftBit ? dx : 0, edges & TopBit ? dy : 0, edges & RightBit ? dx : 0,
                      edges & BottomBit ? dy : 0);
}

void ViewportMap::mouseReleaseEvent(QMouseEvent*)
{
    if (!hasSize())
        return;
    const QRect requested = screenToCamera(dragRect);
    if (moving)
        setCursor(Qt::OpenHandCursor);
    moving = false;
    resizing = false;
    emit setCameraViewport(requested.x(), requested.y(), requested.width(), requested.height());
}

void ViewportMap::paintEvent(QPaintEvent*)
{
    if (!hasSize())
        return;
    QPainter painter(this);
    painter.drawImage(0, 0, mapImage);
    painter.setPen(framePen(QColor(41, 163, 204), Qt::SolidLine));
    painter.drawRect(screenViewport);
    if (moving || resizing) {
        painter.setPen(framePen(QColor(200, 200, 16), Qt::DashLine));
        painter.drawRect(dragRect);
    }
}

bool ViewportMap::hasSize() const
{
    return scale > 0;
}
