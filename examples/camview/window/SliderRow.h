#pragma once

#include <QWidget>

class DoubleSlider;
class QFormLayout;

/// A DoubleSlider with its value beside it and a button back to the default.
class SliderRow : public QWidget
{
    Q_OBJECT

public:
    /// \param name what the slider sets, with a mnemonic
    SliderRow(const QString& name, double low, double high, double normal,
              QWidget* parent = nullptr);

    /// Adds the row under its title; the title's mnemonic leads to the slider.
    void addTo(QFormLayout* form);

    /// Moves the handle without announcing it.
    void setValue(double value);
    double value() const;
    DoubleSlider* getSlider() { return slider; }

signals:
    /// The user has set \p value.
    void valueChanged(double value);

private:
    const QString title;
    DoubleSlider* slider;
};
