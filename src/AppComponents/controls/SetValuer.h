#pragma once

#include <QString>

#include <AppComponents/controls/ISetValuer.h>

/// Presents a value in a widget of type T, which has the operations of QDoubleSpinBox.
/// The widget is not owned and must outlive every call but the destructor.
template <typename T>
class SetValuer : public ISetValuer
{
public:
    explicit SetValuer(T* presenter)
        : widget(presenter)
    {
    }

    bool blockSignals(bool block) override { return widget->blockSignals(block); }
    void setValue(double value) override { widget->setValue(value); }
    void setDecimals(int decimals) override { widget->setDecimals(decimals); }
    void setRange(double min, double max) override { widget->setRange(min, max); }
    void setToolTip(const QString& toolTip) override { widget->setToolTip(toolTip); }
    double value() override { return widget->value(); }

    virtual T* getWidget() { return widget; }

private:
    T* widget;
};
