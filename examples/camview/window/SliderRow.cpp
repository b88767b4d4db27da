#include "SliderRow.h"

#include "LabelTexter.h"

#include <AppComponents/controls/DoubleSlider.h>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QToolButton>

namespace
{

constexpr int sliderSteps = 400;
constexpr int commitMs = 30;

QString threeDecimals(double value)
{
    return QString::number(value, 'f', 3);
}

} // namespace

SliderRow::SliderRow(const QString& name, double low, double high, double normal, QWidget* parent)
    : QWidget(parent)
    , title(name)
    , slider(new DoubleSlider(this))
{
    slider->setOrientation(Qt::Horizontal);
    slider->setRange(0, sliderSteps);
    slider->setPageStep(sliderSteps / 20);
    slider->setModelRange(low, high, normal);
    slider->setShowDefaultModelValue(true);
    slider->setDelay(commitMs);
    slider->setMinimumWidth(80);
    slider->setMinimumHeight(26); // leaves the marker of the default room above the groove
    slider->setAccessibleName(QString(name).remove(QLatin1Char('&')));

    auto* valueLabel = new QLabel(this);
    valueLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    valueLabel->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("-000.000")));
    slider->setModelValueViewer(new LabelTexter(valueLabel), threeDecimals);
    slider->resetModelValueToDefault();

    auto* reset = new QToolButton(this);
    reset->setText(QStringLiteral("↺"));
    reset->setAutoRaise(true);
    reset->setFocusPolicy(Qt::TabFocus);
    reset->setToolTip(tr("Back to the default"));
    reset->setAccessibleName(tr("Reset %1").arg(slider->accessibleName()));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(slider, 1);
    row->addWidget(valueLabel);
    row->addWidget(reset);
    setFocusProxy(slider);

    connect(slider, &DoubleSlider::modelValueChanged, this,
            [this](double value) { emit valueChanged(value); });
    connect(reset, &QToolButton::clicked, this, [this] {
        slider->resetModelValueToDefault();
        emit valueChanged(slider->getDefaultModelValue());
    });
}

void SliderRow::addTo(QFormLayout* form)
{
    auto* label = new QLabel(title, parentWidget());
    label->setBuddy(slider); // the row itself takes no focus
    form->addRow(label, this);
}

void SliderRow::setValue(double value)
{
    slider->setModelValue(value);
}

double SliderRow::value() const
{
    return slider->getModelValue();
}
