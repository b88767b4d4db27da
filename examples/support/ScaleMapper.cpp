#include "ScaleMapper.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace
{

constexpr int maxDecimals = 6;

} // namespace

ScaleMapper::ScaleMapper(Scale newScale, int newSteps, double min, double max, double defaultValue)
    : scale(newScale)
    , steps(std::max(newSteps, 1))
{
    ScaleMapper::setModelRange(min, max, defaultValue);
}

int ScaleMapper::nOfTics()
{
    return getUIMax() - getUIMin();
}

double ScaleMapper::getModelMax()
{
    return modelMax;
}

double ScaleMapper::getModelMin()
{
    return modelMin;
}

int ScaleMapper::getUIMax()
{
    return limited ? wholeRangePosition(modelDefault) : steps;
}

int ScaleMapper::getUIMin()
{
    return 0;
}

int ScaleMapper::Model2UI(double modelValue)
{
    return std::min(wholeRangePosition(modelValue), getUIMax());
}

double ScaleMapper::UI2Model(int uiValue)
{
    const double editableMax = limited ? modelDefault : modelMax;
    // The ends are given back exactly, whatever the rounding of the steps between.
    if (uiValue <= getUIMin())
        return modelMin;
    if (uiValue >= getUIMax())
        return editableMax;
    const double fraction = static_cast<double>(uiValue) / steps;
    const double value = scale == Scale::Linear
                             ? modelMin + (modelMax - modelMin) * fraction
                             : modelMin * std::pow(modelMax / modelMin, fraction);
    return std::clamp(value, modelMin, editableMax);
}

void ScaleMapper::setModelRange(double min, double max)
{
    setModelRange(min, max, modelDefault);
}

void ScaleMapper::setModelRange(double min, double max, double defaultValue)
{
    const bool isUsable = min < max && (scale == Scale::Linear || min > 0);
    if (!isUsable)
        throw std::runtime_error("Incorrect scaling limits");
    modelMin = min;
    modelMax = max;
    modelDefault = std::clamp(defaultValue, min, max);
}

int ScaleMapper::signifDigits(double modelValue)
{
    const double step = scale == Scale::Linear
                            ? (modelMax - modelMin) / steps
                            : modelValue * (std::pow(modelMax / modelMin, 1.0 / steps) - 1);
    if (!(step > 0))
        return maxDecimals;
    // A hair less, so that a step of exactly 0.01 takes two decimals and not three.
    const double decimals = std::ceil(-std::log10(step) - 1e-9);
    return static_cast<int>(std::clamp(decimals, 0.0, static_cast<double>(maxDecimals)));
}

bool ScaleMapper::isLimitedToSubrange()
{
    return limited;
}

double ScaleMapper::getModelDefault()
{
    return modelDefault;
}

void ScaleMapper::limitToSubrange(bool limit)
{
    limited = limit;
}

double ScaleMapper::exactPosition(double modelValue) const
{
    if (scale == Scale::Linear)
        return (modelValue - modelMin) * steps / (modelMax - modelMin);
    return std::log(modelValue / modelMin) * steps / std::log(modelMax / modelMin);
}

int ScaleMapper::wholeRangePosition(double modelValue) const
{
    const double inRange = std::clamp(modelValue, modelMin, modelMax);
    return static_cast<int>(std::lround(exactPosition(inRange)));
}
