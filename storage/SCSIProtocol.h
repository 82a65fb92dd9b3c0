// SCSI commands with their data: a payload is one command descriptor block
// followed, in the same payload, by the bytes of its data phase. The block's
// operation code selects the block reader, and values in the block select
// how the data behind it is read, so nothing carries over between packets.
//
// The decoder is also the base of the ATAPI and RBC command-set decoders:
// its constructor is public, and the block and data readers are protected
// so that a derived decoder can hand them the commands it shares.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/FieldCursor.h"
#include "core/ProtocolSpec.h"

class CSCSIProtocolSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CSCSIProtocolSpec)

public:
    enum : unsigned short {
        // Command descriptor blocks.
        FieldOperationCode = 22000,
        FieldReserved = 22001,
        FieldParameterListLength = 22002,
        FieldControl = 22003,
        FieldEVPD = 22004,
        FieldCmdDt = 22005,
        FieldPageOrOperationCode = 22006,
        FieldAllocationLength = 22007,
        FieldSP = 22008,
        FieldPCR = 22009,
        FieldPC = 22010,
        FieldPPC = 22011,
        FieldPageCode = 22012,
        FieldPF = 22013,
        FieldDBD = 22014,
        FieldLLBAA = 22015,
        FieldParameterPointer = 22016,
        FieldServiceAction = 22017,
        FieldType = 22018,
        FieldScope = 22019,
        FieldMode = 22020,
        FieldBufferId = 22021,
        FieldBufferOffset = 22022,
        FieldPrevent = 22023,
        FieldListIdentifier = 22024,
        FieldPCV = 22025,
        FieldObsolete = 22026,
        FieldLongId = 22027,
        FieldThirdPty = 22028,
        FieldThirdPartyDeviceId = 22029,
        FieldRestricted = 22030,
        FieldUnitOffL = 22031,
        FieldSelfTestCode = 22032,
        FieldSelfTest = 22033,
        FieldDevOffL = 22034,
        FieldAER = 22035,
        FieldTransferLength = 22036,
        // EXTENDED COPY parameter list.
        FieldCopyListIdentifier = 22037,
        FieldPriority = 22038,
        FieldCopyReserved = 22039,
        FieldNRCR = 22040,
        FieldSTR = 22041,
        FieldTargetDescriptorLength = 22042,
        FieldSegmentDescriptorLength = 22043,
        FieldInlineDataLength = 22044,
        FieldTargetDescriptor = 22045,
        FieldSegmentDescriptors = 22046,
        FieldInlineData = 22047,
        // Device identifiers, persistent reservations, LUN lists.
        FieldIdentifierLength = 22048,
        FieldIdentifier = 22049,
        FieldGeneration = 22050,
        FieldAdditionalLength = 22051,
        FieldReservationKey = 22052,
        FieldServiceActionReservationKey = 22053,
        FieldScopeSpecificAddress = 22054,
        FieldAPTPL = 22055,
        FieldListReserved = 22056,
        FieldListObsolete = 22057,
        FieldLunListLength = 22058,
        FieldLun = 22059,
        FieldThirdPartyDeviceIdentifier = 22060,
        // Standard inquiry data and SEND data.
        FieldPeripheralDeviceType = 22061,
        FieldPeripheralQualifier = 22062,
        FieldDataReserved = 22063,
        FieldSCSI3 = 22064,
        FieldEventLun = 22065,
        FieldSenseDataType = 22066,
        FieldRMB = 22067,
        FieldVersion = 22068,
        FieldResponseDataFormat = 22069,
        FieldHiSup = 22070,
        FieldNormACA = 22071,
        FieldDataObsolete = 22072,
        FieldAERC = 22073,
        FieldInquiryAdditionalLength = 22074,
        FieldSCCS = 22075,
        FieldAddr16 = 22076,
        FieldMChngr = 22077,
        FieldMultiP = 22078,
        FieldVS = 22079,
        FieldEncServ = 22080,
        FieldBQue = 22081,
        FieldCmdQue = 22082,
        FieldLinked = 22083,
        FieldSync = 22084,
        FieldWBus16 = 22085,
        FieldRelAdr = 22086,
        FieldVendorIdentification = 22087,
        FieldProductIdentification = 22088,
        FieldProductRevisionLevel = 22089,
        FieldVendorSpecific = 22090,
        FieldIUS = 22091,
        FieldQAS = 22092,
        FieldClocking = 22093,
        FieldVersionDescriptor = 22094,
        // Fixed-format sense data.
        FieldResponseCode = 22095,
        FieldValid = 22096,
        FieldSenseKey = 22097,
        FieldILI = 22098,
        FieldEOM = 22099,
        FieldFileMark = 22100,
        FieldInformation = 22101,
        FieldAdditionalSenseLength = 22102,
        FieldCommandSpecificInformation = 22103,
        FieldASC = 22104,
        FieldASCQ = 22105,
        FieldFRUCode = 22106,
        FieldSenseKeySpecific = 22107,
        FieldSKSV = 22108,
        FieldAdditionalSenseBytes = 22109,
        // READ BUFFER headers.
        FieldHeaderReserved = 22110,
        FieldBufferCapacity = 22111,
        FieldOffsetBoundary = 22112,
        FieldEBOS = 22113,
        // RECEIVE COPY RESULTS data.
        FieldAvailableData = 22114,
        FieldCopyStatus = 22115,
        FieldHDD = 22116,
        FieldSegmentProcessed = 22117,
        FieldTransferCountUnits = 22118,
        FieldTransferCount = 22119,
        FieldHeld = 22120,
        FieldResultReserved = 22121,
        FieldMaxTargetDescriptorCount = 22122,
        FieldMaxSegmentDescriptorCount = 22123,
        FieldMaxDescriptorListLength = 22124,
        FieldMaxSegmentLength = 22125,
        FieldMaxInlineDataLength = 22126,
        FieldMaxHeldDataLimit = 22127,
        FieldMaxStreamDeviceTransferSize = 22128,
        FieldMaxConcurrentCopies = 22129,
        FieldDataSegmentGranularity = 22130,
        FieldInlineDataGranularity = 22131,
        FieldHeldDataGranularity = 22132,
        FieldImplementedDescriptorTypeCodes = 22133,
        FieldDescriptorTypeCodeList = 22134,
        FieldCopyCommandStatus = 22135,
        FieldSenseDataLength = 22136,
        FieldSenseData = 22137,
        // An operation code without a reader.
        FieldUnknownLength = 22138,
        FieldUnknownData = 22139,
    };
    static constexpr unsigned short kFirstId = 22000;
    static constexpr unsigned short kFieldCount = 140;

    // Public, unlike other decoders: the ATAPI and RBC decoders derive from
    // this class and inherit its option and format lists.
    CSCSIProtocolSpec();
    ~CSCSIProtocolSpec() override = default;

    static CSCSIProtocolSpec* GetInstance();
    static void KillInstance();

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }
    // SCSI has no rules to check: the protocol errors are only cleared.
    unsigned char CheckProtocol(CReqRespProtocolPacket& packet) const;

    // The length in bytes of the command descriptor block of an operation
    // code, 0 for a code this decoder has no block reader for.
    unsigned char GetCommandLength(unsigned char nOpCode) const;

protected:
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;

    // The walk: the operation code, the block, then the data phase.
    unsigned long ReadCommand(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    // Reads with this class's own catalogue (never a derived decoder's), so
    // that SCSI fields are found on instances of derived decoders too.
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    // A reader's walk over its own copy of the input. Every field is read
    // and dropped from the copy; past the end of the data fields are still
    // added, with length 0.
    using CFieldWalk = CFieldCursor<CSCSIProtocolSpec>;
    CFieldWalk Walk(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return CFieldWalk(*this, &CSCSIProtocolSpec::ReadField, ReadPastEnd, data, packet);
    }
    // Reads a value that the wire splits around a single bit: nLow bits,
    // the bit (or bits) of nBitId, then nHigh more bits of the value. The
    // value is added under nValueId and the bit under nBitId at the
    // position it came from. Adds nothing and returns false when the data
    // ends first.
    bool ReadSplit(CFieldWalk& walk, unsigned short nValueId, unsigned short nBitId, std::uint32_t nLow,
                   std::uint32_t nBits, std::uint32_t nHigh);

    // Command descriptor blocks, read behind the operation code. Each
    // returns the bits read; the values a row of the dispatch needs come
    // back through the reference arguments.
    unsigned long ReadCommandTestUnitReady(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadCommandRequestSense(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                          std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandReceive(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadCommandSend(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                  std::uint32_t& dwTransferLength);
    unsigned long ReadCommandInquiry(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, std::uint8_t& bEVPD,
                                     std::uint8_t& bCmdDt, std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandModeSelect6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                         std::uint32_t& dwParameterListLength);
    unsigned long ReadCommandReserve6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadCommandRelease6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadCommandModeSense6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                        std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandReceiveDiagnosticResult(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                     std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandSendDiagnostic(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                            std::uint32_t& dwParameterListLength);
    unsigned long ReadCommandPereventAllowMediumRemoval(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    // READ BUFFER and WRITE BUFFER share one block layout.
    unsigned long ReadCommandReadBuffer(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                        std::uint8_t& nMode, std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandLogSelect(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                       std::uint32_t& dwParameterListLength);
    unsigned long ReadCommandLogSense(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                      std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandModeSelect10(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                          std::uint32_t& dwParameterListLength);
    // RESERVE(10) and RELEASE(10) share one block layout.
    unsigned long ReadCommandRelease10(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                       std::uint8_t& bLongId, std::uint8_t& bThirdPty,
                                       std::uint32_t& dwParameterListLength);
    unsigned long ReadCommandModeSense10(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                         std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandReserveIn(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                       std::uint8_t& nServiceAction, std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandReserveOut(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                        std::uint32_t& dwParameterListLength);
    unsigned long ReadCommandExtendedCopy(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                          std::uint32_t& dwParameterListLength);
    unsigned long ReadCommandReceiveCopyResult(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                               std::uint8_t& nServiceAction, std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandReportLuns(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                        std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandReportReceiveIdentifier(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                     std::uint32_t& dwAllocationLength);
    unsigned long ReadCommandSetDeviceIdentifier(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                 std::uint32_t& dwParameterListLength);
    // An operation code without a reader: the rest of the payload as one
    // field, with its first byte shown apart.
    unsigned long ReadUnknownCommand(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

    // Data-phase structures, read behind the block.
    unsigned long ReadInquiryData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                  std::uint32_t dwAllocationLength);
    unsigned long ReadSenseData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                std::uint32_t dwAllocationLength);
    unsigned long ReadSendData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                               std::uint32_t dwTransferLength);
    unsigned long ReadExtendedCopyParameter(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                            std::uint32_t dwParameterListLength);
    unsigned long ReadParameterReadkeys(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadParameterReservationKeys(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadParameterList(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadReadCombinedHeader(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadReadDescriptorHeader(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadReadEcoDescriptorHeader(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadCopyStatus(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadReceiveData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadOperatingParameters(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadFailedSegmentDetails(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadReportReceiveIdentifierParameterList(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);
    unsigned long ReadIdentifier(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                 std::uint32_t dwParameterListLength);
    unsigned long ReadReportLunsParameterList(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                              std::uint32_t dwAllocationLength);

private:
    void InitOptions();
    void InitFormats();

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CSCSIProtocolSpec* ms_pInstance;
};

// The packet of a command-set decoder: every constructor binds it to the
// decoder's singleton, those from data decode at once, and a copy holds the
// source's decode (fields and all). The block length of an operation code
// comes from the bound decoder.
template <class TSpec>
class TCommandSetPacket : public CReqRespProtocolPacket {
public:
    TCommandSetPacket() : CReqRespProtocolPacket(TSpec::GetInstance()) {}
    explicit TCommandSetPacket(const CAdvAnlzData& data) : TCommandSetPacket() { CProtocolPacket::RestructBy(data); }
    explicit TCommandSetPacket(const CByteArray& aBytes) : TCommandSetPacket() { RestructBy(CAdvAnlzData(aBytes)); }
    TCommandSetPacket(const TCommandSetPacket& other) : TCommandSetPacket() { *this = other; }
    TCommandSetPacket& operator=(const TCommandSetPacket& other) = default;
    ~TCommandSetPacket() override = default;

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override
    {
        return CProtocolPacket::SetFieldData(nIndex, value);
    }

    unsigned char GetCommandLength(unsigned char nOpCode) const
    {
        const TSpec* pSpec = dynamic_cast<const TSpec*>(m_pSpec);
        return pSpec ? pSpec->GetCommandLength(nOpCode) : 0;
    }
};

class CSCSIProtocolPacket : public TCommandSetPacket<CSCSIProtocolSpec> {
public:
    using TCommandSetPacket::TCommandSetPacket;
};
