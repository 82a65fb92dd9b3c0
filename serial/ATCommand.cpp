// The AT decoder's frame: the walk over the lines of a payload, the
// prefixes, the command line and its five categories of bodies, the rule
// check, the format list and the packet class. Responses, dial strings and
// the '+' commands are read in ATCommandResponses.cpp.
#include "serial/ATCommand.h"

#include <algorithm>
#include <cstring>
#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CAdvAnlzATCommandSpec, CProtocolSpec)
BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CATCommandPacket, CReqRespProtocolPacket)

using Spec = CAdvAnlzATCommandSpec;

CAdvAnlzATCommandSpec* CAdvAnlzATCommandSpec::ms_pInstance = nullptr;

namespace {

bool IsLetter(std::uint8_t c) noexcept
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::uint8_t ToUpper(std::uint8_t c) noexcept
{
    return (c >= 'a' && c <= 'z') ? static_cast<std::uint8_t>(c - 'a' + 'A') : c;
}

// A text of up to three characters as one key: its length, then its
// characters from the first.
std::uint32_t TextKey(std::uint8_t c0, std::uint8_t c1, std::uint8_t c2, unsigned nLength) noexcept
{
    return (static_cast<std::uint32_t>(nLength) << 24) | (static_cast<std::uint32_t>(c2) << 16) |
           (static_cast<std::uint32_t>(c1) << 8) | c0;
}

// The characters of a text read as a little-endian number (at most eight).
std::uint64_t TextValue(const char* pszText) noexcept
{
    std::uint64_t qw = 0;
    const std::size_t n = std::min<std::size_t>(std::strlen(pszText), 8);
    for (std::size_t i = n; i-- > 0;)
        qw = (qw << 8) | static_cast<std::uint8_t>(pszText[i]);
    return qw;
}

}  // namespace

CAdvAnlzATCommandSpec* CAdvAnlzATCommandSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CAdvAnlzATCommandSpec();
    return ms_pInstance;
}

void CAdvAnlzATCommandSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CAdvAnlzATCommandSpec::CAdvAnlzATCommandSpec()
{
    InitOptions();
    InitFormat();
    m_aBodyIndex.reserve(std::size(ms_aBodyRows));
    for (const SATTextRow& row : ms_aBodyRows) {
        const std::size_t n = std::strlen(row.pszText);
        const auto at = [&](std::size_t i) { return i < n ? static_cast<std::uint8_t>(row.pszText[i]) : 0; };
        m_aBodyIndex.emplace_back(TextKey(at(0), at(1), at(2), static_cast<unsigned>(n)), &row);
    }
    std::sort(m_aBodyIndex.begin(), m_aBodyIndex.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
}

const SSpecFieldAttr* CAdvAnlzATCommandSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

unsigned short CAdvAnlzATCommandSpec::RowOfFormat(unsigned short nCode) noexcept
{
    // Row 66 is not used, and rows 271 to 280 are the dial characters.
    if (nCode <= 62)
        return static_cast<unsigned short>(nCode + 3);
    if (nCode <= 266)
        return static_cast<unsigned short>(nCode + 4);
    return static_cast<unsigned short>(nCode + 14);
}

// ------------------------------------------------------------ option lists

void CAdvAnlzATCommandSpec::AddTextOptions(unsigned short nFieldId, const SATTextRow* pRows, std::size_t nRows,
                                           unsigned short nRowBias)
{
    for (std::size_t i = 0; i < nRows; ++i) {
        const SATTextRow& row = pRows[i];
        if (!row.pszName)
            continue;  // a text that is recognised but has no named value
        const std::uint64_t qwValue = row.qwValue ? row.qwValue : TextValue(row.pszText);
        const std::uint8_t nBits = row.nBits ? row.nBits : static_cast<std::uint8_t>(8 * std::strlen(row.pszText));
        const unsigned short nRow = nRowBias ? RowOfFormat(row.nCode) : row.nCode;
        const SOptionRow option{nRow, qwValue, qwValue, row.pszName, row.pszAbbr};
        AddOptionList(nFieldId, nBits, &option, 1);
    }
}

void CAdvAnlzATCommandSpec::InitOptions()
{
    AddTextOptions(FieldPrefixAT, &ms_aPrefixRows[0], 1, 0);
    AddTextOptions(FieldSwitchToCommandMode, &ms_aPrefixRows[1], 1, 0);
    AddTextOptions(FieldRepeatLastCommand, &ms_aPrefixRows[2], 1, 0);
    AddTextOptions(FieldCommandBody, ms_aBodyRows, std::size(ms_aBodyRows), 1);
    AddTextOptions(FieldDialParameters, ms_aDialRows, std::size(ms_aDialRows), 0);
    AddTextOptions(FieldResponse, ms_aResponseRows, std::size(ms_aResponseRows), 1);
    AddTextOptions(FieldCommandBody, ms_aHandsFreeRows, std::size(ms_aHandsFreeRows), 1);
}

// ------------------------------------------------------------- format list

int CAdvAnlzATCommandSpec::AddATFormat(unsigned short nCode, const CString& strName)
{
    m_awATFormats.Add(nCode);
    m_astrATFormatNames.SetAtGrow(nCode, strName);
    return m_awATFormats.GetSize();
}

void CAdvAnlzATCommandSpec::InitFormat()
{
    // A command is named "AT" and its body ("ATA" is its own name); a response
    // by its text without '+' and ':'.
    for (const SATTextRow& row : ms_aBodyRows)
        AddATFormat(row.nCode, std::strcmp(row.pszText, "ATA") == 0 ? CString("ATA")
                                                                     : CString("AT") + CString(row.pszText));
    for (const SATTextRow& row : ms_aResponseRows) {
        CString strName;
        for (const char* p = row.pszText; *p; ++p)
            if (*p != '+' && *p != ':')
                strName += *p;
        AddATFormat(row.nCode, strName);
    }
    for (const SATTextRow& row : ms_aHandsFreeRows)
        AddATFormat(row.nCode, CString("AT") + CString(row.pszText));
    AddATFormat(FormatUnknownCommand, "Unknown Command");
    AddATFormat(FormatUnknownResponse, "Unknown Response");
    AddATFormat(FormatMultipleElements, "Multy ATCommand");
}

unsigned char CAdvAnlzATCommandSpec::GetAvailableATFormats(CWordArray& aCodes) const
{
    aCodes.Copy(m_awATFormats);
    return static_cast<unsigned char>(m_awATFormats.GetSize());
}

CString CAdvAnlzATCommandSpec::GetATFormatName(unsigned short nCode) const
{
    return nCode < m_astrATFormatNames.GetSize() ? m_astrATFormatNames[nCode] : CString();
}

// ------------------------------------------------------------------- walk

unsigned long CAdvAnlzATCommandSpec::ReadField(const CAdvAnlzData& data, CATCommandPacket& packet,
                                               unsigned short nId, CAdvAnlzData& value, EByteOrder /*eOrder*/,
                                               unsigned long dwLength)
{
    value = data.GetBits(0, static_cast<std::uint32_t>(dwLength));
    // The reader's copy is always what is left of the payload, so its length
    // tells where the field stands.
    AddTextAt(packet, nId, value, m_dwPayloadBits - data.GetLength());
    return value.GetLength();
}

void CAdvAnlzATCommandSpec::AddTextAt(CATCommandPacket& packet, unsigned short nId, const CAdvAnlzData& value,
                                      std::uint32_t dwOffset)
{
    const SSpecFieldAttr* pDefault = GetDefaultFieldAttr(nId);
    if (!pDefault || packet.GetFieldCount() >= CProtocolPacket::kMaxFields)
        return;  // a full packet takes no more fields, and they are not counted
    SSpecFieldAttr attr = *pDefault;
    attr.m_dwOffset = dwOffset;
    attr.m_dwLength = value.GetLength();
    if (packet.AddField(value, InternFieldAttr(attr), 0) == 0)
        return;
    if (nId == FieldResponse)
        ++m_nResponseFields;
    else
        ++m_nRequestFields;
}

void CAdvAnlzATCommandSpec::NameElement(CATCommandPacket& packet, unsigned short nRow, unsigned short nCode)
{
    packet.AddElementToList(nRow);
    m_wATFormat = nCode;
}

int CAdvAnlzATCommandSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet,
                                               int /*nReserved*/)
{
    CATCommandPacket* pPacket = dynamic_cast<CATCommandPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 0;
    }
    CATCommandPacket& at = *pPacket;
    at.CleanListElement();
    m_bMultipleElements = 0;
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    at.m_bHasResponse = 0;
    m_wATFormat = FormatNone;
    at.Clean();
    if (data.GetLength() == 0)
        return 0;

    m_dwPayloadBits = data.GetLength();
    m_aBytes.assign(data.GetByteLength() + 3, 0);
    data.GetStream(m_aBytes.data());
    CATReader reader(*this, &Spec::ReadField, ReadPastEnd, data, at);
    bool bCommand = false, bResponse = false;
    for (int nPass = 1; reader.More(); ++nPass) {
        if (nPass > 1)
            m_bMultipleElements = 1;
        // A last part of under 8 bits counts as a byte; past the end a byte
        // reads 0, which no prefix holds.
        const std::uint8_t* p = Front(reader);
        const std::uint8_t c0 = p[0], c1 = p[1], c2 = p[2];
        if ((c0 == 'A' || c0 == 'a') && (c1 == 'T' || c1 == 't')) {
            ReadElementPerefixAT(reader);
            ReadCommandBody(reader);
            bCommand = true;
        } else if ((c0 == 'A' || c0 == 'a') && c1 == '/') {
            ReadElementPerefixRepeatLastCommand(reader);
            bCommand = true;
        } else if (c0 == '+' && c1 == '+' && c2 == '+') {
            ReadElementPerefixSwitchToCommandMode(reader);
            bCommand = true;
        } else if (c0 == kCR && c1 == kLF) {
            InterpretResponseBody(reader);
            bResponse = true;
        } else if (c0 == kCR) {
            reader.Read(FieldCarriageReturn, 8);
        } else {
            ReadUnKnownBody(reader, reader.Data().GetLength());
        }
    }

    CheckProtocol(at);
    at.m_nRequestFields = m_nRequestFields;
    at.m_nResponseFields = m_nResponseFields;
    at.m_bHasResponse = 0;
    if (bCommand && bResponse)
        at.SetRequestName("AT Command And AT Command Response");
    else if (bCommand)
        at.SetRequestName("AT Command");
    else if (bResponse)
        at.SetRequestName("AT Command Response");
    else
        at.SetRequestName("Unexpected Data");
    if (m_bMultipleElements)
        at.SetATPacketFormat(FormatMultipleElements);
    else if (m_wATFormat != FormatNone)
        at.SetATPacketFormat(m_wATFormat);
    return 1;
}

unsigned long CAdvAnlzATCommandSpec::ReadElementPerefixAT(CATReader& reader)
{
    reader.Read(FieldPrefixAT, 16);
    return 16;
}

unsigned long CAdvAnlzATCommandSpec::ReadElementPerefixRepeatLastCommand(CATReader& reader)
{
    reader.Read(FieldRepeatLastCommand, 16);
    return 16;
}

unsigned long CAdvAnlzATCommandSpec::ReadElementPerefixSwitchToCommandMode(CATReader& reader)
{
    reader.Read(FieldSwitchToCommandMode, 24);
    return 24;
}

unsigned long CAdvAnlzATCommandSpec::ReadUnKnownBody(CATReader& reader, std::uint32_t dwBits)
{
    reader.Read(FieldUnknownCommand, dwBits);
    reader.Packet().AddElementToList(FieldUnknownCommand);
    m_wATFormat = FormatUnknownCommand;
    return dwBits;
}

unsigned long CAdvAnlzATCommandSpec::ReadCommandBody(CATReader& reader)
{
    const std::uint32_t dwBits = reader.Data().GetLength();
    if (dwBits == 0)
        return 0;
    // The line ends at the first CR among the whole bytes; a CR right behind
    // the prefix leaves no command to read.
    const std::uint8_t* p = Front(reader);
    const std::uint32_t nBytes = dwBits / 8;
    for (std::uint32_t i = 0; i < nBytes; ++i) {
        if (p[i] != kCR)
            continue;
        if (i == 0)
            break;
        const std::uint32_t dwLine = (i + 1) * 8;
        InterperetCommandBody(reader, dwLine);
        return dwLine;
    }
    return ReadUnKnownBody(reader, dwBits);
}

void CAdvAnlzATCommandSpec::InterperetCommandBody(CATReader& reader, std::uint32_t dwLine)
{
    const unsigned long dwEnd = reader.Consumed() + dwLine;
    for (int nPass = 1; reader.Consumed() < dwEnd; ++nPass) {
        if (nPass > 1)
            m_bMultipleElements = 1;
        const std::uint32_t dwLeft = static_cast<std::uint32_t>(dwEnd - reader.Consumed());
        const std::uint8_t c = Front(reader)[0];
        switch (c) {
        case '&':
            InterperetCommandBodyCategory(reader, dwLeft, CategoryA);
            break;
        case '\\':
            InterperetCommandBodyCategory(reader, dwLeft, CategoryB);
            break;
        case '%':
            InterperetCommandBodyCategory(reader, dwLeft, CategoryC);
            break;
        case '"':
        case ')':
        case '*':
        case '-':
        case ':':
        case '@':
            InterperetCommandBodyCategory(reader, dwLeft, CategoryE);
            break;
        case '+':
            InterperetCommandBodyHandsFreeAndHeadset(reader, dwLeft);
            break;
        case 'D':
        case 'd':
            InterperetDialCommandParameters(reader, dwLeft);
            break;
        default:
            if (IsLetter(c)) {
                InterperetCommandBodyCategory(reader, dwLeft, CategoryD);
            } else {
                // Not a command: the rest of the line, CR included.
                ReadUnKnownBody(reader, dwLeft);
                continue;
            }
        }
        if (reader.Consumed() < dwEnd && Front(reader)[0] == kCR)
            reader.Read(FieldCarriageReturn, 8);
    }
}

const SATTextRow* CAdvAnlzATCommandSpec::MatchBodyRow(const std::uint8_t* pFront, std::uint32_t nLeftBytes) const
{
    const std::uint8_t c[3] = {ToUpper(pFront[0]), ToUpper(pFront[1]), ToUpper(pFront[2])};
    for (unsigned n = std::min<std::uint32_t>(3, nLeftBytes); n >= 1; --n) {
        const std::uint32_t dwKey = TextKey(c[0], n > 1 ? c[1] : 0, n > 2 ? c[2] : 0, n);
        const auto it = std::lower_bound(m_aBodyIndex.begin(), m_aBodyIndex.end(), dwKey,
                                         [](const auto& entry, std::uint32_t k) { return entry.first < k; });
        if (it != m_aBodyIndex.end() && it->first == dwKey)
            return it->second;
    }
    return nullptr;
}

unsigned long CAdvAnlzATCommandSpec::InterperetCommandBodyCategory(CATReader& reader, std::uint32_t dwLeft,
                                                                   EATCategory eCategory)
{
    const std::uint8_t* p = Front(reader);
    const std::uint32_t nLeftBytes = dwLeft / 8;
    const auto at = [&](std::uint32_t i) -> std::uint8_t { return i < nLeftBytes ? p[i] : 0; };

    // Inside a line, 'A' starts a repeat ("A/"), the answer command ("ATA")
    // or a second prefix ("AT"), and nothing else.
    const std::uint8_t c0 = at(0);
    if (eCategory == CategoryD && (c0 == 'A' || c0 == 'a')) {
        const std::uint8_t c1 = at(1), c2 = at(2);
        if (c1 == '/') {
            reader.Read(FieldRepeatLastCommand, 16);
            return 16;
        }
        if (c1 == 'T' || c1 == 't') {
            if (c2 == 'A' || c2 == 'a') {
                reader.Read(FieldCommandBody, 24);
                NameElement(reader.Packet(), RowOfFormat(FormatAnswer), FormatAnswer);
                return 24;
            }
            reader.Read(FieldPrefixAT, 16);
            return 16;
        }
        return ReadUnKnownBody(reader, dwLeft);
    }

    if (const SATTextRow* pRow = MatchBodyRow(p, nLeftBytes)) {
        const std::uint32_t dwBits = static_cast<std::uint32_t>(8 * std::strlen(pRow->pszText));
        reader.Read(FieldCommandBody, dwBits);
        NameElement(reader.Packet(), RowOfFormat(pRow->nCode), pRow->nCode);
        return dwBits;
    }
    if (eCategory == CategoryE) {
        // One character that starts no body of its own; the line goes on
        // behind it.
        reader.Read(FieldUnknownCommand, 8);
        m_wATFormat = FormatUnknownCommand;
        return 8;
    }
    return ReadUnKnownBody(reader, dwLeft);
}

// ------------------------------------------------------------------ check

unsigned char CAdvAnlzATCommandSpec::CheckProtocol(CATCommandPacket& packet) const
{
    CByteArray aIndexes;
    const int nCount = packet.GetAllFieldIndexes(aIndexes);
    unsigned nFindings = 0;
    for (int nPosition = 1; nPosition <= nCount; ++nPosition) {
        switch (packet.GetFieldId(aIndexes[nPosition - 1])) {
        case FieldPrefixAT:
            nPosition = CheckProtocolCompleteOneAtCommand(packet, nPosition);
            break;
        case FieldSwitchToCommandMode:
        case FieldRepeatLastCommand:
        case FieldResponse:
        case FieldCarriageReturn:
        case FieldLineFeed:
            break;
        case FieldUnknownDialParameters:
            packet.AddPError(ErrorUnknownDialParameters);
            ++nFindings;
            break;
        default:
            packet.AddPError(ErrorUnexpectedElement);
            ++nFindings;
            break;
        }
    }
    return static_cast<unsigned char>(std::min(nFindings, 255u));
}

int CAdvAnlzATCommandSpec::CheckProtocolCompleteOneAtCommand(const CATCommandPacket& packet, int nPosition) const
{
    const auto idAt = [&](int nPos) -> unsigned short {
        return nPos <= packet.GetFieldCount() ? packet.GetFieldId(static_cast<unsigned char>(nPos)) : 0;
    };
    if (idAt(nPosition + 1) != FieldCommandBody)
        return nPosition;
    if (idAt(nPosition + 2) == FieldDialParameters)
        return nPosition + 2;
    return nPosition + 1;
}

// ------------------------------------------------------------------ packet

CATCommandPacket::CATCommandPacket() : CReqRespProtocolPacket(CAdvAnlzATCommandSpec::GetInstance()) {}

CATCommandPacket::CATCommandPacket(const CAdvAnlzData& data) : CATCommandPacket()
{
    RestructBy(data);
}

CATCommandPacket::CATCommandPacket(const CByteArray& aBytes) : CATCommandPacket()
{
    RestructBy(CAdvAnlzData(aBytes));
}

CATCommandPacket::CATCommandPacket(const CATCommandPacket&) : CATCommandPacket() {}

CATCommandPacket& CATCommandPacket::operator=(const CATCommandPacket& other)
{
    if (this == &other)
        return *this;
    Clean();
    CleanListElement();
    CProtocolPacket::operator=(other);
    m_pSpec = other.m_pSpec;
    m_wATPacketFormat = other.m_wATPacketFormat;
    return *this;
}

CString CATCommandPacket::GetATFormatName() const
{
    const CAdvAnlzATCommandSpec* pSpec = dynamic_cast<const CAdvAnlzATCommandSpec*>(m_pSpec);
    return pSpec ? pSpec->GetATFormatName(m_wATPacketFormat) : CString();
}

void CATCommandPacket::SerializeMembers(CArchive& ar)
{
    CReqRespProtocolPacket::SerializeMembers(ar);
    if (ar.IsStoring()) {
        ar << m_wATPacketFormat << static_cast<std::uint32_t>(m_awCommandList.GetSize());
        for (std::uint16_t wElement : m_awCommandList)
            ar << wElement;
        return;
    }
    std::uint32_t nElements = 0;
    ar >> m_wATPacketFormat >> nElements;
    m_awCommandList.RemoveAll();
    for (std::uint32_t i = 0; ar.IsOK() && i < nElements; ++i) {
        std::uint16_t wElement = 0;
        ar >> wElement;
        m_awCommandList.Add(wElement);
    }
}
