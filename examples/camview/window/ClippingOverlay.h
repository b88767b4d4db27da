#pragma once

#include <QGraphicsItem>
#include <QImage>

/// Shows a clipping mask over the picture. It takes no clicks and changes no data: what is
/// measured and recorded never sees it.
class ClippingOverlay : public QGraphicsItem
{
public:
    ClippingOverlay();

    /// Shows \p newMask, which is shared, not copied.
    void setMask(const QImage& newMask);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QImage mask;
};
