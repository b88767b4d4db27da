#include <AppComponents/log/Utf8Locale.h>

#include <codecvt>

namespace
{

constexpr char32_t replacementCharacter = 0xFFFD;

class Utf8Codecvt final : public std::codecvt_utf8<wchar_t>
{
protected:
    result do_out(state_type& state, const wchar_t* from, const wchar_t* fromEnd,
                  const wchar_t*& fromNext, char* to, char* toEnd, char*& toNext) const override;
};

char32_t scalarValue(wchar_t character)
{
    const auto code = static_cast<char32_t>(character);
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return isSurrogate || code > 0x10FFFF ? replacementCharacter : code;
}

int encodedLength(char32_t code)
{
    if (code < 0x80)
        return 1;
    if (code < 0x800)
        return 2;
    return code < 0x10000 ? 3 : 4;
}

void encode(char32_t code, int length, char* to)
{
    constexpr unsigned char leadBytes[] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    for (int i = length - 1; i > 0; --i) {
        to[i] = static_cast<char>(0x80 | (code & 0x3F));
        code >>= 6;
    }
    to[0] = static_cast<char>(leadBytes[length] | code);
}

Utf8Codecvt::result Utf8Codecvt::do_out(state_type&, const wchar_t* from, const wchar_t* fromEnd,
                                        const wchar_t*& fromNext, char* to, char* toEnd,
                                        char*& toNext) const
{
    result outcome = ok;
    for (; from != fromEnd; ++from) {
        const char32_t code = scalarValue(*from);
        const int length = encodedLength(code);
        if (toEnd - to < length) {
            outcome = partial;
            break;
        }
        encode(code, length, to);
        to += length;
    }
    fromNext = from;
    toNext = to;
    return outcome;
}

} // namespace

const std::locale& utf8Locale()
{
    static const std::locale locale(std::locale(), new Utf8Codecvt);
    return locale;
}
