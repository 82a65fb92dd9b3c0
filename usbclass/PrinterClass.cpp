// The printer class walk: the setup, then the data stage of the request.
#include "usbclass/PrinterClass.h"

#include <cstdint>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CPrinterClassSpec, CProtocolSpec)

namespace {

// Printer class requests.
enum : std::uint8_t {
    kGetDeviceId = 0,
    kGetPortStatus = 1,
    kSoftReset = 2,
};

}  // namespace

CPrinterClassSpec::CPrinterClassSpec()
{
    InitOptions();
}

unsigned long CPrinterClassSpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    // Nothing is read once the payload is used up.
    CWalk walk = Walk(data, packet, StopWhenEmpty);
    if (!walk.ReadList({FieldRecipient, FieldType, FieldDirection}))
        return walk.Consumed();
    const std::uint8_t nRequest = walk.Read(FieldRequest);
    if (!walk.More() || !walk.ReadList({FieldValue, FieldIndex}))
        return walk.Consumed();
    // A setup cut inside wLength still names the request.
    const std::uint16_t wLength = walk.Read(FieldLength);

    switch (nRequest) {
    case kGetDeviceId:
        packet.SetRequestName("GET_DEVICE_ID");
        packet.SetResponseName("DEVICE_ID");
        packet.m_bHasResponse = 1;
        m_counts.BeginResponse();
        // The id string with its two length bytes, as long as wLength says.
        walk.Read(FieldData, wLength * 8u);
        break;
    case kGetPortStatus:
        packet.SetRequestName("GET_PORT_STATUS");
        packet.SetResponseName("PORT_STATUS");
        packet.m_bHasResponse = 1;
        m_counts.BeginResponse();
        // The status byte from bit 0 up.
        walk.ReadList({FieldReservedLow, FieldError, FieldSelect, FieldPaper, FieldReservedHigh});
        break;
    case kSoftReset:
        packet.SetRequestName("SOFT_RESET");
        packet.m_bHasResponse = 0;
        break;
    default:
        break;
    }
    return walk.Consumed();
}
