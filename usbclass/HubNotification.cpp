// The hub's status change bit map, with its catalogue and options.
#include "usbclass/HubNotification.h"

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CHubNotificationSpec, CProtocolSpec)

using Spec = CHubNotificationSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {23500, "Hub Status", "Hub Notification-HubStatus", "The Hub Status Change Bitmap", 0, 1},
    {23501, "Port Status", "Hub Notification-PortStatus", "The Port Status Change Bitmap", 1, 1},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

const SOptionRow kHubStatusOptions[] = {
    {0, 0, 0, "Hub Notification-Hub-No Changed", "NoChanged"},
    {1, 1, 1, "Hub Notification-Hub-Changed", "Changed"},
};

const SOptionRow kPortStatusOptions[] = {
    {0, 0, 0, "Hub Notification-Port-No Changed", "NoChanged"},
    {1, 1, 1, "Hub Notification-Port-Changed", "Changed"},
};

}  // namespace

CHubNotificationSpec::CHubNotificationSpec()
{
    SetReferenceStrings(RefCompareName);
    InitOptions();
}

void CHubNotificationSpec::InitOptions()
{
    AddOptionList(FieldHubStatus, 1, kHubStatusOptions);
    AddOptionList(FieldPortStatus, 1, kPortStatusOptions);
}

unsigned long CHubNotificationSpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    const std::uint32_t nBytes = data.GetByteLength();
    if (nBytes < 1)
        return 0;
    const std::uint32_t nLimit = 8 * nBytes;
    packet.SetRequestName("HUB_CHANGED_STATUS");
    CWalk walk = Walk(data, packet, StopWhenEmpty);
    if (!walk.ReadOn(FieldHubStatus))
        return walk.Consumed();
    // One bit per port up to the end of the payload: the hub's real port
    // count is not known here, so the pad bits of the last byte show as
    // ports too.
    for (std::uint32_t i = 0; i < nLimit && !IsPacketFull(packet); ++i) {
        walk.ReadRenamed(FieldPortStatus, i, &m_portNames.Get(i + 1), nullptr, nullptr);
        if (!walk.More())
            break;
    }
    return walk.Consumed();
}
