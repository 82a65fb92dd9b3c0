// Command Block and Command Status Wrappers, whole and cut short.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "storage/MassStorageBulkOnlyWrapper.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CMassStorageBulkOnlyWrapperSpec;

const char* const kCBW = "55534243 01000000 00020000 80 00 06 12000000240000000000000000000000";

struct SWalkCase {
    const char* pszName;
    std::string strHex;
    const char* pszRequestName;
    std::vector<SFieldView> aFields;
};

class BulkOnlyWrapperWalk : public ::testing::TestWithParam<SWalkCase> {};

TEST_P(BulkOnlyWrapperWalk, DecodesFieldsAndName)
{
    const SWalkCase& c = GetParam();
    CMassStorageBulkOnlyWrapperPacket packet(Hex(c.strHex));
    EXPECT_EQ(FieldsOf(packet), c.aFields);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequestName);
    EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
    EXPECT_EQ(packet.m_nResponseFields, 0);
    EXPECT_EQ(packet.m_bHasResponse, 0);
    EXPECT_EQ(packet.GetPErrors().GetSize(), 0);
    // Each field starts where the previous ones end.
    std::uint32_t dwOffset = 0;
    for (unsigned char i = 1; i <= packet.GetFieldCount(); ++i) {
        EXPECT_EQ(packet.GetFieldAttr(i)->m_dwOffset, dwOffset) << int(i);
        dwOffset += packet.GetFieldValue(i)->GetLength();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BulkOnlyWrapperWalk,
    ::testing::Values(
        SWalkCase{"FullCBW", kCBW, "Command Block Wrapper",
                  {{24500, 32, "55534243"}, {24501, 32, "01000000"}, {24502, 32, "00020000"}, {24503, 6, "00"},
                   {24504, 1, "00"}, {24505, 1, "01"}, {24506, 4, "00"}, {24507, 4, "00"}, {24508, 5, "06"},
                   {24509, 3, "00"}, {24510, 128, "12000000240000000000000000000000"}}},
        // LUN in the low nibble, CB length in the low five bits.
        SWalkCase{"LunAndLengthBits", "55534243 02000000 00000000 00 a5 ef 00", "Command Block Wrapper",
                  {{24500, 32, "55534243"}, {24501, 32, "02000000"}, {24502, 32, "00000000"}, {24503, 6, "00"},
                   {24504, 1, "00"}, {24505, 1, "00"}, {24506, 4, "05"}, {24507, 4, "0a"}, {24508, 5, "0f"},
                   {24509, 3, "07"}, {24510, 8, "00"}}},
        SWalkCase{"BytesBehindTheBlockStayUnread", std::string(kCBW) + "ffff", "Command Block Wrapper",
                  {{24500, 32, "55534243"}, {24501, 32, "01000000"}, {24502, 32, "00020000"}, {24503, 6, "00"},
                   {24504, 1, "00"}, {24505, 1, "01"}, {24506, 4, "00"}, {24507, 4, "00"}, {24508, 5, "06"},
                   {24509, 3, "00"}, {24510, 128, "12000000240000000000000000000000"}}},
        SWalkCase{"CSW", "55534253 01000000 00000000 01", "Command Status Wrapper",
                  {{24500, 32, "55534253"}, {24511, 32, "01000000"}, {24512, 32, "00000000"}, {24513, 8, "01"}}},
        SWalkCase{"CSWCutInResidue", "55534253 01000000 0000", "Command Status Wrapper",
                  {{24500, 32, "55534253"}, {24511, 32, "01000000"}, {24512, 16, "0000"}}},
        // The walk ends on the empty copy before the name is set.
        SWalkCase{"SignatureOnly", "55534243", "", {{24500, 32, "55534243"}}},
        SWalkCase{"SignatureAndOneByte", "55534243 07", "Command Block Wrapper",
                  {{24500, 32, "55534243"}, {24501, 8, "07"}}},
        SWalkCase{"TwoBytes", "5553", "", {{24500, 16, "5553"}}},
        SWalkCase{"OtherSignature", "01020304 05060708", "", {{24500, 32, "01020304"}}},
        SWalkCase{"Empty", "", "", {}}),
    [](const ::testing::TestParamInfo<SWalkCase>& info) { return std::string(info.param.pszName); });

TEST(BulkOnlyWrapper, OptionsNameSignatureDirectionAndStatus)
{
    Spec* pSpec = Spec::GetInstance();
    struct {
        unsigned short nId;
        CAdvAnlzData value;
        const char* pszName;
        const char* pszAbbr;
    } const aCases[] = {
        {24500, CAdvAnlzData(0x43425355, 32), "Data Packet is CBW", "CBW"},
        {24500, CAdvAnlzData(0x53425355, 32), "CSW", "CSW"},
        {24500, CAdvAnlzData(0x53425356, 32), "", ""},
        {24505, CAdvAnlzData(0, 1), "CBW-Flags direction-Data Out", "Data Out"},
        {24505, CAdvAnlzData(1, 1), "CBW-Flags direction-Data In", "Data In"},
        {24513, CAdvAnlzData(0, 8), "Command Passed", "Command Passed"},
        {24513, CAdvAnlzData(2, 8), "Phase Error", "Phase Error"},
        {24513, CAdvAnlzData(3, 8), "Reserved Obsolete", "Reserved Obsolete"},
        {24513, CAdvAnlzData(4, 8), "", ""},
        {24513, CAdvAnlzData(5, 8), "Reserved", "Reserved"},
        {24513, CAdvAnlzData(6, 8), "", ""},
        {24501, CAdvAnlzData(0, 32), "", ""},
    };
    for (const auto& c : aCases) {
        EXPECT_EQ(pSpec->GetFieldOptionName(c.nId, c.value), c.pszName) << c.nId;
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(c.nId, c.value), c.pszAbbr) << c.nId;
    }
    const CFieldOptionList* pStatus = pSpec->GetFieldOptions(24513);
    ASSERT_NE(pStatus, nullptr);
    EXPECT_EQ(pStatus->GetAt(4).m_nOptionId, 4);
}

TEST(BulkOnlyWrapper, LayerTablesFollowTheCatalogue)
{
    Spec* pSpec = Spec::GetInstance();
    ASSERT_EQ(pSpec->GetNumberOfLayerFields(), 14);
    const char* const aNames[] = {"Signature", "Tag",      "Data Transport Length", "Flags-Reserved",
                                  "Flags-Absolete", "Flags-Direction", "LUN", "Reserved", "CB Length", "Reserved",
                                  "CB",        "Tag",      "Data Residue",          "Status"};
    for (int i = 0; i < 14; ++i) {
        const unsigned short nId = pSpec->GetLayerFieldId(i);
        EXPECT_EQ(nId, 24500 + i);
        EXPECT_EQ(pSpec->GetLayerFieldName(nId), aNames[i]);
        EXPECT_EQ(pSpec->GetDefaultFieldAttr(nId)->m_strAbbr, aNames[i]);
    }
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(24499), nullptr);
    EXPECT_EQ(pSpec->GetDefaultFieldAttr(24514), nullptr);
}

TEST(BulkOnlyWrapper, PacketsShareRecordsAndSurviveTheDecoder)
{
    CMassStorageBulkOnlyWrapperPacket a(Hex(kCBW)), b(HexBytes(kCBW));
    for (unsigned char i = 1; i <= 11; ++i)
        EXPECT_EQ(a.GetFieldAttr(i), b.GetFieldAttr(i));
    CMassStorageBulkOnlyWrapperPacket empty;
    EXPECT_EQ(empty.RestructBy(CAdvAnlzData()), 1);
    EXPECT_EQ(empty.GetFieldCount(), 0);
}

}  // namespace
