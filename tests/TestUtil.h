// Helpers shared by the tests: payloads from hex and a compact view of a
// decoded packet's fields for table-driven comparisons.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/ProtocolPacket.h"
#include "tools/HexInput.h"

// A payload from hex text (blanks allowed). Bad hex is a test bug: it aborts.
CAdvAnlzData Hex(const std::string& strHex);
CByteArray HexBytes(const std::string& strHex);

// The stored bytes of a value as lowercase hex.
std::string HexOf(const CAdvAnlzData& value);

// One decoded field: id, length in bits and value bytes as hex.
struct SFieldView {
    unsigned short nId;
    std::uint32_t nBits;
    std::string strHex;
    bool operator==(const SFieldView& o) const { return nId == o.nId && nBits == o.nBits && strHex == o.strHex; }
};
std::ostream& operator<<(std::ostream& os, const SFieldView& f);

std::vector<SFieldView> FieldsOf(const CProtocolPacket& packet);
// Just the ids, in order.
std::vector<unsigned short> IdsOf(const CProtocolPacket& packet);
