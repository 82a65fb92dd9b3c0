// SCSI commands: every command block, the data behind it, the fallback for
// codes without a reader, option and format lists, and random payloads.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "storage/SCSIProtocol.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CSCSIProtocolSpec;

std::string Repeat(const char* pszByte, int nCount)
{
    std::string s;
    for (int i = 0; i < nCount; ++i)
        s += pszByte;
    return s;
}

struct SCommandCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aFields;
    int nRequestFields;
    int nResponseFields;
    int bHasResponse;
    const char* pszRequestName;
    const char* pszResponseName;
};

class SCSICommand : public ::testing::TestWithParam<SCommandCase> {};

TEST_P(SCSICommand, DecodesFieldsCountsAndNames)
{
    const SCommandCase& c = GetParam();
    CSCSIProtocolPacket packet(Hex(c.strHex));
    EXPECT_EQ(FieldsOf(packet), c.aFields);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, c.nResponseFields);
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequestName);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponseName);
}

const std::vector<SFieldView> kBufferBlock = {{22020, 4, "02"}, {22001, 4, "00"}, {22021, 8, "05"},
                                              {22022, 24, "020100"}, {22007, 24, "080000"}, {22003, 8, "00"}};

std::vector<SFieldView> Join(std::vector<SFieldView> a, const std::vector<SFieldView>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::vector<SFieldView> Release10Block(const char* pszOp, const char* pszLongId, const char* pszThirdPty,
                                       const char* pszListLength)
{
    return {{22000, 8, pszOp},       {22026, 1, "00"},          {22027, 1, pszLongId},   {22001, 2, "00"},
            {22028, 1, pszThirdPty}, {22001, 3, "00"},          {22026, 8, "00"},        {22029, 8, "07"},
            {22001, 24, "000000"},   {22002, 16, pszListLength}, {22003, 8, "00"}};
}

// Blocks without data, and blocks whose data step does not run.
INSTANTIATE_TEST_SUITE_P(
    Blocks, SCSICommand,
    ::testing::Values(
        SCommandCase{"TestUnitReady", "00 11223344 55", {{22000, 8, "00"}, {22001, 32, "11223344"}, {22003, 8, "55"}},
                     3, 0, 0, "TEST UNIT READY", ""},
        // The rest of the block is still added, empty.
        SCommandCase{"TestUnitReadyCut", "00", {{22000, 8, "00"}, {22001, 0, ""}, {22003, 0, ""}}, 3, 0, 0,
                     "TEST UNIT READY", ""},
        SCommandCase{"Receive", "08 aa 010203 c4",
                     {{22000, 8, "08"}, {22001, 8, "aa"}, {22036, 24, "030201"}, {22003, 8, "c4"}}, 4, 0, 0,
                     "RECEIVE", ""},
        SCommandCase{"SendWithoutData", "0a 81 000000 00",
                     {{22000, 8, "0a"}, {22035, 1, "01"}, {22001, 7, "40"}, {22036, 24, "000000"}, {22003, 8, "00"}},
                     5, 0, 0, "SEND", ""},
        SCommandCase{"InquiryVitalProductData", "12 01 80 00 ff 00 0102",
                     {{22000, 8, "12"}, {22004, 1, "01"}, {22005, 1, "00"}, {22001, 6, "00"}, {22006, 8, "80"},
                      {22001, 8, "00"}, {22007, 8, "ff"}, {22003, 8, "00"}},
                     8, 0, 0, "INQUIRY", ""},
        SCommandCase{"InquiryCommandSupportData", "12 02 00 00 24 00",
                     {{22000, 8, "12"}, {22004, 1, "00"}, {22005, 1, "01"}, {22001, 6, "00"}, {22006, 8, "00"},
                      {22001, 8, "00"}, {22007, 8, "24"}, {22003, 8, "00"}},
                     8, 0, 0, "INQUIRY", ""},
        // The 19 reserved bits straddle three bytes; the mode page stays unread.
        SCommandCase{"ModeSelect6", "15 11 ab 00 18 00 0102",
                     {{22000, 8, "15"}, {22008, 1, "01"}, {22001, 3, "00"}, {22013, 1, "01"}, {22001, 19, "580500"},
                      {22002, 8, "18"}, {22003, 8, "00"}},
                     7, 0, 0, "MODE SELECT(6)", ""},
        SCommandCase{"Reserve6", "16 ff 123456 07",
                     {{22000, 8, "16"}, {22026, 5, "1f"}, {22001, 3, "07"}, {22026, 24, "123456"}, {22003, 8, "07"}},
                     5, 0, 0, "RESERVE(6)", ""},
        SCommandCase{"Release6", "17 e2 99 0000 00",
                     {{22000, 8, "17"}, {22026, 5, "02"}, {22001, 3, "07"}, {22026, 8, "99"}, {22001, 16, "0000"},
                      {22003, 8, "00"}},
                     6, 0, 0, "RELEASE(6)", ""},
        SCommandCase{"ModeSense6", "1a 08 7f 00 fc 00",
                     {{22000, 8, "1a"}, {22001, 3, "00"}, {22014, 1, "01"}, {22001, 4, "00"}, {22012, 6, "3f"},
                      {22010, 2, "01"}, {22001, 8, "00"}, {22007, 8, "fc"}, {22003, 8, "00"}},
                     9, 0, 0, "MODE SENSE(6)", ""},
        SCommandCase{"ReceiveDiagnosticResults", "1c 01 2a 0100 00",
                     {{22000, 8, "1c"}, {22025, 1, "01"}, {22001, 7, "00"}, {22012, 8, "2a"}, {22007, 16, "0001"},
                      {22003, 8, "00"}},
                     6, 0, 0, "DIAGNOSTIC RESULT", ""},
        SCommandCase{"SendDiagnostic", "1d 94 00 0010 00",
                     {{22000, 8, "1d"}, {22031, 1, "00"}, {22034, 1, "00"}, {22033, 1, "01"}, {22001, 1, "00"},
                      {22013, 1, "01"}, {22032, 3, "04"}, {22001, 8, "00"}, {22002, 16, "1000"}, {22003, 8, "00"}},
                     10, 0, 0, "SEND DIAGNOSTIC", ""},
        SCommandCase{"PreventAllowMediumRemoval", "1e 000000 03 00",
                     {{22000, 8, "1e"}, {22001, 24, "000000"}, {22023, 2, "03"}, {22001, 6, "00"}, {22003, 8, "00"}},
                     5, 0, 0, "PREVENT ALLOW MEDIUM REMOVAL", ""},
        SCommandCase{"WriteBuffer", "3b 02 05 000102 000008 00 ff",
                     Join({{22000, 8, "3b"}}, kBufferBlock), 7, 0, 0, "WRITE BUFFER", ""},
        // A data mode has no header to read, but the response is announced.
        SCommandCase{"ReadBufferDataMode", "3c 02 05 000102 000008 00 ff",
                     Join({{22000, 8, "3c"}}, kBufferBlock), 7, 0, 1, "READ BUFFER", "Read Buffer Data"},
        SCommandCase{"LogSelect", "4c 03 40 00000000 0020 00",
                     {{22000, 8, "4c"}, {22008, 1, "01"}, {22009, 1, "01"}, {22001, 12, "0000"}, {22010, 2, "01"},
                      {22001, 32, "00000000"}, {22002, 16, "2000"}, {22003, 8, "00"}},
                     8, 0, 0, "LOG SELECT", ""},
        SCommandCase{"LogSense", "4d 01 4d 0000 1234 00ff 00",
                     {{22000, 8, "4d"}, {22008, 1, "01"}, {22011, 1, "00"}, {22001, 6, "00"}, {22012, 6, "0d"},
                      {22010, 2, "01"}, {22001, 16, "0000"}, {22016, 16, "3412"}, {22007, 16, "ff00"},
                      {22003, 8, "00"}},
                     10, 0, 0, "LOG SENSE", ""},
        SCommandCase{"ModeSelect10", "55 10 0000000000 0100 00",
                     {{22000, 8, "55"}, {22008, 1, "00"}, {22001, 3, "00"}, {22013, 1, "01"},
                      {22001, 43, "000000000000"}, {22002, 16, "0001"}, {22003, 8, "00"}},
                     7, 0, 0, "MODE SELECT(10)", ""},
        SCommandCase{"Release10", "57 00 00 07 000000 0000 00", Release10Block("57", "00", "00", "0000"), 11, 0, 1,
                     "RELEASE(10)", "Release 10 Parameter List"},
        // RELEASE(10) reads the device id for a third-party release only.
        SCommandCase{"Release10LongIdOnly", "57 02 00 07 000000 0008 00 1122334455667788",
                     Release10Block("57", "01", "00", "0800"), 11, 0, 1, "RELEASE(10)", "Release 10 Parameter List"},
        SCommandCase{"Release10ThirdPartyWithoutList", "57 10 00 07 000000 0000 00",
                     Join(Release10Block("57", "00", "01", "0000"), {{22060, 0, ""}}), 12, 0, 1, "RELEASE(10)",
                     "Release 10 Parameter List"},
        // The device id is a request field: no response fields.
        SCommandCase{"Reserve10LongId", "56 02 00 07 000000 0008 00 1122334455667788",
                     Join(Release10Block("56", "01", "00", "0800"), {{22060, 64, "1122334455667788"}}), 12, 0, 1,
                     "RESERVE(10)", "Reserve 10 Parameter List"},
        SCommandCase{"ModeSense10", "5a 18 3f 00000000 00ff 00",
                     {{22000, 8, "5a"}, {22001, 3, "00"}, {22014, 1, "01"}, {22015, 1, "01"}, {22001, 3, "00"},
                      {22012, 6, "3f"}, {22010, 2, "00"}, {22001, 32, "00000000"}, {22007, 16, "ff00"},
                      {22003, 8, "00"}},
                     10, 0, 0, "MODE SNSE(10)", ""},
        SCommandCase{"PersistentReserveInOtherAction", "5e 02 0000000000 0010 00",
                     {{22000, 8, "5e"}, {22017, 5, "02"}, {22001, 43, "000000000000"}, {22007, 16, "1000"},
                      {22003, 8, "00"}},
                     5, 0, 1, "PERSISTENT RESERVE IN", "Persistent Reserve in Parameter Data"},
        SCommandCase{"ReceiveCopyResultsOtherAction", "84 02 07 00000000000000 00001000 00 00",
                     {{22000, 8, "84"}, {22017, 5, "02"}, {22001, 3, "00"}, {22024, 8, "07"},
                      {22001, 56, "00000000000000"}, {22007, 32, "00100000"}, {22001, 8, "00"}, {22003, 8, "00"}},
                     8, 0, 1, "RECEIVE COPY RESULTS", ""},
        // The identifier travels with the command: a request field.
        SCommandCase{"SetDeviceIdentifier", "a4 000000 0000 00000003 00 00 aabbcc",
                     {{22000, 8, "a4"}, {22017, 5, "00"}, {22001, 19, "000000"}, {22030, 16, "0000"},
                      {22002, 32, "03000000"}, {22001, 1, "00"}, {22030, 1, "00"}, {22001, 6, "00"},
                      {22003, 8, "00"}, {22049, 24, "aabbcc"}},
                     10, 0, 0, "SET DEVICE IDENTIFIER", ""},
        // Codes without a reader: the data field starts with the byte that
        // the length field shows.
        SCommandCase{"UnknownCode", "ff 010203", {{22000, 8, "ff"}, {22138, 8, "01"}, {22139, 24, "010203"}}, 3, 0,
                     0, "Unknown", ""},
        SCommandCase{"NamedCodeWithoutReader", "47 aa", {{22000, 8, "47"}, {22138, 8, "aa"}, {22139, 8, "aa"}}, 3,
                     0, 0, "Unknown", ""},
        SCommandCase{"UnknownCodeAlone", "b4", {{22000, 8, "b4"}, {22138, 0, ""}, {22139, 0, ""}}, 3, 0, 0,
                     "Unknown", ""},
        SCommandCase{"Empty", "", {}, 0, 0, 0, "", ""}),
    [](const ::testing::TestParamInfo<SCommandCase>& info) { return std::string(info.param.pszName); });

const std::vector<SFieldView> kInquiryBlock4 = {{22000, 8, "12"}, {22004, 1, "00"}, {22005, 1, "00"},
                                                {22001, 6, "00"}, {22006, 8, "00"}, {22001, 8, "00"},
                                                {22007, 8, "04"}, {22003, 8, "00"}};
const std::vector<SFieldView> kRequestSenseBlock = {
    {22000, 8, "03"}, {22001, 24, "000000"}, {22007, 8, "12"}, {22003, 8, "00"}};
const std::vector<SFieldView> kSenseHead = {
    {22095, 7, "70"}, {22096, 1, "01"},         {22072, 8, "00"},         {22097, 4, "05"},
    {22063, 1, "00"}, {22098, 1, "01"},         {22099, 1, "00"},         {22100, 1, "00"},
    {22101, 32, "04030201"}, {22102, 8, "0a"}, {22103, 32, "00000000"}, {22104, 8, "24"},
    {22105, 8, "00"}, {22106, 8, "00"}};
const char* const kSenseHeadHex = "f0 00 25 01020304 0a 00000000 24 00 00";
const std::vector<SFieldView> kPersistentReserveInBlock = {
    {22000, 8, "5e"}, {22017, 5, "00"}, {22001, 43, "000000000000"}, {22007, 16, "2000"}, {22003, 8, "00"}};
const std::vector<SFieldView> kReadBufferBlock = {{22000, 8, "3c"}, {22020, 4, "00"}, {22001, 4, "00"},
                                                  {22021, 8, "00"}, {22022, 24, "000000"}, {22007, 24, "040000"},
                                                  {22003, 8, "00"}};
std::vector<SFieldView> CopyResultsBlock(const char* pszAction)
{
    return {{22000, 8, "84"}, {22017, 5, pszAction}, {22001, 3, "00"}, {22024, 8, "00"},
            {22001, 56, "00000000000000"}, {22007, 32, "00000000"}, {22001, 8, "00"}, {22003, 8, "00"}};
}
const std::vector<SFieldView> kReportLunsBlock = {
    {22000, 8, "a0"}, {22001, 40, "0000000000"}, {22007, 32, "00010000"}, {22001, 8, "00"}, {22003, 8, "00"}};

// Blocks followed by their data.
INSTANTIATE_TEST_SUITE_P(
    DataPhase, SCSICommand,
    ::testing::Values(
        SCommandCase{"InquiryAllocation4", "12 00 00 00 04 00 05 80 02 02 ffff",
                     Join(kInquiryBlock4, {{22061, 5, "05"}, {22062, 3, "00"}, {22063, 7, "00"}, {22067, 1, "01"},
                                           {22068, 8, "02"}, {22069, 4, "02"}, {22070, 1, "00"}, {22071, 1, "00"},
                                           {22072, 1, "00"}, {22073, 1, "00"}}),
                     8, 10, 1, "INQUIRY", "Standard Inquiry Data"},
        // The sense-key specific value is 15 bits with SKSV taken out of its
        // middle; additional length 10 wraps and takes all that is left.
        SCommandCase{"SenseData", std::string("03 000000 12 00") + kSenseHeadHex + "c0 02 abcd",
                     Join(Join(kRequestSenseBlock, kSenseHead),
                          {{22107, 15, "4001"}, {22108, 1, "01"}, {22109, 16, "abcd"}}),
                     4, 17, 1, "REQUEST SENSE", "Sense Data"},
        // Cut inside the sense-key specific bytes: the sense data ends.
        SCommandCase{"SenseDataCutInSenseKeySpecific", std::string("03 000000 12 00") + kSenseHeadHex + "c0",
                     Join(kRequestSenseBlock, kSenseHead), 4, 14, 1, "REQUEST SENSE", "Sense Data"},
        SCommandCase{"SenseDataOnlyBlock", "03 000000 12 00",
                     Join(kRequestSenseBlock,
                          {{22095, 0, ""}, {22096, 0, ""}, {22072, 0, ""}, {22097, 0, ""}, {22063, 0, ""},
                           {22098, 0, ""}, {22099, 0, ""}, {22100, 0, ""}, {22101, 0, ""}, {22102, 0, ""},
                           {22103, 0, ""}, {22104, 0, ""}, {22105, 0, ""}, {22106, 0, ""}}),
                     4, 14, 1, "REQUEST SENSE", "Sense Data"},
        SCommandCase{"SendData", "0a 00 00000e 00 80 0000 0102030405060708 70 71 72",
                     {{22000, 8, "0a"}, {22035, 1, "00"}, {22001, 7, "00"}, {22036, 24, "0e0000"}, {22003, 8, "00"},
                      {22063, 7, "00"}, {22064, 1, "01"}, {22063, 16, "0000"}, {22065, 64, "0807060504030201"},
                      {22066, 8, "70"}, {22066, 8, "71"}},
                     5, 6, 1, "SEND", "Send Data"},
        SCommandCase{"ExtendedCopyTwoTargets",
                     "83 000000000000000000 0000005a 00 00 01 2b 0040 00000000 00000004 00000002" +
                         Repeat("11", 32) + Repeat("22", 32) + "a1a2a3a4 b1b2",
                     {{22000, 8, "83"}, {22001, 72, "000000000000000000"}, {22002, 32, "5a000000"},
                      {22001, 8, "00"}, {22003, 8, "00"}, {22037, 8, "01"}, {22038, 3, "03"}, {22039, 1, "01"},
                      {22040, 1, "00"}, {22041, 1, "01"}, {22039, 2, "00"}, {22042, 16, "4000"},
                      {22039, 32, "00000000"}, {22043, 32, "04000000"}, {22044, 32, "02000000"},
                      {22045, 256, Repeat("11", 32)}, {22045, 256, Repeat("22", 32)}, {22046, 32, "a1a2a3a4"},
                      {22047, 16, "b1b2"}},
                     5, 14, 1, "EXTENDED COPY", "Extended Copy Parameter List"},
        // Two descriptors promised, the payload ends inside the first.
        SCommandCase{"ExtendedCopyCut",
                     "83 000000000000000000 00000000 00 00 01 00 0040 00000000 00000000 00000000 1111",
                     {{22000, 8, "83"}, {22001, 72, "000000000000000000"}, {22002, 32, "00000000"},
                      {22001, 8, "00"}, {22003, 8, "00"}, {22037, 8, "01"}, {22038, 3, "00"}, {22039, 1, "00"},
                      {22040, 1, "00"}, {22041, 1, "00"}, {22039, 2, "00"}, {22042, 16, "4000"},
                      {22039, 32, "00000000"}, {22043, 32, "00000000"}, {22044, 32, "00000000"},
                      {22045, 16, "1111"}, {22046, 0, ""}, {22047, 0, ""}},
                     5, 13, 1, "EXTENDED COPY", "Extended Copy Parameter List"},
        SCommandCase{"ReadKeys", "5e 00 0000000000 0020 00 00000007 00000010 0102030405060708 1112131415161718",
                     Join(kPersistentReserveInBlock, {{22050, 32, "07000000"}, {22051, 32, "10000000"},
                                                      {22018, 64, "0807060504030201"},
                                                      {22018, 64, "1817161514131211"}}),
                     5, 4, 1, "PERSISTENT RESERVE IN", "Persistent Reserve in Parameter Data"},
        // Four keys promised, one and a half there.
        SCommandCase{"ReadKeysCut", "5e 00 0000000000 0020 00 00000007 00000020 0102030405060708 11121314",
                     Join(kPersistentReserveInBlock, {{22050, 32, "07000000"}, {22051, 32, "20000000"},
                                                      {22018, 64, "0807060504030201"}, {22018, 32, "14131211"}}),
                     5, 4, 1, "PERSISTENT RESERVE IN", "Persistent Reserve in Parameter Data"},
        SCommandCase{"ReservationKeys", "5e 01 0000000000 0020 00 00000007 00000002 abcd",
                     {{22000, 8, "5e"}, {22017, 5, "01"}, {22001, 43, "000000000000"}, {22007, 16, "2000"},
                      {22003, 8, "00"}, {22050, 32, "07000000"}, {22051, 32, "02000000"}, {22018, 16, "cdab"}},
                     5, 3, 1, "PERSISTENT RESERVE IN", "Persistent Reserve in Parameter Data"},
        // A zero length reads the field's default four bits.
        SCommandCase{"ReservationKeysZeroLength", "5e 01 0000000000 0020 00 00000007 00000000 ab",
                     {{22000, 8, "5e"}, {22017, 5, "01"}, {22001, 43, "000000000000"}, {22007, 16, "2000"},
                      {22003, 8, "00"}, {22050, 32, "07000000"}, {22051, 32, "00000000"}, {22018, 4, "0b"}},
                     5, 3, 1, "PERSISTENT RESERVE IN", "Persistent Reserve in Parameter Data"},
        SCommandCase{"PersistentReserveOut",
                     "5f 00 00 00000000 0018 00 0102030405060708 1112131415161718 21222324 01 00 0005",
                     {{22000, 8, "5f"}, {22017, 5, "00"}, {22001, 3, "00"}, {22018, 4, "00"}, {22019, 4, "00"},
                      {22001, 32, "00000000"}, {22002, 16, "1800"}, {22003, 8, "00"},
                      {22052, 64, "0807060504030201"}, {22053, 64, "1817161514131211"}, {22054, 32, "24232221"},
                      {22055, 1, "01"}, {22056, 15, "0000"}, {22057, 16, "0500"}},
                     8, 6, 1, "PERSISTENT RESERVE OUT", "Persistent Reserve Out Parameter List"},
        SCommandCase{"ReadBufferCombinedHeader", "3c 00 00 000000 000004 00 aa010203",
                     Join(kReadBufferBlock, {{22110, 8, "aa"}, {22111, 24, "030201"}}), 7, 2, 1, "READ BUFFER",
                     "Read Buffer Data"},
        SCommandCase{"ReadBufferDescriptor", "3c 03 00 000000 000004 00 04010203",
                     {{22000, 8, "3c"}, {22020, 4, "03"}, {22001, 4, "00"}, {22021, 8, "00"}, {22022, 24, "000000"},
                      {22007, 24, "040000"}, {22003, 8, "00"}, {22112, 8, "04"}, {22111, 24, "030201"}},
                     7, 2, 1, "READ BUFFER", "Read Buffer Data"},
        // 12-bit capacity split around four reserved bits.
        SCommandCase{"ReadBufferEchoDescriptor", "3c 0b 00 000000 000004 00 ff000000 b4 03 00",
                     {{22000, 8, "3c"}, {22020, 4, "0b"}, {22001, 4, "00"}, {22021, 8, "00"}, {22022, 24, "000000"},
                      {22007, 24, "040000"}, {22003, 8, "00"}, {22113, 1, "01"}, {22112, 8, "7f"},
                      {22111, 24, "000000"}, {22111, 12, "1a00"}, {22110, 4, "0d"}},
                     7, 5, 1, "READ BUFFER", "Read Buffer Data"},
        SCommandCase{"CopyStatus", "84 00 00 00000000000000 00000000 00 00 00000008 83 0002 01 00001000",
                     Join(CopyResultsBlock("00"), {{22114, 32, "08000000"}, {22115, 7, "03"}, {22116, 1, "01"},
                                                   {22117, 16, "0200"}, {22118, 8, "01"}, {22119, 32, "00100000"}}),
                     8, 6, 1, "RECEIVE COPY RESULTS", "Copy Status"},
        SCommandCase{"CopyReceiveData", "84 01 00 00000000000000 00000000 00 00 00000002 aabb cc",
                     Join(CopyResultsBlock("01"), {{22114, 32, "02000000"}, {22120, 16, "aabb"}}), 8, 2, 1,
                     "RECEIVE COPY RESULTS", "Receive Data"},
        // The maximum stream device transfer size stands twice.
        SCommandCase{"CopyOperatingParameters",
                     "84 03 00 00000000000000 00000000 00 00 00000000 00000000 0005 0006 00000000 00000000 00000000 "
                     "00000000 00000001 00000002 00000000 01 02 03 04 000000 02 02e0",
                     Join(CopyResultsBlock("03"),
                          {{22114, 32, "00000000"}, {22121, 32, "00000000"}, {22122, 16, "0500"}, {22123, 16, "0600"},
                           {22124, 32, "00000000"}, {22125, 32, "00000000"}, {22126, 32, "00000000"},
                           {22127, 32, "00000000"}, {22128, 32, "01000000"}, {22128, 32, "02000000"},
                           {22121, 32, "00000000"}, {22129, 8, "01"}, {22130, 8, "02"}, {22131, 8, "03"},
                           {22132, 8, "04"}, {22121, 24, "000000"}, {22133, 8, "02"}, {22134, 16, "02e0"}}),
                     8, 18, 1, "RECEIVE COPY RESULTS", "Operating Parameters"},
        SCommandCase{"CopyFailedSegmentDetails",
                     "84 04 00 00000000000000 00000000 00 00 00000000" + Repeat("00", 52) + "02 00 0003 700005",
                     Join(CopyResultsBlock("04"), {{22114, 32, "00000000"}, {22121, 416, Repeat("00", 52)},
                                                   {22135, 8, "02"}, {22121, 8, "00"}, {22136, 16, "0300"},
                                                   {22137, 24, "700005"}}),
                     8, 6, 1, "RECEIVE COPY RESULTS", "Failed Segment Details"},
        SCommandCase{"ReportLuns", "a0 0000000000 00000100 00 00 00000010 00000000 0001000000000000 0002000000000000",
                     Join(kReportLunsBlock, {{22058, 32, "10000000"}, {22056, 32, "00000000"},
                                             {22059, 64, "0001000000000000"}, {22059, 64, "0002000000000000"}}),
                     5, 4, 1, "REPORT LUNS", "Report Luns Parameter List"},
        SCommandCase{"ReportLunsShortList", "a0 0000000000 00000100 00 00 00000007 00000000 0001000000000000",
                     Join(kReportLunsBlock, {{22058, 32, "07000000"}, {22056, 32, "00000000"}}), 5, 2, 1,
                     "REPORT LUNS", "Report Luns Parameter List"},
        SCommandCase{"ReportDeviceIdentifier", "a3 000000 0000 00000000 00 00 00000003 aabbcc",
                     {{22000, 8, "a3"}, {22017, 5, "00"}, {22001, 19, "000000"}, {22030, 16, "0000"},
                      {22007, 32, "00000000"}, {22001, 1, "00"}, {22030, 1, "00"}, {22001, 6, "00"},
                      {22003, 8, "00"}, {22048, 32, "03000000"}, {22049, 24, "aabbcc"}},
                     9, 2, 1, "REPORT DEVICE IDENTIFIER", "Report Device Identifier Parameter List"}),
    [](const ::testing::TestParamInfo<SCommandCase>& info) { return std::string(info.param.pszName); });

// Longer inquiry data, checked by field ids and widths.
TEST(SCSIInquiry, AllocationLengthSelectsHowFarTheDataGoes)
{
    const std::vector<unsigned short> aHead = {22061, 22062, 22063, 22067, 22068, 22069, 22070, 22071, 22072,
                                               22073, 22074, 22063, 22075, 22076, 22072, 22072, 22077, 22078,
                                               22079, 22080, 22081, 22079, 22082, 22072, 22083, 22084, 22085,
                                               22072, 22086, 22087, 22088, 22089};
    std::vector<unsigned short> aLong = aHead;
    for (unsigned short nId : {22090, 22091, 22092, 22093, 22063})
        aLong.push_back(nId);
    aLong.insert(aLong.end(), 8, 22094);
    aLong.push_back(22063);
    aLong.push_back(22090);

    // Additional length 91: a full 96-byte answer; vendor id "ABCDEFGH".
    const std::string strData = "000004025b000000" "4142434445464748" + Repeat("00", 80);
    struct {
        const char* pszAllocation;
        std::size_t nDataBytes;
        const std::vector<unsigned short>& aIds;
        std::uint32_t nLastBits;
    } const aCases[] = {
        {"24", 36, aHead, 32},
        {"60", 96, aLong, 0},  // nothing is left for the vendor-specific rest
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.pszAllocation);
        CSCSIProtocolPacket packet(
            Hex(std::string("12000000") + c.pszAllocation + "00" + strData.substr(0, c.nDataBytes * 2)));
        std::vector<unsigned short> aIds = IdsOf(packet);
        ASSERT_EQ(aIds.size(), 8 + c.aIds.size());
        EXPECT_EQ(std::vector<unsigned short>(aIds.begin() + 8, aIds.end()), c.aIds);
        EXPECT_EQ(packet.m_nResponseFields, c.aIds.size());
        EXPECT_EQ(packet.GetPacketLength(), (6 + c.nDataBytes) * 8);
        const std::vector<SFieldView> aFields = FieldsOf(packet);
        EXPECT_EQ(aFields[8 + 29], (SFieldView{22087, 64, "4847464544434241"}));
        EXPECT_EQ(aFields.back().nBits, c.nLastBits);
    }
}

TEST(SCSIInquiry, VendorSpecificRestFollowsTheAdditionalLength)
{
    // The rest is additional length * 8 - 32 bits: 4 gives 0, so the
    // catalogue's 160 bits; 3 wraps and takes everything.
    const std::string strHead = "12 00 00 00 ff 00 00 00 04 02";
    for (const auto& c : {std::make_pair("04", 160u), std::make_pair("03", 24u * 8), std::make_pair("5f", 24u * 8),
                          std::make_pair("1b", 24u * 8 - 8)}) {
        SCOPED_TRACE(c.first);
        CSCSIProtocolPacket packet(Hex(strHead + c.first + Repeat("00", 91) + Repeat("ee", 24)));
        const std::vector<SFieldView> aFields = FieldsOf(packet);
        EXPECT_EQ(aFields.back().nId, 22090);
        EXPECT_EQ(aFields.back().nBits, c.second);
    }
}

TEST(SCSISenseData, AdditionalSenseBytesFollowTheAdditionalLength)
{
    struct {
        const char* pszLength;
        const char* pszRest;
        SFieldView last;
    } const aCases[] = {
        {"0a", "abcd", {22109, 16, "abcd"}},   // under 11: wraps, takes all
        {"00", "ab", {22109, 8, "ab"}},        // wraps as well
        {"0b", "abcd", {22109, 8, "ab"}},      // 0 bits: the default 8
        {"0d", "abcdef01", {22109, 16, "abcd"}},
        {"0a", "", {22109, 0, ""}},            // nothing left
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.pszLength);
        CSCSIProtocolPacket packet(Hex(std::string("03 000000 12 00 f0 00 25 01020304") + c.pszLength +
                                       "00000000 24 00 00 c0 02" + c.pszRest));
        EXPECT_EQ(FieldsOf(packet).back(), c.last);
    }
}

TEST(SCSISenseData, SplitValuesKeepTheirTableLengthAndPointAtTheirBit)
{
    const struct {
        const char* pszHex;
        unsigned short nValueId, nBitId;
        std::uint32_t nValueBits, nHigh;
    } aCases[] = {
        {"03 000000 12 00 f0 00 25 01020304 0a 00000000 24 00 00 c0 02", 22107, 22108, 15, 8},
        {"3c 0b 00 000000 000004 00 ff000000 b4 03 00", 22111, 22110, 12, 8},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.pszHex);
        CSCSIProtocolPacket packet(Hex(c.pszHex));
        CByteArray aValue, aBit;
        packet.GetFieldIndex(c.nValueId, aValue);
        packet.GetFieldIndex(c.nBitId, aBit);
        const SSpecFieldAttr* pValue = packet.GetFieldAttr(aValue[aValue.GetSize() - 1]);
        const SSpecFieldAttr* pBit = packet.GetFieldAttr(aBit[aBit.GetSize() - 1]);
        EXPECT_EQ(pValue->m_dwLength, 8u);
        EXPECT_EQ(pBit->m_dwLength, pBit->m_nId == 22108 ? 1u : 8u);
        EXPECT_EQ(pBit->m_dwOffset, pValue->m_dwOffset + c.nValueBits - c.nHigh);
    }
}

TEST(SCSIProtocol, EveryBlockConsumesItsCommandLength)
{
    Spec* pSpec = Spec::GetInstance();
    int nBlocks = 0;
    for (int nOp = 0; nOp < 256; ++nOp) {
        SCOPED_TRACE(nOp);
        const unsigned char nLength = pSpec->GetCommandLength(static_cast<unsigned char>(nOp));
        CSCSIProtocolPacket packet;
        EXPECT_EQ(packet.GetCommandLength(static_cast<unsigned char>(nOp)), nLength);
        if (nLength == 0) {
            packet.RestructBy(CAdvAnlzData(static_cast<std::uint64_t>(nOp), 8) + CAdvAnlzData(0x0201, 16));
            EXPECT_EQ(packet.m_strRequestName, "Unknown");
            continue;
        }
        ++nBlocks;
        // A block alone, its bytes all set: the data steps find nothing.
        CAdvAnlzData block(static_cast<std::uint64_t>(nOp), 8);
        for (int i = 1; i < nLength; ++i)
            block += CAdvAnlzData(0xA5, 8);
        packet.RestructBy(block);
        EXPECT_EQ(packet.GetPacketLength(), nLength * 8u);
        std::uint32_t dwRequestBits = 0;
        for (unsigned char i = 1; i <= packet.m_nRequestFields; ++i)
            dwRequestBits += packet.GetFieldValue(i)->GetLength();
        EXPECT_EQ(dwRequestBits, nLength * 8u);
        EXPECT_NE(packet.m_strRequestName, "Unknown");
    }
    EXPECT_EQ(nBlocks, 27);
}

TEST(SCSIProtocol, OptionNamesFirstMatchWins)
{
    Spec* pSpec = Spec::GetInstance();
    struct {
        unsigned short nId;
        std::uint64_t nValue;
        std::uint8_t nWidth;
        const char* pszName;
        const char* pszAbbr;
    } const aCases[] = {
        {22000, 0x3B, 8, "WRITE BUFFER", "WRITE BUFFER"},
        {22000, 0x3A, 8, "Unknown", "Unknown"},
        {22000, 0x38, 8, "", ""},
        {22000, 0x4E, 8, "", ""},
        {22000, 0xA7, 8, "", ""},
        {22000, 0x47, 8, "MOVE MEDIUM ATTACHED", "MOVE MEDIUM ATTACHED"},
        {22000, 0x5A, 8, "MODE SNSE(10)", "MODE SNSE(10)"},
        {22000, 0x1C, 8, "DIAGNOSTIC RESULT", "DIAGNOSTIC RESULT"},
        {22000, 0xB5, 8, "Unknown", "Unknown"},
        {22020, 0xA, 4, "Echo buffer", "Echo buffer"},
        {22020, 0x9, 4, "Reserved", "Reserved"},
        {22020, 0xB, 4, "Reserved", "Reserved"},
        {22061, 0x0B, 5, "Defined by ASC IT8", "Defined by ASC IT8"},
        {22061, 0x09, 5, "Comunication", "Comunication"},
        {22061, 0x11, 5, "Object Based Storage", "Object Based Storage"},
        {22061, 0x1E, 5, "Reserved", "Reserved"},
        {22061, 0x1F, 5, "Unknown or no Device Type", "Unknown or no Device Type"},
        {22095, 0x71, 7, "Deferred Errors", "Deferred Errors"},
        {22095, 0x72, 7, "", ""},
        {22068, 0x00, 8, "The device does not claim conformance to any standard.",
         "does not claim conformance to any standard."},
        {22068, 0x82, 8, "The device complies to ISO/IEC 9316:1995 and to ANSI X3.131:1994.",
         "Complies to ISO/IEC 9316:1995 and to ANSI X3.131:1994."},
        {22068, 0x01, 8, "", ""},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.nValue);
        const CAdvAnlzData value(c.nValue, c.nWidth);
        EXPECT_EQ(pSpec->GetFieldOptionName(c.nId, value), c.pszName);
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(c.nId, value), c.pszAbbr);
    }
    // Option ids: "Unknown" ranges share 29, "Echo buffer" is 8 and the
    // reserved buffer modes share 3.
    const CFieldOptionList* pOps = pSpec->GetFieldOptions(22000);
    ASSERT_NE(pOps, nullptr);
    EXPECT_EQ(pOps->GetSize(), 48);
    EXPECT_EQ(pOps->Find(CAdvAnlzData(0xFF, 8))->m_nOptionId, 29);
    EXPECT_EQ(pOps->Find(CAdvAnlzData(0x08, 8))->m_nOptionId, 28);
    const CFieldOptionList* pModes = pSpec->GetFieldOptions(22020);
    EXPECT_EQ(pModes->Find(CAdvAnlzData(0xA, 4))->m_nOptionId, 8);
    EXPECT_EQ(pModes->Find(CAdvAnlzData(0xF, 4))->m_nOptionId, 3);
    EXPECT_EQ(pSpec->GetFieldOptions(22061)->Find(CAdvAnlzData(0x15, 5))->m_nOptionId, 15);
}

TEST(SCSIProtocol, CatalogueAndFormats)
{
    Spec* pSpec = Spec::GetInstance();
    const CProtocolSpec* pBase = pSpec;
    ASSERT_EQ(pSpec->GetNumberOfLayerFields(), 140);
    for (int i = 0; i < 140; ++i) {
        const unsigned short nId = pSpec->GetLayerFieldId(i);
        ASSERT_EQ(nId, 22000 + i);
        ASSERT_NE(pBase->GetDefaultFieldAttr(nId), nullptr);
        EXPECT_EQ(pBase->GetDefaultFieldAttr(nId)->m_nId, nId);
        EXPECT_EQ(pSpec->GetLayerFieldName(nId), pBase->GetDefaultFieldAttr(nId)->m_strName);
    }
    EXPECT_EQ(pBase->GetDefaultFieldAttr(21999), nullptr);
    EXPECT_EQ(pBase->GetDefaultFieldAttr(22140), nullptr);

    struct {
        unsigned short nId;
        const char* pszName;
        const char* pszAbbr;
        std::uint32_t dwOffset, dwLength;
    } const aFields[] = {
        {22000, "Operation Code", "Operation Code", 0, 8},
        {22001, "Reserved", "Reserved", 8, 72},
        {22002, "Parameter List Length", "Parameter List Length", 80, 32},
        {22038, "Periority", "Periority", 120, 3},
        {22053, "Service Action Reservation Key", "Reservation Key", 120, 8},
        {22081, "BQUE", "BQue", 120, 1},
        {22114, "Available Data", "Service Action Available Data", 120, 8},
        {22125, "Max Segment Length", "Seg Len", 120, 8},
        {22139, "Data", "Data", 120, 8},
    };
    for (const auto& f : aFields) {
        const SSpecFieldAttr* pAttr = pBase->GetDefaultFieldAttr(f.nId);
        EXPECT_EQ(pAttr->m_strName, f.pszName);
        EXPECT_EQ(pAttr->m_strAbbr, f.pszAbbr);
        EXPECT_EQ(pAttr->m_dwOffset, f.dwOffset);
        EXPECT_EQ(pAttr->m_dwLength, f.dwLength);
    }
    EXPECT_EQ(pSpec->GetFieldDescription(22004, nullptr), "Enable Vital Product Data");
    EXPECT_EQ(pSpec->GetFieldDescription(22110, nullptr), "This field are set aside for future standardization.");

    ASSERT_EQ(pSpec->GetFormatCount(), 29);
    unsigned char nCode = 0;
    CString strName;
    const struct {
        int nIndex;
        unsigned char nCode;
        const char* pszName;
    } aFormats[] = {{0, 131, "EXTENDED COPY"},      {7, 90, "MODE SENSE(10)"},
                    {10, 95, "PERSISTEN RESERVE OUT"}, {11, 30, "PEREVENT ALLOW MEDIUM REMOVAL"},
                    {14, 132, "RECEIVE COPY RESULT"}, {28, 8, "RECEIVE"}};
    for (const auto& f : aFormats) {
        ASSERT_TRUE(pSpec->GetFormat(f.nIndex, nCode, strName));
        EXPECT_EQ(nCode, f.nCode);
        EXPECT_EQ(strName, f.pszName);
    }
}

// A derived command-set decoder with a catalogue of its own must still get
// the SCSI records for SCSI fields.
class CDerivedSpec : public CSCSIProtocolSpec {
public:
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override
    {
        static const SSpecFieldAttr s_other(1, "Other", "Other", "", 0, 8);
        return nId == 1 ? &s_other : nullptr;
    }
};

TEST(SCSIProtocol, PacketCopiesAndBaseReadsItsOwnCatalogue)
{
    CSCSIProtocolPacket packet(Hex("00 11223344 55"));
    CSCSIProtocolPacket copy(packet);
    EXPECT_EQ(FieldsOf(copy), FieldsOf(packet));
    EXPECT_EQ(copy.m_strRequestName, "TEST UNIT READY");
    EXPECT_EQ(copy.m_nRequestFields, 3);

    // Decoding again replaces the first result.
    packet.RestructBy(Hex("ff 01"));
    EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{22000, 22138, 22139}));
    EXPECT_EQ(packet.m_strRequestName, "Unknown");

    CDerivedSpec derived;
    CSCSIProtocolPacket other;
    EXPECT_EQ(derived.InterpretPacketData(Hex("00 11223344 55"), other, 0), 1);
    ASSERT_EQ(other.GetFieldCount(), 3);
    EXPECT_EQ(other.GetFieldName(1), "Operation Code");
    EXPECT_EQ(other.GetFieldName(3), "Control");
}

TEST(SCSIProtocol, PayloadUnderOneByte)
{
    CSCSIProtocolPacket packet(CAdvAnlzData(0x5, 4));
    EXPECT_EQ(FieldsOf(packet), (std::vector<SFieldView>{{22000, 4, "05"}}));
    EXPECT_EQ(packet.m_nRequestFields, 0);
    EXPECT_EQ(packet.m_strRequestName, "");
}

// Random payloads of many lengths with every operation code: the walk ends
// with counts that add up and fields of this decoder only.
TEST(SCSIProtocol, RandomPayloadsEndWithSaneCounts)
{
    std::mt19937 rng(20261123);
    CSCSIProtocolPacket packet;
    for (int nOp = 0; nOp < 256; ++nOp) {
        for (std::size_t nLength = 0; nLength <= 300; nLength += (nLength < 40 ? 1 : 13)) {
            CByteArray a;
            for (std::size_t i = 0; i < nLength; ++i)
                a.Add(static_cast<std::uint8_t>(i == 0 ? nOp : rng()));
            const CAdvAnlzData data(a);
            ASSERT_EQ(packet.RestructBy(data), 1);
            SCOPED_TRACE(HexOf(data));
            ASSERT_EQ(packet.m_nRequestFields + packet.m_nResponseFields, packet.GetFieldCount());
            if (nLength > 0) {
                ASSERT_GE(packet.m_nRequestFields, 3);
            }
            // Only the fallback shows a byte twice.
            ASSERT_LE(packet.GetPacketLength(), nLength * 8 + 8);
            for (unsigned short nId : IdsOf(packet))
                ASSERT_TRUE(nId >= 22000 && nId <= 22139) << nId;
        }
    }
}

}  // namespace
