#pragma once

#include <AppComponents/AppComponentsExport.h>

class QString;

/// A spin-box-like place that shows a number and lets the user edit it.
class APPCOMPONENTS_EXPORT ISetValuer
{
public:
    virtual ~ISetValuer();

    /// Blocks or unblocks the signals of the presented widget and returns the previous state.
    virtual bool blockSignals(bool block) = 0;
    virtual void setValue(double value) = 0;
    virtual void setDecimals(int decimals) = 0;
    virtual void setRange(double min, double max) = 0;
    virtual void setToolTip(const QString& toolTip) = 0;
    virtual double value() = 0;
};
