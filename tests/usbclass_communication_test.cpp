// Communication class requests over the whole request table, their data
// stages and lengths from the data; notifications with their data parts;
// the wrapper cut at each field.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/TestUtil.h"
#include "usbclass/CommunicationClass.h"
#include "usbclass/CommunicationNotification.h"
#include "usbclass/CommunicationWrapper.h"

namespace {

std::vector<unsigned short> Join(std::vector<unsigned short> a, const std::vector<unsigned short>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct SRowCase {
    const char* pszName;
    std::string strHex;
    std::vector<unsigned short> aIds;
    const char* pszResponse;
    int nRequestFields;
    int nResponseFields;
    const char* pszRequest = nullptr;  // when it differs from the case's name
};

// ------------------------------------------------------------ class requests

// A request with wValue (two bytes, as on the wire), wIndex 0 and wLength,
// then the data stage; every row of the table is read the same way up to
// wLength: bmRequestType, bRequest, the row's wValue fields, the interface.
SRowCase Request(const char* pszName, const char* pszCode, const char* pszValue, const char* pszLength,
                 const std::string& strData, std::vector<unsigned short> aValueIds, unsigned short nLengthId,
                 const std::vector<unsigned short>& aDataIds, const char* pszResponse)
{
    std::vector<unsigned short> aIds = Join({25002, 25001, 25000, 25003}, aValueIds);
    aIds = Join(Join(aIds, {25010, nLengthId}), aDataIds);
    return SRowCase{pszName,
                    std::string("21") + pszCode + pszValue + "0000" + pszLength + strData,
                    aIds,
                    pszResponse,
                    static_cast<int>(6 + aValueIds.size()),
                    static_cast<int>(aDataIds.size())};
}

class CommunicationRequest : public ::testing::TestWithParam<SRowCase> {};

TEST_P(CommunicationRequest, ReadsTheFieldsOfItsRow)
{
    const SRowCase& c = GetParam();
    CCommunicationClassPacket packet(Hex(c.strHex));
    EXPECT_EQ(IdsOf(packet), c.aIds);
    EXPECT_EQ(packet.m_strRequestName, c.pszName);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponse);
    EXPECT_EQ(packet.m_bHasResponse, c.pszResponse[0] ? 1 : 0);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, c.nResponseFields);
    EXPECT_EQ(packet.GetPacketLength(), Hex(c.strHex).GetLength()) << "every bit lies in a field";
}

const std::vector<unsigned short> kLineCoding = {25024, 25025, 25026, 25027};
const std::vector<unsigned short> kRinger = {25019, 25018, 25017, 25016};

INSTANTIATE_TEST_SUITE_P(
    RequestTable, CommunicationRequest,
    ::testing::Values(
        Request("SendEncapsulatedCommand", "00", "0000", "0300", "415443", {25004}, 25011, {25014},
                "EncapsulatedCommand"),
        Request("GetEncapsulatedResponse", "01", "0000", "0200", "4f4b", {25004}, 25011, {25015},
                "EncapsulatedResponse"),
        Request("SetCommFeature", "02", "0100", "0200", "0300", {25005}, 25011, {25020, 25021, 25022},
                "CommFeature"),
        Request("GetCommFeature", "03", "0200", "0200", "3101", {25005}, 25011, {25023}, "CommFeature"),
        Request("ClearCommFeature", "04", "0100", "0000", "", {25005}, 25011, {}, ""),
        Request("SetAuxLineState", "10", "0100", "0000", "", {25006}, 25011, {}, ""),
        Request("SetHookState", "11", "0200", "0000", "", {25007}, 25011, {}, ""),
        Request("PulseSetup", "12", "ffff", "0000", "", {25008}, 25011, {}, ""),
        Request("SendPulse", "13", "0500", "0000", "", {25063}, 25011, {}, ""),
        Request("SetPulseTime", "14", "2840", "0000", "", {25064}, 25011, {}, ""),
        Request("RingAuxJack", "15", "0300", "0000", "", {25065}, 25011, {}, ""),
        Request("SetLineCoding", "20", "0000", "0700", "80250000000008", {25004}, 25012, kLineCoding, "LineCoding"),
        Request("GetLineCoding", "21", "0000", "0700", "80250000000008", {25004}, 25012, kLineCoding, "LineCoding"),
        Request("SetControlLineState", "22", "0300", "0000", "", {25067, 25068, 25069}, 25011, {}, ""),
        Request("SendBreak", "23", "ffff", "0000", "", {25066}, 25011, {}, ""),
        Request("SetRingerParms", "30", "0000", "0400", "02ff0080", {25004}, 25011, kRinger, "RingerParms"),
        Request("GetRingerParms", "31", "0000", "0400", "02ff0080", {25004}, 25011, kRinger, "RingerParms"),
        Request("SetOperationParms", "32", "0200", "0000", "", {25029}, 25011, {}, ""),
        Request("GetOperationParms", "33", "0000", "0200", "0100", {25004}, 25011, {25028}, "OperationParms"),
        Request("SetLineParms", "34", "0100", "0100", "00", {25030}, 25011, {25013}, "LineParamsData"),
        Request("GetLineParms", "35", "0000", "0a00", "0a00 00000000 02000080", {25004}, 25012,
                {25031, 25032, 25035, 25036, 25037}, "LineParms"),
        Request("DialDigits", "36", "0000", "0300", "313233", {25004}, 25011, {25042}, "DialDigits"),
        Request("SetUnitParameter", "37", "0401", "0200", "3412", {25044, 25045}, 25011, {25043},
                "UnitParameterStructure"),
        Request("GetUnitParameter", "38", "0401", "0200", "3412", {25044, 25045}, 25011, {25043}, "UnitParameter"),
        Request("ClearUnitParameter", "39", "0401", "0000", "", {25044, 25045}, 25011, {}, ""),
        Request("GetProfile", "3a", "0000", "4000", "0102030405060708", {25004}, 25011, {25046}, "Profile"),
        Request("SetEthernetMulticastFilters", "40", "0100", "0600", "01005e000001", {25047}, 25011, {25048},
                "EthernetMulticastfilterData"),
        Request("SetEthernetPowerManagementPatternFilter", "41", "0000", "0600", "0100 03 aabbcc", {25047}, 25012,
                {25049, 25050, 25051}, "EthernetPowerManagementPatternFilter"),
        Request("GetEthernetPowerManagementPatternFilter", "42", "0000", "0200", "0100", {25047}, 25011, {25052},
                "EthernetPowerManagementPatternFilter"),
        Request("SetEthernetPacketFilter", "43", "0c00", "0000", "",
                {25053, 25054, 25055, 25056, 25057, 25058}, 25011, {}, ""),
        Request("GetEthernetStatistic", "44", "0100", "0400", "10270000", {25059}, 25011, {25013},
                "EthernetStatistic"),
        Request("SetAtmDataFormat", "50", "0300", "0000", "", {25060}, 25011, {}, ""),
        Request("GetAtmDeviceStatistics", "51", "0100", "0400", "10270000", {25061}, 25011, {25013},
                "AtmDeviceStatistics"),
        Request("SetAtmDefaultVc", "52", "0000", "0300", "012000", {25004}, 25011, {25070}, "AtmDefaultVc"),
        Request("GetAtmVcStatistics", "53", "0100", "0400", "10270000", {25062}, 25011, {25013},
                "AtmVcStatistics")),
    [](const ::testing::TestParamInfo<SRowCase>& info) { return std::string(info.param.pszName); });

TEST(CommunicationRequest, CodesWithoutARowAreReservedPlainSetups)
{
    for (const char* pszCode : {"05", "0f", "16", "24", "3b", "45", "4f", "54", "ff"}) {
        SCOPED_TRACE(pszCode);
        CCommunicationClassPacket packet(Hex(std::string("21") + pszCode + "0000 0000 0000 ffff"));
        EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{25002, 25001, 25000, 25003, 25004, 25010, 25011}));
        EXPECT_EQ(packet.m_strRequestName, "Reserved");
        EXPECT_EQ(packet.m_bHasResponse, 0);
        EXPECT_EQ(CCommunicationClassSpec::GetInstance()->GetFieldOptionAbbr(25003, *packet.GetFieldValue(4)),
                  "RESERVED");
    }
}

TEST(CommunicationRequest, LineCodingAsAPersonReadsIt)
{
    CCommunicationClassPacket packet(Hex("21 20 00 00 00 00 07 00 00 C2 01 00 00 00 08"));
    CCommunicationClassSpec* pSpec = CCommunicationClassSpec::GetInstance();
    ASSERT_EQ(packet.GetFieldCount(), 11);
    EXPECT_EQ(static_cast<std::uint32_t>(*packet.GetFieldValue(8)), 115200u);
    EXPECT_EQ(pSpec->GetFieldOptionName(25025, *packet.GetFieldValue(9)), "1 Stop bit");
    EXPECT_EQ(pSpec->GetFieldOptionName(25026, *packet.GetFieldValue(10)), "None");
    EXPECT_EQ(static_cast<std::uint8_t>(*packet.GetFieldValue(11)), 8);
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(25003, *packet.GetFieldValue(4)), "SET_LINE_CODING");

    // 9600 7E2... as 7 data bits, even parity, 2 stop bits.
    CCommunicationClassPacket other(Hex("21 20 0000 0000 0700 80250000 02 02 07"));
    EXPECT_EQ(pSpec->GetFieldOptionName(25025, *other.GetFieldValue(9)), "2 Stop bits");
    EXPECT_EQ(pSpec->GetFieldOptionName(25026, *other.GetFieldValue(10)), "Even");
}

struct SDataCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aData;  // the fields behind wLength
    int bHasResponse;
};

class CommunicationDataStage : public ::testing::TestWithParam<SDataCase> {};

TEST_P(CommunicationDataStage, TakesItsLengthFromTheData)
{
    const SDataCase& c = GetParam();
    CCommunicationClassPacket packet(Hex(c.strHex));
    const std::vector<SFieldView> aFields = FieldsOf(packet);
    const std::size_t nSetup = packet.m_nRequestFields;
    ASSERT_GE(aFields.size(), nSetup);
    EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + static_cast<long>(nSetup), aFields.end()), c.aData);
    EXPECT_EQ(packet.m_nResponseFields, c.aData.size());
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, CommunicationDataStage,
    ::testing::Values(
        // The setup alone: the data fields stand with no bits.
        SDataCase{"GetLineCodingSetupOnly", "a1 21 0000 0000 0700",
                  {{25024, 0, ""}, {25025, 0, ""}, {25026, 0, ""}, {25027, 0, ""}}, 1},
        SDataCase{"CommFeatureUnknownSelector", "a1 03 0300 0000 0200 0300", {}, 0},
        // Only the low byte of the selector counts.
        SDataCase{"CommFeatureSelectorHighByte", "a1 03 0201 0000 0200 3101", {{25023, 16, "3101"}}, 1},
        SDataCase{"EncapsulatedCommandShorterThanData", "21 00 0000 0000 0500 4154444930",
                  {{25014, 40, "4154444930"}}, 1},
        SDataCase{"EncapsulatedCommandLongerThanData", "21 00 0000 0000 0500 4154",
                  {{25014, 16, "4154"}}, 1},
        // wLength 0 falls back to the default of one byte.
        SDataCase{"EncapsulatedCommandLengthZero", "21 00 0000 0000 0000 41 54", {{25014, 8, "41"}}, 1},
        // 0x8000 and above is a negative length: the field takes the rest.
        SDataCase{"EncapsulatedCommandLength8000", "21 00 0000 0000 0080 010203", {{25014, 24, "010203"}}, 1},
        // 14 bytes: one call state; 15: a part of a second counts as a whole.
        SDataCase{"LineParmsLength14", "a1 35 0000 0000 0e00 0e00 00000000 00000000 05010080",
                  {{25031, 16, "0e00"}, {25032, 32, "00000000"}, {25035, 8, "00"}, {25036, 23, "000000"},
                   {25037, 1, "00"}, {25038, 8, "05"}, {25039, 8, "01"}, {25040, 15, "0000"}, {25041, 1, "01"}},
                  1},
        SDataCase{"LineParmsLength15", "a1 35 0000 0000 0f00 0f00 00000000 00000000 05010080 06",
                  {{25031, 16, "0f00"}, {25032, 32, "00000000"}, {25035, 8, "00"}, {25036, 23, "000000"},
                   {25037, 1, "00"}, {25038, 8, "05"}, {25039, 8, "01"}, {25040, 15, "0000"}, {25041, 1, "01"},
                   {25038, 8, "06"}, {25039, 0, ""}, {25040, 0, ""}, {25041, 0, ""}},
                  1},
        SDataCase{"MulticastFiltersTwo", "21 40 0200 0000 0c00 01005e000001 01005e0000fb",
                  {{25048, 96, "01005e00000101005e0000fb"}}, 1},
        SDataCase{"MulticastFiltersNone", "21 40 0000 0000 0000 01005e", {{25048, 8, "01"}}, 1},
        // Mask of MaskSize bytes, the pattern as long as the whole structure.
        SDataCase{"PatternFilter", "21 41 0100 0000 0400 0200 c0ff 0a0b0c0d0e0f",
                  {{25049, 16, "0200"}, {25050, 16, "c0ff"}, {25051, 32, "0a0b0c0d"}}, 1},
        SDataCase{"PatternFilterMaskSizeZero", "21 41 0100 0000 0100 0000 c0 0a0b",
                  {{25049, 16, "0000"}, {25050, 8, "c0"}, {25051, 8, "0a"}}, 1}),
    [](const ::testing::TestParamInfo<SDataCase>& info) { return std::string(info.param.pszName); });

TEST(CommunicationRequest, ControlLineStateAndPacketFilterBits)
{
    CCommunicationClassSpec* pSpec = CCommunicationClassSpec::GetInstance();
    CCommunicationClassPacket lines(Hex("21 22 0300 0000 0000"));
    EXPECT_EQ(lines.m_nRequestFields, 9);
    EXPECT_EQ(pSpec->GetFieldOptionName(25067, *lines.GetFieldValue(5)), "Present");
    EXPECT_EQ(pSpec->GetFieldOptionName(25068, *lines.GetFieldValue(6)), "Active carrier");
    EXPECT_EQ(FieldsOf(lines)[6], (SFieldView{25069, 14, "0000"}));
    EXPECT_EQ(lines.m_bHasResponse, 0);

    // Directed and broadcast: bits 2 and 3 of wValue, ahead of wIndex.
    CCommunicationClassPacket filter(Hex("21 43 0c00 0100 0000"));
    EXPECT_EQ(filter.m_nRequestFields, 12);
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(25053, *filter.GetFieldValue(5)), "Disabled");
    EXPECT_EQ(pSpec->GetFieldOptionName(25053, *filter.GetFieldValue(5)), "Disbled");
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(25055, *filter.GetFieldValue(7)), "Directed Packets");
    EXPECT_EQ(pSpec->GetFieldOptionName(25056, *filter.GetFieldValue(8)),
              "All broadcast packets received by the network device are forwarded up to the host.");
    EXPECT_EQ(FieldsOf(filter)[10], (SFieldView{25010, 16, "0100"}));
}

TEST(CommunicationRequest, ALongCallStateListFillsThePacketAndTheCountsFollowIt)
{
    // 0x7fff bytes of line parameters: far more call states than a packet holds.
    CCommunicationClassPacket packet(Hex("a1 35 0000 0000 ff7f ff7f"));
    EXPECT_EQ(packet.GetFieldCount(), CProtocolPacket::kMaxFields);
    EXPECT_EQ(packet.m_nRequestFields + packet.m_nResponseFields, CProtocolPacket::kMaxFields);
}

// ------------------------------------------------------------ notifications

class CommunicationNotification : public ::testing::TestWithParam<SRowCase> {};

TEST_P(CommunicationNotification, ReadsTheFieldsOfItsRow)
{
    const SRowCase& c = GetParam();
    CCommunicationNotificationPacket packet(Hex(c.strHex));
    EXPECT_EQ(IdsOf(packet), c.aIds);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequest ? c.pszRequest : c.pszName);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponse);
    EXPECT_EQ(packet.m_bHasResponse, c.pszResponse[0] ? 1 : 0);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, c.nResponseFields);
}

const std::vector<unsigned short> kNotificationHead = {27502, 27501, 27500, 27503};
const std::vector<unsigned short> kSerialState = {27513, 27514, 27515, 27516, 27517, 27518, 27519, 27520};

INSTANTIATE_TEST_SUITE_P(
    NotificationTable, CommunicationNotification,
    ::testing::Values(
        SRowCase{"NetworkConnection", "a1 00 0100 0000 0000", Join(kNotificationHead, {27508, 27510, 27511}), "", 7,
                 0},
        SRowCase{"ResponseAvailable", "a1 01 0000 0000 0000", Join(kNotificationHead, {27504, 27510, 27511}), "", 7,
                 0},
        SRowCase{"AuxJackHookState", "a1 08 0100 0000 0000", Join(kNotificationHead, {27509, 27510, 27511}), "", 7,
                 0},
        SRowCase{"RingDetect", "a1 09 0000 0000 0000", Join(kNotificationHead, {27504, 27510, 27511}), "", 7, 0},
        SRowCase{"SerialState", "a1 20 0000 0100 0200 0300",
                 Join(Join(kNotificationHead, {27504, 27510, 27511}), kSerialState), "SerialState", 7, 8},
        // The setup alone: the bitmap fields stand with no bits.
        SRowCase{"SerialStateSetupOnly", "a1 20 0000 0100 0200",
                 Join(Join(kNotificationHead, {27504, 27510, 27511}), kSerialState), "SerialState", 7, 8,
                 "SerialState"},
        SRowCase{"CallStateChangeRingback", "a1 28 0302 0100 0100 05",
                 Join(kNotificationHead, {27506, 27505, 27510, 27511, 27525}), "CallStateChange", 8, 1,
                 "CallStateChange"},
        SRowCase{"CallStateChangeConnected", "a1 28 0402 0100 0100 02",
                 Join(kNotificationHead, {27506, 27505, 27510, 27511, 27526}), "CallStateChange", 8, 1,
                 "CallStateChange"},
        SRowCase{"CallStateChangeIncoming", "a1 28 0502 0100 0400 01 02 03 04 ff",
                 Join(kNotificationHead, {27506, 27505, 27510, 27511, 27527, 27528, 27529, 27530}),
                 "CallStateChange", 8, 4, "CallStateChange"},
        // Idle: a response part with no fields.
        SRowCase{"CallStateChangeIdle", "a1 28 0102 0100 0000",
                 Join(kNotificationHead, {27506, 27505, 27510, 27511}), "CallStateChange", 8, 0, "CallStateChange"},
        SRowCase{"LineStateChange", "a1 29 0200 0100 0300 aabbcc",
                 Join(kNotificationHead, {27507, 27510, 27512, 27522}), "LineStateChange", 7, 1},
        SRowCase{"ConnectionSpeedChange", "a1 2a 0000 0100 0800 00e1f505 0084d717",
                 Join(Join(kNotificationHead, {27504, 27510, 27511}), {27523, 27524}), "ConnectionSpeedChange", 7,
                 2},
        SRowCase{"Reserved", "a1 02 0000 0000 0000", Join(kNotificationHead, {27504, 27510, 27511}), "", 7, 0}),
    [](const ::testing::TestParamInfo<SRowCase>& info) { return std::string(info.param.pszName); });

TEST(CommunicationNotificationData, SerialStateBitsAndCallStateOptions)
{
    CCommunicationNotificationSpec* pSpec = CCommunicationNotificationSpec::GetInstance();
    CCommunicationNotificationPacket serial(Hex("A1 20 00 00 01 00 02 00 03 00"));
    const std::vector<SFieldView> aFields = FieldsOf(serial);
    ASSERT_EQ(aFields.size(), 15u);
    EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + 7, aFields.end()),
              (std::vector<SFieldView>{{27513, 1, "01"},
                                       {27514, 1, "01"},
                                       {27515, 1, "00"},
                                       {27516, 1, "00"},
                                       {27517, 1, "00"},
                                       {27518, 1, "00"},
                                       {27519, 1, "00"},
                                       {27520, 9, "0000"}}));

    CCommunicationNotificationPacket ringback(Hex("A1 28 03 02 01 00 01 00 05"));
    EXPECT_EQ(pSpec->GetFieldOptionAbbr(27506, *ringback.GetFieldValue(5)), "Ringback");
    EXPECT_EQ(static_cast<std::uint8_t>(*ringback.GetFieldValue(6)), 2);
    EXPECT_EQ(pSpec->GetFieldOptionName(27525, *ringback.GetFieldValue(9)), "Reserved for future use.");
    CCommunicationNotificationPacket busy(Hex("A1 28 03 02 01 00 01 00 02"));
    EXPECT_EQ(pSpec->GetFieldOptionName(27525, *busy.GetFieldValue(9)), "Fast busy.");

    CCommunicationNotificationPacket connect(Hex("A1 00 01 00 00 00 00 00"));
    EXPECT_EQ(pSpec->GetFieldOptionName(27508, *connect.GetFieldValue(5)), "Connect");

    // A line state structure of length 0 reads its default byte.
    CCommunicationNotificationPacket line(Hex("a1 29 0200 0100 0000 aabb"));
    EXPECT_EQ(FieldsOf(line).back(), (SFieldView{27522, 8, "aa"}));
}

// ------------------------------------------------------------ wrapper

struct SWrapperCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aFields;
};

class CommunicationWrapper : public ::testing::TestWithParam<SWrapperCase> {};

TEST_P(CommunicationWrapper, ReadsSizeIdsAndData)
{
    const SWrapperCase& c = GetParam();
    CCommunicationWrapperPacket packet(Hex(c.strHex));
    EXPECT_EQ(FieldsOf(packet), c.aFields);
    EXPECT_EQ(packet.m_strRequestName, c.strHex.empty() ? "" : "CommunicationWrapper");
    EXPECT_EQ(packet.m_nRequestFields, c.aFields.size());
    EXPECT_EQ(packet.m_nResponseFields, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Cuts, CommunicationWrapper,
    ::testing::Values(
        // The data's bytes stand in reverse order, last wire byte first.
        SWrapperCase{"Whole", "0007 01 02 aabbcc", {{24000, 16, "0700"}, {24001, 8, "01"}, {24002, 8, "02"},
                                                    {24003, 24, "ccbbaa"}}},
        SWrapperCase{"OneDataByte", "0005 01 02 aa", {{24000, 16, "0500"}, {24001, 8, "01"}, {24002, 8, "02"},
                                                      {24003, 8, "aa"}}},
        SWrapperCase{"SizeOfHeaderOnly", "0004 01 02 aabb", {{24000, 16, "0400"}, {24001, 8, "01"}, {24002, 8, "02"},
                                                             {24003, 16, "bbaa"}}},
        SWrapperCase{"SizeBelowHeader", "0002 01 02 aa", {{24000, 16, "0200"}, {24001, 8, "01"}, {24002, 8, "02"},
                                                          {24003, 8, "aa"}}},
        // A size larger than the payload: the data takes what there is;
        // a smaller one leaves the rest unread.
        SWrapperCase{"SizeTooLarge", "0010 01 02 aabb", {{24000, 16, "1000"}, {24001, 8, "01"}, {24002, 8, "02"},
                                                         {24003, 16, "bbaa"}}},
        SWrapperCase{"SizeTooSmall", "0006 01 02 aabbcc", {{24000, 16, "0600"}, {24001, 8, "01"}, {24002, 8, "02"},
                                                           {24003, 16, "bbaa"}}},
        SWrapperCase{"SizeOnly", "0007", {{24000, 16, "0700"}}},
        SWrapperCase{"OneByte", "00", {{24000, 8, "00"}}},
        SWrapperCase{"SizeAndDestination", "0007 01", {{24000, 16, "0700"}, {24001, 8, "01"}}},
        SWrapperCase{"ThroughSource", "0007 01 02", {{24000, 16, "0700"}, {24001, 8, "01"}, {24002, 8, "02"}}},
        SWrapperCase{"Empty", "", {}}),
    [](const ::testing::TestParamInfo<SWrapperCase>& info) { return std::string(info.param.pszName); });

// ------------------------------------------------------------ texts

TEST(CommunicationTexts, KeepTheirSpellingAndTrailingBlanks)
{
    CCommunicationClassSpec* pClass = CCommunicationClassSpec::GetInstance();
    CCommunicationClassPacket feature(Hex("a1 03 0100 0000 0200 0000"));
    EXPECT_EQ(feature.GetFieldAbbr(8), "Idle Setting ");
    EXPECT_EQ(pClass->GetFieldOptionName(25059, CAdvAnlzData(0, 16)), "Reserved ");
    EXPECT_EQ(pClass->GetFieldOptionName(25059, CAdvAnlzData(0xFF, 16)), "Reserved ");
    EXPECT_EQ(pClass->GetFieldOptionName(25059, CAdvAnlzData(0x100, 16)), "");
    EXPECT_EQ(pClass->GetFieldOptionName(25059, CAdvAnlzData(2, 16)), "Frames transmitted recieved without errors.");
    EXPECT_EQ(pClass->GetFieldOptionName(25038, CAdvAnlzData(3, 8)), "Dilaing in progress.");
    EXPECT_EQ(pClass->GetFieldOptionName(25016, CAdvAnlzData(0, 1)), "A ringer does not exists.");
    EXPECT_EQ(pClass->GetFieldOptionName(25005, CAdvAnlzData(0x0100, 16)), "");
    EXPECT_EQ(pClass->GetFieldOptionName(25005, CAdvAnlzData(0x00FF, 16)), "WVALUE-FEATURESELECTOR:RESERVED");
    EXPECT_EQ(pClass->GetLayerFieldName(25037), "dwLineState-Actice Flag");
    EXPECT_EQ(pClass->GetDefaultFieldAttr(25007)->m_strAbbr, "Relay Confiquration");

    CCommunicationNotificationSpec* pNotification = CCommunicationNotificationSpec::GetInstance();
    EXPECT_EQ(pNotification->GetDefaultFieldAttr(27505)->m_strAbbr, "Call Index ");
    EXPECT_EQ(pNotification->GetFieldOptionName(27526, CAdvAnlzData(3, 8)), "Data modern connection");
    EXPECT_EQ(pNotification->GetFieldOptionName(27527, CAdvAnlzData(0xFF, 8)), "");
    EXPECT_EQ(pNotification->GetDefaultFieldAttr(27522)->m_dwMaxLength, 65535u);
}

}  // namespace
