#pragma once

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalSpy>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QtTest>

/// A pause that no test reaches, not even on a busy machine.
constexpr int never = 3600 * 1000;

using Emissions = QList<QList<QVariant>>;

inline Emissions emissionsOf(QSignalSpy& spy)
{
    const Emissions emissions = spy;
    spy.clear();
    return emissions;
}

inline QRect handleOf(const QSlider& slider)
{
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.orientation = slider.orientation();
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.sliderPosition = slider.sliderPosition();
    option.sliderValue = slider.value();
    if (slider.orientation() == Qt::Horizontal)
        option.state |= QStyle::State_Horizontal;
    return slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle,
                                          &slider);
}

inline void pressHandle(QSlider& slider)
{
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, handleOf(slider).center());
}

inline void dragHandle(QSlider& slider, int pixels)
{
    const QPoint position = handleOf(slider).center() + QPoint(pixels, 0);
    QMouseEvent move(QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&slider, &move);
}

inline void releaseHandle(QSlider& slider)
{
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, handleOf(slider).center());
}

inline QImage pictureOf(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// \p picture of a slider with the default marker at \p x.
inline QImage withMarker(QImage picture, double x)
{
    const double y = picture.height() * 0.5 - 1;
    QPainterPath triangle(QPointF(x, y));
    triangle.lineTo(x - 4, y - 9);
    triangle.lineTo(x + 4, y - 9);
    triangle.closeSubpath();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(triangle, QColor("gray"));
    return picture;
}
