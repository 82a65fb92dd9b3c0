// Decoded packets: the ordered field list with protocol errors, and the
// request/response packet that every decoder of this library fills.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "core/AdvAnlzData.h"
#include "core/FieldAttr.h"
#include "platform/Arrays.h"
#include "platform/Object.h"
#include "platform/Stream.h"
#include "platform/String.h"

class CProtocolSpec;

// Which side of a request/response packet an index counts on.
enum EPacketSide : int {
    PacketSideWhole = 0,     // the index counts over the whole packet
    PacketSideRequest = 1,   // the index counts over the request fields
    PacketSideResponse = 2,  // the index counts from the first response field
};

class CProtocolPacket : public CObject {
public:
    static const CRuntimeClass classCProtocolPacket;
    // Field indexes are 1-based and 8-bit: a packet holds at most 255 fields.
    static constexpr int kMaxFields = 255;

    CProtocolPacket() = default;
    explicit CProtocolPacket(CProtocolSpec* pSpec) : m_pSpec(pSpec) {}
    CProtocolPacket(const CProtocolPacket& other) = default;
    CProtocolPacket& operator=(const CProtocolPacket& other) = default;
    ~CProtocolPacket() override = default;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCProtocolPacket; }
    void Serialize(CArchive& ar) override;

    virtual unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value);
    virtual unsigned long GetFieldData(unsigned char nIndex, CAdvAnlzData& value) const;
    virtual unsigned long SetFieldPattern(unsigned char nIndex, const CString& strPattern, unsigned char nKind,
                                          EDisplayFormat eFormat, unsigned long dw1, unsigned long dw2);
    // Kind 6 gives the abbreviation of the option that matches the field's
    // value, kind 5 its name; any other kind renders the value in eFormat.
    // dwLength receives the length of the text.
    virtual CString GetFieldBriefPattern(unsigned char nIndex, unsigned char nKind, unsigned long& dwLength,
                                         EDisplayFormat eFormat, int nFlag) const;
    virtual unsigned long FindFieldData(unsigned short nId, CAdvAnlzData& value) const;
    // All field values concatenated in field order.
    virtual unsigned long GetPacketData(CAdvAnlzData& value) const;
    virtual CString GetFieldName(unsigned char nIndex) const;
    virtual CString GetFieldAbbr(unsigned char nIndex) const;
    virtual CString GetFieldDesc(unsigned char nIndex) const;
    virtual unsigned short GetFieldId(unsigned char nIndex) const;
    // Decodes the packet's own field values again, as one payload.
    virtual int RestructBy(unsigned char nReserved);
    // Decodes data through the bound decoder.
    virtual int RestructBy(const CAdvAnlzData& data);
    virtual void Clean();
    virtual long Save(IStream* pStream, int bClearDirty);
    virtual long Load(IStream* pStream);
    virtual long SaveAndCount(IStream* pStream, int bClearDirty, unsigned long& dwBytes);

    // Appends a field; returns its index, or 0 when the packet is full.
    unsigned char AddField(const CAdvAnlzData& value, const SSpecFieldAttr* pAttr, unsigned char nReserved);
    unsigned long GetPacketLength() const noexcept { return m_dwPacketLength; }
    unsigned char GetFieldCount() const noexcept { return static_cast<unsigned char>(m_aFields.size()); }
    unsigned char GetFieldIndex(unsigned short nId) const;
    unsigned char GetFieldIndex(unsigned short nId, CByteArray& aIndexes) const;
    unsigned short GetAllFieldIndexes(CByteArray& aIndexes) const;
    int SetFieldExtraAttr(unsigned char nIndex, const SSpecFieldAttr* pAttr);
    // The record bound to the field at a whole-packet index, or null.
    const SSpecFieldAttr* GetFieldAttr(unsigned char nIndex) const noexcept;
    // The value of the field at a whole-packet index, or null.
    const CAdvAnlzData* GetFieldValue(unsigned char nIndex) const noexcept;

    int AddPError(unsigned short nCode);
    void ClearPErrors() { m_aPErrors.RemoveAll(); }
    const CWordArray& GetPErrors() const noexcept { return m_aPErrors; }

    CProtocolSpec* GetSpec() const noexcept { return m_pSpec; }

    // The packet's format code, the key into the decoder's format list.
    unsigned char m_byPacketFormat = 0;

protected:
    struct SField {
        CAdvAnlzData value;
        const SSpecFieldAttr* pAttr;
    };
    const SField* FieldAt(unsigned char nIndex) const noexcept
    {
        return (nIndex >= 1 && nIndex <= m_aFields.size()) ? &m_aFields[nIndex - 1u] : nullptr;
    }
    // Persistence of the members that follow the fields; a packet class with
    // members of its own extends it.
    virtual void SerializeMembers(CArchive& ar);

    CProtocolSpec* m_pSpec = nullptr;

private:
    std::vector<SField> m_aFields;
    CWordArray m_aPErrors;
    unsigned long m_dwPacketLength = 0;
};

class CReqRespProtocolPacket : public CProtocolPacket {
public:
    static const CRuntimeClass classCReqRespProtocolPacket;

    CReqRespProtocolPacket() = default;
    explicit CReqRespProtocolPacket(CProtocolSpec* pSpec) : CProtocolPacket(pSpec) {}
    CReqRespProtocolPacket(const CReqRespProtocolPacket& other) = default;
    // Cleans the target, copies the fields, then the names, counts, the
    // response flag, the further member and the decoder pointer.
    CReqRespProtocolPacket& operator=(const CReqRespProtocolPacket& other);
    ~CReqRespProtocolPacket() override = default;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCReqRespProtocolPacket; }

    using CProtocolPacket::GetFieldAbbr;
    using CProtocolPacket::GetFieldBriefPattern;
    using CProtocolPacket::GetFieldData;
    using CProtocolPacket::GetFieldDesc;
    using CProtocolPacket::GetFieldId;
    using CProtocolPacket::GetFieldName;

    virtual unsigned long GetFieldData(unsigned char nIndex, CAdvAnlzData& value, EPacketSide eSide) const;
    virtual CString GetFieldName(unsigned char nIndex, EPacketSide eSide) const;
    virtual CString GetFieldAbbr(unsigned char nIndex, EPacketSide eSide) const;
    virtual CString GetFieldDesc(unsigned char nIndex, EPacketSide eSide) const;
    virtual unsigned short GetFieldId(unsigned char nIndex, EPacketSide eSide) const;

    void Clean() override;

    const SSpecFieldAttr* GetFieldExtraAttr(unsigned char nIndex, EPacketSide eSide) const;
    CString GetFieldPattern(unsigned char nIndex, unsigned char nKind, EDisplayFormat eFormat, unsigned long dw,
                            int nFlag, EPacketSide eSide) const;
    CString GetFieldBriefPattern(unsigned char nIndex, unsigned char nKind, unsigned long& dwLength,
                                 EPacketSide eSide, EDisplayFormat eFormat, int nFlag) const;

    void SetRequestName(CString strName) { m_strRequestName = std::move(strName); }
    void SetResponseName(CString strName) { m_strResponseName = std::move(strName); }
    const CString& GetRequestName() const noexcept { return m_strRequestName; }
    const CString& GetResponseName() const noexcept { return m_strResponseName; }

    CString m_strRequestName;
    CString m_strResponseName;
    unsigned char m_nRequestFields = 0;
    unsigned char m_nResponseFields = 0;
    int m_bHasResponse = 0;
    int m_nReserved = 0;  // copied by assignment; read by nothing here

protected:
    void SerializeMembers(CArchive& ar) override;
    // The whole-packet index of a side-relative index; 0 when out of range.
    unsigned char WholeIndex(unsigned char nIndex, EPacketSide eSide) const noexcept;
};

// The plain packet of a decoder: every constructor binds it to the decoder's
// singleton; those from data decode at once; the copy constructor gives an
// empty packet (it does not copy the source); assignment is the base's.
template <class TSpec>
class TDecoderPacket : public CReqRespProtocolPacket {
public:
    TDecoderPacket() : CReqRespProtocolPacket(TSpec::GetInstance()) {}
    explicit TDecoderPacket(const CAdvAnlzData& data) : TDecoderPacket() { CProtocolPacket::RestructBy(data); }
    explicit TDecoderPacket(const CByteArray& aBytes) : TDecoderPacket() { RestructBy(CAdvAnlzData(aBytes)); }
    TDecoderPacket(const TDecoderPacket&) : TDecoderPacket() {}
    TDecoderPacket& operator=(const TDecoderPacket& other) = default;

    unsigned long SetFieldData(unsigned char nIndex, const CAdvAnlzData& value) override
    {
        return CProtocolPacket::SetFieldData(nIndex, value);
    }
};
