// Communication Device Class requests on the control pipe: the eight setup
// bytes and, where the request has one, its data stage in the same payload.
// The whole request table of the class with its subclass requests: abstract
// control, direct line, telephone, multi-channel, CAPI, Ethernet and ATM
// networking. The setup counts as the request side and the data stage as
// the response side, whichever way the data travels.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "usbclass/USBClassSpec.h"

struct SCommRequest;

class CCommunicationClassSpec : public TUSBClassSpec<CCommunicationClassSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CCommunicationClassSpec)

public:
    enum : unsigned short {
        FieldDirection = 25000,
        FieldType = 25001,
        FieldRecipient = 25002,
        FieldRequest = 25003,
        FieldValue = 25004,
        FieldFeatureSelector = 25005,
        FieldAuxLineState = 25006,
        FieldHookState = 25007,
        FieldPulseSetup = 25008,
        FieldIndex = 25009,
        FieldInterface = 25010,
        FieldLength = 25011,
        FieldStructureSize = 25012,
        FieldData = 25013,
        FieldEncapsulatedCommand = 25014,
        FieldEncapsulatedResponse = 25015,
        FieldRingerExists = 25016,
        FieldRingerReserved = 25017,
        FieldRingerVolume = 25018,
        FieldRingerPattern = 25019,
        FieldIdleSetting = 25020,
        FieldDataMultiplexed = 25021,
        FieldAbstractStateReserved = 25022,
        FieldCountryCode = 25023,
        FieldDTERate = 25024,
        FieldCharFormat = 25025,
        FieldParityType = 25026,
        FieldDataBits = 25027,
        FieldOperationMode = 25028,
        FieldOperationModeValue = 25029,
        FieldLineStateChange = 25030,
        FieldLineParmsLength = 25031,
        FieldRingerBitmap = 25032,
        FieldLineState = 25033,
        FieldCallState = 25034,
        FieldLineStateIndex = 25035,
        FieldLineStateReserved = 25036,
        FieldLineStateActive = 25037,
        FieldCallStateValue = 25038,
        FieldCallStateChange = 25039,
        FieldCallStateReserved = 25040,
        FieldCallStateActive = 25041,
        FieldDialingString = 25042,
        FieldUnitParameter = 25043,
        FieldEntityId = 25044,
        FieldParameterIndex = 25045,
        FieldProfile = 25046,
        FieldFilterNumber = 25047,
        FieldMulticastAddresses = 25048,
        FieldMaskSize = 25049,
        FieldMask = 25050,
        FieldPattern = 25051,
        FieldPatternActive = 25052,
        FieldPacketPromiscuous = 25053,
        FieldPacketAllMulticast = 25054,
        FieldPacketDirected = 25055,
        FieldPacketBroadcast = 25056,
        FieldPacketMulticast = 25057,
        FieldPacketReserved = 25058,
        FieldEthernetStatistic = 25059,
        FieldATMDataFormat = 25060,
        FieldATMDeviceStatistic = 25061,
        FieldATMVCStatistic = 25062,
        FieldPulseCycles = 25063,
        FieldPulseTiming = 25064,
        FieldNumberOfRings = 25065,
        FieldBreakDuration = 25066,
        FieldPresentStatus = 25067,
        FieldCarrierActivity = 25068,
        FieldControlLineReserved = 25069,
        FieldVPIVCI = 25070,
    };
    static constexpr unsigned short kFirstId = 25000;
    static constexpr unsigned short kFieldCount = 71;

    ~CCommunicationClassSpec() override = default;

    // The walk: bmRequestType and bRequest, then the request's setup fields
    // and its data stage. Sets the packet's counts, names and response flag.
    unsigned long ReadRequestFields(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

private:
    friend class TUSBClassSpec<CCommunicationClassSpec>;

    CCommunicationClassSpec();
    void InitOptions();

    // The frame's walk is ReadRequestFields.
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return ReadRequestFields(data, packet);
    }
    // The data stage of a request; false when the request turns out to have
    // none (a comm feature with an unknown selector).
    bool ReadDataStage(CWalk& walk, const SCommRequest& request, std::uint16_t wValue,
                       std::uint16_t wLength);
    bool ReadCommFeatureFields(CWalk& walk, std::uint16_t wSelector);
    void ReadLineParamFields(CWalk& walk);
    void ReadPowerManagementFields(CWalk& walk, std::uint16_t wLength);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};

class CCommunicationClassPacket : public TDecoderPacket<CCommunicationClassSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
