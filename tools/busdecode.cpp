// busdecode: decodes captured payloads with one of the library's decoders and
// prints the decoded fields, as a readable tree or as one JSON object per
// payload.
//
//   busdecode [--json] [--hci-kind K] DECODER [HEX ...] [-f FILE] [--bin FILE]
//   busdecode [--json] --btsnoop FILE hci
//   busdecode list
//   busdecode fields DECODER
//
// Payloads are decoded in order (HEX arguments, then the lines of -f, then
// the --bin file, then the packets of a --btsnoop capture) by one packet of one decoder, so whatever a decoder keeps
// from one payload to the next carries over. The first bad input stops the
// run with a one-line error and exit status 2; what came before it has been
// printed already.

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "registry/DecoderRegistry.h"
#include "tools/BtSnoop.h"
#include "tools/HexInput.h"

namespace {

constexpr int kExitBadInput = 2;
constexpr std::size_t kTextValueBytes = 32;  // value bytes shown per field in the text view
// A payload's length in bits must fit the value's 32-bit bit count.
constexpr std::size_t kMaxPayloadBytes = 0xFFFFFFFFu / 8;

using Json = nlohmann::ordered_json;

struct SOptions {
    bool bJson = false;
    int nHCIKind = 0;
    std::string strFile;
    std::string strBinFile;
    std::string strBtSnoopFile;
    std::vector<std::string> aArgs;
};

// Reports bad input on one line and gives the exit status for it.
int Fail(const std::string& strWhat)
{
    std::cout.flush();
    std::cerr << "busdecode: error: " << strWhat << "\n";
    return kExitBadInput;
}

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

void PrintJson(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult)
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
    std::cout << j.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

void PrintText(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult, std::size_t nPayload,
               std::size_t nBytes)
{
    const CReqRespProtocolPacket* pRR = AsReqResp(packet);
    const CProtocolSpec* pSpec = packet.GetSpec();
    std::cout << "== " << entry.pszClassName << " payload " << nPayload << ": " << nBytes << " byte"
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

// Decodes one payload and prints it.
class CDecodeRun {
public:
    CDecodeRun(const SDecoderEntry& entry, const SOptions& options)
        : m_entry(entry), m_options(options), m_pPacket(entry.pfnNewPacket(MakeDecodeOptions(options)))
    {
    }

    // Decodes one payload; nHCIKind, when not negative, overrides --hci-kind.
    // False (nothing decoded) for a payload longer than a decoder takes.
    bool Decode(const std::vector<std::uint8_t>& aBytes, int nHCIKind = -1)
    {
        if (aBytes.size() > kMaxPayloadBytes)
            return false;
        const CAdvAnlzData data = CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(aBytes.size() * 8));
        SDecodeOptions options = MakeDecodeOptions(m_options);
        if (nHCIKind >= 0)
            options.nHCIKind = nHCIKind;
        const int nResult = m_entry.pfnDecode(*m_pPacket, data, options);
        ++m_nPayloads;
        if (m_options.bJson)
            PrintJson(m_entry, *m_pPacket, nResult);
        else
            PrintText(m_entry, *m_pPacket, nResult, m_nPayloads, aBytes.size());
        std::cout.flush();
        return true;
    }

private:
    static SDecodeOptions MakeDecodeOptions(const SOptions& options)
    {
        SDecodeOptions o;
        o.nHCIKind = options.nHCIKind;
        return o;
    }

    const SDecoderEntry& m_entry;
    const SOptions& m_options;
    std::unique_ptr<CProtocolPacket> m_pPacket;
    std::size_t m_nPayloads = 0;
};

std::string TooLong(std::size_t nBytes)
{
    return "payload of " + std::to_string(nBytes) + " bytes is longer than the " + std::to_string(kMaxPayloadBytes) +
           " bytes a decoder takes";
}

int RunDecode(const SDecoderEntry& entry, const SOptions& options)
{
    CDecodeRun run(entry, options);

    const std::size_t nHex = options.aArgs.size() - 1;
    for (std::size_t i = 1; i < options.aArgs.size(); ++i) {
        const SHexResult hex = ParseHex(options.aArgs[i]);
        if (!hex.bOK)
            return Fail("HEX argument " + std::to_string(i) + " of " + std::to_string(nHex) + " " +
                        Quoted(options.aArgs[i]) + ": " + hex.strError);
        if (!run.Decode(hex.aBytes))
            return Fail("HEX argument " + std::to_string(i) + ": " + TooLong(hex.aBytes.size()));
    }

    if (!options.strFile.empty()) {
        const bool bStdin = options.strFile == "-";
        std::ifstream file;
        if (!bStdin) {
            file.open(options.strFile);
            if (!file)
                return Fail("cannot read file " + Quoted(options.strFile) + ": " + std::strerror(errno));
        }
        std::istream& in = bStdin ? std::cin : file;
        const std::string strName = bStdin ? "standard input" : "file " + Quoted(options.strFile);
        std::string strLine;
        for (std::size_t nLine = 1; std::getline(in, strLine); ++nLine) {
            // Blank lines and lines starting with '#' carry no payload.
            const std::size_t nFirst = strLine.find_first_not_of(" \t\r");
            if (nFirst == std::string::npos || strLine[nFirst] == '#')
                continue;
            const SHexResult hex = ParseHex(strLine);
            if (!hex.bOK)
                return Fail(strName + " line " + std::to_string(nLine) + ": " + hex.strError);
            if (!run.Decode(hex.aBytes))
                return Fail(strName + " line " + std::to_string(nLine) + ": " + TooLong(hex.aBytes.size()));
        }
        if (in.bad())
            return Fail("cannot read " + strName + ": read error");
    }

    if (!options.strBinFile.empty()) {
        std::ifstream file(options.strBinFile, std::ios::binary);
        if (!file)
            return Fail("cannot read file " + Quoted(options.strBinFile) + ": " + std::strerror(errno));
        std::vector<std::uint8_t> aBytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        if (file.bad())
            return Fail("cannot read file " + Quoted(options.strBinFile) + ": read error");
        if (!run.Decode(aBytes))
            return Fail("file " + Quoted(options.strBinFile) + ": " + TooLong(aBytes.size()));
    }

    if (!options.strBtSnoopFile.empty()) {
        const SBtSnoopFile capture = ReadBtSnoop(options.strBtSnoopFile);
        if (!capture.bOK)
            return Fail("cannot read btsnoop file " + Quoted(options.strBtSnoopFile) + ": " + capture.strError);
        for (std::size_t i = 0; i < capture.aPackets.size(); ++i)
            if (!run.Decode(capture.aPackets[i].aBytes, capture.aPackets[i].nKind))
                return Fail("btsnoop file " + Quoted(options.strBtSnoopFile) + " packet " + std::to_string(i + 1) +
                            ": " + TooLong(capture.aPackets[i].aBytes.size()));
    }
    return 0;
}

int RunList()
{
    std::printf("%-34s %-16s %-13s %s\n", "decoder", "alias", "field ids", "layer fields");
    for (const SDecoderEntry& entry : GetDecoderRegistry()) {
        CProtocolSpec* pSpec = entry.pfnGetSpec();
        if (!pSpec)
            continue;
        const unsigned short nCount = pSpec->GetNumberOfLayerFields();
        char ids[32] = "-";
        if (nCount)
            std::snprintf(ids, sizeof ids, "%u-%u", pSpec->GetLayerFieldId(0), pSpec->GetLayerFieldId(nCount - 1));
        std::printf("%-34s %-16s %-13s %u\n", entry.pszClassName, entry.pszAlias, ids, nCount);
    }
    return 0;
}

std::string OptionValue(const CAdvAnlzData& value)
{
    return "0x" + std::string(value.ToString(0, DisplayHexadecimal, 0).GetString());
}

int RunFields(const SDecoderEntry& entry)
{
    CProtocolSpec* pSpec = entry.pfnGetSpec();
    if (!pSpec)
        return Fail("decoder " + Quoted(entry.pszClassName) + " could not be created");
    std::cout << entry.pszClassName << " (" << entry.pszAlias << "): " << pSpec->GetNumberOfLayerFields()
              << " fields\n";
    for (int i = 0; i < pSpec->GetNumberOfLayerFields(); ++i) {
        const unsigned short nId = pSpec->GetLayerFieldId(i);
        const SSpecFieldAttr* pAttr = pSpec->GetDefaultFieldAttr(nId);
        if (!pAttr)
            continue;
        std::cout << nId << "  " << Quoted(pAttr->m_strName.ToStdString()) << "  abbr "
                  << Quoted(pAttr->m_strAbbr.ToStdString()) << "  offset " << pAttr->m_dwOffset << "  length "
                  << pAttr->m_dwLength << "\n";
        if (!pAttr->m_strDesc.IsEmpty())
            std::cout << "    " << pAttr->m_strDesc << "\n";
        if (const CFieldOptionList* pList = pSpec->GetFieldOptions(nId)) {
            for (int k = 0; k < pList->GetSize(); ++k) {
                const SFieldOption& option = pList->GetAt(k);
                std::cout << "    option " << option.m_nOptionId << ": " << OptionValue(option.m_Low);
                if (option.m_High != option.m_Low)
                    std::cout << ".." << OptionValue(option.m_High);
                std::cout << "  " << Quoted(option.m_strName.ToStdString());
                if (option.m_strAbbr != option.m_strName)
                    std::cout << " / " << Quoted(option.m_strAbbr.ToStdString());
                std::cout << "\n";
            }
        }
    }
    for (int i = 0; i < pSpec->GetFormatCount(); ++i) {
        unsigned char nCode = 0;
        CString strName;
        pSpec->GetFormat(i, nCode, strName);
        std::cout << "format " << static_cast<int>(nCode) << "  " << Quoted(strName.ToStdString()) << "\n";
    }
    return 0;
}

const SDecoderEntry* LookUp(const std::string& strName, int& nStatus)
{
    const SDecoderEntry* pEntry = FindDecoder(strName);
    if (!pEntry)
        nStatus = Fail("unknown decoder " + Quoted(strName) + " (argument 1; 'busdecode list' names them)");
    return pEntry;
}

int Run(int argc, char** argv)
{
    SOptions options;
    CLI::App app{"Decodes captured payloads with one of the busdecode protocol decoders.", "busdecode"};
    app.footer(
        "Forms:\n"
        "  busdecode [--json] [--hci-kind K] DECODER [HEX ...] [-f FILE] [--bin FILE]\n"
        "  busdecode [--json] --btsnoop FILE hci   every HCI packet of a btsnoop capture\n"
        "  busdecode list              the decoders, with alias, field ids and field count\n"
        "  busdecode fields DECODER    a decoder's field catalogue and options\n"
        "DECODER is a class name (CMassStorageBulkOnlyWrapperSpec) or an alias (bot).\n"
        "HEX may contain blanks; an empty argument is an empty payload.");
    app.add_flag("--json", options.bJson, "one JSON object per payload, one per line");
    app.add_option("--hci-kind", options.nHCIKind,
                   "HCI packet kind: 0 command, 1 ACL host to controller, 2 ACL controller to host, 3 SCO, 4 event")
        ->check(CLI::Range(0, 4));
    app.add_option("-f,--file", options.strFile, "one hex payload per line ('-' for standard input)");
    app.add_option("--bin", options.strBinFile, "a binary file decoded as one payload");
    app.add_option("--btsnoop", options.strBtSnoopFile,
                   "a btsnoop capture (HCI or HCI UART): every packet, with its own HCI packet kind");
    app.add_option("args", options.aArgs, "DECODER then HEX payloads, or list, or fields DECODER");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return Fail(e.what());
    }

    if (options.aArgs.empty())
        return Fail("no decoder given ('busdecode --help' shows the forms)");
    const std::string& strFirst = options.aArgs[0];
    int nStatus = 0;
    if (strFirst == "list")
        return RunList();
    if (strFirst == "fields") {
        if (options.aArgs.size() != 2)
            return Fail("'fields' takes one decoder name");
        const SDecoderEntry* pEntry = LookUp(options.aArgs[1], nStatus);
        return pEntry ? RunFields(*pEntry) : nStatus;
    }
    const SDecoderEntry* pEntry = LookUp(strFirst, nStatus);
    if (!pEntry)
        return nStatus;
    if (options.aArgs.size() == 1 && options.strFile.empty() && options.strBinFile.empty() &&
        options.strBtSnoopFile.empty())
        return Fail("no payload given for " + Quoted(strFirst) + " (HEX arguments, -f FILE or --bin FILE)");
    if (!options.strBtSnoopFile.empty() && std::string(pEntry->pszClassName) != "CHCISpec")
        return Fail("--btsnoop goes with the HCI decoder (CHCISpec), not " + Quoted(strFirst));
    return RunDecode(*pEntry, options);
}

}  // namespace

int main(int argc, char** argv)
{
    const int nStatus = Run(argc, argv);
    KillAllDecoders();
    return nStatus;
}
