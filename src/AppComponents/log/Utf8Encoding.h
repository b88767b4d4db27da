#pragma once

/// Longest encoding of one character, in bytes.
constexpr int maxUtf8Length = 4;

/// Writes \p character as UTF-8 to \p to, which has room for `maxUtf8Length` bytes; U+FFFD if it
/// is no Unicode scalar value.
/// \return the end of what was written
inline char* encodeUtf8(wchar_t character, char* to)
{
    constexpr char32_t replacementCharacter = 0xFFFD;
    auto code = static_cast<char32_t>(character);
    if (code < 0x80) {
        *to = static_cast<char>(code);
        return to + 1;
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (isSurrogate || code > 0x10FFFF)
        code = replacementCharacter;

    constexpr unsigned char leadBytes[] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    const int length = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    for (int i = length - 1; i > 0; --i) {
        to[i] = static_cast<char>(0x80 | (code & 0x3F));
        code >>= 6;
    }
    to[0] = static_cast<char>(leadBytes[length] | code);
    return to + length;
}
