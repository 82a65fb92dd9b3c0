// Routing capture records to decoders: USB control transfers by the class
// of what they address, notifications, bulk-only commands with their data
// phase and the command set of the unit, HCI packets with kind and
// direction per link type, PPP frames, forced decoders and --usb-class.
//
// A route whose decoder is not registered yet gives an undecoded record;
// the expectations ask the registry, so they hold before and after that
// decoder lands.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "capture/CaptureRouter.h"
#include "tests/CaptureFiles.h"

namespace {

struct SOut {
    std::uint64_t nFrame;
    std::string strWhat;  // the decoder's class name, or "undecoded: " and the reason
    Bytes aData;
    SPacketLink link;
    SDecodeOptions options;
};

class CCollect : public ICaptureSink {
public:
    void Payload(const SRoutedPayload& p) override
    {
        aOut.push_back({p.nFrame, p.pEntry->pszClassName, Bytes(p.pData, p.pData + p.nData), p.link, p.options});
    }
    void Unrouted(const SUnroutedRecord& r) override
    {
        aOut.push_back({r.nFrame, "undecoded: " + *r.pReason, Bytes(r.pData, r.pData + r.nData), r.link, {}});
    }
    std::vector<SOut> aOut;
};

// What a route's payload becomes: the decoder the alias names or, while it
// is not registered, the fallback's, or the undecoded record.
std::string Decoded(const char* pszAlias, const char* pszFallback = nullptr)
{
    if (const SDecoderEntry* pEntry = FindDecoder(pszAlias))
        return pEntry->pszClassName;
    if (const SDecoderEntry* pEntry = pszFallback ? FindDecoder(pszFallback) : nullptr)
        return pEntry->pszClassName;
    return std::string("undecoded: no decoder registered for ") + pszAlias;
}

struct SRecord {
    Bytes aData;
    std::uint32_t nFlags = 0;
};

std::vector<SOut> Route(int nLinkType, const std::vector<SRecord>& aRecords, const std::vector<std::string>& aClasses = {},
                        const SDecoderEntry* pForced = nullptr, bool bFinish = true)
{
    CCollect sink;
    CCaptureRouter router(sink, pForced);
    for (const std::string& strClass : aClasses) {
        std::string strError;
        EXPECT_TRUE(router.AddUsbClass(strClass, strError)) << strError;
    }
    std::uint64_t nFrame = 0;
    for (const SRecord& r : aRecords) {
        SCaptureRecord record;
        record.nNumber = ++nFrame;
        record.nTimeMicros = static_cast<std::int64_t>(nFrame) * 1000;
        record.nLinkType = nLinkType;
        record.nFlags = r.nFlags;
        record.pData = r.aData.data();
        record.nData = r.aData.size();
        router.Feed(record);
    }
    if (bFinish)
        router.Finish();
    return sink.aOut;
}

// The outputs that are packets or undecoded transfers, without the records
// of no data that every USB capture is full of.
std::vector<SOut> Significant(const std::vector<SOut>& aOut)
{
    std::vector<SOut> a;
    for (const SOut& o : aOut)
        if (o.strWhat.find("USB record with no data") == std::string::npos)
            a.push_back(o);
    return a;
}

std::vector<SOut> RouteUsb(int nLinkType, const CUsbRecords& usb, const std::vector<std::string>& aClasses = {},
                           bool bFinish = true)
{
    std::vector<SRecord> aRecords;
    for (const Bytes& r : usb.Records())
        aRecords.push_back({r, 0});
    return Significant(Route(nLinkType, aRecords, aClasses, nullptr, bFinish));
}

// A composite device 5: interface 0 communications (interrupt 0x83), 1 CDC
// data (bulk 0x01, 0x82), 2 HID (interrupt 0x84), 3 printer (bulk 0x05).
Bytes CompositeConfiguration()
{
    const Bytes aConfig = {9, 2, 0, 0, 4, 1, 0, 0x80, 50};
    const Bytes aCdc = {9, 4, 0, 0, 1, 2, 2, 1, 0}, aCdcInt = {7, 5, 0x83, 3, 16, 0, 10};
    const Bytes aData = {9, 4, 1, 0, 2, 0x0A, 0, 0, 0}, aDataOut = {7, 5, 0x01, 2, 64, 0, 0},
                aDataIn = {7, 5, 0x82, 2, 64, 0, 0};
    const Bytes aHid = {9, 4, 2, 0, 1, 3, 0, 0, 0}, aHidDesc = {9, 0x21, 0x11, 1, 0, 1, 0x22, 50, 0},
                aHidInt = {7, 5, 0x84, 3, 8, 0, 10};
    const Bytes aPrinter = {9, 4, 3, 0, 1, 7, 1, 2, 0}, aPrinterOut = {7, 5, 0x05, 2, 64, 0, 0};
    Bytes a = aConfig + aCdc + aCdcInt + aData + aDataOut + aDataIn + aHid + aHidDesc + aHidInt + aPrinter + aPrinterOut;
    a[2] = static_cast<std::uint8_t>(a.size());
    return a;
}

struct SControlCase {
    const char* pszName;
    std::uint16_t nDevice;
    Bytes aSetup;
    Bytes aData;
    std::string strExpected;  // decoder class name or "undecoded: ..." (a prefix)
    int nHIDSelector;         // expected selector, or -1
};

void PrintTo(const SControlCase& c, std::ostream* os) { *os << c.pszName; }

class ControlRouting : public ::testing::TestWithParam<SControlCase> {};

TEST_P(ControlRouting, GoesToTheClassDecoderOfWhatItAddresses)
{
    const SControlCase& c = GetParam();
    for (const int nLinkType : {189, 249}) {
        CUsbRecords usb(nLinkType, 1);
        usb.Control(5, SetupPacket(0x80, 6, 0x0200, 0, 200), CompositeConfiguration());
        usb.Control(c.nDevice, c.aSetup, c.aData);
        const std::vector<SOut> aOut = RouteUsb(nLinkType, usb);
        ASSERT_EQ(aOut.size(), 2u);
        const SOut& o = aOut.back();
        if (nLinkType == 249 && c.nDevice == 1 && c.aSetup[0] != 0x23 && c.aSetup[0] != 0xA3) {
            // Only Linux gives a root hub address 1.
            EXPECT_EQ(o.strWhat.rfind("undecoded: USB class request of an interface of unknown class", 0), 0u);
            continue;
        }
        EXPECT_EQ(o.strWhat.substr(0, c.strExpected.size()), c.strExpected) << "link type " << nLinkType;
        EXPECT_EQ(o.aData, c.aSetup + c.aData) << "the payload is the setup packet and the data stage";
        EXPECT_EQ(o.link.eTransfer, UsbControl);
        EXPECT_EQ(o.link.bIn, (c.aSetup[0] & 0x80) != 0);
        EXPECT_EQ(o.nFrame, usb.Records().size()) << "emitted at the record that completes the transfer";
        if (c.nHIDSelector >= 0 && o.strWhat.rfind("undecoded", 0) != 0) {
            EXPECT_EQ(o.options.nHIDSelector, c.nHIDSelector);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Capture, ControlRouting,
    ::testing::Values(
        SControlCase{"HubPortStatusOfLinuxRootHub", 1, SetupPacket(0xA3, 0, 0, 2, 4), {1, 1, 1, 0}, Decoded("hub"), -1},
        SControlCase{"HubDescriptorOfLinuxRootHub", 1, SetupPacket(0xA0, 6, 0x2900, 0, 9), Counting(9), Decoded("hub"), -1},
        SControlCase{"PortResetToAHubOfUnknownClass", 7, SetupPacket(0x23, 3, 4, 1, 0), {}, Decoded("hub"), -1},
        SControlCase{"CdcLineCoding", 5, SetupPacket(0x21, 0x20, 0, 0, 7), {0x80, 0x25, 0, 0, 0, 0, 8}, Decoded("cdc"), -1},
        SControlCase{"CdcRequestToTheDataInterface", 5, SetupPacket(0x21, 0x22, 3, 1, 0), {}, Decoded("cdc"), -1},
        SControlCase{"CdcRequestToAnEndpointOfTheInterface", 5, SetupPacket(0x22, 0x22, 3, 0x83, 0), {}, Decoded("cdc"), -1},
        SControlCase{"PrinterPortStatus", 5, SetupPacket(0xA1, 1, 0, 3, 1), {0x18}, Decoded("printer"), -1},
        SControlCase{"PrinterDeviceIdNamesTheInterfaceInTheHighByte", 5, SetupPacket(0xA1, 0, 0, 0x0300, 4), {0, 4, 'M', 'F'},
                     Decoded("printer"), -1},
        SControlCase{"HidSetIdle", 5, SetupPacket(0x21, 0x0A, 0, 2, 0), {}, Decoded("hid-request"), 0},
        SControlCase{"HidDescriptor", 5, SetupPacket(0x81, 6, 0x2100, 2, 9), {9, 0x21, 0x11, 1, 0, 1, 0x22, 50, 0},
                     Decoded("hid"), 1},
        SControlCase{"HidReportDescriptor", 5, SetupPacket(0x81, 6, 0x2200, 2, 6), {5, 1, 9, 2, 0xA1, 1},
                     Decoded("hid-report"), 2},
        SControlCase{"HidPhysicalDescriptor", 5, SetupPacket(0x81, 6, 0x2300, 2, 3), {0, 2, 0}, Decoded("hid-physical"), 3},
        SControlCase{"ReportDescriptorOfAnInterfaceOfUnknownClass", 8, SetupPacket(0x81, 6, 0x2200, 0, 2), {5, 1},
                     Decoded("hid-report"), 2},
        SControlCase{"HidClassDescriptorTypeToANonHidInterface", 5, SetupPacket(0x81, 6, 0x2100, 0, 2), {5, 1},
                     "undecoded: USB standard request GET_DESCRIPTOR", -1},
        SControlCase{"StandardRequest", 5, SetupPacket(0x80, 6, 0x0100, 0, 18), Counting(18),
                     "undecoded: USB standard request GET_DESCRIPTOR", -1},
        SControlCase{"VendorRequest", 5, SetupPacket(0xC0, 1, 0, 0, 2), {1, 2}, "undecoded: USB vendor request", -1},
        SControlCase{"ClassRequestToAnUnknownDevice", 9, SetupPacket(0x21, 0x20, 0, 0, 0), {},
                     "undecoded: USB class request of an interface of unknown class", -1}),
    [](const ::testing::TestParamInfo<SControlCase>& info) { return std::string(info.param.pszName); });

TEST(CaptureRouting, InterruptInOfHubsAndCommunicationInterfacesAreNotifications)
{
    CUsbRecords usb(189, 1);
    usb.Control(5, SetupPacket(0x80, 6, 0x0200, 0, 200), CompositeConfiguration());
    usb.InterruptIn(1, 1, {0x02});                                   // root hub: port 1 changed
    usb.InterruptIn(5, 3, SetupPacket(0xA1, 0x20, 0, 0, 2) + Bytes{3, 0});  // SERIAL_STATE
    usb.InterruptIn(5, 4, {0, 0, 4, 0, 0, 0, 0, 0});                 // a keyboard report
    usb.InterruptIn(6, 1, {1});                                      // a device nothing is known of
    const std::vector<SOut> aOut = RouteUsb(189, usb);
    ASSERT_EQ(aOut.size(), 5u);
    EXPECT_EQ(aOut[1].strWhat, Decoded("hub-notification"));
    EXPECT_EQ(aOut[1].aData, Bytes{0x02});
    EXPECT_EQ(aOut[2].strWhat, Decoded("cdc-notification"));
    EXPECT_EQ(aOut[2].aData.size(), 10u);
    EXPECT_EQ(aOut[3].strWhat, "undecoded: USB interrupt IN transfer of class 0x03 (HID)");
    EXPECT_EQ(aOut[4].strWhat, "undecoded: USB interrupt IN transfer of an interface of unknown class");
    EXPECT_EQ(aOut[4].link.nDevice, 6);
    EXPECT_TRUE(aOut[4].link.bIn);
    EXPECT_EQ(aOut[4].link.eTransfer, UsbInterrupt);
}

// A mass-storage device 3 with bulk OUT 2 and bulk IN 1 in the subclass
// given.
void Enumerate(CUsbRecords& usb, std::uint8_t nSubClass)
{
    const Bytes aConfig = Bytes{9, 2, 32, 0, 1, 1, 0, 0x80, 50} + Bytes{9, 4, 0, 0, 2, 8, nSubClass, 0x50, 0} +
                          Bytes{7, 5, 0x81, 2, 0, 2, 0} + Bytes{7, 5, 0x02, 2, 0, 2, 0};
    usb.Control(3, SetupPacket(0x80, 6, 0x0200, 0, 32), aConfig);
}

// One bulk-only command: wrapper, data phase in pieces, status.
void Command(CUsbRecords& usb, std::uint32_t nTag, const Bytes& aCommand, bool bIn, const std::vector<Bytes>& aData,
             std::uint8_t nStatus = 0, std::uint8_t nBlockLength = 0)
{
    std::uint32_t nLength = 0;
    for (const Bytes& a : aData)
        nLength += static_cast<std::uint32_t>(a.size());
    Bytes aBlock = aCommand;
    if (nBlockLength)
        aBlock.resize(nBlockLength);
    usb.BulkOut(3, 2, CommandBlockWrapper(nTag, nLength, bIn, aBlock));
    for (const Bytes& a : aData)
        bIn ? usb.BulkIn(3, 1, a) : usb.BulkOut(3, 2, a);
    usb.BulkIn(3, 1, CommandStatusWrapper(nTag, 0, nStatus));
}

const Bytes kInquiry = {0x12, 0, 0, 0, 36, 0};
const Bytes kRead8Blocks = {0x28, 0, 0, 0, 0, 0x20, 0, 0, 8, 0};
const Bytes kTestUnitReady = {0, 0, 0, 0, 0, 0};
const Bytes kRequestSense = {0x03, 0, 0, 0, 18, 0};
const Bytes kReadToc = {0x43, 0, 0, 0, 0, 0, 0, 0, 12, 0};

Bytes InquiryData(std::uint8_t nPeripheral)
{
    Bytes a = Bytes{nPeripheral, 0x80, 2, 2, 31, 0, 0, 0} + Text("VENDOR  PRODUCT         1.00");
    return a;
}

TEST(CaptureRouting, TheUnitKindChoosesTheCommandSet)
{
    struct {
        const char* pszName;
        std::uint8_t nSubClass;
        int nPeripheral;  // INQUIRY's peripheral type first, or -1 for none
        Bytes aCommand;
        std::string strExpected;
    } const aCases[] = {
        {"optical by INQUIRY", 6, 5, kReadToc, Decoded("atapi", "scsi")},
        {"optical by INQUIRY, a primary command", 6, 5, kTestUnitReady, Decoded("scsi")},
        {"direct access by INQUIRY over an optical subclass", 2, 0, kRead8Blocks, Decoded("rbc", "scsi")},
        {"direct access by subclass", 6, -1, kRead8Blocks, Decoded("rbc", "scsi")},
        {"optical by subclass", 2, -1, kRead8Blocks, Decoded("atapi", "scsi")},
        {"neither: a tape", 6, 1, kRead8Blocks, Decoded("scsi")},
        {"direct access, a command of no block set", 6, 0, kReadToc, Decoded("scsi")},
    };
    for (const auto& c : aCases) {
        CUsbRecords usb(189, 1);
        Enumerate(usb, c.nSubClass);
        if (c.nPeripheral >= 0)
            Command(usb, 1, kInquiry, true, {InquiryData(static_cast<std::uint8_t>(c.nPeripheral))});
        Command(usb, 2, c.aCommand, true, {Counting(12)});
        const std::vector<SOut> aOut = RouteUsb(189, usb);
        ASSERT_GE(aOut.size(), 3u) << c.pszName;
        EXPECT_EQ(aOut[aOut.size() - 2].strWhat, c.strExpected) << c.pszName;
    }
}

TEST(CaptureRouting, BulkOnlyWithoutEnumerationByTheSignatures)
{
    CUsbRecords usb(189, 1);
    usb.BulkIn(3, 1, Counting(512));                        // data of a command before the capture
    usb.BulkIn(3, 1, CommandStatusWrapper(7, 0, 0));        // and its status
    // A command block of 12 bytes for READ(10): the command block is the
    // 10 bytes READ(10) has; the data phase follows.
    Command(usb, 8, kRead8Blocks, true, {Counting(4096)}, 0, 12);
    const std::vector<SOut> aOut = RouteUsb(189, usb);
    ASSERT_EQ(aOut.size(), 5u);
    EXPECT_EQ(aOut[0].strWhat, "undecoded: USB bulk transfer of an interface of unknown class");
    EXPECT_EQ(aOut[1].strWhat, Decoded("bot"));
    EXPECT_EQ(aOut[2].strWhat, Decoded("bot"));
    EXPECT_EQ(aOut[3].strWhat, Decoded("scsi")) << "no kind is known without INQUIRY or descriptors";
    EXPECT_EQ(aOut[3].aData, kRead8Blocks + Counting(4096));
}

TEST(CaptureRouting, CommandsWhoseStatusNeverComes)
{
    CUsbRecords usb(189, 1);
    Enumerate(usb, 6);
    // A data phase of 13 bytes that looks like a status of another tag is
    // data; the command stays open until the next wrapper.
    usb.BulkOut(3, 2, CommandBlockWrapper(1, 13, true, kRequestSense));
    usb.BulkIn(3, 1, CommandStatusWrapper(99, 0, 0));
    usb.BulkOut(3, 2, CommandBlockWrapper(2, 0, false, kTestUnitReady));
    const std::size_t nSecondWrapper = usb.Records().size() - 1;
    // The last command is still open when the capture ends.
    usb.BulkOut(3, 2, CommandBlockWrapper(3, 4096, true, kRead8Blocks));
    usb.BulkIn(3, 1, Counting(100));
    const std::vector<SOut> aOut = RouteUsb(189, usb);
    ASSERT_EQ(aOut.size(), 7u);
    EXPECT_EQ(aOut[2].aData, kRequestSense + CommandStatusWrapper(99, 0, 0));
    EXPECT_EQ(aOut[2].nFrame, nSecondWrapper) << "ended by the next wrapper, at its record";
    EXPECT_EQ(aOut[3].strWhat, Decoded("bot"));
    EXPECT_EQ(aOut[3].nFrame, nSecondWrapper);
    EXPECT_EQ(aOut[4].aData, kTestUnitReady);
    EXPECT_EQ(aOut[6].aData, kRead8Blocks + Counting(100));
    EXPECT_EQ(aOut[6].nFrame, usb.Records().size()) << "emitted at its last record when the capture ends";

    // Without Finish (a capture broken off) nothing of the open command comes.
    EXPECT_EQ(RouteUsb(189, usb, {}, false).size(), 6u);
}

TEST(CaptureRouting, AHeldDataPhaseIsBounded)
{
    CUsbRecords usb(189, 1);
    Enumerate(usb, 6);
    std::vector<Bytes> aData(40, Counting(64 * 1024));
    Command(usb, 1, kRead8Blocks, true, aData);
    const std::vector<SOut> aOut = RouteUsb(189, usb);
    ASSERT_EQ(aOut.size(), 4u);
    EXPECT_EQ(aOut[2].aData.size(), kRead8Blocks.size() + SBulkOnlySession::kMaxData);
}

struct SBluetoothCase {
    const char* pszName;
    int nLinkType;
    std::uint32_t nFlags;
    Bytes aRecord;
    int nKind;                       // -1: no HCI packet
    EBluetoothDirection eDirection;
    std::size_t nPayload;            // bytes handed to the HCI decoder
    const char* pszReason;           // when nKind is -1
};

void PrintTo(const SBluetoothCase& c, std::ostream* os) { *os << c.pszName; }

class BluetoothRouting : public ::testing::TestWithParam<SBluetoothCase> {};

TEST_P(BluetoothRouting, KindAndDirectionPerLinkType)
{
    const SBluetoothCase& c = GetParam();
    const std::vector<SOut> aOut = Route(c.nLinkType, {{c.aRecord, c.nFlags}});
    ASSERT_EQ(aOut.size(), 1u);
    if (c.nKind < 0) {
        EXPECT_EQ(aOut[0].strWhat, std::string("undecoded: ") + c.pszReason);
        return;
    }
    EXPECT_EQ(aOut[0].strWhat, Decoded("hci"));
    EXPECT_EQ(aOut[0].link.eKind, SPacketLink::Bluetooth);
    EXPECT_EQ(aOut[0].link.nHCIKind, c.nKind);
    EXPECT_EQ(aOut[0].options.nHCIKind, c.nKind);
    EXPECT_EQ(aOut[0].link.eDirection, c.eDirection);
    EXPECT_EQ(aOut[0].aData.size(), c.nPayload);
}

const Bytes kReset = {0x03, 0x0C, 0x00};

INSTANTIATE_TEST_SUITE_P(
    Capture, BluetoothRouting,
    ::testing::Values(
        SBluetoothCase{"BtSnoopHCIAclReceived", 1001, 1, {0x01, 0x20, 0, 0}, 2, BluetoothReceived, 4, ""},
        SBluetoothCase{"BtSnoopHCICommand", 1001, 2, kReset, 0, BluetoothSent, 3, ""},
        SBluetoothCase{"BtSnoopHCIEvent", 1001, 3, {0x0E, 1, 1}, 4, BluetoothReceived, 3, ""},
        SBluetoothCase{"BtSnoopUartCommand", 1002, 0, Bytes{1} + kReset, 0, BluetoothSent, 3, ""},
        SBluetoothCase{"BtSnoopUartAclReceived", 1002, 1, {2, 0x01, 0x20, 0, 0}, 2, BluetoothReceived, 4, ""},
        SBluetoothCase{"BtSnoopUartIso", 1002, 0, {5, 0, 0}, -1, BluetoothSent, 0,
                       "H4 packet type 5 (ISO data) has no HCI packet kind"},
        SBluetoothCase{"BtSnoopUartUnknownType", 1002, 0, {9}, -1, BluetoothSent, 0, "H4 packet type 9 is unknown"},
        SBluetoothCase{"BtSnoopUartEmpty", 1002, 0, {}, -1, BluetoothSent, 0, "empty record"},
        SBluetoothCase{"MonitorCommand", 2001, 0x00000002, kReset, 0, BluetoothSent, 3, ""},
        SBluetoothCase{"MonitorEventOfIndexOne", 2001, 0x00010003, {0x0E, 1, 1}, 4, BluetoothReceived, 3, ""},
        SBluetoothCase{"MonitorAclRx", 2001, 5, {0x01, 0x20, 0, 0}, 2, BluetoothReceived, 4, ""},
        SBluetoothCase{"MonitorScoRx", 2001, 7, {0x01, 0x00, 0}, 3, BluetoothReceived, 3, ""},
        SBluetoothCase{"MonitorUserLogging", 2001, 0xFFFF000D, {1, 2, 3}, -1, BluetoothSent, 0,
                       "Linux monitor record that is no HCI packet: User Logging"},
        SBluetoothCase{"H4Event", 187, 0, {4, 0x0E, 1, 1}, 4, BluetoothReceived, 3, ""},
        SBluetoothCase{"H4AclHasNoDirection", 187, 0, {2, 0x01, 0x20, 0, 0}, 1, BluetoothDirectionUnknown, 4, ""},
        SBluetoothCase{"H4PhdrReceivedAcl", 201, 0, {0, 0, 0, 1, 2, 0x01, 0x20, 0, 0}, 2, BluetoothReceived, 4, ""},
        SBluetoothCase{"H4PhdrTooShort", 201, 0, {0, 0}, -1, BluetoothSent, 0,
                       "record too short for its direction header"}),
    [](const ::testing::TestParamInfo<SBluetoothCase>& info) { return std::string(info.param.pszName); });

TEST(CaptureRouting, SerialLinksAndLinkTypesOfNoRoute)
{
    const Bytes aLcp = {0xFF, 0x03, 0xC0, 0x21, 0x09, 0x01, 0x00, 0x08, 0, 0, 0, 0};
    for (const int nLinkType : {9, 50}) {
        const std::vector<SOut> aOut = Route(nLinkType, {{aLcp, 0}, {Bytes(aLcp.begin() + 2, aLcp.end()), 0}, {{}, 0}});
        ASSERT_EQ(aOut.size(), 3u);
        EXPECT_EQ(aOut[0].strWhat, Decoded("ppp"));
        EXPECT_EQ(aOut[0].aData, aLcp);
        EXPECT_EQ(aOut[1].aData.size(), aLcp.size() - 2) << "a frame without address and control goes as it is";
        EXPECT_EQ(aOut[2].strWhat, "undecoded: empty record");
        EXPECT_EQ(aOut[0].link.eKind, SPacketLink::None);
    }
    EXPECT_EQ(Route(1, {{aLcp, 0}})[0].strWhat, "undecoded: no route for link type EN10MB (1)");
}

TEST(CaptureRouting, AForcedDecoderTakesEveryRecordsPayload)
{
    const SDecoderEntry* pBot = FindDecoder("bot");
    ASSERT_NE(pBot, nullptr);
    CUsbRecords usb(189, 1);
    usb.Control(4, SetupPacket(0x80, 6, 0x0100, 0, 2), {0x12, 0x01});
    usb.BulkOut(4, 2, CommandBlockWrapper(1, 0, false, kTestUnitReady));
    std::vector<SRecord> aRecords;
    for (const Bytes& r : usb.Records())
        aRecords.push_back({r, 0});
    std::vector<SOut> aOut = Route(189, aRecords, {}, pBot);
    ASSERT_EQ(aOut.size(), 4u);
    EXPECT_EQ(aOut[0].aData, SetupPacket(0x80, 6, 0x0100, 0, 2)) << "the setup packet of the submission";
    EXPECT_EQ(aOut[1].aData, (Bytes{0x12, 0x01})) << "the data of the completion";
    EXPECT_EQ(aOut[2].aData.size(), 31u);
    EXPECT_EQ(aOut[3].strWhat, "undecoded: record with no payload");
    for (const SOut& o : aOut)
        EXPECT_TRUE(o.strWhat == pBot->pszClassName || o.strWhat.rfind("undecoded", 0) == 0);

    // Records of a link of no route go whole.
    aOut = Route(1, {{Counting(60), 0}}, {}, pBot);
    ASSERT_EQ(aOut.size(), 1u);
    EXPECT_EQ(aOut[0].aData, Counting(60));
}

TEST(CaptureRouting, UsbClassesSaidByTheUser)
{
    struct {
        const char* pszSpec;
        const char* pszError;  // a piece of the error, or null when accepted
    } const aSpecs[] = {
        {"1.4=hub", nullptr},      {"1.4.0=cdc", nullptr},       {"3.127.255=0x0A", nullptr},
        {"2.9=mass-storage-optical", nullptr},
        {"1.4", "is not BUS.DEVICE[.INTERFACE]=NAME"}, {"1=hub", "is not BUS.DEVICE"},
        {"1.128=hub", "is not BUS.DEVICE"},           {"1.4.0.1=hub", "is not BUS.DEVICE"},
        {"1.x=hub", "is not BUS.DEVICE"},             {"1.4=modem", "unknown USB class \"modem\""},
        {"1.4=256", "unknown USB class"},
    };
    for (const auto& s : aSpecs) {
        CUsbDevices devices;
        std::string strError;
        EXPECT_EQ(devices.AddOverride(s.pszSpec, strError), s.pszError == nullptr) << s.pszSpec;
        if (s.pszError) {
            EXPECT_NE(strError.find(s.pszError), std::string::npos) << s.pszSpec << ": " << strError;
        }
    }

    // No enumeration in the capture: the user says what device 4 is, and
    // says it over what its descriptors say.
    CUsbRecords usb(249, 1);
    usb.InterruptIn(4, 1, SetupPacket(0xA1, 0x20, 0, 0, 2) + Bytes{3, 0});
    usb.Control(4, SetupPacket(0x21, 0x22, 3, 0, 0));
    usb.Control(5, SetupPacket(0x80, 6, 0x0100, 0, 18), Bytes{18, 1, 0, 2, 9, 0, 0, 64} + Bytes(10, 0));
    usb.Control(5, SetupPacket(0xA1, 0, 0, 0, 4), {0, 4, 'M', 'F'});
    const std::vector<SOut> aOut = RouteUsb(249, usb, {"1.4=cdc", "1.5.0=printer", "1.5=hid"});
    ASSERT_EQ(aOut.size(), 4u);
    EXPECT_EQ(aOut[0].strWhat, Decoded("cdc-notification"));
    EXPECT_EQ(aOut[1].strWhat, Decoded("cdc"));
    EXPECT_EQ(aOut[3].strWhat, Decoded("printer"));
    EXPECT_EQ(RouteUsb(249, usb)[3].strWhat, Decoded("hub")) << "the device descriptor says hub";
}

TEST(CaptureRouting, AnAddressTakesWhatTheDeviceSaidAtAddressZero)
{
    CUsbRecords usb(189, 1);
    usb.Control(7, SetupPacket(0x80, 6, 0x0100, 0, 18), Bytes{18, 1, 0, 2, 2, 0, 0, 64} + Bytes(10, 0));  // old device 7: CDC
    usb.Control(0, SetupPacket(0x80, 6, 0x0100, 0, 18), Bytes{18, 1, 0, 2, 9, 0, 0, 64} + Bytes(10, 0));  // a hub at 0
    usb.Control(0, SetupPacket(0x00, 5, 7, 0, 0));                                                          // SET_ADDRESS 7
    usb.Control(7, SetupPacket(0xA0, 0, 0, 0, 4), {1, 0, 0, 0});
    const std::vector<SOut> aOut = RouteUsb(189, usb);
    ASSERT_EQ(aOut.size(), 4u);
    EXPECT_EQ(aOut[3].strWhat, Decoded("hub"));
}

}  // namespace
