// The communication class walk and its request table: for each bRequest the
// fields that wValue is read into, the wLength field, and how the data stage
// is read.
#include "usbclass/CommunicationClass.h"

#include <algorithm>
#include <iterator>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CCommunicationClassSpec, CProtocolSpec)

// How the data stage of a request is read.
enum class ECommData : std::uint8_t {
    None,              // no data stage
    Fields,            // the data fields, each with nDataBits or its default length
    ByLength,          // the first data field, wLength bytes long
    CommFeature,       // by the feature selector in wValue
    LineParms,         // the line parameters, with call states as many as their length says
    MulticastFilters,  // wValue addresses of six bytes each
    PatternFilter,     // mask size, mask, pattern
};

// One row of the request table.
struct SCommRequest {
    std::uint8_t nRequest;
    const char* pszRequest;
    unsigned short aValueIds[6];  // the fields that wValue is read into; 0 ends the list
    unsigned short nLengthId;     // the field of wLength
    ECommData eData;
    unsigned short aDataIds[4];  // 0 ends the list
    std::uint32_t nDataBits;     // explicit length of each data field, 0 for the default
    const char* pszResponse;
};

namespace {

using Spec = CCommunicationClassSpec;
using D = ECommData;

// The request table, in order of bRequest. Every row reads wIndex as the
// interface between its wValue fields and its wLength field.
const SCommRequest kRequests[] = {
    {0x00, "SendEncapsulatedCommand", {Spec::FieldValue}, Spec::FieldLength, D::ByLength,
     {Spec::FieldEncapsulatedCommand}, 0, "EncapsulatedCommand"},
    {0x01, "GetEncapsulatedResponse", {Spec::FieldValue}, Spec::FieldLength, D::ByLength,
     {Spec::FieldEncapsulatedResponse}, 0, "EncapsulatedResponse"},
    {0x02, "SetCommFeature", {Spec::FieldFeatureSelector}, Spec::FieldLength, D::CommFeature, {}, 0, "CommFeature"},
    {0x03, "GetCommFeature", {Spec::FieldFeatureSelector}, Spec::FieldLength, D::CommFeature, {}, 0, "CommFeature"},
    {0x04, "ClearCommFeature", {Spec::FieldFeatureSelector}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x10, "SetAuxLineState", {Spec::FieldAuxLineState}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x11, "SetHookState", {Spec::FieldHookState}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x12, "PulseSetup", {Spec::FieldPulseSetup}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x13, "SendPulse", {Spec::FieldPulseCycles}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x14, "SetPulseTime", {Spec::FieldPulseTiming}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x15, "RingAuxJack", {Spec::FieldNumberOfRings}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x20, "SetLineCoding", {Spec::FieldValue}, Spec::FieldStructureSize, D::Fields,
     {Spec::FieldDTERate, Spec::FieldCharFormat, Spec::FieldParityType, Spec::FieldDataBits}, 0, "LineCoding"},
    {0x21, "GetLineCoding", {Spec::FieldValue}, Spec::FieldStructureSize, D::Fields,
     {Spec::FieldDTERate, Spec::FieldCharFormat, Spec::FieldParityType, Spec::FieldDataBits}, 0, "LineCoding"},
    // The control signals from bit 0 of wValue up: DTR, RTS, reserved bits.
    {0x22, "SetControlLineState",
     {Spec::FieldPresentStatus, Spec::FieldCarrierActivity, Spec::FieldControlLineReserved}, Spec::FieldLength,
     D::None, {}, 0, nullptr},
    {0x23, "SendBreak", {Spec::FieldBreakDuration}, Spec::FieldLength, D::None, {}, 0, nullptr},
    // The ringer configuration from bit 0 up: pattern, volume, reserved bits
    // and the top bit that says whether a ringer exists.
    {0x30, "SetRingerParms", {Spec::FieldValue}, Spec::FieldLength, D::Fields,
     {Spec::FieldRingerPattern, Spec::FieldRingerVolume, Spec::FieldRingerReserved, Spec::FieldRingerExists}, 0,
     "RingerParms"},
    {0x31, "GetRingerParms", {Spec::FieldValue}, Spec::FieldLength, D::Fields,
     {Spec::FieldRingerPattern, Spec::FieldRingerVolume, Spec::FieldRingerReserved, Spec::FieldRingerExists}, 0,
     "RingerParms"},
    {0x32, "SetOperationParms", {Spec::FieldOperationModeValue}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x33, "GetOperationParms", {Spec::FieldValue}, Spec::FieldLength, D::Fields, {Spec::FieldOperationMode}, 0,
     "OperationParms"},
    {0x34, "SetLineParms", {Spec::FieldLineStateChange}, Spec::FieldLength, D::ByLength, {Spec::FieldData}, 0,
     "LineParamsData"},
    {0x35, "GetLineParms", {Spec::FieldValue}, Spec::FieldStructureSize, D::LineParms, {}, 0, "LineParms"},
    {0x36, "DialDigits", {Spec::FieldValue}, Spec::FieldLength, D::ByLength, {Spec::FieldDialingString}, 0,
     "DialDigits"},
    {0x37, "SetUnitParameter", {Spec::FieldEntityId, Spec::FieldParameterIndex}, Spec::FieldLength, D::ByLength,
     {Spec::FieldUnitParameter}, 0, "UnitParameterStructure"},
    {0x38, "GetUnitParameter", {Spec::FieldEntityId, Spec::FieldParameterIndex}, Spec::FieldLength, D::ByLength,
     {Spec::FieldUnitParameter}, 0, "UnitParameter"},
    {0x39, "ClearUnitParameter", {Spec::FieldEntityId, Spec::FieldParameterIndex}, Spec::FieldLength, D::None, {},
     0, nullptr},
    {0x3A, "GetProfile", {Spec::FieldValue}, Spec::FieldLength, D::Fields, {Spec::FieldProfile}, 64, "Profile"},
    {0x40, "SetEthernetMulticastFilters", {Spec::FieldFilterNumber}, Spec::FieldLength, D::MulticastFilters, {}, 0,
     "EthernetMulticastfilterData"},
    {0x41, "SetEthernetPowerManagementPatternFilter", {Spec::FieldFilterNumber}, Spec::FieldStructureSize,
     D::PatternFilter, {}, 0, "EthernetPowerManagementPatternFilter"},
    {0x42, "GetEthernetPowerManagementPatternFilter", {Spec::FieldFilterNumber}, Spec::FieldLength, D::Fields,
     {Spec::FieldPatternActive}, 16, "EthernetPowerManagementPatternFilter"},
    // The packet filter bits from bit 0 of wValue up.
    {0x43, "SetEthernetPacketFilter",
     {Spec::FieldPacketPromiscuous, Spec::FieldPacketAllMulticast, Spec::FieldPacketDirected,
      Spec::FieldPacketBroadcast, Spec::FieldPacketMulticast, Spec::FieldPacketReserved},
     Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x44, "GetEthernetStatistic", {Spec::FieldEthernetStatistic}, Spec::FieldLength, D::Fields, {Spec::FieldData},
     32, "EthernetStatistic"},
    {0x50, "SetAtmDataFormat", {Spec::FieldATMDataFormat}, Spec::FieldLength, D::None, {}, 0, nullptr},
    {0x51, "GetAtmDeviceStatistics", {Spec::FieldATMDeviceStatistic}, Spec::FieldLength, D::Fields,
     {Spec::FieldData}, 32, "AtmDeviceStatistics"},
    {0x52, "SetAtmDefaultVc", {Spec::FieldValue}, Spec::FieldLength, D::Fields, {Spec::FieldVPIVCI}, 24,
     "AtmDefaultVc"},
    {0x53, "GetAtmVcStatistics", {Spec::FieldATMVCStatistic}, Spec::FieldLength, D::Fields, {Spec::FieldData}, 32,
     "AtmVcStatistics"},
};

// A code with no row of its own is read as a plain setup.
const SCommRequest kReservedRequest = {0xFF, "Reserved", {Spec::FieldValue}, Spec::FieldLength, D::None, {}, 0,
                                       nullptr};

const SCommRequest& FindRequest(std::uint8_t nRequest)
{
    const SCommRequest* pEnd = std::end(kRequests);
    const SCommRequest* p = std::lower_bound(
        std::begin(kRequests), pEnd, nRequest,
        [](const SCommRequest& row, std::uint8_t n) { return row.nRequest < n; });
    return p != pEnd && p->nRequest == nRequest ? *p : kReservedRequest;
}

// Feature selectors of Set, Get and Clear Comm Feature.
enum : std::uint8_t {
    kAbstractState = 1,
    kCountrySetting = 2,
};

// The line parameters structure is ten bytes before its call states, each
// of which takes four bytes.
constexpr int kLineParmsHeaderBytes = 10;
constexpr int kCallStateBytes = 4;
// Each Ethernet multicast address takes six bytes.
constexpr std::uint32_t kMulticastAddressBits = 48;

}  // namespace

CCommunicationClassSpec::CCommunicationClassSpec()
{
    InitOptions();
}

unsigned long CCommunicationClassSpec::ReadRequestFields(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    m_counts.Reset();
    m_counts.CopyTo(packet);
    if (data.GetByteLength() < 1)
        return 0;
    // Every field of a request is read: past the end of the payload it
    // stands with length 0.
    CWalk walk = Walk(data, packet, ReadPastEnd);
    walk.Read(FieldRecipient);
    walk.Read(FieldType);
    walk.Read(FieldDirection);
    const SCommRequest& request = FindRequest(walk.Read(FieldRequest));

    const std::uint16_t wValue = walk.Peek(16);
    for (unsigned short nId : request.aValueIds)
        if (nId != 0)
            walk.Read(nId);
    walk.Read(FieldInterface);
    const std::uint16_t wLength = walk.Read(request.nLengthId);
    packet.SetRequestName(request.pszRequest);

    if (request.eData != ECommData::None) {
        m_counts.BeginResponse();
        if (ReadDataStage(walk, request, wValue, wLength)) {
            packet.SetResponseName(request.pszResponse);
            packet.m_bHasResponse = 1;
        }
    }
    m_counts.CopyTo(packet);
    return walk.Consumed();
}

bool CCommunicationClassSpec::ReadDataStage(CWalk& walk, const SCommRequest& request, std::uint16_t wValue,
                                            std::uint16_t wLength)
{
    switch (request.eData) {
    case ECommData::None:
        return false;
    case ECommData::Fields:
        for (unsigned short nId : request.aDataIds)
            if (nId != 0)
                walk.Read(nId, request.nDataBits);
        return true;
    case ECommData::ByLength:
        walk.Read(request.aDataIds[0], SignedLengthBits(wLength));
        return true;
    case ECommData::CommFeature:
        return ReadCommFeatureFields(walk, wValue);
    case ECommData::LineParms:
        ReadLineParamFields(walk);
        return true;
    case ECommData::MulticastFilters:
        walk.Read(FieldMulticastAddresses, wValue * kMulticastAddressBits);
        return true;
    case ECommData::PatternFilter:
        ReadPowerManagementFields(walk, wLength);
        return true;
    }
    return false;
}

bool CCommunicationClassSpec::ReadCommFeatureFields(CWalk& walk, std::uint16_t wSelector)
{
    switch (wSelector & 0xFF) {
    case kAbstractState:
        walk.Read(FieldIdleSetting);
        walk.Read(FieldDataMultiplexed);
        walk.Read(FieldAbstractStateReserved);
        return true;
    case kCountrySetting:
        walk.Read(FieldCountryCode);
        return true;
    default:
        return false;
    }
}

void CCommunicationClassSpec::ReadLineParamFields(CWalk& walk)
{
    // The structure's own length says how many call states follow; a part
    // of one counts as a whole.
    const std::uint16_t wStructureLength = walk.Read(FieldLineParmsLength);
    walk.Read(FieldRingerBitmap);
    walk.Read(FieldLineStateIndex);
    walk.Read(FieldLineStateReserved);
    walk.Read(FieldLineStateActive);
    const int nCallStateBytes = static_cast<std::int16_t>(wStructureLength - kLineParmsHeaderBytes);
    const int nCallStates = nCallStateBytes > 0 ? (nCallStateBytes + kCallStateBytes - 1) / kCallStateBytes : 0;
    for (int i = 0; i < nCallStates && !IsPacketFull(walk.Packet()); ++i) {
        walk.Read(FieldCallStateValue);
        walk.Read(FieldCallStateChange);
        walk.Read(FieldCallStateReserved);
        walk.Read(FieldCallStateActive);
    }
}

void CCommunicationClassSpec::ReadPowerManagementFields(CWalk& walk, std::uint16_t wLength)
{
    const std::uint16_t wMaskSize = walk.Read(FieldMaskSize);
    walk.Read(FieldMask, wMaskSize * 8u);
    // The pattern is as long as the whole structure, so in effect it takes
    // the rest of the payload.
    walk.Read(FieldPattern, SignedLengthBits(wLength));
}
