// Command Complete of the host controller and baseband commands, OGF 3:
// every command but Host_Number_Of_Completed_Packets returns its status,
// the reads also the value they read. Read_Voice_Setting returns its value
// in the Voice_Setting field of the command, with that field's options.
#include <iterator>

#include "hci/HCICommandTable.h"
#include "hci/HCIReturnTable.h"

namespace {

using namespace HCIReturn;

const SHCIReturnParameters kHostControllerReturns[] = {
    {0x0001, {SetEventMaskStatus}},
    {0x0003, {ResetStatus}},
    {0x0005, {SetEventFilterStatus}},
    {0x0008, {FlashStatus, ConnectionHandle}},
    {0x0009, {ReadPINTypeStatus, ReadPINType}},
    {0x000A, {WritePINTypeStatus}},
    {0x000B, {CreateNewUnitKeyStatus}},
    {0x000D, {ReadStoredLinkKeyStatus, ReadStoredLinkKeyMaxNumKeys, ReadStoredLinkKeyMinNumKeys}},
    {0x0011, {WriteStoredLinkKeyStatus, WriteStoredLinkKeyNumKeysWritten}},
    {0x0012, {DeleteStoredLinkKeyStatus, DeleteStoredLinkKeyNumKeysDeleted}},
    {0x0013, {ChangeLocalNameStatus}},
    {0x0014, {ReadLocalNameStatus, ReadLocalNameName}},
    {0x0015, {ReadConnectionAcceptTimeoutStatus, ReadConnectionAcceptTimeout}},
    {0x0016, {WriteConnectionAcceptTimeoutStatus}},
    {0x0017, {ReadPageTimeoutStatus, ReadPageTimeout}},
    {0x0018, {WritePageTimeoutStatus}},
    {0x0019, {ReadScanEnableStatus, ReadScanEnable}},
    {0x001A, {WriteScanEnableStatus}},
    {0x001B, {ReadPageScanActivityStatus, ReadPageScanActivityInterval, ReadPageScanActivityWindow}},
    {0x001C, {WritePageScanActivityStatus}},
    {0x001D, {ReadInquiryScanActivityStatus, ReadInquiryScanActivityInterval, ReadInquiryScanActivityWindow}},
    {0x001E, {WriteInquiryScanActivityStatus}},
    {0x001F, {ReadAuthenticationEnableStatus, ReadAuthenticationEnable}},
    {0x0020, {WriteAuthenticationEnableStatus}},
    {0x0021, {ReadEncryptionModeStatus, ReadEncryptionMode}},
    {0x0022, {WriteEncryptionModeStatus}},
    {0x0023, {ReadClassofDeviceStatus, ReadClassofDevice}},
    {0x0024, {WriteClassofDeviceStatus}},
    {0x0025, {ReadVoiceSettingStatus, HCIParam::Voice_Setting}},
    {0x0026, {WriteVoiceSettingStatus}},
    {0x0027, {ReadAutomaticFlushTimeoutStatus, ConnectionHandle, ReadAutomaticFlushTimeout}},
    {0x0028, {WriteAutomaticFlushTimeoutStatus, ConnectionHandle}},
    {0x0029, {ReadNumBroadcastRetransmissionsStatus, ReadNumBroadcastRetransmissions}},
    {0x002A, {WriteNumBroadcastRetransmissionsStatus}},
    {0x002B, {ReadHoldModeActivityStatus, ReadHoldModeActivity}},
    {0x002C, {WriteHoldModeActivityStatus}},
    {0x002D, {ReadTransmitPowerLevelStatus, ConnectionHandle, ReadTransmitPowerLevel}},
    {0x002E, {ReadSCOFlowControlEnableStatus, ReadSCOFlowControlEnable}},
    {0x002F, {WriteSCOFlowControlEnableStatus}},
    {0x0031, {SetHostControllerToHostFlowControlStatus}},
    {0x0033, {HostBufferSizeStatus}},
    {0x0036, {ReadLinkSupervisionTimeoutStatus, ConnectionHandle, ReadLinkSupervisionTimeout}},
    {0x0037, {WriteLinkSupervisionTimeoutStatus, ConnectionHandle}},
    {0x0038, {ReadNumberOfSupportedIACStatus, ReadNumberOfSupportedIAC}},
    {0x0039, {ReadCurrentIACLAPStatus, ReadCurrentIACLAP}},
    {0x003A, {WriteCurrentIACLAPStatus}},
    {0x003B, {ReadPageScanPeriodModeStatus, ReadPageScanPeriodMode}},
    {0x003C, {WritePageScanPeriodModeStatus}},
    {0x003D, {ReadPageScanModeStatus, ReadPageScanMode}},
    {0x003E, {WritePageScanModeStatus}},
};

// 27166: the PIN types the host supports.
const SOptionRow kPINTypeOptions[] = {
    {0, 0, 0, "VariablePIN", nullptr},
    {1, 1, 1, "FixedPIN", nullptr},
};

// 27186: which scans are enabled.
const SOptionRow kScanEnableOptions[] = {
    {0, 0, 0, "NoScansEnabled", nullptr},
    {1, 1, 1, "InquiryScanEnabledPageScanDisabled", nullptr},
    {2, 2, 2, "InquiryScanDisabledPageScanEnabled", nullptr},
    {3, 3, 3, "InquiryScanEnabledPageScanEnabled", nullptr},
    {4, 0xFF, 0xFF, "Reserved", nullptr},
};

// 27197: authentication of all connections.
const SOptionRow kAuthenticationEnableOptions[] = {
    {0, 0, 0, "disabled", nullptr},
    {1, 1, 1, "enabled", nullptr},
    {2, 2, 0xFF, "Reserved", nullptr},
};

// 27200: the packets that are encrypted.
const SOptionRow kEncryptionModeOptions[] = {
    {0, 0, 0, "disabled", nullptr},
    {1, 1, 1, "OnlyForPointToPointPackets", nullptr},
    {2, 2, 2, "ForBothPointToPointAndBroadcastPackets", nullptr},
    {3, 3, 0xFF, "Reserved", nullptr},
};

// 27215: the activities suspended in hold mode.
const SOptionRow kHoldModeActivityOptions[] = {
    {0, 0, 0, "MaintainCurrentPowerState", nullptr},
    {1, 1, 1, "SuspendPageScan", nullptr},
    {2, 2, 2, "SuspendInquiryScan", nullptr},
    {3, 4, 4, "SuspendPeriodicInquiries", nullptr},
    {4, 0xFF, 0xFF, "Reserved", nullptr},
};

// 27220: SCO flow control.
const SOptionRow kSCOFlowControlEnableOptions[] = {
    {0, 0, 0, "Disabled", nullptr},
    {1, 1, 1, "Enabled", nullptr},
};

// 27233: the page scan period mode.
const SOptionRow kPageScanPeriodModeOptions[] = {
    {0, 0, 0, "P0", nullptr},
    {1, 1, 1, "P1", nullptr},
    {2, 2, 2, "P2", nullptr},
    {3, 0xFF, 0xFF, "Reserved", nullptr},
};

// 27236: the page scan mode.
const SOptionRow kPageScanModeOptions[] = {
    {0, 0, 0, "Mandatory", nullptr},
    {1, 1, 1, "Optional_I", nullptr},
    {2, 2, 2, "Optional_II", nullptr},
    {3, 3, 3, "Optional_III", nullptr},
    {4, 0xFF, 0xFF, "Reserved", nullptr},
};

const SHCIReturnOptions kHostControllerOptions[] = {
    {ReadPINType, kPINTypeOptions, std::size(kPINTypeOptions)},
    {ReadScanEnable, kScanEnableOptions, std::size(kScanEnableOptions)},
    {ReadAuthenticationEnable, kAuthenticationEnableOptions, std::size(kAuthenticationEnableOptions)},
    {ReadEncryptionMode, kEncryptionModeOptions, std::size(kEncryptionModeOptions)},
    {ReadHoldModeActivity, kHoldModeActivityOptions, std::size(kHoldModeActivityOptions)},
    {ReadSCOFlowControlEnable, kSCOFlowControlEnableOptions, std::size(kSCOFlowControlEnableOptions)},
    {ReadPageScanPeriodMode, kPageScanPeriodModeOptions, std::size(kPageScanPeriodModeOptions)},
    {ReadPageScanMode, kPageScanModeOptions, std::size(kPageScanModeOptions)},
};

}  // namespace

// Host_Number_Of_Completed_Packets, the one command without a row, keeps
// its own name.
extern const SHCIReturnGroup kHCIHostControllerReturns = {
    kHostControllerReturns, std::size(kHostControllerReturns), 0,
    kHostControllerOptions, std::size(kHostControllerOptions),
};
