// Run-time class records and the common object base of decoders and packets.
#pragma once

class CArchive;

// One record per class that answers GetRuntimeClass: its name, its size and
// the record of its base class (null at the root).
struct CRuntimeClass {
    const char* m_lpszClassName;
    int m_nObjectSize;
    const CRuntimeClass* m_pBaseClass;

    bool IsDerivedFrom(const CRuntimeClass* pBase) const noexcept
    {
        for (const CRuntimeClass* p = this; p; p = p->m_pBaseClass)
            if (p == pBase)
                return true;
        return false;
    }
};

class CObject {
public:
    static const CRuntimeClass classCObject;

    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
    virtual ~CObject() = default;

    virtual const CRuntimeClass* GetRuntimeClass() const { return &classCObject; }
    virtual void Serialize(CArchive&) {}
    // Diagnostic hooks; nothing to check or dump in this library.
    virtual void AssertValid() const {}
    virtual void Dump() const {}

    bool IsKindOf(const CRuntimeClass* pClass) const { return GetRuntimeClass()->IsDerivedFrom(pClass); }
};

// Declares and defines the record of a class with its base.
#define BUSDECODE_DECLARE_RUNTIME_CLASS(ClassName)                         \
public:                                                                    \
    static const CRuntimeClass class##ClassName;                           \
    const CRuntimeClass* GetRuntimeClass() const override { return &class##ClassName; } \
protected:                                                                 \
    static const CRuntimeClass* _GetBaseClass();                           \
public:

#define BUSDECODE_IMPLEMENT_RUNTIME_CLASS(ClassName, BaseClassName)        \
    const CRuntimeClass ClassName::class##ClassName = {                    \
        #ClassName, static_cast<int>(sizeof(ClassName)), &BaseClassName::class##BaseClassName}; \
    const CRuntimeClass* ClassName::_GetBaseClass() { return &BaseClassName::class##BaseClassName; }
