// Option lists of the HCI header fields: the vendor command's OCF, the event
// code, and the flags of the ACL data packet header.
#include "hci/HCISpec.h"

namespace {

// 27000: every OCF under OGF 0x3F is a vendor-specific debug command. The
// range is wider than the 10-bit field, so the row matches any OCF.
const SOptionRow kVendorCommandOptions[] = {
    {0, 0, 0xFFFF, "Vendor Command", nullptr},
};

// 27090: the HCI 1.1 event codes, then the codes that no event of that
// version uses, the logo testing code and the vendor event code.
const SOptionRow kEventOptions[] = {
    {0x01, 0x01, 0x01, "InquiryCompleteEvent", "Inquiry Complete Event"},
    {0x02, 0x02, 0x02, "InquiryResultEvent", "Inquiry Result Event"},
    {0x03, 0x03, 0x03, "ConnectionCompleteEvent", "Connection Complete Event"},
    {0x04, 0x04, 0x04, "ConnectionRequestEvent", "Connection Request Event"},
    {0x05, 0x05, 0x05, "DisconnectionCompleteEvent", "Disconnection Complete Event"},
    {0x06, 0x06, 0x06, "AuthenticationCompleteEvent", "Authentication Complete Event"},
    {0x07, 0x07, 0x07, "RemoteNameRequestCompleteEvent", "Remote Name Request Complete Event"},
    {0x08, 0x08, 0x08, "EncryptionChangeEvent", "Encryption Change Event"},
    {0x09, 0x09, 0x09, "ChangeConnectionLinkKeyCompleteEvent", "Change Connection Link Key Complete Event"},
    {0x0A, 0x0A, 0x0A, "MasterLinkKeyCompleteEvent", "Master Link Key Complete Event"},
    {0x0B, 0x0B, 0x0B, "ReadRemoteSupportedFeaturesCompleteEvent", "Read Remote Supported Features Complete Event"},
    {0x0C, 0x0C, 0x0C, "ReadRemoteVersionInformationCompleteEvent",
     "Read Remote Version Information Complete Event"},
    {0x0D, 0x0D, 0x0D, "QoSSetupCompleteEvent", "QoS Setup Complete Event"},
    {0x0E, 0x0E, 0x0E, "CommandCompleteEvent", "Command Complete Event"},
    {0x0F, 0x0F, 0x0F, "CommandStatusEvent", "Command Status Event"},
    {0x10, 0x10, 0x10, "HardwareErrorEvent", "Hardware Error Event"},
    {0x11, 0x11, 0x11, "FlushOccurredEvent", "Flush Occurred Event"},
    {0x12, 0x12, 0x12, "RoleChangeEvent", "Role Change Event"},
    {0x13, 0x13, 0x13, "NumberOfCompletedPacketsEvent", "Number Of Completed Packets Event"},
    {0x14, 0x14, 0x14, "ModeChangeEvent", "Mode Change Event"},
    {0x15, 0x15, 0x15, "ReturnLinkKeysEvent", "Return Link Keys Event"},
    {0x16, 0x16, 0x16, "PINCodeRequestEvent", "PIN Code Request Event"},
    {0x17, 0x17, 0x17, "LinkKeyRequestEvent", "Link Key Request Event"},
    {0x18, 0x18, 0x18, "LinkKeyNotificationEvent", "Link Key Notification Event"},
    {0x19, 0x19, 0x19, "LoopbackCommandEvent", "Loopback Command Event"},
    {0x1A, 0x1A, 0x1A, "DataBufferOverflowEvent", "Data Buffer Overflow Event"},
    {0x1B, 0x1B, 0x1B, "MaxSlotsChangeEvent", "Max Slots Change Event"},
    {0x1C, 0x1C, 0x1C, "ReadClockOffsetCompleteEvent", "Read Clock Offset Complete Event"},
    {0x1D, 0x1D, 0x1D, "ConnectionPacketTypeChangedEvent", "Connection Packet Type Changed Event"},
    {0x1E, 0x1E, 0x1E, "QoSViolationEvent", "QoS Violation Event"},
    {0x1F, 0x1F, 0x1F, "PageScanModeChangeEvent", "Page Scan Mode Change Event"},
    {0x20, 0x20, 0x20, "PageScanRepetitionModeChangeEvent", "Page Scan Repetition Mode Change Event"},
    {0x00, 0x00, 0x00, "UnKnown", nullptr},
    {0x21, 0x21, 0xFD, "UnKnown", nullptr},
    {0xFE, 0xFE, 0xFE, "Bluetooth Logo Testing", nullptr},
    {0xFF, 0xFF, 0xFF, "Vendor Event", nullptr},
};

// 27271: Packet_Boundary_Flag, bits 12 and 13 of the ACL header.
const SOptionRow kPacketBoundaryOptions[] = {
    {0, 0, 0, "Reserved", nullptr},
    {1, 1, 1, "ContinuingFragmentPacketOfHigherLayerMessage", nullptr},
    {2, 2, 2, "FirstPacketOfHigherLayerMessage", nullptr},
    {0, 3, 3, "Reserved", nullptr},
};

// 27272: Broadcast_Flag of an ACL packet from the host to the host controller.
const SOptionRow kBroadcastToControllerOptions[] = {
    {0, 0, 0, "NoBroadcastOnlyPointToPoint", nullptr},
    {1, 1, 1, "ActiveBroadcast", nullptr},
    {2, 2, 2, "PiconetBroadcast", nullptr},
    {3, 3, 3, "Reserved", nullptr},
};

// 27273: Broadcast_Flag of an ACL packet from the host controller to the host.
// The park mode row's text ends in a tab character, which hosts compare as
// part of it.
const SOptionRow kBroadcastToHostOptions[] = {
    {0, 0, 0, "PointToPoint", nullptr},
    {1, 1, 1, "PacketReceivedAsSlaveNotInParkModE", nullptr},
    {2, 2, 2, "PacketReceivedAsSlaveInParkMode\t", nullptr},
    {3, 3, 3, "Reserved", nullptr},
};

}  // namespace

void CHCISpec::InitOptions_HCIVendorCommand()
{
    AddOptionList(FieldVendorOCF, 10, kVendorCommandOptions);
}

void CHCISpec::InitOptions_HCIEvent()
{
    AddOptionList(FieldEventCode, 8, kEventOptions);
}

void CHCISpec::InitOptions_HCIReturnParameter()
{
    // The status and return parameter lists of the Command Complete event come with its reader.
}

void CHCISpec::InitOptions_HCIDATAPacket()
{
    AddOptionList(FieldPacketBoundaryFlag, 2, kPacketBoundaryOptions);
    AddOptionList(FieldBroadcastFlagToController, 2, kBroadcastToControllerOptions);
    AddOptionList(FieldBroadcastFlagToHost, 2, kBroadcastToHostOptions);
}
