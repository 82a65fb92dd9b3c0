// The pieces that the six HCI command groups share: the parameter field ids,
// a table row per command (OCF, request name, parameters in order), the
// generic parameter loop over such a row, and the option rows of the OpCode
// fields. Each group keeps its own table in its own source file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/FieldAttr.h"
#include "hci/HCIReader.h"

// Command parameter field ids, named as the parameters of HCI 1.1.
namespace HCIParam {
enum : unsigned short {
    LAP = 27014,
    Inquiry_Length = 27015,
    Num_Responses = 27016,
    Max_Period_Length = 27017,
    Min_Period_Length = 27018,
    BD_ADDR = 27019,
    Packet_Type = 27020,
    Page_Scan_Repetition_Mode = 27021,
    Page_Scan_Mode = 27022,
    Clock_Offset_ClockType = 27023,
    Clock_Offset_ValidFlag = 27024,
    Allow_Role_Switch = 27025,
    Connection_Handle = 27026,
    Reason = 27027,
    Role = 27028,
    Link_Key = 27029,
    PIN_Code_Length = 27030,
    PIN_Code = 27031,
    Encryption_Enable = 27032,
    Key_Flag = 27033,
    Hold_Mode_Max_Interval = 27034,
    Hold_Mode_Min_Interval = 27035,
    Sniff_Max_Interval = 27036,
    Sniff_Min_Interval = 27037,
    Sniff_Attempt = 27038,
    Sniff_Timeout = 27039,
    Beacon_Max_Interval = 27040,
    Beacon_Min_Interval = 27041,
    Flags = 27042,
    Service_Type = 27043,
    Token_Rate = 27044,
    Peak_Bandwidth = 27045,
    Latency = 27046,
    Delay_Variation = 27047,
    Link_Policy_Settings = 27048,
    Event_Mask = 27049,
    Filter_Type = 27050,
    Inquiry_Result_Filter_Condition_Type = 27051,
    Connection_Setup_Filter_Condition_Type = 27052,
    Condition = 27053,
    Condition_Class_of_Device = 27054,
    Condition_Class_of_Device_Mask = 27055,
    Condition_Auto_Accept_Flag = 27056,
    PIN_Type = 27057,
    Read_All_Flag = 27058,
    Num_Keys_To_Write = 27059,
    Delete_All_Flag = 27060,
    Name = 27061,
    Conn_Accept_Timeout = 27062,
    Page_Timeout = 27063,
    Scan_Enable = 27064,
    Page_Scan_Interval = 27065,
    Page_Scan_Window = 27066,
    Inquiry_Scan_Interval = 27067,
    Inquiry_Scan_Window = 27068,
    Authentication_Enable = 27069,
    Encryption_Mode = 27070,
    Class_of_Device = 27071,
    Voice_Setting = 27072,
    Flush_Timeout = 27073,
    Num_Broadcast_Retran = 27074,
    Hold_Mode_Activity = 27075,
    Type = 27076,
    SCO_Flow_Control_Enable = 27077,
    Flow_Control_Enable = 27078,
    Host_ACL_Data_Packet_Length = 27079,
    Host_SCO_Data_Packet_Length = 27080,
    Host_Total_Num_ACL_Data_Packets = 27081,
    Host_Total_Num_SCO_Data_Packets = 27082,
    Number_Of_Handles = 27083,
    Host_Num_Of_Completed_Packets = 27084,
    Link_Supervision_Timeout = 27085,
    Num_Current_IAC = 27086,
    IAC_LAP = 27087,
    Page_Scan_Period_Mode = 27088,
    Loopback_Mode = 27089,
};
}  // namespace HCIParam

// One parameter of a command. BD_ADDR and Connection_Handle mean something
// different in every command, so a command may give the field a description
// of its own.
struct SHCICommandParameter {
    unsigned short nId = 0;
    const char* pszDesc = nullptr;  // null: the catalogue's description stands
};

// The tail of most Connection_Handle descriptions: the handle's valid range.
#define HCI_HANDLE_RANGE "Range: 0x0000-0x0EFF (0x0F00 - 0x0FFF Reserved for future use)"

// HCI_Create_Connection and HCI_QoS_Setup carry the most parameters.
constexpr std::size_t kHCIMaxCommandParameters = 7;

// One command of a group: its OCF, request name and parameters in the order
// of the wire. The list ends at the first entry with id 0.
struct SHCICommand {
    unsigned short nOCF;
    const char* pszName;
    SHCICommandParameter aParams[kHCIMaxCommandParameters];
};

// A group's command table, in OCF order.
struct SHCICommandGroup {
    const SHCICommand* pCommands;
    std::size_t nCount;

    // The row of a command, or null.
    const SHCICommand* Find(unsigned short nOCF) const noexcept
    {
        for (std::size_t i = 0; i < nCount; ++i)
            if (pCommands[i].nOCF == nOCF)
                return &pCommands[i];
        return nullptr;
    }
};

// The tables of OGF 1 to 6, each defined in the group's own file.
extern const SHCICommandGroup kHCILinkControlCommands;
extern const SHCICommandGroup kHCILinkPolicyCommands;
extern const SHCICommandGroup kHCIHostControllerCommands;
extern const SHCICommandGroup kHCIInformationCommands;
extern const SHCICommandGroup kHCIStatusCommands;
extern const SHCICommandGroup kHCITestingCommands;

// The table of a command group, OGF 1 to 6; null for any other OGF.
const SHCICommandGroup* HCICommandGroupOf(unsigned nOGF) noexcept;

// Reads the parameters of a command in order, each with its description
// for this command where it has one. False as soon as nothing is left; a
// parameter cut short by the end of the packet keeps the bits that were
// there.
inline bool ReadHCICommandParameters(CHCIReader& reader, const SHCICommand& command)
{
    for (const SHCICommandParameter& param : command.aParams) {
        if (param.nId == 0)
            break;
        const bool bMore = param.pszDesc ? ReadHCIDescribed(reader, param.nId, param.pszDesc) : reader.ReadOn(param.nId);
        if (!bMore)
            return false;
    }
    return true;
}

// The OGF list, one copy under each group's OGF field (6-bit options).
inline constexpr SOptionRow kHCIOGFOptions[] = {
    {0, 0, 0, "UnKnown", nullptr},
    {1, 1, 1, "LINK CONTROL COMMANDS", nullptr},
    {2, 2, 2, "LINK POLICY COMMANDS", nullptr},
    {3, 3, 3, "HOST CONTROLLER and BASEBAND COMMANDS", nullptr},
    {4, 4, 4, "INFORMATION PARAMETERS", nullptr},
    {5, 5, 5, "STATUS PARAMETERS", nullptr},
    {6, 6, 6, "TESTING COMMANDS", nullptr},
    {7, 7, 0x3E, "UnKnown OGF", nullptr},
    {0x3F, 0x3F, 0x3F, "Vendor-Specific debug command", nullptr},
};

// The text of one option of an OCF field. A group derives it from the
// command's request name by its own rule.
struct SHCIOCFOption {
    unsigned short nOCF;
    std::string strName;
    std::string strAbbr;
};

// The request name with every underscore turned into a blank.
inline std::string HCIUnderscoresToBlanks(std::string str)
{
    for (char& ch : str)
        if (ch == '_')
            ch = ' ';
    return str;
}

// The rows of an OCF field's 10-bit option list: one per command, the OCF
// as value and option id, then "UnKnown" for 0x400 to 0xFFFF. Cut to 10 bits
// that range is 0 to 0x3FF, so it names every OCF the group does not know.
// The rows point into aOptions, which must outlive them.
inline std::vector<SOptionRow> HCIOCFOptionRows(const std::vector<SHCIOCFOption>& aOptions)
{
    std::vector<SOptionRow> aRows;
    aRows.reserve(aOptions.size() + 1);
    for (const SHCIOCFOption& option : aOptions)
        aRows.push_back({option.nOCF, option.nOCF, option.nOCF, option.strName.c_str(), option.strAbbr.c_str()});
    aRows.push_back({0, 0x400, 0xFFFF, "UnKnown", nullptr});
    return aRows;
}
