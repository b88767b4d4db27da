#include "SliderGeometry.h"

#include <QPainter>
#include <QPainterPath>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>

namespace
{

constexpr double markerHalfWidth = 4;
constexpr double markerHeight = 9;

} // namespace

void drawDefaultMarker(QPainter& painter, const QRect& area, double fraction)
{
    const double x = (area.width() - 2 * markerHalfWidth) * fraction + markerHalfWidth;
    const double y = area.height() * 0.5 - 1;

    QPainterPath triangle(QPointF(x, y));
    triangle.lineTo(x - markerHalfWidth, y - markerHeight);
    triangle.lineTo(x + markerHalfWidth, y - markerHeight);
    triangle.closeSubpath();

    painter.setPen(Qt::blue);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(triangle, QColor("gray"));
}

int sliderValueToPixelPos(const QSlider& slider, const QStyleOptionSlider& option, int value)
{
    const auto part = [&](QStyle::SubControl control) {
        return slider.style()->subControlRect(QStyle::CC_Slider, &option, control);
    };
    const QRect groove = part(QStyle::SC_SliderGroove);
    const int span = groove.right() - part(QStyle::SC_SliderHandle).width() + 1 - groove.left();
    return QStyle::sliderPositionFromValue(slider.minimum(), slider.maximum(), value, span,
                                           option.upsideDown);
}
