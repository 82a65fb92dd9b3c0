// Field catalogue and option lists of the hub class requests.
#include "usbclass/HubClass.h"

using Spec = CHubClassSpec;

// Name and abbreviation are one text in every row.
#define HUB_FIELD(nId, pszName, pszDesc, dwOffset, dwLength) {nId, pszName, pszName, pszDesc, dwOffset, dwLength}

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    HUB_FIELD(23000, "bmRequestType-Recipient",
              "Recipient of the request: the hub (device), an interface, an endpoint, or a port of the hub (other).",
              0, 5),
    HUB_FIELD(23001, "bmRequestType-Type", "Type of the request: standard, class or vendor. Hub requests are class "
                                           "requests.",
              5, 2),
    HUB_FIELD(23002, "bmRequestType-Direction",
              "Direction of the data transfer: host to device or device to host.", 7, 1),
    HUB_FIELD(23003, "bRequest", "The specific request.", 8, 8),
    HUB_FIELD(23004, "wValue", "A word-sized field that varies according to the request.", 16, 16),
    HUB_FIELD(23005, "wValue",
              "Feature selector, or a word-sized field that varies according to the request. The port feature "
              "selectors name the port status and port change bits.",
              16, 16),
    HUB_FIELD(23006, "End Ponit Number",
              "A four-bit value between 0H and FH, inclusive, associated with an endpoint on a USB device.", 16, 4),
    HUB_FIELD(23007, "Device Address", "The USB device address of the full-/low-speed device whose transaction "
                                       "left the buffer in use.",
              20, 7),
    HUB_FIELD(23008, "End Ponit Type", "Endpoint type: control, isochronous, bulk or interrupt.", 27, 2),
    HUB_FIELD(23009, "Reserved", "Reserved, must be zero.", 29, 2),
    HUB_FIELD(23010, "Direction", "Direction of the endpoint: 1 for IN, 0 for OUT.", 31, 1),
    HUB_FIELD(23011, "wIndex", "A word-sized field that varies according to the request: zero, a port number or "
                               "a TT port.",
              8, 16),
    HUB_FIELD(23012, "wIndex-Port", "The port number, from 1, to which the request applies.", 8, 8),
    HUB_FIELD(23013, "wIndex-Selector", "Test selector or indicator selector of the port feature.", 8, 8),
    HUB_FIELD(23014, "wLength", "Number of bytes to transfer if there is a data stage.", 8, 16),
    HUB_FIELD(23015, "Data", "The data stage of the request.", 8, 255),
    HUB_FIELD(23016, "LocalPowerStatus",
              "Local Power Source: this is the source of the local power supply. This field indicates whether "
              "hub power (for other than the SIE) is being provided by an external source or from the USB.",
              8, 1),
    HUB_FIELD(23017, "Over Current Status",
              "Over-current: if the hub supports over-current reporting on a hub basis, this field indicates that "
              "the sum of all the ports' current has exceeded the specified maximum and all ports have been "
              "placed in the Powered-off state.",
              65, 1),
    HUB_FIELD(23018, "Reserved Status", "Reserved; these bits return 0 when read.", 8, 14),
    HUB_FIELD(23019, "Local Power Changed",
              "Local Power Status Change (C_HUB_LOCAL_POWER): this field indicates that a change has occurred in "
              "the hub's Local Power Source field.",
              8, 1),
    HUB_FIELD(23020, "Over Current Changed",
              "Over-Current Change (C_HUB_OVER_CURRENT): this field indicates if a change has occurred in the "
              "Over-Current field.",
              8, 1),
    HUB_FIELD(23021, "ReservedChanged", "Reserved; these bits return 0 when read.", 8, 14),
    HUB_FIELD(23022, "PortStatus-Port connection",
              "Current Connect Status: this field reflects whether or not a device is currently connected to this "
              "port.",
              8, 1),
    HUB_FIELD(23023, "PortStatus-Port enable",
              "Port Enabled/Disabled: ports can be enabled by the USB System Software only. Ports can be disabled "
              "by either a fault condition (disconnect event or other fault condition) or by the USB System "
              "Software.",
              8, 1),
    HUB_FIELD(23024, "PortStatus-Port suspend",
              "Suspend: this field indicates whether or not the device on this port is suspended.", 8, 1),
    HUB_FIELD(23025, "PortStatus-Port over current",
              "Over-current: if the hub reports over-current conditions on a per-port basis, this field will "
              "indicate that the current drain on the port exceeds the specified maximum.",
              8, 1),
    HUB_FIELD(23026, "PortStatus-Port reset",
              "Reset: this field is set when the host wishes to reset the attached device. It remains set until "
              "the reset signaling is turned off by the hub.",
              8, 1),
    HUB_FIELD(23027, "PortStatus-Port reserved", "Reserved; these bits return 0 when read.", 8, 3),
    HUB_FIELD(23028, "PortStatus-Port power",
              "Port Power: this field reflects a port's logical, power control state. Because hubs can implement "
              "different methods of port power switching, this field may or may not represent whether power is "
              "applied to the port.",
              8, 1),
    HUB_FIELD(23029, "PortStatus-Port low speed",
              "Low-Speed Device Attached: this is relevant only if a device is attached.", 8, 1),
    HUB_FIELD(23030, "PortStatus-Port high speed",
              "High-speed Device Attached: this is relevant only if a device is attached.", 8, 1),
    HUB_FIELD(23031, "PortStatus-Port test",
              "Port Test Mode: if the port is in the Disabled, Disconnected or Suspended state, this field "
              "reflects whether the port is in test mode.",
              8, 1),
    HUB_FIELD(23032, "PortStatus-Port indicator",
              "Port Indicator Control: this field is set to reflect software control of the port indicator.", 8,
              1),
    HUB_FIELD(23033, "PortStatus-Port reserved", "Reserved; these bits return 0 when read.", 8, 3),
    HUB_FIELD(23034, "PortChange-C_Port connection",
              "Connect Status Change: indicates a change has occurred in the port's Current Connect Status.", 8,
              1),
    HUB_FIELD(23035, "PortChange-C_Port enabled",
              "Port Enable/Disable Change: this field is set to one when a port is disabled because of a Port_Error "
              "condition.",
              8, 1),
    HUB_FIELD(23036, "PortChange-C_Port suspend",
              "Suspend Change: this field indicates a change in the host-visible suspend state of the attached "
              "device. It is set only when the resume process has completed.",
              8, 1),
    HUB_FIELD(23037, "PortChange-C_Port over current",
              "Over-Current Indicator Change: this field applies only to hubs that report over-current conditions "
              "on a per-port basis.",
              8, 1),
    HUB_FIELD(23038, "PortChange-C_Port reset",
              "Reset Change: this field is set when reset processing on this port is complete.", 8, 1),
    HUB_FIELD(23039, "PortChange-C_Port reserved", "Reserved; these bits return 0 when read.", 8, 11),
    HUB_FIELD(23040, "DescLen", "Number of bytes in this descriptor, including this byte.", 8, 8),
    HUB_FIELD(23041, "DescriptorType", "Descriptor Type, value: 29H for hub descriptor", 8, 8),
    HUB_FIELD(23042, "NBRPorts", "Number of downstream facing ports that this hub supports.", 8, 8),
    HUB_FIELD(23043, "HubCharactristics-Logical pwr",
              "Logical Power Switching Mode: ganged power switching (all ports' power at once) or individual port "
              "power switching.",
              8, 2),
    HUB_FIELD(23044, "HubCharactristics-Compound device",
              "Identifies a Compound Device: whether the hub is part of a compound device.", 8, 1),
    HUB_FIELD(23045, "HubCharactristics-Over current protection mode",
              "Over-current Protection Mode: global over-current protection, individual port over-current "
              "protection, or no over-current protection.",
              8, 2),
    HUB_FIELD(23046, "HubCharactristics-TT Think time",
              "TT Think Time: the maximum number of full-speed bit times the Transaction Translator requires "
              "between transactions on a low-/full-speed downstream bus.",
              8, 2),
    HUB_FIELD(23047, "HubCharactristics-Port indicator soppurt",
              "Port Indicators Supported: whether port indicators are supported on its downstream facing ports "
              "and the PORT_INDICATOR request controls them.",
              8, 1),
    HUB_FIELD(23048, "HubCharactristics-Reserved", "Reserved.", 8, 8),
    HUB_FIELD(23049, "Pwr On 2 Pwr Good",
              "Time (in 2 ms intervals) from the time the power-on sequence begins on a port until power is good "
              "on that port.",
              8, 8),
    HUB_FIELD(23050, "Hub Conter Current", "Maximum current requirements of the Hub Controller electronics in mA.",
              8, 8),
    HUB_FIELD(23051, "Device Removable-Reserved",
              "Bit 0 of DeviceRemovable is reserved; the bits behind the last port pad the bit map to a byte.", 8,
              1),
    HUB_FIELD(23052, "Device Removable-Ports",
              "Indicates if a port has a removable device attached: 0 removable, 1 not removable.", 8, 1),
    HUB_FIELD(23053, "Port Pwr Ctrl Mask",
              "This field exists for reasons of compatibility with software written for 1.0 compliant devices. All "
              "bits in this field should be set to 1B.",
              8, 1),
    HUB_FIELD(23054, "Port Pwr Ctrl Mask-Reserved",
              "Bit 0 of PortPwrCtrlMask is reserved; the bits behind the last port pad the bit map to a byte.", 8,
              1),
    HUB_FIELD(23055, "Return Flag",
              "This request returns the internal state of the transaction translator in a vendor specific format.",
              8, 32),
    HUB_FIELD(23056, "Specific State", "Implementation dependent", 8, 255),
};

#undef HUB_FIELD

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// 23000, held at 4 bits: the reserved row ends at 0xF.
const SOptionRow kRecipientOptions[] = {
    {0, 0, 0, "Device", nullptr},
    {1, 1, 1, "Interface", nullptr},
    {2, 2, 2, "EndPoint", nullptr},
    {3, 3, 3, "Other", nullptr},
    {4, 4, 0x1F, "Reserved", nullptr},
};

const SOptionRow kTypeOptions[] = {
    {0, 0, 0, "Standard", nullptr},
    {1, 1, 1, "Class", nullptr},
    {2, 2, 2, "Vendor", nullptr},
    {3, 3, 3, "Reserved", nullptr},
};

// 23002, held at 2 bits.
const SOptionRow kDirectionOptions[] = {
    {0, 0, 0, "Transfer Host To Device", nullptr},
    {1, 1, 1, "Transfer Device To Host", nullptr},
};

const SOptionRow kRequestOptions[] = {
    {0, 0, 0, "GET_STATUS", nullptr},
    {1, 1, 1, "CLEAR_FEATURE", nullptr},
    {2, 2, 2, "RESERVED_FOR_GET_STATE", nullptr},
    {3, 3, 3, "SET_FEATURE", nullptr},
    {4, 4, 5, "RESERVED_FOR_FEATURE", nullptr},
    {6, 6, 6, "GET_DESCRIPTOR", nullptr},
    {7, 7, 7, "SET_DESCRIPTOR", nullptr},
    {8, 8, 8, "CLEAR_TT_BUFFER", nullptr},
    {9, 9, 9, "RESET_TT", nullptr},
    {0xA, 0xA, 0xA, "GET_TT_STATE", nullptr},
    {0xB, 0xB, 0xB, "STOP_TT", nullptr},
    {0xC, 0xC, 0xFF, "UNKNOWN", nullptr},
};

// 23005: the port feature selectors. The abbreviations of 0x12 to 0x14 read
// differently from their names.
const SOptionRow kFeatureSelectorOptions[] = {
    {0, 0, 0, "Port connection", nullptr},
    {1, 1, 1, "Port enable", nullptr},
    {2, 2, 2, "Port suspend", nullptr},
    {3, 3, 3, "Port over current", nullptr},
    {4, 4, 4, "Port reset", nullptr},
    {8, 8, 8, "Port power", nullptr},
    {9, 9, 9, "Port low speed", nullptr},
    {0x10, 0x10, 0x10, "C_Port connection", nullptr},
    {0x11, 0x11, 0x11, "C_Port enable", nullptr},
    {0x12, 0x12, 0x12, "C_Port suspend", "C_Port over suspend"},
    {0x13, 0x13, 0x13, "C_Port over current", "C_Port port suspend"},
    {0x14, 0x14, 0x14, "C_Port reset", "C_Port over current"},
    {0x15, 0x15, 0x15, "Port test", nullptr},
    {0x16, 0x16, 0x16, "Port indicator", nullptr},
};

const SOptionRow kTTDirectionOptions[] = {
    {0, 0, 0, "Out", nullptr},
    {1, 1, 1, "In", nullptr},
};

const SOptionRow kLocalPowerStatusOptions[] = {
    {0, 0, 0, "Good", nullptr},
    {1, 1, 1, "Lost", nullptr},
};

const SOptionRow kOverCurrentStatusOptions[] = {
    {0, 0, 0, "NoExists", nullptr},
    {1, 1, 1, "Exists", nullptr},
};

// 23019, 23020, 23034, 23036, 23038.
const SOptionRow kChangedOptions[] = {
    {0, 0, 0, "No Changed", nullptr},
    {1, 1, 1, "Changed", nullptr},
};

const SOptionRow kPortConnectionOptions[] = {
    {0, 0, 0, "No present", nullptr},
    {1, 1, 1, "Present", nullptr},
};

const SOptionRow kPortEnableOptions[] = {
    {0, 0, 0, "Disabled", nullptr},
    {1, 1, 1, "Enabled", nullptr},
};

const SOptionRow kPortSuspendOptions[] = {
    {0, 0, 0, "Not suspended", nullptr},
    {1, 1, 1, "Suspended", nullptr},
};

const SOptionRow kPortOverCurrentOptions[] = {
    {0, 0, 0, "No over current", nullptr},
    {1, 1, 1, "Over current exist", nullptr},
};

const SOptionRow kPortResetOptions[] = {
    {0, 0, 0, "Not asserted", nullptr},
    {1, 1, 1, "Tasserted", nullptr},
};

const SOptionRow kPortPowerOptions[] = {
    {0, 0, 0, "Power off", nullptr},
    {1, 1, 1, "No power off", nullptr},
};

const SOptionRow kPortLowSpeedOptions[] = {
    {0, 0, 0, "Full speed device attached", nullptr},
    {1, 1, 1, "Low speed device attached", nullptr},
};

const SOptionRow kPortHighSpeedOptions[] = {
    {0, 0, 0, "Full speed attached", nullptr},
    {1, 1, 1, "High speed attached", nullptr},
};

const SOptionRow kPortTestOptions[] = {
    {0, 0, 0, "Not test mode", nullptr},
    {1, 1, 1, "Test mode", nullptr},
};

const SOptionRow kPortIndicatorOptions[] = {
    {0, 0, 0, "Default colors", nullptr},
    {1, 1, 1, "Controlled color", nullptr},
};

const SOptionRow kCPortEnableOptions[] = {
    {0, 0, 0, "Enabled", nullptr},
    {1, 1, 1, "disabled", nullptr},
};

const SOptionRow kCPortOverCurrentOptions[] = {
    {0, 0, 0, "No Over Current", nullptr},
    {1, 1, 1, "Over Current", nullptr},
};

// 23043 and 23045 are two bits wide, so their reserved rows, 0x10 to 0x1F
// held at that width, cover 0 to 3 behind the named values.
const SOptionRow kLogicalPowerOptions[] = {
    {0, 0, 0, "Hub Charactrestics-Logical Pwr-General Pwr", "General Power"},
    {1, 1, 1, "Hub Charactrestics-Logical Pwr-Individual Pwr", "Individual Power"},
    {2, 0x10, 0x1F, "Hub Charactrestics-Reserved", "Reserved"},
};

const SOptionRow kCompoundDeviceOptions[] = {
    {0, 0, 0, "Hub Charactrestics-Compound Device-Hub Not Supported Device", "Hub Not Supported Device"},
    {1, 1, 1, "Hub Charactrestics-Compound Device-Hub Supported Device", "Hub Supported Device"},
};

const SOptionRow kOverCurrentModeOptions[] = {
    {0, 0, 0, "Hub Charactrestics-Over Current Protection Mode", "Over Current Protection Mode"},
    {1, 1, 1, "HubCharactrestics-Over Current Protection Mode-Individual Over Current Protection Mode",
     "Individual Over Current Protection Mode"},
    {2, 0x10, 0x1F, "HubCharactrestics-Over Current Protection Mode-No Over Current Protection Mode",
     "No Over Current Protection Mode"},
};

const SOptionRow kTTThinkTimeOptions[] = {
    {0, 0, 0, "Hub Charactrestics-TT Think Time-TT Requires At Most 8 FS", "TT Requires At Most 8 FS"},
    {1, 1, 1, "Hub Charactrestics-TT Think Time-TT Requires At Most 16 FS", "TT Requires At Most 16 FS"},
    {2, 2, 2, "Hub Charactrestics-TT Think Time-TT Requires At Most 24 FS", "TT Requires At Most 24 FS"},
    {3, 3, 3, "Hub Charactrestics-TT Think Time-TT Requires At Most 32 FS", "TT Requires At Most 32 FS"},
};

const SOptionRow kPortIndicatorSupportOptions[] = {
    {0, 0, 0, "Hub Charactrestics-Port Indicator-Not Supported", "Not Supported"},
    {1, 1, 1, "Hub Charactrestics-Port Indicator-Supported", "Supported"},
};

const SOptionRow kDeviceRemovableOptions[] = {
    {0, 0, 0, "Removable", nullptr},
    {1, 1, 1, "Not Removable", nullptr},
};

const SOptionRow kPortPwrCtrlMaskOptions[] = {
    {0, 0, 0, "UnMask", nullptr},
    {1, 1, 1, "Mask", nullptr},
};

}  // namespace

void CHubClassSpec::InitOptions()
{
    AddOptionList(FieldRecipient, 4, kRecipientOptions);
    AddOptionList(FieldType, 2, kTypeOptions);
    AddOptionList(FieldDirection, 2, kDirectionOptions);
    AddOptionList(FieldRequest, 8, kRequestOptions);
    AddOptionList(FieldFeatureSelector, 16, kFeatureSelectorOptions);
    AddOptionList(FieldTTDirection, 1, kTTDirectionOptions);
    AddOptionList(FieldLocalPowerStatus, 1, kLocalPowerStatusOptions);
    AddOptionList(FieldOverCurrentStatus, 1, kOverCurrentStatusOptions);
    AddOptionList(FieldLocalPowerChanged, 1, kChangedOptions);
    AddOptionList(FieldOverCurrentChanged, 1, kChangedOptions);
    AddOptionList(FieldPortConnection, 1, kPortConnectionOptions);
    AddOptionList(FieldPortEnable, 1, kPortEnableOptions);
    AddOptionList(FieldPortSuspend, 1, kPortSuspendOptions);
    AddOptionList(FieldPortOverCurrent, 1, kPortOverCurrentOptions);
    AddOptionList(FieldPortReset, 1, kPortResetOptions);
    AddOptionList(FieldPortPower, 1, kPortPowerOptions);
    AddOptionList(FieldPortLowSpeed, 1, kPortLowSpeedOptions);
    AddOptionList(FieldPortHighSpeed, 1, kPortHighSpeedOptions);
    AddOptionList(FieldPortTest, 1, kPortTestOptions);
    AddOptionList(FieldPortIndicator, 1, kPortIndicatorOptions);
    AddOptionList(FieldCPortConnection, 1, kChangedOptions);
    AddOptionList(FieldCPortEnable, 1, kCPortEnableOptions);
    AddOptionList(FieldCPortSuspend, 1, kChangedOptions);
    AddOptionList(FieldCPortOverCurrent, 1, kCPortOverCurrentOptions);
    AddOptionList(FieldCPortReset, 1, kChangedOptions);
    AddOptionList(FieldLogicalPower, 2, kLogicalPowerOptions);
    AddOptionList(FieldCompoundDevice, 1, kCompoundDeviceOptions);
    AddOptionList(FieldOverCurrentMode, 2, kOverCurrentModeOptions);
    AddOptionList(FieldTTThinkTime, 2, kTTThinkTimeOptions);
    AddOptionList(FieldPortIndicatorSupport, 1, kPortIndicatorSupportOptions);
    AddOptionList(FieldDeviceRemovable, 1, kDeviceRemovableOptions);
    AddOptionList(FieldPortPwrCtrlMask, 1, kPortPwrCtrlMaskOptions);
}
