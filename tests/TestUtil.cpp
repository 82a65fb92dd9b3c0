#include "tests/TestUtil.h"

#include <cstdlib>
#include <iostream>

CByteArray HexBytes(const std::string& strHex)
{
    const SHexResult r = ParseHex(strHex);
    if (!r.bOK) {
        std::cerr << "bad hex in test: " << r.strError << "\n";
        std::abort();
    }
    CByteArray a;
    for (std::uint8_t b : r.aBytes)
        a.Add(b);
    return a;
}

CAdvAnlzData Hex(const std::string& strHex)
{
    return CAdvAnlzData(HexBytes(strHex));
}

std::string HexOf(const CAdvAnlzData& value)
{
    std::vector<std::uint8_t> a(value.GetByteLength());
    value.GetStream(a.data());
    return ToHex(a.data(), a.size());
}

std::ostream& operator<<(std::ostream& os, const SFieldView& f)
{
    return os << "{" << f.nId << ", " << f.nBits << ", \"" << f.strHex << "\"}";
}

std::vector<SFieldView> FieldsOf(const CProtocolPacket& packet)
{
    std::vector<SFieldView> a;
    for (int i = 1; i <= packet.GetFieldCount(); ++i) {
        const CAdvAnlzData* pValue = packet.GetFieldValue(static_cast<unsigned char>(i));
        a.push_back({packet.GetFieldId(static_cast<unsigned char>(i)), pValue->GetLength(), HexOf(*pValue)});
    }
    return a;
}

std::vector<unsigned short> IdsOf(const CProtocolPacket& packet)
{
    std::vector<unsigned short> a;
    for (int i = 1; i <= packet.GetFieldCount(); ++i)
        a.push_back(packet.GetFieldId(static_cast<unsigned char>(i)));
    return a;
}
