// HDLC framing: frames and the bytes around them, escapes, stuffed bits in
// the first frame, the run of ones carried between payloads, the framing
// checks, and payloads that must neither crash nor hang.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "serial/HDLCSpec.h"
#include "tests/TestUtil.h"

namespace {

using Spec = CAdvAnlzHDLCSpec;

enum : unsigned short {
    kInfo = Spec::FieldInformation,
    kFlag = Spec::FieldFlag,
    kAddress = Spec::FieldAddress,
    kControl = Spec::FieldControl,
    kFCS = Spec::FieldFCS,
    kData = Spec::FieldData,
};

// Every test starts with no run of ones carried over from an earlier one.
class HDLC : public ::testing::Test {
protected:
    void SetUp() override { Spec::ResetOnesInRow(); }
};

struct SDecoded {
    int nResult;
    std::vector<SFieldView> aFields;
    std::vector<unsigned> aErrors;
};

SDecoded Decode(const CAdvAnlzData& payload)
{
    CProtocolPacket packet(Spec::GetInstance());
    SDecoded r;
    r.nResult = packet.RestructBy(payload);
    r.aFields = FieldsOf(packet);
    for (const std::uint16_t nCode : packet.GetPErrors())
        r.aErrors.push_back(nCode);
    return r;
}

// The bits of the bytes, low bit first, as a synchronous sender puts them on
// the line: a zero goes in behind every five ones in a row.
CAdvAnlzData Stuffed(const std::vector<std::uint8_t>& aBytes)
{
    std::vector<int> aBits;
    int nOnes = 0;
    for (const std::uint8_t b : aBytes) {
        for (int i = 0; i < 8; ++i) {
            const int nBit = (b >> i) & 1;
            aBits.push_back(nBit);
            nOnes = nBit ? nOnes + 1 : 0;
            if (nOnes == 5) {
                aBits.push_back(0);
                nOnes = 0;
            }
        }
    }
    std::vector<std::uint8_t> aPacked((aBits.size() + 7) / 8);
    for (std::size_t i = 0; i < aBits.size(); ++i)
        aPacked[i / 8] |= static_cast<std::uint8_t>(aBits[i] << (i % 8));
    return CAdvAnlzData::FromBytes(aPacked.data(), static_cast<std::uint32_t>(aBits.size()));
}

struct SFramingCase {
    const char* pszName;
    const char* pszHex;
    std::vector<SFieldView> aFields;
    std::vector<unsigned> aErrors;
};

class HDLCFraming : public HDLC, public ::testing::WithParamInterface<SFramingCase> {};

TEST_P(HDLCFraming, FieldsAndErrors)
{
    const SFramingCase& c = GetParam();
    const SDecoded r = Decode(Hex(c.pszHex));
    EXPECT_EQ(r.aFields, c.aFields);
    EXPECT_EQ(r.aErrors, c.aErrors);
    EXPECT_EQ(r.nResult, c.aErrors.empty() ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HDLCFraming,
    ::testing::Values(
        SFramingCase{"WholeFrame",
                     "7e ff 03 c0 21 01 02 00 04 aa bb 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 48, "c02101020004"},
                      {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}},
                     {}},
        SFramingCase{"TwoFlags", "7e 7e", {{kFlag, 8, "7e"}, {kFlag, 8, "7e"}}, {181}},
        SFramingCase{"FlagAlone", "7e", {{kFlag, 8, "7e"}}, {53, 181}},
        SFramingCase{"NoFlag", "01 02 7d 03", {}, {180, 181}},
        SFramingCase{"Empty", "", {}, {180, 181}},
        // Escapes ahead of the first flag are undone in the bytes outside
        // any frame.
        SFramingCase{"BytesBeforeTheFirstFlag",
                     "41 7d 5e 42 7e ff 03 c0 21 aa bb 7e",
                     {{kData, 24, "417e42"}, {kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"},
                      {kInfo, 16, "c021"}, {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}},
                     {}},
        SFramingCase{"CompressedAddressAndControl",
                     "7e c0 21 01 02 aa bb 7e",
                     {{kFlag, 8, "7e"}, {kInfo, 32, "c0210102"}, {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}},
                     {}},
        SFramingCase{"OnlyTheFCSBehindControl",
                     "7e ff 03 aa bb 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kFCS, 16, "aabb"},
                      {kFlag, 8, "7e"}},
                     {}},
        // The FCS then takes the address and control bytes.
        SFramingCase{"NothingBehindControl",
                     "7e ff 03 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 0, ""},
                      {kFCS, 16, "ff03"}, {kFlag, 8, "7e"}},
                     {}},
        // One byte and the closing flag make the FCS.
        SFramingCase{"OneByteBehindControl",
                     "7e ff 03 aa 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kFCS, 16, "aa7e"}},
                     {}},
        SFramingCase{"NoClosingFlag",
                     "7e ff 03 c0 21 aa bb",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 16, "c021"},
                      {kFCS, 16, "aabb"}},
                     {}},
        SFramingCase{"EscapedControl",
                     "7e ff 7d 23 c0 21 aa bb 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 16, "c021"},
                      {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}},
                     {}},
        // In the second frame an escaped flag is data, and the raw FCS
        // bytes stand as they were sent.
        SFramingCase{"EscapesInTheSecondFrame",
                     "7e ff 03 01 02 aa bb 7e ff 03 01 7d 5e 7d 5d 02 7d 5e bb 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 16, "0102"},
                      {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"},
                      {kInfo, 32, "017e7d02"}, {kFCS, 16, "5ebb"}, {kFlag, 8, "7e"}},
                     {}},
        // A second frame cut behind an escape: the escaped byte past the end
        // is taken, and the FCS holds the raw escape and the end.
        SFramingCase{"EscapeAtTheEnd",
                     "7e ff 03 01 02 aa bb 7e c0 21 01 7d",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 16, "0102"},
                      {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}, {kInfo, 16, "c021"}, {kFCS, 16, "7d00"}},
                     {}},
        // Behind an address the stream ends: no control field, no made-up
        // information.
        SFramingCase{"AddressAtTheEnd", "7e ff", {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}}, {53, 181}},
        // A control byte of 0 is no control field; the bytes go to the
        // information.
        SFramingCase{"ControlByteZero",
                     "7e ff 00 c0 21 aa bb 7e",
                     {{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kInfo, 24, "00c021"}, {kFCS, 16, "aabb"},
                      {kFlag, 8, "7e"}},
                     {54}}),
    [](const ::testing::TestParamInfo<SFramingCase>& info) { return std::string(info.param.pszName); });

// The first frame is unstuffed; the same bytes in a second frame are not.
TEST_F(HDLC, StuffedZerosAreRemovedInTheFirstFrameOnly)
{
    // 0x3E holds five ones behind a zero: the sender stuffs a zero there.
    CAdvAnlzData payload = Hex("7e ff 03");
    payload += Stuffed({0x3E, 0x01, 0xAA, 0xBB});
    payload += Hex("7e");
    ASSERT_EQ(payload.GetLength(), 24u + 33u + 8u);
    EXPECT_EQ(Decode(payload).aFields,
              (std::vector<SFieldView>{{kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"},
                                       {kInfo, 16, "3e01"}, {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}}));

    // Sent without stuffing, the first frame loses the zero behind the five
    // ones, everything behind it moves up one place and the last partial
    // byte is cut off, flag and all.
    EXPECT_EQ(Decode(Hex("7e ff 03 3e 01 aa bb 7e")).aFields,
              (std::vector<SFieldView>{
                  {kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 16, "be00"},
                  {kFCS, 16, "d55d"}}));
    // In the second frame the same bytes stand as captured.
    const SDecoded second = Decode(Hex("7e ff 03 01 02 aa bb 7e ff 03 3e 01 aa bb 7e"));
    ASSERT_EQ(second.aFields.size(), 11u);
    EXPECT_EQ(second.aFields[8], (SFieldView{kInfo, 16, "3e01"}));
}

// Bits are taken from the low end of a byte, so 0x7D (1 0 1 1 1 1 1 0) in
// the first frame holds a stuffed run and loses its top bit. A run of ones
// that begins a byte while no run is counted is not counted, so 0x1F keeps
// the zero behind its five ones.
TEST_F(HDLC, RunsOfOnesAsTheFirstFrameReadsThem)
{
    EXPECT_EQ(Decode(Hex("7e c0 21 7d 01 aa bb 7e")).aFields,
              (std::vector<SFieldView>{{kFlag, 8, "7e"}, {kInfo, 32, "c021fd00"}, {kFCS, 16, "d55d"}}));
    EXPECT_EQ(Decode(Hex("7e c0 21 1f 01 aa bb 7e")).aFields,
              (std::vector<SFieldView>{
                  {kFlag, 8, "7e"}, {kInfo, 32, "c0211f01"}, {kFCS, 16, "aabb"}, {kFlag, 8, "7e"}}));
}

// A first frame whose body ends in four ones leaves them counted for the
// next payload, whose first body bit then completes a run of five.
TEST_F(HDLC, RunOfOnesCarriesIntoTheNextPayload)
{
    const CAdvAnlzData next = Hex("7e ff 03 01 02 aa bb 7e");
    const SDecoded fresh = Decode(next);
    EXPECT_EQ(Spec::GetOnesInRow(), 0);

    Decode(Hex("7e ff 03 f0"));
    EXPECT_EQ(Spec::GetOnesInRow(), 4);
    const SDecoded carried = Decode(next);
    EXPECT_NE(carried.aFields, fresh.aFields);
    // The second bit of 0x01 went as a stuffed bit: all behind it moves up
    // one place, and the closing flag is lost with the last partial byte.
    EXPECT_EQ(carried.aFields,
              (std::vector<SFieldView>{
                  {kFlag, 8, "7e"}, {kAddress, 8, "ff"}, {kControl, 8, "03"}, {kInfo, 16, "0101"},
                  {kFCS, 16, "d55d"}}));

    Spec::ResetOnesInRow();
    EXPECT_EQ(Decode(next).aFields, fresh.aFields);
}

// The host's scan of one byte: the cursor names the bit in front of the
// byte, a stuffed zero is cut, a flag pattern is reported.
TEST_F(HDLC, BitStuffingScansOneByte)
{
    Spec& spec = *Spec::GetInstance();
    spec.InitialMembers();
    CAdvAnlzData body = Hex("3e 01");
    spec.SetBitCursor(0xFFFFFFFFu);
    EXPECT_EQ(spec.BitStuffing(body), 0xBE);
    EXPECT_EQ(body.GetLength(), 15u);
    EXPECT_EQ(spec.GetBitCursor(), 0u);
    EXPECT_FALSE(spec.IsFlagPending());

    Spec::ResetOnesInRow();
    CAdvAnlzData flag = Hex("7e 00");
    spec.InitialMembers();
    spec.SetBitCursor(0xFFFFFFFFu);
    EXPECT_EQ(spec.BitStuffing(flag), 0x7E);
    EXPECT_EQ(flag.GetLength(), 16u);
    EXPECT_TRUE(spec.IsFlagPending());
    EXPECT_EQ(Spec::GetOnesInRow(), 0);
}

// Long payloads of one kind of byte, and random ones: the readers nest one
// level per frame, but never deeper than the packet has room for fields.
TEST_F(HDLC, LongPayloadsEndCleanly)
{
    constexpr std::size_t kBytes = 1u << 20;
    std::mt19937 rng(5);
    std::vector<std::vector<std::uint8_t>> aPayloads;
    for (const std::uint8_t nFill : {0x7E, 0x7D, 0xFF, 0x00}) {
        aPayloads.emplace_back(kBytes, nFill);
        aPayloads.back()[0] = 0x7E;
    }
    std::vector<std::uint8_t> aRandom(kBytes);
    for (std::uint8_t& b : aRandom)
        b = static_cast<std::uint8_t>(rng());
    aPayloads.push_back(aRandom);
    // Many short frames: flag, address, control, one byte, FCS.
    std::vector<std::uint8_t> aFrames;
    while (aFrames.size() < kBytes)
        aFrames.insert(aFrames.end(), {0x7E, 0xFF, 0x03, 0x21, 0x11, 0x22});
    aPayloads.push_back(aFrames);

    for (const std::vector<std::uint8_t>& a : aPayloads) {
        const CAdvAnlzData payload = CAdvAnlzData::FromBytes(a.data(), static_cast<std::uint32_t>(a.size() * 8));
        CProtocolPacket packet(Spec::GetInstance());
        packet.RestructBy(payload);
        unsigned long dwSum = 0;
        for (int i = 1; i <= packet.GetFieldCount(); ++i)
            dwSum += packet.GetFieldValue(static_cast<unsigned char>(i))->GetLength();
        EXPECT_EQ(dwSum, packet.GetPacketLength());
        EXPECT_GE(packet.GetFieldCount(), 1);
    }
}

// Payloads of any bit length, also ones that end inside a byte: the walk
// ends and every field lies within what the stream offered.
TEST_F(HDLC, PayloadsOfAnyBitLength)
{
    std::mt19937 rng(11);
    const std::uint8_t aAlphabet[] = {0x7E, 0x7D, 0xFF, 0x03, 0x5E, 0x3E, 0x1F, 0x00, 0x21};
    for (int n = 0; n < 3000; ++n) {
        std::vector<std::uint8_t> a(1 + rng() % 24);
        for (std::uint8_t& b : a)
            b = rng() % 3 ? aAlphabet[rng() % sizeof(aAlphabet)] : static_cast<std::uint8_t>(rng());
        const std::uint32_t nBits = static_cast<std::uint32_t>(a.size() * 8 - rng() % 8);
        Spec::ResetOnesInRow();
        CProtocolPacket packet(Spec::GetInstance());
        packet.RestructBy(CAdvAnlzData::FromBytes(a.data(), nBits));
        for (int i = 1; i <= packet.GetFieldCount(); ++i)
            EXPECT_LE(packet.GetFieldValue(static_cast<unsigned char>(i))->GetLength(), 8u * 24u) << n;
    }
}

TEST(HDLCCatalogue, IdsNamesAndLayer)
{
    Spec& spec = *Spec::GetInstance();
    ASSERT_EQ(spec.GetNumberOfLayerFields(), 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(spec.GetLayerFieldId(i), 5500 + i);
    EXPECT_EQ(spec.GetDefaultFieldAttr(5499), nullptr);
    EXPECT_EQ(spec.GetDefaultFieldAttr(5508), nullptr);
    EXPECT_EQ(spec.GetLayerFieldName(5504), "Protocol High");
    EXPECT_EQ(spec.GetDefaultFieldAttr(5506)->m_dwLength, 16u);
    EXPECT_EQ(spec.GetDefaultFieldAttr(5507)->m_strDesc, "Data Befor Frame.");
}

}  // namespace
