#pragma once

/// Ranges that a user interface uses for the correction settings. The library reads none of them.
/// The numbered pairs and `limitBase` have the meaning that the application gives them.
struct ImgCorrectionLimits {
    double limitBase = 0.0;
    double limit1Min = 1.0;
    double limit1Max = 1.0;
    double limit2Min = 1.0;
    double limit2Max = 1.0;
    double limit3Min = 0.0;
    double limit3Max = 1.0;
    double limit4Min = 0.0;
    double limit4Max = 4.0;
    double limit5Min = 0.0;
    double limit5Max = 4.0;
    double hueMin = -180.0; ///< degrees
    double hueMax = 180.0;  ///< degrees
    double limit7Min = 0.0;
    double limit7Max = 4.0;
    double brightnessMin = -0.5; ///< as ImgProcessor::getBrightnessMinMax()
    double brightnessMax = 0.5;
    double contrastMin = 0.25; ///< as ImgProcessor::getContrastMinMax()
    double contrastMax = 4.0;
    double gammaMin = 0.333333333333333; ///< as ImgProcessor::getGammaMinMax()
    double gammaMax = 3.0;
};
