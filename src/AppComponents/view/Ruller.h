#pragma once

#include <QGraphicsObject>
#include <QLineF>
#include <QString>

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/view/CenteredTextItem.h>

/// A measuring ruler: two end points that the user drags, the line between them and a label with
/// its length.
///
/// The ruler itself stays at the scene's origin, so that its coordinates are scene coordinates.
/// The end points and the label keep their size whatever the zoom. `childItems()` holds the first
/// point, the second point and the label, in this order. GUI thread only.
class APPCOMPONENTS_EXPORT Ruller : public QGraphicsObject
{
    Q_OBJECT

public:
    /// One end of the ruler, painted as an arrowhead whose tip is the end point.
    class APPCOMPONENTS_EXPORT RullerPoint : public QGraphicsItem
    {
    public:
        /// \param ruler        the ruler to tell about movements, also the item's parent
        /// \param isFirstPoint whether this is the ruler's start
        RullerPoint(Ruller* ruler, bool isFirstPoint);
        ~RullerPoint() override;

        QRectF boundingRect() const override;
        void paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                   QWidget* widget) override;

    protected:
        QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

    private:
        Ruller* owner;
        bool isFirst;
    };

    explicit Ruller(QGraphicsItem* parent = nullptr);
    ~Ruller() override;

    /// Sets the measured units per scene unit and the unit's text, which the label takes over at
    /// the next update.
    void setMagnification(float newMagnification, QString newUnit);

    /// Recomputes line, angle and label from the end points and emits `rullerChanged`; the end
    /// points call it whenever they have moved.
    void updateRuller();

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    /// Emitted at the end of every update, with the line in scene coordinates.
    void rullerChanged(QLineF line);

private:
    void updateLabel();

    double angle = 0.0; // radians, counter-clockwise
    RullerPoint first{this, true};
    RullerPoint second{this, false};
    CenteredTextItem label{this};
    QLineF line;
    float magnification = 1.0F;
    QString unit = QStringLiteral("pix");
};
