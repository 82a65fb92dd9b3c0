// HCI events: the parameters of every event code in order, the counted
// lists, the stop at the end of the data, UnExpected, the Command Status
// event with its opcode and name, and the status and value options.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "hci/HCISpec.h"
#include "tests/TestUtil.h"

namespace {

constexpr unsigned short kUnExpected = 27267;

std::string Repeat(const std::string& strByte, std::size_t n)
{
    std::string str;
    for (std::size_t i = 0; i < n; ++i)
        str += strByte;
    return str;
}

std::string ByteHex(unsigned nByte)
{
    char sz[4];
    std::snprintf(sz, sizeof sz, "%02x", nByte & 0xFF);
    return sz;
}

// An event: its code, Parameter_Total_Length, then the parameters.
std::string Event(unsigned nCode, const std::string& strParams)
{
    return ByteHex(nCode) + ByteHex(static_cast<unsigned>(Hex(strParams).GetByteLength())) + strParams;
}

// The fields of an event's header followed by the given parameter fields.
std::vector<SFieldView> WithHeader(unsigned nCode, const std::string& strParams, std::vector<SFieldView> aParams)
{
    std::vector<SFieldView> a = {{27090, 8, ByteHex(nCode)},
                                 {27091, 8, ByteHex(static_cast<unsigned>(Hex(strParams).GetByteLength()))}};
    a.insert(a.end(), aParams.begin(), aParams.end());
    return a;
}

const std::string kAddr = "112233445566";
const std::string kKey = "00112233445566778899aabbccddeeff";

struct SEventCase {
    unsigned nCode;
    const char* pszName;
    std::string strParams;
    std::vector<SFieldView> aParams;  // the parameter fields, behind the header
};

void PrintTo(const SEventCase& c, std::ostream* os)
{
    *os << c.pszName;
}

// Every event of a code that the event table reads, with its parameters
// complete and values that tell the fields apart.
const SEventCase kEvents[] = {
    {0x01, "InquiryCompleteEvent", "00", {{27092, 8, "00"}}},
    {0x02, "InquiryResultEvent", "02" + kAddr + "01 02 00 0c025a 3412 a1a2a3a4a5a6 00 01 03 200408 7856",
     {{27093, 8, "02"}, {27094, 48, kAddr}, {27095, 8, "01"}, {27096, 8, "02"}, {27097, 8, "00"},
      {27098, 24, "0c025a"}, {27099, 16, "3412"}, {27094, 48, "a1a2a3a4a5a6"}, {27095, 8, "00"},
      {27096, 8, "01"}, {27097, 8, "03"}, {27098, 24, "200408"}, {27099, 16, "7856"}}},
    {0x03, "ConnectionCompleteEvent", "00 2a00" + kAddr + "01 00",
     {{27100, 8, "00"}, {27101, 16, "2a00"}, {27094, 48, kAddr}, {27102, 8, "01"}, {27103, 8, "00"}}},
    {0x04, "ConnectionRequestEvent", kAddr + "0c025a 01",
     {{27094, 48, kAddr}, {27098, 24, "0c025a"}, {27102, 8, "01"}}},
    {0x05, "DisconnectionCompleteEvent", "00 2a00 13", {{27104, 8, "00"}, {27101, 16, "2a00"}, {27027, 8, "13"}}},
    {0x06, "AuthenticationCompleteEvent", "05 2a00", {{27105, 8, "05"}, {27101, 16, "2a00"}}},
    {0x07, "RemoteNameRequestCompleteEvent", "00" + kAddr + Repeat("41", 248),
     {{27106, 8, "00"}, {27094, 48, kAddr}, {27107, 1984, Repeat("41", 248)}}},
    {0x08, "EncryptionChangeEvent", "00 2a00 01", {{27108, 8, "00"}, {27101, 16, "2a00"}, {27109, 8, "01"}}},
    {0x09, "ChangeConnectionLinkKeyCompleteEvent", "00 2a00", {{27110, 8, "00"}, {27101, 16, "2a00"}}},
    {0x0A, "MasterLinkKeyCompleteEvent", "00 2a00 01", {{27111, 8, "00"}, {27101, 16, "2a00"}, {27112, 8, "01"}}},
    {0x0B, "ReadRemoteSupportedFeaturesCompleteEvent", "00 2a00 ffff8ffe9bf90080",
     {{27113, 8, "00"}, {27101, 16, "2a00"}, {27114, 64, "ffff8ffe9bf90080"}}},
    {0x0C, "ReadRemoteVersionInformationCompleteEvent", "00 2a00 03 0f00 0c21",
     {{27115, 8, "00"}, {27101, 16, "2a00"}, {27116, 8, "03"}, {27117, 16, "0f00"}, {27118, 16, "0c21"}}},
    {0x0D, "QoSSetupCompleteEvent", "00 2a00 00 01 11111111 22222222 33333333 44444444",
     {{27119, 8, "00"}, {27101, 16, "2a00"}, {27120, 8, "00"}, {27121, 8, "01"}, {27122, 32, "11111111"},
      {27123, 32, "22222222"}, {27124, 32, "33333333"}, {27125, 32, "44444444"}}},
    {0x10, "HardwareErrorEvent", "07", {{27130, 8, "07"}}},
    {0x11, "FlushOccurredEvent", "2a00", {{27101, 16, "2a00"}}},
    {0x12, "RoleChangeEvent", "00" + kAddr + "01", {{27131, 8, "00"}, {27094, 48, kAddr}, {27132, 8, "01"}}},
    {0x13, "NumberOfCompletedPacketsEvent", "02 2a00 0100 2b00 0200",
     {{27133, 8, "02"}, {27101, 16, "2a00"}, {27134, 16, "0100"}, {27101, 16, "2b00"}, {27134, 16, "0200"}}},
    {0x14, "ModeChangeEvent", "00 2a00 02 0008",
     {{27135, 8, "00"}, {27101, 16, "2a00"}, {27136, 8, "02"}, {27137, 16, "0008"}}},
    {0x15, "ReturnLinkKeysEvent", "02" + kAddr + kKey + "a1a2a3a4a5a6" + Repeat("77", 16),
     {{27138, 8, "02"}, {27094, 48, kAddr}, {27139, 128, kKey}, {27094, 48, "a1a2a3a4a5a6"},
      {27139, 128, Repeat("77", 16)}}},
    {0x16, "PINCodeRequestEvent", kAddr, {{27094, 48, kAddr}}},
    {0x17, "LinkKeyRequestEvent", kAddr, {{27094, 48, kAddr}}},
    {0x18, "LinkKeyNotificationEvent", kAddr + kKey + "00",
     {{27094, 48, kAddr}, {27139, 128, kKey}, {27140, 8, "00"}}},
    // Only two bytes of the looped-back command have a field of their own.
    {0x19, "LoopbackCommandEvent", "01 04 05 33 8b", {{27141, 16, "0104"}, {kUnExpected, 24, "05338b"}}},
    {0x1A, "DataBufferOverflowEvent", "01", {{27102, 8, "01"}}},
    {0x1B, "MaxSlotsChangeEvent", "2a00 05", {{27101, 16, "2a00"}, {27142, 8, "05"}}},
    {0x1C, "ReadClockOffsetCompleteEvent", "00 2a00 3412", {{27143, 8, "00"}, {27101, 16, "2a00"}, {27099, 16, "3412"}}},
    {0x1D, "ConnectionPacketTypeChangedEvent", "00 2a00 1800",
     {{27144, 8, "00"}, {27101, 16, "2a00"}, {27145, 16, "1800"}}},
    {0x1E, "QoSViolationEvent", "2a00", {{27101, 16, "2a00"}}},
    {0x1F, "PageScanModeChangeEvent", kAddr + "01", {{27094, 48, kAddr}, {27097, 8, "01"}}},
    {0x20, "PageScanRepetitionModeChangeEvent", kAddr + "01", {{27094, 48, kAddr}, {27095, 8, "01"}}},
};

class HCIEvent : public ::testing::TestWithParam<SEventCase> {};

TEST_P(HCIEvent, ReadsItsParametersInOrder)
{
    const SEventCase& c = GetParam();
    CHCIPacket packet(Hex(Event(c.nCode, c.strParams)), HCIEventPacketType);
    EXPECT_EQ(FieldsOf(packet), WithHeader(c.nCode, c.strParams, c.aParams));
    EXPECT_STREQ(packet.GetRequestName().GetString(), c.pszName);
    EXPECT_EQ(packet.GetOpCodeOCF(), 0);
    EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
}

TEST_P(HCIEvent, BytesBehindTheLastParameterAreUnExpected)
{
    const SEventCase& c = GetParam();
    CHCIPacket packet(Hex(Event(c.nCode, c.strParams) + "eeff"), HCIEventPacketType);
    std::vector<SFieldView> aExpected = WithHeader(c.nCode, c.strParams, c.aParams);
    if (aExpected.back().nId == kUnExpected) {
        aExpected.back().nBits += 16;
        aExpected.back().strHex += "eeff";
    } else {
        aExpected.push_back({kUnExpected, 16, "eeff"});
    }
    // Parameter_Total_Length is shown, not obeyed.
    aExpected[1].strHex = ByteHex(static_cast<unsigned>(Hex(c.strParams).GetByteLength()));
    EXPECT_EQ(FieldsOf(packet), aExpected);
}

// Cut behind any byte, an event holds the fields of the complete event up to
// that point, the last one cut short, and nothing after it; inside a counted
// list too. The event is named once its parameters begin.
TEST_P(HCIEvent, StopsInsideTheFieldThatTheDataCuts)
{
    const SEventCase& c = GetParam();
    const std::string strFull = HexOf(Hex(Event(c.nCode, c.strParams)));
    const std::vector<SFieldView> aFull = WithHeader(c.nCode, c.strParams, c.aParams);
    const std::uint32_t nBytes = Hex(strFull).GetByteLength();
    for (std::uint32_t nCut = 1; nCut < nBytes; ++nCut) {
        SCOPED_TRACE(nCut);
        CHCIPacket packet(Hex(strFull.substr(0, 2 * nCut)), HCIEventPacketType);
        std::vector<std::pair<unsigned short, std::uint32_t>> aExpected, aGot;
        std::uint32_t nLeft = 8 * nCut;
        for (const SFieldView& f : aFull) {
            if (nLeft == 0)
                break;
            aExpected.emplace_back(f.nId, std::min(nLeft, f.nBits));
            nLeft -= std::min(nLeft, f.nBits);
        }
        for (const SFieldView& f : FieldsOf(packet))
            aGot.emplace_back(f.nId, f.nBits);
        EXPECT_EQ(aGot, aExpected);
        EXPECT_STREQ(packet.GetRequestName().GetString(), nCut > 2 ? c.pszName : "");
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCode, HCIEvent, ::testing::ValuesIn(kEvents),
                         [](const ::testing::TestParamInfo<SEventCase>& info) {
                             return std::string(info.param.pszName);
                         });

// ------------------------------------------------------------- counted lists

struct SListCase {
    const char* pszWhat;
    unsigned nCode;
    std::string strParams;
    std::vector<unsigned short> aIds;  // the parameter fields, behind the header
};

TEST(HCIEventLists, CountsEndWithTheirEntriesOrWithTheData)
{
    const std::string kEntry = kAddr + "01 02 00 0c025a 3412";
    const SListCase aCases[] = {
        {"no response, bytes left", 0x02, "00 eeff", {27093, kUnExpected}},
        {"one pair and a second behind it", 0x13, "01 2a00 0100 2b00 0200", {27133, 27101, 27134, kUnExpected}},
        {"a count of 255 reads on until the data ends, inside an entry", 0x13, "ff 2a00 0100 2b00 0200 2c",
         {27133, 27101, 27134, 27101, 27134, 27101}},
        {"three responses, the data ends inside the second's class of device", 0x02, "03" + kEntry + kAddr + "01 02 00 0c",
         {27093, 27094, 27095, 27096, 27097, 27098, 27099, 27094, 27095, 27096, 27097, 27098}},
        {"a count above the data that ends between entries", 0x15, "03" + kAddr + kKey, {27138, 27094, 27139}},
        {"no keys, nothing behind", 0x15, "00", {27138}},
    };
    for (const SListCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        CHCIPacket packet(Hex(Event(c.nCode, c.strParams)), HCIEventPacketType);
        std::vector<unsigned short> aExpected = {27090, 27091};
        aExpected.insert(aExpected.end(), c.aIds.begin(), c.aIds.end());
        EXPECT_EQ(IdsOf(packet), aExpected);
        std::uint32_t nBits = 0;
        for (const SFieldView& f : FieldsOf(packet))
            nBits += f.nBits;
        EXPECT_EQ(nBits, Hex(Event(c.nCode, c.strParams)).GetLength());
    }
}

TEST(HCIEventLists, ALongListFillsThePacketAndConsumesTheData)
{
    // 45 responses of 14 bytes: more fields than a packet holds. The last
    // field that fits closes the 42nd response.
    std::string strParams = "2d";
    for (int i = 0; i < 45; ++i)
        strParams += kAddr + "01 02 00 0c025a 3412";
    CHCIPacket packet(Hex(Event(0x02, strParams)), HCIEventPacketType);
    EXPECT_EQ(packet.GetFieldCount(), CProtocolPacket::kMaxFields);
    EXPECT_EQ(packet.m_nRequestFields, CProtocolPacket::kMaxFields);
    EXPECT_EQ(packet.GetFieldId(CProtocolPacket::kMaxFields), 27099);
}

// ----------------------------------------------------------- Command Status

struct SStatusCase {
    const char* pszWhat;
    std::string strParams;
    const char* pszName;
    std::vector<unsigned short> aIds;  // behind the header
    int nOpCodeOCF;
};

TEST(HCICommandStatus, NamedAfterTheCommandInTheFormOfItsGroupsList)
{
    const SStatusCase aCases[] = {
        {"link control", "00 01 0104", "HCI_Inquiry Command Status Event", {27129, 27126, 27001, 27002}, 0},
        {"link policy", "00 01 0108", "HCI Hold Mode Command Status Event", {27129, 27126, 27003, 27004}, 0},
        {"host controller", "00 01 330c", "Host_Buffer Size Command Status Event", {27129, 27126, 27005, 27006}, 0},
        {"host controller, without the tab of the command name", "00 01 350c",
         "Host Number Of Completed Packets Command Status Event", {27129, 27126, 27005, 27006}, 0},
        {"information", "00 01 0910", "HCI Read BD_ADDR Command Status Event", {27129, 27126, 27007, 27008}, 0},
        {"status", "00 01 0114", "HCI Read Failed Contact Counter Command Status Event",
         {27129, 27126, 27009, 27010}, 0},
        {"testing", "00 01 0218", "HCI Write Loopback Mode Command Status Event", {27129, 27126, 27011, 27012}, 0},
        {"unknown OCF", "0c 01 0804", "UnKnown Command Status Event", {27129, 27126, 27001, 27002}, 0},
        {"bytes behind a known opcode", "00 01 0104 ee", "HCI_Inquiry Command Status Event",
         {27129, 27126, 27001, 27002, kUnExpected}, 0},
        // Other OGFs show in the link control fields and that field's options.
        {"vendor opcode with bytes behind", "00 01 01fc ee", "HCI_Inquiry Command Status Event",
         {27129, 27126, 27001, 27002, kUnExpected}, 27267},
        {"vendor opcode alone", "00 01 23fd", "UnKnown Command Status Event", {27129, 27126, 27001, 27002}, 0},
        {"OGF 0 with bytes behind", "00 01 0000 ee", "UnKnown Command Status Event",
         {27129, 27126, 27001, 27002, kUnExpected}, 27267},
        {"ends behind the command credits", "00 01", "Command Status Event", {27129, 27126}, 0},
        {"ends inside the opcode", "00 01 03", "HCI_Periodic_Inquiry_Mode Command Status Event",
         {27129, 27126, 27001}, 0},
        {"ends behind the OCF", "00 01 0d", "HCI_PIN_Code_Request_Reply Command Status Event",
         {27129, 27126, 27001}, 0},
    };
    for (const SStatusCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        CHCIPacket packet(Hex(Event(0x0F, c.strParams)), HCIEventPacketType);
        std::vector<unsigned short> aExpected = {27090, 27091};
        aExpected.insert(aExpected.end(), c.aIds.begin(), c.aIds.end());
        EXPECT_EQ(IdsOf(packet), aExpected);
        EXPECT_EQ(packet.GetRequestName().ToStdString(), c.pszName);
        EXPECT_EQ(packet.GetOpCodeOCF(), c.nOpCodeOCF);
        EXPECT_TRUE(packet.GetResponseName().IsEmpty());
    }
}

// ------------------------------------------------------------------ options

struct SOptionCase {
    unsigned short nId;
    std::uint64_t nValue;
    std::uint8_t nWidth;
    const char* pszName;
    const char* pszAbbr;
};

TEST(HCIEventOptions, StatusFieldsShowTheErrorListAndTheirOwnSuccess)
{
    const SOptionCase aCases[] = {
        {27092, 0x00, 8, "InquiryCommandCompletedSuccessfully", "Inquiry Command Completed Successfully"},
        {27092, 0x05, 8, "Error: Authentication Failure", "Error: Authentication Failure"},
        {27110, 0x00, 8, "Change_Connection_Link_Keycommandsucceede", "command succeede"},
        {27129, 0x00, 8, "CommandCurrentlyInPending", "Command Currently In Pending"},
        {27129, 0x0C, 8, "Error: Command Disallowed", "Error: Command Disallowed"},
        {27144, 0x2A, 8, "Error: Reserved", "Error: Reserved"},
        {27104, 0xFF, 8, "Error: Reserved", "Error: Reserved"},
        {27162, 0x00, 8, "succeeded", "ResetStatus__succeeded"},
        {27160, 0x00, 8, "succeeded", "WriteLinkPolicySettingsStatus__succeeded"},
        {27161, 0x00, 8, "succeeded", "SetEventMaskStatus__succeeded"},
    };
    for (const SOptionCase& c : aCases) {
        SCOPED_TRACE(testing::Message() << c.nId << " = " << c.nValue);
        const CAdvAnlzData value(c.nValue, c.nWidth);
        EXPECT_STREQ(CHCISpec::GetInstance()->GetFieldOptionName(c.nId, value).GetString(), c.pszName);
        EXPECT_STREQ(CHCISpec::GetInstance()->GetFieldOptionAbbr(c.nId, value).GetString(), c.pszAbbr);
    }
}

// The 16 event and 72 return parameter status fields, found by name, all
// carry both lists.
TEST(HCIEventOptions, EveryStatusFieldHasBothLists)
{
    CHCISpec& decoder = *CHCISpec::GetInstance();
    int nStatusFields = 0;
    for (unsigned short nId = 27092; nId <= 27265; ++nId) {
        if (decoder.GetDefaultFieldAttr(nId)->m_strName != "Status")
            continue;
        ++nStatusFields;
        SCOPED_TRACE(nId);
        EXPECT_STREQ(decoder.GetFieldOptionName(nId, CAdvAnlzData(1, 8)).GetString(), "Error: Unknown HCI Command");
        EXPECT_FALSE(decoder.GetFieldOptionName(nId, CAdvAnlzData(0, 8)).IsEmpty());
        const CFieldOptionList* pList = decoder.GetFieldOptions(nId);
        ASSERT_NE(pList, nullptr);
        ASSERT_EQ(pList->GetSize(), 43);
        // The error rows stand first, the success row behind them.
        EXPECT_EQ(pList->GetAt(0).m_nOptionId, 1);
        EXPECT_EQ(pList->GetAt(42).m_nOptionId, 0);
    }
    EXPECT_EQ(nStatusFields, 88);
}

TEST(HCIEventOptions, ValueFieldsNameTheirValues)
{
    const SOptionCase aCases[] = {
        {27090, 0x0F, 8, "CommandStatusEvent", "Command Status Event"},
        {27090, 0x22, 8, "UnKnown", "UnKnown"},
        {27097, 0x01, 8, "OptionalPageScanMode_I", "Optional Page Scan Mode I"},
        {27112, 0x01, 8, "UsingTemporaryLinkKey", "UsingTemporary Link Key"},
        {27139, 0x01, 128, "ACLBufferOverflow_DataChannels", "ACL Buffer Overflow Data Channels"},
        {27145, 0x4000, 16, "DM5", "DM5"},
        {27145, 0x0002, 16, "Reserved1", "Reserved"},
        {27157, 0x05, 8, "Slave", "RoleDiscoveryCurrentRole__Slave"},
        {27159, 0x04, 16, "EnableSniffMode", "ReadLinkPolicySettings__EnableSniffMode"},
        {27186, 0xFF, 8, "Reserved", "ReadScanEnable__Reserved"},
        {27239, 0x01, 8, "BluetoothHCISpecification1_1", "ReadLocalVersionInformationHCIVersion__BluetoothHCISpecification1_1"},
        {27252, 0x09, 8, "Reserved", "ReadCountryCode__Reserved"},
    };
    for (const SOptionCase& c : aCases) {
        SCOPED_TRACE(testing::Message() << c.nId << " = " << c.nValue);
        const CAdvAnlzData value(c.nValue, c.nWidth);
        EXPECT_STREQ(CHCISpec::GetInstance()->GetFieldOptionName(c.nId, value).GetString(), c.pszName);
        EXPECT_STREQ(CHCISpec::GetInstance()->GetFieldOptionAbbr(c.nId, value).GetString(), c.pszAbbr);
    }
    // Option ids are the value unless the row says otherwise.
    const CFieldOptionList* pPolicy = CHCISpec::GetInstance()->GetFieldOptions(27159);
    ASSERT_NE(pPolicy, nullptr);
    EXPECT_EQ(pPolicy->GetAt(3).m_nOptionId, 3);
    EXPECT_EQ(pPolicy->GetAt(3).m_Low, CAdvAnlzData(4, 8));
}

}  // namespace
