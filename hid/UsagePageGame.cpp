// Usage page 0x05, Game Controls: the names of its usages, which a Usage item
// reads into FieldUsageGame while this page is current.
// Each row: option id, first and last usage, name, and the abbreviation
// where it differs from the name.
// Usage 0x38 has no row, and so no name.
#include "hid/USBHIDReportSpec.h"

namespace {

const SOptionRow kGameUsages[] = {
    {0x00, 0x00, 0x00, "Undefined", nullptr},
    {0x01, 0x01, 0x01, "3D Game Controller", nullptr},
    {0x02, 0x02, 0x02, "Pinball Device", nullptr},
    {0x03, 0x03, 0x03, "Gun Device", nullptr},
    {0x04, 0x04, 0x1F, "Reserved", nullptr},
    {0x20, 0x20, 0x20, "Point of View", nullptr},
    {0x21, 0x21, 0x21, "Turn Right/Left", nullptr},
    {0x22, 0x22, 0x22, "Pitch Forward/Backward", nullptr},
    {0x23, 0x23, 0x23, "Roll Right/Left", nullptr},
    {0x24, 0x24, 0x24, "Move Right/Left", nullptr},
    {0x25, 0x25, 0x25, "Move Forward/Backward", nullptr},
    {0x26, 0x26, 0x26, "Move Up/Down", nullptr},
    {0x27, 0x27, 0x27, "Lean Right/Left", nullptr},
    {0x28, 0x28, 0x28, "Lean Forward/Backward", nullptr},
    {0x29, 0x29, 0x29, "Height of POV", nullptr},
    {0x2A, 0x2A, 0x2A, "Flipper", nullptr},
    {0x2B, 0x2B, 0x2B, "Secondary Flipper", nullptr},
    {0x2C, 0x2C, 0x2C, "Bump", nullptr},
    {0x2D, 0x2D, 0x2D, "New Game", nullptr},
    {0x2E, 0x2E, 0x2E, "Shoot Ball", nullptr},
    {0x2F, 0x2F, 0x2F, "Player", nullptr},
    {0x30, 0x30, 0x30, "Gun Bolt", nullptr},
    {0x31, 0x31, 0x31, "Gun Clip", nullptr},
    {0x32, 0x32, 0x32, "Gun Selector", nullptr},
    {0x33, 0x33, 0x33, "Gun Single Shot", nullptr},
    {0x34, 0x34, 0x34, "Gun Burst", nullptr},
    {0x35, 0x35, 0x35, "Gun Automatic", nullptr},
    {0x36, 0x36, 0x36, "Gun Safety", nullptr},
    {0x37, 0x37, 0x37, "Gamepad Fire/Jump", nullptr},
    {0x39, 0x39, 0x39, "Gamepad Trigger", nullptr},
    {0x3A, 0x3A, 0xFFFF, "Reserved", nullptr},
};

}  // namespace

void CUSBHIDReportSpec::InitOptions_GAME_CONTROLS()
{
    AddUsages(FieldUsageGame, kGameUsages);
}
