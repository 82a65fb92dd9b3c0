// Decode cost of the serial-link decoders: HDLC over a stream of frames of
// 4 KiB and 64 KiB (the cost per byte must not grow with the stream), and
// PPP over one payload of 100 small LCP frames.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "core/AdvAnlzData.h"
#include "serial/HDLCSpec.h"
#include "serial/PPPSpec.h"

namespace {

CAdvAnlzData FromBytes(const std::vector<std::uint8_t>& aBytes)
{
    return CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(aBytes.size() * 8));
}

// Asynchronous frames of 1500 information bytes (random, so flag and escape
// bytes go escaped), each with address, control and FCS, flags shared
// between frames; cut at nBytes. A short frame leads, as the one that the
// decoder unstuffs.
std::vector<std::uint8_t> HDLCStream(std::size_t nBytes)
{
    std::mt19937 rng(1);
    std::vector<std::uint8_t> a = {0x7E, 0xFF, 0x03, 0x01, 0x02, 0x7E};
    while (a.size() < nBytes) {
        a.insert(a.end(), {0xFF, 0x03});
        for (int i = 0; i < 1500 + 2; ++i) {
            const std::uint8_t b = static_cast<std::uint8_t>(rng());
            if (b == 0x7E || b == 0x7D) {
                a.push_back(0x7D);
                a.push_back(static_cast<std::uint8_t>(b ^ 0x20));
            } else {
                a.push_back(b);
            }
        }
        a.push_back(0x7E);
    }
    a.resize(nBytes);
    return a;
}

void SetBytesPerSecond(benchmark::State& state, std::size_t nBytes)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * nBytes));
    state.counters["ns_per_byte"] = benchmark::Counter(static_cast<double>(nBytes) * 1e-9,
                                                       benchmark::Counter::kIsIterationInvariantRate |
                                                           benchmark::Counter::kInvert);
}

void BM_HDLCStream(benchmark::State& state)
{
    const std::size_t nBytes = static_cast<std::size_t>(state.range(0));
    const CAdvAnlzData payload = FromBytes(HDLCStream(nBytes));
    CProtocolPacket packet(CAdvAnlzHDLCSpec::GetInstance());
    for (auto _ : state) {
        CAdvAnlzHDLCSpec::ResetOnesInRow();
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::ClobberMemory();
    }
    SetBytesPerSecond(state, nBytes);
    state.counters["fields"] = packet.GetFieldCount();
}
BENCHMARK(BM_HDLCStream)->Arg(4096)->Arg(65536);

// 100 Configure-Requests with an MRU option, one behind the other.
void BM_PPPHundredLCPFrames(benchmark::State& state)
{
    std::vector<std::uint8_t> a;
    for (int i = 0; i < 100; ++i)
        a.insert(a.end(), {0xC0, 0x21, 0x01, static_cast<std::uint8_t>(i), 0x00, 0x08, 0x01, 0x04, 0x05, 0xDC});
    const CAdvAnlzData payload = FromBytes(a);
    CPPPPacket packet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::ClobberMemory();
    }
    SetBytesPerSecond(state, a.size());
    state.counters["fields"] = packet.GetFieldCount();
}
BENCHMARK(BM_PPPHundredLCPFrames);

}  // namespace
