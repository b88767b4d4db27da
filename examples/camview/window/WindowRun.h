#pragma once

#include "headless/Options.h"

/// Runs camview in a window of the QApplication that exists until the user closes it. \return the
/// process's exit status
int runWindow(const Options& options);
