// Field attribute records and named field values (options).
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/AdvAnlzData.h"
#include "platform/String.h"

// One field's attributes. In a decoder's static table the offset and length
// are the defaults; a record bound to a packet field carries the real ones.
struct SSpecFieldAttr {
    unsigned short m_nId;
    std::uint32_t m_dwOffset;
    std::uint32_t m_dwLength;
    std::uint32_t m_dwMinLength;
    std::uint32_t m_dwMaxLength;
    CString m_strName;
    CString m_strAbbr;
    CString m_strDesc;

    SSpecFieldAttr() : m_nId(0), m_dwOffset(0), m_dwLength(0), m_dwMinLength(0), m_dwMaxLength(0) {}
    // A fixed-length field: both bounds equal the length.
    SSpecFieldAttr(unsigned short nId, const CString& strName, const CString& strAbbr, const CString& strDesc,
                   std::uint32_t dwOffset, std::uint32_t dwLength)
        : SSpecFieldAttr(nId, strName, strAbbr, strDesc, dwOffset, dwLength, dwLength, dwLength)
    {
    }
    SSpecFieldAttr(unsigned short nId, const CString& strName, const CString& strAbbr, const CString& strDesc,
                   std::uint32_t dwOffset, std::uint32_t dwLength, std::uint32_t dwMinLength,
                   std::uint32_t dwMaxLength)
        : m_nId(nId), m_dwOffset(dwOffset), m_dwLength(dwLength), m_dwMinLength(dwMinLength),
          m_dwMaxLength(dwMaxLength), m_strName(strName), m_strAbbr(strAbbr), m_strDesc(strDesc)
    {
    }

    // Only the numbers take part: id, offset, length, least and greatest length.
    bool operator==(const SSpecFieldAttr& o) const noexcept
    {
        return m_nId == o.m_nId && m_dwOffset == o.m_dwOffset && m_dwLength == o.m_dwLength &&
               m_dwMinLength == o.m_dwMinLength && m_dwMaxLength == o.m_dwMaxLength;
    }
    bool operator<(const SSpecFieldAttr& o) const noexcept
    {
        if (m_nId != o.m_nId)
            return m_nId < o.m_nId;
        if (m_dwOffset != o.m_dwOffset)
            return m_dwOffset < o.m_dwOffset;
        if (m_dwLength != o.m_dwLength)
            return m_dwLength < o.m_dwLength;
        if (m_dwMinLength != o.m_dwMinLength)
            return m_dwMinLength < o.m_dwMinLength;
        return m_dwMaxLength < o.m_dwMaxLength;
    }
};

// One named value or value range of a field: a value v matches when
// low <= v <= high, compared as numbers.
struct SFieldOption {
    CString m_strName;
    CString m_strAbbr;
    unsigned short m_nOptionId;
    CAdvAnlzData m_Low;
    CAdvAnlzData m_High;

    SFieldOption(const CString& strName, unsigned short nOptionId, const CAdvAnlzData& low,
                 const CAdvAnlzData& high, const CString& strAbbr)
        : m_strName(strName), m_strAbbr(strAbbr), m_nOptionId(nOptionId), m_Low(low), m_High(high)
    {
    }

    bool Matches(const CAdvAnlzData& value) const noexcept { return m_Low <= value && value <= m_High; }
};

// The options of one field, searched from the front: the first match wins.
class CFieldOptionList {
public:
    explicit CFieldOptionList(unsigned short nFieldId) : m_nFieldId(nFieldId) {}

    unsigned short GetFieldId() const noexcept { return m_nFieldId; }
    int GetSize() const noexcept { return static_cast<int>(m_aOptions.size()); }
    const SFieldOption& GetAt(int i) const { return m_aOptions[static_cast<std::size_t>(i)]; }
    void Add(const SFieldOption& option);
    // The first option whose range holds the value, or null.
    const SFieldOption* Find(const CAdvAnlzData& value) const noexcept;

private:
    unsigned short m_nFieldId;
    std::vector<SFieldOption> m_aOptions;
    // The bounds as numbers, while every bound fits 64 bits: a value of up to
    // 64 bits is then found by comparing numbers only.
    std::vector<std::pair<std::uint64_t, std::uint64_t>> m_aNumericBounds;
    bool m_bNumericBounds = true;
};

// One row of a decoder's option table: option id, value range, name and
// abbreviation (null when it equals the name).
struct SOptionRow {
    unsigned short nOptionId;
    std::uint64_t dwLow;
    std::uint64_t dwHigh;
    const char* pszName;
    const char* pszAbbr;
};
