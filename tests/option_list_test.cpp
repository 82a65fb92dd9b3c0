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

// Random lists, some with bounds wider than 64 bits, and random values of
// every width, against the definition: overlapping ranges (the first match
// wins), values wider than 64 bits whose high bytes are 0 and bounds that
// need more than 64 bits.
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
