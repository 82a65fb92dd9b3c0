// The one walk every decoder makes over a payload: a private copy of the
// data, consumed from the front. Each field is taken by the decoder's own
// ReadField (which knows its catalogue, its byte order and what it counts),
// then its bits are dropped from the copy. A decoder states only its field
// order and its own rules; what happens when the copy runs dry is the
// cursor's stop rule:
//
//   StopWhenEmpty  the walk ends as soon as nothing is left: once the copy
//                  is empty no further field is read, so a list of fields
//                  stops behind the last one the data holds.
//   ReadPastEnd    every field of the format is still added; past the end of
//                  the data a field is added with length 0.
//
// A bound (SetLimit) makes the walk end early, as if the data ended there:
// a frame inside a longer payload is read without a copy of it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

enum EStopRule : int {
    StopWhenEmpty = 0,
    ReadPastEnd = 1,
};

template <class TSpec, class TPacket = CReqRespProtocolPacket>
class CFieldCursor {
public:
    // The decoder's ReadField: takes a field from the front of data, adds it
    // to the packet, and returns the bits it took. data is not changed.
    using ReadFieldFn = unsigned long (TSpec::*)(const CAdvAnlzData& data, TPacket& packet, unsigned short nId,
                                                 CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength);

    CFieldCursor(TSpec& spec, ReadFieldFn pfnReadField, EStopRule eRule, const CAdvAnlzData& data, TPacket& packet)
        : m_spec(spec), m_pfnReadField(pfnReadField), m_eRule(eRule), m_data(data), m_packet(packet)
    {
    }

    // Reads one field (dwLength bits, or the catalogue's default when 0) and
    // drops its bits. Returns its value, valid until the next read; under
    // StopWhenEmpty a walk that has ended reads nothing and returns an empty
    // value.
    const CAdvAnlzData& Read(unsigned short nId, unsigned long dwLength = 0, EByteOrder eOrder = ByteOrderAsStored)
    {
        if (m_eRule == StopWhenEmpty && Left() == 0) {
            m_value.Clean();
            return m_value;
        }
        return ReadAlways(nId, dwLength, eOrder);
    }
    // Reads one field whatever the stop rule says, for a field that a
    // format adds even behind the end of the data (with length 0 there).
    const CAdvAnlzData& ReadAlways(unsigned short nId, unsigned long dwLength = 0,
                                   EByteOrder eOrder = ByteOrderAsStored)
    {
        unsigned long dwBits = 0;
        if (m_dwLimit >= m_data.GetLength()) {
            dwBits = (m_spec.*m_pfnReadField)(m_data, m_packet, nId, m_value, eOrder, dwLength);
        } else {
            // Within a bound the field is cut at it (its default length
            // counts where none is asked for); at the bound nothing is left.
            const SSpecFieldAttr* pDefault = static_cast<const CProtocolSpec&>(m_spec).GetDefaultFieldAttr(nId);
            const unsigned long dwWanted = dwLength ? dwLength : (pDefault ? pDefault->m_dwLength : 0);
            const unsigned long dwCut = std::min<unsigned long>(dwWanted, m_dwLimit);
            dwBits = dwCut ? (m_spec.*m_pfnReadField)(m_data, m_packet, nId, m_value, eOrder, dwCut)
                           : (m_spec.*m_pfnReadField)(CAdvAnlzData(), m_packet, nId, m_value, eOrder, 0);
        }
        Drop(static_cast<std::uint32_t>(dwBits));
        return m_value;
    }
    // A big-endian number on the wire: its bytes are reversed.
    const CAdvAnlzData& ReadReversed(unsigned short nId, unsigned long dwLength)
    {
        return Read(nId, dwLength, ByteOrderReversed);
    }
    // Reads one field and tells whether the walk goes on.
    bool ReadOn(unsigned short nId, unsigned long dwLength = 0)
    {
        Read(nId, dwLength);
        return More();
    }
    // Reads the fields in order with their default widths; false as soon
    // as the walk has ended.
    bool ReadList(std::initializer_list<unsigned short> ids)
    {
        for (unsigned short nId : ids)
            if (!ReadOn(nId))
                return false;
        return true;
    }
    // Reads a field, then gives one occurrence of its id in the packet (the
    // nOccurrence-th, from 0) strings of its own; a null string stays the
    // catalogue's. The decoder's interning must compare the strings changed.
    const CAdvAnlzData& ReadRenamed(unsigned short nId, unsigned nOccurrence, const CString* pName,
                                    const CString* pAbbr, const CString* pDesc, unsigned long dwLength = 0)
    {
        if (m_eRule == StopWhenEmpty && Left() == 0) {
            m_value.Clean();
            return m_value;
        }
        ReadAlways(nId, dwLength);
        if (const unsigned char nIndex = IndexOfOccurrence(nId, nOccurrence))
            m_spec.RenameFieldInstance(m_packet, nIndex, pName, pAbbr, pDesc);
        return m_value;
    }
    // Behind the last field of a format: what is left, if anything, becomes
    // one field of nLeftoverId (its default width); then the walk has ended.
    void ReadRest(unsigned short nLeftoverId)
    {
        if (Left() != 0)
            Read(nLeftoverId);
        Drop(Left());
    }

    // The next nBits bits (fewer at the end or the bound), not consumed.
    CAdvAnlzData Peek(std::uint32_t nBits) const { return m_data.GetBits(0, std::min(nBits, Left())); }
    // Consumes bits that a decoder has taken by hand (with Peek).
    void Drop(std::uint32_t nBits)
    {
        m_data.Truncate(nBits, CAdvAnlzData::kToEnd);
        m_dwConsumed += nBits;
        if (m_dwLimit != CAdvAnlzData::kToEnd)
            m_dwLimit -= std::min(nBits, m_dwLimit);
    }
    // Ends the walk nBits bits from here for the reads that follow, until
    // the bound is set again (CAdvAnlzData::kToEnd: no bound).
    void SetLimit(std::uint32_t nBits) noexcept { m_dwLimit = nBits; }

    // Whether data is left to read.
    bool More() const noexcept { return Left() != 0; }
    bool IsEmpty() const noexcept { return Left() == 0; }
    // Bits left to read: to the end of the data, or to the bound.
    std::uint32_t Left() const noexcept { return std::min(m_data.GetLength(), m_dwLimit); }
    // The value of the field read last.
    const CAdvAnlzData& Value() const noexcept { return m_value; }
    // What is left of the copy, bound or not.
    const CAdvAnlzData& Data() const noexcept { return m_data; }
    // Bits consumed so far.
    unsigned long Consumed() const noexcept { return m_dwConsumed; }
    TPacket& Packet() noexcept { return m_packet; }
    TSpec& Spec() noexcept { return m_spec; }

private:
    // The index of the nOccurrence-th field of nId in the packet (from 0),
    // as GetFieldIndex would list it, or 0. A walk renames occurrence after
    // occurrence and only ever appends fields, so the search goes on from the
    // occurrence found last instead of from the front, and builds no list.
    unsigned char IndexOfOccurrence(unsigned short nId, unsigned nOccurrence) noexcept
    {
        unsigned i = 1;
        unsigned nSkip = nOccurrence;
        if (m_nFoundIndex != 0 && m_nFoundId == nId && nOccurrence > m_nFoundOccurrence) {
            i = m_nFoundIndex + 1u;
            nSkip = nOccurrence - m_nFoundOccurrence - 1;
        }
        for (; i <= m_packet.GetFieldCount(); ++i) {
            const SSpecFieldAttr* pAttr = m_packet.GetFieldAttr(static_cast<unsigned char>(i));
            if (pAttr && pAttr->m_nId == nId && nSkip-- == 0) {
                m_nFoundId = nId;
                m_nFoundOccurrence = nOccurrence;
                m_nFoundIndex = static_cast<unsigned char>(i);
                return m_nFoundIndex;
            }
        }
        return 0;
    }

    TSpec& m_spec;
    ReadFieldFn m_pfnReadField;
    EStopRule m_eRule;
    CAdvAnlzData m_data;
    TPacket& m_packet;
    CAdvAnlzData m_value;
    unsigned long m_dwConsumed = 0;
    // The occurrence that IndexOfOccurrence found last.
    unsigned short m_nFoundId = 0;
    unsigned m_nFoundOccurrence = 0;
    unsigned char m_nFoundIndex = 0;
    std::uint32_t m_dwLimit = CAdvAnlzData::kToEnd;
};
