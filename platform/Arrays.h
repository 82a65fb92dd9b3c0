// Ordered growing arrays, indexed from 0: the byte, word, string and pointer
// arrays that decoders and hosts exchange.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/String.h"

template <class T>
class CTypedArray {
public:
    CTypedArray() = default;

    int GetSize() const noexcept { return static_cast<int>(m_a.size()); }
    int GetCount() const noexcept { return GetSize(); }
    int GetUpperBound() const noexcept { return GetSize() - 1; }
    bool IsEmpty() const noexcept { return m_a.empty(); }

    // Grows with default elements or shrinks to the new size.
    void SetSize(int nNewSize) { m_a.resize(nNewSize < 0 ? 0 : static_cast<size_t>(nNewSize)); }
    void RemoveAll() noexcept { m_a.clear(); }

    const T& GetAt(int nIndex) const { return m_a[static_cast<size_t>(nIndex)]; }
    T& ElementAt(int nIndex) { return m_a[static_cast<size_t>(nIndex)]; }
    void SetAt(int nIndex, const T& value) { m_a[static_cast<size_t>(nIndex)] = value; }
    const T& operator[](int nIndex) const { return GetAt(nIndex); }
    T& operator[](int nIndex) { return ElementAt(nIndex); }
    const T* GetData() const noexcept { return m_a.data(); }
    T* GetData() noexcept { return m_a.data(); }

    // Sets the element, growing the array with default elements as needed.
    void SetAtGrow(int nIndex, const T& value)
    {
        if (nIndex < 0)
            return;
        if (nIndex >= GetSize())
            SetSize(nIndex + 1);
        m_a[static_cast<size_t>(nIndex)] = value;
    }
    int Add(const T& value)
    {
        m_a.push_back(value);
        return GetSize() - 1;
    }
    // Inserts nCount copies of value before nIndex; past the end grows the array.
    void InsertAt(int nIndex, const T& value, int nCount = 1)
    {
        if (nIndex < 0 || nCount <= 0)
            return;
        if (nIndex > GetSize())
            SetSize(nIndex);
        m_a.insert(m_a.begin() + nIndex, static_cast<size_t>(nCount), value);
    }
    void RemoveAt(int nIndex, int nCount = 1)
    {
        if (nIndex < 0 || nIndex >= GetSize() || nCount <= 0)
            return;
        const int nEnd = nIndex + nCount > GetSize() ? GetSize() : nIndex + nCount;
        m_a.erase(m_a.begin() + nIndex, m_a.begin() + nEnd);
    }
    void Copy(const CTypedArray& src) { m_a = src.m_a; }
    void Append(const CTypedArray& src) { m_a.insert(m_a.end(), src.m_a.begin(), src.m_a.end()); }

    typename std::vector<T>::const_iterator begin() const noexcept { return m_a.begin(); }
    typename std::vector<T>::const_iterator end() const noexcept { return m_a.end(); }

private:
    std::vector<T> m_a;
};

using CByteArray = CTypedArray<std::uint8_t>;
using CWordArray = CTypedArray<std::uint16_t>;
using CStringArray = CTypedArray<CString>;
using CPtrArray = CTypedArray<void*>;
