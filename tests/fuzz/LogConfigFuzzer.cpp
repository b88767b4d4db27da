#include "Inputs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    readLogConfig(data, size);
    return 0;
}
