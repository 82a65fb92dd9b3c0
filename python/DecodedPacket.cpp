#include "python/DecodedPacket.h"

#include <algorithm>
#include <cstring>
#include <utility>

void CDecodedBatch::Clear()
{
    m_nBytes = 0;
    m_aPackets.clear();
    m_aFields.clear();
    m_aErrors.clear();
    m_aExtras.clear();
    m_aNumbers.clear();
    m_aItems.clear();
}

void CDecodedBatch::Grow(std::size_t n)
{
    const std::size_t nCapacity = std::max({2 * m_nCapacity, m_nBytes + n, std::size_t{4096}});
    std::unique_ptr<char[]> pBytes(new char[nCapacity]);
    if (m_nBytes)
        std::memcpy(pBytes.get(), m_pBytes.get(), m_nBytes);
    m_pBytes = std::move(pBytes);
    m_nCapacity = nCapacity;
}

SBytesRef CDecodedBatch::AddBytes(const char* p, std::size_t n)
{
    SBytesRef ref;
    ref.nOffset = m_nBytes;
    ref.nLength = n;
    if (n) {
        std::memcpy(Reserve(n), p, n);
        m_nBytes += n;
    }
    return ref;
}

// The value's bytes as stored, first byte first, bits above the length 0.
SBytesRef CDecodedBatch::AddValue(const CAdvAnlzData& value)
{
    SBytesRef ref;
    ref.nOffset = m_nBytes;
    ref.nLength = value.GetByteLength();
    if (ref.nLength) {
        value.GetStream(reinterpret_cast<std::uint8_t*>(Reserve(ref.nLength)));
        m_nBytes += ref.nLength;
    }
    return ref;
}

void CDecodedBatch::Add(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult)
{
    const CReqRespProtocolPacket* pRR = dynamic_cast<const CReqRespProtocolPacket*>(&packet);
    const CProtocolSpec* pSpec = packet.GetSpec();
    SDecodedPacket p;
    p.pEntry = &entry;
    p.nResult = nResult;
    if (pRR) {
        p.requestName = AddText(pRR->m_strRequestName);
        p.responseName = AddText(pRR->m_strResponseName);
        p.nRequestFields = pRR->m_nRequestFields;
        p.nResponseFields = pRR->m_nResponseFields;
        p.nHasResponse = pRR->m_bHasResponse;
    }
    p.nFormat = packet.m_byPacketFormat;

    p.nFirstError = m_aErrors.size();
    for (std::uint16_t nCode : packet.GetPErrors())
        m_aErrors.push_back(nCode);
    p.nErrors = m_aErrors.size() - p.nFirstError;

    p.nFirstField = m_aFields.size();
    p.nFields = packet.GetFieldCount();
    for (int i = 1; i <= packet.GetFieldCount(); ++i) {
        const unsigned char nIndex = static_cast<unsigned char>(i);
        const SSpecFieldAttr* pAttr = packet.GetFieldAttr(nIndex);
        const CAdvAnlzData& value = *packet.GetFieldValue(nIndex);
        SDecodedField f;
        f.nId = pAttr ? pAttr->m_nId : 0;
        f.dwLength = value.GetLength();
        f.value = AddValue(value);
        if (pAttr) {
            f.pRecord = pAttr;
            f.name = AddText(pAttr->m_strName);
            f.abbr = AddText(pAttr->m_strAbbr);
            f.dwOffset = pAttr->m_dwOffset;
            f.dwRecordLength = pAttr->m_dwLength;
        }
        if (pSpec) {
            f.option = AddText(pSpec->GetFieldOptionName(f.nId, value));
            f.optionAbbr = AddText(pSpec->GetFieldOptionAbbr(f.nId, value));
        }
        m_aFields.push_back(f);
    }

    p.nFirstExtra = m_aExtras.size();
    if (entry.pfnExtras) {
        for (const SPacketExtra& extra : entry.pfnExtras(packet)) {
            SDecodedExtra e;
            e.key = AddText(extra.strKey);
            e.eKind = extra.eKind;
            e.nNumber = extra.nNumber;
            switch (extra.eKind) {
            case SPacketExtra::Number:
                break;
            case SPacketExtra::NumberList:
                e.nFirst = m_aNumbers.size();
                e.nCount = extra.aNumbers.size();
                m_aNumbers.insert(m_aNumbers.end(), extra.aNumbers.begin(), extra.aNumbers.end());
                break;
            case SPacketExtra::ItemList:
                e.nFirst = m_aItems.size();
                e.nCount = extra.aItems.size();
                for (const SExtraItem& item : extra.aItems)
                    m_aItems.push_back(SDecodedItem{AddText(item.strText), AddValue(item.value)});
                break;
            }
            m_aExtras.push_back(e);
        }
    }
    p.nExtras = m_aExtras.size() - p.nFirstExtra;
    m_aPackets.push_back(p);
}
