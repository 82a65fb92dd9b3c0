// Field catalogue and option lists of the printer class requests.
#include "usbclass/PrinterClass.h"

using Spec = CPrinterClassSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {22500, "bmRequestType-Recipient", "Recipient", "Recipient of the request: device, interface, endpoint or other.",
     0, 5},
    {22501, "bmRequestType-Type", "Type", "Type of the request: standard, class or vendor.", 5, 2},
    {22502, "bmRequestType-Dirction", "Data Transfer Dirction",
     "Direction of the data transfer: host to device or device to host.", 7, 1},
    {22503, "bRequest", "bRequest", "The printer class request.", 8, 8},
    {22504, "wValue", "wValue",
     "Word-sized field that varies according to the request: the configuration index for Get Device ID.", 16, 16},
    {22505, "wIndex", "wIndex",
     "Word-sized field that varies according to the request: the interface, and for Get Device ID the "
     "alternate setting in the high byte.",
     32, 16},
    {22506, "wLength", "wLength", "Number of bytes to transfer in the data stage.", 48, 16},
    {22507, "Data", "Data",
     "IEEE 1284 device ID string (including length in the first two bytes in big endian format).", 64, 255},
    {22508, "Reserved", "Reserved", "Reserved bits 7 and 6 of the port status; reset to zero.", 64, 2},
    {22509, "Paper", "Paper", "Paper Empty: whether the printer is out of paper.", 66, 1},
    {22510, "Select", "Select", "Select: whether the printer is selected (on line).", 67, 1},
    {22511, "Error", "Error", "Not Error: 0 when the printer reports an error, 1 when it reports none.", 68, 1},
    {22512, "Reserved", "Reserved", "Reserved bits 2 to 0 of the port status; reset to zero.", 69, 3},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// Rows name their option first, then the abbreviation where it differs.

const SOptionRow kRecipientOptions[] = {
    {0, 0, 0, "bRequestType-Recipient-Device", "Device"},
    {1, 1, 1, "bRequestType-Recipient-Interface", "Interface"},
    {2, 2, 2, "bRequestType-Recipient-EndPoint", "End Point"},
    {3, 3, 3, "bRequestType-Recipient-Other", "Other"},
    {4, 4, 31, "bRequestType-Recipient-Reserved", "Reserved"},
};

const SOptionRow kTypeOptions[] = {
    {0, 0, 0, "bRequestType-Type-Standard", "Standard"},
    {1, 1, 1, "bRequestType-Type-Class", "Class"},
    {2, 2, 2, "bRequestType-Type-Vendor", "Vendor"},
    {3, 3, 3, "bRequestType-Type-Reserved", "Reserved"},
};

const SOptionRow kDirectionOptions[] = {
    {0, 0, 0, "bRequestType-Type-Transfer Host To Device", "Transfer Host To Device"},
    {1, 1, 1, "bRequestType-Type-Transfer Device To Host", "Transfer Device To Host"},
};

const SOptionRow kRequestOptions[] = {
    {0, 0, 0, "bRequest-Get Device ID", "Get Device ID"},
    {1, 1, 1, "bRequest-Get Port Status", "Get Port Status"},
    {2, 2, 2, "bRequest-Soft Reset", "Soft Reset"},
    {3, 3, 255, "bRequest-UnKnown", "UnKnown"},
};

const SOptionRow kPaperOptions[] = {
    {0, 0, 0, "Not Empty", nullptr},
    {1, 1, 1, "Empty", nullptr},
};

const SOptionRow kSelectOptions[] = {
    {0, 0, 0, "Not Selected", nullptr},
    {1, 1, 1, "Selected", nullptr},
};

const SOptionRow kErrorOptions[] = {
    {0, 0, 0, "Error", nullptr},
    {1, 1, 1, "No Error", nullptr},
};

}  // namespace

void CPrinterClassSpec::InitOptions()
{
    AddOptionList(FieldRecipient, 5, kRecipientOptions);
    AddOptionList(FieldType, 2, kTypeOptions);
    AddOptionList(FieldDirection, 1, kDirectionOptions);
    AddOptionList(FieldRequest, 8, kRequestOptions);
    AddOptionList(FieldPaper, 1, kPaperOptions);
    AddOptionList(FieldSelect, 1, kSelectOptions);
    AddOptionList(FieldError, 1, kErrorOptions);
}
