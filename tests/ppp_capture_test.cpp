// PPP frames of real captures: serial links in HDLC-like framing, PPP
// links, and malformed and regression inputs, decoded frame by frame. Every
// bit of every frame lands in a field, the frames of each protocol are
// counted, and a few values are checked by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "serial/PPPSpec.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CAdvAnlzPPPSpec;

const std::string kCaptures = BUSDECODE_CAPTURES_DIR;

constexpr int kLinkTypeEthernet = 1;
constexpr std::uint16_t kEtherTypePPP = 0x880B;
constexpr std::uint16_t kEtherTypePPPoESession = 0x8864;

// The PPP frame a record carries: behind the HDLC address and control of a
// PPP link, if they are there; behind a PPPoE session header, or the PPP
// ethertype, of an Ethernet frame (a regression input puts extra bytes in
// front of its ethertype, so it is looked for).
bool PPPFrameOf(int nLinkType, const std::vector<std::uint8_t>& aRecord, std::vector<std::uint8_t>& aFrame)
{
    if ((nLinkType & 0xFFFF) == LinkTypePPP || (nLinkType & 0xFFFF) == LinkTypePPPHDLC) {
        const bool bFramed = aRecord.size() >= 2 && aRecord[0] == 0xFF && aRecord[1] == 0x03;
        aFrame.assign(aRecord.begin() + (bFramed ? 2 : 0), aRecord.end());
        return true;
    }
    if (nLinkType != kLinkTypeEthernet)
        return false;
    for (std::size_t i = 12; i + 2 <= aRecord.size() && i <= 24; i += 2) {
        const std::uint16_t wType = static_cast<std::uint16_t>(aRecord[i] << 8 | aRecord[i + 1]);
        if (wType == kEtherTypePPP) {
            aFrame.assign(aRecord.begin() + static_cast<long>(i) + 2, aRecord.end());
            return true;
        }
        if (wType == kEtherTypePPPoESession && i + 8 <= aRecord.size()) {
            const std::size_t nLength = static_cast<std::size_t>(aRecord[i + 6] << 8 | aRecord[i + 7]);
            const std::size_t nStart = i + 8;
            aFrame.assign(aRecord.begin() + static_cast<long>(nStart),
                          aRecord.begin() + static_cast<long>(std::min(aRecord.size(), nStart + nLength)));
            return true;
        }
    }
    return false;
}

struct SFrames {
    bool bOpened = false;
    std::vector<std::vector<std::uint8_t>> aFrames;
};

SFrames ReadFrames(const std::string& strPath)
{
    SFrames r;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader)
        return r;
    r.bOpened = true;
    SCaptureRecord record;
    std::vector<std::uint8_t> aFrame;
    while (pReader->Next(record) == CaptureRecord) {
        const std::vector<std::uint8_t> aRecord(record.pData, record.pData + record.nData);
        if (PPPFrameOf(record.nLinkType, aRecord, aFrame))
            r.aFrames.push_back(aFrame);
    }
    return r;
}

CAdvAnlzData DataOf(const std::vector<std::uint8_t>& a)
{
    return CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
}

struct SCaptureCase {
    const char* pszPath;
    std::size_t nFrames;
    // Frames by the protocol number of their first header.
    std::map<unsigned, unsigned> mapProtocols;
};

void PrintTo(const SCaptureCase& c, std::ostream* os)
{
    *os << c.pszPath;
}

class PPPCapture : public ::testing::TestWithParam<SCaptureCase> {};

TEST_P(PPPCapture, EveryBitOfEveryFrameLandsInAField)
{
    const SCaptureCase& c = GetParam();
    const std::string strPath = kCaptures + "/" + c.pszPath;
    if (!std::ifstream(strPath).good())
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    const SFrames r = ReadFrames(strPath);
    ASSERT_TRUE(r.bOpened);
    ASSERT_EQ(r.aFrames.size(), c.nFrames);

    std::map<unsigned, unsigned> mapProtocols;
    for (std::size_t n = 0; n < r.aFrames.size(); ++n) {
        const std::vector<std::uint8_t>& aFrame = r.aFrames[n];
        CPPPPacket packet;
        packet.RestructBy(DataOf(aFrame));
        if (packet.GetFieldCount() > 0)
            ++mapProtocols[static_cast<std::uint16_t>(*packet.GetFieldValue(1))];
        // Fields lie end to end over the frame; a frame that needs more
        // fields than a packet holds keeps those it has.
        std::uint32_t dwOffset = 0;
        for (int i = 1; i <= packet.GetFieldCount(); ++i) {
            const unsigned char nIndex = static_cast<unsigned char>(i);
            ASSERT_EQ(packet.GetFieldAttr(nIndex)->m_dwOffset, dwOffset) << "frame " << n + 1;
            dwOffset += packet.GetFieldValue(nIndex)->GetLength();
        }
        if (packet.GetFieldCount() < CProtocolPacket::kMaxFields)
            EXPECT_EQ(dwOffset, aFrame.size() * 8) << "frame " << n + 1;
        else
            EXPECT_LE(dwOffset, aFrame.size() * 8) << "frame " << n + 1;
    }
    EXPECT_EQ(mapProtocols, c.mapProtocols);
}

INSTANTIATE_TEST_SUITE_P(
    Captures, PPPCapture,
    ::testing::Values(
        // LCP 33, CHAP 6, IPCP 4, CDPCP 4, CDP 6, IPv4 10.
        SCaptureCase{"packetlife/PPP_negotiation.cap",
                     63,
                     {{0xC021, 33}, {0xC223, 6}, {0x8021, 4}, {0x8207, 4}, {0x0207, 6}, {0x0021, 10}}},
        SCaptureCase{"packetlife/PPP.cap", 50, {{0xC021, 36}, {0x0021, 10}, {0x0207, 4}}},
        SCaptureCase{"packetlife/PPP_EAP.cap",
                     52,
                     {{0xC021, 28}, {0xC227, 10}, {0x8021, 4}, {0x8207, 7}, {0x0207, 3}}},
        SCaptureCase{"packetlife/PPP_TCP_compression.cap",
                     43,
                     {{0xC021, 4}, {0x002D, 33}, {0x002F, 2}, {0x0021, 4}}},
        SCaptureCase{"tcpdump/ppp-invalid-lengths.pcap", 1, {{0x8021, 1}}},
        SCaptureCase{"tcpdump/heapoverflow-ppp_hdlc_if_print.pcap", 1, {{0x3030, 1}}},
        SCaptureCase{"tcpdump/mlppp-oobr.pcap", 1, {{0x3D30, 1}}},
        SCaptureCase{"tcpdump/ppp_error_hexdump.pcap", 1, {{0xFF60, 1}}},
        SCaptureCase{"tcpdump/ppp_ip_udp_dns.pcap", 1, {{0xFF5F, 1}}},
        SCaptureCase{"tcpdump/ppp_ccp_config_deflate_option_asan.pcap", 1, {{0x80FD, 1}}},
        SCaptureCase{"tcpdump/pppoes.pcap", 2, {{0xC021, 2}}}),
    [](const ::testing::TestParamInfo<SCaptureCase>& info) {
        std::string strName = info.param.pszPath;
        strName = strName.substr(strName.find('/') + 1);
        for (char& ch : strName)
            if (!std::isalnum(static_cast<unsigned char>(ch)))
                ch = '_';
        return strName;
    });

// Values read off the negotiation of a Cisco serial link by hand.
TEST(PPPCaptureValues, NegotiationOfASerialLink)
{
    const std::string strPath = kCaptures + "/packetlife/PPP_negotiation.cap";
    if (!std::ifstream(strPath).good())
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    const SFrames r = ReadFrames(strPath);
    ASSERT_EQ(r.aFrames.size(), 63u);
    auto decode = [&](std::size_t nFrame, CPPPPacket& packet) {
        return packet.RestructBy(DataOf(r.aFrames[nFrame - 1]));
    };

    // Frame 1: Configure-Request, authentication by CHAP with MD5, a magic
    // number.
    CPPPPacket request;
    EXPECT_EQ(decode(1, request), 1);
    EXPECT_EQ(FieldsOf(request),
              (std::vector<SFieldView>{{6000, 16, "21c0"}, {6041, 8, "01"}, {6042, 8, "01"}, {6043, 16, "0f00"},
                                       {6044, 8, "03"}, {6045, 8, "05"}, {6051, 16, "23c2"}, {6053, 8, "05"},
                                       {6044, 8, "05"}, {6045, 8, "06"}, {6054, 32, "6de92c01"}}));
    EXPECT_EQ(request.GetFieldPattern(2, 6, DisplayDecimal, 0), "Conf-Req");
    EXPECT_EQ(request.GetFieldPattern(7, 6, DisplayDecimal, 0), "CHAP");

    // Frame 6: a CHAP Challenge of 16 bytes from "R1".
    CPPPPacket challenge;
    EXPECT_EQ(decode(6, challenge), 1);
    ASSERT_EQ(challenge.GetFieldCount(), 7);
    EXPECT_EQ(challenge.GetFieldPattern(2, 6, DisplayDecimal, 0), "Challenge");
    EXPECT_EQ(static_cast<std::uint8_t>(*challenge.GetFieldValue(5)), 16);
    EXPECT_EQ(challenge.GetFieldValue(6)->GetLength(), 128u);
    EXPECT_EQ(HexOf(*challenge.GetFieldValue(7)), "3152");

    // Frame 12: IPCP asks for 10.0.0.2.
    CPPPPacket ipcp;
    EXPECT_EQ(decode(12, ipcp), 1);
    ASSERT_EQ(ipcp.GetFieldCount(), 7);
    EXPECT_EQ(ipcp.GetFieldId(7), Spec::FieldIPAddress);
    EXPECT_EQ(static_cast<std::uint32_t>(*ipcp.GetFieldValue(7)), 0x0A000002u);
    EXPECT_EQ(ipcp.GetProtocolsMask(), 0x20);

    // Frame 32: an ICMP echo request from 10.0.0.1 to 10.0.0.2; the echo
    // type behind the addresses is no option type.
    CPPPPacket ip;
    decode(32, ip);
    ASSERT_GE(ip.GetFieldCount(), 19);
    const std::vector<SFieldView> aHeader = FieldsOf(ip);
    EXPECT_EQ(aHeader[1], (SFieldView{6075, 4, "04"}));
    EXPECT_EQ(aHeader[2], (SFieldView{6076, 4, "05"}));
    EXPECT_EQ(aHeader[9], (SFieldView{6083, 16, "6400"}));
    EXPECT_EQ(aHeader[13], (SFieldView{6087, 8, "ff"}));
    EXPECT_EQ(ip.GetFieldPattern(15, 6, DisplayDecimal, 0), "Int Ctrl Msg");
    EXPECT_EQ(ip.GetFieldPattern(17, 6, DisplayDecimal, 0), "10.0.0.1");
    EXPECT_EQ(ip.GetFieldPattern(18, 6, DisplayDecimal, 0), "10.0.0.2");
    EXPECT_EQ(aHeader[18], (SFieldView{6092, 8, "08"}));
    ASSERT_GE(ip.GetPErrors().GetSize(), 1);
    EXPECT_EQ(ip.GetPErrors()[0], 210);
}

}  // namespace
