#include "registry/DecoderRegistry.h"

#include "hci/HCISpec.h"
#include "serial/HDLCSpec.h"
#include "serial/PPPSpec.h"
#include "storage/MassStorageBulkOnlyWrapper.h"
#include "storage/SCSIProtocol.h"

const std::vector<SDecoderEntry>& GetDecoderRegistry()
{
    static const std::vector<SDecoderEntry> s_aEntries = {
        MakeDecoderEntry<CMassStorageBulkOnlyWrapperSpec, CMassStorageBulkOnlyWrapperPacket>(
            "CMassStorageBulkOnlyWrapperSpec", "bot"),
        MakeDecoderEntry<CSCSIProtocolSpec, CSCSIProtocolPacket>("CSCSIProtocolSpec", "scsi"),
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
