// The hub's status change bit map, with its catalogue and options.
#include "usbclass/HubNotification.h"

#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CHubNotificationSpec, CProtocolSpec)

CHubNotificationSpec* CHubNotificationSpec::ms_pInstance = nullptr;

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

CHubNotificationSpec* CHubNotificationSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CHubNotificationSpec();
    return ms_pInstance;
}

void CHubNotificationSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

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

const SSpecFieldAttr* CHubNotificationSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

int CHubNotificationSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet,
                                              int /*nReserved*/)
{
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    m_counts.Reset();
    pPacket->Clean();
    ReadElements(data, *pPacket);
    const unsigned char nFindings = CheckProtocol(*pPacket);
    // A notification has no response side: the flag stays as Clean left it.
    m_counts.CopyTo(*pPacket);
    return nFindings == 0 ? 1 : 0;
}

unsigned long CHubNotificationSpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                              unsigned short nId, CAdvAnlzData& value, EByteOrder eOrder,
                                              unsigned long dwLength)
{
    const unsigned char nBefore = packet.GetFieldCount();
    const unsigned long dwBits = ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
    m_counts.Count(packet, nBefore);
    return dwBits;
}

unsigned long CHubNotificationSpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    const std::uint32_t nBytes = data.GetByteLength();
    if (nBytes < 1)
        return 0;
    const std::uint32_t nLimit = 8 * nBytes;
    packet.SetRequestName("HUB_CHANGED_STATUS");
    CBitmapWalk walk(*this, &CHubNotificationSpec::ReadField, StopWhenEmpty, data, packet);
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
