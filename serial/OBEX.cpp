// The OBEX decoder: the opcode test, the walk over the fixed fields and the
// header chain, the rule check by position, and the packet class.
#include "serial/OBEX.h"

#include <algorithm>
#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CAdvAnlzOBEXSpec, CProtocolSpec)
BUSDECODE_IMPLEMENT_RUNTIME_CLASS(COBEXPacket, CReqRespProtocolPacket)

using Spec = CAdvAnlzOBEXSpec;

CAdvAnlzOBEXSpec* CAdvAnlzOBEXSpec::ms_pInstance = nullptr;

namespace {

// Opcodes with a form or a check of their own.
enum : std::uint8_t {
    kOpPut = 0x02,
    kOpGet = 0x03,
    kOpConnect = 0x80,
    kOpDisconnect = 0x81,
    kOpFinalPut = 0x82,
    kOpFinalGet = 0x83,
    kOpSetPath = 0x85,
    kOpSuccess = 0xA0,
    kOpAbort = 0xFF,
};

// Header ids whose value has a field of its own.
enum : std::uint8_t {
    kHeaderCount = 0xC0,
    kHeaderLength = 0xC3,
    kHeaderTime4Byte = 0xC4,
    kHeaderConnectionId = 0xCB,
};

// The first user-defined id of the 2-byte-length encodings: a Success
// response whose first byte behind the packet length is one of these or a
// known id has headers there, not the fields of a connect response.
constexpr std::uint8_t kFirstUserDefinedId = 0x30;

// Flags values that a connect packet must not carry.
bool IsForbiddenConnectFlags(std::uint8_t nFlags) noexcept
{
    switch (nFlags) {
    case 128: case 129: case 2: case 130: case 3: case 131: case 4: case 132: case 133: case 255: case 6: case 16:
        return true;
    default:
        return false;
    }
}

// One field taken by a check: its id (0 when the position was beyond the
// last field) and its value (empty then).
struct SCheckedField {
    unsigned short nId = 0;
    const CAdvAnlzData* pValue = &kNoValue;
    static const CAdvAnlzData kNoValue;

    const CAdvAnlzData& Value() const noexcept { return *pValue; }
};
const CAdvAnlzData SCheckedField::kNoValue;

// Takes the field at the position and moves on; beyond the last field no
// field is taken and the position stays.
SCheckedField Step(const CProtocolPacket& packet, int& nPosition)
{
    SCheckedField field;
    if (nPosition <= packet.GetFieldCount()) {
        const unsigned char nIndex = static_cast<unsigned char>(nPosition);
        field.nId = packet.GetFieldId(nIndex);
        field.pValue = packet.GetFieldValue(nIndex);
        ++nPosition;
    }
    return field;
}

// The opening of every check, which needs nNeeded fields from the position
// on: a single field left goes unexamined, and too few fields are error 53.
// False when the check ends here, with its findings in nFindings.
bool CheckOpens(CProtocolPacket& packet, int nPosition, int nNeeded, unsigned char& nFindings)
{
    const int nCount = packet.GetFieldCount();
    nFindings = 0;
    if (nPosition == nCount)
        return false;
    if (nCount - (nPosition - 1) < nNeeded) {
        packet.AddPError(Spec::ErrorTooFewFields);
        nFindings = 1;
        return false;
    }
    return true;
}

// Findings added up; the count stops at 255, so that a packet with findings
// never counts as sound.
unsigned char Sum(unsigned char a, unsigned char b) noexcept
{
    return static_cast<unsigned char>(std::min(a + b, 255));
}

// Records one finding.
void Finding(CProtocolPacket& packet, unsigned short nError, unsigned char& nFindings)
{
    packet.AddPError(nError);
    nFindings = Sum(nFindings, 1);
}

// The packet length behind the opcode: 54 unless the field is one, 55 unless
// it has 16 bits.
void CheckPacketLength(CProtocolPacket& packet, int& nPosition, unsigned char& nFindings)
{
    const SCheckedField length = Step(packet, nPosition);
    if (length.nId != Spec::FieldPacketLength)
        Finding(packet, Spec::ErrorUnexpectedField, nFindings);
    if (length.Value().GetLength() != 16)
        Finding(packet, Spec::ErrorFieldLength, nFindings);
}

// Fixed fields in order: 54 once unless every id matches, 55 once unless
// every length does.
template <std::size_t N>
void CheckFixedFields(CProtocolPacket& packet, const SCheckedField (&aFields)[N], const unsigned short (&aIds)[N],
                      const std::uint32_t (&aBits)[N], unsigned char& nFindings)
{
    bool bIds = true, bBits = true;
    for (std::size_t i = 0; i < N; ++i) {
        bIds = bIds && aFields[i].nId == aIds[i];
        bBits = bBits && aFields[i].Value().GetLength() == aBits[i];
    }
    if (!bIds)
        Finding(packet, Spec::ErrorUnexpectedField, nFindings);
    if (!bBits)
        Finding(packet, Spec::ErrorFieldLength, nFindings);
}

}  // namespace

CAdvAnlzOBEXSpec* CAdvAnlzOBEXSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CAdvAnlzOBEXSpec();
    return ms_pInstance;
}

void CAdvAnlzOBEXSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

CAdvAnlzOBEXSpec::CAdvAnlzOBEXSpec()
{
    InitFormats();
    InitOptions();
}

const SSpecFieldAttr* CAdvAnlzOBEXSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    return ms_table.Find(nId);
}

bool CAdvAnlzOBEXSpec::IsValidOpCode(std::uint8_t n) noexcept
{
    return n == 0 || n == 2 || n == 3 || n == 4 || n == 6 || n == 16 || (n >= 32 && n <= 38) ||
           (n >= 48 && n <= 53) || (n >= 64 && n <= 85) || n == 96 || n == 97 || (n >= 128 && n <= 133) ||
           n == 144 || (n >= 160 && n <= 166) || (n >= 176 && n <= 181) || (n >= 192 && n <= 213) || n == 224 ||
           n == 225 || n == 255;
}

bool CAdvAnlzOBEXSpec::IsKnownHeaderId(std::uint8_t n) noexcept
{
    switch (n) {
    case 1: case 5: case 66: case 68: case 70: case 71: case 72: case 73: case 74: case 76: case 77: case 78:
    case 79: case 192: case 195: case 196: case 203:
        return true;
    default:
        return false;
    }
}

int CAdvAnlzOBEXSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    packet.Clean();
    ReadElements(data, packet);
    return CheckProtocol(packet) == 0 ? 1 : 0;
}

unsigned long CAdvAnlzOBEXSpec::ReadField(const CAdvAnlzData& data, CProtocolPacket& packet, unsigned short nId,
                                          CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength)
{
    return ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
}

unsigned long CAdvAnlzOBEXSpec::ReadKept(COBEXReader& reader, unsigned short nId, CAdvAnlzData& value,
                                         EByteOrder eOrder, unsigned long dwLength)
{
    return ReadField(reader.Data(), reader.Packet(), nId, value, eOrder, dwLength);
}

// ------------------------------------------------------------------- walk

int CAdvAnlzOBEXSpec::CheckOpCode(COBEXReader& reader)
{
    const std::uint8_t nOpCode = reader.Data()[0];
    if (IsValidOpCode(nOpCode)) {
        reader.Packet().m_byPacketFormat = nOpCode;
        return 1;
    }
    reader.Packet().m_byPacketFormat = kInvalidOpCodeFormat;
    if (reader.ReadOn(FieldOpCode))
        reader.Read(FieldUnexpectedData);
    return 0;
}

unsigned long CAdvAnlzOBEXSpec::ReadElements(const CAdvAnlzData& data, CProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    COBEXReader reader(*this, &Spec::ReadField, StopWhenEmpty, data, packet);
    if (!CheckOpCode(reader))
        return reader.Consumed();

    const std::uint8_t nOpCode = reader.Read(FieldOpCode);
    if (!reader.More())
        return reader.Consumed();
    const std::uint16_t nPacketLength = reader.ReadReversed(FieldPacketLength, 0);
    if (!reader.More())
        return reader.Consumed();

    // A Success response carries the fields of a connect response unless
    // what follows the packet length reads as a header.
    const std::uint8_t nNext = reader.Data()[0];
    const bool bConnectForm =
        nOpCode == kOpConnect || (nOpCode == kOpSuccess && nPacketLength >= 4 && !IsKnownHeaderId(nNext) &&
                                  nNext != kFirstUserDefinedId);
    if (nOpCode == kOpSetPath) {
        if (!reader.ReadOn(FieldSetPathFlags) || !reader.ReadOn(FieldSetPathConstants))
            return reader.Consumed();
    } else if (bConnectForm) {
        if (!reader.ReadOn(FieldVersion) || !reader.ReadOn(FieldFlags))
            return reader.Consumed();
        reader.ReadReversed(FieldMaxPacketLength, 0);
    }
    while (reader.More() && ReadHeader(reader)) {
    }
    return reader.Consumed();
}

int CAdvAnlzOBEXSpec::CheckHeaderID(COBEXReader& reader, std::uint8_t nId)
{
    if (IsKnownHeaderId(nId) || IsUserDefinedHeaderId(nId))
        return 0;
    // The id is still at the front, so it stands in both fields.
    reader.Read(FieldUnexpectedData, 65535);
    return 1;
}

bool CAdvAnlzOBEXSpec::ReadHeader(COBEXReader& reader)
{
    // The id is read but stays at the front until its encoding is known.
    CAdvAnlzData value;
    ReadKept(reader, FieldHeaderId, value, ByteOrderAsStored, 0);
    const std::uint8_t nId = value;
    if (CheckHeaderID(reader, nId))
        return false;

    const unsigned nEncoding = nId >> 6;
    std::int32_t nDataBytes = 0;
    std::uint32_t dwLengthBits = 0;  // the "Hdr Len" field read behind the id
    if (nEncoding <= 1) {
        // A 2-byte length that counts the id, itself and the data.
        reader.Drop(8);
        if (!reader.More())
            return false;
        dwLengthBits = ReadKept(reader, FieldHeaderLength, value, ByteOrderReversed, 16);
        nDataBytes = static_cast<std::int32_t>(static_cast<std::uint16_t>(value)) - 3;
    } else if (nEncoding == 2) {
        // The header's one byte stands in "Hdr Len".
        reader.Drop(8);
        if (!reader.More())
            return false;
        dwLengthBits = ReadKept(reader, FieldHeaderLength, value, ByteOrderReversed, 8);
    }

    // A 4-byte value behind the id, which is still at the front.
    const auto readQuad = [&](unsigned short nField, EByteOrder eOrder) {
        reader.Drop(8);
        if (!reader.More())
            return false;
        reader.Read(nField, 32, eOrder);
        return true;
    };
    switch (nId) {
    case kHeaderCount:
        return readQuad(FieldCount, ByteOrderAsStored);
    case kHeaderLength:
        return readQuad(FieldObjectLength, ByteOrderReversed);
    case kHeaderTime4Byte:
        return readQuad(FieldData, ByteOrderAsStored);
    case kHeaderConnectionId:
        return readQuad(FieldConnectionId, ByteOrderAsStored);
    default:
        break;
    }
    if (nEncoding == 2) {
        // A user-defined 1-byte header: its byte was its value.
        reader.Drop(dwLengthBits);
        return true;
    }
    if (nEncoding == 3)  // a user-defined 4-byte header
        return readQuad(FieldData, ByteOrderAsStored);

    // A counted header, known or user-defined. A length under 3 counts past
    // every payload, so the data takes all that remains.
    reader.Drop(dwLengthBits);
    if (nDataBytes == 0)
        return true;
    if (!reader.More())
        return false;
    reader.Read(FieldData, static_cast<std::uint32_t>(nDataBytes) * 8u);
    return true;
}

// ------------------------------------------------------------------ check

unsigned char CAdvAnlzOBEXSpec::CheckProtocol(CProtocolPacket& packet) const
{
    int nPosition = 1;
    unsigned char nOpCode = 255;
    return CheckElements(packet, nPosition, nOpCode);
}

unsigned char CAdvAnlzOBEXSpec::CheckElements(CProtocolPacket& packet, int& nPosition, unsigned char& nOpCode) const
{
    unsigned char nFindings = 0;
    if (!CheckOpens(packet, nPosition, 1, nFindings))
        return nFindings;
    const SCheckedField opcode = Step(packet, nPosition);
    if (opcode.nId != FieldOpCode)
        Finding(packet, ErrorUnexpectedField, nFindings);
    if (opcode.Value().GetLength() != 8) {
        Finding(packet, ErrorFieldLength, nFindings);
        return nFindings;
    }
    nOpCode = static_cast<std::uint8_t>(opcode.Value());
    switch (nOpCode) {
    case kOpConnect:
        return Sum(nFindings, CheckOpcodeConnect(packet, nPosition));
    case kOpDisconnect:
    case kOpAbort:
        return Sum(nFindings, CheckOpcodeDisConnect(packet, nPosition));
    case kOpPut:
    case kOpGet:
    case kOpFinalPut:
    case kOpFinalGet:
        return Sum(nFindings, CheckOpcodes_Put_Get_FinalPut_FinalGet(packet, nPosition, nOpCode));
    case kOpSuccess:
        return Sum(nFindings, CheckResponseSuccess(packet, nPosition));
    case kOpSetPath:
        return Sum(nFindings, CheckOpcodeSetPath(packet, nPosition));
    default:
        break;
    }
    // The other responses and their final forms have no rule beyond their
    // value; the reserved opcodes 4, 6, 132 and any invalid one have none.
    if (IsValidOpCode(nOpCode) && nOpCode != 4 && nOpCode != 6 && nOpCode != 132)
        return Sum(nFindings, CheckIsHeaderId(packet, nOpCode, 0));
    Finding(packet, ErrorNoRuleForOpcode, nFindings);
    return nFindings;
}

unsigned char CAdvAnlzOBEXSpec::CheckOpcodes_Put_Get_FinalPut_FinalGet(CProtocolPacket& packet, int& nPosition,
                                                                       int /*nOpCode*/) const
{
    unsigned char nFindings = 0;
    if (!CheckOpens(packet, nPosition, 2, nFindings))
        return nFindings;
    CheckPacketLength(packet, nPosition, nFindings);
    return Sum(nFindings, CheckHeader(packet, nPosition));
}

unsigned char CAdvAnlzOBEXSpec::CheckOpcodeDisConnect(CProtocolPacket& packet, int& nPosition) const
{
    unsigned char nFindings = 0;
    if (CheckOpens(packet, nPosition, 1, nFindings))
        CheckPacketLength(packet, nPosition, nFindings);
    return nFindings;
}

unsigned char CAdvAnlzOBEXSpec::CheckOpcodeConnect(CProtocolPacket& packet, int& nPosition) const
{
    unsigned char nFindings = 0;
    if (!CheckOpens(packet, nPosition, 2, nFindings))
        return nFindings;
    const SCheckedField aFields[4] = {Step(packet, nPosition), Step(packet, nPosition), Step(packet, nPosition),
                                      Step(packet, nPosition)};
    CheckFixedFields(packet, aFields, {FieldPacketLength, FieldVersion, FieldFlags, FieldMaxPacketLength},
                     {16, 8, 8, 16}, nFindings);
    if (IsForbiddenConnectFlags(static_cast<std::uint8_t>(aFields[2].Value())))
        Finding(packet, ErrorForbiddenFlags, nFindings);
    const std::uint16_t nMaxLength = aFields[3].Value();
    if (nMaxLength > 63999 || nMaxLength < 255)
        Finding(packet, ErrorMaxPacketLength, nFindings);
    if (nPosition <= packet.GetFieldCount())
        nFindings = Sum(nFindings, CheckHeader(packet, nPosition));
    return nFindings;
}

unsigned char CAdvAnlzOBEXSpec::CheckOpcodeSetPath(CProtocolPacket& packet, int& nPosition) const
{
    // The packet length and the two set-path bytes, then the headers.
    unsigned char nFindings = 0;
    if (!CheckOpens(packet, nPosition, 2, nFindings))
        return nFindings;
    const SCheckedField aFields[3] = {Step(packet, nPosition), Step(packet, nPosition), Step(packet, nPosition)};
    CheckFixedFields(packet, aFields, {FieldPacketLength, FieldSetPathFlags, FieldSetPathConstants}, {16, 8, 8},
                     nFindings);
    if (nPosition <= packet.GetFieldCount())
        nFindings = Sum(nFindings, CheckHeader(packet, nPosition));
    return nFindings;
}

unsigned char CAdvAnlzOBEXSpec::CheckResponseSuccess(CProtocolPacket& packet, int& nPosition) const
{
    unsigned char nFindings = 0;
    if (!CheckOpens(packet, nPosition, 1, nFindings))
        return nFindings;
    const SCheckedField length = Step(packet, nPosition);
    if (length.nId != FieldPacketLength)
        Finding(packet, ErrorUnexpectedField, nFindings);
    // A connect response unless the third field holds a known header id;
    // its maximum packet length has no rule here.
    const CAdvAnlzData* pThird = packet.GetFieldValue(3);
    if (!IsKnownHeaderId(pThird ? static_cast<std::uint8_t>(*pThird) : 0)) {
        const SCheckedField aFields[3] = {Step(packet, nPosition), Step(packet, nPosition), Step(packet, nPosition)};
        CheckFixedFields(packet, aFields, {FieldVersion, FieldFlags, FieldMaxPacketLength}, {8, 8, 16}, nFindings);
        if (IsForbiddenConnectFlags(static_cast<std::uint8_t>(aFields[1].Value())))
            Finding(packet, ErrorForbiddenFlags, nFindings);
    }
    if (length.Value().GetLength() != 16)
        Finding(packet, ErrorFieldLength, nFindings);
    return nFindings;
}

unsigned char CAdvAnlzOBEXSpec::CheckHeader(CProtocolPacket& packet, int& nPosition) const
{
    unsigned char nFindings = 0;
    if (!CheckOpens(packet, nPosition, 2, nFindings))
        return nFindings;
    std::uint8_t nId = 0;
    for (;;) {
        const SCheckedField header = Step(packet, nPosition);
        if (header.nId != FieldHeaderId)
            Finding(packet, ErrorUnexpectedField, nFindings);
        // Every encoding but the 4-byte one has a "Hdr Len" behind the id. A
        // header of length 3 has no data field, so that the walk then loses
        // step with the packet.
        if (static_cast<std::uint8_t>(header.Value().GetBits(6, 2)) != 3) {
            const int nLengthPosition = nPosition;
            Step(packet, nPosition);
            const unsigned char nIndex =
                nLengthPosition <= packet.GetFieldCount() ? static_cast<unsigned char>(nLengthPosition) : 0;
            nFindings = Sum(nFindings, CheckHeaderLength(packet, nIndex));
        }
        nId = static_cast<std::uint8_t>(header.Value());
        if (!IsKnownHeaderId(nId))
            break;
        Step(packet, nPosition);  // the header's value
        if (nPosition > packet.GetFieldCount())
            return nFindings;
    }
    // The check ends at the first user-defined header: later ones go
    // unexamined.
    if (!IsUserDefinedHeaderId(nId))
        Finding(packet, ErrorUnknownHeader, nFindings);
    return nFindings;
}

unsigned char CAdvAnlzOBEXSpec::CheckHeaderLength(CProtocolPacket& packet, unsigned char nIndex) const
{
    if (packet.GetFieldId(nIndex) == FieldHeaderLength)
        return 0;
    packet.AddPError(ErrorUnexpectedField);
    return 1;
}

// ------------------------------------------------------------------ packet

COBEXPacket::COBEXPacket() : CReqRespProtocolPacket(CAdvAnlzOBEXSpec::GetInstance()) {}

COBEXPacket::COBEXPacket(const CAdvAnlzData& data) : COBEXPacket()
{
    RestructBy(data);
}

COBEXPacket::COBEXPacket(const CByteArray& aBytes) : COBEXPacket()
{
    RestructBy(CAdvAnlzData(aBytes));
}

COBEXPacket::COBEXPacket(const COBEXPacket&) : COBEXPacket() {}

COBEXPacket& COBEXPacket::operator=(const COBEXPacket& other)
{
    if (this == &other)
        return *this;
    Clean();
    CProtocolPacket::operator=(other);
    m_pSpec = other.m_pSpec;
    return *this;
}
