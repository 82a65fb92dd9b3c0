// One fuzz step over every registered decoder: the first byte picks the
// decoder and the HCI packet kind, the rest is the payload. The decoded
// packet is read back completely and saved and loaded once, so that a fault
// anywhere on the host's road shows under the sanitizers.
#pragma once

#include <cstddef>
#include <cstdint>

// Returns false when an invariant of the decoded packet does not hold.
bool DecodeAnyDecoder(const std::uint8_t* pData, std::size_t nSize);
