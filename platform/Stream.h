// Byte streams for packet persistence: the stream interface a host hands in,
// an in-memory stream, and an archive that writes and reads typed values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/String.h"

// Result codes of the stream and persistence calls.
constexpr long S_OK = 0;
constexpr long E_FAIL = -2147467259L;  // 0x80004005

class IStream {
public:
    virtual ~IStream() = default;
    // Reads up to cb bytes; *pcbRead (if given) receives the count read.
    virtual long Read(void* pv, unsigned long cb, unsigned long* pcbRead) = 0;
    // Writes cb bytes; *pcbWritten (if given) receives the count written.
    virtual long Write(const void* pv, unsigned long cb, unsigned long* pcbWritten) = 0;
};

// A growable in-memory stream with one position for reading and writing.
class CMemoryStream : public IStream {
public:
    CMemoryStream() = default;
    explicit CMemoryStream(std::vector<std::uint8_t> bytes) : m_aBytes(std::move(bytes)) {}

    long Read(void* pv, unsigned long cb, unsigned long* pcbRead) override;
    long Write(const void* pv, unsigned long cb, unsigned long* pcbWritten) override;

    void Rewind() noexcept { m_nPos = 0; }
    const std::vector<std::uint8_t>& GetBytes() const noexcept { return m_aBytes; }
    std::vector<std::uint8_t>& GetBytes() noexcept { return m_aBytes; }

private:
    std::vector<std::uint8_t> m_aBytes;
    std::size_t m_nPos = 0;
};

// Typed little-endian values over a stream. A failed or short read marks the
// archive as failed; every later read then yields zero, so a reader can go on
// and test IsOK() once at the end.
class CArchive {
public:
    enum Mode { store = 0, load = 1 };

    CArchive(IStream* pStream, Mode nMode) : m_pStream(pStream), m_nMode(nMode) {}

    bool IsStoring() const noexcept { return m_nMode == store; }
    bool IsLoading() const noexcept { return m_nMode == load; }
    bool IsOK() const noexcept { return m_bOK; }
    void SetFailed() noexcept { m_bOK = false; }
    unsigned long GetBytesWritten() const noexcept { return m_nWritten; }

    void WriteBytes(const void* pv, std::size_t cb);
    // Reads up to cb bytes without trusting cb for the allocation.
    std::vector<std::uint8_t> ReadBytes(std::size_t cb);

    CArchive& operator<<(std::uint8_t v) { return WriteNumber(v, 1); }
    CArchive& operator<<(std::uint16_t v) { return WriteNumber(v, 2); }
    CArchive& operator<<(std::uint32_t v) { return WriteNumber(v, 4); }
    CArchive& operator<<(std::int32_t v) { return WriteNumber(static_cast<std::uint32_t>(v), 4); }
    CArchive& operator<<(const CString& str);

    CArchive& operator>>(std::uint8_t& v) { v = static_cast<std::uint8_t>(ReadNumber(1)); return *this; }
    CArchive& operator>>(std::uint16_t& v) { v = static_cast<std::uint16_t>(ReadNumber(2)); return *this; }
    CArchive& operator>>(std::uint32_t& v) { v = static_cast<std::uint32_t>(ReadNumber(4)); return *this; }
    CArchive& operator>>(std::int32_t& v) { v = static_cast<std::int32_t>(ReadNumber(4)); return *this; }
    CArchive& operator>>(CString& str);

private:
    CArchive& WriteNumber(std::uint32_t v, int nBytes);
    std::uint32_t ReadNumber(int nBytes);

    IStream* m_pStream;
    Mode m_nMode;
    bool m_bOK = true;
    unsigned long m_nWritten = 0;
};
