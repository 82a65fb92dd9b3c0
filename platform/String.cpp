#include "platform/String.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>

CString::SBuffer* CString::Allocate(int nLength)
{
    void* p = std::malloc(offsetof(SBuffer, aData) + static_cast<size_t>(nLength) + 1);
    if (!p)
        throw std::bad_alloc();
    SBuffer* pBuf = static_cast<SBuffer*>(p);
    pBuf->nRefs = 1;
    pBuf->nLength = nLength;
    pBuf->aData[nLength] = '\0';
    return pBuf;
}

void CString::Release() noexcept
{
    if (m_pBuf && --m_pBuf->nRefs == 0)
        std::free(m_pBuf);
    m_pBuf = nullptr;
}

void CString::Assign(const char* pch, int nLength)
{
    if (nLength <= 0) {
        Release();
        return;
    }
    SBuffer* pNew = Allocate(nLength);
    std::memcpy(pNew->aData, pch, static_cast<size_t>(nLength));
    Release();
    m_pBuf = pNew;
}

void CString::Append(const char* pch, int nLength)
{
    if (nLength <= 0)
        return;
    const int nOld = GetLength();
    SBuffer* pNew = Allocate(nOld + nLength);
    if (nOld)
        std::memcpy(pNew->aData, m_pBuf->aData, static_cast<size_t>(nOld));
    std::memcpy(pNew->aData + nOld, pch, static_cast<size_t>(nLength));
    Release();
    m_pBuf = pNew;
}

CString::CString(const char* psz) : m_pBuf(nullptr)
{
    if (psz)
        Assign(psz, static_cast<int>(std::strlen(psz)));
}

CString::CString(const char* pch, int nLength) : m_pBuf(nullptr)
{
    if (pch)
        Assign(pch, nLength);
}

CString::CString(const std::string& str) : m_pBuf(nullptr)
{
    Assign(str.data(), static_cast<int>(str.size()));
}

CString::CString(const CString& other) noexcept : m_pBuf(other.m_pBuf)
{
    if (m_pBuf)
        ++m_pBuf->nRefs;
}

CString& CString::operator=(const CString& other) noexcept
{
    if (m_pBuf != other.m_pBuf) {
        if (other.m_pBuf)
            ++other.m_pBuf->nRefs;
        Release();
        m_pBuf = other.m_pBuf;
    }
    return *this;
}

CString& CString::operator=(CString&& other) noexcept
{
    if (this != &other) {
        Release();
        m_pBuf = other.m_pBuf;
        other.m_pBuf = nullptr;
    }
    return *this;
}

CString& CString::operator=(const char* psz)
{
    if (psz)
        Assign(psz, static_cast<int>(std::strlen(psz)));
    else
        Release();
    return *this;
}

char CString::GetAt(int nIndex) const noexcept
{
    return (nIndex >= 0 && nIndex < GetLength()) ? m_pBuf->aData[nIndex] : '\0';
}

void CString::Format(const char* pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    FormatV(pszFormat, args);
    va_end(args);
}

void CString::FormatV(const char* pszFormat, va_list args)
{
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, pszFormat, copy);
    va_end(copy);
    if (n <= 0) {
        Release();
        return;
    }
    SBuffer* pNew = Allocate(n);
    std::vsnprintf(pNew->aData, static_cast<size_t>(n) + 1, pszFormat, args);
    Release();
    m_pBuf = pNew;
}

CString CString::Left(int nCount) const
{
    if (nCount < 0)
        nCount = 0;
    if (nCount >= GetLength())
        return *this;
    return CString(GetString(), nCount);
}

CString CString::Right(int nCount) const
{
    if (nCount < 0)
        nCount = 0;
    if (nCount >= GetLength())
        return *this;
    return CString(GetString() + GetLength() - nCount, nCount);
}

CString CString::Mid(int nFirst, int nCount) const
{
    const int nLength = GetLength();
    if (nFirst < 0)
        nFirst = 0;
    if (nFirst >= nLength)
        return CString();
    if (nCount < 0 || nCount > nLength - nFirst)
        nCount = nLength - nFirst;
    return CString(GetString() + nFirst, nCount);
}

int CString::Find(char ch, int nStart) const noexcept
{
    for (int i = nStart < 0 ? 0 : nStart; i < GetLength(); ++i)
        if (m_pBuf->aData[i] == ch)
            return i;
    return -1;
}

int CString::Find(const char* pszSub, int nStart) const noexcept
{
    if (!pszSub || nStart < 0 || nStart > GetLength())
        return -1;
    const char* p = std::strstr(GetString() + nStart, pszSub);
    return p ? static_cast<int>(p - GetString()) : -1;
}

int CString::Replace(char chOld, char chNew)
{
    if (Find(chOld) < 0)
        return 0;
    std::string s = ToStdString();
    int n = 0;
    for (char& c : s)
        if (c == chOld) {
            c = chNew;
            ++n;
        }
    Assign(s.data(), static_cast<int>(s.size()));
    return n;
}

CString& CString::operator+=(const CString& other)
{
    const CString keep(other);  // other may be *this
    Append(keep.GetString(), keep.GetLength());
    return *this;
}

CString& CString::operator+=(const char* psz)
{
    if (psz)
        Append(psz, static_cast<int>(std::strlen(psz)));
    return *this;
}

CString& CString::operator+=(char ch)
{
    Append(&ch, 1);
    return *this;
}

int CString::Compare(const char* psz) const noexcept
{
    return std::strcmp(GetString(), psz ? psz : "");
}

int CString::Compare(const CString& other) const noexcept
{
    if (m_pBuf == other.m_pBuf)
        return 0;
    return std::strcmp(GetString(), other.GetString());
}

CString operator+(const CString& a, const CString& b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(const CString& a, const char* b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(const char* a, const CString& b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(const CString& a, char b)
{
    CString r(a);
    r += b;
    return r;
}

bool operator==(const CString& a, const CString& b) noexcept { return a.Compare(b) == 0; }
bool operator==(const CString& a, const char* b) noexcept { return a.Compare(b) == 0; }
bool operator==(const char* a, const CString& b) noexcept { return b.Compare(a) == 0; }
bool operator!=(const CString& a, const CString& b) noexcept { return !(a == b); }
bool operator!=(const CString& a, const char* b) noexcept { return !(a == b); }
bool operator!=(const char* a, const CString& b) noexcept { return !(a == b); }
bool operator<(const CString& a, const CString& b) noexcept { return a.Compare(b) < 0; }

std::ostream& operator<<(std::ostream& os, const CString& str)
{
    return os.write(str.GetString(), str.GetLength());
}
