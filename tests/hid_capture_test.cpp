// Real HID traffic: the report descriptors, HID descriptors (alone and
// inside configuration descriptors) and class requests of recorded USB
// captures, each decoded whole, and the item lists read like the devices.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/UsbPacket.h"
#include "hid/USBHIDPacket.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

struct SHIDTraffic {
    std::vector<Bytes> aReportDescriptors;
    std::vector<Bytes> aHIDDescriptors;
    std::vector<Bytes> aRequests;  // setup, then the data stage
};

// GET_DESCRIPTOR with the descriptor type in the high byte of wValue.
constexpr std::uint8_t kGetDescriptor = 0x06;
constexpr std::uint8_t kConfigurationType = 0x02;
constexpr std::uint8_t kHIDType = 0x21;
constexpr std::uint8_t kReportType = 0x22;

void Collect(const SUsbControlTransfer& t, SHIDTraffic& traffic)
{
    const std::uint8_t nRequestType = t.aSetup[0];
    const std::uint8_t nRequest = t.aSetup[1];
    const std::uint8_t nDescriptor = t.aSetup[3];
    if ((nRequestType & 0x60) == 0x20 && (nRequestType & 0x1F) == 0x01) {
        Bytes a(t.aSetup, t.aSetup + 8);
        a.insert(a.end(), t.aData.begin(), t.aData.end());
        traffic.aRequests.push_back(a);
        return;
    }
    if (nRequest != kGetDescriptor || (nRequestType & 0x60) != 0 || t.nStatus != 0 || t.aData.empty())
        return;
    if (nDescriptor == kReportType) {
        traffic.aReportDescriptors.push_back(t.aData);
    } else if (nDescriptor == kHIDType) {
        traffic.aHIDDescriptors.push_back(t.aData);
    } else if (nDescriptor == kConfigurationType) {
        // The HID descriptors that stand among the interface descriptors.
        for (std::size_t i = 0; i + 1 < t.aData.size() && t.aData[i] >= 2; i += t.aData[i])
            if (t.aData[i + 1] == kHIDType && i + t.aData[i] <= t.aData.size())
                traffic.aHIDDescriptors.emplace_back(t.aData.begin() + static_cast<long>(i),
                                                     t.aData.begin() + static_cast<long>(i + t.aData[i]));
    }
}

bool ReadTraffic(const std::string& strFile, SHIDTraffic& traffic)
{
    std::string strError;
    std::unique_ptr<CCaptureReader> pReader =
        CCaptureReader::Open(std::string(BUSDECODE_CAPTURES_DIR) + "/" + strFile, strError);
    if (!pReader)
        return false;
    CUsbControlAssembler assembler;
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord) {
        SUsbPacket packet;
        if (ParseUsbPacket(record.nLinkType, record.pData, record.nData, packet) &&
            assembler.Add(packet, record.nNumber, record.nTimeMicros))
            Collect(assembler.Transfer(), traffic);
    }
    return true;
}

CUSBHIDPacket Decode(int nSelector, const Bytes& a)
{
    return CUSBHIDPacket(nSelector, CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(8 * a.size())));
}

std::vector<std::string> ItemsOf(const CUSBHIDPacket& packet)
{
    std::vector<std::string> a;
    for (int i = 0; i < packet.GetNumberOfReportItems(); ++i)
        a.push_back(packet.GetReportItem(i).ToStdString());
    return a;
}

bool Has(const std::vector<std::string>& a, const std::string& s)
{
    return std::find(a.begin(), a.end(), s) != a.end();
}

// Decodes everything taken from a capture: every bit of every payload stands
// in a field, and every report descriptor has an item list. Returns the item
// lists.
std::vector<std::vector<std::string>> DecodeAll(const SHIDTraffic& traffic)
{
    std::vector<std::vector<std::string>> aLists;
    for (const Bytes& a : traffic.aReportDescriptors) {
        const CUSBHIDPacket packet = Decode(CUSBHIDPacket::SelectorReportDescriptor, a);
        EXPECT_EQ(packet.GetPacketLength(), 8 * a.size());
        EXPECT_GT(packet.GetNumberOfReportItems(), 0);
        aLists.push_back(ItemsOf(packet));
    }
    for (const Bytes& a : traffic.aHIDDescriptors) {
        const CUSBHIDPacket packet = Decode(CUSBHIDPacket::SelectorHIDDescriptor, a);
        EXPECT_EQ(packet.GetPacketLength(), 8 * a.size());
        EXPECT_EQ(packet.GetFieldCount(), 7);  // one class descriptor: the report descriptor
        unsigned long dwLength = 0;
        EXPECT_EQ(packet.GetFieldBriefPattern(6, 6, dwLength, PacketSideWhole, DisplayDecimal, 0).ToStdString(),
                  "Report");
    }
    for (const Bytes& a : traffic.aRequests) {
        const CUSBHIDPacket packet = Decode(CUSBHIDPacket::SelectorRequest, a);
        EXPECT_EQ(packet.GetPacketLength(), 8 * a.size());
        const std::string strName = packet.GetRequestName().ToStdString();
        EXPECT_TRUE(strName == "Set Idle" || strName == "Set Report") << strName;
    }
    return aLists;
}

// The item list among lists that holds a line.
const std::vector<std::string>* ListWith(const std::vector<std::vector<std::string>>& aLists, const std::string& s)
{
    for (const auto& a : aLists)
        if (Has(a, s))
            return &a;
    return nullptr;
}

TEST(HIDCapture, KeyboardMouseConsumerAndSystemControl)
{
    SHIDTraffic traffic;
    if (!ReadTraffic("usbhidusage/usb.pcap", traffic))
        GTEST_SKIP() << "usbhidusage/usb.pcap is not there";
    EXPECT_EQ(traffic.aReportDescriptors.size(), 4u);
    EXPECT_EQ(traffic.aHIDDescriptors.size(), 4u);
    EXPECT_EQ(traffic.aRequests.size(), 24u);  // SET_IDLE 4, SET_REPORT 20
    const auto aLists = DecodeAll(traffic);

    const std::vector<std::string>* pMouse = ListWith(aLists, "Usage(Mouse)");
    ASSERT_NE(pMouse, nullptr);
    const std::vector<std::string> aHead(pMouse->begin(), pMouse->begin() + 6);
    EXPECT_EQ(aHead, (std::vector<std::string>{"Usage Page(Generic Desktop Controls)", "Usage(Mouse)",
                                               "Collection(Application)", "   Report ID(2)", "   Usage(Pointer)",
                                               "   Collection(Physical)"}));
    for (const char* psz : {"Usage Page(Button)", "Usage Minimum(1)", "Usage Maximum(16)", "Logical Minimum(-2047)",
                            "Logical Maximum(2047)", "Usage(X)", "Usage(Y)", "Usage(Wheel)", "Usage(ACPan)"})
        EXPECT_TRUE(Has(*pMouse, std::string(9, ' ') + psz)) << psz;
    for (const char* psz : {"Usage(ConsumerControl)", "Usage(System Control)"})
        EXPECT_TRUE(Has(*pMouse, psz)) << psz;
    for (const char* psz : {"Usage(System Sleep)", "Usage(System Power Down)", "Usage(System Wake Up)",
                            "Input(Data,Array,Absolute,No Wrap,Linear,No Preferred,Null State,Bit Field)"})
        EXPECT_TRUE(Has(*pMouse, std::string(3, ' ') + psz)) << psz;

    const std::vector<std::string>* pKeyboard = ListWith(aLists, "   Usage Page(LEDs)");
    ASSERT_NE(pKeyboard, nullptr);
    EXPECT_EQ(pKeyboard->front(), "Usage Page(Generic Desktop Controls)");
    EXPECT_EQ(pKeyboard->at(1), "Usage(Keyboard)");
    EXPECT_TRUE(Has(*pKeyboard, "   Usage Page(Keyboard/Keypad)"));
    EXPECT_EQ(pKeyboard->back(), "End Collection");

    const std::vector<std::string>* pVendor = ListWith(aLists, "   Report ID(16)");
    ASSERT_NE(pVendor, nullptr);
    EXPECT_EQ(pVendor->front(), "Usage Page(Vendor-defined)");
}

TEST(HIDCapture, PenTabletWithTipPressure)
{
    SHIDTraffic traffic;
    if (!ReadTraffic("athack-ctf/record.pcapng", traffic))
        GTEST_SKIP() << "athack-ctf/record.pcapng is not there";
    EXPECT_EQ(traffic.aReportDescriptors.size(), 3u);
    EXPECT_EQ(traffic.aHIDDescriptors.size(), 3u);
    EXPECT_EQ(traffic.aRequests.size(), 3u);
    const auto aLists = DecodeAll(traffic);

    const std::vector<std::string>* pPen = ListWith(aLists, "Usage Page(Digitizer)");
    ASSERT_NE(pPen, nullptr);
    EXPECT_EQ(std::vector<std::string>(pPen->begin(), pPen->begin() + 5),
              (std::vector<std::string>{"Usage Page(Digitizer)", "Usage(Digitizer)", "Collection(Application)",
                                        "   Report ID(2)", "   Usage(Stylus)"}));
    for (const char* psz : {"Usage(Tipswitch)", "Usage(Barrelswitch)", "Usage(Inrange)", "Usage(X)", "Usage(Y)",
                            "Physical Maximum(8000)", "Usage(Tippressure)", "Usage(Xtilt)", "Usage(Ytilt)"})
        EXPECT_TRUE(Has(*pPen, std::string(9, ' ') + psz)) << psz;
    EXPECT_TRUE(Has(*pPen, "Usage(Keyboard)"));

    const std::vector<std::string>* pMouse = ListWith(aLists, "Usage(Mouse)");
    ASSERT_NE(pMouse, nullptr);
    for (const char* psz : {"Usage Page(Button)", "Usage(X)", "Usage(Y)", "Usage(Wheel)"})
        EXPECT_TRUE(Has(*pMouse, std::string(9, ' ') + psz)) << psz;
    EXPECT_NE(ListWith(aLists, "Usage Page(Vendor-defined)"), nullptr);
}

TEST(HIDCapture, HIDDescriptorInAConfiguration)
{
    SHIDTraffic traffic;
    if (!ReadTraffic("usbmon-tools/usbpcap1.pcap", traffic))
        GTEST_SKIP() << "usbmon-tools/usbpcap1.pcap is not there";
    ASSERT_EQ(traffic.aHIDDescriptors.size(), 1u);
    DecodeAll(traffic);
    const CUSBHIDPacket packet = Decode(CUSBHIDPacket::SelectorHIDDescriptor, traffic.aHIDDescriptors[0]);
    EXPECT_EQ(packet.GetRequestName().ToStdString(), "HID Descriptor");
    CAdvAnlzData length;
    packet.GetFieldData(7, length);
    EXPECT_EQ(static_cast<std::uint16_t>(length), 0x4A);
}

}  // namespace
