// Real Bluetooth traffic: every HCI packet of the captures beside the
// project, decoded with the HCI decoder by its own packet kind, with every
// bit in a field and every known event read by its parameters; and the
// values of a few real events, checked against their bytes.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "hci/HCISpec.h"
#include "tests/TestUtil.h"

namespace {

constexpr unsigned short kUnExpected = 27267;

struct SHCIRecord {
    std::uint64_t nNumber;  // the record's number in the file, from 1
    EHCIPacketKind eKind;
    std::vector<std::uint8_t> aBytes;  // the HCI packet without any transport byte
};

struct SHCICapture {
    std::vector<SHCIRecord> aPackets;
    std::size_t nOther = 0;  // records that hold no HCI packet
};

// The kind of an H4 packet (type 1 command, 2 ACL, 3 SCO, 4 event); ACL
// takes its direction from the capture. False for any other type.
bool KindOfH4(std::uint8_t nType, bool bReceived, EHCIPacketKind& eKind)
{
    switch (nType) {
    case 1: eKind = HCICommandPacketType; return true;
    case 2: eKind = bReceived ? HCIACLHostControllerToHostDataPacketType : HCIACLHostToHostControllerDataPacketType; return true;
    case 3: eKind = HCISCODataPacketType; return true;
    case 4: eKind = HCIEventPacketType; return true;
    default: return false;
    }
}

// The HCI packets of a capture, by its link type:
//   btsnoop 1001  the kind from the flags (bit 1 command or event, bit 0 received)
//   btsnoop 1002  an H4 type byte leads the packet; bit 0 of the flags is the direction
//   btsnoop 2001  Linux monitor records: the low half of the flags is the
//                 record's opcode (2 command, 3 event, 4/5 ACL sent/received,
//                 6/7 SCO); the other records (index, logging, management) are counted
//   pcap 201      a 4-byte big-endian direction (1 received), then the H4 type byte
SHCICapture ReadHCICapture(const std::string& strPath, std::string& strError)
{
    SHCICapture capture;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader)
        return capture;
    SCaptureRecord record;
    ECaptureStatus eStatus;
    while ((eStatus = pReader->Next(record)) == CaptureRecord) {
        const std::uint8_t* p = record.pData;
        std::size_t n = record.nData;
        EHCIPacketKind eKind = HCICommandPacketType;
        bool bHCI = false;
        switch (record.nLinkType) {
        case LinkTypeBtSnoopHCI:
            eKind = (record.nFlags & 2) ? ((record.nFlags & 1) ? HCIEventPacketType : HCICommandPacketType)
                                        : ((record.nFlags & 1) ? HCIACLHostControllerToHostDataPacketType
                                                               : HCIACLHostToHostControllerDataPacketType);
            bHCI = true;
            break;
        case LinkTypeBtSnoopH4:
            bHCI = n >= 1 && KindOfH4(p[0], record.nFlags & 1, eKind);
            p += 1;
            n -= bHCI ? 1 : 0;
            break;
        case LinkTypeBluetoothH4WithPhdr:
            bHCI = n >= 5 && KindOfH4(p[4], p[3] & 1, eKind);
            p += 5;
            n -= bHCI ? 5 : 0;
            break;
        case LinkTypeBtSnoopMonitor:
            switch (record.nFlags & 0xFFFF) {
            case 2: eKind = HCICommandPacketType; bHCI = true; break;
            case 3: eKind = HCIEventPacketType; bHCI = true; break;
            case 4: eKind = HCIACLHostToHostControllerDataPacketType; bHCI = true; break;
            case 5: eKind = HCIACLHostControllerToHostDataPacketType; bHCI = true; break;
            case 6:
            case 7: eKind = HCISCODataPacketType; bHCI = true; break;
            default: break;
            }
            break;
        default:
            strError = "link type " + std::to_string(record.nLinkType) + " holds no HCI packets";
            return capture;
        }
        if (bHCI)
            capture.aPackets.push_back({record.nNumber, eKind, std::vector<std::uint8_t>(p, p + n)});
        else
            ++capture.nOther;
    }
    if (eStatus == CaptureDamaged)
        strError = pReader->ErrorText();
    return capture;
}

CAdvAnlzData DataOf(const SHCIRecord& r)
{
    return CAdvAnlzData::FromBytes(r.aBytes.data(), static_cast<std::uint32_t>(r.aBytes.size() * 8));
}

std::string PathOf(const char* pszFile)
{
    return std::string(BUSDECODE_CAPTURES_DIR) + "/" + pszFile;
}

// ------------------------------------------------------------ whole files

struct SCapture {
    const char* pszName;
    const char* pszFile;
    std::array<std::size_t, 5> aKinds;  // packets per kind: command, ACL out, ACL in, SCO, event
    std::size_t nOther;                 // records that are no HCI packet
    std::vector<const char*> aCommands; // command names that stand in the capture
};

void PrintTo(const SCapture& c, std::ostream* os)
{
    *os << c.pszFile;
}

class HCICapture : public ::testing::TestWithParam<SCapture> {};

TEST_P(HCICapture, EveryPacketDecodesWholeAndEveryKnownEventByItsParameters)
{
    const SCapture& c = GetParam();
    const std::string strPath = PathOf(c.pszFile);
    if (!std::ifstream(strPath))
        GTEST_SKIP() << "capture not found: " << strPath;
    std::string strError;
    const SHCICapture capture = ReadHCICapture(strPath, strError);
    ASSERT_TRUE(strError.empty()) << strError;

    std::array<std::size_t, 5> aKinds{};
    std::map<std::string, std::size_t> mapCommandNames;
    // Per event code: events, and those whose every byte is in a parameter
    // field (none left over).
    std::map<unsigned, std::pair<std::size_t, std::size_t>> mapEvents;
    CHCIPacket packet;
    for (const SHCIRecord& raw : capture.aPackets) {
        SCOPED_TRACE(testing::Message() << "record " << raw.nNumber);
        ++aKinds[static_cast<std::size_t>(raw.eKind)];
        const CAdvAnlzData data = DataOf(raw);
        ASSERT_EQ(packet.RestructBy(data, raw.eKind), 1);

        // Every bit is in a field, unless a field hit its 65535-bit limit or
        // the packet its 255 fields.
        std::uint64_t nBits = 0;
        bool bCapped = packet.GetFieldCount() == CProtocolPacket::kMaxFields;
        for (unsigned char i = 1; i <= packet.GetFieldCount(); ++i) {
            nBits += packet.GetFieldValue(i)->GetLength();
            bCapped = bCapped || packet.GetFieldValue(i)->GetLength() == 65535;
        }
        if (!bCapped) {
            ASSERT_EQ(nBits, raw.aBytes.size() * 8) << "kind " << raw.eKind << ": " << HexOf(data);
        }
        EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
        EXPECT_EQ(packet.m_nResponseFields, 0);

        switch (raw.eKind) {
        case HCICommandPacketType:
            ASSERT_GE(raw.aBytes.size(), 3u);
            EXPECT_NE(packet.GetOpCodeOCF(), 0) << HexOf(data);
            ++mapCommandNames[packet.m_strRequestName.ToStdString()];
            break;
        case HCIACLHostToHostControllerDataPacketType:
        case HCIACLHostControllerToHostDataPacketType:
            EXPECT_EQ(packet.GetFieldId(1), CHCISpec::FieldACLHandle);
            EXPECT_EQ(packet.m_strRequestName, "HCI ACL Data Packet");
            break;
        case HCIEventPacketType: {
            ASSERT_GE(raw.aBytes.size(), 2u);
            EXPECT_EQ(packet.GetFieldId(1), CHCISpec::FieldEventCode);
            const unsigned nCode = raw.aBytes[0];
            std::pair<std::size_t, std::size_t>& counts = mapEvents[nCode];
            ++counts.first;
            const bool bLeftOver = packet.GetFieldId(packet.GetFieldCount()) == kUnExpected;
            counts.second += bLeftOver ? 0 : 1;
            // An event of HCI 1.1 is read by its parameters: they never
            // stand whole in UnExpected (a Command Complete of a newer
            // command is named "UnKnown" but still shows its opcode).
            if (nCode >= 0x01 && nCode <= 0x20 && raw.aBytes.size() > 2) {
                EXPECT_NE(packet.GetFieldId(3), kUnExpected) << HexOf(data);
            }
            break;
        }
        default:
            break;
        }
    }
    EXPECT_EQ(aKinds, c.aKinds);
    EXPECT_EQ(capture.nOther, c.nOther);
    for (const char* pszName : c.aCommands)
        EXPECT_GT(mapCommandNames[pszName], 0u) << pszName;

    std::cout << c.pszFile << ": event code, events, of them with no byte left over\n";
    for (const auto& e : mapEvents)
        std::cout << "  0x" << std::hex << e.first << std::dec << "  " << e.second.first << "  " << e.second.second
                  << (e.first >= 0x01 && e.first <= 0x20 ? "" : "  (no HCI 1.1 event)") << "\n";
}

INSTANTIATE_TEST_SUITE_P(
    Captures, HCICapture,
    ::testing::Values(
        SCapture{"MotoG", "a2dp/motog_btsnoop_hci.log", {93, 1678, 110, 0, 1793}, 0,
                 {"Reset", "HCI_Read_Local_Version_Information", "HCI_Read_BD_Address", "HCI_Read_Buffer_Size",
                  "Write_Scan_Enable"}},
        SCapture{"LG750", "a2dp/lg750.cap", {204, 5090, 135, 0, 2792}, 0,
                 {"Reset", "HCI_Read_Local_Version_Information", "HCI_Read_BD_Address", "HCI_Read_Buffer_Size",
                  "Write_Scan_Enable"}},
        SCapture{"Bluetooth2006", "bluetooth-2006/Bluetooth1.h4phdr.pcap", {28, 5, 6, 0, 74}, 0,
                 {"HCI_Inquiry", "HCI_Remote_Name_Request", "HCI_PIN_Code_Request_Reply",
                  "HCI_Link_Key_Request_Reply", "HCI_Accept_Connection_Request"}},
        SCapture{"L2Ping2006", "bluetooth-2006/l2ping.h4phdr.pcap", {5, 2, 2, 0, 12}, 0,
                 {"HCI_Inquiry", "HCI_Create_Connection", "HCI_Disconnect"}},
        SCapture{"AndroidVendor", "btsnoop-rs/btsnoop_hci_android.log", {105, 0, 0, 0, 117}, 0,
                 {"Reset", "HCI_Read_Local_Version_Information", "HCI_Read_BD_Address", "Vendor Command"}},
        SCapture{"LinuxMonitor", "btsnoop-rs/btsnoop_btmon.log", {55, 0, 0, 0, 56}, 443, {"Reset"}}),
    [](const ::testing::TestParamInfo<SCapture>& info) { return std::string(info.param.pszName); });

// ------------------------------------------------- real events by hand

struct SRealEvent {
    const char* pszWhat;
    const char* pszFile;
    std::uint64_t nRecord;
    const char* pszName;
    std::vector<SFieldView> aParams;  // behind the event header
    std::vector<std::pair<unsigned short, const char*>> aOptions;  // option names of fields by id
};

void PrintTo(const SRealEvent& e, std::ostream* os)
{
    *os << e.pszWhat;
}

// Values read off the bytes of the records: addresses stand least
// significant byte first (fa2e076d0e00 is 00:0E:6D:07:2E:FA).
const SRealEvent kRealEvents[] = {
    {"InquiryResult", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 3, "InquiryResultEvent",
     {{27093, 8, "01"}, {27094, 48, "fa2e076d0e00"}, {27095, 8, "01"}, {27096, 8, "00"}, {27097, 8, "00"},
      {27098, 24, "040242"}, {27099, 16, "dd42"}},
     {{27095, "R1"}, {27096, "P0"}, {27097, "MandatoryPageScanMode"}}},
    {"RemoteNameRequestPageTimeout", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 7, "RemoteNameRequestCompleteEvent",
     {{27106, 8, "04"}, {27094, 48, "fa2e076d0e00"}, {27107, 1984, std::string(496, '0')}},
     {{27106, "Error: Page Timeout"}}},
    {"PINCodeRequest", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 11, "PINCodeRequestEvent",
     {{27094, 48, "fa2e076d0e00"}}, {}},
    {"PINCodeReplyComplete", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 13,
     "HCI_PIN_Code_Request_Reply Command Complete Event",
     {{27126, 8, "01"}, {27001, 10, "0d00"}, {27002, 6, "01"}, {27153, 8, "00"}, {27151, 48, "fa2e076d0e00"}},
     {{27153, "succeeded"}, {27001, "HCI_PIN_Code_Request_Reply"}}},
    {"ConnectionCompleteAuthenticationFailure", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 14,
     "ConnectionCompleteEvent",
     {{27100, 8, "05"}, {27101, 16, "2900"}, {27094, 48, "fa2e076d0e00"}, {27102, 8, "01"}, {27103, 8, "00"}},
     {{27100, "Error: Authentication Failure"}, {27102, "ACLConnection_DataChannels"}, {27103, "EncryptionDisabled"}}},
    {"LinkKeyNotification", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 21, "LinkKeyNotificationEvent",
     {{27094, 48, "fa2e076d0e00"}, {27139, 128, "ec596f3306bba9e53d7b72de47c1404a"}, {27140, 8, "00"}},
     {{27140, "CombinationKey"}}},
    {"LinkKeyRequest", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 49, "LinkKeyRequestEvent",
     {{27094, 48, "fa2e076d0e00"}}, {}},
    // "NEC 616", then zeros to the 248 bytes of the name.
    {"RemoteNameRequestComplete", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 79, "RemoteNameRequestCompleteEvent",
     {{27106, 8, "00"}, {27094, 48, "fa2e076d0e00"}, {27107, 1984, "4e454320363136" + std::string(482, '0')}},
     {{27106, "Remote_Name_RequestCommandSuccessed"}}},
    {"CommandStatusOfOpcodeZero", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 36, "UnKnown Command Status Event",
     {{27129, 8, "00"}, {27126, 8, "01"}, {27001, 10, "0000"}, {27002, 6, "00"}}, {}},
    {"ReadBDADDRComplete", "a2dp/motog_btsnoop_hci.log", 12, "HCI_Read_BD_Address Command Complete Event",
     {{27126, 8, "01"}, {27007, 10, "0900"}, {27008, 6, "04"}, {27253, 8, "00"}, {27254, 48, "f52568b5be60"}},
     {{27007, "HCI_Read_BD_ADDR"}}},
    // HCI version 4 is newer than any this decoder names.
    {"ReadLocalVersionComplete", "a2dp/lg750.cap", 220, "HCI_Read_Local_Version_Information Command Complete Event",
     {{27126, 8, "01"}, {27007, 10, "0100"}, {27008, 6, "04"}, {27238, 8, "00"}, {27239, 8, "04"},
      {27240, 16, "7802"}, {27241, 8, "04"}, {27242, 16, "0f00"}, {27243, 16, "1742"}},
     {{27239, ""}}},
};

class HCIRealEvent : public ::testing::TestWithParam<SRealEvent> {};

TEST_P(HCIRealEvent, FieldsHoldTheValuesOfTheBytes)
{
    const SRealEvent& e = GetParam();
    const std::string strPath = PathOf(e.pszFile);
    if (!std::ifstream(strPath))
        GTEST_SKIP() << "capture not found: " << strPath;
    std::string strError;
    const SHCICapture capture = ReadHCICapture(strPath, strError);
    ASSERT_TRUE(strError.empty()) << strError;
    const SHCIRecord* pRecord = nullptr;
    for (const SHCIRecord& r : capture.aPackets)
        if (r.nNumber == e.nRecord)
            pRecord = &r;
    ASSERT_NE(pRecord, nullptr);
    ASSERT_EQ(pRecord->eKind, HCIEventPacketType);

    CHCIPacket packet(DataOf(*pRecord), HCIEventPacketType);
    std::vector<SFieldView> aFields = FieldsOf(packet);
    ASSERT_GE(aFields.size(), 2u);
    EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + 2, aFields.end()), e.aParams);
    EXPECT_STREQ(packet.GetRequestName().GetString(), e.pszName);
    for (const auto& option : e.aOptions) {
        const unsigned char nIndex = packet.GetFieldIndex(option.first);
        ASSERT_NE(nIndex, 0) << option.first;
        EXPECT_STREQ(packet.GetFieldPattern(nIndex, 5, DisplayDecimal, 0, 0, PacketSideWhole).GetString(),
                     option.second)
            << option.first;
    }
}

INSTANTIATE_TEST_SUITE_P(ByHand, HCIRealEvent, ::testing::ValuesIn(kRealEvents),
                         [](const ::testing::TestParamInfo<SRealEvent>& info) {
                             return std::string(info.param.pszWhat);
                         });

}  // namespace
