#include "capture/UsbPacket.h"

#include <algorithm>
#include <cstring>

#include "capture/CaptureReader.h"

namespace {

std::uint16_t LE16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }
std::uint32_t LE32(const std::uint8_t* p) { return static_cast<std::uint32_t>(LE16(p)) | static_cast<std::uint32_t>(LE16(p + 2)) << 16; }
std::uint64_t LE64(const std::uint8_t* p) { return LE32(p) | static_cast<std::uint64_t>(LE32(p + 4)) << 32; }

constexpr std::size_t kUsbmonHeader = 48;
constexpr std::size_t kUsbmonMmappedHeader = 64;
constexpr std::size_t kUsbPcapHeader = 27;
constexpr std::size_t kMaxControlData = 0xFFFF;

// The usbmon header (struct usbmon_packet): id, type, transfer type,
// endpoint with direction, device, bus, setup and data flags, time, status,
// URB length, captured length, setup bytes; the mmapped form adds interval,
// start frame, transfer flags and the count of isochronous descriptors,
// which precede the data.
bool ParseUsbmon(const std::uint8_t* p, std::size_t n, bool bMmapped, SUsbPacket& packet)
{
    const std::size_t nHeader = bMmapped ? kUsbmonMmappedHeader : kUsbmonHeader;
    if (n < nHeader)
        return false;
    packet.nId = LE64(p);
    packet.eEvent = p[8] == 'S' ? UsbSubmit : p[8] == 'C' ? UsbComplete : UsbError;
    packet.eTransfer = p[9] <= 3 ? static_cast<EUsbTransfer>(p[9]) : UsbOtherTransfer;
    packet.nEndpoint = p[10] & 0x0F;
    packet.bIn = (p[10] & 0x80) != 0;
    packet.nDevice = p[11];
    packet.nBus = LE16(p + 12);
    packet.bSetup = p[14] == 0 && packet.eTransfer == UsbControl;
    packet.nStatus = static_cast<std::int32_t>(LE32(p + 28));
    packet.nLength = LE32(p + 32);
    std::memcpy(packet.aSetup, p + 40, 8);
    if (!packet.bSetup)
        std::memset(packet.aSetup, 0, 8);
    packet.nControlStage = -1;
    std::size_t nSkip = nHeader;
    if (bMmapped && packet.eTransfer == UsbIsochronous) {
        // Each isochronous descriptor takes 16 bytes before the data.
        const std::uint64_t nDescriptors = LE32(p + 60);
        nSkip = static_cast<std::size_t>(std::min<std::uint64_t>(n, nHeader + nDescriptors * 16));
    }
    const std::uint32_t nCaptured = LE32(p + 36);
    packet.pData = p + nSkip;
    packet.nData = std::min<std::size_t>(n - nSkip, nCaptured);
    return true;
}

// The USBPcap header: header length, IRP id, USBD status, URB function,
// information (bit 0: the IRP travels from the device's driver back up),
// bus, device, endpoint with direction, transfer type, data length; control
// transfers add their stage. The data follows the header length.
bool ParseUsbPcap(const std::uint8_t* p, std::size_t n, SUsbPacket& packet)
{
    if (n < kUsbPcapHeader)
        return false;
    const std::size_t nHeader = LE16(p);
    if (nHeader < kUsbPcapHeader || nHeader > n)
        return false;
    packet.nId = LE64(p + 2);
    packet.nStatus = static_cast<std::int32_t>(LE32(p + 10));
    packet.eEvent = (p[16] & 1) ? UsbComplete : UsbSubmit;
    packet.nBus = LE16(p + 17);
    packet.nDevice = LE16(p + 19);
    packet.nEndpoint = p[21] & 0x0F;
    packet.bIn = (p[21] & 0x80) != 0;
    packet.eTransfer = p[22] <= 3 ? static_cast<EUsbTransfer>(p[22]) : UsbOtherTransfer;
    packet.nLength = LE32(p + 23);
    packet.nControlStage = packet.eTransfer == UsbControl && nHeader >= kUsbPcapHeader + 1 ? p[27] : -1;
    packet.pData = p + nHeader;
    packet.nData = n - nHeader;
    packet.bSetup = false;
    std::memset(packet.aSetup, 0, 8);
    if (packet.nControlStage == 0 && packet.nData >= 8) {
        // The setup stage carries the setup packet as its data.
        std::memcpy(packet.aSetup, packet.pData, 8);
        packet.bSetup = true;
        packet.pData += 8;
        packet.nData -= 8;
    }
    return true;
}

}  // namespace

bool ParseUsbPacket(int nLinkType, const std::uint8_t* pRecord, std::size_t nRecord, SUsbPacket& packet)
{
    packet = SUsbPacket();
    switch (nLinkType) {
    case LinkTypeUsbLinux:
        return ParseUsbmon(pRecord, nRecord, false, packet);
    case LinkTypeUsbLinuxMmapped:
        return ParseUsbmon(pRecord, nRecord, true, packet);
    case LinkTypeUsbPcap:
        return ParseUsbPcap(pRecord, nRecord, packet);
    default:
        return false;
    }
}

void CUsbControlAssembler::Append(SUsbControlTransfer& transfer, const SUsbPacket& packet)
{
    const std::size_t nRoom = kMaxControlData - std::min(kMaxControlData, transfer.aData.size());
    transfer.aData.insert(transfer.aData.end(), packet.pData, packet.pData + std::min(nRoom, packet.nData));
}

bool CUsbControlAssembler::Finish(std::unordered_map<SKey, SOpen, SKeyHash>::iterator it, const SUsbPacket& packet,
                                  std::uint64_t nFrame, std::int64_t nTime)
{
    m_done = std::move(it->second.transfer);
    m_mapOpen.erase(it);
    m_done.nStatus = packet.nStatus;
    m_done.nCompleteFrame = nFrame;
    m_done.nCompleteTime = nTime;
    return true;
}

bool CUsbControlAssembler::Add(const SUsbPacket& packet, std::uint64_t nFrame, std::int64_t nTime)
{
    if (packet.eTransfer != UsbControl)
        return false;
    const SKey key{packet.nId, packet.nBus};

    if (packet.bSetup) {
        // A new transfer; an unfinished one of the same id was abandoned.
        if (m_mapOpen.size() >= kMaxOpen) {
            auto oldest = std::min_element(m_mapOpen.begin(), m_mapOpen.end(), [](const auto& a, const auto& b) {
                return a.second.nSequence < b.second.nSequence;
            });
            m_mapOpen.erase(oldest);
        }
        SOpen& open = m_mapOpen[key];
        open = SOpen{};
        open.nSequence = ++m_nSequence;
        SUsbControlTransfer& transfer = open.transfer;
        transfer.nBus = packet.nBus;
        transfer.nDevice = packet.nDevice;
        transfer.nEndpoint = packet.nEndpoint;
        std::memcpy(transfer.aSetup, packet.aSetup, 8);
        transfer.nSubmitFrame = nFrame;
        const bool bDeviceToHost = (packet.aSetup[0] & 0x80) != 0;
        if (!bDeviceToHost)
            Append(transfer, packet);  // usbmon: the OUT data rides with the submission
        if (packet.eEvent == UsbError)
            return Finish(m_mapOpen.find(key), packet, nFrame, nTime);
        return false;
    }

    auto it = m_mapOpen.find(key);
    if (it == m_mapOpen.end())
        return false;
    SUsbControlTransfer& transfer = it->second.transfer;
    const bool bDeviceToHost = (transfer.aSetup[0] & 0x80) != 0;

    if (packet.nControlStage < 0) {
        // usbmon: the completion ends the transfer; IN data comes with it.
        if (packet.eEvent == UsbSubmit)
            return false;
        if (bDeviceToHost)
            Append(transfer, packet);
        return Finish(it, packet, nFrame, nTime);
    }
    // USBPcap: data stages add their bytes in either direction; the status
    // stage, or the complete stage of older versions, ends the transfer.
    if (packet.nControlStage == 1 || packet.nControlStage == 3)
        Append(transfer, packet);
    if (packet.nControlStage == 2 || packet.nControlStage == 3)
        return Finish(it, packet, nFrame, nTime);
    return false;
}
