// The HID class request decoder: its catalogue, its options and its walk.
#include "hid/USBHIDRequestSpec.h"

#include <cstdint>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CUSBHIDRequestSpec, CProtocolSpec)

using Spec = CUSBHIDRequestSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {27700, "bmRequest-Recipient", "Recipient",
     "Bits 0 to 4 of bmRequestType: the recipient of the request (device, interface, endpoint, other).", 0, 5},
    {27701, "bmRequest-Type", "Type",
     "Bits 5 and 6 of bmRequestType: the type of the request (standard, class, vendor).", 5, 2},
    {27702, "bmRequest-Direction", "Direction",
     "Bit 7 of bmRequestType: the direction of the data stage (host to device, device to host).", 7, 1},
    {27703, "bRequest", "bRequest", "The specific request.", 8, 8},
    {27704, "wValue", "wValue", "Word-sized field that varies according to the request.", 16, 16},
    {27705, "wIndex(Interface)", "wIndex(Interface)",
     "The interface to which the request is directed.", 32, 16},
    {27706, "wLength", "wLength", "Number of bytes to transfer in the data stage.", 48, 16},
    {27707, "Data(Report)", "Data(Report)",
     "The report: an input, output or feature report, with its Report ID first when report IDs are used.", 64,
     8, 0, 65535},
    {27708, "Data(Idle rate)", "Data(Idle rate)",
     "The current idle rate of the report, in units of 4 milliseconds; 0 means indefinite.", 64, 8},
    {27709, "wValue-ReportType", "ReportType", "High byte of wValue: the report type.", 24, 8},
    {27710, "wValue-ReportID", "ReportID",
     "Low byte of wValue: the Report ID, or 0 when report IDs are not used.", 16, 8},
    {27711, "wValue-Zero", "Zero", "If ReportIDs are not used, set to zero", 24, 8},
    {27712, "wValue-Duration", "Duration",
     "When the upper byte of wValue is 0, the duration is indefinite.When the upper byte of wValue is non_zero, "
     "then a fixed duration is used. The duration will be linearly related to the value of the upper byte,with "
     "the LSB being weighted as 4 millisecond.",
     24, 8},
    {27713, "Data(Protocol Type)", "Data(Protocol Type)", "Protocol is currently active", 64, 8},
    {27714, "PotocolWvalue", "PotocolWvalue", "wValue(Protocol)", 16, 16},
    {27715, "Unexpected", "Unexpected", "Bytes behind the data stage of the request.", 152, 128, 0, 65535},
};

// The layer names are the catalogue's, but the leftover field has none.
const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = [] {
    std::array<CString, Spec::kFieldCount> aNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
    aNames[Spec::FieldUnexpected - Spec::kFirstId] = CString();
    return aNames;
}();
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// Each row: the option name, then the abbreviation (the short text that
// names the request).
const SOptionRow kDirectionOptions[] = {
    {0, 0, 0, "Host to Device Direction", "Host to Device"},
    {1, 1, 1, "Device to Host Direction", "Device to Host"},
};

const SOptionRow kTypeOptions[] = {
    {0, 0, 0, "Standard Type", "Standard"},
    {1, 1, 1, "Class Type", "Class"},
    {2, 2, 2, "Vendor Type", "Vendor"},
    {3, 3, 3, "Reserved Type", "Reserved"},
};

const SOptionRow kRecipientOptions[] = {
    {0, 0, 0, "Device Recipient", "Device"},
    {1, 1, 1, "Interface Recipient", "Interface"},
    {2, 2, 2, "Endpoint Recipient", "Endpoint"},
    {3, 3, 3, "Other Recipient", "Other"},
    {4, 4, 31, "Reserved Recipient", "Reserved"},
};

// bRequest: the option names are the class definition's words for the six
// requests.
const SOptionRow kRequestOptions[] = {
    {7, 0, 0, "Unknown", nullptr},
    {0, 1, 1,
     "The Get_Report request allows the host to receive a report via the Control pipe.", "Get Report"},
    {1, 2, 2, "The Get_Idle request reads the current idle rate for a particular Input report.", "Get Idle"},
    {2, 3, 3, "The Get_Protocol request reads which protocol is currently active (either the boot protocol or "
              "the report protocol).",
     "Get Protocol"},
    {3, 4, 8, "Reserved", nullptr},
    {4, 9, 9, "The Set_Report request allows the host to send a report to the device, possibly setting the state "
              "of input, output, or feature controls.",
     "Set Report"},
    {5, 10, 10, "The Set_Idle request silences a particular report on the Interrupt In pipe until a new event "
                "occurs or the specified amount of time passes.",
     "Set Idle"},
    {6, 11, 11, "The Set_Protocol switches between the boot protocol and the report protocol (or vice versa).",
     "Set Protocol"},
    {7, 12, 255, "Unknown", nullptr},
};

const SOptionRow kReportTypeOptions[] = {
    {0, 0, 0, "Unknown", nullptr},
    {1, 1, 1, "Input", nullptr},
    {2, 2, 2, "Output", nullptr},
    {3, 3, 3, "Feature", nullptr},
    {4, 4, 255, "Reserved", nullptr},
};

// The protocol in the data stage of Get_Protocol; the abbreviations end in a
// blank.
const SOptionRow kProtocolTypeOptions[] = {
    {1, 0, 0, "Boot_Protocol ", "Boot_Protocol "},
    {2, 1, 1, "Report_Protocol ", "Report_Protocol "},
    {0, 2, 255, "Unknown", nullptr},
};

// The protocol in wValue of Set_Protocol: 8-bit rows on a 16-bit field, so a
// value above 255 matches none.
const SOptionRow kProtocolValueOptions[] = {
    {1, 0, 0, "Boot_Protocol ", "Boot_Protocol"},
    {2, 1, 1, "Report_Protocol", "Report_Protocol"},
    {0, 2, 255, "Unknown", nullptr},
};

}  // namespace

Spec::CUSBHIDRequestSpec() : TUSBHIDDecoder(ms_table)
{
    InitOptions();
}

void Spec::InitOptions()
{
    AddOptionList(FieldDirection, 1, kDirectionOptions);
    AddOptionList(FieldType, 2, kTypeOptions);
    AddOptionList(FieldRecipient, 5, kRecipientOptions);
    AddOptionList(FieldRequest, 8, kRequestOptions);
    AddOptionList(FieldReportType, 8, kReportTypeOptions);
    AddOptionList(FieldDataProtocol, 8, kProtocolTypeOptions);
    AddOptionList(FieldProtocolValue, 8, kProtocolValueOptions);
}

unsigned long Spec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;

    // bmRequestType from bit 0: recipient, type, direction. Only bRequest
    // chooses the layout; type and direction bits are shown, not consulted.
    CUSBHIDWalk walk = Walk(data, packet);
    walk.Read(FieldRecipient);
    walk.Read(FieldType);
    walk.Read(FieldDirection);
    const std::uint8_t nRequest = walk.Read(FieldRequest);

    // wValue, its low byte first on the wire.
    switch (nRequest) {
    case GetReport:
    case SetReport:
        walk.Read(FieldReportID);
        walk.Read(FieldReportType);
        break;
    case GetIdle:
        walk.Read(FieldReportID);
        walk.Read(FieldZero);
        break;
    case SetIdle:
        walk.Read(FieldReportID);
        walk.Read(FieldDuration);
        break;
    case SetProtocol:
        walk.Read(FieldProtocolValue);
        break;
    default:
        walk.Read(FieldValue);
        break;
    }
    walk.Read(FieldIndex);
    // wLength bytes of report; 0 reads the report field's default byte. The
    // length in bits is carried in 32 bits, and the field takes at most what
    // the payload holds.
    const unsigned long dwDataBits = 8ul * static_cast<std::uint16_t>(walk.Read(FieldLength));

    // The data stage, read also when the payload ends with the setup.
    switch (nRequest) {
    case GetReport:
    case SetReport:
        walk.Read(FieldDataReport, dwDataBits);
        break;
    case GetIdle:
        walk.Read(FieldDataIdleRate);
        break;
    case GetProtocol:
        walk.Read(FieldDataProtocol);
        break;
    default:
        break;
    }

    unsigned long dwLength = 0;
    packet.SetRequestName(packet.GetFieldBriefPattern(4, 6, dwLength, PacketSideWhole, DisplayDecimal, 0));
    ReadLeftover(walk, FieldUnexpected);
    return walk.Consumed();
}
