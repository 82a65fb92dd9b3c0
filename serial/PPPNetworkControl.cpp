// The control protocols above LCP, read and checked: IPCP (with its vendor
// extension packet and options), IPV6CP and CCP.
#include "serial/PPPSpec.h"

using Spec = CAdvAnlzPPPSpec;

namespace {

constexpr std::uint16_t kCompressionVanJacobson = 0x002D;
constexpr std::uint16_t kCompressionIPHeader = 0x0061;

// CCP options of a fixed layout. The bit groups of a byte are read from its
// low end, as every value is.
const Spec::SOptionLayout kCCPOptionLayouts[] = {
    // type, fields, rest field, rest behind bits, need short/long, set short/long
    {0, {{Spec::FieldCCPOUI, 24}, {Spec::FieldCCPSubtype, 8}}, Spec::FieldCCPValues, 32, 1, 3, false, false},
    {17, {{Spec::FieldLZSHistoryCount, 16}, {Spec::FieldLZSCheckMode, 8}}, 0, 0, 2, 2, false, false},
    {18,
     {{Spec::FieldMPPUndefined, 7},
      {Spec::FieldMPPH, 1},
      {Spec::FieldMPPUndefined, 16},
      {Spec::FieldMPPM, 1},
      {Spec::FieldMPPS, 1},
      {Spec::FieldMPPL, 1},
      {Spec::FieldMPPD, 1},
      {Spec::FieldMPPUndefined, 3},
      {Spec::FieldMPPC, 1}},
     0, 0, 9, 9, false, false},
    {21, {{Spec::FieldBSDVersion, 3}, {Spec::FieldBSDDictionary, 5}}, 0, 0, 2, 2, false, false},
    {23,
     {{Spec::FieldDCPHistoryCount, 16}, {Spec::FieldDCPCheckMode, 8}, {Spec::FieldDCPProcessMode, 8}},
     0, 0, 3, 3, false, false},
    {24,
     {{Spec::FieldMVRCAFeatures, 2},
      {Spec::FieldMVRCAPacketByPacket, 1},
      {Spec::FieldMVRCAHistory, 5},
      {Spec::FieldMVRCAContext, 8}},
     0, 0, 4, 4, false, false},
    {25, {{Spec::FieldDCEMode, 8}}, 0, 0, 1, 1, false, false},
    {26,
     {{Spec::FieldDeflateWindow, 4},
      {Spec::FieldDeflateMethod, 4},
      {Spec::FieldDeflateMBZ, 6},
      {Spec::FieldDeflateCheck, 2}},
     0, 0, 4, 4, false, false},
};

const Spec::SOptionLayout* FindCCPLayout(std::uint32_t dwType)
{
    for (const Spec::SOptionLayout& layout : kCCPOptionLayouts)
        if (layout.nType == dwType)
            return &layout;
    return nullptr;
}

// CCP option types whose data the check takes as one field.
bool IsPlainCCPOption(std::uint32_t dwType)
{
    return dwType == 1 || dwType == 2 || dwType == 3 || dwType == 16 || dwType == 20;
}

// The address field that each IPCP address option carries.
unsigned short IPCPAddressField(std::uint32_t dwType)
{
    switch (dwType) {
    case 3:
        return Spec::FieldIPAddress;
    case 4:
        return Spec::FieldMobileHomeAddress;
    case 129:
        return Spec::FieldPrimaryDNS;
    case 130:
        return Spec::FieldPrimaryNBNS;
    case 131:
        return Spec::FieldSecondaryDNS;
    case 132:
        return Spec::FieldSecondaryNBNS;
    default:
        return 0;
    }
}

}  // namespace

std::uint8_t Spec::ReadOptionLength(CPPPWalk& walk, unsigned short nId)
{
    CAdvAnlzData value;
    const unsigned long dwBits = walk.Spec().ReadField(walk.Peek(8), walk.Packet(), nId, value, ByteOrderAsStored, 0);
    const std::uint8_t nLength = value;
    if (nLength >= 2)
        walk.Drop(static_cast<std::uint32_t>(dwBits));
    return nLength;
}

// ------------------------------------------------------------------ IPCP

void Spec::ReadIPCPPacket(CPPPWalk& walk)
{
    if (!walk.More())
        return;
    const std::uint8_t nCode = walk.Peek(8);
    const std::uint32_t dwLength = ReadControlHeader(walk, FieldIPCPCode);
    if (!walk.More())
        return;
    if (nCode == 0) {
        // A vendor extension: magic number, OUI and kind, then the values,
        // which stand even when they are empty.
        if (walk.ReadOn(FieldIPCPMagicNumber) && walk.ReadOn(FieldIPCPOUI)) {
            walk.Read(FieldIPCPKind);
            walk.ReadAlways(FieldIPCPValues, (dwLength - 4) * 8 - 64);
        }
    } else if (dwLength != 4) {
        ReadIPCPDataOptions(walk, static_cast<std::uint16_t>(dwLength - 4));
    }
}

void Spec::ReadIPCPDataOptions(CPPPWalk& walk, std::uint16_t wRemaining)
{
    while (wRemaining != 0) {
        if (!walk.More())
            return;
        const std::uint8_t nType = walk.Read(FieldIPCPType);
        const std::uint8_t nLength = walk.Read(FieldIPCPOptionLength);
        if (nType == 1) {
            // IP-Addresses: the whole length, header bytes included.
            walk.Read(FieldIPCPData, nLength * 8u);
        } else if (nType == 2) {
            const std::uint16_t wProtocol = walk.Read(FieldIPCompressionProtocol, 16);
            ReadIPCPIPCompressionProtocol(walk, wProtocol, nLength);
        } else if (const unsigned short nAddressId = IPCPAddressField(nType)) {
            walk.Read(nAddressId, 32);
        } else {
            walk.Read(FieldUnexpected, nLength * 8u);
        }
        wRemaining = static_cast<std::uint16_t>(wRemaining - nLength);
    }
    ReadLeftover(walk);
}

void Spec::ReadIPCPIPCompressionProtocol(CPPPWalk& walk, std::uint16_t wProtocol, std::uint32_t dwLength)
{
    if (!walk.More())
        return;
    if (wProtocol == kCompressionVanJacobson) {
        walk.Read(FieldMaxSlotId);
        walk.Read(FieldCompSlotId);
    } else if (wProtocol == kCompressionIPHeader) {
        ReadIPCPUnCompressedTCP(walk, dwLength);
    } else {
        walk.Read(FieldIPCPData, (dwLength & 0xFF) * 8);
    }
}

void Spec::ReadIPCPUnCompressedTCP(CPPPWalk& walk, std::uint32_t dwLength)
{
    walk.ReadList({FieldTCPSpace, FieldNonTCPSpace, FieldFMaxPeriod, FieldFMaxTime, FieldMaxHeader});
    if ((dwLength & 0xFF) > 14) {
        walk.Read(FieldSuboptionType);
        walk.Read(FieldSuboptionLength);
        walk.Read(FieldSuboptionParameters, dwLength * 8);
    }
}

unsigned Spec::CheckIPCPProtocol(SCheck& check)
{
    // The header: every field must have one more behind it.
    int aHeader[3];
    if (!check.TakeInOrder({FieldIPCPCode, FieldIPCPId, FieldIPCPLength}, aHeader, 1))
        return 1;
    unsigned nFindings = 0;
    if (check.LengthAt(aHeader[0]) != 8 || check.LengthAt(aHeader[1]) != 8 || check.LengthAt(aHeader[2]) != 16)
        nFindings += check.Error(55);
    const std::uint32_t dwCode = check.NumberAt(aHeader[0]);
    const std::uint32_t dwLength = check.NumberAt(aHeader[2]);
    if (dwCode >= 8)
        return nFindings + check.Error(220);
    if (dwLength < 4 || (dwCode == 0 && dwLength < 12))
        nFindings += check.Error(221);

    if (dwCode != 0)
        return nFindings + CheckProtocolIPCPOptions(check, static_cast<int>(dwLength) - 4);
    // The vendor extension packet.
    int aVendor[3];
    if (!check.TakeInOrder({FieldIPCPMagicNumber, FieldIPCPOUI, FieldIPCPKind}, aVendor))
        return nFindings + 1;
    if (check.LengthAt(aVendor[0]) != 32 || check.LengthAt(aVendor[1]) != 24 || check.LengthAt(aVendor[2]) != 8)
        nFindings += check.Error(55);
    if (dwLength > 12) {
        if (check.Short(1))
            return nFindings + 1;
        nFindings += check.Test(FieldIPCPValues, dwLength * 8 - 96);
    }
    return nFindings;
}

unsigned Spec::CheckProtocolIPCPOptions(SCheck& check, int nRemaining)
{
    if (check.nPos > check.nCount)
        return 0;
    unsigned nFindings = 0;
    int nSeen = 0;
    while (nSeen < nRemaining) {
        // Type and length; a field of another id here is a wrong length.
        int aOption[2];
        for (int i = 0; i < 2; ++i) {
            if (check.Remaining() < 1)
                return nFindings + check.Error(53);
            if (check.IdAt(check.nPos) != (i == 0 ? FieldIPCPType : FieldIPCPOptionLength))
                return nFindings + check.Error(55);
            aOption[i] = check.nPos++;
        }
        if (check.LengthAt(aOption[0]) != 8 || check.LengthAt(aOption[1]) != 8)
            nFindings += check.Error(55);
        const std::uint32_t dwType = check.NumberAt(aOption[0]);
        const std::uint32_t dwLength = check.NumberAt(aOption[1]);
        if (!(dwType >= 1 && dwType <= 4) && !(dwType >= 129 && dwType <= 132))
            nFindings += check.Error(222);
        if (dwType == 1) {
            nFindings += check.Test(FieldIPCPData, dwLength * 8);
        } else if (dwType == 2) {
            if (dwLength < 4)
                nFindings += check.Error(221);
            nFindings += CheckProtocolIPCPComprProtocol(check, dwLength);
        } else if (const unsigned short nAddressId = IPCPAddressField(dwType)) {
            if (dwLength != 6)
                nFindings += check.Error(221);
            nFindings += check.Test(nAddressId, 32);
        } else {
            nFindings += check.Error(224);
        }
        nSeen += static_cast<int>(dwLength);
        if (check.nPos > check.nCount)
            break;
    }
    return nFindings;
}

unsigned Spec::CheckProtocolIPCPComprProtocol(SCheck& check, std::uint32_t dwLength)
{
    int nProtocol = 0;
    if (!check.TakeInOrder({FieldIPCompressionProtocol}, &nProtocol))
        return 1;
    unsigned nFindings = 0;
    if (check.LengthAt(nProtocol) != 16)
        nFindings += check.Error(55);
    const std::uint32_t dwProtocol = check.NumberAt(nProtocol);
    if (dwProtocol == kCompressionVanJacobson) {
        if (dwLength != 6)
            nFindings += check.Error(55);
        int aSlots[2];
        if (!check.TakeInOrder({FieldMaxSlotId, FieldCompSlotId}, aSlots))
            return nFindings + 1;
        if (check.LengthAt(aSlots[0]) != 8 || check.LengthAt(aSlots[1]) != 8)
            nFindings += check.Error(55);
        if (check.NumberAt(aSlots[1]) > 1)
            nFindings += check.Error(223);
    } else if (dwProtocol == kCompressionIPHeader) {
        if (dwLength < 14)
            nFindings += check.Error(55);
        nFindings += CheckProtocolIPCPNonCompressedTCP(check, dwLength);
    } else {
        nFindings += check.Test(FieldIPCPData, dwLength * 8);
    }
    return nFindings;
}

unsigned Spec::CheckProtocolIPCPNonCompressedTCP(SCheck& check, std::uint32_t dwLength)
{
    int aSpaces[5];
    if (!check.TakeInOrder({FieldTCPSpace, FieldNonTCPSpace, FieldFMaxPeriod, FieldFMaxTime, FieldMaxHeader},
                           aSpaces))
        return 1;
    unsigned nFindings = 0;
    for (const int nAt : aSpaces) {
        if (check.LengthAt(nAt) != 16) {
            nFindings += check.Error(55);
            break;
        }
    }
    if (dwLength > 14) {
        int aSuboption[2];
        if (!check.TakeInOrder({FieldSuboptionType, FieldSuboptionLength}, aSuboption))
            return nFindings + 1;
        // The parameters are taken as they come, whatever their id.
        std::uint32_t dwParameters = 0;
        if (check.Remaining() >= 1)
            dwParameters = check.LengthAt(check.nPos++);
        if (check.LengthAt(aSuboption[0]) != 8 || check.LengthAt(aSuboption[1]) != 8 ||
            dwParameters != dwLength * 8 - 112)
            nFindings += check.Error(55);
    }
    return nFindings;
}

// ---------------------------------------------------------------- IPV6CP

void Spec::ReadIPV6CPPacket(CPPPWalk& walk)
{
    if (!walk.More())
        return;
    int nRemaining = static_cast<int>(ReadControlHeader(walk, FieldIPV6CPCode)) - 4;
    while (nRemaining > 0) {
        if (!walk.More())
            return;
        const std::uint8_t nType = walk.Read(FieldIPV6CPType);
        --nRemaining;
        if (!walk.More() || nRemaining == 0)
            return;
        const std::uint8_t nLength = ReadOptionLength(walk, FieldIPV6CPOptionLength);
        --nRemaining;
        if (nLength >= 2 && walk.More()) {
            if (nType == 1)
                walk.Read(FieldInterfaceIdentifier, 64);
            else if (nType == 2)
                ReadIPV6CPCompressionProtocol(walk, nLength - 2u);
            else
                walk.Read(FieldIPV6CPData, nLength * 8u);
            // The whole length, although its two header bytes are taken.
            nRemaining -= nLength;
        }
        if (nRemaining < 1)
            break;
    }
    ReadLeftover(walk);
}

void Spec::ReadIPV6CPCompressionProtocol(CPPPWalk& walk, std::uint32_t dwLength)
{
    const std::uint16_t wProtocol = walk.Read(FieldIPV6CompressionProtocol);
    if (!walk.More())
        return;
    if (wProtocol == kCompressionIPHeader)
        ReadIPCPUnCompressedTCP(walk, dwLength);
    else
        walk.Read(FieldIPV6CPData, dwLength * 8 - 16);
}

unsigned Spec::CheckIPV6CPProtocol(SCheck& check)
{
    unsigned nFindings = CheckControlHeader(check, FieldIPV6CPCode, 7, 240, false);
    if (check.nPos >= check.nCount)
        return nFindings;
    for (;;) {
        if (check.dwBits >= check.dwLimit)
            return nFindings;
        if (check.Short(2))
            return nFindings + 1;
        const int nType = check.Take(FieldIPV6CPType, nFindings);
        if (check.NumberAt(nType) > 2)
            nFindings += check.Error(242);
        if (check.LengthAt(nType) != 8)
            nFindings += check.Error(55);
        check.dwBits += check.LengthAt(nType);
        const int nLength = check.nPos;
        if (check.IdAt(nLength) != FieldIPV6CPOptionLength)
            return nFindings + check.Error(54);
        ++check.nPos;
        if (check.LengthAt(nLength) != 8)
            nFindings += check.Error(55);
        check.dwBits += check.LengthAt(nLength);
        const std::uint32_t dwSize = check.NumberAt(nLength) * 8 - 16;
        const std::uint32_t dwType = check.NumberAt(nType);
        if (dwType == 1) {
            nFindings += check.Test(FieldInterfaceIdentifier, 64);
        } else if (dwType == 2) {
            // The protocol's own errors stand in the packet; the option's
            // findings are those of its data.
            if (check.Short(dwSize < 33 ? 1 : 2, true)) {
                ++nFindings;
            } else {
                const int nProtocol = check.nPos;
                check.Test(FieldIPV6CompressionProtocol, 16, true);
                if (check.NumberAt(nProtocol) == kCompressionIPHeader)
                    nFindings += CheckProtocolIPCPNonCompressedTCP(check, (dwSize - 16) / 8);
                else
                    nFindings += check.Test(FieldIPV6CPData, dwSize - 16);
                check.dwBits += dwSize - 16;
            }
        }
        if (check.nPos >= check.nCount)
            return nFindings;
    }
}

// ------------------------------------------------------------------- CCP

void Spec::ReadCCPPacket(CPPPWalk& walk)
{
    if (!walk.More())
        return;
    int nRemaining = static_cast<int>(ReadControlHeader(walk, FieldCCPCode)) - 4;
    while (nRemaining > 0) {
        if (!walk.More())
            return;
        const std::uint8_t nType = walk.Read(FieldCCPType);
        if (!walk.More() || nRemaining == 1)
            return;
        const std::uint8_t nLength = ReadOptionLength(walk, FieldCCPOptionLength);
        nRemaining -= 2;
        if (nLength >= 2 && walk.More()) {
            const std::uint32_t dwSize = (nLength - 2u) * 8;
            if (const SOptionLayout* pLayout = FindCCPLayout(nType))
                ReadOptionLayout(walk, *pLayout, dwSize);
            else if (dwSize != 0)
                walk.Read(FieldCCPData, dwSize);
            nRemaining -= nLength - 2;
        }
        if (nRemaining < 1)
            break;
    }
    ReadLeftover(walk);
}

unsigned Spec::CheckCCPProtocol(SCheck& check)
{
    unsigned nFindings = CheckControlHeader(check, FieldCCPCode, 13, 230, false);
    // The option checks count their fields' bits; type and length are not
    // counted, so the count comes out even with one option only.
    while (check.nPos < check.nCount && check.dwBits < check.dwLimit) {
        if (check.Short(2))
            return nFindings + 1;
        const int nType = check.nPos;
        nFindings += check.Test(FieldCCPType, 8);
        const int nLength = check.nPos;
        if (check.IdAt(nLength) != FieldCCPOptionLength)
            return nFindings + check.Error(54);
        ++check.nPos;
        if (check.LengthAt(nLength) != 8)
            nFindings += check.Error(55);
        const std::uint32_t dwSize = check.NumberAt(nLength) * 8 - 16;
        const std::uint32_t dwType = check.NumberAt(nType);
        if (const SOptionLayout* pLayout = FindCCPLayout(dwType)) {
            nFindings += CheckOptionLayout(check, *pLayout, dwSize);
        } else if (IsPlainCCPOption(dwType)) {
            // The option's length field once more, then its data.
            --check.nPos;
            if (check.Short(dwSize >= 9 ? 2 : 1)) {
                ++nFindings;
            } else {
                nFindings += check.Test(FieldCCPOptionLength, 8, true);
                if (dwSize != 0)
                    nFindings += check.Test(FieldCCPData, dwSize, true);
            }
        }
    }
    if (check.dwBits != check.dwLimit)
        nFindings += check.Error(231);
    return nFindings;
}
