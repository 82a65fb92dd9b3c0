// Command Complete of the link policy commands, OGF 2: the role of a
// connection and its link policy settings. The mode changes report through
// their own events and return nothing here.
#include <iterator>

#include "hci/HCIReturnTable.h"

namespace {

using namespace HCIReturn;

constexpr unsigned short kSwitchRoleOCF = 0x000B;

const SHCIReturnParameters kLinkPolicyReturns[] = {
    {0x0009, {RoleDiscoveryStatus, ConnectionHandle, RoleDiscoveryCurrentRole}},
    {0x000C, {ReadLinkPolicySettingsStatus, ConnectionHandle, ReadLinkPolicySettings}},
    {0x000D, {WriteLinkPolicySettingsStatus, ConnectionHandle}},
};

// 27157: the role of the local device on the connection.
const SOptionRow kCurrentRoleOptions[] = {
    {0, 0, 0, "Master", nullptr},
    {1, 1, 0xFF, "Slave", nullptr},
};

// 27159: the link modes the connection may enter.
const SOptionRow kLinkPolicySettingsOptions[] = {
    {0, 0, 0, "DisableAllLMModes", nullptr},
    {1, 1, 1, "EnableMasterSlaveSwitch", nullptr},
    {2, 2, 2, "EnableHoldMode", nullptr},
    {3, 4, 4, "EnableSniffMode", nullptr},
    {4, 8, 8, "EnableParkMode", nullptr},
    {5, 0x8000, 0x8000, "Reserved", nullptr},
};

const SHCIReturnOptions kLinkPolicyOptions[] = {
    {RoleDiscoveryCurrentRole, kCurrentRoleOptions, std::size(kCurrentRoleOptions)},
    {ReadLinkPolicySettings, kLinkPolicySettingsOptions,
     std::size(kLinkPolicySettingsOptions)},
};

}  // namespace

extern const SHCIReturnGroup kHCILinkPolicyReturns = {
    kLinkPolicyReturns, std::size(kLinkPolicyReturns), kSwitchRoleOCF,
    kLinkPolicyOptions, std::size(kLinkPolicyOptions),
};
