// ATAPI packet commands of optical drives, with their data: a payload is one
// command block followed, in the same payload, by the parameter data sent
// with it or by the structure that the drive returned. The operation code
// selects the block; values in the block (a length, a format code, a key
// format) select what is read behind it.
//
// Ten commands that optical drives share with all SCSI devices (TEST UNIT
// READY, REQUEST SENSE, INQUIRY, MODE SELECT/SENSE(10), the buffer commands,
// START STOP UNIT, PREVENT ALLOW MEDIUM REMOVAL, VERIFY) are handed to the
// SCSI decoder this class derives from: their packets carry SCSI fields.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "storage/ATAPIFields.h"
#include "storage/FieldLayout.h"
#include "storage/SCSIProtocol.h"

class CATAPISpec : public CSCSIProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CATAPISpec)

public:
    static constexpr unsigned short kFirstId = 26500;
    static constexpr unsigned short kFieldCount = 283;

    ~CATAPISpec() override = default;

    static CATAPISpec* GetInstance();
    static void KillInstance();

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }
    // ATAPI has no rules to check.
    unsigned char CheckProtocol(CReqRespProtocolPacket&) const { return 0; }

    // The length in bytes of the command block of an operation code; 0 for
    // codes without a block of their own here (also for READ(10), SEEK,
    // ERASE(10), READ(12) and WRITE(12), whose bytes are shown as data).
    unsigned char GetCommandLength(unsigned char nOpCode) const;

    // Whether the command of the packet decoded last was handed to the SCSI
    // decoder, so that the packet holds SCSI fields.
    bool IsHandedToSCSI() const noexcept { return m_bHandedToSCSI != 0; }

protected:
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;

    // The walk: the operation code, the block, then its data.
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    // The walk over a copy of the payload, which the block and the readers
    // of what follows it consume in turn. No reader tests for the end of the
    // data but the loops that say so: past the end, fields are still added,
    // with length 0.
    using CATAPIWalk = CFieldCursor<CATAPISpec>;
    CATAPIWalk Walk(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return CATAPIWalk(*this, &CATAPISpec::ReadField, ReadPastEnd, data, packet);
    }
    // Parameter data sent with a command: request fields.
    void ReadParameterFormatUnit(CATAPIWalk& walk);

    // Structures returned by the drive: response fields. Each goes on with
    // the walk of the block, sets the response name and marks the packet as
    // having a response when it reads a structure.
    void ReadResponseReadCapacity(CATAPIWalk& walk);
    void ReadFormatCapacityResponse(CATAPIWalk& walk);
    void ReadResponseDataGetConfiguration(CATAPIWalk& walk);
    void ReadResponseDataGetEventStatusNotification(CATAPIWalk& walk);
    void ReadResponseReadDiscInformation(CATAPIWalk& walk);
    void ReadResponseDataGetPerformance(CATAPIWalk& walk, std::uint32_t nExcept);
    void ReadParameterMechanismStatus(CATAPIWalk& walk);
    void ReadTrackInfoResponse(CATAPIWalk& walk);
    // By a code from the block: the sub-channel data format (read only when
    // SubQ is set), the TOC/PMA/ATIP format, the key format, the DVD
    // structure format. An unknown code reads nothing (behind the
    // sub-channel header, for sub-channel data).
    void ReadSubChannelResponse(CATAPIWalk& walk, std::uint32_t nListCode, std::uint32_t bSubQ);
    void ReadTOS_PMA_ATIPResponse(CATAPIWalk& walk, std::uint32_t nFormat);
    void ReadReportKeyResponse(CATAPIWalk& walk, std::uint32_t nKeyFormat);
    void ReadDVDStructureResponse(CATAPIWalk& walk, std::uint32_t nFormat);

private:
    CATAPISpec();
    void InitOptions();

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CATAPISpec* ms_pInstance;

    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;
    // Set while (and after) a command is handed to the SCSI decoder;
    // cleared for every packet.
    int m_bHandedToSCSI = 0;
};

class CATAPIPacket : public TDecoderPacket<CATAPISpec> {
public:
    using TDecoderPacket::TDecoderPacket;

    // The block length of an operation code, from the bound decoder.
    unsigned char GetCommandLength(unsigned char nOpCode) const;
};
