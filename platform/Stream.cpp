#include "platform/Stream.h"

#include <algorithm>
#include <cstring>

long CMemoryStream::Read(void* pv, unsigned long cb, unsigned long* pcbRead)
{
    const std::size_t nLeft = m_aBytes.size() - m_nPos;
    const std::size_t n = std::min<std::size_t>(cb, nLeft);
    if (n)
        std::memcpy(pv, m_aBytes.data() + m_nPos, n);
    m_nPos += n;
    if (pcbRead)
        *pcbRead = static_cast<unsigned long>(n);
    return n == cb ? S_OK : E_FAIL;
}

long CMemoryStream::Write(const void* pv, unsigned long cb, unsigned long* pcbWritten)
{
    if (m_nPos + cb > m_aBytes.size())
        m_aBytes.resize(m_nPos + cb);
    if (cb)
        std::memcpy(m_aBytes.data() + m_nPos, pv, cb);
    m_nPos += cb;
    if (pcbWritten)
        *pcbWritten = cb;
    return S_OK;
}

void CArchive::WriteBytes(const void* pv, std::size_t cb)
{
    if (!m_bOK || !m_pStream || !cb)
        return;
    unsigned long nWritten = 0;
    if (m_pStream->Write(pv, static_cast<unsigned long>(cb), &nWritten) != S_OK || nWritten != cb)
        m_bOK = false;
    m_nWritten += nWritten;
}

std::vector<std::uint8_t> CArchive::ReadBytes(std::size_t cb)
{
    std::vector<std::uint8_t> a;
    constexpr std::size_t kChunk = 65536;
    while (m_bOK && a.size() < cb) {
        const std::size_t nWant = std::min(kChunk, cb - a.size());
        const std::size_t nOld = a.size();
        a.resize(nOld + nWant);
        unsigned long nRead = 0;
        if (!m_pStream || m_pStream->Read(a.data() + nOld, static_cast<unsigned long>(nWant), &nRead) != S_OK ||
            nRead != nWant) {
            a.resize(nOld + nRead);
            m_bOK = false;
        }
    }
    return a;
}

CArchive& CArchive::WriteNumber(std::uint32_t v, int nBytes)
{
    std::uint8_t a[4];
    for (int i = 0; i < nBytes; ++i)
        a[i] = static_cast<std::uint8_t>(v >> (8 * i));
    WriteBytes(a, static_cast<std::size_t>(nBytes));
    return *this;
}

std::uint32_t CArchive::ReadNumber(int nBytes)
{
    const std::vector<std::uint8_t> a = ReadBytes(static_cast<std::size_t>(nBytes));
    if (!m_bOK)
        return 0;
    std::uint32_t v = 0;
    for (int i = 0; i < nBytes; ++i)
        v |= static_cast<std::uint32_t>(a[static_cast<std::size_t>(i)]) << (8 * i);
    return v;
}

CArchive& CArchive::operator<<(const CString& str)
{
    *this << static_cast<std::uint32_t>(str.GetLength());
    WriteBytes(str.GetString(), static_cast<std::size_t>(str.GetLength()));
    return *this;
}

CArchive& CArchive::operator>>(CString& str)
{
    std::uint32_t n = 0;
    *this >> n;
    const std::vector<std::uint8_t> a = ReadBytes(n);
    str = m_bOK ? CString(reinterpret_cast<const char*>(a.data()), static_cast<int>(a.size())) : CString();
    return *this;
}
