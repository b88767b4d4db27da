#include "TestPicture.h"

#include <QPainter>
#include <QRadialGradient>

#include <random>

namespace
{

void drawCell(QPainter& painter, std::mt19937& random, const QSize& size)
{
    const auto below = [&random](int limit) { return static_cast<int>(random() % limit); };
    const QPointF centre(below(size.width()), below(size.height()));
    const double radius = 18 + below(50);
    const int hue = below(4) == 0 ? 205 + below(30) : 310 + below(30);

    QRadialGradient body(centre, radius);
    body.setColorAt(0.0, QColor::fromHsv(hue, 150, 190, 220));
    body.setColorAt(0.7, QColor::fromHsv(hue, 90, 225, 190));
    body.setColorAt(0.9, QColor::fromHsv(hue, 170, 150, 210));
    body.setColorAt(1.0, QColor::fromHsv(hue, 90, 225, 0));
    painter.setBrush(body);
    painter.drawEllipse(centre, radius, radius * (0.7 + 0.3 * below(100) / 100.0));

    painter.setBrush(QColor::fromHsv(265, 190, 90, 230));
    const QPointF shift(radius * 0.15, -radius * 0.1);
    painter.drawEllipse(centre + shift, radius * 0.3, radius * 0.26);
}

} // namespace

QImage cellPicture(int width, int height)
{
    QImage picture(width, height, QImage::Format_RGB888);
    picture.fill(QColor(244, 240, 238));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    std::mt19937 random(2024);
    const int cells = width * height / 9000;
    for (int i = 0; i < cells; ++i)
        drawCell(painter, random, picture.size());
    return picture;
}
