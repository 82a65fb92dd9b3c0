// Reduced Block Commands with their data: a payload is one command block
// followed, in the same payload, by its data. Seven commands are read here;
// the eleven that RBC devices share with all SCSI devices go to the SCSI
// decoder this class derives from, and any other code is shown as unknown.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "storage/SCSIProtocol.h"

class CRBCProtocolSpec : public CSCSIProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CRBCProtocolSpec)

public:
    enum : unsigned short {
        FieldOperationCode = 28000,
        FieldReserved2 = 28001,
        FieldReserved3 = 28002,
        FieldReserved4 = 28003,
        FieldReserved7 = 28004,
        FieldReserved8 = 28005,
        FieldControl = 28006,
        FieldLogicalBlockAddress = 28007,
        FieldTransferLength = 28008,
        FieldVerificationLength = 28009,
        FieldReturnedLogicalBlockAddress = 28010,
        FieldBlockLength = 28011,
        FieldImmed = 28012,
        FieldPowerConditions = 28013,
        FieldLoEj = 28014,
        FieldStart = 28015,
        FieldFUA = 28016,
        FieldCommandDataBlock = 28017,
        FieldUnexpectedData = 28018,
    };
    static constexpr unsigned short kFirstId = 28000;
    static constexpr unsigned short kFieldCount = 19;

    ~CRBCProtocolSpec() override = default;

    static CRBCProtocolSpec* GetInstance();
    static void KillInstance();

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }

    // The length in bytes of the command block of an operation code, 0 for
    // a code this decoder does not know.
    unsigned char GetCommandLength(unsigned char nOpCode) const;

    // Whether the command of the packet decoded last was passed on to the
    // SCSI decoder, so that the packet holds SCSI fields.
    bool IsPassedToSCSI() const noexcept { return m_bPassedToSCSI != 0; }

protected:
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    // The strict interning: a record matches only with equal numbers and
    // equal name, abbreviation and description, since this decoder gives a
    // SCSI field instance strings of its own.
    virtual const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr);

    // The walk: the operation code and what the command's row lists.
    unsigned long ReadCommand(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    // The frame's walk: it ends as soon as the payload is used up.
    using CRBCWalk = CFieldCursor<CRBCProtocolSpec>;
    CRBCWalk Walk(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return CRBCWalk(*this, &CRBCProtocolSpec::ReadField, StopWhenEmpty, data, packet);
    }

private:
    CRBCProtocolSpec();
    void InitOptions();
    void InitFormats();

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CRBCProtocolSpec* ms_pInstance;

    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;
    // Set when the command is passed on to the SCSI decoder, whose counts
    // then stand in the packet.
    int m_bPassedToSCSI = 0;
};

class CRBCProtocolPacket : public TCommandSetPacket<CRBCProtocolSpec> {
public:
    using TCommandSetPacket::TCommandSetPacket;
};
