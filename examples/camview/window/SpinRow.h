#pragma once

#include "support/ScaleMapper.h"

#include <QSharedPointer>
#include <QWidget>

class DoubleSliderView;
class QDoubleSpinBox;
class QFormLayout;

/// A DoubleSliderView with the spin box that presents its value.
class SpinRow : public QWidget
{
    Q_OBJECT

public:
    struct Range {
        ScaleMapper::Scale scale = ScaleMapper::Scale::Linear;
        double low = 0.0;
        double high = 1.0;
        double normal = 0.0;
    };

    /// \param name what the slider sets, with a mnemonic
    /// \param unit  text behind the number, such as " ms"
    SpinRow(const QString& name, const QString& unit, const Range& range,
            QWidget* parent = nullptr);

    /// Adds the row under its title; the title's mnemonic leads to the spin box.
    void addTo(QFormLayout* form);

    /// Moves the handle without announcing it. A value outside the range is limited to it.
    void setValue(double value);
    double value() const { return exact; }
    QDoubleSpinBox* getSpinBox() { return spinBox; }

signals:
    /// The user has set \p value.
    void valueChanged(double value);

private:
    void showExact();
    void follow(double edited);

    const QString title;
    QDoubleSpinBox* spinBox;
    DoubleSliderView* slider;
    double exact = 0.0; ///< the value that holds; the slider knows its nearest step only
    double shown = 0.0; ///< the value as the spin box rounds it
};
