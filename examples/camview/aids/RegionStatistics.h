#pragma once

#include "RawPicture.h"

/// What the raw samples of a rectangle have in common, in raw levels.
struct RegionStatistics {
    qint64 count = 0; ///< samples; 0 when the rectangle lies outside the picture
    double mean = 0.0;
    double deviation = 0.0; ///< standard deviation of the samples, of whichever colour
    int smallest = 0;
    int largest = 0;
};

/// Measures the part of \p area that lies inside the picture.
RegionStatistics measureRegion(const RawPicture& picture, const QRect& area);
