#pragma once

#include "LivePicture.h"
#include "aids/RawPicture.h"

#include <QLineF>
#include <QWidget>

#include <array>

class CurvePlot;
class QDoubleSpinBox;
class QLabel;
class QLayout;
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
    void setRuler(const QLineF& line);
    /// Whether there is a ruler to move; its ends may lie on one another.
    void setRulerShown(bool shown);
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
    /// The user has typed other ends of the ruler.
    void rulerRequested(const QLineF& line);

private:
    using Quad = std::array<QSpinBox*, 4>;

    QLayout* pixelRow(Quad& boxes, const std::array<QString, 4>& names);
    static void showIn(const Quad& boxes, const std::array<int, 4>& values);
    static void enable(const Quad& boxes, bool enabled);
    void requestArea();
    void requestRuler();
    void showStatistics(const RawPicture& raw);
    void showProfile(const RawPicture& raw, bool mosaic);

    CurvePlot* profile;
    QDoubleSpinBox* scaleBox;
    QLineEdit* unitBox;
    Quad edges; ///< x, y, width, height
    Quad ends;  ///< x and y of the ruler's start, then of its end
    QLabel* statistics;
    QLineF ruler;
    QRect area;
};
