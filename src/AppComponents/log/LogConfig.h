#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <QString>

/// Builds and registers the logs that an XML settings file names.
///
/// The file holds one element "Logs" somewhere below its document element, and may hold other
/// settings of the application. Children of "Logs" bear the class name of a log: CFileTextLog
/// (attribute "FileName"), CFolderOfTextLog ("FilePath"), QDebugTextLog, CConsoleTextLog,
/// CDelayedProcessorTextLog and CDelayedValueSequenceLog. Their children "Register" give the names
/// to register the log under in the attribute "value". The attributes "AllLogType", "InfoLogType"
/// and "DebugLogType" of text logs set the filter; "TimeLogType" has no effect. The attribute
/// "ManagerLogFile" of "Logs" names the manager log.
///
/// Call one of the operations that build logs once, at start-up, on one thread, before accessors
/// are built: every call adds logs.
class APPCOMPONENTS_EXPORT LogConfig
{
public:
    /// Builds the logs that \p fileName names. Mistakes inside "Logs" are told in the manager log.
    /// \throws FileOpenError if the file cannot be opened
    /// \throws std::runtime_error if it is no XML (also: nested beyond 1,000 levels, entities that
    ///   expand beyond 1 MiB, larger than 64 MiB), or has not exactly one "Logs" element; nothing
    ///   was built then.
    static void LoadFromFile(const QString& fileName);

    /// Writes a default settings file: the folder "log" beside it, and unless \p build is
    /// "release" Qt's debug channel. Does not truncate an existing file.
    /// \throws FileOpenError if the file cannot be opened
    static void CreateDefaultConfigFile(const QString& fileName, const QString& build);

    /// Builds the default logs without a file: Qt's debug channel, and the folder "log" in the
    /// current directory, which must exist.
    static void ApplyDefaultConfig();

    /// The file that one of the default logs writes to, a null string if none writes to a file.
    static QString GetLogFileName();

private:
    LogConfig() = default;
};
