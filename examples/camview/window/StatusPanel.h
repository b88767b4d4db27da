#pragma once

#include "LivePicture.h"
#include "core/LiveSession.h"

#include <QColor>
#include <QObject>
#include <QPoint>
#include <QPointF>

class QLabel;
class QStatusBar;

/// The pieces of the status bar.
class StatusPanel : public QObject
{
    Q_OBJECT

public:
    explicit StatusPanel(QStatusBar& bar);

    void showCounters(const SessionCounters& counters);
    /// The pixel under the pointer of the newest picture, and where it lies on the sensor;
    /// (-1, -1) clears.
    void showPixel(const QPoint& pixel, const LivePicture* picture);

    static QString countersText(const SessionCounters& counters);
    QString text() const; ///< everything shown, for tests and for people who cannot see the bar

public slots:
    void showFrameRate(float framesPerSecond);
    void showZoom(float zoom);
    void showPinnedColor(const QColor& color);

private:
    QLabel* addPiece(const QString& name, const QString& widest);

    QStatusBar& bar;
    QLabel* counters;
    QLabel* pixel;
    QLabel* pinned;
    QLabel* position;
    QLabel* zoomLabel;
    QLabel* rate;
};
