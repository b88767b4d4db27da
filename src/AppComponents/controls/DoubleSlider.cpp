#include <AppComponents/controls/DoubleSlider.h>

#include <QPainter>
#include <QStyleOptionSlider>

#include <AppComponents/controls/ISetTexter.h>

#include "SliderGeometry.h"

namespace
{

QString withTwoDecimals(double value)
{
    return QString::number(value, 'f', 2);
}

} // namespace

DoubleSlider::DoubleSlider(QWidget* parent)
    : QSlider(parent)
    , lastCommittedPosition(value())
{
    connect(this, &QAbstractSlider::actionTriggered, this, &DoubleSlider::actionWasTriggered);
    connect(this, &QAbstractSlider::sliderReleased, this, &DoubleSlider::sliderWasReleased);
    connect(&commitTimer, &QTimer::timeout, this, &DoubleSlider::timerTimeOut);
    connect(this, &QAbstractSlider::rangeChanged, this, &DoubleSlider::sliderRangeChanged);
    scaler.init(0.0, 1.0, minimum(), maximum());
}

DoubleSlider::~DoubleSlider() = default;

void DoubleSlider::setModelRange(double min, double max)
{
    blockSignals(true);
    scaler.init(min, max, minimum(), maximum());
    blockSignals(false);
    setToolTip(QStringLiteral("Min: %1, max: %2").arg(withTwoDecimals(min), withTwoDecimals(max)));
}

void DoubleSlider::setModelRange(double min, double max, double def)
{
    setModelRange(min, max);
    defaultModelValue = def;
    setToolTip(QStringLiteral("Min: %1, max: %2, default: %3")
                   .arg(withTwoDecimals(min), withTwoDecimals(max), withTwoDecimals(def)));
}

double DoubleSlider::getMinModelValue()
{
    return scaler.getModelMin();
}

double DoubleSlider::getMaxModelValue()
{
    return scaler.getModelMax();
}

void DoubleSlider::setModelValue(double value)
{
    setSilently(value);
}

double DoubleSlider::getModelValue()
{
    return scaler.UI2Model(value());
}

void DoubleSlider::setDefaultModelValue(double value)
{
    defaultModelValue = value;
}

double DoubleSlider::getDefaultModelValue()
{
    return defaultModelValue;
}

void DoubleSlider::resetModelValueToDefault()
{
    setSilently(defaultModelValue);
}

void DoubleSlider::setShowDefaultModelValue(bool show)
{
    showDefaultModelValue = show;
}

bool DoubleSlider::getShowDefaultModelValue()
{
    return showDefaultModelValue;
}

void DoubleSlider::setDelay(int milliseconds)
{
    delay = milliseconds;
}

int DoubleSlider::getDelay()
{
    return delay;
}

void DoubleSlider::setModelTickInterval(double interval)
{
    blockSignals(true);
    setTickInterval(scaler.Model2UI(interval));
    blockSignals(false);
}

void DoubleSlider::setModelValueViewer(ISetTexter* newTexter, QString (*format)(double))
{
    viewerFormat = format;
    if (newTexter != texter.get())
        texter.reset(newTexter);
    sliderChange(SliderValueChange);
}

void DoubleSlider::sliderChange(SliderChange change)
{
    QSlider::sliderChange(change);
    if (change != SliderValueChange || !texter)
        return;
    const double modelValue = getModelValue();
    texter->setText(viewerFormat ? viewerFormat(modelValue) : QString::number(modelValue, 'g', 6));
}

void DoubleSlider::actionWasTriggered(int action)
{
    if (action != SliderNoAction)
        commitTimer.start(delay); // starts the wait anew if it is running
}

void DoubleSlider::sliderMoved(int)
{
    if (value() == lastCommittedPosition)
        return;
    if (isSliderDown())
        commitTimer.setInterval(delay);
    else
        sliderWasReleased();
}

void DoubleSlider::sliderRangeChanged(int minValue, int maxValue)
{
    scaler.init(scaler.getModelMin(), scaler.getModelMax(), minValue, maxValue);
}

void DoubleSlider::sliderWasPressed()
{
    lastCommittedPosition = value();
    commitTimer.start(delay);
}

void DoubleSlider::sliderWasReleased()
{
    commitTimer.stop();
    if (value() != lastCommittedPosition)
        commit();
}

void DoubleSlider::timerTimeOut()
{
    if (value() == lastCommittedPosition)
        return;
    commitTimer.stop();
    commit();
}

void DoubleSlider::paintEvent(QPaintEvent* event)
{
    QSlider::paintEvent(event);
    const double min = scaler.getModelMin();
    const double max = scaler.getModelMax();
    const bool isInRange = min <= defaultModelValue && defaultModelValue <= max;
    if (!showDefaultModelValue || min == max || !isInRange)
        return;
    QPainter painter(this);
    drawDefaultMarker(painter, rect(), (defaultModelValue - min) / (max - min));
}

int DoubleSlider::rangeValueToPixelPos(int value) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return sliderValueToPixelPos(*this, option, value);
}

void DoubleSlider::commit()
{
    lastCommittedPosition = value();
    emit modelValueChanged(getModelValue(), lastCommittedPosition);
}

void DoubleSlider::setSilently(double modelValue)
{
    blockSignals(true);
    setValue(scaler.Model2UI(modelValue));
    lastCommittedPosition = value();
    blockSignals(false);
}
