// Bluetooth HCI packets from a btsnoop capture file, each with the packet
// kind that the HCI decoder needs (the kind is not in the HCI bytes).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SBtSnoopPacket {
    int nKind;  // 0 command, 1 ACL host to controller, 2 ACL controller to host, 3 SCO, 4 event
    std::vector<std::uint8_t> aBytes;  // the HCI packet without any transport byte
};

struct SBtSnoopFile {
    bool bOK = false;
    std::string strError;  // why the file could not be read, when bOK is false
    std::vector<SBtSnoopPacket> aPackets;
    std::size_t nSkipped = 0;  // records of no HCI kind (e.g. vendor diagnostic H4 types)
};

// Reads a btsnoop file of datalink 1001 (HCI without transport byte, kind
// from the record flags) or 1002 (HCI UART, kind from the H4 type byte). A
// record cut short by the end of the file ends the list without error.
SBtSnoopFile ReadBtSnoop(const std::string& strPath);
