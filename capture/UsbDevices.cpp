#include "capture/UsbDevices.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::uint8_t kGetDescriptor = 6;
constexpr std::uint8_t kSetAddress = 5;
constexpr std::uint8_t kDescriptorDevice = 1;
constexpr std::uint8_t kDescriptorConfiguration = 2;
constexpr std::uint8_t kDescriptorInterface = 4;
constexpr std::uint8_t kDescriptorEndpoint = 5;
constexpr std::uint16_t kWholeDevice = 0x100;

std::uint64_t OverrideKey(std::uint16_t nBus, std::uint16_t nDevice, std::uint16_t nInterface)
{
    return std::uint64_t(nBus) << 32 | std::uint64_t(nDevice) << 16 | nInterface;
}

struct SClassName {
    const char* pszName;
    SUsbClass cls;
};

// The names --usb-class takes, with the class, subclass and protocol they
// stand for (the subclass of mass storage tells its device kind).
const SClassName kClassNames[] = {
    {"hub", {true, UsbClassHub, 0, 0}},
    {"cdc", {true, UsbClassCDC, 2, 1}},
    {"cdc-data", {true, UsbClassCDCData, 0, 0}},
    {"printer", {true, UsbClassPrinter, 1, 2}},
    {"hid", {true, UsbClassHID, 0, 0}},
    {"mass-storage", {true, UsbClassMassStorage, 6, 0x50}},
    {"mass-storage-optical", {true, UsbClassMassStorage, 2, 0x50}},
    {"hci", {true, UsbClassWireless, 1, 1}},
};

bool ParseNumber(const std::string& s, unsigned long nMax, unsigned long& n)
{
    if (s.empty() || s[0] == '-' || s[0] == '+' || s.size() > 8)
        return false;
    char* pEnd = nullptr;
    errno = 0;
    n = std::strtoul(s.c_str(), &pEnd, 0);
    return errno == 0 && *pEnd == '\0' && n <= nMax;
}

}  // namespace

CUsbDevices::SDevice* CUsbDevices::Device(std::uint16_t nBus, std::uint16_t nDevice)
{
    const auto it = m_mapDevices.find(Key(nBus, nDevice));
    if (it != m_mapDevices.end())
        return &it->second;
    if (m_mapDevices.size() >= kMaxDevices)
        return nullptr;
    return &m_mapDevices[Key(nBus, nDevice)];
}

const CUsbDevices::SDevice* CUsbDevices::Find(std::uint16_t nBus, std::uint16_t nDevice) const
{
    const auto it = m_mapDevices.find(Key(nBus, nDevice));
    return it == m_mapDevices.end() ? nullptr : &it->second;
}

void CUsbDevices::LearnConfiguration(SDevice& device, const std::vector<std::uint8_t>& aData)
{
    // The configuration descriptor is followed by its interface and endpoint
    // descriptors (and class descriptors, passed over); each says its length.
    int nCurrent = -1;
    for (std::size_t i = 0; i + 2 <= aData.size();) {
        const std::uint8_t nLength = aData[i], nType = aData[i + 1];
        if (nLength < 2 || i + nLength > aData.size())
            break;
        if (nType == kDescriptorInterface && nLength >= 9) {
            const std::uint8_t nNumber = aData[i + 2], nAlternate = aData[i + 3];
            const SUsbClass cls{true, aData[i + 5], aData[i + 6], aData[i + 7]};
            nCurrent = nNumber;
            SInterface* pInterface = nullptr;
            for (SInterface& interface : device.aInterfaces)
                if (interface.nNumber == nNumber)
                    pInterface = &interface;
            if (!pInterface) {
                device.aInterfaces.push_back({nNumber, cls});
            } else if (nAlternate == 0) {
                pInterface->cls = cls;
            }
        } else if (nType == kDescriptorEndpoint && nLength >= 7 && nCurrent >= 0) {
            const std::uint8_t nAddress = aData[i + 2];
            device.aEndpointInterface[(nAddress & 0x0F) | ((nAddress & 0x80) ? 16 : 0)] =
                static_cast<std::int16_t>(nCurrent);
        }
        i += nLength;
    }
}

void CUsbDevices::Learn(const SUsbControlTransfer& transfer)
{
    const std::uint8_t nType = transfer.aSetup[0], nRequest = transfer.aSetup[1];
    const std::uint16_t wValue = static_cast<std::uint16_t>(transfer.aSetup[2] | transfer.aSetup[3] << 8);
    if (nType == 0x00 && nRequest == kSetAddress && transfer.nStatus == 0) {
        // The device at address 0 takes its new address: what it said there
        // is its own, and whatever was known at that address is gone.
        const std::uint16_t nNew = wValue & 0x7F;
        SDevice moved;
        const auto it = m_mapDevices.find(Key(transfer.nBus, transfer.nDevice));
        if (it != m_mapDevices.end()) {
            moved = it->second;
            m_mapDevices.erase(it);
        }
        m_mapDevices.erase(Key(transfer.nBus, nNew));
        if (SDevice* pDevice = Device(transfer.nBus, nNew))
            *pDevice = moved;
        return;
    }
    if (nType != 0x80 || nRequest != kGetDescriptor || transfer.aData.size() < 2)
        return;
    SDevice* pDevice = Device(transfer.nBus, transfer.nDevice);
    if (!pDevice)
        return;
    const std::uint8_t nDescriptor = static_cast<std::uint8_t>(wValue >> 8);
    if (nDescriptor == kDescriptorDevice && transfer.aData.size() >= 7 && transfer.aData[1] == kDescriptorDevice) {
        pDevice->cls = SUsbClass{true, transfer.aData[4], transfer.aData[5], transfer.aData[6]};
    } else if (nDescriptor == kDescriptorConfiguration && transfer.aData[1] == kDescriptorConfiguration) {
        LearnConfiguration(*pDevice, transfer.aData);
    }
}

void CUsbDevices::NoteHub(std::uint16_t nBus, std::uint16_t nDevice)
{
    SDevice* pDevice = Device(nBus, nDevice);
    if (pDevice && !pDevice->cls.bKnown)
        pDevice->cls = SUsbClass{true, UsbClassHub, 0, 0};
}

bool CUsbDevices::AddOverride(const std::string& strSpec, std::string& strError)
{
    const std::size_t nEquals = strSpec.find('=');
    if (nEquals == std::string::npos) {
        strError = "\"" + strSpec + "\" is not BUS.DEVICE[.INTERFACE]=NAME";
        return false;
    }
    const std::string strWhere = strSpec.substr(0, nEquals), strName = strSpec.substr(nEquals + 1);
    std::vector<std::string> aParts;
    for (std::size_t nStart = 0;;) {
        const std::size_t nDot = strWhere.find('.', nStart);
        aParts.push_back(strWhere.substr(nStart, nDot - nStart));
        if (nDot == std::string::npos)
            break;
        nStart = nDot + 1;
    }
    unsigned long nBus = 0, nDevice = 0, nInterface = kWholeDevice;
    if (aParts.size() < 2 || aParts.size() > 3 || !ParseNumber(aParts[0], 0xFFFF, nBus) ||
        !ParseNumber(aParts[1], 127, nDevice) || (aParts.size() == 3 && !ParseNumber(aParts[2], 255, nInterface))) {
        strError = "\"" + strWhere + "\" is not BUS.DEVICE or BUS.DEVICE.INTERFACE (bus 0-65535, device 0-127, interface 0-255)";
        return false;
    }
    SUsbClass cls;
    for (const SClassName& name : kClassNames)
        if (strName == name.pszName)
            cls = name.cls;
    unsigned long nClass = 0;
    if (!cls.bKnown && ParseNumber(strName, 0xFF, nClass))
        cls = SUsbClass{true, static_cast<std::uint8_t>(nClass), 0, 0};
    if (!cls.bKnown) {
        strError = "unknown USB class \"" + strName +
                   "\" (hub, cdc, cdc-data, printer, hid, mass-storage, mass-storage-optical, hci or a class number)";
        return false;
    }
    m_mapOverrides[OverrideKey(static_cast<std::uint16_t>(nBus), static_cast<std::uint16_t>(nDevice),
                               static_cast<std::uint16_t>(nInterface))] = cls;
    return true;
}

int CUsbDevices::InterfaceOf(std::uint16_t nBus, std::uint16_t nDevice, std::uint8_t nEndpointAddress) const
{
    const SDevice* pDevice = Find(nBus, nDevice);
    return pDevice ? pDevice->aEndpointInterface[(nEndpointAddress & 0x0F) | ((nEndpointAddress & 0x80) ? 16 : 0)] : -1;
}

SUsbClass CUsbDevices::ClassOf(std::uint16_t nBus, std::uint16_t nDevice, int nInterface) const
{
    if (!m_mapOverrides.empty()) {
        if (nInterface >= 0) {
            const auto it = m_mapOverrides.find(OverrideKey(nBus, nDevice, static_cast<std::uint16_t>(nInterface)));
            if (it != m_mapOverrides.end())
                return it->second;
        }
        const auto it = m_mapOverrides.find(OverrideKey(nBus, nDevice, kWholeDevice));
        if (it != m_mapOverrides.end())
            return it->second;
    }
    const SDevice* pDevice = Find(nBus, nDevice);
    if (!pDevice)
        return SUsbClass{};
    if (nInterface >= 0)
        for (const SInterface& interface : pDevice->aInterfaces)
            if (interface.nNumber == nInterface)
                return interface.cls;
    // A device that states its class (a hub) answers for all of itself; one
    // that leaves it to its interfaces answers for the one it has.
    if (pDevice->cls.bKnown && pDevice->cls.nClass != UsbClassPerInterface &&
        pDevice->cls.nClass != UsbClassMiscellaneous)
        return pDevice->cls;
    if (nInterface < 0 && pDevice->aInterfaces.size() == 1)
        return pDevice->aInterfaces.front().cls;
    return SUsbClass{};
}
