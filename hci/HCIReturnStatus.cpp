// Command Complete of the status parameters, OGF 5: the failed contact
// counter, link quality and RSSI of a connection.
#include <iterator>

#include "hci/HCIReturnTable.h"

namespace {

using namespace HCIReturn;

const SHCIReturnParameters kStatusReturns[] = {
    {0x0001, {ReadFailedContactCounterStatus, ConnectionHandle, ReadFailedContactCounterFailedContactCounte}},
    {0x0002, {ResetFailedContactCounterStatus, ConnectionHandle}},
    {0x0003, {GetLinkQualityStatus, ConnectionHandle, GetLinkQualityLinkQuality}},
    {0x0005, {ReadRSSIStatus, ConnectionHandle, ReadRSSI}},
};

}  // namespace

extern const SHCIReturnGroup kHCIStatusReturns = {
    kStatusReturns, std::size(kStatusReturns), 0, nullptr, 0,
};
