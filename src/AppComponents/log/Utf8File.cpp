#include <AppComponents/log/Utf8File.h>

#include <AppComponents/log/Utf8Encoding.h>

#include <cerrno>
#include <cstddef>
#include <iterator>

#include <fcntl.h>
#include <unistd.h>

namespace
{

void writeBytes(int descriptor, const char* from, const char* end)
{
    while (from != end) {
        const ssize_t written = ::write(descriptor, from, static_cast<std::size_t>(end - from));
        if (written < 0 && errno != EINTR)
            return;
        if (written > 0)
            from += written;
    }
}

} // namespace

Utf8File::Utf8File(const std::string& fileName)
    : descriptor(::open(fileName.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
{
}

Utf8File::~Utf8File()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

void Utf8File::write(std::initializer_list<std::wstring_view> pieces) const
{
    if (descriptor < 0)
        return;
    char buffer[4096];
    char* used = buffer;
    for (const std::wstring_view piece : pieces)
        for (const wchar_t character : piece) {
            if (std::end(buffer) - used < maxUtf8Length) {
                writeBytes(descriptor, buffer, used);
                used = buffer;
            }
            used = encodeUtf8(character, used);
        }
    writeBytes(descriptor, buffer, used);
}
