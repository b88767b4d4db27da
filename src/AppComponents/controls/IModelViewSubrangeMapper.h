#pragma once

#include <AppComponents/controls/IModelViewMapper.h>

/// A mapper whose model range has a default value and can be limited to the sub-range from its
/// minimum to that default.
///
/// After limitToSubrange() the UI range is the one that a slider is to take, and Model2UI() and
/// UI2Model() map between it and the model values that can be edited in the current mode.
/// getModelMin() and getModelMax() always tell the full range.
class APPCOMPONENTS_EXPORT IModelViewSubrangeMapper : public IModelViewMapper
{
public:
    ~IModelViewSubrangeMapper() override;

    using IModelViewMapper::setModelRange;

    /// Whether the mapper is limited to its sub-range. The library never asks; without an
    /// implementation the answer is false.
    virtual bool isLimitedToSubrange();
    virtual double getModelDefault() = 0;
    /// Switches between the full range and the one from getModelMin() to getModelDefault().
    virtual void limitToSubrange(bool limited) = 0;
    /// Replaces the model range and the default value.
    virtual void setModelRange(double min, double max, double defaultValue) = 0;
};
