// Every registered decoder, every HCI packet kind, on random and hostile
// payloads: the walk ends cleanly and the packet reads back whole. Under the
// sanitizer build this is where an out-of-bounds read or a leak would show.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "fuzz/DecodeAny.h"
#include "registry/DecoderRegistry.h"

namespace {

TEST(Robustness, RandomPayloadsOfEveryLengthForEveryDecoder)
{
    const std::size_t nDecoders = GetDecoderRegistry().size();
    std::mt19937 rng(2026);
    for (std::size_t nSelector = 0; nSelector < nDecoders * 5; ++nSelector) {
        for (std::size_t nLength = 0; nLength <= 300; nLength += (nLength < 40 ? 1 : 7)) {
            std::vector<std::uint8_t> a(nLength + 1);
            a[0] = static_cast<std::uint8_t>(nSelector);
            for (std::size_t i = 1; i < a.size(); ++i)
                a[i] = static_cast<std::uint8_t>(rng());
            ASSERT_TRUE(DecodeAnyDecoder(a.data(), a.size())) << "selector " << nSelector << " length " << nLength;
        }
    }
}

TEST(Robustness, UniformBytesAndLongPayloads)
{
    const std::size_t nDecoders = GetDecoderRegistry().size();
    for (std::size_t nSelector = 0; nSelector < nDecoders * 5; ++nSelector) {
        for (std::uint8_t nFill : {0x00, 0xFF, 0x55, 0x80}) {
            for (std::size_t nLength : {1, 2, 3, 8, 31, 64, 255, 4096, 70000}) {
                std::vector<std::uint8_t> a(nLength + 1, nFill);
                a[0] = static_cast<std::uint8_t>(nSelector);
                ASSERT_TRUE(DecodeAnyDecoder(a.data(), a.size()))
                    << "selector " << nSelector << " fill " << int(nFill) << " length " << nLength;
            }
        }
    }
}

}  // namespace
