// Usage page 0x02, Simulation Controls: the names of its usages, which a Usage item
// reads into FieldUsageSimulation while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kSimulationUsages[] = {
    {0x00, 0x00, 0x00, "Undefined", nullptr},
    {0x01, 0x01, 0x01, "Flight Simulation Device", nullptr},
    {0x02, 0x02, 0x02, "Automobile Simulation Device", nullptr},
    {0x03, 0x03, 0x03, "Tank Simulation Device", nullptr},
    {0x04, 0x04, 0x04, "Spaceship Simulation Device", nullptr},
    {0x05, 0x05, 0x05, "Submarine Simulation Device", nullptr},
    {0x06, 0x06, 0x06, "Sailing Simulation Device", nullptr},
    {0x07, 0x07, 0x07, "Motorcycle Simulation Device", nullptr},
    {0x08, 0x08, 0x08, "Sports Simulation Device", nullptr},
    {0x09, 0x09, 0x09, "Airplane Simulation Device", nullptr},
    {0x0A, 0x0A, 0x0A, "Helicopter Simulation Device", nullptr},
    {0x0B, 0x0B, 0x0B, "Magic Carpet Simulation Device", nullptr},
    {0x0C, 0x0C, 0x0C, "Bicycle Simulation Device", nullptr},
    {0x0D, 0x0D, 0x1F, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "Flight Control Stick", nullptr},
    {0x21, 0x21, 0x21, "Flight Stick", nullptr},
    {0x22, 0x22, 0x22, "Cyclic Control", nullptr},
    {0x23, 0x23, 0x23, "Cyclic Trim", nullptr},
    {0x24, 0x24, 0x24, "Flight Yoke", nullptr},
    {0x25, 0x25, 0x25, "Track Control", nullptr},
    {0x26, 0x26, 0xAF, "Reserved", nullptr},
    {0xB0, 0xB0, 0xB0, "Aileron", nullptr},
    {0xB1, 0xB1, 0xB1, "Aileron Trim", nullptr},
    {0xB2, 0xB2, 0xB2, "Anti_Torque Control", nullptr},
    {0xB3, 0xB3, 0xB3, "Autopilot Enable", nullptr},
    {0xB4, 0xB4, 0xB4, "Chaff Release", nullptr},
    {0xB5, 0xB5, 0xB5, "Collective Control", nullptr},
    {0xB6, 0xB6, 0xB6, "Dive Brake", nullptr},
    {0xB7, 0xB7, 0xB7, "Electronic Countermeasures", nullptr},
    {0xB8, 0xB8, 0xB8, "Elevator", nullptr},
    {0xB9, 0xB9, 0xB9, "Elevator Trim", nullptr},
    {0xBA, 0xBA, 0xBA, "Rudder", nullptr},
    {0xBB, 0xBB, 0xBB, "Throttle", nullptr},
    {0xBC, 0xBC, 0xBC, "Flight Communications", nullptr},
    {0xBD, 0xBD, 0xBD, "Flare Release", nullptr},
    {0xBE, 0xBE, 0xBE, "Landing Gear", nullptr},
    {0xBF, 0xBF, 0xBF, "Toe Brake", nullptr},
    {0xC0, 0xC0, 0xC0, "Trigger", nullptr},
    {0xC1, 0xC1, 0xC1, "Weapons Arm", nullptr},
    {0xC2, 0xC2, 0xC2, "Weapons Select", nullptr},
    {0xC3, 0xC3, 0xC3, "Wing Flaps", nullptr},
    {0xC4, 0xC4, 0xC4, "Accelerator", nullptr},
    {0xC5, 0xC5, 0xC5, "Brake", nullptr},
    {0xC6, 0xC6, 0xC6, "Clutch", nullptr},
    {0xC7, 0xC7, 0xC7, "Shifter", nullptr},
    {0xC8, 0xC8, 0xC8, "Steering", nullptr},
    {0xC9, 0xC9, 0xC9, "Turret Direction", nullptr},
    {0xCA, 0xCA, 0xCA, "Barrel Elevation", nullptr},
    {0xCB, 0xCB, 0xCB, "Dive Plane", nullptr},
    {0xCC, 0xCC, 0xCC, "Ballast", nullptr},
    {0xCD, 0xCD, 0xCD, "Bicycle Crank", nullptr},
    {0xCE, 0xCE, 0xCE, "Handle Bars", nullptr},
    {0xCF, 0xCF, 0xCF, "Front Brake", nullptr},
    {0xD0, 0xD0, 0xD0, "Rear Brake", nullptr},
    {0xD1, 0xD1, 0xFFFF, "Reserved", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_SIMULATION_CONTROLS()
{
    AddUsages(FieldUsageSimulation, kSimulationUsages);
}
