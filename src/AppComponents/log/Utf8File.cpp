#include <AppComponents/log/Utf8File.h>

#include <AppComponents/log/Utf8Encoding.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

Utf8File::Utf8File(const std::string& fileName)
    : descriptor(::open(fileName.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
{
}

Utf8File::~Utf8File()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

void Utf8File::append(const wchar_t* text, std::size_t length)
{
    for (const wchar_t* const end = text + length; text != end; ++text) {
        if (buffer.size() - used < maxUtf8Length)
            flush();
        used = static_cast<std::size_t>(encodeUtf8(*text, &buffer[used]) - buffer.data());
    }
}

void Utf8File::flush()
{
    const char* from = buffer.data();
    const char* const end = from + used;
    used = 0;
    while (descriptor >= 0 && from != end) {
        const ssize_t written = ::write(descriptor, from, static_cast<std::size_t>(end - from));
        if (written < 0 && errno != EINTR)
            return;
        if (written > 0)
            from += written;
    }
}
