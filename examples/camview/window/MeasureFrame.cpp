#include "MeasureFrame.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QPainter>

#include <algorithm>

namespace
{
constexpr double handlePixels = 9.0; // on the screen, whatever the zoom
constexpr int smallestSide = 2;
} // namespace

MeasureFrame::MeasureFrame()
{
    setAcceptedMouseButtons(Qt::LeftButton);
    setZValue(3);
    setVisible(false);
    setCursor(Qt::SizeAllCursor);
}

void MeasureFrame::setPictureSize(const QSize& size)
{
    if (size == pictureSize)
        return;
    pictureSize = size;
    if (area.isEmpty())
        setArea({size.width() * 3 / 8, size.height() * 3 / 8, size.width() / 4, size.height() / 4});
    else
        setArea(area);
}

void MeasureFrame::setArea(const QRect& wanted)
{
    const QRect next = fitted(wanted);
    if (next == area)
        return;
    prepareGeometryChange();
    area = next;
    emit areaChanged(area);
}

QRect MeasureFrame::fitted(QRect wanted) const
{
    wanted = wanted.normalized();
    wanted.setWidth(
        std::clamp(wanted.width(), smallestSide, std::max(pictureSize.width(), smallestSide)));
    wanted.setHeight(
        std::clamp(wanted.height(), smallestSide, std::max(pictureSize.height(), smallestSide)));
    const int right = std::max(pictureSize.width() - wanted.width(), 0);
    const int bottom = std::max(pictureSize.height() - wanted.height(), 0);
    wanted.moveTo(std::clamp(wanted.x(), 0, right), std::clamp(wanted.y(), 0, bottom));
    return wanted;
}

double MeasureFrame::handleSize() const
{
    const QList<QGraphicsView*> views = scene() ? scene()->views() : QList<QGraphicsView*>();
    const double zoom = views.isEmpty() ? 1.0 : views.first()->transform().m11();
    return handlePixels / std::max(zoom, 1e-3);
}

QRectF MeasureFrame::boundingRect() const
{
    const double reach = handleSize();
    return QRectF(area).adjusted(-reach, -reach, reach, reach);
}

void MeasureFrame::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QRectF outline(area);
    painter->setPen(QPen(Qt::black, 0));
    painter->drawRect(outline);
    painter->setPen(QPen(QColor(90, 230, 120), 0, Qt::DashLine));
    painter->drawRect(outline);

    const double side = handleSize();
    for (const QPointF& corner :
         {outline.topLeft(), outline.topRight(), outline.bottomLeft(), outline.bottomRight()}) {
        const QRectF handle(corner - QPointF(side, side) / 2, QSizeF(side, side));
        painter->fillRect(handle, QColor(90, 230, 120));
    }
}

MeasureFrame::Grip MeasureFrame::gripAt(const QPointF& point) const
{
    const QRectF outline(area);
    const double reach = handleSize();
    const auto near = [&](const QPointF& corner) {
        return std::abs(point.x() - corner.x()) <= reach &&
               std::abs(point.y() - corner.y()) <= reach;
    };
    // The bottom right corner comes first: the smallest rectangle can then still be enlarged.
    if (near(outline.bottomRight()))
        return BottomRight;
    if (near(outline.topLeft()))
        return TopLeft;
    if (near(outline.topRight()))
        return TopRight;
    return near(outline.bottomLeft()) ? BottomLeft : Body;
}

void MeasureFrame::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    grip = gripAt(event->scenePos());
    areaAtPress = area;
    pressPoint = event->scenePos();
    event->accept();
}

QRect MeasureFrame::dragged(const QPoint& distance) const
{
    const QRect picture(QPoint(0, 0), pictureSize);
    QRect next = areaAtPress;
    if (grip == Body)
        return next.translated(distance);
    if (grip == TopLeft || grip == BottomLeft)
        next.setLeft(std::clamp(next.left() + distance.x(), 0, next.right() + 1 - smallestSide));
    else
        next.setRight(std::clamp(next.right() + distance.x(), next.left() - 1 + smallestSide,
                                 std::max(picture.right(), next.left() - 1 + smallestSide)));
    if (grip == TopLeft || grip == TopRight)
        next.setTop(std::clamp(next.top() + distance.y(), 0, next.bottom() + 1 - smallestSide));
    else
        next.setBottom(std::clamp(next.bottom() + distance.y(), next.top() - 1 + smallestSide,
                                  std::max(picture.bottom(), next.top() - 1 + smallestSide)));
    return next;
}

void MeasureFrame::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    setArea(dragged((event->scenePos() - pressPoint).toPoint()));
}
