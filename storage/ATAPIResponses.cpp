// ATAPI decoder: the structures that the drive returns behind a command
// block. Multi-byte numbers are big-endian on the wire and are read
// byte-reversed; ASCII and binary strings stay in wire order. Length
// arithmetic is unsigned 32-bit, as the length fields come, and a width
// that works out to 0 reads the catalogue's default width.
#include "storage/ATAPISpec.h"

namespace {

using namespace ATAPIField;

constexpr std::uint8_t kBE = SLayoutField::BigEndian;
constexpr std::uint8_t kKept = SLayoutField::Kept;

// A structure chosen by a code from the command block: its fixed fields,
// then, when nTailId is set, one field as wide as the length kept from the
// fixed fields says: kept * nTailScale - nTailLess bits.
struct SStructure {
    std::uint8_t nCode;
    const char* pszResponseName;
    SLayout fields;
    unsigned short nTailId = 0;
    std::uint8_t nTailScale = 8;
    std::uint8_t nTailLess = 0;
};

// READ CAPACITY data.
const SLayoutField kCapacity[] = {{LogicalBlockAddress, 32, kBE}, {BlockLength, 32, kBE}};

// READ FORMAT CAPACITIES: the list header and the current/maximum capacity
// descriptor, then formattable capacity descriptors.
const SLayoutField kCapacityListHeader[] = {{Reserved, 24},
                                            {CapacityListLength, 0, kKept},
                                            {CapacityBlocks, 0, kBE},
                                            {DescriptorType},
                                            {Reserved, 6},
                                            {CapacityBlockLength, 24, kBE}};
const SLayoutField kFormattableCapacity[] = {
    {CapacityBlocks, 0, kBE}, {Reserved, 2}, {FormatType}, {TypeDependentParameter, 0, kBE}};

// GET CONFIGURATION: the feature header; the descriptors follow as one field.
const SLayoutField kFeatureHeader[] = {
    {FeatureDataLength, 32, kBE | kKept}, {FeatureReserved, 16}, {CurrentProfile, 16, kBE}};

// GET EVENT/STATUS NOTIFICATION: the event header.
const SLayoutField kEventHeader[] = {{EventDataLength, 16, kBE | kKept},
                                     {EventNotificationClass},
                                     {EventReserved, 4},
                                     {EventNEA},
                                     {SupportedEventClasses}};

// READ DISC INFORMATION, up to the count of OPC table entries.
const SLayoutField kDiscInformation[] = {{DiscInformationLength, 16, kBE},
                                         {DiscStatus},
                                         {LastSessionState},
                                         {Erasable},
                                         {DiscReserved, 3},
                                         {FirstTrackOnDisc},
                                         {SessionsLSB},
                                         {FirstTrackInLastSessionLSB},
                                         {LastTrackInLastSessionLSB},
                                         {DiscReserved, 5},
                                         {URU},
                                         {DBCV},
                                         {DIDV},
                                         {DiscType},
                                         {SessionsMSB},
                                         {FirstTrackInLastSessionMSB},
                                         {LastTrackInLastSessionMSB},
                                         {DiscIdentification, 32, kBE},
                                         {LastSessionLeadInStart, 32, kBE},
                                         {LastLeadOutStart, 32, kBE},
                                         {DiscBarCode, 64, kBE},
                                         {DiscReserved, 8},
                                         {OPCTableEntryCount, 0, kKept}};

// GET PERFORMANCE: the performance header.
const SLayoutField kPerformanceHeader[] = {
    {PerformanceDataLength, 32, kBE | kKept}, {PerformanceExcept}, {PerformanceWrite}, {PerformanceReserved, 30}};

// MECHANISM STATUS: the header; the slot tables follow as one field.
const SLayoutField kMechanismStatusHeader[] = {{CurrentSlotLow},
                                               {ChangerState},
                                               {Fault},
                                               {CurrentSlotHigh},
                                               {MechanismReserved, 1},
                                               {DoorOpen, 1},
                                               {MechanismState},
                                               {CurrentLBA, 24, kBE},
                                               {SlotsAvailable},
                                               {SlotTableLength, 16, kBE | kKept}};

// READ TRACK INFORMATION: the track information block.
const SLayoutField kTrackInformation[] = {{TrackInfoDataLength, 0, kBE},
                                          {TrackNumberLSB},
                                          {SessionNumberLSB},
                                          {Reserved, 8},
                                          {TrackMode},
                                          {Copy},
                                          {Damage},
                                          {Reserved, 2},
                                          {DataMode},
                                          {FP},
                                          {PacketInc},
                                          {Blank},
                                          {TrackRT},
                                          {NWAV},
                                          {LRAV},
                                          {Reserved, 6},
                                          {TrackStartAddress, 0, kBE},
                                          {NextWritableAddress, 0, kBE},
                                          {FreeBlocks, 0, kBE},
                                          {FixedPacketSize, 0, kBE},
                                          {TrackSize, 0, kBE},
                                          {LastRecordedAddress, 0, kBE},
                                          {TrackNumberMSB},
                                          {SessionNumberMSB},
                                          {Reserved, 16}};

// READ SUB-CHANNEL: the header, the data format code when SubQ is set, then
// the data of the format the block asked for.
const SLayoutField kSubChannelHeader[] = {{Reserved, 8}, {AudioStatus}, {SubChannelDataLength, 0, kBE}};
const SLayoutField kCDPosition[] = {{SubChannelControl}, {SubChannelADR},
                                    {SubChannelTrack},   {SubChannelIndex},
                                    {AbsoluteCDAddress, 0, kBE}, {TrackRelativeCDAddress, 0, kBE}};
const SLayoutField kMediaCatalogNumber[] = {{Reserved, 24}, {MediaCatalogNumber}};
const SLayoutField kTrackISRC[] = {
    {SubChannelControl}, {SubChannelADR}, {SubChannelTrack}, {Reserved, 8}, {ISRC, 0, kBE}};
const SStructure kSubChannelData[] = {
    {1, "CDPosition", LayoutOf(kCDPosition)},
    {2, "MCN", LayoutOf(kMediaCatalogNumber)},
    {3, "ISRC", LayoutOf(kTrackISRC)},
};

// READ TOC/PMA/ATIP by format: the header and one descriptor; further
// descriptors stay unread.
const SLayoutField kTOCTrack[] = {{TOCDataLength, 0, kBE}, {FirstTrackSession}, {LastTrackSession},
                                  {Reserved, 8},           {TOCControl},        {TOCAddress},
                                  {TOCTrackNumber},        {Reserved, 8},       {TOCLogicalBlockAddress, 0, kBE}};
const SLayoutField kTOCSessionInfo[] = {{TOCDataLength, 0, kBE}, {FirstTrackSession},   {LastTrackSession},
                                        {Reserved, 8},           {TOCControl},          {TOCAddress},
                                        {TOCFirstTrackNumber},   {Reserved, 8},
                                        {TOCFirstTrackInLastSessionLBA, 0, kBE}};
const SLayoutField kTOCFull[] = {{TOCDataLength, 0, kBE}, {FirstTrackSession}, {LastTrackSession},
                                 {TOCSessionNumber},      {TOCControl},        {TOCAddress},
                                 {TNO},                   {Point},             {Min},
                                 {Sec},                   {Frame},             {Zero},
                                 {PMin},                  {PSec},              {PFrame}};
const SLayoutField kTOCPMA[] = {{PMADataLength, 0, kBE}, {Reserved, 24}, {TOCControl}, {TOCAddress}, {TNO},
                                {Point},                 {Min},          {Sec},        {Frame},      {Zero},
                                {PMin},                  {PSec},         {PFrame}};
const SLayoutField kTOCATIP[] = {{ATIPDataLength, 0, kBE}, {Reserved, 16}, {ATIPDescriptor}};
const SLayoutField kTOCCDText[] = {{CDTextDataLength, 0, kBE | kKept}, {FirstTrackSession}, {LastTrackSession}};
const SStructure kTOCFormats[] = {
    {0, "TOSTrackDes", LayoutOf(kTOCTrack)},
    {1, "LogicalBlockAddress", LayoutOf(kTOCSessionInfo)},
    {2, "Toc_Format_FullToc", LayoutOf(kTOCFull)},
    {3, "Toc_Format_Pma", LayoutOf(kTOCPMA)},
    {4, "Toc_Format_ATIP", LayoutOf(kTOCATIP)},
    {5, "Toc_Format_CD_Context", LayoutOf(kTOCCDText), CDTextDescriptors},
};

// REPORT KEY by key format.
const SLayoutField kKeyAGID[] = {{ReportKeyLength, 0, kBE}, {Reserved, 16}, {Reserved, 30}, {AGID}};
const SLayoutField kKeyChallenge[] = {
    {ReportKeyLength, 0, kBE}, {Reserved, 16}, {ChallengeKeyValue, 0, kBE}, {Reserved, 16}};
const SLayoutField kKeyKey1[] = {{ReportKeyLength, 0, kBE}, {Reserved, 16}, {Key1Value, 0, kBE}, {Reserved, 24}};
const SLayoutField kKeyTitle[] = {{ReportKeyLength, 0, kBE}, {Reserved, 16}, {Reserved, 4},
                                  {CGMS},                    {CPSec},        {CPM},
                                  {TitleKeyValue, 0, kBE},   {Reserved, 16}};
const SLayoutField kKeyAuthenticationSuccess[] = {
    {ReportKeyLength, 0, kBE}, {Reserved, 16}, {Reserved, 24}, {SuccessFlag}, {Reserved, 7}};
const SLayoutField kKeyRPCState[] = {{ReportKeyLength, 0, kBE}, {RPCScheme},  {Reserved, 8},
                                     {UserResetsAvailable},     {VendorResetsAvailable},
                                     {RegionTypeCode},          {RegionMask}, {RPCScheme},
                                     {Reserved, 8}};
const SStructure kKeyFormats[] = {
    {0, "Authentication_Grant_Id", LayoutOf(kKeyAGID)},
    {1, "ChallengeKey", LayoutOf(kKeyChallenge)},
    {2, "Key1_Value", LayoutOf(kKeyKey1)},
    {4, "Title_Key", LayoutOf(kKeyTitle)},
    {5, "current state of Authentication_Success_Flag", LayoutOf(kKeyAuthenticationSuccess)},
    {8, "Logical_Unit_region_settings", LayoutOf(kKeyRPCState)},
};

// READ DVD STRUCTURE by format. Every structure begins with its data length.
const SLayoutField kDVDLayer[] = {{StructureDataLength, 0, kBE | kKept},
                                  {Reserved, 16},
                                  {BookVersion},
                                  {BookType},
                                  {MinimumRate},
                                  {DiscSize},
                                  {LayerType},
                                  {TrackPath},
                                  {NumberOfLayers},
                                  {Reserved, 1},
                                  {TrackDensity},
                                  {LinearDensity},
                                  {LayerValue},
                                  {StartingSectorOfMainData, 0, kBE},
                                  {LayerValue},
                                  {EndSectorOfMainData, 0, kBE},
                                  {LayerValue},
                                  {EndSectorInLayer0, 0, kBE},
                                  {Reserved, 7},
                                  {BCA}};
const SLayoutField kDVDCopyright[] = {{StructureDataLength, 0, kBE | kKept},
                                      {Reserved, 16},
                                      {CopyrightProtectionType},
                                      {RegionManagement},
                                      {Reserved, 16}};
const SLayoutField kDVDHeaderOnly[] = {{StructureDataLength, 0, kBE | kKept}, {Reserved, 16}};
const SLayoutField kDVDCopyrightManagement[] = {{StructureDataLength, 0, kBE | kKept},
                                                {Reserved, 20},
                                                {CGMS},
                                                {Reserved, 1},
                                                {CPM},
                                                {Reserved, 24}};
const SLayoutField kDVDRecordingManagement[] = {
    {StructureDataLength, 0, kBE | kKept}, {Reserved, 16}, {RecordingManagementRMA, 0, kBE}};
const SLayoutField kDVDPrerecorded[] = {{StructureDataLength, 0, kBE | kKept},
                                        {Reserved, 16},
                                        {PrerecordedFieldId},
                                        {PrerecordedApplicationCode},
                                        {PrerecordedPhysicalData},
                                        {PrerecordedLastAddress, 0, kBE},
                                        {Reserved, 8}};
const SLayoutField kDVDUniqueId[] = {{StructureDataLength, 0, kBE | kKept},
                                     {Reserved, 32},
                                     {UniqueIdRandomNumber, 0, kBE},
                                     {UniqueIdYear, 0, kBE},
                                     {UniqueIdMonth, 0, kBE},
                                     {UniqueIdDay, 0, kBE},
                                     {UniqueIdHour, 0, kBE},
                                     {UniqueIdMinute, 0, kBE},
                                     {UniqueIdSecond, 0, kBE}};
const SLayoutField kDVDControlBlock[] = {{StructureDataLength, 0, kBE | kKept},
                                         {Reserved, 16},
                                         {ControlBlockContentDescriptor, 0, kBE},
                                         {ControlBlockUnknownActions, 0, kBE},
                                         {ControlBlockVendorId},
                                         {ControlBlockData}};
const SLayoutField kDVDStructureList[] = {{StructureDataLength, 0, kBE | kKept},
                                          {Reserved, 16},
                                          {StructureListFormatCode},
                                          {Reserved, 6},
                                          {StructureListRDS},
                                          {StructureListSDS},
                                          {StructureListLength, 0, kBE}};
// The media specific bytes of the layer descriptor take the length less
// 136, as a width in bits.
const SStructure kDVDFormats[] = {
    {0x00, "LayerDescriptor", LayoutOf(kDVDLayer), MediaSpecific, 1, 136},
    {0x01, "DVDformation", LayoutOf(kDVDCopyright)},
    {0x02, "Disc_Key", LayoutOf(kDVDHeaderOnly), DiscKeyData},
    {0x03, "BCAInformation", LayoutOf(kDVDHeaderOnly), BCAInformation},
    {0x04, "DiscManufacturingInfo", LayoutOf(kDVDHeaderOnly), ManufacturingInformation},
    {0x05, "CopyRightManagementInfo", LayoutOf(kDVDCopyrightManagement)},
    {0x08, "DDSInfo", LayoutOf(kDVDHeaderOnly), DDSInformation},
    {0x0C, "RMD", LayoutOf(kDVDHeaderOnly), RMD},
    {0x0D, "RecordingManagement", LayoutOf(kDVDRecordingManagement), RecordingManagementRMD, 8, 32},
    {0x0E, "PrerecordInfo", LayoutOf(kDVDPrerecorded)},
    {0x0F, "UniqueDiscId", LayoutOf(kDVDUniqueId)},
    {0x30, "DiscControlBlock", LayoutOf(kDVDControlBlock)},
    {0xFF, "StuctureList", LayoutOf(kDVDStructureList)},
};

void MarkResponse(CReqRespProtocolPacket& packet, const char* pszName)
{
    packet.m_bHasResponse = 1;
    packet.SetResponseName(pszName);
}

// Reads a structure chosen by a code: its fields and its tail, if any.
template <class TWalk>
void ReadStructure(TWalk& walk, const SStructure& structure)
{
    MarkResponse(walk.Packet(), structure.pszResponseName);
    std::uint32_t dwLength = 0;
    ReadLayout(walk, structure.fields, &dwLength, 1);
    if (structure.nTailId != 0)
        walk.Read(structure.nTailId, dwLength * structure.nTailScale - structure.nTailLess);
}

// Reads the structure of a table that a code chooses; an unknown code reads
// nothing.
template <class TWalk, std::size_t N>
void ReadChosenStructure(TWalk& walk, const SStructure (&aTable)[N], std::uint32_t nCode)
{
    for (const SStructure& structure : aTable) {
        if (structure.nCode == nCode) {
            ReadStructure(walk, structure);
            return;
        }
    }
}

}  // namespace

void CATAPISpec::ReadResponseReadCapacity(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "Capacity");
    ReadLayout(walk, LayoutOf(kCapacity));
}

void CATAPISpec::ReadFormatCapacityResponse(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "FormatCapacity");
    std::uint32_t nListLength = 0;
    ReadLayout(walk, LayoutOf(kCapacityListHeader), &nListLength, 1);
    // The list length counts the current/maximum descriptor too; (L + 7) / 8
    // groups are read whatever the payload holds.
    if (nListLength > 0)
        for (std::uint32_t i = 0; i < (nListLength + 7) / 8; ++i)
            ReadLayout(walk, LayoutOf(kFormattableCapacity));
}

void CATAPISpec::ReadResponseDataGetConfiguration(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "Configuration");
    std::uint32_t dwLength = 0;
    ReadLayout(walk, LayoutOf(kFeatureHeader), &dwLength, 1);
    walk.Read(FeatureDescriptors, dwLength * 8);
}

void CATAPISpec::ReadResponseDataGetEventStatusNotification(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "Event_Status_Notification");
    std::uint32_t dwLength = 0;
    ReadLayout(walk, LayoutOf(kEventHeader), &dwLength, 1);
    if (dwLength != 0)
        walk.Read(EventData, dwLength * 8);
}

void CATAPISpec::ReadResponseReadDiscInformation(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "Disc_Information");
    std::uint32_t nEntries = 0;
    ReadLayout(walk, LayoutOf(kDiscInformation), &nEntries, 1);
    // As many OPC table entries as the count says, whatever the payload holds.
    for (std::uint32_t i = 0; i < nEntries; ++i)
        walk.Read(OPCTableEntry, 64);
}

void CATAPISpec::ReadResponseDataGetPerformance(CATAPIWalk& walk, std::uint32_t nExcept)
{
    MarkResponse(walk.Packet(), "Performance");
    std::uint32_t dwLength = 0;
    ReadLayout(walk, LayoutOf(kPerformanceHeader), &dwLength, 1);
    // Exception descriptors are 4 bytes, nominal performance descriptors 16.
    // The data length counts the four header bytes behind it; the loop ends
    // with the payload.
    const std::uint32_t nSize = nExcept != 0 ? 4 : 16;
    const std::int32_t nDescriptorBytes = static_cast<std::int32_t>(dwLength - 4);
    if (nDescriptorBytes > 0) {
        const std::uint32_t nCount = static_cast<std::uint32_t>(nDescriptorBytes) / nSize;
        for (std::uint32_t i = 0; i < nCount && walk.More(); ++i)
            walk.Read(PerformanceDescriptor, nSize * 8);
    }
}

void CATAPISpec::ReadParameterMechanismStatus(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "Mechanism_Status");
    std::uint32_t dwLength = 0;
    ReadLayout(walk, LayoutOf(kMechanismStatusHeader), &dwLength, 1);
    walk.Read(SlotTable, dwLength * 8);
}

void CATAPISpec::ReadTrackInfoResponse(CATAPIWalk& walk)
{
    MarkResponse(walk.Packet(), "Track_Information");
    ReadLayout(walk, LayoutOf(kTrackInformation));
}

void CATAPISpec::ReadSubChannelResponse(CATAPIWalk& walk, std::uint32_t nListCode, std::uint32_t bSubQ)
{
    ReadLayout(walk, LayoutOf(kSubChannelHeader));
    if (bSubQ == 0)
        return;
    walk.Read(SubChannelFormatCode);
    ReadChosenStructure(walk, kSubChannelData, nListCode);
}

void CATAPISpec::ReadTOS_PMA_ATIPResponse(CATAPIWalk& walk, std::uint32_t nFormat)
{
    ReadChosenStructure(walk, kTOCFormats, nFormat);
}

void CATAPISpec::ReadReportKeyResponse(CATAPIWalk& walk, std::uint32_t nKeyFormat)
{
    ReadChosenStructure(walk, kKeyFormats, nKeyFormat);
}

void CATAPISpec::ReadDVDStructureResponse(CATAPIWalk& walk, std::uint32_t nFormat)
{
    ReadChosenStructure(walk, kDVDFormats, nFormat);
}
