#include <AppComponents/controls/DoubleSliderView.h>

#include <stdexcept>
#include <utility>

#include <QDoubleSpinBox>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyleOptionSlider>
#include <QTimerEvent>
#include <QWheelEvent>

#include <AppComponents/controls/IModelViewSubrangeMapper.h>
#include <AppComponents/controls/SetValuer.h>

#include "SliderGeometry.h"

namespace
{

/// Keeps the signals of a presenter blocked and restores their previous state.
class ValuerBlocker
{
public:
    explicit ValuerBlocker(ISetValuer& blocked)
        : valuer(blocked)
        , wasBlocked(blocked.blockSignals(true))
    {
    }
    ~ValuerBlocker() { valuer.blockSignals(wasBlocked); }
    ValuerBlocker(const ValuerBlocker&) = delete;
    ValuerBlocker& operator=(const ValuerBlocker&) = delete;

private:
    ISetValuer& valuer;
    bool wasBlocked;
};

} // namespace

DoubleSliderView::DoubleSliderView(QWidget* parent)
    : QSlider(parent)
    , lastCommittedPosition(value())
{
    setTracking(false);
    connect(this, &QAbstractSlider::sliderReleased, this, &DoubleSliderView::sliderWasReleased);
    connect(this, &QAbstractSlider::sliderMoved, this, &DoubleSliderView::sliderWasMoved);
    connect(this, &QAbstractSlider::sliderPressed, this, &DoubleSliderView::sliderWasPressed);
}

DoubleSliderView::~DoubleSliderView() = default;

void DoubleSliderView::setMapper(QSharedPointer<IModelViewSubrangeMapper> newMapper)
{
    mapper = std::move(newMapper);
    if (!mapper)
        return;
    const QSignalBlocker silent(this);
    resetSlider();
    // Setters never announce. Emitted all the same, the mapper sees the calls of any other change.
    emit modelValueChanged(getModelValue());
}

void DoubleSliderView::setModelValuePresenter(QWidget* widget)
{
    auto* const spinBox = qobject_cast<QDoubleSpinBox*>(widget);
    if (!spinBox)
        throw std::runtime_error("DoubleSliderView - not appropriate QWidget provided");
    valuer = std::make_unique<SetValuer<QDoubleSpinBox>>(spinBox);
    presenter = spinBox;
    connect(spinBox, &QAbstractSpinBox::editingFinished, this,
            &DoubleSliderView::valuerEditingFinished);
    setPresentersValue();
}

void DoubleSliderView::setModelRange(double min, double max)
{
    if (!mapper)
        return;
    {
        const QSignalBlocker silent(this);
        mapper->setModelRange(min, max);
        resetSlider();
        emit modelValueChanged(getModelValue());
    }
    resetValuer();
}

void DoubleSliderView::setModelRange(double min, double max, double def)
{
    if (!mapper)
        return;
    if (min == getMinModelValue() && max == getMaxModelValue() && def == getDefaultModelValue())
        return;
    const double previous = getModelValue();
    {
        const QSignalBlocker silent(this);
        mapper->setModelRange(min, max, def);
        resetSlider();
        const double current = getModelValue();
        if (current != previous)
            emit modelValueChanged(current);
    }
    resetValuer();
}

void DoubleSliderView::setModelValue(double value)
{
    if (!mapper || getModelValue() == value)
        return;
    const QSignalBlocker silent(this);
    setValue(mapper->Model2UI(value));
    lastCommittedPosition = this->value();
    setPresentersValue();
}

double DoubleSliderView::getModelValue()
{
    return mapper ? mapper->UI2Model(value()) : 0.0;
}

double DoubleSliderView::getMinModelValue()
{
    return mapper ? mapper->getModelMin() : 0.0;
}

double DoubleSliderView::getMaxModelValue()
{
    return mapper ? mapper->getModelMax() : 0.0;
}

double DoubleSliderView::getDefaultModelValue()
{
    return mapper ? mapper->getModelDefault() : 0.0;
}

void DoubleSliderView::resetModelValueToDefault()
{
    if (mapper)
        setModelValue(mapper->getModelDefault());
}

void DoubleSliderView::limitToSubrange(bool limit)
{
    if (!mapper || limit == limited)
        return;
    limited = limit;
    resetSlider();
}

void DoubleSliderView::setShowDefaultModelValue(bool show)
{
    showDefaultModelValue = show;
}

bool DoubleSliderView::getShowDefaultModelValue()
{
    return showDefaultModelValue;
}

void DoubleSliderView::setDelay(int milliseconds)
{
    delay = milliseconds;
}

int DoubleSliderView::getDelay()
{
    return delay;
}

void DoubleSliderView::setTooltipTemplate(QString newTemplate)
{
    tooltipTemplate = std::move(newTemplate);
}

void DoubleSliderView::changeToolip()
{
    if (!mapper)
        return;
    const auto text = [this](double modelValue) {
        return QString::number(modelValue, 'f', mapper->signifDigits(modelValue));
    };
    // The mapper is asked in this order, which a list of arguments would leave open.
    const QString def = text(getDefaultModelValue());
    const QString max = text(getMaxModelValue());
    const QString min = text(getMinModelValue());
    const QString toolTip =
        tooltipTemplate.isEmpty() ? QString() : tooltipTemplate.arg(min, max, def);
    setToolTip(toolTip);
    if (ISetValuer* const shown = liveValuer()) {
        const ValuerBlocker silent(*shown);
        shown->setToolTip(toolTip);
    }
}

void DoubleSliderView::resetSlider()
{
    if (!mapper)
        return;
    mapper->limitToSubrange(limited);
    setTickInterval(1);
    setPageStep(limited ? 1 : 2);
    const double modelValue = getModelValue();
    {
        const QSignalBlocker silent(this);
        const int uiMin = mapper->getUIMin();
        setRange(uiMin, mapper->getUIMax());
        if (ISetValuer* const shown = liveValuer()) {
            const ValuerBlocker valuerSilent(*shown);
            const double modelMin = mapper->getModelMin();
            shown->setRange(modelMin, mapper->getModelMax());
        }
    }
    changeToolip();
    setModelValue(modelValue);
    resetValuer();
    // The range just set may have limited what the presenter shows.
    setPresentersValue();
}

void DoubleSliderView::resetValuer()
{
    ISetValuer* const shown = liveValuer();
    if (!mapper || !shown)
        return;
    const ValuerBlocker silent(*shown);
    shown->setDecimals(mapper->signifDigits(getModelValue()));
    const double modelMin = mapper->getModelMin();
    shown->setRange(modelMin, maxEditableValue());
}

void DoubleSliderView::sliderChange(SliderChange change)
{
    QSlider::sliderChange(change);
    if (change != SliderValueChange)
        return;
    const double modelValue = getModelValue();
    lastCommittedPosition = value();
    setPresentersValue();
    emit modelValueChanged(modelValue);
}

void DoubleSliderView::sliderWasPressed()
{
    lastCommittedPosition = value();
    commitTimer.start(delay, this);
}

void DoubleSliderView::sliderWasReleased()
{
    commitTimer.stop();
}

void DoubleSliderView::sliderWasMoved(int position)
{
    setPresentersValue(position);
}

void DoubleSliderView::valuerEditingFinished()
{
    ISetValuer* const edited = liveValuer();
    if (!edited)
        return;
    const double typed = edited->value();
    setModelValue(typed);
    emit modelValueChanged(typed);

    // Losing the focus, the spin box would report the same edit once more.
    if (ISetValuer* const shown = liveValuer()) {
        const ValuerBlocker silent(*shown);
        setFocus(Qt::OtherFocusReason);
    }
}

void DoubleSliderView::raiseModelValueChanged()
{
    if (sliderPosition() == lastCommittedPosition)
        return;
    setValue(sliderPosition());
    lastCommittedPosition = value();
    if (!signalsBlocked())
        emit modelValueChanged(getModelValue());
}

void DoubleSliderView::setPresentersValue(int position)
{
    ISetValuer* const shown = liveValuer();
    if (!mapper || !shown)
        return;
    const double modelValue = mapper->UI2Model(position);
    const ValuerBlocker silent(*shown);
    shown->setDecimals(mapper->signifDigits(modelValue));
    shown->setValue(modelValue);
}

void DoubleSliderView::setPresentersValue()
{
    setPresentersValue(value());
}

int DoubleSliderView::rangeValueToPixelPos(int value) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return sliderValueToPixelPos(*this, option, value);
}

void DoubleSliderView::paintEvent(QPaintEvent* event)
{
    QSlider::paintEvent(event);
    if (!showDefaultModelValue || !mapper)
        return;
    const double lo = mapper->getModelMin();
    const double hi = maxEditableValue();
    const double def = mapper->getModelDefault();
    const bool isInRange = lo <= def && def <= hi;
    if (lo == hi || !isInRange)
        return;
    const double position = mapper->Model2UI(def);
    const double uiMin = mapper->getUIMin();
    const double uiMax = mapper->getUIMax();
    if (uiMin == uiMax)
        return;
    QPainter painter(this);
    drawDefaultMarker(painter, rect(), (position - uiMin) / (uiMax - uiMin));
}

void DoubleSliderView::timerEvent(QTimerEvent* event)
{
    QSlider::timerEvent(event);
    if (event->timerId() == commitTimer.timerId())
        raiseModelValueChanged();
}

void DoubleSliderView::wheelEvent(QWheelEvent* event)
{
    QSlider::wheelEvent(event);
    event->accept();
}

/// The presenter's adaptor, null without a presenter or when the spin box is gone.
ISetValuer* DoubleSliderView::liveValuer() const
{
    return presenter ? valuer.get() : nullptr;
}

double DoubleSliderView::maxEditableValue() const
{
    return limited ? mapper->getModelDefault() : mapper->getModelMax();
}
