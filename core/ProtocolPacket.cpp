#include "core/ProtocolPacket.h"

#include "core/ProtocolSpec.h"

const CRuntimeClass CProtocolPacket::classCProtocolPacket = {
    "CProtocolPacket", static_cast<int>(sizeof(CProtocolPacket)), &CObject::classCObject};
const CRuntimeClass CReqRespProtocolPacket::classCReqRespProtocolPacket = {
    "CReqRespProtocolPacket", static_cast<int>(sizeof(CReqRespProtocolPacket)),
    &CProtocolPacket::classCProtocolPacket};

namespace {

constexpr std::uint32_t kPacketMagic = 0x4B504442;  // "BDPK"
constexpr std::uint8_t kPacketVersion = 1;

}  // namespace

// ------------------------------------------------------------- fields

unsigned char CProtocolPacket::AddField(const CAdvAnlzData& value, const SSpecFieldAttr* pAttr,
                                        unsigned char /*nReserved*/)
{
    if (m_aFields.size() >= static_cast<std::size_t>(kMaxFields))
        return 0;
    if (m_aFields.capacity() == 0)
        m_aFields.reserve(16);
    m_aFields.push_back(SField{value, pAttr});
    m_dwPacketLength += value.GetLength();
    return static_cast<unsigned char>(m_aFields.size());
}

unsigned long CProtocolPacket::SetFieldData(unsigned char nIndex, const CAdvAnlzData& value)
{
    if (nIndex < 1 || nIndex > m_aFields.size())
        return 0;
    SField& field = m_aFields[nIndex - 1u];
    m_dwPacketLength = m_dwPacketLength - field.value.GetLength() + value.GetLength();
    field.value = value;
    return value.GetLength();
}

unsigned long CProtocolPacket::GetFieldData(unsigned char nIndex, CAdvAnlzData& value) const
{
    const SField* pField = FieldAt(nIndex);
    if (!pField) {
        value.Clean();
        return 0;
    }
    value = pField->value;
    return value.GetLength();
}

unsigned long CProtocolPacket::SetFieldPattern(unsigned char, const CString&, unsigned char, EDisplayFormat,
                                               unsigned long, unsigned long)
{
    return 0;  // renderings belong to the host
}

CString CProtocolPacket::GetFieldBriefPattern(unsigned char nIndex, unsigned char nKind, unsigned long& dwLength,
                                              EDisplayFormat eFormat, int nFlag) const
{
    CString str;
    const SField* pField = FieldAt(nIndex);
    if (pField) {
        if ((nKind == 5 || nKind == 6) && m_pSpec && pField->pAttr) {
            str = nKind == 6 ? m_pSpec->GetFieldOptionAbbr(pField->pAttr->m_nId, pField->value)
                             : m_pSpec->GetFieldOptionName(pField->pAttr->m_nId, pField->value);
        } else if (nKind != 5 && nKind != 6) {
            str = pField->value.ToString(0, eFormat, nFlag);
        }
    }
    dwLength = static_cast<unsigned long>(str.GetLength());
    return str;
}

unsigned long CProtocolPacket::FindFieldData(unsigned short nId, CAdvAnlzData& value) const
{
    return GetFieldData(GetFieldIndex(nId), value);
}

unsigned long CProtocolPacket::GetPacketData(CAdvAnlzData& value) const
{
    value.Clean();
    for (const SField& field : m_aFields)
        value += field.value;
    return value.GetLength();
}

CString CProtocolPacket::GetFieldName(unsigned char nIndex) const
{
    const SSpecFieldAttr* pAttr = GetFieldAttr(nIndex);
    return pAttr ? pAttr->m_strName : CString();
}

CString CProtocolPacket::GetFieldAbbr(unsigned char nIndex) const
{
    const SSpecFieldAttr* pAttr = GetFieldAttr(nIndex);
    return pAttr ? pAttr->m_strAbbr : CString();
}

CString CProtocolPacket::GetFieldDesc(unsigned char nIndex) const
{
    const SSpecFieldAttr* pAttr = GetFieldAttr(nIndex);
    return pAttr ? pAttr->m_strDesc : CString();
}

unsigned short CProtocolPacket::GetFieldId(unsigned char nIndex) const
{
    const SSpecFieldAttr* pAttr = GetFieldAttr(nIndex);
    return pAttr ? pAttr->m_nId : 0;
}

int CProtocolPacket::RestructBy(unsigned char /*nReserved*/)
{
    CAdvAnlzData data;
    GetPacketData(data);
    return RestructBy(data);
}

int CProtocolPacket::RestructBy(const CAdvAnlzData& data)
{
    return m_pSpec ? m_pSpec->InterpretPacketData(data, *this, 0) : 0;
}

void CProtocolPacket::Clean()
{
    m_aFields.clear();
    m_aPErrors.RemoveAll();
    m_dwPacketLength = 0;
}

unsigned char CProtocolPacket::GetFieldIndex(unsigned short nId) const
{
    for (std::size_t i = 0; i < m_aFields.size(); ++i)
        if (m_aFields[i].pAttr && m_aFields[i].pAttr->m_nId == nId)
            return static_cast<unsigned char>(i + 1);
    return 0;
}

unsigned char CProtocolPacket::GetFieldIndex(unsigned short nId, CByteArray& aIndexes) const
{
    aIndexes.RemoveAll();
    for (std::size_t i = 0; i < m_aFields.size(); ++i)
        if (m_aFields[i].pAttr && m_aFields[i].pAttr->m_nId == nId)
            aIndexes.Add(static_cast<std::uint8_t>(i + 1));
    return aIndexes.IsEmpty() ? 0 : aIndexes[0];
}

unsigned short CProtocolPacket::GetAllFieldIndexes(CByteArray& aIndexes) const
{
    aIndexes.SetSize(static_cast<int>(m_aFields.size()));
    for (std::size_t i = 0; i < m_aFields.size(); ++i)
        aIndexes[static_cast<int>(i)] = static_cast<std::uint8_t>(i + 1);
    return static_cast<unsigned short>(m_aFields.size());
}

int CProtocolPacket::SetFieldExtraAttr(unsigned char nIndex, const SSpecFieldAttr* pAttr)
{
    if (nIndex < 1 || nIndex > m_aFields.size())
        return 0;
    m_aFields[nIndex - 1u].pAttr = pAttr;
    return 1;
}

const SSpecFieldAttr* CProtocolPacket::GetFieldAttr(unsigned char nIndex) const noexcept
{
    const SField* pField = FieldAt(nIndex);
    return pField ? pField->pAttr : nullptr;
}

const CAdvAnlzData* CProtocolPacket::GetFieldValue(unsigned char nIndex) const noexcept
{
    const SField* pField = FieldAt(nIndex);
    return pField ? &pField->value : nullptr;
}

int CProtocolPacket::AddPError(unsigned short nCode)
{
    return m_aPErrors.Add(nCode) + 1;
}

// -------------------------------------------------------- persistence
//
// A saved packet: magic, version, the decoder's class name, the fields (the
// bound record's numbers and strings, then the value), the protocol errors,
// the format code, and the members of the packet class. Loading binds each
// field again to a record interned by the packet's own decoder.

void CProtocolPacket::Serialize(CArchive& ar)
{
    const CString strDecoder = m_pSpec ? CString(m_pSpec->GetRuntimeClass()->m_lpszClassName) : CString();
    if (ar.IsStoring()) {
        ar << kPacketMagic << kPacketVersion << strDecoder;
        ar << static_cast<std::uint32_t>(m_aFields.size());
        for (const SField& field : m_aFields) {
            const SSpecFieldAttr attr = field.pAttr ? *field.pAttr : SSpecFieldAttr();
            ar << static_cast<std::uint16_t>(attr.m_nId) << attr.m_dwOffset << attr.m_dwLength
               << attr.m_dwMinLength << attr.m_dwMaxLength << attr.m_strName << attr.m_strAbbr << attr.m_strDesc;
            std::vector<std::uint8_t> aBytes(field.value.GetByteLength());
            field.value.GetStream(aBytes.data());
            ar << field.value.GetLength();
            ar.WriteBytes(aBytes.data(), aBytes.size());
        }
        ar << static_cast<std::uint32_t>(m_aPErrors.GetSize());
        for (std::uint16_t nCode : m_aPErrors)
            ar << nCode;
        ar << m_byPacketFormat;
        SerializeMembers(ar);
        return;
    }

    Clean();
    std::uint32_t nMagic = 0, nFields = 0, nErrors = 0;
    std::uint8_t nVersion = 0;
    CString strSaved;
    ar >> nMagic >> nVersion >> strSaved;
    if (!ar.IsOK() || nMagic != kPacketMagic || nVersion != kPacketVersion || !m_pSpec || strSaved != strDecoder) {
        ar.SetFailed();
        return;
    }
    ar >> nFields;
    for (std::uint32_t i = 0; ar.IsOK() && i < nFields; ++i) {
        SSpecFieldAttr attr;
        std::uint32_t nBits = 0;
        ar >> attr.m_nId >> attr.m_dwOffset >> attr.m_dwLength >> attr.m_dwMinLength >> attr.m_dwMaxLength >>
            attr.m_strName >> attr.m_strAbbr >> attr.m_strDesc >> nBits;
        const std::vector<std::uint8_t> aBytes = ar.ReadBytes(nBits / 8 + (nBits % 8 ? 1 : 0));
        if (!ar.IsOK() || AddField(CAdvAnlzData::FromBytes(aBytes.data(), nBits), m_pSpec->InternFieldAttr(attr), 0) == 0)
            ar.SetFailed();
    }
    ar >> nErrors;
    for (std::uint32_t i = 0; ar.IsOK() && i < nErrors; ++i) {
        std::uint16_t nCode = 0;
        ar >> nCode;
        if (ar.IsOK())
            AddPError(nCode);
    }
    ar >> m_byPacketFormat;
    SerializeMembers(ar);
    if (!ar.IsOK())
        Clean();
}

void CProtocolPacket::SerializeMembers(CArchive&) {}

long CProtocolPacket::Save(IStream* pStream, int /*bClearDirty*/)
{
    CArchive ar(pStream, CArchive::store);
    Serialize(ar);
    return ar.IsOK() ? S_OK : E_FAIL;
}

long CProtocolPacket::SaveAndCount(IStream* pStream, int /*bClearDirty*/, unsigned long& dwBytes)
{
    CArchive ar(pStream, CArchive::store);
    Serialize(ar);
    dwBytes = ar.GetBytesWritten();
    return ar.IsOK() ? S_OK : E_FAIL;
}

long CProtocolPacket::Load(IStream* pStream)
{
    CArchive ar(pStream, CArchive::load);
    Serialize(ar);
    return ar.IsOK() ? S_OK : E_FAIL;
}

// -------------------------------------------------- request/response

CReqRespProtocolPacket& CReqRespProtocolPacket::operator=(const CReqRespProtocolPacket& other)
{
    if (this == &other)
        return *this;
    Clean();
    CProtocolPacket::operator=(other);
    m_strRequestName = other.m_strRequestName;
    m_strResponseName = other.m_strResponseName;
    m_nRequestFields = other.m_nRequestFields;
    m_nResponseFields = other.m_nResponseFields;
    m_bHasResponse = other.m_bHasResponse;
    m_nReserved = other.m_nReserved;
    m_pSpec = other.m_pSpec;
    return *this;
}

void CReqRespProtocolPacket::Clean()
{
    CProtocolPacket::Clean();
    m_strRequestName.Empty();
    m_strResponseName.Empty();
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    m_bHasResponse = 0;
}

unsigned char CReqRespProtocolPacket::WholeIndex(unsigned char nIndex, EPacketSide eSide) const noexcept
{
    switch (eSide) {
    case PacketSideRequest:
        return nIndex <= m_nRequestFields ? nIndex : 0;
    case PacketSideResponse:
        if (nIndex < 1 || nIndex > m_nResponseFields || m_nRequestFields + nIndex > GetFieldCount())
            return 0;
        return static_cast<unsigned char>(m_nRequestFields + nIndex);
    case PacketSideWhole:
    default:
        return nIndex;
    }
}

unsigned long CReqRespProtocolPacket::GetFieldData(unsigned char nIndex, CAdvAnlzData& value,
                                                   EPacketSide eSide) const
{
    return GetFieldData(WholeIndex(nIndex, eSide), value);
}

CString CReqRespProtocolPacket::GetFieldName(unsigned char nIndex, EPacketSide eSide) const
{
    return GetFieldName(WholeIndex(nIndex, eSide));
}

CString CReqRespProtocolPacket::GetFieldAbbr(unsigned char nIndex, EPacketSide eSide) const
{
    return GetFieldAbbr(WholeIndex(nIndex, eSide));
}

CString CReqRespProtocolPacket::GetFieldDesc(unsigned char nIndex, EPacketSide eSide) const
{
    return GetFieldDesc(WholeIndex(nIndex, eSide));
}

unsigned short CReqRespProtocolPacket::GetFieldId(unsigned char nIndex, EPacketSide eSide) const
{
    return GetFieldId(WholeIndex(nIndex, eSide));
}

const SSpecFieldAttr* CReqRespProtocolPacket::GetFieldExtraAttr(unsigned char nIndex, EPacketSide eSide) const
{
    return GetFieldAttr(WholeIndex(nIndex, eSide));
}

CString CReqRespProtocolPacket::GetFieldPattern(unsigned char nIndex, unsigned char nKind, EDisplayFormat eFormat,
                                                unsigned long /*dw*/, int nFlag, EPacketSide eSide) const
{
    unsigned long dwLength = 0;
    return GetFieldBriefPattern(nIndex, nKind, dwLength, eSide, eFormat, nFlag);
}

CString CReqRespProtocolPacket::GetFieldBriefPattern(unsigned char nIndex, unsigned char nKind,
                                                     unsigned long& dwLength, EPacketSide eSide,
                                                     EDisplayFormat eFormat, int nFlag) const
{
    return GetFieldBriefPattern(WholeIndex(nIndex, eSide), nKind, dwLength, eFormat, nFlag);
}

void CReqRespProtocolPacket::SerializeMembers(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar << m_strRequestName << m_strResponseName << m_nRequestFields << m_nResponseFields
           << static_cast<std::int32_t>(m_bHasResponse) << static_cast<std::int32_t>(m_nReserved);
    } else {
        std::int32_t bHasResponse = 0, nReserved = 0;
        ar >> m_strRequestName >> m_strResponseName >> m_nRequestFields >> m_nResponseFields >> bHasResponse >>
            nReserved;
        m_bHasResponse = bHasResponse;
        m_nReserved = nReserved;
    }
}
