// The events of HCI 1.1: the event table, the option lists of the event
// parameters, the HCI error list that every status field carries, and the
// event reader behind the event header. Command Complete goes on to the
// return parameters of its command (ReadHCIReturnParameters).
#include <iterator>
#include <string>

#include "hci/HCICommandTable.h"
#include "hci/HCIEventTable.h"
#include "hci/HCIReader.h"

using namespace HCIEvent;

const SHCIEvent kHCIEvents[kHCILastEventCode] = {
    {0x01, "InquiryCompleteEvent", "Inquiry Complete Event", {Inquiry_Status}, {}},
    {0x02, "InquiryResultEvent", "Inquiry Result Event", {Num_Responses},
     {BD_ADDR, Page_Scan_Repetition_Mode, Page_Scan_Period_Mode, Page_Scan_Mode, Class_of_Device, Clock_Offset}},
    {0x03, "ConnectionCompleteEvent", "Connection Complete Event",
     {Connection_Status, Connection_Handle, BD_ADDR, Link_Type, Encryption_Mode}, {}},
    {0x04, "ConnectionRequestEvent", "Connection Request Event", {BD_ADDR, Class_of_Device, Link_Type}, {}},
    {0x05, "DisconnectionCompleteEvent", "Disconnection Complete Event",
     {Disconnection_Status, Connection_Handle, HCIParam::Reason}, {}},
    {0x06, "AuthenticationCompleteEvent", "Authentication Complete Event",
     {Authentication_Status, Connection_Handle}, {}},
    {0x07, "RemoteNameRequestCompleteEvent", "Remote Name Request Complete Event",
     {Remote_Status, BD_ADDR, Remote_Name}, {}},
    {0x08, "EncryptionChangeEvent", "Encryption Change Event",
     {Encryption_Status, Connection_Handle, Encryption_Enable}, {}},
    {0x09, "ChangeConnectionLinkKeyCompleteEvent", "Change Connection Link Key Complete Event",
     {ChangeConnection_Status, Connection_Handle}, {}},
    {0x0A, "MasterLinkKeyCompleteEvent", "Master Link Key Complete Event",
     {MasterLinkKey_Status, Connection_Handle, Key_Flag}, {}},
    {0x0B, "ReadRemoteSupportedFeaturesCompleteEvent", "Read Remote Supported Features Complete Event",
     {ReadRemoteSupported_Status, Connection_Handle, LMP_Features}, {}},
    {0x0C, "ReadRemoteVersionInformationCompleteEvent", "Read Remote Version Information Complete Event",
     {ReadRemoteVersion_Status, Connection_Handle, LMP_Version, Manufacturer_Name, LMP_Subversion}, {}},
    {0x0D, "QoSSetupCompleteEvent", "QoS Setup Complete Event",
     {QoSSetup_Status, Connection_Handle, Flags, Service_Type, Token_Rate, Peak_Bandwidth, Latency, Delay_Variation},
     {}},
    // Read apart: the opcode of the command, then its return parameters.
    {0x0E, "CommandCompleteEvent", "Command Complete Event", {}, {}},
    // Read apart: status and command credits, then the opcode of the command.
    {0x0F, "CommandStatusEvent", "Command Status Event", {}, {}},
    {0x10, "HardwareErrorEvent", "Hardware Error Event", {Hardware_Code}, {}},
    {0x11, "FlushOccurredEvent", "Flush Occurred Event", {Connection_Handle}, {}},
    {0x12, "RoleChangeEvent", "Role Change Event", {RoleChange_Status, BD_ADDR, New_Role}, {}},
    {0x13, "NumberOfCompletedPacketsEvent", "Number Of Completed Packets Event", {Number_of_Handles},
     {Connection_Handle, HC_Num_Of_Completed_Packets}},
    {0x14, "ModeChangeEvent", "Mode Change Event", {ModeChange_Status, Connection_Handle, Current_Mode, Interval}, {}},
    {0x15, "ReturnLinkKeysEvent", "Return Link Keys Event", {Num_Keys}, {BD_ADDR, Link_Key}},
    {0x16, "PINCodeRequestEvent", "PIN Code Request Event", {BD_ADDR}, {}},
    {0x17, "LinkKeyRequestEvent", "Link Key Request Event", {BD_ADDR}, {}},
    {0x18, "LinkKeyNotificationEvent", "Link Key Notification Event", {BD_ADDR, Link_Key, Key_Type}, {}},
    // Only the first two bytes of the looped-back command have a field; the
    // rest of it is left over.
    {0x19, "LoopbackCommandEvent", "Loopback Command Event", {HCI_Command_Packet}, {}},
    {0x1A, "DataBufferOverflowEvent", "Data Buffer Overflow Event", {Link_Type}, {}},
    {0x1B, "MaxSlotsChangeEvent", "Max Slots Change Event", {Connection_Handle, LMP_Max_Slots}, {}},
    {0x1C, "ReadClockOffsetCompleteEvent", "Read Clock Offset Complete Event",
     {ReadClockOffset_Status, Connection_Handle, Clock_Offset}, {}},
    // The ACL packet types are read for SCO links too.
    {0x1D, "ConnectionPacketTypeChangedEvent", "Connection Packet Type Changed Event",
     {ConnectionPacketTypeChanged_Status, Connection_Handle, ACL_Packet_Type}, {}},
    {0x1E, "QoSViolationEvent", "QoS Violation Event", {Connection_Handle}, {}},
    {0x1F, "PageScanModeChangeEvent", "Page Scan Mode Change Event", {BD_ADDR, Page_Scan_Mode}, {}},
    {0x20, "PageScanRepetitionModeChangeEvent", "Page Scan Repetition Mode Change Event",
     {BD_ADDR, Page_Scan_Repetition_Mode}, {}},
};

namespace {

// 27090 behind the event rows: the codes no HCI 1.1 event uses, the logo
// testing code and the vendor event code.
const SOptionRow kOtherEventCodeOptions[] = {
    {0x00, 0x00, 0x00, "UnKnown", nullptr},
    {0x21, 0x21, 0xFD, "UnKnown", nullptr},
    {0xFE, 0xFE, 0xFE, "Bluetooth Logo Testing", nullptr},
    {0xFF, 0xFF, 0xFF, "Vendor Event", nullptr},
};

// The HCI error codes, as a status field shows them (8-bit options).
const SOptionRow kHCIErrorOptions[] = {
    {0x01, 0x01, 0x01, "Error: Unknown HCI Command", nullptr},
    {0x02, 0x02, 0x02, "Error: No Connection", nullptr},
    {0x03, 0x03, 0x03, "Error: Hardware Failure", nullptr},
    {0x04, 0x04, 0x04, "Error: Page Timeout", nullptr},
    {0x05, 0x05, 0x05, "Error: Authentication Failure", nullptr},
    {0x06, 0x06, 0x06, "Error: Key Missing", nullptr},
    {0x07, 0x07, 0x07, "Error: Memory Full", nullptr},
    {0x08, 0x08, 0x08, "Error: Connection Timeout", nullptr},
    {0x09, 0x09, 0x09, "Error: MaxNumber Of Connections", nullptr},
    {0x0A, 0x0A, 0x0A, "Error: MaxNumber Of SCO Connections To A Device", nullptr},
    {0x0B, 0x0B, 0x0B, "Error: ACL Connection Already Exists", nullptr},
    {0x0C, 0x0C, 0x0C, "Error: Command Disallowed", nullptr},
    {0x0D, 0x0D, 0x0D, "Error: Host Rejected Due To Limited Resources", nullptr},
    {0x0E, 0x0E, 0x0E, "Error: Host Rejected Due To Security Reasons", nullptr},
    {0x0F, 0x0F, 0x0F, "Error: Host Rejected Due To Remote Device Is Only A Personal Device", nullptr},
    {0x10, 0x10, 0x10, "Error: Host Timeout", nullptr},
    {0x11, 0x11, 0x11, "Error: Unsupported Feature Or Parameter Value", nullptr},
    {0x12, 0x12, 0x12, "Error: Invalid HCI Command Parameters", nullptr},
    {0x13, 0x13, 0x13, "Error: Other End Terminated Connection User Ended Connection", nullptr},
    {0x14, 0x14, 0x14, "Error: Other End Terminated Connection Low Resources", nullptr},
    {0x15, 0x15, 0x15, "Error: Other End Terminated Connection About To Power Off", nullptr},
    {0x16, 0x16, 0x16, "Error: Connection Terminated by Local Host", nullptr},
    {0x17, 0x17, 0x17, "Error: Repeated Attempts", nullptr},
    {0x18, 0x18, 0x18, "Error: Pairing Not Allowed", nullptr},
    {0x19, 0x19, 0x19, "Error: Unknown LMP PDU", nullptr},
    {0x1A, 0x1A, 0x1A, "Error: Unsupported Remote Feature", nullptr},
    {0x1B, 0x1B, 0x1B, "Error: SCOOffset Rejected", nullptr},
    {0x1C, 0x1C, 0x1C, "Error: SCO Interval Rejected", nullptr},
    {0x1D, 0x1D, 0x1D, "Error: SCO Air Mode Rejected", nullptr},
    {0x1E, 0x1E, 0x1E, "Error: Invalid LMP Parameters", nullptr},
    {0x1F, 0x1F, 0x1F, "Error: Unspecified Error", nullptr},
    {0x20, 0x20, 0x20, "Error: Unsupported LMP Parameter Value", nullptr},
    {0x21, 0x21, 0x21, "Error: Role Change Not Allowed", nullptr},
    {0x22, 0x22, 0x22, "Error: LMPResponse Timeout", nullptr},
    {0x23, 0x23, 0x23, "Error: LMPError Transaction Collision", nullptr},
    {0x24, 0x24, 0x24, "Error: LMP PDU Not Allowed", nullptr},
    {0x25, 0x25, 0x25, "Error: Encryption Mode Not Acceptable", nullptr},
    {0x26, 0x26, 0x26, "Error: Unit Key Used", nullptr},
    {0x27, 0x27, 0x27, "Error: QoS Is Not Supported", nullptr},
    {0x28, 0x28, 0x28, "Error: Instant Passed", nullptr},
    {0x29, 0x29, 0x29, "Error: Pairing With Unit Key Not Supported", nullptr},
    {0x2A, 0x2A, 0xFF, "Error: Reserved", nullptr},
};

// The status fields of the events and the text of their status 0.
struct SStatusSuccess {
    unsigned short nFieldId;
    const char* pszName;
    const char* pszAbbr;
};

const SStatusSuccess kEventStatusSuccess[] = {
    {Inquiry_Status, "InquiryCommandCompletedSuccessfully", "Inquiry Command Completed Successfully"},
    {Connection_Status, "ConnectionSuccessfullyCompleted", "Connection Successfully Completed"},
    {Disconnection_Status, "DisconnectionHasOccurred", "Disconnection Has Occurred"},
    {Authentication_Status, "AuthenticationRequestSuccessfullyCompleted",
     "Authentication Request Successfully Completed"},
    {Remote_Status, "Remote_Name_RequestCommandSuccessed", "Command Successed"},
    {Encryption_Status, "EncryptionChangeHasOccurred", "Encryption Change Has Occurred"},
    {ChangeConnection_Status, "Change_Connection_Link_Keycommandsucceede", "command succeede"},
    {MasterLinkKey_Status, "Master_Link_Keycommandsucceeded", "command succeeded"},
    {ReadRemoteSupported_Status, "Read_Remote_Supported_FeaturesCommandSuccessed", "Features Command Successed"},
    {ReadRemoteVersion_Status, "Read_Remote_Version_InformationCommandSucceeded", "Information Command Succeeded"},
    {QoSSetup_Status, "QoS_SetupCommandSucceeded", "Command Succeeded"},
    {CommandStatus_Status, "CommandCurrentlyInPending", "Command Currently In Pending"},
    {RoleChange_Status, "RolechangeHasOccurred", "Role change Has Occurred"},
    {ModeChange_Status, "AModeChangeHasOccurred", "A Mode Change Has Occurred"},
    {ReadClockOffset_Status, "Read_Clock_OffsetCommandSuccessed", "Command Successed"},
    {ConnectionPacketTypeChanged_Status, "ConnectionPacketTypechangedSuccessfully",
     "Connection Packet Type changed Successfully"},
};

const SOptionRow kPageScanRepetitionModeOptions[] = {
    {0, 0, 0, "R0", nullptr},
    {1, 1, 1, "R1", nullptr},
    {2, 2, 2, "R2", nullptr},
    {3, 3, 0xFF, "Reserved", nullptr},
};

const SOptionRow kPageScanPeriodModeOptions[] = {
    {0, 0, 0, "P0", nullptr},
    {1, 1, 1, "P1", nullptr},
    {2, 2, 2, "P2", nullptr},
    {3, 3, 0xFF, "Reserved", nullptr},
};

const SOptionRow kPageScanModeOptions[] = {
    {0, 0, 0, "MandatoryPageScanMode", "Mandatory Page Scan Mode"},
    {1, 1, 1, "OptionalPageScanMode_I", "Optional Page Scan Mode I"},
    {2, 2, 2, "OptionalPageScanMode_II", "Optional Page Scan Mode II"},
    {3, 3, 3, "OptionalPageScanMode_III", "Optional Page Scan Mode III"},
    {4, 4, 0xFF, "Reserved", nullptr},
};

const SOptionRow kLinkTypeOptions[] = {
    {0, 0, 0, "SCOConnection_VoiceChannels", "SCO Connection Voice Channels"},
    {1, 1, 1, "ACLConnection_DataChannels", "ACL Connection Data Channels"},
    {2, 2, 0xFF, "Reserved", nullptr},
};

const SOptionRow kEncryptionModeOptions[] = {
    {0, 0, 0, "EncryptionDisabled", "Encryption Disabled"},
    {1, 1, 1, "EncryptionOnlyForPointToPointPackets", "Encryption Only For Point To Point Packets"},
    {2, 2, 2, "EncryptionForBothPointToPointAndBroadcastPackets",
     "Encryption For Both Point To Point And Broadcast Packets"},
    {3, 3, 0xFF, "Reserved", nullptr},
};

const SOptionRow kEncryptionEnableOptions[] = {
    {0, 0, 0, "LinkLevelEncryptionIsOFF", "Link Level Encryption Is OFF"},
    {1, 1, 1, "LinkLevelEncryptionIsON", "Link Level Encryption Is ON"},
};

const SOptionRow kKeyFlagOptions[] = {
    {0, 0, 0, "UsingSemiPermanentLinkKey", "Using Semi Permanent Link Key"},
    {1, 1, 1, "UsingTemporaryLinkKey", "UsingTemporary Link Key"},
};

const SOptionRow kServiceTypeOptions[] = {
    {0, 0, 0, "NoTrafficAvailable", "No Traffic Available"},
    {1, 1, 1, "BestEffortAvailable", "Best Effort Available"},
    {2, 2, 2, "GuaranteedAvailable", "Guaranteed Available"},
    {3, 3, 0xFF, "Reserved", nullptr},
};

const SOptionRow kNewRoleOptions[] = {
    {0, 0, 0, "CurrentlyMasterForSpecifiedBD_ADDR", "Currently Master For Specified BD_ADDR"},
    {1, 1, 1, "CurrentlySlaveForSpecifiedBD_ADDR", "Currently Slave For Specified BD_ADDR"},
};

const SOptionRow kCurrentModeOptions[] = {
    {0, 0, 0, "ActiveMode", "Active Mode"},
    {1, 1, 1, "HoldMode", "Hold Mode"},
    {2, 2, 2, "SniffMode", "Sniff Mode"},
    {3, 3, 3, "ParkMode", "Park Mode"},
    {4, 4, 0xFF, "Reserved", nullptr},
};

// 8-bit rows on the 128-bit link key: they name the link types of a buffer
// overflow, and so only a key whose value is below 0x100 gets a name.
const SOptionRow kLinkKeyOptions[] = {
    {0, 0, 0, "SCOBufferOverflow_VoiceChannels", "SCO Buffer Overflow Voice Channels"},
    {1, 1, 1, "ACLBufferOverflow_DataChannels", "ACL Buffer Overflow Data Channels"},
    {2, 2, 0xFF, "Reserved", nullptr},
};

const SOptionRow kKeyTypeOptions[] = {
    {0, 0, 0, "CombinationKey", "Combination Key"},
    {1, 1, 1, "LocalUnitKey", "Local Unit Key"},
    {2, 2, 2, "RemoteUnitKey", "Remote Unit Key"},
    {3, 3, 0xFF, "Reserved", nullptr},
};

// One row per bit of the ACL packet type mask.
const SOptionRow kACLPacketTypeOptions[] = {
    {0x0001, 0x0001, 0x0001, "Reserved0", "Reserved"},
    {0x0002, 0x0002, 0x0002, "Reserved1", "Reserved"},
    {0x0004, 0x0004, 0x0004, "Reserved2", "Reserved"},
    {0x0008, 0x0008, 0x0008, "DM1", nullptr},
    {0x0010, 0x0010, 0x0010, "DH1", nullptr},
    {0x0020, 0x0020, 0x0020, "Reserved3", "Reserved"},
    {0x0040, 0x0040, 0x0040, "Reserved4", "Reserved"},
    {0x0080, 0x0080, 0x0080, "Reserved5", "Reserved"},
    {0x0100, 0x0100, 0x0100, "Reserved6", "Reserved"},
    {0x0200, 0x0200, 0x0200, "Reserved7", "Reserved"},
    {0x0400, 0x0400, 0x0400, "DM3", nullptr},
    {0x0800, 0x0800, 0x0800, "DH3", nullptr},
    {0x1000, 0x1000, 0x1000, "Reserved8", "Reserved"},
    {0x2000, 0x2000, 0x2000, "Reserved9", "Reserved"},
    {0x4000, 0x4000, 0x4000, "DM5", nullptr},
    {0x8000, 0x8000, 0x8000, "DH5", nullptr},
};

// One row per bit of the SCO packet type mask, as 8-bit options: the rows
// of the upper byte are cut to 0 and never match before the first.
const SOptionRow kSCOPacketTypeOptions[] = {
    {0x0001, 0x0001, 0x0001, "Reserved0", "Reserved"},
    {0x0002, 0x0002, 0x0002, "Reserved1", "Reserved"},
    {0x0004, 0x0004, 0x0004, "Reserved2", "Reserved"},
    {0x0008, 0x0008, 0x0008, "Reserved3", "Reserved"},
    {0x0010, 0x0010, 0x0010, "Reserved4", "Reserved"},
    {0x0020, 0x0020, 0x0020, "HV1", nullptr},
    {0x0040, 0x0040, 0x0040, "HV2", nullptr},
    {0x0080, 0x0080, 0x0080, "HV3", nullptr},
    {0x0100, 0x0100, 0x0100, "Reserved5", "Reserved"},
    {0x0200, 0x0200, 0x0200, "Reserved6", "Reserved"},
    {0x0400, 0x0400, 0x0400, "Reserved7", "Reserved"},
    {0x0800, 0x0800, 0x0800, "Reserved8", "Reserved"},
    {0x1000, 0x1000, 0x1000, "Reserved9", "Reserved"},
    {0x2000, 0x2000, 0x2000, "Reserved10", "Reserved"},
    {0x4000, 0x4000, 0x4000, "Reserved11", "Reserved"},
    {0x8000, 0x8000, 0x8000, "Reserved12", "Reserved"},
};

}  // namespace

void CHCISpec::InitOptions_HCIEvent()
{
    std::vector<SOptionRow> aCodes;
    for (const SHCIEvent& event : kHCIEvents)
        aCodes.push_back({event.nCode, event.nCode, event.nCode, event.pszName, event.pszAbbr});
    aCodes.insert(aCodes.end(), std::begin(kOtherEventCodeOptions), std::end(kOtherEventCodeOptions));
    AddOptionList(FieldEventCode, 8, aCodes.data(), aCodes.size());

    // Each status field: the error list first, then its own status 0.
    for (const SStatusSuccess& status : kEventStatusSuccess) {
        const SOptionRow success = {0, 0, 0, status.pszName, status.pszAbbr};
        InitOptions_HCIErrorMessage(status.nFieldId);
        AddOptionList(status.nFieldId, 8, &success, 1);
    }

    AddOptionList(Page_Scan_Repetition_Mode, 8, kPageScanRepetitionModeOptions);
    AddOptionList(Page_Scan_Period_Mode, 8, kPageScanPeriodModeOptions);
    AddOptionList(Page_Scan_Mode, 8, kPageScanModeOptions);
    AddOptionList(Link_Type, 8, kLinkTypeOptions);
    AddOptionList(Encryption_Mode, 8, kEncryptionModeOptions);
    AddOptionList(Encryption_Enable, 8, kEncryptionEnableOptions);
    AddOptionList(Key_Flag, 8, kKeyFlagOptions);
    AddOptionList(Service_Type, 8, kServiceTypeOptions);
    AddOptionList(New_Role, 8, kNewRoleOptions);
    AddOptionList(Current_Mode, 8, kCurrentModeOptions);
    AddOptionList(Link_Key, 8, kLinkKeyOptions);
    AddOptionList(Key_Type, 8, kKeyTypeOptions);
    AddOptionList(ACL_Packet_Type, 16, kACLPacketTypeOptions);
    AddOptionList(SCO_Packet_Type, 8, kSCOPacketTypeOptions);
}

void CHCISpec::InitOptions_HCIErrorMessage(int nFieldId)
{
    AddOptionList(static_cast<unsigned short>(nFieldId), 8, kHCIErrorOptions);
}

void CHCISpec::ReadEventParameters(CHCIReader& reader, std::uint8_t nEventCode)
{
    SetEventRequestName(reader.Packet(), nEventCode);
    switch (nEventCode) {
    case kHCICommandCompleteEvent:
        ReadHCIReturnParameters(reader);
        break;
    case kHCICommandStatusEvent:
        ReadCommandStatusParameters(reader);
        break;
    default: {
        const SHCIEvent& event = kHCIEvents[nEventCode - kHCIFirstEventCode];
        if (!ReadHCIFields(reader, event.aParams))
            return;
        if (event.aEntry[0] != 0) {
            // The count is the last parameter read; an entry's parameters
            // stand together, entry after entry, until the data ends.
            const std::uint8_t nEntries = reader.Value();
            for (unsigned i = 0; i < nEntries; ++i)
                if (!ReadHCIFields(reader, event.aEntry))
                    return;
        }
        break;
    }
    }
    reader.ReadRest(CHCISpec::FieldUnExpected);
}

void CHCISpec::ReadCommandStatusParameters(CHCIReader& reader)
{
    if (!reader.ReadList({CommandStatus_Status, Num_HCI_Command_Packets}))
        return;
    // Named after the command as soon as its OCF is known, whatever follows.
    const SHCIEventOpCode opcode = ReadEventOpCodeOCF(reader);
    SetCommandStatusRequestName(reader.Packet(), opcode.nOCFId);
    if (opcode.bMore)
        ReadEventOpCodeOGF(reader, opcode);
}

CHCISpec::SHCIEventOpCode CHCISpec::ReadEventOpCodeOCF(CHCIReader& reader)
{
    SHCIEventOpCode opcode;
    const std::uint16_t wOpCode = reader.Peek(16);
    opcode.nOGF = wOpCode >> 10;
    opcode.bGroup = opcode.nOGF >= kOGFLinkControl && opcode.nOGF <= kOGFTesting;
    // The groups' OCF and OGF fields stand in pairs from link control on;
    // any other OGF shows in those of link control.
    const unsigned nGroup = opcode.bGroup ? opcode.nOGF - kOGFLinkControl : 0;
    opcode.nOCFId = static_cast<unsigned short>(FieldLinkOCF + 2 * nGroup);
    opcode.nOGFId = static_cast<unsigned short>(FieldLinkOGF + 2 * nGroup);
    opcode.bMore = reader.ReadOn(opcode.nOCFId);
    opcode.nOCF = reader.Value();
    return opcode;
}

bool CHCISpec::ReadEventOpCodeOGF(CHCIReader& reader, const SHCIEventOpCode& opcode)
{
    if (!reader.ReadOn(opcode.nOGFId))
        return false;
    // Parameters behind an opcode of no known group: the packet's OCF field
    // id says that they are left over.
    if (!opcode.bGroup)
        m_nOpCodeOCF = FieldUnExpected;
    return true;
}
