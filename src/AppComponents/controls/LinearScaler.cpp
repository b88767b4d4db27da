#include <AppComponents/controls/LinearScaler.h>

#include <cmath>
#include <stdexcept>

void LinearScaler::init(double newModelMin, double newModelMax, int newUIMin, int newUIMax)
{
    modelMin = newModelMin;
    modelMax = newModelMax;
    uiMin = newUIMin;
    uiMax = newUIMax;
    if (modelMin == modelMax || uiMin == uiMax)
        throw std::runtime_error("Incorrect scaling limits");

    modelOrigin = modelMin;
    modelSpan = modelMax - modelMin;
    uiOrigin = uiMin;
    uiSpan = static_cast<double>(uiMax) - uiMin;
}

int LinearScaler::nOfTics()
{
    return static_cast<int>(static_cast<unsigned>(uiMax) - static_cast<unsigned>(uiMin));
}

double LinearScaler::getModelMax()
{
    return modelMax;
}

double LinearScaler::getModelMin()
{
    return modelMin;
}

int LinearScaler::getUIMax()
{
    return uiMax;
}

int LinearScaler::getUIMin()
{
    return uiMin;
}

int LinearScaler::Model2UI(double modelValue)
{
    // Multiplied before divided: a stored step of 1/99 would turn an exact half such as
    // 0.5 * 99 into a little less and round it the wrong way.
    const double exact = (modelValue - modelOrigin) * uiSpan / modelSpan + uiOrigin;
    const double rounded = exact < 0 ? std::ceil(exact - 0.5) : std::floor(exact + 0.5);
    const double limited = rounded > uiMax ? uiMax : rounded;
    return limited >= uiMin ? static_cast<int>(limited) : uiMin;
}

double LinearScaler::UI2Model(int uiValue)
{
    const double scale = modelSpan / uiSpan;
    const double offset = modelOrigin - uiOrigin * scale;
    const double exact = uiValue * scale + offset;
    const double limited = exact > modelMax ? modelMax : exact;
    return modelMin > limited ? modelMin : limited;
}

void LinearScaler::setModelRange(double min, double max)
{
    init(min, max, uiMin, uiMax);
}

int LinearScaler::signifDigits(double)
{
    return 2;
}
