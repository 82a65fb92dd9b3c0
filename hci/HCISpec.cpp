// The HCI decoder's frame: the entries, the dispatch by packet kind, the
// command and event code checks, the data packet walks and the packet class.
// The parameters of each command group are read in the group's own file.
#include "hci/HCISpec.h"

#include <cstddef>
#include <new>

#include "hci/HCIEventTable.h"
#include "hci/HCIReader.h"

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CHCISpec, CProtocolSpec)

CHCISpec* CHCISpec::ms_pInstance = nullptr;

namespace {

// Event codes that the event code check treats apart.
enum : std::uint8_t {
    kEventLogoTesting = 0xFE,
    kEventVendor = 0xFF,
};

// Connection handles 0x0F00 to 0x0FFF are reserved: a data packet that
// carries one is not read further.
constexpr std::uint16_t kFirstReservedHandle = 0x0F00;

// Error codes of an error message packet, 0x01 to 0x2A.
constexpr std::uint8_t kLastErrorCode = 0x2A;

// A run of OCFs that a group of HCI 1.1 defines.
struct SOCFSpan {
    unsigned nFirst;
    unsigned nLast;
};

constexpr SOCFSpan kLinkControlOCFs[] = {{1, 7},   {9, 15},  {17, 17}, {19, 19}, {21, 21},
                                         {23, 23}, {25, 25}, {27, 27}, {29, 29}, {31, 31}};
constexpr SOCFSpan kLinkPolicyOCFs[] = {{1, 1}, {3, 7}, {9, 9}, {11, 13}};
constexpr SOCFSpan kHostControllerOCFs[] = {{1, 1},   {3, 3},   {5, 5},   {8, 11}, {13, 13},
                                            {17, 47}, {49, 49}, {51, 51}, {53, 62}};
constexpr SOCFSpan kInformationOCFs[] = {{1, 1}, {3, 3}, {5, 5}, {7, 7}, {9, 9}};
constexpr SOCFSpan kStatusOCFs[] = {{1, 3}, {5, 5}};
constexpr SOCFSpan kTestingOCFs[] = {{1, 3}};

template <std::size_t N>
bool InSpans(const SOCFSpan (&aSpans)[N], unsigned nOCF)
{
    for (const SOCFSpan& span : aSpans)
        if (nOCF >= span.nFirst && nOCF <= span.nLast)
            return true;
    return false;
}

// Whether the group nOGF of HCI 1.1 has a command nOCF. Vendor commands have
// no OCFs of their own.
bool IsKnownCommand(unsigned nOGF, unsigned nOCF)
{
    switch (nOGF) {
    case kOGFLinkControl:
        return InSpans(kLinkControlOCFs, nOCF);
    case kOGFLinkPolicy:
        return InSpans(kLinkPolicyOCFs, nOCF);
    case kOGFHostController:
        return InSpans(kHostControllerOCFs, nOCF);
    case kOGFInformation:
        return InSpans(kInformationOCFs, nOCF);
    case kOGFStatus:
        return InSpans(kStatusOCFs, nOCF);
    case kOGFTesting:
        return InSpans(kTestingOCFs, nOCF);
    default:
        return false;
    }
}

// The opcode's OCF (bits 0 to 9) and OGF (bits 10 to 15), read from the
// front of a command without consuming it. Bits the payload lacks read as 0.
void SplitOpCode(const CAdvAnlzData& data, unsigned& nOCF, unsigned& nOGF)
{
    const std::uint16_t wOpCode = data;
    nOCF = wOpCode & 0x03FFu;
    nOGF = wOpCode >> 10;
}

}  // namespace

CHCISpec* CHCISpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CHCISpec();
    return ms_pInstance;
}

void CHCISpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CHCISpec::CHCISpec()
{
    // Command readers give single occurrences of a field a description of
    // their own, so records of equal numbers must stay apart by description.
    SetReferenceStrings(RefCompareDesc);
    InitOptions_HCIVendorCommand();
    InitOptions_HCILinkControl();
    InitOptions_HCIPolicyControl();
    InitOptions_HCIHostControl();
    InitOptions_HCIInformationParameters();
    InitOptions_HCIStatusParameters();
    InitOptions_HCITestingCommand();
    InitOptions_HCIEvent();
    InitOptions_HCIReturnParameter();
    InitOptions_HCIDATAPacket();
    InitRequestNames();
}

const SSpecFieldAttr* CHCISpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

const SSpecFieldAttr* CHCISpec::GetFieldReference(const SSpecFieldAttr& attr)
{
    return InternFieldAttr(attr);
}

int CHCISpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved)
{
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    m_nOpCodeOCF = 0;
    m_eHCIPacketKind = HCICommandPacketType;
    InterpretPacketData(data, packet, nReserved, HCICommandPacketType);
    if (CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet)) {
        pPacket->m_nRequestFields = m_nRequestFields;
        pPacket->m_nResponseFields = m_nResponseFields;
        pPacket->m_bHasResponse = 0;
    }
    return 0;
}

int CHCISpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/,
                                  EHCIPacketKind eKind)
{
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    m_nOpCodeOCF = 0;
    m_eHCIPacketKind = eKind;
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    CReqRespProtocolPacket& rrPacket = *pPacket;
    rrPacket.Clean();
    switch (eKind) {
    case HCICommandPacketType:
        ReadHCICommandPacketTypeElements(data, rrPacket);
        break;
    case HCIACLHostToHostControllerDataPacketType:
        ReadHCIACLHostToHostControllerDataPacketTypeElements(data, rrPacket);
        break;
    case HCIACLHostControllerToHostDataPacketType:
        ReadHCIACLHostControllerToHostDataPacketTypeElements(data, rrPacket);
        break;
    case HCISCODataPacketType:
        ReadHCISCODataPacketTypeElements(data, rrPacket);
        break;
    case HCIEventPacketType:
        ReadHCIEventPacketTypeElements(data, rrPacket);
        break;
    default:
        // A kind the caller cannot have captured: nothing is read.
        break;
    }
    CheckProtocol(rrPacket);
    rrPacket.m_nRequestFields = m_nRequestFields;
    rrPacket.m_nResponseFields = m_nResponseFields;
    rrPacket.m_bHasResponse = 0;
    return 1;
}

unsigned long CHCISpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                                  CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength)
{
    const unsigned char nBefore = packet.GetFieldCount();
    const unsigned long dwBits = ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
    // A full packet (255 fields) takes no more; the count follows the packet.
    if (packet.GetFieldCount() != nBefore)
        ++m_nRequestFields;
    return dwBits;
}

// ---------------------------------------------------------------- commands

unsigned long CHCISpec::ReadHCICommandPacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    if (!CheckCommandCode(data, packet))
        return 0;

    unsigned nOCF = 0, nOGF = 0;
    SplitOpCode(data, nOCF, nOGF);
    switch (nOGF) {
    case kOGFLinkControl:
        m_nOpCodeOCF = FieldLinkOCF;
        return ReadLinkCommandElements(data, packet);
    case kOGFLinkPolicy:
        m_nOpCodeOCF = FieldPolicyOCF;
        return ReadPolicyCommandElements(data, packet);
    case kOGFHostController:
        m_nOpCodeOCF = FieldHostOCF;
        return ReadHostCommandElements(data, packet);
    case kOGFInformation:
        m_nOpCodeOCF = FieldInformationOCF;
        return ReadInformationParametersElements(data, packet);
    case kOGFStatus:
        m_nOpCodeOCF = FieldStatusOCF;
        return ReadStatusParametersElements(data, packet);
    case kOGFTesting:
        m_nOpCodeOCF = FieldTestingOCF;
        return ReadTestingCommandElements(data, packet);
    default:
        return 0;
    }
}

int CHCISpec::CheckCommandCode(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    unsigned nOCF = 0, nOGF = 0;
    SplitOpCode(data, nOCF, nOGF);
    if (IsKnownCommand(nOGF, nOCF)) {
        // The informational parameters commands have no parameters, so they
        // are named here, before their group reader runs.
        if (nOGF == kOGFInformation)
            InformationSetRequestName(packet, static_cast<unsigned short>(nOCF));
        return 1;
    }

    CHCIReader reader = Reader(data, packet);
    if (nOGF == kOGFVendor) {
        // The vendor's parameters, Total_Length first, are one opaque field.
        SetFixedRequestName(packet, NameVendorCommand);
        if (!reader.ReadList({FieldVendorOCF, FieldLinkOGF}))
            return 0;
        m_nOpCodeOCF = FieldVendorOCF;
        reader.Read(FieldVendorData);
        return 0;
    }

    SetFixedRequestName(packet, NameUnKnown);
    if (nOGF >= kOGFLinkControl && nOGF <= kOGFTesting) {
        // An unknown command of a known group: its OCF shows in the link
        // control field, and the OGF bits stand at the front of UnExpected.
        if (!reader.ReadOn(FieldLinkOCF))
            return 0;
    } else {
        if (!reader.ReadList({FieldLinkOCF, FieldLinkOGF}))
            return 0;
    }
    m_nOpCodeOCF = FieldLinkOCF;
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return 0;
}

// ------------------------------------------------------------------ events

unsigned long CHCISpec::ReadHCIEventPacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    if (!CheckEventCode(data, packet))
        return 0;

    CHCIReader reader = Reader(data, packet);
    if (!reader.ReadOn(FieldEventCode))
        return reader.Consumed();
    const std::uint8_t nEventCode = reader.Value();
    if (!reader.ReadOn(FieldParameterTotalLength))
        return reader.Consumed();
    ReadEventParameters(reader, nEventCode);
    return reader.Consumed();
}

int CHCISpec::CheckEventCode(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    const std::uint8_t nEventCode = data;
    if (nEventCode >= kHCIFirstEventCode && nEventCode <= kHCILastEventCode)
        return 1;

    CHCIReader reader = Reader(data, packet);
    switch (nEventCode) {
    case kEventVendor: {
        // Parameter_Total_Length sizes the vendor's data; the rest is left over.
        SetFixedRequestName(packet, NameVendorEvent);
        if (!reader.ReadList({FieldEventCode, FieldParameterTotalLength}))
            return 0;
        const std::uint8_t nLength = reader.Value();
        reader.Read(FieldVendorData, 8ul * nLength);
        reader.ReadRest(CHCISpec::FieldUnExpected);
        return 0;
    }
    case kEventLogoTesting:
        // No length field: the logo testing data starts behind the code.
        SetFixedRequestName(packet, NameLogoTesting);
        if (reader.ReadOn(FieldEventCode))
            reader.Read(FieldLogoTestingData);
        return 0;
    default:
        SetFixedRequestName(packet, NameUnKnown);
        if (reader.ReadOn(FieldEventCode))
            reader.ReadRest(CHCISpec::FieldUnExpected);
        return 0;
    }
}

// ------------------------------------------------------------ data packets

unsigned long CHCISpec::ReadHCIACLHostToHostControllerDataPacketTypeElements(const CAdvAnlzData& data,
                                                                             CReqRespProtocolPacket& packet)
{
    // Handle (12 bits), Packet_Boundary_Flag (2), Broadcast_Flag (2),
    // Data_Total_Length (16), then the data.
    return ReadDataPacket(data, packet, NameACLData, FieldACLHandle,
                          {FieldPacketBoundaryFlag, FieldBroadcastFlagToController, FieldACLDataTotalLength},
                          FieldACLData);
}

unsigned long CHCISpec::ReadHCIACLHostControllerToHostDataPacketTypeElements(const CAdvAnlzData& data,
                                                                             CReqRespProtocolPacket& packet)
{
    return ReadDataPacket(data, packet, NameACLData, FieldACLHandle,
                          {FieldPacketBoundaryFlag, FieldBroadcastFlagToHost, FieldACLDataTotalLength}, FieldACLData);
}

unsigned long CHCISpec::ReadHCISCODataPacketTypeElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    // Handle (12 bits), reserved (4), Data_Total_Length (8), then the data.
    return ReadDataPacket(data, packet, NameSCOData, FieldSCOHandle,
                          {FieldSCOReserved, FieldSCODataTotalLength}, FieldSCOData);
}

unsigned long CHCISpec::ReadDataPacket(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, EHCIFixedName eName,
                                       unsigned short nHandleId, std::initializer_list<unsigned short> headerIds,
                                       unsigned short nDataId)
{
    if (data.GetByteLength() < 1)
        return 0;
    SetFixedRequestName(packet, eName);

    CHCIReader reader = Reader(data, packet);
    if (!reader.ReadOn(nHandleId))
        return reader.Consumed();
    const std::uint16_t wHandle = reader.Value();
    if (wHandle >= kFirstReservedHandle) {
        reader.ReadRest(CHCISpec::FieldUnExpected);
        return reader.Consumed();
    }
    if (!reader.ReadList(headerIds))
        return reader.Consumed();
    // A length of 0 reads the data field's default width: all that is left.
    const std::uint16_t wLength = reader.Value();
    reader.Read(nDataId, 8ul * wLength);
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}

// ----------------------------------------------------------- error message

unsigned long CHCISpec::ReadHCIErrorMessagePacketTypeElements(const CAdvAnlzData& data,
                                                              CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    if (!CheckErrorMessageCode(data, packet))
        return 0;
    CHCIReader reader = Reader(data, packet);
    reader.Read(FieldErrorMessageCode);
    return reader.Consumed();
}

int CHCISpec::CheckErrorMessageCode(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    const std::uint8_t nCode = data;
    if (nCode >= 1 && nCode <= kLastErrorCode)
        return 1;
    SetFixedRequestName(packet, NameUnKnown);
    CHCIReader reader = Reader(data, packet);
    reader.Read(FieldUnExpected);
    return 0;
}

// ------------------------------------------------------------------ packet

CHCIPacket::CHCIPacket() : CReqRespProtocolPacket(CHCISpec::GetInstance()) {}

CHCIPacket::CHCIPacket(const CAdvAnlzData& data, EHCIPacketKind eKind) : CHCIPacket()
{
    RestructBy(data, eKind);
}

CHCIPacket::CHCIPacket(const CByteArray& aBytes, EHCIPacketKind eKind) : CHCIPacket()
{
    RestructBy(CAdvAnlzData(aBytes), eKind);
}

CHCIPacket::CHCIPacket(const CHCIPacket&) : CHCIPacket() {}

CHCIPacket& CHCIPacket::operator=(const CHCIPacket& other)
{
    CReqRespProtocolPacket::operator=(other);
    return *this;
}

int CHCIPacket::RestructBy(const CAdvAnlzData& data, EHCIPacketKind eKind)
{
    CHCISpec* pSpec = dynamic_cast<CHCISpec*>(m_pSpec);
    if (!pSpec)
        return 0;
    const int nResult = pSpec->InterpretPacketData(data, *this, 0, eKind);
    m_nOpCodeOCF = pSpec->m_nOpCodeOCF;
    return nResult;
}

void CHCIPacket::SerializeMembers(CArchive& ar)
{
    CReqRespProtocolPacket::SerializeMembers(ar);
    if (ar.IsStoring()) {
        ar << static_cast<std::int32_t>(m_nOpCodeOCF);
    } else {
        std::int32_t nOpCodeOCF = 0;
        ar >> nOpCodeOCF;
        m_nOpCodeOCF = nOpCodeOCF;
    }
}
