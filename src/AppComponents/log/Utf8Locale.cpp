#include <AppComponents/log/Utf8Locale.h>

#include <AppComponents/log/Utf8Encoding.h>

#include <algorithm>
#include <codecvt>

namespace
{

class Utf8Codecvt final : public std::codecvt_utf8<wchar_t>
{
protected:
    result do_out(state_type& state, const wchar_t* from, const wchar_t* fromEnd,
                  const wchar_t*& fromNext, char* to, char* toEnd, char*& toNext) const override;
};

Utf8Codecvt::result Utf8Codecvt::do_out(state_type&, const wchar_t* from, const wchar_t* fromEnd,
                                        const wchar_t*& fromNext, char* to, char* toEnd,
                                        char*& toNext) const
{
    while (from != fromEnd && toEnd - to >= maxUtf8Length)
        to = encodeUtf8(*from++, to);
    while (from != fromEnd && to != toEnd) { // a character of less than the longest may still fit
        char encoded[maxUtf8Length];
        const auto length = encodeUtf8(*from, encoded) - encoded;
        if (length > toEnd - to)
            break;
        to = std::copy_n(encoded, length, to);
        ++from;
    }
    fromNext = from;
    toNext = to;
    return from == fromEnd ? ok : partial;
}

} // namespace

const std::locale& utf8Locale()
{
    static const std::locale locale(std::locale(), new Utf8Codecvt);
    return locale;
}
