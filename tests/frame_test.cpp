// The decoder/packet frame: interning, field access, sides, assignment and
// persistence, on a small decoder of the test's own and on the wrapper
// decoder.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "core/ProtocolPacket.h"
#include "core/ProtocolSpec.h"
#include "platform/Stream.h"
#include "storage/MassStorageBulkOnlyWrapper.h"
#include "tests/TestUtil.h"

namespace {

// Reads the payload as a one-byte count followed by 8-bit items, and names
// every item after its position ("Item-1", "Item-2", ...), as decoders do for
// repeated fields. The first item's fields count as request fields, the rest
// as response fields.
class CItemListSpec : public CProtocolSpec {
public:
    static constexpr unsigned short kCount = 100, kItem = 101;

    explicit CItemListSpec(unsigned nStrings)
    {
        SetReferenceStrings(nStrings);
        static const SOptionRow kCountOptions[] = {{0, 0, 0, "None", "none"}, {1, 1, 0xFF, "Some", "some"}};
        AddOptionList(kCount, 8, kCountOptions);
    }

    int InterpretPacketData(const CAdvAnlzData& data, CProtocolPacket& packet, int) override
    {
        auto& rr = dynamic_cast<CReqRespProtocolPacket&>(packet);
        rr.Clean();
        CAdvAnlzData w(data), value;
        unsigned long dwBits = ReadFieldWith(w, rr, kCount, GetDefaultFieldAttr(kCount), value, 0, 0);
        w.Truncate(static_cast<std::uint32_t>(dwBits), CAdvAnlzData::kToEnd);
        for (int i = 1; w.GetLength() != 0; ++i) {
            dwBits = ReadFieldWith(w, rr, kItem, GetDefaultFieldAttr(kItem), value, 0, 0);
            w.Truncate(static_cast<std::uint32_t>(dwBits), CAdvAnlzData::kToEnd);
            CByteArray aIndexes;
            rr.GetFieldIndex(kItem, aIndexes);
            if (i <= aIndexes.GetSize()) {
                CString strName;
                strName.Format("Item-%d", i);
                RenameFieldInstance(rr, aIndexes[i - 1], &strName, nullptr, nullptr);
            }
        }
        rr.m_nRequestFields = rr.GetFieldCount() > 2 ? 2 : rr.GetFieldCount();
        rr.m_nResponseFields = static_cast<unsigned char>(rr.GetFieldCount() - rr.m_nRequestFields);
        rr.SetRequestName("Items");
        rr.SetResponseName("More items");
        rr.AddPError(57);
        return 0;
    }

    const SSpecFieldAttr* GetDefaultFieldAttr(unsigned short nId) const override
    {
        static const SSpecFieldAttr kAttrs[] = {{kCount, "Count", "Cnt", "Number of items", 0, 8},
                                                {kItem, "Item", "It", "One item", 8, 8}};
        return nId == kCount ? &kAttrs[0] : nId == kItem ? &kAttrs[1] : nullptr;
    }
};

class CItemListPacket : public CReqRespProtocolPacket {
public:
    explicit CItemListPacket(CProtocolSpec* pSpec) : CReqRespProtocolPacket(pSpec) {}
};

std::vector<std::string> NamesOf(const CProtocolPacket& packet)
{
    std::vector<std::string> a;
    for (int i = 1; i <= packet.GetFieldCount(); ++i)
        a.push_back(packet.GetFieldName(static_cast<unsigned char>(i)).ToStdString());
    return a;
}

TEST(Frame, StrictInterningKeepsRenamedInstancesApart)
{
    CItemListSpec strict(1);  // compares names
    CItemListPacket packet(&strict);
    packet.RestructBy(Hex("03 aa bb cc"));
    EXPECT_EQ(NamesOf(packet), (std::vector<std::string>{"Count", "Item-1", "Item-2", "Item-3"}));
    // Decoding the same bytes again reuses every record.
    const std::size_t nRecords = strict.GetReferenceCount();
    CItemListPacket again(&strict);
    again.RestructBy(Hex("03 aa bb cc"));
    EXPECT_EQ(strict.GetReferenceCount(), nRecords);
    for (unsigned char i = 1; i <= 4; ++i)
        EXPECT_EQ(packet.GetFieldAttr(i), again.GetFieldAttr(i));
}

TEST(Frame, PlainInterningSharesRecordsOfEqualNumbers)
{
    CItemListSpec plain(0);
    CItemListPacket packet(&plain);
    packet.RestructBy(Hex("01 aa"));
    // The renamed record has the same numbers as the plain one, so the plain
    // form hands back whichever was interned first.
    SSpecFieldAttr attr = *plain.GetDefaultFieldAttr(CItemListSpec::kItem);
    attr.m_dwOffset = 8;
    EXPECT_EQ(plain.GetFieldReference(attr), packet.GetFieldAttr(2));
    attr.m_dwOffset = 16;
    EXPECT_NE(plain.GetFieldReference(attr), packet.GetFieldAttr(2));
}

TEST(Frame, FieldAccessByIndexIdAndSide)
{
    CItemListSpec spec(1);
    CItemListPacket packet(&spec);
    packet.RestructBy(Hex("03 aa bb cc"));
    EXPECT_EQ(packet.GetFieldIndex(CItemListSpec::kCount), 1);
    EXPECT_EQ(packet.GetFieldIndex(CItemListSpec::kItem), 2);
    EXPECT_EQ(packet.GetFieldIndex(999), 0);
    CByteArray a;
    packet.GetFieldIndex(CItemListSpec::kItem, a);
    ASSERT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a[2], 4);
    EXPECT_EQ(packet.GetAllFieldIndexes(a), 4);
    EXPECT_EQ(a[3], 4);

    CAdvAnlzData value;
    EXPECT_EQ(packet.FindFieldData(CItemListSpec::kItem, value), 8u);
    EXPECT_EQ(HexOf(value), "aa");
    packet.GetFieldData(9, value);
    EXPECT_EQ(value.GetLength(), 0u) << "an index outside the list leaves the value empty";

    // Two request fields, two response fields; the response side counts from 1.
    EXPECT_EQ(packet.GetFieldName(1, PacketSideResponse), "Item-2");
    EXPECT_EQ(packet.GetFieldId(2, PacketSideResponse), CItemListSpec::kItem);
    EXPECT_EQ(packet.GetFieldId(3, PacketSideResponse), 0);
    EXPECT_EQ(packet.GetFieldName(3, PacketSideRequest), "");
    EXPECT_EQ(packet.GetFieldExtraAttr(3, PacketSideWhole), packet.GetFieldAttr(3));

    unsigned long dwLength = 0;
    EXPECT_EQ(packet.GetFieldBriefPattern(1, 6, dwLength, PacketSideWhole, DisplayDecimal, 0), "some");
    EXPECT_EQ(dwLength, 4u);
    EXPECT_EQ(packet.GetFieldBriefPattern(2, 0, dwLength, DisplayDecimal, 0), "170");
}

TEST(Frame, PacketHoldsAtMost255Fields)
{
    CItemListSpec spec(0);
    CItemListPacket packet(&spec);
    packet.RestructBy(CAdvAnlzData::FromBytes(std::vector<std::uint8_t>(400, 1).data(), 400 * 8));
    EXPECT_EQ(packet.GetFieldCount(), 255);
    EXPECT_EQ(packet.GetPacketLength(), 255u * 8);
}

TEST(Frame, SaveAndLoadRestoreTheDecodedPacket)
{
    CItemListSpec spec(1);
    CItemListPacket packet(&spec);
    packet.RestructBy(Hex("03 aa bb cc"));
    packet.m_byPacketFormat = 7;

    CMemoryStream stream;
    unsigned long dwBytes = 0;
    ASSERT_EQ(packet.SaveAndCount(&stream, 1, dwBytes), S_OK);
    EXPECT_EQ(dwBytes, stream.GetBytes().size());
    stream.Rewind();

    CItemListPacket loaded(&spec);
    ASSERT_EQ(loaded.Load(&stream), S_OK);
    EXPECT_EQ(FieldsOf(loaded), FieldsOf(packet));
    EXPECT_EQ(NamesOf(loaded), NamesOf(packet));
    for (unsigned char i = 1; i <= packet.GetFieldCount(); ++i)
        EXPECT_EQ(loaded.GetFieldAttr(i), packet.GetFieldAttr(i)) << "bound again to the decoder's record " << int(i);
    EXPECT_EQ(loaded.m_strRequestName, "Items");
    EXPECT_EQ(loaded.m_strResponseName, "More items");
    EXPECT_EQ(loaded.m_nRequestFields, 2);
    EXPECT_EQ(loaded.m_nResponseFields, 2);
    EXPECT_EQ(loaded.GetPErrors().GetSize(), 1);
    EXPECT_EQ(loaded.GetPErrors()[0], 57);
    EXPECT_EQ(loaded.m_byPacketFormat, 7);
}

TEST(Frame, LoadRejectsDamagedOrForeignStreams)
{
    CItemListSpec spec(1);
    CItemListPacket packet(&spec);
    packet.RestructBy(Hex("02 aa bb"));
    CMemoryStream stream;
    ASSERT_EQ(packet.Save(&stream, 1), S_OK);
    const std::vector<std::uint8_t> saved = stream.GetBytes();

    // Every cut of the stream fails cleanly and leaves an empty packet.
    for (std::size_t n = 0; n < saved.size(); ++n) {
        CMemoryStream cut(std::vector<std::uint8_t>(saved.begin(), saved.begin() + static_cast<long>(n)));
        CItemListPacket loaded(&spec);
        EXPECT_EQ(loaded.Load(&cut), E_FAIL) << n;
        EXPECT_EQ(loaded.GetFieldCount(), 0) << n;
    }
    // A packet of another decoder does not load.
    stream.Rewind();
    CMassStorageBulkOnlyWrapperPacket other;
    EXPECT_EQ(other.Load(&stream), E_FAIL);
}

TEST(Frame, WrapperPacketRoundTripAndAssignment)
{
    const CAdvAnlzData cbw = Hex("55534243 01000000 00020000 80 00 06 12000000240000000000000000000000");
    CMassStorageBulkOnlyWrapperPacket packet(cbw);

    CMassStorageBulkOnlyWrapperPacket copy(packet);
    EXPECT_EQ(copy.GetFieldCount(), 0) << "the copy constructor gives an empty packet";
    EXPECT_EQ(copy.GetSpec(), packet.GetSpec());

    copy = packet;
    EXPECT_EQ(FieldsOf(copy), FieldsOf(packet));
    EXPECT_EQ(copy.m_strRequestName, "Command Block Wrapper");
    EXPECT_EQ(copy.m_nRequestFields, 11);

    CMemoryStream stream;
    ASSERT_EQ(packet.Save(&stream, 1), S_OK);
    stream.Rewind();
    CMassStorageBulkOnlyWrapperPacket loaded;
    ASSERT_EQ(loaded.Load(&stream), S_OK);
    EXPECT_EQ(FieldsOf(loaded), FieldsOf(packet));
    EXPECT_EQ(loaded.GetFieldAttr(11), packet.GetFieldAttr(11));

    // Decoding again replaces the first result.
    loaded.RestructBy(Hex("55534253 07000000 00000000 01"));
    EXPECT_EQ(loaded.GetFieldCount(), 4);
    EXPECT_EQ(loaded.m_strRequestName, "Command Status Wrapper");
}

}  // namespace
