// The bit-string value: every payload, field value and option value.
//
// Bit 0 is the least significant bit of the first byte; bit k lies in byte
// k / 8 at weight 2^(k mod 8). Read as a number the value is little-endian.
// Bits of the last byte above the length are never part of the value.
//
// Storage: up to kInlineBytes bytes live inside the object (no heap
// allocation for a small field); longer values go to the heap. The value
// keeps a start offset into its storage, so dropping bits from the front
// (Truncate(n, -1), the decoders' consuming step) costs O(1) and a whole walk
// over a payload stays linear in its length.
#pragma once

#include <cstdint>

#include "platform/Arrays.h"
#include "platform/String.h"

// How ToString renders a value.
enum EDisplayFormat : int {
    DisplayHexadecimal = 0,
    DisplayDecimal = 1,
    DisplayBinary = 2,
    DisplayAscii = 3,
};

class CAdvAnlzData {
public:
    static constexpr std::uint32_t kInlineBytes = 16;
    static constexpr std::uint32_t kToEnd = 0xFFFFFFFFu;

    // Empty, with all inline bytes zero: appending ORs bits into the storage
    // behind the value's end, which must hold no stale bits.
    CAdvAnlzData() noexcept : m_dwLength(0), m_dwStart(0), m_dwCapacity(kInlineBytes)
    {
        for (std::uint8_t& b : m_u.aInline)
            b = 0;
    }
    CAdvAnlzData(const CAdvAnlzData& other);
    CAdvAnlzData(CAdvAnlzData&& other) noexcept;
    // A value of exactly nWidth bits holding the low-order bits of dwValue.
    CAdvAnlzData(std::uint64_t dwValue, std::uint8_t nWidth);
    // All bytes of the array, first element first.
    explicit CAdvAnlzData(const CByteArray& aBytes);
    virtual ~CAdvAnlzData();
    // The first nBits bits of a byte buffer.
    static CAdvAnlzData FromBytes(const std::uint8_t* pBytes, std::uint32_t nBits);

    CAdvAnlzData& operator=(const CAdvAnlzData& other);
    CAdvAnlzData& operator=(CAdvAnlzData&& other) noexcept;

    void SetData(std::uint64_t dwValue, std::uint8_t nWidth);
    // The first nBits bits of the array (clipped to the array).
    void SetData(const CByteArray& aBytes, std::uint32_t nBits);
    void SetData(const std::uint8_t* pBytes, std::uint32_t nBits);
    void Clean() noexcept;

    std::uint32_t GetLength() const noexcept { return m_dwLength; }
    // Bytes the value occupies, the last one possibly partial.
    std::uint32_t GetByteLength() const noexcept { return m_dwLength / 8 + (m_dwLength % 8 ? 1 : 0); }

    // Bits dwFirst .. dwFirst + dwCount - 1, clipped at the end of the string.
    CAdvAnlzData GetBits(std::uint32_t dwFirst, std::uint32_t dwCount) const;
    int GetBit(std::uint32_t dwIndex) const noexcept;
    // The byte at that index (bits 8i .. 8i + 7), 0 past the end.
    std::uint8_t operator[](std::uint32_t dwByteIndex) const noexcept;
    // Copies the value's bytes into pBuffer; returns the count of bytes.
    std::uint32_t GetStream(std::uint8_t* pBuffer) const noexcept;

    // Implicit numeric readings: the low-order bits, zero-extended.
    operator std::uint8_t() const noexcept { return Cast8Bits(); }
    operator std::uint16_t() const noexcept { return Cast16Bits(); }
    operator std::uint32_t() const noexcept { return Cast32Bits(); }
    // The low-order 64 bits as a number.
    std::uint64_t GetNumber64() const noexcept { return LoadBits(0, m_dwLength < 64 ? m_dwLength : 64); }

    CString ToString(std::uint8_t nArg, EDisplayFormat eFormat, int bFlag) const;

    // Cuts the value in place to bits dwFirst .. dwFirst + dwCount - 1.
    std::uint32_t Truncate(std::uint32_t dwFirst, std::uint32_t dwCount);

    CAdvAnlzData operator+(const CAdvAnlzData& other) const;
    CAdvAnlzData& operator+=(const CAdvAnlzData& other);
    // Shifts toward higher weight inside the fixed length.
    CAdvAnlzData& operator<<=(std::uint32_t dwCount);
    // ORs the operand's bits into the bits of the same index; length stays.
    CAdvAnlzData& operator|=(const CAdvAnlzData& other);

    // Numeric comparison of the little-endian readings, zero-extended, so an
    // 8-bit option value compares with a field of any width.
    static int CompareNumeric(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;

private:
    std::uint8_t Cast8Bits() const noexcept { return static_cast<std::uint8_t>(LoadBits(0, m_dwLength < 8 ? m_dwLength : 8)); }
    std::uint16_t Cast16Bits() const noexcept { return static_cast<std::uint16_t>(LoadBits(0, m_dwLength < 16 ? m_dwLength : 16)); }
    std::uint32_t Cast32Bits() const noexcept { return static_cast<std::uint32_t>(LoadBits(0, m_dwLength < 32 ? m_dwLength : 32)); }

    bool IsHeap() const noexcept { return m_dwCapacity > kInlineBytes; }
    std::uint8_t* Bytes() noexcept { return IsHeap() ? m_u.pHeap : m_u.aInline; }
    const std::uint8_t* Bytes() const noexcept { return IsHeap() ? m_u.pHeap : m_u.aInline; }
    // Bytes of storage in use: from byte 0 up to the byte holding the last bit.
    std::uint32_t UsedBytes() const noexcept { return (m_dwStart + m_dwLength + 7) / 8; }

    // Up to 64 bits of the value from bit dwFirst (relative to the value),
    // which the caller has checked to lie within the length.
    std::uint64_t LoadBits(std::uint32_t dwFirst, std::uint32_t nBits) const noexcept;
    // Makes room for nBytes bytes of storage counted from byte 0, keeping the
    // contents and zero-filling the new bytes.
    void Reserve(std::uint32_t nBytes);
    // Resets to an empty value with room for nBits bits at start 0, zeroed.
    void Reset(std::uint32_t nBits);
    // ORs nBits (at most 57) of v into the storage at absolute bit dwPos.
    void OrBits(std::uint32_t dwPos, std::uint32_t nBits, std::uint64_t v) noexcept;
    // Appends nBits bits of other from bit dwFrom (relative to other).
    void AppendBits(const CAdvAnlzData& other, std::uint32_t dwFrom, std::uint32_t nBits);
    // Clears the storage bits above the end of the value in its last byte.
    void ClearTail() noexcept;

    std::uint32_t m_dwLength;    // valid bits
    std::uint32_t m_dwStart;     // storage bit where bit 0 of the value lies
    std::uint32_t m_dwCapacity;  // bytes of storage
    union {
        std::uint8_t* pHeap;
        std::uint8_t aInline[kInlineBytes];
    } m_u;
};

bool operator==(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;
bool operator!=(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;
bool operator<(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;
bool operator<=(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;
bool operator>(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;
bool operator>=(const CAdvAnlzData& a, const CAdvAnlzData& b) noexcept;

// Stateless helpers that are not members of the value.
class CAdvAnlzTools {
public:
    CAdvAnlzTools() = default;
    virtual ~CAdvAnlzTools() = default;

    // The same length with the bytes in reverse order. A partial last byte
    // stays last, so nothing is lost and the call is safe for any length.
    CAdvAnlzData RevertByteOrder(const CAdvAnlzData& value) const;
    // A 32-bit value as a dotted-decimal IPv4 address, most significant byte
    // of the numeric reading first.
    CString IpAddress(CAdvAnlzData& value);
};
