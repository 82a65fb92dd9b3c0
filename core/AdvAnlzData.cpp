#include "core/AdvAnlzData.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::uint32_t kChunkBits = 56;  // bits moved per step; fits a shifted 64-bit word

std::uint64_t LowMask(std::uint32_t nBits) noexcept
{
    return nBits >= 64 ? ~0ull : ((1ull << nBits) - 1);
}

}  // namespace

// ---------------------------------------------------------------- storage

void CAdvAnlzData::Reset(std::uint32_t nBits)
{
    const std::uint32_t nBytes = nBits / 8 + (nBits % 8 ? 1 : 0);
    if (nBytes > kInlineBytes) {
        std::uint8_t* p = static_cast<std::uint8_t*>(std::calloc(nBytes, 1));
        if (!p)
            throw std::bad_alloc();
        if (IsHeap())
            std::free(m_u.pHeap);
        m_u.pHeap = p;
        m_dwCapacity = nBytes;
    } else {
        if (IsHeap())
            std::free(m_u.pHeap);
        std::memset(m_u.aInline, 0, kInlineBytes);
        m_dwCapacity = kInlineBytes;
    }
    m_dwStart = 0;
    m_dwLength = 0;
}

void CAdvAnlzData::Reserve(std::uint32_t nBytes)
{
    if (nBytes <= m_dwCapacity)
        return;
    // Grow geometrically so that repeated appends stay linear.
    std::uint64_t nNew = std::max<std::uint64_t>(nBytes, 2ull * m_dwCapacity);
    if (nNew > 0xFFFFFFFFull)
        nNew = nBytes;
    std::uint8_t* p = static_cast<std::uint8_t*>(std::calloc(static_cast<std::size_t>(nNew), 1));
    if (!p)
        throw std::bad_alloc();
    std::memcpy(p, Bytes(), m_dwCapacity);
    if (IsHeap())
        std::free(m_u.pHeap);
    m_u.pHeap = p;
    m_dwCapacity = static_cast<std::uint32_t>(nNew);
}

void CAdvAnlzData::ClearTail() noexcept
{
    const std::uint32_t dwEnd = m_dwStart + m_dwLength;
    if (dwEnd % 8)
        Bytes()[dwEnd / 8] &= static_cast<std::uint8_t>((1u << (dwEnd % 8)) - 1);
}

std::uint64_t CAdvAnlzData::LoadBits(std::uint32_t dwFirst, std::uint32_t nBits) const noexcept
{
    if (nBits == 0)
        return 0;
    const std::uint32_t dwPos = m_dwStart + dwFirst;
    const std::uint8_t* p = Bytes() + dwPos / 8;
    const std::uint32_t nShift = dwPos % 8;
    const std::uint32_t nBytes = (nShift + nBits + 7) / 8;  // 1 .. 9
    std::uint64_t v = 0;
    for (std::uint32_t i = 0; i < nBytes && i < 8; ++i)
        v |= static_cast<std::uint64_t>(p[i]) << (8 * i);
    v >>= nShift;
    if (nBytes == 9)
        v |= static_cast<std::uint64_t>(p[8]) << (64 - nShift);
    return v & LowMask(nBits);
}

void CAdvAnlzData::OrBits(std::uint32_t dwPos, std::uint32_t nBits, std::uint64_t v) noexcept
{
    if (nBits == 0)
        return;
    const std::uint32_t nShift = dwPos % 8;
    const std::uint64_t w = (v & LowMask(nBits)) << nShift;
    std::uint8_t* p = Bytes() + dwPos / 8;
    const std::uint32_t nBytes = (nShift + nBits + 7) / 8;
    for (std::uint32_t i = 0; i < nBytes; ++i)
        p[i] = static_cast<std::uint8_t>(p[i] | static_cast<std::uint8_t>(w >> (8 * i)));
}

void CAdvAnlzData::AppendBits(const CAdvAnlzData& other, std::uint32_t dwFrom, std::uint32_t nBits)
{
    if (nBits == 0)
        return;
    const std::uint64_t dwNewEnd = static_cast<std::uint64_t>(m_dwStart) + m_dwLength + nBits;
    if (dwNewEnd > 0xFFFFFFF0ull)
        return;  // beyond what a 32-bit bit length can address
    Reserve(static_cast<std::uint32_t>((dwNewEnd + 7) / 8));
    const std::uint32_t dwBase = m_dwStart + m_dwLength;
    if (dwBase % 8 == 0 && (other.m_dwStart + dwFrom) % 8 == 0 && &other != this) {
        const std::uint32_t nFull = nBits / 8;
        std::memcpy(Bytes() + dwBase / 8, other.Bytes() + (other.m_dwStart + dwFrom) / 8, nFull);
        if (nBits % 8)
            OrBits(dwBase + nFull * 8, nBits % 8, other.LoadBits(dwFrom + nFull * 8, nBits % 8));
    } else {
        for (std::uint32_t k = 0; k < nBits; k += kChunkBits) {
            const std::uint32_t n = std::min(kChunkBits, nBits - k);
            OrBits(dwBase + k, n, other.LoadBits(dwFrom + k, n));
        }
    }
    m_dwLength += nBits;
}

// ------------------------------------------------------- construction

CAdvAnlzData::CAdvAnlzData(const CAdvAnlzData& other) : CAdvAnlzData()
{
    *this = other;
}

CAdvAnlzData::CAdvAnlzData(CAdvAnlzData&& other) noexcept
    : m_dwLength(other.m_dwLength), m_dwStart(other.m_dwStart), m_dwCapacity(other.m_dwCapacity)
{
    std::memcpy(&m_u, &other.m_u, sizeof m_u);
    other.m_dwCapacity = kInlineBytes;
    other.m_dwLength = 0;
    other.m_dwStart = 0;
    std::memset(other.m_u.aInline, 0, kInlineBytes);
}

CAdvAnlzData::CAdvAnlzData(std::uint64_t dwValue, std::uint8_t nWidth) : CAdvAnlzData()
{
    SetData(dwValue, nWidth);
}

CAdvAnlzData::CAdvAnlzData(const CByteArray& aBytes) : CAdvAnlzData()
{
    SetData(aBytes.GetData(), static_cast<std::uint32_t>(aBytes.GetSize()) * 8u);
}

CAdvAnlzData CAdvAnlzData::FromBytes(const std::uint8_t* pBytes, std::uint32_t nBits)
{
    CAdvAnlzData value;
    value.SetData(pBytes, nBits);
    return value;
}

CAdvAnlzData::~CAdvAnlzData()
{
    if (IsHeap())
        std::free(m_u.pHeap);
}

CAdvAnlzData& CAdvAnlzData::operator=(const CAdvAnlzData& other)
{
    if (this == &other)
        return *this;
    // Copy the bytes that hold the value and keep its bit phase, so a copy is
    // one memcpy whatever the source's start offset.
    const std::uint32_t nPhase = other.m_dwStart % 8;
    const std::uint32_t nFirstByte = other.m_dwStart / 8;
    const std::uint32_t nBytes = other.m_dwLength ? other.UsedBytes() - nFirstByte : 0;
    Reset(nPhase + other.m_dwLength);
    if (nBytes > m_dwCapacity)
        Reserve(nBytes);
    if (nBytes)
        std::memcpy(Bytes(), other.Bytes() + nFirstByte, nBytes);
    m_dwStart = nBytes ? nPhase : 0;
    m_dwLength = other.m_dwLength;
    return *this;
}

CAdvAnlzData& CAdvAnlzData::operator=(CAdvAnlzData&& other) noexcept
{
    if (this == &other)
        return *this;
    if (IsHeap())
        std::free(m_u.pHeap);
    m_dwLength = other.m_dwLength;
    m_dwStart = other.m_dwStart;
    m_dwCapacity = other.m_dwCapacity;
    std::memcpy(&m_u, &other.m_u, sizeof m_u);
    other.m_dwCapacity = kInlineBytes;
    other.m_dwLength = 0;
    other.m_dwStart = 0;
    std::memset(other.m_u.aInline, 0, kInlineBytes);
    return *this;
}

void CAdvAnlzData::SetData(std::uint64_t dwValue, std::uint8_t nWidth)
{
    Reset(nWidth);
    const std::uint32_t nLow = nWidth < 32 ? nWidth : 32;
    OrBits(0, nLow, dwValue);
    if (nWidth > 32)
        OrBits(32, nWidth < 64 ? nWidth - 32u : 32u, dwValue >> 32);
    m_dwLength = nWidth;
}

void CAdvAnlzData::SetData(const CByteArray& aBytes, std::uint32_t nBits)
{
    const std::uint64_t nHave = static_cast<std::uint64_t>(aBytes.GetSize()) * 8u;
    SetData(aBytes.GetData(), static_cast<std::uint32_t>(std::min<std::uint64_t>(nBits, nHave)));
}

void CAdvAnlzData::SetData(const std::uint8_t* pBytes, std::uint32_t nBits)
{
    if (!pBytes)
        nBits = 0;
    Reset(nBits);
    const std::uint32_t nBytes = nBits / 8 + (nBits % 8 ? 1 : 0);
    if (nBytes)
        std::memcpy(Bytes(), pBytes, nBytes);
    m_dwLength = nBits;
    ClearTail();
}

void CAdvAnlzData::Clean() noexcept
{
    if (IsHeap())
        std::free(m_u.pHeap);
    m_dwCapacity = kInlineBytes;
    std::memset(m_u.aInline, 0, kInlineBytes);
    m_dwLength = 0;
    m_dwStart = 0;
}

// ------------------------------------------------------------- reading

CAdvAnlzData CAdvAnlzData::GetBits(std::uint32_t dwFirst, std::uint32_t dwCount) const
{
    CAdvAnlzData r;
    if (dwFirst >= m_dwLength || dwCount == 0)
        return r;
    const std::uint32_t n = std::min(dwCount, m_dwLength - dwFirst);
    r.Reset(n);
    const std::uint32_t dwPos = m_dwStart + dwFirst;
    const std::uint32_t nBytes = n / 8 + (n % 8 ? 1 : 0);
    const std::uint8_t* s = Bytes() + dwPos / 8;
    std::uint8_t* d = r.Bytes();
    const std::uint32_t nShift = dwPos % 8;
    if (nShift == 0) {
        std::memcpy(d, s, nBytes);
    } else {
        const std::uint32_t nAvail = m_dwCapacity - dwPos / 8;  // bytes readable from s
        for (std::uint32_t i = 0; i < nBytes; ++i) {
            const unsigned lo = static_cast<unsigned>(s[i]) >> nShift;
            const unsigned hi = i + 1 < nAvail ? static_cast<unsigned>(s[i + 1]) << (8 - nShift) : 0u;
            d[i] = static_cast<std::uint8_t>(lo | hi);
        }
    }
    r.m_dwLength = n;
    r.ClearTail();
    return r;
}

int CAdvAnlzData::GetBit(std::uint32_t dwIndex) const noexcept
{
    if (dwIndex >= m_dwLength)
        return 0;
    const std::uint32_t dwPos = m_dwStart + dwIndex;
    return (Bytes()[dwPos / 8] >> (dwPos % 8)) & 1;
}

std::uint8_t CAdvAnlzData::operator[](std::uint32_t dwByteIndex) const noexcept
{
    if (dwByteIndex >= GetByteLength())
        return 0;
    const std::uint32_t dwFirst = dwByteIndex * 8;
    return static_cast<std::uint8_t>(LoadBits(dwFirst, std::min<std::uint32_t>(8, m_dwLength - dwFirst)));
}

std::uint32_t CAdvAnlzData::GetStream(std::uint8_t* pBuffer) const noexcept
{
    const std::uint32_t nBytes = GetByteLength();
    if (!pBuffer || !nBytes)
        return 0;
    if (m_dwStart % 8 == 0) {
        std::memcpy(pBuffer, Bytes() + m_dwStart / 8, nBytes);
    } else {
        for (std::uint32_t i = 0; i < nBytes; ++i)
            pBuffer[i] = (*this)[i];
    }
    return nBytes;
}

CString CAdvAnlzData::ToString(std::uint8_t /*nArg*/, EDisplayFormat eFormat, int /*bFlag*/) const
{
    std::string s;
    const std::uint32_t nBytes = GetByteLength();
    switch (eFormat) {
    case DisplayDecimal: {
        // Long division of the little-endian number by 10.
        std::vector<std::uint8_t> a(nBytes);
        GetStream(a.data());
        while (!a.empty() && a.back() == 0)
            a.pop_back();
        if (a.empty())
            return CString("0");
        while (!a.empty()) {
            unsigned rem = 0;
            for (std::size_t i = a.size(); i-- > 0;) {
                const unsigned cur = (rem << 8) | a[i];
                a[i] = static_cast<std::uint8_t>(cur / 10);
                rem = cur % 10;
            }
            s.push_back(static_cast<char>('0' + rem));
            while (!a.empty() && a.back() == 0)
                a.pop_back();
        }
        std::reverse(s.begin(), s.end());
        break;
    }
    case DisplayBinary:
        for (std::uint32_t i = m_dwLength; i-- > 0;)
            s.push_back(GetBit(i) ? '1' : '0');
        break;
    case DisplayAscii:
        for (std::uint32_t i = 0; i < nBytes; ++i) {
            const char c = static_cast<char>((*this)[i]);
            s.push_back(c >= 0x20 && c < 0x7F ? c : '.');
        }
        break;
    case DisplayHexadecimal:
    default: {
        static const char kHex[] = "0123456789ABCDEF";
        for (std::uint32_t i = nBytes; i-- > 0;) {
            const std::uint8_t b = (*this)[i];
            s.push_back(kHex[b >> 4]);
            s.push_back(kHex[b & 15]);
        }
        break;
    }
    }
    return CString(s);
}

// ------------------------------------------------------------ changing

std::uint32_t CAdvAnlzData::Truncate(std::uint32_t dwFirst, std::uint32_t dwCount)
{
    if (dwFirst >= m_dwLength || dwCount == 0) {
        Clean();
        return 0;
    }
    const std::uint32_t n = std::min(dwCount, m_dwLength - dwFirst);
    const std::uint32_t dwNewEnd = m_dwStart + dwFirst + n;
    const std::uint32_t nOldUsed = UsedBytes();
    if (dwFirst + n < m_dwLength) {
        // Clear what is cut from the end, keeping the bits above the value zero.
        std::uint8_t* p = Bytes();
        if (dwNewEnd % 8)
            p[dwNewEnd / 8] &= static_cast<std::uint8_t>((1u << (dwNewEnd % 8)) - 1);
        const std::uint32_t nKeep = (dwNewEnd + 7) / 8;
        if (nOldUsed > nKeep)
            std::memset(p + nKeep, 0, nOldUsed - nKeep);
    }
    m_dwStart += dwFirst;
    m_dwLength = n;
    return m_dwLength;
}

CAdvAnlzData CAdvAnlzData::operator+(const CAdvAnlzData& other) const
{
    CAdvAnlzData r(*this);
    r += other;
    return r;
}

CAdvAnlzData& CAdvAnlzData::operator+=(const CAdvAnlzData& other)
{
    if (&other == this) {
        const CAdvAnlzData copy(other);
        AppendBits(copy, 0, copy.m_dwLength);
    } else {
        AppendBits(other, 0, other.m_dwLength);
    }
    return *this;
}

CAdvAnlzData& CAdvAnlzData::operator<<=(std::uint32_t dwCount)
{
    const std::uint32_t nLength = m_dwLength;
    CAdvAnlzData r;
    r.Reset(nLength);
    r.m_dwLength = std::min(dwCount, nLength);  // zeros enter at bit 0
    if (dwCount < nLength)
        r.AppendBits(*this, 0, nLength - dwCount);
    *this = std::move(r);
    return *this;
}

CAdvAnlzData& CAdvAnlzData::operator|=(const CAdvAnlzData& other)
{
    const std::uint32_t n = std::min(m_dwLength, other.m_dwLength);
    if (&other == this)
        return *this;
    for (std::uint32_t k = 0; k < n; k += kChunkBits) {
        const std::uint32_t c = std::min(kChunkBits, n - k);
        OrBits(m_dwStart + k, c, other.LoadBits(k, c));
    }
    return *this;
}

int CAdvAnlzData::CompareNumeric(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept
{
    if (a.m_dwLength <= 64 && b.m_dwLength <= 64) {
        const std::uint64_t x = a.GetNumber64(), y = b.GetNumber64();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    for (std::uint32_t i = std::max(a.GetByteLength(), b.GetByteLength()); i-- > 0;) {
        const std::uint8_t x = a[i], y = b[i];
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}

bool operator==(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept { return CAdvAnlzData::CompareNumeric(a, b) == 0; }
bool operator!=(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept { return CAdvAnlzData::CompareNumeric(a, b) != 0; }
bool operator<(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept { return CAdvAnlzData::CompareNumeric(a, b) < 0; }
bool operator<=(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept { return CAdvAnlzData::CompareNumeric(a, b) <= 0; }
bool operator>(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept { return CAdvAnlzData::CompareNumeric(a, b) > 0; }
bool operator>=(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept { return CAdvAnlzData::CompareNumeric(a, b) >= 0; }

// --------------------------------------------------------------- tools

CAdvAnlzData CAdvAnlzTools::RevertByteOrder(const CAdvAnlzData& value) const
{
    const std::uint32_t nLength = value.GetLength();
    const std::uint32_t nFull = nLength / 8;
    // Small values are reversed on the stack, so a field costs no allocation.
    std::uint8_t aSmall[CAdvAnlzData::kInlineBytes];
    std::vector<std::uint8_t> aLarge;
    std::uint8_t* a = aSmall;
    if (value.GetByteLength() > CAdvAnlzData::kInlineBytes) {
        aLarge.resize(value.GetByteLength());
        a = aLarge.data();
    }
    for (std::uint32_t i = 0; i < nFull; ++i)
        a[i] = value[nFull - 1 - i];
    if (nLength % 8)
        a[nFull] = value[nFull];
    return CAdvAnlzData::FromBytes(a, nLength);
}

CString CAdvAnlzTools::IpAddress(CAdvAnlzData& value)
{
    const std::uint32_t n = value;
    CString s;
    s.Format("%u.%u.%u.%u", (n >> 24) & 0xFF, (n >> 16) & 0xFF, (n >> 8) & 0xFF, n & 0xFF);
    return s;
}
