// Usage page 0x40, Medical Instruments: the names of its usages, which a Usage item
// reads into FieldUsageMedicalInstruments while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kMedicalInstrumentsUsages[] = {
    {0x00, 0x00, 0x00, "Undefined", nullptr},
    {0x01, 0x01, 0x01, "Medicalultrasound", nullptr},
    {0x02, 0x02, 0x1F, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "Vcr_acquisition", nullptr},
    {0x21, 0x21, 0x21, "Freeze_thaw", nullptr},
    {0x22, 0x22, 0x22, "Clipstore", nullptr},
    {0x23, 0x23, 0x23, "Update", nullptr},
    {0x24, 0x24, 0x24, "Next", nullptr},
    {0x25, 0x25, 0x25, "Save", nullptr},
    {0x26, 0x26, 0x26, "Print", nullptr},
    {0x27, 0x27, 0x27, "Microphoneenable", nullptr},
    {0x28, 0x28, 0x3F, "Reserved", nullptr},
    {0x40, 0x40, 0x40, "Cine", nullptr},
    {0x41, 0x41, 0x41, "Transmitpower", nullptr},
    {0x42, 0x42, 0x42, "Volume", nullptr},
    {0x43, 0x43, 0x43, "Focus", nullptr},
    {0x44, 0x44, 0x44, "Depth", nullptr},
    {0x45, 0x45, 0x5F, "Reserved", nullptr},
    {0x60, 0x60, 0x60, "Softstep_primary", nullptr},
    {0x61, 0x61, 0x61, "Softstep_secondary", nullptr},
    {0x62, 0x62, 0x6F, "Reserved", nullptr},
    {0x70, 0x70, 0x70, "Depthgaincompensation", nullptr},
    {0x71, 0x71, 0x7F, "Reserved", nullptr},
    {0x80, 0x80, 0x80, "Zoomselect", nullptr},
    {0x81, 0x81, 0x81, "Zoomadjust", nullptr},
    {0x82, 0x82, 0x82, "SpectraldopplermodeselecT", nullptr},
    {0x83, 0x83, 0x83, "Spectraldoppleradjust", nullptr},
    {0x84, 0x84, 0x84, "Colordopplermodeselect", nullptr},
    {0x85, 0x85, 0x85, "Colordoppleradjust", nullptr},
    {0x86, 0x86, 0x86, "Motionmodeselect", nullptr},
    {0x87, 0x87, 0x87, "Motionmodeadjust", nullptr},
    {0x88, 0x88, 0x88, "2_dmodeselect", nullptr},
    {0x89, 0x89, 0x89, "2_dmodeadjust", nullptr},
    {0x8A, 0x8A, 0x9F, "Reserved", nullptr},
    {0xA0, 0xA0, 0xA0, "Softcontrolselect", nullptr},
    {0xA1, 0xA1, 0xA1, "Softcontroladjust", nullptr},
    {0xA2, 0xA2, 0xFFFF, "Reserved", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_MEDICAL_INSTRUMENTS()
{
    AddUsages(FieldUsageMedicalInstruments, kMedicalInstrumentsUsages);
}
