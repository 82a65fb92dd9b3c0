// What a USB hub sends on its status change endpoint: a bit map with bit 0
// for the hub and one bit for each port, from bit 1 up.
#pragma once

#include <array>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "usbclass/USBClassCommon.h"

class CHubNotificationSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CHubNotificationSpec)

public:
    enum : unsigned short {
        FieldHubStatus = 23500,
        FieldPortStatus = 23501,
    };
    static constexpr unsigned short kFirstId = 23500;
    static constexpr unsigned short kFieldCount = 2;

    static CHubNotificationSpec* GetInstance();
    static void KillInstance();
    ~CHubNotificationSpec() override = default;

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }
    // A status change bit map has no rules to check.
    unsigned char CheckProtocol(CReqRespProtocolPacket&) const { return 0; }

    // The strict interning: each port's bit has a name of its own.
    const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr) { return InternFieldAttr(attr); }

private:
    using CBitmapWalk = CFieldCursor<CHubNotificationSpec>;

    CHubNotificationSpec();
    void InitOptions();

    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CHubNotificationSpec* ms_pInstance;

    CSideCounts m_counts;
    CNumberedNames m_portNames{"Status of port%d"};
};

class CHubNotificationPacket : public TDecoderPacket<CHubNotificationSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
