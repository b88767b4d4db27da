#pragma once

#include <array>

/// The values behind the steps -127 ... 127 of a tone setting, ascending; step + 127 is the index.
using StepTable = std::array<double, 255>;

extern const StepTable brightnessSteps;
extern const StepTable contrastSteps;
extern const StepTable gammaSteps;
