// Information parameters, OGF 4: the fixed facts of the local device. None
// of these commands has a parameter, so all that can follow the header is
// UnExpected.
#include <iterator>

#include "hci/HCICommandTable.h"

namespace {

constexpr unsigned short kReadBDAddressOCF = 0x0009;

const SHCICommand kInformationCommands[] = {
    {0x0001, "HCI_Read_Local_Version_Information", {}},
    {0x0003, "HCI_Read_Local_Supported_Features", {}},
    {0x0005, "HCI_Read_Buffer_Size", {}},
    {0x0007, "HCI_Read_Country_Code", {}},
    {0x0009, "HCI_Read_BD_Address", {}},
};

}  // namespace

extern const SHCICommandGroup kHCIInformationCommands = {kInformationCommands, std::size(kInformationCommands)};

void CHCISpec::InitOptions_HCIInformationParameters()
{
    // Option names are the request names, but HCI_Read_BD_Address is shown
    // as "HCI_Read_BD_ADDR"; the abbreviations have blanks for underscores,
    // all but the one inside BD_ADDR.
    std::vector<SHCIOCFOption> aOCF;
    for (const SHCICommand& command : kInformationCommands) {
        if (command.nOCF == kReadBDAddressOCF)
            aOCF.push_back({command.nOCF, "HCI_Read_BD_ADDR", "HCI Read BD_ADDR"});
        else
            aOCF.push_back({command.nOCF, command.pszName, HCIUnderscoresToBlanks(command.pszName)});
    }
    const std::vector<SOptionRow> aOCFRows = HCIOCFOptionRows(aOCF);
    AddOptionList(FieldInformationOCF, 10, aOCFRows.data(), aOCFRows.size());
    AddOptionList(FieldInformationOGF, 6, kHCIOGFOptions);
}

unsigned long CHCISpec::ReadInformationParametersElements(const CAdvAnlzData& data, CReqRespProtocolPacket& packet)
{
    // The opcode check named the command already, so that one cut behind its
    // OCF or OGF has its name too; naming it again here changes nothing.
    CHCIReader reader = Reader(data, packet);
    const bool bMore = reader.ReadOn(FieldInformationOCF);
    const std::uint16_t nOCF = reader.Value();
    if (!bMore || !reader.ReadOn(FieldInformationOGF) || !reader.ReadOn(FieldTotalLength))
        return reader.Consumed();
    InformationSetRequestName(packet, nOCF);
    reader.ReadRest(CHCISpec::FieldUnExpected);
    return reader.Consumed();
}
