// The wrapper that the Communication Device Class puts around data on a
// data class interface: a two-byte size (big-endian on the wire), the
// destination and source protocol ids, and the payload as one opaque field.
#pragma once

#include <array>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "usbclass/USBClassSpec.h"

class CCommunicationWrapperSpec : public TUSBClassSpec<CCommunicationWrapperSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CCommunicationWrapperSpec)

public:
    enum : unsigned short {
        FieldSize = 24000,
        FieldDestinationProtocol = 24001,
        FieldSourceProtocol = 24002,
        FieldData = 24003,
    };
    static constexpr unsigned short kFirstId = 24000;
    static constexpr unsigned short kFieldCount = 4;

    ~CCommunicationWrapperSpec() override = default;

private:
    friend class TUSBClassSpec<CCommunicationWrapperSpec>;

    CCommunicationWrapperSpec() = default;

    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    // Turns every value of more than 8 bits around, whatever eOrder says.
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};

class CCommunicationWrapperPacket : public TDecoderPacket<CCommunicationWrapperSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
