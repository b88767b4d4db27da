#pragma once

#include <AppComponents/AppComponentsExport.h>

class QString;

/// A place that shows a ready-formatted value, such as a label. DoubleSlider owns its texter.
class APPCOMPONENTS_EXPORT ISetTexter
{
public:
    virtual ~ISetTexter();

    /// Blocks or unblocks the signals of the shown widget and returns the previous state. The
    /// library never calls it; without an implementation nothing is blocked.
    virtual bool blockSignals(bool block);
    virtual void setText(const QString& text) = 0;
};
