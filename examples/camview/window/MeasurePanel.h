#pragma once

#include "LivePicture.h"
#include "aids/RawPicture.h"

#include <QLineF>
#include <QWidget>

class CurvePlot;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QSpinBox;

/// What is measured on the raw data: the profile under the ruler, mean and deviation of the
/// measured rectangle. The ruler's scale is set here, too.
class MeasurePanel : public QWidget
{
    Q_OBJECT

public:
    explicit MeasurePanel(QWidget* parent = nullptr);

    void setPicture(const LivePicture& picture);
    /// The ruler's line in picture pixels; null for none.
    void setRuler(const QLineF& line) { ruler = line; }
    /// The measured rectangle in picture pixels; empty for none.
    void setArea(const QRect& newArea);

    double magnification() const;
    QString unit() const;
    void setScale(double unitsPerPixel, const QString& unit);

    QString statisticsText() const;

signals:
    /// Units per sensor pixel, and the unit's text.
    void scaleChanged(double magnification, const QString& unit);
    /// The user has typed another rectangle.
    void areaRequested(const QRect& area);

private:
    void showStatistics(const RawPicture& raw);
    void showProfile(const RawPicture& raw, bool mosaic);

    CurvePlot* profile;
    QDoubleSpinBox* scaleBox;
    QLineEdit* unitBox;
    QSpinBox* edges[4]; ///< x, y, width, height
    QLabel* statistics;
    QLineF ruler;
    QRect area;
};
