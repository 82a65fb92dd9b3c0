// Pieces shared by the USB device-class decoders: the request and response
// field counts of a walk, and the per-instance names of fields that repeat
// once per port.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/ProtocolPacket.h"
#include "platform/String.h"

// The two field counts of a request/response walk. The walk says which side
// it is reading; a field counts on that side once the packet has taken it,
// so the counts never exceed the fields the packet holds.
class CSideCounts {
public:
    void Reset() noexcept
    {
        m_nRequestFields = 0;
        m_nResponseFields = 0;
        m_bResponseSide = false;
    }
    // The fields read from here on belong to the response (the data stage).
    void BeginResponse() noexcept { m_bResponseSide = true; }
    // Counts a field if the packet grew past nBefore fields.
    void Count(const CProtocolPacket& packet, unsigned char nBefore) noexcept
    {
        if (packet.GetFieldCount() == nBefore)
            return;
        ++(m_bResponseSide ? m_nResponseFields : m_nRequestFields);
    }
    void CopyTo(CReqRespProtocolPacket& packet) const noexcept
    {
        packet.m_nRequestFields = m_nRequestFields;
        packet.m_nResponseFields = m_nResponseFields;
    }

    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;

private:
    bool m_bResponseSide = false;
};

// Whether a packet can take no more fields: loops whose length comes from
// the data end there, since nothing they read could be shown.
inline bool IsPacketFull(const CProtocolPacket& packet) noexcept
{
    return packet.GetFieldCount() >= CProtocolPacket::kMaxFields;
}

// The bits of a length in bytes from a setup's wLength (or a length field
// like it), taken as a signed number: 0x8000 and above ask for more than any
// payload holds, so the field takes what is left. 0 stays 0, which reads
// the field's default length.
inline std::uint32_t SignedLengthBits(std::uint16_t wLength) noexcept
{
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<std::int16_t>(wLength)) * 8);
}

// Names of a field's instances numbered from 1 ("...Port1", "...Port2"; the
// format takes one %d), formatted on first use and kept, so that renaming an
// instance costs no formatting and no allocation once a decoder has seen
// that many ports.
class CNumberedNames {
public:
    explicit CNumberedNames(const char* pszFormat) : m_pszFormat(pszFormat) {}

    const CString& Get(unsigned nNumber)
    {
        while (m_aNames.size() < nNumber) {
            CString strName;
            strName.Format(m_pszFormat, static_cast<int>(m_aNames.size() + 1));
            m_aNames.push_back(strName);
        }
        return m_aNames[nNumber - 1];
    }

private:
    const char* m_pszFormat;
    std::vector<CString> m_aNames;
};
