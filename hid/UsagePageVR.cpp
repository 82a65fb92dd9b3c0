// Usage page 0x03, VR Controls: the names of its usages, which a Usage item
// reads into FieldUsageVR while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
// The page has no closing row: usages above 0x2F have no name.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kVRUsages[] = {
    {0x00, 0x00, 0x00, "Unidentified", nullptr},
    {0x01, 0x01, 0x01, "Belt", nullptr},
    {0x02, 0x02, 0x02, "Body Suit", nullptr},
    {0x03, 0x03, 0x03, "Flexor", nullptr},
    {0x04, 0x04, 0x04, "Glove", nullptr},
    {0x05, 0x05, 0x05, "Head Tracker", nullptr},
    {0x06, 0x06, 0x06, "Head Mounted Display", nullptr},
    {0x07, 0x07, 0x07, "Hand Tracker", nullptr},
    {0x08, 0x08, 0x08, "Oculometer", nullptr},
    {0x09, 0x09, 0x09, "Vest", nullptr},
    {0x0A, 0x0A, 0x0A, "Animatronic Device", nullptr},
    {0x0B, 0x0B, 0x1F, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "Stereo Enable", nullptr},
    {0x21, 0x21, 0x21, "Display Enable", nullptr},
    {0x22, 0x22, 0x2F, "Reserved", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_VR_CONTROLS()
{
    AddUsages(FieldUsageVR, kVRUsages);
}
