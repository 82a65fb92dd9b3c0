// Option lists of IPCP, IPV6CP and CCP.
#include "serial/PPPSpec.h"

namespace {

// 6012 and 6140: the codes of IPCP and IPV6CP.
const SOptionRow kIPCPCodeOptions[] = {
    {0, 0, 0, "Vendor Specific", nullptr},
    {1, 1, 1, "Configure_Request", "Conf_Req"},
    {2, 2, 2, "Configure-Ack", "Conf-Ack"},
    {3, 3, 3, "Configure-Nak", "Conf-Nak"},
    {4, 4, 4, "Configure-Reject", "Conf-Rej"},
    {5, 5, 5, "Terminate-Request", "Term-Req"},
    {6, 6, 6, "Terminate-Ack", "Term-Ack"},
    {7, 7, 7, "Code-Reject", "Code-Rej"},
};

// 6019: IPCP configuration option types.
const SOptionRow kIPCPTypeOptions[] = {
    {1, 1, 1, "IP_Addresses", nullptr},
    {2, 2, 2, "IP_Compression_Protocol", nullptr},
    {3, 3, 3, "IP_Address", nullptr},
    {4, 4, 4, "Mobile_IPv4", nullptr},
    {129, 129, 129, "Primary DNS Server Address", "Primary DNS"},
    {130, 130, 130, "Primary NBNS Server Address", "Primary NBNS"},
    {131, 131, 131, "Secondary DNS Server Address", "Secondary DNS"},
    {132, 132, 132, "Secondary NBNS Server Address", "Secondary NBNS"},
};

// 6026: IP compression protocols.
const SOptionRow kIPCompressionProtocolOptions[] = {
    {0x002D, 0x002D, 0x002D, "Van Jacobson Compresed TCP/IP", "Van Jacobson Compressed TCP/IP"},
    {0x002F, 0x002F, 0x002F, "UnCompresed TCP", nullptr},
    {0x0021, 0x0021, 0x0021, "Van Jacobson TCP Header Compresion", nullptr},
    {0x0061, 0x0061, 0x0061, "Ip Compresion Protocol", nullptr},
};

// 6029: whether the slot identifier may be compressed.
const SOptionRow kCompSlotIdOptions[] = {
    {0, 0, 0, "Must not be compressed", "No"},
    {1, 1, 1, "May be compressed", "Yes"},
};

// 6143: IPV6CP configuration option types.
const SOptionRow kIPV6CPTypeOptions[] = {
    {1, 1, 1, "IPV6CP-Address", nullptr},
    {2, 2, 2, "IPV6CP-Compression Protocol", nullptr},
};

// 6106: CCP codes.
const SOptionRow kCCPCodeOptions[] = {
    {0, 0, 0, "Vendor Specific", "Vend-Spec"},
    {1, 1, 1, "Configure Request", "Conf-Req"},
    {2, 2, 2, "Configure ACK", "Conf-Ack"},
    {3, 3, 3, "Configure NACK", "Conf-Nack"},
    {4, 4, 4, "Configure Reject", "Conf-Reject"},
    {5, 5, 5, "Terminate Request", "Terminate-Req"},
    {6, 6, 6, "Terminate ACK", "Terminate-Ack"},
    {7, 7, 7, "Code-Reject", nullptr},
    {14, 14, 14, "Reset Request", nullptr},
    {15, 15, 15, "Reset Reply", nullptr},
};

// 6109: CCP configuration option types, the compression algorithms.
const SOptionRow kCCPTypeOptions[] = {
    {0, 0, 0, "OUI", nullptr},
    {1, 1, 1, "P_TYPE1", nullptr},
    {2, 2, 2, "P_TYPE2", nullptr},
    {3, 3, 3, "P_JUMPER", nullptr},
    {16, 16, 16, "PPC", nullptr},
    {17, 17, 17, "LZS", nullptr},
    {18, 18, 18, "MPP", nullptr},
    {19, 19, 19, "FZA", nullptr},
    {20, 20, 20, "BIT_COMP", nullptr},
    {21, 21, 21, "BSD", nullptr},
    {23, 23, 23, "LZS_DCP", nullptr},
    {24, 24, 24, "MVRCA", nullptr},
    {25, 25, 25, "DCE", nullptr},
    {26, 26, 26, "DEFLATE", nullptr},
};

// 6128: DCE modes.
const SOptionRow kDCEModeOptions[] = {
    {1, 1, 1, "No Additional Negotiation", "MODE1"},
    {2, 2, 2, "Full PPP Negotiation and State Machine", "MODE2"},
};

}  // namespace

void CAdvAnlzPPPSpec::InitIPCPOptions()
{
    AddOptionList(FieldIPCPCode, 8, kIPCPCodeOptions);
    AddOptionList(FieldIPCPType, 8, kIPCPTypeOptions);
    AddOptionList(FieldIPCompressionProtocol, 16, kIPCompressionProtocolOptions);
    AddOptionList(FieldCompSlotId, 8, kCompSlotIdOptions);
}

void CAdvAnlzPPPSpec::InitIPV6CPOptions()
{
    AddOptionList(FieldIPV6CPCode, 8, kIPCPCodeOptions);
    AddOptionList(FieldIPV6CPType, 8, kIPV6CPTypeOptions);
}

void CAdvAnlzPPPSpec::InitCCPOptions()
{
    AddOptionList(FieldCCPCode, 8, kCCPCodeOptions);
    AddOptionList(FieldCCPType, 8, kCCPTypeOptions);
    AddOptionList(FieldDCEMode, 8, kDCEModeOptions);
}
