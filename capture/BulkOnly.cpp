#include "capture/BulkOnly.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint8_t kOpInquiry = 0x12;

std::uint32_t LE32(const std::uint8_t* p)
{
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// Block commands that the RBC command set defines itself: FORMAT UNIT,
// START STOP UNIT, READ CAPACITY, READ(10), WRITE(10), VERIFY(10) and
// SYNCHRONIZE CACHE.
bool IsBlockCommand(std::uint8_t nOpCode)
{
    switch (nOpCode) {
    case 0x04: case 0x1B: case 0x25: case 0x28: case 0x2A: case 0x2F: case 0x35:
        return true;
    default:
        return false;
    }
}

// The multimedia commands of optical drives (the ATAPI packet commands):
// block access, TOC and sub-channel, disc and track information,
// configuration and events, recording, DVD structures and keys, CD audio.
bool IsMultimediaCommand(std::uint8_t nOpCode)
{
    switch (nOpCode) {
    case 0x04: case 0x1B: case 0x23: case 0x25: case 0x28: case 0x2A: case 0x2B: case 0x2E: case 0x2F:
    case 0x35: case 0x42: case 0x43: case 0x44: case 0x45: case 0x46: case 0x47: case 0x4A: case 0x4B:
    case 0x4E: case 0x51: case 0x52: case 0x53: case 0x54: case 0x55: case 0x58: case 0x5A: case 0x5B:
    case 0x5C: case 0x5D: case 0xA1: case 0xA2: case 0xA3: case 0xA4: case 0xA5: case 0xA6: case 0xA7:
    case 0xA8: case 0xAA: case 0xAC: case 0xAD: case 0xB6: case 0xB9: case 0xBA: case 0xBB: case 0xBC:
    case 0xBD: case 0xBE: case 0xBF:
        return true;
    default:
        return false;
    }
}

}  // namespace

bool IsCommandBlockWrapper(const std::uint8_t* pData, std::size_t nData)
{
    return nData == kCommandBlockWrapperLength && std::memcmp(pData, "USBC", 4) == 0;
}

bool IsCommandStatusWrapper(const std::uint8_t* pData, std::size_t nData)
{
    return nData == kCommandStatusWrapperLength && std::memcmp(pData, "USBS", 4) == 0;
}

std::uint8_t CommandBlockLength(std::uint8_t nOpCode, std::uint8_t nWrapperLength)
{
    switch (nOpCode >> 5) {
    case 0: return 6;
    case 1: case 2: return 10;
    case 4: return 16;
    case 5: return 12;
    default: return static_cast<std::uint8_t>(std::clamp<int>(nWrapperLength, 1, 16));
    }
}

EStorageKind StorageKindOfPeripheral(std::uint8_t nPeripheralByte)
{
    // A qualifier of 3 says no unit stands behind this LUN.
    if ((nPeripheralByte >> 5) == 3)
        return StorageUnknown;
    switch (nPeripheralByte & 0x1F) {
    case 0x00: case 0x0E: return StorageDirectAccess;  // direct access, simplified direct access
    case 0x05: return StorageOptical;
    default: return StorageOther;
    }
}

EStorageKind StorageKindOfSubclass(std::uint8_t nSubClass)
{
    switch (nSubClass) {
    case 1: case 6: return StorageDirectAccess;  // RBC, SCSI transparent
    case 2: case 5: return StorageOptical;       // MMC-2 (ATAPI), SFF-8070i
    default: return StorageUnknown;
    }
}

ERoute RouteOfCommand(EStorageKind eKind, std::uint8_t nOpCode)
{
    if (eKind == StorageDirectAccess && IsBlockCommand(nOpCode))
        return RouteRBCCommand;
    if (eKind == StorageOptical && IsMultimediaCommand(nOpCode))
        return RouteATAPICommand;
    return RouteSCSICommand;
}

void SBulkOnlySession::Open(const std::uint8_t* pWrapper, std::uint8_t nInterfaceSubClass)
{
    // Signature, tag, data transfer length, flags (bit 7: data in), LUN,
    // command block length, command block.
    bOpen = true;
    nTag = LE32(pWrapper + 4);
    nExpected = LE32(pWrapper + 8);
    bDataIn = (pWrapper[12] & 0x80) != 0;
    nLun = pWrapper[13] & 0x0F;
    nSubClass = nInterfaceSubClass;
    nCommand = CommandBlockLength(pWrapper[15], pWrapper[14] & 0x1F);
    std::memcpy(aCommand, pWrapper + 15, 16);
    aData.clear();
    nDataSeen = 0;
}

void SBulkOnlySession::AddData(const std::uint8_t* pData, std::size_t nData)
{
    const std::size_t nRoom = kMaxData - std::min(kMaxData, aData.size());
    aData.insert(aData.end(), pData, pData + std::min(nRoom, nData));
    nDataSeen += nData;
}

ERoute SBulkOnlySession::TakeCommand(std::vector<std::uint8_t>& aPayload)
{
    const std::uint8_t nOpCode = aCommand[0];
    if (nOpCode == kOpInquiry && !(aCommand[1] & 1) && !aData.empty()) {
        // Standard INQUIRY data: the unit says what it is.
        if (const EStorageKind eKind = StorageKindOfPeripheral(aData[0]); eKind != StorageUnknown)
            aKind[nLun] = eKind;
    }
    EStorageKind eKind = aKind[nLun];
    if (eKind == StorageUnknown)
        eKind = StorageKindOfSubclass(nSubClass);
    aPayload.assign(aCommand, aCommand + nCommand);
    aPayload.insert(aPayload.end(), aData.begin(), aData.end());
    bOpen = false;
    aData.clear();
    if (aData.capacity() > 64 * 1024)
        aData.shrink_to_fit();  // a long read's buffer is not kept while idle
    return RouteOfCommand(eKind, nOpCode);
}

SBulkOnlySession* CBulkOnlySessions::Find(std::uint16_t nBus, std::uint16_t nDevice, bool bCreate)
{
    const std::uint32_t nKey = std::uint32_t(nBus) << 16 | nDevice;
    const auto it = m_mapSessions.find(nKey);
    if (it != m_mapSessions.end())
        return &it->second;
    if (!bCreate || m_mapSessions.size() >= kMaxSessions)
        return nullptr;
    return &m_mapSessions[nKey];
}

std::vector<CBulkOnlySessions::SOpen> CBulkOnlySessions::OpenSessions()
{
    std::vector<SOpen> aOpen;
    for (auto& [nKey, session] : m_mapSessions)
        if (session.bOpen)
            aOpen.push_back({static_cast<std::uint16_t>(nKey >> 16), static_cast<std::uint16_t>(nKey & 0xFFFF), &session});
    std::sort(aOpen.begin(), aOpen.end(),
              [](const SOpen& a, const SOpen& b) { return a.pSession->nLastFrame < b.pSession->nLastFrame; });
    return aOpen;
}
