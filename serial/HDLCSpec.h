// HDLC-like framing of PPP on a serial link: one captured byte stream of the
// link in, the flags, address, control, information, FCS and the bytes
// outside any frame out. A payload may hold several frames.
//
// The decoder first removes the zero bits that a synchronous sender inserted
// after five ones, in the first frame of the payload, and then undoes the
// byte escapes of an asynchronous sender while it reads. It does not look
// inside the information bytes (the PPP protocol number stays there) and it
// does not compute the frame check sequence. It fills a plain
// CProtocolPacket.
//
// The run of one bits that the unstuffing counts is kept for the life of the
// process, so the run that ended one payload carries into the next; a host
// that starts a new capture clears it with ResetOnesInRow.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

class CAdvAnlzHDLCSpec : public CProtocolSpec {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CAdvAnlzHDLCSpec)

public:
    enum : unsigned short {
        FieldInformation = 5500,
        FieldFlag = 5501,
        FieldAddress = 5502,
        FieldControl = 5503,
        FieldProtocolHigh = 5504,
        FieldProtocolLow = 5505,
        FieldFCS = 5506,
        FieldData = 5507,
    };
    static constexpr unsigned short kFirstId = 5500;
    static constexpr unsigned short kFieldCount = 8;

    // The bytes the framing knows.
    static constexpr std::uint8_t kFlag = 0x7E;
    static constexpr std::uint8_t kAllStations = 0xFF;
    static constexpr std::uint8_t kEscape = 0x7D;
    static constexpr std::uint8_t kEscapeMask = 0x20;

    static CAdvAnlzHDLCSpec* GetInstance();
    static void KillInstance();
    ~CAdvAnlzHDLCSpec() override = default;

    // Decodes one stream payload into a plain CProtocolPacket. Nonzero when
    // the framing checks found nothing.
    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    // Ids 5500 to 5507; any other id has no record here.
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override { return ms_table.Find(nId); }
    unsigned short GetNumberOfLayerFields() const override { return kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return ms_table.LayerFieldName(nId); }

    // The framing checks of the first flag, address and FCS of the packet;
    // clears the packet's protocol errors first. Returns the findings:
    // 180 no flag, 181 no FCS, 53 nothing behind the first flag or address,
    // 54 an address not followed by a control field or an FCS record of
    // another id, 55 a flag, address, control or FCS of the wrong length.
    unsigned char CheckProtocol(CProtocolPacket& packet) const;

    // Sets the reading state (bit cursor, byte count, pending flag, end mark)
    // to zero.
    void InitialMembers();

    // The bit-stuffing operations. BitStuffing takes the bits of body that
    // follow the bit cursor, one byte's worth: behind five ones in a row a
    // zero is a stuffed bit and is cut out of body, a one and a zero make a
    // flag. It leaves the cursor on the byte scanned (one byte further when
    // a flag's last bit lay behind it) and returns the byte that the body
    // holds there now. The run of ones it counts is the process-wide one.
    std::uint8_t BitStuffing(CAdvAnlzData& body);
    std::uint32_t GetBitCursor() const noexcept { return m_dwBitCursor; }
    void SetBitCursor(std::uint32_t dwBits) noexcept { m_dwBitCursor = dwBits; }
    // Whether the last scan ended on a flag pattern.
    bool IsFlagPending() const noexcept { return m_bFlagPending != 0; }
    // The run of one bits carried from payload to payload, and its reset for
    // a new stream (or a test that must not depend on what ran before it).
    static int GetOnesInRow() noexcept { return s_nOnesInRow; }
    static void ResetOnesInRow() noexcept { s_nOnesInRow = 0; }

private:
    class CBodyView;
    // The bytes collected by one reader: an information array and its count,
    // which the readers keep apart from the array's size.
    struct SInformation {
        std::vector<std::uint8_t> aBytes;
        int nCount = 0;
    };

    CAdvAnlzHDLCSpec() = default;

    // Removes the stuffed zeros of the payload's first frame in place.
    void BitStuffData(CAdvAnlzData& data);
    // The scan of BitStuffing over any body that can give and cut bits;
    // moves the bit cursor.
    template <class TBody>
    void ScanStuffedBits(TBody& body);

    // The readers. They share the bit cursor and the byte count; each frame
    // nests one level deeper (see HDLCSpec.cpp for the bound).
    unsigned long ReadFlagField(const CAdvAnlzData& data, CProtocolPacket& packet, std::uint8_t byInHand);
    unsigned long ReadControlField(const CAdvAnlzData& data, CProtocolPacket& packet);
    unsigned long ReadInformationFields(const CAdvAnlzData& data, CProtocolPacket& packet);
    unsigned long ReadFCSFields(const CAdvAnlzData& data, CProtocolPacket& packet);
    // The bytes collected end a frame: behind a flag (bAfterFlag, which is
    // then cleared) the last two are its FCS and are given back; the rest is
    // added as information and the FCS is read.
    void CloseInformation(const CAdvAnlzData& data, CProtocolPacket& packet, SInformation& info, bool& bAfterFlag);
    // Counts one byte, returns the byte at the cursor unescaped.
    std::uint8_t MaskNextByte(const CAdvAnlzData& data);
    void AddArrayInformation(const SInformation& info, CProtocolPacket& packet);
    static void ResetArrayInformation(SInformation& info);
    // Gives back the last two bytes taken: they are the FCS. The caller
    // lowers the count.
    void RemoveFCSFromArrayInformation(SInformation& info);
    // Adds a value as a field of nId at the packet's current length.
    void AddValueField(CProtocolPacket& packet, unsigned short nId, const CAdvAnlzData& value);
    // True once the packet holds all the fields it can: nothing read after
    // that can show, so every reader ends.
    bool Stopped(const CProtocolPacket& packet);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
    static CAdvAnlzHDLCSpec* ms_pInstance;
    // One bits in a row, for the life of the process.
    static int s_nOnesInRow;

    // Reading state of the payload in hand.
    std::uint32_t m_dwBitCursor = 0;  // bit offset of the next byte to read
    std::uint32_t m_dwByteCount = 0;  // bytes consumed so far
    int m_bFlagPending = 0;           // a flag is seen and not yet a field
    int m_bDone = 0;                  // the end of the payload is handled
};
