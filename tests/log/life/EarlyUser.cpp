#include "EarlyUser.h"

#include <AppComponents/log/CConsoleTextLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CLogManager.h>

#include <cstdlib>
#include <utility>

std::string lifeFolder()
{
    const char* const folder = std::getenv("LOG_LIFE_FOLDER");
    return folder ? folder : ".";
}

EarlyUser::EarlyUser(std::string userName)
    : name(std::move(userName))
{
    const std::string fileName = lifeFolder() + '/' + name + ".txt";
    CLogManager::registerLogAndAddToGC(new CFileTextLog(fileName), L"");
    defLog(InfoLogType) << L"begin " << name.c_str() << std::endl;
    CConsoleTextLog::getDebugLog().write(L"console\n", 8, AllLogType);
}

EarlyUser::~EarlyUser()
{
    defLog(InfoLogType) << L"end " << name.c_str() << std::endl;
    CConsoleTextLog::getDebugLog().write(L"end\n", 4, AllLogType);
}
