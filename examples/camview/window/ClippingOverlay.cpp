#include "ClippingOverlay.h"

#include <QPainter>

ClippingOverlay::ClippingOverlay()
{
    setAcceptedMouseButtons(Qt::NoButton);
    setZValue(1);
    setVisible(false);
}

void ClippingOverlay::setMask(const QImage& newMask)
{
    if (newMask.size() != mask.size())
        prepareGeometryChange();
    mask = newMask;
    update();
}

QRectF ClippingOverlay::boundingRect() const
{
    return {QPointF(0, 0), QSizeF(mask.size())};
}

void ClippingOverlay::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (mask.isNull())
        return;
    // Smooth scaling would thin single clipped pixels to nothing.
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter->drawImage(QPointF(0, 0), mask);
}
