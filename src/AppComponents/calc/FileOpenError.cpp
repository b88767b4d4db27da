#include <AppComponents/calc/FileOpenError.h>

FileOpenError::FileOpenError(const QString& fileName)
    : std::runtime_error(QStringLiteral("Can't open file '%0'").arg(fileName).toStdString())
    , filename(fileName)
{
}

FileOpenError::FileOpenError(const QString& fileName, const QString& reason)
    : std::runtime_error(
          QStringLiteral("Can't open file '%0'. %1").arg(fileName, reason).toStdString())
    , filename(fileName)
    , errorMsg(reason)
{
}

FileOpenError::~FileOpenError() = default;

QString FileOpenError::getErrorMsg() const
{
    return errorMsg;
}

QString FileOpenError::getFilename() const
{
    return filename;
}
