// The return parameters of the Command Complete event: the field ids, one
// table row per command (the parameters in the order of the wire), and each
// command group's table with the options of its fields. Each group keeps its
// table in a file of its own; ReadHCIReturnParameters reads any row with the
// generic field loop.
#pragma once

#include <cstddef>

#include "core/FieldAttr.h"

// Return parameter field ids, named as their abbreviations. Two status
// fields share the abbreviation "Status"; their ids are named after the
// command they answer.
namespace HCIReturn {
enum : unsigned short {
    InqueryCancelStatus = 27147,
    InqueryModeStatus = 27148,
    ExitPeriodicInquiryModeStatus = 27149,
    LinkKeyRequestReplyStatus = 27150,
    BDADDR = 27151,
    LinkKeyRequestNegativeReplyStatus = 27152,
    PINCodeRequestReplyStatus = 27153,
    PINCodeRequestNegativeReplyStatus = 27154,
    RoleDiscoveryStatus = 27155,
    ConnectionHandle = 27156,
    RoleDiscoveryCurrentRole = 27157,
    ReadLinkPolicySettingsStatus = 27158,
    ReadLinkPolicySettings = 27159,
    WriteLinkPolicySettingsStatus = 27160,
    SetEventMaskStatus = 27161,
    ResetStatus = 27162,
    SetEventFilterStatus = 27163,
    FlashStatus = 27164,
    ReadPINTypeStatus = 27165,
    ReadPINType = 27166,
    WritePINTypeStatus = 27167,
    CreateNewUnitKeyStatus = 27168,
    ReadStoredLinkKeyStatus = 27169,
    ReadStoredLinkKeyMaxNumKeys = 27170,
    ReadStoredLinkKeyMinNumKeys = 27171,
    WriteStoredLinkKeyStatus = 27172,
    WriteStoredLinkKeyNumKeysWritten = 27173,
    DeleteStoredLinkKeyStatus = 27174,
    DeleteStoredLinkKeyNumKeysDeleted = 27175,
    ChangeLocalNameStatus = 27176,
    ReadLocalNameStatus = 27177,
    ReadLocalNameName = 27178,
    ReadConnectionAcceptTimeoutStatus = 27179,
    ReadConnectionAcceptTimeout = 27180,
    WriteConnectionAcceptTimeoutStatus = 27181,
    ReadPageTimeoutStatus = 27182,
    ReadPageTimeout = 27183,
    WritePageTimeoutStatus = 27184,
    ReadScanEnableStatus = 27185,
    ReadScanEnable = 27186,
    WriteScanEnableStatus = 27187,
    ReadPageScanActivityStatus = 27188,
    ReadPageScanActivityInterval = 27189,
    ReadPageScanActivityWindow = 27190,
    WritePageScanActivityStatus = 27191,
    ReadInquiryScanActivityStatus = 27192,
    ReadInquiryScanActivityInterval = 27193,
    ReadInquiryScanActivityWindow = 27194,
    WriteInquiryScanActivityStatus = 27195,
    ReadAuthenticationEnableStatus = 27196,
    ReadAuthenticationEnable = 27197,
    WriteAuthenticationEnableStatus = 27198,
    ReadEncryptionModeStatus = 27199,
    ReadEncryptionMode = 27200,
    WriteEncryptionModeStatus = 27201,
    ReadClassofDeviceStatus = 27202,
    ReadClassofDevice = 27203,
    WriteClassofDeviceStatus = 27204,
    ReadVoiceSettingStatus = 27205,
    ReadVoiceSetting = 27206,
    WriteVoiceSettingStatus = 27207,
    ReadAutomaticFlushTimeoutStatus = 27208,
    ReadAutomaticFlushTimeout = 27209,
    WriteAutomaticFlushTimeoutStatus = 27210,
    ReadNumBroadcastRetransmissionsStatus = 27211,
    ReadNumBroadcastRetransmissions = 27212,
    WriteNumBroadcastRetransmissionsStatus = 27213,
    ReadHoldModeActivityStatus = 27214,
    ReadHoldModeActivity = 27215,
    WriteHoldModeActivityStatus = 27216,
    ReadTransmitPowerLevelStatus = 27217,
    ReadTransmitPowerLevel = 27218,
    ReadSCOFlowControlEnableStatus = 27219,
    ReadSCOFlowControlEnable = 27220,
    WriteSCOFlowControlEnableStatus = 27221,
    SetHostControllerToHostFlowControlStatus = 27222,
    HostBufferSizeStatus = 27223,
    ReadLinkSupervisionTimeoutStatus = 27224,
    ReadLinkSupervisionTimeout = 27225,
    WriteLinkSupervisionTimeoutStatus = 27226,
    ReadNumberOfSupportedIACStatus = 27227,
    ReadNumberOfSupportedIAC = 27228,
    ReadCurrentIACLAPStatus = 27229,
    ReadCurrentIACLAP = 27230,
    WriteCurrentIACLAPStatus = 27231,
    ReadPageScanPeriodModeStatus = 27232,
    ReadPageScanPeriodMode = 27233,
    WritePageScanPeriodModeStatus = 27234,
    ReadPageScanModeStatus = 27235,
    ReadPageScanMode = 27236,
    WritePageScanModeStatus = 27237,
    ReadLocalVersionInformationStatus = 27238,
    ReadLocalVersionInformationHCIVersion = 27239,
    ReadLocalVersionInformationHCIRevision = 27240,
    ReadLocalVersionInformationLMPVersion = 27241,
    ReadLocalVersionInformationManufacturerName = 27242,
    ReadLocalVersionInformationLMPSubversion = 27243,
    ReadLocalSupportedFeaturesStatus = 27244,
    ReadLocalSupportedFeaturesLMPFeatures = 27245,
    ReadBufferSizeStatus = 27246,
    ReadBufferSizeHCACLDataPacketLength = 27247,
    ReadBufferSizeHCSCODataPacketLength = 27248,
    ReadBufferSizeHCTotalNumACLDataPackets = 27249,
    ReadBufferSizeHCTotalNumSCODataPackets = 27250,
    ReadCountryCodeStatus = 27251,
    ReadCountryCode = 27252,
    ReadBDADDRStatus = 27253,
    ReadBDADDR = 27254,
    ReadFailedContactCounterStatus = 27255,
    ReadFailedContactCounterFailedContactCounte = 27256,
    ResetFailedContactCounterStatus = 27257,
    GetLinkQualityStatus = 27258,
    GetLinkQualityLinkQuality = 27259,
    ReadRSSIStatus = 27260,
    ReadRSSI = 27261,
    ReadLoopbackModeStatus = 27262,
    ReadLoopbackModeLoopbackMode = 27263,
    WriteLoopbackModeStatus = 27264,
    EnableDeviceUnderTestModeStatus = 27265,
};
}  // namespace HCIReturn

// HCI_Read_Local_Version_Information returns the most parameters.
constexpr std::size_t kHCIMaxReturnParameters = 6;

// The return parameters of one command, in order; the list ends at the
// first id 0.
struct SHCIReturnParameters {
    unsigned short nOCF;
    unsigned short aIds[kHCIMaxReturnParameters];
};

// The named values of one return parameter field. The rows carry names
// only: each option's abbreviation is the field's abbreviation, two
// underscores and the option's name.
struct SHCIReturnOptions {
    unsigned short nFieldId;
    const SOptionRow* pRows;
    std::size_t nRows;
};

// One command group's Command Complete table.
struct SHCIReturnGroup {
    const SHCIReturnParameters* pRows;
    std::size_t nRows;
    // The group's known commands that have no row return nothing; their
    // Command Complete events are all named after this command. 0: each is
    // named after itself.
    unsigned short nSharedNameOCF;
    const SHCIReturnOptions* pOptions;
    std::size_t nOptions;

    // The row of a command, or null.
    const SHCIReturnParameters* Find(unsigned short nOCF) const noexcept
    {
        for (std::size_t i = 0; i < nRows; ++i)
            if (pRows[i].nOCF == nOCF)
                return &pRows[i];
        return nullptr;
    }
};

// The tables of OGF 1 to 6, each defined in the group's own file.
extern const SHCIReturnGroup kHCILinkControlReturns;
extern const SHCIReturnGroup kHCILinkPolicyReturns;
extern const SHCIReturnGroup kHCIHostControllerReturns;
extern const SHCIReturnGroup kHCIInformationReturns;
extern const SHCIReturnGroup kHCIStatusReturns;
extern const SHCIReturnGroup kHCITestingReturns;

// The table of a command group, OGF 1 to 6; null for any other OGF.
const SHCIReturnGroup* HCIReturnGroupOf(unsigned nOGF) noexcept;
