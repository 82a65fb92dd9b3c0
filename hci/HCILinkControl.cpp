// Link control commands, OGF 1: inquiry, connection set-up and tear-down,
// link keys and PINs, and the remote queries.
#include <iterator>

#include "hci/HCICommandTable.h"

namespace {

using namespace HCIParam;

const SHCICommand kLinkCommands[] = {
    {0x0001, "HCI_Inquiry", {{LAP}, {Inquiry_Length}, {Num_Responses}}},
    {0x0002, "HCI_Inquiry_Cancel", {}},
    {0x0003, "HCI_Periodic_Inquiry_Mode",
     {{Max_Period_Length}, {Min_Period_Length}, {LAP}, {Inquiry_Length}, {Num_Responses}}},
    {0x0004, "HCI_Exit_Periodic_Inquiry_Mode", {}},
    {0x0005, "HCI_Create_Connection",
     {{BD_ADDR, "BD_ADDR of the Device to be connected."}, {Packet_Type}, {Page_Scan_Repetition_Mode},
      {Page_Scan_Mode}, {Clock_Offset_ClockType}, {Clock_Offset_ValidFlag}, {Allow_Role_Switch}}},
    {0x0006, "HCI_Disconnect",
     {{Connection_Handle, "Connection Handle for the connection being disconnected. " HCI_HANDLE_RANGE}, {Reason}}},
    {0x0007, "HCI_Add_SCO_Connection",
     {{Connection_Handle,
       "Connection Handle for the ACL connection being used to create an SCO connection. " HCI_HANDLE_RANGE},
      {Packet_Type}}},
    {0x0009, "HCI_Accept_Connection_Request", {{BD_ADDR, "BD_ADDR of the Device to be connected"}, {Role}}},
    {0x000A, "HCI_Reject_Connection_Request",
     {{BD_ADDR, "BD_ADDR of the Device to reject the connection from."}, {Reason}}},
    {0x000B, "HCI_Link_Key_Request_Reply",
     {{BD_ADDR, "BD_ADDR of the Device of which the Link Key is for."}, {Link_Key}}},
    {0x000C, "HCI_Link_Key_Request_Negative_Reply", {{BD_ADDR, "BD_ADDR of the Device which the Link Key is for."}}},
    {0x000D, "HCI_PIN_Code_Request_Reply",
     {{BD_ADDR, "BD_ADDR of the Device which the PIN code is for."}, {PIN_Code_Length}, {PIN_Code}}},
    {0x000E, "HCI_PIN_Code_Request_Negative_Reply",
     {{BD_ADDR, "BD_ADDR of the Device which this command is responding to."}}},
    {0x000F, "HCI_Change_Connection_Packet_Type",
     {{Connection_Handle, "Connection Handle to be used to for transmitting and receiving voice or data. Returned "
                          "from creating a connection. " HCI_HANDLE_RANGE},
      {Packet_Type}}},
    {0x0011, "HCI_Authentication_Requested",
     {{Connection_Handle, "Connection Handle to be used to set up authentication for all Connection Handles with the "
                          "same Bluetooth device end-point as the specified Connection Handle. " HCI_HANDLE_RANGE}}},
    {0x0013, "HCI_Set_Connection_Encryption",
     {{Connection_Handle, "Connection Handle to be used to enable/disable the link layer encryption for all "
                          "Connection Handles with the same Bluetooth device end-point as the specified Connection "
                          "Handle. " HCI_HANDLE_RANGE},
      {Encryption_Enable}}},
    {0x0015, "HCI_Change_Connection_Link_Key",
     {{Connection_Handle, "Connection Handle used to identify a connection. " HCI_HANDLE_RANGE}}},
    {0x0017, "HCI_Master_Link_Key", {{Key_Flag}}},
    {0x0019, "HCI_Remote_Name_Request",
     {{BD_ADDR, "BD_ADDR for the device whose name is requested."}, {Page_Scan_Repetition_Mode}, {Page_Scan_Mode},
      {Clock_Offset_ClockType}, {Clock_Offset_ValidFlag}}},
    {0x001B, "HCI_Read_Remote_Supported_Features",
     {{Connection_Handle,
       "Specifies which Connection Handle's LMP-supported features list to get. " HCI_HANDLE_RANGE}}},
    {0x001D, "HCI_Read_Remote_Version_Information",
     {{Connection_Handle, "Specifies which Connection Handle's version information to get." HCI_HANDLE_RANGE}}},
    {0x001F, "HCI_Read_Clock_Offset",
     {{Connection_Handle,
       "Specifies which Connection Handle's Clock Offset parameter is returned." HCI_HANDLE_RANGE}}},
};

// 27020: Packet_Type, a mask of the packet types allowed; one 16-bit option per bit.
const SOptionRow kPacketTypeOptions[] = {
    {1, 1, 1, "Reserved", nullptr},
    {2, 2, 2, "Reserved", nullptr},
    {4, 4, 4, "Reserved", nullptr},
    {8, 8, 8, "Reserved", nullptr},
    {0x10, 0x10, 0x10, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "HV1", nullptr},
    {0x40, 0x40, 0x40, "HV2", nullptr},
    {0x80, 0x80, 0x80, "HV3", nullptr},
    {0x100, 0x100, 0x100, "Reserved", nullptr},
    {0x200, 0x200, 0x200, "Reserved", nullptr},
    {0x400, 0x400, 0x400, "Reserved", nullptr},
    {0x800, 0x800, 0x800, "Reserved", nullptr},
    {0x1000, 0x1000, 0x1000, "Reserved", nullptr},
    {0x2000, 0x2000, 0x2000, "Reserved", nullptr},
    {0x4000, 0x4000, 0x4000, "Reserved", nullptr},
    {0x8000, 0x8000, 0x8000, "Reserved", nullptr},
};

// 27021: Page_Scan_Repetition_Mode.
const SOptionRow kPageScanRepetitionModeOptions[] = {
    {0, 0, 0, "Page_Scan_Repetition_Mode-R0", nullptr},
    {1, 1, 1, "Page_Scan_Repetition_Mode-R1", nullptr},
    {2, 2, 2, "Page_Scan_Repetition_Mode-R2", nullptr},
    {3, 3, 3, "Reserved", nullptr},
};

// 27022: Page_Scan_Mode.
const SOptionRow kPageScanModeOptions[] = {
    {0, 0, 0, "Page_Scan_Mode-MandatoryPageScanMode", "Mandatory Page Scan Mode"},
    {1, 1, 1, "Page_Scan_Mode-OptionalPageScanMode_I", "Optional Page Scan Mode_I"},
    {2, 2, 2, "Page_Scan_Mode-OptionalPageScanMode_II", "Optional Page Scan Mode_II"},
    {3, 3, 3, "Page_Scan_Mode-OptionalPageScanMode_III", "Optional Page Scan Mode_III"},
    {4, 4, 0xFF, "Reserved", nullptr},
};

// 27024: Clock_Offset-ValidFlag, the top bit of Clock_Offset; 8-bit options on the 1-bit field.
const SOptionRow kClockOffsetValidFlagOptions[] = {
    {0, 0, 0, "Clock_Offset_ValidFlag-InvalidClockOffset", nullptr},
    {1, 1, 1, "Clock_Offset_ValidFlag-ValidClockOffset", nullptr},
};

// 27025: Allow_Role_Switch.
const SOptionRow kAllowRoleSwitchOptions[] = {
    {0, 0, 0, "Allow_Role_Switch-LocalDeviceWillBeMaster", nullptr},
    {1, 1, 1, "Allow_Role_Switch-LocalDeviceMayBeMaster", nullptr},
    {2, 2, 0xFF, "Reserved", nullptr},
};

// 27027: Reason, the error code that a disconnection or rejection gives.
const SOptionRow kReasonOptions[] = {
    {1, 1, 1, "Reason-UnknownHCICommand", "Unknown HCI Command"},
    {2, 2, 2, "Reason-NoConnection", "No Connection"},
    {3, 3, 3, "Reason-HardwareFailure", "Hardware Failure"},
    {4, 4, 4, "Reason-PageTimeout", "Page Timeout"},
    {5, 5, 5, "Reason-AuthenticationFailure", "Authentication Failure"},
    {6, 6, 6, "Reason-KeyMissing", "Key Missing"},
    {7, 7, 7, "Reason-MemoryFull", "Memory Full"},
    {8, 8, 8, "Reason-ConnectionTimeout", "Connection Timeout"},
    {9, 9, 9, "Reason-MaxNumberOfConnections", "MaxNumber Of Connections"},
    {0xA, 0xA, 0xA, "Reason-MaxNumberOfSCOConnectionsToADevice", "MaxNumber Of SCOConnections To A Device"},
    {0xB, 0xB, 0xB, "Reason-ACLConnectionAlreadyExists", "ACL Connection Already Exists"},
    {0xC, 0xC, 0xC, "Reason-CommandDisallowed", "Command Disallowed"},
    {0xD, 0xD, 0xD, "Reason-HostRejectedDueToLimitedResources", "Host Rejected Due To Limited Resources"},
    {0xE, 0xE, 0xE, "Reason-HostRejectedDueToSecurityReasons", "Host Rejected Due To Security Reasons"},
    {0xF, 0xF, 0xF, "Reason-HostRejectedDueToRemoteDeviceIsOnlyPersonalDevice", "Host Rejected Due To Remote Device Is Only Personal Device"},
    {0x10, 0x10, 0x10, "Reason-HostTimeout", "Host Timeout"},
    {0x11, 0x11, 0x11, "Reason-UnsupportedFeatureOrParameterValue", "Unsupported Feature Or Parameter Value"},
    {0x12, 0x12, 0x12, "Reason-InvalidHCICommandParameters", "Invalid HCI Command Parameters"},
    {0x13, 0x13, 0x13, "Reason-UserEndedConnection", "User Ended Connection"},
    {0x14, 0x14, 0x14, "Reason-LowResources", "Low Resources"},
    {0x15, 0x15, 0x15, "Reason-AboutToPowerOff", "About To Power Off"},
    {0x16, 0x16, 0x16, "Reason-ConnectionTerminatedByLocalHost", "Connection Terminated By Local Host"},
    {0x17, 0x17, 0x17, "Reason-RepeatedAttempts", "Repeated Attempts"},
    {0x18, 0x18, 0x18, "Reason-PairingNotAllowed", "Pairing Not Allowed"},
    {0x19, 0x19, 0x19, "Reason-UnknownLMPPDU", "Unknown LMP PDU"},
    {0x1A, 0x1A, 0x1A, "Reason-UnsupportedRemoteFeature", "Unsupported Remote Feature"},
    {0x1B, 0x1B, 0x1B, "Reason-SCOOffsetRejected", "SCO Offset Rejected"},
    {0x1C, 0x1C, 0x1C, "Reason-SCOIntervalRejected", "SCO Interval Rejected"},
    {0x1D, 0x1D, 0x1D, "Reason-SCOAirModeRejected", "SCO Air Mode Rejected"},
    {0x1E, 0x1E, 0x1E, "Reason-InvalidLMPParameters", "Invalid LMP Parameters"},
    {0x1F, 0x1F, 0x1F, "Reason-UnspecifiedError", "Unspecified Error"},
    {0x20, 0x20, 0x20, "Reason-UnsupportedLMPParameterValue", "Unsupported LMP Parameter Value"},
    {0x21, 0x21, 0x21, "Reason-RoleChangeNotAllowed", "Role Change Not Allowed"},
    {0x22, 0x22, 0x22, "Reason-LMPResponseTimeout", "LMP Response Timeout"},
    {0x23, 0x23, 0x23, "Reason-LMPErrorTransactionCollision", "LMP Error Transaction Collision"},
    {0x24, 0x24, 0x24, "Reason-LMPPDUNotAllowed", "LMP PDU Not Allowed"},
    {0x25, 0x25, 0x25, "Reason-EncryptionModeNotAcceptable", "Encryption Mode Not Acceptable"},
    {0x26, 0x26, 0x26, "Reason-UnitKeyUsed", "Unit Key Used"},
    {0x27, 0x27, 0x27, "Reason-QoSisNotSupported", "QoS is Not Supported"},
    {0x28, 0x28, 0x28, "Reason-InstantPassed", "Instant Passed"},
    {0x29, 0x29, 0x29, "Reason-PairingWithUnitKeyNotSupported", "Pairing With Unit Key Not Supported"},
};

// 27028: Role.
const SOptionRow kRoleOptions[] = {
    {0, 0, 0, "Role-BecomeMasterForThisConnection", "Become Master For This Connection"},
    {1, 1, 1, "Role-RemainSlaveForThisConnection", "Remain Slave For This Connection"},
};

// 27032: Encryption_Enable.
const SOptionRow kEncryptionEnableOptions[] = {
    {0, 0, 0, "Encryption_Enable-TurnLinkLevelEncryptionOFF", "Turn Link Level Encryption OFF"},
    {1, 1, 1, "Encryption_Enable-TurnLinkLevelEncryptionON", "Turn Link Level Encryption ON"},
};

// 27033: Key_Flag.
const SOptionRow kKeyFlagOptions[] = {
    {0, 0, 0, "Key_Flag-UseSemiPermanentLinkKeys", "Use Semi Permanent Link Keys"},
    {1, 1, 1, "Key_Flag-UseTemporaryLinkKey", "Use Temporary Link Key"},
};

}  // namespace

extern const SHCICommandGroup kHCILinkControlCommands = {kLinkCommands, std::size(kLinkCommands)};

void CHCISpec::InitOptions_HCILinkControl()
{
    std::vector<SHCIOCFOption> aOCF;
    for (const SHCICommand& command : kLinkCommands)
        aOCF.push_back({command.nOCF, command.pszName, command.pszName});
    const std::vector<SOptionRow> aOCFRows = HCIOCFOptionRows(aOCF);
    AddOptionList(FieldLinkOCF, 10, aOCFRows.data(), aOCFRows.size());
    AddOptionList(FieldLinkOGF, 6, kHCIOGFOptions);

    AddOptionList(HCIParam::Packet_Type, 16, kPacketTypeOptions);
    AddOptionList(HCIParam::Page_Scan_Repetition_Mode, 8, kPageScanRepetitionModeOptions);
    AddOptionList(HCIParam::Page_Scan_Mode, 8, kPageScanModeOptions);
    AddOptionList(HCIParam::Clock_Offset_ValidFlag, 8, kClockOffsetValidFlagOptions);
    AddOptionList(HCIParam::Allow_Role_Switch, 8, kAllowRoleSwitchOptions);
    AddOptionList(HCIParam::Reason, 8, kReasonOptions);
    AddOptionList(HCIParam::Role, 8, kRoleOptions);
    AddOptionList(HCIParam::Encryption_Enable, 8, kEncryptionEnableOptions);
    AddOptionList(HCIParam::Key_Flag, 8, kKeyFlagOptions);
}

unsigned long CHCISpec::ReadLinkCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CHCIReader reader = Reader(data, packet);
    // Named at once, so that a command without parameters has its name too.
    const bool bMore = reader.ReadOn(FieldLinkOCF);
    const std::uint16_t nOCF = reader.Value();
    LinkCommandSetRequestAndResponseNames(packet, nOCF);
    if (!bMore || !reader.ReadOn(FieldLinkOGF) || !reader.ReadOn(FieldTotalLength))
        return reader.Consumed();

    const SHCICommand* pCommand = kHCILinkControlCommands.Find(nOCF);
    if (pCommand && !ReadHCICommandParameters(reader, *pCommand))
        return reader.Consumed();
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}
