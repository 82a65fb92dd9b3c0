// The printer class walk: the setup, then the data stage of the request.
#include "usbclass/PrinterClass.h"

#include <cstdint>
#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CPrinterClassSpec, CProtocolSpec)

CPrinterClassSpec* CPrinterClassSpec::ms_pInstance = nullptr;

namespace {

// Printer class requests.
enum : std::uint8_t {
    kGetDeviceId = 0,
    kGetPortStatus = 1,
    kSoftReset = 2,
};

}  // namespace

CPrinterClassSpec* CPrinterClassSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CPrinterClassSpec();
    return ms_pInstance;
}

void CPrinterClassSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CPrinterClassSpec::CPrinterClassSpec()
{
    InitOptions();
}

const SSpecFieldAttr* CPrinterClassSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

int CPrinterClassSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
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
    // The walk has set the response flag; only the counts are copied.
    m_counts.CopyTo(*pPacket);
    return nFindings == 0 ? 1 : 0;
}

unsigned long CPrinterClassSpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                           unsigned short nId, CAdvAnlzData& value, EByteOrder eOrder,
                                           unsigned long dwLength)
{
    const unsigned char nBefore = packet.GetFieldCount();
    const unsigned long dwBits = ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
    m_counts.Count(packet, nBefore);
    return dwBits;
}

unsigned long CPrinterClassSpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    // Nothing is read once the payload is used up.
    CFieldCursor<CPrinterClassSpec> walk(*this, &CPrinterClassSpec::ReadField, StopWhenEmpty, data, packet);
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
