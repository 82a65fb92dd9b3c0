// Option search: the first option whose range holds a value, compared as
// numbers whatever the widths, whether the bounds fit 64 bits or not.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "core/FieldAttr.h"

namespace {

CAdvAnlzData RandomValue(std::mt19937& rng, std::uint32_t nBits)
{
    std::vector<std::uint8_t> a((nBits + 7) / 8);
    for (std::uint8_t& b : a)
        b = static_cast<std::uint8_t>(rng() % 4 == 0 ? 0 : rng());
    return CAdvAnlzData::FromBytes(a.data(), nBits);
}

// The first matching option by the plain definition, -1 for none.
int FirstMatch(const CFieldOptionList& list, const CAdvAnlzData& value)
{
    for (int i = 0; i < list.GetSize(); ++i)
        if (list.GetAt(i).Matches(value))
            return i;
    return -1;
}

int Found(const CFieldOptionList& list, const CAdvAnlzData& value)
{
    const SFieldOption* p = list.Find(value);
    return p ? static_cast<int>(p - &list.GetAt(0)) : -1;
}

TEST(OptionList, FirstMatchWinsAcrossWidths)
{
    CFieldOptionList list(1);
    list.Add(SFieldOption("zero", 0, CAdvAnlzData(0, 8), CAdvAnlzData(0, 8), "z"));
    list.Add(SFieldOption("low", 1, CAdvAnlzData(1, 8), CAdvAnlzData(0x7F, 8), "l"));
    list.Add(SFieldOption("overlap", 2, CAdvAnlzData(0x10, 16), CAdvAnlzData(0x1FF, 16), "o"));
    list.Add(SFieldOption("top", 3, CAdvAnlzData(0xFFFFFFFFFFFFFFFFull, 64), CAdvAnlzData(0xFFFFFFFFFFFFFFFFull, 64), "t"));
    struct SCase {
        std::uint64_t nValue;
        std::uint8_t nWidth;
        int nExpected;
    };
    const SCase cases[] = {
        {0, 1, 0},    {0, 64, 0},    {5, 3, 1},     {0x10, 8, 1}, {0x80, 8, 2},
        {0x1FF, 9, 2}, {0x200, 16, -1}, {0xFFFFFFFFFFFFFFFFull, 64, 3},
    };
    for (const SCase& c : cases)
        EXPECT_EQ(Found(list, CAdvAnlzData(c.nValue, c.nWidth)), c.nExpected)
            << "value " << c.nValue << " of " << int(c.nWidth) << " bits";
    // Wider than 64 bits with the high bits clear reads as the same number.
    const std::uint8_t wide[12] = {0x80};
    EXPECT_EQ(Found(list, CAdvAnlzData::FromBytes(wide, 96)), 2);
    const std::uint8_t wideHigh[12] = {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(Found(list, CAdvAnlzData::FromBytes(wideHigh, 96)), -1);
}

// Random lists, some with bounds wider than 64 bits, against the definition.
TEST(OptionList, MatchesDefinitionOnRandomLists)
{
    std::mt19937 rng(7);
    const std::uint32_t widths[] = {0, 1, 7, 8, 13, 32, 63, 64, 65, 80, 128};
    for (int nList = 0; nList < 200; ++nList) {
        CFieldOptionList list(2);
        const int nOptions = 1 + static_cast<int>(rng() % 12);
        for (int i = 0; i < nOptions; ++i) {
            const std::uint32_t nBits = widths[rng() % (nList % 3 == 0 ? 11 : 8)];
            CAdvAnlzData low = RandomValue(rng, nBits), high = RandomValue(rng, nBits);
            if (high < low)
                std::swap(low, high);
            list.Add(SFieldOption("o" + std::to_string(i), static_cast<unsigned short>(i), low, high, ""));
        }
        for (int k = 0; k < 200; ++k) {
            const CAdvAnlzData value = RandomValue(rng, widths[rng() % 11]);
            ASSERT_EQ(Found(list, value), FirstMatch(list, value)) << "list " << nList << " value " << k;
        }
    }
}

}  // namespace
