// Usage page 0x06, Generic Device Controls: the names of its usages, which a Usage item
// reads into FieldUsageGenericDevice while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kGenericDeviceUsages[] = {
    {0x00, 0x00, 0x00, "Unidentified", nullptr},
    {0x01, 0x01, 0x1F, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "DV - Battery Strength", "Battery Strength"},
    {0x21, 0x21, 0x21, "DV - Wireless Channel", "Wireless Channel"},
    {0x22, 0x22, 0x22, "DV - Wireless ID", "Wireless ID"},
    {0x23, 0x23, 0xFFFF, "Reserved", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_GENERIC_DEVICE_CONTROLS()
{
    AddUsages(FieldUsageGenericDevice, kGenericDeviceUsages);
}
