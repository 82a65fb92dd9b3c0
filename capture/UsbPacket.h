// USB packets of the Linux usbmon (link types 189 and 220) and USBPcap (249)
// capture headers, and the control transfers they make up: the setup stage
// with its data stage, matched submission to completion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

enum EUsbTransfer : int {
    UsbIsochronous = 0,
    UsbInterrupt = 1,
    UsbControl = 2,
    UsbBulk = 3,
    UsbOtherTransfer = 4,  // USBPcap's IRP information and unknown kinds
};

enum EUsbEvent : int {
    UsbSubmit = 0,    // the host hands the request down (usbmon 'S', USBPcap FDO to PDO)
    UsbComplete = 1,  // the request comes back (usbmon 'C', USBPcap PDO to FDO)
    UsbError = 2,     // usbmon 'E': the submission failed
};

struct SUsbPacket {
    std::uint64_t nId = 0;      // the URB or IRP that the packet belongs to
    std::uint16_t nBus = 0;
    std::uint16_t nDevice = 0;
    std::uint8_t nEndpoint = 0;  // 0 to 15, without the direction bit
    bool bIn = false;            // the endpoint's direction is device to host
    EUsbTransfer eTransfer = UsbOtherTransfer;
    EUsbEvent eEvent = UsbSubmit;
    bool bSetup = false;         // aSetup holds a setup packet
    std::uint8_t aSetup[8] = {};
    std::int32_t nStatus = 0;    // usbmon: errno-style; USBPcap: USBD_STATUS
    std::uint32_t nLength = 0;   // the transfer length the header states
    int nControlStage = -1;      // USBPcap: 0 setup, 1 data, 2 status, 3 complete; else -1
    const std::uint8_t* pData = nullptr;  // the data bytes captured (into the record)
    std::size_t nData = 0;
};

// Parses a record of link type 189, 220 or 249. False when the record is too
// short for its header or of another link type.
bool ParseUsbPacket(int nLinkType, const std::uint8_t* pRecord, std::size_t nRecord, SUsbPacket& packet);

// One control transfer: the eight setup bytes and the data of its data stage
// (sent with the submission for OUT requests, returned with the completion
// for IN requests).
struct SUsbControlTransfer {
    std::uint16_t nBus = 0;
    std::uint16_t nDevice = 0;
    std::uint8_t nEndpoint = 0;
    std::uint8_t aSetup[8] = {};
    std::vector<std::uint8_t> aData;
    std::int32_t nStatus = 0;
    std::uint64_t nSubmitFrame = 0;   // the record of the setup stage
    std::uint64_t nCompleteFrame = 0; // the record that completed it
    std::int64_t nCompleteTime = 0;
};

// Pairs setup stages with their completions. Open transfers are bounded: the
// oldest is dropped when more than kMaxOpen wait, and each holds at most the
// 65,535 bytes a setup packet can ask for.
class CUsbControlAssembler {
public:
    static constexpr std::size_t kMaxOpen = 4096;

    // Feeds one packet of record nFrame; true when it completed a control
    // transfer, which Transfer() then holds until the next call.
    bool Add(const SUsbPacket& packet, std::uint64_t nFrame, std::int64_t nTime);
    const SUsbControlTransfer& Transfer() const noexcept { return m_done; }
    std::size_t Open() const noexcept { return m_mapOpen.size(); }
    void Clear() { m_mapOpen.clear(); }

private:
    struct SKey {
        std::uint64_t nId;
        std::uint16_t nBus;
        bool operator==(const SKey& o) const noexcept { return nId == o.nId && nBus == o.nBus; }
    };
    struct SKeyHash {
        std::size_t operator()(const SKey& k) const noexcept
        {
            return static_cast<std::size_t>(k.nId * 0x9E3779B97F4A7C15ull ^ k.nBus);
        }
    };
    struct SOpen {
        SUsbControlTransfer transfer;
        std::uint64_t nSequence;
    };
    void Append(SUsbControlTransfer& transfer, const SUsbPacket& packet);
    bool Finish(std::unordered_map<SKey, SOpen, SKeyHash>::iterator it, const SUsbPacket& packet,
                std::uint64_t nFrame, std::int64_t nTime);

    std::unordered_map<SKey, SOpen, SKeyHash> m_mapOpen;
    std::uint64_t m_nSequence = 0;
    SUsbControlTransfer m_done;
};
