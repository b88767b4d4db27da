#pragma once

#include <QMetaType>

/// A camera viewport: the region of the sensor that the camera reads out, in sensor pixels.
struct ViewPort {
    int startX = 0;
    int startY = 0;
    int width = 0;
    int height = 0;
};

inline bool operator==(const ViewPort& a, const ViewPort& b)
{
    return a.startX == b.startX && a.startY == b.startY && a.width == b.width &&
           a.height == b.height;
}

inline bool operator!=(const ViewPort& a, const ViewPort& b)
{
    return !(a == b);
}

Q_DECLARE_METATYPE(ViewPort)
