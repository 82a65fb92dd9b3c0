// The HDLC decoder's entry, its readers and its framing checks. The removal
// of stuffed bits is in HDLCBitStuffing.cpp.
//
// The readers share one bit cursor over the unstuffed stream and step it
// back as well as forth (the two bytes in front of a closing flag turn out to
// be the FCS only once the flag is seen), so they index the stream rather
// than consume it from the front.
//
// They nest one level per frame: a reader that meets the flag closing a
// frame hands the rest of the stream to a fresh ReadFlagField and finishes
// its own frame when that returns. The depth is bounded, not the payload:
// every frame a reader nests for has added a field first (its flag, its
// control field or its FCS), and once the packet holds its 255 fields every
// reader ends at once (Stopped), since nothing read after that could show.
// A payload of any length therefore nests a few hundred calls deep at most.
#include "serial/HDLCSpec.h"

#include <new>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CAdvAnlzHDLCSpec, CProtocolSpec)

CAdvAnlzHDLCSpec* CAdvAnlzHDLCSpec::ms_pInstance = nullptr;
int CAdvAnlzHDLCSpec::s_nOnesInRow = 0;

namespace {

// The byte at a byte-aligned bit offset of the stream; 0 past its end. The
// readers' cursor only ever moves by whole bytes from 0.
std::uint8_t ByteAt(const CAdvAnlzData& data, std::uint32_t dwBit)
{
    return data[dwBit / 8];
}

CAdvAnlzData BytesOf(const std::vector<std::uint8_t>& aBytes)
{
    return CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(aBytes.size() * 8));
}

}  // namespace

CAdvAnlzHDLCSpec* CAdvAnlzHDLCSpec::GetInstance()
{
    if (!ms_pInstance)
        ms_pInstance = new (std::nothrow) CAdvAnlzHDLCSpec();
    return ms_pInstance;
}

void CAdvAnlzHDLCSpec::KillInstance()
{
    delete ms_pInstance;
    ms_pInstance = nullptr;
}

void CAdvAnlzHDLCSpec::InitialMembers()
{
    m_dwBitCursor = 0;
    m_dwByteCount = 0;
    m_bFlagPending = 0;
    m_bDone = 0;
}

int CAdvAnlzHDLCSpec::InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/)
{
    CAdvAnlzData stream(data);
    packet.Clean();
    InitialMembers();
    BitStuffData(stream);
    ReadFlagField(stream, packet, 0);
    return CheckProtocol(packet) == 0 ? 1 : 0;
}

bool CAdvAnlzHDLCSpec::Stopped(const CProtocolPacket& packet)
{
    if (packet.GetFieldCount() < CProtocolPacket::kMaxFields)
        return false;
    m_bDone = 1;
    return true;
}

void CAdvAnlzHDLCSpec::AddValueField(CProtocolPacket& packet, unsigned short nId, const CAdvAnlzData& value)
{
    CAdvAnlzData taken;
    ReadFieldWith(value, packet, nId, GetDefaultFieldAttr(nId), taken, ByteOrderAsStored, value.GetLength());
}

void CAdvAnlzHDLCSpec::AddArrayInformation(const SInformation& info, CProtocolPacket& packet)
{
    AddValueField(packet, FieldInformation, BytesOf(info.aBytes));
}

void CAdvAnlzHDLCSpec::ResetArrayInformation(SInformation& info)
{
    info.nCount = 0;
    info.aBytes.clear();
}

void CAdvAnlzHDLCSpec::RemoveFCSFromArrayInformation(SInformation& info)
{
    m_dwBitCursor -= 16;
    m_dwByteCount -= 2;
    // The higher index first, so that the lower one still names its byte.
    for (const int nIndex : {info.nCount - 1, info.nCount - 2})
        if (nIndex >= 0 && nIndex < static_cast<int>(info.aBytes.size()))
            info.aBytes.erase(info.aBytes.begin() + nIndex);
}

void CAdvAnlzHDLCSpec::CloseInformation(const CAdvAnlzData& data, CProtocolPacket& packet, SInformation& info,
                                        bool& bAfterFlag)
{
    if (bAfterFlag) {
        bAfterFlag = false;
        RemoveFCSFromArrayInformation(info);
        info.nCount -= 2;
    }
    AddArrayInformation(info, packet);
    ReadFCSFields(data, packet);
}

std::uint8_t CAdvAnlzHDLCSpec::MaskNextByte(const CAdvAnlzData& data)
{
    ++m_dwByteCount;
    return ByteAt(data, m_dwBitCursor) ^ kEscapeMask;
}

unsigned long CAdvAnlzHDLCSpec::ReadFlagField(const CAdvAnlzData& data, CProtocolPacket& packet,
                                              std::uint8_t byInHand)
{
    if (Stopped(packet))
        return 1;
    SInformation info;
    bool bAfterFlag = false;  // a flag has been taken since this reader began
    bool bHasBytes = false;   // a byte has ever been collected here
    const std::uint32_t dwLength = data.GetLength();
    while (!m_bDone && !Stopped(packet)) {
        if (!m_bFlagPending) {
            byInHand = ByteAt(data, m_dwBitCursor);
            if (dwLength <= m_dwBitCursor) {
                // The stream ends: behind a flag the bytes collected are the
                // frame's information and its FCS; otherwise they are added
                // as information as they stand.
                if (info.nCount > 2) {
                    CloseInformation(data, packet, info, bAfterFlag);
                } else if (info.nCount == 2 && bAfterFlag) {
                    bAfterFlag = false;
                    RemoveFCSFromArrayInformation(info);
                    ReadFCSFields(data, packet);
                    ReadFlagField(data, packet, byInHand);
                } else if (info.nCount == 2 || info.nCount == 1) {
                    AddArrayInformation(info, packet);
                    ResetArrayInformation(info);
                }
                m_bDone = 1;
                continue;
            }
        }
        if (byInHand == kFlag) {
            if (!bAfterFlag && info.nCount >= 1) {
                // Bytes ahead of the first flag stand outside any frame.
                AddValueField(packet, FieldData, BytesOf(info.aBytes));
                info.nCount = 0;
            }
            if (bHasBytes) {
                // The flag closes a frame without address and control: its
                // last two bytes are the FCS, and the rest of the stream is
                // read from the flag on by a fresh reader.
                if (info.nCount > 2) {
                    CloseInformation(data, packet, info, bAfterFlag);
                    ReadFlagField(data, packet, kFlag);
                } else if (info.nCount == 2) {
                    RemoveFCSFromArrayInformation(info);
                    ReadFCSFields(data, packet);
                }
                ResetArrayInformation(info);
            }
            const CAdvAnlzData flag = data.GetBits(m_dwBitCursor, 8);
            if (flag.GetLength() < 8)
                return m_dwBitCursor;
            AddValueField(packet, FieldFlag, flag);
            m_dwBitCursor += 8;
            ++m_dwByteCount;
            m_bFlagPending = 0;
            bAfterFlag = true;
            byInHand = ByteAt(data, m_dwBitCursor);
            if (m_dwBitCursor == dwLength) {
                m_bDone = 1;
                m_dwBitCursor += 8;
                continue;
            }
            if (byInHand == kAllStations) {
                const CAdvAnlzData address = data.GetBits(m_dwBitCursor, 8);
                if (address.GetLength() < 8)
                    return m_dwBitCursor;
                AddValueField(packet, FieldAddress, address);
                m_dwBitCursor += 8;
                ++m_dwByteCount;
                ReadControlField(data, packet);
                if (!m_bDone) {
                    // The frame ended behind its control field (a control
                    // byte of 0, the stream's end, or just an FCS and no
                    // closing flag): go on from the cursor, so that no byte
                    // is taken twice or made up.
                    m_bFlagPending = 0;
                    continue;
                }
            }
            if (byInHand == kFlag) {
                m_bFlagPending = 1;
                continue;
            }
        }
        if (m_bDone)
            continue;
        if (byInHand == kEscape) {
            m_dwBitCursor += 8;
            ++m_dwByteCount;
            byInHand = ByteAt(data, m_dwBitCursor) ^ kEscapeMask;
        }
        info.aBytes.push_back(byInHand);
        m_dwBitCursor += 8;
        ++m_dwByteCount;
        ++info.nCount;
        bHasBytes = true;
    }
    m_bFlagPending = 0;
    return 1;
}

unsigned long CAdvAnlzHDLCSpec::ReadControlField(const CAdvAnlzData& data, CProtocolPacket& packet)
{
    std::uint8_t byControl = ByteAt(data, m_dwBitCursor);
    if (byControl == 0)
        return 0;
    if (byControl == kEscape) {
        m_dwBitCursor += 8;
        byControl = MaskNextByte(data);
    }
    AddValueField(packet, FieldControl, CAdvAnlzData(byControl, 8));
    m_dwBitCursor += 8;
    ++m_dwByteCount;
    if (data.GetByteLength() > m_dwByteCount) {
        ReadInformationFields(data, packet);
        return 1;
    }
    return 0;
}

unsigned long CAdvAnlzHDLCSpec::ReadInformationFields(const CAdvAnlzData& data, CProtocolPacket& packet)
{
    if (Stopped(packet))
        return 1;
    SInformation info;
    std::uint8_t byInHand = ByteAt(data, m_dwBitCursor);
    bool bEscaped = false;  // byInHand was escaped: it is data, whatever its value
    const std::uint32_t dwBytes = data.GetByteLength();
    while (m_dwByteCount < dwBytes) {
        if (Stopped(packet))
            return 1;
        if (!bEscaped && byInHand == kFlag) {
            if (info.nCount == 1) {
                // One byte in front of the flag: it and the flag are read as
                // the FCS.
                m_dwBitCursor -= 8;
                --m_dwByteCount;
                ReadFCSFields(data, packet);
                ReadFlagField(data, packet, kFlag);
            } else {
                m_bFlagPending = 1;
                RemoveFCSFromArrayInformation(info);
                const int nCollected = info.nCount;
                info.nCount -= 2;
                if (nCollected != 2)
                    AddArrayInformation(info, packet);
                ReadFCSFields(data, packet);
                ReadFlagField(data, packet, kFlag);
            }
        } else if (!bEscaped && byInHand == kEscape) {
            m_dwBitCursor += 8;
            ++m_dwByteCount;
            byInHand = ByteAt(data, m_dwBitCursor) ^ kEscapeMask;
            bEscaped = true;
        } else {
            info.aBytes.push_back(byInHand);
            m_dwBitCursor += 8;
            byInHand = ByteAt(data, m_dwBitCursor);
            ++m_dwByteCount;
            ++info.nCount;
            bEscaped = false;
        }
    }
    if (m_bDone)
        return 1;
    // The stream ended before a closing flag: the last two bytes are the FCS.
    if (info.nCount == 2) {
        m_dwBitCursor -= 16;
        m_dwByteCount -= 2;
        ReadFCSFields(data, packet);
    } else if (info.nCount == 1) {
        AddArrayInformation(info, packet);
        ReadFCSFields(data, packet);
    } else {
        if (info.nCount > 2) {
            bool bBehindControl = true;
            CloseInformation(data, packet, info, bBehindControl);
        }
        if (ByteAt(data, m_dwBitCursor) == kFlag) {
            m_bFlagPending = 1;
            ReadFlagField(data, packet, kFlag);
        }
        if (m_dwByteCount <= dwBytes)
            m_bDone = 1;
    }
    return 1;
}

unsigned long CAdvAnlzHDLCSpec::ReadFCSFields(const CAdvAnlzData& data, CProtocolPacket& packet)
{
    const std::uint32_t dwBytes = data.GetByteLength();
    if (dwBytes < 2 || dwBytes <= m_dwByteCount)
        return 0;
    // The two raw bytes at the cursor, low first, as the sender put them:
    // an escape among them stays as it is.
    const unsigned nLow = ByteAt(data, m_dwBitCursor);
    const unsigned nHigh = ByteAt(data, m_dwBitCursor + 8);
    AddValueField(packet, FieldFCS, CAdvAnlzData(nHigh * 256u + nLow, 16));
    m_dwBitCursor += 16;
    m_dwByteCount += 2;
    return 1;
}

// ------------------------------------------------------------ the checks

namespace {

// The first flag must have a field behind it and be one byte.
unsigned CheckProtocolFlag(CProtocolPacket& packet)
{
    const unsigned char nFlag = packet.GetFieldIndex(CAdvAnlzHDLCSpec::FieldFlag);
    if (nFlag == 0)
        return packet.AddPError(180), 1;
    if (nFlag == packet.GetFieldCount())
        return packet.AddPError(53), 1;
    if (packet.GetFieldValue(nFlag)->GetLength() != 8)
        return packet.AddPError(55), 1;
    return 0;
}

// A frame without address (compressed address and control) is accepted; the
// first address must be followed by the control field, both one byte.
unsigned CheckProtocolAddress(CProtocolPacket& packet)
{
    const unsigned char nAddress = packet.GetFieldIndex(CAdvAnlzHDLCSpec::FieldAddress);
    if (nAddress == 0)
        return 0;
    if (nAddress == packet.GetFieldCount())
        return packet.AddPError(53), 1;
    const unsigned char nNext = static_cast<unsigned char>(nAddress + 1);
    const bool bControl = packet.GetFieldId(nNext) == CAdvAnlzHDLCSpec::FieldControl;
    unsigned nFindings = 0;
    if (!bControl) {
        packet.AddPError(54);
        ++nFindings;
    }
    if (packet.GetFieldValue(nAddress)->GetLength() != 8 ||
        (bControl && packet.GetFieldValue(nNext)->GetLength() != 8)) {
        packet.AddPError(55);
        ++nFindings;
    }
    return nFindings;
}

// The first FCS must be there and be two bytes; its value is not computed.
unsigned CheckProtocolFCS(CProtocolPacket& packet)
{
    const unsigned char nFCS = packet.GetFieldIndex(CAdvAnlzHDLCSpec::FieldFCS);
    if (nFCS == 0)
        return packet.AddPError(181), 1;
    if (packet.GetFieldValue(nFCS)->GetLength() != 16)
        return packet.AddPError(55), 1;
    return 0;
}

}  // namespace

unsigned char CAdvAnlzHDLCSpec::CheckProtocol(CProtocolPacket& packet) const
{
    packet.ClearPErrors();
    return static_cast<unsigned char>(CheckProtocolFlag(packet) + CheckProtocolAddress(packet) +
                                      CheckProtocolFCS(packet));
}
