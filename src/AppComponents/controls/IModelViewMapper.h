#pragma once

#include <AppComponents/AppComponentsExport.h>

/// Maps a range of floating-point model values onto the integer positions of a slider and back.
/// Objects of one mapper are used by one thread at a time, as a rule the GUI thread.
class APPCOMPONENTS_EXPORT IModelViewMapper
{
public:
    IModelViewMapper() = default;
    IModelViewMapper(const IModelViewMapper&) = default;
    IModelViewMapper& operator=(const IModelViewMapper&) = default;
    virtual ~IModelViewMapper();

    /// Number of steps between the two ends of the UI range.
    virtual int nOfTics() = 0;
    virtual double getModelMax() = 0;
    virtual double getModelMin() = 0;
    virtual int getUIMax() = 0;
    virtual int getUIMin() = 0;
    /// UI position of a model value, limited to the UI range.
    virtual int Model2UI(double modelValue) = 0;
    /// Model value of a UI position, limited to the model range.
    virtual double UI2Model(int uiValue) = 0;
    /// Replaces the model range and keeps the UI range.
    virtual void setModelRange(double min, double max) = 0;
    /// Number of decimals with which a model value is to be shown.
    virtual int signifDigits(double modelValue) = 0;
};
