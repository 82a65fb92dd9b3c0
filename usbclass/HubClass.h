// USB 2.0 hub class requests on the default control pipe: the eight-byte
// setup stage and, in the same payload, its data stage. Get Status of the
// hub and of a port, Clear and Set Feature, Get and Set Descriptor with the
// hub descriptor, and the transaction translator requests.
#pragma once

#include <array>
#include <cstdint>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "usbclass/USBClassSpec.h"

class CHubClassSpec : public TUSBClassSpec<CHubClassSpec> {
    BUSDECODE_DECLARE_RUNTIME_CLASS(CHubClassSpec)

public:
    enum : unsigned short {
        FieldRecipient = 23000,
        FieldType = 23001,
        FieldDirection = 23002,
        FieldRequest = 23003,
        FieldValue = 23004,
        FieldFeatureSelector = 23005,
        FieldTTEndpointNumber = 23006,
        FieldTTDeviceAddress = 23007,
        FieldTTEndpointType = 23008,
        FieldTTReserved = 23009,
        FieldTTDirection = 23010,
        FieldIndex = 23011,
        FieldIndexPort = 23012,
        FieldIndexSelector = 23013,
        FieldLength = 23014,
        FieldData = 23015,
        // Hub status and hub change.
        FieldLocalPowerStatus = 23016,
        FieldOverCurrentStatus = 23017,
        FieldReservedStatus = 23018,
        FieldLocalPowerChanged = 23019,
        FieldOverCurrentChanged = 23020,
        FieldReservedChanged = 23021,
        // Port status (23022 to 23033) and port change (23034 to 23039).
        FieldPortConnection = 23022,
        FieldPortEnable = 23023,
        FieldPortSuspend = 23024,
        FieldPortOverCurrent = 23025,
        FieldPortReset = 23026,
        FieldPortReservedLow = 23027,
        FieldPortPower = 23028,
        FieldPortLowSpeed = 23029,
        FieldPortHighSpeed = 23030,
        FieldPortTest = 23031,
        FieldPortIndicator = 23032,
        FieldPortReservedHigh = 23033,
        FieldCPortConnection = 23034,
        FieldCPortEnable = 23035,
        FieldCPortSuspend = 23036,
        FieldCPortOverCurrent = 23037,
        FieldCPortReset = 23038,
        FieldCPortReserved = 23039,
        // Hub descriptor.
        FieldDescLength = 23040,
        FieldDescriptorType = 23041,
        FieldNbrPorts = 23042,
        FieldLogicalPower = 23043,
        FieldCompoundDevice = 23044,
        FieldOverCurrentMode = 23045,
        FieldTTThinkTime = 23046,
        FieldPortIndicatorSupport = 23047,
        FieldCharacteristicsReserved = 23048,
        FieldPwrOn2PwrGood = 23049,
        FieldHubContrCurrent = 23050,
        FieldDeviceRemovableReserved = 23051,
        FieldDeviceRemovable = 23052,
        FieldPortPwrCtrlMask = 23053,
        FieldPortPwrCtrlMaskReserved = 23054,
        // Get TT State.
        FieldReturnFlag = 23055,
        FieldSpecificState = 23056,
    };
    static constexpr unsigned short kFirstId = 23000;
    static constexpr unsigned short kFieldCount = 57;

    ~CHubClassSpec() override = default;

    // The strict interning: records of equal numbers but different names
    // stay apart, since the descriptor's port bits are named per port.
    const SSpecFieldAttr* GetFieldReference(const SSpecFieldAttr& attr) { return InternFieldAttr(attr); }

private:
    friend class TUSBClassSpec<CHubClassSpec>;

    CHubClassSpec();
    void InitOptions();

    // Every field is added, past the end of the data with length 0; the
    // walk tests what is left where the request's path says so.
    unsigned long ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet);

    // The paths behind bRequest.
    void ReadGetStatus(CWalk& walk, std::uint8_t nRecipient);
    void ReadClearTTBuffer(CWalk& walk, std::uint8_t nRecipient);
    // The hub descriptor of a Get or Set Descriptor data stage.
    void ReadHubDescriptor(CWalk& walk);
    // One bit per port, each instance named from pNames, behind the
    // reserved bit of a bit map, then the pad to the byte boundary.
    bool ReadPortBitmap(CWalk& walk, unsigned short nBitId, unsigned short nPadId, std::uint8_t nPorts,
                        CNumberedNames& names);

    static const SSpecFieldAttr ms_aDefaultFieldsAttr[kFieldCount];
    static const std::array<CString, kFieldCount> ms_aFieldNames;
    static const std::array<short, kFieldCount> ms_aFieldIds;
    static const SFieldTable ms_table;

    CNumberedNames m_removableNames{"Device Removable-Port%d"};
    CNumberedNames m_powerMaskNames{"Port Pwr Ctrl Mask-Port%d"};
};

class CHubClassPacket : public TDecoderPacket<CHubClassSpec> {
public:
    using TDecoderPacket::TDecoderPacket;
};
