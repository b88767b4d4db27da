#pragma once

#include <QColor>

/// Colour of the ranges below and above the data of a histogram.
constexpr QRgb emptyRangeShade = qRgb(223, 228, 234);

/// Pixel heights of histogram bars, the tallest of which is as high as the chart.
class HistogramBars
{
public:
    /// \p max is the largest bin value, \p chartHeight is in pixels.
    HistogramBars(int max, int chartHeight, bool isLogarithmic);

    /// Height of the bar of \p value in whole pixels, truncated; 0 if the largest value is not
    /// positive.
    int height(int value) const;

private:
    int max;
    double scale;
    bool logarithmic;
};

/// Product of two 32-bit values that wraps around.
int wrappingProduct(int a, int b);
/// Sum of two 32-bit values that wraps around.
int wrappingSum(int a, int b);
