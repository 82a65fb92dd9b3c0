// The report descriptor decoder: its catalogue, the option lists of the item
// header and of the usage page, and the item walk. The usages of each page
// stand in a file of their own (UsagePage*.cpp).
#include "hid/USBHIDReportSpec.h"


BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CUSBHIDReportSpec, CProtocolSpec)

using Spec = CUSBHIDReportSpec;

#define HID_USAGE_FIELD(id, page)                                                                           \
    {                                                                                                       \
        id, "Usage " page, "Usage " page,                                                                   \
            "Usage of the " page " page: the data of a Usage item read while this page is the current usage " \
            "page.",                                                                                        \
            8, 8, 0, 65535                                                                                  \
    }

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {27700, "bSize", "bSize", "Numeric expression specifying size of data: 0, 1, 2 or 4 bytes.", 0, 2},
    {27701, "bType", "bType", "Numeric expression identifying type of item: Main, Global, Local or Reserved.",
     2, 2},
    {27702, "Main bTag", "Main bTag",
     "Main items are used to either define or group certain types of data fields within a Report descriptor: "
     "Input, Output, Feature, Collection and End Collection.",
     4, 4},
    {27703, "Global bTag", "Global bTag",
     "Global items describe rather than define data from a control. A new Main item assumes the characteristics "
     "of the item state table, which Global items change for all following Main items.",
     4, 4},
    {27704, "Local bTag", "Local bTag",
     "Local item tags define characteristics of controls. These items do not carry over to the next Main item.",
     4, 4},
    {27705, "Reserved", "Reserved",
     "Reserved: the tag of an item of the reserved type, or the upper two bytes of a four-byte Global item.", 4,
     4},
    {27706, "Data", "Data", "The item's data: 0, 1, 2 or 4 bytes, least significant byte first.", 8, 8, 0, 65535},
    {27707, "bDataSize", "bDataSize", "Size of long item data in bytes.", 8, 8},
    {27708, "bLongItemTag", "bLongItemTag", "Long item tag; the values 0xF0 to 0xFF are vendor defined.", 16, 8},
    {27709, "Usage page", "Usage page",
     "Unsigned integer specifying the current Usage Page. Since a usage are 32 bit values, Usage Page items can "
     "be used to conserve space in a report descriptor by setting the high order 16 bits of a subsequent usages.",
     8, 8, 0, 65535},
    HID_USAGE_FIELD(27710, "Generic Desktop Controls"),
    HID_USAGE_FIELD(27711, "Simulation Controls"),
    HID_USAGE_FIELD(27712, "VR Controls"),
    HID_USAGE_FIELD(27713, "Sport Controls"),
    HID_USAGE_FIELD(27714, "Game Controls"),
    HID_USAGE_FIELD(27715, "Generic Device Controls"),
    HID_USAGE_FIELD(27716, "Keyboard/Keypad"),
    HID_USAGE_FIELD(27717, "LEDs"),
    HID_USAGE_FIELD(27718, "Button"),
    HID_USAGE_FIELD(27719, "Ordinal"),
    HID_USAGE_FIELD(27720, "Telephony"),
    HID_USAGE_FIELD(27721, "Consumer"),
    HID_USAGE_FIELD(27722, "Digitizer"),
    HID_USAGE_FIELD(27723, "Alphanumeric Display"),
    HID_USAGE_FIELD(27724, "Medical Instruments"),
    {27725, "Unexpected", "Unexpected",
     "Items behind the last one that a packet can hold, unread as items.", 16, 8, 0, 65535},
};

#undef HID_USAGE_FIELD

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// The item header. Each row: the option name (the class definition's words),
// then the abbreviation, which is what an item line is named by.
const SOptionRow kTypeOptions[] = {
    {0, 0, 0, "Main items define or group data fields", "Main"},
    {1, 1, 1, "Global items describe the data of all following Main items", "Global"},
    {2, 2, 2, "Local items describe the controls of the next Main item", "Local"},
    {3, 3, 3, "Reserved", nullptr},
};

const SOptionRow kMainTagOptions[] = {
    {5, 0, 7, "Reserved", nullptr},
    {0, 8, 8, "Refers to the data from one or more similar controls on a device", "Input"},
    {1, 9, 9, "Refers to the data to one or more similar controls on a device such as setting the position of a "
              "single control or a group of LEDs",
     "Output"},
    {2, 11, 11, "Describes device input and output not intended for consumption by the end user", "Feature"},
    {3, 10, 10, "A meaningful grouping of Input, Output, and Feature items", "Collection"},
    {4, 12, 12, "A terminating item used to specify the end of a collection of items", "End Collection"},
    {5, 13, 15, "Reserved", nullptr},
};

const SOptionRow kGlobalTagOptions[] = {
    {0, 0, 0, "Unsigned integer specifying the current Usage Page", "Usage Page"},
    {1, 1, 1, "Extent value in logical units: the minimum value that a variable or array item will report",
     "Logical Minimum"},
    {2, 2, 2, "Extent value in logical units: the maximum value that a variable or array item will report",
     "Logical Maximum"},
    {3, 3, 3, "Minimum value for the physical extent of a variable item", "Physical Minimum"},
    {4, 4, 4, "Maximum value for the physical extent of a variable item", "Physical Maximum"},
    {5, 5, 5, "Value of the unit exponent in base 10", "Unit Exponent"},
    {6, 6, 6, "Unit values", "Unit"},
    {7, 7, 7, "Unsigned integer specifying the size of the report fields in bits", "Report Size"},
    {8, 8, 8, "Unsigned value that specifies the Report ID", "Report ID"},
    {9, 9, 9, "Unsigned integer specifying the number of data fields for the item", "Report Count"},
    {10, 10, 10, "Places a copy of the global item state table on the stack", "Push"},
    {11, 11, 11, "Replaces the item state table with the top structure from the stack", "Pop"},
    {12, 12, 15, "Reserved", nullptr},
};

const SOptionRow kLocalTagOptions[] = {
    {0, 0, 0, "Usage index for an item usage; represents a suggested usage for the item or collection", "Usage"},
    {1, 1, 1, "Defines the starting usage associated with an array or bitmap", "Usage Minimum"},
    {2, 2, 2, "Defines the ending usage associated with an array or bitmap", "Usage Maximum"},
    {3, 3, 3, "Determines the body part used for a control; index points to a designator in the Physical "
              "descriptor",
     "Designator Index"},
    {4, 4, 4, "Defines the index of the starting designator associated with an array or bitmap",
     "Designator Minimum "},
    {5, 5, 5, "Defines the index of the ending designator associated with an array or bitmap",
     "Designator Maximum"},
    {6, 7, 7, "String index for a String descriptor; allows a string to be associated with a particular item or "
              "control",
     "String Index"},
    {7, 8, 8, "Specifies the first string index when assigning a group of sequential strings to controls in an "
              "array or bitmap",
     "String Minimum"},
    {8, 9, 9, "Specifies the last string index when assigning a group of sequential strings to controls in an "
              "array or bitmap",
     "String Maximum"},
    {9, 10, 10, "Defines the beginning or end of a set of local items (1 = open set, 0 = close set)", "Delimiter"},
    {10, 11, 15, "Reserved", nullptr},
};

// The usage pages of the usage tables; pages without usage names here still
// show their page name.
const SOptionRow kUsagePageOptions[] = {
    {0x00, 0x00, 0x00, "Undefined", nullptr},
    {0x01, 0x01, 0x01, "Generic Desktop Controls", nullptr},
    {0x02, 0x02, 0x02, "Simulation Controls", nullptr},
    {0x03, 0x03, 0x03, "VR Controls", nullptr},
    {0x04, 0x04, 0x04, "Sport Controls", nullptr},
    {0x05, 0x05, 0x05, "Game Controls", nullptr},
    {0x06, 0x06, 0x06, "Generic Device Controls", nullptr},
    {0x07, 0x07, 0x07, "Keyboard/Keypad", nullptr},
    {0x08, 0x08, 0x08, "LEDs", nullptr},
    {0x09, 0x09, 0x09, "Button", nullptr},
    {0x0A, 0x0A, 0x0A, "Ordinal", nullptr},
    {0x0B, 0x0B, 0x0B, "Telephony", nullptr},
    {0x0C, 0x0C, 0x0C, "Consumer", nullptr},
    {0x0D, 0x0D, 0x0D, "Digitizer", nullptr},
    {0x0E, 0x0E, 0x0E, "Reserved", nullptr},
    {0x0F, 0x0F, 0x0F, "PID Page", nullptr},
    {0x10, 0x10, 0x10, "Unicode", nullptr},
    {0x11, 0x11, 0x13, "Reserved", nullptr},
    {0x14, 0x14, 0x14, "Alphanumeric Display", nullptr},
    {0x15, 0x15, 0x3F, "Reserved", nullptr},
    {0x40, 0x40, 0x40, "Medical Instruments", nullptr},
    {0x41, 0x41, 0x7F, "Reserved", nullptr},
    {0x80, 0x80, 0x83, "Monitor pages", nullptr},
    {0x84, 0x84, 0x87, "Power pages", nullptr},
    {0x88, 0x88, 0x8B, "Reserved", nullptr},
    {0x8C, 0x8C, 0x8C, "Bar Code Scanner page", nullptr},
    {0x8D, 0x8D, 0x8D, "Scale page", nullptr},
    {0x8E, 0x8E, 0x8E, "Magnetic Stripe Reading (MSR) Devices", nullptr},
    {0x8F, 0x8F, 0x8F, "Reserved Point of Sale pages", nullptr},
    {0x90, 0x90, 0x90, "Camera Control Page", nullptr},
    {0x91, 0x91, 0x91, "Arcade Page", nullptr},
    {0x92, 0x92, 0xFEFF, "Reserved", nullptr},
    {0xFF00, 0xFF00, 0xFFFF, "Vendor-defined", nullptr},
};

// Data bits of an item by its bSize: 0, 1, 2 or 4 bytes.
std::uint32_t DataBitsOf(std::uint8_t nSize)
{
    return nSize == 3 ? 32u : 8u * nSize;
}

// The fields and bits that the walk takes for one item.
struct SItemShape {
    int nFields;
    unsigned long dwBits;
};

}  // namespace

Spec::CUSBHIDReportSpec() : TUSBHIDDecoder(ms_table)
{
    InitOptions();
}

void Spec::InitOptions()
{
    InitOptions_Init();
    InitOptions_GENERIC_DESKTOP_CONTROLS();
    InitOptions_SIMULATION_CONTROLS();
    InitOptions_VR_CONTROLS();
    InitOptions_SPORT_CONTROLS();
    InitOptions_GAME_CONTROLS();
    InitOptions_GENERIC_DEVICE_CONTROLS();
    InitOptions_KEYBOARD_KEYPAD();
    InitOptions_LED();
    InitOptions_BUTTON();
    InitOptions_ORDINAL();
    InitOptions_TELEPHONY();
    InitOptions_CONSUMER1();
    InitOptions_CONSUMER2();
    InitOptions_DIGITIZER();
    InitOptions_ALPHANUMERIC_DISPLAY();
    InitOptions_MEDICAL_INSTRUMENTS();
}

void Spec::InitOptions_Init()
{
    AddOptionList(FieldType, 2, kTypeOptions);
    AddOptionList(FieldMainTag, 4, kMainTagOptions);
    AddOptionList(FieldGlobalTag, 4, kGlobalTagOptions);
    AddOptionList(FieldLocalTag, 4, kLocalTagOptions);
    AddOptionList(FieldUsagePage, 16, kUsagePageOptions);
}

void Spec::AddUsages(unsigned short nField, const SOptionRow* pRows, std::size_t nRows)
{
    for (std::size_t i = 0; i < nRows; ++i) {
        const std::uint64_t dwHigh = pRows[i].dwHigh;
        AddOptionList(nField, dwHigh <= 0xFF ? 8 : dwHigh <= 0xFFF ? 12 : 16, &pRows[i], 1);
    }
}

unsigned short Spec::UsageFieldOf(std::uint32_t nPage) noexcept
{
    if (nPage >= 0x01 && nPage <= 0x0D)
        return static_cast<unsigned short>(FieldUsageGenericDesktop + (nPage - 0x01));
    if (nPage == 0x14)
        return FieldUsageAlphanumericDisplay;
    if (nPage == 0x40)
        return FieldUsageMedicalInstruments;
    return 0;
}

namespace {

// What ReadItem will take for the item whose first bytes are in front: a
// short item by its prefix, a long one also by its bDataSize.
SItemShape ShapeOf(const CAdvAnlzData& front, std::uint32_t nPage)
{
    const std::uint8_t nPrefix = front[0];
    const std::uint8_t nSize = nPrefix & 0x03u;
    const std::uint8_t nType = (nPrefix >> 2) & 0x03u;
    const std::uint8_t nTag = nPrefix >> 4;
    const std::uint32_t n = DataBitsOf(nSize);
    switch (nType) {
    case Spec::TypeMain:
        return {n ? 4 : 3, 8ul + n};
    case Spec::TypeGlobal:
        if (n == 32)
            return {5, 40};
        if (nTag == Spec::GlobalTagUsagePage)
            return {4, 8ul + (n ? n : 8)};
        return {n ? 4 : 3, 8ul + n};
    case Spec::TypeLocal:
        if (nTag == Spec::LocalTagUsage && Spec::UsageFieldOf(nPage))
            return {4, 8ul + (n ? n : 8)};
        return {n ? 4 : 3, 8ul + n};
    default:
        if (nSize == Spec::LongItemSize && nTag == Spec::LongItemTag) {
            const unsigned long dwData = front[1] ? 8ul * front[1] : 8;
            return {6, 24 + dwData};
        }
        return {3, 8};
    }
}

}  // namespace

unsigned long Spec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    packet.SetRequestName("Report Descriptor");
    if (data.GetByteLength() < 1)
        return 0;

    // The one piece of state carried through the descriptor: the usage page
    // that names the usages. The global item stack is not modelled.
    std::uint32_t nPage = 0;
    CUSBHIDWalk walk = Walk(data, packet);
    while (walk.More()) {
        // A descriptor longer than a packet holds ends at the last whole item
        // that fits; the items behind it stand as one leftover field.
        const SItemShape shape = ShapeOf(walk.Peek(16), nPage);
        if (!Fits(walk, shape.nFields, shape.dwBits)) {
            ReadLeftover(walk, FieldUnexpected);
            break;
        }
        if (!ReadItem(walk, nPage))
            break;
    }
    return walk.Consumed();
}

bool Spec::ReadItem(CUSBHIDWalk& walk, std::uint32_t& nPage)
{
    const std::uint8_t nSize = walk.Read(FieldSize);
    const std::uint32_t n = DataBitsOf(nSize);
    const std::uint8_t nType = walk.Read(FieldType);
    switch (nType) {
    case TypeMain:
        walk.Read(FieldMainTag);
        if (n)
            walk.Read(FieldData, n);
        return true;

    case TypeGlobal: {
        const std::uint8_t nTag = walk.Read(FieldGlobalTag);
        if (n == 32) {
            // Four data bytes stand as two fields of two bytes; a four-byte
            // Usage Page does not change the current page.
            walk.Read(nTag == GlobalTagUsagePage ? FieldUsagePage : FieldData, 16);
            walk.Read(FieldReserved, 16);
        } else if (nTag == GlobalTagUsagePage) {
            // With no data bytes the field's default byte is taken.
            nPage = static_cast<std::uint16_t>(walk.Read(FieldUsagePage, n));
        } else if (n) {
            walk.Read(FieldData, n);
        }
        return true;
    }

    case TypeLocal: {
        const std::uint8_t nTag = walk.Read(FieldLocalTag);
        const unsigned short nUsageField = nTag == LocalTagUsage ? UsageFieldOf(nPage) : 0;
        if (nUsageField)
            walk.Read(nUsageField, n);  // a usage with no data bytes takes the default byte
        else if (n)
            walk.Read(FieldData, n);
        return true;
    }

    default: {
        // A reserved-type item carries no data here, whatever its size says;
        // only the long item is read further, and it ends the descriptor.
        const std::uint8_t nTag = walk.Read(FieldReserved);
        if (nSize != LongItemSize || nTag != LongItemTag)
            return true;
        const std::uint8_t nDataSize = walk.Read(FieldDataSize);
        walk.Read(FieldLongItemTag);
        walk.Read(FieldData, 8ul * nDataSize);
        return false;
    }
    }
}
