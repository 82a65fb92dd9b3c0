// Captures written by the tests: pcap, pcapng and btsnoop files, and the USB
// records (usbmon and USBPcap headers) that go in them, built up transfer by
// transfer the way a capture shows them.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "capture/UsbPacket.h"

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes a, const Bytes& b);
Bytes Text(const std::string& s);
// n bytes counting up from nFirst.
Bytes Counting(std::size_t n, std::uint8_t nFirst = 0);

// A file in the temporary folder, named for this test process; written.
std::string TempCapture(const std::string& strName, const Bytes& aContents);

// --------------------------------------------------------------- formats

Bytes PcapHeader(std::uint32_t nLinkType, std::uint32_t nSnapLength = 65535);
void PutPcapRecord(Bytes& file, std::int64_t nMicros, const Bytes& aData);

Bytes PcapNgSection();
void PutPcapNgInterface(Bytes& file, std::uint16_t nLinkType, std::uint32_t nSnapLength = 0, int nTsResol = -1);
void PutPcapNgPacket(Bytes& file, std::uint32_t nInterface, std::uint64_t nUnits, const Bytes& aData);

Bytes BtSnoopHeader(std::uint32_t nDatalink);
void PutBtSnoopRecord(Bytes& file, std::uint32_t nFlags, const Bytes& aData, std::int64_t nMicros = 0);

// ---------------------------------------------------------- USB sessions

// The records of USB transfers on one bus, in the header of a link type
// (189 usbmon, 220 usbmon mmapped, 249 USBPcap): submissions and
// completions, with the data where each form carries it.
class CUsbRecords {
public:
    CUsbRecords(int nLinkType, std::uint16_t nBus) : m_nLinkType(nLinkType), m_nBus(nBus) {}

    // A control transfer: the setup packet, the data sent (OUT) or
    // returned (IN), and the completion status.
    void Control(std::uint16_t nDevice, const Bytes& aSetup, const Bytes& aData = {}, std::int32_t nStatus = 0);
    void BulkOut(std::uint16_t nDevice, std::uint8_t nEndpoint, const Bytes& aData);
    void BulkIn(std::uint16_t nDevice, std::uint8_t nEndpoint, const Bytes& aData);
    void InterruptIn(std::uint16_t nDevice, std::uint8_t nEndpoint, const Bytes& aData);

    const std::vector<Bytes>& Records() const { return m_aRecords; }
    // The records in a pcap file of the link type, a millisecond apart.
    Bytes Pcap() const;

private:
    Bytes Header(std::uint64_t nId, bool bComplete, EUsbTransfer eTransfer, std::uint8_t nEndpointAddress,
                 std::uint16_t nDevice, const Bytes* pSetup, std::size_t nData, std::uint32_t nLength,
                 std::int32_t nStatus, int nStage) const;
    void Transfer(EUsbTransfer eTransfer, std::uint16_t nDevice, std::uint8_t nEndpointAddress, const Bytes& aData);

    int m_nLinkType;
    std::uint16_t m_nBus;
    std::uint64_t m_nNextId = 0x1000;
    std::vector<Bytes> m_aRecords;
};

// Setup packets.
Bytes SetupPacket(std::uint8_t nRequestType, std::uint8_t nRequest, std::uint16_t wValue, std::uint16_t wIndex,
            std::uint16_t wLength);

// Bulk-only wrappers: a command block wrapper for a command block, and a
// command status wrapper.
Bytes CommandBlockWrapper(std::uint32_t nTag, std::uint32_t nLength, bool bIn, const Bytes& aCommand,
                          std::uint8_t nLun = 0);
Bytes CommandStatusWrapper(std::uint32_t nTag, std::uint32_t nResidue, std::uint8_t nStatus);

// Damaged captures of every format, each of whose whole records gives one
// line of the tool's output: the records before the damage, and a piece of
// the text that names it ("record 3 at byte offset 72: ...").
struct SDamagedCapture {
    const char* pszName;
    Bytes aFile;
    std::uint64_t nWhole;
    std::string strError;
};
std::vector<SDamagedCapture> DamagedCaptures();
inline void PrintTo(const SDamagedCapture& c, std::ostream* os) { *os << c.pszName; }

// Files that cannot be read as a capture, and a piece of the text saying so.
struct SUnreadableCapture {
    const char* pszName;
    Bytes aFile;
    std::string strError;
};
std::vector<SUnreadableCapture> UnreadableCaptures();
