// Field catalogue and option lists of the communication class requests.
#include "usbclass/CommunicationClass.h"

using Spec = CCommunicationClassSpec;

// Fields of a length given by the data: from 0 to 65535 bits.
#define CDC_VARIABLE(nOffset, nLength) nOffset, nLength, 0, 65535

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {25000, "bmRequestType-Direction", "Direction", "Data transfer direction: host to device or device to host.", 7,
     1},
    {25001, "bmRequestType-Type", "Type", "Type of the request: standard, class or vendor.", 5, 2},
    {25002, "bmRequestType-Recipient", "Recipient",
     "Recipient of the request: device, interface, endpoint or other.", 0, 5},
    {25003, "bRequest", "bRequest", "The class-specific request code.", 8, 8},
    {25004, "wValue", "wValue", "Word-sized field that varies according to the request; zero here.", 16, 16},
    {25005, "wValue", "Feature Selector",
     "The feature selector: the communication feature that the request sets, returns or clears.", 16, 16},
    {25006, "wValue", "wValue",
     "Disconnects (0) or connects (1) the audio path of the auxiliary jack to the line or the CODEC.", 16, 16},
    {25007, "wValue", "Relay Confiquration",
     "The line relay configuration: on hook, off hook, or snooping (caller ID) state.", 16, 16},
    {25008, "wValue", "Enable/Disable",
     "Prepares the device for a pulse-dialing cycle, or with FFFFh disengages the holding circuit.", 16, 16},
    {25009, "wIndex", "wIndex", "Word-sized field that varies according to the request.", 32, 16},
    {25010, "wIndex", "Interface",
     "The Communication Class interface (or master interface of a union) to which the request is sent.", 32, 16},
    {25011, "wLength", "wLength", "Number of bytes to transfer in the data stage.", 48, 16},
    {25012, "wLength", "Size of Structure", "Size of the structure transferred in the data stage, in bytes.", 48,
     16},
    {25013, "Data", "Data", "The data stage of the request.", CDC_VARIABLE(64, 8)},
    {25014, "Control protocol-based command", "Control protocol-based command",
     "A command in the format of the control protocol that the Communication Class interface supports.",
     CDC_VARIABLE(64, 8)},
    {25015, "Protocol dependent data", "Protocol dependent data",
     "A response in the format of the control protocol that the Communication Class interface supports.",
     CDC_VARIABLE(64, 8)},
    {25016, "Existance Status", "Existance Status", "Whether a ringer exists: bit D31 of the ringer configuration.",
     95, 1},
    {25017, "Reserved", "Reserved", "Reserved bits D30..D16 of the ringer configuration; reset to zero.", 80, 15},
    {25018, "Volume Setting", "Volume Setting",
     "Ringer volume setting, D15..D8 of the ringer configuration: 0 is off, 255 the maximum volume.", 72, 8},
    {25019, "Pattern Type Selection", "Pattern Type Selection",
     "Ringer pattern type selection, D7..D0 of the ringer configuration.", 64, 8},
    {25020, "Idle Setting for Abstract State Selector", "Idle Setting ",
     "Idle setting: whether all endpoints of this interface accept and offer data, or none do.", 64, 1},
    {25021, "Data Multiplexed State for Abstract State Selector", "Data Multiplexed State",
     "Data multiplexed state: whether the device multiplexes call management commands over a data class "
     "interface.",
     65, 1},
    {25022, "Reserved", "Reserved", "Reserved bits of the abstract state; reset to zero.", 66, 14},
    {25023, "Country Code", "Country Code",
     "The country code in hexadecimal format as defined in ISO 3166, release date as specified in offset 3 of "
     "the Country Selection Functional Descriptor.",
     64, 16},
    {25024, "dwDTERate", "dwDTERate", "Data terminal rate, in bits per second.", 64, 32},
    {25025, "bCharFormat", "bCharFormat", "Stop bits: 1 stop bit, 1.5 stop bits or 2 stop bits.", 98, 8},
    {25026, "bPartiyType", "bPartiyType", "Parity: none, odd, even, mark or space.", 106, 8},
    {25027, "bDataBits", "bDataBits", "Data bits (5, 6, 7, 8 or 16).", 114, 8},
    {25028, "Operation Mode", "Operation Mode",
     "The operational mode of the device: simple, standalone or host centric.", 64, 16},
    {25029, "wValue", "Operation Mode",
     "The operational mode to set: simple, standalone or host centric.", 16, 16},
    {25030, "wValue", "Line State Change",
     "The change of line state: drop the active call, start a new call, apply or remove ringing, or switch to a "
     "specific call.",
     16, 16},
    {25031, "wLength", "wLength", "Size of the line parameters structure, in bytes.", 64, 16},
    {25032, "dwRingerBitmap", "dwRingerBitmap", "Ringer configuration bitmap.", 80, 32},
    {25033, "dwLineState", "dwLineState", "Defines the current state of the line.", 112, 32},
    {25034, "dwCallState", "dwCallState", "Defines the current state of a call.", 144, 32},
    {25035, "dwLineState-Index", "Index", "Index of the call that is active on the line.", 112, 8},
    {25036, "dwLineState-Reserved", "Reserved", "Reserved bits of the line state; reset to zero.", 120, 23},
    {25037, "dwLineState-Actice Flag", "Actice Flag", "Whether there is activity on the line.", 143, 1},
    {25038, "dwCallState-Call State Value", "Call State Value", "The current state of the call.", 144, 8},
    {25039, "dwCallState-Call State Change Value", "Call State Change Value",
     "Additional information about the last change of the call state.", 152, 8},
    {25040, "dwCallState-Reserved", "Reset to zero", "Reserved bits of the call state; reset to zero.", 160, 15},
    {25041, "dwCallState-Active Flag", "Active Flag", "Whether the call is active.", 175, 1},
    {25042, "Dialing String", "Dialing String",
     "The dialing string: the DTMF digits, 'A', 'B', 'C', 'D', '*', '#', ',' and '!'.", CDC_VARIABLE(64, 8)},
    {25043, "Unit Parameter", "Unit Parameter", "The value of the unit parameter.", 16, 16},
    {25044, "wValue", "bEntityId", "Unit ID of the unit to which the parameter belongs.", 64, 8},
    {25045, "wValue", "bParameterIndex", "Index of the parameter within the unit.", 72, 8},
    {25046, "Profile Information", "Profile Information", "The profile information as defined by CAPI 2.0.", 64,
     64},
    {25047, "wValue", "Filter number",
     "The number of filters: multicast addresses, or the filter number of a power management pattern.", 16, 16},
    {25048, "Multicast Addresses", "Multicast Addresses",
     "A list of 48-bit multicast addresses to be set on the networking device.", CDC_VARIABLE(64, 8)},
    {25049, "MaskSize", "MaskSize", "Size of the mask, in bytes.", 64, 16},
    {25050, "Mask", "Mask", "Mask of the bytes of the pattern that the filter compares.", 80, 8},
    {25051, "Pattern", "Pattern", "The power management pattern.", CDC_VARIABLE(88, 8)},
    {25052, "Pattern Active Boolean", "Pattern Active Boolean",
     "Whether the power management pattern filter is active.", 64, 16},
    {25053, "wValue", "PACKET_TYPE_PROMISCUOUS", "Promiscuous mode: all frames are forwarded up to the host.", 16,
     1},
    {25054, "wValue", "PACKET_TYPE_ALL_MULTICAST", "All multicast packets are forwarded up to the host.", 17, 1},
    {25055, "wValue", "PACKET_TYPE_DIRECTED", "Directed packets are forwarded up to the host.", 18, 1},
    {25056, "wValue", "PACKET_TYPE_BROADCAST", "All broadcast packets are forwarded up to the host.", 19, 1},
    {25057, "wValue", "PACKET_TYPE_MULTICAST",
     "Multicast packets listed in the multicast filters are forwarded up to the host.", 20, 1},
    {25058, "wValue", "RESERVED", "Reserved bits of the packet filter; reset to zero.", 21, 11},
    {25059, "wValue", "Feature Selector", "The Ethernet statistic that the request retrieves.", 16, 16},
    {25060, "wValue", "Data Fomat", "The ATM data format exchanged between the host and the device.", 16, 16},
    {25061, "wValue", "Feature Selector", "The ATM device statistic that the request retrieves.", 16, 16},
    {25062, "wValue", "Feature Selector", "The statistic of the pre-selected virtual channel.", 16, 16},
    {25063, "wValue", "Cycles", "Number of make/break pulse cycles to generate.", 16, 16},
    {25064, "wValue", "Timing",
     "Timing of the pulse dialing: the make period in the high byte, the break period in the low byte, both in "
     "milliseconds.",
     16, 16},
    {25065, "wValue", "Number of rings", "Number of ring signals to generate on the auxiliary jack.", 16, 16},
    {25066, "wValue", "Duration of Break", "Duration of the break in milliseconds; FFFFh until cleared.", 16, 16},
    {25067, "wValue", "Present Status",
     "Indicates to DCE if DTE is present or not. This signal corresponds to V.24 signal 108/2 and RS-232 signal "
     "DTR.",
     16, 1},
    {25068, "wValue", "Carrier Activity",
     "Carrier control for half duplex modems. This signal corresponds to V.24 signal 105 and RS-232 signal RTS.",
     17, 1},
    {25069, "Reserved", "Reserved", "Reserved bits of the control signal bitmap; reset to zero.", 18, 14},
    {25070, "VPI and VCI", "VPI and VCI", "The VPI (one byte) and VCI (two bytes) of the virtual channel.", 64, 24},
};

#undef CDC_VARIABLE

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// Rows name their option first, then the abbreviation where it differs.

// 25003: what each request does, and its name in capitals.
const SOptionRow kRequestOptions[] = {
    {0x00, 0x00, 0x00, "Issues a command in the format of the supported control protocol.",
     "SEND_ENCAPSULATED_COMMAND"},
    {0x01, 0x01, 0x01, "Requests a response in the format of the supported control protocol.",
     "GET_ENCAPSULATED_RESPONSE"},
    {0x02, 0x02, 0x02, "Controls the settings for a particular communication feature.", "SET_COMM_FEATURE"},
    {0x03, 0x03, 0x03, "Returns the current settings for the communication feature.", "GET_COMM_FEATURE"},
    {0x04, 0x04, 0x04, "Clears the settings for a particular communication feature.", "CLEAR_COMM_FEATURE"},
    {5, 0x05, 0x0F, "Reserved for future use.", "RESERVED"},
    {0x10, 0x10, 0x10,
     "Used to connect or disconnect a secondary jack to POTS circuit or CODEC, depending on hook state.",
     "SET_AUX_LINE_STATE"},
    {0x11, 0x11, 0x11, "Used to set the necessary PSTN line relay code for on-hook, off-hook, and caller ID states.",
     "SET_HOOK_STATE"},
    {0x12, 0x12, 0x12, "Used to prepare for a pulse-dialing cycle.", "PULSE_SETUP"},
    {0x13, 0x13, 0x13, "Used to generate a specified number of make/break pulse cycles.", "SEND_PULSE"},
    {0x14, 0x14, 0x14, "Sets the timing of the make and break periods for pulse dialing.", "SET_PULSE_TIME"},
    {0x15, 0x15, 0x15, "Used to generate a ring signal on a secondary phone jack.", "RING_AUX_JACK"},
    {5, 0x16, 0x1F, "Reserved for future use.", "RESERVED"},
    {0x20, 0x20, 0x20, "Configures DTE rate, stop-bits, parity, and number-of-character bits.", "SET_LINE_CODING"},
    {0x21, 0x21, 0x21, "Requests current DTE rate, stop-bits, parity, and number-of-character bits.",
     "GET_LINE_CODING"},
    {0x22, 0x22, 0x22, "RS-232 signal used to tell the DCE device the DTE device is now present.",
     "SET_CONTROL_LINE_STATE"},
    {0x23, 0x23, 0x23, "Sends special carrier modulation used to specify RS-232 style break.", "SEND_BREAK"},
    {5, 0x24, 0x2F, "Reserved for future use.", "RESERVED"},
    {0x30, 0x30, 0x30, "Configures the ringer for the communication device.", "SET_RINGER_PARMS"},
    {0x31, 0x31, 0x31, "Returns the ringer capabilities of the device and the current status of the device's ringer.",
     "GET_RINGER_PARMS"},
    {0x32, 0x32, 0x32, "Sets the operational mode for the device, between a simple mode, standalone mode and a host "
                       "centric mode.",
     "SET_OPERATION_PARMS"},
    {0x33, 0x33, 0x33, "Gets the current operational mode for the device.", "GET_OPERATION_PARMS"},
    {0x34, 0x34, 0x34, "Used to change the state of the line, corresponding to the interface or master interface of "
                       "a union to which the command was sent.",
     "SET_LINE_PARMS"},
    {0x35, 0x35, 0x35, "Used to report the state of the line that corresponds to the interface or master interface "
                       "of a union to which the command was sent.",
     "GET_LINE_PARMS"},
    {0x36, 0x36, 0x36, "Used to dial the DTMF digits, 'A', 'B', 'C', 'D', '*', '#', ',' and '!' on the line.",
     "DIAL_DIGITS"},
    {0x37, 0x37, 0x37, "Used to set a Unit specific parameter.", "SET_UNIT_PARAMETER"},
    {0x38, 0x38, 0x38, "Used to retrieve a Unit specific parameter.", "GET_UNIT_PARAMETER"},
    {0x39, 0x39, 0x39, "Used to set a Unit specific parameter to its default state.", "CLEAR_UNIT_PARAMETER"},
    {0x3A, 0x3A, 0x3A, "Returns the profile information as defined by CAPI 2.0.", "GET_PROFILE"},
    {5, 0x3B, 0x3F, "Reserved for future use.", "RESERVED"},
    {0x40, 0x40, 0x40, "As applications are loaded and unloaded on the host, the networking transport will instruct "
                       "the device's MAC driver to change settings of the networking device's multicast filters.",
     "SET_ETHERNET_MULTICAST_FILTERS"},
    {0x41, 0x41, 0x41, "Sets up the pattern filter with which the networking device wakes a sleeping host when "
                       "something attempts to contact it.",
     "SET_ETHERNET_POWER_MANAGEMENT_PATTERN_FILTER"},
    {0x42, 0x42, 0x42, "Retrieves the status of the power management pattern filter setting.",
     "GET_ETHERNET_POWER_MANAGEMENT_PATTERN_FILTER"},
    {0x43, 0x43, 0x43, "Sets device filter for running a network analyzer application on the host machine.",
     "SET_ETHERNET_PACKET_FILTER"},
    {0x44, 0x44, 0x44, "Retrieves Ethernet device statistics such as frames transmitted, frames received, and bad "
                       "frames received.",
     "GET_ETHERNET_STATISTIC"},
    {5, 0x45, 0x4F, "Reserved for future use.", "RESERVED"},
    {0x50, 0x50, 0x50, "Chooses which ATM data format will be exchanged between the host and the ATM networking "
                       "device.",
     "SET_ATM_DATA_FORMAT"},
    {0x51, 0x51, 0x51, "Retrieves global statistics from the ATM networking device.", "GET_ATM_DEVICE_STATISTICS"},
    {0x52, 0x52, 0x52, "Pre-selects the VPI/VCI value for subsequent GET_ATM_VC_STATISTICS requests.",
     "SET_ATM_DEFAULT_VC"},
    {0x53, 0x53, 0x53, "Retrieves statistics from the ATM networking device for a particular VPI/VCI.",
     "GET_ATM_VC_STATISTICS"},
    {5, 0x54, 0xFF, "Reserved for future use.", "RESERVED"},
};

// 25005, held at 8 bits.
const SOptionRow kFeatureSelectorOptions[] = {
    {0, 0, 0, "WVALUE-FEATURESELECTOR:RESERVED", "RESERVED"},
    {1, 1, 1, "WVALUE-FEATURESELECTOR:ABSTRACT_STATE", "ABSTRACT_STATE"},
    {2, 2, 2, "WVALUE-FEATURESELECTOR:COUNTRY_SETTING", "COUNTRY_SETTING"},
    {3, 3, 255, "WVALUE-FEATURESELECTOR:RESERVED", "RESERVED"},
};

const SOptionRow kAuxLineStateOptions[] = {
    {0, 0, 0, "Disconnect", nullptr},
    {1, 1, 1, "Connect", nullptr},
};

const SOptionRow kHookStateOptions[] = {
    {0, 0, 0, "ON_HOOK", nullptr},
    {1, 1, 1, "OFF_HOOK", nullptr},
    {2, 2, 2, "SNOOPING", nullptr},
};

const SOptionRow kPulseSetupOptions[] = {
    {0, 0, 0xFFFE, "prepare the device", nullptr},
    {0xFFFF, 0xFFFF, 0xFFFF, "disengage the holding circuit", nullptr},
};

const SOptionRow kRingerExistsOptions[] = {
    {0, 0, 0, "A ringer does not exists.", nullptr},
    {1, 1, 1, "A ringer exists.", nullptr},
};

// Other volumes have no row.
const SOptionRow kRingerVolumeOptions[] = {
    {0, 0, 0, "Ringer Volume off.", nullptr},
    {1, 1, 1, "Maximum Ringer Volume.", nullptr},
};

const SOptionRow kIdleSettingOptions[] = {
    {0, 0, 0, "accept/offer data", nullptr},
    {1, 1, 1, "not accept or offer data", nullptr},
};

const SOptionRow kDataMultiplexedOptions[] = {
    {0, 0, 0, "Disable Multiplexing", nullptr},
    {1, 1, 1, "Enable Multiplexing", nullptr},
};

const SOptionRow kCharFormatOptions[] = {
    {0, 0, 0, "1 Stop bit", nullptr},
    {1, 1, 1, "1.5 Stop bits", nullptr},
    {2, 2, 2, "2 Stop bits", nullptr},
};

const SOptionRow kParityTypeOptions[] = {
    {0, 0, 0, "None", nullptr}, {1, 1, 1, "Odd", nullptr},   {2, 2, 2, "Even", nullptr},
    {3, 3, 3, "Mark", nullptr}, {4, 4, 4, "Space", nullptr},
};

// 25028 and 25029.
const SOptionRow kOperationModeOptions[] = {
    {0, 0, 0, "Simple Mode", nullptr},
    {1, 1, 1, "Standalone Mode", nullptr},
    {2, 2, 2, "Host Centric Mode", nullptr},
};

const SOptionRow kLineStateChangeOptions[] = {
    {0, 0, 0, "Drop the active call.", nullptr},    {1, 1, 1, "Start a new call.", nullptr},
    {2, 2, 2, "Apply ringing.", nullptr},           {3, 3, 3, "Remove ringing.", nullptr},
    {4, 4, 4, "Switch to a specific call.", nullptr},
};

const SOptionRow kLineStateActiveOptions[] = {
    {0, 0, 0, "No activity", nullptr},
    {1, 1, 1, "Active", nullptr},
};

const SOptionRow kCallStateValueOptions[] = {
    {0, 0, 0, "idle.", nullptr},
    {1, 1, 1, "Typical dial tone.", nullptr},
    {2, 2, 2, "Interrupted dial tone.", nullptr},
    {3, 3, 3, "Dilaing in progress.", nullptr},
    {4, 4, 4, "Ringback.", nullptr},
    {5, 5, 5, "Connected.", nullptr},
    {6, 6, 6, "Incoming call.", nullptr},
};

const SOptionRow kPacketPromiscuousOptions[] = {
    {0, 0, 0, "Disbled", "Disabled"},
    {1, 1, 1, "All frames received by the network device are forwarded up to the host.", "forwarded up to host."},
};

// 25054 and 25057.
const SOptionRow kPacketMulticastOptions[] = {
    {0, 0, 0, "Disbled", "Disabled"},
    {1, 1, 1, "All multicast packets received by the network device are forwarded up to the host.",
     "forwarde up to host."},
};

const SOptionRow kPacketDirectedOptions[] = {
    {0, 0, 0, "Disbled", "Disabled"},
    {1, 1, 1, "Directed packets received with the network device's own address are forwarded up to the host.",
     "Directed Packets"},
};

const SOptionRow kPacketBroadcastOptions[] = {
    {0, 0, 0, "Disbled", "Disabled"},
    {1, 1, 1, "All broadcast packets received by the network device are forwarded up to the host.",
     "forwarde up to host."},
};

// 25059, held at 8 bits. "Reserved " keeps its trailing blank.
const SOptionRow kEthernetStatisticOptions[] = {
    {0x00, 0x00, 0x00, "Reserved ", nullptr},
    {0x01, 0x01, 0x01, "Frames transmitted without errors", nullptr},
    {0x02, 0x02, 0x02, "Frames transmitted recieved without errors.", nullptr},
    {0x03, 0x03, 0x03, "Frames not transmitted,or transmitted with errors", nullptr},
    {0x04, 0x04, 0x04, "Frames receive with errors", nullptr},
    {0x05, 0x05, 0x05, "Frames missed,no buffers", nullptr},
    {0x06, 0x06, 0x06, "Directed bytes transmitted without errors", nullptr},
    {0x07, 0x07, 0x07, "Directed frames transmitted without errors", nullptr},
    {0x08, 0x08, 0x08, "Multicast bytes transmitted without errors", nullptr},
    {0x09, 0x09, 0x09, "Multicast frames transmitted without errors", nullptr},
    {0x0A, 0x0A, 0x0A, "BroadCast bytes transmitted without errors", nullptr},
    {0x0B, 0x0B, 0x0B, "BroadCast frames transmitted without errors", nullptr},
    {0x0C, 0x0C, 0x0C, "Directed bytes recieved without errors", nullptr},
    {0x0D, 0x0D, 0x0D, "Directed frames recieved without errors", nullptr},
    {0x0E, 0x0E, 0x0E, "Multicast bytes recieved without errors", nullptr},
    {0x0F, 0x0F, 0x0F, "Multicast frames recieved without errors", nullptr},
    {0x10, 0x10, 0x10, "BroadCast bytes recieved without errors", nullptr},
    {0x11, 0x11, 0x11, "BroadCast frames recieved without errors", nullptr},
    {0x12, 0x12, 0x12, "Frame recieved with CRC or FCS error", nullptr},
    {0x13, 0x13, 0x13, "Length of transmit queue", nullptr},
    {0x14, 0x14, 0x14, "Frame recieved with alignment error", nullptr},
    {0x15, 0x15, 0x15, "Frame transmitted with one collision", nullptr},
    {0x16, 0x16, 0x16, "Frame transmitted with more than one collision", nullptr},
    {0x17, 0x17, 0x17, "Frame transmitted after deferral", nullptr},
    {0x18, 0x18, 0x18, "Frame not transmitted due to collision", nullptr},
    {0x19, 0x19, 0x19, "Frame not received due to overrun", nullptr},
    {0x1A, 0x1A, 0x1A, "Frame not transmitted due to underrun", nullptr},
    {0x1B, 0x1B, 0x1B, "Frame transmitted with heartbeat failure", nullptr},
    {0x1C, 0x1C, 0x1C, "Times carrier sense signal lost during transmission", nullptr},
    {0x1D, 0x1D, 0x1D, "Late collisions detected", nullptr},
    {0x1E, 0x1E, 0xFF, "Reserved ", nullptr},
};

const SOptionRow kATMDataFormatOptions[] = {
    {1, 1, 1, "Type 1 format:concatenate ATM cells.", nullptr},
    {2, 2, 2, "Type 2 format:ATM header template + concatenated ATM cell payloads.", nullptr},
    {3, 3, 3, "Type 3 format:AAL 5 SDU.", nullptr},
};

// 25061, held at 8 bits.
const SOptionRow kATMDeviceStatisticOptions[] = {
    {0, 0, 0, "Reserved for future use.", nullptr},
    {1, 1, 1, "The number of sent items.", nullptr},
    {2, 2, 2, "The number of recieved items.", nullptr},
    {3, 3, 3,
     "Number of cells that have been recieved downstream from the WAN link by the ATM layer and discarded due to "
     "congestion on the USB link.",
     nullptr},
    {4, 4, 4,
     "Number of cells that have been recieved downstream from the WAN link by the ATM layer and discarded due to "
     "AAL5 CRC errors.",
     nullptr},
    {5, 5, 5,
     "Number of cells that have been recieved downstream from the WAN link by the ATM layer and discarded due to "
     "AAL5 CRC errors in the cell header.",
     nullptr},
    {6, 6, 6,
     "Number of cells that have been recieved downstream from the WAN link by the ATM layer and discarded due to "
     "AAL5 CRC errors in the cell header and successfully.",
     nullptr},
    {7, 7, 0xFF, "Reserved for future use.", nullptr},
};

// 25062, held at 8 bits.
const SOptionRow kATMVCStatisticOptions[] = {
    {0, 0, 0, "Reserved for future use.", nullptr},
    {1, 1, 1, "VC_US_CELLS_SENT", nullptr},
    {2, 2, 2, "VC_DS_CELLS_RECEIVED", nullptr},
    {3, 3, 0xFF, "Reserved for future use.", nullptr},
};

const SOptionRow kPresentStatusOptions[] = {
    {0, 0, 0, "Not Present.", nullptr},
    {1, 1, 1, "Present", nullptr},
};

const SOptionRow kCarrierActivityOptions[] = {
    {0, 0, 0, "Deactive carrier.", nullptr},
    {1, 1, 1, "Active carrier", nullptr},
};

}  // namespace

void CCommunicationClassSpec::InitOptions()
{
    AddOptionList(FieldDirection, 1, kCommunicationDirectionOptions);
    AddOptionList(FieldType, 2, kCommunicationTypeOptions);
    AddOptionList(FieldRecipient, 5, kCommunicationRecipientOptions);
    AddOptionList(FieldRequest, 8, kRequestOptions);
    AddOptionList(FieldFeatureSelector, 8, kFeatureSelectorOptions);
    AddOptionList(FieldAuxLineState, 16, kAuxLineStateOptions);
    AddOptionList(FieldHookState, 16, kHookStateOptions);
    AddOptionList(FieldPulseSetup, 16, kPulseSetupOptions);
    AddOptionList(FieldRingerExists, 1, kRingerExistsOptions);
    AddOptionList(FieldRingerVolume, 8, kRingerVolumeOptions);
    AddOptionList(FieldIdleSetting, 1, kIdleSettingOptions);
    AddOptionList(FieldDataMultiplexed, 1, kDataMultiplexedOptions);
    AddOptionList(FieldCharFormat, 8, kCharFormatOptions);
    AddOptionList(FieldParityType, 8, kParityTypeOptions);
    AddOptionList(FieldOperationMode, 16, kOperationModeOptions);
    AddOptionList(FieldOperationModeValue, 16, kOperationModeOptions);
    AddOptionList(FieldLineStateChange, 16, kLineStateChangeOptions);
    AddOptionList(FieldLineStateActive, 1, kLineStateActiveOptions);
    AddOptionList(FieldCallStateValue, 8, kCallStateValueOptions);
    AddOptionList(FieldPacketPromiscuous, 1, kPacketPromiscuousOptions);
    AddOptionList(FieldPacketAllMulticast, 1, kPacketMulticastOptions);
    AddOptionList(FieldPacketDirected, 1, kPacketDirectedOptions);
    AddOptionList(FieldPacketBroadcast, 1, kPacketBroadcastOptions);
    AddOptionList(FieldPacketMulticast, 1, kPacketMulticastOptions);
    AddOptionList(FieldEthernetStatistic, 8, kEthernetStatisticOptions);
    AddOptionList(FieldATMDataFormat, 16, kATMDataFormatOptions);
    AddOptionList(FieldATMDeviceStatistic, 8, kATMDeviceStatisticOptions);
    AddOptionList(FieldATMVCStatistic, 8, kATMVCStatisticOptions);
    AddOptionList(FieldPresentStatus, 1, kPresentStatusOptions);
    AddOptionList(FieldCarrierActivity, 1, kCarrierActivityOptions);
}
