#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <QString>

#include <stdexcept>

/// A file could not be opened. what() is the whole message in UTF-8.
class APPCOMPONENTS_EXPORT FileOpenError : public std::runtime_error
{
public:
    /// The message is "Can't open file '<fileName>'".
    explicit FileOpenError(const QString& fileName);
    /// The message is "Can't open file '<fileName>'. <reason>".
    FileOpenError(const QString& fileName, const QString& reason);
    FileOpenError(const FileOpenError&) = default;
    FileOpenError(FileOpenError&&) = default;
    FileOpenError& operator=(const FileOpenError&) = default;
    FileOpenError& operator=(FileOpenError&&) = default;
    ~FileOpenError() override;

    /// The reason alone, a null string where none was given.
    QString getErrorMsg() const;

    /// The file that could not be opened.
    QString getFilename() const;

private:
    QString filename;
    QString errorMsg;
};
