#include "capture/Routes.h"

#include <cstring>

const std::array<SRouteRow, RouteCount>& RouteTable()
{
    static const std::array<SRouteRow, RouteCount> s_aRoutes = {{
        {RouteHCI, "hci", nullptr, -1, "Bluetooth HCI packets"},
        {RouteBulkOnlyWrapper, "bot", nullptr, -1, "bulk-only command block and command status wrappers"},
        {RouteSCSICommand, "scsi", nullptr, -1, "SCSI command blocks with their data phase"},
        {RouteRBCCommand, "rbc", "scsi", -1, "block commands of a direct-access device"},
        {RouteATAPICommand, "atapi", "scsi", -1, "multimedia commands of an optical device"},
        {RouteHubRequest, "hub", nullptr, -1, "hub class requests"},
        {RouteHubNotification, "hub-notification", nullptr, -1, "hub status change bitmaps"},
        {RouteCDCRequest, "cdc", nullptr, -1, "communication class requests"},
        {RouteCDCNotification, "cdc-notification", nullptr, -1, "communication class notifications"},
        {RoutePrinterRequest, "printer", nullptr, -1, "printer class requests"},
        {RouteHIDRequest, "hid-request", nullptr, 0, "HID class requests"},
        {RouteHIDDescriptor, "hid", nullptr, 1, "HID descriptors"},
        {RouteHIDReportDescriptor, "hid-report", nullptr, 2, "HID report descriptors"},
        {RouteHIDPhysicalDescriptor, "hid-physical", nullptr, 3, "HID physical descriptors"},
        {RoutePPP, "ppp", nullptr, -1, "PPP frames"},
    }};
    return s_aRoutes;
}

int HIDSelectorOfAlias(const char* pszAlias)
{
    for (const SRouteRow& row : RouteTable())
        if (row.nHIDSelector >= 0 && std::strcmp(row.pszAlias, pszAlias) == 0)
            return row.nHIDSelector;
    return -1;
}

SResolvedRoute ResolveRoute(ERoute eRoute)
{
    const SRouteRow& row = RouteTable()[eRoute];
    SResolvedRoute route;
    route.pEntry = FindDecoder(row.pszAlias);
    if (!route.pEntry && row.pszFallback)
        route.pEntry = FindDecoder(row.pszFallback);
    if (!route.pEntry)
        route.strMissing = std::string("no decoder registered for ") + row.pszAlias;
    else if (const int nSelector = HIDSelectorOfAlias(route.pEntry->pszAlias); nSelector >= 0)
        route.options.nHIDSelector = nSelector;
    return route;
}
