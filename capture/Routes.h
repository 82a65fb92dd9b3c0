// The routes from capture traffic to decoders: one row per kind of payload
// that a capture yields, naming the decoder (by registry alias) that reads
// it and the decoder that takes it while that one is not registered.
//
// A route is resolved through the registry once, when a router is made, so a
// decoder that joins the registry later is used without any change here.
#pragma once

#include <array>
#include <string>

#include "registry/DecoderRegistry.h"

enum ERoute : int {
    RouteHCI,                // Bluetooth HCI packets with their kind
    RouteBulkOnlyWrapper,    // command block and command status wrappers
    RouteSCSICommand,        // a command block with its data phase
    RouteRBCCommand,         // the same, a block command of a direct-access device
    RouteATAPICommand,       // the same, a multimedia command of an optical device
    RouteHubRequest,         // setup-shaped: 8 setup bytes and the data stage
    RouteHubNotification,    // interrupt IN data of a hub
    RouteCDCRequest,         // setup-shaped
    RouteCDCNotification,    // interrupt IN data of a communication interface
    RoutePrinterRequest,     // setup-shaped
    RouteHIDRequest,         // setup-shaped HID class request
    RouteHIDDescriptor,      // setup-shaped GET_DESCRIPTOR of a HID descriptor
    RouteHIDReportDescriptor,
    RouteHIDPhysicalDescriptor,
    RoutePPP,                // a PPP frame
    RouteCount
};

struct SRouteRow {
    ERoute eRoute;
    const char* pszAlias;     // the decoder that reads this payload
    const char* pszFallback;  // the decoder that takes it meanwhile, or null
    int nHIDSelector;         // the HID selector the decoder is built with, or -1
    const char* pszCarries;   // what the route carries, for people
};

// The table, in ERoute order.
const std::array<SRouteRow, RouteCount>& RouteTable();

// A route as resolved against the registry: the decoder and its options, or
// null with the reason that its records are counted instead.
struct SResolvedRoute {
    const SDecoderEntry* pEntry = nullptr;
    SDecodeOptions options;
    std::string strMissing;  // "no decoder registered for hub" when pEntry is null
};

SResolvedRoute ResolveRoute(ERoute eRoute);

// The HID selector that an alias stands for (hid-request 0, hid 1,
// hid-report 2, hid-physical 3), or -1 for a decoder that takes none.
int HIDSelectorOfAlias(const char* pszAlias);
