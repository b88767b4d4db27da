#pragma once

#include <QGraphicsObject>

/// A rectangle on the picture whose content is measured. The user moves it by its inside and
/// resizes it by its corners; it stays inside the picture and on whole pixels.
class MeasureFrame : public QGraphicsObject
{
    Q_OBJECT

public:
    MeasureFrame();

    /// Keeps the rectangle inside a picture of this size; the first one centres it.
    void setPictureSize(const QSize& size);

    /// Sets the rectangle, in picture pixels, as nearly as the picture allows.
    void setArea(const QRect& wanted);
    QRect getArea() const { return area; }

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    /// The rectangle has changed, in picture pixels.
    void areaChanged(const QRect& area);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;

private:
    enum Grip { Body, TopLeft, TopRight, BottomLeft, BottomRight };

    double handleSize() const;
    Grip gripAt(const QPointF& point) const;
    QRect fitted(QRect wanted) const;
    QRect dragged(const QPoint& distance) const;

    QSize pictureSize;
    QRect area;
    QRect areaAtPress;
    QPointF pressPoint;
    Grip grip = Body;
};
