// The hub class walk: bmRequestType and bRequest, then the path of the
// request, chosen by bRequest and the recipient.
#include "usbclass/HubClass.h"

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CHubClassSpec, CProtocolSpec)

namespace {

// Recipients of bmRequestType that choose a path.
enum : std::uint8_t {
    kRecipientHub = 0,  // the device, which for a hub request is the hub
    kRecipientInterface = 1,
    kRecipientPort = 3,  // "other": a port of the hub
};

// Hub class requests with paths of their own, and the last code of the
// table (a second Set Feature).
enum : std::uint8_t {
    kGetStatus = 0,
    kClearFeature = 1,
    kGetDescriptor = 6,
    kSetDescriptor = 7,
    kClearTTBuffer = 8,
    kGetTTState = 10,
    kLastRequest = 12,
};

// Names of the requests whose setup is read plainly (feature selector,
// wIndex, wLength) and that have no data stage; null for the others.
const char* const kPlainRequestNames[kLastRequest + 1] = {
    nullptr,      nullptr, "Reserved For Get State", "Set Feature", "Reserved For Feature", nullptr, nullptr,
    nullptr,      nullptr, "Reset TT",               nullptr,       "Stop TT",              "Set Feature",
};

}  // namespace

CHubClassSpec::CHubClassSpec()
{
    SetReferenceStrings(RefCompareName);
    InitOptions();
}

unsigned long CHubClassSpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    CWalk walk = Walk(data, packet, ReadPastEnd);
    const std::uint8_t nRecipient = walk.Read(FieldRecipient);
    if (!walk.More() || !walk.ReadOn(FieldType) || !walk.ReadOn(FieldDirection))
        return walk.Consumed();
    // No test behind bRequest: some paths read the feature selector even
    // when the payload ends here, as a field of no bits.
    const std::uint8_t nRequest = walk.Read(FieldRequest);

    if (nRequest > kLastRequest) {
        // Codes above the table go by their low six bits: those that fall
        // on a request of the table end here, the others are unknown.
        if ((nRequest & 0x3F) < kLastRequest)
            return walk.Consumed();
        packet.SetRequestName("UnKnown");
        if (walk.ReadOn(FieldFeatureSelector))
            walk.ReadList({FieldIndex, FieldLength});
        return walk.Consumed();
    }

    switch (nRequest) {
    case kGetStatus:
        ReadGetStatus(walk, nRecipient);
        break;
    case kClearFeature:
        packet.SetRequestName("Clear Feature");
        packet.SetResponseName("Fselector");
        if (!walk.More())
            break;
        // To a port, wIndex holds the port and a selector byte.
        if (nRecipient == kRecipientPort)
            walk.ReadList({FieldFeatureSelector, FieldIndexPort, FieldIndexSelector, FieldLength});
        else
            walk.ReadList({FieldFeatureSelector, FieldIndex, FieldLength});
        break;
    case kGetDescriptor:
    case kSetDescriptor:
        packet.SetRequestName(nRequest == kGetDescriptor ? "Get Descriptor" : "Set Descriptor");
        packet.SetResponseName("Descriptor");
        packet.m_bHasResponse = 1;
        if (!walk.More() || !walk.ReadList({FieldFeatureSelector, FieldIndex, FieldLength}))
            break;
        // Whatever the direction, a data stage to the hub is shown as the
        // hub descriptor.
        if (nRecipient == kRecipientHub)
            ReadHubDescriptor(walk);
        break;
    case kClearTTBuffer:
        ReadClearTTBuffer(walk, nRecipient);
        break;
    case kGetTTState:
        packet.SetRequestName("Get TT State");
        packet.SetResponseName("TT State");
        if (!walk.ReadOn(FieldFeatureSelector) || !walk.ReadList({FieldIndex, FieldLength}))
            break;
        packet.m_bHasResponse = 1;
        m_counts.BeginResponse();
        walk.ReadList({FieldReturnFlag, FieldSpecificState});
        break;
    default:
        // Request 5 has no row: like the codes that fall on the table by
        // their low bits, it ends behind bRequest.
        if (!kPlainRequestNames[nRequest])
            break;
        packet.SetRequestName(kPlainRequestNames[nRequest]);
        if (walk.ReadOn(FieldFeatureSelector))
            walk.ReadList({FieldIndex, FieldLength});
        break;
    }
    return walk.Consumed();
}

void CHubClassSpec::ReadGetStatus(CWalk& walk, std::uint8_t nRecipient)
{
    CReqRespProtocolPacket& packet = walk.Packet();
    packet.SetRequestName("Get Status");
    if (!walk.ReadOn(FieldFeatureSelector) || !walk.ReadList({FieldIndex, FieldLength}))
        return;
    // A data stage follows: the status word, then the change word.
    packet.m_bHasResponse = 1;
    m_counts.BeginResponse();
    if (nRecipient == kRecipientHub) {
        packet.SetResponseName("Hub Status");
        walk.ReadList({FieldLocalPowerStatus, FieldOverCurrentStatus, FieldReservedStatus, FieldLocalPowerChanged,
                       FieldOverCurrentChanged, FieldReservedChanged});
    } else if (nRecipient == kRecipientPort) {
        packet.SetResponseName("Port Status");
        walk.ReadList({FieldPortConnection, FieldPortEnable, FieldPortSuspend, FieldPortOverCurrent, FieldPortReset,
                       FieldPortReservedLow, FieldPortPower, FieldPortLowSpeed, FieldPortHighSpeed, FieldPortTest,
                       FieldPortIndicator, FieldPortReservedHigh, FieldCPortConnection, FieldCPortEnable,
                       FieldCPortSuspend, FieldCPortOverCurrent, FieldCPortReset, FieldCPortReserved});
    }
}

void CHubClassSpec::ReadClearTTBuffer(CWalk& walk, std::uint8_t nRecipient)
{
    CReqRespProtocolPacket& packet = walk.Packet();
    packet.SetRequestName("Clear TT Buffer");
    packet.SetResponseName("TT Buffer");
    if (nRecipient == kRecipientInterface) {
        // A second wIndex and wLength are read when bytes follow.
        if (walk.ReadOn(FieldFeatureSelector) && walk.ReadList({FieldIndex, FieldLength}))
            walk.ReadList({FieldIndex, FieldLength});
        return;
    }
    if (!walk.More())
        return;
    if (nRecipient == kRecipientPort)
        // wValue names the endpoint whose buffer is cleared.
        walk.ReadList({FieldTTEndpointNumber, FieldTTDeviceAddress, FieldTTEndpointType, FieldTTReserved,
                       FieldTTDirection, FieldIndex, FieldLength});
    else
        walk.ReadList({FieldIndex, FieldLength});
}

void CHubClassSpec::ReadHubDescriptor(CWalk& walk)
{
    m_counts.BeginResponse();
    if (!walk.ReadList({FieldDescLength, FieldDescriptorType}))
        return;
    const std::uint8_t nPorts = walk.Read(FieldNbrPorts);
    if (!walk.More())
        return;
    // wHubCharacteristics, then the power-on delay and the controller current.
    if (!walk.ReadList({FieldLogicalPower, FieldCompoundDevice, FieldOverCurrentMode, FieldTTThinkTime,
                        FieldPortIndicatorSupport, FieldCharacteristicsReserved, FieldPwrOn2PwrGood,
                        FieldHubContrCurrent}))
        return;
    // Two bit maps of one bit per port behind a reserved bit 0.
    if (ReadPortBitmap(walk, FieldDeviceRemovable, FieldDeviceRemovableReserved, nPorts, m_removableNames))
        ReadPortBitmap(walk, FieldPortPwrCtrlMask, FieldPortPwrCtrlMaskReserved, nPorts, m_powerMaskNames);
}

bool CHubClassSpec::ReadPortBitmap(CWalk& walk, unsigned short nBitId, unsigned short nPadId,
                                   std::uint8_t nPorts, CNumberedNames& names)
{
    walk.Read(nPadId, 1);
    for (std::uint8_t i = 0; i < nPorts; ++i) {
        if (!walk.More())
            return false;
        walk.ReadRenamed(nBitId, i, &names.Get(i + 1u), nullptr, nullptr);
    }
    if (!walk.More())
        return false;
    // The map fills whole bytes: bit 0 and the port bits, then a pad.
    const unsigned nUsed = (nPorts + 1u) % 8u;
    if (nUsed != 0)
        return walk.ReadOn(nPadId, 8u - nUsed);
    return true;
}
