// RBC decoder: the singleton, the commands passed on to the SCSI decoder,
// and the seven command rows read here. The catalogue, option lists and
// formats are in RBCProtocolTables.cpp.
#include "storage/RBCProtocol.h"

#include <new>

#include "storage/FieldLayout.h"

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CRBCProtocolSpec, CSCSIProtocolSpec)

CRBCProtocolSpec* CRBCProtocolSpec::ms_pInstance = nullptr;

namespace {

using Spec = CRBCProtocolSpec;

constexpr std::uint8_t kBE = SLayoutField::BigEndian;
constexpr std::uint8_t kResponse = SLayoutField::Response;

// One command that this decoder reads: its names, whether a response is
// announced, and its fields in order, the response fields marked.
struct SRBCCommand {
    std::uint8_t nOpCode;
    const char* pszRequestName;
    const char* pszResponseName;
    int bHasResponse;
    SLayout fields;
};

const SLayoutField kFormatUnit[] = {{Spec::FieldOperationCode}, {Spec::FieldReserved8}, {Spec::FieldReserved8},
                                    {Spec::FieldReserved8},      {Spec::FieldReserved8}, {Spec::FieldControl}};
const SLayoutField kStartStopUnit[] = {{Spec::FieldOperationCode}, {Spec::FieldImmed},  {Spec::FieldReserved7},
                                       {Spec::FieldReserved8},     {Spec::FieldReserved8}, {Spec::FieldStart},
                                       {Spec::FieldLoEj},          {Spec::FieldReserved2}, {Spec::FieldPowerConditions},
                                       {Spec::FieldControl}};
const SLayoutField kReadCapacity[] = {{Spec::FieldOperationCode},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldReserved8},
                                      {Spec::FieldControl},
                                      {Spec::FieldReturnedLogicalBlockAddress, 32, kBE | kResponse},
                                      {Spec::FieldBlockLength, 32, kBE | kResponse}};
const SLayoutField kRead10[] = {{Spec::FieldOperationCode},         {Spec::FieldReserved8},
                                {Spec::FieldLogicalBlockAddress, 32, kBE}, {Spec::FieldReserved8},
                                {Spec::FieldTransferLength, 16, kBE},      {Spec::FieldControl},
                                {Spec::FieldCommandDataBlock, 0, kResponse}};
const SLayoutField kWrite10[] = {{Spec::FieldOperationCode},
                                 {Spec::FieldReserved3},
                                 {Spec::FieldFUA},
                                 {Spec::FieldReserved4},
                                 {Spec::FieldLogicalBlockAddress, 32, kBE},
                                 {Spec::FieldReserved8},
                                 {Spec::FieldTransferLength, 16, kBE},
                                 {Spec::FieldControl},
                                 {Spec::FieldCommandDataBlock, 0, kResponse}};
// VERIFY shows its block address in the field of READ CAPACITY's answer.
const SLayoutField kVerify10[] = {{Spec::FieldOperationCode},
                                  {Spec::FieldReserved8},
                                  {Spec::FieldReturnedLogicalBlockAddress, 32, kBE},
                                  {Spec::FieldReserved8},
                                  {Spec::FieldVerificationLength, 16, kBE},
                                  {Spec::FieldControl},
                                  {Spec::FieldCommandDataBlock, 0, kResponse}};
const SLayoutField kSynchronizeCache[] = {{Spec::FieldOperationCode},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldReserved8},
                                          {Spec::FieldControl}};
const SLayoutField kUnknown[] = {{Spec::FieldOperationCode}};

const SRBCCommand kCommands[] = {
    {0x04, "FORMAT_UNIT", nullptr, 0, LayoutOf(kFormatUnit)},
    {0x1B, "START_STOP_UNIT", nullptr, 0, LayoutOf(kStartStopUnit)},
    {0x25, "READ_CAPACITY", "READ_CAPACITY Data", 1, LayoutOf(kReadCapacity)},
    {0x28, "READ (10)", "READ (10)", 1, LayoutOf(kRead10)},
    {0x2A, "WRITE (10)", "WRITE (10)", 1, LayoutOf(kWrite10)},
    {0x2F, "VERIFY(10)", "VERIFY(10)", 1, LayoutOf(kVerify10)},
    {0x35, "SYNCHRONIZE_CACHE", nullptr, 0, LayoutOf(kSynchronizeCache)},
};
const SRBCCommand kUnknownCommand = {0, "UnKnnown", nullptr, 0, LayoutOf(kUnknown)};

const SRBCCommand& FindCommand(std::uint8_t nOpCode)
{
    for (const SRBCCommand& row : kCommands)
        if (row.nOpCode == nOpCode)
            return row;
    return kUnknownCommand;
}

// Commands that RBC devices share with all SCSI devices.
bool IsSCSICommand(std::uint8_t nOpCode)
{
    switch (nOpCode) {
    case 0x00:  // TEST UNIT READY
    case 0x03:  // REQUEST SENSE
    case 0x12:  // INQUIRY
    case 0x15:  // MODE SELECT(6)
    case 0x16:  // RESERVE(6)
    case 0x17:  // RELEASE(6)
    case 0x1A:  // MODE SENSE(6)
    case 0x1E:  // PREVENT ALLOW MEDIUM REMOVAL
    case 0x3B:  // WRITE BUFFER
    case 0x5E:  // PERSISTENT RESERVE IN
    case 0x5F:  // PERSISTENT RESERVE OUT
        return true;
    default:
        return false;
    }
}

}  // namespace

// ------------------------------------------------------------- singleton

CRBCProtocolSpec* CRBCProtocolSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CRBCProtocolSpec();
    return ms_pInstance;
}

void CRBCProtocolSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

// The SCSI constructor runs first: the lists made here follow its lists.
// Every field is interned strictly, as GetFieldReference does, so that a
// renamed instance never lends its strings to another field.
CRBCProtocolSpec::CRBCProtocolSpec()
{
    SetReferenceStrings(RefCompareAll);
    InitOptions();
    InitFormats();
}

const SSpecFieldAttr* CRBCProtocolSpec::GetDefaultFieldAttr(unsigned short nId) const
{
    const SSpecFieldAttr* pAttr = ms_table.Find(nId);
    return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
}

const SSpecFieldAttr* CRBCProtocolSpec::GetFieldReference(const SSpecFieldAttr& attr)
{
    return InternFieldAttr(attr, RefCompareAll);
}

unsigned char CRBCProtocolSpec::GetCommandLength(unsigned char nOpCode) const
{
    switch (nOpCode) {
    case 0x00:
    case 0x03:
    case 0x04:
    case 0x12:
    case 0x15:
    case 0x16:
    case 0x17:
    case 0x1A:
    case 0x1B:
    case 0x1E:
        return 6;
    case 0x25:
    case 0x28:
    case 0x2A:
    case 0x2F:
    case 0x35:
    case 0x3B:
    case 0x5E:
    case 0x5F:
        return 10;
    default:
        return 0;
    }
}

// ------------------------------------------------------------- the walk

int CRBCProtocolSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    m_nRequestFields = 0;
    m_nResponseFields = 0;
    m_bPassedToSCSI = 0;
    CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
    if (!pPacket) {
        packet.Clean();
        return 1;
    }
    pPacket->Clean();
    ReadCommand(data, *pPacket);
    const unsigned char nFindings = CheckProtocol(*pPacket);
    // A command passed on keeps the counts of the SCSI decoder.
    if (!m_bPassedToSCSI) {
        pPacket->m_nRequestFields = m_nRequestFields;
        pPacket->m_nResponseFields = m_nResponseFields;
    }
    return nFindings == 0 ? 1 : 0;
}

unsigned long CRBCProtocolSpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                          unsigned short nId, CAdvAnlzData& value, EByteOrder eOrder,
                                          unsigned long dwLength)
{
    return ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
}

unsigned long CRBCProtocolSpec::ReadCommand(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetLength() == 0)
        return 0;
    const std::uint8_t nOpCode = data.GetBits(0, 8);
    if (IsSCSICommand(nOpCode)) {
        m_bPassedToSCSI = 1;
        CSCSIProtocolSpec::InterpretPacketData(data, packet, 1);
        // An RBC device has no buffer ids: the byte is reserved here. The
        // field instance gets a record of its own, interned strictly.
        if (nOpCode == 0x3B) {
            CByteArray aIndexes;
            packet.GetFieldIndex(CSCSIProtocolSpec::FieldBufferId, aIndexes);
            const SSpecFieldAttr* pBound =
                aIndexes.GetSize() > 0 ? packet.GetFieldExtraAttr(aIndexes[0], PacketSideWhole) : nullptr;
            if (pBound) {
                SSpecFieldAttr attr = *pBound;
                attr.m_strName = attr.m_strAbbr = attr.m_strDesc = "Reserved";
                packet.SetFieldExtraAttr(aIndexes[0], GetFieldReference(attr));
            }
        }
        return data.GetLength();
    }

    // Names and the response flag come first, so that a block cut short
    // still shows what it was.
    const SRBCCommand& command = FindCommand(nOpCode);
    packet.SetRequestName(command.pszRequestName);
    if (command.pszResponseName)
        packet.SetResponseName(command.pszResponseName);
    packet.m_bHasResponse = command.bHasResponse;

    CRBCWalk walk = Walk(data, packet);
    for (const SLayoutField& field : command.fields) {
        walk.Read(field.nId, field.nBits,
                  (field.nFlags & SLayoutField::BigEndian) ? ByteOrderReversed : ByteOrderAsStored);
        ++((field.nFlags & SLayoutField::Response) ? m_nResponseFields : m_nRequestFields);
        if (!walk.More())
            return walk.Consumed();
    }
    // What the command does not account for, up to the field's width; the
    // bytes behind it stay unread.
    walk.Read(FieldUnexpectedData);
    ++m_nRequestFields;
    return walk.Consumed();
}
