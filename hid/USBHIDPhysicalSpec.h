// HID physical descriptors: which body part, on which side and with how
// much effort each control is used. A header, then one designator pair per
// designator, each pair's fields named with its running number.
#pragma once

#include <array>

#include "hid/USBHIDDecoder.h"

class CUSBHIDPhysicalSpec : public TUSBHIDDecoder<CUSBHIDPhysicalSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CUSBHIDPhysicalSpec)

public:
    static constexpr unsigned short kFieldCount = 8;

    enum : unsigned short {
        FieldNumber = 27700,
        FieldLength = 27701,
        FieldBias = 27702,
        FieldPreference = 27703,
        FieldDesignator = 27704,
        FieldQualifier = 27705,
        FieldEffort = 27706,
        FieldUnexpected = 27707,
    };

    // The strict interning: records of equal numbers but different names
    // stay apart, since every designator pair names its fields.
    const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr) { return InternFieldAttr(attr); }

private:
    friend class TUSBHIDDecoder<CUSBHIDPhysicalSpec>;

    CUSBHIDPhysicalSpec();
    ~CUSBHIDPhysicalSpec() override = default;

    void InitOptions();
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet) override;

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};
