#include "HistogramBars.h"

#include <algorithm>
#include <cmath>

namespace
{

// Bins below zero are no counts, but must not carry a coordinate beyond what can be drawn.
constexpr double drawableHeight = 1 << 20;

} // namespace

HistogramBars::HistogramBars(int maxValue, int chartHeight, bool isLogarithmic)
    : max(maxValue)
    , scale(isLogarithmic ? chartHeight : static_cast<double>(chartHeight) / maxValue)
    , logarithmic(isLogarithmic)
{
}

int HistogramBars::height(int value) const
{
    if (max <= 0)
        return 0;
    const double exact =
        logarithmic ? std::log(value * 99.0 / max + 1) / std::log(100.0) * scale : value * scale;
    if (std::isnan(exact))
        return 0;
    return static_cast<int>(std::clamp(exact, -drawableHeight, drawableHeight));
}

int wrappingProduct(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

int wrappingSum(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}
