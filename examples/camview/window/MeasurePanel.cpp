#include "MeasurePanel.h"

#include "CurvePlot.h"
#include "aids/LineProfile.h"
#include "aids/RegionStatistics.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include <algorithm>
#include <numeric>

MeasurePanel::MeasurePanel(QWidget* parent)
    : QWidget(parent)
    , profile(new CurvePlot(tr("Profile under the ruler"), {}, this))
    , scaleBox(new QDoubleSpinBox(this))
    , unitBox(new QLineEdit(QStringLiteral("pix"), this))
    , statistics(new QLabel(this))
{
    scaleBox->setDecimals(5);
    scaleBox->setRange(0.00001, 1000000.0);
    scaleBox->setValue(1.0);
    scaleBox->setKeyboardTracking(false);
    scaleBox->setAccessibleName(tr("Units per sensor pixel"));
    unitBox->setMaximumWidth(70);
    unitBox->setAccessibleName(tr("Unit"));
    statistics->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* scaleRow = new QHBoxLayout;
    scaleRow->addWidget(scaleBox, 1);
    scaleRow->addWidget(unitBox);
    QLayout* rulerRow = pixelRow(ends, {tr("Ruler's start, x"), tr("Ruler's start, y"),
                                        tr("Ruler's end, x"), tr("Ruler's end, y")});
    QLayout* areaRow = pixelRow(edges, {tr("Left"), tr("Top"), tr("Width"), tr("Height")});
    for (QSpinBox* box : ends)
        connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &MeasurePanel::requestRuler);
    for (QSpinBox* box : edges)
        connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, &MeasurePanel::requestArea);
    auto* layout = new QHBoxLayout(this);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    layout->addWidget(profile, 1);
    form->addRow(tr("Pi&xel is"), scaleRow);
    form->addRow(tr("R&uler from, to"), rulerRow);
    form->addRow(tr("Area &in pixels"), areaRow);
    form->addRow(statistics);
    form->labelForField(scaleRow)->setToolTip(tr("Size of a sensor pixel in the ruler's unit"));
    qobject_cast<QLabel*>(form->labelForField(scaleRow))->setBuddy(scaleBox);
    qobject_cast<QLabel*>(form->labelForField(rulerRow))->setBuddy(ends[0]);
    qobject_cast<QLabel*>(form->labelForField(areaRow))->setBuddy(edges[0]);
    setRulerShown(false);
    setArea({});

    const auto announceScale = [this] { emit scaleChanged(magnification(), unit()); };
    connect(scaleBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, announceScale);
    connect(unitBox, &QLineEdit::editingFinished, this, announceScale);
}

QLayout* MeasurePanel::pixelRow(Quad& boxes, const std::array<QString, 4>& names)
{
    auto* row = new QHBoxLayout;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        boxes[i] = new QSpinBox(this);
        boxes[i]->setRange(0, 65535);
        boxes[i]->setKeyboardTracking(false);
        boxes[i]->setAccessibleName(names[i]);
        boxes[i]->setToolTip(names[i]);
        row->addWidget(boxes[i]);
    }
    return row;
}

void MeasurePanel::showIn(const Quad& boxes, const std::array<int, 4>& values)
{
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const QSignalBlocker block(boxes[i]);
        boxes[i]->setValue(values[i]);
    }
}

void MeasurePanel::enable(const Quad& boxes, bool enabled)
{
    for (QSpinBox* box : boxes)
        box->setEnabled(enabled);
}

void MeasurePanel::requestArea()
{
    emit areaRequested(
        {edges[0]->value(), edges[1]->value(), edges[2]->value(), edges[3]->value()});
}

void MeasurePanel::requestRuler()
{
    emit rulerRequested(
        QLine(ends[0]->value(), ends[1]->value(), ends[2]->value(), ends[3]->value()));
}

double MeasurePanel::magnification() const
{
    return scaleBox->value();
}

QString MeasurePanel::unit() const
{
    return unitBox->text();
}

void MeasurePanel::setScale(double unitsPerPixel, const QString& unit)
{
    const QSignalBlocker block(scaleBox);
    scaleBox->setValue(unitsPerPixel);
    unitBox->setText(unit);
    emit scaleChanged(magnification(), unit);
}

void MeasurePanel::setRuler(const QLineF& line)
{
    ruler = line;
    const QLine nearest = line.toLine();
    showIn(ends, {nearest.x1(), nearest.y1(), nearest.x2(), nearest.y2()});
}

void MeasurePanel::setRulerShown(bool shown)
{
    enable(ends, shown);
}

void MeasurePanel::setArea(const QRect& newArea)
{
    area = newArea;
    showIn(edges, {area.x(), area.y(), area.width(), area.height()});
    enable(edges, !area.isEmpty());
    if (area.isEmpty())
        statistics->setText(tr("Show the measured area to see its mean and deviation."));
}

QString MeasurePanel::statisticsText() const
{
    return statistics->text();
}

void MeasurePanel::setPicture(const LivePicture& picture)
{
    const RawPicture raw(picture.raw, picture.flippedH, picture.flippedV);
    showStatistics(raw);
    showProfile(raw, picture.mosaic);
}

void MeasurePanel::showStatistics(const RawPicture& raw)
{
    if (area.isEmpty())
        return;
    const RegionStatistics result = measureRegion(raw, area);
    statistics->setText(tr("mean %1   deviation %2   min %3   max %4")
                            .arg(result.mean, 0, 'f', 2)
                            .arg(result.deviation, 0, 'f', 2)
                            .arg(result.smallest)
                            .arg(result.largest));
}

void MeasurePanel::showProfile(const RawPicture& raw, bool mosaic)
{
    std::vector<double> levels;
    if (!ruler.isNull())
        levels = lineProfile(raw, ruler, mosaic);
    if (levels.empty()) {
        profile->setValues({});
        return;
    }
    const double mean =
        std::accumulate(levels.begin(), levels.end(), 0.0) / static_cast<double>(levels.size());
    profile->setCaption(
        tr("%1 points, mean %2").arg(levels.size()).arg(QString::number(mean, 'f', 1)));
    profile->setRange(0.0, raw.fullScale());
    profile->setValues(std::move(levels));
}
