// Decoded packets copied out of a decoder into plain storage: the keys and
// values of one line of the tool's --json, with every text and value byte in
// one buffer. A decoder and its packet may then take the next payload (on any
// thread) while the copies become Python objects under the interpreter lock.
// The copies hold no CString, whose shared counts belong to the decoders'
// single thread of control.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "registry/DecoderRegistry.h"

// A piece of CDecodedBatch's byte buffer.
struct SBytesRef {
    std::size_t nOffset = 0;
    std::size_t nLength = 0;
};

struct SDecodedField {
    const void* pRecord = nullptr;  // the bound record, for telling records apart quickly
    unsigned short nId = 0;
    std::uint32_t dwOffset = 0;
    std::uint32_t dwLength = 0;        // the value's length in bits
    std::uint32_t dwRecordLength = 0;  // the bound record's length
    SBytesRef name, abbr, value, option, optionAbbr;
};

struct SDecodedItem {
    SBytesRef text, value;
};

struct SDecodedExtra {
    SBytesRef key;
    SPacketExtra::EKind eKind = SPacketExtra::Number;
    long long nNumber = 0;
    // Numbers or items of the list, in aNumbers or aItems.
    std::size_t nFirst = 0;
    std::size_t nCount = 0;
};

struct SDecodedPacket {
    const SDecoderEntry* pEntry = nullptr;
    int nResult = 0;
    SBytesRef requestName, responseName;
    int nRequestFields = 0;
    int nResponseFields = 0;
    int nHasResponse = 0;
    int nFormat = 0;
    std::size_t nFirstError = 0, nErrors = 0;
    std::size_t nFirstField = 0, nFields = 0;
    std::size_t nFirstExtra = 0, nExtras = 0;
};

// Decoded packets in order. Clear() keeps the capacity, so a batch reused for
// payload after payload stops allocating.
class CDecodedBatch {
public:
    void Clear();
    // Copies what the tool's JSON shows of the packet that entry's decoder
    // has just decoded with the given result.
    void Add(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult);

    std::size_t GetCount() const noexcept { return m_aPackets.size(); }
    // The memory the batch keeps for its next use.
    std::size_t GetReservedBytes() const noexcept
    {
        return m_nCapacity + m_aPackets.capacity() * sizeof(SDecodedPacket) +
               m_aFields.capacity() * sizeof(SDecodedField) + m_aErrors.capacity() * sizeof(std::uint16_t) +
               m_aExtras.capacity() * sizeof(SDecodedExtra) + m_aNumbers.capacity() * sizeof(long long) +
               m_aItems.capacity() * sizeof(SDecodedItem);
    }
    const SDecodedPacket& GetPacket(std::size_t n) const noexcept { return m_aPackets[n]; }
    const SDecodedField& GetField(std::size_t n) const noexcept { return m_aFields[n]; }
    std::uint16_t GetError(std::size_t n) const noexcept { return m_aErrors[n]; }
    const SDecodedExtra& GetExtra(std::size_t n) const noexcept { return m_aExtras[n]; }
    long long GetNumber(std::size_t n) const noexcept { return m_aNumbers[n]; }
    const SDecodedItem& GetItem(std::size_t n) const noexcept { return m_aItems[n]; }
    const char* GetBytes(SBytesRef ref) const noexcept { return m_pBytes.get() + ref.nOffset; }

private:
    // Room for n more bytes at the end of the byte buffer; where they go.
    char* Reserve(std::size_t n)
    {
        if (m_nCapacity - m_nBytes < n)
            Grow(n);
        return m_pBytes.get() + m_nBytes;
    }
    void Grow(std::size_t n);
    SBytesRef AddBytes(const char* p, std::size_t n);
    SBytesRef AddText(const CString& str) { return AddBytes(str.GetString(), static_cast<std::size_t>(str.GetLength())); }
    SBytesRef AddText(const std::string& str) { return AddBytes(str.data(), str.size()); }
    SBytesRef AddValue(const CAdvAnlzData& value);

    // Texts and value bytes of every packet, m_nBytes of m_nCapacity in use;
    // grown by hand, as a field adds a handful of short pieces.
    std::unique_ptr<char[]> m_pBytes;
    std::size_t m_nCapacity = 0;
    std::size_t m_nBytes = 0;
    std::vector<SDecodedPacket> m_aPackets;
    std::vector<SDecodedField> m_aFields;
    std::vector<std::uint16_t> m_aErrors;
    std::vector<SDecodedExtra> m_aExtras;
    std::vector<long long> m_aNumbers;
    std::vector<SDecodedItem> m_aItems;
};
