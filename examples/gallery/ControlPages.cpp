#include "../support/ScaleMapper.h"
#include "Gallery.h"

#include <AppComponents/controls/DoubleSlider.h>
#include <AppComponents/controls/DoubleSliderView.h>
#include <AppComponents/controls/ISetTexter.h>

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>

namespace
{

class LabelTexter : public ISetTexter
{
public:
    explicit LabelTexter(QLabel* shownLabel)
        : label(shownLabel)
    {
    }
    void setText(const QString& text) override { label->setText(text); }

private:
    QLabel* label; ///< not owned
};

struct Row {
    std::unique_ptr<QWidget> widget = std::make_unique<QWidget>();
    QHBoxLayout* layout = new QHBoxLayout(widget.get());

    explicit Row(const QString& title)
    {
        widget->resize(420, 60);
        layout->addWidget(new QLabel(title));
    }
};

QString percent(double value)
{
    return QString::number(value * 100, 'f', 0) + QLatin1Char('%');
}

std::unique_ptr<QWidget> createSlider(bool showMarker)
{
    Row row(QStringLiteral("Brightness"));
    auto* const slider = new DoubleSlider;
    auto* const text = new QLabel;
    text->setMinimumWidth(50);
    row.layout->addWidget(slider, 1);
    row.layout->addWidget(text);
    slider->setOrientation(Qt::Horizontal);
    slider->setModelRange(-1.0, 1.0, 0.25);
    slider->setShowDefaultModelValue(showMarker);
    slider->setModelValueViewer(new LabelTexter(text), percent);
    slider->setModelValue(-0.4);
    return std::move(row.widget);
}

std::unique_ptr<QWidget> createPlainSlider()
{
    return createSlider(false);
}

std::unique_ptr<QWidget> createMarkedSlider()
{
    return createSlider(true);
}

std::unique_ptr<QWidget> createView(const QString& title, const QSharedPointer<ScaleMapper>& mapper,
                                    double value, bool isLimited)
{
    Row row(title);
    auto* const slider = new DoubleSliderView;
    auto* const spinBox = new QDoubleSpinBox;
    spinBox->setMinimumWidth(110);
    row.layout->addWidget(slider, 1);
    row.layout->addWidget(spinBox);
    slider->setOrientation(Qt::Horizontal);
    slider->setTooltipTemplate(QStringLiteral("%1 to %2, as a rule %3"));
    slider->setModelValuePresenter(spinBox);
    slider->setMapper(mapper);
    slider->limitToSubrange(isLimited);
    slider->setModelValue(value);
    return std::move(row.widget);
}

std::unique_ptr<QWidget> createLinearView(bool isLimited)
{
    const auto mapper =
        QSharedPointer<ScaleMapper>::create(ScaleMapper::Scale::Linear, 200, 0.0, 4.0, 1.0);
    return createView(QStringLiteral("Gamma"), mapper, 0.6, isLimited);
}

std::unique_ptr<QWidget> createLogarithmicView(bool isLimited)
{
    const auto mapper =
        QSharedPointer<ScaleMapper>::create(ScaleMapper::Scale::Logarithmic, 300, 0.1, 1000, 40.0);
    return createView(QStringLiteral("Exposure, ms"), mapper, 5.0, isLimited);
}

} // namespace

Pages controlPages()
{
    return {
        {QStringLiteral("slider"), createPlainSlider, nullptr},
        {QStringLiteral("slider-marker"), createMarkedSlider, nullptr},
        {QStringLiteral("slider-view-linear"), [] { return createLinearView(false); }, nullptr},
        {QStringLiteral("slider-view-linear-limited"), [] { return createLinearView(true); },
         nullptr},
        {QStringLiteral("slider-view-log"), [] { return createLogarithmicView(false); }, nullptr},
        {QStringLiteral("slider-view-log-limited"), [] { return createLogarithmicView(true); },
         nullptr},
    };
}
