// ATAPI commands: every operation code, the hand-over to the SCSI decoder,
// every returned structure whole and cut short, parameter data, the
// catalogue's texts, and the SCSI decoder used before and after.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "storage/ATAPISpec.h"
#include "tests/StorageTestUtil.h"
#include "tests/TestUtil.h"

namespace {

using namespace ATAPIField;

// A byte as two hex digits.
std::string HexByte(int n)
{
    return HexOf(CAdvAnlzData(static_cast<std::uint64_t>(n), 8));
}

std::string Zeros(int nBytes)
{
    return std::string(static_cast<std::size_t>(nBytes) * 2, '0');
}

// The commands with a block or data path of their own: request name and
// block length.
struct SOwnCommand {
    const char* pszName;
    int nLength;
};
const std::map<int, SOwnCommand> kOwnCommands = {
    {0x04, {"Format Unit", 6}},
    {0x23, {"Read Format Capacities", 10}},
    {0x25, {"Read Capacity", 10}},
    {0x28, {"Read(10)", 0}},
    {0x2A, {"Write(10)", 10}},
    {0x2B, {"Seek", 0}},
    {0x2C, {"Erase(10)", 0}},
    {0x2E, {"Write And Verify(10)", 12}},
    {0x35, {"Synchronize Cache", 10}},
    {0x42, {"Resd Sub Channel", 10}},
    {0x43, {"Read TOC/PMA/ATIP", 10}},
    {0x44, {"Read Header", 10}},
    {0x45, {"Play Audio(10)", 10}},
    {0x46, {"Get Configuration", 10}},
    {0x47, {"Play Audio MSF", 10}},
    {0x4A, {"Get Event/Status Notification", 10}},
    {0x4B, {"Pause Resume", 10}},
    {0x4E, {"Stop Play Unit", 10}},
    {0x51, {"Read Disk Information", 10}},
    {0x52, {"Read Track Information", 10}},
    {0x53, {"Reserve Track", 10}},
    {0x54, {"Send OPC Information", 10}},
    {0x58, {"Repair track", 10}},
    {0x59, {"Read Master CUE", 10}},
    {0x5B, {"Close Track/Session", 10}},
    {0x5C, {"Read Buffer Capacity", 10}},
    {0x5D, {"Send CUE Sheet", 10}},
    {0xA1, {"Blank", 12}},
    {0xA2, {"Send Event", 12}},
    {0xA3, {"Send Key", 12}},
    {0xA4, {"Report Key", 12}},
    {0xA5, {"Play Audio(12)", 12}},
    {0xA6, {"Load/Unload Medium", 12}},
    {0xA7, {"Set Read Ahead", 12}},
    {0xA8, {"Read(12)", 0}},
    {0xAA, {"Write(12)", 0}},
    {0xAC, {"Get Performance", 12}},
    {0xAD, {"Read DVD Structure", 12}},
    {0xB6, {"Set Streaming", 12}},
    {0xB9, {"Read CD MSF", 12}},
    {0xBA, {"Scan", 12}},
    {0xBB, {"Set CD Speed", 12}},
    {0xBC, {"Play CD", 12}},
    {0xBD, {"Mechanism Status", 12}},
    {0xBE, {"Read CD", 12}},
    {0xBF, {"Send DVD Structure", 12}},
};
// Commands without a block reader: their bytes are one data field.
const std::set<int> kOpaqueCommands = {0x28, 0x2B, 0x2C, 0x44, 0x58, 0x59, 0x5C, 0xA8, 0xAA, 0xBB, 0xBC};
// Commands handed to the SCSI decoder, with their block lengths.
const std::map<int, int> kSCSICommands = {{0x00, 6},  {0x03, 6},  {0x12, 6},  {0x1B, 6},  {0x1E, 6},
                                          {0x2F, 10}, {0x3B, 10}, {0x3C, 10}, {0x55, 10}, {0x5A, 10}};

// Every operation code, its block alone, all bytes zero: the block takes
// exactly its command length, every field of it is a request field, and
// what comes behind it (nothing here) adds empty response fields only.
TEST(ATAPIDispatch, EveryOperationCode)
{
    CATAPISpec* pSpec = CATAPISpec::GetInstance();
    for (int nOp = 0; nOp < 256; ++nOp) {
        SCOPED_TRACE("operation code " + std::to_string(nOp));
        const auto own = kOwnCommands.find(nOp);
        const auto scsi = kSCSICommands.find(nOp);
        const int nLength = own != kOwnCommands.end() ? own->second.nLength
                            : scsi != kSCSICommands.end() ? scsi->second
                                                           : 0;
        EXPECT_EQ(pSpec->GetCommandLength(static_cast<unsigned char>(nOp)), nLength);
        // Blocks of length 0 get the 10 bytes of a typical block.
        const CAdvAnlzData payload = Hex(HexByte(nOp) +
                                         Zeros((nLength ? nLength : 10) - 1));
        CATAPIPacket packet(payload);
        EXPECT_EQ(pSpec->IsHandedToSCSI(), scsi != kSCSICommands.end());
        if (scsi != kSCSICommands.end()) {
            CSCSIProtocolPacket plain(payload);
            ExpectSameDecode(packet, plain);
            continue;
        }
        ASSERT_GE(packet.GetFieldCount(), 2);
        EXPECT_EQ(packet.GetFieldId(1), OpCode);
        if (own == kOwnCommands.end()) {
            EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{OpCode, UnknownLength, UnknownData}));
            EXPECT_EQ(packet.m_strRequestName, "Unknown");
            EXPECT_EQ(packet.m_nRequestFields, 3);
            continue;
        }
        EXPECT_EQ(packet.m_strRequestName, own->second.pszName);
        std::uint32_t nRequestBits = 0;
        for (int i = 1; i <= packet.GetFieldCount(); ++i) {
            const std::uint32_t nBits = packet.GetFieldValue(static_cast<unsigned char>(i))->GetLength();
            if (i <= packet.m_nRequestFields) {
                nRequestBits += nBits;
            } else {
                EXPECT_EQ(nBits, 0u) << "response field " << i;
            }
        }
        EXPECT_EQ(nRequestBits, payload.GetLength());
        // Without SubQ the sub-channel header is read but not counted.
        EXPECT_EQ(packet.m_nRequestFields + packet.m_nResponseFields + (nOp == 0x42 ? 3 : 0),
                  packet.GetFieldCount());
        if (kOpaqueCommands.count(nOp)) {
            EXPECT_EQ(packet.GetFieldCount(), 2);
            EXPECT_EQ(packet.GetFieldId(2), Data);
        }
    }
}

TEST(ATAPIDispatch, UnknownAndOpaqueCommands)
{
    CATAPIPacket unknown(Hex("ff 01 0203"));
    EXPECT_EQ(FieldsOf(unknown), (std::vector<SFieldView>{{OpCode, 8, "ff"}, {UnknownLength, 8, "01"},
                                                          {UnknownData, 16, "0203"}}));
    EXPECT_EQ(unknown.m_nResponseFields, 0);
    EXPECT_EQ(unknown.m_bHasResponse, 0);
    EXPECT_EQ(unknown.GetCommandLength(0xFF), 0);

    // No block reader, yet the bytes behind the code are shown whole.
    CATAPIPacket read10(Hex("28 00 00001000 00 0001 00"));
    EXPECT_EQ(FieldsOf(read10), (std::vector<SFieldView>{{OpCode, 8, "28"}, {Data, 72, "000000100000000100"}}));
    EXPECT_EQ(read10.GetCommandLength(0x28), 0);

    // The opaque field of a lone code reads nothing.
    CATAPIPacket seek(Hex("2b"));
    EXPECT_EQ(FieldsOf(seek), (std::vector<SFieldView>{{OpCode, 8, "2b"}, {Data, 0, ""}}));

    // VERIFY goes to the SCSI decoder, which has no reader for it either.
    CATAPIPacket verify(Hex("2f 00 00000010 00 0001 00"));
    EXPECT_EQ(IdsOf(verify), (std::vector<unsigned short>{22000, 22138, 22139}));
    EXPECT_EQ(verify.m_strRequestName, "Unknown");

    CATAPIPacket empty(CAdvAnlzData{});
    EXPECT_EQ(empty.GetFieldCount(), 0);
    EXPECT_EQ(empty.m_nRequestFields, 0);
}

// Shared commands with their data decode exactly as the SCSI decoder does.
TEST(ATAPIDispatch, HandOverGivesTheSCSIDecode)
{
    const char* aPayloads[] = {
        ("12 00 00 00 24 00  05 80 00 32 1f 00 00 00 56 4d 77 61 72 65 2c 20 56 69 72 74 75 61 6c 20 43 44 2d 52 4f "
         "4d 20 20 20 20 31 2e 30 20"),
        "03 00 00 00 12 00  70 00 02 00 00 00 00 0a 00 00 00 00 3a 00 00 00 00 00",
        "5a 00 2a 00 00 00 00 00 1c 00  00 1a 70 00 00 00 00 00",
        "3c 00 00 000000 000004 00  00 000200",
        "1e 00 00 00 01 00",
        "00 00 00 00 00 00",
    };
    CATAPISpec* pSpec = CATAPISpec::GetInstance();
    for (const char* pszHex : aPayloads) {
        SCOPED_TRACE(pszHex);
        CATAPIPacket packet(Hex(pszHex));
        EXPECT_TRUE(pSpec->IsHandedToSCSI());
        ExpectSameDecode(packet, CSCSIProtocolPacket(Hex(pszHex)));
        EXPECT_EQ(packet.GetFieldId(1), 22000);
    }
    // The flag is cleared for the next packet.
    CATAPIPacket capacity(Hex("25 00 00000000 0000 00 00"));
    EXPECT_FALSE(pSpec->IsHandedToSCSI());
}

// ------------------------------------------------------------- structures

struct SStructureCase {
    const char* pszName;
    std::string strHex;
    // The fields behind the block.
    std::vector<SFieldView> aResponse;
    int nRequestFields;
    int nResponseFields;
    int bHasResponse;
    const char* pszResponseName;
};

void PrintTo(const SStructureCase& c, std::ostream* os)
{
    *os << c.pszName;
}

class ATAPIStructure : public ::testing::TestWithParam<SStructureCase> {};

TEST_P(ATAPIStructure, DecodesBehindTheBlock)
{
    const SStructureCase& c = GetParam();
    CATAPIPacket packet(Hex(c.strHex));
    const std::vector<SFieldView> aFields = FieldsOf(packet);
    ASSERT_GE(aFields.size(), static_cast<std::size_t>(c.nRequestFields));
    EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + c.nRequestFields, aFields.end()), c.aResponse);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, c.nResponseFields);
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponseName);
}

std::vector<SFieldView> Repeat(std::vector<SFieldView> a, int nTimes)
{
    std::vector<SFieldView> r;
    for (int i = 0; i < nTimes; ++i)
        r.insert(r.end(), a.begin(), a.end());
    return r;
}

const std::string kSubChannelBlock = "42 02 40 01 00 00 00 0010 00";
const std::vector<SFieldView> kSubChannelHeader = {{Reserved, 8, "00"}, {AudioStatus, 8, "11"},
                                                   {SubChannelDataLength, 16, "0c00"}};
const std::vector<SFieldView> kCapacityDescriptor = {{Reserved, 24, "000000"},    {CapacityListLength, 8, "10"},
                                                     {CapacityBlocks, 32, "00100000"}, {DescriptorType, 2, "02"},
                                                     {Reserved, 6, "00"},         {CapacityBlockLength, 24, "000200"}};
const std::vector<SFieldView> kEmptyFormattable = {
    {CapacityBlocks, 0, ""}, {Reserved, 0, ""}, {FormatType, 0, ""}, {TypeDependentParameter, 0, ""}};

INSTANTIATE_TEST_SUITE_P(
    Responses, ATAPIStructure,
    ::testing::Values(
        SStructureCase{"Capacity", "25 00 00000000 0000 00 00  0004f926 00000800",
                       {{LogicalBlockAddress, 32, "26f90400"}, {BlockLength, 32, "00080000"}}, 8, 2, 1, "Capacity"},
        // Announced though the payload ends with the block.
        SStructureCase{"CapacityWithoutData", "25 00 00000000 0000 00 00",
                       {{LogicalBlockAddress, 0, ""}, {BlockLength, 0, ""}}, 8, 2, 1, "Capacity"},
        SStructureCase{"CapacityCutInsideAddress", "25 00 00000000 0000 00 00  0004",
                       {{LogicalBlockAddress, 16, "0400"}, {BlockLength, 0, ""}}, 8, 2, 1, "Capacity"},
        // A list length of 16 reads two formattable descriptors.
        SStructureCase{"FormatCapacities",
                       "23 000000000000 0014 00  000000 10 00001000 02 000200  00002000 00 000800  00003000 40 000800",
                       Join(kCapacityDescriptor,
                            {{CapacityBlocks, 32, "00200000"}, {Reserved, 2, "00"}, {FormatType, 6, "00"},
                             {TypeDependentParameter, 24, "000800"}, {CapacityBlocks, 32, "00300000"},
                             {Reserved, 2, "00"}, {FormatType, 6, "10"}, {TypeDependentParameter, 24, "000800"}}),
                       4, 14, 1, "FormatCapacity"},
        // The groups are read whatever the payload holds.
        SStructureCase{"FormatCapacitiesCutBeforeGroups", "23 000000000000 0014 00  000000 10 00001000 02 000200",
                       Join(kCapacityDescriptor, Repeat(kEmptyFormattable, 2)), 4, 14, 1, "FormatCapacity"},
        SStructureCase{"Configuration", "46 02 0000 000000 0020 00  00000008 0000 0010 0000030800100000",
                       {{FeatureDataLength, 32, "08000000"}, {FeatureReserved, 16, "0000"},
                        {CurrentProfile, 16, "1000"}, {FeatureDescriptors, 64, "0000030800100000"}},
                       7, 4, 1, "Configuration"},
        // Without an allocation length the bytes behind the block stay unread.
        SStructureCase{"ConfigurationNotAllocated", "46 02 0000 000000 0000 00  00000008 0000 0010", {}, 7, 0, 0,
                       ""},
        SStructureCase{"EventStatus", "4a 01 00 00 10 00 00 0008 00  0004 84 10 02000000",
                       {{EventDataLength, 16, "0400"}, {EventNotificationClass, 3, "04"}, {EventReserved, 4, "00"},
                        {EventNEA, 1, "01"}, {SupportedEventClasses, 8, "10"}, {EventData, 32, "02000000"}},
                       7, 6, 1, "Event_Status_Notification"},
        SStructureCase{"EventStatusWithoutEventData", "4a 01 00 00 10 00 00 0008 00  0000 84 10",
                       {{EventDataLength, 16, "0000"}, {EventNotificationClass, 3, "04"}, {EventReserved, 4, "00"},
                        {EventNEA, 1, "01"}, {SupportedEventClasses, 8, "10"}},
                       7, 5, 1, "Event_Status_Notification"},
        // Exception descriptors of 4 bytes: (20 - 4) / 4 of them.
        SStructureCase{"PerformanceExceptions",
                       "ac 11 00000010 0000 0004 00 00  00000014 00000000 11111111 22222222 33333333 44444444",
                       {{PerformanceDataLength, 32, "14000000"}, {PerformanceExcept, 1, "00"},
                        {PerformanceWrite, 1, "00"}, {PerformanceReserved, 30, "00000000"},
                        {PerformanceDescriptor, 32, "11111111"}, {PerformanceDescriptor, 32, "22222222"},
                        {PerformanceDescriptor, 32, "33333333"}, {PerformanceDescriptor, 32, "44444444"}},
                       10, 8, 1, "Performance"},
        // Nominal descriptors of 16 bytes; the loop ends with the payload,
        // though the length promises six.
        SStructureCase{"PerformanceNominalCut",
                       "ac 00 00000000 0000 0001 00 00  00000064 00000000 " + std::string(32, 'a') + "bbbbbbbb",
                       {{PerformanceDataLength, 32, "64000000"}, {PerformanceExcept, 1, "00"},
                        {PerformanceWrite, 1, "00"}, {PerformanceReserved, 30, "00000000"},
                        {PerformanceDescriptor, 128, std::string(32, 'a')}, {PerformanceDescriptor, 32, "bbbbbbbb"}},
                       10, 6, 1, "Performance"},
        SStructureCase{"PerformanceShortLength", "ac 00 00000000 0000 0001 00 00  00000002 00000000 aaaa",
                       {{PerformanceDataLength, 32, "02000000"}, {PerformanceExcept, 1, "00"},
                        {PerformanceWrite, 1, "00"}, {PerformanceReserved, 30, "00000000"}},
                       10, 4, 1, "Performance"},
        SStructureCase{"MechanismStatus", "bd 00000000000000 0010 00 00  23 30 000010 02 0008 0102030405060708",
                       {{CurrentSlotLow, 5, "03"}, {ChangerState, 2, "01"}, {Fault, 1, "00"},
                        {CurrentSlotHigh, 3, "00"},
                        {MechanismReserved, 1, "00"}, {DoorOpen, 1, "01"}, {MechanismState, 3, "01"},
                        {CurrentLBA, 24, "100000"}, {SlotsAvailable, 8, "02"}, {SlotTableLength, 16, "0800"},
                        {SlotTable, 64, "0102030405060708"}},
                       5, 11, 1, "Mechanism_Status"},
        SStructureCase{"SubChannelPosition", kSubChannelBlock + "00 11 000c 01 14 01 01 00000200 00000096",
                       Join(kSubChannelHeader,
                            {{SubChannelFormatCode, 8, "01"}, {SubChannelControl, 4, "04"}, {SubChannelADR, 4, "01"},
                             {SubChannelTrack, 8, "01"}, {SubChannelIndex, 8, "01"},
                             {AbsoluteCDAddress, 32, "00020000"}, {TrackRelativeCDAddress, 32, "96000000"}}),
                       11, 10, 1, "CDPosition"},
        // Without SubQ the header is read but neither counted nor named.
        SStructureCase{"SubChannelWithoutSubQ", "42 02 00 01 00 00 00 0010 00  00 11 000c 01 14",
                       kSubChannelHeader, 11, 0, 0, ""},
        SStructureCase{"SubChannelUnknownList", "42 02 40 04 00 00 00 0010 00  00 11 000c 04 14",
                       Join(kSubChannelHeader, {{SubChannelFormatCode, 8, "04"}}), 11, 4, 0, ""},
        SStructureCase{"SubChannelCatalogNumber",
                       "42 02 40 02 00 00 00 0018 00  00 11 000c 02 000000 3031323334353637383930313233 0000",
                       Join(kSubChannelHeader, {{SubChannelFormatCode, 8, "02"}, {Reserved, 24, "000000"},
                                                {MediaCatalogNumber, 128, "30313233343536373839303132330000"}}),
                       11, 6, 1, "MCN"},
        SStructureCase{"TOC", "43 02 00 00 00 00 00 000c 00  000a 01 01 00 14 01 00 00000200",
                       {{TOCDataLength, 16, "0a00"}, {FirstTrackSession, 8, "01"}, {LastTrackSession, 8, "01"},
                        {Reserved, 8, "00"}, {TOCControl, 4, "04"}, {TOCAddress, 4, "01"}, {TOCTrackNumber, 8, "01"},
                        {Reserved, 8, "00"}, {TOCLogicalBlockAddress, 32, "00020000"}},
                       9, 9, 1, "TOSTrackDes"},
        // One descriptor only, whatever the data length says.
        SStructureCase{"FullTOCFirstDescriptorOnly",
                       "43 02 02 00 00 00 00 0030 00  002e 01 01  01 14 00 a0 00 00 00 00 01 00 00  01 14 00 a1",
                       {{TOCDataLength, 16, "2e00"}, {FirstTrackSession, 8, "01"}, {LastTrackSession, 8, "01"},
                        {TOCSessionNumber, 8, "01"}, {TOCControl, 4, "04"}, {TOCAddress, 4, "01"}, {TNO, 8, "00"},
                        {Point, 8, "a0"}, {Min, 8, "00"}, {Sec, 8, "00"}, {Frame, 8, "00"}, {Zero, 8, "00"},
                        {PMin, 8, "01"}, {PSec, 8, "00"}, {PFrame, 8, "00"}},
                       9, 15, 1, "Toc_Format_FullToc"},
        SStructureCase{"CDText", "43 00 05 00 00 00 00 0010 00  0004 00 00 8f000000",
                       {{CDTextDataLength, 16, "0400"}, {FirstTrackSession, 8, "00"}, {LastTrackSession, 8, "00"},
                        {CDTextDescriptors, 32, "8f000000"}},
                       9, 4, 1, "Toc_Format_CD_Context"},
        SStructureCase{"TOCReservedFormat", "43 00 06 00 00 00 00 0010 00  0004 00 00", {}, 9, 0, 0, ""},
        SStructureCase{"TrackInformation",
                       "52 01 00000001 00 0024 00  0022 01 01 00 04 01 80 00000000 00000100 00001000 00000010 "
                       "00002000 000000ff 00 00 0000",
                       {{TrackInfoDataLength, 16, "2200"}, {TrackNumberLSB, 8, "01"}, {SessionNumberLSB, 8, "01"},
                        {Reserved, 8, "00"}, {TrackMode, 4, "04"}, {Copy, 1, "00"}, {Damage, 1, "00"},
                        {Reserved, 2, "00"}, {DataMode, 4, "01"}, {FP, 1, "00"}, {PacketInc, 1, "00"},
                        {Blank, 1, "00"}, {TrackRT, 1, "00"}, {NWAV, 1, "00"}, {LRAV, 1, "00"}, {Reserved, 6, "20"},
                        {TrackStartAddress, 32, "00000000"}, {NextWritableAddress, 32, "00010000"},
                        {FreeBlocks, 32, "00100000"}, {FixedPacketSize, 32, "10000000"}, {TrackSize, 32, "00200000"},
                        {LastRecordedAddress, 32, "ff000000"}, {TrackNumberMSB, 8, "00"},
                        {SessionNumberMSB, 8, "00"}, {Reserved, 16, "0000"}},
                       7, 25, 1, "Track_Information"},
        SStructureCase{"RegionSettings", "a4 00 00000000 0000 0008 08 00  0006 00 00 25 fe 01 00",
                       {{ReportKeyLength, 16, "0600"}, {RPCScheme, 8, "00"}, {Reserved, 8, "00"},
                        {UserResetsAvailable, 3, "05"}, {VendorResetsAvailable, 3, "04"}, {RegionTypeCode, 2, "00"},
                        {RegionMask, 8, "fe"}, {RPCScheme, 8, "01"}, {Reserved, 8, "00"}},
                       8, 9, 1, "Logical_Unit_region_settings"},
        SStructureCase{"TitleKey", "a4 00 00000010 0000 000c 04 00  000a 0000 36 0102030405 0000",
                       {{ReportKeyLength, 16, "0a00"}, {Reserved, 16, "0000"}, {Reserved, 4, "06"}, {CGMS, 2, "03"},
                        {CPSec, 1, "00"}, {CPM, 1, "00"}, {TitleKeyValue, 40, "0504030201"}, {Reserved, 16, "0000"}},
                       8, 8, 1, "Title_Key"},
        SStructureCase{"KeyFormatWithoutStructure", "a4 00 00000000 0000 0008 3f 00  0006 0000", {}, 8, 0, 0, ""},
        // The media specific bytes take the length less 136, in bits: 0
        // reads the default byte.
        SStructureCase{"LayerDescriptor",
                       "ad 00 00000000 00 00 0804 00 00  0088 0000 01 0f 01 10 00 030000 00 07ffff 00 000000 00 ee "
                       "ffff",
                       {{StructureDataLength, 16, "8800"}, {Reserved, 16, "0000"}, {BookVersion, 4, "01"},
                        {BookType, 4, "00"}, {MinimumRate, 4, "0f"}, {DiscSize, 4, "00"}, {LayerType, 4, "01"},
                        {TrackPath, 1, "00"}, {NumberOfLayers, 2, "00"}, {Reserved, 1, "00"},
                        {TrackDensity, 4, "00"}, {LinearDensity, 4, "01"}, {LayerValue, 8, "00"},
                        {StartingSectorOfMainData, 24, "000003"}, {LayerValue, 8, "00"},
                        {EndSectorOfMainData, 24, "ffff07"}, {LayerValue, 8, "00"},
                        {EndSectorInLayer0, 24, "000000"}, {Reserved, 7, "00"}, {BCA, 1, "00"},
                        {MediaSpecific, 8, "ee"}},
                       9, 21, 1, "LayerDescriptor"},
        // A length under 136 wraps: the media specific field takes the rest.
        SStructureCase{"LayerDescriptorShortLength",
                       "ad 00 00000000 00 00 0804 00 00  0010 0000 01 0f 01 10 00 030000 00 07ffff 00 000000 00 ee "
                       "ffff",
                       {{StructureDataLength, 16, "1000"}, {Reserved, 16, "0000"}, {BookVersion, 4, "01"},
                        {BookType, 4, "00"}, {MinimumRate, 4, "0f"}, {DiscSize, 4, "00"}, {LayerType, 4, "01"},
                        {TrackPath, 1, "00"}, {NumberOfLayers, 2, "00"}, {Reserved, 1, "00"},
                        {TrackDensity, 4, "00"}, {LinearDensity, 4, "01"}, {LayerValue, 8, "00"},
                        {StartingSectorOfMainData, 24, "000003"}, {LayerValue, 8, "00"},
                        {EndSectorOfMainData, 24, "ffff07"}, {LayerValue, 8, "00"},
                        {EndSectorInLayer0, 24, "000000"}, {Reserved, 7, "00"}, {BCA, 1, "00"},
                        {MediaSpecific, 24, "eeffff"}},
                       9, 21, 1, "LayerDescriptor"},
        SStructureCase{"RecordingManagement", "ad 00 00000000 00 0d 0010 00 00  0005 0000 00000001 aabbccdd",
                       {{StructureDataLength, 16, "0500"}, {Reserved, 16, "0000"},
                        {RecordingManagementRMA, 32, "01000000"}, {RecordingManagementRMD, 8, "aa"}},
                       9, 4, 1, "RecordingManagement"},
        SStructureCase{"DVDReservedFormat", "ad 00 00000000 00 06 0010 00 00  0004 0000 11223344", {}, 9, 0, 0, ""}),
    [](const ::testing::TestParamInfo<SStructureCase>& info) { return info.param.pszName; });

// Each DVD structure format: its name and count, with enough data behind.
TEST(ATAPIStructureFormats, DVDStructures)
{
    struct SFormat {
        int nFormat;
        const char* pszName;
        int nCount;
    };
    const SFormat aFormats[] = {{0x00, "LayerDescriptor", 21},       {0x01, "DVDformation", 5},
                                {0x02, "Disc_Key", 3},               {0x03, "BCAInformation", 3},
                                {0x04, "DiscManufacturingInfo", 3},  {0x05, "CopyRightManagementInfo", 6},
                                {0x08, "DDSInfo", 3},                {0x0C, "RMD", 3},
                                {0x0D, "RecordingManagement", 4},    {0x0E, "PrerecordInfo", 7},
                                {0x0F, "UniqueDiscId", 9},           {0x30, "DiscControlBlock", 6},
                                {0xFF, "StuctureList", 7}};
    for (const SFormat& f : aFormats) {
        SCOPED_TRACE(f.pszName);
        const std::string strHex = "ad 00 00000000 00 " + HexByte(f.nFormat) +
                                   " 0800 00 00  0088 0000" + std::string(160, 'c');
        CATAPIPacket packet(Hex(strHex));
        EXPECT_EQ(packet.m_strResponseName, f.pszName);
        EXPECT_EQ(packet.m_nRequestFields, 9);
        EXPECT_EQ(packet.m_nResponseFields, f.nCount);
        EXPECT_EQ(packet.GetFieldCount(), 9 + f.nCount);
        EXPECT_EQ(packet.m_bHasResponse, 1);
    }
}

// Each key format, and each TOC format, with its name and count.
TEST(ATAPIStructureFormats, KeysAndTOC)
{
    const std::pair<int, std::pair<const char*, int>> aKeys[] = {
        {0, {"Authentication_Grant_Id", 4}}, {1, {"ChallengeKey", 4}},
        {2, {"Key1_Value", 4}},              {4, {"Title_Key", 8}},
        {5, {"current state of Authentication_Success_Flag", 5}},
        {8, {"Logical_Unit_region_settings", 9}}};
    for (const auto& k : aKeys) {
        CATAPIPacket packet(Hex("a4 00 00000000 0000 0010 " + HexByte(k.first) +
                                " 00" + std::string(32, '0')));
        EXPECT_EQ(packet.m_strResponseName, k.second.first);
        EXPECT_EQ(packet.m_nResponseFields, k.second.second) << k.second.first;
    }
    const std::pair<int, std::pair<const char*, int>> aTOC[] = {
        {0, {"TOSTrackDes", 9}}, {1, {"LogicalBlockAddress", 9}}, {2, {"Toc_Format_FullToc", 15}},
        {3, {"Toc_Format_Pma", 13}}, {4, {"Toc_Format_ATIP", 3}}, {5, {"Toc_Format_CD_Context", 4}}};
    for (const auto& t : aTOC) {
        CATAPIPacket packet(Hex("43 00 " + HexByte(t.first) +
                                " 00 00 00 00 0030 00 0002" + std::string(64, '0')));
        EXPECT_EQ(packet.m_strResponseName, t.second.first);
        EXPECT_EQ(packet.m_nResponseFields, t.second.second) << t.second.first;
    }
}

// The OPC table: as many entries as the count says, past the payload too,
// where the performance descriptors stop with the payload.
TEST(ATAPIStructureFormats, DiscInformationReadsEveryAnnouncedEntry)
{
    const std::string strBlock = "51 00 00 00 00 00 00 0030 00";
    const std::string strData = "0020 0e 01 01 01 01 20 00 000000 12345678 00000000 00000000 0000000000000000 00 02";
    CATAPIPacket packet(Hex(strBlock + strData + "0102030405060708"));
    EXPECT_EQ(packet.m_strResponseName, "Disc_Information");
    EXPECT_EQ(packet.m_nRequestFields, 4);
    ASSERT_EQ(packet.m_nResponseFields, 25);
    const std::vector<SFieldView> aFields = FieldsOf(packet);
    EXPECT_EQ(aFields[5], (SFieldView{DiscStatus, 2, "02"}));
    EXPECT_EQ(aFields[6], (SFieldView{LastSessionState, 2, "03"}));
    EXPECT_EQ(aFields[14], (SFieldView{URU, 1, "01"}));
    EXPECT_EQ(aFields[21], (SFieldView{DiscIdentification, 32, "78563412"}));
    EXPECT_EQ(aFields[26], (SFieldView{OPCTableEntryCount, 8, "02"}));
    EXPECT_EQ(aFields[27], (SFieldView{OPCTableEntry, 64, "0102030405060708"}));
    EXPECT_EQ(aFields[28], (SFieldView{OPCTableEntry, 0, ""}));

    CATAPIPacket notAllocated(Hex("51 00 00 00 00 00 00 0000 00" + strData));
    EXPECT_EQ(notAllocated.GetFieldCount(), 4);
    EXPECT_EQ(notAllocated.m_bHasResponse, 0);
}

// ------------------------------------------------------------- parameter data

struct SParameterCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aParameters;  // the fields behind the block
    int nBlockFields;
};

void PrintTo(const SParameterCase& c, std::ostream* os)
{
    *os << c.pszName;
}

class ATAPIParameters : public ::testing::TestWithParam<SParameterCase> {};

// Parameter data belong to the request: nothing is counted as response.
TEST_P(ATAPIParameters, AreRequestFields)
{
    const SParameterCase& c = GetParam();
    CATAPIPacket packet(Hex(c.strHex));
    const std::vector<SFieldView> aFields = FieldsOf(packet);
    ASSERT_GE(aFields.size(), static_cast<std::size_t>(c.nBlockFields));
    EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + c.nBlockFields, aFields.end()), c.aParameters);
    EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
    EXPECT_EQ(packet.m_nResponseFields, 0);
    EXPECT_EQ(packet.m_bHasResponse, 0);
    EXPECT_EQ(packet.m_strResponseName, "");
}

INSTANTIATE_TEST_SUITE_P(
    Commands, ATAPIParameters,
    ::testing::Values(
        SParameterCase{"FormatUnitWithPattern", "04 11 00 0000 00  00 8a 0008  00 01 0002 abcd  00001000 00 000800",
                       {{ListHeaderReserved, 8, "00"}, {ListHeaderVS, 1, "00"}, {ListHeaderImmed, 1, "01"},
                        {ListHeaderTryOut, 1, "00"}, {ListHeaderIP, 1, "01"}, {ListHeaderSTPF, 1, "00"},
                        {ListHeaderDCRT, 1, "00"}, {ListHeaderDPRY, 1, "00"}, {ListHeaderFOV, 1, "01"},
                        {ListHeaderDescriptorLength, 16, "0800"}, {PatternReserved, 5, "00"}, {PatternSI, 1, "00"},
                        {PatternIpModifier, 2, "00"}, {PatternType, 8, "01"}, {PatternLength, 16, "0200"},
                        {Pattern, 16, "cdab"}, {FormatDescriptor, 64, "0000100000000800"}},
                       7},
        // Without FmtData the parameter list stays unread.
        SParameterCase{"FormatUnitWithoutData", "04 01 00 0000 00  00 8a 0008", {}, 7},
        SParameterCase{"SendKey", "a3 00000000000000 0004 01 00  deadbeef", {{KeyParameterList, 32, "deadbeef"}}, 6},
        SParameterCase{"SendKeyWithoutLength", "a3 00000000000000 0000 01 00  deadbeef", {}, 6},
        // A sheet size of 0 reads the field at its default width.
        SParameterCase{"CueSheetWithoutSize", "5d 0000000000 000000 00  41000000 01", {{CueSheetData, 32, "41000000"}},
                       4},
        SParameterCase{"CueSheet", "5d 0000000000 000002 00  4100 0000", {{CueSheetData, 16, "4100"}}, 4},
        SParameterCase{"SendEvent", "a2 01 000000000000 0008 00 00  0006 01 00 01 00 0001",
                       {{EventParameterLength, 16, "0600"}, {NotificationClass, 3, "01"},
                        {EventHeaderReserved, 13, "0000"}, {OperationalEvent, 4, "01"}, {ParameterReserved, 4, "00"},
                        {OperationalStatus, 4, "00"}, {ParameterReserved, 3, "00"}, {PersistentPrevent, 1, "00"},
                        {OperationalRequestCode, 16, "0100"}},
                       6},
        SParameterCase{"SendOPC", "54 01 0000000000 0008 00  00b0 010203040506",
                       {{OPCSpeed, 16, "b000"}, {OPCValue, 48, "060504030201"}}, 5},
        SParameterCase{"SetStreaming",
                       "b6 0000000000000000 001c 00  02000000 00000000 00001000 00000800 000003e8 00000000 00000000",
                       {{RA, 1, "00"}, {Exact, 1, "01"}, {RDD, 1, "00"}, {ParameterReserved, 29, "00000000"},
                        {StartLBA, 32, "00000000"}, {EndLBA, 32, "00100000"}, {ReadSize, 32, "00080000"},
                        {ReadTime, 32, "e8030000"}, {WriteSize, 32, "00000000"}, {WriteTime, 32, "00000000"}},
                       4},
        SParameterCase{"SendDVDStructure", "bf 000000000000 04 0002 00 00  aabb", {{Data, 16, "aabb"}}, 6}),
    [](const ::testing::TestParamInfo<SParameterCase>& info) { return info.param.pszName; });

// Cut after any byte, a payload decodes as far as it goes as its whole
// does, and no field reaches past the cut.
TEST(ATAPICuts, EveryPrefixAgreesWithTheWhole)
{
    const char* aPayloads[] = {
        "23 000000000000 0014 00  000000 10 00001000 02 000200  00002000 00 000800  00003000 40 000800",
        "46 02 0000 000000 0020 00  00000008 0000 0010 0000030800100000",
        "ac 11 00000010 0000 0004 00 00  00000014 00000000 11111111 22222222 33333333 44444444",
        "42 02 40 01 00 00 00 0010 00  00 11 000c 01 14 01 01 00000200 00000096",
        "52 01 00000001 00 0024 00  0022 01 01 00 04 01 80 00000000 00000100 00001000 00000010",
        "ad 00 00000000 00 00 0804 00 00  0088 0000 01 0f 01 10 00 030000 00 07ffff 00 000000 00 ee",
        "04 11 00 0000 00  00 8a 0008  00 01 0002 abcd  00001000 00 000800",
        "b9 00 00 000200 003000 f8 00 00",
        "12 00 00 00 24 00  05 80 00 32 1f 00 00 00 56 4d 77 61 72 65",
    };
    for (const char* pszHex : aPayloads) {
        SCOPED_TRACE(pszHex);
        ExpectCutsAgree<CATAPIPacket>(pszHex);
    }
}

// ------------------------------------------------------------- tables

// Texts that keep their original spelling, blanks and line feeds.
TEST(ATAPICatalogue, TextsStandAsWritten)
{
    CATAPISpec* pSpec = CATAPISpec::GetInstance();
    const CProtocolSpec* pBase = pSpec;
    struct SText {
        unsigned short nId;
        const char* pszName;
        const char* pszAbbr;
        const char* pszDesc;  // null: not checked
    };
    const SText aTexts[] = {
        {OpCode, "Opration Code", "Op Code", "Op Code"},
        {Control, "Control Byte", "Ctrl Byte", "Contorl Byte"},
        {ListHeaderReserved, "Format List Header_Reserved ", "Reserved ", nullptr},
        {CopyrightProtectionType, "DVD Copyright Information-CopyRight Protection System Type ",
         "CopyRight Protection System Type ", nullptr},
        {CapacityListLength, "Capacity List Header-Capacity List Length ", "Capacity List Length ", nullptr},
        {TOCTrackNumber, "TOC Track Descriptor-Track Number", "Logical Block Address", nullptr},
        {TOCLogicalBlockAddress, "TOC Track Descriptor-Logical Block Address", "First Complete session number(Hex)",
         nullptr},
        {CDTextDataLength, "TOC/PMA/ATIP Response Data- CD_TEXT Data Length", "CD-TEXT Data Length", nullptr},
        {MinimumRate, "Layer Descriptor-Minimume Rate", "Minimume Rate", nullptr},
        {PersistentPrevent, "Persistant prevent", "Persistant prevent", nullptr},
        {ParameterReserved, "reserved", "reserved", nullptr},
        {UserResetsAvailable, "RPC State-#of User Controlled Resets Available",
         "#of User Controlled Resets Available", nullptr},
    };
    for (const SText& t : aTexts) {
        const SSpecFieldAttr* pAttr = pBase->GetDefaultFieldAttr(t.nId);
        ASSERT_NE(pAttr, nullptr) << t.nId;
        EXPECT_EQ(pAttr->m_strName, t.pszName);
        EXPECT_EQ(pAttr->m_strAbbr, t.pszAbbr);
        if (t.pszDesc) {
            EXPECT_EQ(pAttr->m_strDesc, t.pszDesc);
        }
    }

    struct SOption {
        unsigned short nId;
        std::uint64_t nValue;
        std::uint8_t nWidth;
        const char* pszName;
        const char* pszAbbr;
    };
    const SOption aOptions[] = {
        {OpCode, 0x42, 8, "Resd Sub Channel", "Resd Sub_channel"},
        {OpCode, 0x03, 8, "Request send", "Request Send"},
        {OpCode, 0x58, 8, "Repair track", "Repair Track"},
        {OpCode, 0x2F, 8, "Verify", "Verify"},
        {OpCode, 0x5F, 8, "Unknown", "Unknown"},
        {HeaderCodes, 0, 2, "no header information shall br returned", "none"},
        {SubChannelSelection, 1, 3, "RAW P-W Sub-channel data will be Transfered", "RAW"},
        {SubChannelSelection, 4, 3, "R-W data is transferred", "P-W"},
        {StructureFormat, 0, 8, "Returns information in the DCD Lead-in area.\n DVD-R returns the last Lead-in.",
         "Phisical Data Returns"},
        {StructureFormat, 8, 8, "Returns  the DDS information on DVD-RAM Media.", "Returned Data: DDS"},
        {StructureFormat, 0x0D, 8, "Returns RMD sectors that are recorded in RMA.", "Returned Data: RMD "},
        {StructureFormat, 0x40, 8, "Reserved", "Reserved"},
        {ChangerState, 3, 2, "Initializating", "Initializating"},
        {CGMS, 0, 2, "", "Copying is permitted."},
        {SubChannelParameterList, 0x05, 8, "Reserved", "Reserved"},
        {SubChannelParameterList, 0xF3, 8, "Vendor Specific", "Vendor Specific"},
        {FormatType, 0x11, 6, "Fixed Packet Size in sectors", "Fixed Packet Size in sectors"},
        {DescriptorType, 3, 2, "No Media Present. The reported value is for the maximum capacity of a media that "
                               "the Logical Unit is capable of reading.", "No Media Present"},
        {DataMode, 0x7, 4, "Reserved", "Reserved"},
    };
    for (const SOption& o : aOptions) {
        const CAdvAnlzData value(o.nValue, o.nWidth);
        EXPECT_EQ(pSpec->GetFieldOptionName(o.nId, value), o.pszName) << o.nId << " " << o.nValue;
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(o.nId, value), o.pszAbbr) << o.nId << " " << o.nValue;
    }
    // The SCSI decoder's lists come first and stay reachable.
    EXPECT_EQ(pSpec->GetFieldOptionName(22000, CAdvAnlzData(0x12, 8)), "INQUIRY");
    EXPECT_EQ(pSpec->GetFormatCount(), 29);
}

TEST(ATAPICatalogue, IdsAndLengthBounds)
{
    CATAPISpec* pSpec = CATAPISpec::GetInstance();
    const CProtocolSpec* pBase = pSpec;
    ASSERT_EQ(pSpec->GetNumberOfLayerFields(), 283);
    const std::vector<unsigned short> aUnbounded = {MediaSpecific, DiscKeyData, BCAInformation,
                                                    ManufacturingInformation, DDSInformation, RMD,
                                                    RecordingManagementRMD, ControlBlockData, CDTextDescriptors};
    for (int i = 0; i < 283; ++i) {
        const unsigned short nId = pSpec->GetLayerFieldId(i);
        ASSERT_EQ(nId, 26500 + i);
        const SSpecFieldAttr* pAttr = pBase->GetDefaultFieldAttr(nId);
        ASSERT_NE(pAttr, nullptr);
        EXPECT_EQ(pAttr->m_nId, nId);
        EXPECT_EQ(pSpec->GetLayerFieldName(nId), pAttr->m_strName);
        const bool bUnbounded = std::find(aUnbounded.begin(), aUnbounded.end(), nId) != aUnbounded.end();
        EXPECT_EQ(pAttr->m_dwMinLength, bUnbounded ? 0u : pAttr->m_dwLength) << nId;
        EXPECT_EQ(pAttr->m_dwMaxLength, bUnbounded ? 65535u : pAttr->m_dwLength) << nId;
    }
    // SCSI ids are not this decoder's.
    EXPECT_EQ(pBase->GetDefaultFieldAttr(22000), nullptr);
    EXPECT_EQ(pBase->GetDefaultFieldAttr(26499), nullptr);
    EXPECT_EQ(pBase->GetDefaultFieldAttr(26783), nullptr);
}

// ------------------------------------------------------------- neighbours

// The ATAPI and SCSI decoders, used in turns in one process, give what each
// gives alone; the packets point at the records of their own decoder.
TEST(ATAPIAndSCSI, NoStateCrossesBetweenDecoders)
{
    const std::string strInquiry = "12 00 00 00 24 00  05 80 00 32 1f 00 00 00 56 4d 77 61 72 65";
    CSCSIProtocolPacket before(Hex(strInquiry));
    CATAPIPacket derived(Hex(strInquiry));
    CATAPIPacket own(Hex("43 02 00 00 00 00 00 000c 00  000a 01 01 00 14 01 00 00000200"));
    CSCSIProtocolPacket after(Hex(strInquiry));
    ExpectSameDecode(before, after);
    ExpectSameDecode(before, derived);
    EXPECT_EQ(before.GetSpec(), CSCSIProtocolSpec::GetInstance());
    EXPECT_EQ(derived.GetSpec(), CATAPISpec::GetInstance());
    EXPECT_NE(before.GetFieldAttr(1), derived.GetFieldAttr(1));
    EXPECT_EQ(before.GetFieldAttr(1), after.GetFieldAttr(1));
    // A SCSI decode does not learn ATAPI codes.
    CSCSIProtocolPacket toc(Hex("43 02 00 00 00 00 00 000c 00"));
    EXPECT_EQ(toc.m_strRequestName, "Unknown");
}

TEST(ATAPIPacket, CopyIsEmptyAndLengthComesFromTheDecoder)
{
    CATAPIPacket packet(Hex("25 00 00000000 0000 00 00  0004f926 00000800"));
    CATAPIPacket copy(packet);
    EXPECT_EQ(copy.GetFieldCount(), 0);
    EXPECT_EQ(copy.GetSpec(), packet.GetSpec());
    copy = packet;
    EXPECT_EQ(FieldsOf(copy), FieldsOf(packet));
    EXPECT_EQ(packet.GetCommandLength(0xBE), 12);
    EXPECT_EQ(packet.GetCommandLength(0xC0), 0);
}

}  // namespace
