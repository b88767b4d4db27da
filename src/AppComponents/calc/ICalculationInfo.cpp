#include <AppComponents/calc/ICalculationInfo.h>

ICalculationInfo::~ICalculationInfo() = default;

void ICalculationInfo::setStepCount(int) {}

void ICalculationInfo::setStep(int) {}

void ICalculationInfo::setStepName(const std::wstring&) {}

void ICalculationInfo::setFinished() {}
