// The IPv4 datagram inside a PPP frame (protocol 0x0021), read and checked:
// the header, the byte behind the addresses taken as an option type, at most
// one option, and the data. Neither TCP nor UDP nor the header checksum is
// looked into.
//
// The header's bit fields (version and header length, the type of service,
// flags and fragment offset, the time stamp option's overflow and flag) are
// shown as the standard draws them, most significant bits first, so that an
// ordinary first byte of 0x45 shows version 4 and a header length of 5.
#include "serial/PPPSpec.h"

using Spec = CAdvAnlzPPPSpec;

namespace {

// Option types whose data, if any, is one "Data" field.
bool IsDataOption(std::uint32_t dwType)
{
    switch (dwType) {
    case 0: case 1: case 10: case 11: case 12: case 15: case 25: case 31: case 82: case 134: case 135:
    case 142: case 144: case 145: case 147: case 148: case 149: case 150: case 151: case 152: case 205:
        return true;
    default:
        return false;
    }
}

bool IsRouteOption(std::uint32_t dwType)
{
    return dwType == 7 || dwType == 132 || dwType == 137;
}

constexpr std::uint8_t kOptionEndOfList = 0;
constexpr std::uint8_t kOptionNoOperation = 1;
constexpr std::uint8_t kOptionTimestamp = 68;
constexpr std::uint8_t kOptionSecurity = 131;
constexpr std::uint8_t kOptionStreamId = 136;

// Time stamp flags: time stamps only, each behind an address, prespecified
// addresses.
constexpr std::uint32_t kTimestampsOnly = 0;
constexpr std::uint32_t kTimestampsWithAddresses = 1;
constexpr std::uint32_t kTimestampsPrespecified = 3;

}  // namespace

bool Spec::ReadBitGroups(CPPPWalk& walk, std::uint32_t nBits, std::initializer_list<SOptionField> fields,
                         std::uint32_t* pLastValue)
{
    const CAdvAnlzData raw = walk.Peek(nBits);
    if (raw.GetLength() < nBits) {
        for (const SOptionField& field : fields)
            walk.Read(field.nId, field.nBits);
        if (pLastValue)
            *pLastValue = static_cast<std::uint32_t>(walk.Value());
        return walk.More();
    }
    // Each field's bits, taken from the top of the big-endian number, go to
    // the low end of what is left, where the walk takes them next.
    std::uint32_t dwNumber = 0;
    for (std::uint32_t i = 0; i < nBits / 8; ++i)
        dwNumber = dwNumber << 8 | raw[i];
    std::uint32_t dwArranged = 0;
    std::uint32_t nAbove = nBits;
    std::uint32_t nPlaced = 0;
    for (const SOptionField& field : fields) {
        nAbove -= field.nBits;
        dwArranged |= ((dwNumber >> nAbove) & ((1u << field.nBits) - 1)) << nPlaced;
        nPlaced += field.nBits;
    }
    CPPPWalk groups = walk.Spec().Walk(CAdvAnlzData(dwArranged, static_cast<std::uint8_t>(nBits)), walk.Packet());
    for (const SOptionField& field : fields)
        groups.Read(field.nId, field.nBits);
    if (pLastValue)
        *pLastValue = static_cast<std::uint32_t>(groups.Value());
    walk.Drop(nBits);
    return walk.More();
}

void Spec::ReadIPPacket(CPPPWalk& walk)
{
    if (!walk.More())
        return;
    if (!ReadBitGroups(walk, 8, {{FieldIPVersion, 4}, {FieldIPHeaderLength, 4}}) ||
        !ReadBitGroups(walk, 8,
                       {{FieldIPPrecedence, 3},
                        {FieldIPDelay, 1},
                        {FieldIPThroughput, 1},
                        {FieldIPReliability, 1},
                        {FieldIPMonetary, 1},
                        {FieldIPTOSReserved, 1}}))
        return;
    // The length of what follows the fixed header, in bytes; 0 means all.
    const std::uint16_t wTotalLength = walk.Read(FieldIPTotalLength);
    const std::uint32_t dwDataBits = wTotalLength == 0 ? 0 : ((wTotalLength - 20u) & 0xFFFF) * 8;
    if (!walk.ReadOn(FieldIPIdentification) ||
        !ReadBitGroups(walk, 16, {{FieldIPFlags, 3}, {FieldIPFragmentOffset, 13}}) ||
        !walk.ReadList({FieldIPTimeToLive, FieldIPProtocol, FieldIPChecksum, FieldIPSource, FieldIPDestination}))
        return;

    // The byte behind the destination address is read as an option type,
    // whatever the header length says.
    const std::uint8_t nType = walk.Read(FieldIPOptionType);
    if (nType == kOptionEndOfList || nType == kOptionNoOperation) {
        walk.ReadAlways(FieldIPData, dwDataBits);
    } else if (IsDataOption(nType)) {
        walk.Read(FieldIPData, dwDataBits);
    } else if (IsRouteOption(nType)) {
        const std::uint8_t nLength = walk.Read(FieldIPOptionLength);
        walk.Read(FieldIPPointer);
        walk.Read(FieldIPRouteData, static_cast<std::uint8_t>(nLength - 3) * 8u);
    } else if (nType == kOptionTimestamp) {
        walk.Read(FieldIPOptionLength);
        walk.Read(FieldIPPointer);
        std::uint32_t dwFlag = 0;
        if (!ReadBitGroups(walk, 8, {{FieldIPOverflow, 4}, {FieldIPTimestampFlag, 4}}, &dwFlag))
            return;
        if (dwFlag == kTimestampsOnly) {
            walk.Read(FieldIPTimestamp);
        } else if (dwFlag == kTimestampsWithAddresses) {
            walk.Read(FieldIPInternetAddress);
            walk.Read(FieldIPTimestamp);
        } else if (dwFlag == kTimestampsPrespecified) {
            while (walk.More()) {
                walk.Read(FieldIPInternetAddress);
                walk.Read(FieldIPTimestamp);
            }
        }
    } else if (nType == kOptionSecurity) {
        walk.ReadList({FieldIPOptionLength, FieldIPSecurity, FieldIPCompartments, FieldIPHandling,
                       FieldIPTransmissionControl});
    } else if (nType == kOptionStreamId) {
        // The stream identifier is what the option's length leaves behind
        // its type and length bytes: 16 bits in a well-formed option.
        const std::uint8_t nLength = walk.Read(FieldIPOptionLength);
        walk.Read(FieldIPStreamId, static_cast<std::uint8_t>(nLength - 2) * 8u);
    }
    // Any other type ends the frame's reading: what follows is taken as the
    // next frame.
}

unsigned Spec::CheckIPProtocol(SCheck& check)
{
    if (check.nPos == check.nCount)
        return 0;
    if (check.Short(1))
        return 1;
    // The fields are visited in reading order; a step past the packet's last
    // field stays on it, so the later tests run on that field again.
    int nAt = check.nPos;
    int nPlace = 1;
    auto step = [&]() {
        if (nAt < check.nCount)
            ++nAt;
        ++nPlace;
    };
    auto stepTo = [&](int nTo) {
        while (nPlace < nTo)
            step();
    };
    unsigned nFindings = 0;
    // Id and length of the field in hand; true when its length is right.
    auto test = [&](unsigned short nId, std::uint32_t dwBits, bool bCount = true) {
        if (check.IdAt(nAt) != nId) {
            check.packet.AddPError(54);
            nFindings += bCount ? 1 : 0;
        }
        if (check.LengthAt(nAt) != dwBits) {
            check.packet.AddPError(55);
            nFindings += bCount ? 1 : 0;
            return false;
        }
        return true;
    };
    auto reject = [&](bool bBad) {
        if (bBad)
            nFindings += check.Error(210);
    };
    const auto value = [&]() { return check.NumberAt(nAt); };

    if (test(FieldIPVersion, 4))
        reject(value() != 0 && (value() < 4 || value() > 9));
    stepTo(2);
    if (test(FieldIPHeaderLength, 4))
        reject(value() < 5);
    stepTo(9);
    test(FieldIPTotalLength, 16, false);
    stepTo(11);
    if (test(FieldIPFlags, 3))
        reject(value() >= 4);
    stepTo(14);
    if (test(FieldIPProtocol, 8))
        reject(value() != 255 && value() >= 134);
    stepTo(16);
    test(FieldIPSource, 32);
    stepTo(17);
    test(FieldIPDestination, 32);
    stepTo(18);
    const bool bTypeKnown = test(FieldIPOptionType, 8);
    const std::uint32_t dwType = bTypeKnown ? value() : 0x100;

    auto testLength = [&](std::uint32_t dwWanted, bool bBelow) {
        if (test(FieldIPOptionLength, 8) && (bBelow ? value() >= dwWanted : value() != dwWanted))
            nFindings += check.Error(55);
    };
    if (IsDataOption(dwType)) {
        if (nAt < check.nCount)
            ++nAt;
    } else if (IsRouteOption(dwType)) {
        step();
        const std::uint32_t dwLength = value();
        step();
        test(FieldIPPointer, 8);
        step();
        if (check.IdAt(nAt) != FieldIPRouteData)
            nFindings += check.Error(54);
        if (dwLength - 3 != check.LengthAt(nAt) / 8)
            nFindings += check.Error(55);
    } else if (dwType == kOptionTimestamp) {
        step();
        testLength(41, true);
        step();
        test(FieldIPPointer, 8);
        step();
        test(FieldIPOverflow, 4);
        step();
        test(FieldIPTimestampFlag, 4);
        const std::uint32_t dwFlag = value();
        reject(dwFlag == 2 || dwFlag > 3);
        if (dwFlag == kTimestampsOnly) {
            step();
            test(FieldIPTimestamp, 32);
        } else if (dwFlag == kTimestampsWithAddresses) {
            step();
            test(FieldIPInternetAddress, 32);
            step();
            test(FieldIPTimestamp, 32);
        }
    } else if (dwType == kOptionSecurity) {
        step();
        testLength(11, false);
        step();
        test(FieldIPSecurity, 16);
        step();
        test(FieldIPCompartments, 16);
        step();
        test(FieldIPHandling, 16);
        step();
        test(FieldIPTransmissionControl, 24);
    } else if (dwType == kOptionStreamId) {
        step();
        testLength(4, false);
        step();
        test(FieldIPStreamId, 16);
    } else {
        nFindings += check.Error(210);
    }
    check.nPos = nAt + 1;
    return nFindings;
}
