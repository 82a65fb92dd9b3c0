// Communication Device Class notifications on the interrupt pipe: eight
// bytes shaped like a setup packet, with bNotification in the place of
// bRequest, and the notification's data part in the same payload. The eight
// bytes count as the request side and the data part as the response side.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "usbclass/USBClassSpec.h"

struct SCommNotification;

class CCommunicationNotificationSpec : public TUSBClassSpec<CCommunicationNotificationSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CCommunicationNotificationSpec)

public:
    enum : unsigned short {
        FieldDirection = 27500,
        FieldType = 27501,
        FieldRecipient = 27502,
        FieldNotification = 27503,
        FieldValue = 27504,
        FieldCallIndex = 27505,
        FieldCallStateChange = 27506,
        FieldLineStateChange = 27507,
        FieldNetworkConnection = 27508,
        FieldAuxJackHookState = 27509,
        FieldInterface = 27510,
        FieldLength = 27511,
        FieldDataLength = 27512,
        FieldRXCarrier = 27513,
        FieldTXCarrier = 27514,
        FieldBreak = 27515,
        FieldRingSignal = 27516,
        FieldFraming = 27517,
        FieldParity = 27518,
        FieldOverRun = 27519,
        FieldUARTReserved = 27520,
        FieldVariableStructure = 27521,
        FieldLineStateStructure = 27522,
        FieldUpstreamBitRate = 27523,
        FieldDownstreamBitRate = 27524,
        FieldRingback = 27525,
        FieldConnection = 27526,
        FieldRingingPattern = 27527,
        FieldIncomingCallTime = 27528,
        FieldCallingNumber = 27529,
        FieldCallingName = 27530,
    };
    static constexpr unsigned short kFirstId = 27500;
    static constexpr unsigned short kFieldCount = 31;

    ~CCommunicationNotificationSpec() override = default;

    // The walk: bmRequestType and bNotification, then the notification's
    // setup fields and its data part. Sets the packet's counts, names and
    // response flag.
    unsigned long ReadRequestFields(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

private:
    friend class TUSBClassSpec<CCommunicationNotificationSpec>;

    CCommunicationNotificationSpec();
    void InitOptions();

    // The frame's walk is ReadRequestFields.
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return ReadRequestFields(data, packet);
    }
    // The data part of a call state change, by the call state change value.
    void ReadCallStateChangeFields(CWalk& walk, std::uint8_t nCallState);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};

class CCommunicationNotificationPacket : public TDecoderPacket<CCommunicationNotificationSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
