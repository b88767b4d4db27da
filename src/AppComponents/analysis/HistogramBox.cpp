#include <AppComponents/analysis/HistogramBox.h>

#include <QCheckBox>
#include <QLayout>
#include <QLineEdit>
#include <QPainter>

#include "HistogramBoxForm.h"
#include "HistogramProcessedWidget.h"
#include "HistogramRawWidget.h"

namespace
{

constexpr int narrowWidth = 256;
constexpr int wideWidth = 1024;
constexpr int readOutsWidth = 130;
constexpr int smallestFont = 6;

void write(const HistogramBoxForm::ReadOuts& readOuts, int low, int high, int range, double avg)
{
    readOuts.min->setText(QString::number(low));
    readOuts.max->setText(QString::number(high));
    readOuts.range->setText(QString::number(range));
    readOuts.average->setText(QString::number(avg, 'f', 1));
}

void setFontSize(QWidget& box, int points)
{
    // One by one, because children of a widget with a style sheet inherit no font.
    for (QWidget* const child : box.findChildren<QWidget*>()) {
        QFont font = child->font();
        font.setPointSize(points);
        child->setFont(font);
    }
    box.layout()->invalidate();
    box.layout()->activate();
}

/// A large font would push the histograms over the edge of the box, whose width is fixed.
void fitFont(QWidget& box)
{
    for (int points = box.font().pointSize() - 1; points >= smallestFont; --points) {
        if (box.layout()->minimumSize().width() <= box.width())
            return;
        setFontSize(box, points);
    }
}

void clear(const HistogramBoxForm::ReadOuts& readOuts)
{
    for (QLineEdit* const field : {readOuts.min, readOuts.max, readOuts.range, readOuts.average})
        field->setText(QString());
}

} // namespace

HistogramBox::HistogramBox(QWidget* parent)
    : QWidget(parent)
    , form(std::make_unique<HistogramBoxForm>(*this))
    , histogramSize(narrowWidth)
{
    togleHistSize(histogramSize);
    fitFont(*this);
    connect(form->cbLogarithmic, &QCheckBox::clicked, form->wgtHistogram,
            &HistogramRawWidget::setLogarithmic);
    connect(form->cbLogarithmic, &QCheckBox::clicked, form->wgtProcessedHistogram,
            &HistogramProcessedWidget::setLogarithmic);
    for (QCheckBox* const channel : {form->chR, form->chG, form->chB})
        connect(channel, &QCheckBox::clicked, this, &HistogramBox::onSetColorHistVisibility);
}

HistogramBox::~HistogramBox() = default;

void HistogramBox::previewHistogram(int size, int* h, int* h1, int* h2, int* h3)
{
    if (size != histogramSize) {
        histogramSize = size;
        togleHistSize(size);
    }
    form->wgtHistogram->setHistogramData(size, h);
    form->wgtProcessedHistogram->setHistogramData(size, h1, h2, h3);
    enableChannelSwitches(form->wgtProcessedHistogram->isColor());
    form->wgtHistogram->update();
    form->wgtProcessedHistogram->update();
}

void HistogramBox::clearHistogram()
{
    form->wgtHistogram->clearData();
    form->wgtProcessedHistogram->clearData();
    form->wgtHistogram->update();
    form->wgtProcessedHistogram->update();
    clear(form->raw);
    clear(form->processed);
    enableChannelSwitches(false);
}

void HistogramBox::paintEvent(QPaintEvent*)
{
    // The processed histogram combines with what lies beneath it by AND, so only on white do its
    // colours come out, whatever the palette.
    QPainter(this).fillRect(form->wgtProcessedHistogram->geometry(), Qt::white);
}

void HistogramBox::on_wgtHistogram_dataBoundsChange(int lowZeroBound, int hiZeroBound, int range,
                                                    double avg)
{
    write(form->raw, lowZeroBound, hiZeroBound, range, avg);
}

void HistogramBox::on_wgtProcessedHistogram_dataBoundsChange(int lowZeroBound, int hiZeroBound,
                                                             int range, double avg)
{
    write(form->processed, lowZeroBound, hiZeroBound, range, avg);
}

void HistogramBox::onSetColorHistVisibility()
{
    form->wgtProcessedHistogram->setChanelVisibility(form->chR->isChecked(), form->chG->isChecked(),
                                                     form->chB->isChecked());
}

void HistogramBox::togleHistSize(int size)
{
    const int histogramWidth = size <= narrowWidth ? narrowWidth : wideWidth;
    // The painters first, so that the layout knows them when the box takes its new width.
    form->wgtHistogram->setFixedWidth(histogramWidth);
    form->wgtProcessedHistogram->setFixedWidth(histogramWidth);
    setFixedWidth(histogramWidth + readOutsWidth);
    emit requiredWidth(histogramWidth);
}

void HistogramBox::enableChannelSwitches(bool enable)
{
    for (QCheckBox* const channel : {form->chR, form->chG, form->chB})
        channel->setEnabled(enable);
}
