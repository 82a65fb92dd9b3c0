// Usage page 0x14, Alphanumeric Display: the names of its usages, which a Usage item
// reads into FieldUsageAlphanumericDisplay while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kAlphanumericDisplayUsages[] = {
    {0x00, 0x00, 0x00, "Undefined", nullptr},
    {0x01, 0x01, 0x01, "Alphanumericdisplay", nullptr},
    {0x02, 0x02, 0x1F, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "Displayattributesreport", nullptr},
    {0x21, 0x21, 0x21, "Asciicharacterset", nullptr},
    {0x22, 0x22, 0x22, "Datareadback", nullptr},
    {0x23, 0x23, 0x23, "Fontreadback", nullptr},
    {0x24, 0x24, 0x24, "Displaycontrolreport", nullptr},
    {0x25, 0x25, 0x25, "Cleardisplay", nullptr},
    {0x26, 0x26, 0x26, "Displayenable", nullptr},
    {0x27, 0x27, 0x27, "Screensaverdelay", nullptr},
    {0x28, 0x28, 0x28, "Screensaverenable", nullptr},
    {0x29, 0x29, 0x29, "Verticalscroll", nullptr},
    {0x2A, 0x2A, 0x2A, "Horizontalscroll", nullptr},
    {0x2B, 0x2B, 0x2B, "Characterreport", nullptr},
    {0x2C, 0x2C, 0x2C, "Displaydata", nullptr},
    {0x2D, 0x2D, 0x2D, "Displaystatus", nullptr},
    {0x2E, 0x2E, 0x2E, "Statnotready", nullptr},
    {0x2F, 0x2F, 0x2F, "Statready", nullptr},
    {0x30, 0x30, 0x30, "Errnotaloadablecharacter", nullptr},
    {0x31, 0x31, 0x31, "Errfontdatacannotberead", nullptr},
    {0x32, 0x32, 0x32, "Cursorpositionreport", nullptr},
    {0x33, 0x33, 0x33, "Row", nullptr},
    {0x34, 0x34, 0x34, "Column", nullptr},
    {0x35, 0x35, 0x35, "Rows", nullptr},
    {0x36, 0x36, 0x36, "Columns", nullptr},
    {0x37, 0x37, 0x37, "Cursorpixelpositioning", nullptr},
    {0x38, 0x38, 0x38, "Cursormode", nullptr},
    {0x39, 0x39, 0x39, "Cursorenable", nullptr},
    {0x3A, 0x3A, 0x3A, "Cursorblink", nullptr},
    {0x3B, 0x3B, 0x3B, "Fontreport", nullptr},
    {0x3C, 0x3C, 0x3C, "Fontdata", nullptr},
    {0x3D, 0x3D, 0x3D, "Characterwidth", nullptr},
    {0x3E, 0x3E, 0x3E, "Characterheight", nullptr},
    {0x3F, 0x3F, 0x3F, "Characterspacinghorizontal", nullptr},
    {0x40, 0x40, 0x40, "Characterspacingvertical", nullptr},
    {0x41, 0x41, 0x41, "Unicodecharacterset", nullptr},
    {0x42, 0x42, 0x42, "Font7-segment", nullptr},
    {0x43, 0x43, 0x43, "7-segmentdirectmap", nullptr},
    {0x44, 0x44, 0x44, "Font14-segment", nullptr},
    {0x45, 0x45, 0x45, "14-segmentdirectmap", nullptr},
    {0x46, 0x46, 0x46, "Displaybrightness", nullptr},
    {0x47, 0x47, 0x47, "Displaycontrast", nullptr},
    {0x48, 0x48, 0x48, "Characterattribute", nullptr},
    {0x49, 0x49, 0x49, "Attributereadback", nullptr},
    {0x4A, 0x4A, 0x4A, "Attributedata", nullptr},
    {0x4B, 0x4B, 0x4B, "Charattrenhance", nullptr},
    {0x4C, 0x4C, 0x4C, "Charattrunderline", nullptr},
    {0x4D, 0x4D, 0x4D, "Charattrblink", nullptr},
    {0x4E, 0x4E, 0xFFFF, "Reserved", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_ALPHANUMERIC_DISPLAY()
{
    AddUsages(FieldUsageAlphanumericDisplay, kAlphanumericDisplayUsages);
}
