#include <AppComponents/log/COutBuf.h>

#include <AppComponents/log/CTextLog.h>

COutBuf::COutBuf(LogArray* logs)
    : logList(logs)
{
    setp(buffer, buffer + putAreaSize);
}

COutBuf::~COutBuf()
{
    overflow(traits_type::eof());
}

COutBuf::int_type COutBuf::overflow(int_type character)
{
    if (delivering)
        return 0;
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(character);
        pbump(1);
    }
    deliver(static_cast<int>(pptr() - pbase()));
    setp(buffer, buffer + putAreaSize);
    return 0;
}

int COutBuf::sync()
{
    overflow(traits_type::eof());
    return 0;
}

void COutBuf::deliver(int length)
{
    if (length == 0)
        return;
    delivering = true;
    const auto& logs = (*logList)[textLog];
    for (std::size_t i = 0; i < logs.size(); ++i) { // by index: a log may add another one
        try {
            static_cast<CTextLog*>(logs[i])->write(buffer, length, currentType);
        } catch (...) {
            // A failing log must neither fail the writer nor keep the text from the other logs.
        }
    }
    delivering = false;
}
