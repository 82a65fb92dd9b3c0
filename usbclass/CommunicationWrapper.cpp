// The communication wrapper walk, with its catalogue.
#include "usbclass/CommunicationWrapper.h"

#include <cstdint>

BUSDECODE_IMPLEMENT_RUNTIME_CLASS(CCommunicationWrapperSpec, CProtocolSpec)

using Spec = CCommunicationWrapperSpec;

const SSpecFieldAttr Spec::ms_aDefaultFieldsAttr[Spec::kFieldCount] = {
    {24000, "Size", "bSize", "Size of wrapper in byte.", 0, 16},
    {24001, "Destination Protocol ID", "bDstProtocol", "Destination protocol ID.", 16, 8},
    {24002, "Source Protocol ID", "bSrcProtocol", "Source protocol ID.", 24, 8},
    {24003, "Data", "bData", "Data payload bytes.", 32, 65535},
};

const std::array<CString, Spec::kFieldCount> Spec::ms_aFieldNames = FieldNamesOf(Spec::ms_aDefaultFieldsAttr);
const std::array<short, Spec::kFieldCount> Spec::ms_aFieldIds = FieldIdRange<Spec::kFieldCount>(Spec::kFirstId);
const SFieldTable Spec::ms_table = {Spec::ms_aDefaultFieldsAttr, Spec::ms_aFieldNames.data(),
                                    Spec::ms_aFieldIds.data(), Spec::kFieldCount, Spec::kFirstId};

namespace {

// The size counts the four header bytes as well as the data.
constexpr std::uint16_t kHeaderBytes = 4;

}  // namespace

unsigned long CCommunicationWrapperSpec::ReadField(const CAdvAnlzData& data, CReqRespProtocolPacket& packet,
                                                   unsigned short nId, CAdvAnlzData& value, EByteOrder /*eOrder*/,
                                                   unsigned long dwLength)
{
    return TUSBClassSpec::ReadField(data, packet, nId, value, ByteOrderReversed, dwLength);
}

unsigned long CCommunicationWrapperSpec::ReadElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    if (data.GetByteLength() < 1)
        return 0;
    packet.SetRequestName("CommunicationWrapper");
    CWalk walk = Walk(data, packet, StopWhenEmpty);
    // The size arrives high byte first; the turn-around makes it a number.
    const std::uint16_t wSize = walk.Read(FieldSize);
    const std::uint16_t wDataBytes = wSize > kHeaderBytes ? static_cast<std::uint16_t>(wSize - kHeaderBytes) : 0;
    walk.Read(FieldDestinationProtocol);
    walk.Read(FieldSourceProtocol);
    // A size of the header alone or less reads the data's default length.
    walk.Read(FieldData, wDataBytes * 8u);
    return walk.Consumed();
}
