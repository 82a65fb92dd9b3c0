// Hex text to payload bytes, for the tool, the tests and the fuzz seeds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SHexResult {
    bool bOK = true;
    std::vector<std::uint8_t> aBytes;
    std::string strError;  // what was wrong, when bOK is false
};

// Parses hex digits; blanks (spaces, tabs, CR, LF) may stand anywhere and a
// leading "0x" is allowed. An odd digit count or any other character is an
// error that names the column (from 1).
SHexResult ParseHex(const std::string& strText);

// Lowercase hex, two digits per byte, no separators.
std::string ToHex(const std::uint8_t* pBytes, std::size_t nBytes);
