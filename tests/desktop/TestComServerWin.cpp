// An in-process COM server for the tests of CComRegistrar. It serves whatever class id it is
// asked for (each test run registers one of its own): the object is an IPersist whose
// GetClassID gives that class id back, so a test sees which registration created it.
#include <windows.h>

#include <new>

namespace {

LONG g_objects = 0;

// IUnknown of an object with one interface, counted while it lives.
template <class Interface> class Counted : public Interface {
public:
    Counted(REFIID iid, REFCLSID clsid) : m_iid(iid), m_clsid(clsid) {
        InterlockedIncrement(&g_objects);
    }
    virtual ~Counted() { InterlockedDecrement(&g_objects); }

    HRESULT __stdcall QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, m_iid))
            return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG __stdcall AddRef() override { return InterlockedIncrement(&m_references); }
    ULONG __stdcall Release() override {
        const ULONG left = InterlockedDecrement(&m_references);
        if (!left)
            delete this;
        return left;
    }

protected:
    const IID m_iid;
    const CLSID m_clsid;

private:
    LONG m_references = 1;
};

// Hands the new reference out as `iid`, then drops the creator's one.
template <class Object> HRESULT HandOut(Object* created, REFIID iid, void** object) {
    if (!created)
        return E_OUTOFMEMORY;
    const HRESULT result = created->QueryInterface(iid, object);
    created->Release();
    return result;
}

class Object : public Counted<IPersist> {
public:
    explicit Object(REFCLSID clsid) : Counted(IID_IPersist, clsid) {}
    HRESULT __stdcall GetClassID(CLSID* clsid) override {
        if (!clsid)
            return E_POINTER;
        *clsid = m_clsid;
        return S_OK;
    }
};

class Factory : public Counted<IClassFactory> {
public:
    explicit Factory(REFCLSID clsid) : Counted(IID_IClassFactory, clsid) {}
    HRESULT __stdcall CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return HandOut(new (std::nothrow) Object(m_clsid), iid, object);
    }
    HRESULT __stdcall LockServer(BOOL lock) override {
        if (lock)
            InterlockedIncrement(&g_objects);
        else
            InterlockedDecrement(&g_objects);
        return S_OK;
    }
};

} // namespace

extern "C" HRESULT __stdcall DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return HandOut(new (std::nothrow) Factory(clsid), iid, object);
}

extern "C" HRESULT __stdcall DllCanUnloadNow() {
    return g_objects ? S_FALSE : S_OK;
}
