#include <AppComponents/view/Ruller.h>

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QtMath>

#include <cmath>
#include <utility>

namespace
{

constexpr double arrowLength = 15.0;
constexpr double arrowAngle = M_PI / 3;

bool hasLength(const QLineF& line)
{
    return !qFuzzyCompare(line.length(), 0.0);
}

QPointF arrowStroke(double angle)
{
    return {arrowLength * std::sin(angle), arrowLength * std::cos(angle)};
}

// Half a turn keeps the label on the line without ever reading upside down.
double readableAngle(double angle)
{
    return angle > M_PI / 2 && angle < 3 * M_PI / 2 ? angle - M_PI : angle;
}

} // namespace

Ruller::RullerPoint::RullerPoint(Ruller* ruler, bool isFirstPoint)
    : QGraphicsItem(ruler)
    , owner(ruler)
    , isFirst(isFirstPoint)
{
    setFlags(ItemIsMovable | ItemSendsGeometryChanges | ItemIgnoresTransformations);
}

Ruller::RullerPoint::~RullerPoint() = default;

QRectF Ruller::RullerPoint::boundingRect() const
{
    return {-arrowLength, -arrowLength, 2 * arrowLength, 2 * arrowLength};
}

void Ruller::RullerPoint::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const double a = owner->angle;
    painter->setBrush(Qt::red);
    painter->setPen(Qt::red);
    const QPointF tip(0, 0);
    if (isFirst) {
        painter->drawLine(tip, arrowStroke(a + arrowAngle));
        painter->drawLine(tip, arrowStroke(a + M_PI - arrowAngle));
    } else {
        painter->drawLine(tip, arrowStroke(a - arrowAngle));
        painter->drawLine(tip, arrowStroke(a - M_PI + arrowAngle));
    }
}

QVariant Ruller::RullerPoint::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemPositionHasChanged)
        owner->updateRuller();
    return QGraphicsItem::itemChange(change, value);
}

Ruller::Ruller(QGraphicsItem* parent)
    : QGraphicsObject(parent)
{
    label.setFlag(ItemIgnoresTransformations);
    label.setDefaultTextColor(Qt::darkRed);
    label.setFont(QFont(QStringLiteral("Arial"), 14));
}

Ruller::~Ruller() = default;

void Ruller::setMagnification(float newMagnification, QString newUnit)
{
    magnification = newMagnification;
    unit = std::move(newUnit);
}

void Ruller::updateRuller()
{
    prepareGeometryChange();
    first.update();
    second.update();
    line = QLineF(first.pos(), second.pos());
    angle = hasLength(line) ? line.angle() * M_PI / 180 : 0.0;
    updateLabel();
    emit rullerChanged(line);
}

void Ruller::updateLabel()
{
    const double length = line.length() * static_cast<double>(magnification);
    const QString text = QString::number(length, 'f', length < 100.0 ? 2 : 1) + unit;
    label.setOffset(-(QFontMetrics(label.font()).horizontalAdvance(text) / 2));
    label.setPlainText(text);
    label.setPos((first.pos() + second.pos()) / 2);
    label.setRotation(readableAngle(angle) * -180 / M_PI);
}

QRectF Ruller::boundingRect() const
{
    return QRectF(line.p1(), line.p2()).normalized();
}

void Ruller::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (!hasLength(line))
        return;
    painter->setPen(Qt::red);
    painter->drawLine(line);
}
