#include "registry/DecoderRegistry.h"

#include "hci/HCISpec.h"
#include "storage/MassStorageBulkOnlyWrapper.h"
#include "storage/SCSIProtocol.h"
#include "usbclass/CommunicationClass.h"
#include "usbclass/CommunicationNotification.h"
#include "usbclass/CommunicationWrapper.h"
#include "usbclass/HubClass.h"
#include "usbclass/HubNotification.h"
#include "usbclass/PrinterClass.h"

const std::vector<SDecoderEntry>& GetDecoderRegistry()
{
    static const std::vector<SDecoderEntry> s_aEntries = {
        MakeDecoderEntry<CMassStorageBulkOnlyWrapperSpec, CMassStorageBulkOnlyWrapperPacket>(
            "CMassStorageBulkOnlyWrapperSpec", "bot"),
        MakeDecoderEntry<CSCSIProtocolSpec, CSCSIProtocolPacket>("CSCSIProtocolSpec", "scsi"),
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
