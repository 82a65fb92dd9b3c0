// AT command lines and responses: the walk over lines, every category of
// command body, the '+' commands, dial strings, response lines, the packet's
// format code and command list, and the rule check.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "platform/Stream.h"
#include "registry/DecoderRegistry.h"
#include "serial/ATCommand.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CAdvAnlzATCommandSpec;

CAdvAnlzData Text(const std::string& s)
{
    return CAdvAnlzData::FromBytes(reinterpret_cast<const std::uint8_t*>(s.data()),
                                   static_cast<std::uint32_t>(s.size() * 8));
}

std::string TextOf(const CAdvAnlzData& value)
{
    std::string s(value.GetByteLength(), '\0');
    value.GetStream(reinterpret_cast<std::uint8_t*>(&s[0]));
    return s;
}

struct STextField {
    unsigned short nId;
    std::string strText;
    bool operator==(const STextField& o) const { return nId == o.nId && strText == o.strText; }
};

std::ostream& operator<<(std::ostream& os, const STextField& f)
{
    os << "{" << f.nId << ", \"";
    for (char c : f.strText)
        os << (c == '\r' ? std::string("\\r") : c == '\n' ? std::string("\\n") : std::string(1, c));
    return os << "\"}";
}

std::vector<STextField> TextFieldsOf(const CProtocolPacket& packet)
{
    std::vector<STextField> a;
    for (int i = 1; i <= packet.GetFieldCount(); ++i)
        a.push_back({packet.GetFieldId(static_cast<unsigned char>(i)),
                     TextOf(*packet.GetFieldValue(static_cast<unsigned char>(i)))});
    return a;
}

std::vector<unsigned short> CommandListOf(const CATCommandPacket& packet)
{
    CWordArray a;
    packet.GetCommandList(a);
    return std::vector<unsigned short>(a.begin(), a.end());
}

std::vector<unsigned short> ErrorsOf(const CProtocolPacket& packet)
{
    return std::vector<unsigned short>(packet.GetPErrors().begin(), packet.GetPErrors().end());
}

// Every field holds the bits of the payload at its offset.
void ExpectFieldsAtTheirOffsets(const CATCommandPacket& packet, const CAdvAnlzData& payload)
{
    for (unsigned char i = 1; i <= packet.GetFieldCount(); ++i) {
        const SSpecFieldAttr* pAttr = packet.GetFieldAttr(i);
        const CAdvAnlzData* pValue = packet.GetFieldValue(i);
        EXPECT_EQ(pAttr->m_dwLength, pValue->GetLength()) << int(i);
        EXPECT_EQ(HexOf(payload.GetBits(pAttr->m_dwOffset, pValue->GetLength())), HexOf(*pValue)) << int(i);
    }
}

constexpr unsigned short P = Spec::FieldPrefixAT, SW = Spec::FieldSwitchToCommandMode,
                         RP = Spec::FieldRepeatLastCommand, B = Spec::FieldCommandBody,
                         UC = Spec::FieldUnknownCommand, UD = Spec::FieldUnknownDialParameters,
                         DP = Spec::FieldDialParameters, R = Spec::FieldResponse,
                         UR = Spec::FieldUnexpectedResponses, CR = Spec::FieldCarriageReturn,
                         LF = Spec::FieldLineFeed;

struct SLineCase {
    const char* pszName;
    std::string strPayload;
    std::vector<STextField> aFields;
    unsigned short wFormat;
    std::vector<unsigned short> aList;
    std::vector<unsigned short> aErrors;
    const char* pszRequestName;
};

void PrintTo(const SLineCase& c, std::ostream* os)
{
    *os << c.pszName;
}

class ATLines : public ::testing::TestWithParam<SLineCase> {};

TEST_P(ATLines, DecodesFieldsFormatListAndFindings)
{
    const SLineCase& c = GetParam();
    const CAdvAnlzData payload = Text(c.strPayload);
    CATCommandPacket packet(payload);
    EXPECT_EQ(TextFieldsOf(packet), c.aFields);
    EXPECT_EQ(packet.GetATPacketFormat(), c.wFormat);
    EXPECT_EQ(CommandListOf(packet), c.aList);
    EXPECT_EQ(ErrorsOf(packet), c.aErrors);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequestName);
    // Only a recognised response line counts on the response side.
    int nResponses = 0;
    for (const STextField& f : c.aFields)
        nResponses += f.nId == R ? 1 : 0;
    EXPECT_EQ(packet.m_nResponseFields, nResponses);
    EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount() - nResponses);
    EXPECT_EQ(packet.m_bHasResponse, 0);
    ExpectFieldsAtTheirOffsets(packet, payload);
}

const char* const kCmd = "AT Command";
const char* const kResp = "AT Command Response";
const char* const kBoth = "AT Command And AT Command Response";
const char* const kOther = "Unexpected Data";

INSTANTIATE_TEST_SUITE_P(
    Commands, ATLines,
    ::testing::Values(
        SLineCase{"OneBody", "ATE0\r", {{P, "AT"}, {B, "E0"}, {CR, "\r"}}, 178, {182}, {}, kCmd},
        SLineCase{"PrefixAlone", "AT", {{P, "AT"}}, Spec::FormatNone, {}, {}, kCmd},
        SLineCase{"PrefixAndCR", "AT\r", {{P, "AT"}, {UC, "\r"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"LineWithoutCR", "ATE0", {{P, "AT"}, {UC, "E0"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"CategoryALowerCase", "at&f\r", {{P, "at"}, {B, "&f"}, {CR, "\r"}}, 14, {17}, {}, kCmd},
        SLineCase{"CategoryAWithDigit", "AT&K3\r", {{P, "AT"}, {B, "&K3"}, {CR, "\r"}}, 28, {31}, {}, kCmd},
        SLineCase{"CategoryARowAbove62", "AT&T3\r", {{P, "AT"}, {B, "&T3"}, {CR, "\r"}}, 63, {67}, {}, kCmd},
        SLineCase{"CategoryB", "AT\\N3\r", {{P, "AT"}, {B, "\\N3"}, {CR, "\r"}}, 122, {126}, {}, kCmd},
        SLineCase{"CategoryC", "AT%C2\r", {{P, "AT"}, {B, "%C2"}, {CR, "\r"}}, 153, {157}, {}, kCmd},
        SLineCase{"CategoryD", "ATl2\r", {{P, "AT"}, {B, "l2"}, {CR, "\r"}}, 195, {199}, {}, kCmd},
        SLineCase{"CategoryE", "AT-K0\r", {{P, "AT"}, {B, "-K0"}, {CR, "\r"}}, 251, {255}, {}, kCmd},
        SLineCase{"CategoryEColon", "AT:e1\r", {{P, "AT"}, {B, ":e1"}, {CR, "\r"}}, 266, {270}, {}, kCmd},
        // The longest text wins; a digit without a row of its own is left.
        SLineCase{"DigitWithoutRow", "ATH7\r", {{P, "AT"}, {B, "H"}, {UC, "7\r"}}, 322, {187, 21504}, {141}, kCmd},
        SLineCase{"LongestOfCategoryA", "AT&K7\r", {{P, "AT"}, {B, "&K"}, {UC, "7\r"}}, 322, {27, 21504}, {141},
                  kCmd},
        SLineCase{"NoRowInCategoryD", "ATS0=1\r", {{P, "AT"}, {UC, "S0=1\r"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"NoRowInCategoryA", "AT&Z\r", {{P, "AT"}, {UC, "&Z\r"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"NotACategory", "AT#5\r", {{P, "AT"}, {UC, "#5\r"}}, 320, {21504}, {141}, kCmd},
        // Category E takes one unknown character and goes on behind it.
        SLineCase{"CategoryEUnknownCharacter", "AT*Z\r", {{P, "AT"}, {UC, "*"}, {B, "Z"}, {CR, "\r"}}, 322, {235},
                  {141, 141}, kCmd},
        SLineCase{"TwoBodiesOnALine", "ATE0V1\r", {{P, "AT"}, {B, "E0"}, {B, "V1"}, {CR, "\r"}}, 322, {182, 221},
                  {141}, kCmd},
        SLineCase{"TwoLines", "ATE0\rATV1\r",
                  {{P, "AT"}, {B, "E0"}, {CR, "\r"}, {P, "AT"}, {B, "V1"}, {CR, "\r"}}, 322, {182, 221}, {}, kCmd},
        // "A" inside a line: answer, repeat, or a second prefix.
        SLineCase{"AnswerAlone", "ATA\r", {{P, "AT"}, {UC, "A\r"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"Answer", "ATata\r", {{P, "AT"}, {B, "ata"}, {CR, "\r"}}, 169, {173}, {}, kCmd},
        SLineCase{"RepeatInsideLine", "ATE0A/\r", {{P, "AT"}, {B, "E0"}, {RP, "A/"}, {CR, "\r"}}, 322, {182}, {},
                  kCmd},
        SLineCase{"PrefixInsideLine", "ATE0AT\r", {{P, "AT"}, {B, "E0"}, {P, "AT"}, {CR, "\r"}}, 322, {182}, {},
                  kCmd},
        SLineCase{"Repeat", "A/\r", {{RP, "A/"}, {CR, "\r"}}, 322, {}, {}, kCmd},
        SLineCase{"Escape", "+++ATH\r", {{SW, "+++"}, {P, "AT"}, {B, "H"}, {CR, "\r"}}, 322, {187}, {}, kCmd},
        SLineCase{"NotAnEscape", "++AT", {{UC, "++AT"}}, 320, {21504}, {141}, kOther},
        SLineCase{"CarriageReturnAlone", "\r", {{CR, "\r"}}, Spec::FormatNone, {}, {}, kOther},
        // A command line ended by CR LF leaves its LF as an unknown element.
        SLineCase{"CommandEndedByCRLF", "ATE0\r\n", {{P, "AT"}, {B, "E0"}, {CR, "\r"}, {UC, "\n"}}, 322,
                  {182, 21504}, {141}, kCmd}),
    [](const ::testing::TestParamInfo<SLineCase>& info) { return std::string(info.param.pszName); });

INSTANTIATE_TEST_SUITE_P(
    PlusCommandsAndDialing, ATLines,
    ::testing::Values(
        SLineCase{"BareCommandNamesThePacket", "AT+CHUP\r", {{P, "AT"}, {B, "+CHUP"}, {CR, "\r"}}, 284, {298}, {},
                  kCmd},
        SLineCase{"TestFormIsShownOnly", "AT+CHLD=?\r", {{P, "AT"}, {B, "+CHLD=?"}, {CR, "\r"}},
                  Spec::FormatNone, {}, {}, kCmd},
        SLineCase{"SetWithAnyValue", "AT+CMER=3,0,0,1\r", {{P, "AT"}, {B, "+CMER=3,0,0,1"}, {CR, "\r"}},
                  Spec::FormatNone, {}, {}, kCmd},
        SLineCase{"LowerCaseTwin", "AT+vgs=\r", {{P, "AT"}, {B, "+vgs="}, {CR, "\r"}}, Spec::FormatNone, {}, {},
                  kCmd},
        SLineCase{"UpperCaseOnly", "AT+gmi\r", {{P, "AT"}, {UC, "+gmi\r"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"UnknownPlusCommand", "AT+BRSF=59\r", {{P, "AT"}, {UC, "+BRSF=59\r"}}, 320, {21504}, {141}, kCmd},
        SLineCase{"PlusBehindABody", "ATE0+CHUP\r", {{P, "AT"}, {B, "E0"}, {B, "+CHUP"}, {CR, "\r"}}, 322,
                  {182, 298}, {141}, kCmd},
        SLineCase{"Dial", "ATD5551234\r", {{P, "AT"}, {B, "D"}, {DP, "5551234"}, {CR, "\r"}}, 176, {180}, {}, kCmd},
        SLineCase{"DialEveryModifier", "atdT0,9W!@P1=2Ll;", {{P, "at"}, {UC, "dT0,9W!@P1=2Ll;"}}, 320, {21504},
                  {141}, kCmd},
        SLineCase{"DialModifiers", "ATDT0,9W!@P1=2LlRrSsTtWwPp\r",
                  {{P, "AT"}, {B, "D"}, {DP, "T0,9W!@P1=2LlRrSsTtWwPp"}, {CR, "\r"}}, 176, {180}, {}, kCmd},
        SLineCase{"DialNothing", "ATd\r", {{P, "AT"}, {B, "d"}, {DP, "\r"}, {CR, "\r"}}, 176, {180}, {}, kCmd},
        SLineCase{"DialQuotedText", "ATDT\"abc\"\r", {{P, "AT"}, {B, "D"}, {DP, "T\"abc\""}, {CR, "\r"}}, 176,
                  {180}, {}, kCmd},
        SLineCase{"DialUnpairedQuote", "ATD12\"ab\r", {{P, "AT"}, {B, "D"}, {UD, "12\"ab\r"}}, 176, {180}, {142},
                  kCmd},
        SLineCase{"DialSemicolon", "ATD1;\r", {{P, "AT"}, {B, "D"}, {UD, "1;\r"}}, 176, {180}, {142}, kCmd},
        SLineCase{"DialBehindABody", "ATE0D12\r", {{P, "AT"}, {B, "E0"}, {B, "D"}, {DP, "12"}, {CR, "\r"}}, 322,
                  {182, 180}, {141, 141}, kCmd}),
    [](const ::testing::TestParamInfo<SLineCase>& info) { return std::string(info.param.pszName); });

INSTANTIATE_TEST_SUITE_P(
    Responses, ATLines,
    ::testing::Values(
        SLineCase{"OK", "\r\nOK\r\n", {{CR, "\r"}, {LF, "\n"}, {R, "OK"}, {CR, "\r"}, {LF, "\n"}}, 267, {281}, {},
                  kResp},
        SLineCase{"NoDialtone", "\r\nNO DIALTONE\r\n",
                  {{CR, "\r"}, {LF, "\n"}, {R, "NO DIALTONE"}, {CR, "\r"}, {LF, "\n"}}, 281, {295}, {}, kResp},
        SLineCase{"IndicatorExact", "\r\n+CIEV:\r\n", {{CR, "\r"}, {LF, "\n"}, {R, "+CIEV:"}, {CR, "\r"}, {LF, "\n"}},
                  270, {284}, {}, kResp},
        SLineCase{"IndicatorWithValue", "\r\n+CIEV: 1,1\r\n",
                  {{CR, "\r"}, {LF, "\n"}, {R, "+CIEV: 1,1"}, {CR, "\r"}, {LF, "\n"}}, Spec::FormatNone, {}, {}, kResp},
        SLineCase{"FiveCharacterPrefixLowerCase", "\r\n+vgs:7\r\n",
                  {{CR, "\r"}, {LF, "\n"}, {R, "+vgs:7"}, {CR, "\r"}, {LF, "\n"}}, Spec::FormatNone, {}, {}, kResp},
        SLineCase{"LowerCaseWord", "\r\nok\r\n", {{CR, "\r"}, {LF, "\n"}, {UR, "ok\r\n"}}, 321, {21508}, {141},
                  kResp},
        SLineCase{"WordWithMore", "\r\nCONNECT 9600\r\n", {{CR, "\r"}, {LF, "\n"}, {UR, "CONNECT 9600\r\n"}}, 321,
                  {21508}, {141}, kResp},
        SLineCase{"UnknownResponse", "\r\n+BRSF: 871\r\n", {{CR, "\r"}, {LF, "\n"}, {UR, "+BRSF: 871\r\n"}}, 321,
                  {21508}, {141}, kResp},
        SLineCase{"CRLFAlone", "\r\n", {{CR, "\r"}, {LF, "\n"}, {UR, ""}}, 321, {21508}, {141}, kResp},
        SLineCase{"NoLineEnd", "\r\nOK", {{CR, "\r"}, {LF, "\n"}, {UR, "OK"}}, 321, {21508}, {141}, kResp},
        // A CR without its LF: what follows the character behind it is kept.
        SLineCase{"CRWithoutLF", "\r\nOK\rxRING", {{CR, "\r"}, {LF, "\n"}, {UR, "RING"}}, 321, {21508}, {141},
                  kResp},
        SLineCase{"SecondLineIsUnexpected", "\r\nOK\r\n\r\nERROR\r\n",
                  {{CR, "\r"}, {LF, "\n"}, {R, "OK"}, {CR, "\r"}, {LF, "\n"}, {UR, "\r\nERROR\r\n"}}, 321,
                  {281, 21508}, {141}, kResp},
        SLineCase{"CommandThenResponse", "ATE0\r\r\nOK\r\n",
                  {{P, "AT"}, {B, "E0"}, {CR, "\r"}, {CR, "\r"}, {LF, "\n"}, {R, "OK"}, {CR, "\r"}, {LF, "\n"}}, 322,
                  {182, 281}, {}, kBoth}),
    [](const ::testing::TestParamInfo<SLineCase>& info) { return std::string(info.param.pszName); });

TEST(ATResponses, EachWordAndPrefixWithItsFormat)
{
    const struct {
        std::string strText;
        unsigned short wFormat;  // FormatNone: shown but not named
    } aCases[] = {
        {"OK", 267},          {"ERROR", 268},          {"RING", 269},         {"+CIEV:", 270},
        {"+BINP:", 271},      {"+CLIP:", 272},         {"+BVRA:", 273},       {"+VGM:", 274},
        {"+VGS:", 275},       {"+BSIR:", 276},         {"+CCWA:", 277},       {"CONNECT", 278},
        {"BUSY", 279},        {"NO CARRIER", 280},     {"NO DIALTONE", 281},  {"+ccwa: 1", Spec::FormatNone},
        {"+clip:", Spec::FormatNone}, {"+binp: 5", Spec::FormatNone}, {"+bvra: 0", Spec::FormatNone},
        {"+bsir:1", Spec::FormatNone}, {"+vgm: 9", Spec::FormatNone},
    };
    for (const auto& c : aCases) {
        CATCommandPacket packet(Text("\r\n" + c.strText + "\r\n"));
        ASSERT_EQ(packet.GetFieldCount(), 5) << c.strText;
        EXPECT_EQ(packet.GetFieldId(3), R) << c.strText;
        EXPECT_EQ(packet.GetATPacketFormat(), c.wFormat) << c.strText;
        EXPECT_EQ(CommandListOf(packet),
                  c.wFormat == Spec::FormatNone ? std::vector<unsigned short>{}
                                                : std::vector<unsigned short>{static_cast<unsigned short>(c.wFormat + 14)})
            << c.strText;
        EXPECT_EQ(packet.GetPErrors().GetSize(), 0) << c.strText;
    }
}

TEST(ATPlusCommands, AcceptedFormsAndCase)
{
    const struct {
        const char* pszText;
        bool bAccepted;
    } aCases[] = {
        {"+CHLD", true},    {"+CHLD=0", true},  {"+CHLD=4", true},   {"+CHLD=5", false}, {"+CHLD?", false},
        {"+chld=?", true},  {"+Chld", false},   {"+CHUP=?", true},   {"+CHUP=1", false}, {"+CHUP?", false},
        {"+CLIP?", true},   {"+clip=1", true},  {"+BINP=1", true},   {"+CCWA?", true},   {"+VGM=15", true},
        {"+NREC=0", true},  {"+NREC=1", false}, {"+nrec?", true},    {"+NREC=", false},  {"+GCAP", true},
        {"+GCAP=?", false}, {"+gcap", false},   {"+FDR", true},      {"+FKS", true},     {"+CHLD+CHUP", false},
        {"+CMER", true},    {"+CMER=", true},   {"+CMERX", false},
    };
    for (const auto& c : aCases) {
        CATCommandPacket packet(Text(std::string("AT") + c.pszText + "\r"));
        EXPECT_EQ(packet.GetFieldId(2), c.bAccepted ? B : UC) << c.pszText;
        EXPECT_EQ(packet.GetPErrors().GetSize(), c.bAccepted ? 0 : 1) << c.pszText;
    }
}

// A payload cut anywhere still decodes: every field holds the bits at its
// offset and the walk ends with a name.
TEST(ATLinesCut, EveryPrefixOfAPayload)
{
    const std::string strFull = "+++ATE0V1&K3\\N3%C2-K0\rATD\"1\"\r\nATDT55,5\rAT+CHLD=2\r\r\nOK\r\n\r\nRING\r\n";
    for (std::size_t n = 0; n <= strFull.size(); ++n) {
        const CAdvAnlzData payload = Text(strFull.substr(0, n));
        CATCommandPacket packet(payload);
        EXPECT_EQ(packet.RestructBy(payload), n == 0 ? 0 : 1) << n;
        ExpectFieldsAtTheirOffsets(packet, payload);
        EXPECT_EQ(packet.m_strRequestName.IsEmpty(), n == 0) << n;
    }
}

TEST(ATPartialByte, BitsBehindTheLastWholeByteAreKept)
{
    // "\r\nOK\r\nX" with the X cut to 5 bits: the bits stand before the line
    // behind the first.
    const std::string s = "\r\nOK\r\n\r\nX";
    const CAdvAnlzData payload = CAdvAnlzData::FromBytes(reinterpret_cast<const std::uint8_t*>(s.data()),
                                                         static_cast<std::uint32_t>(8 * (s.size() - 1) + 5));
    CATCommandPacket packet(payload);
    EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{CR, LF, R, CR, LF, UR, UR}));
    EXPECT_EQ(packet.GetFieldValue(6)->GetLength(), 5u);
    EXPECT_EQ(packet.GetFieldValue(7)->GetLength(), 16u);
    EXPECT_EQ(packet.GetATPacketFormat(), 321);
    ExpectFieldsAtTheirOffsets(packet, payload);
}

TEST(ATEmptyPayload, GivesAnEmptyPacketAndZero)
{
    CATCommandPacket packet(Text("ATE0\r"));
    EXPECT_EQ(packet.RestructBy(CAdvAnlzData()), 0);
    EXPECT_EQ(packet.GetFieldCount(), 0);
    EXPECT_TRUE(CommandListOf(packet).empty());
    EXPECT_TRUE(packet.m_strRequestName.IsEmpty());
    // A packet whose new payload names nothing keeps its format code.
    EXPECT_EQ(packet.GetATPacketFormat(), 178);
}

TEST(ATCatalogue, RowsAreUniqueAcrossFieldsAndCoverZeroTo333)
{
    Spec* pSpec = Spec::GetInstance();
    std::set<unsigned short> rows;
    std::size_t nOptions = 0;
    for (unsigned short nId = 21500; nId <= 21510; ++nId) {
        const CFieldOptionList* pList = pSpec->GetFieldOptions(nId);
        for (int i = 0; pList && i < pList->GetSize(); ++i) {
            rows.insert(pList->GetAt(i).m_nOptionId);
            ++nOptions;
        }
    }
    EXPECT_EQ(nOptions, rows.size());
    // Row 66 is not used; 294 and 295 ("NO CARRIER", "NO DIALTONE") stand in
    // command lists only.
    EXPECT_EQ(rows.size(), 331u);
    EXPECT_EQ(*rows.begin(), 0);
    EXPECT_EQ(*rows.rbegin(), 333);
    for (unsigned short nRow : {66, 294, 295})
        EXPECT_EQ(rows.count(nRow), 0u) << nRow;
}

TEST(ATCatalogue, NamedValuesAsTheModemTablesHoldThem)
{
    Spec* pSpec = Spec::GetInstance();
    const struct {
        unsigned short nId;
        std::uint64_t qwValue;
        std::uint8_t nBits;
        const char* pszName;
        const char* pszAbbr;
    } aCases[] = {
        {P, 0x5441, 16, "This command tells the modem that a command follows it", nullptr},
        {SW, 0x2B2B2B, 24, "This command initiates an escape sequence to return the modem to the on-line command mode",
         nullptr},
        {RP, 0x2F41, 16, "This repeats the previous command", nullptr},
        {B, 0x4126, 16, "Set Default Value For Command '&An'", nullptr},
        {B, 0x5726, 16, "Active and Stored Configuration Display", nullptr},  // "&V" holds the value of "&W"
        {B, 0x46, 8, "Set Default Value For Command 'Fn'", nullptr},
        {B, 0x31455C, 24, "Data Echo - Enabled", nullptr},
        {B, 0x314D29, 24, "Power Level Adjustment - Enabled", nullptr},
        {B, 0x3F3D504E49422B, 56, "Hands_Free & Headset At Command : BINP=?",
         "Hands_Free & Headset At Command : +BINP=?"},
        {B, 0x52442B, 24, "FAX AT Command : +FDR : Data Reception command", nullptr},
        {B, 0x5244462B, 32, "", ""},
        {DP, 0x40, 8, "Modem will wait for a quiet answer befor dialing the rest of the dial string", nullptr},
        {DP, 0x3D, 8, "Sign : =", nullptr},
        {R, 0x4F4B, 16, "At Command Response - OK", "At Command Response : OK"},
        {R, 0x4B4F, 16, "", ""},
        {R, 0x524F525245, 40, "At Command Response - ERROR", "At Command Response : ERROR"},
        {R, 0x474E4952, 32, "At Command Response - RING", "At Command Response : RING"},
        {R, 0x3A564549432B, 48, "At Command Response - CIEV", "At Command Response : +CIEV :"},
        {R, 0x3A504E49422B, 48, "At Command Response - BINP", "At Command Response : +BINP :"},
        {R, 0x3A50494C432B, 48, "At Command Response - CLIP", "At Command Response : +CLIP :"},
        {R, 0x3A415256422B, 48, "At Command Response - BVRA", "At Command Response : +BVRA :"},
        {R, 0x3A4D47562B, 40, "At Command Response - VGM", "At Command Response : +VGM :"},
        {R, 0x3A5347562B, 40, "At Command Response - VGS", "At Command Response : +VGS :"},
        {R, 0x3A524953422B, 48, "At Command Response - BSIR", "At Command Response : +BSIR :"},
        {R, 0x3A415743432B, 48, "At Command Response - CCWA", "At Command Response : +CCWA :"},
        {R, 0x5443454E4E4F43, 56, "At Command Response - CONNECT", nullptr},
        {R, 0x59535542, 32, "At Command Response - BUSY", nullptr},
    };
    for (const auto& c : aCases) {
        const CAdvAnlzData value(c.qwValue, c.nBits);
        EXPECT_EQ(pSpec->GetFieldOptionName(c.nId, value), c.pszName) << c.nId << " " << std::hex << c.qwValue;
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(c.nId, value), c.pszAbbr ? c.pszAbbr : c.pszName)
            << c.nId << " " << std::hex << c.qwValue;
    }
}

TEST(ATCatalogue, FieldsAndFormatList)
{
    Spec* pSpec = Spec::GetInstance();
    ASSERT_EQ(pSpec->GetNumberOfLayerFields(), 11);
    EXPECT_EQ(pSpec->GetLayerFieldId(4), 21504);
    EXPECT_EQ(pSpec->GetLayerFieldName(21505), "Unkown Dial Parameters");
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(21505)->m_strDesc, "Unkown Dial Command Parameters");
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(21508)->m_dwMaxLength, 80u);
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(21511), nullptr);

    CWordArray aCodes;
    EXPECT_EQ(pSpec->GetAvailableATFormats(aCodes), static_cast<unsigned char>(323));
    ASSERT_EQ(aCodes.GetSize(), 323);
    for (int i = 0; i < aCodes.GetSize(); ++i)
        ASSERT_EQ(aCodes[i], i);
    const struct {
        unsigned short wCode;
        const char* pszName;
    } aNames[] = {{0, "AT&A"},     {80, "AT\\A"},      {169, "ATA"},        {176, "ATD"},
                  {238, "AT\"H"},  {266, "AT:E1"},     {267, "OK"},         {270, "CIEV"},
                  {274, "VGM"},    {277, "CCWA"},      {280, "NO CARRIER"}, {281, "NO DIALTONE"},
                  {283, "AT+CHLD=?"}, {319, "AT+FKS"}, {320, "Unknown Command"}, {321, "Unknown Response"},
                  {322, "Multy ATCommand"}, {323, ""}, {500, ""}};
    for (const auto& c : aNames)
        EXPECT_EQ(pSpec->GetATFormatName(c.wCode), c.pszName) << c.wCode;
}

TEST(ATPacket, CopyAssignListAndPersistence)
{
    CATCommandPacket packet(Text("ATE0\rAT+CHUP\r"));
    EXPECT_EQ(packet.GetATFormatName(), "Multy ATCommand");
    CWordArray aList;
    aList.Add(7);
    packet.GetCommandList(aList);  // appends
    EXPECT_EQ(std::vector<unsigned short>(aList.begin(), aList.end()), (std::vector<unsigned short>{7, 182, 298}));

    const CATCommandPacket copy(packet);
    EXPECT_EQ(copy.GetFieldCount(), 0);

    CATCommandPacket assigned;
    assigned = packet;
    EXPECT_EQ(FieldsOf(assigned), FieldsOf(packet));
    EXPECT_EQ(assigned.GetATPacketFormat(), 322);
    EXPECT_TRUE(CommandListOf(assigned).empty());
    EXPECT_TRUE(assigned.m_strRequestName.IsEmpty());

    CMemoryStream stream;
    ASSERT_EQ(packet.Save(&stream, 1), S_OK);
    stream.Rewind();
    CATCommandPacket loaded;
    ASSERT_EQ(loaded.Load(&stream), S_OK);
    EXPECT_EQ(FieldsOf(loaded), FieldsOf(packet));
    EXPECT_EQ(CommandListOf(loaded), CommandListOf(packet));
    EXPECT_EQ(loaded.GetATPacketFormat(), 322);
    EXPECT_EQ(loaded.m_strRequestName, "AT Command");
}

// What the host's view adds to an AT packet, and the aliases of both
// session decoders.
TEST(ATRegistry, FormatAndCommandListAsExtras)
{
    const SDecoderEntry* pEntry = FindDecoder("at");
    ASSERT_NE(pEntry, nullptr);
    EXPECT_STREQ(pEntry->pszClassName, "CAdvAnlzATCommandSpec");
    const std::unique_ptr<CProtocolPacket> pPacket = pEntry->pfnNewPacket(SDecodeOptions());
    EXPECT_EQ(pEntry->pfnDecode(*pPacket, Text("ATE0\r\r\nOK\r\n"), SDecodeOptions()), 1);
    const std::vector<SPacketExtra> aExtras = pEntry->pfnExtras(*pPacket);
    ASSERT_EQ(aExtras.size(), 2u);
    EXPECT_EQ(aExtras[0].strKey, "at_format");
    EXPECT_EQ(aExtras[0].eKind, SPacketExtra::Number);
    EXPECT_EQ(aExtras[0].nNumber, 322);
    EXPECT_EQ(aExtras[1].strKey, "command_list");
    EXPECT_EQ(aExtras[1].eKind, SPacketExtra::NumberList);
    EXPECT_EQ(aExtras[1].aNumbers, (std::vector<long long>{182, 281}));

    const SDecoderEntry* pObex = FindDecoder("obex");
    ASSERT_NE(pObex, nullptr);
    EXPECT_STREQ(pObex->pszClassName, "CAdvAnlzOBEXSpec");
    EXPECT_EQ(FindDecoder("CAdvAnlzOBEXSpec"), pObex);
}

}  // namespace
