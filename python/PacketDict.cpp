#include "python/PacketDict.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace py = pybind11;

namespace {

// Dict keys, made once and interned.
struct SKeys {
    PyObject *decoder, *result, *request_name, *response_name, *request_fields, *response_fields, *has_response,
        *format, *errors, *fields, *index, *id, *name, *abbr, *offset, *length, *record_length, *value, *option,
        *option_abbr, *text;
};
SKeys g_keys;
PyObject* g_pFieldTemplate = nullptr;
PyObject* g_pPacketTemplate = nullptr;

void InitKeys()
{
    auto key = [](const char* psz) {
        PyObject* p = PyUnicode_InternFromString(psz);
        if (!p)
            throw py::error_already_set();
        return p;
    };
    g_keys = SKeys{key("decoder"),         key("result"),        key("request_name"), key("response_name"),
                   key("request_fields"),  key("response_fields"), key("has_response"), key("format"),
                   key("errors"),          key("fields"),        key("index"),        key("id"),
                   key("name"),            key("abbr"),          key("offset"),       key("length"),
                   key("record_length"),   key("value"),         key("option"),       key("option_abbr"),
                   key("text")};
    auto templ = [](std::initializer_list<PyObject*> keys) {
        PyObject* d = PyDict_New();
        if (!d)
            throw py::error_already_set();
        for (PyObject* k : keys)
            if (PyDict_SetItem(d, k, Py_None) != 0)
                throw py::error_already_set();
        return d;
    };
    g_pFieldTemplate = templ({g_keys.index, g_keys.id, g_keys.name, g_keys.abbr, g_keys.offset, g_keys.length,
                              g_keys.record_length, g_keys.value, g_keys.option, g_keys.option_abbr});
    g_pPacketTemplate = templ({g_keys.decoder, g_keys.result, g_keys.request_name, g_keys.response_name,
                               g_keys.request_fields, g_keys.response_fields, g_keys.has_response, g_keys.format,
                               g_keys.errors, g_keys.fields});
}

// Stores a new reference under key, taking it over; fails with the Python
// error when there is no object.
void SetItem(PyObject* pDict, PyObject* pKey, PyObject* pValue)
{
    if (!pValue)
        throw py::error_already_set();
    const int nStatus = PyDict_SetItem(pDict, pKey, pValue);
    Py_DECREF(pValue);
    if (nStatus != 0)
        throw py::error_already_set();
}

// Decoder texts are UTF-8 as far as they go; invalid bytes become U+FFFD, one
// per maximal invalid sequence, as the tool's JSON writes them.
PyObject* NewText(const char* p, std::size_t n)
{
    return PyUnicode_DecodeUTF8(p, static_cast<Py_ssize_t>(n), "replace");
}

// Bytes as lowercase hex, two digits a byte, written straight into the string.
PyObject* NewHex(const char* p, std::size_t n)
{
    static const char kDigits[] = "0123456789abcdef";
    PyObject* pStr = PyUnicode_New(static_cast<Py_ssize_t>(2 * n), 127);
    if (!pStr)
        return nullptr;
    Py_UCS1* pOut = PyUnicode_1BYTE_DATA(pStr);
    const unsigned char* pIn = reinterpret_cast<const unsigned char*>(p);
    for (std::size_t i = 0; i < n; ++i) {
        pOut[2 * i] = static_cast<Py_UCS1>(kDigits[pIn[i] >> 4]);
        pOut[2 * i + 1] = static_cast<Py_UCS1>(kDigits[pIn[i] & 15]);
    }
    return pStr;
}

// Python strings made from short byte strings, kept by those bytes in a
// fixed number of slots (a newer string takes an older one's slot). Names,
// abbreviations, option names and small values repeat from packet to packet,
// so most of a packet's strings are shared instead of made again.
class CStringCache {
public:
    using PfnMake = PyObject* (*)(const char* p, std::size_t n);

    CStringCache(PfnMake pfnMake, std::size_t nMaxBytes) : m_pfnMake(pfnMake), m_nMaxBytes(nMaxBytes), m_aSlots(kSlots)
    {
    }

    // A new reference, or null with the Python error set.
    PyObject* Get(const char* p, std::size_t n)
    {
        if (n > m_nMaxBytes)
            return m_pfnMake(p, n);
        SSlot& slot = m_aSlots[Hash(p, n) & (kSlots - 1)];
        if (!slot.pStr || slot.strKey.size() != n || std::memcmp(slot.strKey.data(), p, n) != 0) {
            PyObject* pStr = m_pfnMake(p, n);
            if (!pStr)
                return nullptr;
            Py_XDECREF(slot.pStr);
            slot.pStr = pStr;
            slot.strKey.assign(p, n);
        }
        Py_INCREF(slot.pStr);
        return slot.pStr;
    }

private:
    static constexpr std::size_t kSlots = 4096;

    // The length with the first and last eight bytes: a slot is checked
    // against the whole key, so a weaker hash costs a miss, never a wrong
    // string.
    static std::uint64_t Hash(const char* p, std::size_t n) noexcept
    {
        std::uint64_t a = 0, b = 0;
        if (n >= 8) {
            std::memcpy(&a, p, 8);
            std::memcpy(&b, p + n - 8, 8);
        } else {
            std::memcpy(&a, p, n);
        }
        std::uint64_t h = (a ^ (b * 0x9E3779B97F4A7C15ull) ^ n) * 0xFF51AFD7ED558CCDull;
        return h ^ (h >> 29);
    }
    struct SSlot {
        std::string strKey;
        PyObject* pStr = nullptr;
    };
    PfnMake m_pfnMake;
    std::size_t m_nMaxBytes;
    std::vector<SSlot> m_aSlots;
};

// Ints below 65536 (ids, offsets, lengths), made once each.
PyObject* Int(unsigned long n)
{
    static std::vector<PyObject*> s_aInts(65536, nullptr);
    if (n >= s_aInts.size())
        return PyLong_FromUnsignedLong(n);
    PyObject*& p = s_aInts[n];
    if (!p && !(p = PyLong_FromUnsignedLong(n)))
        return nullptr;
    Py_INCREF(p);
    return p;
}

// Made at import and kept for the life of the process, like the keys.
CStringCache* g_pTexts = nullptr;
CStringCache* g_pValues = nullptr;

PyObject* Text(const CDecodedBatch& batch, SBytesRef ref)
{
    return g_pTexts->Get(batch.GetBytes(ref), ref.nLength);
}

PyObject* Hex(const CDecodedBatch& batch, SBytesRef ref)
{
    return g_pValues->Get(batch.GetBytes(ref), ref.nLength);
}

// Field dicts with the keys in order and the values that come from the
// field's record (id, name, abbr, offset, record length) already set, one per
// record in a fixed number of slots. A field's dict is a copy of its record's
// with the values of this occurrence set: half the work of a dict made anew.
class CFieldTemplates {
public:
    CFieldTemplates() : m_aSlots(kSlots) {}

    // A borrowed reference, or null with the Python error set.
    PyObject* Get(const CDecodedBatch& batch, const SDecodedField& f)
    {
        const std::uintptr_t n = reinterpret_cast<std::uintptr_t>(f.pRecord) ^ f.nId ^ (f.dwOffset << 16);
        SSlot& slot = m_aSlots[((n * 0x9E3779B97F4A7C15ull) >> 40) & (kSlots - 1)];
        const std::string_view name(batch.GetBytes(f.name), f.name.nLength);
        const std::string_view abbr(batch.GetBytes(f.abbr), f.abbr.nLength);
        if (slot.pDict && slot.nId == f.nId && slot.dwOffset == f.dwOffset &&
            slot.dwRecordLength == f.dwRecordLength && slot.strName == name && slot.strAbbr == abbr)
            return slot.pDict;
        PyObject* pDict = PyDict_Copy(g_pFieldTemplate);
        if (!pDict)
            return nullptr;
        try {
            SetItem(pDict, g_keys.id, Int(f.nId));
            SetItem(pDict, g_keys.name, Text(batch, f.name));
            SetItem(pDict, g_keys.abbr, Text(batch, f.abbr));
            SetItem(pDict, g_keys.offset, Int(f.dwOffset));
            SetItem(pDict, g_keys.record_length, Int(f.dwRecordLength));
        } catch (...) {
            Py_DECREF(pDict);
            throw;
        }
        Py_XDECREF(slot.pDict);
        slot.pDict = pDict;
        slot.nId = f.nId;
        slot.dwOffset = f.dwOffset;
        slot.dwRecordLength = f.dwRecordLength;
        slot.strName.assign(name);
        slot.strAbbr.assign(abbr);
        return pDict;
    }

private:
    static constexpr std::size_t kSlots = 4096;
    struct SSlot {
        PyObject* pDict = nullptr;
        unsigned short nId = 0;
        std::uint32_t dwOffset = 0, dwRecordLength = 0;
        std::string strName, strAbbr;
    };
    std::vector<SSlot> m_aSlots;
};
CFieldTemplates* g_pFieldTemplates = nullptr;

PyObject* FieldDict(const CDecodedBatch& batch, const SDecodedField& f, long nIndex)
{
    PyObject* pTemplate = g_pFieldTemplates->Get(batch, f);
    py::object d = py::reinterpret_steal<py::object>(pTemplate ? PyDict_Copy(pTemplate) : nullptr);
    if (!d)
        throw py::error_already_set();
    PyObject* p = d.ptr();
    SetItem(p, g_keys.index, Int(static_cast<unsigned long>(nIndex)));
    SetItem(p, g_keys.length, Int(f.dwLength));
    SetItem(p, g_keys.value, Hex(batch, f.value));
    SetItem(p, g_keys.option, Text(batch, f.option));
    SetItem(p, g_keys.option_abbr, Text(batch, f.optionAbbr));
    return d.release().ptr();
}

PyObject* ExtraValue(const CDecodedBatch& batch, const SDecodedExtra& e)
{
    switch (e.eKind) {
    case SPacketExtra::Number:
        return PyLong_FromLongLong(e.nNumber);
    case SPacketExtra::NumberList: {
        py::list a(e.nCount);
        for (std::size_t i = 0; i < e.nCount; ++i) {
            PyObject* pNumber = PyLong_FromLongLong(batch.GetNumber(e.nFirst + i));
            if (!pNumber)
                throw py::error_already_set();
            PyList_SET_ITEM(a.ptr(), static_cast<Py_ssize_t>(i), pNumber);
        }
        return a.release().ptr();
    }
    case SPacketExtra::ItemList: {
        py::list a(e.nCount);
        for (std::size_t i = 0; i < e.nCount; ++i) {
            const SDecodedItem& item = batch.GetItem(e.nFirst + i);
            py::object d = py::reinterpret_steal<py::object>(PyDict_New());
            if (!d)
                throw py::error_already_set();
            SetItem(d.ptr(), g_keys.text, Text(batch, item.text));
            SetItem(d.ptr(), g_keys.value, Hex(batch, item.value));
            PyList_SET_ITEM(a.ptr(), static_cast<Py_ssize_t>(i), d.release().ptr());
        }
        return a.release().ptr();
    }
    }
    return PyLong_FromLongLong(e.nNumber);
}

}  // namespace

py::object PacketDict(const CDecodedBatch& batch, std::size_t n)
{
    const SDecodedPacket& packet = batch.GetPacket(n);
    py::object d = py::reinterpret_steal<py::object>(PyDict_Copy(g_pPacketTemplate));
    if (!d)
        throw py::error_already_set();
    PyObject* p = d.ptr();
    SetItem(p, g_keys.decoder, g_pTexts->Get(packet.pEntry->pszClassName, std::strlen(packet.pEntry->pszClassName)));
    SetItem(p, g_keys.result, PyLong_FromLong(packet.nResult));
    SetItem(p, g_keys.request_name, Text(batch, packet.requestName));
    SetItem(p, g_keys.response_name, Text(batch, packet.responseName));
    SetItem(p, g_keys.request_fields, PyLong_FromLong(packet.nRequestFields));
    SetItem(p, g_keys.response_fields, PyLong_FromLong(packet.nResponseFields));
    SetItem(p, g_keys.has_response, PyLong_FromLong(packet.nHasResponse));
    SetItem(p, g_keys.format, PyLong_FromLong(packet.nFormat));

    py::list errors(packet.nErrors);
    for (std::size_t i = 0; i < packet.nErrors; ++i) {
        PyObject* pCode = PyLong_FromLong(batch.GetError(packet.nFirstError + i));
        if (!pCode)
            throw py::error_already_set();
        PyList_SET_ITEM(errors.ptr(), static_cast<Py_ssize_t>(i), pCode);
    }
    SetItem(p, g_keys.errors, errors.release().ptr());

    py::list fields(packet.nFields);
    for (std::size_t i = 0; i < packet.nFields; ++i)
        PyList_SET_ITEM(fields.ptr(), static_cast<Py_ssize_t>(i),
                        FieldDict(batch, batch.GetField(packet.nFirstField + i), static_cast<long>(i + 1)));
    SetItem(p, g_keys.fields, fields.release().ptr());

    for (std::size_t i = 0; i < packet.nExtras; ++i) {
        const SDecodedExtra& e = batch.GetExtra(packet.nFirstExtra + i);
        py::object key = py::reinterpret_steal<py::object>(Text(batch, e.key));
        if (!key)
            throw py::error_already_set();
        SetItem(p, key.ptr(), ExtraValue(batch, e));
    }
    return d;
}

py::str TextObject(const std::string& s)
{
    PyObject* p = NewText(s.data(), s.size());
    if (!p)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(p);
}

void InitPacketDicts()
{
    InitKeys();
    g_pTexts = new CStringCache(&NewText, 64);
    g_pValues = new CStringCache(&NewHex, 8);
    g_pFieldTemplates = new CFieldTemplates;
}
