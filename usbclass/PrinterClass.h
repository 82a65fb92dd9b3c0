// USB printer class requests on the control pipe: Get Device ID, Get Port
// Status and Soft Reset, each with its data stage in the same payload. The
// device id string stays one opaque field with its two length bytes; the
// port status byte is cut into its bits.
#pragma once

#include <array>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "usbclass/USBClassSpec.h"

class CPrinterClassSpec : public TUSBClassSpec<CPrinterClassSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CPrinterClassSpec)

public:
    enum : unsigned short {
        FieldRecipient = 22500,
        FieldType = 22501,
        FieldDirection = 22502,
        FieldRequest = 22503,
        FieldValue = 22504,
        FieldIndex = 22505,
        FieldLength = 22506,
        FieldData = 22507,
        FieldReservedHigh = 22508,
        FieldPaper = 22509,
        FieldSelect = 22510,
        FieldError = 22511,
        FieldReservedLow = 22512,
    };
    static constexpr unsigned short kFirstId = 22500;
    static constexpr unsigned short kFieldCount = 13;

    ~CPrinterClassSpec() override = default;

private:
    friend class TUSBClassSpec<CPrinterClassSpec>;

    CPrinterClassSpec();
    void InitOptions();

    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;
};

class CPrinterClassPacket : public TDecoderPacket<CPrinterClassSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
