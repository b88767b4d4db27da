#include "StatusPanel.h"

#include "aids/RawPicture.h"

#include <QLabel>
#include <QStatusBar>

namespace
{

/// The first sensor pixel that the picture's pixel shows.
QPoint onSensor(const QPoint& pixel, const _FrameParams& params)
{
    QPoint distance = pixel * params.decimation;
    if (params.mirrorH)
        distance.setX(params.width - params.decimation - distance.x());
    if (params.mirrorV)
        distance.setY(params.height - params.decimation - distance.y());
    return QPoint(params.posX, params.posY) + distance;
}

} // namespace

StatusPanel::StatusPanel(QStatusBar& statusBar)
    : QObject(&statusBar)
    , bar(statusBar)
    , counters(addPiece(tr("Frames"), QString()))
    , pixel(addPiece(tr("Pixel under the pointer"), QStringLiteral("raw 4095  rgb 255 255 255")))
    , pinned(addPiece(tr("Picked colour"), QStringLiteral("██ #ffffff")))
    , position(addPiece(tr("Sensor position"), QStringLiteral("x 99999  y 99999")))
    , zoomLabel(addPiece(tr("Zoom"), QStringLiteral("2000 %")))
    , rate(addPiece(tr("Shown frames per second"), QStringLiteral("999.9 fps")))
{
    counters->setToolTip(tr("Frames received, processed, shown, recorded, dropped, incomplete"));
    // The longest piece gives way to messages, which would otherwise be cut to what it leaves.
    bar.addWidget(counters);
    for (QLabel* label : {pixel, pinned, position, zoomLabel, rate})
        bar.addPermanentWidget(label);
    pinned->setToolTip(tr("The colour where the mouse button was released last"));
}

QLabel* StatusPanel::addPiece(const QString& name, const QString& widest)
{
    auto* label = new QLabel(&bar);
    label->setAccessibleName(name);
    label->setToolTip(name);
    // A fixed width keeps the bar from jumping with every digit.
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
    return label;
}

void StatusPanel::showCounters(const SessionCounters& now)
{
    counters->setText(countersText(now));
}

QString StatusPanel::countersText(const SessionCounters& now)
{
    return tr("received %1  processed %2  shown %3  recorded %4  dropped %5  lost %6  incomplete "
              "%7")
        .arg(now.received)
        .arg(now.processed)
        .arg(now.shown)
        .arg(now.recorded)
        .arg(now.dropped)
        .arg(now.camera.lost)
        .arg(now.camera.incomplete);
}

void StatusPanel::showPixel(const QPoint& point, const LivePicture* picture)
{
    const bool inside =
        picture != nullptr && picture->image && picture->image->rect().contains(point);
    if (!inside) {
        pixel->clear();
        position->clear();
        return;
    }
    const RawPicture raw(picture->raw, picture->flippedH, picture->flippedV);
    const QColor color = picture->image->pixelColor(point);
    pixel->setText(tr("raw %1  rgb %2 %3 %4")
                       .arg(raw.sample(point.x(), point.y()))
                       .arg(color.red())
                       .arg(color.green())
                       .arg(color.blue()));
    const QPoint sensor = onSensor(point, picture->params);
    position->setText(tr("x %1  y %2").arg(sensor.x()).arg(sensor.y()));
}

void StatusPanel::showFrameRate(float framesPerSecond)
{
    rate->setText(tr("%1 fps").arg(static_cast<double>(framesPerSecond), 0, 'f', 1));
}

void StatusPanel::showZoom(float zoom)
{
    zoomLabel->setText(tr("%1 %").arg(static_cast<double>(zoom) * 100.0, 0, 'f', 0));
}

void StatusPanel::showPinnedColor(const QColor& color)
{
    if (!color.isValid())
        pinned->clear();
    else
        pinned->setText(QStringLiteral("<span style='color:%1'>██</span> %1").arg(color.name()));
}

QString StatusPanel::text() const
{
    QStringList pieces;
    for (const QLabel* label : {counters, pixel, pinned, position, zoomLabel, rate})
        pieces << label->text();
    return pieces.join(QStringLiteral(" | "));
}
