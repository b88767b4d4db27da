#pragma once

#include <AppComponents/calc/CCalculationBlock.h>

/// A calculation block with a standard entry point. Its messages also go to the logs that were
/// registered under "Runnable" before the block was built.
class APPCOMPONENTS_EXPORT CRunneble : public CCalculationBlock
{
public:
    CRunneble();
    ~CRunneble() override;

    /// Does the block's work. \p newInfo is asked for stop requests from now on; null keeps the
    /// object set before.
    /// \throws DeviceFunctionException if the work was stopped, and whatever the work throws.
    void run(ICalculationInfo* newInfo);

protected:
    /// The block's work.
    virtual void runInternal() = 0;
};
