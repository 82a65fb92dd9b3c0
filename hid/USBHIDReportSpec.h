// HID report descriptors, item by item: for every item its bSize, bType and
// tag, then its data. A Usage item's data is read into the usage field of
// the current usage page, whose option list names the usage.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "hid/USBHIDDecoder.h"

class CUSBHIDReportSpec : public TUSBHIDDecoder<CUSBHIDReportSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CUSBHIDReportSpec)

public:
    static constexpr unsigned short kFieldCount = 26;

    enum : unsigned short {
        FieldSize = 27700,
        FieldType = 27701,
        FieldMainTag = 27702,
        FieldGlobalTag = 27703,
        FieldLocalTag = 27704,
        FieldReserved = 27705,
        FieldData = 27706,
        FieldDataSize = 27707,
        FieldLongItemTag = 27708,
        FieldUsagePage = 27709,
        FieldUsageGenericDesktop = 27710,
        FieldUsageSimulation = 27711,
        FieldUsageVR = 27712,
        FieldUsageSport = 27713,
        FieldUsageGame = 27714,
        FieldUsageGenericDevice = 27715,
        FieldUsageKeyboard = 27716,
        FieldUsageLED = 27717,
        FieldUsageButton = 27718,
        FieldUsageOrdinal = 27719,
        FieldUsageTelephony = 27720,
        FieldUsageConsumer = 27721,
        FieldUsageDigitizer = 27722,
        FieldUsageAlphanumericDisplay = 27723,
        FieldUsageMedicalInstruments = 27724,
        FieldUnexpected = 27725,
    };

    // bType of an item prefix.
    enum : std::uint8_t {
        TypeMain = 0,
        TypeGlobal = 1,
        TypeLocal = 2,
        TypeReserved = 3,
    };
    // The tags that the walk and the item list treat apart.
    enum : std::uint8_t {
        GlobalTagUsagePage = 0,
        LocalTagUsage = 0,
        LongItemTag = 15,
        LongItemSize = 2,
    };

    // The usage field of a usage page, or 0 for a page whose usages have no
    // names here.
    static unsigned short UsageFieldOf(std::uint32_t nPage) noexcept;

private:
    friend class TUSBHIDDecoder<CUSBHIDReportSpec>;

    CUSBHIDReportSpec();
    ~CUSBHIDReportSpec() override = default;

    // Option lists: the item header and the usage page, then one builder per
    // usage page, in page order.
    void InitOptions();
    void InitOptions_Init();
    void InitOptions_GENERIC_DESKTOP_CONTROLS();
    void InitOptions_SIMULATION_CONTROLS();
    void InitOptions_VR_CONTROLS();
    void InitOptions_SPORT_CONTROLS();
    void InitOptions_GAME_CONTROLS();
    void InitOptions_GENERIC_DEVICE_CONTROLS();
    void InitOptions_KEYBOARD_KEYPAD();
    void InitOptions_LED();
    void InitOptions_BUTTON();
    void InitOptions_ORDINAL();
    void InitOptions_TELEPHONY();
    void InitOptions_CONSUMER1();
    void InitOptions_CONSUMER2();
    void InitOptions_DIGITIZER();
    void InitOptions_ALPHANUMERIC_DISPLAY();
    void InitOptions_MEDICAL_INSTRUMENTS();

    // Adds a usage page's rows to the option list of its usage field, each
    // row's values as wide as its last usage needs: 8 bits up to 0xFF, 12 up
    // to 0xFFF, else 16.
    void AddUsages(unsigned short nField, const SOptionRow* pRows, std::size_t nRows);
    template <std::size_t N>
    void AddUsages(unsigned short nField, const SOptionRow (&aRows)[N])
    {
        AddUsages(nField, aRows, N);
    }

    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet) override;
    // Reads one item whose prefix is at the front of the walk; false when it
    // was a long item, which ends the descriptor.
    bool ReadItem(CUSBHIDWalk& walk, std::uint32_t& nPage);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};
