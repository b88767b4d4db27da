#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <string>

/// The directory of the program's executable, without a separator at its end, in the narrow
/// characters of the user's default locale. A character that this locale cannot express makes the
/// whole name fall back to the low 8 bits of each character.
APPCOMPONENTS_EXPORT std::string getAppPath();

/// The directory of the program's executable, without a separator at its end; empty for the root.
APPCOMPONENTS_EXPORT std::wstring getAppPathW();
