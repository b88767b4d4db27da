#include <AppComponents/log/CFolderOfTextLog.h>

#include <AppComponents/log/Utf8File.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <cwchar>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace
{

namespace fs = std::filesystem;

std::tm localTime(std::time_t time)
{
    std::tm parts = {};
    localtime_r(&time, &parts);
    return parts;
}

// Formatted once a second: formatting takes longer than writing a short line. Each thread has its
// own, because logs take no lock.
std::wstring_view currentStamp()
{
    thread_local std::time_t second = -1;
    thread_local std::size_t length = 0;
    thread_local wchar_t stamp[80];
    const std::time_t now = std::time(nullptr);
    if (now != second) {
        const std::tm parts = localTime(now);
        length = std::wcsftime(stamp, std::size(stamp), L"%Y-%m-%d %X ", &parts);
        second = now;
    }
    return {stamp, length};
}

std::string newFileName()
{
    const std::tm now = localTime(std::time(nullptr));
    char name[80];
    return {name, std::strftime(name, std::size(name), "%Y-%m-%d_%H-%M-%S.txt", &now)};
}

bool isTextFileName(std::string_view name)
{
    constexpr std::string_view ending = ".txt";
    return name.size() >= ending.size() &&
           name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
}

std::vector<std::string> textFileNames(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : fs::path(folder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (isTextFileName(name))
            names.push_back(std::move(name));
    }
    return names;
}

void removeFile(const fs::path& file)
{
    std::error_code error; // a file that cannot be removed stays
    if (!fs::is_directory(fs::symlink_status(file, error)))
        fs::remove(file, error);
}

void removeOldFiles(const std::string& folder)
{
    std::vector<std::string> names = textFileNames(folder);
    if (names.size() <= CFolderOfTextLog::fileNumLimit)
        return;
    std::sort(names.begin(), names.end());
    names.resize(names.size() - CFolderOfTextLog::fileNumLimit);
    for (const std::string& name : names)
        removeFile(folder + name);
}

} // namespace

CFolderOfTextLog::CFolderOfTextLog(std::string folderPath)
{
    if (!folderPath.empty())
        folderPath += '/';
    removeOldFiles(folderPath);
    filePath = folderPath + newFileName();
    file = std::make_unique<Utf8File>(filePath);
}

CFolderOfTextLog::CFolderOfTextLog(CFolderOfTextLog&& other) noexcept = default;

CFolderOfTextLog& CFolderOfTextLog::operator=(CFolderOfTextLog&& other) noexcept = default;

CFolderOfTextLog::~CFolderOfTextLog() = default;

std::string CFolderOfTextLog::getFilePath() const
{
    return filePath;
}

void CFolderOfTextLog::writeInternal(const wchar_t* text, int length)
{
    if (file) // unless moved from
        file->write({currentStamp(), {text, static_cast<std::size_t>(length)}});
}
