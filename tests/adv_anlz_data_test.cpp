// The bit-string value against a plain bit-vector model, plus the cases whose
// exact result the decoders rely on.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <random>
#include <vector>

#include "core/AdvAnlzData.h"
#include "tests/TestUtil.h"

namespace {

// The model: one bool per bit, bit 0 first.
using Bits = std::vector<bool>;

Bits BitsOf(const CAdvAnlzData& v)
{
    Bits b;
    for (std::uint32_t i = 0; i < v.GetLength(); ++i)
        b.push_back(v.GetBit(i) != 0);
    return b;
}

CAdvAnlzData ValueOf(const Bits& b)
{
    std::vector<std::uint8_t> a((b.size() + 7) / 8);
    for (std::size_t i = 0; i < b.size(); ++i)
        if (b[i])
            a[i / 8] = static_cast<std::uint8_t>(a[i / 8] | (1u << (i % 8)));
    return CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(b.size()));
}

std::uint64_t NumberOf(const Bits& b, std::size_t nMax)
{
    std::uint64_t n = 0;
    for (std::size_t i = 0; i < b.size() && i < nMax; ++i)
        n |= static_cast<std::uint64_t>(b[i]) << i;
    return n;
}

// Everything observable about a value must agree with the model.
void ExpectSame(const CAdvAnlzData& v, const Bits& b)
{
    ASSERT_EQ(v.GetLength(), b.size());
    EXPECT_EQ(BitsOf(v), b);
    EXPECT_EQ(static_cast<std::uint8_t>(v), NumberOf(b, 8));
    EXPECT_EQ(static_cast<std::uint16_t>(v), NumberOf(b, 16));
    EXPECT_EQ(static_cast<std::uint32_t>(v), NumberOf(b, 32));
    std::vector<std::uint8_t> a(v.GetByteLength() + 1, 0xEE);
    EXPECT_EQ(v.GetStream(a.data()), v.GetByteLength());
    EXPECT_EQ(a.back(), 0xEE) << "GetStream wrote past the value";
    for (std::uint32_t i = 0; i < v.GetByteLength(); ++i) {
        std::uint8_t expected = 0;
        for (std::uint32_t k = 0; k < 8 && 8 * i + k < b.size(); ++k)
            expected = static_cast<std::uint8_t>(expected | (b[8 * i + k] << k));
        EXPECT_EQ(a[i], expected) << "byte " << i;
        EXPECT_EQ(v[i], expected) << "operator[] " << i;
    }
}

TEST(AdvAnlzData, RandomOperationsAgreeWithBitModel)
{
    std::mt19937 rng(12345);
    auto pick = [&](std::uint32_t nMax) { return std::uniform_int_distribution<std::uint32_t>(0, nMax)(rng); };
    for (int round = 0; round < 300; ++round) {
        Bits b(pick(300));
        for (std::size_t i = 0; i < b.size(); ++i)
            b[i] = pick(1) != 0;
        CAdvAnlzData v = ValueOf(b);
        for (int step = 0; step < 40; ++step) {
            switch (pick(6)) {
            case 0: {  // GetBits, clipped at the end
                const std::uint32_t first = pick(static_cast<std::uint32_t>(b.size()) + 8);
                const std::uint32_t count = pick(1) ? pick(80) : CAdvAnlzData::kToEnd;
                Bits r;
                for (std::size_t i = first; i < b.size() && (count == CAdvAnlzData::kToEnd || i < first + std::uint64_t(count)); ++i)
                    r.push_back(b[i]);
                ExpectSame(v.GetBits(first, count), r);
                break;
            }
            case 1: {  // drop bits from the front, as the decoders' walk does
                const std::uint32_t n = pick(20);
                v.Truncate(n, CAdvAnlzData::kToEnd);
                b.erase(b.begin(), b.begin() + std::min<std::size_t>(n, b.size()));
                break;
            }
            case 2: {  // keep a window
                const std::uint32_t first = pick(10), count = pick(200);
                v.Truncate(first, count);
                Bits r;
                for (std::size_t i = first; i < b.size() && i < first + std::size_t(count); ++i)
                    r.push_back(b[i]);
                b = r;
                break;
            }
            case 3: {  // append a small value of odd width
                const std::uint8_t w = static_cast<std::uint8_t>(pick(20));
                const std::uint64_t n = rng();
                v += CAdvAnlzData(n, w);
                for (std::uint32_t i = 0; i < w; ++i)
                    b.push_back(((n >> i) & 1) != 0);
                break;
            }
            case 4: {  // copy, then the copy goes on alone
                CAdvAnlzData copy(v);
                v.Clean();
                v = copy;
                break;
            }
            case 5: {  // shift toward higher weight inside the length
                const std::uint32_t n = pick(12);
                v <<= n;
                Bits r(b.size(), false);
                for (std::size_t i = 0; i + n < b.size(); ++i)
                    r[i + n] = b[i];
                b = r;
                break;
            }
            case 6: {  // OR a value into the low bits
                const std::uint8_t w = static_cast<std::uint8_t>(pick(40));
                const std::uint64_t n = rng();
                v |= CAdvAnlzData(n, w);
                for (std::uint32_t i = 0; i < w && i < b.size(); ++i)
                    b[i] = b[i] || ((n >> i) & 1);
                break;
            }
            }
            ExpectSame(v, b);
            if (::testing::Test::HasFailure())
                return;
        }
    }
}

// Appending ORs bits into the storage behind the end, so a new value must not
// carry whatever its memory held before.
TEST(AdvAnlzData, AppendingToANewValueOverDirtyMemory)
{
    alignas(CAdvAnlzData) unsigned char aMemory[sizeof(CAdvAnlzData)];
    std::memset(aMemory, 0xFF, sizeof aMemory);
    CAdvAnlzData* pValue = new (aMemory) CAdvAnlzData();
    *pValue += CAdvAnlzData(0x05, 3);
    *pValue += CAdvAnlzData(0x00, 13);
    EXPECT_EQ(HexOf(*pValue), "0500");
    pValue->~CAdvAnlzData();
}

TEST(AdvAnlzData, ReadingIsLittleEndianFromBitZero)
{
    const CAdvAnlzData v = Hex("55534243");
    EXPECT_EQ(static_cast<std::uint32_t>(v), 0x43425355u);
    // A flags byte 0x80 read as 6, 1, 1 bits: the direction bit comes last.
    const CAdvAnlzData flags = Hex("80");
    EXPECT_EQ(static_cast<std::uint8_t>(flags.GetBits(0, 6)), 0);
    EXPECT_EQ(static_cast<std::uint8_t>(flags.GetBits(6, 1)), 0);
    EXPECT_EQ(static_cast<std::uint8_t>(flags.GetBits(7, 1)), 1);
}

TEST(AdvAnlzData, EdgeCasesTheDecodersRelyOn)
{
    CAdvAnlzData v16(0xABCD, 16);
    const CAdvAnlzData got = v16.GetBits(0, 32);
    EXPECT_EQ(got.GetLength(), 16u);
    v16.Truncate(16, CAdvAnlzData::kToEnd);
    EXPECT_EQ(v16.GetLength(), 0u);

    const CAdvAnlzData v64(0x0102030405060708ull, 64);
    const CAdvAnlzData past = v64.GetBits(100, 8);
    EXPECT_EQ(past.GetLength(), 0u);
    EXPECT_EQ(static_cast<std::uint8_t>(past), 0);

    EXPECT_EQ(static_cast<std::uint32_t>(CAdvAnlzData(0x3F, 6)), 0x3Fu) << "no sign extension";
    EXPECT_EQ(static_cast<std::uint8_t>(Hex("123456")), 0x12);

    CAdvAnlzData cut = Hex("ffff");
    cut.Truncate(0, cut.GetLength() - 3);
    EXPECT_EQ(cut.GetLength(), 13u);
    EXPECT_EQ(HexOf(cut), "ff1f");

    const CAdvAnlzData nibbles = CAdvAnlzData(0x1, 4) + CAdvAnlzData(0x2, 4) + CAdvAnlzData(0xAB, 8);
    EXPECT_EQ(nibbles.GetLength(), 16u);
    EXPECT_EQ(HexOf(nibbles), "21ab");

    CAdvAnlzData shifted(0x00AB, 16);
    shifted <<= 8;
    EXPECT_EQ(static_cast<std::uint16_t>(shifted), 0xAB00);

    // Assembly of a little-endian number from bytes read one at a time.
    CAdvAnlzData low, high;
    low.SetData(0x34, 8);
    high.SetData(0x12, 16);
    high <<= 8;
    high |= low;
    EXPECT_EQ(static_cast<std::uint16_t>(high), 0x1234);

    const CAdvAnlzData empty;
    EXPECT_EQ((empty + empty).GetLength(), 0u);
    EXPECT_EQ(CAdvAnlzData(empty).GetLength(), 0u);
    EXPECT_EQ(CAdvAnlzTools().RevertByteOrder(empty).GetLength(), 0u);

    // Bits above the length never show, even when the source byte had them.
    CAdvAnlzData dirty = Hex("ff");
    dirty.Truncate(0, 3);
    EXPECT_EQ(static_cast<std::uint8_t>(dirty), 7);
    EXPECT_EQ(HexOf(dirty + Hex("00")), "0700");
}

TEST(AdvAnlzData, ToolsReverseBytesAndRenderAddresses)
{
    CAdvAnlzTools tools;
    EXPECT_EQ(HexOf(tools.RevertByteOrder(Hex("12345678"))), "78563412");
    CAdvAnlzData odd = Hex("1234ff");
    odd.Truncate(0, 20);
    const CAdvAnlzData reversed = tools.RevertByteOrder(odd);
    EXPECT_EQ(reversed.GetLength(), 20u);
    EXPECT_EQ(HexOf(reversed), "34120f") << "full bytes reversed, the partial byte stays last";

    CAdvAnlzData address = tools.RevertByteOrder(Hex("c0a80001"));
    EXPECT_EQ(tools.IpAddress(address), "192.168.0.1");
}

TEST(AdvAnlzData, NumericComparisonIgnoresWidth)
{
    EXPECT_TRUE(CAdvAnlzData(1, 8) == CAdvAnlzData(1, 24));
    EXPECT_TRUE(CAdvAnlzData(0x100, 16) > CAdvAnlzData(0xFF, 8));
    const CAdvAnlzData wide = Hex("00000000000000000001");  // 2^72
    EXPECT_TRUE(wide > CAdvAnlzData(~0ull, 64));
    EXPECT_TRUE(CAdvAnlzData(5, 8) <= CAdvAnlzData(5, 8));
}

TEST(AdvAnlzData, DecimalRenderingFeedsAnIntegerConversion)
{
    EXPECT_EQ(CAdvAnlzData(200, 8).ToString(2, DisplayDecimal, 0), "200");
    EXPECT_EQ(CAdvAnlzData().ToString(2, DisplayDecimal, 0), "0");
    EXPECT_EQ(Hex("00000000000000000001").ToString(2, DisplayDecimal, 0), "4722366482869645213696");
}

}  // namespace
