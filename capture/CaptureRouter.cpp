#include "capture/CaptureRouter.h"

namespace {

// H4 packet types.
constexpr std::uint8_t kH4Command = 1;
constexpr std::uint8_t kH4ACL = 2;
constexpr std::uint8_t kH4SCO = 3;
constexpr std::uint8_t kH4Event = 4;
constexpr std::uint8_t kH4ISO = 5;

// HCI packet kinds as the HCI decoder takes them.
constexpr int kKindCommand = 0;
constexpr int kKindACLOut = 1;
constexpr int kKindACLIn = 2;
constexpr int kKindSCO = 3;
constexpr int kKindEvent = 4;

// The Linux monitor's record opcodes (the low half of the btsnoop flags);
// opcodes 2 to 7 carry HCI packets.
const char* MonitorOpcodeName(unsigned nOpcode)
{
    static const char* const s_apszNames[] = {
        "New Index",    "Delete Index", "Command",        "Event",         "ACL TX",        "ACL RX",
        "SCO TX",       "SCO RX",       "Open Index",     "Close Index",   "Index Info",    "Vendor Diagnostic",
        "System Note",  "User Logging", "Control Open",   "Control Close", "Control Command", "Control Event",
        "ISO TX",       "ISO RX",
    };
    return nOpcode < sizeof s_apszNames / sizeof *s_apszNames ? s_apszNames[nOpcode] : "unknown";
}

bool IsBluetooth(int nLinkType)
{
    switch (nLinkType) {
    case LinkTypeBtSnoopHCI: case LinkTypeBtSnoopH4: case LinkTypeBtSnoopMonitor: case LinkTypeBluetoothH4:
    case LinkTypeBluetoothH4WithPhdr:
        return true;
    default:
        return false;
    }
}

bool IsUsb(int nLinkType)
{
    return nLinkType == LinkTypeUsbLinux || nLinkType == LinkTypeUsbLinuxMmapped || nLinkType == LinkTypeUsbPcap;
}

std::string LinkTypeText(int nLinkType)
{
    const char* pszName = CCaptureReader::LinkTypeName(nLinkType);
    return std::string(pszName ? pszName : "unknown") + " (" + std::to_string(nLinkType) + ")";
}

}  // namespace

CCaptureRouter::CCaptureRouter(ICaptureSink& sink, const SDecoderEntry* pForced, const SDecodeOptions& forcedOptions)
    : m_sink(sink), m_pForced(pForced), m_forcedOptions(forcedOptions)
{
    for (int i = 0; i < RouteCount; ++i)
        m_aRoutes[static_cast<std::size_t>(i)] = ResolveRoute(static_cast<ERoute>(i));
    if (m_pForced)
        if (const int nSelector = HIDSelectorOfAlias(m_pForced->pszAlias); nSelector >= 0)
            m_forcedOptions.nHIDSelector = nSelector;
}

void CCaptureRouter::EmitWith(const SResolvedRoute& route, std::uint64_t nFrame, std::int64_t nTime,
                              const SPacketLink& link, const std::uint8_t* pData, std::size_t nData)
{
    if (!route.pEntry) {
        SUnroutedRecord unrouted;
        unrouted.nFrame = nFrame;
        unrouted.nTime = nTime;
        unrouted.link = link;
        unrouted.pReason = &route.strMissing;
        unrouted.pData = pData;
        unrouted.nData = nData;
        m_sink.Unrouted(unrouted);
        return;
    }
    SRoutedPayload payload;
    payload.nFrame = nFrame;
    payload.nTime = nTime;
    payload.link = link;
    payload.pEntry = route.pEntry;
    payload.options = route.options;
    payload.options.nHCIKind = link.eKind == SPacketLink::Bluetooth ? link.nHCIKind : route.options.nHCIKind;
    payload.pData = pData;
    payload.nData = nData;
    m_sink.Payload(payload);
}

void CCaptureRouter::Emit(ERoute eRoute, const SCaptureRecord& record, const SPacketLink& link,
                          const std::uint8_t* pData, std::size_t nData)
{
    EmitWith(m_aRoutes[eRoute], record.nNumber, record.nTimeMicros, link, pData, nData);
}

void CCaptureRouter::Unrouted(const SCaptureRecord& record, const SPacketLink& link, const std::string& strReason,
                              const std::uint8_t* pData, std::size_t nData)
{
    SUnroutedRecord unrouted;
    unrouted.nFrame = record.nNumber;
    unrouted.nTime = record.nTimeMicros;
    unrouted.link = link;
    unrouted.pReason = &strReason;
    unrouted.pData = pData ? pData : record.pData;
    unrouted.nData = pData ? nData : record.nData;
    m_sink.Unrouted(unrouted);
}

void CCaptureRouter::Feed(const SCaptureRecord& record)
{
    if (m_pForced) {
        FeedForced(record);
    } else if (IsBluetooth(record.nLinkType)) {
        FeedBluetooth(record);
    } else if (IsUsb(record.nLinkType)) {
        FeedUsb(record);
    } else if (record.nLinkType == LinkTypePPP || record.nLinkType == LinkTypePPPHDLC) {
        // A PPP frame as the link gives it, with or without address and
        // control (FF 03); the HDLC-like framing is already undone.
        if (record.nData == 0)
            Unrouted(record, SPacketLink(), m_strReason = "empty record");
        else
            Emit(RoutePPP, record, SPacketLink(), record.pData, record.nData);
    } else {
        Unrouted(record, SPacketLink(), m_strReason = "no route for link type " + LinkTypeText(record.nLinkType));
    }
}

bool CCaptureRouter::TakeHCI(const SCaptureRecord& record, SPacketLink& link, const std::uint8_t*& pData,
                             std::size_t& nData, std::string& strReason) const
{
    link.eKind = SPacketLink::Bluetooth;
    link.eDirection = BluetoothDirectionUnknown;
    pData = record.pData;
    nData = record.nData;
    int nType = -1;  // H4 packet type, where the link has one
    switch (record.nLinkType) {
    case LinkTypeBtSnoopHCI:
        // Flags: bit 1 command or event, bit 0 received by the host.
        link.eDirection = (record.nFlags & 1) ? BluetoothReceived : BluetoothSent;
        link.nHCIKind = (record.nFlags & 2) ? ((record.nFlags & 1) ? kKindEvent : kKindCommand)
                                            : ((record.nFlags & 1) ? kKindACLIn : kKindACLOut);
        return true;
    case LinkTypeBtSnoopMonitor: {
        const unsigned nOpcode = record.nFlags & 0xFFFF;
        static const int s_aKinds[] = {kKindCommand, kKindEvent, kKindACLOut, kKindACLIn, kKindSCO, kKindSCO};
        if (nOpcode < 2 || nOpcode > 7) {
            strReason = std::string("Linux monitor record that is no HCI packet: ") + MonitorOpcodeName(nOpcode);
            return false;
        }
        link.nHCIKind = s_aKinds[nOpcode - 2];
        link.eDirection = (nOpcode == 3 || nOpcode == 5 || nOpcode == 7) ? BluetoothReceived : BluetoothSent;
        return true;
    }
    case LinkTypeBtSnoopH4:
        link.eDirection = (record.nFlags & 1) ? BluetoothReceived : BluetoothSent;
        break;
    case LinkTypeBluetoothH4WithPhdr:
        // A four-byte direction (0 sent, 1 received) leads the H4 packet.
        if (nData < 4) {
            strReason = "record too short for its direction header";
            return false;
        }
        link.eDirection = pData[3] & 1 ? BluetoothReceived : BluetoothSent;
        pData += 4;
        nData -= 4;
        break;
    default:
        break;
    }
    if (nData == 0) {
        strReason = "empty record";
        return false;
    }
    nType = *pData++;
    --nData;
    switch (nType) {
    case kH4Command:
        link.nHCIKind = kKindCommand;
        break;
    case kH4ACL:
        // Without a direction (plain H4) the ACL packet is taken as sent.
        link.nHCIKind = link.eDirection == BluetoothReceived ? kKindACLIn : kKindACLOut;
        break;
    case kH4SCO:
        link.nHCIKind = kKindSCO;
        break;
    case kH4Event:
        link.nHCIKind = kKindEvent;
        break;
    default:
        strReason = "H4 packet type " + std::to_string(nType) +
                    (nType == kH4ISO ? " (ISO data) has no HCI packet kind" : " is unknown");
        return false;
    }
    if (link.eDirection == BluetoothDirectionUnknown && nType != kH4ACL && nType != kH4SCO)
        link.eDirection = nType == kH4Event ? BluetoothReceived : BluetoothSent;
    return true;
}

void CCaptureRouter::FeedBluetooth(const SCaptureRecord& record)
{
    SPacketLink link;
    const std::uint8_t* pData = nullptr;
    std::size_t nData = 0;
    if (!TakeHCI(record, link, pData, nData, m_strReason)) {
        Unrouted(record, link, m_strReason);
        return;
    }
    Emit(RouteHCI, record, link, pData, nData);
    // ACL data carries L2CAP, and inside it RFCOMM channels with AT command
    // lines (hands-free) or OBEX sessions: their routes join here, after the
    // HCI packet's own line, once L2CAP is put together per handle.
}

void CCaptureRouter::FeedForced(const SCaptureRecord& record)
{
    SResolvedRoute route;
    route.pEntry = m_pForced;
    route.options = m_forcedOptions;
    SPacketLink link;
    const std::uint8_t* pData = record.pData;
    std::size_t nData = record.nData;
    if (IsBluetooth(record.nLinkType)) {
        // The HCI packet with its own kind; a record of no HCI packet goes
        // whole.
        if (!TakeHCI(record, link, pData, nData, m_strReason)) {
            link = SPacketLink();
            pData = record.pData;
            nData = record.nData;
        }
    } else if (IsUsb(record.nLinkType)) {
        SUsbPacket packet;
        if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet)) {
            Unrouted(record, link, m_strReason = "record too short for its USB header");
            return;
        }
        link = SPacketLink::Of(packet);
        // The setup packet, where the record holds one, and the data.
        m_aPayload.assign(packet.aSetup, packet.aSetup + (packet.bSetup ? 8 : 0));
        m_aPayload.insert(m_aPayload.end(), packet.pData, packet.pData + packet.nData);
        pData = m_aPayload.data();
        nData = m_aPayload.size();
    }
    if (nData == 0) {
        Unrouted(record, link, m_strReason = "record with no payload");
        return;
    }
    EmitWith(route, record.nNumber, record.nTimeMicros, link, pData, nData);
}
