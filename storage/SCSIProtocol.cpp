// SCSI decoder: the singleton, the dispatch on the operation code and the
// command descriptor block readers. The data-phase readers are in
// SCSIDataPhase.cpp, the catalogue and option lists in SCSIProtocolTables.cpp.
#include "storage/SCSIProtocol.h"

#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CSCSIProtocolSpec, CProtocolSpec)

CSCSIProtocolSpec* CSCSIProtocolSpec::ms_pInstance = nullptr;

namespace {

// Operation codes that have a block reader.
enum : std::uint8_t {
    OpTestUnitReady = 0x00,
    OpRequestSense = 0x03,
    OpReceive = 0x08,
    OpSend = 0x0A,
    OpInquiry = 0x12,
    OpModeSelect6 = 0x15,
    OpReserve6 = 0x16,
    OpRelease6 = 0x17,
    OpModeSense6 = 0x1A,
    OpReceiveDiagnosticResults = 0x1C,
    OpSendDiagnostic = 0x1D,
    OpPreventAllowMediumRemoval = 0x1E,
    OpWriteBuffer = 0x3B,
    OpReadBuffer = 0x3C,
    OpLogSelect = 0x4C,
    OpLogSense = 0x4D,
    OpModeSelect10 = 0x55,
    OpReserve10 = 0x56,
    OpRelease10 = 0x57,
    OpModeSense10 = 0x5A,
    OpPersistentReserveIn = 0x5E,
    OpPersistentReserveOut = 0x5F,
    OpExtendedCopy = 0x83,
    OpReceiveCopyResults = 0x84,
    OpReportLuns = 0xA0,
    OpReportDeviceIdentifier = 0xA3,
    OpSetDeviceIdentifier = 0xA4,
};

// READ BUFFER modes that return a header.
enum : std::uint8_t {
    ModeCombinedHeaderAndData = 0x0,
    ModeDescriptor = 0x3,
    ModeEchoBufferDescriptor = 0xB,
};

}  // namespace

// ------------------------------------------------------------- singleton

CSCSIProtocolSpec* CSCSIProtocolSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CSCSIProtocolSpec();
    return ms_pInstance;
}

void CSCSIProtocolSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CSCSIProtocolSpec::CSCSIProtocolSpec()
{
    InitOptions();
    InitFormats();
}

const SSpecFieldAttr* CSCSIProtocolSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

unsigned char CSCSIProtocolSpec::CheckProtocol(CReqRespProtocolPacket& packet) const
{
    packet.ClearPErrors();
    return 0;
}

unsigned char CSCSIProtocolSpec::GetCommandLength(unsigned char nOpCode) const
{
    switch (nOpCode) {
    case OpTestUnitReady:
    case OpRequestSense:
    case OpReceive:
    case OpSend:
    case OpInquiry:
    case OpModeSelect6:
    case OpReserve6:
    case OpRelease6:
    case OpModeSense6:
    case OpReceiveDiagnosticResults:
    case OpSendDiagnostic:
    case OpPreventAllowMediumRemoval:
        return 6;
    case OpWriteBuffer:
    case OpReadBuffer:
    case OpLogSelect:
    case OpLogSense:
    case OpModeSelect10:
    case OpReserve10:
    case OpRelease10:
    case OpModeSense10:
    case OpPersistentReserveIn:
    case OpPersistentReserveOut:
        return 10;
    case OpReportLuns:
    case OpReportDeviceIdentifier:
    case OpSetDeviceIdentifier:
        return 12;
    case OpExtendedCopy:
    case OpReceiveCopyResults:
        return 16;
    default:
        return 0;
    }
}

// ------------------------------------------------------------- the walk

int CSCSIProtocolSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    pPacket->Clean();
    ReadCommand(data, *pPacket);
    return CheckProtocol(*pPacket) == 0 ? 1 : 0;
}

unsigned long CSCSIProtocolSpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                           unsigned short nId, CAdvAnlzData& value, EByteOrder eOrder,
                                           unsigned long dwLength)
{
    return ReadFieldWith(data, packet, nId, CSCSIProtocolSpec::GetDefaultFieldAttr(nId), value, eOrder, dwLength);
}

bool CSCSIProtocolSpec::ReadSplit(CFieldWalk& walk, unsigned short nValueId, unsigned short nBitId,
                                  std::uint32_t nLow, std::uint32_t nBits, std::uint32_t nHigh)
{
    CReqRespProtocolPacket& packet = walk.Packet();
    const std::uint32_t dwOffset = static_cast<std::uint32_t>(packet.GetPacketLength());
    CAdvAnlzData value = walk.Peek(nLow);
    if (value.GetLength() < nLow)
        return false;
    walk.Drop(nLow);
    const CAdvAnlzData bit = walk.Peek(nBits);
    if (bit.GetLength() < nBits)
        return false;
    walk.Drop(nBits);
    value += walk.Peek(nHigh);
    if (value.GetLength() != nLow + nHigh)
        return false;
    walk.Drop(nHigh);

    // Both records keep the catalogue's length; the bit's offset points
    // back into the value, where the bit sat on the wire.
    AddFieldAt(packet, CSCSIProtocolSpec::GetDefaultFieldAttr(nValueId), value, dwOffset);
    AddFieldAt(packet, CSCSIProtocolSpec::GetDefaultFieldAttr(nBitId), bit,
               static_cast<std::uint32_t>(packet.GetPacketLength()) - nHigh);
    return true;
}

unsigned long CSCSIProtocolSpec::ReadCommand(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CAdvAnlzData w(data);
    packet.m_nRequestFields = 0;
    packet.m_nResponseFields = 0;
    packet.m_bHasResponse = 0;
    if (w.GetLength() == 0)
        return 0;

    CAdvAnlzData value;
    unsigned long dwTotal = ReadField(w, packet, FieldOperationCode, value, ByteOrderAsStored, 0);
    if (dwTotal != 8)
        return dwTotal;
    const std::uint8_t nOpCode = value;
    w.Truncate(8, CAdvAnlzData::kToEnd);

    // Drops what a reader consumed from the working copy.
    auto consume = [&](unsigned long dwBits) {
        w.Truncate(static_cast<std::uint32_t>(dwBits), CAdvAnlzData::kToEnd);
        dwTotal += dwBits;
    };
    // The block (and, for some rows, a field behind it) ends the request side.
    auto endRequest = [&]() { packet.m_nRequestFields = packet.GetFieldCount(); };
    // Everything read after the request side is the response side.
    auto finish = [&](int bHasResponse, const char* pszRequest, const char* pszResponse) {
        packet.m_nResponseFields = static_cast<unsigned char>(packet.GetFieldCount() - packet.m_nRequestFields);
        packet.m_bHasResponse = bHasResponse;
        packet.SetRequestName(pszRequest);
        if (pszResponse)
            packet.SetResponseName(pszResponse);
    };

    std::uint8_t nFlag1 = 0;
    std::uint8_t nFlag2 = 0;
    std::uint32_t dwLength = 0;

    switch (nOpCode) {
    case OpTestUnitReady:
        consume(ReadCommandTestUnitReady(w, packet));
        endRequest();
        finish(0, "TEST UNIT READY", nullptr);
        break;
    case OpRequestSense:
        consume(ReadCommandRequestSense(w, packet, dwLength));
        endRequest();
        consume(ReadSenseData(w, packet, dwLength));
        finish(1, "REQUEST SENSE", "Sense Data");
        break;
    case OpReceive:
        consume(ReadCommandReceive(w, packet));
        endRequest();
        finish(0, "RECEIVE", nullptr);
        break;
    case OpSend:
        consume(ReadCommandSend(w, packet, dwLength));
        endRequest();
        if (dwLength > 0) {
            consume(ReadSendData(w, packet, dwLength));
            finish(1, "SEND", "Send Data");
        } else {
            finish(0, "SEND", nullptr);
        }
        break;
    case OpInquiry:
        consume(ReadCommandInquiry(w, packet, nFlag1, nFlag2, dwLength));
        endRequest();
        // Standard inquiry data only: vital product data pages and command
        // support data are not decoded.
        if (nFlag1 == 0 && nFlag2 == 0) {
            consume(ReadInquiryData(w, packet, dwLength));
            finish(1, "INQUIRY", "Standard Inquiry Data");
        } else {
            finish(0, "INQUIRY", nullptr);
        }
        break;
    // Mode, log and diagnostic pages behind these blocks stay unread.
    case OpModeSelect6:
        consume(ReadCommandModeSelect6(w, packet, dwLength));
        endRequest();
        finish(0, "MODE SELECT(6)", nullptr);
        break;
    case OpReserve6:
        consume(ReadCommandReserve6(w, packet));
        endRequest();
        finish(0, "RESERVE(6)", nullptr);
        break;
    case OpRelease6:
        consume(ReadCommandRelease6(w, packet));
        endRequest();
        finish(0, "RELEASE(6)", nullptr);
        break;
    case OpModeSense6:
        consume(ReadCommandModeSense6(w, packet, dwLength));
        endRequest();
        finish(0, "MODE SENSE(6)", nullptr);
        break;
    case OpReceiveDiagnosticResults:
        consume(ReadCommandReceiveDiagnosticResult(w, packet, dwLength));
        endRequest();
        finish(0, "DIAGNOSTIC RESULT", nullptr);
        break;
    case OpSendDiagnostic:
        consume(ReadCommandSendDiagnostic(w, packet, dwLength));
        endRequest();
        finish(0, "SEND DIAGNOSTIC", nullptr);
        break;
    case OpPreventAllowMediumRemoval:
        consume(ReadCommandPereventAllowMediumRemoval(w, packet));
        endRequest();
        finish(0, "PREVENT ALLOW MEDIUM REMOVAL", nullptr);
        break;
    case OpWriteBuffer:
        consume(ReadCommandReadBuffer(w, packet, nFlag1, dwLength));
        endRequest();
        finish(0, "WRITE BUFFER", nullptr);
        break;
    case OpReadBuffer:
        consume(ReadCommandReadBuffer(w, packet, nFlag1, dwLength));
        endRequest();
        // Only the header modes have a structure; data modes stay unread.
        if (nFlag1 == ModeCombinedHeaderAndData)
            consume(ReadReadCombinedHeader(w, packet));
        else if (nFlag1 == ModeDescriptor)
            consume(ReadReadDescriptorHeader(w, packet));
        else if (nFlag1 == ModeEchoBufferDescriptor)
            consume(ReadReadEcoDescriptorHeader(w, packet));
        finish(1, "READ BUFFER", "Read Buffer Data");
        break;
    case OpLogSelect:
        consume(ReadCommandLogSelect(w, packet, dwLength));
        endRequest();
        finish(0, "LOG SELECT", nullptr);
        break;
    case OpLogSense:
        consume(ReadCommandLogSense(w, packet, dwLength));
        endRequest();
        finish(0, "LOG SENSE", nullptr);
        break;
    case OpModeSelect10:
        consume(ReadCommandModeSelect10(w, packet, dwLength));
        endRequest();
        finish(0, "MODE SELECT(10)", nullptr);
        break;
    case OpReserve10:
    case OpRelease10: {
        consume(ReadCommandRelease10(w, packet, nFlag1, nFlag2, dwLength));
        // A third-party reservation (or, for RESERVE(10), a long identifier)
        // carries the third-party device id in the parameter list, which
        // belongs to the request.
        const bool bThirdParty = nOpCode == OpReserve10 ? (nFlag1 != 0 || nFlag2 != 0) : nFlag2 != 0;
        if (bThirdParty)
            consume(ReadField(w, packet, FieldThirdPartyDeviceIdentifier, value, ByteOrderAsStored, 64));
        endRequest();
        if (nOpCode == OpReserve10)
            finish(1, "RESERVE(10)", "Reserve 10 Parameter List");
        else
            finish(1, "RELEASE(10)", "Release 10 Parameter List");
        break;
    }
    case OpModeSense10:
        consume(ReadCommandModeSense10(w, packet, dwLength));
        endRequest();
        finish(0, "MODE SNSE(10)", nullptr);
        break;
    case OpPersistentReserveIn:
        consume(ReadCommandReserveIn(w, packet, nFlag1, dwLength));
        endRequest();
        if (nFlag1 == 0)
            consume(ReadParameterReadkeys(w, packet));
        else if (nFlag1 == 1)
            consume(ReadParameterReservationKeys(w, packet));
        finish(1, "PERSISTENT RESERVE IN", "Persistent Reserve in Parameter Data");
        break;
    case OpPersistentReserveOut:
        consume(ReadCommandReserveOut(w, packet, dwLength));
        endRequest();
        consume(ReadParameterList(w, packet));
        finish(1, "PERSISTENT RESERVE OUT", "Persistent Reserve Out Parameter List");
        break;
    case OpExtendedCopy:
        consume(ReadCommandExtendedCopy(w, packet, dwLength));
        endRequest();
        consume(ReadExtendedCopyParameter(w, packet, dwLength));
        finish(1, "EXTENDED COPY", "Extended Copy Parameter List");
        break;
    case OpReceiveCopyResults: {
        consume(ReadCommandReceiveCopyResult(w, packet, nFlag1, dwLength));
        endRequest();
        const char* pszResponse = nullptr;
        switch (nFlag1) {
        case 0:
            consume(ReadCopyStatus(w, packet));
            pszResponse = "Copy Status";
            break;
        case 1:
            consume(ReadReceiveData(w, packet));
            pszResponse = "Receive Data";
            break;
        case 3:
            consume(ReadOperatingParameters(w, packet));
            pszResponse = "Operating Parameters";
            break;
        case 4:
            consume(ReadFailedSegmentDetails(w, packet));
            pszResponse = "Failed Segment Details";
            break;
        default:
            break;
        }
        finish(1, "RECEIVE COPY RESULTS", pszResponse);
        break;
    }
    case OpReportLuns:
        consume(ReadCommandReportLuns(w, packet, dwLength));
        endRequest();
        consume(ReadReportLunsParameterList(w, packet, dwLength));
        finish(1, "REPORT LUNS", "Report Luns Parameter List");
        break;
    case OpReportDeviceIdentifier:
        consume(ReadCommandReportReceiveIdentifier(w, packet, dwLength));
        endRequest();
        consume(ReadReportReceiveIdentifierParameterList(w, packet));
        finish(1, "REPORT DEVICE IDENTIFIER", "Report Device Identifier Parameter List");
        break;
    case OpSetDeviceIdentifier:
        consume(ReadCommandSetDeviceIdentifier(w, packet, dwLength));
        // The identifier is sent with the command: a request field.
        consume(ReadIdentifier(w, packet, dwLength));
        endRequest();
        finish(0, "SET DEVICE IDENTIFIER", nullptr);
        break;
    default:
        dwTotal += ReadUnknownCommand(w, packet);
        packet.m_nRequestFields = 3;
        packet.m_nResponseFields = 0;
        packet.m_bHasResponse = 0;
        packet.SetRequestName("Unknown");
        break;
    }
    return dwTotal;
}

// ------------------------------------------------------------- command blocks

unsigned long CSCSIProtocolSpec::ReadCommandTestUnitReady(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 32);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandRequestSense(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                         std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 24);
    dwAllocationLength = walk.Read(FieldAllocationLength, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReceive(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 8);
    walk.ReadReversed(FieldTransferLength, 24);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandSend(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                 std::uint32_t& dwTransferLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldAER, 1);
    walk.Read(FieldReserved, 7);
    dwTransferLength = walk.ReadReversed(FieldTransferLength, 24);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandInquiry(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                    std::uint8_t& bEVPD, std::uint8_t& bCmdDt,
                                                    std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    bEVPD = walk.Read(FieldEVPD);
    bCmdDt = walk.Read(FieldCmdDt);
    walk.Read(FieldReserved, 6);
    walk.Read(FieldPageOrOperationCode);
    walk.Read(FieldReserved, 8);
    dwAllocationLength = walk.Read(FieldAllocationLength, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandModeSelect6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                        std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldSP);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldPF);
    walk.Read(FieldReserved, 19);
    dwParameterListLength = walk.Read(FieldParameterListLength, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReserve6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldObsolete, 5);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldObsolete, 24);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandRelease6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldObsolete, 5);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldObsolete, 8);
    walk.Read(FieldReserved, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandModeSense6(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                       std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldDBD);
    walk.Read(FieldReserved, 4);
    walk.Read(FieldPageCode, 6);
    walk.Read(FieldPC);
    walk.Read(FieldReserved, 8);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReceiveDiagnosticResult(const CAdvAnlzData& data,
                                                                    CReqRespProtocolPacket& packet,
                                                                    std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldPCV, 1);
    walk.Read(FieldReserved, 7);
    walk.Read(FieldPageCode, 8);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandSendDiagnostic(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                           std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldUnitOffL, 1);
    walk.Read(FieldDevOffL, 1);
    walk.Read(FieldSelfTest, 1);
    walk.Read(FieldReserved, 1);
    walk.Read(FieldPF, 1);
    walk.Read(FieldSelfTestCode, 3);
    walk.Read(FieldReserved, 8);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandPereventAllowMediumRemoval(const CAdvAnlzData& data,
                                                                       CReqRespProtocolPacket& packet)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 24);
    walk.Read(FieldPrevent, 2);
    walk.Read(FieldReserved, 6);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReadBuffer(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                       std::uint8_t& nMode, std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    nMode = walk.Read(FieldMode, 4);
    walk.Read(FieldReserved, 4);
    walk.Read(FieldBufferId, 8);
    walk.ReadReversed(FieldBufferOffset, 24);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 24);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandLogSelect(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                      std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldSP);
    walk.Read(FieldPCR);
    walk.Read(FieldReserved, 12);
    walk.Read(FieldPC);
    walk.Read(FieldReserved, 32);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandLogSense(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                     std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldSP);
    walk.Read(FieldPPC);
    walk.Read(FieldReserved, 6);
    walk.Read(FieldPageCode);
    walk.Read(FieldPC);
    walk.Read(FieldReserved, 16);
    walk.ReadReversed(FieldParameterPointer, 16);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandModeSelect10(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                         std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldSP);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldPF);
    walk.Read(FieldReserved, 43);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandRelease10(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                      std::uint8_t& bLongId, std::uint8_t& bThirdPty,
                                                      std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldObsolete, 1);
    bLongId = walk.Read(FieldLongId, 1);
    walk.Read(FieldReserved, 2);
    bThirdPty = walk.Read(FieldThirdPty, 1);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldObsolete, 8);
    walk.Read(FieldThirdPartyDeviceId, 8);
    walk.Read(FieldReserved, 24);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandModeSense10(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                        std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldDBD);
    walk.Read(FieldLLBAA);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldPageCode, 6);
    walk.Read(FieldPC);
    walk.Read(FieldReserved, 32);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReserveIn(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                      std::uint8_t& nServiceAction,
                                                      std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    nServiceAction = walk.Read(FieldServiceAction, 5);
    walk.Read(FieldReserved, 43);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReserveOut(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                       std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldServiceAction, 5);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldType, 4);
    walk.Read(FieldScope, 4);
    walk.Read(FieldReserved, 32);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 16);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandExtendedCopy(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                         std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 72);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 32);
    walk.Read(FieldReserved, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReceiveCopyResult(const CAdvAnlzData& data,
                                                              CReqRespProtocolPacket& packet,
                                                              std::uint8_t& nServiceAction,
                                                              std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    nServiceAction = walk.Read(FieldServiceAction, 5);
    walk.Read(FieldReserved, 3);
    walk.Read(FieldListIdentifier, 8);
    walk.Read(FieldReserved, 56);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 32);
    walk.Read(FieldReserved, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReportLuns(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                       std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldReserved, 40);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 32);
    walk.Read(FieldReserved, 8);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandReportReceiveIdentifier(const CAdvAnlzData& data,
                                                                    CReqRespProtocolPacket& packet,
                                                                    std::uint32_t& dwAllocationLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldServiceAction, 5);
    walk.Read(FieldReserved, 19);
    walk.Read(FieldRestricted, 16);
    dwAllocationLength = walk.ReadReversed(FieldAllocationLength, 32);
    walk.Read(FieldReserved, 1);
    walk.Read(FieldRestricted, 1);
    walk.Read(FieldReserved, 6);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadCommandSetDeviceIdentifier(const CAdvAnlzData& data,
                                                                CReqRespProtocolPacket& packet,
                                                                std::uint32_t& dwParameterListLength)
{
    CFieldWalk walk = Walk(data, packet);
    walk.Read(FieldServiceAction, 5);
    walk.Read(FieldReserved, 19);
    walk.Read(FieldRestricted, 16);
    dwParameterListLength = walk.ReadReversed(FieldParameterListLength, 32);
    walk.Read(FieldReserved, 1);
    walk.Read(FieldRestricted, 1);
    walk.Read(FieldReserved, 6);
    walk.Read(FieldControl);
    return walk.Consumed();
}

unsigned long CSCSIProtocolSpec::ReadUnknownCommand(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CAdvAnlzData value;
    // The first byte behind the operation code is shown on its own, and the
    // data field still begins with it: nothing is dropped between the two.
    ReadField(data, packet, FieldUnknownLength, value, ByteOrderAsStored, 8);
    return ReadField(data, packet, FieldUnknownData, value, ByteOrderAsStored, data.GetLength());
}
