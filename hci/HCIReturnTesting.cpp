// Command Complete of the testing commands, OGF 6: the loopback mode and
// the device under test mode.
#include <iterator>

#include "hci/HCIReturnTable.h"

namespace {

using namespace HCIReturn;

const SHCIReturnParameters kTestingReturns[] = {
    {0x0001, {ReadLoopbackModeStatus, ReadLoopbackModeLoopbackMode}},
    {0x0002, {WriteLoopbackModeStatus}},
    {0x0003, {EnableDeviceUnderTestModeStatus}},
};

// 27263: the loopback mode of the local device.
const SOptionRow kLoopbackModeOptions[] = {
    {0, 0, 0, "NoLoopbackModeEnabled_Default", nullptr},
    {1, 1, 1, "EnableLocalLoopback", nullptr},
    {2, 2, 2, "EnableRemoteLoopback", nullptr},
    {3, 0xFF, 0xFF, "Reserved", nullptr},
};

const SHCIReturnOptions kTestingOptions[] = {
    {ReadLoopbackModeLoopbackMode, kLoopbackModeOptions, std::size(kLoopbackModeOptions)},
};

}  // namespace

extern const SHCIReturnGroup kHCITestingReturns = {
    kTestingReturns, std::size(kTestingReturns), 0, kTestingOptions, std::size(kTestingOptions),
};
