#include "tests/CaptureFiles.h"

#include <unistd.h>

#include <fstream>

#include <gtest/gtest.h>

namespace {

// Little-endian, bytes beyond the eighth 0.
void PutLE(Bytes& a, std::uint64_t v, int nBytes)
{
    for (int i = 0; i < nBytes; ++i)
        a.push_back(i < 8 ? static_cast<std::uint8_t>(v >> (8 * i)) : 0);
}

void PutBE(Bytes& a, std::uint64_t v, int nBytes)
{
    for (int i = nBytes - 1; i >= 0; --i)
        a.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

// Microseconds from 0000-01-01 to 1970-01-01, as btsnoop counts time.
constexpr std::uint64_t kBtSnoopEpoch = 0x00DCDDB30F2F8000ull;

}  // namespace

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes Text(const std::string& s)
{
    return Bytes(s.begin(), s.end());
}

Bytes Counting(std::size_t n, std::uint8_t nFirst)
{
    Bytes a(n);
    for (std::size_t i = 0; i < n; ++i)
        a[i] = static_cast<std::uint8_t>(nFirst + i);
    return a;
}

std::string TempCapture(const std::string& strName, const Bytes& aContents)
{
    const std::string strPath = ::testing::TempDir() + "busdecode_" + std::to_string(::getpid()) + "_" + strName;
    std::ofstream(strPath, std::ios::binary)
        .write(reinterpret_cast<const char*>(aContents.data()), static_cast<std::streamsize>(aContents.size()));
    return strPath;
}

Bytes PcapHeader(std::uint32_t nLinkType, std::uint32_t nSnapLength)
{
    Bytes a;
    PutLE(a, 0xA1B2C3D4, 4);
    PutLE(a, 2, 2);
    PutLE(a, 4, 2);
    PutLE(a, 0, 8);
    PutLE(a, nSnapLength, 4);
    PutLE(a, nLinkType, 4);
    return a;
}

void PutPcapRecord(Bytes& file, std::int64_t nMicros, const Bytes& aData)
{
    PutLE(file, static_cast<std::uint64_t>(nMicros / 1000000), 4);
    PutLE(file, static_cast<std::uint64_t>(nMicros % 1000000), 4);
    PutLE(file, aData.size(), 4);
    PutLE(file, aData.size(), 4);
    file = file + aData;
}

Bytes PcapNgSection()
{
    Bytes a;
    PutLE(a, 0x0A0D0D0A, 4);
    PutLE(a, 28, 4);
    PutLE(a, 0x1A2B3C4D, 4);
    PutLE(a, 1, 2);
    PutLE(a, 0, 2);
    PutLE(a, ~0ull, 8);
    PutLE(a, 28, 4);
    return a;
}

void PutPcapNgInterface(Bytes& file, std::uint16_t nLinkType, std::uint32_t nSnapLength, int nTsResol)
{
    const std::uint32_t nLength = nTsResol < 0 ? 20 : 32;
    PutLE(file, 1, 4);
    PutLE(file, nLength, 4);
    PutLE(file, nLinkType, 2);
    PutLE(file, 0, 2);
    PutLE(file, nSnapLength, 4);
    if (nTsResol >= 0) {
        // if_tsresol, then the end of the options.
        PutLE(file, 9, 2);
        PutLE(file, 1, 2);
        file.push_back(static_cast<std::uint8_t>(nTsResol));
        PutLE(file, 0, 3);
        PutLE(file, 0, 4);
    }
    PutLE(file, nLength, 4);
}

void PutPcapNgPacket(Bytes& file, std::uint32_t nInterface, std::uint64_t nUnits, const Bytes& aData)
{
    const std::size_t nPadded = (aData.size() + 3) & ~std::size_t(3);
    const std::uint32_t nLength = static_cast<std::uint32_t>(32 + nPadded);
    PutLE(file, 6, 4);
    PutLE(file, nLength, 4);
    PutLE(file, nInterface, 4);
    PutLE(file, nUnits >> 32, 4);
    PutLE(file, nUnits & 0xFFFFFFFF, 4);
    PutLE(file, aData.size(), 4);
    PutLE(file, aData.size(), 4);
    file = file + aData;
    PutLE(file, 0, static_cast<int>(nPadded - aData.size()));
    PutLE(file, nLength, 4);
}

Bytes BtSnoopHeader(std::uint32_t nDatalink)
{
    Bytes a = Text(std::string("btsnoop\0", 8));
    PutBE(a, 1, 4);
    PutBE(a, nDatalink, 4);
    return a;
}

void PutBtSnoopRecord(Bytes& file, std::uint32_t nFlags, const Bytes& aData, std::int64_t nMicros)
{
    PutBE(file, aData.size(), 4);
    PutBE(file, aData.size(), 4);
    PutBE(file, nFlags, 4);
    PutBE(file, 0, 4);
    PutBE(file, kBtSnoopEpoch + static_cast<std::uint64_t>(nMicros), 8);
    file = file + aData;
}

Bytes SetupPacket(std::uint8_t nRequestType, std::uint8_t nRequest, std::uint16_t wValue, std::uint16_t wIndex,
            std::uint16_t wLength)
{
    Bytes a = {nRequestType, nRequest};
    PutLE(a, wValue, 2);
    PutLE(a, wIndex, 2);
    PutLE(a, wLength, 2);
    return a;
}

Bytes CommandBlockWrapper(std::uint32_t nTag, std::uint32_t nLength, bool bIn, const Bytes& aCommand,
                          std::uint8_t nLun)
{
    Bytes a = Text("USBC");
    PutLE(a, nTag, 4);
    PutLE(a, nLength, 4);
    a.push_back(bIn ? 0x80 : 0x00);
    a.push_back(nLun);
    a.push_back(static_cast<std::uint8_t>(aCommand.size()));
    Bytes aBlock = aCommand;
    aBlock.resize(16);
    return a + aBlock;
}

Bytes CommandStatusWrapper(std::uint32_t nTag, std::uint32_t nResidue, std::uint8_t nStatus)
{
    Bytes a = Text("USBS");
    PutLE(a, nTag, 4);
    PutLE(a, nResidue, 4);
    a.push_back(nStatus);
    return a;
}

Bytes CUsbRecords::Header(std::uint64_t nId, bool bComplete, EUsbTransfer eTransfer, std::uint8_t nEndpointAddress,
                          std::uint16_t nDevice, const Bytes* pSetup, std::size_t nData, std::uint32_t nLength,
                          std::int32_t nStatus, int nStage) const
{
    Bytes h;
    if (m_nLinkType == 249) {
        // USBPcap: header length, IRP id, status, function, info (bit 0:
        // completion), bus, device, endpoint, transfer, data length, stage.
        PutLE(h, eTransfer == UsbControl ? 28 : 27, 2);
        PutLE(h, nId, 8);
        PutLE(h, static_cast<std::uint32_t>(nStatus), 4);
        PutLE(h, 0, 2);
        h.push_back(bComplete ? 1 : 0);
        PutLE(h, m_nBus, 2);
        PutLE(h, nDevice, 2);
        h.push_back(nEndpointAddress);
        h.push_back(static_cast<std::uint8_t>(eTransfer));
        PutLE(h, nData, 4);
        if (eTransfer == UsbControl)
            h.push_back(static_cast<std::uint8_t>(nStage));
        return h;
    }
    // usbmon: id, event, transfer, endpoint, device, bus, setup and data
    // flags, time, status, URB length, captured length, setup.
    PutLE(h, nId, 8);
    h.push_back(bComplete ? 'C' : 'S');
    h.push_back(static_cast<std::uint8_t>(eTransfer));
    h.push_back(nEndpointAddress);
    h.push_back(static_cast<std::uint8_t>(nDevice));
    PutLE(h, m_nBus, 2);
    h.push_back(pSetup ? 0 : '-');
    h.push_back(nData ? 0 : '<');
    PutLE(h, 1700000000, 8);
    PutLE(h, 0, 4);
    PutLE(h, static_cast<std::uint32_t>(nStatus), 4);
    PutLE(h, nLength, 4);
    PutLE(h, nData, 4);
    h = h + (pSetup ? *pSetup : Bytes(8, 0));
    if (m_nLinkType == 220)
        PutLE(h, 0, 16);
    return h;
}

void CUsbRecords::Control(std::uint16_t nDevice, const Bytes& aSetup, const Bytes& aData, std::int32_t nStatus)
{
    const std::uint64_t nId = m_nNextId++;
    const bool bIn = (aSetup[0] & 0x80) != 0;
    const std::uint8_t nEndpoint = bIn ? 0x80 : 0x00;
    const std::uint32_t nLength = static_cast<std::uint32_t>(aData.size());
    if (m_nLinkType == 249) {
        // The setup stage, the data stage, the status stage.
        m_aRecords.push_back(Header(nId, false, UsbControl, nEndpoint, nDevice, nullptr, 8, 8, 0, 0) + aSetup);
        if (!aData.empty())
            m_aRecords.push_back(Header(nId, bIn, UsbControl, nEndpoint, nDevice, nullptr, aData.size(), nLength, 0, 1) +
                                 aData);
        m_aRecords.push_back(Header(nId, true, UsbControl, nEndpoint, nDevice, nullptr, 0, 0, nStatus, 2));
        return;
    }
    const Bytes aOut = bIn ? Bytes() : aData, aIn = bIn ? aData : Bytes();
    m_aRecords.push_back(Header(nId, false, UsbControl, nEndpoint, nDevice, &aSetup, aOut.size(), nLength, -115, -1) +
                         aOut);
    m_aRecords.push_back(Header(nId, true, UsbControl, nEndpoint, nDevice, nullptr, aIn.size(), nLength, nStatus, -1) +
                         aIn);
}

void CUsbRecords::Transfer(EUsbTransfer eTransfer, std::uint16_t nDevice, std::uint8_t nEndpointAddress,
                           const Bytes& aData)
{
    const std::uint64_t nId = m_nNextId++;
    const bool bIn = (nEndpointAddress & 0x80) != 0;
    const std::uint32_t nLength = static_cast<std::uint32_t>(aData.size());
    const Bytes aOut = bIn ? Bytes() : aData, aIn = bIn ? aData : Bytes();
    m_aRecords.push_back(Header(nId, false, eTransfer, nEndpointAddress, nDevice, nullptr, aOut.size(), nLength,
                                m_nLinkType == 249 ? 0 : -115, -1) +
                         aOut);
    m_aRecords.push_back(Header(nId, true, eTransfer, nEndpointAddress, nDevice, nullptr, aIn.size(), nLength, 0, -1) +
                         aIn);
}

void CUsbRecords::BulkOut(std::uint16_t nDevice, std::uint8_t nEndpoint, const Bytes& aData)
{
    Transfer(UsbBulk, nDevice, nEndpoint, aData);
}

void CUsbRecords::BulkIn(std::uint16_t nDevice, std::uint8_t nEndpoint, const Bytes& aData)
{
    Transfer(UsbBulk, nDevice, static_cast<std::uint8_t>(0x80 | nEndpoint), aData);
}

void CUsbRecords::InterruptIn(std::uint16_t nDevice, std::uint8_t nEndpoint, const Bytes& aData)
{
    Transfer(UsbInterrupt, nDevice, static_cast<std::uint8_t>(0x80 | nEndpoint), aData);
}

Bytes CUsbRecords::Pcap() const
{
    Bytes file = PcapHeader(static_cast<std::uint32_t>(m_nLinkType));
    std::int64_t nMicros = 1700000000000000;
    for (const Bytes& record : m_aRecords)
        PutPcapRecord(file, nMicros += 1000, record);
    return file;
}

std::vector<SDamagedCapture> DamagedCaptures()
{
    const Bytes aReset = {1, 0x03, 0x0C, 0x00};              // an H4 command
    const Bytes aSentReset = Bytes{0, 0, 0, 0} + aReset;     // with its direction header

    Bytes btsnoop = BtSnoopHeader(1002);
    PutBtSnoopRecord(btsnoop, 0, aReset);
    PutBtSnoopRecord(btsnoop, 0, aReset);
    Bytes btsnoopCut = btsnoop;
    PutBtSnoopRecord(btsnoopCut, 0, Counting(10));
    btsnoopCut.resize(btsnoopCut.size() - 7);
    Bytes btsnoopAbsurd = btsnoop;
    PutBtSnoopRecord(btsnoopAbsurd, 0, {});
    btsnoopAbsurd[btsnoop.size() + 4] = 0xFF;  // included length 0xFF000000
    btsnoopAbsurd[btsnoop.size()] = 0xFF;      // original length as large

    Bytes pcap = PcapHeader(201, 100);
    PutPcapRecord(pcap, 1000, aSentReset);
    Bytes pcapCut = pcap;
    PutPcapRecord(pcapCut, 2000, aSentReset);
    pcapCut.resize(pcapCut.size() - 2);
    Bytes pcapLong = pcap;
    PutPcapRecord(pcapLong, 2000, aSentReset + Bytes(200, 0));

    Bytes pcapng = PcapNgSection();
    PutPcapNgInterface(pcapng, 201, 64);
    PutPcapNgPacket(pcapng, 0, 1000, aSentReset);
    const std::size_t nSecond = pcapng.size();
    Bytes pcapngCut = pcapng;
    PutPcapNgPacket(pcapngCut, 0, 2000, aSentReset);
    pcapngCut.resize(pcapngCut.size() - 6);
    Bytes pcapngTrailer = pcapng;
    PutPcapNgPacket(pcapngTrailer, 0, 2000, aSentReset);
    pcapngTrailer[pcapngTrailer.size() - 4] ^= 0x04;
    Bytes pcapngLong = pcapng;
    PutPcapNgPacket(pcapngLong, 0, 2000, aSentReset + Bytes(100, 0));
    Bytes pcapngInterface = pcapng;
    PutPcapNgPacket(pcapngInterface, 3, 2000, aSentReset);
    Bytes pcapngLinkType = pcapng;
    PutPcapNgInterface(pcapngLinkType, 65000);

    const std::string strStatus = "ffff8800 1000 C Bi:1:003:1 0 13 = 55534253 01000000 00000000 00\n";
    const std::string strOffset = " at byte offset " + std::to_string(nSecond) + ": ";
    return {
        {"BtSnoopCutInsideRecord", btsnoopCut, 2, "record 3 at byte offset 72: the file ends inside the record"},
        {"BtSnoopCutInsideHeader", btsnoop + Bytes{0, 0, 0}, 2, "record 3 at byte offset 72: the file ends inside the record header"},
        {"BtSnoopAbsurdLength", btsnoopAbsurd, 2, "record 3 at byte offset 72: record length 4278190080 is larger than 262144 bytes"},
        {"PcapCutInsideRecord", pcapCut, 1, "record 2 at byte offset 48"},
        {"PcapRecordLongerThanTheSnapshot", pcapLong, 1,
         "record 2 at byte offset 48: record length 208 is larger than the snapshot length 100"},
        {"PcapNgCutInsideBlock", pcapngCut, 1, "record 2" + strOffset + "the file ends inside a block of 40 bytes"},
        {"PcapNgTrailerDiffers", pcapngTrailer, 1, "record 2" + strOffset + "block length 40 and its trailing copy 44 differ"},
        {"PcapNgRecordLongerThanTheSnapshot", pcapngLong, 1,
         "record 2" + strOffset + "record length 108 is larger than the snapshot length 64"},
        {"PcapNgPacketOfNoInterface", pcapngInterface, 1,
         "record 2" + strOffset + "packet of interface 3, which no block described"},
        {"PcapNgUnknownLinkType", pcapngLinkType, 1,
         "record 2" + strOffset + "interface 1 has the unknown link type 65000"},
        {"UsbmonTextBadLine", Text(strStatus + "hello world\n"), 1,
         "record 2 at byte offset " + std::to_string(strStatus.size()) + ": not a usbmon text line: too few words"},
        {"UsbmonTextSetupCutShort", Text(strStatus + "ffff8800 1001 S Ci:1:001:0 s a3 00 0000\n"), 1,
         "record 2 at byte offset " + std::to_string(strStatus.size()) +
             ": not a usbmon text line: setup packet cut short"},
    };
}

std::vector<SUnreadableCapture> UnreadableCaptures()
{
    Bytes pcapngPacketFirst = PcapNgSection();
    PutPcapNgPacket(pcapngPacketFirst, 0, 0, {1, 2, 3, 4});
    Bytes pcapngUnknownLink = PcapNgSection();
    PutPcapNgInterface(pcapngUnknownLink, 65000);
    const Bytes aSection = PcapNgSection(), aBtSnoop = BtSnoopHeader(1002);
    return {
        {"Empty", {}, "is empty"},
        {"Words", Text("just some words\n"), "not a capture of a known format"},
        {"BtSnoopOfAnotherDatalink", BtSnoopHeader(7), "datalink 7"},
        {"BtSnoopCutInsideItsHeader", Bytes(aBtSnoop.begin(), aBtSnoop.begin() + 12),
         "ends inside its header"},
        {"PcapCutInsideItsHeader", {0xD4, 0xC3, 0xB2, 0xA1, 2, 0}, "not a readable pcap file"},
        {"PcapOfAnUnknownLinkType", PcapHeader(65000), "the link type 65000 is unknown"},
        {"PcapNgCutInsideTheSectionHeader", Bytes(aSection.begin(), aSection.begin() + 20),
         "the file ends inside a block of 28 bytes"},
        {"PcapNgPacketBeforeAnyInterface", pcapngPacketFirst, "comes before any interface description"},
        {"PcapNgOfAnUnknownLinkType", pcapngUnknownLink, "interface 0 has the unknown link type 65000"},
    };
}
