// What a capture tells of its USB devices: the device and interface classes
// and which interface owns each endpoint, learned from the standard
// descriptors that the enumeration reads, or said by the user
// (BUS.DEVICE[.INTERFACE]=NAME) when the enumeration is not in the capture.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "capture/UsbPacket.h"

enum : std::uint8_t {
    UsbClassPerInterface = 0x00,
    UsbClassCDC = 0x02,
    UsbClassHID = 0x03,
    UsbClassPrinter = 0x07,
    UsbClassMassStorage = 0x08,
    UsbClassHub = 0x09,
    UsbClassCDCData = 0x0A,
    UsbClassMiscellaneous = 0xEF,
    UsbClassWireless = 0xE0,
};

struct SUsbClass {
    bool bKnown = false;
    std::uint8_t nClass = 0;
    std::uint8_t nSubClass = 0;
    std::uint8_t nProtocol = 0;
};

class CUsbDevices {
public:
    // Devices remembered at most; more are not learned (a bus holds 127).
    static constexpr std::size_t kMaxDevices = 4096;

    // Learns from a completed control transfer: GET_DESCRIPTOR of the device
    // and configuration descriptors, and SET_ADDRESS, which moves what was
    // learned at address 0 to the new address.
    void Learn(const SUsbControlTransfer& transfer);
    // Marks a device as a hub when the descriptors have not said otherwise
    // (a hub's port requests show it before any descriptor may).
    void NoteHub(std::uint16_t nBus, std::uint16_t nDevice);

    // "BUS.DEVICE=NAME" or "BUS.DEVICE.INTERFACE=NAME"; NAME is hub, cdc,
    // cdc-data, printer, hid, mass-storage, mass-storage-optical, hci, or a
    // class number (9, 0x09). False with a text saying why.
    bool AddOverride(const std::string& strSpec, std::string& strError);

    // The interface that owns an endpoint (its address with the direction
    // bit), or -1 when no descriptor said.
    int InterfaceOf(std::uint16_t nBus, std::uint16_t nDevice, std::uint8_t nEndpointAddress) const;
    // The class of an interface, or of the device for a negative interface:
    // what the user said, then what the descriptors said.
    SUsbClass ClassOf(std::uint16_t nBus, std::uint16_t nDevice, int nInterface) const;

private:
    struct SInterface {
        std::uint8_t nNumber;
        SUsbClass cls;
    };
    struct SDevice {
        SUsbClass cls;
        std::vector<SInterface> aInterfaces;
        std::array<std::int16_t, 32> aEndpointInterface;  // by endpoint number, IN endpoints from 16
        SDevice() { aEndpointInterface.fill(-1); }
    };

    static std::uint32_t Key(std::uint16_t nBus, std::uint16_t nDevice) { return std::uint32_t(nBus) << 16 | nDevice; }
    SDevice* Device(std::uint16_t nBus, std::uint16_t nDevice);
    const SDevice* Find(std::uint16_t nBus, std::uint16_t nDevice) const;
    void LearnConfiguration(SDevice& device, const std::vector<std::uint8_t>& aData);

    std::unordered_map<std::uint32_t, SDevice> m_mapDevices;
    // Keyed by bus, device and interface (0x100 for the whole device).
    std::unordered_map<std::uint64_t, SUsbClass> m_mapOverrides;
};
