// Class requests and notifications taken out of real captures (USBPcap,
// usbmon binary and text): hub requests and status change bit maps, and a
// CDC-ACM modem's line coding, control line state and serial state.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"
#include "usbclass/CommunicationClass.h"
#include "usbclass/CommunicationNotification.h"
#include "usbclass/HubClass.h"
#include "usbclass/HubNotification.h"

namespace {

const std::string kCaptures = BUSDECODE_CAPTURES_DIR;

using CDevice = std::pair<std::uint16_t, std::uint16_t>;  // bus, device address

// An interrupt IN transfer that came back with data.
struct SInterrupt {
    CDevice device;
    std::uint8_t nEndpoint;
    std::vector<std::uint8_t> aData;
};

// The class requests (setup with its data stage, matched submission to
// completion) and the interrupt IN data of a capture.
struct SCaptureContents {
    std::vector<SUsbControlTransfer> aRequests;
    std::vector<SInterrupt> aInterrupts;
};

bool Load(const std::string& strPath, SCaptureContents& contents)
{
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader)
        return false;
    CUsbControlAssembler assembler;
    SCaptureRecord record;
    SUsbPacket packet;
    while (pReader->Next(record) == CaptureRecord) {
        if (!ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet))
            continue;
        if (packet.eTransfer == UsbInterrupt && packet.eEvent == UsbComplete && packet.bIn && packet.nData != 0)
            contents.aInterrupts.push_back({{packet.nBus, packet.nDevice},
                                            packet.nEndpoint,
                                            std::vector<std::uint8_t>(packet.pData, packet.pData + packet.nData)});
        // Class requests only: bits 5 and 6 of bmRequestType are 1.
        if (assembler.Add(packet, record.nNumber, record.nTimeMicros) &&
            (assembler.Transfer().aSetup[0] >> 5 & 3) == 1)
            contents.aRequests.push_back(assembler.Transfer());
    }
    return true;
}

// Hubs are the devices that get class requests for their ports.
std::set<CDevice> HubsOf(const SCaptureContents& contents)
{
    std::set<CDevice> hubs;
    for (const SUsbControlTransfer& t : contents.aRequests)
        if ((t.aSetup[0] & 0x1F) == 3)
            hubs.insert({t.nBus, t.nDevice});
    return hubs;
}

CAdvAnlzData Payload(const std::uint8_t* pSetup, const std::vector<std::uint8_t>& aData)
{
    std::vector<std::uint8_t> a;
    if (pSetup)
        a.assign(pSetup, pSetup + 8);
    a.insert(a.end(), aData.begin(), aData.end());
    return CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
}

// Every bit of the payload lies in one field, in order.
bool EveryBitInAField(const CProtocolPacket& packet, const CAdvAnlzData& payload)
{
    CAdvAnlzData joined;
    packet.GetPacketData(joined);
    return joined == payload && joined.GetLength() == payload.GetLength();
}

// The first field of an id, as a number.
std::uint32_t ValueOf(const CProtocolPacket& packet, unsigned short nId)
{
    const CAdvAnlzData* pValue = packet.GetFieldValue(packet.GetFieldIndex(nId));
    return pValue ? static_cast<std::uint32_t>(*pValue) : 0xFFFFFFFFu;
}

std::string OptionOf(CProtocolSpec& spec, const CProtocolPacket& packet, unsigned short nId)
{
    const CAdvAnlzData* pValue = packet.GetFieldValue(packet.GetFieldIndex(nId));
    return pValue ? spec.GetFieldOptionName(nId, *pValue).ToStdString() : "(absent)";
}

// The setups and data stages of the control transfers in a USB 2.0
// link-layer capture (one bus packet per record). A SETUP token and its
// DATA0 packet give the setup; the data stage comes in DATA packets behind
// OUT or IN tokens to endpoint 0 of that device, each taken once its
// receiver acknowledges it (after a NAK the sender repeats it).
std::vector<std::vector<std::uint8_t>> LinkLayerControlTransfers(const std::string& strPath)
{
    enum : std::uint8_t { kOut = 0xE1, kIn = 0x69, kSetup = 0x2D, kData0 = 0xC3, kData1 = 0x4B, kAck = 0xD2 };
    std::vector<std::vector<std::uint8_t>> aTransfers;
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader = CCaptureReader::Open(strPath, strError);
    if (!pReader)
        return aTransfers;
    std::uint8_t nToken = 0;
    unsigned nTokenAddress = 0, nTokenEndpoint = 0, nAddress = 0;
    std::vector<std::uint8_t> aOpen, aPending;  // the transfer so far; a data packet not yet acknowledged
    bool bPending = false;
    auto close = [&]() {
        if (aOpen.size() >= 8)
            aTransfers.push_back(aOpen);
        aOpen.clear();
    };
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        if (record.nData == 0)
            continue;
        const std::uint8_t* p = record.pData;
        const std::uint8_t nPid = p[0];
        if ((nPid == kOut || nPid == kIn || nPid == kSetup) && record.nData >= 3) {
            nToken = nPid;
            nTokenAddress = p[1] & 0x7Fu;
            nTokenEndpoint = (p[1] >> 7 | p[2] << 1) & 0xFu;
            bPending = false;
        } else if ((nPid == kData0 || nPid == kData1) && record.nData >= 3 && nTokenEndpoint == 0) {
            aPending.assign(p + 1, p + record.nData - 2);  // behind the PID, before the CRC
            bPending = true;
        } else if (nPid == kAck && bPending) {
            bPending = false;
            if (nToken == kSetup && aPending.size() == 8) {
                close();
                aOpen = aPending;
                nAddress = nTokenAddress;
                continue;
            }
            if (aOpen.empty() || nTokenAddress != nAddress)
                continue;
            const bool bDeviceToHost = aOpen[0] & 0x80;
            const std::size_t nLength = aOpen[6] | aOpen[7] << 8;
            if ((nToken == kIn) == bDeviceToHost && !aPending.empty() && aOpen.size() - 8 < nLength)
                aOpen.insert(aOpen.end(), aPending.begin(), aPending.end());
            else if (aPending.empty())
                close();  // the status stage
        } else {
            bPending = false;
        }
    }
    close();
    return aTransfers;
}

bool Exists(const std::string& strPath)
{
    return std::ifstream(strPath).good();
}

// ------------------------------------------------------------ hubs

struct SHubCapture {
    const char* pszName;
    const char* pszPath;
    // Requests by "name: feature or response", as decoded.
    std::map<std::string, int> mapRequests;
    int nNotifications;
};

class HubCapture : public ::testing::TestWithParam<SHubCapture> {};

TEST_P(HubCapture, EveryHubRequestAndStatusChangeDecodesWhole)
{
    const SHubCapture& c = GetParam();
    const std::string strPath = kCaptures + "/" + c.pszPath;
    if (!Exists(strPath))
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    SCaptureContents contents;
    ASSERT_TRUE(Load(strPath, contents));
    const std::set<CDevice> hubs = HubsOf(contents);
    CHubClassSpec& spec = *CHubClassSpec::GetInstance();

    std::map<std::string, int> mapRequests;
    for (const SUsbControlTransfer& t : contents.aRequests) {
        if (!hubs.count({t.nBus, t.nDevice}))
            continue;
        const CAdvAnlzData payload = Payload(t.aSetup, t.aData);
        CHubClassPacket packet(payload);
        const std::uint16_t wValue = static_cast<std::uint16_t>(t.aSetup[2] | t.aSetup[3] << 8);
        const std::uint16_t wIndex = static_cast<std::uint16_t>(t.aSetup[4] | t.aSetup[5] << 8);
        SCOPED_TRACE("record " + std::to_string(t.nSubmitFrame) + ": " + packet.m_strRequestName.ToStdString());
        std::string strKey = packet.m_strRequestName.ToStdString();
        switch (t.aSetup[1]) {
        case 0:  // Get Status: the status and change words
            strKey += ": " + packet.m_strResponseName.ToStdString();
            EXPECT_EQ(ValueOf(packet, 23011), wIndex);
            ASSERT_EQ(t.aData.size(), 4u);
            if ((t.aSetup[0] & 0x1F) == 3) {
                EXPECT_EQ(packet.m_nResponseFields, 18);
                EXPECT_EQ(ValueOf(packet, 23022), t.aData[0] & 1u);         // connection
                EXPECT_EQ(ValueOf(packet, 23028), t.aData[1] & 1u);         // power
                EXPECT_EQ(ValueOf(packet, 23030), t.aData[1] >> 2 & 1u);    // high speed
                EXPECT_EQ(ValueOf(packet, 23038), t.aData[2] >> 4 & 1u);    // reset change
            } else {
                EXPECT_EQ(packet.m_nResponseFields, 6);
            }
            EXPECT_TRUE(EveryBitInAField(packet, payload));
            break;
        case 1:  // Clear Feature
        case 3:  // Set Feature: the feature selector by name, the port
            strKey += ": " + OptionOf(spec, packet, 23005);
            EXPECT_EQ(ValueOf(packet, 23005), wValue);
            if (t.aSetup[1] == 1 && (t.aSetup[0] & 0x1F) == 3) {
                EXPECT_EQ(ValueOf(packet, 23012), wIndex & 0xFFu);
                EXPECT_EQ(ValueOf(packet, 23013), wIndex >> 8u);
            } else {
                EXPECT_EQ(ValueOf(packet, 23011), wIndex);
            }
            EXPECT_TRUE(EveryBitInAField(packet, payload));
            break;
        case 6:  // Get Descriptor: a hub descriptor is read whole, ports named
            ASSERT_GE(t.aData.size(), 3u);
            if (t.aData[1] == 0x29) {
                // A root hub may return more than the descriptor's own length.
                const std::size_t nLength = std::min<std::size_t>(t.aData[0], t.aData.size());
                EXPECT_TRUE(EveryBitInAField(
                    packet, Payload(t.aSetup, std::vector<std::uint8_t>(t.aData.begin(), t.aData.begin() + nLength))));
                CByteArray aIndexes;
                packet.GetFieldIndex(23052, aIndexes);
                ASSERT_EQ(aIndexes.GetSize(), t.aData[2]);
                for (int i = 0; i < aIndexes.GetSize(); ++i)
                    EXPECT_EQ(packet.GetFieldName(aIndexes[i]),
                              CString("Device Removable-Port") + CString(std::to_string(i + 1)));
            }
            break;
        default:
            ADD_FAILURE() << "unexpected hub request " << int(t.aSetup[1]);
        }
        ++mapRequests[strKey];
    }
    EXPECT_EQ(mapRequests, c.mapRequests);

    // Status change bit maps from the hubs' interrupt endpoints: a named
    // field for each port, set where the port's bit is set.
    int nNotifications = 0;
    for (const SInterrupt& i : contents.aInterrupts) {
        if (!hubs.count(i.device))
            continue;
        ++nNotifications;
        const CAdvAnlzData payload = Payload(nullptr, i.aData);
        CHubNotificationPacket packet(payload);
        EXPECT_TRUE(EveryBitInAField(packet, payload));
        ASSERT_EQ(packet.GetFieldCount(), 8 * i.aData.size());
        for (unsigned nPort = 1; nPort < 8 * i.aData.size(); ++nPort) {
            const unsigned char nIndex = static_cast<unsigned char>(nPort + 1);
            EXPECT_EQ(packet.GetFieldName(nIndex), CString("Status of port") + CString(std::to_string(nPort)));
            EXPECT_EQ(packet.GetFieldValue(nIndex)->GetBit(0), i.aData[nPort / 8] >> (nPort % 8) & 1);
        }
    }
    EXPECT_EQ(nNotifications, c.nNotifications);
}

INSTANTIATE_TEST_SUITE_P(
    Captures, HubCapture,
    ::testing::Values(
        SHubCapture{"UsbPcap",
                    "usbpcap-site/sample_2013_04_10.pcap",
                    {{"Get Status: Port Status", 50},
                     {"Get Status: Hub Status", 2},
                     {"Get Descriptor", 2},
                     {"Set Feature: Port power", 8},
                     {"Set Feature: Port reset", 4},
                     {"Clear Feature: C_Port connection", 2},
                     {"Clear Feature: C_Port reset", 4}},
                    6},
        SHubCapture{"UsbmonBinary",
                    "ctf-usb-capture/book-frames1-800.pcapng",
                    {{"Get Status: Port Status", 7},
                     {"Get Status: Hub Status", 2},
                     {"Get Descriptor", 2},
                     {"Set Feature: Port power", 4},
                     {"Set Feature: Port reset", 2},
                     // A selector of the USB 3 hub of this capture, which has no name here.
                     {"Set Feature: ", 2},
                     {"Clear Feature: C_Port connection", 1},
                     {"Clear Feature: C_Port reset", 2}},
                    0},
        SHubCapture{"UsbmonText",
                    "usbmon-text/motorokr-modem.txt",
                    {{"Get Status: Port Status", 24},
                     {"Set Feature: Port reset", 4},
                     {"Clear Feature: C_Port connection", 4},
                     {"Clear Feature: C_Port reset", 4}},
                    4},
        SHubCapture{"UsbmonBluetooth",
                    "wireshark-wiki/Bluetooth_HCI_and_OBEX_Transaction_over_USB.filtered.pcapng",
                    {{"Get Status: Port Status", 29},
                     {"Set Feature: Port reset", 7},
                     {"Clear Feature: C_Port connection", 5},
                     {"Clear Feature: C_Port enable", 2},
                     {"Clear Feature: C_Port reset", 7}},
                    3}),
    [](const ::testing::TestParamInfo<SHubCapture>& info) { return std::string(info.param.pszName); });

// ------------------------------------------------------------ CDC-ACM modem

TEST(CommunicationCapture, ModemLineCodingControlLinesAndSerialState)
{
    const std::string strPath = kCaptures + "/usbmon-text/motorokr-modem.txt";
    if (!Exists(strPath))
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    SCaptureContents contents;
    ASSERT_TRUE(Load(strPath, contents));
    const std::set<CDevice> hubs = HubsOf(contents);
    CCommunicationClassSpec& spec = *CCommunicationClassSpec::GetInstance();

    // Line coding as a person reads it: rate, stop bits, parity, data bits.
    using CLineCoding = std::tuple<std::uint32_t, std::string, std::string, std::uint32_t>;
    std::vector<CLineCoding> aLineCodings;
    int nControlLineStates = 0;
    for (const SUsbControlTransfer& t : contents.aRequests) {
        // Requests of the abstract control model to an interface.
        if (hubs.count({t.nBus, t.nDevice}) || (t.aSetup[0] & 0x1F) != 1 || t.aSetup[1] < 0x20 || t.aSetup[1] > 0x23)
            continue;
        const CAdvAnlzData payload = Payload(t.aSetup, t.aData);
        CCommunicationClassPacket packet(payload);
        SCOPED_TRACE("record " + std::to_string(t.nSubmitFrame));
        EXPECT_TRUE(EveryBitInAField(packet, payload));
        if (t.aSetup[1] == 0x20) {
            EXPECT_EQ(packet.m_strRequestName, "SetLineCoding");
            EXPECT_EQ(packet.m_strResponseName, "LineCoding");
            aLineCodings.emplace_back(ValueOf(packet, 25024), OptionOf(spec, packet, 25025),
                                      OptionOf(spec, packet, 25026), ValueOf(packet, 25027));
        } else if (t.aSetup[1] == 0x22) {
            ++nControlLineStates;
            EXPECT_EQ(packet.m_strRequestName, "SetControlLineState");
            EXPECT_EQ(OptionOf(spec, packet, 25067), t.aSetup[2] & 1 ? "Present" : "Not Present.");
            EXPECT_EQ(OptionOf(spec, packet, 25068), t.aSetup[2] & 2 ? "Active carrier" : "Deactive carrier.");
        }
    }
    EXPECT_EQ(aLineCodings, (std::vector<CLineCoding>{{9600, "1 Stop bit", "None", 8},
                                                      {9600, "1 Stop bit", "Even", 8},
                                                      {115200, "1 Stop bit", "None", 8}}));
    EXPECT_EQ(nControlLineStates, 6);

    // SERIAL_STATE on the interrupt pipe: carrier detect and DSR by bit.
    CCommunicationNotificationSpec& notifications = *CCommunicationNotificationSpec::GetInstance();
    std::map<std::string, int> mapStates;
    for (const SInterrupt& i : contents.aInterrupts) {
        if (hubs.count(i.device) || i.aData.size() < 2 || i.aData[0] != 0xA1 || i.aData[1] != 0x20)
            continue;
        const CAdvAnlzData payload = Payload(nullptr, i.aData);
        CCommunicationNotificationPacket packet(payload);
        EXPECT_TRUE(EveryBitInAField(packet, payload));
        EXPECT_EQ(packet.m_strRequestName, "SerialState");
        EXPECT_EQ(packet.m_nResponseFields, 8);
        ++mapStates[std::to_string(ValueOf(packet, 27513)) + std::to_string(ValueOf(packet, 27514)) + " " +
                    notifications.GetFieldOptionAbbr(27503, *packet.GetFieldValue(4)).ToStdString()];
    }
    EXPECT_EQ(mapStates, (std::map<std::string, int>{{"11 SERIAL_STATE", 1}, {"01 SERIAL_STATE", 5},
                                                     {"00 SERIAL_STATE", 1}}));
}

TEST(CommunicationCapture, LineCodingTakenFromBusPackets)
{
    const std::string strPath = kCaptures + "/packetry/emf2022-badge.pcap";
    if (!Exists(strPath))
        GTEST_SKIP() << "shared capture " << strPath << " is absent";
    CCommunicationClassSpec& spec = *CCommunicationClassSpec::GetInstance();
    int nLineCodings = 0;
    for (const std::vector<std::uint8_t>& a : LinkLayerControlTransfers(strPath)) {
        if (a[0] != 0x21 || a[1] != 0x20)
            continue;
        ++nLineCodings;
        const CAdvAnlzData payload = CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
        CCommunicationClassPacket packet(payload);
        EXPECT_TRUE(EveryBitInAField(packet, payload));
        EXPECT_EQ(packet.m_strRequestName, "SetLineCoding");
        EXPECT_EQ(ValueOf(packet, 25024), 9600u);
        EXPECT_EQ(OptionOf(spec, packet, 25025), "1 Stop bit");
        EXPECT_EQ(OptionOf(spec, packet, 25026), "None");
        EXPECT_EQ(ValueOf(packet, 25027), 8u);
    }
    // The second is sent twice on the bus: the device refuses the first data packet.
    EXPECT_EQ(nLineCodings, 2);
}

}  // namespace
