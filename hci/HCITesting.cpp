// Testing commands, OGF 6: the loopback modes and the device under test
// mode.
#include <iterator>

#include "hci/HCICommandTable.h"

namespace {

using namespace HCIParam;

const SHCICommand kTestingCommands[] = {
    {0x0001, "HCI_Read_Loopback_Mode", {}},
    {0x0002, "HCI_Write_Loopback_Mode", {{Loopback_Mode}}},
    {0x0003, "HCI_Enable_Device_Under_Test_Mode", {}},
};

// 27089: Loopback_Mode.
const SOptionRow kLoopbackModeOptions[] = {
    {0, 0, 0, "NoLoopbackModeEnabled_Defaul", "No Loopback Mode Enabled_Defaul"},
    {1, 1, 1, "EnableLocalLoopback", "Enable Local Loopback"},
    {2, 2, 2, "EnableRemoteLoopback", "Enable Remote Loopback"},
    {3, 3, 0xFF, "Reserved", nullptr},
};

}  // namespace

extern const SHCICommandGroup kHCITestingCommands = {kTestingCommands, std::size(kTestingCommands)};

void CHCISpec::InitOptions_HCITestingCommand()
{
    std::vector<SHCIOCFOption> aOCF;
    for (const SHCICommand& command : kTestingCommands)
        aOCF.push_back({command.nOCF, std::string("TestingCommands-") + command.pszName,
                        HCIUnderscoresToBlanks(command.pszName)});
    const std::vector<SOptionRow> aOCFRows = HCIOCFOptionRows(aOCF);
    AddOptionList(FieldTestingOCF, 10, aOCFRows.data(), aOCFRows.size());
    AddOptionList(FieldTestingOGF, 6, kHCIOGFOptions);

    AddOptionList(HCIParam::Loopback_Mode, 8, kLoopbackModeOptions);
}

unsigned long CHCISpec::ReadTestingCommandElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    CHCIReader reader = Reader(data, packet);
    // Named right behind the OCF, so that a command without parameters has
    // its name too.
    const bool bMore = reader.ReadOn(FieldTestingOCF);
    const std::uint16_t nOCF = reader.Value();
    SetCommandRequestName(packet, kOGFTesting, nOCF);
    if (!bMore || !reader.ReadOn(FieldTestingOGF) || !reader.ReadOn(FieldTotalLength))
        return reader.Consumed();

    const SHCICommand* pCommand = kHCITestingCommands.Find(nOCF);
    if (pCommand && !ReadHCICommandParameters(reader, *pCommand))
        return reader.Consumed();
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}
