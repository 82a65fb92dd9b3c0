// HCI commands of the six groups: header, parameters, naming, the stop at
// the end of the payload, UnExpected, and the option lists of the groups.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "hci/HCISpec.h"
#include "tests/TestUtil.h"

namespace {

constexpr unsigned short kUnExpected = 27267;

// The opcode, OCF in bits 0 to 9 and OGF in bits 10 to 15, as hex bytes.
std::string Op(unsigned nOGF, unsigned nOCF)
{
    const unsigned nOpCode = nOGF << 10 | nOCF;
    char sz[16];
    std::snprintf(sz, sizeof sz, "%02x%02x", nOpCode & 0xFF, nOpCode >> 8 & 0xFF);
    return sz;
}

std::string Repeat(const std::string& strByte, std::size_t n)
{
    std::string str;
    for (std::size_t i = 0; i < n; ++i)
        str += strByte;
    return str;
}

std::string DescOf(const CHCIPacket& p, unsigned short nId)
{
    return p.GetFieldDesc(p.GetFieldIndex(nId)).ToStdString();
}

// ------------------------------------------------------------ full decodes

struct SFullCase {
    std::string strHex;
    const char* pszName;
    std::vector<SFieldView> aFields;
};

TEST(HCICommands, DecodesEveryFieldOfACommandInEachGroup)
{
    const SFullCase aCases[] = {
        {Op(1, 0x01) + "05 338b9e 08 00", "HCI_Inquiry",
         {{27001, 10, "0100"}, {27002, 6, "01"}, {27013, 8, "05"}, {27014, 24, "338b9e"}, {27015, 8, "08"},
          {27016, 8, "00"}}},
        // Clock_Offset 0x9234: 15 bits of offset, then the valid flag as the top bit.
        {Op(1, 0x05) + "0d 112233445566 1800 01 00 3492 01 ee", "HCI_Create_Connection",
         {{27001, 10, "0500"}, {27002, 6, "01"}, {27013, 8, "0d"}, {27019, 48, "112233445566"},
          {27020, 16, "1800"}, {27021, 8, "01"}, {27022, 8, "00"}, {27023, 15, "3412"}, {27024, 1, "01"},
          {27025, 8, "01"}, {kUnExpected, 8, "ee"}}},
        {Op(2, 0x03) + "0a 2a00 0008 0004 0100 2000", "HCI_Sniff_Mode",
         {{27003, 10, "0300"}, {27004, 6, "02"}, {27013, 8, "0a"}, {27026, 16, "2a00"}, {27036, 16, "0008"},
          {27037, 16, "0004"}, {27038, 16, "0100"}, {27039, 16, "2000"}}},
        {Op(3, 0x33) + "07 fd03 40 0a00 0800", "Host_Buffer_Size",
         {{27005, 10, "3300"}, {27006, 6, "03"}, {27013, 8, "07"}, {27079, 16, "fd03"}, {27080, 8, "40"},
          {27081, 16, "0a00"}, {27082, 16, "0800"}}},
        {Op(4, 0x09) + "00 beef", "HCI_Read_BD_Address",
         {{27007, 10, "0900"}, {27008, 6, "04"}, {27013, 8, "00"}, {kUnExpected, 16, "beef"}}},
        {Op(5, 0x05) + "02 2a00", "HCI_Read_RSSI",
         {{27009, 10, "0500"}, {27010, 6, "05"}, {27013, 8, "02"}, {27026, 16, "2a00"}}},
        {Op(6, 0x02) + "01 01", "HCI_Write_Loopback_Mode",
         {{27011, 10, "0200"}, {27012, 6, "06"}, {27013, 8, "01"}, {27089, 8, "01"}}},
        // A PIN_Code keeps its 128 bits whatever PIN_Code_Length says.
        {Op(1, 0x0D) + "17 112233445566 04" + Repeat("31", 16), "HCI_PIN_Code_Request_Reply",
         {{27001, 10, "0d00"}, {27002, 6, "01"}, {27013, 8, "17"}, {27019, 48, "112233445566"}, {27030, 8, "04"},
          {27031, 128, Repeat("31", 16)}}},
    };
    for (const SFullCase& c : aCases) {
        SCOPED_TRACE(c.pszName);
        CHCIPacket p(Hex(c.strHex), HCICommandPacketType);
        EXPECT_EQ(FieldsOf(p), c.aFields);
        EXPECT_EQ(p.GetRequestName().ToStdString(), c.pszName);
    }
}

// ------------------------------------------------------- every command

struct SCommandCase {
    unsigned nOGF;
    unsigned nOCF;
    const char* pszName;
    std::vector<unsigned short> aParams;
};

// Every known command with a long tail of 0xAA bytes: header, parameters in
// order, then UnExpected. Set_Event_Filter reads its filter type alone, since
// 0xAA is no filter type.
const SCommandCase kAllCommands[] = {
    {1, 0x01, "HCI_Inquiry", {27014, 27015, 27016}},
    {1, 0x02, "HCI_Inquiry_Cancel", {}},
    {1, 0x03, "HCI_Periodic_Inquiry_Mode", {27017, 27018, 27014, 27015, 27016}},
    {1, 0x04, "HCI_Exit_Periodic_Inquiry_Mode", {}},
    {1, 0x05, "HCI_Create_Connection", {27019, 27020, 27021, 27022, 27023, 27024, 27025}},
    {1, 0x06, "HCI_Disconnect", {27026, 27027}},
    {1, 0x07, "HCI_Add_SCO_Connection", {27026, 27020}},
    {1, 0x09, "HCI_Accept_Connection_Request", {27019, 27028}},
    {1, 0x0A, "HCI_Reject_Connection_Request", {27019, 27027}},
    {1, 0x0B, "HCI_Link_Key_Request_Reply", {27019, 27029}},
    {1, 0x0C, "HCI_Link_Key_Request_Negative_Reply", {27019}},
    {1, 0x0D, "HCI_PIN_Code_Request_Reply", {27019, 27030, 27031}},
    {1, 0x0E, "HCI_PIN_Code_Request_Negative_Reply", {27019}},
    {1, 0x0F, "HCI_Change_Connection_Packet_Type", {27026, 27020}},
    {1, 0x11, "HCI_Authentication_Requested", {27026}},
    {1, 0x13, "HCI_Set_Connection_Encryption", {27026, 27032}},
    {1, 0x15, "HCI_Change_Connection_Link_Key", {27026}},
    {1, 0x17, "HCI_Master_Link_Key", {27033}},
    {1, 0x19, "HCI_Remote_Name_Request", {27019, 27021, 27022, 27023, 27024}},
    {1, 0x1B, "HCI_Read_Remote_Supported_Features", {27026}},
    {1, 0x1D, "HCI_Read_Remote_Version_Information", {27026}},
    {1, 0x1F, "HCI_Read_Clock_Offset", {27026}},
    {2, 0x01, "HCI_Hold_Mode", {27026, 27034, 27035}},
    {2, 0x03, "HCI_Sniff_Mode", {27026, 27036, 27037, 27038, 27039}},
    {2, 0x04, "HCI_Exit_Sniff_Mode", {27026}},
    {2, 0x05, "HCI_Park_Mode", {27026, 27040, 27041}},
    {2, 0x06, "HCI_Exit_Park_Mode", {27026}},
    {2, 0x07, "HCI_QoS_Setup", {27026, 27042, 27043, 27044, 27045, 27046, 27047}},
    {2, 0x09, "HCI_Role_Discovery", {27026}},
    {2, 0x0B, "HCI_Switch_Role", {27019, 27028}},
    {2, 0x0C, "HCI_Read_Link_Policy_Settings", {27026}},
    {2, 0x0D, "HCI_Write_Link_Policy_Settings", {27026, 27048}},
    {3, 0x01, "Set_Event_Mask", {27049}},
    {3, 0x03, "Reset", {}},
    {3, 0x05, "Set_Event_Filter", {27050}},
    {3, 0x08, "Flush", {27026}},
    {3, 0x09, "Read_PIN_Type", {}},
    {3, 0x0A, "Write_PIN_Type", {27057}},
    {3, 0x0B, "Create_New_Unit_Key", {}},
    {3, 0x0D, "Read_Stored_Link_Key", {27019, 27058}},
    {3, 0x11, "Write_Stored_Link_Key", {27059, 27019, 27029}},
    {3, 0x12, "Delete_Stored_Link_Key", {27019, 27060}},
    {3, 0x13, "Change_Local_Name", {27061}},
    {3, 0x14, "Read_Local_Name", {}},
    {3, 0x15, "Read_Connection_Accept_Timeout", {}},
    {3, 0x16, "Write_Connection_Accept_Timeout", {27062}},
    {3, 0x17, "Read_Page_Timeout", {}},
    {3, 0x18, "Write_Page_Timeout", {27063}},
    {3, 0x19, "Read_Scan_Enable", {}},
    {3, 0x1A, "Write_Scan_Enable", {27064}},
    {3, 0x1B, "Read_Page_Scan_Activity", {}},
    {3, 0x1C, "Write_Page_Scan_Activity", {27065, 27066}},
    {3, 0x1D, "Read_Inquiry_Scan_Activity", {}},
    {3, 0x1E, "Write_Inquiry_Scan_Activity", {27067, 27068}},
    {3, 0x1F, "Read_Authentication_Enable", {}},
    {3, 0x20, "Write_Authentication_Enable", {27069}},
    {3, 0x21, "Read_Encryption_Mode", {}},
    {3, 0x22, "Write_Encryption_Mode", {27070}},
    {3, 0x23, "Read_Class_of_Device", {}},
    {3, 0x24, "Write_Class_of_Device", {27071}},
    {3, 0x25, "Read_Voice_Setting", {}},
    {3, 0x26, "Write_Voice_Setting", {27072}},
    {3, 0x27, "Read_Automatic_Flush_Timeout", {27026}},
    {3, 0x28, "Write_Automatic_Flush_Timeout", {27026, 27073}},
    {3, 0x29, "Read_Num_Broadcast_Retransmissions", {}},
    {3, 0x2A, "Write_Num_Broadcast_Retransmissions", {27074}},
    {3, 0x2B, "Read_Hold_Mode_Activity", {}},
    {3, 0x2C, "Write_Hold_Mode_Activity", {27075}},
    {3, 0x2D, "Read_Transmit_Power_Level", {27026, 27076}},
    {3, 0x2E, "Read_SCO_Flow_Control_Enable", {}},
    {3, 0x2F, "Write_SCO_Flow_Control_Enable", {27077}},
    {3, 0x31, "Set_Host_Controller_To_Host_Flow_Control", {27078}},
    {3, 0x33, "Host_Buffer_Size", {27079, 27080, 27081, 27082}},
    {3, 0x35, "Host_Number_Of_Completed_Packets\t", {27083, 27026, 27084}},
    {3, 0x36, "Read_Link_Supervision_Timeout", {27026}},
    {3, 0x37, "Write_Link_Supervision_Timeout", {27026, 27085}},
    {3, 0x38, "Read_Number_Of_Supported_IAC", {}},
    {3, 0x39, "Read_Current_IAC_LAP", {}},
    {3, 0x3A, "Write_Current_IAC_LAP", {27086, 27087}},
    {3, 0x3B, "Read_Page_Scan_Period_Mode", {}},
    {3, 0x3C, "Write_Page_Scan_Period_Mode", {27088}},
    {3, 0x3D, "Read_Page_Scan_Mode", {}},
    {3, 0x3E, "Write_Page_Scan_Mode", {27022}},
    {4, 0x01, "HCI_Read_Local_Version_Information", {}},
    {4, 0x03, "HCI_Read_Local_Supported_Features", {}},
    {4, 0x05, "HCI_Read_Buffer_Size", {}},
    {4, 0x07, "HCI_Read_Country_Code", {}},
    {4, 0x09, "HCI_Read_BD_Address", {}},
    {5, 0x01, "HCI_Read_Failed_Contact_Counter", {27026}},
    {5, 0x02, "HCI_Reset_Failed_Contact_Counter", {27026}},
    {5, 0x03, "HCI_Get_Link_Quality", {27026}},
    {5, 0x05, "HCI_Read_RSSI", {27026}},
    {6, 0x01, "HCI_Read_Loopback_Mode", {}},
    {6, 0x02, "HCI_Write_Loopback_Mode", {27089}},
    {6, 0x03, "HCI_Enable_Device_Under_Test_Mode", {}},
};

TEST(HCICommands, EveryCommandHasItsNameAndParameterSequence)
{
    for (const SCommandCase& c : kAllCommands) {
        SCOPED_TRACE(c.pszName);
        const unsigned short nOCFField = static_cast<unsigned short>(27001 + 2 * (c.nOGF - 1));
        std::vector<unsigned short> aIds = {nOCFField, static_cast<unsigned short>(nOCFField + 1), 27013};
        aIds.insert(aIds.end(), c.aParams.begin(), c.aParams.end());
        aIds.push_back(kUnExpected);

        CHCIPacket p(Hex(Op(c.nOGF, c.nOCF) + "ff" + Repeat("aa", 300)), HCICommandPacketType);
        EXPECT_EQ(IdsOf(p), aIds);
        EXPECT_EQ(p.GetRequestName().ToStdString(), c.pszName);
        EXPECT_EQ(p.GetOpCodeOCF(), nOCFField);
    }
}

// A payload cut behind any byte keeps the fields read so far, the last one
// with the bits that were there, and reads nothing more.
TEST(HCICommands, CutAfterAnyByteStopsInsideTheFieldThatWasCut)
{
    const std::string aPayloads[] = {
        Op(1, 0x05) + "0d 112233445566 1800 01 00 3492 01",
        Op(2, 0x07) + "14 2a00 00 01 11223344 55667788 99aabbcc ddeeff00",
        Op(3, 0x11) + "17 01 112233445566" + Repeat("5a", 16),
        Op(3, 0x05) + "09 02 01 0c0200 ffffff 01",
        Op(4, 0x01) + "00",
        Op(5, 0x03) + "02 2a00",
        Op(6, 0x02) + "01 02",
    };
    for (const std::string& strHex : aPayloads) {
        const CAdvAnlzData full = Hex(strHex);
        const CHCIPacket whole(full, HCICommandPacketType);
        const std::uint16_t nOpCode = full.GetBits(0, 16);
        for (std::uint32_t nBytes = 2; nBytes < full.GetByteLength(); ++nBytes) {
            SCOPED_TRACE(strHex + " cut to " + std::to_string(nBytes));
            std::vector<SFieldView> aExpected;
            std::uint32_t nOffset = 0;
            for (unsigned char i = 1; i <= whole.GetFieldCount() && nOffset < 8 * nBytes; ++i) {
                const CAdvAnlzData& value = *whole.GetFieldValue(i);
                const CAdvAnlzData cut = value.GetBits(0, std::min(value.GetLength(), 8 * nBytes - nOffset));
                aExpected.push_back({whole.GetFieldId(i), cut.GetLength(), HexOf(cut)});
                nOffset += value.GetLength();
            }
            CHCIPacket p(full.GetBits(0, 8 * nBytes), HCICommandPacketType);
            EXPECT_EQ(FieldsOf(p), aExpected);
            // Status commands are named only behind Total_Length.
            const bool bNamed = (nOpCode >> 10) != 5 || nBytes > 3;
            EXPECT_EQ(p.GetRequestName().ToStdString(), bNamed ? whole.GetRequestName().ToStdString() : "");
        }
    }
}

// --------------------------------------------------- Set_Event_Filter

TEST(HCICommands, SetEventFilterReadsTheConditionThatTheTypesSelect)
{
    const struct {
        const char* pszParams;
        std::vector<unsigned short> aIds;
    } aCases[] = {
        {"00", {27050}},
        {"00 aa", {27050, kUnExpected}},
        {"01 00", {27050, 27051}},
        {"01 00 aa", {27050, 27051, 27053, kUnExpected}},
        {"01 01 0c0200 ffffff", {27050, 27051, 27054, 27055}},
        {"01 02 112233445566 aa", {27050, 27051, 27019, kUnExpected}},
        {"01 03 aa", {27050, 27051, kUnExpected}},
        {"02 00 01", {27050, 27052, 27056}},
        {"02 01 0c0200 ffffff 01 aa", {27050, 27052, 27054, 27055, 27056, kUnExpected}},
        {"02 02 112233445566", {27050, 27052, 27019}},
        {"02 02 112233445566 01", {27050, 27052, 27019, 27056}},
        {"02 07 aa", {27050, 27052, kUnExpected}},
        {"03 aa", {27050, kUnExpected}},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.pszParams);
        CHCIPacket p(Hex(Op(3, 0x05) + "ff" + c.pszParams), HCICommandPacketType);
        std::vector<unsigned short> aIds = IdsOf(p);
        ASSERT_GE(aIds.size(), 3u);
        aIds.erase(aIds.begin(), aIds.begin() + 3);
        EXPECT_EQ(aIds, c.aIds);
        EXPECT_EQ(p.GetRequestName().ToStdString(), "Set_Event_Filter");
        if (p.GetFieldIndex(27053) != 0) {
            EXPECT_EQ(p.GetFieldValue(p.GetFieldIndex(27053))->GetLength(), 0u);
        }
        if (p.GetFieldIndex(27019) != 0) {
            EXPECT_EQ(DescOf(p, 27019), "BD_ADDR of the Device of Interest");
        }
    }
}

// The counted host commands read one set whatever the count says.
TEST(HCICommands, CountedCommandsReadASingleSet)
{
    const struct {
        std::string strHex;
        std::vector<SFieldView> aParams;
    } aCases[] = {
        {Op(3, 0x11) + "2d 02 112233445566" + Repeat("01", 16) + "665544332211" + Repeat("02", 16),
         {{27059, 8, "02"}, {27019, 48, "112233445566"}, {27029, 128, Repeat("01", 16)},
          {kUnExpected, 176, "665544332211" + Repeat("02", 16)}}},
        {Op(3, 0x35) + "09 02 2a00 0100 2b00 0200",
         {{27083, 8, "02"}, {27026, 16, "2a00"}, {27084, 16, "0100"}, {kUnExpected, 32, "2b000200"}}},
        {Op(3, 0x3A) + "07 02 338b9e 008b9e", {{27086, 8, "02"}, {27087, 24, "338b9e"}, {kUnExpected, 24, "008b9e"}}},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.strHex);
        CHCIPacket p(Hex(c.strHex), HCICommandPacketType);
        std::vector<SFieldView> aFields = FieldsOf(p);
        ASSERT_GE(aFields.size(), 3u);
        aFields.erase(aFields.begin(), aFields.begin() + 3);
        EXPECT_EQ(aFields, c.aParams);
    }
}

// ------------------------------------------------------- descriptions

TEST(HCICommands, StarredParametersCarryTheCommandsOwnDescription)
{
    // Disconnect and Add_SCO_Connection put Connection_Handle at the same
    // offset and length: each must still show its own text.
    const struct {
        std::string strHex;
        unsigned short nId;
        const char* pszDesc;
    } aCases[] = {
        {Op(1, 0x06) + "03 2a00 13", 27026,
         "Connection Handle for the connection being disconnected. Range: 0x0000-0x0EFF (0x0F00 - 0x0FFF Reserved "
         "for future use)"},
        {Op(1, 0x07) + "04 2a00 e000", 27026,
         "Connection Handle for the ACL connection being used to create an SCO connection. Range: 0x0000-0x0EFF "
         "(0x0F00 - 0x0FFF Reserved for future use)"},
        {Op(1, 0x06) + "03 2a00 13", 27026,
         "Connection Handle for the connection being disconnected. Range: 0x0000-0x0EFF (0x0F00 - 0x0FFF Reserved "
         "for future use)"},
        {Op(1, 0x09) + "07 112233445566 00", 27019, "BD_ADDR of the Device to be connected"},
        {Op(1, 0x1D) + "02 2a00", 27026,
         "Specifies which Connection Handle's version information to get.Range: 0x0000-0x0EFF (0x0F00 - 0x0FFF "
         "Reserved for future use)"},
        {Op(3, 0x35) + "05 01 2a00 0100", 27026,
         "Connection Handle Range: 0x0000-0x0EFF (0x0F00 - 0x0FFF Reserved for future use)"},
        {Op(3, 0x11) + "17 01 112233445566", 27019, "BD_ADDR for the associated Link Key."},
        {Op(5, 0x05) + "02 2a00", 27026,
         "The Connection Handle for the Connection for which the RSSI is to be read.Range: 0x0000-0x0EFF (0x0F00 - "
         "0x0FFF Reserved for future use)"},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.strHex);
        CHCIPacket p(Hex(c.strHex), HCICommandPacketType);
        EXPECT_EQ(DescOf(p, c.nId), c.pszDesc);
    }
}

// ----------------------------------------------------------- options

struct SOptionCase {
    unsigned short nId;
    std::uint8_t nWidth;
    std::uint64_t nValue;
    const char* pszName;
    const char* pszAbbr;
};

TEST(HCICommands, OpCodeOptionsFollowTheNamingRuleOfTheirGroup)
{
    const SOptionCase aCases[] = {
        {27001, 10, 0x01, "HCI_Inquiry", "HCI_Inquiry"},
        {27001, 10, 0x08, "UnKnown", "UnKnown"},
        {27003, 10, 0x01, "HCI Hold Mode", "HCI Hold Mode"},
        {27003, 10, 0x0D, "HCI Write Link Policy Settings", "HCI Write Link Policy Settings"},
        {27005, 10, 0x23, "Read_Class_of_Device", "Read Class of Device"},
        {27005, 10, 0x33, "Host_Buffer_Size", "Host_Buffer Size"},
        {27005, 10, 0x35, "Host_Number_Of_Completed_Packets", "Host Number Of Completed Packets"},
        {27005, 10, 0x3FF, "UnKnown", "UnKnown"},
        {27007, 10, 0x01, "HCI_Read_Local_Version_Information", "HCI Read Local Version Information"},
        {27007, 10, 0x09, "HCI_Read_BD_ADDR", "HCI Read BD_ADDR"},
        {27009, 10, 0x05, "StatusParameters-HCI_Read_RSSI", "HCI Read RSSI"},
        {27009, 10, 0x04, "UnKnown", "UnKnown"},
        {27011, 10, 0x03, "TestingCommands-HCI_Enable_Device_Under_Test_Mode", "HCI Enable Device Under Test Mode"},
        {27011, 10, 0x00, "UnKnown", "UnKnown"},
    };
    const CHCISpec* pSpec = CHCISpec::GetInstance();
    for (const SOptionCase& c : aCases) {
        SCOPED_TRACE(std::to_string(c.nId) + " " + std::to_string(c.nValue));
        const CAdvAnlzData value(c.nValue, c.nWidth);
        EXPECT_EQ(pSpec->GetFieldOptionName(c.nId, value).ToStdString(), c.pszName);
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(c.nId, value).ToStdString(), c.pszAbbr);
    }
    for (unsigned short nOGFField = 27002; nOGFField <= 27012; nOGFField += 2) {
        EXPECT_EQ(pSpec->GetFieldOptionName(nOGFField, CAdvAnlzData(3, 6)).ToStdString(),
                  "HOST CONTROLLER and BASEBAND COMMANDS");
        EXPECT_EQ(pSpec->GetFieldOptionName(nOGFField, CAdvAnlzData(0x3E, 6)).ToStdString(), "UnKnown OGF");
        EXPECT_EQ(pSpec->GetFieldOptionName(nOGFField, CAdvAnlzData(0x3F, 6)).ToStdString(),
                  "Vendor-Specific debug command");
    }
}

TEST(HCICommands, ParameterOptionsNameValuesAndRanges)
{
    const SOptionCase aCases[] = {
        {27020, 16, 0x0020, "HV1", "HV1"},
        {27024, 1, 1, "Clock_Offset_ValidFlag-ValidClockOffset", "Clock_Offset_ValidFlag-ValidClockOffset"},
        {27027, 8, 0x29, "Reason-PairingWithUnitKeyNotSupported", "Pairing With Unit Key Not Supported"},
        {27027, 8, 0x00, "", ""},
        {27048, 16, 0x0010, "Reserved For Future Use", "Reserved For Future Use"},
        {27049, 64, 0, "NoEventsSpecified", "No Events Specified"},
        {27049, 64, 0x800, "ReadRemoteVersionInformationCompletevente", "Read Remote Version Information Completev ente"},
        {27049, 64, 0x80000000, "PageScanRepetitionModeChangeEvent", "Page Scan Repetition Mode Change Event"},
        {27049, 64, 0x8000000000000000, "Reserved", "Reserved"},
        {27049, 64, 0xFFFFFFFF, "Default", "Default"},
        {27050, 8, 0x03, "", ""},
        {27050, 8, 0xFF, "Filter_Type__Reserved", "Reserved"},
        {27054, 24, 0x000001, "Condition_Class_of_Device__AutoAcceptOn", "AutoAccept On"},
        {27069, 8, 0x01, "AuthenticationEnabledForAllConnectio", "Authentication Enabled For All Connectio"},
        {27072, 16, 0x0060, "Voice_Setting__InputCodingLinear", "Input Coding: Linear"},
        {27072, 16, 0x0160, "Voice_Setting__InputCodingUlawInputCoding", "Input Coding: µ-law Input Coding"},
        {27075, 8, 0x04, "Hold_Mode_Activity__SuspendPeriodicInquiries", "Suspend Periodic Inquiries"},
        {27075, 8, 0x08, "Hold_Mode_Activity__Reserved", "Reserved"},
        {27078, 8, 0x00, "Flow_Control_Enable__FlowControlOffInDirectionFromHostControllerToHost",
         "Flow Control Off InDirectionFromHostControllerToHost"},
        {27089, 8, 0x00, "NoLoopbackModeEnabled_Defaul", "No Loopback Mode Enabled_Defaul"},
        {27089, 8, 0x10, "Reserved", "Reserved"},
    };
    const CHCISpec* pSpec = CHCISpec::GetInstance();
    for (const SOptionCase& c : aCases) {
        SCOPED_TRACE(std::to_string(c.nId) + " " + std::to_string(c.nValue));
        const CAdvAnlzData value(c.nValue, c.nWidth);
        EXPECT_EQ(pSpec->GetFieldOptionName(c.nId, value).ToStdString(), c.pszName);
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(c.nId, value).ToStdString(), c.pszAbbr);
    }
}

TEST(HCICommands, OptionIdsAreTheValueUnlessTheRowSaysOtherwise)
{
    const struct {
        unsigned short nId;
        std::uint8_t nWidth;
        std::uint64_t nValue;
        unsigned short nOptionId;
    } aCases[] = {
        {27001, 10, 0x1F, 0x1F},       {27001, 10, 0x20, 0},         {27049, 64, 0, 1},
        {27049, 64, 4, 4},             {27049, 64, 0x80000000, 33},  {27049, 64, 0x100000000, 34},
        {27049, 64, 0xFFFFFFFF, 35},   {27050, 8, 0xFF, 3},          {27072, 16, 0x0160, 1},
        {27075, 8, 0x04, 3},           {27075, 8, 0x09, 4},
    };
    const CHCISpec* pSpec = CHCISpec::GetInstance();
    for (const auto& c : aCases) {
        SCOPED_TRACE(std::to_string(c.nId) + " " + std::to_string(c.nValue));
        const CFieldOptionList* pList = pSpec->GetFieldOptions(c.nId);
        ASSERT_NE(pList, nullptr);
        const SFieldOption* pOption = pList->Find(CAdvAnlzData(c.nValue, c.nWidth));
        ASSERT_NE(pOption, nullptr);
        EXPECT_EQ(pOption->m_nOptionId, c.nOptionId);
    }
}

}  // namespace
