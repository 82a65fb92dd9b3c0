// Real AT traffic: the hands-free lines of two phones in RFCOMM over L2CAP
// in btsnoop captures, and a CDC-ACM modem's whole dialogue typed one byte
// per USB transfer, joined into lines as a terminal's line discipline would.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"
#include "serial/ATCommand.h"
#include "tests/TestUtil.h"
#include "tests/at_rfcomm.h"

namespace {

using Spec = CAdvAnlzATCommandSpec;

constexpr unsigned short P = Spec::FieldPrefixAT, B = Spec::FieldCommandBody, UC = Spec::FieldUnknownCommand,
                         DP = Spec::FieldDialParameters, UD = Spec::FieldUnknownDialParameters,
                         R = Spec::FieldResponse, UR = Spec::FieldUnexpectedResponses,
                         CR = Spec::FieldCarriageReturn, LF = Spec::FieldLineFeed;

std::unique_ptr<CCaptureReader> OpenCapture(const std::string& strFile, std::string& strPath)
{
    strPath = std::string(BUSDECODE_CAPTURES_DIR) + "/" + strFile;
    if (!std::ifstream(strPath))
        return nullptr;
    std::string strError;
    return CCaptureReader::Open(strPath, strError);
}

CAdvAnlzData Bytes(const std::vector<std::uint8_t>& a)
{
    return CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
}

std::string Printable(const std::vector<std::uint8_t>& a)
{
    std::string s;
    for (std::uint8_t c : a)
        s += c == '\r' ? std::string("\\r") : c == '\n' ? std::string("\\n") : std::string(1, static_cast<char>(c));
    return s;
}

bool StartsWith(const std::vector<std::uint8_t>& a, const char* psz)
{
    const std::size_t n = std::strlen(psz);
    return a.size() >= n && std::memcmp(a.data(), psz, n) == 0;
}

// Every bit of the payload is in exactly one field, in order.
bool EveryByteInAField(const CATCommandPacket& packet, const CAdvAnlzData& payload)
{
    std::uint32_t dwOffset = 0;
    for (unsigned char i = 1; i <= packet.GetFieldCount(); ++i) {
        if (packet.GetFieldAttr(i)->m_dwOffset != dwOffset)
            return false;
        dwOffset += packet.GetFieldValue(i)->GetLength();
    }
    return dwOffset == payload.GetLength();
}

// What a line decodes to, by the text it begins with.
struct SLineRule {
    const char* pszLabel;
    const char* pszStart;
    std::vector<unsigned short> aIds;
    unsigned short wFormat;
    const char* pszBodyName;  // the option name of the command body, when one is expected
};

const std::vector<SLineRule>& HandsFreeRules()
{
    static const std::vector<SLineRule> s_aRules = {
        {"+CHLD=?", "AT+CHLD=?\r", {P, B, CR}, Spec::FormatNone, "Hands_Free & Headset At Command : +CHLD=?"},
        {"+CMER=", "AT+CMER=", {P, B, CR}, Spec::FormatNone, nullptr},
        {"+NREC=0", "AT+NREC=0\r", {P, B, CR}, Spec::FormatNone, nullptr},
        {"+VGS=", "AT+VGS=", {P, B, CR}, Spec::FormatNone, nullptr},
        {"+CCWA=", "AT+CCWA=", {P, B, CR}, Spec::FormatNone, nullptr},
        // +BRSF, +BAC, +CIND, +BIA, +BTRH and vendor commands have no row.
        {"unknown command", "AT+", {P, UC}, Spec::FormatUnknownCommand, nullptr},
        {"OK", "\r\nOK\r\n", {CR, LF, R, CR, LF}, 267, nullptr},
        {"ERROR", "\r\nERROR\r\n", {CR, LF, R, CR, LF}, 268, nullptr},
        {"+CIEV:", "\r\n+CIEV: ", {CR, LF, R, CR, LF}, Spec::FormatNone, nullptr},
        // +BRSF:, +CIND: and +CHLD: are not among the responses understood.
        {"unexpected response", "\r\n+", {CR, LF, UR}, Spec::FormatUnknownResponse, nullptr},
    };
    return s_aRules;
}

struct SHandsFreeCapture {
    const char* pszName;
    const char* pszFile;
    std::map<std::string, int> mapCounts;
};

void PrintTo(const SHandsFreeCapture& c, std::ostream* os)
{
    *os << c.pszFile;
}

class ATHandsFreeCapture : public ::testing::TestWithParam<SHandsFreeCapture> {};

TEST_P(ATHandsFreeCapture, EveryLineDecodesAsNamed)
{
    std::string strPath;
    std::unique_ptr<CCaptureReader> pReader = OpenCapture(GetParam().pszFile, strPath);
    if (!pReader)
        GTEST_SKIP() << "capture not found or unreadable: " << strPath;

    CRfcommExtractor extractor;
    std::vector<SRfcommPayload> aPayloads;
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        const bool bFromController = (record.nFlags & 1) != 0;
        if (record.nLinkType == LinkTypeBtSnoopH4 && record.nData > 1 && record.pData[0] == 0x02)
            extractor.AddAcl(record.pData + 1, record.nData - 1, bFromController, aPayloads);
        else if (record.nLinkType == LinkTypeBtSnoopHCI && !(record.nFlags & 2))
            extractor.AddAcl(record.pData, record.nData, bFromController, aPayloads);
    }
    EXPECT_EQ(extractor.BadFrames(), 0u);

    // The hands-free channel is the one whose lines begin with "AT".
    std::map<unsigned, bool> mapATChannel;
    for (const SRfcommPayload& payload : aPayloads)
        mapATChannel[payload.nDLCI] = mapATChannel[payload.nDLCI] || StartsWith(payload.aData, "AT");

    std::map<std::string, int> mapCounts;
    CATCommandPacket packet;
    for (const SRfcommPayload& payload : aPayloads) {
        if (!mapATChannel[payload.nDLCI])
            continue;
        const std::string strLine = Printable(payload.aData);
        const CAdvAnlzData data = Bytes(payload.aData);
        ASSERT_EQ(packet.RestructBy(data), 1) << strLine;
        EXPECT_TRUE(EveryByteInAField(packet, data)) << strLine;
        // Commands come from the hands-free unit, responses from the phone.
        EXPECT_EQ(packet.m_strRequestName, payload.bFromController ? "AT Command" : "AT Command Response") << strLine;

        const SLineRule* pRule = nullptr;
        for (const SLineRule& rule : HandsFreeRules())
            if (!pRule && StartsWith(payload.aData, rule.pszStart))
                pRule = &rule;
        ASSERT_NE(pRule, nullptr) << "no rule for " << strLine;
        ++mapCounts[pRule->pszLabel];
        EXPECT_EQ(IdsOf(packet), pRule->aIds) << strLine;
        EXPECT_EQ(packet.GetATPacketFormat(), pRule->wFormat) << strLine;
        if (pRule->pszBodyName) {
            EXPECT_EQ(Spec::GetInstance()->GetFieldOptionName(B, *packet.GetFieldValue(2)), pRule->pszBodyName);
        }
        // Only a line that is not understood is a finding.
        const bool bUnderstood = pRule->wFormat != Spec::FormatUnknownCommand &&
                                 pRule->wFormat != Spec::FormatUnknownResponse;
        EXPECT_EQ(packet.GetPErrors().GetSize(), bUnderstood ? 0 : 1) << strLine;
        packet.SetATPacketFormat(Spec::FormatNone);
    }
    EXPECT_EQ(mapCounts, GetParam().mapCounts);
}

INSTANTIATE_TEST_SUITE_P(
    Phones, ATHandsFreeCapture,
    ::testing::Values(SHandsFreeCapture{"MotoG", "a2dp/motog_btsnoop_hci.log",
                                        {{"+CHLD=?", 1},
                                         {"+CMER=", 1},
                                         {"+NREC=0", 1},
                                         {"+VGS=", 1},
                                         {"+CCWA=", 1},
                                         {"unknown command", 8},
                                         {"OK", 10},
                                         {"ERROR", 3},
                                         {"unexpected response", 4}}},
                      SHandsFreeCapture{"LG750", "a2dp/lg750.cap",
                                        {{"+CHLD=?", 1},
                                         {"+CMER=", 1},
                                         {"+NREC=0", 1},
                                         {"+VGS=", 1},
                                         {"+CCWA=", 1},
                                         {"unknown command", 7},
                                         {"OK", 9},
                                         {"ERROR", 3},
                                         {"+CIEV:", 1},
                                         {"unexpected response", 4}}}),
    [](const ::testing::TestParamInfo<SHandsFreeCapture>& info) { return std::string(info.param.pszName); });

// Joins a character stream into lines as a terminal sees them: a line runs
// up to and including its CR, and takes the LF right behind it; a response
// line also takes the CR LF that opens it.
std::vector<std::vector<std::uint8_t>> JoinLines(const std::vector<std::uint8_t>& a)
{
    std::vector<std::vector<std::uint8_t>> aLines;
    for (std::size_t i = 0; i < a.size();) {
        const std::size_t nStart = i;
        if (i + 1 < a.size() && a[i] == '\r' && a[i + 1] == '\n')
            i += 2;
        while (i < a.size() && a[i] != '\r')
            ++i;
        if (i < a.size())
            ++i;
        if (i < a.size() && a[i] == '\n')
            ++i;
        aLines.emplace_back(a.begin() + static_cast<long>(nStart), a.begin() + static_cast<long>(i));
    }
    return aLines;
}

TEST(ATModemCapture, TypedDialogueDecodesLineByLine)
{
    std::string strPath;
    std::unique_ptr<CCaptureReader> pReader = OpenCapture("usbmon-text/motorokr-modem.txt", strPath);
    if (!pReader)
        GTEST_SKIP() << "capture not found or unreadable: " << strPath;

    // The modem is device 8 until it turns into a mass-storage device: its
    // bulk OUT submissions carry what is typed, its bulk IN completions the
    // echo and the responses.
    std::vector<std::uint8_t> aTyped, aReceived;
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        SUsbPacket usb;
        if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, usb) || usb.nDevice != 8 ||
            usb.eTransfer != UsbBulk || usb.nData == 0)
            continue;
        if (!usb.bIn && usb.eEvent == UsbSubmit)
            aTyped.insert(aTyped.end(), usb.pData, usb.pData + usb.nData);
        else if (usb.bIn && usb.eEvent == UsbComplete)
            aReceived.insert(aReceived.end(), usb.pData, usb.pData + usb.nData);
    }
    ASSERT_FALSE(aTyped.empty());

    const auto decode = [](const std::vector<std::vector<std::uint8_t>>& aLines, int nExpectedCut) {
        std::map<unsigned short, int> mapFormats;
        CATCommandPacket packet;
        int nCutResponses = 0;
        for (const std::vector<std::uint8_t>& line : aLines) {
            const CAdvAnlzData data = Bytes(line);
            packet.SetATPacketFormat(Spec::FormatNone);
            EXPECT_EQ(packet.RestructBy(data), 1) << Printable(line);
            ++mapFormats[packet.GetATPacketFormat()];
            // A response line cut short by the modem (its CR without an LF)
            // passes over the text; every other line is whole in the fields.
            const bool bCut = StartsWith(line, "\r\n") && line.back() == '\r';
            nCutResponses += bCut ? 1 : 0;
            if (!bCut) {
                EXPECT_TRUE(EveryByteInAField(packet, data)) << Printable(line);
            }
            if (StartsWith(line, "AT+GMM\r")) {
                EXPECT_EQ(Spec::GetInstance()->GetFieldOptionName(B, *packet.GetFieldValue(2)),
                          "Request Model Identification : +GMM");
            }
            if (StartsWith(line, "ATDL\r")) {
                EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{P, B, DP, CR}));
                EXPECT_EQ(Spec::GetInstance()->GetFieldOptionName(DP, *packet.GetFieldValue(3)),
                          "Redial the last dialed number");
            }
            if (StartsWith(line, "ATDL?\r")) {
                EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{P, B, UD}));
                EXPECT_EQ(std::vector<unsigned short>(packet.GetPErrors().begin(), packet.GetPErrors().end()),
                          std::vector<unsigned short>{142});
            }
        }
        EXPECT_EQ(nCutResponses, nExpectedCut);
        return mapFormats;
    };

    // Typed: a lone CR, then 16 command lines. The init string and the
    // commands without a row (+MODE, +CIND, +CBC, +CCLK, +CGMI ...) are
    // unknown commands; AT+GMM has a row, ATDL and ATDL? dial.
    const std::map<unsigned short, int> mapTyped = {{Spec::FormatNone, 1}, {309, 1}, {176, 2}, {320, 13}};
    EXPECT_EQ(decode(JoinLines(aTyped), 0), mapTyped);

    // Received: the echo of every typed line, 12 OK, 4 ERROR and 11 lines of
    // information, which are not among the responses understood; one of them
    // (+CIND) is cut short with stray bytes and a CR without its LF.
    std::map<unsigned short, int> mapReceived = mapTyped;
    mapReceived[267] = 12;
    mapReceived[268] = 4;
    mapReceived[321] = 11;
    EXPECT_EQ(decode(JoinLines(aReceived), 1), mapReceived);
}

}  // namespace
