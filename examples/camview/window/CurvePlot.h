#pragma once

#include <QWidget>

#include <optional>
#include <vector>

/// A small plot of one curve with its title, its last value and its scale. Colours come from the
/// palette, so it follows light and dark.
class CurvePlot : public QWidget
{
    Q_OBJECT

public:
    /// \param plotUnit text behind numbers, such as " ms"
    CurvePlot(const QString& plotTitle, const QString& plotUnit, QWidget* parent = nullptr);

    /// Scales to \p low ... \p high; without a range the plot scales to its values.
    void setRange(double low, double high);

    /// Shows \p newValues from left to right.
    void setValues(std::vector<double> newValues);
    const std::vector<double>& getValues() const { return values; }

    /// What stands beside the title instead of the last value.
    void setCaption(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Scale {
        double low;
        double high;
    };
    Scale scale() const;
    QRectF plotArea() const;
    void paintTexts(QPainter& painter, const Scale& shown) const;
    void paintCurve(QPainter& painter, const Scale& shown) const;
    QString number(double value) const;

    const QString title;
    const QString unit;
    QString caption;
    std::optional<Scale> fixedScale;
    std::vector<double> values;
};
