#include "CurvePlot.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace
{
constexpr int margin = 6;
} // namespace

CurvePlot::CurvePlot(const QString& plotTitle, const QString& plotUnit, QWidget* parent)
    : QWidget(parent)
    , title(plotTitle)
    , unit(plotUnit)
{
    setAccessibleName(title);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void CurvePlot::setRange(double low, double high)
{
    fixedScale = Scale{low, high};
    update();
}

void CurvePlot::setValues(std::vector<double> newValues)
{
    values = std::move(newValues);
    update();
}

void CurvePlot::setCaption(const QString& text)
{
    caption = text;
    update();
}

QSize CurvePlot::sizeHint() const
{
    return {240, 84};
}

QSize CurvePlot::minimumSizeHint() const
{
    return {120, 60};
}

CurvePlot::Scale CurvePlot::scale() const
{
    if (fixedScale)
        return *fixedScale;
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    // A flat curve lies in the middle, and noise far below its level is not blown up to drama.
    const double room = std::max((*high - *low) * 0.1, std::max(std::abs(*high) * 0.05, 1e-3));
    const double bottom = *low < 0 ? *low - room : std::max(*low - room, 0.0);
    return {bottom, *high + room};
}

QRectF CurvePlot::plotArea() const
{
    const int textHeight = fontMetrics().height();
    return QRectF(rect()).adjusted(margin, margin + textHeight + 2, -margin, -margin);
}

QString CurvePlot::number(double value) const
{
    return QString::number(value, 'f', std::abs(value) < 10 ? 2 : 1) + unit;
}

void CurvePlot::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(plotArea(), palette().base());
    if (values.empty()) {
        painter.drawText(QRect(margin, margin, width(), fontMetrics().height()), title);
        return;
    }
    const Scale shown = scale();
    paintCurve(painter, shown);
    paintTexts(painter, shown);
}

void CurvePlot::paintTexts(QPainter& painter, const Scale& shown) const
{
    const QRect head(margin, margin, width() - 2 * margin, fontMetrics().height());
    painter.setPen(palette().color(QPalette::WindowText));
    const QString value = caption.isEmpty() ? number(values.back()) : caption;
    const int room = head.width() - fontMetrics().horizontalAdvance(value) - margin;
    painter.drawText(head, Qt::AlignRight, value);
    painter.drawText(head, Qt::AlignLeft, fontMetrics().elidedText(title, Qt::ElideRight, room));

    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.8);
    painter.setFont(small);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QRectF area = plotArea().adjusted(3, 1, -3, -1);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignTop, number(shown.high));
    painter.drawText(area, Qt::AlignLeft | Qt::AlignBottom, number(shown.low));
}

void CurvePlot::paintCurve(QPainter& painter, const Scale& shown) const
{
    const QRectF area = plotArea();
    const double stepX = values.size() > 1 ? area.width() / double(values.size() - 1) : 0.0;
    const double stepY = area.height() / (shown.high - shown.low);
    QPolygonF curve;
    curve.reserve(static_cast<int>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double level = std::clamp(values[i], shown.low, shown.high);
        curve.append(
            {area.left() + double(i) * stepX, area.bottom() - (level - shown.low) * stepY});
    }
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawPolyline(curve);
}
