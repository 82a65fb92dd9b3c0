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
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "python/DecodedPacket.h"
#include "python/PacketDict.h"
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

// ---- Decoders --------------------------------------------------------------

// The calling thread's batch, used again from call to call so that its
// buffers stop growing; a call made while it is in use (a decode run from a
// destructor while dicts are being made) gets one of its own. A batch that
// has grown large is let go after use.
class CBatchLease {
public:
    CBatchLease()
    {
        if (t_bBusy) {
            m_pOwn = std::make_unique<CDecodedBatch>();
            m_pBatch = m_pOwn.get();
        } else {
            t_bBusy = true;
            m_pBatch = &t_batch;
            m_pBatch->Clear();
        }
    }
    CBatchLease(const CBatchLease&) = delete;
    CBatchLease& operator=(const CBatchLease&) = delete;
    ~CBatchLease()
    {
        if (m_pOwn)
            return;
        if (t_batch.GetReservedBytes() > kKeptBatchBytes)
            t_batch = CDecodedBatch();
        t_bBusy = false;
    }

    CDecodedBatch& operator*() const noexcept { return *m_pBatch; }

private:
    static constexpr std::size_t kKeptBatchBytes = 8u << 20;
    static thread_local CDecodedBatch t_batch;
    static thread_local bool t_bBusy;

    CDecodedBatch* m_pBatch = nullptr;
    std::unique_ptr<CDecodedBatch> m_pOwn;
};
thread_local CDecodedBatch CBatchLease::t_batch;
thread_local bool CBatchLease::t_bBusy = false;

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
        CBatchLease batch;
        {
            CDecodingLock lock;
            DecodeInto(*batch, bytes, options);
        }
        return PacketDict(*batch, 0);
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
        CBatchLease lease;
        CDecodedBatch& batch = *lease;
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
        d["name"] = TextObject(f.strName);
        d["abbr"] = TextObject(f.strAbbr);
        d["description"] = TextObject(f.strDesc);
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
            od["name"] = TextObject(o.strName);
            od["abbr"] = TextObject(o.strAbbr);
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
        out[py::int_(format.first)] = TextObject(format.second);
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
    InitPacketDicts();
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

    m.def(
        "_set_cache_slots",
        [](std::size_t nSlots) {
            if (nSlots == 0 || (nSlots & (nSlots - 1)) != 0)
                throw py::value_error("the slot count is a power of two");
            SetCacheSlots(nSlots);
        },
        py::arg("slots") = kCacheSlots,
        "For the module's tests: the caches of strings and dict templates anew, with this many slots each.");
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
