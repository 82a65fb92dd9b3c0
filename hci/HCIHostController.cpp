// Host controller and baseband commands, OGF 3: event mask and filters,
// stored link keys, scan, timeouts, voice, flow control and the other
// settings of the local device.
#include <iterator>

#include "hci/HCICommandTable.h"

namespace {

using namespace HCIParam;

constexpr unsigned short kSetEventFilterOCF = 0x0005;
constexpr unsigned short kHostBufferSizeOCF = 0x0033;

// Set_Event_Filter reads its parameters by the filter type, see
// ReadSetEventFilter. Write_Stored_Link_Key, Host_Number_Of_Completed_Packets
// and Write_Current_IAC_LAP carry a count, but one set of the parameters
// behind it is read whatever the count says; the other sets go to
// UnExpected. The request name of Host_Number_Of_Completed_Packets ends in a
// tab, which also stands in the name of its Command Complete event.
const SHCICommand kHostCommands[] = {
    {0x0001, "Set_Event_Mask", {{Event_Mask}}},
    {0x0003, "Reset", {}},
    {0x0005, "Set_Event_Filter", {}},
    {0x0008, "Flush",
     {{Connection_Handle, "Connection Handle to be used to identify which connection to flush. " HCI_HANDLE_RANGE}}},
    {0x0009, "Read_PIN_Type", {}},
    {0x000A, "Write_PIN_Type", {{PIN_Type}}},
    {0x000B, "Create_New_Unit_Key", {}},
    {0x000D, "Read_Stored_Link_Key", {{BD_ADDR, "BD_ADDR for the stored link key to be read."}, {Read_All_Flag}}},
    {0x0011, "Write_Stored_Link_Key",
     {{Num_Keys_To_Write}, {BD_ADDR, "BD_ADDR for the associated Link Key."}, {Link_Key}}},
    {0x0012, "Delete_Stored_Link_Key", {{BD_ADDR, "BD_ADDR for the link key to be deleted."}, {Delete_All_Flag}}},
    {0x0013, "Change_Local_Name", {{Name}}},
    {0x0014, "Read_Local_Name", {}},
    {0x0015, "Read_Connection_Accept_Timeout", {}},
    {0x0016, "Write_Connection_Accept_Timeout", {{Conn_Accept_Timeout}}},
    {0x0017, "Read_Page_Timeout", {}},
    {0x0018, "Write_Page_Timeout", {{Page_Timeout}}},
    {0x0019, "Read_Scan_Enable", {}},
    {0x001A, "Write_Scan_Enable", {{Scan_Enable}}},
    {0x001B, "Read_Page_Scan_Activity", {}},
    {0x001C, "Write_Page_Scan_Activity", {{Page_Scan_Interval}, {Page_Scan_Window}}},
    {0x001D, "Read_Inquiry_Scan_Activity", {}},
    {0x001E, "Write_Inquiry_Scan_Activity", {{Inquiry_Scan_Interval}, {Inquiry_Scan_Window}}},
    {0x001F, "Read_Authentication_Enable", {}},
    {0x0020, "Write_Authentication_Enable", {{Authentication_Enable}}},
    {0x0021, "Read_Encryption_Mode", {}},
    {0x0022, "Write_Encryption_Mode", {{Encryption_Mode}}},
    {0x0023, "Read_Class_of_Device", {}},
    {0x0024, "Write_Class_of_Device", {{Class_of_Device}}},
    {0x0025, "Read_Voice_Setting", {}},
    {0x0026, "Write_Voice_Setting", {{Voice_Setting}}},
    {0x0027, "Read_Automatic_Flush_Timeout",
     {{Connection_Handle, "Specifies which Connection Handle's Flush Timeout to read. " HCI_HANDLE_RANGE}}},
    {0x0028, "Write_Automatic_Flush_Timeout",
     {{Connection_Handle, "Specifies which Connection Handle's Flush Timeout to write to. " HCI_HANDLE_RANGE},
      {Flush_Timeout}}},
    {0x0029, "Read_Num_Broadcast_Retransmissions", {}},
    {0x002A, "Write_Num_Broadcast_Retransmissions", {{Num_Broadcast_Retran}}},
    {0x002B, "Read_Hold_Mode_Activity", {}},
    {0x002C, "Write_Hold_Mode_Activity", {{Hold_Mode_Activity}}},
    {0x002D, "Read_Transmit_Power_Level",
     {{Connection_Handle, "Specifies which Connection Handle's Transmit Power Level setting to "
                          "read." HCI_HANDLE_RANGE},
      {Type}}},
    {0x002E, "Read_SCO_Flow_Control_Enable", {}},
    {0x002F, "Write_SCO_Flow_Control_Enable", {{SCO_Flow_Control_Enable}}},
    {0x0031, "Set_Host_Controller_To_Host_Flow_Control", {{Flow_Control_Enable}}},
    {0x0033, "Host_Buffer_Size",
     {{Host_ACL_Data_Packet_Length}, {Host_SCO_Data_Packet_Length}, {Host_Total_Num_ACL_Data_Packets},
      {Host_Total_Num_SCO_Data_Packets}}},
    {0x0035, "Host_Number_Of_Completed_Packets\t",
     {{Number_Of_Handles}, {Connection_Handle, "Connection Handle " HCI_HANDLE_RANGE},
      {Host_Num_Of_Completed_Packets}}},
    {0x0036, "Read_Link_Supervision_Timeout",
     {{Connection_Handle, "Specifies which Connection Handle's Link Supervision Timeout value is to be "
                          "read." HCI_HANDLE_RANGE}}},
    {0x0037, "Write_Link_Supervision_Timeout",
     {{Connection_Handle, "Specifies which Connection Handle's Link Supervision Timeout value is to be "
                          "written." HCI_HANDLE_RANGE},
      {Link_Supervision_Timeout}}},
    {0x0038, "Read_Number_Of_Supported_IAC", {}},
    {0x0039, "Read_Current_IAC_LAP", {}},
    {0x003A, "Write_Current_IAC_LAP", {{Num_Current_IAC}, {IAC_LAP}}},
    {0x003B, "Read_Page_Scan_Period_Mode", {}},
    {0x003C, "Write_Page_Scan_Period_Mode", {{Page_Scan_Period_Mode}}},
    {0x003D, "Read_Page_Scan_Mode", {}},
    {0x003E, "Write_Page_Scan_Mode", {{Page_Scan_Mode}}},
};

const char kDeviceOfInterest[] = "BD_ADDR of the Device of Interest";

// Set_Event_Filter: the filter type selects a condition type, and that one
// the condition. False as soon as nothing is left.
bool ReadSetEventFilter(CHCIReader& reader)
{
    if (!reader.ReadOn(Filter_Type))
        return false;
    const std::uint8_t nFilterType = reader.Value();
    if (nFilterType == 1) {  // Inquiry Result
        if (!reader.ReadOn(Inquiry_Result_Filter_Condition_Type))
            return false;
        const std::uint8_t nConditionType = reader.Value();
        if (nConditionType == 0)  // any new device: no condition bits
            return reader.ReadOn(Condition);
        if (nConditionType == 1)
            return reader.ReadList({Condition_Class_of_Device, Condition_Class_of_Device_Mask});
        if (nConditionType == 2)
            return ReadHCIDescribed(reader, BD_ADDR, kDeviceOfInterest);
    } else if (nFilterType == 2) {  // Connection Setup
        if (!reader.ReadOn(Connection_Setup_Filter_Condition_Type))
            return false;
        const std::uint8_t nConditionType = reader.Value();
        if (nConditionType == 0)
            return reader.ReadOn(Condition_Auto_Accept_Flag);
        if (nConditionType == 1)
            return reader.ReadList(
                {Condition_Class_of_Device, Condition_Class_of_Device_Mask, Condition_Auto_Accept_Flag});
        if (nConditionType == 2)
            return ReadHCIDescribed(reader, BD_ADDR, kDeviceOfInterest) && reader.ReadOn(Condition_Auto_Accept_Flag);
    }
    return true;
}

// 27049: Event_Mask, one 64-bit option per event bit; behind them the reserved
// bits as a range and the default mask as a value.
const SOptionRow kEventMaskOptions[] = {
    {1, 0, 0, "NoEventsSpecified", "No Events Specified"},
    {2, 1, 1, "InquiryCompleteEvent", "Inquiry Complete Event"},
    {3, 2, 2, "InquiryResultEvent", "Inquiry Result Event"},
    {4, 4, 4, "ConnectionCompleteEvent", "Connection Complete Event"},
    {5, 8, 8, "ConnectionRequestEvent", "Connection Request Event"},
    {6, 0x10, 0x10, "DisconnectionCompleteEvent", "Disconnection Complete Event"},
    {7, 0x20, 0x20, "AuthenticationCompleteEvent", "Authentication Complete Event"},
    {8, 0x40, 0x40, "RemoteNameRequestCompleteEvent", "Remote Name RequestComplete Event"},
    {9, 0x80, 0x80, "EncryptionChangeEvent", "Encryption Change Event"},
    {10, 0x100, 0x100, "ChangeConnectionLinkKeyCompleteEvent", "Change Connection Link Key Complete Event"},
    {11, 0x200, 0x200, "MasterLinkKeyCompleteEvent", "Master Link Key Complete Event"},
    {12, 0x400, 0x400, "ReadRemoteSupportedFeaturesCompleteevent", "Read Remote Supported Features Complete event"},
    {13, 0x800, 0x800, "ReadRemoteVersionInformationCompletevente", "Read Remote Version Information Completev ente"},
    {14, 0x1000, 0x1000, "QoSSetupCompleteevent", "QoSSetup Complete event"},
    {15, 0x2000, 0x2000, "CommandCompleteEvent", "Command Complete Event"},
    {16, 0x4000, 0x4000, "CommandStatusEvent", "Command Status Event"},
    {17, 0x8000, 0x8000, "HardwareErrorevent", "Hardware Error event"},
    {18, 0x10000, 0x10000, "FlushOccurredEvent", "Flush Occurred Event"},
    {19, 0x20000, 0x20000, "RoleChangeEvent", "Role Change Event"},
    {20, 0x40000, 0x40000, "NumberOfCompletedPacketsEvent", "Number Of Completed Packets Event"},
    {21, 0x80000, 0x80000, "ModeChangeEvent", "Mode Change Event"},
    {22, 0x100000, 0x100000, "ReturnLinkKeysEvent", "Return Link Keys Event"},
    {23, 0x200000, 0x200000, "PINCodeRequestEvent", "PIN Code Request Event"},
    {24, 0x400000, 0x400000, "LinkKeyRequestevent", "Link Key Request event"},
    {25, 0x800000, 0x800000, "LinkKeyNotificationEvent", "Link Key Notification Event"},
    {26, 0x1000000, 0x1000000, "LoopbackCommandEvent", "Loopback Command Event"},
    {27, 0x2000000, 0x2000000, "DataBufferOverflowEvent", "DataBufferOverflow Event"},
    {28, 0x4000000, 0x4000000, "MaxSlotsChangeEvent", "Max Slots Change Event"},
    {29, 0x8000000, 0x8000000, "ReadClockOffsetCompleteEvent", "Read Clock Offset Complete Event"},
    {30, 0x10000000, 0x10000000, "ConnectionPacketTypeChangedEvent", "Connection Packet Type Changed Event"},
    {31, 0x20000000, 0x20000000, "QoSViolationEvent", "QoS Violation Event"},
    {32, 0x40000000, 0x40000000, "PageScanModeChangeEvent", "Page Scan Mode Change Event"},
    {33, 0x80000000, 0x80000000, "PageScanRepetitionModeChangeEvent", "Page Scan Repetition Mode Change Event"},
    {34, 0x100000000, 0x8000000000000000, "Reserved", nullptr},
    {35, 0xFFFFFFFF, 0xFFFFFFFF, "Default", nullptr},
};

// 27050: Filter_Type.
const SOptionRow kFilterTypeOptions[] = {
    {0, 0, 0, "Filter_Type__ClearAllFilters", "Clear All Filters"},
    {1, 1, 1, "Filter_Type__InquiryResult", "Inquiry Result"},
    {2, 2, 2, "Filter_Type__ConnectionSetup", "Connection Setup"},
    {3, 0xFF, 0xFF, "Filter_Type__Reserved", "Reserved"},
};

// 27051: Inquiry_Result_Filter_Condition_Type.
const SOptionRow kInquiryResultConditionTypeOptions[] = {
    {0, 0, 0, "Inquiry_Result_Filter_Condition_Type__NewDeviceResponded", "New Device Responded"},
    {1, 1, 1, "Inquiry_Result_Filter_Condition_Type__aDeviceWithSpecificClassOfDeviceRespondedToTheInquiryProcess", "a Device With Specific Class Of Device Responded To The Inquiry Process"},
    {2, 2, 2, "Inquiry_Result_Filter_Condition_Type__aDeviceWithSpecificBD_ADDRRespondedToTheInquiryProcess", "a Device With Specific BD_ADDR Responded To The Inquiry Process"},
    {3, 3, 0xFF, "Inquiry_Result_Filter_Condition_Type__Reserved", "Reserved"},
};

// 27052: Connection_Setup_Filter_Condition_Type.
const SOptionRow kConnectionSetupConditionTypeOptions[] = {
    {0, 0, 0, "Connection_Setup_Filter_Condition_Type__AllowConnectionsFromAllDevices", "Allow Connections From All Devices"},
    {1, 1, 1, "Connection_Setup_Filter_Condition_Type__AllowConnectionsFromDeviceWithSpecificClassOfDevice", "Allow Connections From Device With Specific Class Of Device"},
    {2, 2, 2, "Connection_Setup_Filter_Condition_Type__AllowConnectionsFromDeviceWithSpecificBD_ADDR", "Allow Connections From Device With Specific BD_ADDR"},
    {3, 3, 0xFF, "Connection_Setup_Filter_Condition_Type__Reserved", "Reserved"},
};

// 27054: Condition_Class_of_Device; 8-bit options on the 24-bit field.
const SOptionRow kConditionClassOfDeviceOptions[] = {
    {0, 0, 0, "Condition_Class_of_Device__AutoAcceptOff", "AutoAccept Off"},
    {1, 1, 1, "Condition_Class_of_Device__AutoAcceptOn", "AutoAccept On"},
    {2, 2, 2, "Condition_Class_of_Device__AutoAcceptRoleOn", "AutoAccept Role On"},
    {3, 3, 0xFF, "Condition_Class_of_Device__Reserved", "Reserved"},
};

// 27057: PIN_Type.
const SOptionRow kPINTypeOptions[] = {
    {0, 0, 0, "PIN_Type__VariablePIN", "Variable PIN"},
    {1, 1, 1, "PIN_Type__FixedPIN", "Fixed PIN"},
};

// 27058: Read_All_Flag.
const SOptionRow kReadAllFlagOptions[] = {
    {0, 0, 0, "Read_All_Flag__ReturnLinkKeyForSpecifiedBD_ADDR", "Return Link Key For Specified BD_ADDR"},
    {1, 1, 1, "Read_All_Flag__ReturnAllStoredLinkKeys", "Return All Stored Link Keys"},
    {2, 2, 0xFF, "Read_All_Flag__Reserved", "Reserved"},
};

// 27060: Delete_All_Flag.
const SOptionRow kDeleteAllFlagOptions[] = {
    {0, 0, 0, "Delete_All_Flag__DeleteOnlyTheLinkKeyForSpecifiedBD_ADDR", "Delete Only The Link Key For Specified BD_ADDR"},
    {1, 1, 1, "Delete_All_Flag__DeleteAllStoredLinkKeys", "Delete All Stored Link Keys"},
    {2, 2, 0xFF, "Delete_All_Flag__ReservedForFutureUse", "Reserved For Future Use"},
};

// 27064: Scan_Enable.
const SOptionRow kScanEnableOptions[] = {
    {0, 0, 0, "Scan_Enable__NoScansEnabled_Default", "No Scans Enabled_Default"},
    {1, 1, 1, "Scan_Enable__InquiryScanEnabled_PageScanDisabled", "Inquiry Scan Enabled_PageScanDisabled"},
    {2, 2, 2, "Scan_Enable__InquiryScanDisabledPageScanEnabled", "Inquiry Scan Disabled Page Scan Enabled"},
    {3, 3, 3, "Scan_Enable__InquiryScanEnabledPageScanEnabled", "Inquiry Scan Enabled Page Scan Enabled"},
    {4, 4, 0xFF, "Scan_Enable__Reserved", "Reserved"},
};

// 27069: Authentication_Enable.
const SOptionRow kAuthenticationEnableOptions[] = {
    {0, 0, 0, "AuthenticationDisabled_Default", "Authentication Disabled_Default"},
    {1, 1, 1, "AuthenticationEnabledForAllConnectio", "Authentication Enabled For All Connectio"},
    {2, 2, 0xFF, "Reserved", nullptr},
};

// 27070: Encryption_Mode.
const SOptionRow kEncryptionModeOptions[] = {
    {0, 0, 0, "Encryption_Mode__EncryptionDisabled_Default", "Encryption Disabled_Default"},
    {1, 1, 1, "Encryption_Mode__EncryptionOnlyForPointToPointPackets", "Encryption Only For Point To Point Packets"},
    {2, 2, 2, "Encryption_Mode__EncryptionForBothPointToPointAndBroadcastPackets", "Encryption For Both Point To Point And Broadcast Packets"},
    {3, 3, 0xFF, "Encryption_Mode__Reserved", "Reserved"},
};

// 27072: Voice_Setting; 10-bit options on the 16-bit field. Cut to 10 bits,
// the 0xC000 row and the last one are shadowed by the rows before them.
const SOptionRow kVoiceSettingOptions[] = {
    {0, 0, 0xFF, "Voice_Setting__InputCodingLinear", "Input Coding: Linear"},
    {1, 0x100, 0x1FF, "Voice_Setting__InputCodingUlawInputCoding", "Input Coding: µ-law Input Coding"},
    {2, 0x200, 0x2FF, "Voice_Setting__InputCodingAlawInputCoding", "Input Coding: A-law Input Coding"},
    {3, 0x300, 0x3FF, "Voice_Setting__Reserved", "Reserved for Future Use"},
    {14, 0xC000, 0xCFFF, "Voice_Setting__Reserved", "Reserved for Future Use"},
    {4, 0, 0x3FF, "Voice_Setting__InputDataFormat1Complement", "Input Data Format: 1s complement"},
};

// 27075: Hold_Mode_Activity.
const SOptionRow kHoldModeActivityOptions[] = {
    {0, 0, 0, "Hold_Mode_Activity__MaintainCurrentPowerState_Default", "Maintain Current Power State_Default"},
    {1, 1, 1, "Hold_Mode_Activity__SuspendPageScan", "Suspend Page Scan"},
    {2, 2, 2, "Hold_Mode_Activity__SuspendInquiryScan", "Suspend Inquiry Scan"},
    {3, 4, 4, "Hold_Mode_Activity__SuspendPeriodicInquiries", "Suspend Periodic Inquiries"},
    {4, 8, 0xFF, "Hold_Mode_Activity__Reserved", "Reserved"},
};

// 27076: Type of Read_Transmit_Power_Level.
const SOptionRow kTransmitPowerLevelTypeOptions[] = {
    {0, 0, 0, "Type__ReadCurrentTransmitPowerLevel", "Read Current Transmit Power Level"},
    {1, 1, 1, "Type__ReadMaximumTransmitPowerLevel", "Read Maximum Transmit Power Level"},
    {2, 2, 0xFF, "Type__Reserved", "Reserved"},
};

// 27077: SCO_Flow_Control_Enable.
const SOptionRow kSCOFlowControlEnableOptions[] = {
    {0, 0, 0, "SCO_Flow_Control_Enable__SCOFlowControlDisabled", "SCO Flow Control Disabled"},
    {1, 1, 1, "SCO_Flow_Control_Enable__SCOFlowControlEnabled", "SCO Flow Control Enabled"},
};

// 27078: Flow_Control_Enable.
const SOptionRow kFlowControlEnableOptions[] = {
    {0, 0, 0, "Flow_Control_Enable__FlowControlOffInDirectionFromHostControllerToHost", "Flow Control Off InDirectionFromHostControllerToHost"},
    {1, 1, 1, "Flow_Control_Enable__FlowControlOnForHCIACLDataPacketsAndOffForHCISCODataPacketsInDirectionFromHostControllerToHost", "Flow Control On For HCI ACL Data Packets And Off For HCI SCO DataPackets In Direction From Host Controller To Host"},
    {2, 2, 2, "Flow_Control_Enable__FlowControlOffForHCIACLDataPacketsAndOnForHCISCODataPacketsInDirectionFromHostControllerToHost", "Flow Control Off For HCI ACL Data Packets And On For HCI SCODataPackets In Direction From Host Controller To Host"},
    {3, 3, 3, "Flow_Control_Enable__FlowControlOnBothForHCIACLDataPacketsAndHCISCODataPacketsInDirectionFromHostControllerToHost", "Flow Control On Both For HCI ACL Data Packets And HCI SCO Data Packets In Direction From Host Controller To Host"},
    {4, 4, 0xFF, "Flow_Control_Enable__Reserved", "Reserved"},
};

// 27088: Page_Scan_Period_Mode.
const SOptionRow kPageScanPeriodModeOptions[] = {
    {0, 0, 0, "Page_Scan_Period_Mode__P0", "P0"},
    {1, 1, 1, "Page_Scan_Period_Mode__P1", "P1"},
    {2, 2, 2, "Page_Scan_Period_Mode__P2", "P2"},
    {3, 3, 0xFF, "Page_Scan_Period_Mode__Reserved", "Reserved"},
};

}  // namespace

extern const SHCICommandGroup kHCIHostControllerCommands = {kHostCommands, std::size(kHostCommands)};

void CHCISpec::InitOptions_HCIHostControl()
{
    // Option names are the request names without the trailing tab; the
    // abbreviations have blanks for underscores, but Host_Buffer_Size keeps
    // its first one.
    std::vector<SHCIOCFOption> aOCF;
    for (const SHCICommand& command : kHostCommands) {
        std::string strName = command.pszName;
        if (!strName.empty() && strName.back() == '\t')
            strName.pop_back();
        const std::string strAbbr =
            command.nOCF == kHostBufferSizeOCF ? std::string("Host_Buffer Size") : HCIUnderscoresToBlanks(strName);
        aOCF.push_back({command.nOCF, strName, strAbbr});
    }
    const std::vector<SOptionRow> aOCFRows = HCIOCFOptionRows(aOCF);
    AddOptionList(FieldHostOCF, 10, aOCFRows.data(), aOCFRows.size());
    AddOptionList(FieldHostOGF, 6, kHCIOGFOptions);

    AddOptionList(HCIParam::Event_Mask, 64, kEventMaskOptions);
    AddOptionList(HCIParam::Filter_Type, 8, kFilterTypeOptions);
    AddOptionList(HCIParam::Inquiry_Result_Filter_Condition_Type, 8, kInquiryResultConditionTypeOptions);
    AddOptionList(HCIParam::Connection_Setup_Filter_Condition_Type, 8, kConnectionSetupConditionTypeOptions);
    AddOptionList(HCIParam::Condition_Class_of_Device, 8, kConditionClassOfDeviceOptions);
    AddOptionList(HCIParam::PIN_Type, 8, kPINTypeOptions);
    AddOptionList(HCIParam::Read_All_Flag, 8, kReadAllFlagOptions);
    AddOptionList(HCIParam::Delete_All_Flag, 8, kDeleteAllFlagOptions);
    AddOptionList(HCIParam::Scan_Enable, 8, kScanEnableOptions);
    AddOptionList(HCIParam::Authentication_Enable, 8, kAuthenticationEnableOptions);
    AddOptionList(HCIParam::Encryption_Mode, 8, kEncryptionModeOptions);
    AddOptionList(HCIParam::Voice_Setting, 10, kVoiceSettingOptions);
    AddOptionList(HCIParam::Hold_Mode_Activity, 8, kHoldModeActivityOptions);
    AddOptionList(HCIParam::Type, 8, kTransmitPowerLevelTypeOptions);
    AddOptionList(HCIParam::SCO_Flow_Control_Enable, 8, kSCOFlowControlEnableOptions);
    AddOptionList(HCIParam::Flow_Control_Enable, 8, kFlowControlEnableOptions);
    AddOptionList(HCIParam::Page_Scan_Period_Mode, 8, kPageScanPeriodModeOptions);
}

unsigned long CHCISpec::ReadHostCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CHCIReader reader = Reader(data, packet);
    // Named at once, so that a command without parameters has its name too.
    const bool bMore = reader.ReadOn(FieldHostOCF);
    const std::uint16_t nOCF = reader.Value();
    HostSetRequestAndResponseNames(packet, nOCF);
    if (!bMore || !reader.ReadOn(FieldHostOGF) || !reader.ReadOn(FieldTotalLength))
        return reader.Consumed();

    if (nOCF == kSetEventFilterOCF) {
        if (!ReadSetEventFilter(reader))
            return reader.Consumed();
    } else {
        const SHCICommand* pCommand = kHCIHostControllerCommands.Find(nOCF);
        if (pCommand && !ReadHCICommandParameters(reader, *pCommand))
            return reader.Consumed();
    }
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}
