#pragma once

#include "headless/Options.h"

class QApplication;

/// Runs camview in a window until the user closes it. \return the process's exit status
int runWindow(QApplication& application, const Options& options);
