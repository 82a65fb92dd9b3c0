// RBC commands: the seven read here, the eleven passed on to the SCSI
// decoder, unknown codes, the reserved buffer id, option and format lists,
// and the SCSI and ATAPI decoders used before and after.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "platform/Stream.h"
#include "storage/ATAPISpec.h"
#include "storage/RBCProtocol.h"
#include "tests/StorageTestUtil.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CRBCProtocolSpec;

struct SCommandCase {
    const char* pszName;
    std::string strHex;
    std::vector<SFieldView> aFields;
    int nRequestFields;
    int nResponseFields;
    int bHasResponse;
    const char* pszRequestName;
    const char* pszResponseName;
};
void PrintTo(const SCommandCase& c, std::ostream* os)
{
    *os << c.pszName;
}

class RBCCommand : public ::testing::TestWithParam<SCommandCase> {};

TEST_P(RBCCommand, DecodesFieldsCountsAndNames)
{
    const SCommandCase& c = GetParam();
    CRBCProtocolPacket packet(Hex(c.strHex));
    EXPECT_FALSE(Spec::GetInstance()->IsPassedToSCSI());
    EXPECT_EQ(FieldsOf(packet), c.aFields);
    EXPECT_EQ(packet.m_nRequestFields, c.nRequestFields);
    EXPECT_EQ(packet.m_nResponseFields, c.nResponseFields);
    EXPECT_EQ(packet.m_bHasResponse, c.bHasResponse);
    EXPECT_EQ(packet.m_strRequestName, c.pszRequestName);
    EXPECT_EQ(packet.m_strResponseName, c.pszResponseName);
}

std::vector<SFieldView> Reserved8(int nTimes, std::vector<SFieldView> a = {})
{
    for (int i = 0; i < nTimes; ++i)
        a.push_back({Spec::FieldReserved8, 8, "00"});
    return a;
}

INSTANTIATE_TEST_SUITE_P(
    Commands, RBCCommand,
    ::testing::Values(
        SCommandCase{"FormatUnit", "04 00000000 80",
                     Join(Reserved8(4, {{28000, 8, "04"}}), {{28006, 8, "80"}}), 6, 0, 0, "FORMAT_UNIT", ""},
        SCommandCase{"StartStopUnit", "1b 01 0000 53 00",
                     {{28000, 8, "1b"},
                      {28012, 1, "01"},
                      {28004, 7, "00"},
                      {28005, 8, "00"},
                      {28005, 8, "00"},
                      {28015, 1, "01"},
                      {28014, 1, "01"},
                      {28001, 2, "00"},
                      {28013, 4, "05"},
                      {28006, 8, "00"}},
                     10, 0, 0, "START_STOP_UNIT", ""},
        SCommandCase{"ReadCapacity", "25 0000000000000000 00  0003ffff 00000200",
                     Join(Reserved8(8, {{28000, 8, "25"}}),
                          {{28006, 8, "00"}, {28010, 32, "ffff0300"}, {28011, 32, "00020000"}}),
                     10, 2, 1, "READ_CAPACITY", "READ_CAPACITY Data"},
        SCommandCase{"Read10WithData", "28 00 00001000 00 0001 00  aabbcc",
                     {{28000, 8, "28"},
                      {28005, 8, "00"},
                      {28007, 32, "00100000"},
                      {28005, 8, "00"},
                      {28008, 16, "0100"},
                      {28006, 8, "00"},
                      {28017, 24, "aabbcc"}},
                     6, 1, 1, "READ (10)", "READ (10)"},
        // Names and flag come first: a lone code is named and announced.
        SCommandCase{"Read10CodeOnly", "28", {{28000, 8, "28"}}, 1, 0, 1, "READ (10)", "READ (10)"},
        SCommandCase{"Write10", "2a 08 00000010 00 0002 00  0102",
                     {{28000, 8, "2a"},
                      {28002, 3, "00"},
                      {28016, 1, "01"},
                      {28003, 4, "00"},
                      {28007, 32, "10000000"},
                      {28005, 8, "00"},
                      {28008, 16, "0200"},
                      {28006, 8, "00"},
                      {28017, 16, "0102"}},
                     8, 1, 1, "WRITE (10)", "WRITE (10)"},
        // The walk ends with the payload: no data field, yet a response is
        // announced.
        SCommandCase{"Verify10", "2f 00 00000010 00 0008 00",
                     {{28000, 8, "2f"},
                      {28005, 8, "00"},
                      {28010, 32, "10000000"},
                      {28005, 8, "00"},
                      {28009, 16, "0800"},
                      {28006, 8, "00"}},
                     6, 0, 1, "VERIFY(10)", "VERIFY(10)"},
        SCommandCase{"SynchronizeCacheCut", "35 0000",
                     Reserved8(2, {{28000, 8, "35"}}), 3, 0, 0, "SYNCHRONIZE_CACHE", ""},
        // Bytes the block does not account for.
        SCommandCase{"SynchronizeCacheWithExtra", "35 0000000000000000 00 beef",
                     Join(Reserved8(8, {{28000, 8, "35"}}), {{28006, 8, "00"}, {28018, 16, "beef"}}), 11, 0, 0,
                     "SYNCHRONIZE_CACHE", ""},
        SCommandCase{"Unknown", "08 00 0001 00 00", {{28000, 8, "08"}, {28018, 40, "0000010000"}}, 2, 0, 0,
                     "UnKnnown", ""},
        SCommandCase{"UnknownCodeOnly", "5d", {{28000, 8, "5d"}}, 1, 0, 0, "UnKnnown", ""}),
    [](const ::testing::TestParamInfo<SCommandCase>& info) { return info.param.pszName; });

// Every operation code: passed on (the SCSI decode, with its counts), read
// here, or unknown; and the block length of each.
TEST(RBCDispatch, EveryOperationCode)
{
    const std::map<int, int> kPassedOn = {{0x00, 6}, {0x03, 6},  {0x12, 6},  {0x15, 6},  {0x16, 6},  {0x17, 6},
                                          {0x1A, 6}, {0x1E, 6},  {0x3B, 10}, {0x5E, 10}, {0x5F, 10}};
    const std::map<int, int> kOwn = {{0x04, 6},  {0x1B, 6},  {0x25, 10}, {0x28, 10},
                                     {0x2A, 10}, {0x2F, 10}, {0x35, 10}};
    Spec* pSpec = Spec::GetInstance();
    for (int nOp = 0; nOp < 256; ++nOp) {
        SCOPED_TRACE("operation code " + std::to_string(nOp));
        const auto passed = kPassedOn.find(nOp);
        const auto own = kOwn.find(nOp);
        const int nLength = passed != kPassedOn.end() ? passed->second : own != kOwn.end() ? own->second : 0;
        EXPECT_EQ(pSpec->GetCommandLength(static_cast<unsigned char>(nOp)), nLength);
        const std::string strHex =
            HexOf(CAdvAnlzData(static_cast<std::uint64_t>(nOp), 8)) + " 00000000 00 0000 00 1122";
        CRBCProtocolPacket packet(Hex(strHex));
        EXPECT_EQ(pSpec->IsPassedToSCSI(), passed != kPassedOn.end());
        if (passed != kPassedOn.end()) {
            CSCSIProtocolPacket plain(Hex(strHex));
            EXPECT_EQ(FieldsOf(packet), FieldsOf(plain));
            EXPECT_EQ(packet.m_nRequestFields, plain.m_nRequestFields);
            EXPECT_EQ(packet.m_nResponseFields, plain.m_nResponseFields);
            EXPECT_EQ(packet.m_strRequestName, plain.m_strRequestName);
            continue;
        }
        EXPECT_EQ(packet.GetFieldId(1), Spec::FieldOperationCode);
        if (own == kOwn.end()) {
            EXPECT_EQ(packet.m_strRequestName, "UnKnnown");
            EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{28000, 28018}));
            continue;
        }
        // A block reads exactly its command length; what follows is data.
        std::uint32_t nBlockBits = 0;
        for (int i = 1; i <= packet.m_nRequestFields; ++i)
            if (packet.GetFieldId(static_cast<unsigned char>(i)) != Spec::FieldUnexpectedData)
                nBlockBits += packet.GetFieldValue(static_cast<unsigned char>(i))->GetLength();
        EXPECT_EQ(nBlockBits, static_cast<std::uint32_t>(nLength) * 8);
        EXPECT_EQ(packet.m_nRequestFields + packet.m_nResponseFields, packet.GetFieldCount());
    }
}

// More than 8191 data bytes: the data field takes its 65535 bits, the
// leftover field as many more, and the rest stays unread.
TEST(RBCDispatch, LongDataIsShownUpToTwoFieldWidths)
{
    const std::string strHex = "28 00 00000000 00 0020 00" + std::string(2 * 20000, 'a');
    CRBCProtocolPacket packet(Hex(strHex));
    ASSERT_EQ(packet.GetFieldCount(), 8);
    EXPECT_EQ(packet.GetFieldId(7), Spec::FieldCommandDataBlock);
    EXPECT_EQ(packet.GetFieldValue(7)->GetLength(), 65535u);
    EXPECT_EQ(packet.GetFieldId(8), Spec::FieldUnexpectedData);
    EXPECT_EQ(packet.GetFieldValue(8)->GetLength(), 65535u);
    EXPECT_EQ(packet.GetFieldAttr(8)->m_dwOffset, 80u + 65535u);
    EXPECT_EQ(packet.m_nRequestFields, 7);
    EXPECT_EQ(packet.m_nResponseFields, 1);
}

// ------------------------------------------------------------- passed on

TEST(RBCPassedOn, KeepsTheSCSICounts)
{
    const std::string strInquiry = "12 00 00 00 24 00  00 00 05 02 1f 00 00 00 41 43 4d 45";
    CRBCProtocolPacket packet(Hex(strInquiry));
    ExpectSameDecode(packet, CSCSIProtocolPacket(Hex(strInquiry)));
    EXPECT_GT(packet.m_nResponseFields, 0);
    EXPECT_EQ(packet.m_strRequestName, "INQUIRY");
}

// WRITE BUFFER: the buffer id is reserved on RBC devices. Only that field
// instance gets the strings "Reserved"; its id and value stay the SCSI's,
// and the SCSI and ATAPI decoders go on showing the buffer id.
TEST(RBCPassedOn, WriteBufferShowsTheBufferIdReserved)
{
    const std::string strWriteBuffer = "3b 02 05 000102 000008 00";
    CSCSIProtocolPacket before(Hex(strWriteBuffer));
    CRBCProtocolPacket packet(Hex(strWriteBuffer));
    ASSERT_EQ(packet.GetFieldCount(), 7);
    ASSERT_EQ(packet.GetFieldId(4), CSCSIProtocolSpec::FieldBufferId);
    EXPECT_EQ(HexOf(*packet.GetFieldValue(4)), "05");
    const SSpecFieldAttr* pRenamed = packet.GetFieldAttr(4);
    EXPECT_EQ(pRenamed->m_strName, "Reserved");
    EXPECT_EQ(pRenamed->m_strAbbr, "Reserved");
    EXPECT_EQ(pRenamed->m_strDesc, "Reserved");
    EXPECT_EQ(packet.GetFieldName(5), "Buffer Offset");
    EXPECT_EQ(packet.GetFieldName(2), "Mode");

    // A second packet shares the renamed record.
    CRBCProtocolPacket again(Hex(strWriteBuffer));
    EXPECT_EQ(again.GetFieldAttr(4), pRenamed);

    // Neither the SCSI decoder nor the ATAPI decoder learns the name.
    CSCSIProtocolPacket after(Hex(strWriteBuffer));
    EXPECT_EQ(after.GetFieldName(4), "Buffer Id");
    ExpectSameDecode(before, after);
    CATAPIPacket atapi(Hex(strWriteBuffer));
    EXPECT_EQ(atapi.GetFieldName(4), "Buffer Id");

    // A saved packet loads bound to the very same records.
    CMemoryStream stream;
    ASSERT_EQ(packet.Save(&stream, 1), S_OK);
    stream.Rewind();
    CRBCProtocolPacket loaded;
    ASSERT_EQ(loaded.Load(&stream), S_OK);
    for (int i = 1; i <= packet.GetFieldCount(); ++i)
        EXPECT_EQ(loaded.GetFieldAttr(static_cast<unsigned char>(i)),
                  packet.GetFieldAttr(static_cast<unsigned char>(i)));
}

// The READ BUFFER block has the same layout but is not an RBC command.
TEST(RBCPassedOn, ReadBufferIsUnknown)
{
    CRBCProtocolPacket packet(Hex("3c 02 05 000102 000008 00"));
    EXPECT_EQ(packet.m_strRequestName, "UnKnnown");
    EXPECT_EQ(IdsOf(packet), (std::vector<unsigned short>{28000, 28018}));
}

// ------------------------------------------------------------- tables

TEST(RBCCatalogue, OptionsAndFormatsFollowTheSCSILists)
{
    Spec* pSpec = Spec::GetInstance();
    struct SOption {
        unsigned short nId;
        std::uint64_t nValue;
        std::uint8_t nWidth;
        const char* pszName;
        const char* pszAbbr;
    };
    const SOption aOptions[] = {
        {28000, 0x28, 8,
         "The READ(6) command requests that the device transfer data to the initiator. The most recent data value "
         "written in the addressed logical block shall be returned.",
         "READ (10)"},
        {28000, 0x17, 8, "RELEASE", "RELEASE (6)"},
        {28000, 0x3B, 8, "WRITE_BUFFER", "WRITE_BUFFER command"},
        {28000, 0x03, 8, "REQUEST_SENSE", "REQUEST_SENSE"},
        {28000, 0x2B, 8, "", ""},
        {28000, 0x5D, 8, "", ""},
        {28000, 0x3C, 8, "Unknown", "Unknown"},
        {28013, 0x7, 4, "Device Control", "Device Control"},
        {28013, 0x9, 4, "Reserved", "Reserved"},
        {22000, 0x5A, 8, "MODE SNSE(10)", "MODE SNSE(10)"},
    };
    for (const SOption& o : aOptions) {
        const CAdvAnlzData value(o.nValue, o.nWidth);
        EXPECT_EQ(pSpec->GetFieldOptionName(o.nId, value), o.pszName) << o.nId << " " << o.nValue;
        EXPECT_EQ(pSpec->GetFieldOptionAbbr(o.nId, value), o.pszAbbr) << o.nId << " " << o.nValue;
    }

    ASSERT_EQ(pSpec->GetFormatCount(), 29 + 18);
    unsigned char nCode = 0;
    CString strName;
    const std::pair<int, std::pair<int, const char*>> aFormats[] = {
        {0, {131, "EXTENDED COPY"}}, {28, {8, "RECEIVE"}},   {29, {4, "FORMAT_UNIT"}},
        {36, {40, "READ"}},          {43, {0, "TEST_UNIT_READY"}}, {46, {59, "WRITE_BUFFER"}}};
    for (const auto& f : aFormats) {
        ASSERT_TRUE(pSpec->GetFormat(f.first, nCode, strName));
        EXPECT_EQ(nCode, f.second.first);
        EXPECT_EQ(strName, f.second.second);
    }
}

TEST(RBCCatalogue, Fields)
{
    Spec* pSpec = Spec::GetInstance();
    const CProtocolSpec* pBase = pSpec;
    ASSERT_EQ(pSpec->GetNumberOfLayerFields(), 19);
    const std::uint32_t aLengths[] = {8, 2, 3, 4, 7, 8, 8, 32, 16, 16, 32, 32, 1, 4, 1, 1, 1, 65535, 65535};
    for (int i = 0; i < 19; ++i) {
        const unsigned short nId = pSpec->GetLayerFieldId(i);
        ASSERT_EQ(nId, 28000 + i);
        const SSpecFieldAttr* pAttr = pBase->GetDefaultFieldAttr(nId);
        ASSERT_NE(pAttr, nullptr);
        EXPECT_EQ(pAttr->m_dwLength, aLengths[i]) << nId;
        EXPECT_EQ(pAttr->m_dwOffset, 0u);
        EXPECT_EQ(pAttr->m_strAbbr, pAttr->m_strName);
    }
    EXPECT_EQ(pSpec->GetLayerFieldName(28018), "UnExpected Data");
    EXPECT_EQ(pBase->GetFieldDescription(28000, nullptr),
              "This field contains the code value identifying the operation being requested.");
    EXPECT_EQ(pBase->GetFieldDescription(28003, nullptr), "Reserved");
    EXPECT_EQ(pBase->GetFieldDescription(28017, nullptr), "Command Data Block");
    EXPECT_EQ(pBase->GetDefaultFieldAttr(22000), nullptr);
}

TEST(RBCCuts, EveryPrefixAgreesWithTheWhole)
{
    const char* aPayloads[] = {
        "25 0000000000000000 00  0003ffff 00000200",
        "2a 08 00000010 00 0002 00  0102",
        "1b 01 0000 53 00",
        "35 0000000000000000 00 beef",
        "3b 02 05 000102 000008 00",
    };
    for (const char* pszHex : aPayloads) {
        SCOPED_TRACE(pszHex);
        ExpectCutsAgree<CRBCProtocolPacket>(pszHex);
    }
}

TEST(RBCPacket, CopiesAndLengthComesFromTheDecoder)
{
    CRBCProtocolPacket packet(Hex("25 0000000000000000 00  0003ffff 00000200"));
    CRBCProtocolPacket copy(packet);
    ExpectSameDecode(copy, packet);
    EXPECT_EQ(copy.GetCommandLength(0x5F), 10);
    EXPECT_EQ(copy.GetCommandLength(0x5D), 0);

    CRBCProtocolPacket empty(CAdvAnlzData{});
    EXPECT_EQ(empty.GetFieldCount(), 0);
    EXPECT_EQ(empty.m_nRequestFields, 0);
    EXPECT_EQ(empty.m_strRequestName, "");
}

}  // namespace
