#include "registry/DecoderRegistry.h"

#include "storage/MassStorageBulkOnlyWrapper.h"

const std::vector<SDecoderEntry>& GetDecoderRegistry()
{
    static const std::vector<SDecoderEntry> s_aEntries = {
        MakeDecoderEntry<CMassStorageBulkOnlyWrapperSpec, CMassStorageBulkOnlyWrapperPacket>(
            "CMassStorageBulkOnlyWrapperSpec", "bot"),
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
