// The field catalogue of the PPP decoder: ids 6000 to 6157 in id order, so
// that a record's index is its id minus 6000. Offsets are the defaults of a
// frame that starts with its protocol number; reading replaces them with the
// real ones. A field read with a length from the data has the bounds 0 and
// 65535; "Unexpected Field" has no upper bound.
#include "serial/PPPSpec.h"

#include <utility>

using Spec = CAdvAnlzPPPSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    // The frame header and frames of protocols that are not decoded here.
    {6000, "PPP Header", "PPP Header",
     "The Protocol field identifies the datagram encapsulated in the Information field of the packet. Values in "
     "the 0xxx to 3xxx range identify the network-layer protocol of specific packets, 8xxx to bxxx packets "
     "belonging to the associated Network Control Protocols, and cxxx to fxxx link-layer control protocols such "
     "as LCP.",
     0, 16},
    {6001, "Undefined Code", "Undefined Code",
     "The Code field of a packet of a protocol that is not decoded here: one octet that identifies the kind of "
     "packet.",
     16, 8},
    {6002, "Undefined Id", "Undefined Id",
     "The Identifier field of a packet of a protocol that is not decoded here: one octet that aids in matching "
     "requests and replies.",
     24, 8},
    {6003, "Undefined Length", "Undefined Length",
     "The Length field of a packet of a protocol that is not decoded here: two octets, the length of the packet "
     "in octets including the Code, Identifier, Length and Data fields.",
     32, 16},
    {6004, "Undefined Field", "Undefined Field",
     "The Data field of a packet of a protocol that is not decoded here: the octets that the Length field leaves "
     "behind the header.",
     48, 8, 0, 65535},
    // CHAP.
    {6005, "Code", "Code",
     "The Code field is one octet and identifies the type of CHAP packet: 1 Challenge, 2 Response, 3 Success, 4 "
     "Failure.",
     16, 8},
    {6006, "Identifier", "Id",
     "The Identifier field is one octet and aids in matching challenges, responses and replies.",
     24, 8},
    {6007, "Length", "Length",
     "The Length field is two octets and indicates the length of the CHAP packet including the Code, Identifier, "
     "Length and Data fields.",
     32, 16},
    {6008, "Value size", "Value size",
     "The Value-Size field is one octet and indicates the length of the Value field.",
     40, 8},
    {6009, "Value", "Value",
     "The Value field is one or more octets. In a Challenge it is a variable stream of octets that the "
     "authenticator changes with each challenge; in a Response it is the one-way hash calculated over the "
     "Identifier, followed by the secret, followed by the Challenge Value.",
     48, 8, 0, 65535},
    {6010, "Name", "Name",
     "The Name field is one or more octets representing the identification of the system transmitting the packet. "
     "Its size is determined from the Length field.",
     56, 8, 0, 65535},
    {6011, "Message", "Message",
     "The Message field is zero or more octets, and its contents are implementation dependent. It is intended to "
     "be human readable, and does not affect the operation of the protocol.",
     56, 8, 0, 65535},
    // IPCP, with the vendor extension packet and the options.
    {6012, "Code", "Code",
     "The Code field is one octet and identifies the kind of IPCP packet. IPCP uses the packet exchange mechanism "
     "of LCP, with codes 1 through 7 (Configure-Request, Configure-Ack, Configure-Nak, Configure-Reject, "
     "Terminate-Request, Terminate-Ack and Code-Reject); code 0 is a vendor extension.",
     16, 8},
    {6013, "Id", "Id", "The Identifier field is one octet and aids in matching requests and replies.", 24, 8},
    {6014, "Length", "Length",
     "The Length field is two octets and indicates the length of the IPCP packet, including the Code, Identifier, "
     "Length and Data fields.",
     32, 16},
    {6015, "Magic Number", "Magic number",
     "The Magic-Number field of a vendor extension packet is four octets and aids in detecting links that are in "
     "the looped-back condition.",
     16, 32},
    {6016, "OUI", "OUI",
     "The vendor's IEEE Organizationally Unique Identifier (OUI), three octets, most significant octet first.",
     24, 24},
    {6017, "Kind", "Kind",
     "The Kind field is one octet and indicates a sub-type for the OUI. There is no standardization for this "
     "field; each OUI implements its own values.",
     32, 8},
    {6018, "Values", "Values",
     "The Value(s) field is zero or more octets, and contains the vendor specific information for the Kind.",
     16, 0, 0, 65535},
    {6019, "Option Type", "Option type",
     "The Type field of an IPCP Configuration Option: 1 IP-Addresses (deprecated), 2 IP-Compression-Protocol, 3 "
     "IP-Address, 4 Mobile-IPv4, 129 Primary DNS Server Address, 130 Primary NBNS Server Address, 131 Secondary "
     "DNS Server Address, 132 Secondary NBNS Server Address.",
     24, 8},
    {6020, "Length", "Length",
     "The Length field of a Configuration Option is one octet and indicates the length of the option in octets, "
     "including its Type and Length fields.",
     32, 8},
    {6021, "Primary DNS Address", "Primary DNS",
     "The four octet address of the primary DNS server. An all-zero address in a Configure-Request asks the peer "
     "to supply the address in a Configure-Nak.",
     32, 32},
    {6022, "Secondary DNS Address", "Secondary DNS",
     "The four octet address of the secondary DNS server. An all-zero address in a Configure-Request asks the "
     "peer to supply the address in a Configure-Nak.",
     16, 32},
    {6023, "Primary NBNS Address", "Primary NBNS",
     "The four octet address of the primary NetBIOS Name Server. An all-zero address in a Configure-Request asks "
     "the peer to supply the address in a Configure-Nak.",
     24, 32},
    {6024, "Secondary NBNS Address", "Secondary NBNS",
     "The four octet address of the secondary NetBIOS Name Server. An all-zero address in a Configure-Request "
     "asks the peer to supply the address in a Configure-Nak.",
     32, 32},
    {6025, "Mobile Node's Home Address", "Mobile Node's Home Address",
     "The Mobile Node's Home Address field is four octets and holds the home address of a mobile node that uses "
     "Mobile IPv4.",
     24, 32},
    {6026, "IP Compression Protocol", "IP comp protocol",
     "The IP-Compression-Protocol field is two octets and indicates the compression protocol desired: 0x002d Van "
     "Jacobson Compressed TCP/IP, 0x0061 IP Header Compression.",
     32, 16},
    {6027, "Data", "Data",
     "The Data field is zero or more octets and contains additional data as determined by the particular option "
     "or compression protocol.",
     32, 0, 0, 65535},
    {6028, "Max Slot ID", "Max_Slot_ID",
     "The Max-Slot-Id field is one octet and indicates the maximum slot identifier. This is one less than the "
     "number of slots used for Van Jacobson TCP/IP header compression.",
     24, 8},
    {6029, "Comp Slot ID", "Comp_slot_ID",
     "The Comp-Slot-Id field is one octet and indicates whether the slot identifier field may be compressed: 0 "
     "the slot identifier must not be compressed, 1 it may be compressed.",
     32, 8},
    {6030, "IP Address", "IP_Address",
     "The IP-Address field is four octets and indicates the desired local address of the sender of a "
     "Configure-Request. If all four octets are zero, the peer is asked to provide the address in a Configure-Nak.",
     32, 32},
    {6031, "TCP Space", "TCP_SPACE",
     "TCP_SPACE: the maximum value of a context identifier in the space of context identifiers allocated for TCP. "
     "The default is 15.",
     24, 16},
    {6032, "Non TCP Space", "NON_TCP_SPACE",
     "NON_TCP_SPACE: the maximum value of a context identifier in the space of context identifiers allocated for "
     "non-TCP. The default is 15.",
     32, 16},
    {6033, "F Max Period", "F_MAX_PERIOD",
     "F_MAX_PERIOD: the largest number of compressed non-TCP headers that may be sent without sending a full "
     "header. The default is 256.",
     32, 16},
    {6034, "F Max Time", "F_MAX_TIME",
     "F_MAX_TIME: the largest number of seconds that may pass, while compressed non-TCP headers are sent, without "
     "sending a full header. The default is 5.",
     32, 16},
    {6035, "Max Header", "MAX_HEADER",
     "MAX_HEADER: the largest header size in octets that may be compressed. The default is 168.",
     32, 16},
    {6036, "Suboption Type", "Suboption TYPE",
     "The type of a suboption of IP Header Compression, for example 1 RTP-Compression.",
     32, 16},
    {6037, "Suboption Length", "Suboption Length",
     "The length of the suboption in octets, including its type and length fields.",
     32, 16},
    {6038, "Suboption Parameters", "Suboption Parameters", "The parameters of the suboption.", 32, 16},
    // The Van Jacobson TCP/IP frames.
    {6039, "Data", "Data",
     "A TCP/IP packet of Van Jacobson header compression: in a compressed packet (protocol 0x002d) the change "
     "mask, the connection number and the changed header fields in front of the data; in an uncompressed packet "
     "(protocol 0x002f) the IP protocol field carries the connection number.",
     16, 624},
    {6040, "Data", "Data",
     "An uncompressed TCP/IP packet of Van Jacobson header compression: a regular TCP/IP packet whose IP protocol "
     "field carries the connection (slot) number.",
     16, 320},
    // LCP: header, option header and the options.
    {6041, "Lcp Code", "Lcp Code", "The Code field is one octet and identifies the kind of LCP packet.", 16, 8},
    {6042, "Lcp Id", "Lcp Id", "The Identifier field is one octet and aids in matching requests and replies.", 24, 8},
    {6043, "Lcp Length", "Lcp Length", "Size of the packet including the header.", 32, 16},
    {6044, "Lcp Type", "Lcp Type",
     "The Type field of a Configuration Option is one octet and indicates the type of the option.",
     48, 8},
    {6045, "Lcp Data Length", "Lcp Data Length",
     "The Length field is one octet and indicates the length of this Configuration Option including the Type, "
     "Length and Data fields.",
     56, 8},
    {6046, "Lcp Data", "Lcp Data",
     "The Data field is zero or more octets and contains information specific to the Configuration Option. The "
     "format and length of the Data field is determined by the Type and Length fields.",
     64, 8, 0, 65535},
    {6047, "Lcp Type Vendor Specific OUI", "OUI",
     "The vendor's IEEE Organizationally Unique Identifier (OUI), three octets, most significant octet first.",
     64, 32},
    {6048, "Lcp Type Vendor Specific Kind", "Kind",
     "The Kind field is one octet and indicates a sub-type for the OUI.",
     96, 8},
    {6049, "Lcp Type Vendor Specific Values", "Values",
     "The Value(s) field is zero or more octets and contains the vendor specific information for the Kind.",
     104, 8, 0, 65535},
    {6050, "Lcp Type MRU", "MRU",
     "The Maximum-Receive-Unit field is two octets, and specifies the maximum number of octets in the Information "
     "and Padding fields. It does not include the framing, Protocol field, FCS, nor any transparency bits or "
     "bytes.",
     64, 16},
    {6051, "Lcp Type Authenticatio Protocol", "Athn-Prtcl", "c023 (hex) for Password Authentication Protocol.", 64, 16},
    {6052, "Lcp Type Authenticatio Protocol Data", "Data",
     "The Data field is zero or more octets, and contains additional data as determined by the particular "
     "authentication protocol.",
     80, 8, 0, 65535},
    {6053, "Lcp Type Authenticatio Protocol Algorithm", "Algorithm",
     "The Algorithm field is one octet and indicates the authentication method to be used with CHAP, 5 for MD5.",
     80, 8},
    {6054, "Lcp Type Magic Number", "Magic Number",
     "The Magic-Number field is four octets, and indicates a number which is very likely to be unique to one end "
     "of the link. It aids in detecting links which are in the looped-back condition.",
     64, 32},
    {6055, "Lcp Type Quality Protocol", "Qlty-Prtcl",
     "The Quality-Protocol field is two octets, and indicates the link quality monitoring protocol desired: c025 "
     "(hex) for Link Quality Report.",
     64, 16},
    {6056, "Lcp Type Quality Protocol Data", "Data",
     "The Data field is zero or more octets, and contains additional data as determined by the particular quality "
     "protocol.",
     80, 8, 0, 65535},
    {6057, "Lcp Type FCS Alternative Options", "FCS-Options",
     "The Options field is one octet and holds the FCS alternatives the sender may use, as bits: 1 Null FCS, 2 "
     "CCITT 16-bit FCS, 4 CCITT 32-bit FCS.",
     64, 8},
    {6058, "Lcp Type Self Describing Pad Maximume", "Maximume",
     "The Maximum field is one octet and indicates the largest number of padding octets which may be added to the "
     "frame.",
     64, 8},
    {6059, "Lcp Type Call Back operation", "operation",
     "The Operation field is one octet and indicates the contents of the Message field: 0 location determined by "
     "user authentication, 1 dialing string, 2 location identifier, 3 E.164 number, 4 distinguished name.",
     64, 8},
    {6060, "Lcp Type Call Back Message", "Message",
     "The Message field is zero or more octets, and its general contents are determined by the Operation field.",
     72, 8, 0, 65535},
    {6061, "Multilink Max-Receive-Reconstructed-Unit ", "MMRRU",
     "The Max-Receive-Reconstructed-Unit field is two octets, and specifies the maximum number of octets in the "
     "Information fields of reassembled packets.",
     64, 16},
    {6062, "Multilink Endpoint Discriminator Class", "Multilink Endpoint Discriminator Class",
     "The Class field is one octet and indicates the identifier address space: 0 Null Class, 1 Locally Assigned "
     "Address, 2 Internet Protocol Address, 3 IEEE 802.1 Globally Assigned MAC Address, 4 PPP Magic-Number Block, "
     "5 Public Switched Network Directory Number.",
     64, 8},
    {6063, "Multilink Endpoint Discriminator Address", "Multilink Endpoint Discriminator Address",
     "The Address field is zero or more octets and indicates the identifier address within the selected class.",
     72, 8},
    {6064, "MP+  Option", "Option", "The field of the Multilink Plus Configuration Option, two octets.", 64, 16},
    {6065, "Link Disciminator for BACP", "LD-BACP",
     "The Link Discriminator field is two octets and contains a value that uniquely identifies the link within "
     "the bundle, for use by the Bandwidth Allocation Control Protocol.",
     64, 16},
    {6066, "Prefix Elision Class", "Class",
     "The Class field is one octet and names the class of the multilink class extension to which the prefix "
     "applies.",
     64, 8},
    {6067, "Prefix Elision Prefix length", "Prefix-length", "The length of the prefix in octets.", 72, 8},
    {6068, "Prefix Elision Prefix", "Prefix-Elision-Prefix",
     "The prefix that the sender elides from the frames of this class.",
     80, 8, 0, 65535},
    {6069, "Multilink Header Code", "Code",
     "The Code field is one octet and indicates the multilink header format: 2 long sequence number fragment "
     "format with classes, 6 short sequence number fragment format with classes.",
     64, 8},
    {6070, "Multilink Header Suspendable Class", "Suspendable Class",
     "The number of suspendable classes the sender can receive, one octet.",
     72, 8},
    {6071, "Internationalization MBI Enum ", "MBI Enum ",
     "The MIBenum field is four octets and identifies the character set the sender prefers, by its number in the "
     "IANA registry of character sets.",
     96, 8},
    {6072, "Internationalization Language ", "Intr-Language ",
     "The Language-Tag field is one or more octets and holds an ASCII language tag for the texts the sender "
     "prefers.",
     64, 32},
    {6073, "Numbered Mode - Window Field ", "Window",
     "The Window field is one octet and indicates the window size for numbered mode operation, from 1 to 127.",
     64, 8},
    {6074, "Numbered Mode - Address Field ", "Address",
     "The Address field is zero or more octets and holds the HDLC address to be used for numbered mode operation.",
     72, 8},
    // The IPv4 header, its option and the data behind it.
    {6075, "Version", "Ver", "The Version field indicates the format of the internet header.", 0, 4},
    {6076, "Internet Header Lerngth", "IHL",
     "Internet Header Length is the length of the internet header in 32 bit words, and thus points to the "
     "beginning of the data. Note that the minimum value for a correct header is 5.",
     4, 4},
    {6077, "TOS , Precedence", "TOS_P",
     "Precedence, bits 0-2 of the Type of Service: 111 Network Control, 110 Internetwork Control, 101 CRITIC/ECP, "
     "100 Flash Override, 011 Flash, 010 Immediate, 001 Priority, 000 Routine.",
     8, 3},
    {6078, "TOS , Delay", "TOS_D", "Bit 3 of the Type of Service: 0 = Normal Delay, 1 = Low Delay.", 11, 1},
    {6079, "TOS , Throuput", "TOS_T",
     "Bit 4 of the Type of Service: 0 = Normal Throughput, 1 = High Throughput.",
     12, 1},
    {6080, "TOS , Raliability", "TOS_R",
     "Bit 5 of the Type of Service: 0 = Normal Reliability, 1 = High Reliability.",
     13, 1},
    {6081, "TOS , Monitary", "TOS_M",
     "Bit 6 of the Type of Service: 0 = Normal Monetary Cost, 1 = Low Monetary Cost.",
     14, 1},
    {6082, "TOS , Reserved", "TOS_R", "Bit 7 of the Type of Service: reserved for future use, must be zero.", 15, 1},
    {6083, "Total of Datagram Length", "TotLen",
     "Total Length is the length of the datagram, measured in octets, including internet header and data.",
     16, 16},
    {6084, "Identification", "Identification",
     "An identifying value assigned by the sender to aid in assembling the fragments of a datagram.",
     32, 16},
    {6085, "Flags", "Flags",
     "Various control flags. Bit 0: reserved, must be zero. Bit 1 (DF): 0 = May Fragment, 1 = Don't Fragment. Bit "
     "2 (MF): 0 = Last Fragment, 1 = More Fragments.",
     48, 3},
    {6086, "Fragment Offset", "FragOffset",
     "This field indicates where in the datagram this fragment belongs. The fragment offset is measured in units "
     "of 8 octets (64 bits). The first fragment has offset zero.",
     51, 13},
    {6087, "Time To Live", "TTL",
     "This field indicates the maximum time the datagram is allowed to remain in the internet system. If this "
     "field contains the value zero, then the datagram must be destroyed.",
     64, 8},
    {6088, "Protocol", "Protocol",
     "This field indicates the next level protocol used in the data portion of the internet datagram.",
     72, 8},
    {6089, "Header Checksum", "HdrChecksum",
     "A checksum on the header only. Since some header fields change (e.g., time to live), this is recomputed and "
     "verified at each point that the internet header is processed.",
     80, 16},
    {6090, "Source IP Address", "SrcIPAddr", "The source address.", 96, 32},
    {6091, "Distination IP Address", "DistIPAddr", "The destination address.", 128, 32},
    {6092, "Option Type", "Option Type",
     "The option-type octet is viewed as having 3 fields: 1 bit copied flag, 2 bits option class, 5 bits option "
     "number.",
     160, 8},
    {6093, "Length", "Length",
     "The option-length octet counts the option-type octet and the option-length octet as well as the option-data "
     "octets.",
     168, 8},
    {6094, "Security", "SSS",
     "Specifies one of 16 levels of security (eight of which are reserved for future use).",
     176, 16},
    {6095, "Compartments", "CCC",
     "An all zero value is used when the information transmitted is not compartmented. Other values for the "
     "compartments field may be obtained from the Defense Intelligence Agency.",
     182, 16},
    {6096, "Handeling Restrictions", "HHH",
     "The values for the control and release markings are alphanumeric digraphs and are defined in the Defense "
     "Intelligence Agency Manual DIAM 65-19, Standard Security Markings.",
     198, 16},
    {6097, "Transmission Control Code", "TCC",
     "Provides a means to segregate traffic and define controlled communities of interest among subscribers. The "
     "TCC values are trigraphs, and are available from HQ DCA Code 530.",
     214, 24},
    {6098, "Pointer", "Pointer",
     "The pointer is the number of octets from the beginning of this option to the end of the route data or time "
     "stamps plus one, that is to the next free slot. The smallest legal value is 4, and 5 in the Internet "
     "Timestamp.",
     176, 8},
    {6099, "Route Data", "RouteData",
     "A route data is composed of a series of internet addresses. Each internet address is 32 bits or 4 octets.",
     184, 32},
    {6100, "Stream ID", "StreamID",
     "This option provides a way for the 16-bit SATNET stream identifier to be carried through networks that do "
     "not support the stream concept.",
     184, 16},
    {6101, "Overflow", "Oflw",
     "The Overflow (oflw) [4 bits] is the number of IP modules that cannot register timestamps due to lack of "
     "space.",
     184, 4},
    {6102, "Flag", "Flag",
     "The Flag (flg) [4 bits] values are 0 -- time stamps only, stored in consecutive 32-bit words, 1 -- each "
     "timestamp is preceded with internet address of the registering entity, 3 -- the internet address fields are "
     "prespecified.",
     188, 4},
    {6103, "Internet Address", "IntAddr",
     "The internet address of the entity that registered the following timestamp.",
     192, 32},
    {6104, "Time Stamp", "TimeStamp",
     "The Timestamp is a right-justified, 32-bit timestamp in milliseconds since midnight UT.",
     224, 32},
    {6105, "Data", "Data", "The octets of the datagram behind the header and the option type.", 160, 65535},
    // CCP: header, option header and the options.
    {6106, "Ccp Code", "Ccp Code",
     "The Code field is one octet and identifies the kind of CCP packet: codes 1 through 7 as in LCP, 14 "
     "Reset-Request and 15 Reset-Ack.",
     16, 8},
    {6107, "Ccp Id", "Ccp Id", "The Identifier field is one octet and aids in matching requests and replies.", 24, 8},
    {6108, "Ccp Length", "Ccp Length",
     "The Length field is two octets and indicates the length of the CCP packet, including the Code, Identifier, "
     "Length and Data fields.",
     32, 16},
    {6109, "Ccp Type", "Ccp Type",
     "The Type field of a CCP Configuration Option is one octet and indicates the compression algorithm proposed.",
     48, 8},
    {6110, "Ccp Data Length", "Ccp Data Length",
     "The Length field is one octet and indicates the length of this Configuration Option including the Type, "
     "Length and Data fields.",
     56, 8},
    {6111, "Ccp Data", "Ccp Data",
     "The Data field is zero or more octets and contains information specific to the compression algorithm.",
     64, 8, 0, 65535},
    {6112, "OUI", "OUI",
     "The vendor's IEEE Organizationally Unique Identifier (OUI), three octets, most significant octet first.",
     64, 24},
    {6113, "Subtype", "Subtype",
     "The Subtype field is one octet and names a compression algorithm of the vendor.",
     88, 8},
    {6114, "Values", "Values", "The Value(s) field is zero or more octets of vendor specific data.", 96, 8, 0, 65535},
    {6115, "History Count", "History Count",
     "The History Count field is two octets and specifies the maximum number of Stac LZS compression histories.",
     64, 16},
    {6116, "Check Mode", "Check Mode",
     "The Check Mode field is one octet: 0 None, 1 LCB, 2 CRC, 3 Sequence Number, 4 Extended Mode.",
     80, 8},
    {6117, "History", "History",
     "The History field is one octet and specifies the maximum size of the compression history as a power of two.",
     64, 8},
    {6118, "Version", "Version",
     "The Version field is one octet and indicates the version of the compression protocol.",
     72, 8},
    {6119, "BSD Vers", "Vers",
     "The Vers field is three bits and must be 1 for the present version of BSD-Compress.",
     64, 3},
    {6120, "BSD Dict", "Dict",
     "The Dict field is five bits: the base two logarithm of the maximum number of codes in the dictionary, from "
     "9 to 16.",
     67, 5},
    {6121, "History Count", "History Count",
     "The History Count field is two octets: 0 for stateless LZS-DCP, 1 for stateful LZS-DCP.",
     64, 16},
    {6122, "Check mode", "Check mode",
     "The Check Mode field is one octet: 0 None, 1 LCB, 2 Sequence Number, 3 Sequence Number and LCB.",
     80, 8},
    {6123, "Proccess mode", "Proccess mode",
     "The Process Mode field is one octet: 0 None, 1 Process-Uncompressed.",
     88, 8},
    {6124, "MVRCA  FE", "FE",
     "The FE field is two bits: the features of Magnalink variable resource compression proposed.",
     64, 2},
    {6125, "MVRCA P", "P", "The P bit: when set, the compression history is reset for every packet.", 66, 1},
    {6126, "MVRCA History", "History", "The History field is five bits: the number of compression histories.", 67, 5},
    {6127, "MVRCA Context", "Context", "The Context field is one octet: the number of compression contexts.", 72, 8},
    {6128, "DCE mode", "mode",
     "The Mode field is one octet: 1 No Additional Negotiation, 2 Full PPP Negotiation and State Machine.",
     64, 8},
    {6129, "Deflate Window", "Window",
     "The Window field, four bits: the base-two logarithm of the maximum LZ77 window size, minus 8.",
     64, 4},
    {6130, "Deflate Method", "Method", "The Method field, four bits: the compression method, 8 for deflate.", 68, 4},
    {6131, "Deflate MBZ", "MBZ", "Six bits that must be zero.", 72, 6},
    {6132, "Deflate Chk", "Chk",
     "The Chk field, two bits: the check method, which must be zero (sequence number check).",
     78, 2},
    {6133, "MPP-H", "H", "H: stateless mode, in which the history is reset for every packet.", 71, 1},
    {6134, "MPP-M", "M", "M: 56-bit encryption.", 88, 1},
    {6135, "MPP-S", "S", "S: 128-bit encryption.", 89, 1},
    {6136, "MPP-L", "L", "L: 40-bit encryption.", 90, 1},
    {6137, "MPP-D", "D", "D: obsolete.", 91, 1},
    {6138, "MPP-C", "C", "C: Microsoft Point-to-Point Compression.", 95, 1},
    {6139, "MPP-Undefined", "MPP-UNDEFINED",
     "Bits of the Supported Bits field of Microsoft Point-to-Point Compression and Encryption that have no "
     "meaning assigned.",
     64, 1},
    // IPV6CP: header, option header and the options.
    {6140, "IPV6CP Code", "IPV6CP Code",
     "The Code field is one octet and identifies the kind of IPV6CP packet. IPV6CP uses the packet exchange "
     "mechanism of LCP, with codes 1 through 7 (Configure-Request, Configure-Ack, Configure-Nak, "
     "Configure-Reject, Terminate-Request, Terminate-Ack and Code-Reject).",
     16, 8},
    {6141, "IPV6CP Id", "IPV6CP Id",
     "The Identifier field is one octet and aids in matching requests and replies.",
     24, 8},
    {6142, "IPV6CP Length", "IPV6CP Length",
     "The Length field is two octets and indicates the length of the IPV6CP packet, including the Code, "
     "Identifier, Length and Data fields.",
     32, 16},
    {6143, "IPV6CP Option", "IPV6CP Option",
     "The Type field of an IPV6CP Configuration Option: 1 Interface-Identifier, 2 IPv6-Compression-Protocol.",
     48, 8},
    {6144, "IPV6CP Data Length", "IPV6CP Data Length",
     "The Length field is one octet and indicates the length of this Configuration Option including the Type, "
     "Length and Data fields.",
     56, 8},
    {6145, "IPV6CP Data", "IPV6CP Data",
     "The Data field is zero or more octets and contains additional data as determined by the particular option.",
     64, 8, 0, 65535},
    {6146, "IPV6CP Interface Identifier", "IPV6CP Interface Identifier",
     "The Interface-Identifier field is eight octets and indicates the desired interface identifier of the "
     "sender. An all-zero identifier asks the peer to supply one in a Configure-Nak.",
     64, 64},
    {6147, "IPV6CP Compression-Protocol", "IPV6CP Compression-Protocol",
     "The IPv6-Compression-Protocol field is two octets and indicates the compression protocol desired: 0x004f "
     "IPv6 Header Compression.",
     64, 16},
    // IPV6CP fields of the catalogue that no frame produces.
    {6148, "IP_Address", "IP_Address", "The four octet address of the sender.", 32, 32},
    {6149, "TCP Space", "TCP_SPACE",
     "TCP_SPACE: the maximum value of a context identifier in the space of context identifiers allocated for TCP. "
     "The default is 15.",
     24, 16},
    {6150, "Non TCP Space", "NON_TCP_SPACE",
     "NON_TCP_SPACE: the maximum value of a context identifier in the space of context identifiers allocated for "
     "non-TCP. The default is 15.",
     32, 16},
    {6151, "F Max Period", "F_MAX_PERIOD",
     "F_MAX_PERIOD: the largest number of compressed non-TCP headers that may be sent without sending a full "
     "header. The default is 256.",
     32, 16},
    {6152, "F Max Time", "F_MAX_TIME",
     "F_MAX_TIME: the largest number of seconds that may pass, while compressed non-TCP headers are sent, without "
     "sending a full header. The default is 5.",
     32, 16},
    {6153, "Max Header", "MAX_HEADER",
     "MAX_HEADER: the largest header size in octets that may be compressed. The default is 168.",
     32, 16},
    {6154, "Suboption TYPE", "Suboption TYPE", "The type of a suboption of IPv6 Header Compression.", 32, 16},
    {6155, "Suboption Length", "Suboption Length",
     "The length of the suboption in octets, including its type and length fields.",
     32, 16},
    {6156, "Suboption Parameters", "Suboption Parameters", "The parameters of the suboption.", 32, 16},
    // What no field accounts for.
    {6157, "Unexpected Field", "Unexp",
     "Octets that no field of the protocol accounts for: what is left of a frame, or of the payload behind its "
     "last frame.",
     0, 0, 0, 4294967295u},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
// The ids in ascending order, but for the language tag, which stands before
// the character set as in the option.
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = [] {
    std::array<short, Spec::kFieldCount> aIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
    std::swap(aIds[Spec::FieldCharset - Spec::kFirstId], aIds[Spec::FieldLanguageTag - Spec::kFirstId]);
    return aIds;
}();
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};
