#include <AppComponents/log/CBaseLog.h>

CBaseLog::~CBaseLog() = default;
