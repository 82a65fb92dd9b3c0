// Usage page 0x09, Button: the names of its usages, which a Usage item
// reads into FieldUsageButton while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
// Usage n is button n; button 1 is the primary one.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kButtonUsages[] = {
    {0x00, 0x00, 0x00, "No button pressed", nullptr},
    {0x01, 0x01, 0xFFFF, "Button [1..65535] (primary/trigger)", "Button [1..65535] "},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_BUTTON()
{
    AddUsages(FieldUsageButton, kButtonUsages);
}
