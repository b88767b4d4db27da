#include "SpinRow.h"

#include <AppComponents/controls/DoubleSliderView.h>

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>

namespace
{
constexpr int sliderSteps = 500;
constexpr int commitMs = 60; // while the handle is held
} // namespace

SpinRow::SpinRow(const QString& name, const QString& unit, const Range& range, QWidget* parent)
    : QWidget(parent)
    , title(name)
    , spinBox(new QDoubleSpinBox(this))
    , slider(new DoubleSliderView(this))
{
    const QString plainTitle = QString(name).remove(QLatin1Char('&'));
    spinBox->setSuffix(unit);
    spinBox->setAccessibleName(plainTitle);
    spinBox->setKeyboardTracking(false);
    slider->setOrientation(Qt::Horizontal);
    slider->setMinimumSize(70, 26); // leaves the marker of the default room above the groove
    slider->setAccessibleName(plainTitle);
    slider->setDelay(commitMs);
    slider->setTooltipTemplate(tr("%1 … %2, normally %3"));
    slider->setModelValuePresenter(spinBox);
    slider->setMapper(QSharedPointer<ScaleMapper>::create(range.scale, sliderSteps, range.low,
                                                          range.high, range.normal));
    setValue(range.normal);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(slider, 1);
    row->addWidget(spinBox);
    setFocusProxy(spinBox);
    connect(slider, &DoubleSliderView::modelValueChanged, this, &SpinRow::follow);
}

void SpinRow::addTo(QFormLayout* form)
{
    auto* label = new QLabel(title, parentWidget());
    label->setBuddy(spinBox); // the row itself takes no focus
    form->addRow(label, this);
}

void SpinRow::setValue(double value)
{
    slider->setModelValue(value);
    exact = value;
    showExact();
}

// The slider writes the value of its nearest step into the spin box. What holds may lie between.
void SpinRow::showExact()
{
    const QSignalBlocker block(spinBox);
    spinBox->setValue(exact);
    shown = spinBox->value();
}

void SpinRow::follow(double edited)
{
    // A spin box that is only walked through reports its rounded number like an edit.
    const bool isWalkedThrough = edited == shown;
    if (!isWalkedThrough)
        exact = edited;
    showExact();
    if (!isWalkedThrough)
        emit valueChanged(edited);
}
