#include <AppComponents/calc/CCalculationBlock.h>

CCalculationBlock::DeviceFunctionException::~DeviceFunctionException() = default;

const char* CCalculationBlock::DeviceFunctionException::what() const noexcept
{
    return "Stopped by User";
}

CCalculationBlock::CCalculationBlock() = default;

CCalculationBlock::~CCalculationBlock() = default;

void CCalculationBlock::setStopFlag(ICalculationInfo* newInfo)
{
    info = newInfo;
}

void CCalculationBlock::checkStopFlag()
{
    if (isStopInvoked())
        throw DeviceFunctionException();
}

bool CCalculationBlock::isStopInvoked()
{
    return info && info->isStopRequested();
}
