// A process whose logs are used from its first static constructor to its last destructor. Called
// with "path" it writes the folder of its executable to files instead.

#include "EarlyUser.h"

#include <AppComponents/log/AppPath.h>
#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/LogConfig.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <cstring>
#include <fstream>

namespace
{

// Owned by the registry under several names; leaves a line in a file each time one is deleted.
class LastWordsLog : public CTextLog
{
public:
    ~LastWordsLog() override
    {
        std::ofstream(lifeFolder() + "/deleted.txt", std::ios::app) << text << "|\n";
        defLog(AllLogType) << L"nobody hears this" << std::endl;
    }

protected:
    void writeInternal(const wchar_t* chunk, int length) override
    {
        text.append(chunk, chunk + length);
    }

private:
    std::string text;
};

int writePath()
{
    const std::string narrow = getAppPath();
    std::ofstream(lifeFolder() + "/narrow.txt") << narrow;
    CFileTextLog wide(lifeFolder() + "/wide.txt");
    const std::wstring path = getAppPathW();
    wide.write(path.data(), static_cast<int>(path.size()), AllLogType);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "path") == 0)
        return writePath();
    LogConfig::LoadFromFile(QString::fromStdString(lifeFolder() + "/config.xml"));
    auto* const lastWords = new LastWordsLog;
    CLogManager::registerLogAndAddToGC(lastWords, L"");
    CLogManager::registerLogAndAddToGC(lastWords, L"again");
    CDelayedValueSequenceLog::getInstance().getSubLog(L"never released");
    CLogAccessor camera(L"Camera");
    camera(AllLogType) << L"to the camera" << std::endl;
    defLog(AllLogType) << L"pending"; // no flush: the end of the process delivers it
    return 0;
}
