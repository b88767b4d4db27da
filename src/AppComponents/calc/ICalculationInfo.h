#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <string>

/// What the caller of a calculation supplies: the answer whether to stop, and places for reports.
class APPCOMPONENTS_EXPORT ICalculationInfo
{
public:
    ICalculationInfo() = default;
    ICalculationInfo(const ICalculationInfo&) = default;
    ICalculationInfo(ICalculationInfo&&) = default;
    ICalculationInfo& operator=(const ICalculationInfo&) = default;
    ICalculationInfo& operator=(ICalculationInfo&&) = default;
    virtual ~ICalculationInfo();

    /// Whether the calculation is to stop. Asked on the calculation's thread each time a block
    /// polls; an answer that another thread changes must be safe to read, such as an atomic flag.
    virtual bool isStopRequested() = 0;

    /// \name Reports of an application's blocks
    /// The library never calls these; they do nothing unless overridden.
    /// @{
    virtual void setStepCount(int count);
    virtual void setStep(int step);
    virtual void setStepName(const std::wstring& name);
    virtual void setFinished();
    /// @}
};
