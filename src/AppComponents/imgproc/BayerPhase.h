#pragma once

/// The first row and the second row of the 2x2 cell with which a mosaic begins.
enum class BayerPhase { GBRG, BGGR, RGGB, GRBG };

/// \return the phase of data that was read out with the given mirror flags.
constexpr BayerPhase bayerPhase(bool mirrorV, bool mirrorH)
{
    if (mirrorV)
        return mirrorH ? BayerPhase::GRBG : BayerPhase::RGGB;
    return mirrorH ? BayerPhase::BGGR : BayerPhase::GBRG;
}
