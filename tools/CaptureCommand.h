// busdecode -r FILE [DECODER]: a capture read record by record, its records
// routed to decoders, each packet printed as it is decoded.
#pragma once

#include <string>
#include <vector>

#include "registry/DecoderRegistry.h"

struct SCaptureOptions {
    std::string strPath;                   // "-" for standard input
    const SDecoderEntry* pForced = nullptr;  // DECODER: takes every record's payload
    bool bJson = false;
    bool bStats = false;  // the table of packets per decoder after the packets
    bool bAll = false;    // records that no route took printed as undecoded lines
    bool bQuiet = false;  // no packet printed
    int nHCIKind = 0;     // for records of no HCI kind of their own, when a decoder is forced
    std::vector<std::string> aUsbClasses;  // BUS.DEVICE[.INTERFACE]=NAME
};

// Exit status: 0 the capture was read to its end, 1 it is damaged (every
// record before the damage was decoded and printed), 2 it cannot be read as
// a capture or an option is wrong.
int RunCapture(const SCaptureOptions& options);
