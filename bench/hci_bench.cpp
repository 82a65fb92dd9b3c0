// Decode cost of HCI packets: a command that goes through the opcode check
// and a group reader, an ACL data packet with 64 data bytes, a Command
// Complete event with its return parameters, an Inquiry Result with three
// responses, and the Number Of Completed Packets event that fills a capture.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <iterator>
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

// Command Complete of HCI_Read_Local_Version_Information (OGF 4, OCF 1): one
// command credit, the opcode, status and five version fields.
void BM_HCICommandCompleteLocalVersion(benchmark::State& state)
{
    const CAdvAnlzData payload =
        FromBytes({0x0E, 0x0C, 0x01, 0x01, 0x10, 0x00, 0x04, 0x78, 0x02, 0x04, 0x0F, 0x00, 0x17, 0x42});
    DecodeLoop(state, payload, HCIEventPacketType);
}
BENCHMARK(BM_HCICommandCompleteLocalVersion);

// Inquiry Result with three responses of BD_ADDR, the three scan modes,
// class of device and clock offset each.
void BM_HCIInquiryResult3(benchmark::State& state)
{
    std::vector<std::uint8_t> aBytes = {0x02, 1 + 3 * 14, 0x03};
    for (std::uint8_t i = 0; i < 3; ++i) {
        const std::uint8_t aResponse[] = {0xFA, 0x2E, 0x07, 0x6D, 0x0E, i, 0x01, 0x00, 0x00, 0x04, 0x02, 0x42, 0xDD, 0x42};
        aBytes.insert(aBytes.end(), std::begin(aResponse), std::end(aResponse));
    }
    DecodeLoop(state, FromBytes(aBytes), HCIEventPacketType);
}
BENCHMARK(BM_HCIInquiryResult3);

// Number Of Completed Packets for one handle.
void BM_HCINumberOfCompletedPackets(benchmark::State& state)
{
    DecodeLoop(state, FromBytes({0x13, 0x05, 0x01, 0x02, 0x00, 0x01, 0x00}), HCIEventPacketType);
}
BENCHMARK(BM_HCINumberOfCompletedPackets);

}  // namespace
