// The frame that the USB device-class decoders share, and the pieces their
// walks use: the request and response field counts, the signed lengths of a
// setup's wLength, the per-instance names of fields that repeat once per
// port, and the bmRequestType options of the communication class.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/FieldAttr.h"
#include "core/FieldCursor.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
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

// bmRequestType as the communication class requests and notifications name
// it: direction (1 bit), type (2 bits), recipient (5 bits).
inline constexpr SOptionRow kCommunicationDirectionOptions[] = {
    {0, 0, 0, "Host to device", nullptr},
    {1, 1, 1, "Device to host", nullptr},
};
inline constexpr SOptionRow kCommunicationTypeOptions[] = {
    {0, 0, 0, "Standard", nullptr},
    {1, 1, 1, "Class", nullptr},
    {2, 2, 2, "Vendor", nullptr},
    {3, 3, 3, "Reserved", nullptr},
};
inline constexpr SOptionRow kCommunicationRecipientOptions[] = {
    {0, 0, 0, "Device", nullptr},
    {1, 1, 1, "Interface", nullptr},
    {2, 2, 2, "Endpoint", nullptr},
    {3, 3, 3, "Other", nullptr},
    {4, 4, 31, "Reserved", nullptr},
};

// The frame of a USB class decoder TSpec: the singleton, the catalogue and
// layer queries from TSpec's static table, the ReadField that counts each
// field on the side being read, and InterpretPacketData around TSpec's walk
// ReadElements. TSpec names this class a friend, so that it reaches TSpec's
// private constructor, table and walk. None of these decoders has rules to
// check: CheckProtocol finds nothing.
template <class TSpec>
class TUSBClassSpec : public CProtocolSpec {
public:
    static TSpec* GetInstance()
    {
        if (!ms_pInstance)
            ms_pInstance = new (std::nothrow) TSpec();
        return ms_pInstance;
    }
    static void KillInstance()
    {
        delete ms_pInstance;
        ms_pInstance = nullptr;
    }

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int /*nReserved*/) override
    {
        CReqRespProtocolPacket* pPacket = dynamic_cast<CReqRespProtocolPacket*>(&packet);
        if (!pPacket) {
            packet.Clean();
            return 1;
        }
        m_counts.Reset();
        pPacket->Clean();
        static_cast<TSpec*>(this)->ReadElements(data, *pPacket);
        const unsigned char nFindings = CheckProtocol(*pPacket);
        // The walk sets the response flag where the protocol has one; the
        // counts are copied here.
        m_counts.CopyTo(*pPacket);
        return nFindings == 0 ? 1 : 0;
    }
    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override
    {
        const SSpecFieldAttr* pAttr = TSpec::ms_table.Find(nId);
        return pAttr ? pAttr : CProtocolSpec::GetDefaultFieldAttr(nId);
    }
    unsigned short GetNumberOfLayerFields() const override { return TSpec::kFieldCount; }
    unsigned short GetLayerFieldId(int nIndex) const override { return TSpec::ms_table.LayerFieldId(nIndex); }
    CString GetLayerFieldName(unsigned short nId) override { return TSpec::ms_table.LayerFieldName(nId); }
    unsigned char CheckProtocol(CReqRespProtocolPacket&) const { return 0; }

protected:
    using CWalk = CFieldCursor<TSpec>;

    TUSBClassSpec() = default;

    // The frame's ReadField; the field counts on the side being read.
    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength)
    {
        const unsigned char nBefore = packet.GetFieldCount();
        const unsigned long dwBits =
            ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
        m_counts.Count(packet, nBefore);
        return dwBits;
    }
    // A walk over data with TSpec's ReadField and the given stop rule.
    CWalk Walk(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, EStopRule eRule)
    {
        return CWalk(static_cast<TSpec&>(*this), &TSpec::ReadField, eRule, data, packet);
    }

    CSideCounts m_counts;

private:
    inline static TSpec* ms_pInstance = nullptr;
};
