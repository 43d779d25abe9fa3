// An in-process COM server for the tests of CComRegistrar. It serves whatever class id it is
// asked for (each test run registers one of its own): the object is an IPersist whose
// GetClassID gives that class id back, so a test sees which registration created it.
#include <windows.h>

#include <new>

namespace {

LONG g_objects = 0;

class Object : public IPersist {
public:
    explicit Object(REFCLSID clsid) : m_clsid(clsid) { InterlockedIncrement(&g_objects); }
    virtual ~Object() { InterlockedDecrement(&g_objects); }

    HRESULT __stdcall QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IPersist))
            return E_NOINTERFACE;
        *object = static_cast<IPersist*>(this);
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
    HRESULT __stdcall GetClassID(CLSID* clsid) override {
        if (!clsid)
            return E_POINTER;
        *clsid = m_clsid;
        return S_OK;
    }

private:
    LONG m_references = 1;
    CLSID m_clsid;
};

class Factory : public IClassFactory {
public:
    explicit Factory(REFCLSID clsid) : m_clsid(clsid) { InterlockedIncrement(&g_objects); }
    virtual ~Factory() { InterlockedDecrement(&g_objects); }

    HRESULT __stdcall QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory))
            return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
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
    HRESULT __stdcall CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (outer)
            return CLASS_E_NOAGGREGATION;
        Object* created = new (std::nothrow) Object(m_clsid);
        if (!created)
            return E_OUTOFMEMORY;
        const HRESULT result = created->QueryInterface(iid, object);
        created->Release();
        return result;
    }
    HRESULT __stdcall LockServer(BOOL lock) override {
        if (lock)
            InterlockedIncrement(&g_objects);
        else
            InterlockedDecrement(&g_objects);
        return S_OK;
    }

private:
    LONG m_references = 1;
    CLSID m_clsid;
};

} // namespace

extern "C" HRESULT __stdcall DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    Factory* factory = new (std::nothrow) Factory(clsid);
    if (!factory)
        return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(iid, object);
    factory->Release();
    return result;
}

extern "C" HRESULT __stdcall DllCanUnloadNow() {
    return g_objects ? S_FALSE : S_OK;
}
