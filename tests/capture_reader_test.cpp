// Capture files record by record, USB headers and control transfers: the
// shared captures give the record and request counts their README states,
// and damaged files written here stop at the fault with a clear text.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"

namespace {

const std::string kCaptures = BUSDECODE_CAPTURES_DIR;

bool Exists(const std::string& strPath)
{
    return std::ifstream(strPath).good();
}

std::string TempPath(const std::string& strName)
{
    return ::testing::TempDir() + "capture_reader_" + std::to_string(::getpid()) + "_" + strName;
}

void Write(const std::string& strPath, const std::vector<std::uint8_t>& aBytes)
{
    std::ofstream out(strPath, std::ios::binary);
    out.write(reinterpret_cast<const char*>(aBytes.data()), static_cast<std::streamsize>(aBytes.size()));
}

struct SReadAll {
    std::uint64_t nRecords = 0;
    ECaptureStatus eLast = CaptureEnd;
    std::string strError;
    int nLinkType = 0;
};

SReadAll ReadAll(const std::string& strPath)
{
    SReadAll r;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader) {
        r.eLast = CaptureDamaged;
        r.strError = strError;
        return r;
    }
    r.nLinkType = pReader->LinkType();
    SCaptureRecord record;
    while ((r.eLast = pReader->Next(record)) == CaptureRecord)
        ++r.nRecords;
    r.strError = pReader->ErrorText();
    return r;
}

struct SCaptureCount {
    const char* pszName;
    const char* pszPath;
    std::uint64_t nRecords;
    int nLinkType;
};

void PrintTo(const SCaptureCount& c, std::ostream* os) { *os << c.pszName; }

class SharedCaptures : public ::testing::TestWithParam<SCaptureCount> {};

TEST_P(SharedCaptures, ReadToTheEndWithEveryRecord)
{
    const SCaptureCount& c = GetParam();
    const std::string strPath = kCaptures + "/" + c.pszPath;
    if (!Exists(strPath))
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    const SReadAll r = ReadAll(strPath);
    EXPECT_EQ(r.eLast, CaptureEnd) << r.strError;
    EXPECT_EQ(r.nRecords, c.nRecords);
    EXPECT_EQ(r.nLinkType, c.nLinkType);
}

// Record counts as the captures' README states them; usbmon text files count
// their lines.
INSTANTIATE_TEST_SUITE_P(
    Capture, SharedCaptures,
    ::testing::Values(SCaptureCount{"BtSnoopMotoG", "a2dp/motog_btsnoop_hci.log", 3674, LinkTypeBtSnoopH4},
                      SCaptureCount{"BtSnoopLG", "a2dp/lg750.cap", 8221, LinkTypeBtSnoopH4},
                      SCaptureCount{"BtSnoopMonitor", "btsnoop-rs/btsnoop_btmon.log", 554, LinkTypeBtSnoopMonitor},
                      SCaptureCount{"BtSnoopAndroid", "btsnoop-rs/btsnoop_hci_android.log", 222, LinkTypeBtSnoopH4},
                      SCaptureCount{"PcapH4Phdr", "bluetooth-2006/Bluetooth1.h4phdr.pcap", 113,
                                    LinkTypeBluetoothH4WithPhdr},
                      SCaptureCount{"PcapUsbPcap", "usbpcap-site/sample_2013_04_10.pcap", 555, LinkTypeUsbPcap},
                      SCaptureCount{"PcapNgUsbmon", "ctf-usb-capture/book-frames1-800.pcapng", 800,
                                    LinkTypeUsbLinuxMmapped},
                      SCaptureCount{"PcapPPPHDLC", "packetlife/PPP_negotiation.cap", 63, LinkTypePPPHDLC},
                      SCaptureCount{"PcapPPP", "packetlife/PPP_TCP_compression.cap", 43, LinkTypePPP},
                      SCaptureCount{"UsbmonText", "usbmon-text/motorokr-E6e.txt", 1142, LinkTypeUsbLinux},
                      // Lines with stray bytes inside data words keep the data before them.
                      SCaptureCount{"UsbmonTextStrayBytes", "usbmon-text/motorokr-modem.txt", 2082, LinkTypeUsbLinux},
                      SCaptureCount{"UsbmonTextTwoSessions", "usbmon-text/x2-android-mobile.txt", 5883,
                                    LinkTypeUsbLinux}),
    [](const ::testing::TestParamInfo<SCaptureCount>& info) { return std::string(info.param.pszName); });

// Control transfers by (bmRequestType, bRequest, wValue) of a capture.
std::map<std::uint32_t, int> ControlRequests(const std::string& strPath, std::uint64_t& nUsbRecords)
{
    std::map<std::uint32_t, int> counts;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    EXPECT_TRUE(pReader) << strError;
    if (!pReader)
        return counts;
    CUsbControlAssembler assembler;
    SCaptureRecord record;
    SUsbPacket packet;
    nUsbRecords = 0;
    while (pReader->Next(record) == CaptureRecord) {
        if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet))
            continue;
        ++nUsbRecords;
        if (assembler.Add(packet, record.nNumber, record.nTimeMicros)) {
            const SUsbControlTransfer& t = assembler.Transfer();
            ++counts[static_cast<std::uint32_t>(t.aSetup[0]) << 24 | static_cast<std::uint32_t>(t.aSetup[1]) << 16 |
                     static_cast<std::uint32_t>(t.aSetup[2] | t.aSetup[3] << 8)];
        }
    }
    EXPECT_LE(assembler.Open(), 2u);
    return counts;
}

constexpr std::uint32_t Request(std::uint8_t nType, std::uint8_t nRequest, std::uint16_t wValue)
{
    return static_cast<std::uint32_t>(nType) << 24 | static_cast<std::uint32_t>(nRequest) << 16 | wValue;
}

TEST(CaptureUsb, HubRequestsOfUsbPcapAndUsbmonText)
{
    const std::string strUsbPcap = kCaptures + "/usbpcap-site/sample_2013_04_10.pcap";
    const std::string strText = kCaptures + "/usbmon-text/motorokr-modem.txt";
    if (!Exists(strUsbPcap) || !Exists(strText))
        GTEST_SKIP() << "shared captures are absent";
    std::uint64_t nRecords = 0;
    std::map<std::uint32_t, int> counts = ControlRequests(strUsbPcap, nRecords);
    EXPECT_EQ(nRecords, 555u);
    EXPECT_EQ(counts[Request(0xA3, 0x00, 0)], 50);     // GET_STATUS of a port: 50 setup stages, all completed
    EXPECT_EQ(counts[Request(0x23, 0x03, 4)], 4);      // SET_FEATURE PORT_RESET
    EXPECT_EQ(counts[Request(0x23, 0x01, 0x14)], 4);   // CLEAR_FEATURE C_PORT_RESET

    counts = ControlRequests(strText, nRecords);
    EXPECT_EQ(counts[Request(0x21, 0x20, 0)], 3);  // SET_LINE_CODING
    EXPECT_EQ(counts[Request(0x21, 0x22, 0)] + counts[Request(0x21, 0x22, 1)] + counts[Request(0x21, 0x22, 3)] +
                  counts[Request(0x21, 0x22, 2)],
              6);  // SET_CONTROL_LINE_STATE
}

TEST(CaptureUsb, LineCodingDataRidesWithTheSetup)
{
    const std::string strText = kCaptures + "/usbmon-text/motorokr-modem.txt";
    if (!Exists(strText))
        GTEST_SKIP() << "shared capture " << strText << " is absent";
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strText, strError);
    ASSERT_TRUE(pReader) << strError;
    CUsbControlAssembler assembler;
    SCaptureRecord record;
    SUsbPacket packet;
    while (pReader->Next(record) == CaptureRecord) {
        if (ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet) &&
            assembler.Add(packet, record.nNumber, record.nTimeMicros) && assembler.Transfer().aSetup[1] == 0x20) {
            // SET_LINE_CODING: seven bytes of line coding sent to the device.
            EXPECT_EQ(assembler.Transfer().aData.size(), 7u);
            EXPECT_GT(assembler.Transfer().nCompleteFrame, assembler.Transfer().nSubmitFrame);
            return;
        }
    }
    FAIL() << "no SET_LINE_CODING found";
}

std::vector<std::uint8_t> BtSnoopHeader(std::uint32_t nDatalink)
{
    std::vector<std::uint8_t> a = {'b', 't', 's', 'n', 'o', 'o', 'p', 0, 0, 0, 0, 1};
    for (int i = 3; i >= 0; --i)
        a.push_back(static_cast<std::uint8_t>(nDatalink >> (8 * i)));
    return a;
}

void PutRecord(std::vector<std::uint8_t>& a, std::uint32_t nOriginal, std::uint32_t nIncluded,
               const std::vector<std::uint8_t>& aData)
{
    for (std::uint32_t v : {nOriginal, nIncluded, 1u, 0u, 0u, 0u})
        for (int i = 3; i >= 0; --i)
            a.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
    a.insert(a.end(), aData.begin(), aData.end());
}

struct SDamageCase {
    const char* pszName;
    std::vector<std::uint8_t> aFile;
    bool bOpens;
    std::uint64_t nRecords;   // whole records before the fault
    const char* pszError;     // a piece of the error text
};

void PrintTo(const SDamageCase& c, std::ostream* os) { *os << c.pszName; }

std::vector<std::uint8_t> TwoRecordsThen(std::vector<std::uint8_t> aTail)
{
    std::vector<std::uint8_t> a = BtSnoopHeader(1002);
    PutRecord(a, 4, 4, {1, 3, 0x0C, 0});
    PutRecord(a, 4, 4, {1, 3, 0x0C, 0});
    a.insert(a.end(), aTail.begin(), aTail.end());
    return a;
}

class DamagedCaptures : public ::testing::TestWithParam<SDamageCase> {};

TEST_P(DamagedCaptures, StopAtTheFaultNamingRecordAndOffset)
{
    const SDamageCase& c = GetParam();
    const std::string strPath = TempPath(c.pszName);
    Write(strPath, c.aFile);
    const SReadAll r = ReadAll(strPath);
    std::remove(strPath.c_str());
    EXPECT_EQ(r.eLast, CaptureDamaged);
    EXPECT_EQ(r.nRecords, c.nRecords);
    EXPECT_NE(r.strError.find(c.pszError), std::string::npos) << r.strError;
}

std::vector<std::uint8_t> CutRecord()
{
    std::vector<std::uint8_t> a;
    PutRecord(a, 10, 10, {1, 2, 3});
    return a;
}

std::vector<std::uint8_t> AbsurdRecord()
{
    std::vector<std::uint8_t> a;
    PutRecord(a, 0xFFFFFFFFu, 0xFFFFFFF0u, {});
    return a;
}

std::vector<std::uint8_t> TruncatedPcap()
{
    // Little-endian pcap, link type 9, one whole record, then a record cut
    // inside its data.
    std::vector<std::uint8_t> a = {0xD4, 0xC3, 0xB2, 0xA1, 2, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                   0xFF, 0xFF, 0, 0, 9, 0, 0, 0};
    const std::vector<std::uint8_t> aRecord = {0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 4, 0, 0, 0, 0xC0, 0x21, 1, 2};
    a.insert(a.end(), aRecord.begin(), aRecord.end());
    a.insert(a.end(), aRecord.begin(), aRecord.end() - 2);
    return a;
}

std::vector<std::uint8_t> Text(const std::string& s) { return std::vector<std::uint8_t>(s.begin(), s.end()); }

INSTANTIATE_TEST_SUITE_P(
    Capture, DamagedCaptures,
    ::testing::Values(
        SDamageCase{"BtSnoopCutInsideRecord", TwoRecordsThen(CutRecord()), true, 2, "record 3 at byte offset 72"},
        SDamageCase{"BtSnoopCutInsideHeader", TwoRecordsThen({0, 0, 0}), true, 2, "ends inside the record header"},
        SDamageCase{"BtSnoopAbsurdLength", TwoRecordsThen(AbsurdRecord()), true, 2, "larger than 262144"},
        SDamageCase{"PcapCutInsideRecord", TruncatedPcap(), true, 1, "record 2 at byte offset 44"},
        SDamageCase{"UsbmonTextBadLine",
                    Text("e8531100 0.314988 S Ci:1:001:0 s a3 00 0000 0003 0004 4 <\nhello world\n"), true, 1,
                    "record 2 at byte offset 58: not a usbmon text line"}),
    [](const ::testing::TestParamInfo<SDamageCase>& info) { return std::string(info.param.pszName); });

TEST(CaptureOpen, RefusesWhatIsNoCaptureWithOneClearText)
{
    struct SCase {
        std::string strPath;
        std::vector<std::uint8_t> aFile;
        const char* pszError;
    };
    const std::string strDir = ::testing::TempDir();
    const std::vector<SCase> aCases = {
        {TempPath("empty"), {}, "is empty"},
        {TempPath("noise"), Text("just some words\n"), "not a capture of a known format"},
        {TempPath("btsnoop-other-link"), BtSnoopHeader(7), "datalink 7"},
        {TempPath("pcap-cut-header"), {0xD4, 0xC3, 0xB2, 0xA1, 2, 0}, "not a readable pcap file"},
    };
    for (const SCase& c : aCases) {
        Write(c.strPath, c.aFile);
        std::string strError;
        EXPECT_EQ(CCaptureReader::Open(c.strPath, strError), nullptr) << c.strPath;
        EXPECT_NE(strError.find(c.pszError), std::string::npos) << c.strPath << ": " << strError;
        std::remove(c.strPath.c_str());
    }
    std::string strError;
    EXPECT_EQ(CCaptureReader::Open(strDir, strError), nullptr);
    EXPECT_EQ(strError, "is a directory");
    EXPECT_EQ(CCaptureReader::Open("/dev/zero", strError), nullptr);
    EXPECT_EQ(strError, "is not a regular file");
    EXPECT_EQ(CCaptureReader::Open(TempPath("missing"), strError), nullptr);
    EXPECT_EQ(strError, "No such file or directory");
}

TEST(CaptureUsb, UsbPcapHeaderFields)
{
    // A setup stage of GET_DESCRIPTOR to device 3 on bus 1: the setup packet
    // comes out of the data.
    const std::vector<std::uint8_t> aRecord = {
        28, 0,                                            // header length
        0xF0, 0x6C, 0x5E, 0x12, 0x80, 0xF9, 0xFF, 0xFF,   // IRP id
        0, 0, 0, 0,                                       // status
        8, 0,                                             // function
        0,                                                // info: submission
        1, 0, 3, 0,                                       // bus 1, device 3
        0x80, 2,                                          // endpoint 0 IN, control
        8, 0, 0, 0,                                       // data length
        0,                                                // stage: setup
        0x80, 6, 0, 1, 0, 0, 0x12, 0};
    SUsbPacket packet;
    ASSERT_TRUE(ParseUsbPacket(LinkTypeUsbPcap, aRecord.data(), aRecord.size(), packet));
    EXPECT_EQ(packet.nBus, 1);
    EXPECT_EQ(packet.nDevice, 3);
    EXPECT_TRUE(packet.bIn);
    EXPECT_EQ(packet.eTransfer, UsbControl);
    EXPECT_EQ(packet.eEvent, UsbSubmit);
    EXPECT_EQ(packet.nControlStage, 0);
    ASSERT_TRUE(packet.bSetup);
    EXPECT_EQ(packet.aSetup[1], 6);
    EXPECT_EQ(packet.nData, 0u);
    EXPECT_FALSE(ParseUsbPacket(LinkTypeUsbPcap, aRecord.data(), 20, packet));
    EXPECT_FALSE(ParseUsbPacket(LinkTypeUsbLinux, aRecord.data(), aRecord.size(), packet));
}

}  // namespace
