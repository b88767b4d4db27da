#include "CrossHair.h"

#include <QPainter>

CrossHair::CrossHair()
{
    setAcceptedMouseButtons(Qt::NoButton);
    setZValue(2);
    setVisible(false);
}

void CrossHair::setPictureSize(const QSize& size)
{
    if (size == pictureSize)
        return;
    prepareGeometryChange();
    pictureSize = size;
}

QRectF CrossHair::boundingRect() const
{
    return {QPointF(0, 0), QSizeF(pictureSize)};
}

void CrossHair::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QPointF middle = boundingRect().center();
    const QLineF lines[] = {{0, middle.y(), boundingRect().right(), middle.y()},
                            {middle.x(), 0, middle.x(), boundingRect().bottom()}};
    // Width 0 is one screen pixel at every zoom; black under white shows on any picture.
    painter->setPen(QPen(Qt::black, 0));
    painter->drawLines(lines, 2);
    painter->setPen(QPen(Qt::white, 0, Qt::DashLine));
    painter->drawLines(lines, 2);
}
