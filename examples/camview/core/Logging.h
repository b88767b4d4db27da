#pragma once

#include <QString>

/// Sets up the library's logging; call it once, before anything that writes to logs is made.
/// Names of files in a configuration are relative to the configuration's own folder.

/// From a file that the user names.
/// \throws FileOpenError, std::runtime_error when it is not a log configuration
void setUpLogging(const QString& configFile);

/// From the user's configuration folder; where there is no file yet, the library's default is
/// written. Without a folder that can be written there are no logs.
void setUpUserLogging();
