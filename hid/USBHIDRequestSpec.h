// HID class requests on the control pipe: the eight setup bytes and, right
// behind them in the same payload, the data stage.
#pragma once

#include <array>

#include "hid/USBHIDDecoder.h"

class CUSBHIDRequestSpec : public TUSBHIDDecoder<CUSBHIDRequestSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CUSBHIDRequestSpec)

public:
    static constexpr unsigned short kFieldCount = 16;

    enum : unsigned short {
        FieldRecipient = 27700,
        FieldType = 27701,
        FieldDirection = 27702,
        FieldRequest = 27703,
        FieldValue = 27704,
        FieldIndex = 27705,
        FieldLength = 27706,
        FieldDataReport = 27707,
        FieldDataIdleRate = 27708,
        FieldReportType = 27709,
        FieldReportID = 27710,
        FieldZero = 27711,
        FieldDuration = 27712,
        FieldDataProtocol = 27713,
        FieldProtocolValue = 27714,
        FieldUnexpected = 27715,
    };

    // bRequest codes of the HID class.
    enum : unsigned char {
        GetReport = 0x01,
        GetIdle = 0x02,
        GetProtocol = 0x03,
        SetReport = 0x09,
        SetIdle = 0x0A,
        SetProtocol = 0x0B,
    };

private:
    friend class TUSBHIDDecoder<CUSBHIDRequestSpec>;

    CUSBHIDRequestSpec();
    ~CUSBHIDRequestSpec() override = default;

    void InitOptions();
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet) override;

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};
