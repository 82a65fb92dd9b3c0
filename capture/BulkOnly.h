// Bulk-only mass storage as a capture shows it: a command block wrapper on
// the bulk OUT endpoint, a data phase in either direction, a command status
// wrapper on the bulk IN endpoint. A session per device holds the command
// that is open and the data of its phase, and the kind of each logical unit
// (direct access, optical) that decides which command set reads a command.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "capture/Routes.h"

constexpr std::size_t kCommandBlockWrapperLength = 31;
constexpr std::size_t kCommandStatusWrapperLength = 13;

enum EStorageKind : std::uint8_t {
    StorageUnknown,
    StorageDirectAccess,
    StorageOptical,
    StorageOther,
};

// The "USBC" signature on a transfer of wrapper length.
bool IsCommandBlockWrapper(const std::uint8_t* pData, std::size_t nData);
// The "USBS" signature on a transfer of wrapper length.
bool IsCommandStatusWrapper(const std::uint8_t* pData, std::size_t nData);

// The length of a command block: by the operation code's group (6, 10, 12
// or 16 bytes), else as the wrapper states it (1 to 16).
std::uint8_t CommandBlockLength(std::uint8_t nOpCode, std::uint8_t nWrapperLength);

// The kind from the peripheral device type of INQUIRY data, and from the
// mass-storage interface subclass.
EStorageKind StorageKindOfPeripheral(std::uint8_t nPeripheralByte);
EStorageKind StorageKindOfSubclass(std::uint8_t nSubClass);

// The route of a command: block commands of a direct-access unit to the
// RBC decoder, multimedia commands of an optical unit to the ATAPI decoder,
// every other command to the SCSI decoder.
ERoute RouteOfCommand(EStorageKind eKind, std::uint8_t nOpCode);

struct SBulkOnlySession {
    // The open command.
    bool bOpen = false;
    std::uint32_t nTag = 0;
    std::uint32_t nExpected = 0;  // the data transfer length the wrapper asks for
    bool bDataIn = false;
    std::uint8_t nLun = 0;
    std::uint8_t nSubClass = 0;   // of the interface, when known
    std::uint8_t nCommand = 0;
    std::uint8_t aCommand[16] = {};
    std::vector<std::uint8_t> aData;  // the data phase, up to kMaxData
    std::uint64_t nDataSeen = 0;      // bytes of the data phase, kept or not
    // The endpoints, learned from the wrappers (0: not yet known).
    std::uint8_t nOutEndpoint = 0;
    std::uint8_t nInEndpoint = 0;
    std::array<EStorageKind, 16> aKind{};  // by logical unit, from INQUIRY data
    // The last record of the open command, where it is emitted should its
    // status never come.
    std::uint64_t nLastFrame = 0;
    std::int64_t nLastTime = 0;
    std::uint8_t nLastEndpoint = 0;
    bool bLastIn = false;

    static constexpr std::size_t kMaxData = 1024 * 1024;

    void Open(const std::uint8_t* pWrapper, std::uint8_t nInterfaceSubClass);
    void AddData(const std::uint8_t* pData, std::size_t nData);
    bool AwaitsData(bool bIn) const { return bOpen && bDataIn == bIn && nDataSeen < nExpected; }
    // The command block followed by its data phase, and the route that
    // reads it; learns the unit's kind from INQUIRY data. Closes the command.
    ERoute TakeCommand(std::vector<std::uint8_t>& aPayload);
};

class CBulkOnlySessions {
public:
    static constexpr std::size_t kMaxSessions = 4096;

    // The session of a device; created when asked and room is left, else null.
    SBulkOnlySession* Find(std::uint16_t nBus, std::uint16_t nDevice, bool bCreate);
    // The sessions with an open command, by bus and device, in the order of
    // their last record.
    struct SOpen {
        std::uint16_t nBus;
        std::uint16_t nDevice;
        SBulkOnlySession* pSession;
    };
    std::vector<SOpen> OpenSessions();

private:
    std::unordered_map<std::uint32_t, SBulkOnlySession> m_mapSessions;
};
