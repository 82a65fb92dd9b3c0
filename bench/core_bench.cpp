// Decode cost of the wrapper decoder, the front-consuming walk that every
// decoder runs, and interning under many distinct records.
//
// Targets: a decoded CBW under 1 microsecond; no heap allocation for a field
// value of up to 16 bytes ("allocs_per_packet" below counts every allocation
// of a steady-state decode); walk ns/byte at 64 KiB within 1.5x of 4 KiB.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include "core/AdvAnlzData.h"
#include "storage/MassStorageBulkOnlyWrapper.h"
#include "tools/HexInput.h"

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

void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload)
{
    CMassStorageBulkOnlyWrapperPacket packet;
    packet.RestructBy(payload);  // warm: records interned, field list grown
    const long nBefore = g_nAllocations.load();
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::DoNotOptimize(packet.GetFieldCount());
    }
    state.counters["allocs_per_packet"] =
        benchmark::Counter(static_cast<double>(g_nAllocations.load() - nBefore) / static_cast<double>(state.iterations()));
}

void BM_DecodeCBW(benchmark::State& state)
{
    DecodeLoop(state, FromHex("55534243010000000002000080000612000000240000000000000000000000"));
}
BENCHMARK(BM_DecodeCBW);

void BM_DecodeCSW(benchmark::State& state)
{
    DecodeLoop(state, FromHex("55534253010000000000000000"));
}
BENCHMARK(BM_DecodeCSW);

// The consuming idiom: take a field from the front, drop it, test the length.
void BM_FrontConsumingWalk(benchmark::State& state)
{
    const std::size_t nBytes = static_cast<std::size_t>(state.range(0));
    std::vector<std::uint8_t> aBytes(nBytes);
    for (std::size_t i = 0; i < nBytes; ++i)
        aBytes[i] = static_cast<std::uint8_t>(i * 131 + 7);
    const CAdvAnlzData payload = CAdvAnlzData::FromBytes(aBytes.data(), static_cast<std::uint32_t>(nBytes * 8));
    static const std::uint32_t kWidths[] = {8, 16, 32, 3, 5, 1, 7, 24, 64, 128};
    for (auto _ : state) {
        CAdvAnlzData w(payload);
        std::uint32_t dwSum = 0;
        for (std::size_t k = 0; w.GetLength() != 0; ++k) {
            const CAdvAnlzData field = w.GetBits(0, kWidths[k % 10]);
            dwSum += static_cast<std::uint8_t>(field);
            w.Truncate(field.GetLength(), CAdvAnlzData::kToEnd);
        }
        benchmark::DoNotOptimize(dwSum);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * nBytes));
    state.counters["ns_per_byte"] = benchmark::Counter(static_cast<double>(nBytes) * 1e-9,
                                                       benchmark::Counter::kIsIterationInvariantRate |
                                                           benchmark::Counter::kInvert);
}
BENCHMARK(BM_FrontConsumingWalk)->Arg(64)->Arg(4096)->Arg(65536);

// Interning one more record into a decoder that already holds many: the
// cost must not grow with the number of records.
void BM_InternAmongManyRecords(benchmark::State& state)
{
    CMassStorageBulkOnlyWrapperSpec* pSpec = CMassStorageBulkOnlyWrapperSpec::GetInstance();
    SSpecFieldAttr attr = *pSpec->GetDefaultFieldAttr(24510);
    const std::uint32_t nRecords = static_cast<std::uint32_t>(state.range(0));
    for (std::uint32_t i = 0; i < nRecords; ++i) {
        attr.m_dwOffset = 1000000 + i;
        pSpec->GetFieldReference(attr);
    }
    std::uint32_t i = 0;
    for (auto _ : state) {
        attr.m_dwOffset = 1000000 + (i++ % nRecords);
        benchmark::DoNotOptimize(pSpec->GetFieldReference(attr));
    }
}
BENCHMARK(BM_InternAmongManyRecords)->Arg(100)->Arg(10000)->Arg(100000);

}  // namespace
