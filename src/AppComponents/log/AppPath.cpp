#include <AppComponents/log/AppPath.h>

#include <QString>

#include <filesystem>
#include <locale>
#include <optional>
#include <stdexcept>
#include <system_error>

namespace
{

std::wstring executableFile()
{
    std::error_code error;
    const auto file = std::filesystem::read_symlink("/proc/self/exe", error);
    return QString::fromStdString(file.string()).toStdWString();
}

std::optional<std::string> narrowed(const std::wstring& text, const std::locale& locale)
{
    using Converter = std::codecvt<wchar_t, char, std::mbstate_t>;
    const auto& converter = std::use_facet<Converter>(locale);
    std::string result(text.size() * static_cast<std::size_t>(converter.max_length()), '\0');
    std::mbstate_t state = {};
    const wchar_t* next = nullptr;
    char* end = nullptr;
    const auto outcome = converter.out(state, text.data(), text.data() + text.size(), next,
                                       result.data(), result.data() + result.size(), end);
    if (outcome != Converter::ok || next != text.data() + text.size())
        return std::nullopt;
    result.resize(static_cast<std::size_t>(end - result.data()));
    return result;
}

std::optional<std::string> inUsersLocale(const std::wstring& text)
{
    try {
        return narrowed(text, std::locale(""));
    } catch (const std::runtime_error&) { // the environment names a locale that is not installed
        return std::nullopt;
    }
}

std::string lowBytes(const std::wstring& text)
{
    std::string result;
    for (const wchar_t character : text)
        result += static_cast<char>(character & 0xFF);
    return result;
}

} // namespace

std::wstring getAppPathW()
{
    const std::wstring file = executableFile();
    return file.substr(0, file.rfind(L'/'));
}

std::string getAppPath()
{
    const std::wstring path = getAppPathW();
    return inUsersLocale(path).value_or(lowBytes(path));
}
