// The decoders by name: class name and short alias to a factory of the right
// packet class. A new decoder is one line in DecoderRegistry.cpp.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"

// What a host says besides the bytes: the HCI packet kind (0 command, 1 ACL
// host to controller, 2 ACL controller to host, 3 SCO, 4 event) and the HID
// decoder selector.
struct SDecodeOptions {
    int nHCIKind = 0;
    int nHIDSelector = 1;
};

// One item of a list that a packet class adds to the host's view: a line of
// text and its bit-string value.
struct SExtraItem {
    std::string strText;
    CAdvAnlzData value;
};

// One key that a packet class adds to the host's view besides the fields: a
// number, a list of numbers, or a list of items.
struct SPacketExtra {
    enum EKind { Number, NumberList, ItemList };

    std::string strKey;
    EKind eKind = Number;
    long long nNumber = 0;
    std::vector<long long> aNumbers;
    std::vector<SExtraItem> aItems;

    static SPacketExtra MakeNumber(std::string strKey, long long nNumber)
    {
        SPacketExtra e;
        e.strKey = std::move(strKey);
        e.nNumber = nNumber;
        return e;
    }
    static SPacketExtra MakeNumbers(std::string strKey, std::vector<long long> aNumbers)
    {
        SPacketExtra e;
        e.strKey = std::move(strKey);
        e.eKind = NumberList;
        e.aNumbers = std::move(aNumbers);
        return e;
    }
    static SPacketExtra MakeItems(std::string strKey, std::vector<SExtraItem> aItems)
    {
        SPacketExtra e;
        e.strKey = std::move(strKey);
        e.eKind = ItemList;
        e.aItems = std::move(aItems);
        return e;
    }
};

struct SDecoderEntry {
    const char* pszClassName;
    const char* pszAlias;
    // The decoder singleton (created on first use) and its release.
    CProtocolSpec* (*pfnGetSpec)();
    void (*pfnKillSpec)();
    // An empty packet bound to the decoder.
    std::unique_ptr<CProtocolPacket> (*pfnNewPacket)(const SDecodeOptions& options);
    // Decodes data into a packet made by pfnNewPacket; the decoder's result.
    int (*pfnDecode)(CProtocolPacket& packet, const CAdvAnlzData& data, const SDecodeOptions& options);
    // What a packet class adds to the host's view, in order; null for none.
    std::vector<SPacketExtra> (*pfnExtras)(const CProtocolPacket& packet);
};

// All decoders, in a fixed order.
const std::vector<SDecoderEntry>& GetDecoderRegistry();
// The decoder with this class name or alias, or null.
const SDecoderEntry* FindDecoder(const std::string& strName);
// Releases every decoder that exists.
void KillAllDecoders();

// An entry for a decoder whose packet decodes with the plain RestructBy.
template <class TSpec, class TPacket>
SDecoderEntry MakeDecoderEntry(const char* pszClassName, const char* pszAlias)
{
    return SDecoderEntry{
        pszClassName,
        pszAlias,
        []() -> CProtocolSpec* { return TSpec::GetInstance(); },
        []() { TSpec::KillInstance(); },
        [](const SDecodeOptions&) -> std::unique_ptr<CProtocolPacket> { return std::make_unique<TPacket>(); },
        [](CProtocolPacket& packet, const CAdvAnlzData& data, const SDecodeOptions&) {
            return packet.RestructBy(data);
        },
        nullptr,
    };
}
