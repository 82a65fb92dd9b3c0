// The base of all decoders.
//
// A decoder is one class derived from CProtocolSpec with exactly one
// instance. It owns its option lists, its format list and its interned field
// attribute records; packets point at those records, so a decoder outlives
// its packets.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/FieldAttr.h"
#include "platform/Object.h"
#include "platform/String.h"

class CProtocolPacket;
template <class TSpec, class TPacket>
class CFieldCursor;

// Whether ReadField byte-reverses a value wider than 8 bits.
enum EByteOrder : int {
    ByteOrderAsStored = 0,
    ByteOrderReversed = 1,
};

// A decoder's static field catalogue: records in id order from the first id,
// the display names in the same order, and the ids offered to the host.
struct SFieldTable {
    const SSpecFieldAttr* pAttrs;
    const CString* pNames;
    const short* pIds;
    unsigned short nCount;
    unsigned short nFirstId;

    const SSpecFieldAttr* Find(unsigned short nId) const noexcept
    {
        return (nId >= nFirstId && nId - nFirstId < nCount) ? &pAttrs[nId - nFirstId] : nullptr;
    }
    unsigned short LayerFieldId(int nIndex) const noexcept
    {
        return (nIndex >= 0 && nIndex < nCount) ? static_cast<unsigned short>(pIds[nIndex]) : 0;
    }
    CString LayerFieldName(unsigned short nId) const
    {
        return (nId >= nFirstId && nId - nFirstId < nCount) ? pNames[nId - nFirstId] : CString();
    }
};

// The display names of a catalogue, in its order.
template <std::size_t N>
std::array<CString, N> FieldNamesOf(const SSpecFieldAttr (&aAttrs)[N])
{
    std::array<CString, N> aNames;
    for (std::size_t i = 0; i < N; ++i)
        aNames[i] = aAttrs[i].m_strName;
    return aNames;
}

// The ids nFirstId .. nFirstId + N - 1, in order.
template <std::size_t N>
constexpr std::array<short, N> FieldIdRange(unsigned short nFirstId)
{
    std::array<short, N> aIds{};
    for (std::size_t i = 0; i < N; ++i)
        aIds[i] = static_cast<short>(nFirstId + i);
    return aIds;
}

class CProtocolSpec : public CObject {
public:
    static const CRuntimeClass classCProtocolSpec;

    CProtocolSpec();
    ~CProtocolSpec() override;
    CProtocolSpec(const CProtocolSpec&) = delete;
    CProtocolSpec& operator=(const CProtocolSpec&) = delete;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCProtocolSpec; }
    void Serialize(CArchive&) override {}

    // The entry: decodes data into packet. Nonzero when the rule check found
    // nothing.
    virtual int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int nReserved) = 0;
    virtual int GetSuggestedPacket(unsigned char, CProtocolPacket&) { return 0; }
    virtual CString GetFieldDescription(unsigned short nId, const CAdvAnlzData* pValue) const;
    virtual CString GetFieldOptionName(unsigned short nId, const CAdvAnlzData& value) const;
    virtual CString GetFieldOptionAbbr(unsigned short nId, const CAdvAnlzData& value) const;
    virtual const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const;
    virtual unsigned short GetNumberOfLayerFields() const { return 0; }
    virtual unsigned short GetLayerFieldId(int nIndex) const;
    virtual CString GetLayerFieldName(unsigned short nId);

    // Interns a record in the plain form: a record with equal numbers is
    // shared, whatever its strings say.
    const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr);
    // Interns a record with this decoder's own comparison (see
    // SetReferenceStrings): the form its ReadField and packet loading use.
    const SSpecFieldAttr* InternFieldAttr(const SSpecFieldAttr& attr);
    // The options of a field, or null when it has none.
    const CFieldOptionList* GetFieldOptions(unsigned short nId) const;

    // The host's view of the format list and of the interning.
    int GetFormatCount() const noexcept { return static_cast<int>(m_aFormats.size()); }
    bool GetFormat(int nIndex, unsigned char& nCode, CString& strName) const;
    std::size_t GetReferenceCount() const noexcept { return m_nReferences; }

protected:
    // Strings that the strict interning compares besides the numbers.
    enum EReferenceStrings : unsigned {
        RefCompareNone = 0,
        RefCompareName = 1,
        RefCompareAbbr = 2,
        RefCompareDesc = 4,
        RefCompareAll = 7,
    };

    virtual void Clean() {}
    virtual void InitDirections() {}

    // Declares which strings this decoder's interning compares; decoders that
    // rename field instances set this in their constructor.
    void SetReferenceStrings(unsigned nStrings) noexcept { m_nReferenceStrings = nStrings; }
    // Interns with an explicit set of compared strings.
    const SSpecFieldAttr* InternFieldAttr(const SSpecFieldAttr& attr, unsigned nStrings);

    int AddFormat(unsigned char nCode, const CString& strName);
    // Appends an option list; a second list for the same field id extends the
    // first, so that lookups consult both in order.
    void AddOptionList(unsigned short nFieldId, std::uint8_t nWidth, const SOptionRow* pRows, std::size_t nRows);
    template <std::size_t N>
    void AddOptionList(unsigned short nFieldId, std::uint8_t nWidth, const SOptionRow (&aRows)[N])
    {
        AddOptionList(nFieldId, nWidth, aRows, N);
    }

    // The frame's ReadField on the default record pDefault (null for an id
    // the catalogue lacks): takes the first n bits of data (n = dwLength, or
    // the default length when 0), byte-reverses values over 8 bits when
    // eOrder is nonzero, binds the value to an interned record with the
    // packet's current length as offset and the bits read as length, and
    // appends it to the packet. Returns the bits read. data is not changed.
    unsigned long ReadFieldWith(const CAdvAnlzData& data, CProtocolPacket& packet, unsigned short nId,
                                const SSpecFieldAttr* pDefault, CAdvAnlzData& value, int eOrder,
                                unsigned long dwLength);

    // Adds a field under the default record of nId with an offset of its own,
    // keeping the table's length: for values assembled by hand.
    unsigned char AddFieldAt(CProtocolPacket& packet, const SSpecFieldAttr* pDefault,
                             const CAdvAnlzData& value, std::uint32_t dwOffset);

    // The walk renames field instances through RenameFieldInstance.
    template <class TSpec, class TPacket>
    friend class CFieldCursor;

    // Gives the occurrence of a field at nIndex a record of its own, with
    // its strings changed by the caller (name, abbreviation, description).
    void RenameFieldInstance(CProtocolPacket& packet, unsigned char nIndex, const CString* pName,
                             const CString* pAbbr, const CString* pDesc);

private:
    // Interns a record with the strings of pStrings and the numbers of the
    // key, copying the strings only when a new record is made.
    struct SRefKey;
    const SSpecFieldAttr* Intern(const SRefKey& key, const SSpecFieldAttr& strings, unsigned nStrings);

    struct SRefKey {
        unsigned short nId;
        std::uint32_t dwOffset, dwLength, dwMinLength, dwMaxLength;
        bool operator==(const SRefKey& o) const noexcept
        {
            return nId == o.nId && dwOffset == o.dwOffset && dwLength == o.dwLength &&
                   dwMinLength == o.dwMinLength && dwMaxLength == o.dwMaxLength;
        }
    };
    struct SRefKeyHash {
        std::size_t operator()(const SRefKey& k) const noexcept
        {
            std::uint64_t h = k.nId;
            h = h * 0x9E3779B97F4A7C15ull ^ k.dwOffset;
            h = h * 0x9E3779B97F4A7C15ull ^ k.dwLength;
            h = h * 0x9E3779B97F4A7C15ull ^ k.dwMinLength;
            h = h * 0x9E3779B97F4A7C15ull ^ k.dwMaxLength;
            return static_cast<std::size_t>(h ^ (h >> 29));
        }
    };

    // Interned records, grouped by their numbers; records of equal numbers
    // but different compared strings stand side by side in one group.
    std::unordered_map<SRefKey, std::vector<std::unique_ptr<SSpecFieldAttr>>, SRefKeyHash> m_mapReferences;
    std::size_t m_nReferences = 0;
    unsigned m_nReferenceStrings = RefCompareNone;

    std::vector<std::unique_ptr<CFieldOptionList>> m_aOptionLists;
    std::unordered_map<unsigned short, CFieldOptionList*> m_mapOptions;
    std::vector<std::pair<unsigned char, CString>> m_aFormats;
};
