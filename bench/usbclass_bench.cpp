// Decode cost of the USB class decoders: a hub descriptor of 15 ports (two
// bit maps of renamed per-port fields), a SET_LINE_CODING request with its
// data stage, and a SERIAL_STATE notification. "ns_per_field" is the cost
// of one field; the wrapper decoder of core_bench is the yardstick.
// "allocs_per_packet" counts every allocation of a steady-state decode.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "core/AdvAnlzData.h"
#include "tools/HexInput.h"
#include "usbclass/CommunicationClass.h"
#include "usbclass/CommunicationNotification.h"
#include "usbclass/HubClass.h"

namespace {
std::atomic<long> g_nAllocations{0};
}  // namespace

// Counting replacements of the global allocation functions.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

void* operator new(std::size_t n)
{
    g_nAllocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(n ? n : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace {

CAdvAnlzData FromHex(const char* pszHex)
{
    const SHexResult r = ParseHex(pszHex);
    return CAdvAnlzData::FromBytes(r.aBytes.data(), static_cast<std::uint32_t>(r.aBytes.size() * 8));
}

template <class TPacket>
void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload)
{
    TPacket packet;
    packet.RestructBy(payload);  // warm: records interned, names formatted, field list grown
    const long nBefore = g_nAllocations.load();
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::DoNotOptimize(packet.GetFieldCount());
    }
    const double nIterations = static_cast<double>(state.iterations());
    state.counters["fields"] = packet.GetFieldCount();
    state.counters["allocs_per_packet"] =
        benchmark::Counter(static_cast<double>(g_nAllocations.load() - nBefore) / nIterations);
    state.counters["ns_per_field"] = benchmark::Counter(
        static_cast<double>(packet.GetFieldCount()) * 1e-9,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Get Descriptor of a hub with 15 ports: 7 setup fields, 11 descriptor
// fields, then two bit maps of a reserved bit and 15 port bits: 50 fields.
void BM_HubDescriptor15Ports(benchmark::State& state)
{
    DecodeLoop<CHubClassPacket>(state, FromHex("a0 06 0029 0000 4700 0b 29 0f a900 32 64 5555 ffff"));
}
BENCHMARK(BM_HubDescriptor15Ports);

// SET_LINE_CODING 115200 8N1: 11 fields.
void BM_SetLineCoding(benchmark::State& state)
{
    DecodeLoop<CCommunicationClassPacket>(state, FromHex("21 20 0000 0000 0700 00c20100 00 00 08"));
}
BENCHMARK(BM_SetLineCoding);

// SERIAL_STATE with carrier detect and DSR: 15 fields.
void BM_SerialStateNotification(benchmark::State& state)
{
    DecodeLoop<CCommunicationNotificationPacket>(state, FromHex("a1 20 0000 0100 0200 0300"));
}
BENCHMARK(BM_SerialStateNotification);

}  // namespace
