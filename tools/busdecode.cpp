// busdecode: decodes captured payloads with one of the library's decoders and
// prints the decoded fields, as a readable tree or as one JSON object per
// payload.
//
//   busdecode [--json] [--stats] [--all] [-q] -r FILE [DECODER]
//   busdecode [--json] [--hci-kind K] DECODER [HEX ...] [-f FILE] [--bin FILE]
//   busdecode list
//   busdecode fields DECODER
//
// A capture (-r) is read record by record and its records are routed to
// the decoders (see tools/CaptureCommand.h). Payloads are decoded in order
// (HEX arguments, then the lines of -f, then the --bin file) by one packet of
// one decoder, so whatever a decoder keeps from one payload to the next
// carries over. The first bad input stops the run with a one-line error and
// exit status 2; what came before it has been printed already.

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

#include "capture/Routes.h"
#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "registry/DecoderRegistry.h"
#include "tools/CaptureCommand.h"
#include "tools/HexInput.h"
#include "tools/PacketWriter.h"

namespace {

constexpr int kExitBadInput = 2;
// A payload's length in bits must fit the value's 32-bit bit count.
constexpr std::size_t kMaxPayloadBytes = 0xFFFFFFFFu / 8;

struct SOptions {
    bool bJson = false;
    int nHCIKind = 0;
    std::string strFile;
    std::string strBinFile;
    std::string strCapture;
    bool bStats = false;
    bool bAll = false;
    bool bQuiet = false;
    std::vector<std::string> aUsbClasses;
    std::vector<std::string> aArgs;
};

// Reports bad input on one line and gives the exit status for it.
int Fail(const std::string& strWhat)
{
    std::cout.flush();
    std::cerr << "busdecode: error: " << strWhat << "\n";
    return kExitBadInput;
}

// Decodes one payload and prints it.
class CDecodeRun {
public:
    CDecodeRun(const SDecoderEntry& entry, const SOptions& options)
        : m_entry(entry), m_options(MakeDecodeOptions(entry, options)), m_pPacket(entry.pfnNewPacket(m_options)),
          m_writer(options.bJson)
    {
    }
    ~CDecodeRun() { m_writer.Flush(); }

    // Decodes one payload. False (nothing decoded) for a payload longer
    // than a decoder takes.
    bool Decode(const std::vector<std::uint8_t>& aBytes)
    {
        if (aBytes.size() > kMaxPayloadBytes)
            return false;
        const CAdvAnlzData data = CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(aBytes.size() * 8));
        const int nResult = m_entry.pfnDecode(*m_pPacket, data, m_options);
        m_writer.Packet(m_entry, *m_pPacket, nResult, aBytes.size(), ++m_nPayloads, nullptr);
        return true;
    }

private:
    static SDecodeOptions MakeDecodeOptions(const SDecoderEntry& entry, const SOptions& options)
    {
        SDecodeOptions o;
        o.nHCIKind = options.nHCIKind;
        if (const int nSelector = HIDSelectorOfAlias(entry.pszAlias); nSelector >= 0)
            o.nHIDSelector = nSelector;
        return o;
    }

    const SDecoderEntry& m_entry;
    const SDecodeOptions m_options;
    std::unique_ptr<CProtocolPacket> m_pPacket;
    CPacketWriter m_writer;
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

int RunCaptureForm(const SOptions& options)
{
    if (!options.strFile.empty() || !options.strBinFile.empty())
        return Fail("-r reads a capture; -f and --bin go without it");
    if (options.aArgs.size() > 1)
        return Fail("-r takes at most one DECODER argument, not " + std::to_string(options.aArgs.size()) +
                    " arguments ('busdecode --help' shows the forms)");
    SCaptureOptions capture;
    capture.strPath = options.strCapture;
    capture.bJson = options.bJson;
    capture.bStats = options.bStats;
    capture.bAll = options.bAll;
    capture.bQuiet = options.bQuiet;
    capture.nHCIKind = options.nHCIKind;
    capture.aUsbClasses = options.aUsbClasses;
    if (!options.aArgs.empty()) {
        int nStatus = 0;
        if (!(capture.pForced = LookUp(options.aArgs[0], nStatus)))
            return nStatus;
    }
    return RunCapture(capture);
}

int Run(int argc, char** argv)
{
    SOptions options;
    CLI::App app{"Decodes captures and captured payloads with the busdecode protocol decoders.", "busdecode"};
    app.footer(
        "Forms:\n"
        "  busdecode [--json] [--stats] [--all] [-q] -r FILE [DECODER]\n"
        "                              every record of a capture (pcap, pcapng, btsnoop, usbmon text),\n"
        "                              routed to its decoder, or all to DECODER\n"
        "  busdecode [--json] [--hci-kind K] DECODER [HEX ...] [-f FILE] [--bin FILE]\n"
        "  busdecode list              the decoders, with alias, field ids and field count\n"
        "  busdecode fields DECODER    a decoder's field catalogue and options\n"
        "DECODER is a class name (CMassStorageBulkOnlyWrapperSpec) or an alias (bot).\n"
        "HEX may contain blanks; an empty argument is an empty payload.\n"
        "Exit status: 0 done, 1 a damaged capture (everything before the damage printed), 2 bad input.");
    app.add_flag("--json", options.bJson, "one JSON object per payload, one per line");
    app.add_option("--hci-kind", options.nHCIKind,
                   "HCI packet kind: 0 command, 1 ACL host to controller, 2 ACL controller to host, 3 SCO, 4 event")
        ->check(CLI::Range(0, 4));
    app.add_option("-f,--file", options.strFile, "one hex payload per line ('-' for standard input)");
    app.add_option("--bin", options.strBinFile, "a binary file decoded as one payload");
    app.add_option("-r,--read", options.strCapture, "a capture file ('-' for standard input)");
    app.add_flag("--stats", options.bStats,
                 "with -r: after the packets, packets per decoder and request, and undecoded records by reason");
    app.add_flag("--all", options.bAll, "with -r: print the records no route took as undecoded lines");
    app.add_flag("-q,--quiet", options.bQuiet, "with -r: print no packets (with --stats: the table alone)");
    app.add_option("--usb-class", options.aUsbClasses,
                   "with -r: BUS.DEVICE[.INTERFACE]=NAME, the class of a USB device or interface whose "
                   "enumeration is not in the capture (hub, cdc, cdc-data, printer, hid, mass-storage, "
                   "mass-storage-optical, hci or a class number); once per device or interface")
        ->allow_extra_args(false);
    app.add_option("args", options.aArgs, "DECODER then HEX payloads, or list, or fields DECODER");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return Fail(e.what());
    }

    if (!options.strCapture.empty())
        return RunCaptureForm(options);
    if (options.bStats || options.bAll || options.bQuiet || !options.aUsbClasses.empty())
        return Fail("--stats, --all, -q and --usb-class go with -r FILE");
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
    if (options.aArgs.size() == 1 && options.strFile.empty() && options.strBinFile.empty())
        return Fail("no payload given for " + Quoted(strFirst) + " (HEX arguments, -f FILE or --bin FILE)");
    return RunDecode(*pEntry, options);
}

}  // namespace

int main(int argc, char** argv)
{
    const int nStatus = Run(argc, argv);
    KillAllDecoders();
    return nStatus;
}
