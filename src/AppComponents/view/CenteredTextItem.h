#pragma once

#include <QGraphicsTextItem>

#include <AppComponents/AppComponentsExport.h>

/// A text item that can be centred on its own position.
///
/// The text is painted shifted by `offset()` item units to the right; minus half the text's width
/// centres it. GUI thread only.
class APPCOMPONENTS_EXPORT CenteredTextItem : public QGraphicsTextItem
{
public:
    explicit CenteredTextItem(QGraphicsItem* parent = nullptr);
    ~CenteredTextItem() override;

    /// Sets the horizontal shift of the text, in item units.
    void setOffset(int newOffset);
    int getOffset() const { return offset; }

    /// The shifted rectangle of the text, half as wide again as the text needs.
    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    int offset = 0;
};
