// The HID descriptor, class request and physical descriptor decoders, and the
// HID packet: its selector, its copies, and the release of the decoders
// whatever the order in which packets come and go.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hid/USBHIDPacket.h"
#include "hid/USBHIDPhysicalSpec.h"
#include "hid/USBHIDReportSpec.h"
#include "hid/USBHIDRequestSpec.h"
#include "hid/USBHIDSpec.h"
#include "registry/DecoderRegistry.h"
#include "tests/TestUtil.h"

namespace {

using Ids = std::vector<unsigned short>;

std::vector<std::uint32_t> LengthsOf(const CProtocolPacket& packet)
{
    std::vector<std::uint32_t> a;
    for (const SFieldView& f : FieldsOf(packet))
        a.push_back(f.nBits);
    return a;
}

std::string OptionAbbrAt(const CUSBHIDPacket& packet, unsigned char nIndex)
{
    unsigned long dwLength = 0;
    return packet.GetFieldBriefPattern(nIndex, 6, dwLength, PacketSideWhole, DisplayDecimal, 0).ToStdString();
}

// ------------------------------------------------------- HID descriptor

TEST(HIDDescriptor, PairsByCountAndLeftover)
{
    struct SCase {
        const char* pszWhat;
        const char* pszHex;
        Ids ids;
        std::vector<std::uint32_t> lengths;
    };
    const SCase aCases[] = {
        {"no class descriptor", "09 21 11 01 00 00", {27700, 27701, 27702, 27703, 27704}, {8, 8, 16, 8, 8}},
        {"one report descriptor", "09 21 11 01 00 01 22 3F 00",
         {27700, 27701, 27702, 27703, 27704, 27701, 27705}, {8, 8, 16, 8, 8, 8, 16}},
        {"three class descriptors", "0F 21 11 01 00 03 22 3F 00 23 10 00 22 20 00",
         {27700, 27701, 27702, 27703, 27704, 27701, 27705, 27701, 27705, 27701, 27705},
         {8, 8, 16, 8, 8, 8, 16, 8, 16, 8, 16}},
        {"the count outruns the payload", "09 21 11 01 00 02 22 3F 00",
         {27700, 27701, 27702, 27703, 27704, 27701, 27705, 27701, 27705}, {8, 8, 16, 8, 8, 8, 16, 0, 0}},
        {"bytes behind the last pair", "09 21 11 01 21 01 22 3F 00 AA BB",
         {27700, 27701, 27702, 27703, 27704, 27701, 27705, 27706}, {8, 8, 16, 8, 8, 8, 16, 16}},
        {"one byte", "09", {27700, 27701, 27702, 27703, 27704}, {8, 0, 0, 0, 0}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        const CUSBHIDPacket packet(CUSBHIDPacket::SelectorHIDDescriptor, Hex(c.pszHex));
        EXPECT_EQ(IdsOf(packet), c.ids);
        EXPECT_EQ(LengthsOf(packet), c.lengths);
        EXPECT_EQ(packet.GetRequestName().ToStdString(), "HID Descriptor");
        EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
    }
    const CUSBHIDPacket hid(CUSBHIDPacket::SelectorHIDDescriptor, Hex("09 21 11 01 21 01 22 3F 00"));
    EXPECT_EQ(OptionAbbrAt(hid, 2), "HID");
    EXPECT_EQ(OptionAbbrAt(hid, 4), "US");
    EXPECT_EQ(OptionAbbrAt(hid, 6), "Report");
}

TEST(HIDDescriptor, EmptyPayloadAndCountsBeyondThePacket)
{
    const CUSBHIDPacket empty(CUSBHIDPacket::SelectorHIDDescriptor, CAdvAnlzData());
    EXPECT_EQ(empty.GetFieldCount(), 0);
    EXPECT_TRUE(empty.GetRequestName().IsEmpty());

    // 255 pairs claimed: the walk ends in order at the packet's field limit,
    // and whatever is left stands in one leftover field.
    const CUSBHIDPacket shortOne(CUSBHIDPacket::SelectorHIDDescriptor, Hex("09 21 11 01 00 FF 22 3F 00"));
    EXPECT_EQ(shortOne.GetFieldCount(), 255);
    EXPECT_EQ(shortOne.GetPacketLength(), 72u);
    const CUSBHIDPacket longOne(CUSBHIDPacket::SelectorHIDDescriptor,
                                CAdvAnlzData(HexBytes("09 21 11 01 00 FF" + std::string(2 * 3 * 200, 'A'))));
    EXPECT_EQ(longOne.GetFieldCount(), 254);
    EXPECT_EQ(longOne.GetFieldId(254), CUSBHIDSpec::FieldUnexpected);
    EXPECT_EQ(longOne.GetPacketLength(), 8u * (6 + 3 * 200));
}

// -------------------------------------------------------- class requests

TEST(HIDRequest, EveryRequestCode)
{
    struct SCase {
        const char* pszWhat;
        const char* pszHex;
        const char* pszName;
        Ids ids;
        std::vector<std::uint32_t> lengths;
    };
    const Ids setup = {27700, 27701, 27702, 27703};
    auto With = [&](Ids tail) {
        Ids a = setup;
        a.insert(a.end(), tail.begin(), tail.end());
        return a;
    };
    const SCase aCases[] = {
        {"Get Report with more data than wLength", "A1 01 00 01 00 00 03 00 01 02 03 04", "Get Report",
         With({27710, 27709, 27705, 27706, 27707, 27715}), {5, 2, 1, 8, 8, 8, 16, 16, 24, 8}},
        {"Get Report of the setup alone", "A1 01 00 01 00 00 03 00", "Get Report",
         With({27710, 27709, 27705, 27706, 27707}), {5, 2, 1, 8, 8, 8, 16, 16, 0}},
        {"Get Report with wLength 0 takes a byte", "A1 01 00 01 00 00 00 00 01 02", "Get Report",
         With({27710, 27709, 27705, 27706, 27707, 27715}), {5, 2, 1, 8, 8, 8, 16, 16, 8, 8}},
        {"Get Idle", "A1 02 00 00 00 00 01 00 7D", "Get Idle", With({27710, 27711, 27705, 27706, 27708}),
         {5, 2, 1, 8, 8, 8, 16, 16, 8}},
        {"Get Protocol", "A1 03 00 00 00 00 01 00 01", "Get Protocol", With({27704, 27705, 27706, 27713}),
         {5, 2, 1, 8, 16, 16, 16, 8}},
        {"reserved request 4", "21 04 00 00 00 00 00 00", "Reserved", With({27704, 27705, 27706}),
         {5, 2, 1, 8, 16, 16, 16}},
        {"reserved request 8", "21 08 00 00 00 00 00 00", "Reserved", With({27704, 27705, 27706}),
         {5, 2, 1, 8, 16, 16, 16}},
        {"Set Report", "21 09 00 02 00 00 01 00 01", "Set Report", With({27710, 27709, 27705, 27706, 27707}),
         {5, 2, 1, 8, 8, 8, 16, 16, 8}},
        {"Set Idle with bytes behind", "21 0A 00 7D 00 00 00 00 AA", "Set Idle",
         With({27710, 27712, 27705, 27706, 27715}), {5, 2, 1, 8, 8, 8, 16, 16, 8}},
        {"Set Protocol", "21 0B 01 00 00 00 00 00", "Set Protocol", With({27714, 27705, 27706}),
         {5, 2, 1, 8, 16, 16, 16}},
        {"request 0", "21 00 00 00 00 00 00 00", "Unknown", With({27704, 27705, 27706}), {5, 2, 1, 8, 16, 16, 16}},
        {"request 12", "21 0C 00 00 00 00 00 00", "Unknown", With({27704, 27705, 27706}), {5, 2, 1, 8, 16, 16, 16}},
        {"request 255", "21 FF 00 00 00 00 00 00", "Unknown", With({27704, 27705, 27706}),
         {5, 2, 1, 8, 16, 16, 16}},
        {"a standard GET_DESCRIPTOR is read by its number alone", "81 06 00 22 00 00 40 00", "Reserved",
         With({27704, 27705, 27706}), {5, 2, 1, 8, 16, 16, 16}},
        {"one byte", "A1", "Unknown", {27700, 27701, 27702, 27703, 27704, 27705, 27706}, {5, 2, 1, 0, 0, 0, 0}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        const CUSBHIDPacket packet(CUSBHIDPacket::SelectorRequest, Hex(c.pszHex));
        EXPECT_EQ(IdsOf(packet), c.ids);
        EXPECT_EQ(LengthsOf(packet), c.lengths);
        EXPECT_EQ(packet.GetRequestName().ToStdString(), c.pszName);
        EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
        EXPECT_EQ(packet.GetPacketLength(), Hex(c.pszHex).GetLength());
    }
}

TEST(HIDRequest, RecipientsTypesAndValueOptions)
{
    struct SCase {
        const char* pszHex;
        std::vector<std::string> abbrs;  // of fields 1, 2, 3 and 6
    };
    const SCase aCases[] = {
        {"20 09 00 02 00 00 00 00", {"Device", "Class", "Host to Device", "Output"}},
        {"A1 01 00 03 00 00 00 00", {"Interface", "Class", "Device to Host", "Feature"}},
        {"42 01 00 01 00 00 00 00", {"Endpoint", "Vendor", "Host to Device", "Input"}},
        {"03 01 00 00 00 00 00 00", {"Other", "Standard", "Host to Device", "Unknown"}},
        {"7F 01 00 04 00 00 00 00", {"Reserved", "Reserved", "Host to Device", "Reserved"}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszHex);
        const CUSBHIDPacket packet(CUSBHIDPacket::SelectorRequest, Hex(c.pszHex));
        EXPECT_EQ((std::vector<std::string>{OptionAbbrAt(packet, 1), OptionAbbrAt(packet, 2),
                                            OptionAbbrAt(packet, 3), OptionAbbrAt(packet, 6)}),
                  c.abbrs);
    }
    // The protocol: a blank ends the data stage's abbreviations, not those of
    // Set Protocol's wValue, whose 8-bit rows do not reach above 255.
    EXPECT_EQ(OptionAbbrAt(CUSBHIDPacket(0, Hex("A1 03 00 00 00 00 01 00 00")), 8), "Boot_Protocol ");
    EXPECT_EQ(OptionAbbrAt(CUSBHIDPacket(0, Hex("A1 03 00 00 00 00 01 00 01")), 8), "Report_Protocol ");
    EXPECT_EQ(OptionAbbrAt(CUSBHIDPacket(0, Hex("A1 03 00 00 00 00 01 00 07")), 8), "Unknown");
    EXPECT_EQ(OptionAbbrAt(CUSBHIDPacket(0, Hex("21 0B 01 00 00 00 00 00")), 5), "Report_Protocol");
    EXPECT_EQ(OptionAbbrAt(CUSBHIDPacket(0, Hex("21 0B 02 00 00 00 00 00")), 5), "Unknown");
    EXPECT_EQ(OptionAbbrAt(CUSBHIDPacket(0, Hex("21 0B 00 01 00 00 00 00")), 5), "");
}

TEST(HIDRequest, ReportsOfFourKibibytesAndMore)
{
    // wLength 4096: the report takes its 32768 bits, the rest is leftover.
    std::string strHex = "21 09 00 02 00 00 00 10" + std::string(2 * 5000, 'B');
    const CUSBHIDPacket big(CUSBHIDPacket::SelectorRequest, CAdvAnlzData(HexBytes(strHex)));
    EXPECT_EQ(big.GetFieldValue(9)->GetLength(), 8u * 4096);
    EXPECT_EQ(big.GetFieldId(10), CUSBHIDRequestSpec::FieldUnexpected);
    EXPECT_EQ(big.GetFieldValue(10)->GetLength(), 8u * (5000 - 4096));
    // wLength 65535 with a short data stage: the report takes what is there.
    const CUSBHIDPacket cut(CUSBHIDPacket::SelectorRequest, Hex("21 09 00 02 00 00 FF FF 01 02"));
    EXPECT_EQ(cut.GetFieldCount(), 9);
    EXPECT_EQ(cut.GetFieldValue(9)->GetLength(), 16u);
}

// --------------------------------------------------- physical descriptor

TEST(HIDPhysical, DesignatorPairsByCount)
{
    struct SCase {
        const char* pszWhat;
        const char* pszHex;
        Ids ids;
        std::vector<std::uint32_t> lengths;
    };
    const Ids header = {27700, 27701, 27703, 27702};
    const Ids pair = {27704, 27706, 27705};
    auto Join = [](std::initializer_list<Ids> parts) {
        Ids a;
        for (const Ids& p : parts)
            a.insert(a.end(), p.begin(), p.end());
        return a;
    };
    const SCase aCases[] = {
        {"no pair: the rest is leftover", "00 0000 00 AA BB", Join({header, {27707}}), {8, 16, 5, 3, 16}},
        {"two pairs of three", "02 0600 21 11 21 12 22 13 23", Join({header, pair, pair, {27707}}),
         {8, 16, 5, 3, 8, 5, 3, 8, 5, 3, 16}},
        {"three claimed, one there", "03 0200 00 11 21", Join({header, pair}), {8, 16, 5, 3, 8, 5, 3}},
        {"cut inside a pair", "02 0200 00 11", Join({header, pair}), {8, 16, 5, 3, 8, 0, 0}},
        {"one byte", "02", header, {8, 0, 0, 0}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        const CUSBHIDPacket packet(CUSBHIDPacket::SelectorPhysicalDescriptor, Hex(c.pszHex));
        EXPECT_EQ(IdsOf(packet), c.ids);
        EXPECT_EQ(LengthsOf(packet), c.lengths);
        EXPECT_EQ(packet.GetRequestName().ToStdString(), "Physical Descriptor");
    }
}

TEST(HIDPhysical, EveryPairIsNamedByItsNumber)
{
    const CUSBHIDPacket packet(CUSBHIDPacket::SelectorPhysicalDescriptor, Hex("02 0600 41 12 21 28 E2"));
    const std::vector<std::string> aNames = {
        "bNumber", "bLength", "bPhysicalInfo-Preference", "bPhysicalInfo-Bias",
        "dPhysical1-bDesignator", "dPhysical1-bFlag-Effort", "dPhysical1-bFlag-Qualifier",
        "dPhysical2-bDesignator", "dPhysical2-bFlag-Effort", "dPhysical2-bFlag-Qualifier",
    };
    for (std::size_t i = 0; i < aNames.size(); ++i)
        EXPECT_EQ(packet.GetFieldName(static_cast<unsigned char>(i + 1)).ToStdString(), aNames[i]) << i;
    EXPECT_EQ(packet.GetFieldAbbr(8).ToStdString(), "bDesignator");
    EXPECT_EQ(OptionAbbrAt(packet, 4), "Left hand");
    EXPECT_EQ(OptionAbbrAt(packet, 5), "Index finger");
    EXPECT_EQ(OptionAbbrAt(packet, 7), "Right");
    EXPECT_EQ(OptionAbbrAt(packet, 8), "Reserved");
    EXPECT_EQ(OptionAbbrAt(packet, 10), "Reserved");

    // The same pairs in a later packet find their records again.
    CUSBHIDPhysicalSpec& spec = *CUSBHIDPhysicalSpec::GetInstance();
    const std::size_t nRecords = spec.GetReferenceCount();
    const CUSBHIDPacket again(CUSBHIDPacket::SelectorPhysicalDescriptor, Hex("02 0600 41 12 21 28 E2"));
    EXPECT_EQ(spec.GetReferenceCount(), nRecords);
    for (unsigned char i = 1; i <= again.GetFieldCount(); ++i)
        EXPECT_EQ(again.GetFieldAttr(i), packet.GetFieldAttr(i));
}

// ------------------------------------------------------------ the packet

TEST(HIDPacket, SelectorPathsOfTheConstructors)
{
    const CUSBHIDPacket byDefault;
    EXPECT_EQ(byDefault.GetHIDSpec(), 1);
    EXPECT_EQ(byDefault.GetSpec(), CUSBHIDSpec::GetInstance());
    EXPECT_EQ(byDefault.GetNumberOfReportItems(), -1);
    EXPECT_EQ(byDefault.GetReportValue(0), CAdvAnlzData(0, 64));
    EXPECT_STREQ(byDefault.GetRuntimeClass()->m_lpszClassName, "CUSBHIDPacket");

    const CProtocolSpec* aSpecs[] = {CUSBHIDRequestSpec::GetInstance(), CUSBHIDSpec::GetInstance(),
                                     CUSBHIDReportSpec::GetInstance(), CUSBHIDPhysicalSpec::GetInstance()};
    for (int n = 0; n < 4; ++n) {
        SCOPED_TRACE(n);
        EXPECT_EQ(CUSBHIDPacket(n).GetSpec(), aSpecs[n]);
        EXPECT_EQ(CUSBHIDPacket(n, HexBytes("05 01")).GetSpec(), aSpecs[n]);
        EXPECT_EQ(CUSBHIDPacket(n).GetNumberOfReportItems(), n == 2 ? 0 : -1);
    }

    // A selector outside 0 to 3 binds no decoder and decodes nothing.
    CUSBHIDPacket none(7, Hex("05 01"));
    EXPECT_EQ(none.GetSpec(), nullptr);
    EXPECT_EQ(none.GetFieldCount(), 0);
    EXPECT_EQ(none.RestructBy(Hex("05 01")), 0);
    // Changing the selector of a bound packet keeps the decoder and its fields.
    CUSBHIDPacket report(2, Hex("05 01"));
    report.SetHIDSpec(9);
    EXPECT_EQ(report.GetSpec(), aSpecs[2]);
    EXPECT_EQ(report.GetFieldCount(), 4);
    // Moving to another decoder drops the fields bound to the old one.
    report.SetHIDSpec(0);
    EXPECT_EQ(report.GetSpec(), aSpecs[0]);
    EXPECT_EQ(report.GetFieldCount(), 0);
}

TEST(HIDPacket, CopiesAndAssignment)
{
    const CUSBHIDPacket report(2, Hex("05 01 09 02 A1 01 C0"));
    ASSERT_EQ(report.GetNumberOfReportItems(), 4);

    // The copy takes the selector and the fields, but not the item list.
    const CUSBHIDPacket copy(report);
    EXPECT_EQ(copy.GetHIDSpec(), 2);
    EXPECT_EQ(FieldsOf(copy), FieldsOf(report));
    EXPECT_EQ(copy.GetRequestName().ToStdString(), "Report Descriptor");
    EXPECT_EQ(copy.GetNumberOfReportItems(), 0);

    // Assignment keeps the target's selector but binds it to the decoder of
    // the fields it took; the target's own items are gone.
    CUSBHIDPacket target(2, Hex("C0"));
    CUSBHIDPacket request(0, Hex("A1 01 00 01 00 00 01 00 05"));
    target = request;
    EXPECT_EQ(target.GetHIDSpec(), 2);
    EXPECT_EQ(target.GetSpec(), CUSBHIDRequestSpec::GetInstance());
    EXPECT_EQ(target.GetFieldName(1).ToStdString(), "bmRequest-Recipient");
    EXPECT_EQ(target.GetNumberOfReportItems(), 0);
    EXPECT_EQ(target.InterpretReportPacket(), 0);
    const CUSBHIDPacket& self = target;
    target = self;
    EXPECT_EQ(FieldsOf(target), FieldsOf(request));
}

TEST(HIDPacket, RegistryEntriesFixTheSelector)
{
    const std::pair<const char*, const char*> aEntries[] = {{"hid-request", "CUSBHIDRequestSpec"},
                                                            {"hid", "CUSBHIDSpec"},
                                                            {"hid-report", "CUSBHIDReportSpec"},
                                                            {"hid-physical", "CUSBHIDPhysicalSpec"}};
    for (int n = 0; n < 4; ++n) {
        SCOPED_TRACE(aEntries[n].first);
        const SDecoderEntry* pEntry = FindDecoder(aEntries[n].first);
        ASSERT_NE(pEntry, nullptr);
        EXPECT_STREQ(pEntry->pszClassName, aEntries[n].second);
        std::unique_ptr<CProtocolPacket> pPacket = pEntry->pfnNewPacket(SDecodeOptions());
        EXPECT_EQ(static_cast<CUSBHIDPacket&>(*pPacket).GetHIDSpec(), n);
        EXPECT_EQ(pPacket->GetSpec(), pEntry->pfnGetSpec());
        EXPECT_EQ(pEntry->pfnExtras != nullptr, n == CUSBHIDPacket::SelectorReportDescriptor);
    }
    // The report items as the host's view lists them.
    const SDecoderEntry& report = *FindDecoder("hid-report");
    std::unique_ptr<CProtocolPacket> pPacket = report.pfnNewPacket(SDecodeOptions());
    EXPECT_EQ(report.pfnDecode(*pPacket, Hex("05 01 A1 00 C0"), SDecodeOptions()), 1);
    const std::vector<SPacketExtra> aExtras = report.pfnExtras(*pPacket);
    ASSERT_EQ(aExtras.size(), 1u);
    EXPECT_EQ(aExtras[0].strKey, "report_items");
    ASSERT_EQ(aExtras[0].aItems.size(), 3u);
    EXPECT_EQ(aExtras[0].aItems[1].strText, "Collection(Physical)");
    EXPECT_EQ(HexOf(aExtras[0].aItems[1].value), "00a1");
    EXPECT_EQ(aExtras[0].aItems[2].strText, "End Collection");
}

// The release rule: a killed decoder stays until the last packet bound to it
// is gone, whatever the order of packets, copies and kills. Under the
// sanitizers a packet reading a released decoder's records would fail here.
TEST(HIDPacket, DecodersOutliveTheirPacketsInEveryOrder)
{
    const char* aPayloads[] = {"A1 01 00 01 00 00 01 00 05", "09 21 11 01 00 01 22 3F 00", "05 01 09 02 A1 01 C0",
                               "01 0200 00 12 21"};
    auto KillAll = [] {
        CUSBHIDRequestSpec::KillInstance();
        CUSBHIDSpec::KillInstance();
        CUSBHIDReportSpec::KillInstance();
        CUSBHIDPhysicalSpec::KillInstance();
    };
    auto Touch = [](const CUSBHIDPacket& p) {
        for (unsigned char i = 1; i <= p.GetFieldCount(); ++i) {
            EXPECT_FALSE(p.GetFieldName(i).IsEmpty());
            unsigned long dwLength = 0;
            p.GetFieldBriefPattern(i, 6, dwLength, PacketSideWhole, DisplayDecimal, 0);
        }
        for (int i = 0; i < p.GetNumberOfReportItems(); ++i)
            EXPECT_FALSE(p.GetReportItem(i).IsEmpty());
    };
    KillAll();
    ASSERT_EQ(CUSBHIDDecoder::GetLiveDecoderCount(), 0);

    std::array<int, 4> aMake = {0, 1, 2, 3};
    int nRuns = 0;
    do {
        std::array<int, 4> aDrop = {0, 1, 2, 3};
        do {
            for (int nKillAfter = 0; nKillAfter <= 4; nKillAfter += 2, ++nRuns) {
                std::array<std::unique_ptr<CUSBHIDPacket>, 4> apPackets;
                for (int n : aMake)
                    apPackets[n] = std::make_unique<CUSBHIDPacket>(n, Hex(aPayloads[n]));
                // A copy of the report packet and a packet assigned across
                // selectors share the decoders of their sources.
                auto pCopy = std::make_unique<CUSBHIDPacket>(*apPackets[2]);
                auto pAssigned = std::make_unique<CUSBHIDPacket>(1);
                *pAssigned = *apPackets[3];
                for (int k = 0; k < 4; ++k) {
                    if (k == nKillAfter)
                        KillAll();
                    apPackets[aDrop[k]].reset();
                    for (const auto& p : apPackets)
                        if (p)
                            Touch(*p);
                    Touch(*pCopy);
                    Touch(*pAssigned);
                }
                if (nKillAfter == 4)
                    KillAll();
                EXPECT_GT(CUSBHIDDecoder::GetLiveDecoderCount(), 0);
                pCopy.reset();
                pAssigned.reset();
                ASSERT_EQ(CUSBHIDDecoder::GetLiveDecoderCount(), 0) << "run " << nRuns;
                // A new packet after the kill gets a fresh decoder.
                const CUSBHIDPacket fresh(2, Hex("C0"));
                EXPECT_EQ(fresh.GetNumberOfReportItems(), 1);
                KillAll();
            }
        } while (std::next_permutation(aDrop.begin(), aDrop.end()));
    } while (std::next_permutation(aMake.begin(), aMake.end()));
    EXPECT_EQ(nRuns, 24 * 24 * 3);
    EXPECT_EQ(CUSBHIDDecoder::GetLiveDecoderCount(), 0);
}

TEST(HIDPacket, KillWithoutPacketsReleasesAtOnce)
{
    CUSBHIDSpec* pFirst = CUSBHIDSpec::GetInstance();
    ASSERT_NE(pFirst, nullptr);
    const int nLive = CUSBHIDDecoder::GetLiveDecoderCount();
    {
        const CUSBHIDPacket packet(1, Hex("09 21"));
        EXPECT_EQ(pFirst->GetBoundPacketCount(), 1);
    }
    // The packet's end alone releases nothing.
    EXPECT_EQ(CUSBHIDSpec::GetInstance(), pFirst);
    CUSBHIDSpec::KillInstance();
    EXPECT_EQ(CUSBHIDDecoder::GetLiveDecoderCount(), nLive - 1);
    CUSBHIDSpec::KillInstance();  // a second kill finds nothing
    EXPECT_EQ(CUSBHIDDecoder::GetLiveDecoderCount(), nLive - 1);
}

}  // namespace
