#pragma once

#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

using Emissions = QList<QList<QVariant>>;

inline Emissions emissionsOf(QSignalSpy& spy)
{
    const Emissions emissions = spy;
    spy.clear();
    return emissions;
}

/// Whether the marker of the default value, less than seven pixels wide here, covers column \p x.
inline bool isMarkedAt(QWidget& slider, double x)
{
    const QImage picture = slider.grab().toImage();
    return picture.pixelColor(static_cast<int>(x), slider.height() / 2 - 7) == QColor("gray");
}
