// The HID class descriptor: bLength, bDescriptorType, bcdHID, bCountryCode,
// bNumDescriptors, then one pair of type and length per class descriptor.
#pragma once

#include <array>

#include "hid/USBHIDDecoder.h"

class CUSBHIDSpec : public TUSBHIDDecoder<CUSBHIDSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CUSBHIDSpec)

public:
    static constexpr unsigned short kFieldCount = 7;

    enum : unsigned short {
        FieldLength = 27700,
        FieldDescriptorType = 27701,
        FieldBcdHID = 27702,
        FieldCountryCode = 27703,
        FieldNumDescriptors = 27704,
        FieldDescriptorLength = 27705,
        FieldUnexpected = 27706,
    };

private:
    friend class TUSBHIDDecoder<CUSBHIDSpec>;

    CUSBHIDSpec();
    ~CUSBHIDSpec() override = default;

    void InitOptions();
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet) override;

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};
