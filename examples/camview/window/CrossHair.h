#pragma once

#include <QGraphicsItem>

/// Two lines through the middle of the picture. They take no clicks, so every gesture of the
/// live view works on them as beside them.
class CrossHair : public QGraphicsItem
{
public:
    CrossHair();

    void setPictureSize(const QSize& size);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QSize pictureSize;
};
