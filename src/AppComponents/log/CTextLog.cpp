#include <AppComponents/log/CTextLog.h>

namespace
{

bool isKnown(TextLogType type)
{
    return type >= AllLogType && type < textLogTypeCount;
}

} // namespace

void CTextLog::write(const wchar_t* text, int length, TextLogType type)
{
    const bool accepted =
        type == AllLogType || typeWriting[AllLogType] || (isKnown(type) && typeWriting[type]);
    if (accepted)
        writeInternal(text, length);
}

void CTextLog::setTextLogTypeWriting(TextLogType type, bool enable)
{
    if (isKnown(type))
        typeWriting[type] = enable;
}

LogType CTextLog::getType()
{
    return textLog;
}
