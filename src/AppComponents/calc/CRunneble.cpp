#include <AppComponents/calc/CRunneble.h>

CRunneble::CRunneble()
{
    log.addLogList(L"Runnable");
}

CRunneble::~CRunneble() = default;

void CRunneble::run(ICalculationInfo* newInfo)
{
    if (newInfo)
        setStopFlag(newInfo);
    runInternal();
}
