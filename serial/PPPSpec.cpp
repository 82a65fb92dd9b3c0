// The PPP decoder's frame: the walk over the frames of a payload, the
// dispatch by protocol number, the check walk by position that follows it,
// the protocol mask and the packet class. The protocols are read and checked
// in PPPLink.cpp (LCP, CHAP, EAP, Van Jacobson, unknown protocols),
// PPPNetworkControl.cpp (IPCP, IPV6CP, CCP) and PPPInternet.cpp (IPv4).
#include "serial/PPPSpec.h"

#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CAdvAnlzPPPSpec, CProtocolSpec)
BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CPPPPacket, CReqRespProtocolPacket)

CAdvAnlzPPPSpec* CAdvAnlzPPPSpec::ms_pInstance = nullptr;

CAdvAnlzPPPSpec* CAdvAnlzPPPSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CAdvAnlzPPPSpec();
    return ms_pInstance;
}

void CAdvAnlzPPPSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CAdvAnlzPPPSpec::CAdvAnlzPPPSpec()
{
    InitHeaderOptions();
    InitLCPOptions();
    InitCHAPOptions();
    InitIPCPOptions();
    InitIPV6CPOptions();
    InitIPOptions();
    InitCCPOptions();
}

unsigned long CAdvAnlzPPPSpec::ReadField(const CAdvAnlzData& data, CProtocolPacket& packet, unsigned short nId,
                                         CAdvAnlzData& value, EByteOrder /*eOrder*/, unsigned long dwLength)
{
    return ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, ByteOrderReversed, dwLength);
}

// ------------------------------------------------------------- frame walk

int CAdvAnlzPPPSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    CPPPPacket* pPPPPacket = dynamic_cast<CPPPPacket*>(&packet);
    if (pPPPPacket)
        pPPPPacket->ClearProtocolsMask();
    packet.Clean();

    // Frames follow one another while more than a protocol number is left.
    // A reader that stops inside its frame leaves the rest to be taken as
    // the next frame's protocol number.
    const std::uint32_t dwLength = data.GetLength();
    CPPPWalk walk = Walk(data, packet);
    while (walk.More() && (walk.Consumed() == 0 || walk.Consumed() + 16 < dwLength)) {
        const std::uint16_t wProtocol = walk.Read(FieldHeader);
        // The frame's length in bytes stands in its third and fourth byte,
        // big-endian; for a frame of another shape it is whatever is there.
        const std::uint16_t wFrameBytes = CAdvAnlzTools().RevertByteOrder(walk.Peek(32).GetBits(16, 16));
        void (*pfnRead)(CPPPWalk&) = &CAdvAnlzPPPSpec::ReadUnDefinedPacket;
        switch (wProtocol) {
        case ProtocolIP:
            pfnRead = &CAdvAnlzPPPSpec::ReadIPPacket;
            break;
        case ProtocolCompressedTCP:
        case ProtocolUncompressedTCP:
            pfnRead = &CAdvAnlzPPPSpec::ReadVanJacobsonPacket;
            break;
        case ProtocolIPCP:
            pfnRead = &CAdvAnlzPPPSpec::ReadIPCPPacket;
            break;
        case ProtocolIPV6CP:
            pfnRead = &CAdvAnlzPPPSpec::ReadIPV6CPPacket;
            break;
        case ProtocolCCP:
            pfnRead = &CAdvAnlzPPPSpec::ReadCCPPacket;
            break;
        case ProtocolLCP:
            pfnRead = &CAdvAnlzPPPSpec::ReadLCPPacket;
            break;
        case ProtocolCHAP:
            pfnRead = &CAdvAnlzPPPSpec::ReadCHAPPacket;
            break;
        case ProtocolEAP:
            pfnRead = &CAdvAnlzPPPSpec::ReadEAPPacket;
            break;
        default:
            break;
        }
        // The reader sees the frame only: the walk is bound to its length.
        walk.SetLimit(static_cast<std::uint32_t>(wFrameBytes) * 8);
        pfnRead(walk);
        walk.SetLimit(CAdvAnlzData::kToEnd);
        if (pPPPPacket)
            pPPPPacket->AddProtocol(GetProtocolMask(wProtocol));
    }
    ReadLeftover(walk);
    return CheckProtocol(packet) == 0 ? 1 : 0;
}

void CAdvAnlzPPPSpec::ReadLeftover(CPPPWalk& walk)
{
    if (walk.More())
        walk.Read(FieldUnexpected, walk.Left());
}

unsigned CAdvAnlzPPPSpec::ReadControlHeader(CPPPWalk& walk, unsigned short nCodeId)
{
    if (walk.ReadOn(nCodeId) && walk.ReadOn(static_cast<unsigned short>(nCodeId + 1)))
        return static_cast<std::uint16_t>(walk.Read(static_cast<unsigned short>(nCodeId + 2)));
    return 0;
}

void CAdvAnlzPPPSpec::ReadOptionLayout(CPPPWalk& walk, const SOptionLayout& layout, std::uint32_t dwSize)
{
    for (const SOptionField& field : layout.aFields) {
        if (field.nId == 0)
            break;
        walk.Read(field.nId, field.nBits);
    }
    if (layout.nTrailingId != 0 && dwSize > layout.dwThreshold)
        walk.Read(layout.nTrailingId, dwSize - layout.dwThreshold);
}

// ------------------------------------------------------------- check walk

unsigned short CAdvAnlzPPPSpec::SCheck::IdAt(int nAt) const
{
    return nAt >= 1 && nAt <= nCount ? packet.GetFieldId(static_cast<unsigned char>(nAt)) : 0;
}

std::uint32_t CAdvAnlzPPPSpec::SCheck::LengthAt(int nAt) const
{
    const CAdvAnlzData* pValue = nAt >= 1 && nAt <= nCount ? packet.GetFieldValue(static_cast<unsigned char>(nAt))
                                                           : nullptr;
    return pValue ? pValue->GetLength() : 0;
}

std::uint32_t CAdvAnlzPPPSpec::SCheck::NumberAt(int nAt) const
{
    const CAdvAnlzData* pValue = nAt >= 1 && nAt <= nCount ? packet.GetFieldValue(static_cast<unsigned char>(nAt))
                                                           : nullptr;
    return pValue ? static_cast<std::uint32_t>(*pValue) : 0;
}

bool CAdvAnlzPPPSpec::SCheck::Short(int nNeed, bool bSet)
{
    if (Remaining() >= nNeed)
        return false;
    packet.AddPError(53);
    if (bSet)
        nPos = nCount;
    return true;
}

int CAdvAnlzPPPSpec::SCheck::Take(unsigned short nId, unsigned& nFindings)
{
    const int nAt = nPos++;
    if (IdAt(nAt) != nId)
        nFindings += Error(54);
    return nAt;
}

unsigned CAdvAnlzPPPSpec::SCheck::Test(unsigned short nId, std::uint32_t dwLength, bool bCount)
{
    unsigned nFindings = 0;
    const int nAt = Take(nId, nFindings);
    if (LengthAt(nAt) != dwLength)
        nFindings += Error(55);
    if (bCount)
        dwBits += LengthAt(nAt);
    return nFindings;
}

bool CAdvAnlzPPPSpec::SCheck::TakeInOrder(std::initializer_list<unsigned short> ids, int* pAt, int nBehind)
{
    for (const unsigned short nId : ids) {
        if (Remaining() < 1 + nBehind) {
            Error(53);
            return false;
        }
        if (IdAt(nPos) != nId) {
            Error(54);
            return false;
        }
        *pAt++ = nPos++;
    }
    return true;
}

unsigned char CAdvAnlzPPPSpec::CheckProtocol(CProtocolPacket& packet) const
{
    packet.ClearPErrors();
    SCheck check{packet, packet.GetFieldCount()};
    unsigned nFindings = 0;
    for (;;) {
        // Behind the last frame at most one field may be left: the bytes
        // that were too few for a frame.
        if (check.nPos + 1 >= check.nCount && check.nPos != 1) {
            if (check.nPos != check.nCount && check.nPos != check.nCount + 1)
                nFindings += check.Error(57);
            break;
        }
        if (check.nCount == 0) {
            nFindings += check.Error(53);
            break;
        }
        const int nHeader = check.nPos;
        if (check.IdAt(nHeader) != FieldHeader)
            nFindings += check.Error(54);
        if (check.LengthAt(nHeader) != 16) {
            nFindings += check.Error(55);
            break;
        }
        // A protocol number has an odd low byte and an even high byte.
        const std::uint16_t wProtocol = static_cast<std::uint16_t>(check.NumberAt(nHeader));
        if ((wProtocol & 0x0001) == 0 || (wProtocol & 0x0100) != 0)
            nFindings += check.Error(190);
        ++check.nPos;
        nFindings += CheckFrame(check, wProtocol);
        // A frame check that ran short may have set the position back to
        // the last field; when that is this header, the walk is over.
        if (check.nPos <= nHeader)
            check.nPos = nHeader + 1;
    }
    return static_cast<unsigned char>(nFindings > 255 ? 255 : nFindings);
}

unsigned CAdvAnlzPPPSpec::CheckFrame(SCheck& check, std::uint16_t wProtocol)
{
    switch (wProtocol) {
    case ProtocolIP:
        return CheckIPProtocol(check);
    case ProtocolCompressedTCP:
        return CheckVanJacobson(check, 624);
    case ProtocolUncompressedTCP:
        return CheckVanJacobson(check, 320);
    case ProtocolIPCP:
        return CheckIPCPProtocol(check);
    case ProtocolIPV6CP:
        return CheckIPV6CPProtocol(check);
    case ProtocolCCP:
        return CheckCCPProtocol(check);
    case ProtocolLCP:
        return CheckLCPProtocol(check);
    case ProtocolCHAP:
        return CheckCHAPProtocol(check);
    default:
        return CheckUnDefinedProtocolFields(check);
    }
}

unsigned CAdvAnlzPPPSpec::CheckOptionLayout(SCheck& check, const SOptionLayout& layout, std::uint32_t dwSize)
{
    const bool bLong = layout.nTrailingId != 0 && dwSize > layout.dwThreshold;
    if (check.Short(bLong ? layout.nNeedLong : layout.nNeedShort, bLong ? layout.bSetLong : layout.bSetShort))
        return 1;
    unsigned nFindings = 0;
    for (const SOptionField& field : layout.aFields) {
        if (field.nId == 0)
            break;
        nFindings += check.Test(field.nId, field.nBits, true);
    }
    if (bLong)
        nFindings += check.Test(layout.nTrailingId, dwSize - layout.dwThreshold, true);
    return nFindings;
}

unsigned CAdvAnlzPPPSpec::CheckControlHeader(SCheck& check, unsigned short nCodeId, std::uint32_t dwMaxCode,
                                             unsigned short nCodeError, bool bSetOnShortId)
{
    check.dwBits = 0;
    check.dwLimit = 0;
    unsigned nFindings = 0;
    if (check.Short(3)) {
        ++nFindings;
    } else {
        // A code out of range is reported in place of its length.
        const int nCode = check.Take(nCodeId, nFindings);
        if (check.NumberAt(nCode) > dwMaxCode)
            nFindings += check.Error(nCodeError);
        else if (check.LengthAt(nCode) != 8)
            nFindings += check.Error(55);
    }
    if (check.Short(1, bSetOnShortId))
        ++nFindings;
    else
        nFindings += check.Test(static_cast<unsigned short>(nCodeId + 1), 8);
    if (check.Short(1)) {
        ++nFindings;
    } else {
        // The options end 6 bytes before the Length counts: the walk stops
        // 16 bits early, and a Length below 6 wraps the limit.
        const int nLength = check.nPos;
        nFindings += check.Test(static_cast<unsigned short>(nCodeId + 2), 16);
        check.dwLimit = check.NumberAt(nLength) * 8 - 48;
    }
    return nFindings;
}

// ------------------------------------------------------------- protocols

unsigned short CAdvAnlzPPPSpec::GetProtocolMask(unsigned short wProtocol) noexcept
{
    switch (wProtocol) {
    case ProtocolLCP:
        return 0x0002;
    case ProtocolCCP:
        return 0x0004;
    case ProtocolCHAP:
        return 0x0008;
    case ProtocolIP:
        return 0x0010;
    case ProtocolIPCP:
        return 0x0020;
    case ProtocolIPV6CP:
        return 0x0040;
    default:
        return 0;
    }
}

void CAdvAnlzPPPSpec::GetProtocolList(unsigned short wMask, CWordArray& aProtocols) const
{
    aProtocols.RemoveAll();
    const CFieldOptionList* pList = GetFieldOptions(FieldHeader);
    for (int i = 0; pList && i < pList->GetSize(); ++i) {
        const std::uint16_t wProtocol = pList->GetAt(i).m_Low;
        if (GetProtocolMask(wProtocol) & wMask)
            aProtocols.Add(wProtocol);
    }
}

// ------------------------------------------------------------- packet

CPPPPacket::CPPPPacket() : CReqRespProtocolPacket(CAdvAnlzPPPSpec::GetInstance()) {}

CPPPPacket::CPPPPacket(const CPPPPacket&) : CPPPPacket() {}

CPPPPacket::CPPPPacket(const CAdvAnlzData&) : CPPPPacket() {}

CPPPPacket::CPPPPacket(const CByteArray&) : CPPPPacket() {}

CPPPPacket& CPPPPacket::operator=(const CPPPPacket&)
{
    return *this;
}

unsigned long CPPPPacket::SetFieldData(unsigned char, const CAdvAnlzData&)
{
    return 0;
}

CString CPPPPacket::GetFieldBriefPattern(unsigned char nIndex, unsigned char nKind, unsigned long& dwLength,
                                         EDisplayFormat eFormat, int nFlag) const
{
    const unsigned short nId = GetFieldId(nIndex);
    if (nKind == 6 && (nId == CAdvAnlzPPPSpec::FieldIPSource || nId == CAdvAnlzPPPSpec::FieldIPDestination)) {
        CAdvAnlzData value;
        GetFieldData(nIndex, value);
        CString strAddress = CAdvAnlzTools().IpAddress(value);
        dwLength = static_cast<unsigned long>(strAddress.GetLength());
        return strAddress;
    }
    return CReqRespProtocolPacket::GetFieldBriefPattern(nIndex, nKind, dwLength, eFormat, nFlag);
}

CString CPPPPacket::GetFieldPattern(unsigned char nIndex, unsigned char nKind, EDisplayFormat eFormat,
                                    int nFlag) const
{
    unsigned long dwLength = 0;
    return GetFieldBriefPattern(nIndex, nKind, dwLength, eFormat, nFlag);
}

void CPPPPacket::SerializeMembers(CArchive& ar)
{
    CReqRespProtocolPacket::SerializeMembers(ar);
    if (ar.IsStoring())
        ar << static_cast<std::uint16_t>(m_wProtocolsMask);
    else
        ar >> m_wProtocolsMask;
}
