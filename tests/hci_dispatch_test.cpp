// The HCI decoder's dispatch: packet kinds, command and event code checks,
// ACL and SCO data packets, the entries, the packet class and the catalogue.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "hci/HCISpec.h"
#include "platform/Stream.h"
#include "registry/DecoderRegistry.h"
#include "tests/TestUtil.h"

namespace {

using Layout = std::vector<std::pair<unsigned short, std::uint32_t>>;

// Field ids and lengths in bits, in packet order.
Layout LayoutOf(const CProtocolPacket& packet)
{
    Layout a;
    for (const SFieldView& f : FieldsOf(packet))
        a.emplace_back(f.nId, f.nBits);
    return a;
}

CHCISpec& Spec()
{
    return *CHCISpec::GetInstance();
}

struct SDecodeCase {
    const char* pszWhat;
    EHCIPacketKind eKind;
    const char* pszHex;
    const char* pszName;
    Layout layout;
    int nOpCodeOCF;
};

void ExpectDecodes(const SDecodeCase& c)
{
    SCOPED_TRACE(c.pszWhat);
    CHCIPacket packet;
    EXPECT_EQ(packet.RestructBy(Hex(c.pszHex), c.eKind), 1);
    EXPECT_EQ(LayoutOf(packet), c.layout);
    EXPECT_STREQ(packet.GetRequestName().GetString(), c.pszName);
    EXPECT_EQ(packet.GetOpCodeOCF(), c.nOpCodeOCF);
    EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
    EXPECT_EQ(packet.m_nResponseFields, 0);
    EXPECT_EQ(packet.m_bHasResponse, 0);
}

// ------------------------------------------------------------------ commands

TEST(HCIDispatch, CommandsThatTheOpcodeCheckFinishes)
{
    const SDecodeCase aCases[] = {
        // OCF 8 is no link control command; the OGF bits and the rest go to UnExpected.
        {"OGF 1 OCF 8 with parameters", HCICommandPacketType, "08 04 03 01 02 03", "UnKnown",
         {{27001, 10}, {27267, 38}}, 27001},
        {"OGF 1 OCF 8, opcode only", HCICommandPacketType, "08 04", "UnKnown", {{27001, 10}, {27267, 6}}, 27001},
        {"OGF 0", HCICommandPacketType, "01 00 02 AA BB", "UnKnown",
         {{27001, 10}, {27002, 6}, {27267, 24}}, 27001},
        {"OGF 7", HCICommandPacketType, "01 1C 00", "UnKnown", {{27001, 10}, {27002, 6}, {27267, 8}}, 27001},
        {"OGF 62", HCICommandPacketType, "01 F8 00", "UnKnown", {{27001, 10}, {27002, 6}, {27267, 8}}, 27001},
        // Nothing left behind the OGF: the OCF id is never set.
        {"OGF 0, opcode only", HCICommandPacketType, "01 00", "UnKnown", {{27001, 10}, {27002, 6}}, 0},
        {"one byte", HCICommandPacketType, "05", "UnKnown", {{27001, 8}}, 0},
        {"vendor command", HCICommandPacketType, "23 FD 02 AA BB", "Vendor Command",
         {{27000, 10}, {27002, 6}, {27268, 24}}, 27000},
        {"vendor command, opcode only", HCICommandPacketType, "23 FD", "Vendor Command",
         {{27000, 10}, {27002, 6}}, 0},
        {"empty command", HCICommandPacketType, "", "", {}, 0},
    };
    for (const SDecodeCase& c : aCases)
        ExpectDecodes(c);

    // OCF 0 is unknown in every group, and so are the gaps of each group. The
    // OCF shows in the link control field whatever the group.
    for (const char* pszHex : {"00 04 00", "00 08 00", "02 08 00", "00 0C 00", "30 0C 00", "00 10 00", "02 10 00",
                               "00 14 00", "04 14 00", "00 18 00", "04 18 00"})
        ExpectDecodes({pszHex, HCICommandPacketType, pszHex, "UnKnown", {{27001, 10}, {27267, 14}}, 27001});
    CHCIPacket packet(Hex("02 08 00"), HCICommandPacketType);
    EXPECT_EQ(FieldsOf(packet), (std::vector<SFieldView>{{27001, 10, "0200"}, {27267, 14, "0200"}}));
}

// A known command goes to its group's reader, which starts with the group's
// OCF and OGF fields and Total_Length; the packet keeps the OCF field's id.
TEST(HCIDispatch, KnownCommandsGoToTheirGroup)
{
    struct SCase {
        const char* pszHex;
        unsigned short nOCFId;
    };
    const SCase aCases[] = {
        {"01 04 05 33 8B 9E 08 00", 27001},  // HCI_Inquiry
        {"04 08 02 01 00", 27003},           // HCI_Exit_Sniff_Mode
        {"03 0C 00", 27005},                 // Reset
        {"01 10 00", 27007},                 // HCI_Read_Local_Version_Information
        {"05 14 02 01 00", 27009},           // HCI_Read_RSSI
        {"01 18 00", 27011},                 // HCI_Read_Loopback_Mode
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszHex);
        CHCIPacket packet(Hex(c.pszHex), HCICommandPacketType);
        EXPECT_EQ(packet.GetOpCodeOCF(), c.nOCFId);
        const std::vector<unsigned short> aIds = IdsOf(packet);
        ASSERT_GE(aIds.size(), 3u);
        EXPECT_EQ(aIds[0], c.nOCFId);
        EXPECT_EQ(aIds[1], c.nOCFId + 1);
        EXPECT_EQ(aIds[2], 27013);
    }
}

TEST(HCIDispatch, InformationCommandIsNamedByTheOpcodeCheck)
{
    const std::pair<const char*, const char*> aCases[] = {
        {"01 10", "HCI_Read_Local_Version_Information"}, {"03 10", "HCI_Read_Local_Supported_Features"},
        {"05 10", "HCI_Read_Buffer_Size"},               {"07 10", "HCI_Read_Country_Code"},
        {"09 10", "HCI_Read_BD_Address"},
    };
    for (const auto& c : aCases) {
        // Cut behind the opcode: the group reader stops before Total_Length.
        CHCIPacket packet(Hex(c.first), HCICommandPacketType);
        EXPECT_STREQ(packet.GetRequestName().GetString(), c.second);
    }
}

// -------------------------------------------------------------------- events

TEST(HCIDispatch, EventsThatTheEventCodeCheckFinishes)
{
    const SDecodeCase aCases[] = {
        {"vendor event", HCIEventPacketType, "FF 02 AA BB CC", "Vendor Event",
         {{27090, 8}, {27091, 8}, {27268, 16}, {27267, 8}}, 0},
        {"vendor event, length 0", HCIEventPacketType, "FF 00 AA BB CC", "Vendor Event",
         {{27090, 8}, {27091, 8}, {27268, 24}}, 0},
        {"vendor event, length beyond the data", HCIEventPacketType, "FF 09 AA BB", "Vendor Event",
         {{27090, 8}, {27091, 8}, {27268, 16}}, 0},
        {"vendor event, code only", HCIEventPacketType, "FF", "Vendor Event", {{27090, 8}}, 0},
        // No Parameter_Total_Length: the logo testing data starts behind the code.
        {"logo testing", HCIEventPacketType, "FE 03 01 02", "Bluetooth Logo Testing", {{27090, 8}, {27269, 24}}, 0},
        {"code 0x00", HCIEventPacketType, "00 01 02", "UnKnown", {{27090, 8}, {27267, 16}}, 0},
        {"code 0x21", HCIEventPacketType, "21 01 02", "UnKnown", {{27090, 8}, {27267, 16}}, 0},
        {"code 0xFD", HCIEventPacketType, "FD 00", "UnKnown", {{27090, 8}, {27267, 8}}, 0},
        {"code 0x21 alone", HCIEventPacketType, "21", "UnKnown", {{27090, 8}}, 0},
        {"known event cut behind the code", HCIEventPacketType, "05", "", {{27090, 8}}, 0},
        {"empty event", HCIEventPacketType, "", "", {}, 0},
    };
    for (const SDecodeCase& c : aCases)
        ExpectDecodes(c);
}

TEST(HCIDispatch, KnownEventsReadTheHeaderAndTakeTheirNames)
{
    // Command Complete and Command Status are cut before their opcode, which
    // would rename them.
    const std::pair<const char*, const char*> aCases[] = {
        {"01 01 00", "InquiryCompleteEvent"},
        {"05 04 00 01 00 13", "DisconnectionCompleteEvent"},
        {"0E 04 01", "CommandCompleteEvent"},
        {"0F 04 00", "Command Status Event"},
        {"10 01 07", "HardwareErrorEvent"},
        {"20 07 01 02 03 04 05 06 01", "PageScanRepetitionModeChangeEvent"},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.first);
        CHCIPacket packet(Hex(c.first), HCIEventPacketType);
        const std::vector<unsigned short> aIds = IdsOf(packet);
        ASSERT_GE(aIds.size(), 3u);
        EXPECT_EQ(aIds[0], 27090);
        EXPECT_EQ(aIds[1], 27091);
        EXPECT_STREQ(packet.GetRequestName().GetString(), c.second);
    }
}

// -------------------------------------------------------------- data packets

TEST(HCIDispatch, DataPackets)
{
    const SDecodeCase aCases[] = {
        {"ACL to host", HCIACLHostControllerToHostDataPacketType, "23 61 03 00 AA BB CC DD EE",
         "HCI ACL Data Packet", {{27270, 12}, {27271, 2}, {27273, 2}, {27274, 16}, {27275, 24}, {27267, 16}}, 0},
        {"ACL length 0 takes the rest", HCIACLHostToHostControllerDataPacketType, "23 21 00 00 AA BB CC DD EE",
         "HCI ACL Data Packet", {{27270, 12}, {27271, 2}, {27272, 2}, {27274, 16}, {27275, 40}}, 0},
        {"ACL exact length", HCIACLHostControllerToHostDataPacketType, "23 21 02 00 AA BB", "HCI ACL Data Packet",
         {{27270, 12}, {27271, 2}, {27273, 2}, {27274, 16}, {27275, 16}}, 0},
        {"ACL handle 0x0F00 is reserved", HCIACLHostToHostControllerDataPacketType, "00 0F 03 00 AA",
         "HCI ACL Data Packet", {{27270, 12}, {27267, 28}}, 0},
        {"ACL handle 0x0EFF is not", HCIACLHostToHostControllerDataPacketType, "FF 0E 01 00 AA",
         "HCI ACL Data Packet", {{27270, 12}, {27271, 2}, {27272, 2}, {27274, 16}, {27275, 8}}, 0},
        {"ACL cut in the handle", HCIACLHostToHostControllerDataPacketType, "23", "HCI ACL Data Packet",
         {{27270, 8}}, 0},
        {"ACL cut behind the length", HCIACLHostToHostControllerDataPacketType, "23 21 05 00",
         "HCI ACL Data Packet", {{27270, 12}, {27271, 2}, {27272, 2}, {27274, 16}}, 0},
        {"empty ACL", HCIACLHostToHostControllerDataPacketType, "", "", {}, 0},
        // Handle 0x042, reserved bits 0, length 2.
        {"SCO", HCISCODataPacketType, "42 00 02 11 22 33", "HCI SCO Data Packet",
         {{27276, 12}, {27277, 4}, {27278, 8}, {27279, 16}, {27267, 8}}, 0},
        {"SCO length 0 takes the rest", HCISCODataPacketType, "42 00 00 11 22 33", "HCI SCO Data Packet",
         {{27276, 12}, {27277, 4}, {27278, 8}, {27279, 24}}, 0},
        {"SCO handle 0x0FFF is reserved", HCISCODataPacketType, "FF 0F 02 11", "HCI SCO Data Packet",
         {{27276, 12}, {27267, 20}}, 0},
    };
    for (const SDecodeCase& c : aCases)
        ExpectDecodes(c);
}

// Handle 0x123, boundary flag 2, broadcast flag 1: 0x6123, from the low bit
// of the first byte up.
TEST(HCIDispatch, ACLHeaderBitsRunFromTheLowBitOfTheFirstByte)
{
    CHCIPacket packet(Hex("23 61 03 00 AA BB CC DD EE"), HCIACLHostToHostControllerDataPacketType);
    const std::vector<SFieldView> aExpected = {
        {27270, 12, "2301"}, {27271, 2, "02"},       {27272, 2, "01"},
        {27274, 16, "0300"}, {27275, 24, "aabbcc"}, {27267, 16, "ddee"},
    };
    EXPECT_EQ(FieldsOf(packet), aExpected);
}

// Option values take the list's width, so the vendor row covers every OCF.
TEST(HCIDispatch, HeaderOptionNames)
{
    struct SCase {
        unsigned short nId;
        std::uint8_t nWidth;
        std::uint32_t nValue;
        const char* pszName;
        const char* pszAbbr;
    };
    const SCase aCases[] = {
        {27000, 10, 0x000, "Vendor Command", "Vendor Command"},
        {27000, 10, 0x3FF, "Vendor Command", "Vendor Command"},
        {27090, 8, 0x0C, "ReadRemoteVersionInformationCompleteEvent", "Read Remote Version Information Complete Event"},
        {27090, 8, 0x0F, "CommandStatusEvent", "Command Status Event"},
        {27090, 8, 0x00, "UnKnown", "UnKnown"},
        {27090, 8, 0xFD, "UnKnown", "UnKnown"},
        {27090, 8, 0xFE, "Bluetooth Logo Testing", "Bluetooth Logo Testing"},
        {27090, 8, 0xFF, "Vendor Event", "Vendor Event"},
        {27271, 2, 2, "FirstPacketOfHigherLayerMessage", "FirstPacketOfHigherLayerMessage"},
        {27271, 2, 3, "Reserved", "Reserved"},
        {27272, 2, 2, "PiconetBroadcast", "PiconetBroadcast"},
        {27273, 2, 2, "PacketReceivedAsSlaveInParkMode\t", "PacketReceivedAsSlaveInParkMode\t"},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(testing::Message() << c.nId << "/" << c.nValue);
        const CAdvAnlzData value(c.nValue, c.nWidth);
        EXPECT_STREQ(Spec().GetFieldOptionName(c.nId, value).GetString(), c.pszName);
        EXPECT_STREQ(Spec().GetFieldOptionAbbr(c.nId, value).GetString(), c.pszAbbr);
    }
}

// ------------------------------------------------------------------- entries

// A kind above 4 reads nothing, and the earlier decode is gone.
TEST(HCIDispatch, KindsOutsideTheEnumerationReadNothing)
{
    for (int nKind : {5, 6, -1, 0x7FFFFFFF}) {
        CHCIPacket packet(Hex("03 0C 00"), HCICommandPacketType);
        ASSERT_GT(packet.GetFieldCount(), 0);
        EXPECT_EQ(packet.RestructBy(Hex("03 0C 00"), static_cast<EHCIPacketKind>(nKind)), 1);
        EXPECT_EQ(packet.GetFieldCount(), 0) << nKind;
        EXPECT_STREQ(packet.GetRequestName().GetString(), "") << nKind;
        EXPECT_EQ(packet.GetOpCodeOCF(), 0) << nKind;
        EXPECT_EQ(packet.m_nRequestFields, 0) << nKind;
    }
}

TEST(HCIDispatch, ThreeArgumentEntryDecodesAsCommandAndReturnsZero)
{
    CHCIPacket packet;
    EXPECT_EQ(packet.RestructBy(Hex("23 FD 02 AA BB"), HCICommandPacketType), 1);
    ASSERT_EQ(packet.GetOpCodeOCF(), 27000);

    // The plain RestructBy reaches the three-argument entry; the packet's OCF
    // id is not refreshed by it.
    CProtocolPacket& base = packet;
    EXPECT_EQ(base.RestructBy(Hex("08 04 01")), 0);
    EXPECT_EQ(LayoutOf(packet), (Layout{{27001, 10}, {27267, 14}}));
    EXPECT_STREQ(packet.GetRequestName().GetString(), "UnKnown");
    EXPECT_EQ(packet.m_nRequestFields, 2);
    EXPECT_EQ(packet.GetOpCodeOCF(), 27000);

    CHCIPacket other;
    EXPECT_EQ(Spec().InterpretPacketData(Hex("23 FD 00 00"), other, 0), 0);
    EXPECT_EQ(IdsOf(other), (std::vector<unsigned short>{27000, 27002, 27268}));
}

TEST(HCIDispatch, AssignmentCopiesFieldsButKeepsTheTargetsOCFId)
{
    const CHCIPacket source(Hex("00 04 00"), HCICommandPacketType);
    ASSERT_EQ(source.GetOpCodeOCF(), 27001);
    CHCIPacket target(Hex("23 FD 02 AA BB"), HCICommandPacketType);
    ASSERT_EQ(target.GetOpCodeOCF(), 27000);

    target = source;
    EXPECT_EQ(FieldsOf(target), FieldsOf(source));
    EXPECT_STREQ(target.GetRequestName().GetString(), "UnKnown");
    EXPECT_EQ(target.m_nRequestFields, source.m_nRequestFields);
    EXPECT_EQ(target.GetOpCodeOCF(), 27000);

    const CHCIPacket copy(source);
    EXPECT_EQ(copy.GetFieldCount(), 0);
    EXPECT_EQ(copy.GetOpCodeOCF(), 0);
    EXPECT_EQ(copy.GetSpec(), CHCISpec::GetInstance());
}

TEST(HCIDispatch, SaveAndLoadKeepTheOCFId)
{
    CHCIPacket source(Hex("30 0C 00 01"), HCICommandPacketType);
    CMemoryStream stream;
    ASSERT_EQ(source.Save(&stream, 0), S_OK);
    stream.Rewind();
    CHCIPacket loaded;
    ASSERT_EQ(loaded.Load(&stream), S_OK);
    EXPECT_EQ(FieldsOf(loaded), FieldsOf(source));
    EXPECT_EQ(loaded.GetOpCodeOCF(), 27001);
}

TEST(HCIDispatch, InterningKeepsRecordsApartByDescription)
{
    const SSpecFieldAttr a(27019, "BD_ADDR", "BD_ADDR", "one description", 24, 48);
    const SSpecFieldAttr b(27019, "BD_ADDR", "BD_ADDR", "another description", 24, 48);
    const SSpecFieldAttr c(27019, "other name", "other abbr", "one description", 24, 48);
    const SSpecFieldAttr* pA = Spec().GetFieldReference(a);
    const SSpecFieldAttr* pB = Spec().GetFieldReference(b);
    EXPECT_NE(pA, pB);
    EXPECT_STREQ(pB->m_strDesc.GetString(), "another description");
    EXPECT_EQ(Spec().GetFieldReference(a), pA);
    EXPECT_EQ(Spec().GetFieldReference(b), pB);
    // Only the description is compared besides the numbers.
    EXPECT_EQ(Spec().GetFieldReference(c), pA);
}

TEST(HCIDispatch, RegistryEntryDecodesByKindAndShowsTheOCFId)
{
    const SDecoderEntry* pEntry = FindDecoder("hci");
    ASSERT_NE(pEntry, nullptr);
    EXPECT_EQ(pEntry, FindDecoder("CHCISpec"));
    EXPECT_EQ(pEntry->pfnGetSpec(), CHCISpec::GetInstance());

    SDecodeOptions options;
    options.nHCIKind = HCIACLHostControllerToHostDataPacketType;
    const std::unique_ptr<CProtocolPacket> pPacket = pEntry->pfnNewPacket(options);
    EXPECT_EQ(pEntry->pfnDecode(*pPacket, Hex("23 61 00 00 AA"), options), 1);
    EXPECT_EQ(IdsOf(*pPacket), (std::vector<unsigned short>{27270, 27271, 27273, 27274, 27275}));
    ASSERT_NE(pEntry->pfnExtras, nullptr);
    const std::vector<SPacketExtra> aNone = pEntry->pfnExtras(*pPacket);
    ASSERT_EQ(aNone.size(), 1u);
    EXPECT_EQ(aNone[0].strKey, "opcode_ocf");
    EXPECT_EQ(aNone[0].nNumber, 0);

    options.nHCIKind = HCICommandPacketType;
    EXPECT_EQ(pEntry->pfnDecode(*pPacket, Hex("00 0C 00"), options), 1);
    const std::vector<SPacketExtra> aLink = pEntry->pfnExtras(*pPacket);
    ASSERT_EQ(aLink.size(), 1u);
    EXPECT_EQ(aLink[0].nNumber, 27001);
}

// ----------------------------------------------------------------- catalogue

TEST(HCIDispatch, CatalogueCoversEveryIdInOrder)
{
    CHCISpec& decoder = Spec();
    ASSERT_EQ(decoder.GetNumberOfLayerFields(), 280);
    for (int i = 0; i < 280; ++i) {
        const unsigned short nId = static_cast<unsigned short>(27000 + i);
        EXPECT_EQ(decoder.GetLayerFieldId(i), nId);
        const SSpecFieldAttr* pAttr = decoder.GetDefaultFieldAttr(nId);
        ASSERT_NE(pAttr, nullptr) << nId;
        EXPECT_EQ(pAttr->m_nId, nId);
        EXPECT_EQ(decoder.GetLayerFieldName(nId), pAttr->m_strName) << nId;
        EXPECT_FALSE(pAttr->m_strName.IsEmpty()) << nId;
        EXPECT_FALSE(pAttr->m_strAbbr.IsEmpty()) << nId;
        EXPECT_FALSE(pAttr->m_strDesc.IsEmpty()) << nId;
    }
    EXPECT_EQ(decoder.GetDefaultFieldAttr(26999), nullptr);
    EXPECT_EQ(decoder.GetDefaultFieldAttr(27280), nullptr);
}

TEST(HCIDispatch, CatalogueSampleRows)
{
    struct SRow {
        unsigned short nId;
        const char* pszName;
        const char* pszAbbr;
        std::uint32_t nOffset, nLength, nMin, nMax;
    };
    const SRow aRows[] = {
        {27000, "OpCode-OCF", "OpCode-OCF", 0, 10, 10, 10},
        {27013, "Total_Length", "Total-Length", 16, 8, 8, 8},
        {27053, "Condition", "Condition", 24, 0, 0, 0},
        {27061, "Name", "Name", 24, 1984, 1984, 1984},
        {27090, "HCI Event", "HCI Event", 0, 8, 8, 8},
        {27091, "Parameter_Total_Length", "Total_Length", 8, 8, 8, 8},
        {27092, "Status", "Inquiry_Status", 8, 8, 8, 8},
        {27128, "Return_Parameters", "Return_Parameters", 8, 255, 255, 255},
        {27144, "Status", "ConnectionPacketTypeChanged_Status", 8, 8, 8, 8},
        {27145, "ACL Packet_Type", "ACL Packet_Type", 8, 16, 16, 16},
        {27160, "Status", "Status", 8, 8, 8, 8},
        {27256, "ContactCounter", "ReadFailedContactCounterFailedContactCounte", 8, 16, 16, 16},
        {27265, "Status", "EnableDeviceUnderTestModeStatus", 8, 8, 8, 8},
        {27267, "UnExpected", "UnExpected", 0, 65535, 65535, 65535},
        {27271, "Packet_Boundary_Flag_HostToHost", "Packet_Boundary_Flag_HostToHost", 0, 2, 2, 2},
        {27272, "Packet_Boundary_Flag_HostToController", "Packet_Boundary_Flag_HostToController", 0, 2, 2, 2},
        {27279, "SCO Data", "SCO Data", 0, 65535, 65535, 65535},
    };
    for (const SRow& r : aRows) {
        SCOPED_TRACE(r.nId);
        const SSpecFieldAttr* pAttr = Spec().GetDefaultFieldAttr(r.nId);
        ASSERT_NE(pAttr, nullptr);
        EXPECT_STREQ(pAttr->m_strName.GetString(), r.pszName);
        EXPECT_STREQ(pAttr->m_strAbbr.GetString(), r.pszAbbr);
        EXPECT_EQ(pAttr->m_dwOffset, r.nOffset);
        EXPECT_EQ(pAttr->m_dwLength, r.nLength);
        EXPECT_EQ(pAttr->m_dwMinLength, r.nMin);
        EXPECT_EQ(pAttr->m_dwMaxLength, r.nMax);
    }
    const std::pair<unsigned short, const char*> aDescriptions[] = {
        {27042, "Reserved for Future Use."},
        {27053, "The Condition parameter is not used."},
        {27267, "UnExpected Data Packet"},
        {27272, "The Broadcast flag Host To Host is located in bit 4 and bit 5,"},
        {27273, "The Broadcast flag To Controller is located in bit 4 and bit 5,"},
        {27182, "indicates if the Read Page Timeout was successful or not."},
    };
    for (const auto& d : aDescriptions)
        EXPECT_STREQ(Spec().GetDefaultFieldAttr(d.first)->m_strDesc.GetString(), d.second) << d.first;
}

// ---------------------------------------------------------------- robustness

// Payloads of every length up to 300 bytes, for every kind, with headers
// steered toward every command group and event code. Each walk consumes the
// payload from the front, so the fields laid end to end are the payload.
TEST(HCIDispatch, RandomPayloadsDecodeWhole)
{
    const std::uint8_t aOGFs[] = {0, 1, 2, 3, 4, 5, 6, 7, 0x3F};
    std::mt19937 rng(0x11C1);
    CHCIPacket packet;
    for (int nKind = 0; nKind <= 4; ++nKind) {
        for (std::uint32_t nLength = 0; nLength <= 300; ++nLength) {
            for (int nRound = 0; nRound < 6; ++nRound) {
                std::vector<std::uint8_t> a(nLength);
                for (std::uint8_t& b : a)
                    b = static_cast<std::uint8_t>(rng());
                if (nKind == HCICommandPacketType && nLength >= 2) {
                    a[0] = static_cast<std::uint8_t>(rng() % 64);
                    a[1] = static_cast<std::uint8_t>(aOGFs[rng() % sizeof aOGFs] << 2);
                } else if (nKind == HCIEventPacketType && nLength >= 1 && nRound < 4) {
                    a[0] = static_cast<std::uint8_t>(rng() % 0x22);
                }
                const CAdvAnlzData payload = CAdvAnlzData::FromBytes(a.data(), nLength * 8);
                ASSERT_EQ(packet.RestructBy(payload, static_cast<EHCIPacketKind>(nKind)), 1);

                CAdvAnlzData whole;
                packet.GetPacketData(whole);
                ASSERT_EQ(whole.GetLength(), payload.GetLength()) << "kind " << nKind << " length " << nLength;
                ASSERT_EQ(HexOf(whole), HexOf(payload)) << "kind " << nKind << " length " << nLength;
                ASSERT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
                const int nOCFId = packet.GetOpCodeOCF();
                ASSERT_TRUE(nOCFId == 0 || (nKind == 0 && nOCFId >= 27000 && nOCFId <= 27011) ||
                            (nKind == 4 && nOCFId == 27267))
                    << nOCFId;
            }
        }
    }
}

}  // namespace
