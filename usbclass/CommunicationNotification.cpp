// The communication notification walk and its notification table.
#include "usbclass/CommunicationNotification.h"

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CCommunicationNotificationSpec, CProtocolSpec)

// How the data part of a notification is read.
enum class ENotificationData : std::uint8_t {
    None,       // no data part
    Fields,     // the data fields, each with its default length
    CallState,  // by the call state change value
    LineState,  // one structure as long as the setup's length field says
};

// One row of the notification table.
struct SCommNotification {
    std::uint8_t nNotification;
    const char* pszName;
    unsigned short aSetupIds[4];  // the fields behind bNotification; 0 ends the list
    ENotificationData eData;
    unsigned short aDataIds[8];  // 0 ends the list
};

namespace {

using Spec = CCommunicationNotificationSpec;
using D = ENotificationData;

const SCommNotification kNotifications[] = {
    {0x00, "NetworkConnection", {Spec::FieldNetworkConnection, Spec::FieldInterface, Spec::FieldLength}, D::None,
     {}},
    {0x01, "ResponseAvailable", {Spec::FieldValue, Spec::FieldInterface, Spec::FieldLength}, D::None, {}},
    {0x08, "AuxJackHookState", {Spec::FieldAuxJackHookState, Spec::FieldInterface, Spec::FieldLength}, D::None, {}},
    {0x09, "RingDetect", {Spec::FieldValue, Spec::FieldInterface, Spec::FieldLength}, D::None, {}},
    // The UART state bitmap from bit 0 up.
    {0x20, "SerialState", {Spec::FieldValue, Spec::FieldInterface, Spec::FieldLength}, D::Fields,
     {Spec::FieldRXCarrier, Spec::FieldTXCarrier, Spec::FieldBreak, Spec::FieldRingSignal, Spec::FieldFraming,
      Spec::FieldParity, Spec::FieldOverRun, Spec::FieldUARTReserved}},
    // wValue holds the call state change value in its low byte and the
    // call index in its high byte.
    {0x28, "CallStateChange",
     {Spec::FieldCallStateChange, Spec::FieldCallIndex, Spec::FieldInterface, Spec::FieldLength}, D::CallState, {}},
    {0x29, "LineStateChange", {Spec::FieldLineStateChange, Spec::FieldInterface, Spec::FieldDataLength},
     D::LineState, {}},
    {0x2A, "ConnectionSpeedChange", {Spec::FieldValue, Spec::FieldInterface, Spec::FieldLength}, D::Fields,
     {Spec::FieldUpstreamBitRate, Spec::FieldDownstreamBitRate}},
};

// A code with no row of its own is read as a plain setup.
const SCommNotification kReservedNotification = {
    0xFF, "Reserved", {Spec::FieldValue, Spec::FieldInterface, Spec::FieldLength}, D::None, {}};

const SCommNotification& FindNotification(std::uint8_t nNotification)
{
    for (const SCommNotification& row : kNotifications)
        if (row.nNotification == nNotification)
            return row;
    return kReservedNotification;
}

// Call state change values whose notification carries data.
enum : std::uint8_t {
    kCallRingback = 3,
    kCallConnected = 4,
    kCallIncoming = 5,
};

}  // namespace

CCommunicationNotificationSpec::CCommunicationNotificationSpec()
{
    InitOptions();
}

unsigned long CCommunicationNotificationSpec::ReadRequestFields(const CAdvAnlzData& data,
                                                                CReqRespProtocolPacket& packet)
{
    m_counts.Reset();
    m_counts.CopyTo(packet);
    if (data.GetByteLength() < 1)
        return 0;
    // Every field of a notification is read: past the end of the payload
    // it stands with length 0.
    CWalk walk = Walk(data, packet, ReadPastEnd);
    walk.Read(FieldRecipient);
    walk.Read(FieldType);
    walk.Read(FieldDirection);
    const SCommNotification& row = FindNotification(walk.Read(FieldNotification));
    packet.SetRequestName(row.pszName);

    const std::uint8_t nCallState = walk.Peek(8);
    std::uint16_t wLength = 0;
    for (unsigned short nId : row.aSetupIds)
        if (nId != 0)
            wLength = walk.Read(nId);  // the last setup field is the length

    if (row.eData != ENotificationData::None) {
        m_counts.BeginResponse();
        packet.SetResponseName(row.pszName);
        packet.m_bHasResponse = 1;
        switch (row.eData) {
        case ENotificationData::Fields:
            for (unsigned short nId : row.aDataIds)
                if (nId != 0)
                    walk.Read(nId);
            break;
        case ENotificationData::CallState:
            ReadCallStateChangeFields(walk, nCallState);
            break;
        case ENotificationData::LineState:
            walk.Read(FieldLineStateStructure, SignedLengthBits(wLength));
            break;
        case ENotificationData::None:
            break;
        }
    }
    m_counts.CopyTo(packet);
    return walk.Consumed();
}

void CCommunicationNotificationSpec::ReadCallStateChangeFields(CWalk& walk, std::uint8_t nCallState)
{
    switch (nCallState) {
    case kCallRingback:
        walk.Read(FieldRingback);
        break;
    case kCallConnected:
        walk.Read(FieldConnection);
        break;
    case kCallIncoming:
        // The phone number and the party name are read as one byte each.
        walk.Read(FieldRingingPattern);
        walk.Read(FieldIncomingCallTime);
        walk.Read(FieldCallingNumber);
        walk.Read(FieldCallingName);
        break;
    default:
        break;
    }
}
