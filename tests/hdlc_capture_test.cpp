// HDLC framing over real data: the raw serial stream of a dial-up link
// (modem dialogue, then PPP in asynchronous HDLC-like framing) in both
// directions, and the frames of PPP and Cisco HDLC captures framed again as
// an asynchronous sender would, which must come back whole.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "serial/HDLCSpec.h"
#include "serial/PPPSpec.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CAdvAnlzHDLCSpec;

const std::string kCaptures = BUSDECODE_CAPTURES_DIR;

constexpr int kLinkTypeCiscoHDLC = 104;

CAdvAnlzData DataOf(const std::vector<std::uint8_t>& a)
{
    return CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
}

std::vector<std::uint8_t> BytesOf(const CAdvAnlzData& value)
{
    std::vector<std::uint8_t> a(value.GetByteLength());
    value.GetStream(a.data());
    return a;
}

// The two directions of a pppd record file: records 1 and 2 hold bytes
// sent and received behind a two-byte length; 3 and 4 end a direction's
// burst; 5, 6 and 7 carry time in 4, 1 and 4 bytes.
bool ReadPPPDump(const std::string& strPath, std::vector<std::uint8_t>& aSent, std::vector<std::uint8_t>& aReceived)
{
    std::ifstream in(strPath, std::ios::binary);
    const std::vector<std::uint8_t> a((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (std::size_t i = 0; i < a.size();) {
        const std::uint8_t nType = a[i++];
        if (nType == 1 || nType == 2) {
            if (i + 2 > a.size())
                return false;
            const std::size_t n = static_cast<std::size_t>(a[i] << 8 | a[i + 1]);
            i += 2;
            if (i + n > a.size())
                return false;
            std::vector<std::uint8_t>& aTo = nType == 1 ? aSent : aReceived;
            aTo.insert(aTo.end(), a.begin() + static_cast<long>(i), a.begin() + static_cast<long>(i + n));
            i += n;
        } else if (nType == 5 || nType == 7) {
            i += 4;
        } else if (nType == 6) {
            i += 1;
        } else if (nType != 3 && nType != 4) {
            return false;
        }
    }
    return !a.empty();
}

struct SStream {
    CAdvAnlzData data;
    std::vector<std::vector<std::uint8_t>> aInformation;
    std::map<unsigned, unsigned> mapProtocols;  // information fields by their first two bytes
    unsigned nFlags = 0;
    int nResult = 0;
};

SStream DecodeStream(const std::vector<std::uint8_t>& aBytes)
{
    SStream s;
    CProtocolPacket packet(Spec::GetInstance());
    s.nResult = packet.RestructBy(DataOf(aBytes));
    for (int i = 1; i <= packet.GetFieldCount(); ++i) {
        const unsigned char nIndex = static_cast<unsigned char>(i);
        const unsigned short nId = packet.GetFieldId(nIndex);
        if (nId == Spec::FieldFlag)
            ++s.nFlags;
        if (nId == Spec::FieldData)
            s.data = *packet.GetFieldValue(nIndex);
        if (nId == Spec::FieldInformation) {
            s.aInformation.push_back(BytesOf(*packet.GetFieldValue(nIndex)));
            const std::vector<std::uint8_t>& a = s.aInformation.back();
            if (a.size() >= 2)
                ++s.mapProtocols[static_cast<unsigned>(a[0] << 8 | a[1])];
        }
    }
    return s;
}

class HDLCCapture : public ::testing::Test {
protected:
    void SetUp() override { Spec::ResetOnesInRow(); }
};

TEST_F(HDLCCapture, DialUpStreamBothDirections)
{
    const std::string strPath = kCaptures + "/wireshark-wiki/ppp-dialup-munged.pppd";
    if (!std::ifstream(strPath).good())
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    std::vector<std::uint8_t> aSent, aReceived;
    ASSERT_TRUE(ReadPPPDump(strPath, aSent, aReceived));
    ASSERT_EQ(aSent.size(), 580u);
    ASSERT_EQ(aReceived.size(), 785u);

    // Received: the modem dialogue and the first LCP frame, whose opening
    // flag the capture lacks, stand before the first flag, escapes undone.
    // Then every flag of the stream, frames of LCP, CHAP, IPCP and IP (with
    // protocol field compression, 0x21 alone), all framed soundly.
    const SStream received = DecodeStream(aReceived);
    EXPECT_EQ(received.nResult, 1);
    EXPECT_EQ(received.nFlags, 23u);
    const std::vector<std::uint8_t> aText = BytesOf(received.data);
    const std::string strText(aText.begin(), aText.end());
    EXPECT_EQ(strText.rfind("\r\r\r\r\rATZ\r\r\nOK\r\n", 0), 0u);
    EXPECT_NE(strText.find("CONNECT 26400/ARQ/V34/LAPM/V42BIS"), std::string::npos);
    EXPECT_NE(strText.find(std::string("Please Sign-on: \x03\xc0\x21\x01\x01\x00\x14", 23)), std::string::npos);
    EXPECT_EQ(received.mapProtocols,
              (std::map<unsigned, unsigned>{{0xC021, 4}, {0x8021, 3}, {0xC223, 2}, {0x2145, 2}}));

    // The frames' information is the PPP decoder's input: the peer's
    // Configure-Request (MRU 1514, async map, CHAP with MD5, magic number,
    // protocol and address-and-control field compression) and its CHAP
    // Challenge from "HiPer.att.net" (values over 8 bits read reversed).
    CPPPPacket request;
    request.RestructBy(DataOf(received.aInformation[0]));
    const std::vector<SFieldView> aRequest = FieldsOf(request);
    ASSERT_GE(aRequest.size(), 24u);
    EXPECT_EQ(aRequest[6], (SFieldView{6050, 16, "ea05"}));
    EXPECT_EQ(aRequest[9], (SFieldView{6046, 32, "00000000"}));
    EXPECT_EQ(aRequest[12], (SFieldView{6051, 16, "23c2"}));
    EXPECT_EQ(aRequest[13], (SFieldView{6053, 8, "05"}));
    EXPECT_EQ(aRequest[16], (SFieldView{6054, 32, "2f3fc5df"}));
    EXPECT_EQ(aRequest[17], (SFieldView{6044, 8, "07"}));
    EXPECT_EQ(aRequest[19], (SFieldView{6044, 8, "08"}));
    CPPPPacket challenge;
    challenge.RestructBy(DataOf(received.aInformation[3]));
    ASSERT_EQ(challenge.GetFieldCount(), 7);
    EXPECT_EQ(challenge.GetFieldPattern(2, 6, DisplayDecimal, 0), "Challenge");
    const std::vector<std::uint8_t> aName = BytesOf(*challenge.GetFieldValue(7));
    EXPECT_EQ(std::string(aName.rbegin(), aName.rend()), "HiPer.att.net");

    // Sent: the first frame stands behind its flag, address and control,
    // so its body is unstuffed as a synchronous one would be and comes out
    // mangled; the frames behind it are read as sent.
    const SStream sent = DecodeStream(aSent);
    EXPECT_EQ(sent.nFlags, 16u);
    const std::vector<std::uint8_t> aSentText = BytesOf(sent.data);
    EXPECT_EQ(std::string(aSentText.begin(), aSentText.end()).rfind("\r\r\r\r\rATZ\rAT &F", 0), 0u);
    EXPECT_EQ(sent.mapProtocols.at(0xC021), 4u);
    EXPECT_EQ(sent.mapProtocols.at(0x8021), 3u);
    EXPECT_EQ(sent.mapProtocols.at(0xC223), 1u);
    EXPECT_EQ(sent.mapProtocols.at(0x2145), 2u);
}

// Sends bytes as an asynchronous sender does: flag and escape bytes go as
// 0x7D and the byte XOR 0x20.
void AppendEscaped(std::vector<std::uint8_t>& aTo, const std::vector<std::uint8_t>& aBytes)
{
    for (const std::uint8_t b : aBytes) {
        if (b == Spec::kFlag || b == Spec::kEscape) {
            aTo.push_back(Spec::kEscape);
            aTo.push_back(static_cast<std::uint8_t>(b ^ Spec::kEscapeMask));
        } else {
            aTo.push_back(b);
        }
    }
}

// Every frame of the PPP and Cisco HDLC captures, sent again behind a short
// first frame (which alone is unstuffed) with an FCS of 0x3412: it comes
// back whole, address and control first where it starts with 0xFF, then the
// information, then the FCS and the closing flag.
TEST_F(HDLCCapture, CapturedFramesComeBackWhole)
{
    const char* const aPaths[] = {
        "packetlife/PPP_negotiation.cap",  "packetlife/PPP.cap",       "packetlife/PPP_EAP.cap",
        "packetlife/PPP_TCP_compression.cap", "tcpdump/HDLC.pcap",     "tcpdump/chdlc-slarp.pcap",
        "tcpdump/ppp_error_hexdump.pcap",  "tcpdump/ppp_ip_udp_dns.pcap",
    };
    std::size_t nFrames = 0;
    for (const char* pszPath : aPaths) {
        const std::string strPath = kCaptures + "/" + pszPath;
        std::string strError;
        std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
        if (!pReader)
            GTEST_SKIP() << "shared capture " << strPath << " is absent";
        SCaptureRecord record;
        while (pReader->Next(record) == CaptureRecord) {
            const int nLinkType = record.nLinkType & 0xFFFF;
            ASSERT_TRUE(nLinkType == LinkTypePPP || nLinkType == LinkTypePPPHDLC || nLinkType == kLinkTypeCiscoHDLC)
                << pszPath;
            const std::vector<std::uint8_t> aFrame(record.pData, record.pData + record.nData);
            std::vector<std::uint8_t> aStream = {0x7E, 0xFF, 0x03, 0x01, 0x02, 0x7E};
            std::vector<std::uint8_t> aSent = aFrame;
            aSent.insert(aSent.end(), {0x12, 0x34});
            AppendEscaped(aStream, aSent);
            aStream.push_back(0x7E);

            CProtocolPacket packet(Spec::GetInstance());
            EXPECT_EQ(packet.RestructBy(DataOf(aStream)), 1) << pszPath << " record " << record.nNumber;
            std::vector<SFieldView> aFields = FieldsOf(packet);
            ASSERT_GE(aFields.size(), 8u) << pszPath << " record " << record.nNumber;
            aFields.erase(aFields.begin(), aFields.begin() + 5);
            EXPECT_EQ(aFields.back(), (SFieldView{Spec::FieldFlag, 8, "7e"}));
            EXPECT_EQ(aFields[aFields.size() - 2], (SFieldView{Spec::FieldFCS, 16, "1234"}));
            // The frame's bytes, field by field.
            std::string strBack;
            for (std::size_t i = 0; i + 2 < aFields.size(); ++i)
                strBack += aFields[i].strHex;
            EXPECT_EQ(strBack, HexOf(DataOf(aFrame))) << pszPath << " record " << record.nNumber;
            EXPECT_EQ(aFields[0].nId, aFrame[0] == 0xFF ? Spec::FieldAddress : Spec::FieldInformation);
            ++nFrames;
        }
    }
    EXPECT_EQ(nFrames, 63u + 50u + 52u + 43u + 38u + 1u + 1u + 1u);
}

}  // namespace
