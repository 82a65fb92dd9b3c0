// libFuzzer entry over every registered decoder.
#include <cstdlib>

#include "fuzz/DecodeAny.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (!DecodeAnyDecoder(pData, nSize))
        std::abort();
    return 0;
}
