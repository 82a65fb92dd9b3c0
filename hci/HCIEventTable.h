// The events of HCI 1.1, codes 0x01 to 0x20: the event parameter field ids
// and one table row per event code with the parameters in the order of the
// wire. The event reader reads any row with the generic field loop; Command
// Complete and Command Status carry an opcode and are read apart.
#pragma once

#include <cstddef>
#include <cstdint>

// Event parameter field ids, named as their abbreviations.
namespace HCIEvent {
enum : unsigned short {
    Inquiry_Status = 27092,
    Num_Responses = 27093,
    BD_ADDR = 27094,
    Page_Scan_Repetition_Mode = 27095,
    Page_Scan_Period_Mode = 27096,
    Page_Scan_Mode = 27097,
    Class_of_Device = 27098,
    Clock_Offset = 27099,
    Connection_Status = 27100,
    Connection_Handle = 27101,
    Link_Type = 27102,
    Encryption_Mode = 27103,
    Disconnection_Status = 27104,
    Authentication_Status = 27105,
    Remote_Status = 27106,
    Remote_Name = 27107,
    Encryption_Status = 27108,
    Encryption_Enable = 27109,
    ChangeConnection_Status = 27110,
    MasterLinkKey_Status = 27111,
    Key_Flag = 27112,
    ReadRemoteSupported_Status = 27113,
    LMP_Features = 27114,
    ReadRemoteVersion_Status = 27115,
    LMP_Version = 27116,
    Manufacturer_Name = 27117,
    LMP_Subversion = 27118,
    QoSSetup_Status = 27119,
    Flags = 27120,
    Service_Type = 27121,
    Token_Rate = 27122,
    Peak_Bandwidth = 27123,
    Latency = 27124,
    Delay_Variation = 27125,
    Num_HCI_Command_Packets = 27126,
    Command_Opcode = 27127,
    Return_Parameters = 27128,
    CommandStatus_Status = 27129,
    Hardware_Code = 27130,
    RoleChange_Status = 27131,
    New_Role = 27132,
    Number_of_Handles = 27133,
    HC_Num_Of_Completed_Packets = 27134,
    ModeChange_Status = 27135,
    Current_Mode = 27136,
    Interval = 27137,
    Num_Keys = 27138,
    Link_Key = 27139,
    Key_Type = 27140,
    HCI_Command_Packet = 27141,
    LMP_Max_Slots = 27142,
    ReadClockOffset_Status = 27143,
    ConnectionPacketTypeChanged_Status = 27144,
    ACL_Packet_Type = 27145,
    SCO_Packet_Type = 27146,
};
}  // namespace HCIEvent

// The event codes that HCI 1.1 defines, and the two read apart.
enum : std::uint8_t {
    kHCIFirstEventCode = 0x01,
    kHCILastEventCode = 0x20,
    kHCICommandCompleteEvent = 0x0E,
    kHCICommandStatusEvent = 0x0F,
};

// QoS Setup Complete carries the most parameters; an Inquiry Result entry
// the most per entry.
constexpr std::size_t kHCIMaxEventParameters = 8;
constexpr std::size_t kHCIMaxEventEntryParameters = 6;

// One event. The name is the event's request name and the name of its code
// in the event code's options; the abbreviation is the option's. An event
// with a counted list ends its parameters with the count, and each entry of
// the list holds the entry parameters, in order, once. Both lists end at the
// first id 0.
struct SHCIEvent {
    std::uint8_t nCode;
    const char* pszName;
    const char* pszAbbr;
    unsigned short aParams[kHCIMaxEventParameters];
    unsigned short aEntry[kHCIMaxEventEntryParameters];
};

// The events 0x01 to 0x20 in code order: the row of code c is element c - 1.
extern const SHCIEvent kHCIEvents[kHCILastEventCode];
