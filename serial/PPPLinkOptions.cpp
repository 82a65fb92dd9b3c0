// Option lists of the PPP frame header, LCP and CHAP.
#include "serial/PPPSpec.h"

namespace {

// 6000: the protocols decoded here, and between them ranges of the others.
const SOptionRow kProtocolOptions[] = {
    {6, 0x0000, 0x0020, "UnKnown", nullptr},
    {3, 0x0021, 0x0021, "IP", nullptr},
    {6, 0x0022, 0x8020, "UnKnown", nullptr},
    {4, 0x8021, 0x8021, "IPCP", nullptr},
    {6, 0x8022, 0x8056, "UnKnown", nullptr},
    {5, 0x8057, 0x8057, "IPV6CP", nullptr},
    {6, 0x8058, 0x80FC, "UnKnown", nullptr},
    {1, 0x80FD, 0x80FD, "CCP", nullptr},
    {6, 0x80FE, 0xC020, "UnKnown", nullptr},
    {0, 0xC021, 0xC021, "LCP", nullptr},
    {6, 0xC022, 0xC222, "UnKnown", nullptr},
    {2, 0xC223, 0xC223, "CHAP", nullptr},
    {6, 0xC224, 0xFFFF, "UnKnown", nullptr},
};

// 6041: LCP codes.
const SOptionRow kLCPCodeOptions[] = {
    {0, 0, 0, "Vendor Specific", "Vend-Spec"},
    {1, 1, 1, "Configure Request", "Conf-Req"},
    {2, 2, 2, "Configure ACK", "Conf-Ack"},
    {3, 3, 3, "Configure NACK", "Conf-Nack"},
    {4, 4, 4, "Configure Reject", "Conf-Reject"},
    {5, 5, 5, "Terminate Request", "Terminate-Req"},
    {6, 6, 6, "Terminate ACK", "Terminate-Ack"},
    {7, 7, 7, "Code-Reject", nullptr},
    {8, 8, 8, "Protocol-Reject", nullptr},
    {9, 9, 9, "Echo Request", "Echo-Req"},
    {10, 10, 10, "Echo Reply", "Echo-Reply"},
    {11, 11, 11, "Discard Request", "Discard-Req"},
    {12, 12, 12, "Identification", nullptr},
    {13, 13, 13, "Time Remaining", "Time-Remaining"},
};

// 6044: LCP configuration option types.
const SOptionRow kLCPTypeOptions[] = {
    {0, 0, 0, "Vendor Specific", nullptr},
    {1, 1, 1, "Maximume Recive Unit", "MRU"},
    {3, 3, 3, "Authentication-Protocol", "Authentication Protocol"},
    {4, 4, 4, "Quality-Protocol", "Quality Protocol"},
    {5, 5, 5, "Magic Number ", nullptr},
    {7, 7, 7, "Protocol-field-compression", "Protocol-Field-Compression"},
    {8, 8, 8, "Address-and-control-field-compression", "ACFC"},
    {9, 9, 9, "FCS Alternatives", nullptr},
    {10, 10, 10, "Self-Describing-Pad", nullptr},
    {11, 11, 11, "Numbered Mode", nullptr},
    {13, 13, 13, "Call Back", nullptr},
    {15, 15, 15, "Compound Frames", nullptr},
    {17, 17, 17, "Multilink Max-Receive-Reconstructed-Unit ", "MMRRU"},
    {18, 18, 18, "Multilink Short Sequence Number Header Format", "MSSNHF"},
    {19, 19, 19, "Multilink Endpoint Discriminator", "MED"},
    {22, 22, 22, "MP+ Option", nullptr},
    {23, 23, 23, "Link Disciminator for BACP", nullptr},
    {26, 26, 26, "Prefix Elision", nullptr},
    {27, 27, 27, "Multilink Header Format", nullptr},
    {28, 28, 28, "Internationalization", nullptr},
    {29, 29, 29, "Simple Data Link", nullptr},
};

// 6051: the authentication protocol that has an algorithm byte.
const SOptionRow kAuthenticationProtocolOptions[] = {
    {0xC223, 0xC223, 0xC223, "CHAP", nullptr},
};

// 6005: CHAP codes.
const SOptionRow kCHAPCodeOptions[] = {
    {1, 1, 1, "Challenge", nullptr},
    {2, 2, 2, "Response", nullptr},
    {3, 3, 3, "Success", nullptr},
    {4, 4, 4, "Failure", nullptr},
};

}  // namespace

void CAdvAnlzPPPSpec::InitHeaderOptions()
{
    AddOptionList(FieldHeader, 16, kProtocolOptions);
}

void CAdvAnlzPPPSpec::InitLCPOptions()
{
    AddOptionList(FieldLCPCode, 8, kLCPCodeOptions);
    AddOptionList(FieldLCPType, 8, kLCPTypeOptions);
    AddOptionList(FieldAuthProtocol, 16, kAuthenticationProtocolOptions);
}

void CAdvAnlzPPPSpec::InitCHAPOptions()
{
    AddOptionList(FieldCHAPCode, 8, kCHAPCodeOptions);
}
