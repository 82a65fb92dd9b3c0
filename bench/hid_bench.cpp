// Decode cost of HID report descriptors into fields and the report item
// list: a composite device, and long descriptors of repeated items at 4 KiB
// and 64 KiB. A packet holds at most 255 fields, so a long descriptor is
// read item by item up to that limit and the rest becomes one leftover field.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/AdvAnlzData.h"
#include "hid/USBHIDPacket.h"
#include "tools/HexInput.h"

namespace {

CAdvAnlzData FromHex(const std::string& strHex)
{
    const SHexResult r = ParseHex(strHex);
    return CAdvAnlzData::FromBytes(r.aBytes.data(), static_cast<std::uint32_t>(r.aBytes.size() * 8));
}

void DecodeLoop(benchmark::State& state, const CAdvAnlzData& payload)
{
    CUSBHIDPacket packet(CUSBHIDPacket::SelectorReportDescriptor);
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.RestructBy(payload));
        benchmark::ClobberMemory();
    }
    const double nBytes = static_cast<double>(payload.GetByteLength());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * nBytes));
    state.counters["bytes"] = nBytes;
    state.counters["fields"] = packet.GetFieldCount();
    state.counters["items"] = packet.GetNumberOfReportItems();
    state.counters["ns_per_byte"] = benchmark::Counter(
        nBytes * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// A keyboard with LEDs, a mouse with a wheel, consumer control, system
// control and a vendor collection: 206 bytes.
const char kComposite[] =
    "05 01 09 06 A1 01 85 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 01 75 08 81 01 95 05 75 01"
    "05 08 19 01 29 05 91 02 95 01 75 03 91 01 95 06 75 08 15 00 25 65 05 07 19 00 29 65 81 00 C0"
    "05 01 09 02 A1 01 85 02 09 01 A1 00 05 09 19 01 29 05 15 00 25 01 95 05 75 01 81 02 95 01 75 03 81 01"
    "05 01 09 30 09 31 16 01 F8 26 FF 07 75 0C 95 02 81 06 09 38 15 81 25 7F 75 08 95 01 81 06 C0 C0"
    "05 0C 09 01 A1 01 85 03 15 00 26 FF 03 19 00 2A FF 03 75 10 95 01 81 00 C0"
    "05 01 09 80 A1 01 85 04 19 81 29 83 15 01 25 03 75 02 95 01 81 60 75 06 81 03 C0"
    "06 00 FF 09 01 A1 01 85 05 15 00 26 FF 00 75 08 95 07 09 01 B1 02 C0";

void BM_HIDReportComposite(benchmark::State& state)
{
    DecodeLoop(state, FromHex(kComposite));
}
BENCHMARK(BM_HIDReportComposite);

// Report Size, Report Count, Usage and Input repeated to the given length.
void BM_HIDReportRepeated(benchmark::State& state)
{
    const std::string strItems = "75 08 95 01 09 30 81 02 ";
    std::string strHex;
    while (strHex.size() / 3 < static_cast<std::size_t>(state.range(0)))
        strHex += strItems;
    DecodeLoop(state, FromHex(strHex));
}
BENCHMARK(BM_HIDReportRepeated)->Arg(4 << 10)->Arg(64 << 10);

}  // namespace
