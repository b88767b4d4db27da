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
    auto* areaRow = new QHBoxLayout;
    const QString names[] = {tr("Left"), tr("Top"), tr("Width"), tr("Height")};
    for (int i = 0; i < 4; ++i) {
        edges[i] = new QSpinBox(this);
        edges[i]->setRange(0, 65535);
        edges[i]->setKeyboardTracking(false);
        edges[i]->setAccessibleName(names[i]);
        edges[i]->setToolTip(names[i]);
        areaRow->addWidget(edges[i]);
        connect(edges[i], QOverload<int>::of(&QSpinBox::valueChanged), this, [this] {
            emit areaRequested(
                {edges[0]->value(), edges[1]->value(), edges[2]->value(), edges[3]->value()});
        });
    }
    auto* layout = new QHBoxLayout(this);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    layout->addWidget(profile, 1);
    form->addRow(tr("Pi&xel is"), scaleRow);
    form->addRow(tr("Area &in pixels"), areaRow);
    form->addRow(statistics);
    form->labelForField(scaleRow)->setToolTip(tr("Size of a sensor pixel in the ruler's unit"));
    qobject_cast<QLabel*>(form->labelForField(scaleRow))->setBuddy(scaleBox);
    qobject_cast<QLabel*>(form->labelForField(areaRow))->setBuddy(edges[0]);
    setArea({});

    const auto announceScale = [this] { emit scaleChanged(magnification(), unit()); };
    connect(scaleBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, announceScale);
    connect(unitBox, &QLineEdit::editingFinished, this, announceScale);
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

void MeasurePanel::setArea(const QRect& newArea)
{
    area = newArea;
    const int values[] = {area.x(), area.y(), area.width(), area.height()};
    for (int i = 0; i < 4; ++i) {
        const QSignalBlocker block(edges[i]);
        edges[i]->setValue(values[i]);
        edges[i]->setEnabled(!area.isEmpty());
    }
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
