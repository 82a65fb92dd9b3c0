// The reading discipline that every HCI reader follows: a private copy of the
// payload consumed from the front; a stop as soon as nothing is left, behind
// every field and inside counted loops; and UnExpected for what is left
// behind the last field of a list.
#pragma once

#include <initializer_list>

#include "hci/HCISpec.h"

class CHCIReader {
public:
    CHCIReader(CHCISpec& spec, const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
        : m_spec(spec), m_data(data), m_packet(packet)
    {
    }

    // Reads a field at the front (dwLength bits, or the field's default width
    // when 0) and drops its bits. False when nothing is left behind it.
    bool Read(unsigned short nId, unsigned long dwLength = 0);
    // As Read, and gives the first occurrence of the field in the packet a
    // description of its own.
    bool ReadDescribed(unsigned short nId, const char* pszDesc);
    // Reads the fields in order; false as soon as nothing is left.
    bool ReadList(std::initializer_list<unsigned short> ids);
    // Behind the last field of a list: if bits are left, one more field,
    // UnExpected, with its default width; then nothing is left to read.
    void ReadRest();

    bool HasMore() const noexcept { return m_data.GetLength() != 0; }
    // The value of the field read last.
    const CAdvAnlzData& Value() const noexcept { return m_value; }
    const CAdvAnlzData& Data() const noexcept { return m_data; }
    unsigned long Consumed() const noexcept { return m_dwConsumed; }
    CReqRespProtocolPacket& Packet() noexcept { return m_packet; }

private:
    CHCISpec& m_spec;
    CAdvAnlzData m_data;
    CReqRespProtocolPacket& m_packet;
    CAdvAnlzData m_value;
    unsigned long m_dwConsumed = 0;
};
