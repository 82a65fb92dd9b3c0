// Printer class requests: the setup cut at each field, the device id, the
// port status bits, soft reset and unknown requests.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/TestUtil.h"
#include "usbclass/PrinterClass.h"

namespace {

// The setup fields of a class request to the interface, with bRequest and
// wLength as stored.
std::vector<SFieldView> Setup(const char* pszDirection, const char* pszRequest, const char* pszLength)
{
    return {{22500, 5, "01"},       {22501, 2, "01"},       {22502, 1, pszDirection}, {22503, 8, pszRequest},
            {22504, 16, "0000"},    {22505, 16, "0000"},    {22506, 16, pszLength}};
}

std::vector<SFieldView> Join(std::vector<SFieldView> a, const std::vector<SFieldView>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct SPrinterCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aFields;
    const char* pszRequest;
    const char* pszResponse;
    int bHasResponse;
    int nRequestFields;
};

class PrinterRequest : public ::testing::TestWithParam<SPrinterCase> {};

TEST_P(PrinterRequest, ReadsSetupAndDataStage)
{
    const SPrinterCase& c = GetParam();
    CPrinterClassPacket packet(Hex(c.strHex));
    EXPECT_EQ(FieldsOf(packet), c.aFields);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequest);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponse);
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, static_cast<int>(c.aFields.size()) - c.nRequestFields);
}

std::string Repeat(const char* pszByte, int nCount)
{
    std::string s;
    for (int i = 0; i < nCount; ++i)
        s += pszByte;
    return s;
}

// A device id of 20 bytes: its length, then 18 characters.
const std::string kDeviceId20 = "0014" + Repeat("41", 18);

INSTANTIATE_TEST_SUITE_P(
    Requests, PrinterRequest,
    ::testing::Values(
        SPrinterCase{"GetDeviceIdSetupOnly", "a1 00 0000 0000 ff00", Setup("01", "00", "ff00"), "GET_DEVICE_ID",
                     "DEVICE_ID", 1, 7},
        // wLength asks for 255 bytes; the 20 there are make the field.
        SPrinterCase{"GetDeviceIdClipped", "a1 00 0000 0000 ff00 " + kDeviceId20,
                     Join(Setup("01", "00", "ff00"), {{22507, 160, kDeviceId20}}), "GET_DEVICE_ID", "DEVICE_ID", 1,
                     7},
        // The length bytes stay first, as on the wire; bytes behind wLength are not read.
        SPrinterCase{"GetDeviceIdShorterThanData", "a1 00 0000 0000 0400 0004 4142 4344",
                     Join(Setup("01", "00", "0400"), {{22507, 32, "00044142"}}), "GET_DEVICE_ID", "DEVICE_ID", 1, 7},
        SPrinterCase{"GetDeviceIdLengthZero", "a1 00 0000 0000 0000 " + kDeviceId20 + kDeviceId20,
                     Join(Setup("01", "00", "0000"),
                          {{22507, 255, kDeviceId20 + "0014" + Repeat("41", 10)}}),
                     "GET_DEVICE_ID", "DEVICE_ID", 1, 7},
        // Status byte 0x18: no error, selected, paper not empty.
        SPrinterCase{"GetPortStatus", "A1 01 00 00 00 00 01 00 18",
                     Join(Setup("01", "01", "0100"),
                          {{22512, 3, "00"}, {22511, 1, "01"}, {22510, 1, "01"}, {22509, 1, "00"}, {22508, 2, "00"}}),
                     "GET_PORT_STATUS", "PORT_STATUS", 1, 7},
        SPrinterCase{"GetPortStatusSetupOnly", "a1 01 0000 0000 0100", Setup("01", "01", "0100"), "GET_PORT_STATUS",
                     "PORT_STATUS", 1, 7},
        SPrinterCase{"SoftReset", "21 02 00 00 00 00 00 00", Setup("00", "02", "0000"), "SOFT_RESET", "", 0, 7},
        SPrinterCase{"Unknown", "21 03 0000 0000 0000 aa", Setup("00", "03", "0000"), "", "", 0, 7},
        // Cut in the setup: no name before wLength; inside wLength the name stands.
        SPrinterCase{"CutInWLength", "a1 01 0000 0000 01",
                     {{22500, 5, "01"}, {22501, 2, "01"}, {22502, 1, "01"}, {22503, 8, "01"}, {22504, 16, "0000"},
                      {22505, 16, "0000"}, {22506, 8, "01"}},
                     "GET_PORT_STATUS", "PORT_STATUS", 1, 7},
        SPrinterCase{"CutBehindWIndex", "a1 01 0000 0000",
                     {{22500, 5, "01"}, {22501, 2, "01"}, {22502, 1, "01"}, {22503, 8, "01"}, {22504, 16, "0000"},
                      {22505, 16, "0000"}},
                     "", "", 0, 6},
        SPrinterCase{"CutInWValue", "a1 01 00",
                     {{22500, 5, "01"}, {22501, 2, "01"}, {22502, 1, "01"}, {22503, 8, "01"}, {22504, 8, "00"}}, "",
                     "", 0, 5},
        SPrinterCase{"CutBehindBRequest", "a1 00", {{22500, 5, "01"}, {22501, 2, "01"}, {22502, 1, "01"},
                                                    {22503, 8, "00"}},
                     "", "", 0, 4},
        SPrinterCase{"OneByte", "a1", {{22500, 5, "01"}, {22501, 2, "01"}, {22502, 1, "01"}}, "", "", 0, 3},
        SPrinterCase{"Empty", "", {}, "", "", 0, 0}),
    [](const ::testing::TestParamInfo<SPrinterCase>& info) { return std::string(info.param.pszName); });

TEST(PrinterOptions, StatusBitsAndRequestNames)
{
    CPrinterClassSpec* pSpec = CPrinterClassSpec::GetInstance();
    CPrinterClassPacket status(Hex("A1 01 00 00 00 00 01 00 18"));
    EXPECT_EQ(pSpec->GetFieldOptionName(22511, *status.GetFieldValue(9)), "No Error");
    EXPECT_EQ(pSpec->GetFieldOptionName(22510, *status.GetFieldValue(10)), "Selected");
    EXPECT_EQ(pSpec->GetFieldOptionName(22509, *status.GetFieldValue(11)), "Not Empty");
    // Out of paper, deselected, in error.
    CPrinterClassPacket fault(Hex("A1 01 00 00 00 00 01 00 20"));
    EXPECT_EQ(pSpec->GetFieldOptionName(22511, *fault.GetFieldValue(9)), "Error");
    EXPECT_EQ(pSpec->GetFieldOptionName(22510, *fault.GetFieldValue(10)), "Not Selected");
    EXPECT_EQ(pSpec->GetFieldOptionName(22509, *fault.GetFieldValue(11)), "Empty");

    CPrinterClassPacket unknown(Hex("21 03 0000 0000 0000"));
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(22503, *unknown.GetFieldValue(4)), "UnKnown");
    EXPECT_EQ(pSpec->GetFieldOptionName(22503, *unknown.GetFieldValue(4)), "bRequest-UnKnown");
    EXPECT_EQ(pSpec->GetFieldOptionName(22502, *unknown.GetFieldValue(3)),
              "bRequestType-Type-Transfer Host To Device");
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(22500, *unknown.GetFieldValue(1)), "Interface");
    EXPECT_EQ(unknown.GetFieldName(3), "bmRequestType-Dirction");
    EXPECT_EQ(unknown.GetFieldAbbr(3), "Data Transfer Dirction");
}

}  // namespace
