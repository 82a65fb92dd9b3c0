// Value-semantics text: a shared, reference-counted byte string that is
// copied on write. Copying a CString (as every field attribute record does)
// costs a pointer copy and a count increment, never an allocation.
// Like the rest of the library it is meant for one thread of control.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <iosfwd>
#include <string>

class CString {
public:
    CString() noexcept : m_pBuf(nullptr) {}
    CString(const char* psz);
    CString(const char* pch, int nLength);
    CString(const std::string& str);
    CString(const CString& other) noexcept;
    CString(CString&& other) noexcept : m_pBuf(other.m_pBuf) { other.m_pBuf = nullptr; }
    ~CString() { Release(); }

    CString& operator=(const CString& other) noexcept;
    CString& operator=(CString&& other) noexcept;
    CString& operator=(const char* psz);

    int GetLength() const noexcept { return m_pBuf ? m_pBuf->nLength : 0; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Empty() noexcept { Release(); }
    // Never null: the empty string gives "".
    const char* GetString() const noexcept { return m_pBuf ? m_pBuf->aData : ""; }
    std::string ToStdString() const { return std::string(GetString(), static_cast<size_t>(GetLength())); }
    char GetAt(int nIndex) const noexcept;
    char operator[](int nIndex) const noexcept { return GetAt(nIndex); }

    // printf-style formatting; replaces the contents.
    void Format(const char* pszFormat, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 2, 3)))
#endif
        ;
    void FormatV(const char* pszFormat, va_list args);

    // The first or last n characters; n is clipped to the length.
    CString Left(int nCount) const;
    CString Right(int nCount) const;
    CString Mid(int nFirst, int nCount = -1) const;

    // Index of the first occurrence, or -1.
    int Find(char ch, int nStart = 0) const noexcept;
    int Find(const char* pszSub, int nStart = 0) const noexcept;
    // Replaces every occurrence of one character with another; returns the count.
    int Replace(char chOld, char chNew);

    CString& operator+=(const CString& other);
    CString& operator+=(const char* psz);
    CString& operator+=(char ch);

    // Byte-exact comparison: <0, 0, >0 as strcmp.
    int Compare(const char* psz) const noexcept;
    int Compare(const CString& other) const noexcept;

    friend CString operator+(const CString& a, const CString& b);
    friend CString operator+(const CString& a, const char* b);
    friend CString operator+(const char* a, const CString& b);
    friend CString operator+(const CString& a, char b);

private:
    struct SBuffer {
        int nRefs;
        int nLength;
        char aData[1];
    };
    static SBuffer* Allocate(int nLength);
    void Assign(const char* pch, int nLength);
    void Append(const char* pch, int nLength);
    void Release() noexcept;

    SBuffer* m_pBuf;
};

bool operator==(const CString& a, const CString& b) noexcept;
bool operator==(const CString& a, const char* b) noexcept;
bool operator==(const char* a, const CString& b) noexcept;
bool operator!=(const CString& a, const CString& b) noexcept;
bool operator!=(const CString& a, const char* b) noexcept;
bool operator!=(const char* a, const CString& b) noexcept;
bool operator<(const CString& a, const CString& b) noexcept;
std::ostream& operator<<(std::ostream& os, const CString& str);
