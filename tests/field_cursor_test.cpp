// The shared front-consuming walk: both stop rules, byte order, renaming of
// one occurrence, hand-taken bits and the leftover field.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/FieldCursor.h"
#include "tests/TestUtil.h"

namespace {

// A three-field format: Kind (8 bits), Flags (4 bits), Length (16 bits, big
// endian), then Rest for whatever is left.
class CCursorSpec : public CProtocolSpec {
public:
    static constexpr unsigned short kKind = 1, kFlags = 2, kLength = 3, kRest = 4;

    CCursorSpec() { SetReferenceStrings(RefCompareName); }

    using CWalk = CFieldCursor<CCursorSpec>;
    EStopRule m_eRule = StopWhenEmpty;

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int) override
    {
        auto& rr = dynamic_cast<CReqRespProtocolPacket&>(packet);
        rr.Clean();
        CWalk walk(*this, &CCursorSpec::ReadField, m_eRule, data, rr);
        walk.Read(kKind);
        walk.Read(kFlags);
        walk.ReadReversed(kLength, 16);
        walk.ReadRest(kRest);
        m_nConsumed = walk.Consumed();
        return 1;
    }

    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override
    {
        static const SSpecFieldAttr kAttrs[] = {{kKind, "Kind", "K", "", 0, 8},
                                                {kFlags, "Flags", "F", "", 8, 4},
                                                {kLength, "Length", "L", "", 12, 16},
                                                {kRest, "Rest", "R", "", 28, 0}};
        return nId >= kKind && nId <= kRest ? &kAttrs[nId - 1] : nullptr;
    }

    unsigned long ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet, unsigned short nId,
                            CAdvAnlzData& value, EByteOrder eOrder, unsigned long dwLength)
    {
        // A rest of default width 0 takes everything that is left.
        if (nId == kRest && dwLength == 0)
            dwLength = data.GetLength();
        return ReadFieldWith(data, packet, nId, GetDefaultFieldAttr(nId), value, eOrder, dwLength);
    }

    unsigned long m_nConsumed = 0;
};

struct SCursorCase {
    const char* pszName;
    EStopRule eRule;
    const char* pszHex;
    std::vector<SFieldView> fields;
};

void PrintTo(const SCursorCase& c, std::ostream* os) { *os << c.pszName; }

class FieldCursorRules : public ::testing::TestWithParam<SCursorCase> {};

TEST_P(FieldCursorRules, FieldsFollowTheStopRule)
{
    const SCursorCase& c = GetParam();
    CCursorSpec spec;
    spec.m_eRule = c.eRule;
    CReqRespProtocolPacket packet(&spec);
    spec.InterpretPacketData(Hex(c.pszHex), packet, 0);
    EXPECT_EQ(FieldsOf(packet), c.fields);
    EXPECT_EQ(spec.m_nConsumed, Hex(c.pszHex).GetLength());
}

INSTANTIATE_TEST_SUITE_P(
    Core, FieldCursorRules,
    ::testing::Values(
        SCursorCase{"StopEmpty", StopWhenEmpty, "", {}},
        SCursorCase{"StopAfterKind", StopWhenEmpty, "07", {{1, 8, "07"}}},
        // The length is big-endian on the wire: 0x0102 reads as 0x0102.
        SCursorCase{"StopWhole", StopWhenEmpty, "07a1020f", {{1, 8, "07"}, {2, 4, "01"}, {3, 16, "f02a"}, {4, 4, "00"}}},
        // Cut inside the length: the partial last byte stays last when reversed.
        SCursorCase{"StopInsideLength", StopWhenEmpty, "07a102", {{1, 8, "07"}, {2, 4, "01"}, {3, 12, "2a00"}}},
        SCursorCase{"StopRestTaken", StopWhenEmpty, "07a10203ff",
                    {{1, 8, "07"}, {2, 4, "01"}, {3, 16, "302a"}, {4, 12, "f00f"}}},
        SCursorCase{"PastEndEmpty", ReadPastEnd, "", {{1, 0, ""}, {2, 0, ""}, {3, 0, ""}}},
        SCursorCase{"PastEndAfterKind", ReadPastEnd, "07", {{1, 8, "07"}, {2, 0, ""}, {3, 0, ""}}}),
    [](const ::testing::TestParamInfo<SCursorCase>& info) { return std::string(info.param.pszName); });

TEST(FieldCursor, RenamesTheChosenOccurrenceOnly)
{
    CCursorSpec spec;
    CReqRespProtocolPacket packet(&spec);
    CCursorSpec::CWalk walk(spec, &CCursorSpec::ReadField, StopWhenEmpty, Hex("010203"), packet);
    const CString strSecond("Kind-2");
    walk.Read(CCursorSpec::kKind);
    walk.ReadRenamed(CCursorSpec::kKind, 1, &strSecond, nullptr, nullptr);
    walk.ReadRenamed(CCursorSpec::kKind, 7, &strSecond, nullptr, nullptr);  // no eighth occurrence: unchanged
    ASSERT_EQ(packet.GetFieldCount(), 3);
    EXPECT_EQ(packet.GetFieldName(1).ToStdString(), "Kind");
    EXPECT_EQ(packet.GetFieldName(2).ToStdString(), "Kind-2");
    EXPECT_EQ(packet.GetFieldName(3).ToStdString(), "Kind");
    // The renamed record is a record of its own; the others share one.
    EXPECT_NE(packet.GetFieldAttr(1), packet.GetFieldAttr(2));
    EXPECT_FALSE(walk.More());
    // The walk has ended: a further read adds nothing.
    EXPECT_EQ(walk.Read(CCursorSpec::kKind).GetLength(), 0u);
    EXPECT_EQ(packet.GetFieldCount(), 3);
}

TEST(FieldCursor, RenamesOccurrencesInAnyOrder)
{
    // The search for an occurrence goes on from the one found last; going
    // back to an earlier one, or to another id, starts from the front again.
    CCursorSpec spec;
    CReqRespProtocolPacket packet(&spec);
    CCursorSpec::CWalk walk(spec, &CCursorSpec::ReadField, StopWhenEmpty, Hex("0102030405"), packet);
    const CString aNames[] = {"Kind-0", "Kind-1", "Kind-2", "Flags-0"};
    walk.Read(CCursorSpec::kKind);
    walk.Read(CCursorSpec::kKind);
    walk.ReadRenamed(CCursorSpec::kKind, 2, &aNames[2], nullptr, nullptr);
    walk.ReadRenamed(CCursorSpec::kKind, 0, &aNames[0], nullptr, nullptr);
    walk.ReadRenamed(CCursorSpec::kFlags, 0, &aNames[3], nullptr, nullptr, 4);
    walk.ReadRenamed(CCursorSpec::kKind, 1, &aNames[1], nullptr, nullptr, 4);
    ASSERT_EQ(packet.GetFieldCount(), 6);
    const char* aExpected[] = {"Kind-0", "Kind-1", "Kind-2", "Kind", "Flags-0", "Kind"};
    for (unsigned char i = 1; i <= 6; ++i)
        EXPECT_EQ(packet.GetFieldName(i).ToStdString(), aExpected[i - 1]) << "field " << int(i);
}

TEST(FieldCursor, PeekAndDropTakeBitsByHand)
{
    CCursorSpec spec;
    CReqRespProtocolPacket packet(&spec);
    CCursorSpec::CWalk walk(spec, &CCursorSpec::ReadField, StopWhenEmpty, Hex("abcd"), packet);
    EXPECT_EQ(HexOf(walk.Peek(4)), "0b");
    EXPECT_EQ(walk.Consumed(), 0u);
    walk.Drop(4);
    EXPECT_EQ(walk.Consumed(), 4u);
    EXPECT_EQ(HexOf(walk.Read(CCursorSpec::kKind)), "da");
    EXPECT_EQ(packet.GetFieldAttr(1)->m_dwOffset, 0u);  // offsets count the packet's fields, not dropped bits
    EXPECT_TRUE(walk.ReadOn(CCursorSpec::kFlags, 2));
    EXPECT_EQ(walk.Data().GetLength(), 2u);
    EXPECT_FALSE(walk.ReadOn(CCursorSpec::kFlags, 2));
}

// A bound ends the walk early, for one frame of a longer payload: fields
// are cut at it, nothing is read past it, and lifting it goes on behind.
TEST(FieldCursor, ABoundEndsTheWalkUntilLifted)
{
    CCursorSpec spec;
    CReqRespProtocolPacket packet(&spec);
    CCursorSpec::CWalk walk(spec, &CCursorSpec::ReadField, StopWhenEmpty, Hex("01 f2 0304 aabb"), packet);
    walk.SetLimit(20);
    walk.Read(CCursorSpec::kKind);
    walk.Read(CCursorSpec::kFlags);
    EXPECT_EQ(walk.Left(), 8u);
    EXPECT_EQ(HexOf(walk.Peek(16)), "3f");
    walk.ReadReversed(CCursorSpec::kLength, 16);
    EXPECT_FALSE(walk.More());
    EXPECT_EQ(walk.Read(CCursorSpec::kRest).GetLength(), 0u);
    EXPECT_EQ(walk.ReadAlways(CCursorSpec::kKind).GetLength(), 0u);
    walk.SetLimit(CAdvAnlzData::kToEnd);
    EXPECT_EQ(walk.Left(), 28u);
    walk.ReadRest(CCursorSpec::kRest);
    EXPECT_EQ(FieldsOf(packet), (std::vector<SFieldView>{{CCursorSpec::kKind, 8, "01"},
                                                         {CCursorSpec::kFlags, 4, "02"},
                                                         {CCursorSpec::kLength, 8, "3f"},
                                                         {CCursorSpec::kKind, 0, ""},
                                                         {CCursorSpec::kRest, 28, "40a0ba0b"}}));
    EXPECT_EQ(walk.Consumed(), 48u);
}

}  // namespace
