// Option lists of the IPv4 header and its option.
#include "serial/PPPSpec.h"

namespace {

// 6075: versions of the internet header.
const SOptionRow kIPVersionOptions[] = {
    {0, 0, 0, "Reserved", nullptr},
    {4, 4, 4, "Internet Protocol", "IP"},
    {5, 5, 5, "ST Datagram Mode", "Datagram Mode"},
    {6, 6, 6, "Simple Internet Protocol", "Simple IP"},
    {7, 7, 7, "The Next Internet", "Next IP"},
    {8, 8, 8, "The P Internet Protocol", "P-IP"},
    {9, 9, 9, "Tuba", nullptr},
};

// 6077 to 6081: the type of service. The value 0 of the delay bit is
// declared three bits wide, the value 1 one bit.
const SOptionRow kIPPrecedenceOptions[] = {
    {0, 0, 0, "Routine", nullptr},
    {1, 1, 1, "Priority", nullptr},
    {2, 2, 2, "Immediate", nullptr},
    {3, 3, 3, "Flash", nullptr},
    {4, 4, 4, "FlashOver", nullptr},
    {5, 5, 5, "CRITIC_ECP", nullptr},
    {6, 6, 6, "INTERNETWORKCONTROL", nullptr},
    {7, 7, 7, "NETWORKCONTROL", nullptr},
};

const SOptionRow kIPNormalDelayOption[] = {
    {0, 0, 0, "NORMALDELAY", nullptr},
};

const SOptionRow kIPLowDelayOption[] = {
    {1, 1, 1, "LOWDELAY", nullptr},
};

const SOptionRow kIPThroughputOptions[] = {
    {0, 0, 0, "NORMALTHROUGHPUT", nullptr},
    {1, 1, 1, "LOWTHROUGHPUT", nullptr},
};

const SOptionRow kIPReliabilityOptions[] = {
    {0, 0, 0, "NORMALRELIABILITY", nullptr},
    {1, 1, 1, "LOWRELIABILITY", nullptr},
};

const SOptionRow kIPMonetaryOptions[] = {
    {0, 0, 0, "NORMALMONITARYCOST", nullptr},
    {1, 1, 1, "LOWMONITARYCOST", nullptr},
};

// 6085: the flags, reserved bit, DF and MF.
const SOptionRow kIPFlagsOptions[] = {
    {0, 0, 0, "Fragment if necessary/Last fragment", "Frag if necessary/Last frag"},
    {1, 1, 1, "Fragment if necessary/More fragment", "Frag if necessary/More frag"},
    {2, 2, 2, "Do not fragment/Last fragment", "Don't frag/Last frag"},
    {3, 3, 3, "Do not fragment/More fragment", "Don't frag/More frag"},
};

// 6094: the security levels of the security option.
const SOptionRow kIPSecurityOptions[] = {
    {0x0000, 0x0000, 0x0000, "Unclassified", nullptr},
    {0xF135, 0xF135, 0xF135, "Confidential", nullptr},
    {0x789A, 0x789A, 0x789A, "EFTO", nullptr},
    {0xBC4D, 0xBC4D, 0xBC4D, "MMMM", nullptr},
    {0x5E26, 0x5E26, 0x5E26, "PROG", nullptr},
    {0xAF13, 0xAF13, 0xAF13, "Restricted", nullptr},
    {0xD788, 0xD788, 0xD788, "Secret", nullptr},
    {0x6BC5, 0x6BC5, 0x6BC5, "Top Secret", nullptr},
    {0x35E2, 0x35E2, 0x35E2, "Reserved for future use", nullptr},
    {0x9AF1, 0x9AF1, 0x9AF1, "Reserved for future use", nullptr},
    {0x4D78, 0x4D78, 0x4D78, "Reserved for future use", nullptr},
    {0x24BD, 0x24BD, 0x24BD, "Reserved for future use", nullptr},
    {0x135E, 0x135E, 0x135E, "Reserved for future use", nullptr},
    {0x89AF, 0x89AF, 0x89AF, "Reserved for future use", nullptr},
    {0xC4D6, 0xC4D6, 0xC4D6, "Reserved for future use", nullptr},
    {0xE26B, 0xE26B, 0xE26B, "Reserved for future use", nullptr},
};

// 6092: option types with their copied flag and class.
const SOptionRow kIPOptionTypeOptions[] = {
    {0, 0, 0, "Copy:not copy/Class:control/Optin:End of options list", "not copy/control/End of options list"},
    {1, 1, 1, "Copy:not copy/Class:control/Optin:NOP", "not copy/control/NOP"},
    {7, 7, 7, "Copy:not copy/Class:control/Optin:variable Record Route", "not copy/control/variable Record Route"},
    {10, 10, 10, "Copy:not copy/Class:control/Optin:Experimental Measurement",
     "not copy/control/Experimental Measurement"},
    {11, 11, 11, "Copy:not copy/Class:control/Optin:MTU Probe", "not copy/control/MTU Probe"},
    {12, 12, 12, "Copy:not copy/Class:control/Optin:MTU Reply", "not copy/control/MTU Reply"},
    {15, 15, 15, "Copy:not copy/Class:control/Optin:15", "not copy/control/15"},
    {25, 25, 25, "Copy:copy/Class:control/Optin:25", "copy/control/25"},
    {31, 31, 31, "Copy:copy/Class:control/Optin:31", "copy/control/31"},
    {68, 68, 68, "Copy:not copy/Class:debuging/Optin:variable Time stamp", "not copy/debuging/variable Time stamp"},
    {82, 82, 82, "Copy:not copy/Class:debuging/Optin:Traceroute. RFC 1393", "not copy/debuging/Traceroute. RFC 1393"},
    {131, 131, 131, "Copy:copy/Class:control/Optin:Security", "copy/control/Security"},
    {132, 132, 132, "Copy:copy/Class:control/Optin:variable Loose Source Route",
     "copy/control/variable Loose Source Route"},
    {134, 134, 134, "Copy:copy/Class:control/Optin:Extended Security", "copy/control/Extended Security"},
    {135, 135, 135, "Copy:copy/Class:control/Optin:Commercial Security", "copy/control/Commercial Security"},
    {136, 136, 136, "Copy:copy/Class:control/Optin:Stream Identifier", "copy/control/Stream Identifier"},
    {137, 137, 137, "Copy:copy/Class:control/Optin:variable Strict Source Route",
     "copy/control/variable Strict Source Route"},
    {142, 142, 142, "Copy:copy/Class:control/Optin:Expermental Access Control",
     "copy/control/Expermental Access Control"},
    {144, 144, 144, "Copy:copy/Class:control/Optin:IMI Traffic Descriptor", "copy/control/IMI Traffic Descriptor"},
    {145, 145, 145, "Copy:copy/Class:control/Optin:Extended Internet Proto", "copy/control/Extended Internet Proto"},
    {147, 147, 147, "Copy:copy/Class:control/Optin:Address Extension", "copy/control/Address Extension"},
    {148, 148, 148, "Copy:copy/Class:control/Optin:Router Alert", "copy/control/Router Alert"},
    {149, 149, 149, "Copy:copy/Class:control/Optin:Selective Directed Broadcast Mode",
     "copy/control/Selective Directed Broadcast Mode"},
    {150, 150, 150, "Copy:copy/Class:control/Optin:NSAP Addresses", "copy/control/NSAP Addresses"},
    {151, 151, 151, "Copy:copy/Class:control/Optin:Dynamic Packet State", "copy/control/Dynamic Packet State"},
    {152, 152, 152, "Copy:copy/Class:control/Optin:Upstream Multicast Packet",
     "copy/control/Upstream Multicast Packet"},
    {205, 205, 205, "Copy:copy/Class:debuging/Optin:Experimental Flow Control",
     "copy/debuging/Experimental Flow Control"},
};

// 6088: the next level protocols.
const SOptionRow kIPProtocolOptions[] = {
    {0, 0, 0, "IPv6 Hop-by-Hop Option", nullptr},
    {1, 1, 1, "Internet Control Message Protocol", "Int Ctrl Msg"},
    {2, 2, 2, "Internet Group Management Protocol", "Internet Group Management"},
    {3, 3, 3, "Gateway to Gateway Protocol", "Gateway to Gateway"},
    {4, 4, 4, "IP in IP encapsulation", nullptr},
    {5, 5, 5, "Internet Stream Protocol", "Internet Stream"},
    {6, 6, 6, "Transmission Control Protocol", "Transmission Control"},
    {7, 7, 7, "UCL, CBT", nullptr},
    {8, 8, 8, "Exterior Gateway Protocol", "Exterior Gateway"},
    {9, 9, 9, "IGRP", nullptr},
    {10, 10, 10, "BBN RCC Monitoring", nullptr},
    {11, 11, 11, "Network Voice Protocol", "Network Voice"},
    {12, 12, 12, "PUP", nullptr},
    {13, 13, 13, "ARGUS", nullptr},
    {14, 14, 14, "Emission Control Protocol", "Emission Control"},
    {15, 15, 15, "Cross Net Debugger", nullptr},
    {16, 16, 16, "Chaos", nullptr},
    {17, 17, 17, "User Datagram Protocol", "User Datagram"},
    {18, 18, 18, "Transport Multiplexing Protocol", "Transport Multiplexing"},
    {19, 19, 19, "Measurement Subsystems", nullptr},
    {20, 20, 20, "Host Monitoring Protocol", "Host Monitoring"},
    {21, 21, 21, "Packet Radio Measurement", nullptr},
    {22, 22, 22, "XEROX NS IDP", nullptr},
    {23, 23, 23, "Trunk-1", nullptr},
    {24, 24, 24, "Trunk-2", nullptr},
    {25, 25, 25, "Leaf-1", nullptr},
    {26, 26, 26, "Leaf-2", nullptr},
    {27, 27, 27, "Reliable Data Protocol", "Reliable Data"},
    {28, 28, 28, "Internet Reliable Transaction Protocol", "Internet Reliable Transaction"},
    {29, 29, 29, "Transport Protocol Class 4", nullptr},
    {30, 30, 30, "Network Block Transfer", nullptr},
    {31, 31, 31, "Network Services Protocol", "Network Services"},
    {32, 32, 32, "Internodal Protocol", "Internodal"},
    {33, 33, 33, "Sequential Exchange Protocol", "Sequential Exchange"},
    {34, 34, 34, "Third Party Connect Protocol", "Third Party Connect"},
    {35, 35, 35, "IDPR, Inter-Domain Policy Routing Protocol", "IDPR, Inter-Domain Policy Routing"},
    {36, 36, 36, "XTP, Xpress Transfer Protocol", "XTP, Xpress Transfer"},
    {37, 37, 37, "Datagram Delivery Protocol", "Datagram Delivery"},
    {38, 38, 38, "IDPR, Control Message Transport Protocol", "IDPR, Control Message Transport"},
    {39, 39, 39, "TP++ Transport Protocol", "TP++ Transport"},
    {40, 40, 40, "IL Transport Protocol", "IL Transport"},
    {41, 41, 41, "IPv6 over IPv4", nullptr},
    {42, 42, 42, "SDRP, Source Demand Routing Protocol", "SDRP, Source Demand Routing"},
    {43, 43, 43, "IPv6 Routing header", nullptr},
    {44, 44, 44, "IPv6 Fragment header", nullptr},
    {45, 45, 45, "IDRP, Inter-Domain Routing Protocol", "IDRP, Inter-Domain Routing"},
    {46, 46, 46, "RSVP, Reservation Protocol", "RSVP, Reservation"},
    {47, 47, 47, "GRE, General Routing Encapsulation", nullptr},
    {48, 48, 48, "MHRP, Mobile Host Routing Protocol", "MHRP, Mobile Host Routing"},
    {49, 49, 49, "BNA", nullptr},
    {50, 50, 50, "ESP, Encapsulating Security Payload", nullptr},
    {51, 51, 51, "AH, Authentication Header", nullptr},
    {52, 52, 52, "Integrated Net Layer Security TUBA", nullptr},
    {53, 53, 53, "IP with Encryption", nullptr},
    {54, 54, 54, "NARP, NBMA Address Resolution Protocol", "NARP, NBMA Address Resolution"},
    {55, 55, 55, "Minimal Encapsulation Protocol", "Minimal Encapsulation"},
    {56, 56, 56, "TLSP, Transport Layer Security Protocol using Krypton", nullptr},
    {57, 57, 57, "SKIP", nullptr},
    {58, 58, 58, "ICMPv6, Internet Control Message Protocol for IPv6", nullptr},
    {59, 59, 59, "IPv6 No Next Header", nullptr},
    {60, 60, 60, "Destination Options for IPv6", nullptr},
    {61, 61, 61, "Any host internal protocol", nullptr},
    {62, 62, 62, "CFTP", nullptr},
    {63, 63, 63, "Any local network", nullptr},
    {64, 64, 64, "SATNET and Backroom EXPAK", nullptr},
    {65, 65, 65, "Kryptolan", nullptr},
    {66, 66, 66, "MIT Remote Virtual Disk Protocol", "MIT Remote Virtual Disk"},
    {67, 67, 67, "Internet Pluribus Packet Core", nullptr},
    {68, 68, 68, "Any distributed file system", nullptr},
    {69, 69, 69, "SATNET Monitoring", nullptr},
    {70, 70, 70, "VISA Protocol", "VISA"},
    {71, 71, 71, "Internet Packet Core Utility", nullptr},
    {72, 72, 72, "Computer Protocol Network Executive", nullptr},
    {73, 73, 73, "Computer Protocol Heart Beat", nullptr},
    {74, 74, 74, "Wang Span Network", nullptr},
    {75, 75, 75, "Packet Video Protocol", "Packet Video"},
    {76, 76, 76, "Backroom SATNET Monitoring", nullptr},
    {77, 77, 77, "SUN ND PROTOCOL-Temporary", nullptr},
    {78, 78, 78, "WIDEBAND Monitoring", nullptr},
    {79, 79, 79, "WIDEBAND EXPAK", nullptr},
    {80, 80, 80, "ISO-IP", nullptr},
    {81, 81, 81, "VMTP, Versatile Message Transaction Protocol", "VMTP, Versatile Message Transaction"},
    {82, 82, 82, "SECURE-VMTP", nullptr},
    {83, 83, 83, "VINES", nullptr},
    {84, 84, 84, "TTP", nullptr},
    {85, 85, 85, "NSFNET-IGP", nullptr},
    {86, 86, 86, "Dissimilar Gateway Protocol", "Dissimilar Gateway"},
    {87, 87, 87, "TCF", nullptr},
    {88, 88, 88, "EIGRP", nullptr},
    {89, 89, 89, "OSPF, Open Shortest Path First Routing Protocol", "OSPF, Open Shortest Path First Routing"},
    {90, 90, 90, "MOSPF, Multicast Open Shortest Path First", nullptr},
    {91, 91, 91, "Locus Address Resolution Protocol", "Locus Address Resolution"},
    {92, 92, 92, "MTP, Multicast Transport Protocol", "MTP, Multicast Transport"},
    {93, 93, 93, "AX.25", nullptr},
    {94, 94, 94, "IP-within-IP Encapsulation Protocol", "IP-within-IP Encapsulation"},
    {95, 95, 95, "Mobile Internetworking Control Protocol", "Mobile Internetworking Control"},
    {96, 96, 96, "Semaphore Communications Sec. Pro", nullptr},
    {97, 97, 97, "EtherIP", nullptr},
    {98, 98, 98, "Encapsulation Header", nullptr},
    {99, 99, 99, "Any private encryption scheme", nullptr},
    {100, 100, 100, "GMTP", nullptr},
    {101, 101, 101, "IFMP, Ipsilon Flow Management Protocol", "IFMP, Ipsilon Flow Management"},
    {102, 102, 102, "PNNI over IP", nullptr},
    {103, 103, 103, "PIM, Protocol Independent Multicast", nullptr},
    {104, 104, 104, "ARIS", nullptr},
    {105, 105, 105, "SCPS", nullptr},
    {106, 106, 106, "QNX", nullptr},
    {107, 107, 107, "Active Networks", nullptr},
    {108, 108, 108, "IPPCP, IP Payload Compression Protocol", "IPPCP, IP Payload Compression"},
    {109, 109, 109, "SNP, Sitara Networks Protocol", "SNP, Sitara Networks"},
    {110, 110, 110, "Compaq Peer Protocol", "Compaq Peer"},
    {111, 111, 111, "IPX in IP", nullptr},
    {112, 112, 112, "VRRP, Virtual Router Redundancy Protocol", "VRRP, Virtual Router Redundancy"},
    {113, 113, 113, "PGM, Pragmatic General Multicast", nullptr},
    {114, 114, 114, "any 0-hop protocol", nullptr},
    {115, 115, 115, "L2TP, Level 2 Tunneling Protocol", "L2TP, Level 2 Tunneling"},
    {116, 116, 116, "DDX, D-II Data Exchange", nullptr},
    {117, 117, 117, "IATP, Interactive Agent Transfer Protocol", "IATP, Interactive Agent Transfer"},
    {118, 118, 118, "ST, Schedule Transfer", nullptr},
    {119, 119, 119, "SRP, SpectraLink Radio Protocol", "SRP, SpectraLink Radio"},
    {120, 120, 120, "UTI", nullptr},
    {121, 121, 121, "SMP, Simple Message Protocol", "SMP, Simple Message"},
    {122, 122, 122, "SM", nullptr},
    {123, 123, 123, "PTP, Performance Transparency Protocol", "PTP, Performance Transparency"},
    {124, 124, 124, "ISIS over IPv4", nullptr},
    {125, 125, 125, "FIRE", nullptr},
    {126, 126, 126, "CRTP, Combat Radio Transport Protocol", "CRTP, Combat Radio Transport"},
    {127, 127, 127, "CRUDP, Combat Radio User Datagram", nullptr},
    {128, 128, 128, "SSCOPMCE", nullptr},
    {129, 129, 129, "IPLT", nullptr},
    {130, 130, 130, "SPS, Secure Packet Shield", nullptr},
    {131, 131, 131, "PIPE, Private IP Encapsulation within IP", nullptr},
    {132, 132, 132, "SCTP, Stream Control Transmission Protocol", "SCTP, Stream Control Transmission"},
    {133, 133, 133, "Fibre Channel", nullptr},
    {134, 134, 134, "RSVP-E2E-IGNORE", nullptr},
    {255, 255, 255, "Reserved", nullptr},
};

}  // namespace

void CAdvAnlzPPPSpec::InitIPOptions()
{
    AddOptionList(FieldIPVersion, 4, kIPVersionOptions);
    AddOptionList(FieldIPPrecedence, 3, kIPPrecedenceOptions);
    AddOptionList(FieldIPDelay, 3, kIPNormalDelayOption);
    AddOptionList(FieldIPDelay, 1, kIPLowDelayOption);
    AddOptionList(FieldIPThroughput, 1, kIPThroughputOptions);
    AddOptionList(FieldIPReliability, 1, kIPReliabilityOptions);
    AddOptionList(FieldIPMonetary, 1, kIPMonetaryOptions);
    AddOptionList(FieldIPFlags, 3, kIPFlagsOptions);
    AddOptionList(FieldIPSecurity, 16, kIPSecurityOptions);
    AddOptionList(FieldIPOptionType, 8, kIPOptionTypeOptions);
    AddOptionList(FieldIPProtocol, 8, kIPProtocolOptions);
}
