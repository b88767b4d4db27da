#pragma once

/// \file
/// Bit flags of the image engine and of the camera, combined with bitwise or in one 32-bit
/// signed integer. Bits that have no name here are stored and copied unchanged.

#include <cstdint>

/// Switches of the processing pipeline.
enum CamStateFlag : std::int32_t {
    CS_APPLY_LUT = 0x10000,          ///< tone tables instead of plain bit-depth reduction
    CS_BYPASS = 0x40000,             ///< raw pixel format kept, no median, no grey colour sensor
    CS_AUTO_WHITE_BALANCE = 0x80000, ///< red and blue gains estimated from every frame
    CS_COLOR_CORRECTION = 0x100000,  ///< gains, hue, saturation and lightness applied
    CS_MEDIAN_FILTER = 0x400000      ///< raw data median-filtered first
};

/// What the camera offers.
enum CamCapabilityFlag : std::int32_t {
    CC_COLOR_SENSOR = 0x2000 ///< the sensor carries a Bayer colour mosaic
};

constexpr CamStateFlag operator|(CamStateFlag a, CamStateFlag b)
{
    return static_cast<CamStateFlag>(static_cast<std::int32_t>(a) | static_cast<std::int32_t>(b));
}

constexpr CamCapabilityFlag operator|(CamCapabilityFlag a, CamCapabilityFlag b)
{
    return static_cast<CamCapabilityFlag>(static_cast<std::int32_t>(a) |
                                          static_cast<std::int32_t>(b));
}
