// OBEX packets: opcodes and their fixed fields, header chains in all four
// encodings, headers whose length lies, unknown opcodes and headers, the
// format code and the rule check.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "serial/OBEX.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CAdvAnlzOBEXSpec;

struct SObexCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aFields;
    std::vector<unsigned short> aErrors;
    unsigned char nFormat;
};

void PrintTo(const SObexCase& c, std::ostream* os)
{
    *os << c.pszName;
}

class OBEXPackets : public ::testing::TestWithParam<SObexCase> {};

TEST_P(OBEXPackets, DecodesFieldsFormatAndFindings)
{
    const SObexCase& c = GetParam();
    COBEXPacket packet;
    const int nResult = packet.RestructBy(Hex(c.strHex));
    EXPECT_EQ(FieldsOf(packet), c.aFields);
    EXPECT_EQ(std::vector<unsigned short>(packet.GetPErrors().begin(), packet.GetPErrors().end()), c.aErrors);
    EXPECT_EQ(nResult, c.aErrors.empty() ? 1 : 0);
    EXPECT_EQ(packet.m_byPacketFormat, c.nFormat);
    // The decoder names and counts nothing.
    EXPECT_TRUE(packet.m_strRequestName.IsEmpty());
    EXPECT_EQ(packet.m_nRequestFields + packet.m_nResponseFields, 0);
}

std::string CaseName(const ::testing::TestParamInfo<SObexCase>& info)
{
    return info.param.pszName;
}

INSTANTIATE_TEST_SUITE_P(
    Opcodes, OBEXPackets,
    ::testing::Values(
        SObexCase{"Empty", "", {}, {53}, 0},
        SObexCase{"OpcodeAlone", "02", {{5000, 8, "02"}}, {}, 2},
        SObexCase{"InvalidOpcodeAlone", "05", {{5000, 8, "05"}}, {}, 95},
        SObexCase{"InvalidOpcode", "07 00 03 01", {{5000, 8, "07"}, {5013, 24, "000301"}}, {160}, 95},
        SObexCase{"ShortPacketLength", "02 00", {{5000, 8, "02"}, {5001, 8, "00"}}, {}, 2},
        SObexCase{"PutWithoutHeaders", "02 00 03", {{5000, 8, "02"}, {5001, 16, "0300"}}, {}, 2},
        SObexCase{"Get", "03 00 03", {{5000, 8, "03"}, {5001, 16, "0300"}}, {}, 3},
        SObexCase{"ReservedOpcode", "84 00 03 c0 00 00 00 01",
                  {{5000, 8, "84"}, {5001, 16, "0300"}, {5005, 8, "c0"}, {5008, 32, "00000001"}}, {160}, 132},
        SObexCase{"ValidOpcodeWithoutRule", "06 00 03", {{5000, 8, "06"}, {5001, 16, "0300"}}, {160}, 6},
        SObexCase{"Continue", "90 00 03", {{5000, 8, "90"}, {5001, 16, "0300"}}, {}, 144},
        SObexCase{"NotFoundWithHeaders", "c4 00 08 cb 00 00 00 01",
                  {{5000, 8, "c4"}, {5001, 16, "0800"}, {5005, 8, "cb"}, {5010, 32, "00000001"}}, {}, 196},
        SObexCase{"Abort", "ff 00 03 c0 00 00 00 01",
                  {{5000, 8, "ff"}, {5001, 16, "0300"}, {5005, 8, "c0"}, {5008, 32, "00000001"}}, {}, 255},
        // Headers behind a disconnect are read but not examined.
        SObexCase{"DisconnectHeadersUnexamined", "81 00 05 10 00",
                  {{5000, 8, "81"}, {5001, 16, "0500"}, {5005, 8, "10"}, {5013, 16, "1000"}}, {}, 129},
        SObexCase{"Connect", "80 00 07 10 00 20 00",
                  {{5000, 8, "80"}, {5001, 16, "0700"}, {5002, 8, "10"}, {5003, 8, "00"}, {5004, 16, "0020"}}, {},
                  128},
        SObexCase{"ConnectForbiddenFlagsAndSmallMaximum", "80 00 07 10 03 00 10",
                  {{5000, 8, "80"}, {5001, 16, "0700"}, {5002, 8, "10"}, {5003, 8, "03"}, {5004, 16, "1000"}},
                  {162, 163}, 128},
        SObexCase{"ConnectFlags07Pass", "80 00 07 10 07 20 00",
                  {{5000, 8, "80"}, {5001, 16, "0700"}, {5002, 8, "10"}, {5003, 8, "07"}, {5004, 16, "0020"}}, {},
                  128},
        SObexCase{"ConnectCut", "80 00 03 10", {{5000, 8, "80"}, {5001, 16, "0300"}, {5002, 8, "10"}},
                  {54, 55, 163}, 128},
        SObexCase{"ConnectWithHeader", "80 00 0c 10 00 20 00 cb 00 00 00 01",
                  {{5000, 8, "80"},
                   {5001, 16, "0c00"},
                   {5002, 8, "10"},
                   {5003, 8, "00"},
                   {5004, 16, "0020"},
                   {5005, 8, "cb"},
                   {5010, 32, "00000001"}},
                  {}, 128},
        SObexCase{"SuccessShort", "a0 00 03", {{5000, 8, "a0"}, {5001, 16, "0300"}}, {}, 160},
        SObexCase{"SuccessConnectForm", "a0 00 07 10 00 20 00",
                  {{5000, 8, "a0"}, {5001, 16, "0700"}, {5002, 8, "10"}, {5003, 8, "00"}, {5004, 16, "0020"}}, {},
                  160},
        SObexCase{"SuccessPlainForm", "a0 00 08 cb 00 00 00 01",
                  {{5000, 8, "a0"}, {5001, 16, "0800"}, {5005, 8, "cb"}, {5010, 32, "00000001"}}, {}, 160},
        // The walk reads a header with id 48; the check takes it for a
        // connect response.
        SObexCase{"SuccessUserDefinedFirst", "a0 00 07 30 00 20 00",
                  {{5000, 8, "a0"}, {5001, 16, "0700"}, {5005, 8, "30"}, {5006, 16, "2000"}, {5007, 8, "00"}},
                  {54, 55}, 160},
        SObexCase{"SetPath", "85 00 0c 02 00 01 00 07 00 41 00 00",
                  {{5000, 8, "85"},
                   {5001, 16, "0c00"},
                   {5011, 8, "02"},
                   {5012, 8, "00"},
                   {5005, 8, "01"},
                   {5006, 16, "0700"},
                   {5007, 32, "00410000"}},
                  {}, 133},
        SObexCase{"SetPathCut", "85 00 05 02", {{5000, 8, "85"}, {5001, 16, "0500"}, {5011, 8, "02"}}, {54, 55},
                  133}),
    CaseName);

INSTANTIATE_TEST_SUITE_P(
    Headers, OBEXPackets,
    ::testing::Values(
        SObexCase{"UnicodeAndByteSequence", "02 00 10 01 00 07 00 41 00 00 42 00 06 61 62 00",
                  {{5000, 8, "02"},
                   {5001, 16, "1000"},
                   {5005, 8, "01"},
                   {5006, 16, "0700"},
                   {5007, 32, "00410000"},
                   {5005, 8, "42"},
                   {5006, 16, "0600"},
                   {5007, 24, "616200"}},
                  {}, 2},
        // Of the 4-byte values only the object length is turned into a number.
        SObexCase{"FourByteValues", "82 00 17 c0 00 00 00 01 c3 00 00 00 49 c4 11 22 33 44 cb 00 00 00 07",
                  {{5000, 8, "82"},
                   {5001, 16, "1700"},
                   {5005, 8, "c0"},
                   {5008, 32, "00000001"},
                   {5005, 8, "c3"},
                   {5009, 32, "49000000"},
                   {5005, 8, "c4"},
                   {5007, 32, "11223344"},
                   {5005, 8, "cb"},
                   {5010, 32, "00000007"}},
                  {}, 130},
        SObexCase{"UserDefinedOneByte", "02 00 0a b0 7f c3 00 00 00 49",
                  {{5000, 8, "02"},
                   {5001, 16, "0a00"},
                   {5005, 8, "b0"},
                   {5006, 8, "7f"},
                   {5005, 8, "c3"},
                   {5009, 32, "49000000"}},
                  {}, 2},
        SObexCase{"UserDefinedFourBytes", "02 00 08 f0 01 02 03 04",
                  {{5000, 8, "02"}, {5001, 16, "0800"}, {5005, 8, "f0"}, {5007, 32, "01020304"}}, {}, 2},
        // The check stops at the first user-defined header.
        SObexCase{"CheckStopsAtUserDefined", "82 00 0b 30 00 05 11 22 cb 01 02 03 04",
                  {{5000, 8, "82"},
                   {5001, 16, "0b00"},
                   {5005, 8, "30"},
                   {5006, 16, "0500"},
                   {5007, 16, "1122"},
                   {5005, 8, "cb"},
                   {5010, 32, "01020304"}},
                  {}, 130},
        SObexCase{"UnknownHeader", "02 00 04 10",
                  {{5000, 8, "02"}, {5001, 16, "0400"}, {5005, 8, "10"}, {5013, 8, "10"}}, {54, 161}, 2},
        SObexCase{"UnknownHeaderTakesTheRest", "02 00 09 42 00 04 61 20 01 02",
                  {{5000, 8, "02"},
                   {5001, 16, "0900"},
                   {5005, 8, "42"},
                   {5006, 16, "0400"},
                   {5007, 8, "61"},
                   {5005, 8, "20"},
                   {5013, 24, "200102"}},
                  {54, 161}, 2},
        // Length 3: no data field, so the check loses step.
        SObexCase{"HeaderWithoutData", "02 00 0a 01 00 03 42 00 05 11 22",
                  {{5000, 8, "02"},
                   {5001, 16, "0a00"},
                   {5005, 8, "01"},
                   {5006, 16, "0300"},
                   {5005, 8, "42"},
                   {5006, 16, "0500"},
                   {5007, 16, "1122"}},
                  {54, 54}, 2},
        SObexCase{"LengthUnderThree", "02 00 09 01 00 02 aa bb cc dd",
                  {{5000, 8, "02"}, {5001, 16, "0900"}, {5005, 8, "01"}, {5006, 16, "0200"}, {5007, 32, "aabbccdd"}},
                  {}, 2},
        SObexCase{"LengthZero", "02 00 08 48 00 00 aa bb",
                  {{5000, 8, "02"}, {5001, 16, "0800"}, {5005, 8, "48"}, {5006, 16, "0000"}, {5007, 16, "aabb"}},
                  {}, 2},
        SObexCase{"LengthPastTheEnd", "02 00 08 48 00 ff aa",
                  {{5000, 8, "02"}, {5001, 16, "0800"}, {5005, 8, "48"}, {5006, 16, "ff00"}, {5007, 8, "aa"}}, {},
                  2},
        SObexCase{"CutAfterHeaderId", "02 00 04 48", {{5000, 8, "02"}, {5001, 16, "0400"}, {5005, 8, "48"}}, {}, 2},
        SObexCase{"CutInHeaderLength", "02 00 05 48 00",
                  {{5000, 8, "02"}, {5001, 16, "0500"}, {5005, 8, "48"}, {5006, 8, "00"}}, {}, 2},
        SObexCase{"CutInFourByteValue", "02 00 08 cb 00 01",
                  {{5000, 8, "02"}, {5001, 16, "0800"}, {5005, 8, "cb"}, {5010, 16, "0001"}}, {}, 2},
        SObexCase{"PacketLengthDisagrees", "02 00 ff 49 00 04 41",
                  {{5000, 8, "02"}, {5001, 16, "ff00"}, {5005, 8, "49"}, {5006, 16, "0400"}, {5007, 8, "41"}}, {},
                  2}),
    CaseName);

TEST(OBEXConnect, MaximumPacketLengthBounds)
{
    const struct {
        const char* pszMax;
        bool bSound;
    } aCases[] = {{"00 ff", true}, {"00 fe", false}, {"f9 ff", true}, {"fa 00", false}, {"ff ff", false}};
    for (const auto& c : aCases) {
        COBEXPacket packet;
        EXPECT_EQ(packet.RestructBy(Hex(std::string("80 00 07 10 00 ") + c.pszMax)), c.bSound ? 1 : 0) << c.pszMax;
    }
    // Every forbidden flags value, and a few allowed ones.
    for (unsigned nFlags = 0; nFlags < 256; ++nFlags) {
        const bool bForbidden = nFlags == 128 || nFlags == 129 || nFlags == 2 || nFlags == 130 || nFlags == 3 ||
                                nFlags == 131 || nFlags == 4 || nFlags == 132 || nFlags == 133 || nFlags == 255 ||
                                nFlags == 6 || nFlags == 16;
        CByteArray a = HexBytes("80 00 07 10 00 20 00");
        a[4] = static_cast<std::uint8_t>(nFlags);
        COBEXPacket packet(a);
        EXPECT_EQ(packet.GetPErrors().GetSize(), bForbidden ? 1 : 0) << nFlags;
    }
}

TEST(OBEXOpcodes, ValidOpcodesAndTheirChecks)
{
    int nValid = 0;
    for (unsigned n = 0; n < 256; ++n)
        nValid += Spec::IsValidOpCode(static_cast<std::uint8_t>(n)) ? 1 : 0;
    EXPECT_EQ(nValid, 88);
    for (unsigned n : {7u, 15u, 17u, 31u, 39u, 54u, 86u, 98u, 134u, 145u, 167u, 182u, 214u, 226u, 254u})
        EXPECT_FALSE(Spec::IsValidOpCode(static_cast<std::uint8_t>(n))) << n;

    // A response after a request in one packet: the second decode replaces
    // the first.
    COBEXPacket packet(HexBytes("02 00 08 cb 00 00 00 01"));
    EXPECT_EQ(packet.GetFieldCount(), 4);
    EXPECT_EQ(packet.RestructBy(Hex("a0 00 03")), 1);
    EXPECT_EQ(FieldsOf(packet), (std::vector<SFieldView>{{5000, 8, "a0"}, {5001, 16, "0300"}}));
    EXPECT_EQ(packet.m_byPacketFormat, 160);
}

TEST(OBEXCatalogue, OptionsFormatsAndFields)
{
    Spec* pSpec = Spec::GetInstance();
    const struct {
        unsigned short nId;
        std::uint8_t nValue;
        const char* pszName;
        const char* pszAbbr;
    } aOptions[] = {
        {5000, 128, "Connect", "Connect"},
        {5000, 16, "Used Reserved", "UsedReserved"},
        {5000, 7, "Unused Reserved", "UnUsedReserved"},
        {5000, 130, "Final Put", "FPut"},
        {5000, 133, "Set Path", "SetPath"},
        {5000, 143, "UnKnown", "UnKnown"},
        {5000, 1, "Unknown", "Unknown"},
        {5000, 193, "UnAuthorized", "Un Authorized"},
        {5000, 212, "Gateway Time Out", "Gateway TimeOut"},
        {5000, 35, "Endof Non Authoriritative", "Endof NonAuthoriritative"},
        {5000, 66, "Endof Payment required", "Endof Payment required"},
        {5000, 72, "Endof Reqe sttimeout", "Endof Reqesttimeout"},
        {5000, 97, "Endof Database Locked", "Endof DatabaseLocked"},
        {5000, 226, "UnKnown", "UnKnown"},
        {5005, 192, "HI Count", "Cnt"},
        {5005, 79, "HI ObjectClass", "ObjCls"},
        {5005, 32, "HI Reserved", "Reserved"},
        {5005, 50, "HI UserDefined", "UserDef"},
        {5005, 2, "UnKnown", "UnKnown"},
        {5005, 248, "UnKnown", "UnKnown"},
    };
    for (const auto& c : aOptions) {
        const CAdvAnlzData value(c.nValue, 8);
        EXPECT_EQ(pSpec->GetFieldOptionName(c.nId, value), c.pszName) << c.nId << " " << int(c.nValue);
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(c.nId, value), c.pszAbbr) << c.nId << " " << int(c.nValue);
    }
    EXPECT_EQ(pSpec->GetFieldOptions(5000)->GetSize(), 104);
    EXPECT_EQ(pSpec->GetFieldOptions(5005)->GetSize(), 40);

    ASSERT_EQ(pSpec->GetFormatCount(), 75);
    const struct {
        int nIndex;
        unsigned char nCode;
        const char* pszName;
    } aFormats[] = {{0, 128, "Req_connect"},       {7, 6, "Req_reserved"},     {17, 16, "Req_user definable"},
                    {32, 31, "Req_user definable"}, {35, 132, "Req_reserved"},  {36, 0, "Resp_reserved"},
                    {45, 176, "Resp_multiplechoice"}, {67, 208, "Resp_internalservererror"},
                    {74, 97, "Resp_databaselocked"}};
    for (const auto& c : aFormats) {
        unsigned char nCode = 0;
        CString strName;
        ASSERT_TRUE(pSpec->GetFormat(c.nIndex, nCode, strName)) << c.nIndex;
        EXPECT_EQ(nCode, c.nCode) << c.nIndex;
        EXPECT_EQ(strName, c.pszName) << c.nIndex;
    }

    ASSERT_EQ(pSpec->GetNumberOfLayerFields(), 14);
    EXPECT_EQ(pSpec->GetLayerFieldId(13), 5013);
    EXPECT_EQ(pSpec->GetLayerFieldName(5008), "Objects to be sent");
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(5008)->m_strAbbr, "COUNT_OBGECTS");
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(5013)->m_dwLength, 65535u);
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(4999), nullptr);
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(5014), nullptr);
}

TEST(OBEXPacket, CopyAndAssignment)
{
    const COBEXPacket packet(HexBytes("80 00 07 10 03 00 10"));
    EXPECT_EQ(COBEXPacket(packet).GetFieldCount(), 0);
    COBEXPacket assigned;
    assigned = packet;
    EXPECT_EQ(FieldsOf(assigned), FieldsOf(packet));
    EXPECT_EQ(assigned.GetPErrors().GetSize(), 2);
    EXPECT_EQ(assigned.m_byPacketFormat, 128);
    EXPECT_EQ(assigned.GetSpec(), Spec::GetInstance());
    EXPECT_STREQ(assigned.GetRuntimeClass()->m_lpszClassName, "COBEXPacket");
}

}  // namespace
