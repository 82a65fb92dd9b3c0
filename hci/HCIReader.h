// The reading discipline that every HCI reader follows: the walk stops as
// soon as nothing is left, behind every field and inside counted loops, and
// what is left behind the last field of a list becomes UnExpected
// (ReadRest(CHCISpec::FieldUnExpected)).
#pragma once

#include "core/FieldCursor.h"
#include "hci/HCISpec.h"

// A command parameter whose catalogue description does not fit this command
// gets one of its own: always on the first occurrence of its id in the
// packet, as HCI re-describes. False when nothing is left behind it.
inline bool ReadHCIDescribed(CHCIReader& reader, unsigned short nId, const char* pszDesc)
{
    const CString strDesc(pszDesc);
    reader.ReadRenamed(nId, 0, nullptr, nullptr, &strDesc);
    return reader.More();
}
