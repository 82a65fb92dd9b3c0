// What a USB hub sends on its status change endpoint: a bit map with bit 0
// for the hub and one bit for each port, from bit 1 up.
#pragma once

#include <array>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "usbclass/USBClassSpec.h"

class CHubNotificationSpec : public TUSBClassSpec<CHubNotificationSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CHubNotificationSpec)

public:
    enum : unsigned short {
        FieldHubStatus = 23500,
        FieldPortStatus = 23501,
    };
    static constexpr unsigned short kFirstId = 23500;
    static constexpr unsigned short kFieldCount = 2;

    ~CHubNotificationSpec() override = default;

    // The strict interning: each port's bit has a name of its own.
    const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr) { return InternFieldAttr(attr); }

private:
    friend class TUSBClassSpec<CHubNotificationSpec>;

    CHubNotificationSpec();
    void InitOptions();

    // A notification has no response side: the flag stays as Clean left it.
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;

    CNumberedNames m_portNames{"Status of port%d"};
};

class CHubNotificationPacket : public TDecoderPacket<CHubNotificationSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
