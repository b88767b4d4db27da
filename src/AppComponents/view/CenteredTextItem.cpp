#include <AppComponents/view/CenteredTextItem.h>

#include <QPainter>

CenteredTextItem::CenteredTextItem(QGraphicsItem* parent)
    : QGraphicsTextItem(parent)
{
}

CenteredTextItem::~CenteredTextItem() = default;

void CenteredTextItem::setOffset(int newOffset)
{
    prepareGeometryChange();
    offset = newOffset;
}

QRectF CenteredTextItem::boundingRect() const
{
    QRectF rect = QGraphicsTextItem::boundingRect().translated(offset, 0);
    rect.setWidth(rect.width() * 1.5);
    return rect;
}

void CenteredTextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                             QWidget* widget)
{
    painter->translate(offset, 0);
    QGraphicsTextItem::paint(painter, option, widget);
}
