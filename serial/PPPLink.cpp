// The link-level frames of PPP, read and checked: LCP with its options,
// CHAP, the header of EAP, the Van Jacobson TCP/IP frames and frames of
// protocols that are not decoded here.
#include "serial/PPPSpec.h"

using Spec = CAdvAnlzPPPSpec;

namespace {

// LCP options of a fixed layout: fields, the field that takes the rest of a
// longer option, and how many fields the check wants. The three option types
// of another shape (3, 26 and those without data) are read and checked by
// hand.
const Spec::SOptionLayout kLCPOptionLayouts[] = {
    // type, fields, rest field, rest behind bits, need short/long, set short/long
    {0, {{Spec::FieldLCPVendorOUI, 24}, {Spec::FieldLCPVendorKind, 8}}, Spec::FieldLCPVendorValues, 32, 2, 3, true,
     true},
    {1, {{Spec::FieldMRU, 16}}, 0, 0, 1, 1, false, false},
    {4, {{Spec::FieldQualityProtocol, 16}}, Spec::FieldQualityData, 16, 1, 2, false, true},
    {5, {{Spec::FieldMagicNumber, 32}}, 0, 0, 1, 1, false, false},
    {9, {{Spec::FieldFCSAlternatives, 8}}, 0, 0, 1, 1, true, true},
    {10, {{Spec::FieldPadMaximum, 8}}, 0, 0, 1, 1, false, false},
    {11, {{Spec::FieldNumberedWindow, 8}}, Spec::FieldNumberedAddress, 8, 2, 2, true, true},
    {13, {{Spec::FieldCallBackOperation, 8}}, Spec::FieldCallBackMessage, 8, 1, 2, false, true},
    {17, {{Spec::FieldMRRU, 16}}, 0, 0, 1, 1, false, false},
    {19, {{Spec::FieldEndpointClass, 8}}, Spec::FieldEndpointAddress, 8, 2, 2, true, true},
    {22, {{Spec::FieldMPPlusOption, 16}}, 0, 0, 1, 1, false, false},
    {23, {{Spec::FieldLinkDiscriminator, 16}}, 0, 0, 1, 1, false, false},
    {27, {{Spec::FieldMultilinkHeaderCode, 8}, {Spec::FieldSuspendableClasses, 8}}, 0, 0, 2, 2, true, true},
    // A four-byte character set number, then the language tag.
    {28, {{Spec::FieldCharset, 32}}, Spec::FieldLanguageTag, 32, 2, 2, true, true},
};

const Spec::SOptionLayout* FindLCPLayout(std::uint32_t dwType)
{
    for (const Spec::SOptionLayout& layout : kLCPOptionLayouts)
        if (layout.nType == dwType)
            return &layout;
    return nullptr;
}

// LCP option types that carry no data: their length must be 2.
bool IsDataLessLCPOption(std::uint32_t dwType)
{
    return dwType == 7 || dwType == 8 || dwType == 15 || dwType == 18 || dwType == 29;
}

constexpr std::uint8_t kLCPOptionAuthentication = 3;
constexpr std::uint8_t kLCPOptionPrefixElision = 26;
constexpr std::uint16_t kAuthenticationCHAP = 0xC223;

}  // namespace

// ------------------------------------------------------------------- LCP

void Spec::ReadLCPPacket(CPPPWalk& walk)
{
    if (!walk.More())
        return;
    // Whatever the code, the bytes behind the length are read as options.
    int nRemaining = static_cast<int>(ReadControlHeader(walk, FieldLCPCode)) - 4;
    while (nRemaining > 0) {
        if (!walk.More())
            return;
        const std::uint8_t nType = walk.Read(FieldLCPType);
        --nRemaining;
        if (!walk.More() || nRemaining == 0)
            return;
        const int nData = static_cast<int>(static_cast<std::uint8_t>(walk.Read(FieldLCPOptionLength))) - 2;
        --nRemaining;
        if (walk.More()) {
            // An option length below 2 hands on a size from the low byte of
            // the negative data length, and ends the option walk.
            ReadLCPOption(walk, nType, static_cast<std::uint8_t>(nData) * 8u);
            nRemaining -= nData;
        }
        if (nRemaining < 1 || nData < 0)
            break;
    }
    ReadLeftover(walk);
}

void Spec::ReadLCPOption(CPPPWalk& walk, std::uint8_t nType, std::uint32_t dwSize)
{
    if (const SOptionLayout* pLayout = FindLCPLayout(nType)) {
        ReadOptionLayout(walk, *pLayout, dwSize);
        return;
    }
    if (nType == kLCPOptionAuthentication) {
        // CHAP names its algorithm in one byte; other protocols carry data.
        if (static_cast<std::uint16_t>(walk.Read(FieldAuthProtocol, 16)) == kAuthenticationCHAP)
            walk.Read(FieldAuthAlgorithm, 8);
        else if (dwSize > 16)
            walk.Read(FieldAuthData, dwSize - 16);
    } else if (nType == kLCPOptionPrefixElision) {
        // Class, prefix length and prefix, again and again, each taken from
        // the size, until the size is used up exactly or the frame ends.
        while (dwSize != 0) {
            dwSize -= walk.Read(FieldPrefixClass, 8).GetLength();
            if (dwSize == 0 || !walk.More())
                break;
            const CAdvAnlzData& prefixLength = walk.Read(FieldPrefixLength, 8);
            const std::uint32_t dwPrefixBits = static_cast<std::uint8_t>(prefixLength) * 8u;
            dwSize -= prefixLength.GetLength();
            if (dwSize == 0 || !walk.More())
                break;
            dwSize -= walk.Read(FieldPrefix, dwPrefixBits).GetLength();
            if (!walk.More())
                break;
        }
    } else if (dwSize != 0) {
        walk.Read(FieldLCPData, dwSize);
    }
}

unsigned Spec::CheckLCPProtocol(SCheck& check)
{
    unsigned nFindings = CheckControlHeader(check, FieldLCPCode, 13, 200, true);
    if (check.nPos >= check.nCount)
        return nFindings;
    for (;;) {
        if (check.dwBits >= check.dwLimit)
            return nFindings;
        if (check.Short(2))
            return nFindings + 1;
        const int nType = check.Take(FieldLCPType, nFindings);
        const std::uint32_t dwType = check.NumberAt(nType);
        if (dwType > 30 || dwType == 2)
            nFindings += check.Error(202);
        if (check.LengthAt(nType) != 8)
            nFindings += check.Error(55);
        check.dwBits += check.LengthAt(nType);
        const int nLength = check.nPos;
        if (check.IdAt(nLength) != FieldLCPOptionLength)
            return nFindings + check.Error(54);
        ++check.nPos;
        if (check.LengthAt(nLength) != 8)
            nFindings += check.Error(55);
        check.dwBits += check.LengthAt(nLength);
        nFindings += CheckLCPOption(check, dwType, check.NumberAt(nLength) * 8 - 16);
        if (check.nPos >= check.nCount)
            return nFindings;
    }
}

unsigned Spec::CheckLCPOption(SCheck& check, std::uint32_t dwType, std::uint32_t dwSize)
{
    if (const SOptionLayout* pLayout = FindLCPLayout(dwType))
        return CheckOptionLayout(check, *pLayout, dwSize);
    unsigned nFindings = 0;
    if (dwType == kLCPOptionAuthentication) {
        if (check.Short(dwSize >= 17 ? 2 : 1, true))
            return 1;
        const int nProtocol = check.nPos;
        nFindings += check.Test(FieldAuthProtocol, 16, true);
        if (dwSize > 16) {
            if (check.NumberAt(nProtocol) == kAuthenticationCHAP) {
                check.Take(FieldAuthAlgorithm, nFindings);
                if (dwSize != 24)
                    nFindings += check.Error(55);
            } else {
                nFindings += check.Test(FieldAuthData, dwSize - 16, true);
            }
        }
    } else if (IsDataLessLCPOption(dwType)) {
        // The option's length field once more: it must say 2.
        --check.nPos;
        if (check.Short(1))
            return 1;
        const int nLength = check.nPos;
        nFindings += check.Test(FieldLCPOptionLength, 8, true);
        if (check.NumberAt(nLength) != 2)
            nFindings += check.Error(203);
    } else if (dwType == kLCPOptionPrefixElision) {
        while (dwSize != 0) {
            if (check.Short(3, true))
                return nFindings + 1;
            nFindings += check.Test(FieldPrefixClass, 8);
            const std::uint32_t dwPrefixBits = check.NumberAt(check.nPos) * 8;
            nFindings += check.Test(FieldPrefixLength, 8, true);
            nFindings += check.Test(FieldPrefix, dwPrefixBits, true);
            dwSize -= 16 + dwPrefixBits;
        }
    }
    return nFindings;
}

// ------------------------------------------------------------------ CHAP

void Spec::ReadCHAPPacket(CPPPWalk& walk)
{
    if (!walk.More())
        return;
    const std::uint8_t nCode = walk.Read(FieldCHAPCode);
    walk.Read(FieldCHAPId);
    const std::uint16_t wLength = walk.Read(FieldCHAPLength);
    if (nCode == 1 || nCode == 2) {
        // Challenge and Response: value size, value, then the name.
        const std::uint8_t nValueSize = walk.Read(FieldCHAPValueSize);
        walk.Read(FieldCHAPValue, nValueSize * 8u);
        const std::uint8_t nName = static_cast<std::uint8_t>(wLength - nValueSize - 5);
        if (nName != 0)
            walk.Read(FieldCHAPName, nName * 8u);
    } else if (nCode == 3 || nCode == 4) {
        // Success and Failure: a message.
        const std::uint8_t nMessage = static_cast<std::uint8_t>(wLength - 4);
        if (nMessage != 0)
            walk.Read(FieldCHAPMessage, nMessage * 8u);
    }
}

unsigned Spec::CheckCHAPProtocol(SCheck& check)
{
    int aHeader[3];
    if (!check.TakeInOrder({FieldCHAPCode, FieldCHAPId, FieldCHAPLength}, aHeader))
        return 1;
    unsigned nFindings = 0;
    if (check.LengthAt(aHeader[0]) != 8 || check.LengthAt(aHeader[1]) != 8 || check.LengthAt(aHeader[2]) != 16)
        nFindings += check.Error(55);
    const std::uint32_t dwCode = check.NumberAt(aHeader[0]);
    const std::uint32_t dwData = check.NumberAt(aHeader[2]) - 4;
    if (dwCode == 0 || dwCode > 4)
        nFindings += check.Error(191);

    if (dwCode == 1 || dwCode == 2) {
        int aData[3];
        if (!check.TakeInOrder({FieldCHAPValueSize, FieldCHAPValue, FieldCHAPName}, aData))
            return nFindings + 1;
        const std::uint32_t dwValueSize = check.NumberAt(aData[0]);
        if (check.LengthAt(aData[0]) != 8 || check.LengthAt(aData[1]) != dwValueSize * 8 ||
            check.LengthAt(aData[2]) != (((dwData - dwValueSize - 1) * 8) & 0xFFFF))
            nFindings += check.Error(55);
    } else if ((dwCode == 3 || dwCode == 4) && dwData != 0) {
        if (check.Short(1))
            return nFindings + 1;
        nFindings += check.Test(FieldCHAPMessage, dwData * 8);
    }
    return nFindings;
}

// ------------------------------------------------- EAP, Van Jacobson, others

void Spec::ReadEAPPacket(CPPPWalk& walk)
{
    // Code, identifier and length; the rest of the frame is not read, so the
    // walk takes it for the next frame.
    ReadControlHeader(walk, FieldLCPCode);
}

void Spec::ReadVanJacobsonPacket(CPPPWalk& walk)
{
    walk.Read(FieldVJData);
}

unsigned Spec::CheckVanJacobson(SCheck& check, std::uint32_t dwBits)
{
    if (check.Short(1))
        return 1;
    return check.Test(FieldVJData, dwBits);
}

void Spec::ReadUnDefinedPacket(CPPPWalk& walk)
{
    // A Length of 4 leaves 0 bits, the field's default byte.
    const std::uint32_t dwLength = ReadControlHeader(walk, FieldUndefinedCode);
    walk.Read(FieldUndefinedField, (dwLength - 4) * 8);
}

unsigned Spec::CheckUnDefinedProtocolFields(SCheck& check)
{
    if (check.Short(3, true))
        return 1;
    const int nCode = check.nPos;
    unsigned nFindings = check.Test(FieldUndefinedCode, 8);
    nFindings += check.Test(FieldUndefinedId, 8);
    const int nLength = check.nPos;
    nFindings += check.Test(FieldUndefinedLength, 16);
    const std::uint32_t dwPacketBits = check.NumberAt(nLength) * 8;
    // The data field is missing when the frame ends behind its header; it
    // then counts as 0 bits.
    std::uint32_t dwData = 0;
    if (check.Remaining() >= 1) {
        const int nData = check.nPos;
        nFindings += check.Test(FieldUndefinedField, dwPacketBits - 32);
        dwData = check.LengthAt(nData);
    } else if (dwPacketBits != 32) {
        nFindings += check.Error(55);
    }
    if (check.LengthAt(nCode) + check.LengthAt(nCode + 1) + check.LengthAt(nLength) + dwData != dwPacketBits)
        nFindings += check.Error(55);
    return nFindings;
}
