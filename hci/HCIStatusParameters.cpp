// Status parameters, OGF 5: the counters and link measurements that the
// host controller keeps per connection.
#include <iterator>

#include "hci/HCICommandTable.h"

namespace {

using namespace HCIParam;

const SHCICommand kStatusCommands[] = {
    {0x0001, "HCI_Read_Failed_Contact_Counter",
     {{Connection_Handle, "The Connection Handle for the Connection for which the Failed Contact Counter should be "
                          "read." HCI_HANDLE_RANGE}}},
    {0x0002, "HCI_Reset_Failed_Contact_Counter",
     {{Connection_Handle, "The Connection Handle for the Connection for which the Failed Contact Counter should be "
                          "reset." HCI_HANDLE_RANGE}}},
    {0x0003, "HCI_Get_Link_Quality",
     {{Connection_Handle, "The Connection Handle for the connection for which link quality parameters are to be "
                          "read. " HCI_HANDLE_RANGE}}},
    {0x0005, "HCI_Read_RSSI",
     {{Connection_Handle, "The Connection Handle for the Connection for which the RSSI is to be "
                          "read." HCI_HANDLE_RANGE}}},
};

}  // namespace

extern const SHCICommandGroup kHCIStatusCommands = {kStatusCommands, std::size(kStatusCommands)};

void CHCISpec::InitOptions_HCIStatusParameters()
{
    std::vector<SHCIOCFOption> aOCF;
    for (const SHCICommand& command : kStatusCommands)
        aOCF.push_back({command.nOCF, std::string("StatusParameters-") + command.pszName,
                        HCIUnderscoresToBlanks(command.pszName)});
    const std::vector<SOptionRow> aOCFRows = HCIOCFOptionRows(aOCF);
    AddOptionList(FieldStatusOCF, 10, aOCFRows.data(), aOCFRows.size());
    AddOptionList(FieldStatusOGF, 6, kHCIOGFOptions);
}

unsigned long CHCISpec::ReadStatusParametersElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CHCIReader reader = Reader(data, packet);
    const bool bMore = reader.ReadOn(FieldStatusOCF);
    const std::uint16_t nOCF = reader.Value();
    if (!bMore || !reader.ReadOn(FieldStatusOGF) || !reader.ReadOn(FieldTotalLength))
        return reader.Consumed();
    // Named only behind the header: a status command cut there has no name.
    SetCommandRequestName(packet, kOGFStatus, nOCF);

    const SHCICommand* pCommand = kHCIStatusCommands.Find(nOCF);
    if (pCommand && !ReadHCICommandParameters(reader, *pCommand))
        return reader.Consumed();
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}
