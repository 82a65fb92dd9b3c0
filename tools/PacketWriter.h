// Everything the tool writes about a decoded packet, in one place: the JSON
// object of one line and the field tree, for plain payloads and for the
// packets of a capture (with their frame, time and link), the lines of
// records that no route took, and the table of --stats.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "capture/CaptureRouter.h"
#include "core/ProtocolPacket.h"
#include "registry/DecoderRegistry.h"

// Where a packet of a capture came from.
struct SPacketOrigin {
    std::uint64_t nFrame = 0;
    std::int64_t nTime = 0;  // microseconds since the epoch
    SPacketLink link;
};

// What --stats counts.
struct SCaptureStats {
    struct SDecoder {
        std::uint64_t nPackets = 0;
        std::map<std::string, std::uint64_t> mapRequests;  // by request name
    };
    std::uint64_t nRecords = 0;
    std::uint64_t nPackets = 0;
    std::map<std::string, SDecoder> mapDecoders;       // by class name
    std::map<std::string, std::uint64_t> mapUnrouted;  // records by reason
};

// Text in double quotes, control characters as \xNN.
std::string Quoted(const std::string& s);

class CPacketWriter {
public:
    explicit CPacketWriter(bool bJson) : m_bJson(bJson) {}

    // One decoded packet of nBytes bytes; pOrigin is null for a plain
    // payload, whose field-tree header counts payloads (nOrdinal, from 1).
    void Packet(const SDecoderEntry& entry, const CProtocolPacket& packet, int nResult, std::size_t nBytes,
                std::size_t nOrdinal, const SPacketOrigin* pOrigin);
    // A record (or payload) that no route took, for --all.
    void Undecoded(const SUnroutedRecord& record);
    void Stats(const SCaptureStats& stats);
    // Writes out what is buffered (at the end and before any error line).
    void Flush();

private:
    bool m_bJson;
};
