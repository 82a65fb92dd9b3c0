// SCSI decoder: the structures of the data phase behind a command block.
// Multi-byte numbers are big-endian on the wire and are read byte-reversed.
// All length arithmetic is unsigned 32-bit, as the length fields come; a
// length that works out to 0 reads the catalogue's default length.
#include "storage/SCSIProtocol.h"

#include <cstdint>

unsigned long CSCSIProtocolSpec::ReadInquiryData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                 std::uint32_t dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    // Bytes 0 to 3: device type and qualifier, RMB, version, response format.
    walk.Read(FieldPeripheralDeviceType, 5);
    walk.Read(FieldPeripheralQualifier, 3);
    walk.Read(FieldDataReserved, 7);
    walk.Read(FieldRMB);
    walk.Read(FieldVersion);
    walk.Read(FieldResponseDataFormat, 4);
    walk.Read(FieldHiSup);
    walk.Read(FieldNormACA);
    walk.Read(FieldDataObsolete, 1);
    walk.Read(FieldAERC);
    if (dwAllocationLength == 4)
        return walk.Consumed();

    // Bytes 4 to 7: additional length and the capability bits.
    const std::uint32_t dwAdditional = static_cast<std::uint8_t>(walk.Read(FieldInquiryAdditionalLength));
    walk.Read(FieldDataReserved, 7);
    walk.Read(FieldSCCS);
    walk.Read(FieldAddr16);
    walk.Read(FieldDataObsolete, 1);
    walk.Read(FieldDataObsolete, 1);
    walk.Read(FieldMChngr);
    walk.Read(FieldMultiP);
    walk.Read(FieldVS);
    walk.Read(FieldEncServ);
    walk.Read(FieldBQue);
    walk.Read(FieldVS);
    walk.Read(FieldCmdQue);
    walk.Read(FieldDataObsolete, 1);
    walk.Read(FieldLinked);
    walk.Read(FieldSync);
    walk.Read(FieldWBus16);
    walk.Read(FieldDataObsolete, 1);
    walk.Read(FieldRelAdr);

    // Bytes 8 to 35: the ASCII identification strings.
    walk.ReadReversed(FieldVendorIdentification, 64);
    walk.ReadReversed(FieldProductIdentification, 128);
    walk.ReadReversed(FieldProductRevisionLevel, 32);
    if (dwAllocationLength == 36)
        return walk.Consumed();

    // Bytes 36 to 95, then the vendor-specific rest that the additional
    // length announces beyond byte 4.
    walk.Read(FieldVendorSpecific, 160);
    walk.Read(FieldIUS);
    walk.Read(FieldQAS);
    walk.Read(FieldClocking);
    walk.Read(FieldDataReserved, 12);
    for (int i = 0; i < 8; ++i)
        walk.Read(FieldVersionDescriptor);
    walk.ReadReversed(FieldDataReserved, 176);
    walk.Read(FieldVendorSpecific, dwAdditional * 8 - 32);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadSenseData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                               std::uint32_t /*dwAllocationLength*/)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldResponseCode, 7);
    walk.Read(FieldValid, 1);
    walk.Read(FieldDataObsolete, 8);
    walk.Read(FieldSenseKey, 4);
    walk.Read(FieldDataReserved, 1);
    walk.Read(FieldILI, 1);
    walk.Read(FieldEOM, 1);
    walk.Read(FieldFileMark, 1);
    walk.ReadReversed(FieldInformation, 32);
    const std::uint32_t dwAdditional = static_cast<std::uint8_t>(walk.Read(FieldAdditionalSenseLength, 8));
    walk.ReadReversed(FieldCommandSpecificInformation, 32);
    walk.Read(FieldASC, 8);
    walk.Read(FieldASCQ, 8);
    walk.Read(FieldFRUCode, 8);
    // The sense-key specific bytes: the SKSV bit sits between the low seven
    // bits and the next byte of the value. Cut short, the sense data ends.
    if (!ReadSplit(walk, FieldSenseKeySpecific, FieldSKSV, 7, 1, 8))
        return walk.Consumed();
    // The additional length counts from byte 8; what lies beyond the 11
    // bytes read so far is additional sense bytes. A length under 11 wraps
    // and so takes whatever is left.
    walk.Read(FieldAdditionalSenseBytes, dwAdditional * 8 - 88);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadSendData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                              std::uint32_t dwTransferLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldDataReserved, 7);
    walk.Read(FieldSCSI3);
    walk.Read(FieldDataReserved, 16);
    walk.ReadReversed(FieldEventLun, 64);
    // The sense data of the event fills the transfer beyond its 12-byte head.
    const std::int32_t nSenseBytes = static_cast<std::int32_t>(dwTransferLength - 12);
    for (std::int32_t i = 0; i < nSenseBytes; ++i) {
        walk.Read(FieldSenseDataType, 8);
        if (walk.IsEmpty())
            break;
    }
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadExtendedCopyParameter(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                           std::uint32_t /*dwParameterListLength*/)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldCopyListIdentifier);
    walk.Read(FieldPriority);
    walk.Read(FieldCopyReserved, 1);
    walk.Read(FieldNRCR);
    walk.Read(FieldSTR);
    walk.Read(FieldCopyReserved, 2);
    const std::uint32_t dwTargetLength = static_cast<std::uint16_t>(walk.ReadReversed(FieldTargetDescriptorLength, 16));
    walk.Read(FieldCopyReserved, 32);
    const std::uint32_t dwSegmentLength = walk.ReadReversed(FieldSegmentDescriptorLength, 32);
    const std::uint32_t dwInlineLength = walk.ReadReversed(FieldInlineDataLength, 32);
    // Target descriptors are 32 bytes each.
    for (std::uint32_t i = 0; i < dwTargetLength / 32; ++i) {
        walk.Read(FieldTargetDescriptor, 256);
        if (walk.IsEmpty())
            break;
    }
    walk.Read(FieldSegmentDescriptors, dwSegmentLength * 8);
    walk.Read(FieldInlineData, dwInlineLength * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadParameterReadkeys(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.ReadReversed(FieldGeneration, 32);
    const std::uint32_t dwAdditional = walk.ReadReversed(FieldAdditionalLength, 32);
    // One eight-byte reservation key per registered initiator.
    for (std::uint32_t i = 0; i < dwAdditional / 8; ++i) {
        walk.ReadReversed(FieldType, 64);
        if (walk.IsEmpty())
            break;
    }
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadParameterReservationKeys(const CAdvAnlzData& data,
                                                              CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.ReadReversed(FieldGeneration, 32);
    const std::uint32_t dwAdditional = walk.ReadReversed(FieldAdditionalLength, 32);
    walk.ReadReversed(FieldType, dwAdditional * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadParameterList(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.ReadReversed(FieldReservationKey, 64);
    walk.ReadReversed(FieldServiceActionReservationKey, 64);
    walk.ReadReversed(FieldScopeSpecificAddress, 32);
    walk.Read(FieldAPTPL);
    walk.Read(FieldListReserved, 15);
    walk.ReadReversed(FieldListObsolete, 16);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadReadCombinedHeader(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldHeaderReserved, 8);
    walk.ReadReversed(FieldBufferCapacity, 24);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadReadDescriptorHeader(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldOffsetBoundary, 8);
    walk.ReadReversed(FieldBufferCapacity, 24);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadReadEcoDescriptorHeader(const CAdvAnlzData& data,
                                                             CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldEBOS, 1);
    walk.Read(FieldOffsetBoundary, 8);
    walk.ReadReversed(FieldBufferCapacity, 24);
    // A 12-bit capacity with four reserved bits between its low nibble and
    // its high byte.
    ReadSplit(walk, FieldBufferCapacity, FieldHeaderReserved, 4, 4, 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCopyStatus(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.ReadReversed(FieldAvailableData, 32);
    walk.Read(FieldCopyStatus, 7);
    walk.Read(FieldHDD, 1);
    walk.ReadReversed(FieldSegmentProcessed, 16);
    walk.Read(FieldTransferCountUnits, 8);
    walk.ReadReversed(FieldTransferCount, 32);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadReceiveData(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    const std::uint32_t dwAvailable = walk.ReadReversed(FieldAvailableData, 32);
    walk.Read(FieldHeld, dwAvailable * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadOperatingParameters(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.ReadReversed(FieldAvailableData, 32);
    walk.Read(FieldResultReserved, 32);
    walk.ReadReversed(FieldMaxTargetDescriptorCount, 16);
    walk.ReadReversed(FieldMaxSegmentDescriptorCount, 16);
    walk.ReadReversed(FieldMaxDescriptorListLength, 32);
    walk.ReadReversed(FieldMaxSegmentLength, 32);
    walk.ReadReversed(FieldMaxInlineDataLength, 32);
    walk.ReadReversed(FieldMaxHeldDataLimit, 32);
    // The maximum stream device transfer size is shown twice in a row.
    walk.ReadReversed(FieldMaxStreamDeviceTransferSize, 32);
    walk.ReadReversed(FieldMaxStreamDeviceTransferSize, 32);
    walk.Read(FieldResultReserved, 32);
    walk.Read(FieldMaxConcurrentCopies, 8);
    walk.Read(FieldDataSegmentGranularity, 8);
    walk.Read(FieldInlineDataGranularity, 8);
    walk.Read(FieldHeldDataGranularity, 8);
    walk.Read(FieldResultReserved, 24);
    const std::uint32_t dwCodes = static_cast<std::uint8_t>(walk.Read(FieldImplementedDescriptorTypeCodes, 8));
    walk.Read(FieldDescriptorTypeCodeList, dwCodes * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadFailedSegmentDetails(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.ReadReversed(FieldAvailableData, 32);
    walk.Read(FieldResultReserved, 416);
    walk.Read(FieldCopyCommandStatus, 8);
    walk.Read(FieldResultReserved, 8);
    const std::uint32_t dwSenseLength = static_cast<std::uint16_t>(walk.ReadReversed(FieldSenseDataLength, 16));
    walk.Read(FieldSenseData, dwSenseLength * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadReportReceiveIdentifierParameterList(const CAdvAnlzData& data,
                                                                          CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    const std::uint32_t dwLength = walk.ReadReversed(FieldIdentifierLength, 32);
    walk.Read(FieldIdentifier, dwLength * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadIdentifier(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                std::uint32_t dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldIdentifier, dwParameterListLength * 8);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadReportLunsParameterList(const CAdvAnlzData& data,
                                                             CReqRespProtocolPacket& packet,
                                                             std::uint32_t /*dwAllocationLength*/)
{
    CFieldWalk walk = Walk(data, packet);
    const std::uint32_t dwListLength = walk.ReadReversed(FieldLunListLength, 32);
    walk.Read(FieldListReserved, 32);
    // Eight bytes per LUN, kept in wire order: a LUN is an address, not a number.
    if (dwListLength > 7) {
        for (std::uint32_t i = 0; i < dwListLength / 8; ++i) {
            walk.Read(FieldLun, 64);
            if (walk.IsEmpty())
                break;
        }
    }
    return walk.Consumed();
}
