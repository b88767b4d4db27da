#pragma once

#include <locale>

/// The locale of the manager log: the global locale as it was when the library was
/// loaded, with a wide-to-narrow conversion to UTF-8. A character that is no Unicode scalar value
/// is written as U+FFFD, since a failed conversion would end all later output of the stream.
const std::locale& utf8Locale();
