// busdecode -r as its users run it: every shared capture decodes, with the
// packets per decoder that the capture's raw records hold; captures written
// here for what the shared ones lack (a mass-storage session with its
// enumeration, a hub's port status change, a pcapng file of two link
// types); the JSON and tree forms of capture packets; and the error paths
// (damaged captures exit 1 with everything before the damage printed, files
// that are no capture and bad options exit 2, always with one line).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"
#include "registry/DecoderRegistry.h"
#include "tests/CaptureFiles.h"
#include "tests/ToolRun.h"

namespace {

using Json = nlohmann::json;
using Counts = std::map<std::string, std::uint64_t>;

std::string Quote(const std::string& strPath)
{
    return "'" + strPath + "'";
}

std::size_t Lines(const std::string& s)
{
    return static_cast<std::size_t>(std::count(s.begin(), s.end(), '\n'));
}

// ------------------------------------------------ counting raw records

// The devices of a USB capture as its descriptors and requests show them,
// gathered over the whole capture before anything is counted.
struct SUsbWorld {
    std::map<std::uint32_t, std::uint8_t> mapDeviceClass;     // bus << 16 | device
    std::map<std::uint64_t, std::uint8_t> mapInterfaceClass;  // device << 16 | interface
    std::map<std::uint64_t, int> mapEndpointInterface;        // device << 16 | endpoint address
    std::set<std::uint32_t> setHubs;                          // devices that got port requests
    bool bLinux = false;

    static std::uint32_t Device(std::uint16_t nBus, std::uint16_t nDevice) { return std::uint32_t(nBus) << 16 | nDevice; }
    bool IsHub(std::uint32_t nDevice) const
    {
        const auto it = mapDeviceClass.find(nDevice);
        return (it != mapDeviceClass.end() && it->second == 9) || setHubs.count(nDevice) ||
               (bLinux && (nDevice & 0xFFFF) == 1);
    }
    bool HasMassStorage(std::uint32_t nDevice) const
    {
        for (const auto& [nKey, nClass] : mapInterfaceClass)
            if (nKey >> 16 == nDevice && nClass == 8)
                return true;
        return false;
    }
    int InterfaceClass(std::uint32_t nDevice, int nInterface) const
    {
        const auto it = mapInterfaceClass.find(std::uint64_t(nDevice) << 16 | static_cast<std::uint16_t>(nInterface));
        return it == mapInterfaceClass.end() ? -1 : it->second;
    }
};

struct SControl {
    std::uint32_t nDevice;
    Bytes aSetup;
    Bytes aData;
};

// The control transfers of a capture, setup to completion, by the URB or
// IRP id.
std::vector<SControl> ControlTransfers(const std::vector<std::pair<int, Bytes>>& aRecords)
{
    std::vector<SControl> aDone;
    std::map<std::uint64_t, SControl> mapOpen;
    for (const auto& [nLinkType, aRecord] : aRecords) {
        SUsbPacket p;
        if (!ParseUsbPacket(nLinkType, aRecord.data(), aRecord.size(), p) || p.eTransfer != UsbControl)
            continue;
        const std::uint64_t nKey = p.nId ^ (std::uint64_t(p.nBus) << 56);
        const Bytes aData(p.pData, p.pData + p.nData);
        if (p.bSetup) {
            mapOpen[nKey] = {SUsbWorld::Device(p.nBus, p.nDevice), Bytes(p.aSetup, p.aSetup + 8),
                             (p.aSetup[0] & 0x80) ? Bytes() : aData};
            continue;
        }
        const auto it = mapOpen.find(nKey);
        if (it == mapOpen.end())
            continue;
        const bool bUsbPcap = nLinkType == LinkTypeUsbPcap;
        if (bUsbPcap ? p.nControlStage == 1 || p.nControlStage == 3 : (it->second.aSetup[0] & 0x80) != 0)
            it->second.aData = it->second.aData + aData;
        if (bUsbPcap ? p.nControlStage == 2 || p.nControlStage == 3 : p.eEvent != UsbSubmit) {
            aDone.push_back(it->second);
            mapOpen.erase(it);
        }
    }
    return aDone;
}

void LearnDescriptors(SUsbWorld& world, const SControl& t)
{
    const std::uint8_t nType = t.aSetup[0], nRequest = t.aSetup[1], nDescriptor = t.aSetup[3];
    if ((nType & 0x60) == 0x20 && (nType & 0x1F) == 3)
        world.setHubs.insert(t.nDevice);
    if (nType != 0x80 || nRequest != 6)
        return;
    if (nDescriptor == 1 && t.aData.size() >= 7)
        world.mapDeviceClass[t.nDevice] = t.aData[4];
    if (nDescriptor != 2)
        return;
    int nInterface = -1;
    for (std::size_t i = 0; i + 2 <= t.aData.size() && t.aData[i] >= 2; i += t.aData[i]) {
        if (t.aData[i + 1] == 4 && i + 9 <= t.aData.size()) {
            nInterface = t.aData[i + 2];
            world.mapInterfaceClass.emplace(std::uint64_t(t.nDevice) << 16 | t.aData[i + 2], t.aData[i + 5]);
        } else if (t.aData[i + 1] == 5 && i + 7 <= t.aData.size() && nInterface >= 0) {
            world.mapEndpointInterface[std::uint64_t(t.nDevice) << 16 | t.aData[i + 2]] = nInterface;
        }
    }
}

// Block commands of a direct-access unit (every mass-storage unit in the
// shared captures is one).
bool IsBlockCommand(std::uint8_t nOpCode)
{
    static const std::uint8_t s_aBlock[] = {0x04, 0x1B, 0x25, 0x28, 0x2A, 0x2F, 0x35};
    return std::find(std::begin(s_aBlock), std::end(s_aBlock), nOpCode) != std::end(s_aBlock);
}

void CountUsb(const std::vector<std::pair<int, Bytes>>& aRecords, Counts& counts)
{
    SUsbWorld world;
    world.bLinux = !aRecords.empty() && aRecords.front().first != LinkTypeUsbPcap;
    const std::vector<SControl> aTransfers = ControlTransfers(aRecords);
    for (const SControl& t : aTransfers)
        LearnDescriptors(world, t);

    for (const SControl& t : aTransfers) {
        const std::uint8_t nType = (t.aSetup[0] >> 5) & 3, nRecipient = t.aSetup[0] & 0x1F;
        const int nInterfaceClass = world.InterfaceClass(t.nDevice, t.aSetup[4]);
        if (nType == 0 && t.aSetup[0] == 0x81 && t.aSetup[1] == 6 && t.aSetup[3] >= 0x21 && t.aSetup[3] <= 0x23 &&
            (nInterfaceClass == 3 || (nInterfaceClass < 0 && t.aSetup[3] != 0x21)))
            ++counts[t.aSetup[3] == 0x21 ? "hid" : t.aSetup[3] == 0x22 ? "hid-report" : "hid-physical"];
        if (nType != 1)
            continue;
        if (nRecipient == 3 || (nRecipient == 0 && world.IsHub(t.nDevice)))
            ++counts["hub"];
        else if (nRecipient == 1 && (nInterfaceClass == 2 || nInterfaceClass == 0x0A))
            ++counts["cdc"];
        else if (nRecipient == 1 && nInterfaceClass == 3)
            ++counts["hid-request"];
        else if (nRecipient == 1 && nInterfaceClass == 7)
            ++counts["printer"];
        else if (nRecipient == 1 && (nInterfaceClass == 9 || (nInterfaceClass < 0 && world.IsHub(t.nDevice))))
            ++counts["hub"];
    }

    std::set<std::uint32_t> setInquired;
    for (const auto& [nLinkType, aRecord] : aRecords) {
        SUsbPacket p;
        if (!ParseUsbPacket(nLinkType, aRecord.data(), aRecord.size(), p) || p.nData == 0)
            continue;
        const std::uint32_t nDevice = SUsbWorld::Device(p.nBus, p.nDevice);
        const bool bCompletion = p.eEvent != UsbSubmit;
        if (p.eTransfer == UsbInterrupt && p.bIn && bCompletion) {
            const auto it = world.mapEndpointInterface.find(std::uint64_t(nDevice) << 16 | (0x80 | p.nEndpoint));
            if (it != world.mapEndpointInterface.end() && world.InterfaceClass(nDevice, it->second) == 2)
                ++counts["cdc-notification"];
            else if (world.IsHub(nDevice))
                ++counts["hub-notification"];
        } else if (p.eTransfer == UsbBulk && !p.bIn && !bCompletion && p.nData == 31 &&
                   std::memcmp(p.pData, "USBC", 4) == 0) {
            ++counts["bot"];
            // The unit's kind is known from a mass-storage interface of the
            // enumeration or from an INQUIRY seen before; until then every
            // command goes to the SCSI decoder.
            const bool bKnown = setInquired.count(nDevice) != 0 || world.HasMassStorage(nDevice);
            ++counts[bKnown && IsBlockCommand(p.pData[15]) ? "rbc" : "scsi"];
            if (p.pData[15] == 0x12)
                setInquired.insert(nDevice);
        } else if (p.eTransfer == UsbBulk && p.bIn && bCompletion && p.nData == 13 &&
                   std::memcmp(p.pData, "USBS", 4) == 0) {
            ++counts["bot"];
        }
    }
}

// What a capture holds per route, counted from its raw records.
Counts CountFromRecords(const std::string& strPath)
{
    Counts counts;
    std::string strError;
    const std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader)
        return counts;
    std::vector<std::pair<int, Bytes>> aUsb;
    SCaptureRecord r;
    while (pReader->Next(r) == CaptureRecord) {
        const Bytes aData(r.pData, r.pData + r.nData);
        switch (r.nLinkType) {
        case LinkTypeBtSnoopHCI:
            ++counts["hci"];
            break;
        case LinkTypeBtSnoopH4:
        case LinkTypeBluetoothH4:
            counts["hci"] += !aData.empty() && aData[0] >= 1 && aData[0] <= 4;
            break;
        case LinkTypeBluetoothH4WithPhdr:
            counts["hci"] += aData.size() > 4 && aData[4] >= 1 && aData[4] <= 4;
            break;
        case LinkTypeBtSnoopMonitor:
            counts["hci"] += (r.nFlags & 0xFFFF) >= 2 && (r.nFlags & 0xFFFF) <= 7;
            break;
        case LinkTypePPP:
        case LinkTypePPPHDLC:
            counts["ppp"] += !aData.empty();
            break;
        case LinkTypeUsbLinux:
        case LinkTypeUsbLinuxMmapped:
        case LinkTypeUsbPcap:
            aUsb.emplace_back(r.nLinkType, aData);
            break;
        default:
            break;
        }
    }
    CountUsb(aUsb, counts);
    return counts;
}

// The packets per decoder and the undecoded records of missing decoders
// that route counts give, as the registry stands.
void ExpectedOutput(const Counts& routes, Counts& packets, Counts& missing)
{
    for (const auto& [strAlias, nCount] : routes) {
        if (nCount == 0)
            continue;
        const SDecoderEntry* pEntry = FindDecoder(strAlias);
        if (!pEntry && (strAlias == "rbc" || strAlias == "atapi"))
            pEntry = FindDecoder("scsi");
        if (pEntry)
            packets[pEntry->pszClassName] += nCount;
        else
            missing["no decoder registered for " + strAlias] += nCount;
    }
}

bool LooksLikeACapture(const std::string& strPath)
{
    // The magic numbers of pcap, pcapng and btsnoop, or a usbmon text line
    // (a hex URB tag, a blank).
    std::ifstream in(strPath, std::ios::binary);
    char a[64] = {};
    in.read(a, sizeof a);
    const std::string s(a, static_cast<std::size_t>(in.gcount()));
    const std::string strHead = s.substr(0, 4);
    const std::size_t nBlank = s.find(' ');
    return strHead == "\xD4\xC3\xB2\xA1" || strHead == "\xA1\xB2\xC3\xD4" || strHead == "\x0A\x0D\x0D\x0A" ||
           s.substr(0, 8) == std::string("btsnoop\0", 8) ||
           (nBlank != std::string::npos && nBlank > 0 &&
            s.substr(0, nBlank).find_first_not_of("0123456789abcdef") == std::string::npos);
}

TEST(CaptureTool, EverySharedCaptureDecodesWithThePacketsItsRecordsHold)
{
    const std::string strRoot = BUSDECODE_CAPTURES_DIR;
    if (!std::filesystem::is_directory(strRoot))
        GTEST_SKIP() << "shared captures are absent: " << strRoot;
    std::vector<std::string> aFiles;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(strRoot))
        if (entry.is_regular_file() && entry.path().extension() != ".md")
            aFiles.push_back(entry.path().string());
    std::sort(aFiles.begin(), aFiles.end());
    std::uint64_t nPackets = 0;
    for (const std::string& strPath : aFiles) {
        SCOPED_TRACE(strPath);
        const SRun run = RunTool("--json --stats -q -r " + Quote(strPath));
        if (!LooksLikeACapture(strPath)) {
            // hcidump and pppd dumps: no format of ours.
            EXPECT_EQ(run.nStatus, 2);
            EXPECT_NE(run.strErr.find("is not a capture of a known format"), std::string::npos) << run.strErr;
            continue;
        }
        ASSERT_EQ(run.nStatus, 0) << run.strErr;
        EXPECT_LE(Lines(run.strErr), 1u) << run.strErr;
        ASSERT_EQ(Lines(run.strOut), 1u) << "-q leaves the statistics alone";
        const Json stats = JsonLines(run.strOut).at(0).at("stats");

        Counts expectedPackets, expectedMissing, actualPackets, actualMissing;
        ExpectedOutput(CountFromRecords(strPath), expectedPackets, expectedMissing);
        for (const auto& [strDecoder, decoder] : stats.at("decoders").items())
            actualPackets[strDecoder] = decoder.at("packets").get<std::uint64_t>();
        for (const auto& [strReason, nCount] : stats.at("undecoded").items())
            if (strReason.rfind("no decoder registered for ", 0) == 0)
                actualMissing[strReason] = nCount.get<std::uint64_t>();
        EXPECT_EQ(actualPackets, expectedPackets);
        EXPECT_EQ(actualMissing, expectedMissing);
        nPackets += stats.at("packets").get<std::uint64_t>();
    }
    EXPECT_GT(nPackets, 10000u);
}

// ------------------------------------------------- captures written here

// A capture of a USB stick on bus 2 (usbmon unless said): enumeration at
// address 0, its new address 4, INQUIRY with its data, READ CAPACITY,
// READ(10) of 8 blocks, a TEST UNIT READY that fails and the REQUEST SENSE
// after it.
CUsbRecords MassStorageSession(int nLinkType = LinkTypeUsbLinux)
{
    CUsbRecords usb(nLinkType, 2);
    const Bytes aDevice = Bytes{18, 1, 0, 2, 0, 0, 0, 64, 0x81, 0x07, 0x99, 0x55, 0, 1, 1, 2, 3, 1};
    usb.Control(0, SetupPacket(0x80, 6, 0x0100, 0, 64), aDevice);
    usb.Control(0, SetupPacket(0x00, 5, 4, 0, 0));
    usb.Control(4, SetupPacket(0x80, 6, 0x0100, 0, 18), aDevice);
    const Bytes aConfig = Bytes{9, 2, 32, 0, 1, 1, 0, 0x80, 50} + Bytes{9, 4, 0, 0, 2, 8, 6, 0x50, 0} +
                          Bytes{7, 5, 0x81, 2, 0, 2, 0} + Bytes{7, 5, 0x02, 2, 0, 2, 0};
    usb.Control(4, SetupPacket(0x80, 6, 0x0200, 0, 32), aConfig);
    usb.Control(4, SetupPacket(0x00, 9, 1, 0, 0));
    usb.Control(4, SetupPacket(0xA1, 0xFE, 0, 0, 1), {0});  // GET MAX LUN
    const auto Command = [&](std::uint32_t nTag, const Bytes& aBlock, const std::vector<Bytes>& aData, std::uint8_t nStatus) {
        std::uint32_t nLength = 0;
        for (const Bytes& a : aData)
            nLength += static_cast<std::uint32_t>(a.size());
        usb.BulkOut(4, 2, CommandBlockWrapper(nTag, nLength, true, aBlock));
        for (const Bytes& a : aData)
            usb.BulkIn(4, 1, a);
        usb.BulkIn(4, 1, CommandStatusWrapper(nTag, 0, nStatus));
    };
    Command(1, {0x12, 0, 0, 0, 36, 0}, {Bytes{0, 0x80, 4, 2, 31, 0, 0, 0} + Text("SanDisk Cruzer Blade    1.00")}, 0);
    Command(2, {0x25, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {{0, 0x3B, 0xFF, 0xFF, 0, 0, 2, 0}}, 0);
    Command(3, {0x28, 0, 0, 0, 0, 0, 0, 0, 8, 0}, {Counting(2048, 0), Counting(2048, 0x80)}, 0);
    Command(4, {0, 0, 0, 0, 0, 0}, {}, 1);
    Command(5, {0x03, 0, 0, 0, 18, 0}, {Bytes{0x70, 0, 6, 0, 0, 0, 0, 10, 0, 0, 0, 0, 0x28, 0, 0, 0, 0, 0}}, 0);
    return usb;
}

TEST(CaptureTool, AMassStorageSessionInEachUsbLinkType)
{
    const std::string strBot = FindDecoder("bot")->pszClassName, strScsi = FindDecoder("scsi")->pszClassName;
    const SDecoderEntry* pRbc = FindDecoder("rbc");
    const std::string strBlock = pRbc ? pRbc->pszClassName : strScsi;
    const struct {
        std::string strDecoder;
        const char* pszRequest;  // of commands the SCSI decoder reads, else null
    } aExpected[] = {
        {strBot, "Command Block Wrapper"}, {strScsi, "INQUIRY"},       {strBot, "Command Status Wrapper"},
        {strBot, nullptr},                 {strBlock, nullptr},        {strBot, nullptr},
        {strBot, nullptr},                 {strBlock, nullptr},        {strBot, nullptr},
        {strBot, nullptr},                 {strScsi, "TEST UNIT READY"}, {strBot, nullptr},
        {strBot, nullptr},                 {strScsi, "REQUEST SENSE"}, {strBot, nullptr},
    };
    for (const int nLinkType : {LinkTypeUsbLinuxMmapped, LinkTypeUsbPcap}) {
        SCOPED_TRACE(nLinkType);
        const std::string strPath = TempCapture("session.pcap", MassStorageSession(nLinkType).Pcap());
        const SRun run = RunTool("--json -r " + Quote(strPath));
        std::remove(strPath.c_str());
        ASSERT_EQ(run.nStatus, 0) << run.strErr;
        const auto aLines = JsonLines(run.strOut);
        ASSERT_EQ(aLines.size(), std::size(aExpected));
        for (std::size_t i = 0; i < aLines.size(); ++i)
            EXPECT_EQ(aLines[i]["decoder"], aExpected[i].strDecoder) << i;
        for (std::size_t i = 0; i < aLines.size(); i += 3) {
            EXPECT_LT(aLines[i]["frame"], aLines[i + 1]["frame"]);
            EXPECT_EQ(aLines[i + 1]["frame"], aLines[i + 2]["frame"]) << "the command at its status, before it";
        }
    }

    const CUsbRecords usb = MassStorageSession();
    const std::string strPath = TempCapture("session.pcap", usb.Pcap());
    const SRun run = RunTool("--json -r " + Quote(strPath));
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    EXPECT_EQ(run.strErr, "");
    const auto aLines = JsonLines<nlohmann::ordered_json>(run.strOut);
    ASSERT_EQ(aLines.size(), std::size(aExpected)) << run.strOut;
    for (std::size_t i = 0; i < aLines.size(); ++i) {
        EXPECT_EQ(aLines[i]["decoder"], aExpected[i].strDecoder) << i;
        if (aExpected[i].pszRequest) {
            EXPECT_EQ(aLines[i]["request_name"], aExpected[i].pszRequest) << i;
        }
    }
    // The command comes out at the frame of its status, before it; the
    // status wrapper is the 6th record of its command (wrapper, data and
    // status, each submitted and completed).
    EXPECT_EQ(aLines[1]["frame"], aLines[2]["frame"]);
    EXPECT_EQ(aLines[1]["frame"].get<std::uint64_t>(), 12u + 6u);
    // The keys of the payload form, unchanged and in their order, then the
    // capture's.
    std::vector<std::string> aKeys;
    for (auto it = aLines[1].begin(); it != aLines[1].end(); ++it)
        aKeys.push_back(it.key());
    EXPECT_EQ(aKeys, (std::vector<std::string>{"decoder", "result", "request_name", "response_name", "request_fields",
                                                "response_fields", "has_response", "format", "errors", "fields",
                                                "frame", "time", "link"}));
    EXPECT_EQ(aLines[1]["link"], nlohmann::ordered_json::parse(
                                     R"({"bus":2,"device":4,"endpoint":1,"direction":"in","transfer":"bulk"})"));
    EXPECT_EQ(aLines[0]["link"]["direction"], "out");
    // Records a millisecond apart from 1,700,000,000 s on: the 18th record.
    EXPECT_DOUBLE_EQ(aLines[1]["time"].get<double>(), 1700000000.018);
    EXPECT_NE(run.strOut.find("\"time\":1700000000.018000,"), std::string::npos);
    // The text view: a header line per packet naming frame, time, link and
    // the payload's length: INQUIRY with its 36 bytes of data, READ(10)
    // with the 4096 bytes of both data transfers.
    const SRun text = RunTool("-r " + Quote(strPath));
    EXPECT_NE(text.strOut.find("== frame 18 at 1700000000.018000, usb 2.4 endpoint 1 in bulk: " + strScsi +
                               ", 42 bytes =="),
              std::string::npos)
        << text.strOut.substr(0, 2000);
    EXPECT_NE(text.strOut.find("== frame 32 at 1700000000.032000, usb 2.4 endpoint 1 in bulk: " + strBlock +
                               ", 4106 bytes =="),
              std::string::npos);
    std::remove(strPath.c_str());
}

TEST(CaptureTool, StatisticsUndecodedRecordsAndQuiet)
{
    const std::string strPath = TempCapture("stats.pcap", MassStorageSession().Pcap());
    const SRun json = RunTool("--json --stats -q -r " + Quote(strPath));
    ASSERT_EQ(json.nStatus, 0) << json.strErr;
    ASSERT_EQ(Lines(json.strOut), 1u);
    const Json stats = Json::parse(json.strOut).at("stats");
    EXPECT_EQ(stats["records"], MassStorageSession().Records().size());
    EXPECT_EQ(stats["packets"], 15);
    EXPECT_EQ(stats["decoders"][FindDecoder("bot")->pszClassName]["requests"]["Command Status Wrapper"], 5);
    EXPECT_EQ(stats["decoders"][FindDecoder("scsi")->pszClassName]["requests"]["INQUIRY"], 1);
    EXPECT_EQ(stats["undecoded"]["USB standard request GET_DESCRIPTOR"], 3);
    EXPECT_EQ(stats["undecoded"]["USB class request of class 0x08 (mass storage)"], 1);

    // --all prints each of them where it stands.
    const SRun all = RunTool("--json --all -r " + Quote(strPath));
    ASSERT_EQ(all.nStatus, 0) << all.strErr;
    const auto aLines = JsonLines(all.strOut);
    const auto it = std::find_if(aLines.begin(), aLines.end(), [](const Json& j) { return j.contains("undecoded"); });
    ASSERT_NE(it, aLines.end());
    EXPECT_EQ((*it)["undecoded"], "USB standard request GET_DESCRIPTOR");
    EXPECT_EQ((*it)["frame"], 2);
    EXPECT_EQ((*it)["data"].get<std::string>().substr(0, 16), "8006000100004000") << "setup packet and data";
    // The packets, the six control transfers no route takes, and the record
    // of no data of each of the 15 bulk transfers.
    EXPECT_EQ(aLines.size(), 15u + 6u + 15u);

    // The text table, after the packets.
    const SRun text = RunTool("--stats -r " + Quote(strPath));
    EXPECT_NE(text.strOut.find("== statistics: " + std::to_string(stats["records"].get<int>()) + " records, 15 packets"),
              std::string::npos);
    EXPECT_NE(text.strOut.find("\"Command Block Wrapper\""), std::string::npos);
    std::remove(strPath.c_str());
}

TEST(CaptureTool, AHubReportsAPortStatusChangeInUsbPcap)
{
    CUsbRecords usb(LinkTypeUsbPcap, 1);
    usb.Control(2, SetupPacket(0x80, 6, 0x0100, 0, 18), Bytes{18, 1, 0, 2, 9, 0, 1, 64} + Bytes(10, 0));
    usb.InterruptIn(2, 1, {0x02});                                                        // port 1 changed
    usb.Control(2, SetupPacket(0xA3, 0, 0, 1, 4), {0x01, 0x01, 0x01, 0x00});               // connected, connection changed
    usb.Control(2, SetupPacket(0x23, 1, 16, 1, 0));                                        // CLEAR_FEATURE C_PORT_CONNECTION
    usb.Control(2, SetupPacket(0x23, 3, 4, 1, 0));                                         // SET_FEATURE PORT_RESET
    const std::string strPath = TempCapture("hub.pcap", usb.Pcap());
    // Without the device descriptor, the user says it is a hub.
    CUsbRecords bare(LinkTypeUsbPcap, 1);
    bare.InterruptIn(2, 1, {0x02});
    const std::string strBare = TempCapture("hub-bare.pcap", bare.Pcap());

    const SDecoderEntry* pHub = FindDecoder("hub");
    const SDecoderEntry* pNotification = FindDecoder("hub-notification");
    for (const auto& [strArgs, nNotification, nRequests] :
         {std::make_tuple("-r " + Quote(strPath), 1, 3), std::make_tuple("-r " + Quote(strBare) + " --usb-class 1.2=hub", 1, 0),
          std::make_tuple("-r " + Quote(strBare), 0, 0)}) {
        SCOPED_TRACE(strArgs);
        const SRun run = RunTool("--json --stats -q " + strArgs);
        ASSERT_EQ(run.nStatus, 0) << run.strErr;
        const Json stats = Json::parse(run.strOut).at("stats");
        const auto Count = [&](const SDecoderEntry* pEntry, const char* pszAlias) -> std::uint64_t {
            return pEntry ? stats["decoders"].value(pEntry->pszClassName, Json::object()).value("packets", 0u)
                          : stats["undecoded"].value(std::string("no decoder registered for ") + pszAlias, 0u);
        };
        EXPECT_EQ(Count(pNotification, "hub-notification"), static_cast<std::uint64_t>(nNotification));
        EXPECT_EQ(Count(pHub, "hub"), static_cast<std::uint64_t>(nRequests));
    }
    std::remove(strPath.c_str());
    std::remove(strBare.c_str());
}

TEST(CaptureTool, APcapNgOfTwoLinkTypes)
{
    Bytes file = PcapNgSection();
    PutPcapNgInterface(file, LinkTypeBluetoothH4WithPhdr);
    PutPcapNgInterface(file, LinkTypeUsbLinuxMmapped);
    CUsbRecords usb(LinkTypeUsbLinuxMmapped, 3);
    usb.BulkIn(5, 1, CommandStatusWrapper(9, 0, 0));
    PutPcapNgPacket(file, 0, 1000000, {0, 0, 0, 0, 1, 0x03, 0x0C, 0x00});  // Reset, sent
    PutPcapNgPacket(file, 1, 2000000, usb.Records()[1]);
    PutPcapNgPacket(file, 0, 3000000, {0, 0, 0, 1, 4, 0x0E, 0x04, 0x01, 0x03, 0x0C, 0x00});  // its completion
    const std::string strPath = TempCapture("two-links.pcapng", file);
    const SRun run = RunTool("--json -r " + Quote(strPath));
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    const auto aLines = JsonLines(run.strOut);
    ASSERT_EQ(aLines.size(), 3u);
    EXPECT_EQ(aLines[0]["request_name"], "Reset");
    EXPECT_EQ(aLines[0]["link"], Json::parse(R"({"direction":"sent","hci_kind":0})"));
    EXPECT_EQ(aLines[1]["decoder"], FindDecoder("bot")->pszClassName);
    EXPECT_EQ(aLines[1]["link"]["bus"], 3);
    EXPECT_EQ(aLines[1]["time"], 2);
    EXPECT_EQ(aLines[2]["link"], Json::parse(R"({"direction":"received","hci_kind":4})"));
    std::remove(strPath.c_str());
}

TEST(CaptureTool, StandardInputAndAForcedDecoder)
{
    Bytes file = BtSnoopHeader(1002);
    PutBtSnoopRecord(file, 0, {1, 0x03, 0x0C, 0x00});
    PutBtSnoopRecord(file, 1, {4, 0x0E, 0x04, 0x01, 0x03, 0x0C, 0x00});
    const SRun run = RunTool("--json -r -", std::string(file.begin(), file.end()));
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    const auto aLines = JsonLines(run.strOut);
    ASSERT_EQ(aLines.size(), 2u);
    EXPECT_EQ(aLines[1]["link"]["hci_kind"], 4);

    // A repeatable option takes one value: the DECODER after it stays the DECODER.
    const SRun forced = RunTool("--json -r - --usb-class 1.2=hub bot", std::string(file.begin(), file.end()));
    ASSERT_EQ(forced.nStatus, 0) << forced.strErr;
    for (const Json& j : JsonLines(forced.strOut))
        EXPECT_EQ(j["decoder"], FindDecoder("bot")->pszClassName);
}

// ------------------------------------------------------------ bad input

TEST(CaptureTool, ADamagedCaptureKeepsEverythingBeforeTheDamage)
{
    for (const SDamagedCapture& c : DamagedCaptures()) {
        SCOPED_TRACE(c.pszName);
        const std::string strPath = TempCapture(c.pszName, c.aFile);
        const SRun run = RunTool("--json --all -r " + Quote(strPath));
        EXPECT_EQ(run.nStatus, 1);
        EXPECT_EQ(Lines(run.strErr), 1u) << run.strErr;
        EXPECT_NE(run.strErr.find("capture \"" + strPath + "\""), std::string::npos) << run.strErr;
        EXPECT_NE(run.strErr.find(c.strError), std::string::npos) << run.strErr;
        EXPECT_EQ(JsonLines(run.strOut).size(), c.nWhole) << run.strOut;
        std::remove(strPath.c_str());
    }

    // A session cut inside a data phase: the command is decoded with the
    // data it got, before the error line.
    const CUsbRecords usb = MassStorageSession();
    Bytes file = usb.Pcap();
    std::size_t nCut = file.size();
    for (std::size_t i = 0; i < 2; ++i)  // the status goes, the data's completion is cut in half
        nCut -= 16 + usb.Records()[usb.Records().size() - 1 - i].size();
    file.resize(nCut - 8);
    const std::string strPath = TempCapture("cut-session.pcap", file);
    const SRun run = RunTool("--json -r " + Quote(strPath));
    EXPECT_EQ(run.nStatus, 1) << run.strErr;
    const auto aLines = JsonLines(run.strOut);
    ASSERT_FALSE(aLines.empty());
    EXPECT_EQ(aLines.back()["decoder"], FindDecoder("scsi")->pszClassName);
    EXPECT_EQ(aLines.back()["fields"][0]["option"], "REQUEST SENSE");
    std::remove(strPath.c_str());
}

TEST(CaptureTool, WhatCannotBeReadExitsTwoWithOneLine)
{
    std::vector<std::pair<std::string, std::string>> aRuns;  // arguments, a piece of the message
    std::vector<std::string> aPaths;
    for (const SUnreadableCapture& c : UnreadableCaptures()) {
        aPaths.push_back(TempCapture(c.pszName, c.aFile));
        aRuns.emplace_back("-r " + Quote(aPaths.back()), c.strError);
    }
    aPaths.push_back(TempCapture("good.btsnoop", BtSnoopHeader(1002)));
    const std::string strGood = Quote(aPaths.back());
    aRuns.insert(aRuns.end(), {
                                  {"-r " + Quote(::testing::TempDir()), "is a directory"},
                                  {"-r /nonexistent/capture.pcap", "No such file or directory"},
                                  {"-r " + strGood + " hci bot", "-r takes at most one DECODER argument"},
                                  {"-r " + strGood + " nosuch", "unknown decoder \"nosuch\""},
                                  {"-r " + strGood + " -f x.txt", "-r reads a capture; -f and --bin go without it"},
                                  {"-r " + strGood + " --usb-class 1.2.3", "--usb-class: \"1.2.3\" is not"},
                                  {"-r " + strGood + " --usb-class 1.2=modem", "unknown USB class \"modem\""},
                                  {"--stats bot 00", "--stats, --all, -q and --usb-class go with -r FILE"},
                                  {"--btsnoop " + strGood + " hci", "--btsnoop"},
                              });
    for (const auto& [strArgs, strMessage] : aRuns) {
        const SRun run = RunTool("--json " + strArgs);
        EXPECT_EQ(run.nStatus, 2) << strArgs;
        EXPECT_EQ(run.strOut, "") << strArgs;
        EXPECT_EQ(Lines(run.strErr), 1u) << strArgs << ": " << run.strErr;
        EXPECT_NE(run.strErr.find(strMessage), std::string::npos) << strArgs << ": " << run.strErr;
    }
    for (const std::string& strPath : aPaths)
        std::remove(strPath.c_str());
}

}  // namespace
