// Option lists of the HCI header fields: the vendor command's OCF and the
// flags of the ACL data packet header. The event code's list comes with the
// event table.
#include "hci/HCISpec.h"

namespace {

// 27000: every OCF under OGF 0x3F is a vendor-specific debug command. The
// range is wider than the 10-bit field, so the row matches any OCF.
const SOptionRow kVendorCommandOptions[] = {
    {0, 0, 0xFFFF, "Vendor Command", nullptr},
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

void CHCISpec::InitOptions_HCIDATAPacket()
{
    AddOptionList(FieldPacketBoundaryFlag, 2, kPacketBoundaryOptions);
    AddOptionList(FieldBroadcastFlagToController, 2, kBroadcastToControllerOptions);
    AddOptionList(FieldBroadcastFlagToHost, 2, kBroadcastToHostOptions);
}
