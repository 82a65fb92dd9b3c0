// Usage page 0x0A, Ordinal: the names of its usages, which a Usage item
// reads into FieldUsageOrdinal while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
// Usage n is instance n of a control.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kOrdinalUsages[] = {
    {0x00, 0x00, 0x00, "Reserved", nullptr},
    {0x01, 0x01, 0xFFFF, "Instance [1..65535]", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_ORDINAL()
{
    AddUsages(FieldUsageOrdinal, kOrdinalUsages);
}
