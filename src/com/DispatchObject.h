// The base of every adapter: reference counting, IDispatch through the interface's dispatch
// table, ISupportErrorInfo, and the guard that turns a RaisedError into an HRESULT. An adapter
// holds only its member bodies.
#pragma once
#include "ErrorInfo.h"
#include "Invoke.h"
#include "Module.h"

#include <oaidl.h>

#include <atomic>

namespace orbex::com {

template <class Interface, const IID& InterfaceId>
class DispatchObject : public Interface, public ISupportErrorInfo {
public:
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID riid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, InterfaceId)) {
            *object = static_cast<Interface*>(this);
        } else if (IsEqualIID(riid, IID_ISupportErrorInfo)) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    // IDispatch
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        const DispatchTable* table = Table();
        if (!table) return TYPE_E_CANTLOADLIBRARY;
        *info = table->typeInfo();
        (*info)->AddRef();
        return S_OK;
    }
    // A script host asks for the name before every call: a lone member name is answered from
    // the table; argument names and unknown names go to the type info.
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        const DispatchTable* table = Table();
        if (!table) return TYPE_E_CANTLOADLIBRARY;
        if (count == 1 && names && names[0] && ids && table->idOf(names[0], ids)) return S_OK;
        return DispGetIDsOfNames(table->typeInfo(), names, count, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentError) override {
        if (!IsEqualIID(riid, IID_NULL)) return Refuse(DISP_E_UNKNOWNINTERFACE);
        const DispatchTable* table = Table();
        if (!table) return Refuse(TYPE_E_CANTLOADLIBRARY);
        // The object outlives the call, whatever the client does with its references meanwhile.
        AddRef();
        const HRESULT hr = InvokeMember(*table, static_cast<Interface*>(this), id, flags, parameters, result,
                                        exception, argumentError);
        Release();
        return hr;
    }

    // ISupportErrorInfo
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID riid) override {
        return IsEqualIID(riid, InterfaceId) ? S_OK : S_FALSE;
    }

protected:
    DispatchObject() { ObjectCreated(); }
    virtual ~DispatchObject() { ObjectDestroyed(); }

    template <class Body>
    HRESULT Guard(Body&& body) noexcept {
        return orbex::com::Guard(InterfaceId, std::forward<Body>(body));
    }

    // Runs `body` for an out-parameter: cleared first, filled only when the body succeeds.
    template <class T, class Body>
    HRESULT Out(T* result, Body&& body) noexcept {
        if (!result) return E_POINTER;
        *result = T{};
        return Guard([&] { *result = body(); });
    }

private:
    static const DispatchTable* Table() {
        static std::atomic<DispatchTable*> cache{nullptr};
        return DispatchTableFor(InterfaceId, cache);
    }

    std::atomic<ULONG> references_{1};
};

// Creates an adapter and hands out the requested interface; the new object starts with one
// reference, which QueryInterface's reference replaces.
template <class Adapter, class... Arguments>
HRESULT CreateAdapter(REFIID riid, void** object, Arguments&&... arguments) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    try {
        Adapter* adapter = new Adapter(std::forward<Arguments>(arguments)...);
        const HRESULT hr = adapter->QueryInterface(riid, object);
        adapter->Release();
        return hr;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace orbex::com
