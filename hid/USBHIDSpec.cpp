// The HID class descriptor decoder: its catalogue, its options and its walk.
#include "hid/USBHIDSpec.h"

#include <cstdint>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CUSBHIDSpec, CProtocolSpec)

using Spec = CUSBHIDSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {27700, "bLength", "bLength", "Numeric expression that is the total size of the HID descriptor.", 0, 8},
    {27701, "bDescriptorType", "bDescriptorType",
     "Constant name specifying type of HID descriptor: 0x21 for the HID descriptor itself, and for each class "
     "descriptor that follows, the type of that descriptor (0x22 Report, 0x23 Physical).",
     8, 8},
    {27702, "bcdHID", "bcdHID",
     "Numeric expression identifying the HID Class Specification release, in binary-coded decimal.", 16, 16},
    {27703, "bCountryCode", "bCountryCode",
     "Numeric expression identifying country code of the localized hardware; 0 if the hardware is not "
     "localized.",
     32, 8},
    {27704, "bNumDescriptors", "bNumDescriptors",
     "Numeric expression specifying the number of class descriptors (always at least one, the Report "
     "descriptor).",
     40, 8},
    {27705, "wDescriptorLength", "wDescriptorLength",
     "Numeric expression that is the total size of the class descriptor named by the type before it.", 56, 16},
    {27706, "Unexpected", "Unexpected", "Bytes behind the last class descriptor entry.", 72, 8, 0, 65535},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// 27701: the class descriptor types.
const SOptionRow kDescriptorTypeOptions[] = {
    {33, 0x21, 0x21, "HID", nullptr},
    {34, 0x22, 0x22, "Report", nullptr},
    {35, 0x23, 0x23, "Physical", nullptr},
    {36, 0x24, 0x2F, "Reserved", nullptr},
};

// 27703: the country of a localized keyboard.
const SOptionRow kCountryCodeOptions[] = {
    {0, 0, 0, "Not Supported", nullptr},
    {1, 1, 1, "Arabic", nullptr},
    {2, 2, 2, "Belgian", nullptr},
    {3, 3, 3, "Canadian-Bilingual", nullptr},
    {4, 4, 4, "Canadian-French", nullptr},
    {5, 5, 5, "Czech Republic", nullptr},
    {6, 6, 6, "Danish", nullptr},
    {7, 7, 7, "Finnish", nullptr},
    {8, 8, 8, "French", nullptr},
    {9, 9, 9, "German", nullptr},
    {10, 10, 10, "Greek", nullptr},
    {11, 11, 11, "Hebrew", nullptr},
    {12, 12, 12, "Hungary", nullptr},
    {13, 13, 13, "International (ISO)", nullptr},
    {14, 14, 14, "Italian", nullptr},
    {15, 15, 15, "Japan (Katakana)", nullptr},
    {16, 16, 16, "Korean", nullptr},
    {17, 17, 17, "Latin American", nullptr},
    {18, 18, 18, "Netherlands/Dutch", nullptr},
    {19, 19, 19, "Norwegian", nullptr},
    {20, 20, 20, "Persian (Farsi)", nullptr},
    {21, 21, 21, "Poland", nullptr},
    {22, 22, 22, "Portuguese", nullptr},
    {23, 23, 23, "Russia", nullptr},
    {24, 24, 24, "Slovakia", nullptr},
    {25, 25, 25, "Spanish", nullptr},
    {26, 26, 26, "Swedish", nullptr},
    {27, 27, 27, "Swiss/French", nullptr},
    {28, 28, 28, "Swiss/German", nullptr},
    {29, 29, 29, "Switzerland", nullptr},
    {30, 30, 30, "Taiwan", nullptr},
    {31, 31, 31, "Turkish-Q", nullptr},
    {32, 32, 32, "UK", nullptr},
    {33, 33, 33, "US", nullptr},
    {34, 34, 34, "Yugoslavia", nullptr},
    {35, 35, 35, "Turkish-F", nullptr},
    {36, 36, 255, "Reserved", nullptr},
};

}  // namespace

Spec::CUSBHIDSpec() : TUSBHIDDecoder(ms_table)
{
    InitOptions();
}

void Spec::InitOptions()
{
    AddOptionList(FieldDescriptorType, 8, kDescriptorTypeOptions);
    AddOptionList(FieldCountryCode, 8, kCountryCodeOptions);
}

unsigned long Spec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    packet.SetRequestName("HID Descriptor");

    CUSBHIDWalk walk = Walk(data, packet);
    walk.Read(FieldLength);
    walk.Read(FieldDescriptorType);
    walk.Read(FieldBcdHID);
    walk.Read(FieldCountryCode);
    const unsigned nDescriptors = static_cast<std::uint8_t>(walk.Read(FieldNumDescriptors));
    // One type and length per class descriptor, as many as the count says,
    // also past the end of the payload; a count beyond what a packet holds
    // ends at the last whole pair that fits.
    for (unsigned i = 0; i < nDescriptors && Fits(walk, 2, 24); ++i) {
        walk.Read(FieldDescriptorType);
        walk.Read(FieldDescriptorLength);
    }
    ReadLeftover(walk, FieldUnexpected);
    return walk.Consumed();
}
