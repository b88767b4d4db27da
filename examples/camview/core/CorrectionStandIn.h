#pragma once

#include <AppComponents/imgproc/ProcessingFlags.h>

/// Holds the user's choices until the library's own settings record is there.
struct ImgCorrectionSettings {
    int colorReconstructionMethod = 0;
    int flags = 0;
    double brightness = 0.0;
    double contrast = 1.0;
    double gamma = 1.0;
    bool flipV = false;
    bool flipH = false;
    double colorCorrectionGreen = 1.0;
    double colorCorrectionRed = 1.0;
    double colorCorrectionBlue = 1.0;
    double colorCorrectionHue = 0.0;
    double colorCorrectionSaturation = 1.0;
    double colorCorrectionLightness = 1.0;

    void setFlag(CamStateFlag flag, bool on) { flags = on ? flags | flag : flags & ~flag; }
};

/// The ranges of the tone settings.
struct ImgCorrectionLimits {
    double brightnessMin = -0.5;
    double brightnessMax = 0.5;
    double contrastMin = 0.25;
    double contrastMax = 4.0;
    double gammaMin = 0.333333333333333;
    double gammaMax = 3.0;
};
