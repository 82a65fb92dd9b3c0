#include "storage/MassStorageBulkOnlyWrapper.h"

#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CMassStorageBulkOnlyWrapperSpec, CProtocolSpec)

CMassStorageBulkOnlyWrapperSpec* CMassStorageBulkOnlyWrapperSpec::ms_pInstance = nullptr;

CMassStorageBulkOnlyWrapperSpec* CMassStorageBulkOnlyWrapperSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CMassStorageBulkOnlyWrapperSpec();
    return ms_pInstance;
}

void CMassStorageBulkOnlyWrapperSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CMassStorageBulkOnlyWrapperSpec::CMassStorageBulkOnlyWrapperSpec()
{
    InitOptions();
}

const SSpecFieldAttr* CMassStorageBulkOnlyWrapperSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

int CMassStorageBulkOnlyWrapperSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet,
                                                         int /*nReserved*/)
{
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    CReqRespProtocolPacket& rrPacket = *pPacket;
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    rrPacket.Clean();
    ReadElements(data, rrPacket);
    const unsigned char nFindings = CheckProtocol(rrPacket);
    rrPacket.m_nRequestFields = m_nRequestFields;
    rrPacket.m_nResponseFields = m_nResponseFields;
    rrPacket.m_bHasResponse = 0;
    return nFindings == 0 ? 1 : 0;
}

unsigned long CMassStorageBulkOnlyWrapperSpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                         unsigned short nId, CAdvAnlzData& value,
                                                         EByteOrder eOrder, unsigned long dwLength)
{
    return ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
}

unsigned long CMassStorageBulkOnlyWrapperSpec::ReadElements(const CAdvAnlzData& data,
                                                            CReqRespProtocolPacket& packet)
{
    CAdvAnlzData w(data);
    if (w.GetByteLength() < 1)
        return 0;

    unsigned long dwTotal = 0;
    CAdvAnlzData value;
    // Reads one request field, drops its bits from the front and tells
    // whether anything is left.
    auto read = [&](unsigned short nId, EByteOrder eOrder = ByteOrderAsStored, unsigned long dwLength = 0) {
        const unsigned long dwBits = ReadField(w, packet, nId, value, eOrder, dwLength);
        dwTotal += dwBits;
        ++m_nRequestFields;
        w.Truncate(static_cast<std::uint32_t>(dwBits), CAdvAnlzData::kToEnd);
        return w.GetLength() != 0;
    };

    if (!read(FieldSignature))
        return dwTotal;
    const std::uint32_t dwSignature = value;

    if (dwSignature == kCBWSignature) {
        packet.SetRequestName("Command Block Wrapper");
        for (unsigned short nId : {FieldCBWTag, FieldDataTransportLength, FieldFlagsReserved, FieldFlagsObsolete,
                                   FieldFlagsDirection})
            if (!read(nId))
                return dwTotal;
        if (!read(FieldLUN, ByteOrderReversed, 4) || !read(FieldLUNReserved, ByteOrderReversed, 4) ||
            !read(FieldCBLength, ByteOrderReversed, 5) || !read(FieldCBLengthReserved, ByteOrderReversed, 3))
            return dwTotal;
        // The block takes up to its 16 bytes whatever "CB Length" says.
        read(FieldCB);
    } else if (dwSignature == kCSWSignature) {
        packet.SetRequestName("Command Status Wrapper");
        if (!read(FieldCSWTag) || !read(FieldDataResidue))
            return dwTotal;
        read(FieldStatus);
    }
    return dwTotal;
}
