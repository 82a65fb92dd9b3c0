// Checks shared by the tests of the command-set decoders derived from the
// SCSI decoder.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/ProtocolPacket.h"
#include "tests/TestUtil.h"

// Two packets hold the same decode: fields, names, counts and response flag.
inline void ExpectSameDecode(const CReqRespProtocolPacket& a, const CReqRespProtocolPacket& b)
{
    EXPECT_EQ(FieldsOf(a), FieldsOf(b));
    EXPECT_EQ(a.m_strRequestName, b.m_strRequestName);
    EXPECT_EQ(a.m_strResponseName, b.m_strResponseName);
    EXPECT_EQ(a.m_nRequestFields, b.m_nRequestFields);
    EXPECT_EQ(a.m_nResponseFields, b.m_nResponseFields);
    EXPECT_EQ(a.m_bHasResponse, b.m_bHasResponse);
    for (int i = 1; i <= a.GetFieldCount() && i <= b.GetFieldCount(); ++i) {
        const unsigned char n = static_cast<unsigned char>(i);
        EXPECT_EQ(a.GetFieldName(n), b.GetFieldName(n)) << "field " << i;
        EXPECT_EQ(a.GetFieldAttr(n)->m_dwOffset, b.GetFieldAttr(n)->m_dwOffset) << "field " << i;
    }
}

// A payload cut after any byte decodes as its whole does up to the cut:
// every field that the whole payload holds before the cut comes out the
// same, and no field reaches past the cut.
template <class TPacket>
void ExpectCutsAgree(const std::string& strHex)
{
    const CAdvAnlzData whole = Hex(strHex);
    const TPacket full(whole);
    for (std::uint32_t nBits = 0; nBits < whole.GetLength(); nBits += 8) {
        SCOPED_TRACE("cut after " + std::to_string(nBits / 8) + " bytes");
        const TPacket cut(whole.GetBits(0, nBits));
        for (int i = 1; i <= cut.GetFieldCount(); ++i) {
            const unsigned char n = static_cast<unsigned char>(i);
            const SSpecFieldAttr* pCut = cut.GetFieldAttr(n);
            ASSERT_LE(pCut->m_dwOffset + cut.GetFieldValue(n)->GetLength(), nBits) << "field " << i;
            if (i > full.GetFieldCount())
                continue;
            const SSpecFieldAttr* pFull = full.GetFieldAttr(n);
            if (pFull->m_dwOffset + full.GetFieldValue(n)->GetLength() > nBits)
                continue;
            ASSERT_EQ(pCut->m_nId, pFull->m_nId) << "field " << i;
            ASSERT_EQ(pCut->m_dwOffset, pFull->m_dwOffset) << "field " << i;
            ASSERT_EQ(HexOf(*cut.GetFieldValue(n)), HexOf(*full.GetFieldValue(n))) << "field " << i;
        }
    }
}

// Two field lists, one behind the other.
inline std::vector<SFieldView> Join(std::vector<SFieldView> a, const std::vector<SFieldView>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A big-endian number of nBytes bytes.
inline std::uint32_t BigEndian(const std::uint8_t* p, int nBytes)
{
    std::uint32_t n = 0;
    for (int i = 0; i < nBytes; ++i)
        n = n << 8 | p[i];
    return n;
}

// The values of all fields with this id, in order, as numbers.
inline std::vector<std::uint32_t> ValuesOf(const CProtocolPacket& packet, unsigned short nId)
{
    CByteArray aIndexes;
    packet.GetFieldIndex(nId, aIndexes);
    std::vector<std::uint32_t> a;
    for (int i = 0; i < aIndexes.GetSize(); ++i)
        a.push_back(static_cast<std::uint32_t>(*packet.GetFieldValue(aIndexes[i])));
    return a;
}
