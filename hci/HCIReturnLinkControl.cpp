// Command Complete of the link control commands, OGF 1: the inquiry modes
// and the link key and PIN replies return a status, the replies also the
// BD_ADDR they answered. The other link control commands report through
// their own events and return nothing here.
#include <iterator>

#include "hci/HCIReturnTable.h"

namespace {

using namespace HCIReturn;

constexpr unsigned short kReadClockOffsetOCF = 0x001F;

const SHCIReturnParameters kLinkControlReturns[] = {
    {0x0002, {InqueryCancelStatus}},
    {0x0003, {InqueryModeStatus}},
    {0x0004, {ExitPeriodicInquiryModeStatus}},
    {0x000B, {LinkKeyRequestReplyStatus, BDADDR}},
    {0x000C, {LinkKeyRequestNegativeReplyStatus, BDADDR}},
    {0x000D, {PINCodeRequestReplyStatus, BDADDR}},
    {0x000E, {PINCodeRequestNegativeReplyStatus, BDADDR}},
};

}  // namespace

extern const SHCIReturnGroup kHCILinkControlReturns = {
    kLinkControlReturns, std::size(kLinkControlReturns), kReadClockOffsetOCF, nullptr, 0,
};
