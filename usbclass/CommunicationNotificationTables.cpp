// Field catalogue and option lists of the communication notifications.
#include "usbclass/CommunicationNotification.h"

using Spec = CCommunicationNotificationSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {27500, "bmRequestType-Direction", "Direction", "Data transfer direction: notifications go device to host.", 7,
     1},
    {27501, "bmRequestType-Type", "Type", "Type of the notification: a class notification.", 5, 2},
    {27502, "bmRequestType-Recipient", "Recipient", "Recipient: the interface that sends the notification.", 0, 5},
    {27503, "bNotification", "bNotification", "The class-specific notification code.", 8, 8},
    {27504, "wValue", "wValue", "Word-sized field that varies according to the notification.", 16, 16},
    {27505, "wValue", "Call Index ", "Index of the call whose state changed: the high byte of wValue.", 24, 8},
    {27506, "wValue", "Call State Change Value", "The call state change value: the low byte of wValue.", 16, 8},
    {27507, "wValue", "Line State Change", "The line state change value.", 16, 16},
    {27508, "wValue", "wValue", "Whether the network connection is disconnected (0) or connected (1).", 16, 16},
    {27509, "wValue", "wValue", "Whether the auxiliary phone is on hook (0) or off hook (1).", 16, 16},
    {27510, "wIndex", "Interface", "The interface that sends the notification.", 32, 16},
    {27511, "wLength", "wLength", "Number of bytes of data that follow the notification header.", 48, 16},
    {27512, "wLength", "Length of Data", "Length of the line state structure that follows, in bytes.", 48, 16},
    {27513, "UART State-bRXCarrier", "UART State-bRXCarrier",
     "State of receiver carrier detection mechanism of device. This signal corresponds to V.24 signal 109 and "
     "RS-232 signal DCD.",
     64, 1},
    {27514, "UART State-bTXCarrier", "UART State-bTXCarrier",
     "State of transmission carrier. This signal corresponds to V.24 signal 106 and RS-232 signal DSR.", 65, 1},
    {27515, "UART State_bBreak", "UART State_bBreak", "State of break detection mechanism of the device.", 66, 1},
    {27516, "UART State-bRingSignal", "UART State-bRingSignal", "State of ring signal detection of the device.", 67,
     1},
    {27517, "UART State-bFraming", "UART State-bFraming", "A framing error has occurred.", 68, 1},
    {27518, "UART State-bParity", "UART State-bParity", "A parity error has occurred.", 69, 1},
    {27519, "UART State-OverRun", "UART State-OverRun",
     "Received data has been discarded due to overrun in the device.", 70, 1},
    {27520, "UART State_Reserved", "UART State_Reserved", "Reserved bits of the UART state bitmap.", 71, 9},
    {27521, "VariableLengthStructure", "Variable-Length Structure", "A structure of variable length.", 64, 8, 0,
     65535},
    {27522, "VariableLengthLineStatestructure.", "Variable-Length Line State structure.",
     "The line state structure: its length, the ringer bitmap, the line state and the call states.", 64, 8, 0,
     65535},
    {27523, "ConnectionSpeedChange-USBitRate", "ConnectionSpeedChange-USBitRate",
     "Contains the upstream bit rate, in bits per second.", 64, 32},
    {27524, "ConnectionSpeedChange-DSBitRate", "ConnectionSpeedChange-DSBitRate",
     "Contains the downstream bit rate, in bits per second.", 96, 32},
    {27525, "Ringback", "Ringback", "The type of ringback signaling.", 64, 8},
    {27526, "Connection", "Connected", "The type of connection.", 64, 8},
    {27527, "IncomingCall-Ringing Pattern.", "Ringing Pattern.", "The ringing pattern of the incoming call.", 64,
     8},
    {27528, "IncomingCall-Incoming call time.", "Incoming call time.", "The time of the incoming call.", 72, 8},
    {27529, "IncomingCall-Calling party phone number.", "Calling party phone number.",
     "The phone number of the calling party.", 80, 8},
    {27530, "IncomingCall-calling party name.", "calling party name.", "The name of the calling party.", 88, 8},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// Rows name their option first, then the abbreviation where it differs.

// 27503: what each notification tells, and its name in capitals.
const SOptionRow kNotificationOptions[] = {
    {0x00, 0x00, 0x00, "Notifies the host about network connection status.", "NETWORK_CONNECTION"},
    {0x01, 0x01, 0x01, "Notifies the host that a response is available. This response can be retrieved with a "
                       "subsequent GetEncapsulatedResponse request.",
     "RESPONSE_AVAILABLE"},
    {0x02, 0x02, 0x07, "Reserved for future use.", "RESERVED"},
    {0x08, 0x08, 0x08, "Indicates the loop has changed on the auxiliary phone interface of the USB device.",
     "AUX_JACK_HOOK_STATE"},
    {0x09, 0x09, 0x09, "Indicates ring voltage on the POTS line interface of the USB device.", "RING_DETECT"},
    {0x0A, 0x0A, 0x1F, "Reserved for future use.", "RESERVED"},
    {0x20, 0x20, 0x20, "Returns the current state of the carrier detect, DSR, break, and ring signal.",
     "SERIAL_STATE"},
    {0x21, 0x21, 0x27, "Reserved for future use.", "RESERVED"},
    {0x28, 0x28, 0x28, "Returns a change in a call's state.", "CALL_STATE_CHANGE"},
    {0x29, 0x29, 0x29, "Returns a change in a line's state.", "LINE_STATE_CHANGE"},
    {0x2A, 0x2A, 0x2A, "Returns a change in a connection's speed.", "CONNECTION_SPEED_CHANGE"},
    {0x2B, 0x2B, 0xFF, "Reserved for future use.", "RESERVED"},
};

const SOptionRow kCallStateChangeOptions[] = {
    {0, 0, 0, "Reserved", nullptr},
    {1, 1, 1, "Call has become idle.", nullptr},
    {2, 2, 2, "Dialing.", nullptr},
    {3, 3, 3, "Ringback, with an extra byte of data that describes the type of ringback signaling.", "Ringback"},
    {4, 4, 4, "Connected, with an extra byte of data that describes the type of connection.", "Connected"},
    {5, 5, 5,
     "Incoming Call, with at least four extra bytes of data: the ringing pattern, the time of the call, the "
     "calling party's phone number and name.",
     "Incoming Call"},
    {6, 6, 255, "Reserved", nullptr},
};

const SOptionRow kLineStateChangeOptions[] = {
    {0, 0, 0, "Line has become idle.", nullptr},
    {1, 1, 1, "Line connected to hold position.", nullptr},
    {2, 2, 2, "Hook-switch has gone off hook.", nullptr},
    {3, 3, 3, "Hook-switch has gone on hook", nullptr},
};

const SOptionRow kNetworkConnectionOptions[] = {
    {0, 0, 0, "Disconnect", nullptr},
    {1, 1, 1, "Connect", nullptr},
};

const SOptionRow kAuxJackHookStateOptions[] = {
    {0, 0, 0, "On hook", nullptr},
    {1, 1, 1, "Off hook", nullptr},
};

const SOptionRow kRingbackOptions[] = {
    {0, 0, 0, "Normal.", nullptr},
    {1, 1, 1, "Busy.", nullptr},
    {2, 2, 2, "Fast busy.", nullptr},
    {3, 3, 0xFE, "Reserved for future use.", nullptr},
    {0xFF, 0xFF, 0xFF, "Unknown ringback type.", nullptr},
};

const SOptionRow kConnectionOptions[] = {
    {0, 0, 0, "Voice connection", nullptr},
    {1, 1, 1, "answering machine connection", nullptr},
    {2, 2, 2, "Fax machine connection", nullptr},
    {3, 3, 3, "Data modern connection", nullptr},
    {4, 4, 0xFE, "Reserved for future use.", nullptr},
    {0xFF, 0xFF, 0xFF, "Unknown connection type.", nullptr},
};

const SOptionRow kRingingPatternOptions[] = {
    {0, 0, 0, "Ringing pattern 1(normal pattern)", nullptr},
    {1, 1, 1, "Ringing pattern 2", nullptr},
    {2, 2, 2, "Ringing pattern 3", nullptr},
    {3, 3, 3, "Ringing pattern 4", nullptr},
    {4, 4, 0xFE, "Reserved for future use.", nullptr},
};

}  // namespace

void CCommunicationNotificationSpec::InitOptions()
{
    AddOptionList(FieldDirection, 1, kCommunicationDirectionOptions);
    AddOptionList(FieldType, 2, kCommunicationTypeOptions);
    AddOptionList(FieldRecipient, 5, kCommunicationRecipientOptions);
    AddOptionList(FieldNotification, 8, kNotificationOptions);
    AddOptionList(FieldCallStateChange, 8, kCallStateChangeOptions);
    AddOptionList(FieldLineStateChange, 16, kLineStateChangeOptions);
    AddOptionList(FieldNetworkConnection, 16, kNetworkConnectionOptions);
    AddOptionList(FieldAuxJackHookState, 16, kAuxJackHookStateOptions);
    AddOptionList(FieldRingback, 8, kRingbackOptions);
    AddOptionList(FieldConnection, 8, kConnectionOptions);
    AddOptionList(FieldRingingPattern, 8, kRingingPatternOptions);
}
