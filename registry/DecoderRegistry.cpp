#include "registry/DecoderRegistry.h"

#include "hci/HCISpec.h"
#include "hid/USBHIDPacket.h"
#include "hid/USBHIDPhysicalSpec.h"
#include "hid/USBHIDReportSpec.h"
#include "hid/USBHIDRequestSpec.h"
#include "hid/USBHIDSpec.h"
#include "serial/ATCommand.h"
#include "serial/HDLCSpec.h"
#include "serial/OBEX.h"
#include "serial/PPPSpec.h"
#include "storage/ATAPISpec.h"
#include "storage/MassStorageBulkOnlyWrapper.h"
#include "storage/RBCProtocol.h"
#include "storage/SCSIProtocol.h"
#include "usbclass/CommunicationClass.h"
#include "usbclass/CommunicationNotification.h"
#include "usbclass/CommunicationWrapper.h"
#include "usbclass/HubClass.h"
#include "usbclass/HubNotification.h"
#include "usbclass/PrinterClass.h"

namespace {

// The four HID decoders share one packet class; each entry fixes the
// packet's selector. A report descriptor packet adds its report items.
template <class TSpec, int nSelector>
SDecoderEntry MakeHIDEntry(const char* pszClassName, const char* pszAlias)
{
    SDecoderEntry entry{
        pszClassName,
        pszAlias,
        []() -> CProtocolSpec* { return TSpec::GetInstance(); },
        []() { TSpec::KillInstance(); },
        [](const SDecodeOptions&) -> std::unique_ptr<CProtocolPacket> {
            return std::make_unique<CUSBHIDPacket>(nSelector);
        },
        [](CProtocolPacket& packet, const CAdvAnlzData& data, const SDecodeOptions&) {
            return packet.RestructBy(data);
        },
        nullptr,
    };
    if (nSelector == CUSBHIDPacket::SelectorReportDescriptor) {
        entry.pfnExtras = [](const CProtocolPacket& packet) -> std::vector<SPacketExtra> {
            const CUSBHIDPacket& hid = static_cast<const CUSBHIDPacket&>(packet);
            std::vector<SExtraItem> aItems;
            for (int i = 0; i < hid.GetNumberOfReportItems(); ++i)
                aItems.push_back(SExtraItem{hid.GetReportItem(i).ToStdString(), hid.GetReportValue(i)});
            return {SPacketExtra::MakeItems("report_items", std::move(aItems))};
        };
    }
    return entry;
}

}  // namespace

const std::vector<SDecoderEntry>& GetDecoderRegistry()
{
    static const std::vector<SDecoderEntry> s_aEntries = {
        MakeDecoderEntry<CMassStorageBulkOnlyWrapperSpec, CMassStorageBulkOnlyWrapperPacket>(
            "CMassStorageBulkOnlyWrapperSpec", "bot"),
        MakeDecoderEntry<CSCSIProtocolSpec, CSCSIProtocolPacket>("CSCSIProtocolSpec", "scsi"),
        MakeDecoderEntry<CATAPISpec, CATAPIPacket>("CATAPISpec", "atapi"),
        MakeDecoderEntry<CRBCProtocolSpec, CRBCProtocolPacket>("CRBCProtocolSpec", "rbc"),
        MakeDecoderEntry<CHubClassSpec, CHubClassPacket>("CHubClassSpec", "hub"),
        MakeDecoderEntry<CHubNotificationSpec, CHubNotificationPacket>("CHubNotificationSpec", "hub-notification"),
        MakeDecoderEntry<CCommunicationClassSpec, CCommunicationClassPacket>("CCommunicationClassSpec", "cdc"),
        MakeDecoderEntry<CCommunicationNotificationSpec, CCommunicationNotificationPacket>(
            "CCommunicationNotificationSpec", "cdc-notification"),
        MakeDecoderEntry<CCommunicationWrapperSpec, CCommunicationWrapperPacket>("CCommunicationWrapperSpec",
                                                                                 "cdc-wrapper"),
        MakeDecoderEntry<CPrinterClassSpec, CPrinterClassPacket>("CPrinterClassSpec", "printer"),
        // HCI packets need their kind, which the bytes cannot tell, and show
        // the id of the field that holds a command's OCF.
        SDecoderEntry{
            "CHCISpec",
            "hci",
            []() -> CProtocolSpec* { return CHCISpec::GetInstance(); },
            []() { CHCISpec::KillInstance(); },
            [](const SDecodeOptions&) -> std::unique_ptr<CProtocolPacket> { return std::make_unique<CHCIPacket>(); },
            [](CProtocolPacket& packet, const CAdvAnlzData& data, const SDecodeOptions& options) {
                return static_cast<CHCIPacket&>(packet).RestructBy(data,
                                                                   static_cast<EHCIPacketKind>(options.nHCIKind));
            },
            [](const CProtocolPacket& packet) -> std::vector<SPacketExtra> {
                return {SPacketExtra::MakeNumber("opcode_ocf", static_cast<const CHCIPacket&>(packet).GetOpCodeOCF())};
            },
        },
        // HDLC fills a plain packet; the run of one bits it counts carries
        // from one payload to the next.
        SDecoderEntry{
            "CAdvAnlzHDLCSpec",
            "hdlc",
            []() -> CProtocolSpec* { return CAdvAnlzHDLCSpec::GetInstance(); },
            []() { CAdvAnlzHDLCSpec::KillInstance(); },
            [](const SDecodeOptions&) -> std::unique_ptr<CProtocolPacket> {
                return std::make_unique<CProtocolPacket>(CAdvAnlzHDLCSpec::GetInstance());
            },
            [](CProtocolPacket& packet, const CAdvAnlzData& data, const SDecodeOptions&) {
                return packet.RestructBy(data);
            },
            nullptr,
        },
        // PPP packets show the mask of the known protocols seen in them.
        [] {
            SDecoderEntry entry = MakeDecoderEntry<CAdvAnlzPPPSpec, CPPPPacket>("CAdvAnlzPPPSpec", "ppp");
            entry.pfnExtras = [](const CProtocolPacket& packet) -> std::vector<SPacketExtra> {
                return {SPacketExtra::MakeNumber("protocols_mask",
                                                 static_cast<const CPPPPacket&>(packet).GetProtocolsMask())};
            };
            return entry;
        }(),
        // AT packets name themselves with a format code and list the elements
        // they recognised.
        SDecoderEntry{
            "CAdvAnlzATCommandSpec",
            "at",
            []() -> CProtocolSpec* { return CAdvAnlzATCommandSpec::GetInstance(); },
            []() { CAdvAnlzATCommandSpec::KillInstance(); },
            [](const SDecodeOptions&) -> std::unique_ptr<CProtocolPacket> {
                return std::make_unique<CATCommandPacket>();
            },
            [](CProtocolPacket& packet, const CAdvAnlzData& data, const SDecodeOptions&) {
                return packet.RestructBy(data);
            },
            [](const CProtocolPacket& packet) -> std::vector<SPacketExtra> {
                const CATCommandPacket& at = static_cast<const CATCommandPacket&>(packet);
                CWordArray aList;
                at.GetCommandList(aList);
                return {SPacketExtra::MakeNumber("at_format", at.GetATPacketFormat()),
                        SPacketExtra::MakeNumbers("command_list", std::vector<long long>(aList.begin(), aList.end()))};
            },
        },
        MakeDecoderEntry<CAdvAnlzOBEXSpec, COBEXPacket>("CAdvAnlzOBEXSpec", "obex"),
        MakeHIDEntry<CUSBHIDRequestSpec, CUSBHIDPacket::SelectorRequest>("CUSBHIDRequestSpec", "hid-request"),
        MakeHIDEntry<CUSBHIDSpec, CUSBHIDPacket::SelectorHIDDescriptor>("CUSBHIDSpec", "hid"),
        MakeHIDEntry<CUSBHIDReportSpec, CUSBHIDPacket::SelectorReportDescriptor>("CUSBHIDReportSpec", "hid-report"),
        MakeHIDEntry<CUSBHIDPhysicalSpec, CUSBHIDPacket::SelectorPhysicalDescriptor>("CUSBHIDPhysicalSpec",
                                                                                     "hid-physical"),
    };
    return s_aEntries;
}

const SDecoderEntry* FindDecoder(const std::string& strName)
{
    for (const SDecoderEntry& entry : GetDecoderRegistry())
        if (strName == entry.pszClassName || strName == entry.pszAlias)
            return &entry;
    return nullptr;
}

void KillAllDecoders()
{
    for (const SDecoderEntry& entry : GetDecoderRegistry())
        entry.pfnKillSpec();
}
