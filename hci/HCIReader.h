// The reading discipline that every HCI reader follows: the walk stops as
// soon as nothing is left, behind every field and inside counted loops, and
// what is left behind the last field of a list becomes UnExpected
// (ReadRest(CHCISpec::FieldUnExpected)).
#pragma once

#include <cstddef>

#include "core/FieldCursor.h"
#include "hci/HCISpec.h"

// Opcode Group Fields of HCI 1.1.
enum : unsigned {
    kOGFLinkControl = 0x01,
    kOGFLinkPolicy = 0x02,
    kOGFHostController = 0x03,
    kOGFInformation = 0x04,
    kOGFStatus = 0x05,
    kOGFTesting = 0x06,
    kOGFVendor = 0x3F,
};

// A command parameter whose catalogue description does not fit this command
// gets one of its own: always on the first occurrence of its id in the
// packet, as HCI re-describes. False when nothing is left behind it.
inline bool ReadHCIDescribed(CHCIReader& reader, unsigned short nId, const char* pszDesc)
{
    const CString strDesc(pszDesc);
    reader.ReadRenamed(nId, 0, nullptr, nullptr, &strDesc);
    return reader.More();
}

// Reads the fields of a table row in order, with their default widths; the
// row ends at the first id 0. False as soon as nothing is left.
template <std::size_t N>
bool ReadHCIFields(CHCIReader& reader, const unsigned short (&aIds)[N])
{
    for (unsigned short nId : aIds) {
        if (nId == 0)
            break;
        if (!reader.ReadOn(nId))
            return false;
    }
    return true;
}
