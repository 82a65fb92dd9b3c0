#include "fuzz/DecodeAny.h"

#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "platform/Stream.h"
#include "registry/DecoderRegistry.h"

bool DecodeAnyDecoder(const std::uint8_t* pData, std::size_t nSize)
{
    const std::vector<SDecoderEntry>& aEntries = GetDecoderRegistry();
    if (nSize == 0 || aEntries.empty())
        return true;
    const SDecoderEntry& entry = aEntries[pData[0] % aEntries.size()];
    SDecodeOptions options;
    options.nHCIKind = (pData[0] / static_cast<int>(aEntries.size())) % 5;
    const CAdvAnlzData data = CAdvAnlzData::FromBytes(pData + 1, static_cast<std::uint32_t>((nSize - 1) * 8));

    std::unique_ptr<CProtocolPacket> pPacket = entry.pfnNewPacket(options);
    entry.pfnDecode(*pPacket, data, options);
    // A second decode into the same packet must replace the first.
    entry.pfnDecode(*pPacket, data, options);

    bool bSound = pPacket->GetFieldCount() <= CProtocolPacket::kMaxFields;
    const CProtocolSpec* pSpec = pPacket->GetSpec();
    unsigned long dwSum = 0;
    for (int i = 1; i <= pPacket->GetFieldCount(); ++i) {
        const unsigned char nIndex = static_cast<unsigned char>(i);
        const SSpecFieldAttr* pAttr = pPacket->GetFieldAttr(nIndex);
        const CAdvAnlzData* pValue = pPacket->GetFieldValue(nIndex);
        if (!pAttr || !pValue)
            return false;
        dwSum += pValue->GetLength();
        pSpec->GetFieldOptionName(pAttr->m_nId, *pValue);
        pSpec->GetFieldOptionAbbr(pAttr->m_nId, *pValue);
        unsigned long dwLength = 0;
        pPacket->GetFieldBriefPattern(nIndex, 6, dwLength, DisplayDecimal, 0);
    }
    bSound = bSound && dwSum == pPacket->GetPacketLength();
    if (const auto* pRR = dynamic_cast<const CReqRespProtocolPacket*>(pPacket.get()))
        bSound = bSound && pRR->m_nRequestFields + pRR->m_nResponseFields <= pPacket->GetFieldCount();

    CMemoryStream stream;
    if (pPacket->Save(&stream, 1) != S_OK)
        return false;
    stream.Rewind();
    std::unique_ptr<CProtocolPacket> pLoaded = entry.pfnNewPacket(options);
    if (pLoaded->Load(&stream) != S_OK || pLoaded->GetFieldCount() != pPacket->GetFieldCount())
        return false;
    for (int i = 1; i <= pPacket->GetFieldCount(); ++i)
        bSound = bSound && pLoaded->GetFieldAttr(static_cast<unsigned char>(i)) ==
                               pPacket->GetFieldAttr(static_cast<unsigned char>(i));
    return bSound;
}
