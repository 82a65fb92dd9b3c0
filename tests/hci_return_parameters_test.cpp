// The Command Complete event: the opcode read through the group fields, the
// return parameters of every command of the six groups, the commands that
// return nothing, unknown and vendor opcodes, the OCF field id these set,
// and the names of HCI packets.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "hci/HCISpec.h"
#include "tests/TestUtil.h"

namespace {

constexpr unsigned short kUnExpected = 27267;

std::string ByteHex(unsigned nByte)
{
    char sz[4];
    std::snprintf(sz, sizeof sz, "%02x", nByte & 0xFF);
    return sz;
}

// A Command Complete event: one command credit, the opcode, then the bytes.
std::string CommandComplete(unsigned nOGF, unsigned nOCF, const std::string& strReturn)
{
    const unsigned nOpCode = nOGF << 10 | nOCF;
    const std::string strParams = "01" + ByteHex(nOpCode) + ByteHex(nOpCode >> 8) + strReturn;
    return "0e" + ByteHex(static_cast<unsigned>(Hex(strParams).GetByteLength())) + strParams;
}

std::vector<unsigned short> WithHeader(unsigned nOGF, std::vector<unsigned short> aIds)
{
    const unsigned short nOCFId = static_cast<unsigned short>(nOGF >= 1 && nOGF <= 6 ? 27001 + 2 * (nOGF - 1) : 27001);
    std::vector<unsigned short> a = {27090, 27091, 27126, nOCFId, static_cast<unsigned short>(nOCFId + 1)};
    a.insert(a.end(), aIds.begin(), aIds.end());
    return a;
}

struct SReturnRow {
    unsigned nOGF;
    unsigned nOCF;
    const char* pszCommand;
    std::vector<unsigned short> aIds;
};

void PrintTo(const SReturnRow& r, std::ostream* os)
{
    *os << r.pszCommand;
}

// Every command that returns parameters, with them in order.
const SReturnRow kReturnRows[] = {
    {1, 0x02, "HCI_Inquiry_Cancel", {27147}},
    {1, 0x03, "HCI_Periodic_Inquiry_Mode", {27148}},
    {1, 0x04, "HCI_Exit_Periodic_Inquiry_Mode", {27149}},
    {1, 0x0B, "HCI_Link_Key_Request_Reply", {27150, 27151}},
    {1, 0x0C, "HCI_Link_Key_Request_Negative_Reply", {27152, 27151}},
    {1, 0x0D, "HCI_PIN_Code_Request_Reply", {27153, 27151}},
    {1, 0x0E, "HCI_PIN_Code_Request_Negative_Reply", {27154, 27151}},
    {2, 0x09, "HCI_Role_Discovery", {27155, 27156, 27157}},
    {2, 0x0C, "HCI_Read_Link_Policy_Settings", {27158, 27156, 27159}},
    {2, 0x0D, "HCI_Write_Link_Policy_Settings", {27160, 27156}},
    {3, 0x01, "Set_Event_Mask", {27161}},
    {3, 0x03, "Reset", {27162}},
    {3, 0x05, "Set_Event_Filter", {27163}},
    {3, 0x08, "Flush", {27164, 27156}},
    {3, 0x09, "Read_PIN_Type", {27165, 27166}},
    {3, 0x0A, "Write_PIN_Type", {27167}},
    {3, 0x0B, "Create_New_Unit_Key", {27168}},
    {3, 0x0D, "Read_Stored_Link_Key", {27169, 27170, 27171}},
    {3, 0x11, "Write_Stored_Link_Key", {27172, 27173}},
    {3, 0x12, "Delete_Stored_Link_Key", {27174, 27175}},
    {3, 0x13, "Change_Local_Name", {27176}},
    {3, 0x14, "Read_Local_Name", {27177, 27178}},
    {3, 0x15, "Read_Connection_Accept_Timeout", {27179, 27180}},
    {3, 0x16, "Write_Connection_Accept_Timeout", {27181}},
    {3, 0x17, "Read_Page_Timeout", {27182, 27183}},
    {3, 0x18, "Write_Page_Timeout", {27184}},
    {3, 0x19, "Read_Scan_Enable", {27185, 27186}},
    {3, 0x1A, "Write_Scan_Enable", {27187}},
    {3, 0x1B, "Read_Page_Scan_Activity", {27188, 27189, 27190}},
    {3, 0x1C, "Write_Page_Scan_Activity", {27191}},
    {3, 0x1D, "Read_Inquiry_Scan_Activity", {27192, 27193, 27194}},
    {3, 0x1E, "Write_Inquiry_Scan_Activity", {27195}},
    {3, 0x1F, "Read_Authentication_Enable", {27196, 27197}},
    {3, 0x20, "Write_Authentication_Enable", {27198}},
    {3, 0x21, "Read_Encryption_Mode", {27199, 27200}},
    {3, 0x22, "Write_Encryption_Mode", {27201}},
    {3, 0x23, "Read_Class_of_Device", {27202, 27203}},
    {3, 0x24, "Write_Class_of_Device", {27204}},
    {3, 0x25, "Read_Voice_Setting", {27205, 27072}},
    {3, 0x26, "Write_Voice_Setting", {27207}},
    {3, 0x27, "Read_Automatic_Flush_Timeout", {27208, 27156, 27209}},
    {3, 0x28, "Write_Automatic_Flush_Timeout", {27210, 27156}},
    {3, 0x29, "Read_Num_Broadcast_Retransmissions", {27211, 27212}},
    {3, 0x2A, "Write_Num_Broadcast_Retransmissions", {27213}},
    {3, 0x2B, "Read_Hold_Mode_Activity", {27214, 27215}},
    {3, 0x2C, "Write_Hold_Mode_Activity", {27216}},
    {3, 0x2D, "Read_Transmit_Power_Level", {27217, 27156, 27218}},
    {3, 0x2E, "Read_SCO_Flow_Control_Enable", {27219, 27220}},
    {3, 0x2F, "Write_SCO_Flow_Control_Enable", {27221}},
    {3, 0x31, "Set_Host_Controller_To_Host_Flow_Control", {27222}},
    {3, 0x33, "Host_Buffer_Size", {27223}},
    {3, 0x36, "Read_Link_Supervision_Timeout", {27224, 27156, 27225}},
    {3, 0x37, "Write_Link_Supervision_Timeout", {27226, 27156}},
    {3, 0x38, "Read_Number_Of_Supported_IAC", {27227, 27228}},
    {3, 0x39, "Read_Current_IAC_LAP", {27229, 27230}},
    {3, 0x3A, "Write_Current_IAC_LAP", {27231}},
    {3, 0x3B, "Read_Page_Scan_Period_Mode", {27232, 27233}},
    {3, 0x3C, "Write_Page_Scan_Period_Mode", {27234}},
    {3, 0x3D, "Read_Page_Scan_Mode", {27235, 27236}},
    {3, 0x3E, "Write_Page_Scan_Mode", {27237}},
    {4, 0x01, "HCI_Read_Local_Version_Information", {27238, 27239, 27240, 27241, 27242, 27243}},
    {4, 0x03, "HCI_Read_Local_Supported_Features", {27244, 27245}},
    {4, 0x05, "HCI_Read_Buffer_Size", {27246, 27247, 27248, 27249, 27250}},
    {4, 0x07, "HCI_Read_Country_Code", {27251, 27252}},
    {4, 0x09, "HCI_Read_BD_Address", {27253, 27254}},
    {5, 0x01, "HCI_Read_Failed_Contact_Counter", {27255, 27156, 27256}},
    {5, 0x02, "HCI_Reset_Failed_Contact_Counter", {27257, 27156}},
    {5, 0x03, "HCI_Get_Link_Quality", {27258, 27156, 27259}},
    {5, 0x05, "HCI_Read_RSSI", {27260, 27156, 27261}},
    {6, 0x01, "HCI_Read_Loopback_Mode", {27262, 27263}},
    {6, 0x02, "HCI_Write_Loopback_Mode", {27264}},
    {6, 0x03, "HCI_Enable_Device_Under_Test_Mode", {27265}},
};

class HCIReturnRow : public ::testing::TestWithParam<SReturnRow> {};

// Status 0, then distinct bytes for each parameter, then one byte more.
TEST_P(HCIReturnRow, ReadsTheCommandsReturnParametersThenUnExpected)
{
    const SReturnRow& r = GetParam();
    CHCISpec& decoder = *CHCISpec::GetInstance();
    std::string strReturn;
    unsigned nByte = 0;
    for (unsigned short nId : r.aIds)
        for (std::uint32_t i = 0; i < decoder.GetDefaultFieldAttr(nId)->m_dwLength / 8; ++i)
            strReturn += ByteHex(nByte++);
    CHCIPacket packet(Hex(CommandComplete(r.nOGF, r.nOCF, strReturn + "ee")), HCIEventPacketType);

    std::vector<unsigned short> aIds = r.aIds;
    aIds.push_back(kUnExpected);
    EXPECT_EQ(IdsOf(packet), WithHeader(r.nOGF, aIds));
    EXPECT_EQ(packet.GetRequestName().ToStdString(), std::string(r.pszCommand) + " Command Complete Event");
    EXPECT_EQ(packet.GetOpCodeOCF(), 0);
    // The first return parameter is the status: 0 is the command's success.
    const unsigned char nStatus = packet.GetFieldIndex(r.aIds[0]);
    ASSERT_NE(nStatus, 0);
    EXPECT_STREQ(packet.GetFieldPattern(nStatus, 5, DisplayDecimal, 0, 0, PacketSideWhole).GetString(), "succeeded");
    EXPECT_EQ(FieldsOf(packet).back(), (SFieldView{kUnExpected, 8, "ee"}));
}

// The event cut inside its return parameters keeps the command's name and
// the fields up to the cut.
TEST_P(HCIReturnRow, CutInsideTheReturnParametersKeepsTheName)
{
    const SReturnRow& r = GetParam();
    CHCIPacket packet(Hex(CommandComplete(r.nOGF, r.nOCF, "00")), HCIEventPacketType);
    EXPECT_EQ(IdsOf(packet), WithHeader(r.nOGF, {r.aIds[0]}));
    EXPECT_EQ(packet.GetRequestName().ToStdString(), std::string(r.pszCommand) + " Command Complete Event");
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, HCIReturnRow, ::testing::ValuesIn(kReturnRows),
                         [](const ::testing::TestParamInfo<SReturnRow>& info) {
                             return std::string(info.param.pszCommand);
                         });

// ------------------------------------------------- commands returning nothing

TEST(HCICommandComplete, CommandsWithoutReturnParametersShareTheirGroupsName)
{
    struct SCase {
        unsigned nOGF;
        std::vector<unsigned> aOCFs;
        const char* pszName;
    };
    const SCase aCases[] = {
        {1,
         {0x01, 0x05, 0x06, 0x07, 0x09, 0x0A, 0x0F, 0x11, 0x13, 0x15, 0x17, 0x19, 0x1B, 0x1D, 0x1F},
         "HCI_Read_Clock_Offset Command Complete Event"},
        {2, {0x01, 0x03, 0x04, 0x05, 0x06, 0x07, 0x0B}, "HCI_Switch_Role Command Complete Event"},
        // The tab that ends this command's name stays inside the name.
        {3, {0x35}, "Host_Number_Of_Completed_Packets\t Command Complete Event"},
    };
    for (const SCase& c : aCases) {
        for (unsigned nOCF : c.aOCFs) {
            SCOPED_TRACE(testing::Message() << "OGF " << c.nOGF << " OCF " << nOCF);
            CHCIPacket packet(Hex(CommandComplete(c.nOGF, nOCF, "00 2a00")), HCIEventPacketType);
            EXPECT_EQ(IdsOf(packet), WithHeader(c.nOGF, {kUnExpected}));
            EXPECT_EQ(packet.GetRequestName().ToStdString(), c.pszName);
            EXPECT_EQ(packet.GetOpCodeOCF(), 0);
        }
    }
}

// ------------------------------------------------ unknown and vendor opcodes

struct SOpCodeCase {
    const char* pszWhat;
    std::string strHex;
    const char* pszName;
    std::vector<unsigned short> aIds;
    int nOpCodeOCF;
};

TEST(HCICommandComplete, OpCodesOfNoKnownCommand)
{
    const SOpCodeCase aCases[] = {
        {"OGF 1 OCF 8", CommandComplete(1, 0x08, "00 11"), "UnKnown", WithHeader(1, {kUnExpected}), 0},
        {"OCF 0 of link policy", CommandComplete(2, 0x00, "00"), "UnKnown", WithHeader(2, {kUnExpected}), 0},
        {"OCF 0 of host controller", CommandComplete(3, 0x00, "00"), "UnKnown", WithHeader(3, {kUnExpected}), 0},
        {"OCF 2 of information", CommandComplete(4, 0x02, "00"), "UnKnown", WithHeader(4, {kUnExpected}), 0},
        {"OCF 4 of status", CommandComplete(5, 0x04, "00"), "UnKnown", WithHeader(5, {kUnExpected}), 0},
        {"OCF 4 of testing", CommandComplete(6, 0x04, "00"), "UnKnown", WithHeader(6, {kUnExpected}), 0},
        // Other OGFs show in the link control fields; the rest is left over.
        {"vendor opcode", CommandComplete(0x3F, 0x0A, "00 01 02"), "UnKnown", WithHeader(0x3F, {kUnExpected}),
         27267},
        {"OGF 0 with bytes behind", CommandComplete(0, 0, "00"), "UnKnown", WithHeader(0, {kUnExpected}), 27267},
        {"OGF 7 alone", CommandComplete(7, 0x01, ""), "CommandCompleteEvent", WithHeader(7, {}), 0},
        {"vendor opcode alone", CommandComplete(0x3F, 0x01, ""), "CommandCompleteEvent", WithHeader(0x3F, {}), 0},
        // A Command Complete that ends in or behind its opcode is not named
        // after the command.
        {"Reset, opcode alone", CommandComplete(3, 0x03, ""), "CommandCompleteEvent", WithHeader(3, {}), 0},
        {"ends inside the opcode", "0e 04 01 03", "CommandCompleteEvent", {27090, 27091, 27126, 27001}, 0},
        {"ends behind the credits", "0e 04 01", "CommandCompleteEvent", {27090, 27091, 27126}, 0},
    };
    for (const SOpCodeCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        CHCIPacket packet(Hex(c.strHex), HCIEventPacketType);
        EXPECT_EQ(IdsOf(packet), c.aIds);
        EXPECT_EQ(packet.GetRequestName().ToStdString(), c.pszName);
        EXPECT_EQ(packet.GetOpCodeOCF(), c.nOpCodeOCF);
    }
}

TEST(HCICommandComplete, FieldValuesAndWidths)
{
    struct SCase {
        const char* pszWhat;
        std::string strHex;
        std::vector<SFieldView> aReturn;  // behind the opcode
    };
    const SCase aCases[] = {
        // The voice setting comes back in the command's own field.
        {"Read_Voice_Setting", CommandComplete(3, 0x25, "00 6000"), {{27205, 8, "00"}, {27072, 16, "6000"}}},
        {"Read_Current_IAC_LAP", CommandComplete(3, 0x39, "00 338b9e 01"),
         {{27229, 8, "00"}, {27230, 24, "338b9e"}, {kUnExpected, 8, "01"}}},
        {"Read_Stored_Link_Key", CommandComplete(3, 0x0D, "00 0800 0300"),
         {{27169, 8, "00"}, {27170, 16, "0800"}, {27171, 16, "0300"}}},
        {"Write_Stored_Link_Key", CommandComplete(3, 0x11, "00 01"), {{27172, 8, "00"}, {27173, 8, "01"}}},
        {"Delete_Stored_Link_Key", CommandComplete(3, 0x12, "00 0100"), {{27174, 8, "00"}, {27175, 16, "0100"}}},
        {"HCI_Read_RSSI with an error", CommandComplete(5, 0x05, "02 2a00 f6"),
         {{27260, 8, "02"}, {27156, 16, "2a00"}, {27261, 8, "f6"}}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        CHCIPacket packet(Hex(c.strHex), HCIEventPacketType);
        std::vector<SFieldView> aFields = FieldsOf(packet);
        ASSERT_GE(aFields.size(), 5u);
        EXPECT_EQ(std::vector<SFieldView>(aFields.begin() + 5, aFields.end()), c.aReturn);
    }
    CHCIPacket voice(Hex(CommandComplete(3, 0x25, "00 0001")), HCIEventPacketType);
    EXPECT_STREQ(voice.GetFieldPattern(7, 6, DisplayDecimal, 0, 0, PacketSideWhole).GetString(),
                 "Input Coding: µ-law Input Coding");
    CHCIPacket rssi(Hex(CommandComplete(5, 0x05, "02 2a00 f6")), HCIEventPacketType);
    EXPECT_STREQ(rssi.GetFieldPattern(6, 5, DisplayDecimal, 0, 0, PacketSideWhole).GetString(),
                 "Error: No Connection");
}

// ------------------------------------------------------------------ naming

// No HCI packet has a response side, whatever answers what.
TEST(HCINaming, NoPacketHasAResponse)
{
    const std::pair<EHCIPacketKind, std::string> aPackets[] = {
        {HCICommandPacketType, "03 0c 00"},
        {HCIEventPacketType, CommandComplete(3, 0x03, "00")},
        {HCIEventPacketType, "0f 04 00 01 03 0c"},
        {HCIEventPacketType, "13 05 01 2a00 0100"},
        {HCIACLHostControllerToHostDataPacketType, "2a 20 01 00 ff"},
    };
    for (const auto& p : aPackets) {
        SCOPED_TRACE(p.second.c_str());
        CHCIPacket packet(Hex(p.second), p.first);
        EXPECT_FALSE(packet.GetRequestName().IsEmpty());
        EXPECT_TRUE(packet.GetResponseName().IsEmpty());
        EXPECT_EQ(packet.m_nResponseFields, 0);
        EXPECT_EQ(packet.m_bHasResponse, 0);
    }
}

// The tool's JSON of events given as hex, one object per event.
TEST(HCINaming, ToolShowsEventNamesAndTheOCFFieldId)
{
    const std::string strCommand = std::string("'") + BUSDECODE_TOOL_PATH + "' --json --hci-kind 4 CHCISpec " +
                                   HexOf(Hex(CommandComplete(4, 0x09, "00 f52568b5be60"))) + " " +
                                   HexOf(Hex(CommandComplete(0x3F, 0x01, "00 01"))) + " 0f0400010104";
    FILE* pPipe = popen(strCommand.c_str(), "r");
    ASSERT_NE(pPipe, nullptr);
    std::string strOut;
    std::array<char, 4096> buf;
    std::size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), pPipe)) > 0)
        strOut.append(buf.data(), n);
    ASSERT_EQ(pclose(pPipe), 0);

    std::vector<nlohmann::json> aLines;
    for (std::size_t nPos = 0; nPos < strOut.size();) {
        const std::size_t nEnd = strOut.find('\n', nPos);
        aLines.push_back(nlohmann::json::parse(strOut.substr(nPos, nEnd - nPos)));
        nPos = nEnd == std::string::npos ? strOut.size() : nEnd + 1;
    }
    ASSERT_EQ(aLines.size(), 3u);
    EXPECT_EQ(aLines[0]["request_name"], "HCI_Read_BD_Address Command Complete Event");
    EXPECT_EQ(aLines[0]["opcode_ocf"], 0);
    EXPECT_EQ(aLines[0]["fields"][6]["value"], "f52568b5be60");
    EXPECT_EQ(aLines[1]["request_name"], "UnKnown");
    EXPECT_EQ(aLines[1]["opcode_ocf"], 27267);
    EXPECT_EQ(aLines[2]["request_name"], "HCI_Inquiry Command Status Event");
    EXPECT_EQ(aLines[2]["fields"][2]["option"], "CommandCurrentlyInPending");
}

}  // namespace
