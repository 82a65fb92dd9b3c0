#include "tools/HexInput.h"

namespace {

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

SHexResult ParseHex(const std::string& strText)
{
    SHexResult r;
    std::size_t i = 0;
    while (i < strText.size() && IsBlank(strText[i]))
        ++i;
    if (i + 1 < strText.size() && strText[i] == '0' && (strText[i + 1] == 'x' || strText[i + 1] == 'X'))
        i += 2;
    int nHigh = -1;
    std::size_t nDigits = 0;
    for (; i < strText.size(); ++i) {
        const char c = strText[i];
        if (IsBlank(c))
            continue;
        const int d = HexDigit(c);
        if (d < 0) {
            const unsigned char uc = static_cast<unsigned char>(c);
            r.bOK = false;
            r.strError = "non-hex character ";
            if (uc >= 0x20 && uc < 0x7F)
                r.strError += std::string("'") + c + "'";
            else
                r.strError += "0x" + ToHex(&uc, 1);
            r.strError += " at column " + std::to_string(i + 1);
            return r;
        }
        ++nDigits;
        if (nHigh < 0) {
            nHigh = d;
        } else {
            r.aBytes.push_back(static_cast<std::uint8_t>(nHigh << 4 | d));
            nHigh = -1;
        }
    }
    if (nHigh >= 0) {
        r.bOK = false;
        r.strError = "odd number of hex digits (" + std::to_string(nDigits) + ")";
    }
    return r;
}

std::string ToHex(const std::uint8_t* pBytes, std::size_t nBytes)
{
    static const char kDigits[] = "0123456789abcdef";
    std::string s;
    s.reserve(nBytes * 2);
    for (std::size_t i = 0; i < nBytes; ++i) {
        s.push_back(kDigits[pBytes[i] >> 4]);
        s.push_back(kDigits[pBytes[i] & 15]);
    }
    return s;
}
