// The common frame of the four HID decoders: the HID class descriptor, class
// requests, report descriptors and physical descriptors. All four number
// their fields from 27700, so an id means something only together with the
// decoder that made it; a CUSBHIDPacket holds exactly one of them.
//
// Release rule. A decoder instance is shared by every packet bound to it,
// and a packet's fields point at the decoder's interned records. Each
// decoder therefore counts the packets bound to it. KillInstance detaches
// the instance at once (the next GetInstance makes a fresh one), but the
// old instance is deleted only when no packet is bound to it any more: the
// last packet to leave it deletes it. A packet's end never deletes a
// decoder that nobody asked to release, so decoders are not rebuilt packet
// by packet. Whatever the order in which packets are made, decoded, copied,
// destroyed and decoders killed, no packet outlives the records it reads.
#pragma once

#include <new>

#include "core/AdvAnlzData.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

class CUSBHIDDecoder;
class CUSBHIDPacket;

// The walk of every HID decoder: every field of a format is read, also past
// the end of the payload, where it stands with length 0.
using CUSBHIDWalk = CFieldCursor<CUSBHIDDecoder>;

class CUSBHIDDecoder : public CProtocolSpec {
public:
    static constexpr unsigned short kFirstId = 27700;

    // Clears the packet, walks the payload and copies the request field
    // count. HID decoders have no protocol rules: the result is always 1.
    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) override;
    unsigned char CheckProtocol(CReqRespProtocolPacket&) const { return 0; }

    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override;
    unsigned short GetNumberOfLayerFields() const override { return m_table.nCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return m_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return m_table.LayerFieldName(nId); }

    // HID decoder instances alive, released or not: zero once every decoder
    // is killed and every packet is gone.
    static int GetLiveDecoderCount() noexcept { return ms_nLiveDecoders; }
    // Packets bound to this instance now.
    int GetBoundPacketCount() const noexcept { return m_nPackets; }

protected:
    explicit CUSBHIDDecoder(const SFieldTable& table);
    ~CUSBHIDDecoder() override;

    // The decoder's format walk over a payload.
    virtual unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet) = 0;

    // The frame's ReadField; a field that the packet took counts as a request
    // field (a full packet takes no more).
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);
    CUSBHIDWalk Walk(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
    {
        return CUSBHIDWalk(*this, &CUSBHIDDecoder::ReadField, ReadPastEnd, data, packet);
    }
    // Whatever the walk has not read becomes one field of nId.
    static void ReadLeftover(CUSBHIDWalk& walk, unsigned short nId);
    // Whether a group of nFields fields of nBits bits still fits the packet,
    // keeping one field free for the leftover when data would remain behind
    // the group. A walk that stops here ends with ReadLeftover, so every bit
    // of a payload lands in a field, also when the format asks for more
    // fields than a packet can hold.
    static bool Fits(CUSBHIDWalk& walk, int nFields, unsigned long dwBits);

    // The release of an instance, the rule above.
    static void Release(CUSBHIDDecoder* pDecoder);

private:
    friend class CUSBHIDPacket;

    void AttachPacket() noexcept { ++m_nPackets; }
    void DetachPacket();

    const SFieldTable& m_table;
    unsigned char m_nRequestFields = 0;
    int m_nPackets = 0;
    bool m_bReleased = false;
    static int ms_nLiveDecoders;
};

// The one instance of a HID decoder class, made on first use and released by
// the rule above.
template <class TSpec>
class TUSBHIDDecoder : public CUSBHIDDecoder {
public:
    static TSpec* GetInstance()
    {
        if (!ms_pInstance)
            ms_pInstance = new (std::nothrow) TSpec();
        return ms_pInstance;
    }
    static void KillInstance()
    {
        Release(ms_pInstance);
        ms_pInstance = nullptr;
    }

protected:
    explicit TUSBHIDDecoder(const SFieldTable& table) : CUSBHIDDecoder(table) {}

private:
    static inline TSpec* ms_pInstance = nullptr;
};
