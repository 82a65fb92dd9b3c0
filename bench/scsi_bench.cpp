// Decode cost of SCSI commands with their data: a 10-byte READ BUFFER block
// with its header and data, a READ(10) block with a sector of data (no block
// reader: the opaque path), and an INQUIRY with 96 bytes of inquiry data.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/AdvAnlzData.h"
#include "storage/SCSIProtocol.h"

namespace {

CAdvAnlzData Payload(std::vector<std::uint8_t> aBlock, std::size_t nDataBytes, std::uint8_t nFill)
{
    aBlock.insert(aBlock.end(), nDataBytes, nFill);
    return CAdvAnlzData::FromBytes(aBlock.data(), static_cast<std::uint32_t>(aBlock.size() * 8));
}

void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload)
{
    CSCSIProtocolPacket packet;
    packet.RestructBy(payload);  // warm: records interned
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::DoNotOptimize(packet.GetFieldCount());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * payload.GetByteLength());
    state.counters["fields"] = packet.GetFieldCount();
}

void BM_ReadBufferWithData(benchmark::State& state)
{
    // Mode 0: combined header and data, 512 bytes allocated.
    DecodeLoop(state, Payload({0x3C, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x00, 0x01, 0xFC},
                              508, 0x5A));
}
BENCHMARK(BM_ReadBufferWithData);

void BM_Read10WithSector(benchmark::State& state)
{
    DecodeLoop(state, Payload({0x28, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00, 0x01, 0x00}, 512, 0xA5));
}
BENCHMARK(BM_Read10WithSector);

void BM_InquiryWithData(benchmark::State& state)
{
    std::vector<std::uint8_t> a = {0x12, 0x00, 0x00, 0x00, 0x60, 0x00,  // block, allocation length 96
                                   0x00, 0x80, 0x04, 0x02, 0x5B, 0x00, 0x10, 0x02};
    for (char c : std::string("VENDOR  PRODUCT NAME    1.00"))
        a.push_back(static_cast<std::uint8_t>(c));
    DecodeLoop(state, Payload(a, 96 - 36, 0x00));
}
BENCHMARK(BM_InquiryWithData);

}  // namespace
