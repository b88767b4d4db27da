#pragma once

#include <cstddef>
#include <cstdint>

/// Reads a log configuration from these bytes, without building the logs.
void readLogConfig(const std::uint8_t* data, std::size_t size);

/// Reads a file of correction settings with these bytes.
void readCorrectionSettings(const std::uint8_t* data, std::size_t size);
