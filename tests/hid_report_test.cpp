// Report descriptors: the item walk into fields, the usage pages, and the
// indented report item list of common devices.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "hid/USBHIDPacket.h"
#include "hid/USBHIDReportSpec.h"
#include "tests/TestUtil.h"

namespace {

using Report = CUSBHIDReportSpec;

CUSBHIDPacket Decode(const std::string& strHex)
{
    return CUSBHIDPacket(CUSBHIDPacket::SelectorReportDescriptor, Hex(strHex));
}

std::vector<std::string> ItemsOf(const CUSBHIDPacket& packet)
{
    std::vector<std::string> a;
    for (int i = 0; i < packet.GetNumberOfReportItems(); ++i)
        a.push_back(packet.GetReportItem(i).ToStdString());
    return a;
}

std::string Blanks(int n)
{
    return std::string(static_cast<std::size_t>(n), ' ');
}

// Every bit of the payload stands in exactly one field.
void ExpectWhole(const CUSBHIDPacket& packet, std::size_t nBytes)
{
    EXPECT_EQ(packet.GetPacketLength(), 8 * nBytes);
    EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
}

// ------------------------------------------------------------- the walk

TEST(HIDReportWalk, ItemsIntoFields)
{
    struct SCase {
        const char* pszWhat;
        const char* pszHex;
        std::vector<SFieldView> fields;
    };
    const SCase aCases[] = {
        {"usage page and usage", "05 01 09 02",
         {{27700, 2, "01"}, {27701, 2, "01"}, {27703, 4, "00"}, {27709, 8, "01"},
          {27700, 2, "01"}, {27701, 2, "02"}, {27704, 4, "00"}, {27710, 8, "02"}}},
        {"end collection has no data", "C0", {{27700, 2, "00"}, {27701, 2, "00"}, {27702, 4, "0c"}}},
        {"push and pop", "A4 B4",
         {{27700, 2, "00"}, {27701, 2, "01"}, {27703, 4, "0a"}, {27700, 2, "00"}, {27701, 2, "01"},
          {27703, 4, "0b"}}},
        {"size 0 logical minimum", "14", {{27700, 2, "00"}, {27701, 2, "01"}, {27703, 4, "01"}}},
        {"four-byte global: data and reserved", "27 FF FF 00 00",
         {{27700, 2, "03"}, {27701, 2, "01"}, {27703, 4, "02"}, {27706, 16, "ffff"}, {27705, 16, "0000"}}},
        {"two-byte consumer usage", "05 0C 0A 38 02",
         {{27700, 2, "01"}, {27701, 2, "01"}, {27703, 4, "00"}, {27709, 8, "0c"},
          {27700, 2, "02"}, {27701, 2, "02"}, {27704, 4, "00"}, {27721, 16, "3802"}}},
        {"usage on a page without names is data", "05 0F 0A 01 02 C0",
         {{27700, 2, "01"}, {27701, 2, "01"}, {27703, 4, "00"}, {27709, 8, "0f"},
          {27700, 2, "02"}, {27701, 2, "02"}, {27704, 4, "00"}, {27706, 16, "0102"},
          {27700, 2, "00"}, {27701, 2, "00"}, {27702, 4, "0c"}}},
        {"size 0 usage page takes a byte", "04 0C",
         {{27700, 2, "00"}, {27701, 2, "01"}, {27703, 4, "00"}, {27709, 8, "0c"}}},
        {"size 0 usage under a named page takes a byte", "05 01 08 30",
         {{27700, 2, "01"}, {27701, 2, "01"}, {27703, 4, "00"}, {27709, 8, "01"},
          {27700, 2, "00"}, {27701, 2, "02"}, {27704, 4, "00"}, {27710, 8, "30"}}},
        {"usage minimum is plain data", "05 09 19 01",
         {{27700, 2, "01"}, {27701, 2, "01"}, {27703, 4, "00"}, {27709, 8, "09"},
          {27700, 2, "01"}, {27701, 2, "02"}, {27704, 4, "01"}, {27706, 8, "01"}}},
        {"reserved type: no data whatever the size", "0D 0C",
         {{27700, 2, "01"}, {27701, 2, "03"}, {27705, 4, "00"},
          {27700, 2, "00"}, {27701, 2, "03"}, {27705, 4, "00"}}},
        {"long item ends the descriptor", "FE 02 10 AA BB C0",
         {{27700, 2, "02"}, {27701, 2, "03"}, {27705, 4, "0f"}, {27707, 8, "02"}, {27708, 8, "10"},
          {27706, 16, "aabb"}}},
        {"cut inside the data", "26 FF",
         {{27700, 2, "02"}, {27701, 2, "01"}, {27703, 4, "02"}, {27706, 8, "ff"}}},
        {"cut behind the prefix", "75",
         {{27700, 2, "01"}, {27701, 2, "01"}, {27703, 4, "07"}, {27706, 0, ""}}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        const CUSBHIDPacket packet = Decode(c.pszHex);
        EXPECT_EQ(FieldsOf(packet), c.fields);
        EXPECT_EQ(packet.GetRequestName().ToStdString(), "Report Descriptor");
        EXPECT_EQ(packet.m_nRequestFields, packet.GetFieldCount());
    }
}

TEST(HIDReportWalk, EmptyPayloadIsNamedAndHasNoItems)
{
    const CUSBHIDPacket packet = Decode("");
    EXPECT_EQ(packet.GetFieldCount(), 0);
    EXPECT_EQ(packet.GetRequestName().ToStdString(), "Report Descriptor");
    EXPECT_EQ(packet.GetNumberOfReportItems(), 0);
}

// A descriptor longer than a packet's 255 fields ends at the last whole item
// that fits; the rest stands in one leftover field, so no bit is lost.
TEST(HIDReportWalk, LongDescriptorsEndInOrderAtTheFieldLimit)
{
    struct SCase {
        const char* pszWhat;
        std::string strItem;
        int nRepeat;
        int nFields;
        int nItems;
        std::uint32_t nLeftoverBits;
    };
    const SCase aCases[] = {
        {"85 end collections fill the packet exactly", "C0", 85, 255, 85, 0},
        {"86 end collections: the last two become leftover", "C0", 86, 253, 84, 16},
        {"report sizes of four fields each", "75 08", 100, 253, 63, 37 * 16},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        std::string strHex;
        for (int i = 0; i < c.nRepeat; ++i)
            strHex += c.strItem + " ";
        const CUSBHIDPacket packet = Decode(strHex);
        EXPECT_EQ(packet.GetFieldCount(), c.nFields);
        EXPECT_EQ(packet.GetNumberOfReportItems(), c.nItems);
        ExpectWhole(packet, Hex(strHex).GetByteLength());
        const unsigned char nLast = packet.GetFieldCount();
        if (c.nLeftoverBits) {
            EXPECT_EQ(packet.GetFieldId(nLast), Report::FieldUnexpected);
            EXPECT_EQ(packet.GetFieldValue(nLast)->GetLength(), c.nLeftoverBits);
        } else {
            EXPECT_NE(packet.GetFieldId(nLast), Report::FieldUnexpected);
        }
    }
}

// ---------------------------------------------------------- usage pages

TEST(HIDUsagePages, RowCountsAndOrderOfEveryPage)
{
    const std::pair<std::uint32_t, int> aPages[] = {
        {0x01, 75}, {0x02, 55}, {0x03, 15}, {0x04, 38}, {0x05, 31}, {0x06, 6},   {0x07, 222}, {0x08, 79},
        {0x09, 2},  {0x0A, 2},  {0x0B, 72}, {0x0C, 364}, {0x0D, 43}, {0x14, 50}, {0x40, 37},
    };
    const Report& spec = *Report::GetInstance();
    for (const auto& page : aPages) {
        SCOPED_TRACE("page " + std::to_string(page.first));
        const CFieldOptionList* pList = spec.GetFieldOptions(Report::UsageFieldOf(page.first));
        ASSERT_NE(pList, nullptr);
        EXPECT_EQ(pList->GetSize(), page.second);
        // Rows rise and never overlap, so the first match is the only one.
        for (int i = 1; i < pList->GetSize(); ++i)
            EXPECT_LT(pList->GetAt(i - 1).m_High, pList->GetAt(i).m_Low) << "row " << i;
    }
    EXPECT_EQ(Report::UsageFieldOf(0x0E), 0);
    EXPECT_EQ(Report::UsageFieldOf(0xFF00), 0);
}

TEST(HIDUsagePages, NamesOfTheUsageTables)
{
    struct SCase {
        std::uint32_t nPage;
        std::uint32_t nUsage;
        const char* pszAbbr;
        const char* pszName;  // null when it equals the abbreviation
    };
    const SCase aCases[] = {
        {0x01, 0x02, "Mouse", nullptr},
        {0x01, 0x08, "Multi-axis Controller", nullptr},
        {0x01, 0x39, "Hat switch", nullptr},
        {0x01, 0x3C, "Motion Wakeup ", nullptr},
        {0x01, 0xB5, "System Display Toggle Int/Ext", nullptr},
        {0x01, 0x1234, "Reserved", nullptr},
        {0x02, 0xB2, "Anti_Torque Control", nullptr},
        {0x03, 0x2F, "Reserved", nullptr},
        {0x05, 0x37, "Gamepad Fire/Jump", nullptr},
        {0x06, 0x20, "Battery Strength", "DV - Battery Strength"},
        {0x07, 0x00, "Reserved", nullptr},
        {0x07, 0x01, "Keyboard ErrorRollOver", nullptr},
        {0x07, 0x04, "Keyboard a and A", nullptr},
        {0x07, 0x28, "Keyboard Return (ENTER)", nullptr},
        {0x07, 0x2D, "Keyboard - and (underscore)", nullptr},
        {0x07, 0x35, "Keyboard Grave Accent and Tilde4", nullptr},
        {0x07, 0x36, "Keyboard, and <", nullptr},
        {0x07, 0x59, "Keypad 1 and End", nullptr},
        {0x07, 0xA5, "Reserved", nullptr},
        {0x07, 0xDF, "Reserved", nullptr},
        {0x07, 0xE3, "Keyboard Left GUI1023", nullptr},
        {0x07, 0xE7, "Keyboard Right GUI1024", nullptr},
        {0x07, 0xE8, "Reserved", nullptr},
        {0x08, 0x01, "Numlock", nullptr},
        {0x08, 0x0D, "Equalizerenable", nullptr},
        {0x09, 0x00, "No button pressed", nullptr},
        {0x09, 0x03, "Button [1..65535] ", "Button [1..65535] (primary/trigger)"},
        {0x09, 0xFFFF, "Button [1..65535] ", "Button [1..65535] (primary/trigger)"},
        {0x0A, 0x02, "Instance [1..65535]", nullptr},
        {0x0B, 0x00, "Unassigne", "Unassigned"},
        {0x0B, 0x02, "Answeringmachine", nullptr},
        {0x0B, 0x20, "Hookswitch", "Hookswith"},
        {0x0B, 0x52, "Recallnumber", "Recallnumbe"},
        {0x0B, 0x74, "Answeron_off", nullptr},
        {0x0B, 0xB0, "Phonekey0", nullptr},
        {0x0C, 0x00, "Unassigned", nullptr},
        {0x0C, 0x01, "ConsumerControl", nullptr},
        {0x0C, 0x02, "NumericKeyPad", nullptr},
        {0x0C, 0x22, "AM_PM", nullptr},
        {0x0C, 0x2F, "Reserved", nullptr},
        {0x0C, 0x30, "Power", nullptr},
        {0x0C, 0x36, "FunctionButtons", nullptr},
        {0x0C, 0x3F, "Reserved", nullptr},
        {0x0C, 0x63, "VCR_TV", nullptr},
        {0x0C, 0x89, "MediaSelectTV", nullptr},
        {0x0C, 0x94, "Quit", nullptr},
        {0x0C, 0xCC, "Stop_Eject", nullptr},
        {0x0C, 0xCD, "Play_Pause", nullptr},
        {0x0C, 0x1A4, "ALPreviousTask_Applicati", "ALPreviousTask_Application"},
        {0x0C, 0x1A6, "ALIntegratedHelpCenter", nullptr},
        {0x0C, 0x238, "ACPan", nullptr},
        {0x0C, 0x287, "ACSend_Receive", nullptr},
        {0x0D, 0x03, "Lightpen", nullptr},
        {0x0D, 0x30, "Tippressure", nullptr},
        {0x14, 0x20, "Displayattributesreport", nullptr},
        {0x14, 0x42, "Font7-segment", nullptr},
        {0x40, 0x01, "Medicalultrasound", nullptr},
        {0x40, 0x82, "SpectraldopplermodeselecT", nullptr},
        {0x40, 0x88, "2_dmodeselect", nullptr},
        // The lists' gaps and ends: no name.
        {0x03, 0x30, "", nullptr},
        {0x05, 0x38, "", nullptr},
        {0x0C, 0x20A, "", nullptr},
        {0x0C, 0x219, "", nullptr},
    };
    const Report& spec = *Report::GetInstance();
    for (const SCase& c : aCases) {
        SCOPED_TRACE(std::to_string(c.nPage) + "/" + std::to_string(c.nUsage));
        const unsigned short nField = Report::UsageFieldOf(c.nPage);
        const CAdvAnlzData usage(c.nUsage, 16);
        EXPECT_EQ(spec.GetFieldOptionAbbr(nField, usage).ToStdString(), c.pszAbbr);
        EXPECT_EQ(spec.GetFieldOptionName(nField, usage).ToStdString(), c.pszName ? c.pszName : c.pszAbbr);
    }
}

// ----------------------------------------------------------- item list

TEST(HIDReportItems, BootMouseWithValues)
{
    const CUSBHIDPacket packet =
        Decode("05 01 09 02 A1 01 09 01 A1 00 05 09 19 01 29 03 15 00 25 01 95 03 75 01 81 02 C0 C0");
    const std::vector<std::string> aExpected = {
        "Usage Page(Generic Desktop Controls)",
        "Usage(Mouse)",
        "Collection(Application)",
        Blanks(3) + "Usage(Pointer)",
        Blanks(3) + "Collection(Physical)",
        Blanks(9) + "Usage Page(Button)",
        Blanks(9) + "Usage Minimum(1)",
        Blanks(9) + "Usage Maximum(3)",
        Blanks(9) + "Logical Minimum(0)",
        Blanks(9) + "Logical Maximum(1)",
        Blanks(9) + "Report Count(3)",
        Blanks(9) + "Report Size(1)",
        Blanks(9) + "Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
        Blanks(3) + "End Collection",
        "End Collection",
    };
    EXPECT_EQ(ItemsOf(packet), aExpected);
    EXPECT_EQ(HexOf(packet.GetReportValue(0)), "0105");
    EXPECT_EQ(packet.GetReportValue(0).GetLength(), 16u);
    EXPECT_EQ(HexOf(packet.GetReportValue(14)), "c0");
    EXPECT_EQ(packet.GetReportValue(14).GetLength(), 8u);
    EXPECT_EQ(packet.m_byPacketFormat, 2);
    EXPECT_EQ(packet.GetCollectionDepth(), 0);
}

TEST(HIDReportItems, BootKeyboardWithLEDs)
{
    const CUSBHIDPacket packet = Decode(
        "05 01 09 06 A1 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 01 75 08 81 01 95 05 75 01 05 08"
        "19 01 29 05 91 02 95 01 75 03 91 01 95 06 75 08 15 00 25 65 05 07 19 00 29 65 81 00 C0");
    const std::string strIn = "   ";
    const std::vector<std::string> aExpected = {
        "Usage Page(Generic Desktop Controls)",
        "Usage(Keyboard)",
        "Collection(Application)",
        strIn + "Usage Page(Keyboard/Keypad)",
        strIn + "Usage Minimum(224)",
        strIn + "Usage Maximum(231)",
        strIn + "Logical Minimum(0)",
        strIn + "Logical Maximum(1)",
        strIn + "Report Size(1)",
        strIn + "Report Count(8)",
        strIn + "Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
        strIn + "Report Count(1)",
        strIn + "Report Size(8)",
        strIn + "Input(Constant,Array,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
        strIn + "Report Count(5)",
        strIn + "Report Size(1)",
        strIn + "Usage Page(LEDs)",
        strIn + "Usage Minimum(1)",
        strIn + "Usage Maximum(5)",
        strIn + "Output(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Non Volatile,Bit Field)",
        strIn + "Report Count(1)",
        strIn + "Report Size(3)",
        strIn + "Output(Constant,Array,Absolute,No Wrap,Linear,Preferred,No Null Position,Non Volatile,Bit Field)",
        strIn + "Report Count(6)",
        strIn + "Report Size(8)",
        strIn + "Logical Minimum(0)",
        strIn + "Logical Maximum(101)",
        strIn + "Usage Page(Keyboard/Keypad)",
        strIn + "Usage Minimum(0)",
        strIn + "Usage Maximum(101)",
        strIn + "Input(Data,Array,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
        "End Collection",
    };
    EXPECT_EQ(ItemsOf(packet), aExpected);
}

TEST(HIDReportItems, GamepadConsumerControlAndVendorPage)
{
    struct SCase {
        const char* pszWhat;
        const char* pszHex;
        std::vector<std::string> lines;
    };
    const SCase aCases[] = {
        {"gamepad with a hat switch",
         "05 01 09 05 A1 01 15 81 25 7F 09 01 A1 00 09 30 09 31 75 08 95 02 81 02 C0 05 09 19 01 29 08 15 00 25 01"
         "75 01 95 08 81 02 05 01 09 39 15 00 25 07 35 00 46 3B 01 65 14 75 04 95 01 81 42 C0",
         {"Usage Page(Generic Desktop Controls)", "Usage(Game Pad)", "Collection(Application)",
          "   Logical Minimum(-127)", "   Logical Maximum(127)", "   Usage(Pointer)", "   Collection(Physical)",
          "         Usage(X)", "         Usage(Y)", "         Report Size(8)", "         Report Count(2)",
          "         Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
          "   End Collection", "   Usage Page(Button)", "   Usage Minimum(1)", "   Usage Maximum(8)",
          "   Logical Minimum(0)", "   Logical Maximum(1)", "   Report Size(1)", "   Report Count(8)",
          "   Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
          "   Usage Page(Generic Desktop Controls)", "   Usage(Hat switch)", "   Logical Minimum(0)",
          "   Logical Maximum(7)", "   Physical Minimum(0)", "   Physical Maximum(315)", "   Unit(20)",
          "   Report Size(4)", "   Report Count(1)",
          "   Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,Null State,Bit Field)", "End Collection"}},
        {"consumer control with a report id",
         "05 0C 09 01 A1 01 85 03 15 00 26 FF 03 19 00 2A FF 03 75 10 95 01 81 00 09 CD 09 B5 0A 23 02 C0",
         {"Usage Page(Consumer)", "Usage(ConsumerControl)", "Collection(Application)", "   Report ID(3)",
          "   Logical Minimum(0)", "   Logical Maximum(1023)", "   Usage Minimum(0)", "   Usage Maximum(1023)",
          "   Report Size(16)", "   Report Count(1)",
          "   Input(Data,Array,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)",
          "   Usage(Play_Pause)", "   Usage(ScanNextTrack)", "   Usage(ACHome)", "End Collection"}},
        {"vendor page: usages are numbers",
         "06 00 FF 09 01 A1 01 15 00 26 FF 00 75 08 95 40 09 01 81 02 09 02 91 02 C0",
         {"Usage Page(Vendor-defined)", "Usage(1)", "Collection(Application)", "   Logical Minimum(0)",
          "   Logical Maximum(255)", "   Report Size(8)", "   Report Count(64)", "   Usage(1)",
          "   Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)", "   Usage(2)",
          "   Output(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Non Volatile,Bit Field)",
          "End Collection"}},
        {"unknown pages and usages without names",
         "05 0E 09 05 06 34 12 05 05 09 38 05 03 09 30 05 0C 0A 10 02 05 01 0B 30 00 01 00",
         {"Usage Page(Reserved)", "Usage(5)", "Usage Page(Reserved)", "Usage Page(Game Controls)", "Usage(56)",
          "Usage Page(VR Controls)", "Usage(48)", "Usage Page(Consumer)", "Usage(528)",
          "Usage Page(Generic Desktop Controls)", "Usage(65584)"}},
        {"push and pop keep the page: no item state is modelled",
         "05 01 A4 05 09 B4 09 30", {"Usage Page(Generic Desktop Controls)", "Push(0)", "Usage Page(Button)",
                                     "Pop(0)", "Usage(Button [1..65535] )"}},
        {"long item behind a short one", "05 01 FE 01 20 AA 09 02",
         {"Usage Page(Generic Desktop Controls)", "Long Item(32)"}},
        {"designators, strings, delimiters and a reserved local tag",
         "39 02 49 05 59 07 79 01 89 02 99 03 A9 01 69 04",
         {"Designator Index(2)", "Designator Minimum (5)", "Designator Maximum(7)", "String Index(1)",
          "String Minimum(2)", "String Maximum(3)", "Delimiter(1)", "Reserved(4)"}},
        {"three nested collections", "A1 00 A1 00 A1 00 09 01 C0 C0 C0",
         {"Collection(Physical)", Blanks(3) + "Collection(Physical)", Blanks(9) + "Collection(Physical)",
          Blanks(18) + "Usage(1)", Blanks(12) + "End Collection", Blanks(6) + "End Collection", "End Collection"}},
        {"collection then end collection, one level down", "A1 01 A1 02 C0 09 01 C0",
         {"Collection(Application)", Blanks(3) + "Collection(Logical)", "   End Collection", "   Usage(1)",
          "End Collection"}},
        {"collection kinds; an end without a collection", "C0 A1 07 09 01 A1 03 09 02",
         {"End Collection", "Collection(Reserved)", "Usage(1)", "Collection(Report)", "   Usage(2)"}},
        {"a collection without data is physical", "A0 09 01", {"Collection(Physical)", "   Usage(1)"}},
    };
    for (const SCase& c : aCases) {
        SCOPED_TRACE(c.pszWhat);
        const CUSBHIDPacket packet = Decode(c.pszHex);
        EXPECT_EQ(ItemsOf(packet), c.lines);
    }
}

TEST(HIDReportItems, NumbersOfGlobalItems)
{
    const std::pair<const char*, const char*> aCases[] = {
        {"15 81", "Logical Minimum(-127)"},       {"15 80", "Logical Minimum(-128)"},
        {"15 7F", "Logical Minimum(127)"},        {"16 00 80", "Logical Minimum(-32768)"},
        {"16 FF 7F", "Logical Minimum(32767)"},   {"17 00 00 00 80", "Logical Minimum(-2147483648)"},
        {"27 FF FF FF 7F", "Logical Maximum(2147483647)"}, {"27 FF FF 00 00", "Logical Maximum(65535)"},
        {"25 FF", "Logical Maximum(-1)"},         {"24", "Logical Maximum(0)"},
        {"35 FF", "Physical Minimum(255)"},       {"47 FF FF FF FF", "Physical Maximum(4294967295)"},
        {"55 0E", "Unit Exponent(14)"},           {"67 01 10 00 00", "Unit(4097)"},
        {"26 FF", "Logical Maximum(255)"},  // cut: the missing byte reads as 0
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.first);
        EXPECT_EQ(ItemsOf(Decode(c.first)), std::vector<std::string>{c.second});
    }
    // A four-byte item's value is its four data bytes, then the prefix.
    EXPECT_EQ(HexOf(Decode("27 01 02 03 04").GetReportValue(0)), "0102030427");
}

TEST(HIDReportItems, MainItemFlags)
{
    const std::pair<const char*, const char*> aCases[] = {
        {"81 82", "Input(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)"},
        {"91 82", "Output(Data,Variable,Absolute,No Wrap,Linear,Preferred,No Null Position,Volatile,Bit Field)"},
        {"B2 FF 01", "Feature(Constant,Variable,Relative,Wrap,Non Linear,No Preferred,Null State,Volatile,"
                     "Buffered Bytes)"},
        {"80", "Input(Data,Array,Absolute,No Wrap,Linear,Preferred,No Null Position,Bit Field)"},
    };
    for (const auto& c : aCases) {
        SCOPED_TRACE(c.first);
        EXPECT_EQ(ItemsOf(Decode(c.first)), std::vector<std::string>{c.second});
    }
}

TEST(HIDReportItems, ListFollowsTheLastDecode)
{
    CUSBHIDPacket packet(CUSBHIDPacket::SelectorReportDescriptor);
    packet.RestructBy(Hex("05 01 09 02"));
    ASSERT_EQ(packet.GetNumberOfReportItems(), 2);
    packet.RestructBy(Hex("C0"));
    EXPECT_EQ(ItemsOf(packet), std::vector<std::string>{"End Collection"});
    EXPECT_EQ(packet.InterpretReportPacket(), 1);
    EXPECT_EQ(packet.GetNumberOfReportItems(), 1);
    // A descriptor that starts with a long item has fields but no items.
    packet.RestructBy(Hex("FE 00 10 AA"));
    EXPECT_EQ(packet.GetFieldCount(), 6);
    EXPECT_EQ(packet.GetNumberOfReportItems(), 0);
    // Indexes outside the list answer like a packet of another selector.
    EXPECT_EQ(packet.GetReportItem(0).ToStdString(), "");
    EXPECT_EQ(packet.GetReportValue(-1), CAdvAnlzData(0, 64));
}

}  // namespace
