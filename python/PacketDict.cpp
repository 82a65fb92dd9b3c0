#include "python/PacketDict.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
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

// A hash of a short text from its length and its first and last eight
// bytes. Caches check a slot against the whole text, so a weaker hash costs a
// miss, never a wrong string.
std::uint64_t TextHash(const char* p, std::size_t n) noexcept
{
    std::uint64_t a = 0, b = 0;
    if (n >= 8) {
        std::memcpy(&a, p, 8);
        std::memcpy(&b, p + n - 8, 8);
    } else if (n) {
        std::memcpy(&a, p, n);
    }
    const std::uint64_t h = (a ^ (b * 0x9E3779B97F4A7C15ull) ^ n) * 0xFF51AFD7ED558CCDull;
    return h ^ (h >> 29);
}

// Python strings made from short byte strings, kept by those bytes in a
// fixed number of slots (a newer string takes an older one's slot). Names,
// abbreviations, option names and small values repeat from packet to packet,
// so most of a packet's strings are shared instead of made again.
class CStringCache {
public:
    using PfnMake = PyObject* (*)(const char* p, std::size_t n);

    // nSlots is a power of two.
    CStringCache(PfnMake pfnMake, std::size_t nMaxBytes, std::size_t nSlots)
        : m_pfnMake(pfnMake), m_nMaxBytes(nMaxBytes), m_aSlots(nSlots)
    {
    }
    CStringCache(const CStringCache&) = delete;
    CStringCache& operator=(const CStringCache&) = delete;
    ~CStringCache()
    {
        for (SSlot& slot : m_aSlots)
            Py_XDECREF(slot.pStr);
    }

    // A new reference, or null with the Python error set.
    PyObject* Get(const char* p, std::size_t n)
    {
        if (n > m_nMaxBytes)
            return m_pfnMake(p, n);
        SSlot& slot = m_aSlots[TextHash(p, n) & (m_aSlots.size() - 1)];
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

PyObject* Text(std::string_view text)
{
    return g_pTexts->Get(text.data(), text.size());
}

PyObject* Text(const CDecodedBatch& batch, SBytesRef ref)
{
    return g_pTexts->Get(batch.GetBytes(ref), ref.nLength);
}

PyObject* Hex(const CDecodedBatch& batch, SBytesRef ref)
{
    return g_pValues->Get(batch.GetBytes(ref), ref.nLength);
}

// Dicts with every value but the last few already set, kept in a fixed
// number of slots by what they hold (a newer one takes an older one's slot).
// A field's dict is a copy of the one for its record, index, length and
// option with only the value set, a packet's a copy of the one for its
// decoder, result, names, counts and format with only the errors and fields
// set: a copy costs far less than setting the values one by one.
template <class TKey>
class CDictTemplates {
public:
    // nSlots is a power of two.
    explicit CDictTemplates(std::size_t nSlots) : m_aSlots(nSlots) {}
    CDictTemplates(const CDictTemplates&) = delete;
    CDictTemplates& operator=(const CDictTemplates&) = delete;
    ~CDictTemplates()
    {
        for (SSlot& slot : m_aSlots)
            Py_XDECREF(slot.pDict);
    }

    // A borrowed reference to the dict for the key, made by make() when it is
    // not at hand; null with the Python error set.
    template <class FMake>
    PyObject* Get(const typename TKey::SView& key, FMake make)
    {
        SSlot& slot = m_aSlots[key.Hash() & (m_aSlots.size() - 1)];
        if (slot.pDict && slot.key.Matches(key))
            return slot.pDict;
        PyObject* pDict = make();
        if (!pDict)
            return nullptr;
        Py_XDECREF(slot.pDict);
        slot.pDict = pDict;
        slot.key.Assign(key);
        return pDict;
    }

private:
    struct SSlot {
        TKey key;
        PyObject* pDict = nullptr;
    };
    std::vector<SSlot> m_aSlots;
};

std::uint64_t Mix(std::uint64_t h) noexcept
{
    h *= 0xFF51AFD7ED558CCDull;
    return h ^ (h >> 29);
}

std::string_view View(const CDecodedBatch& batch, SBytesRef ref)
{
    return std::string_view(batch.GetBytes(ref), ref.nLength);
}

// What a field's dict holds besides its value. The dict of a key is made
// from the key's own members, and both forms list the members in one order,
// so whatever a dict holds is compared when it is looked up.
struct SFieldKey {
    struct SView {
        unsigned short nId;
        std::uint32_t dwOffset, dwRecordLength, dwLength;
        long nIndex;
        std::string_view name, abbr, option, optionAbbr;
        const void* pRecord;  // only to spread records over the slots

        auto Tie() const { return std::tie(nId, dwOffset, dwRecordLength, dwLength, nIndex, name, abbr, option, optionAbbr); }
        std::size_t Hash() const noexcept
        {
            std::uint64_t h = reinterpret_cast<std::uintptr_t>(pRecord);
            h = Mix(h ^ (static_cast<std::uint64_t>(dwLength) << 32) ^ static_cast<std::uint64_t>(nIndex));
            return static_cast<std::size_t>(Mix(h ^ TextHash(option.data(), option.size())) >> 20);
        }
    };
    unsigned short nId = 0;
    std::uint32_t dwOffset = 0, dwRecordLength = 0, dwLength = 0;
    long nIndex = 0;
    std::string name, abbr, option, optionAbbr;

    auto Tie() { return std::tie(nId, dwOffset, dwRecordLength, dwLength, nIndex, name, abbr, option, optionAbbr); }
    bool Matches(const SView& k) const { return const_cast<SFieldKey*>(this)->Tie() == k.Tie(); }
    void Assign(const SView& k) { Tie() = k.Tie(); }
};
CDictTemplates<SFieldKey>* g_pFieldTemplates = nullptr;

// What a packet's dict holds besides its errors, fields and the values of its
// packet-class keys; the keys themselves are there, so setting their values
// never grows the copy.
struct SPacketKey {
    struct SView {
        const SDecoderEntry* pEntry;
        int nResult, nRequestFields, nResponseFields, nHasResponse, nFormat;
        std::string_view requestName, responseName;
        // The packet-class keys: packet's extras in the batch.
        const CDecodedBatch& batch;
        const SDecodedPacket& packet;

        std::size_t ExtraCount() const noexcept { return packet.nExtras; }
        std::string_view ExtraKey(std::size_t i) const
        {
            return View(batch, batch.GetExtra(packet.nFirstExtra + i).key);
        }

        auto Tie() const
        {
            return std::tie(pEntry, nResult, nRequestFields, nResponseFields, nHasResponse, nFormat, requestName,
                            responseName);
        }
        std::size_t Hash() const noexcept
        {
            std::uint64_t h = reinterpret_cast<std::uintptr_t>(pEntry) ^ static_cast<std::uint32_t>(nResult);
            h = Mix(h ^ (static_cast<std::uint64_t>(nRequestFields) << 32) ^
                    (static_cast<std::uint64_t>(nResponseFields) << 40) ^ (static_cast<std::uint64_t>(nFormat) << 48));
            h = Mix(h ^ TextHash(requestName.data(), requestName.size()));
            h = Mix(h ^ TextHash(responseName.data(), responseName.size()));
            return static_cast<std::size_t>(Mix(h ^ ExtraCount()) >> 20);
        }
    };
    const SDecoderEntry* pEntry = nullptr;
    int nResult = 0, nRequestFields = 0, nResponseFields = 0, nHasResponse = 0, nFormat = 0;
    std::string requestName, responseName;
    std::vector<std::string> aExtraKeys;

    auto Tie()
    {
        return std::tie(pEntry, nResult, nRequestFields, nResponseFields, nHasResponse, nFormat, requestName,
                        responseName);
    }
    bool Matches(const SView& k) const
    {
        if (const_cast<SPacketKey*>(this)->Tie() != k.Tie() || aExtraKeys.size() != k.ExtraCount())
            return false;
        for (std::size_t i = 0; i < aExtraKeys.size(); ++i)
            if (aExtraKeys[i] != k.ExtraKey(i))
                return false;
        return true;
    }
    void Assign(const SView& k)
    {
        Tie() = k.Tie();
        aExtraKeys.resize(k.ExtraCount());
        for (std::size_t i = 0; i < aExtraKeys.size(); ++i)
            aExtraKeys[i].assign(k.ExtraKey(i));
    }
};
CDictTemplates<SPacketKey>* g_pPacketTemplates = nullptr;

// A copy of pTemplate with the given values set; a new reference. The copy
// makes objects, which may run a collection and with it a finaliser that
// decodes too and takes the template's cache slot: the template is held
// meanwhile.
PyObject* CopyWith(PyObject* pTemplate, std::initializer_list<std::pair<PyObject*, PyObject*>> values)
{
    const py::object held = py::reinterpret_borrow<py::object>(pTemplate);
    PyObject* pDict = pTemplate ? PyDict_Copy(pTemplate) : nullptr;
    if (!pDict) {
        for (const auto& kv : values)
            Py_XDECREF(kv.second);
        throw py::error_already_set();
    }
    py::object d = py::reinterpret_steal<py::object>(pDict);
    bool bFailed = false;
    for (const auto& kv : values) {
        if (bFailed || !kv.second || PyDict_SetItem(pDict, kv.first, kv.second) != 0)
            bFailed = true;
        Py_XDECREF(kv.second);
    }
    if (bFailed)
        throw py::error_already_set();
    return d.release().ptr();
}

PyObject* FieldDict(const CDecodedBatch& batch, const SDecodedField& f, long nIndex)
{
    const SFieldKey::SView key{f.nId,
                               f.dwOffset,
                               f.dwRecordLength,
                               f.dwLength,
                               nIndex,
                               View(batch, f.name),
                               View(batch, f.abbr),
                               View(batch, f.option),
                               View(batch, f.optionAbbr),
                               f.pRecord};
    PyObject* pTemplate = g_pFieldTemplates->Get(key, [&key] {
        return CopyWith(g_pFieldTemplate, {{g_keys.index, Int(static_cast<unsigned long>(key.nIndex))},
                                           {g_keys.id, Int(key.nId)},
                                           {g_keys.name, Text(key.name)},
                                           {g_keys.abbr, Text(key.abbr)},
                                           {g_keys.offset, Int(key.dwOffset)},
                                           {g_keys.length, Int(key.dwLength)},
                                           {g_keys.record_length, Int(key.dwRecordLength)},
                                           {g_keys.option, Text(key.option)},
                                           {g_keys.option_abbr, Text(key.optionAbbr)}});
    });
    return CopyWith(pTemplate, {{g_keys.value, Hex(batch, f.value)}});
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

    py::list errors(packet.nErrors);
    for (std::size_t i = 0; i < packet.nErrors; ++i) {
        PyObject* pCode = PyLong_FromLong(batch.GetError(packet.nFirstError + i));
        if (!pCode)
            throw py::error_already_set();
        PyList_SET_ITEM(errors.ptr(), static_cast<Py_ssize_t>(i), pCode);
    }
    py::list fields(packet.nFields);
    for (std::size_t i = 0; i < packet.nFields; ++i)
        PyList_SET_ITEM(fields.ptr(), static_cast<Py_ssize_t>(i),
                        FieldDict(batch, batch.GetField(packet.nFirstField + i), static_cast<long>(i + 1)));

    const SPacketKey::SView key{packet.pEntry,
                                packet.nResult,
                                packet.nRequestFields,
                                packet.nResponseFields,
                                packet.nHasResponse,
                                packet.nFormat,
                                View(batch, packet.requestName),
                                View(batch, packet.responseName),
                                batch,
                                packet};
    PyObject* pTemplate = g_pPacketTemplates->Get(key, [&key] {
        py::object t = py::reinterpret_steal<py::object>(CopyWith(
            g_pPacketTemplate, {{g_keys.decoder, Text(key.pEntry->pszClassName)},
                                {g_keys.result, PyLong_FromLong(key.nResult)},
                                {g_keys.request_name, Text(key.requestName)},
                                {g_keys.response_name, Text(key.responseName)},
                                {g_keys.request_fields, PyLong_FromLong(key.nRequestFields)},
                                {g_keys.response_fields, PyLong_FromLong(key.nResponseFields)},
                                {g_keys.has_response, PyLong_FromLong(key.nHasResponse)},
                                {g_keys.format, PyLong_FromLong(key.nFormat)}}));
        for (std::size_t i = 0; i < key.ExtraCount(); ++i) {
            py::object k = py::reinterpret_steal<py::object>(Text(key.ExtraKey(i)));
            if (!k)
                throw py::error_already_set();
            Py_INCREF(Py_None);
            SetItem(t.ptr(), k.ptr(), Py_None);
        }
        return t.release().ptr();
    });
    py::object d = py::reinterpret_steal<py::object>(
        CopyWith(pTemplate, {{g_keys.errors, errors.release().ptr()}, {g_keys.fields, fields.release().ptr()}}));

    for (std::size_t i = 0; i < packet.nExtras; ++i) {
        const SDecodedExtra& e = batch.GetExtra(packet.nFirstExtra + i);
        py::object extraKey = py::reinterpret_steal<py::object>(Text(batch, e.key));
        if (!extraKey)
            throw py::error_already_set();
        SetItem(d.ptr(), extraKey.ptr(), ExtraValue(batch, e));
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

void SetCacheSlots(std::size_t nSlots)
{
    delete g_pTexts;
    delete g_pValues;
    delete g_pFieldTemplates;
    delete g_pPacketTemplates;
    g_pTexts = new CStringCache(&NewText, 64, nSlots);
    g_pValues = new CStringCache(&NewHex, 8, nSlots);
    g_pFieldTemplates = new CDictTemplates<SFieldKey>(nSlots);
    g_pPacketTemplates = new CDictTemplates<SPacketKey>(nSlots);
}

void InitPacketDicts()
{
    InitKeys();
    SetCacheSlots(kCacheSlots);
}
