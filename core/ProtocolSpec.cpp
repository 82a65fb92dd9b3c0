#include "core/ProtocolSpec.h"

#include "core/ProtocolPacket.h"

const CRuntimeClass CProtocolSpec::classCProtocolSpec = {"CProtocolSpec", static_cast<int>(sizeof(CProtocolSpec)),
                                                         &CObject::classCObject};

void CFieldOptionList::Add(const SFieldOption& option)
{
    m_aOptions.push_back(option);
    m_bNumericBounds = m_bNumericBounds && option.m_Low.GetLength() <= 64 && option.m_High.GetLength() <= 64;
    if (m_bNumericBounds)
        m_aNumericBounds.emplace_back(option.m_Low.GetNumber64(), option.m_High.GetNumber64());
    else
        m_aNumericBounds.clear();
}

const SFieldOption* CFieldOptionList::Find(const CAdvAnlzData& value) const noexcept
{
    if (m_bNumericBounds && value.GetLength() <= 64) {
        const std::uint64_t n = value.GetNumber64();
        for (std::size_t i = 0; i < m_aNumericBounds.size(); ++i)
            if (m_aNumericBounds[i].first <= n && n <= m_aNumericBounds[i].second)
                return &m_aOptions[i];
        return nullptr;
    }
    for (const SFieldOption& option : m_aOptions)
        if (option.Matches(value))
            return &option;
    return nullptr;
}

CProtocolSpec::CProtocolSpec() = default;

CProtocolSpec::~CProtocolSpec() = default;

CString CProtocolSpec::GetFieldDescription(unsigned short nId, const CAdvAnlzData* /*pValue*/) const
{
    const SSpecFieldAttr* pAttr = GetDefaultFieldAttr(nId);
    return pAttr ? pAttr->m_strDesc : CString();
}

CString CProtocolSpec::GetFieldOptionName(unsigned short nId, const CAdvAnlzData& value) const
{
    const CFieldOptionList* pList = GetFieldOptions(nId);
    const SFieldOption* pOption = pList ? pList->Find(value) : nullptr;
    return pOption ? pOption->m_strName : CString();
}

CString CProtocolSpec::GetFieldOptionAbbr(unsigned short nId, const CAdvAnlzData& value) const
{
    const CFieldOptionList* pList = GetFieldOptions(nId);
    const SFieldOption* pOption = pList ? pList->Find(value) : nullptr;
    return pOption ? pOption->m_strAbbr : CString();
}

const SSpecFieldAttr* CProtocolSpec::GetDefaultFieldAttr(unsigned short /*nId*/) const
{
    return nullptr;
}

unsigned short CProtocolSpec::GetLayerFieldId(int /*nIndex*/) const
{
    return 0;
}

CString CProtocolSpec::GetLayerFieldName(unsigned short /*nId*/)
{
    return CString();
}

const SSpecFieldAttr* CProtocolSpec::GetFieldReference(const SSpecFieldAttr& attr)
{
    return InternFieldAttr(attr, RefCompareNone);
}

const SSpecFieldAttr* CProtocolSpec::InternFieldAttr(const SSpecFieldAttr& attr)
{
    return InternFieldAttr(attr, m_nReferenceStrings);
}

const SSpecFieldAttr* CProtocolSpec::InternFieldAttr(const SSpecFieldAttr& attr, unsigned nStrings)
{
    return Intern(SRefKey{attr.m_nId, attr.m_dwOffset, attr.m_dwLength, attr.m_dwMinLength, attr.m_dwMaxLength},
                  attr, nStrings);
}

const SSpecFieldAttr* CProtocolSpec::Intern(const SRefKey& key, const SSpecFieldAttr& strings, unsigned nStrings)
{
    std::vector<std::unique_ptr<SSpecFieldAttr>>& group = m_mapReferences[key];
    for (const std::unique_ptr<SSpecFieldAttr>& p : group) {
        if ((nStrings & RefCompareName) && p->m_strName.Compare(strings.m_strName) != 0)
            continue;
        if ((nStrings & RefCompareAbbr) && p->m_strAbbr.Compare(strings.m_strAbbr) != 0)
            continue;
        if ((nStrings & RefCompareDesc) && p->m_strDesc.Compare(strings.m_strDesc) != 0)
            continue;
        return p.get();
    }
    group.push_back(std::make_unique<SSpecFieldAttr>(key.nId, strings.m_strName, strings.m_strAbbr,
                                                     strings.m_strDesc, key.dwOffset, key.dwLength, key.dwMinLength,
                                                     key.dwMaxLength));
    ++m_nReferences;
    return group.back().get();
}

const CFieldOptionList* CProtocolSpec::GetFieldOptions(unsigned short nId) const
{
    const auto it = m_mapOptions.find(nId);
    return it == m_mapOptions.end() ? nullptr : it->second;
}

bool CProtocolSpec::GetFormat(int nIndex, unsigned char& nCode, CString& strName) const
{
    if (nIndex < 0 || nIndex >= GetFormatCount())
        return false;
    nCode = m_aFormats[static_cast<std::size_t>(nIndex)].first;
    strName = m_aFormats[static_cast<std::size_t>(nIndex)].second;
    return true;
}

int CProtocolSpec::AddFormat(unsigned char nCode, const CString& strName)
{
    m_aFormats.emplace_back(nCode, strName);
    return GetFormatCount() - 1;
}

void CProtocolSpec::AddOptionList(unsigned short nFieldId, std::uint8_t nWidth, const SOptionRow* pRows,
                                  std::size_t nRows)
{
    CFieldOptionList*& pList = m_mapOptions[nFieldId];
    if (!pList) {
        m_aOptionLists.push_back(std::make_unique<CFieldOptionList>(nFieldId));
        pList = m_aOptionLists.back().get();
    }
    for (std::size_t i = 0; i < nRows; ++i) {
        const SOptionRow& row = pRows[i];
        pList->Add(SFieldOption(row.pszName, row.nOptionId, CAdvAnlzData(row.dwLow, nWidth),
                                CAdvAnlzData(row.dwHigh, nWidth), row.pszAbbr ? row.pszAbbr : row.pszName));
    }
}

unsigned long CProtocolSpec::ReadFieldWith(const CAdvAnlzData& data, CProtocolPacket& packet, unsigned short nId,
                                           const SSpecFieldAttr* pDefault, CAdvAnlzData& value, int eOrder,
                                           unsigned long dwLength)
{
    static const SSpecFieldAttr s_unknown;  // an id the catalogue lacks: no strings, no default length
    const SSpecFieldAttr& def = pDefault ? *pDefault : s_unknown;
    const std::uint32_t n = dwLength ? static_cast<std::uint32_t>(dwLength) : def.m_dwLength;
    value = data.GetBits(0, n);
    const std::uint32_t r = value.GetLength();
    if (r > 8 && eOrder != ByteOrderAsStored)
        value = CAdvAnlzTools().RevertByteOrder(value);
    // The bound record: the default's strings and bounds, the real offset and
    // the bits really read.
    const SRefKey key{nId, static_cast<std::uint32_t>(packet.GetPacketLength()), r, def.m_dwMinLength,
                      def.m_dwMaxLength};
    packet.AddField(value, Intern(key, def, m_nReferenceStrings), 0);
    return r;
}

unsigned char CProtocolSpec::AddFieldAt(CProtocolPacket& packet, const SSpecFieldAttr* pDefault,
                                        const CAdvAnlzData& value, std::uint32_t dwOffset)
{
    if (!pDefault)
        return 0;
    SSpecFieldAttr attr = *pDefault;
    attr.m_dwOffset = dwOffset;
    return packet.AddField(value, InternFieldAttr(attr), 0);
}

void CProtocolSpec::RenameFieldInstance(CProtocolPacket& packet, unsigned char nIndex, const CString* pName,
                                        const CString* pAbbr, const CString* pDesc)
{
    const SSpecFieldAttr* pBound = packet.GetFieldAttr(nIndex);
    if (!pBound)
        return;
    SSpecFieldAttr attr = *pBound;
    if (pName)
        attr.m_strName = *pName;
    if (pAbbr)
        attr.m_strAbbr = *pAbbr;
    if (pDesc)
        attr.m_strDesc = *pDesc;
    packet.SetFieldExtraAttr(nIndex, InternFieldAttr(attr));
}
