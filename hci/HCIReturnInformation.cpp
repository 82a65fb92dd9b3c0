// Command Complete of the information parameters, OGF 4: the version,
// features, buffer sizes, country code and address of the local device.
#include <iterator>

#include "hci/HCIReturnTable.h"

namespace {

using namespace HCIReturn;

const SHCIReturnParameters kInformationReturns[] = {
    {0x0001,
     {ReadLocalVersionInformationStatus, ReadLocalVersionInformationHCIVersion, ReadLocalVersionInformationHCIRevision,
      ReadLocalVersionInformationLMPVersion, ReadLocalVersionInformationManufacturerName,
      ReadLocalVersionInformationLMPSubversion}},
    {0x0003, {ReadLocalSupportedFeaturesStatus, ReadLocalSupportedFeaturesLMPFeatures}},
    {0x0005,
     {ReadBufferSizeStatus, ReadBufferSizeHCACLDataPacketLength, ReadBufferSizeHCSCODataPacketLength,
      ReadBufferSizeHCTotalNumACLDataPackets, ReadBufferSizeHCTotalNumSCODataPackets}},
    {0x0007, {ReadCountryCodeStatus, ReadCountryCode}},
    {0x0009, {ReadBDADDRStatus, ReadBDADDR}},
};

// 27239: the HCI version of the host controller. The Reserved row is wider
// than the field's 8-bit options and is cut to them.
const SOptionRow kHCIVersionOptions[] = {
    {0, 0, 0, "BluetoothHCISpecification1_0_B", nullptr},
    {1, 1, 1, "BluetoothHCISpecification1_1", nullptr},
    {2, 0xFFF, 0xFFF, "Reserved", nullptr},
};

// 27252: the hopping frequencies in use.
const SOptionRow kCountryCodeOptions[] = {
    {0, 0, 0, "NorthAmericaAndEuropeAndJapan", nullptr},
    {1, 1, 1, "France", nullptr},
    {2, 4, 0xFF, "Reserved", nullptr},
};

const SHCIReturnOptions kInformationOptions[] = {
    {ReadLocalVersionInformationHCIVersion, kHCIVersionOptions, std::size(kHCIVersionOptions)},
    {ReadCountryCode, kCountryCodeOptions, std::size(kCountryCodeOptions)},
};

}  // namespace

extern const SHCIReturnGroup kHCIInformationReturns = {
    kInformationReturns, std::size(kInformationReturns), 0, kInformationOptions, std::size(kInformationOptions),
};
