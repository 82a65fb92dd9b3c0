// libFuzzer entry over captures: the input is read as a capture file of any
// format the reader recognises, record by record; the records are routed and
// every payload is decoded by the decoder its route names, as the tool does.
#include <sys/mman.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "capture/CaptureReader.h"
#include "capture/CaptureRouter.h"

namespace {

class CDecodeAll : public ICaptureSink {
public:
    void Payload(const SRoutedPayload& payload) override
    {
        std::unique_ptr<CProtocolPacket> pPacket = payload.pEntry->pfnNewPacket(payload.options);
        const CAdvAnlzData data = CAdvAnlzData::FromBytes(payload.pData, static_cast<std::uint32_t>(payload.nData * 8));
        payload.pEntry->pfnDecode(*pPacket, data, payload.options);
    }
    void Unrouted(const SUnroutedRecord&) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    // One file in memory for the whole run, rewritten for each input.
    static const int s_nFile = memfd_create("capture", 0);
    if (s_nFile < 0 || ftruncate(s_nFile, 0) != 0 ||
        pwrite(s_nFile, pData, nSize, 0) != static_cast<ssize_t>(nSize))
        return 0;
    std::string strError;
    const std::unique_ptr<CCaptureReader> pReader =
        CCaptureReader::Open("/proc/self/fd/" + std::to_string(s_nFile), strError);
    if (!pReader)
        return 0;
    CDecodeAll sink;
    CCaptureRouter router(sink);
    SCaptureRecord record;
    while (pReader->Next(record) == CaptureRecord)
        router.Feed(record);
    router.Finish();
    return 0;
}
