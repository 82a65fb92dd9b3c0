// USB records to decoders: control transfers to the class decoder of the
// interface or device they address, interrupt IN data of hubs and
// communication interfaces to the notification decoders, bulk-only mass
// storage to the wrapper decoder and, command block with data phase, to the
// command set of the unit.

#include <cstdio>

#include "capture/CaptureRouter.h"

namespace {

constexpr std::uint8_t kGetDescriptor = 6;
constexpr std::uint8_t kGetDeviceId = 0;  // printer class
constexpr std::uint8_t kDescriptorHID = 0x21;
constexpr std::uint8_t kDescriptorReport = 0x22;
constexpr std::uint8_t kDescriptorPhysical = 0x23;

const char* StandardRequestName(std::uint8_t nRequest)
{
    static const char* const s_apszNames[] = {
        "GET_STATUS",  "CLEAR_FEATURE",     "reserved (2)",      "SET_FEATURE",   "reserved (4)",
        "SET_ADDRESS", "GET_DESCRIPTOR",    "SET_DESCRIPTOR",    "GET_CONFIGURATION", "SET_CONFIGURATION",
        "GET_INTERFACE", "SET_INTERFACE",   "SYNCH_FRAME",
    };
    return nRequest < sizeof s_apszNames / sizeof *s_apszNames ? s_apszNames[nRequest] : nullptr;
}

const char* ClassName(std::uint8_t nClass)
{
    switch (nClass) {
    case 0x01: return "audio";
    case 0x02: return "communications";
    case 0x03: return "HID";
    case 0x05: return "physical";
    case 0x06: return "image";
    case 0x07: return "printer";
    case 0x08: return "mass storage";
    case 0x09: return "hub";
    case 0x0A: return "CDC data";
    case 0x0B: return "smart card";
    case 0x0D: return "content security";
    case 0x0E: return "video";
    case 0x0F: return "personal healthcare";
    case 0x10: return "audio/video";
    case 0xDC: return "diagnostic";
    case 0xE0: return "wireless controller";
    case 0xEF: return "miscellaneous";
    case 0xFE: return "application specific";
    case 0xFF: return "vendor specific";
    default: return "unknown";
    }
}

// Why a transfer of this class has no route.
std::string ClassReason(const char* pszWhat, const SUsbClass& cls)
{
    if (!cls.bKnown)
        return std::string("USB ") + pszWhat + " of an interface of unknown class";
    switch (cls.nClass) {
    case UsbClassWireless:
        // HCI over USB (commands on endpoint 0, events on interrupt IN, ACL
        // on bulk) joins the Bluetooth routes here.
        return std::string("USB ") + pszWhat + " of a Bluetooth controller (HCI over USB is not routed yet)";
    case UsbClassCDCData:
        return std::string("USB ") + pszWhat + " of a CDC data interface (its AT lines are not routed yet)";
    default:
        break;
    }
    char szClass[8];
    std::snprintf(szClass, sizeof szClass, "0x%02x", cls.nClass);
    return std::string("USB ") + pszWhat + " of class " + szClass + " (" + ClassName(cls.nClass) + ")";
}

// Whether a record carries the transfer's data: an OUT transfer's at its
// submission, an IN transfer's at its completion.
bool CarriesData(const SUsbPacket& packet)
{
    return packet.nData > 0 && (packet.bIn ? packet.eEvent != UsbSubmit : packet.eEvent == UsbSubmit);
}

const char* const kNoData = "USB record with no data (an IN transfer's submission, an OUT transfer's completion)";

}  // namespace

SUsbClass CCaptureRouter::ClassOfEndpoint(const SCaptureRecord& record, const SUsbPacket& packet) const
{
    const int nInterface =
        m_devices.InterfaceOf(packet.nBus, packet.nDevice,
                              static_cast<std::uint8_t>(packet.nEndpoint | (packet.bIn ? 0x80 : 0)));
    SUsbClass cls = m_devices.ClassOf(packet.nBus, packet.nDevice, nInterface);
    // Linux gives each bus's root hub address 1, and its enumeration is
    // never on the wire.
    if (!cls.bKnown && packet.nDevice == 1 && record.nLinkType != LinkTypeUsbPcap)
        cls = SUsbClass{true, UsbClassHub, 0, 0};
    return cls;
}

void CCaptureRouter::FeedUsb(const SCaptureRecord& record)
{
    SUsbPacket packet;
    if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet)) {
        Unrouted(record, SPacketLink(), m_strReason = "record too short for its USB header");
        return;
    }
    SPacketLink link = SPacketLink::Of(packet);
    switch (packet.eTransfer) {
    case UsbControl:
        FeedUsbControl(record, packet, link);
        return;
    case UsbInterrupt:
        FeedUsbInterrupt(record, packet, link);
        return;
    case UsbBulk:
        FeedUsbBulk(record, packet, link);
        return;
    case UsbIsochronous:
        Unrouted(record, link, m_strReason = "USB isochronous transfer");
        return;
    default:
        Unrouted(record, link, m_strReason = "USB request that is no transfer (pipe reset, abort or unknown)");
        return;
    }
}

void CCaptureRouter::FeedUsbControl(const SCaptureRecord& record, const SUsbPacket& packet, SPacketLink& link)
{
    if (m_control.Add(packet, record.nNumber, record.nTimeMicros)) {
        const SUsbControlTransfer& transfer = m_control.Transfer();
        m_devices.Learn(transfer);
        link.nEndpoint = transfer.nEndpoint;
        link.bIn = (transfer.aSetup[0] & 0x80) != 0;
        RouteControlTransfer(record, transfer, link);
    } else if (m_control.Orphan()) {
        Unrouted(record, link, m_strReason = "USB control transfer whose setup stage is not in the capture");
    }
    // Otherwise the record is a stage of an open transfer, taken with it.
}

void CCaptureRouter::RouteControlTransfer(const SCaptureRecord& record, const SUsbControlTransfer& transfer,
                                          SPacketLink& link)
{
    const std::uint8_t nRequestType = transfer.aSetup[0], nRequest = transfer.aSetup[1];
    const std::uint8_t nType = (nRequestType >> 5) & 3, nRecipient = nRequestType & 0x1F;
    const std::uint8_t nDescriptor = transfer.aSetup[3];  // high byte of wValue
    const std::uint8_t nIndexLow = transfer.aSetup[4];
    // The interface addressed: wIndex names it, or the endpoint it owns.
    int nInterface = -1;
    if (nRecipient == 1)
        nInterface = nIndexLow;
    else if (nRecipient == 2)
        nInterface = m_devices.InterfaceOf(transfer.nBus, transfer.nDevice, nIndexLow);
    // The printer's GET_DEVICE_ID names its interface in the high byte of
    // wIndex (the low byte is the alternate setting).
    if (nType == 1 && nRecipient == 1 && nRequest == kGetDeviceId) {
        const SUsbClass high = m_devices.ClassOf(transfer.nBus, transfer.nDevice, transfer.aSetup[5]);
        if (high.bKnown && high.nClass == UsbClassPrinter)
            nInterface = transfer.aSetup[5];
    }

    // Setup-shaped payloads: the eight setup bytes, then the data stage.
    m_aPayload.assign(transfer.aSetup, transfer.aSetup + 8);
    m_aPayload.insert(m_aPayload.end(), transfer.aData.begin(), transfer.aData.end());

    SUsbClass cls = m_devices.ClassOf(transfer.nBus, transfer.nDevice, nInterface);
    if (!cls.bKnown && transfer.nDevice == 1 && record.nLinkType != LinkTypeUsbPcap && nRecipient != 1)
        cls = SUsbClass{true, UsbClassHub, 0, 0};  // a Linux root hub

    if (nType == 0) {
        // The HID descriptors are read with a standard GET_DESCRIPTOR to the
        // interface; the report and physical descriptor types are HID's own.
        if (nRequest == kGetDescriptor && nRecipient == 1 && nDescriptor >= kDescriptorHID &&
            nDescriptor <= kDescriptorPhysical &&
            (cls.bKnown ? cls.nClass == UsbClassHID : nDescriptor != kDescriptorHID)) {
            const ERoute eRoute = nDescriptor == kDescriptorHID      ? RouteHIDDescriptor
                                  : nDescriptor == kDescriptorReport ? RouteHIDReportDescriptor
                                                                     : RouteHIDPhysicalDescriptor;
            Emit(eRoute, record, link, m_aPayload.data(), m_aPayload.size());
            return;
        }
        const char* pszName = StandardRequestName(nRequest);
        m_strReason = std::string("USB standard request ") + (pszName ? pszName : "of unknown code");
        Unrouted(record, link, m_strReason, m_aPayload.data(), m_aPayload.size());
        return;
    }
    if (nType != 1) {
        m_strReason = nType == 2 ? "USB vendor request" : "USB request of the reserved type";
        Unrouted(record, link, m_strReason, m_aPayload.data(), m_aPayload.size());
        return;
    }
    if (nRecipient == 3) {
        // Requests to "other" are a hub's requests to its ports.
        m_devices.NoteHub(transfer.nBus, transfer.nDevice);
        cls = SUsbClass{true, UsbClassHub, 0, 0};
    }
    switch (cls.bKnown ? cls.nClass : -1) {
    case UsbClassHub:
        Emit(RouteHubRequest, record, link, m_aPayload.data(), m_aPayload.size());
        return;
    case UsbClassCDC:
    case UsbClassCDCData:
        Emit(RouteCDCRequest, record, link, m_aPayload.data(), m_aPayload.size());
        return;
    case UsbClassPrinter:
        Emit(RoutePrinterRequest, record, link, m_aPayload.data(), m_aPayload.size());
        return;
    case UsbClassHID:
        Emit(RouteHIDRequest, record, link, m_aPayload.data(), m_aPayload.size());
        return;
    default:
        m_strReason = ClassReason("class request", cls);
        Unrouted(record, link, m_strReason, m_aPayload.data(), m_aPayload.size());
        return;
    }
}

void CCaptureRouter::FeedUsbInterrupt(const SCaptureRecord& record, const SUsbPacket& packet,
                                      const SPacketLink& link)
{
    if (!CarriesData(packet)) {
        Unrouted(record, link, m_strReason = kNoData);
        return;
    }
    const SUsbClass cls = ClassOfEndpoint(record, packet);
    if (packet.bIn && cls.bKnown && cls.nClass == UsbClassHub) {
        Emit(RouteHubNotification, record, link, packet.pData, packet.nData);
    } else if (packet.bIn && cls.bKnown && cls.nClass == UsbClassCDC) {
        Emit(RouteCDCNotification, record, link, packet.pData, packet.nData);
    } else {
        Unrouted(record, link, m_strReason = ClassReason(packet.bIn ? "interrupt IN transfer" : "interrupt OUT transfer", cls));
    }
}

void CCaptureRouter::FeedUsbBulk(const SCaptureRecord& record, const SUsbPacket& packet, const SPacketLink& link)
{
    if (!CarriesData(packet)) {
        Unrouted(record, link, m_strReason = kNoData);
        return;
    }
    const SUsbClass cls = ClassOfEndpoint(record, packet);
    const bool bMassStorage = cls.bKnown && cls.nClass == UsbClassMassStorage;
    // Without the enumeration, bulk-only traffic shows itself by the
    // wrappers' signatures.
    if ((bMassStorage || !cls.bKnown) && FeedBulkOnly(record, packet, link, cls))
        return;
    if (bMassStorage)
        m_strReason = "USB bulk-only data outside a command (its command block wrapper is not in the capture)";
    else
        m_strReason = ClassReason("bulk transfer", cls);
    Unrouted(record, link, m_strReason);
}

bool CCaptureRouter::FeedBulkOnly(const SCaptureRecord& record, const SUsbPacket& packet, const SPacketLink& link,
                                  const SUsbClass& cls)
{
    SBulkOnlySession* pSession = m_bulkOnly.Find(packet.nBus, packet.nDevice, false);
    const auto Touch = [&](SBulkOnlySession& session) {
        session.nLastFrame = record.nNumber;
        session.nLastTime = record.nTimeMicros;
        session.nLastEndpoint = packet.nEndpoint;
        session.bLastIn = packet.bIn;
    };
    if (!packet.bIn) {
        const bool bData = pSession && pSession->AwaitsData(false) &&
                           (pSession->nOutEndpoint == 0 || pSession->nOutEndpoint == packet.nEndpoint);
        if (!bData && IsCommandBlockWrapper(packet.pData, packet.nData)) {
            if (!(pSession = m_bulkOnly.Find(packet.nBus, packet.nDevice, true)))
                return false;
            // A command whose status never came ends where the next begins.
            if (pSession->bOpen)
                EmitCommand(*pSession, record.nNumber, record.nTimeMicros, link);
            Emit(RouteBulkOnlyWrapper, record, link, packet.pData, packet.nData);
            pSession->Open(packet.pData, cls.bKnown ? cls.nSubClass : 0);
            pSession->nOutEndpoint = packet.nEndpoint;
            Touch(*pSession);
            return true;
        }
        if (pSession && pSession->bOpen && !pSession->bDataIn &&
            (pSession->nOutEndpoint == 0 || pSession->nOutEndpoint == packet.nEndpoint)) {
            pSession->AddData(packet.pData, packet.nData);
            Touch(*pSession);
            return true;
        }
        return false;
    }

    const bool bStatus = IsCommandStatusWrapper(packet.pData, packet.nData);
    if (pSession && pSession->bOpen && (pSession->nInEndpoint == 0 || pSession->nInEndpoint == packet.nEndpoint)) {
        // A status of the command's tag ends it even where the data phase
        // fell short; another signature counts as status only once the data
        // phase is whole.
        const std::uint32_t nTag = bStatus ? static_cast<std::uint32_t>(packet.pData[4] | packet.pData[5] << 8 |
                                                                        packet.pData[6] << 16 |
                                                                        static_cast<std::uint32_t>(packet.pData[7]) << 24)
                                           : 0;
        if (bStatus && (nTag == pSession->nTag || !pSession->AwaitsData(true))) {
            pSession->nInEndpoint = packet.nEndpoint;
            EmitCommand(*pSession, record.nNumber, record.nTimeMicros, link);
            Emit(RouteBulkOnlyWrapper, record, link, packet.pData, packet.nData);
            return true;
        }
        if (pSession->bDataIn) {
            pSession->AddData(packet.pData, packet.nData);
            Touch(*pSession);
            return true;
        }
        return false;
    }
    if (bStatus) {
        // The status of a command whose wrapper came before the capture began.
        if ((pSession = m_bulkOnly.Find(packet.nBus, packet.nDevice, true)))
            pSession->nInEndpoint = packet.nEndpoint;
        Emit(RouteBulkOnlyWrapper, record, link, packet.pData, packet.nData);
        return true;
    }
    return false;
}

void CCaptureRouter::EmitCommand(SBulkOnlySession& session, std::uint64_t nFrame, std::int64_t nTime,
                                 const SPacketLink& link)
{
    const ERoute eRoute = session.TakeCommand(m_aPayload);
    EmitWith(m_aRoutes[eRoute], nFrame, nTime, link, m_aPayload.data(), m_aPayload.size());
}

void CCaptureRouter::Finish()
{
    for (const CBulkOnlySessions::SOpen& open : m_bulkOnly.OpenSessions()) {
        SPacketLink link;
        link.eKind = SPacketLink::Usb;
        link.nBus = open.nBus;
        link.nDevice = open.nDevice;
        link.nEndpoint = open.pSession->nLastEndpoint;
        link.bIn = open.pSession->bLastIn;
        link.eTransfer = UsbBulk;
        EmitCommand(*open.pSession, open.pSession->nLastFrame, open.pSession->nLastTime, link);
    }
}
