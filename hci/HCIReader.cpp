#include "hci/HCIReader.h"

bool CHCIReader::Read(unsigned short nId, unsigned long dwLength)
{
    const unsigned long dwBits = m_spec.ReadField(m_data, m_packet, nId, m_value, ByteOrderAsStored, dwLength);
    m_dwConsumed += dwBits;
    m_data.Truncate(static_cast<std::uint32_t>(dwBits), CAdvAnlzData::kToEnd);
    return HasMore();
}

bool CHCIReader::ReadDescribed(unsigned short nId, const char* pszDesc)
{
    const unsigned long dwBits = m_spec.ReadField(m_data, m_packet, nId, m_value, ByteOrderAsStored, 0);
    CByteArray aIndexes;
    m_packet.GetFieldIndex(nId, aIndexes);
    if (!aIndexes.IsEmpty()) {
        const CString strDesc(pszDesc);
        m_spec.RenameFieldInstance(m_packet, aIndexes[0], nullptr, nullptr, &strDesc);
    }
    m_dwConsumed += dwBits;
    m_data.Truncate(static_cast<std::uint32_t>(dwBits), CAdvAnlzData::kToEnd);
    return HasMore();
}

bool CHCIReader::ReadList(std::initializer_list<unsigned short> ids)
{
    for (unsigned short nId : ids)
        if (!Read(nId))
            return false;
    return true;
}

void CHCIReader::ReadRest()
{
    if (HasMore())
        Read(CHCISpec::FieldUnExpected);
    m_data.Clean();
}
