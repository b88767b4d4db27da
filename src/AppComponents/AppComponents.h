#pragma once

/// \file
/// The umbrella header: includes every public header of the library.

#include <AppComponents/AppComponentsExport.h>

/// Bears the library's name; has no state and no behaviour.
class APPCOMPONENTS_EXPORT AppComponents
{
public:
    AppComponents();
};
