#include "ClassFactory.h"

#include "Module.h"

#include <atomic>
#include <new>

namespace orbex::com {
namespace {

class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(Creator create) : create_(create) { ObjectCreated(); }
    ~ClassFactory() { ObjectDestroyed(); }

    STDMETHODIMP QueryInterface(REFIID riid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IClassFactory)) return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return create_(riid, object);
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        LockModule(lock != FALSE);
        return S_OK;
    }

private:
    Creator create_;
    std::atomic<ULONG> references_{1};
};

}  // namespace

HRESULT GetClassFactory(const ClassEntry& entry, REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!entry.create) return CLASS_E_CLASSNOTAVAILABLE;
    ClassFactory* factory = new (std::nothrow) ClassFactory(entry.create);
    if (!factory) return E_OUTOFMEMORY;
    const HRESULT hr = factory->QueryInterface(riid, object);
    factory->Release();
    return hr;
}

}  // namespace orbex::com
