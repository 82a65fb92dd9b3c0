// Decode cost of HCI packets: a command that goes through the opcode check
// and a group reader, and an ACL data packet with 64 data bytes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "core/AdvAnlzData.h"
#include "hci/HCISpec.h"

namespace {

CAdvAnlzData FromBytes(const std::vector<std::uint8_t>& aBytes)
{
    return CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(aBytes.size() * 8));
}

void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload, EHCIPacketKind eKind)
{
    CHCIPacket packet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload, eKind));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * payload.GetByteLength());
    state.counters["fields"] = packet.GetFieldCount();
}

// HCI_Create_Connection (OGF 1, OCF 5): BD_ADDR, packet types DM1/DH1,
// R1, mandatory page scan, clock offset 0x1234 valid, role switch allowed.
void BM_HCICreateConnection(benchmark::State& state)
{
    const CAdvAnlzData payload = FromBytes({0x05, 0x04, 0x0D, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x18, 0xCC,
                                            0x01, 0x00, 0x34, 0x92, 0x01});
    DecodeLoop(state, payload, HCICommandPacketType);
}
BENCHMARK(BM_HCICreateConnection);

// Handle 0x0001, first fragment, point to point, 64 bytes of data.
void BM_HCIACLData64(benchmark::State& state)
{
    std::vector<std::uint8_t> aBytes = {0x01, 0x20, 0x40, 0x00};
    for (int i = 0; i < 64; ++i)
        aBytes.push_back(static_cast<std::uint8_t>(i));
    DecodeLoop(state, FromBytes(aBytes), HCIACLHostToHostControllerDataPacketType);
}
BENCHMARK(BM_HCIACLData64);

}  // namespace
