// The Python module "busdecode": the decoders of the library, each payload
// decoded into a dict with the keys and values of one line of the tool's
// --json.
//
// Decoders are process-wide objects that keep the packet being decoded, its
// interned records and shared texts in their own state, and the library runs
// in one thread of control. The module therefore decodes under one lock, in
// any thread: a Decoder may be used from any thread, decodes never overlap,
// and a batch lets other Python threads run while it decodes.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "python/DecodedPacket.h"
#include "registry/DecoderRegistry.h"

namespace py = pybind11;

namespace {

// A payload's length in bits must fit the value's 32-bit bit count.
constexpr std::size_t kMaxPayloadBytes = 0xFFFFFFFFu / 8;
constexpr int kMaxHCIKind = 4;
// A batch decodes this many payloads (or this many bytes) per hold of the
// decoding lock, then turns them into dicts.
constexpr std::size_t kChunkPayloads = 4096;
constexpr std::size_t kChunkBytes = 16u << 20;

std::mutex g_decoding;

// Holds the decoding lock. The interpreter lock is let go while waiting, as
// the holder may be a batch that needs it back once it has let go of ours.
class CDecodingLock {
public:
    CDecodingLock() : m_lock(g_decoding, std::try_to_lock)
    {
        if (!m_lock) {
            py::gil_scoped_release release;
            m_lock.lock();
        }
    }

private:
    std::unique_lock<std::mutex> m_lock;
};

// The tool's quoting of a name in a message: control bytes as \xNN.
std::string Quoted(const std::string& s)
{
    std::string r = "\"";
    for (char c : s) {
        const unsigned char uc = static_cast<unsigned char>(c);
        if (uc < 0x20 || uc == 0x7F) {
            static const char kHex[] = "0123456789abcdef";
            r += "\\x";
            r += kHex[uc >> 4];
            r += kHex[uc & 15];
        } else {
            r += c;
        }
    }
    return r + "\"";
}

const SDecoderEntry& LookUp(const std::string& strName)
{
    if (const SDecoderEntry* pEntry = FindDecoder(strName))
        return *pEntry;
    throw py::value_error("unknown decoder " + Quoted(strName) + " (busdecode.decoders() names them)");
}

int CheckedHCIKind(int nKind)
{
    if (nKind < 0 || nKind > kMaxHCIKind)
        throw py::value_error("hci_kind: Value " + std::to_string(nKind) + " not in range 0 to " +
                              std::to_string(kMaxHCIKind));
    return nKind;
}

std::string TooLong(std::size_t nBytes)
{
    return "payload of " + std::to_string(nBytes) + " bytes is longer than the " + std::to_string(kMaxPayloadBytes) +
           " bytes a decoder takes";
}

// A payload: any object with a contiguous buffer of bytes (bytes, bytearray,
// memoryview, mmap, ...), held for as long as this lives.
class CPayload {
public:
    CPayload() = default;
    CPayload(CPayload&& other) noexcept : m_view(other.m_view) { other.m_view.obj = nullptr; }
    CPayload(const CPayload&) = delete;
    CPayload& operator=(const CPayload&) = delete;
    CPayload& operator=(CPayload&&) = delete;
    ~CPayload()
    {
        if (m_view.obj)
            PyBuffer_Release(&m_view);
    }

    // Takes the object's bytes; the message of the TypeError for an object
    // without them is returned, empty when they were taken.
    std::string Open(py::handle obj)
    {
        if (PyObject_GetBuffer(obj.ptr(), &m_view, PyBUF_SIMPLE) == 0)
            return std::string();
        PyErr_Clear();
        m_view.obj = nullptr;
        return std::string("a payload is bytes, bytearray or another contiguous buffer, not ") +
               Py_TYPE(obj.ptr())->tp_name;
    }

    const std::uint8_t* Data() const noexcept { return static_cast<const std::uint8_t*>(m_view.buf); }
    std::size_t Size() const noexcept { return static_cast<std::size_t>(m_view.len); }

private:
    Py_buffer m_view{};
};

// ---- Decoded packets to Python objects -----------------------------------

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

// One packet of the batch as the dict of its JSON line.
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

// ---- Decoders --------------------------------------------------------------

class CDecoder {
public:
    CDecoder(const std::string& strName, int nHCIKind) : m_entry(LookUp(strName))
    {
        m_options.nHCIKind = CheckedHCIKind(nHCIKind);
        CDecodingLock lock;
        if (!m_entry.pfnGetSpec())
            throw std::runtime_error("decoder " + Quoted(m_entry.pszClassName) + " could not be created");
        m_pPacket = m_entry.pfnNewPacket(m_options);
    }
    CDecoder(const CDecoder&) = delete;
    CDecoder& operator=(const CDecoder&) = delete;
    ~CDecoder()
    {
        CDecodingLock lock;
        m_pPacket.reset();
    }

    const SDecoderEntry& GetEntry() const noexcept { return m_entry; }
    int GetHCIKind() const noexcept { return m_options.nHCIKind; }

    py::object Decode(py::handle payload, std::optional<int> hciKind)
    {
        CPayload bytes;
        const std::string strError = bytes.Open(payload);
        if (!strError.empty())
            throw py::type_error(strError);
        if (bytes.Size() > kMaxPayloadBytes)
            throw py::value_error(TooLong(bytes.Size()));
        const SDecodeOptions options = OptionsFor(hciKind);
        // Each thread reuses its own batch; one already in use (a decode run
        // from a destructor while a dict is being made) gives way to a new one.
        thread_local CDecodedBatch t_batch;
        thread_local bool t_bBusy = false;
        std::unique_ptr<CDecodedBatch> pOwn;
        CDecodedBatch* pBatch = &t_batch;
        if (t_bBusy) {
            pOwn = std::make_unique<CDecodedBatch>();
            pBatch = pOwn.get();
        }
        const bool bWasBusy = t_bBusy;
        t_bBusy = true;
        struct SRestore {
            bool& bBusy;
            bool bOld;
            ~SRestore() { bBusy = bOld; }
        } restore{t_bBusy, bWasBusy};

        pBatch->Clear();
        {
            CDecodingLock lock;
            DecodeInto(*pBatch, bytes, options);
        }
        return PacketDict(*pBatch, 0);
    }

    // Payloads are taken and decoded a chunk at a time. A bad item stops the
    // batch with an error naming it, after the payloads before it have been
    // decoded, as the tool stops at a bad payload.
    py::list DecodeMany(py::handle payloads, std::optional<int> hciKind)
    {
        const SDecodeOptions options = OptionsFor(hciKind);
        py::object iterator = py::reinterpret_steal<py::object>(PyObject_GetIter(payloads.ptr()));
        if (!iterator)
            throw py::error_already_set();
        py::list out;
        CDecodedBatch batch;
        std::vector<CPayload> aChunk;
        std::size_t nItem = 0;
        for (bool bMore = true; bMore;) {
            aChunk.clear();
            std::size_t nBytes = 0;
            try {
                while (aChunk.size() < kChunkPayloads && nBytes < kChunkBytes) {
                    py::object item = py::reinterpret_steal<py::object>(PyIter_Next(iterator.ptr()));
                    if (!item) {
                        if (PyErr_Occurred())
                            throw py::error_already_set();
                        bMore = false;
                        break;
                    }
                    ++nItem;
                    CPayload bytes;
                    const std::string strError = bytes.Open(item);
                    if (!strError.empty())
                        throw py::type_error("item " + std::to_string(nItem) + ": " + strError);
                    if (bytes.Size() > kMaxPayloadBytes)
                        throw py::value_error("item " + std::to_string(nItem) + ": " + TooLong(bytes.Size()));
                    nBytes += bytes.Size();
                    aChunk.push_back(std::move(bytes));
                }
            } catch (...) {
                DecodeChunk(batch, aChunk, options);
                throw;
            }
            DecodeChunk(batch, aChunk, options);
            for (std::size_t i = 0; i < batch.GetCount(); ++i)
                out.append(PacketDict(batch, i));
            batch.Clear();
        }
        return out;
    }

private:
    SDecodeOptions OptionsFor(std::optional<int> hciKind) const
    {
        SDecodeOptions options = m_options;
        if (hciKind)
            options.nHCIKind = CheckedHCIKind(*hciKind);
        return options;
    }

    void DecodeInto(CDecodedBatch& batch, const CPayload& bytes, const SDecodeOptions& options)
    {
        const CAdvAnlzData data =
            CAdvAnlzData::FromBytes(bytes.Data(), static_cast<std::uint32_t>(bytes.Size() * 8));
        const int nResult = m_entry.pfnDecode(*m_pPacket, data, options);
        batch.Add(m_entry, *m_pPacket, nResult);
    }

    // Decodes the chunk without the interpreter lock.
    void DecodeChunk(CDecodedBatch& batch, const std::vector<CPayload>& aChunk, const SDecodeOptions& options)
    {
        py::gil_scoped_release release;
        std::lock_guard<std::mutex> lock(g_decoding);
        for (const CPayload& bytes : aChunk)
            DecodeInto(batch, bytes, options);
    }

    const SDecoderEntry& m_entry;
    SDecodeOptions m_options;
    std::unique_ptr<CProtocolPacket> m_pPacket;
};

// ---- Catalogues ------------------------------------------------------------

py::str Text(const std::string& s)
{
    PyObject* p = NewText(s.data(), s.size());
    if (!p)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(p);
}

py::object OptionalId(bool bHas, unsigned short nId)
{
    return bHas ? py::object(py::int_(nId)) : py::object(py::none());
}

py::list Decoders()
{
    struct SRow {
        const SDecoderEntry* pEntry;
        unsigned short nCount, nFirst, nLast;
    };
    std::vector<SRow> aRows;
    {
        CDecodingLock lock;
        for (const SDecoderEntry& entry : GetDecoderRegistry()) {
            const CProtocolSpec* pSpec = entry.pfnGetSpec();
            if (!pSpec)
                continue;
            const unsigned short nCount = pSpec->GetNumberOfLayerFields();
            SRow row{&entry, nCount, 0, 0};
            if (nCount) {
                row.nFirst = pSpec->GetLayerFieldId(0);
                row.nLast = pSpec->GetLayerFieldId(nCount - 1);
            }
            aRows.push_back(row);
        }
    }
    py::list out;
    for (const SRow& row : aRows) {
        py::dict d;
        d["name"] = row.pEntry->pszClassName;
        d["alias"] = row.pEntry->pszAlias;
        d["first_id"] = OptionalId(row.nCount != 0, row.nFirst);
        d["last_id"] = OptionalId(row.nCount != 0, row.nLast);
        d["field_count"] = row.nCount;
        out.append(std::move(d));
    }
    return out;
}

// An option bound as a number: the value read little-endian, any width.
py::int_ OptionNumber(const CAdvAnlzData& value)
{
    std::vector<std::uint8_t> a(value.GetByteLength());
    value.GetStream(a.data());
    return py::reinterpret_steal<py::int_>(_PyLong_FromByteArray(a.data(), a.size(), 1, 0));
}

py::list Fields(const std::string& strName)
{
    const SDecoderEntry& entry = LookUp(strName);
    struct SOption {
        unsigned short nId;
        std::string strName, strAbbr;
        CAdvAnlzData low, high;
    };
    struct SField {
        unsigned short nId;
        std::string strName, strAbbr, strDesc;
        std::uint32_t dwOffset, dwLength, dwMinLength, dwMaxLength;
        std::vector<SOption> aOptions;
    };
    std::vector<SField> aFields;
    {
        CDecodingLock lock;
        CProtocolSpec* pSpec = entry.pfnGetSpec();
        if (!pSpec)
            throw std::runtime_error("decoder " + Quoted(entry.pszClassName) + " could not be created");
        for (int i = 0; i < pSpec->GetNumberOfLayerFields(); ++i) {
            const unsigned short nId = pSpec->GetLayerFieldId(i);
            const SSpecFieldAttr* pAttr = pSpec->GetDefaultFieldAttr(nId);
            if (!pAttr)
                continue;
            SField f{nId,
                     pAttr->m_strName.ToStdString(),
                     pAttr->m_strAbbr.ToStdString(),
                     pAttr->m_strDesc.ToStdString(),
                     pAttr->m_dwOffset,
                     pAttr->m_dwLength,
                     pAttr->m_dwMinLength,
                     pAttr->m_dwMaxLength,
                     {}};
            if (const CFieldOptionList* pList = pSpec->GetFieldOptions(nId))
                for (int k = 0; k < pList->GetSize(); ++k) {
                    const SFieldOption& option = pList->GetAt(k);
                    f.aOptions.push_back(SOption{option.m_nOptionId, option.m_strName.ToStdString(),
                                                 option.m_strAbbr.ToStdString(), option.m_Low, option.m_High});
                }
            aFields.push_back(std::move(f));
        }
    }
    py::list out;
    for (const SField& f : aFields) {
        py::dict d;
        d["id"] = f.nId;
        d["name"] = Text(f.strName);
        d["abbr"] = Text(f.strAbbr);
        d["description"] = Text(f.strDesc);
        d["offset"] = f.dwOffset;
        d["length"] = f.dwLength;
        d["min_length"] = f.dwMinLength;
        d["max_length"] = f.dwMaxLength;
        py::list options;
        for (const SOption& o : f.aOptions) {
            py::dict od;
            od["id"] = o.nId;
            od["low"] = OptionNumber(o.low);
            od["high"] = OptionNumber(o.high);
            od["name"] = Text(o.strName);
            od["abbr"] = Text(o.strAbbr);
            options.append(std::move(od));
        }
        d["options"] = std::move(options);
        out.append(std::move(d));
    }
    return out;
}

// The decoder's packet formats: code to name.
py::dict Formats(const std::string& strName)
{
    const SDecoderEntry& entry = LookUp(strName);
    std::vector<std::pair<int, std::string>> aFormats;
    {
        CDecodingLock lock;
        const CProtocolSpec* pSpec = entry.pfnGetSpec();
        if (!pSpec)
            throw std::runtime_error("decoder " + Quoted(entry.pszClassName) + " could not be created");
        for (int i = 0; i < pSpec->GetFormatCount(); ++i) {
            unsigned char nCode = 0;
            CString strFormat;
            pSpec->GetFormat(i, nCode, strFormat);
            aFormats.emplace_back(nCode, strFormat.ToStdString());
        }
    }
    py::dict out;
    for (const auto& format : aFormats)
        out[py::int_(format.first)] = Text(format.second);
    return out;
}

// For the tests: one payload decoded as Decoder.decode does, but with the
// given keys in place of what the decoder's packet class adds, so that every
// kind of key is checked while no decoder adds them all. A key's value is an
// int (a number), a list of ints (a number list) or a list of (text, value)
// pairs of bytes (an item list).
std::vector<SPacketExtra> g_aTestExtras;

py::object DecodeWithExtras(const std::string& strName, py::handle payload, const py::list& extras)
{
    SDecoderEntry entry = LookUp(strName);
    std::vector<SPacketExtra> aExtras;
    for (py::handle h : extras) {
        const auto pair = h.cast<std::pair<std::string, py::object>>();
        const py::object& value = pair.second;
        if (py::isinstance<py::int_>(value)) {
            aExtras.push_back(SPacketExtra::MakeNumber(pair.first, value.cast<long long>()));
        } else if (py::len(value) == 0 || py::isinstance<py::int_>(value[py::int_(0)])) {
            aExtras.push_back(SPacketExtra::MakeNumbers(pair.first, value.cast<std::vector<long long>>()));
        } else {
            std::vector<SExtraItem> aItems;
            for (const auto& item : value.cast<std::vector<std::pair<std::string, std::string>>>())
                aItems.push_back(SExtraItem{item.first,
                                            CAdvAnlzData::FromBytes(reinterpret_cast<const std::uint8_t*>(item.second.data()),
                                                                    static_cast<std::uint32_t>(item.second.size() * 8))});
            aExtras.push_back(SPacketExtra::MakeItems(pair.first, std::move(aItems)));
        }
    }
    CPayload bytes;
    const std::string strError = bytes.Open(payload);
    if (!strError.empty())
        throw py::type_error(strError);
    entry.pfnExtras = [](const CProtocolPacket&) { return g_aTestExtras; };
    CDecodedBatch batch;
    {
        CDecodingLock lock;
        g_aTestExtras = std::move(aExtras);
        const SDecodeOptions options;
        std::unique_ptr<CProtocolPacket> pPacket = entry.pfnNewPacket(options);
        const CAdvAnlzData data = CAdvAnlzData::FromBytes(bytes.Data(), static_cast<std::uint32_t>(bytes.Size() * 8));
        const int nResult = entry.pfnDecode(*pPacket, data, options);
        batch.Add(entry, *pPacket, nResult);
        g_aTestExtras.clear();
    }
    return PacketDict(batch, 0);
}

}  // namespace

PYBIND11_MODULE(busdecode, m)
{
    InitKeys();
    g_pTexts = new CStringCache(&NewText, 64);
    g_pValues = new CStringCache(&NewHex, 8);
    g_pFieldTemplates = new CFieldTemplates;
    m.doc() =
        "Protocol decoders for captured bus and link payloads.\n\n"
        "Each decoded payload is a dict with the keys and values of one line of\n"
        "'busdecode --json'. Decoders may be used from any thread; decodes run\n"
        "one at a time, and decode_many lets other threads run while it decodes.";
    m.attr("__version__") = BUSDECODE_VERSION;

    m.def("decoders", &Decoders,
          "The decoders: dicts of name (class name), alias, first_id and last_id (the field id range, None "
          "for none) and field_count.");
    m.def("fields", &Fields, py::arg("name"),
          "A decoder's field catalogue: dicts of id, name, abbr, description, offset, length, min_length, "
          "max_length and options (dicts of id, low, high, name, abbr; low and high are the bound values as "
          "numbers).");

    m.def("formats", &Formats, py::arg("name"),
          "A decoder's packet formats: a dict of format code (the 'format' of a decoded packet) to name.");

    py::class_<CDecoder>(m, "Decoder",
                         "One decoder with a packet of its own: whatever the decoder keeps from one payload to the "
                         "next carries over, as between the payloads of one tool run.")
        .def(py::init<const std::string&, int>(), py::arg("name"), py::arg("hci_kind") = 0,
             "name is a decoder's class name or alias; hci_kind is the HCI packet kind (0 command, 1 ACL host "
             "to controller, 2 ACL controller to host, 3 SCO, 4 event).")
        .def("decode", &CDecoder::Decode, py::arg("payload"), py::kw_only(), py::arg("hci_kind") = py::none(),
             "Decodes one payload (bytes-like) into a dict; hci_kind, when given, overrides the decoder's.")
        .def("decode_many", &CDecoder::DecodeMany, py::arg("payloads"), py::kw_only(),
             py::arg("hci_kind") = py::none(),
             "Decodes every payload of an iterable in order into a list of dicts, letting other threads run "
             "while it decodes.")
        .def_property_readonly("name", [](const CDecoder& d) { return d.GetEntry().pszClassName; })
        .def_property_readonly("alias", [](const CDecoder& d) { return d.GetEntry().pszAlias; })
        .def_property_readonly("hci_kind", &CDecoder::GetHCIKind)
        .def("__repr__", [](const CDecoder& d) {
            return "busdecode.Decoder('" + std::string(d.GetEntry().pszClassName) +
                   "', hci_kind=" + std::to_string(d.GetHCIKind()) + ")";
        });

    m.def("_decode_with_extras", &DecodeWithExtras, py::arg("name"), py::arg("payload"), py::arg("extras"),
          "For the module's tests: decode() with the packet-class keys given as (key, value) pairs.");

    m.def(
        "decode",
        [](const std::string& strName, py::handle payload, int nHCIKind) {
            CDecoder decoder(strName, nHCIKind);
            return decoder.Decode(payload, std::nullopt);
        },
        py::arg("name"), py::arg("payload"), py::kw_only(), py::arg("hci_kind") = 0,
        "Decodes one payload with a fresh packet of the named decoder; the options are Decoder's.");
}
