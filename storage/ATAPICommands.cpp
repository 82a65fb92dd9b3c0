// ATAPI decoder: the singleton, the dispatch on the operation code, the
// command blocks and the parameter data sent with a command. The returned
// structures are read in ATAPIResponses.cpp, the catalogue and option lists
// are in ATAPIFieldTable.cpp and ATAPIOptions.cpp.
#include "storage/ATAPISpec.h"

#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CATAPISpec, CSCSIProtocolSpec)

CATAPISpec* CATAPISpec::ms_pInstance = nullptr;

namespace {

using namespace ATAPIField;

constexpr std::uint8_t kBE = SLayoutField::BigEndian;
constexpr std::uint8_t kKept = SLayoutField::Kept;

// What follows a command block in the payload.
enum ENext : std::uint8_t {
    NextNone,
    // No block reader: everything behind the operation code is one field.
    NextWholeData,
    // Parameter data sent with the command: request fields.
    NextFormatUnitParameters,  // when FmtData is set
    NextOPCParameters,         // when the parameter list length is over 0
    NextCueSheet,
    NextSendEventParameters,  // when the parameter list length is over 0
    NextSendKeyParameters,    // when the parameter list length is over 0
    NextStreamingParameters,  // when the parameter list length is over 0
    NextDVDStructureData,
    // Structures returned by the drive: response fields.
    NextFormatCapacities,
    NextCapacity,
    NextSubChannel,
    NextTOC,
    NextConfiguration,  // when the allocation length is over 0
    NextEventStatus,    // when the allocation length is over 0
    NextDiscInformation,  // when the allocation length is over 0
    NextTrackInformation,
    NextReportKey,
    NextPerformance,
    NextDVDStructure,
    NextMechanismStatus,  // when the allocation length is over 0
};

struct SCommandRow {
    std::uint8_t nOpCode;
    const char* pszRequestName;
    SLayout block;
    ENext eNext;
};

// Command blocks behind the operation code, in bit order: the least
// significant bits of a byte come first. Kept fields are handed to what
// follows the block, in their order.
const SLayoutField kFormatUnit[] = {
    {FormatCode}, {CmdList}, {FmtData, 0, kKept}, {Reserved, 11}, {InterleaveValue, 16, kBE}, {Control}};
const SLayoutField kReadFormatCapacities[] = {{Reserved, 48}, {AllocationLength, 0, kBE}, {Control}};
const SLayoutField kReadCapacity[] = {{RelAdr},         {Reserved, 7}, {LogicalBlockAddress, 32, kBE},
                                      {Reserved, 16},   {PMI},         {Reserved, 7},
                                      {Control}};
const SLayoutField kWrite10[] = {{RelAdr},       {Reserved, 2},  {FUA},
                                 {DPO},          {Reserved, 3},  {LogicalBlockAddress, 32, kBE},
                                 {Reserved, 8},  {TransferLength, 16, kBE}, {Control}};
const SLayoutField kWriteAndVerify10[] = {{RelAdr},
                                          {BytChk},
                                          {Reserved, 2},
                                          {DPO},
                                          {Reserved, 3},
                                          {LogicalBlockAddress, 32, kBE},
                                          {TransferLength, 32, kBE},
                                          {Reserved, 8},
                                          {Control}};
const SLayoutField kSynchronizeCache[] = {{RelAdr},       {Immed},
                                          {Reserved, 6},  {LogicalBlockAddress, 32, kBE},
                                          {Reserved, 8},  {NumberOfBlocks, 16, kBE},
                                          {Control}};
// SubQ, then the sub-channel parameter list code.
const SLayoutField kReadSubChannel[] = {{Reserved, 1},
                                        {MSF},
                                        {Reserved, 12},
                                        {SubQ, 0, kKept},
                                        {Reserved, 1},
                                        {SubChannelParameterList, 0, kKept},
                                        {Reserved, 16},
                                        {SubChannelTrackNumber},
                                        {AllocationLength, 0, kBE},
                                        {Control}};
const SLayoutField kReadTOC[] = {{Reserved, 1},  {MSF},          {Reserved, 6},
                                 {TOCFormat, 0, kKept},          {Reserved, 28},
                                 {TOCTrackSessionNumber},        {AllocationLength, 0, kBE},
                                 {Control}};
const SLayoutField kPlayAudio10[] = {{RelAdr},      {Reserved, 7}, {StartingLogicalBlockAddress, 32, kBE},
                                     {Reserved, 8}, {PlayLength, 16, kBE}, {Control}};
const SLayoutField kGetConfiguration[] = {{RT},           {Reserved, 6}, {StartingFeatureNumber, 16, kBE},
                                          {Reserved, 24}, {AllocationLength, 16, kBE | kKept}, {Control}};
const SLayoutField kPlayAudioMSF[] = {{Reserved, 16}, {StartingM}, {StartingS}, {StartingF},
                                      {EndingM},      {EndingS},   {EndingF},   {Control}};
const SLayoutField kGetEventStatusNotification[] = {{Immed},         {Reserved, 23},
                                                    {NotificationClassRequest},
                                                    {Reserved, 16},  {AllocationLength, 16, kBE | kKept},
                                                    {Control}};
const SLayoutField kPauseResume[] = {{Reserved, 56}, {Resume}, {Reserved, 7}, {Control}};
const SLayoutField kStopPlayScan[] = {{Reserved, 64}, {Control}};
const SLayoutField kReadDiscInformation[] = {{Reserved, 48}, {AllocationLength, 16, kBE | kKept}, {Control}};
const SLayoutField kReadTrackInformation[] = {{AddressNumberType, 0, kBE}, {Reserved, 6},
                                              {TrackAddress, 0, kBE},      {Reserved, 8},
                                              {AllocationLength, 0, kBE},  {Control}};
const SLayoutField kReserveTrack[] = {{Reserved, 32}, {ReservationSize, 32, kBE}, {Control}};
const SLayoutField kSendOPCInformation[] = {
    {DoOPC}, {Reserved, 47}, {ParameterListLength, 16, kBE | kKept}, {Control}};
const SLayoutField kCloseTrackSession[] = {{Immed},         {Reserved, 7},  {Track},
                                           {Session},       {Reserved, 14}, {TrackNumber, 0, kBE},
                                           {Reserved, 24},  {Control}};
const SLayoutField kSendCueSheet[] = {{Reserved, 40}, {CueSheetSize, 24, kBE | kKept}, {Control}};
const SLayoutField kBlank[] = {{BlankingType},
                               {Reserved, 1},
                               {Immed},
                               {Reserved, 3},
                               {StartAddressTrackNumber, 32, kBE},
                               {Reserved, 40},
                               {Control}};
const SLayoutField kSendEvent[] = {
    {Immed}, {Reserved, 55}, {ParameterListLength, 16, kBE | kKept}, {Reserved, 8}, {Control}};
const SLayoutField kSendKey[] = {
    {Reserved, 56}, {ParameterListLength, 16, kBE | kKept}, {KeyFormat}, {AGID}, {Control}};
// The address of a report key block is the TOC descriptor's address field.
const SLayoutField kReportKey[] = {{Reserved, 8},          {TOCLogicalBlockAddress, 32, kBE},
                                   {Reserved, 16},         {AllocationLength, 0, kBE},
                                   {KeyFormat, 0, kKept},  {AGID, 2},
                                   {Control}};
const SLayoutField kPlayAudio12[] = {{RelAdr},      {Reserved, 7}, {LogicalBlockAddress, 32, kBE},
                                     {PlayLength, 32, kBE},       {Reserved, 8}, {Control}};
const SLayoutField kLoadUnloadMedium[] = {{Immed},  {Reserved, 23}, {Start},        {LoUnlo},
                                          {Reserved, 30}, {Slot},   {Reserved, 16}, {Control}};
const SLayoutField kSetReadAhead[] = {
    {Reserved, 8}, {TriggerLBA, 32, kBE}, {ReadAheadLBA, 32, kBE}, {Reserved, 8}, {Control}};
const SLayoutField kGetPerformance[] = {{Except, 0, kKept},
                                        {Write},
                                        {Tolerance},
                                        {Reserved, 3},
                                        {StartingLBA, 32, kBE},
                                        {Reserved, 16},
                                        {MaxDescriptors, 16, kBE},
                                        {Reserved, 8},
                                        {Control}};
const SLayoutField kReadDVDStructure[] = {{Reserved, 8},  {Address, 0, kBE},          {LayerNumber},
                                          {StructureFormat, 8, kKept},                {AllocationLength, 0, kBE},
                                          {Reserved, 6},  {AGID},                     {Control}};
const SLayoutField kSetStreaming[] = {{Reserved, 64}, {ParameterListLength, 16, kBE | kKept}, {Control}};
const SLayoutField kReadCDMSF[] = {{Reserved, 2}, {ExpectedSectorType}, {Reserved, 11}, {StartingM},
                                   {StartingS},   {StartingF},          {EndingM},      {EndingS},
                                   {EndingF},     {Reserved, 1},        {ErrorField},   {EDCAndECC},
                                   {UserData},    {HeaderCodes},        {Sync},         {SubChannelSelection},
                                   {Reserved, 5}, {Control}};
const SLayoutField kScan[] = {{RelAdr},         {Reserved, 3}, {Direct},   {Reserved, 3},
                              {ScanStartingAddress, 32, kBE},  {Reserved, 30}, {ScanType},
                              {Reserved, 8},    {Control}};
const SLayoutField kMechanismStatus[] = {
    {Reserved, 56}, {AllocationLength, 16, kBE | kKept}, {Reserved, 8}, {Control}};
const SLayoutField kReadCD[] = {{RelAdr},      {Reserved, 1}, {ExpectedSectorType},
                                {Reserved, 3}, {StartingLogicalBlockAddress, 32, kBE},
                                {TransferLength, 24, kBE},    {Reserved, 1},
                                {ErrorField},  {EDCAndECC},   {UserData},
                                {HeaderCodes}, {Sync},        {SubChannelSelection},
                                {Reserved, 5}, {Control}};
const SLayoutField kSendDVDStructure[] = {
    {Reserved, 48}, {SendStructureFormat}, {StructureSendLength, 16, kBE | kKept}, {Reserved, 8}, {Control}};

constexpr SLayout kNoBlock{nullptr, 0};

// The commands this decoder reads itself, by operation code.
const SCommandRow kCommands[] = {
    {0x04, "Format Unit", LayoutOf(kFormatUnit), NextFormatUnitParameters},
    {0x23, "Read Format Capacities", LayoutOf(kReadFormatCapacities), NextFormatCapacities},
    {0x25, "Read Capacity", LayoutOf(kReadCapacity), NextCapacity},
    {0x28, "Read(10)", kNoBlock, NextWholeData},
    {0x2A, "Write(10)", LayoutOf(kWrite10), NextNone},
    {0x2B, "Seek", kNoBlock, NextWholeData},
    {0x2C, "Erase(10)", kNoBlock, NextWholeData},
    {0x2E, "Write And Verify(10)", LayoutOf(kWriteAndVerify10), NextNone},
    {0x35, "Synchronize Cache", LayoutOf(kSynchronizeCache), NextNone},
    {0x42, "Resd Sub Channel", LayoutOf(kReadSubChannel), NextSubChannel},
    {0x43, "Read TOC/PMA/ATIP", LayoutOf(kReadTOC), NextTOC},
    {0x44, "Read Header", kNoBlock, NextWholeData},
    {0x45, "Play Audio(10)", LayoutOf(kPlayAudio10), NextNone},
    {0x46, "Get Configuration", LayoutOf(kGetConfiguration), NextConfiguration},
    {0x47, "Play Audio MSF", LayoutOf(kPlayAudioMSF), NextNone},
    {0x4A, "Get Event/Status Notification", LayoutOf(kGetEventStatusNotification), NextEventStatus},
    {0x4B, "Pause Resume", LayoutOf(kPauseResume), NextNone},
    {0x4E, "Stop Play Unit", LayoutOf(kStopPlayScan), NextNone},
    {0x51, "Read Disk Information", LayoutOf(kReadDiscInformation), NextDiscInformation},
    {0x52, "Read Track Information", LayoutOf(kReadTrackInformation), NextTrackInformation},
    {0x53, "Reserve Track", LayoutOf(kReserveTrack), NextNone},
    {0x54, "Send OPC Information", LayoutOf(kSendOPCInformation), NextOPCParameters},
    {0x58, "Repair track", kNoBlock, NextWholeData},
    {0x59, "Read Master CUE", kNoBlock, NextWholeData},
    {0x5B, "Close Track/Session", LayoutOf(kCloseTrackSession), NextNone},
    {0x5C, "Read Buffer Capacity", kNoBlock, NextWholeData},
    {0x5D, "Send CUE Sheet", LayoutOf(kSendCueSheet), NextCueSheet},
    {0xA1, "Blank", LayoutOf(kBlank), NextNone},
    {0xA2, "Send Event", LayoutOf(kSendEvent), NextSendEventParameters},
    {0xA3, "Send Key", LayoutOf(kSendKey), NextSendKeyParameters},
    {0xA4, "Report Key", LayoutOf(kReportKey), NextReportKey},
    {0xA5, "Play Audio(12)", LayoutOf(kPlayAudio12), NextNone},
    {0xA6, "Load/Unload Medium", LayoutOf(kLoadUnloadMedium), NextNone},
    {0xA7, "Set Read Ahead", LayoutOf(kSetReadAhead), NextNone},
    {0xA8, "Read(12)", kNoBlock, NextWholeData},
    {0xAA, "Write(12)", kNoBlock, NextWholeData},
    {0xAC, "Get Performance", LayoutOf(kGetPerformance), NextPerformance},
    {0xAD, "Read DVD Structure", LayoutOf(kReadDVDStructure), NextDVDStructure},
    {0xB6, "Set Streaming", LayoutOf(kSetStreaming), NextStreamingParameters},
    {0xB9, "Read CD MSF", LayoutOf(kReadCDMSF), NextNone},
    {0xBA, "Scan", LayoutOf(kScan), NextNone},
    {0xBB, "Set CD Speed", kNoBlock, NextWholeData},
    {0xBC, "Play CD", kNoBlock, NextWholeData},
    {0xBD, "Mechanism Status", LayoutOf(kMechanismStatus), NextMechanismStatus},
    {0xBE, "Read CD", LayoutOf(kReadCD), NextNone},
    {0xBF, "Send DVD Structure", LayoutOf(kSendDVDStructure), NextDVDStructureData},
};

const SCommandRow* FindCommand(std::uint8_t nOpCode)
{
    for (const SCommandRow& row : kCommands)
        if (row.nOpCode == nOpCode)
            return &row;
    return nullptr;
}

// Commands that every SCSI device knows; the SCSI decoder reads them.
bool IsSCSICommand(std::uint8_t nOpCode)
{
    switch (nOpCode) {
    case 0x00:  // TEST UNIT READY
    case 0x03:  // REQUEST SENSE
    case 0x12:  // INQUIRY
    case 0x1B:  // START STOP UNIT
    case 0x1E:  // PREVENT ALLOW MEDIUM REMOVAL
    case 0x2F:  // VERIFY(10)
    case 0x3B:  // WRITE BUFFER
    case 0x3C:  // READ BUFFER
    case 0x55:  // MODE SELECT(10)
    case 0x5A:  // MODE SENSE(10)
        return true;
    default:
        return false;
    }
}

// Parameter data sent with a command.
const SLayoutField kFormatListHeader[] = {
    {ListHeaderReserved, 8}, {ListHeaderVS},  {ListHeaderImmed}, {ListHeaderTryOut},
    {ListHeaderIP, 0, kKept}, {ListHeaderSTPF}, {ListHeaderDCRT},  {ListHeaderDPRY},
    {ListHeaderFOV},         {ListHeaderDescriptorLength, 16, kBE}};
const SLayoutField kInitializationPatternHeader[] = {{PatternReserved, 5}, {PatternSI},
                                                     {PatternIpModifier},  {PatternType},
                                                     {PatternLength, 16, kBE | kKept}};
const SLayoutField kSendEventParameters[] = {{EventParameterLength, 16, kBE},
                                             {NotificationClass},
                                             {EventHeaderReserved, 13},
                                             {OperationalEvent},
                                             {ParameterReserved, 4},
                                             {OperationalStatus},
                                             {ParameterReserved, 3},
                                             {PersistentPrevent},
                                             {OperationalRequestCode, 16, kBE}};
const SLayoutField kOPCParameters[] = {{OPCSpeed, 16, kBE}, {OPCValue, 48, kBE}};
const SLayoutField kStreamingParameters[] = {{RA},
                                             {Exact},
                                             {RDD},
                                             {ParameterReserved, 29},
                                             {StartLBA, 32, kBE},
                                             {EndLBA, 32, kBE},
                                             {ReadSize, 32, kBE},
                                             {ReadTime, 32, kBE},
                                             {WriteSize, 32, kBE},
                                             {WriteTime, 32, kBE}};

}  // namespace

// ------------------------------------------------------------- singleton

CATAPISpec* CATAPISpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CATAPISpec();
    return ms_pInstance;
}

void CATAPISpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

// The SCSI constructor runs first: its option and format lists come first.
CATAPISpec::CATAPISpec()
{
    InitOptions();
}

const SSpecFieldAttr* CATAPISpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

unsigned char CATAPISpec::GetCommandLength(unsigned char nOpCode) const
{
    switch (nOpCode) {
    case 0x00:
    case 0x03:
    case 0x04:
    case 0x12:
    case 0x1B:
    case 0x1E:
        return 6;
    case 0x23:
    case 0x25:
    case 0x2A:
    case 0x2F:
    case 0x35:
    case 0x3B:
    case 0x3C:
    case 0x42:
    case 0x43:
    case 0x44:
    case 0x45:
    case 0x46:
    case 0x47:
    case 0x4A:
    case 0x4B:
    case 0x4E:
    case 0x51:
    case 0x52:
    case 0x53:
    case 0x54:
    case 0x55:
    case 0x58:
    case 0x59:
    case 0x5A:
    case 0x5B:
    case 0x5C:
    case 0x5D:
        return 10;
    case 0x2E:
    case 0xA1:
    case 0xA2:
    case 0xA3:
    case 0xA4:
    case 0xA5:
    case 0xA6:
    case 0xA7:
    case 0xAC:
    case 0xAD:
    case 0xB6:
    case 0xB9:
    case 0xBA:
    case 0xBB:
    case 0xBC:
    case 0xBD:
    case 0xBE:
    case 0xBF:
        return 12;
    default:
        return 0;
    }
}

// ------------------------------------------------------------- the walk

int CATAPISpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    m_bHandedToSCSI = 0;
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    pPacket->Clean();
    // The walk writes the packet's counts itself; nothing is copied here.
    ReadElements(data, *pPacket);
    return CheckProtocol(*pPacket) == 0 ? 1 : 0;
}

unsigned long CATAPISpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                                    CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength)
{
    return ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
}

unsigned long CATAPISpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    packet.m_nRequestFields = 0;
    packet.m_nResponseFields = 0;
    packet.m_bHasResponse = 0;
    if (data.GetLength() == 0)
        return 0;

    const std::uint8_t nOpCode = data.GetBits(0, 8);
    if (IsSCSICommand(nOpCode)) {
        // The packet becomes a SCSI packet, with the SCSI decoder's counts
        // and names.
        m_bHandedToSCSI = 1;
        CSCSIProtocolSpec::InterpretPacketData(data, packet, 1);
        return data.GetLength();
    }

    // One walk over the payload: the dispatch and every reader go on from
    // where the last one stopped.
    CATAPIWalk walk = Walk(data, packet);
    walk.Read(OpCode);
    const SCommandRow* pRow = FindCommand(nOpCode);
    if (!pRow) {
        // Unknown: the byte behind the code on its own, then the rest.
        walk.Read(UnknownLength, 8);
        walk.Read(UnknownData, walk.Data().GetLength());
        m_nRequestFields = 3;
        m_nResponseFields = 0;
        packet.m_nRequestFields = 3;
        packet.m_nResponseFields = 0;
        packet.m_bHasResponse = 0;
        packet.SetRequestName("Unknown");
        return walk.Consumed();
    }

    std::uint32_t aKept[2] = {0, 0};
    if (pRow->eNext == NextWholeData)
        walk.Read(Data, walk.Data().GetLength());
    else
        ReadLayout(walk, pRow->block, aKept, 2);
    // The block (with the parameter data that some commands send) is the
    // request side; what the drive returned is the response side.
    auto endRequest = [&]() {
        m_nRequestFields = packet.GetFieldCount();
        packet.m_nRequestFields = m_nRequestFields;
    };
    const std::uint32_t dwLength = aKept[0];
    bool bCounted = true;

    switch (pRow->eNext) {
    case NextNone:
    case NextWholeData:
        endRequest();
        break;
    case NextFormatUnitParameters:
        if (aKept[0] != 0)
            ReadParameterFormatUnit(walk);
        endRequest();
        break;
    case NextOPCParameters:
        if (dwLength > 0)
            ReadLayout(walk, LayoutOf(kOPCParameters));
        endRequest();
        break;
    case NextCueSheet:
        walk.Read(CueSheetData, dwLength * 8);
        endRequest();
        break;
    case NextSendEventParameters:
        if (dwLength > 0)
            ReadLayout(walk, LayoutOf(kSendEventParameters));
        endRequest();
        break;
    case NextSendKeyParameters:
        if (dwLength > 0)
            walk.Read(KeyParameterList, dwLength * 8);
        endRequest();
        break;
    case NextStreamingParameters:
        if (dwLength > 0)
            ReadLayout(walk, LayoutOf(kStreamingParameters));
        endRequest();
        break;
    case NextDVDStructureData:
        walk.Read(Data, dwLength * 8);
        endRequest();
        break;
    case NextFormatCapacities:
        endRequest();
        ReadFormatCapacityResponse(walk);
        break;
    case NextCapacity:
        endRequest();
        ReadResponseReadCapacity(walk);
        break;
    case NextSubChannel:
        endRequest();
        ReadSubChannelResponse(walk, aKept[1], aKept[0]);
        // Without SubQ only the header is read, and it is not counted.
        bCounted = aKept[0] != 0;
        break;
    case NextTOC:
        endRequest();
        ReadTOS_PMA_ATIPResponse(walk, aKept[0]);
        break;
    case NextConfiguration:
        endRequest();
        if (dwLength > 0)
            ReadResponseDataGetConfiguration(walk);
        break;
    case NextEventStatus:
        endRequest();
        if (dwLength > 0)
            ReadResponseDataGetEventStatusNotification(walk);
        break;
    case NextDiscInformation:
        endRequest();
        if (dwLength > 0)
            ReadResponseReadDiscInformation(walk);
        break;
    case NextTrackInformation:
        endRequest();
        ReadTrackInfoResponse(walk);
        break;
    case NextReportKey:
        endRequest();
        ReadReportKeyResponse(walk, aKept[0]);
        break;
    case NextPerformance:
        endRequest();
        ReadResponseDataGetPerformance(walk, aKept[0]);
        break;
    case NextDVDStructure:
        endRequest();
        ReadDVDStructureResponse(walk, aKept[0]);
        break;
    case NextMechanismStatus:
        endRequest();
        if (dwLength > 0)
            ReadParameterMechanismStatus(walk);
        break;
    }

    m_nResponseFields = bCounted ? static_cast<unsigned char>(packet.GetFieldCount() - m_nRequestFields) : 0;
    packet.m_nResponseFields = m_nResponseFields;
    packet.SetRequestName(pRow->pszRequestName);
    return walk.Consumed();
}

// ------------------------------------------------------------- parameter data

void CATAPISpec::ReadParameterFormatUnit(CATAPIWalk& walk)
{
    std::uint32_t nIP = 0;
    ReadLayout(walk, LayoutOf(kFormatListHeader), &nIP, 1);
    if (nIP != 0) {
        // The initialization pattern descriptor, its pattern as a number.
        std::uint32_t dwPatternLength = 0;
        ReadLayout(walk, LayoutOf(kInitializationPatternHeader), &dwPatternLength, 1);
        walk.ReadReversed(Pattern, dwPatternLength * 8);
    }
    walk.Read(FormatDescriptor, 64);
}

// ------------------------------------------------------------- packet

unsigned char CATAPIPacket::GetCommandLength(unsigned char nOpCode) const
{
    const CATAPISpec* pSpec = dynamic_cast<const CATAPISpec*>(m_pSpec);
    return pSpec ? pSpec->GetCommandLength(nOpCode) : 0;
}
