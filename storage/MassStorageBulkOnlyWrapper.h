// USB Mass Storage Bulk-Only Transport: the 31-byte Command Block Wrapper
// and the 13-byte Command Status Wrapper. The command block itself stays one
// opaque field.
#pragma once

#include <array>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

class CMassStorageBulkOnlyWrapperSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CMassStorageBulkOnlyWrapperSpec)

public:
    enum : unsigned short {
        FieldSignature = 24500,
        FieldCBWTag = 24501,
        FieldDataTransportLength = 24502,
        FieldFlagsReserved = 24503,
        FieldFlagsObsolete = 24504,
        FieldFlagsDirection = 24505,
        FieldLUN = 24506,
        FieldLUNReserved = 24507,
        FieldCBLength = 24508,
        FieldCBLengthReserved = 24509,
        FieldCB = 24510,
        FieldCSWTag = 24511,
        FieldDataResidue = 24512,
        FieldStatus = 24513,
    };
    static constexpr unsigned short kFirstId = 24500;
    static constexpr unsigned short kFieldCount = 14;
    static constexpr std::uint32_t kCBWSignature = 0x43425355;  // "USBC"
    static constexpr std::uint32_t kCSWSignature = 0x53425355;  // "USBS"

    static CMassStorageBulkOnlyWrapperSpec* GetInstance();
    static void KillInstance();
    ~CMassStorageBulkOnlyWrapperSpec() override = default;

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }
    // The wrappers have no rules to check.
    unsigned char CheckProtocol(CReqRespProtocolPacket&) const { return 0; }

private:
    CMassStorageBulkOnlyWrapperSpec();
    void InitOptions();
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CMassStorageBulkOnlyWrapperSpec* ms_pInstance;

    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;
};

class CMassStorageBulkOnlyWrapperPacket : public TDecoderPacket<CMassStorageBulkOnlyWrapperSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
