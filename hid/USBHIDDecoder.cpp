#include "hid/USBHIDDecoder.h"

int CUSBHIDDecoder::ms_nLiveDecoders = 0;

CUSBHIDDecoder::CUSBHIDDecoder(const SFieldTable& table) : m_table(table)
{
    ++ms_nLiveDecoders;
}

CUSBHIDDecoder::~CUSBHIDDecoder()
{
    --ms_nLiveDecoders;
}

const SSpecFieldAttr* CUSBHIDDecoder::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = m_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

int CUSBHIDDecoder::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    m_nRequestFields = 0;
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    pPacket->Clean();
    ReadElements(data, *pPacket);
    const unsigned char nFindings = CheckProtocol(*pPacket);
    pPacket->m_nRequestFields = m_nRequestFields;
    pPacket->m_nResponseFields = 0;
    pPacket->m_bHasResponse = 0;
    return nFindings == 0 ? 1 : 0;
}

unsigned long CUSBHIDDecoder::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                                        CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength)
{
    const unsigned char nBefore = packet.GetFieldCount();
    const unsigned long dwBits = ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
    if (packet.GetFieldCount() != nBefore)
        ++m_nRequestFields;
    return dwBits;
}

void CUSBHIDDecoder::ReadLeftover(CUSBHIDWalk& walk, unsigned short nId)
{
    if (walk.More())
        walk.Read(nId, walk.Data().GetLength());
}

bool CUSBHIDDecoder::Fits(CUSBHIDWalk& walk, int nFields, unsigned long dwBits)
{
    const int nRoom = CProtocolPacket::kMaxFields - walk.Packet().GetFieldCount();
    const bool bDataBehind = walk.Data().GetLength() > dwBits;
    return nFields + (bDataBehind ? 1 : 0) <= nRoom;
}

void CUSBHIDDecoder::Release(CUSBHIDDecoder* pDecoder)
{
    if (!pDecoder)
        return;
    if (pDecoder->m_nPackets == 0)
        delete pDecoder;
    else
        pDecoder->m_bReleased = true;
}

void CUSBHIDDecoder::DetachPacket()
{
    if (--m_nPackets == 0 && m_bReleased)
        delete this;
}
