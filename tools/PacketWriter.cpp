#include "tools/PacketWriter.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <iostream>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/AdvAnlzData.h"
#include "core/ProtocolSpec.h"
#include "tools/HexInput.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kTextValueBytes = 32;  // value bytes shown per field in the text view

std::string ValueHex(const CAdvAnlzData& value)
{
    std::vector<std::uint8_t> a(value.GetByteLength());
    value.GetStream(a.data());
    return ToHex(a.data(), a.size());
}

const CReqRespProtocolPacket* AsReqResp(const CProtocolPacket& packet)
{
    return dynamic_cast<const CReqRespProtocolPacket*>(&packet);
}

// Seconds since the epoch with six decimals, exactly as the microseconds
// say; returns the characters written.
int FormatTime(char* psz, std::size_t nSize, std::int64_t nMicros)
{
    const std::uint64_t nAbs = nMicros < 0 ? 0 - static_cast<std::uint64_t>(nMicros) : static_cast<std::uint64_t>(nMicros);
    return std::snprintf(psz, nSize, "%s%" PRIu64 ".%06" PRIu64, nMicros < 0 ? "-" : "", nAbs / 1000000,
                         nAbs % 1000000);
}

std::string TimeText(std::int64_t nMicros)
{
    char sz[32];
    FormatTime(sz, sizeof sz, nMicros);
    return sz;
}

const char* TransferName(EUsbTransfer eTransfer)
{
    switch (eTransfer) {
    case UsbControl: return "control";
    case UsbBulk: return "bulk";
    case UsbInterrupt: return "interrupt";
    case UsbIsochronous: return "isochronous";
    default: return "other";
    }
}

const char* DirectionName(EBluetoothDirection eDirection)
{
    switch (eDirection) {
    case BluetoothSent: return "sent";
    case BluetoothReceived: return "received";
    default: return "unknown";
    }
}

// The keys a capture adds behind those of the payload form: "frame",
// "time" and the "link" object, written out with a leading comma.
void WriteOriginJson(std::uint64_t nFrame, std::int64_t nTime, const SPacketLink& link)
{
    char sz[256];
    int n = std::snprintf(sz, sizeof sz, ",\"frame\":%" PRIu64 ",\"time\":", nFrame);
    n += FormatTime(sz + n, sizeof sz - static_cast<std::size_t>(n), nTime);
    const std::size_t nRoom = sizeof sz - static_cast<std::size_t>(n);
    switch (link.eKind) {
    case SPacketLink::Usb:
        n += std::snprintf(sz + n, nRoom,
                           ",\"link\":{\"bus\":%u,\"device\":%u,\"endpoint\":%u,\"direction\":\"%s\",\"transfer\":\"%s\"}",
                           link.nBus, link.nDevice, link.nEndpoint, link.bIn ? "in" : "out", TransferName(link.eTransfer));
        break;
    case SPacketLink::Bluetooth:
        n += std::snprintf(sz + n, nRoom, ",\"link\":{\"direction\":\"%s\",\"hci_kind\":%d}",
                           DirectionName(link.eDirection), link.nHCIKind);
        break;
    default:
        n += std::snprintf(sz + n, nRoom, ",\"link\":{}");
        break;
    }
    std::cout.write(sz, n);
}

// "frame 12 at 1386953826.123456, usb 1.5 endpoint 2 in bulk"
std::string OriginText(std::uint64_t nFrame, std::int64_t nTime, const SPacketLink& link)
{
    std::string s = "frame " + std::to_string(nFrame) + " at " + TimeText(nTime);
    char sz[96];
    switch (link.eKind) {
    case SPacketLink::Usb:
        std::snprintf(sz, sizeof sz, ", usb %u.%u endpoint %u %s %s", link.nBus, link.nDevice, link.nEndpoint,
                      link.bIn ? "in" : "out", TransferName(link.eTransfer));
        s += sz;
        break;
    case SPacketLink::Bluetooth:
        std::snprintf(sz, sizeof sz, ", bluetooth %s, HCI kind %d", DirectionName(link.eDirection), link.nHCIKind);
        s += sz;
        break;
    default:
        break;
    }
    return s;
}

void WriteJson(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult, const SPacketOrigin* pOrigin)
{
    const CReqRespProtocolPacket* pRR = AsReqResp(packet);
    const CProtocolSpec* pSpec = packet.GetSpec();
    Json j;
    j["decoder"] = entry.pszClassName;
    j["result"] = nResult;
    j["request_name"] = pRR ? pRR->m_strRequestName.ToStdString() : std::string();
    j["response_name"] = pRR ? pRR->m_strResponseName.ToStdString() : std::string();
    j["request_fields"] = pRR ? pRR->m_nRequestFields : 0;
    j["response_fields"] = pRR ? pRR->m_nResponseFields : 0;
    j["has_response"] = pRR ? pRR->m_bHasResponse : 0;
    j["format"] = packet.m_byPacketFormat;
    j["errors"] = Json::array();
    for (std::uint16_t nCode : packet.GetPErrors())
        j["errors"].push_back(nCode);
    j["fields"] = Json::array();
    for (int i = 1; i <= packet.GetFieldCount(); ++i) {
        const unsigned char nIndex = static_cast<unsigned char>(i);
        const SSpecFieldAttr* pAttr = packet.GetFieldAttr(nIndex);
        const CAdvAnlzData& value = *packet.GetFieldValue(nIndex);
        const unsigned short nId = pAttr ? pAttr->m_nId : 0;
        Json f;
        f["index"] = i;
        f["id"] = nId;
        f["name"] = pAttr ? pAttr->m_strName.ToStdString() : std::string();
        f["abbr"] = pAttr ? pAttr->m_strAbbr.ToStdString() : std::string();
        f["offset"] = pAttr ? pAttr->m_dwOffset : 0;
        f["length"] = value.GetLength();
        f["record_length"] = pAttr ? pAttr->m_dwLength : 0;
        f["value"] = ValueHex(value);
        f["option"] = pSpec ? pSpec->GetFieldOptionName(nId, value).ToStdString() : std::string();
        f["option_abbr"] = pSpec ? pSpec->GetFieldOptionAbbr(nId, value).ToStdString() : std::string();
        j["fields"].push_back(std::move(f));
    }
    if (entry.pfnExtras) {
        for (const SPacketExtra& extra : entry.pfnExtras(packet)) {
            switch (extra.eKind) {
            case SPacketExtra::Number:
                j[extra.strKey] = extra.nNumber;
                break;
            case SPacketExtra::NumberList:
                j[extra.strKey] = extra.aNumbers;
                break;
            case SPacketExtra::ItemList: {
                Json a = Json::array();
                for (const SExtraItem& item : extra.aItems)
                    a.push_back(Json{{"text", item.strText}, {"value", ValueHex(item.value)}});
                j[extra.strKey] = std::move(a);
                break;
            }
            }
        }
    }
    const std::string strLine = j.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (!pOrigin) {
        std::cout << strLine << "\n";
        return;
    }
    // The object always has keys: the capture's keys go before its closing
    // brace.
    std::cout.write(strLine.data(), static_cast<std::streamsize>(strLine.size() - 1));
    WriteOriginJson(pOrigin->nFrame, pOrigin->nTime, pOrigin->link);
    std::cout << "}\n";
}

void WriteText(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult, std::size_t nBytes,
               std::size_t nOrdinal, const SPacketOrigin* pOrigin)
{
    const CReqRespProtocolPacket* pRR = AsReqResp(packet);
    const CProtocolSpec* pSpec = packet.GetSpec();
    if (pOrigin)
        std::cout << "== " << OriginText(pOrigin->nFrame, pOrigin->nTime, pOrigin->link) << ": " << entry.pszClassName
                  << ", " << nBytes << " byte" << (nBytes == 1 ? "" : "s") << " ==\n";
    else
        std::cout << "== " << entry.pszClassName << " payload " << nOrdinal << ": " << nBytes << " byte"
                  << (nBytes == 1 ? "" : "s") << " ==\n";
    if (packet.GetFieldCount() == 0) {
        std::cout << "  (no fields)\n";
    } else {
        char line[256];
        std::snprintf(line, sizeof line, "  %3s  %-5s  %6s  %5s  %-32s  %-34s  %s\n", "#", "id", "offset", "bits",
                      "name", "value (hex)", "option");
        std::cout << line;
        for (int i = 1; i <= packet.GetFieldCount(); ++i) {
            const unsigned char nIndex = static_cast<unsigned char>(i);
            const SSpecFieldAttr* pAttr = packet.GetFieldAttr(nIndex);
            const CAdvAnlzData& value = *packet.GetFieldValue(nIndex);
            const unsigned short nId = pAttr ? pAttr->m_nId : 0;
            std::string strValue = ValueHex(value);
            if (strValue.size() > 2 * kTextValueBytes)
                strValue = strValue.substr(0, 2 * kTextValueBytes - 2) + "..";
            if (strValue.empty())
                strValue = "-";
            const std::string strOption = pSpec ? pSpec->GetFieldOptionName(nId, value).ToStdString() : "";
            // The option goes behind the fixed columns as it stands: option
            // names can be longer than any line buffer.
            std::snprintf(line, sizeof line, "  %3d  %-5u  %6u  %5u  %-32s  %-34s  ", i, nId,
                          pAttr ? pAttr->m_dwOffset : 0u, value.GetLength(),
                          pAttr ? pAttr->m_strName.GetString() : "", strValue.c_str());
            std::cout << line << strOption << "\n";
        }
    }
    if (pRR) {
        std::cout << "  request: " << (pRR->m_strRequestName.IsEmpty() ? "-" : Quoted(pRR->m_strRequestName.ToStdString()))
                  << "   response: "
                  << (pRR->m_strResponseName.IsEmpty() ? "-" : Quoted(pRR->m_strResponseName.ToStdString()))
                  << "\n  fields: " << static_cast<int>(pRR->m_nRequestFields) << " request, "
                  << static_cast<int>(pRR->m_nResponseFields) << " response, has response " << pRR->m_bHasResponse
                  << ", format " << static_cast<int>(packet.m_byPacketFormat) << "\n";
    }
    if (entry.pfnExtras) {
        for (const SPacketExtra& extra : entry.pfnExtras(packet)) {
            std::cout << "  " << extra.strKey << ":";
            switch (extra.eKind) {
            case SPacketExtra::Number:
                std::cout << " " << extra.nNumber << "\n";
                break;
            case SPacketExtra::NumberList:
                if (extra.aNumbers.empty())
                    std::cout << " none";
                for (long long n : extra.aNumbers)
                    std::cout << " " << n;
                std::cout << "\n";
                break;
            case SPacketExtra::ItemList:
                // One line per item, its text as the decoder indents it.
                std::cout << (extra.aItems.empty() ? " none\n" : "\n");
                for (const SExtraItem& item : extra.aItems)
                    std::cout << "    " << item.strText << "  [" << (item.value.GetLength() ? ValueHex(item.value) : "-")
                              << "]\n";
                break;
            }
        }
    }
    std::cout << "  result: " << nResult << "   errors:";
    if (packet.GetPErrors().IsEmpty())
        std::cout << " none";
    for (std::uint16_t nCode : packet.GetPErrors())
        std::cout << " " << nCode;
    std::cout << "\n";
}

// Counts sorted largest first, equal counts by name.
std::vector<std::pair<std::string, std::uint64_t>> ByCount(const std::map<std::string, std::uint64_t>& map)
{
    std::vector<std::pair<std::string, std::uint64_t>> a(map.begin(), map.end());
    std::stable_sort(a.begin(), a.end(), [](const auto& x, const auto& y) { return x.second > y.second; });
    return a;
}

}  // namespace

std::string Quoted(const std::string& s)
{
    std::string r = "\"";
    for (char c : s) {
        const unsigned char uc = static_cast<unsigned char>(c);
        if (uc < 0x20 || uc == 0x7F) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\x%02x", uc);
            r += buf;
        } else {
            r += c;
        }
    }
    return r + "\"";
}

void CPacketWriter::Packet(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult, std::size_t nBytes,
                           std::size_t nOrdinal, const SPacketOrigin* pOrigin)
{
    if (m_bJson)
        WriteJson(entry, packet, nResult, pOrigin);
    else
        WriteText(entry, packet, nResult, nBytes, nOrdinal, pOrigin);
}

void CPacketWriter::Undecoded(const SUnroutedRecord& record)
{
    const std::string& strReason = record.pReason ? *record.pReason : std::string();
    if (m_bJson) {
        const Json reason = strReason;
        // The reason and the bytes, then the keys a packet of the capture
        // ends with.
        std::cout << "{\"undecoded\":" << reason.dump(-1, ' ', false, Json::error_handler_t::replace)
                  << ",\"length\":" << record.nData << ",\"data\":\"" << ToHex(record.pData, record.nData) << "\"";
        WriteOriginJson(record.nFrame, record.nTime, record.link);
        std::cout << "}\n";
        return;
    }
    std::string strData = ToHex(record.pData, std::min(record.nData, kTextValueBytes));
    if (record.nData > kTextValueBytes)
        strData += "..";
    std::cout << "-- " << OriginText(record.nFrame, record.nTime, record.link) << ": undecoded, " << strReason << ", "
              << record.nData << " byte" << (record.nData == 1 ? "" : "s") << " --\n"
              << "  data: " << (strData.empty() ? "-" : strData) << "\n";
}

void CPacketWriter::Stats(const SCaptureStats& stats)
{
    if (m_bJson) {
        Json j;
        j["records"] = stats.nRecords;
        j["packets"] = stats.nPackets;
        Json decoders = Json::object();
        for (const auto& [strDecoder, decoder] : stats.mapDecoders)
            decoders[strDecoder] = Json{{"packets", decoder.nPackets}, {"requests", decoder.mapRequests}};
        j["decoders"] = std::move(decoders);
        j["undecoded"] = stats.mapUnrouted;
        std::cout << Json{{"stats", std::move(j)}}.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
        return;
    }
    std::uint64_t nUnrouted = 0;
    for (const auto& entry : stats.mapUnrouted)
        nUnrouted += entry.second;
    char line[64];
    std::cout << "== statistics: " << stats.nRecords << " records, " << stats.nPackets << " packets, " << nUnrouted
              << " records undecoded ==\n";
    std::map<std::string, std::uint64_t> mapDecoders;
    for (const auto& [strDecoder, decoder] : stats.mapDecoders)
        mapDecoders[strDecoder] = decoder.nPackets;
    for (const auto& [strDecoder, nPackets] : ByCount(mapDecoders)) {
        std::snprintf(line, sizeof line, "  %10" PRIu64 "  ", nPackets);
        std::cout << line << strDecoder << "\n";
        for (const auto& [strRequest, nCount] : ByCount(stats.mapDecoders.at(strDecoder).mapRequests)) {
            std::snprintf(line, sizeof line, "    %10" PRIu64 "  ", nCount);
            std::cout << line << (strRequest.empty() ? "(no request name)" : Quoted(strRequest)) << "\n";
        }
    }
    if (!stats.mapUnrouted.empty())
        std::cout << "  undecoded records, by reason:\n";
    for (const auto& [strReason, nCount] : ByCount(stats.mapUnrouted)) {
        std::snprintf(line, sizeof line, "    %10" PRIu64 "  ", nCount);
        std::cout << line << strReason << "\n";
    }
}

void CPacketWriter::Flush()
{
    std::cout.flush();
}
