// The RegistryKey adapter: converts arguments and results of the key's members.
#include "RegistryKeyAdapter.h"

#include "DispatchObject.h"
#include "Values.h"

namespace orbex::com {
namespace {

// Answers only to our own objects: how a key passed back in by a client is recognised.
// {6E1D2B0A-43C5-4F0B-9A44-2B7E3F0C9D11}
constexpr IID IID_RegistryKeyAdapter = {0x6e1d2b0a, 0x43c5, 0x4f0b, {0x9a, 0x44, 0x2b, 0x7e, 0x3f, 0x0c, 0x9d, 0x11}};

class RegistryKeyAdapter final : public DispatchObject<_RegistryKey, IID__RegistryKey> {
public:
    explicit RegistryKeyAdapter(std::unique_ptr<RegistryKey> key) : key_(std::move(key)) {}

    RegistryKey& key() { return *key_; }

    STDMETHODIMP QueryInterface(REFIID riid, void** object) override {
        if (object && IsEqualIID(riid, IID_RegistryKeyAdapter)) {
            *object = this;
            AddRef();
            return S_OK;
        }
        return DispatchObject::QueryInterface(riid, object);
    }

    STDMETHODIMP get_MachineName(BSTR* result) override {
        return Out(result, [&] { return ToBstr(key_->MachineName()); });
    }
    STDMETHODIMP get_ValueCount(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(key_->ValueCount()); });
    }
    STDMETHODIMP get_SubKeyCount(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(key_->SubKeyCount()); });
    }
    STDMETHODIMP get_Name(BSTR* result) override {
        return Out(result, [&] { return ToBstr(key_->Name()); });
    }
    STDMETHODIMP put_AutoFlush(VARIANT_BOOL* value) override {
        if (!value) return E_POINTER;
        return Guard([&] { key_->AutoFlush(*value); });
    }
    STDMETHODIMP get_AutoFlush(VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(key_->AutoFlush()); });
    }
    STDMETHODIMP CloseKey() override {
        return Guard([&] { key_->CloseKey(); });
    }
    STDMETHODIMP OpenSubKey(BSTR, VARIANT_BOOL, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP CreateSubKey(BSTR, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP GetSubKeyNames(SAFEARRAY**) override { return E_NOTIMPL; }
    STDMETHODIMP GetValueNames(SAFEARRAY**) override { return E_NOTIMPL; }
    STDMETHODIMP Flush() override {
        return Guard([&] { key_->Flush(); });
    }
    STDMETHODIMP SubKeyExists(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteSubKey(BSTR, VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteSubKeyTree(BSTR, VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteValue(BSTR, VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP HasDefaultValue(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP GetValue(BSTR, VARIANT, VARIANT_BOOL, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetValueEx(BSTR, LONG*, VARIANT, VARIANT_BOOL, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP SetValue(BSTR, VARIANT, ::vqRegValueType) override { return E_NOTIMPL; }
    STDMETHODIMP OpenRemoteBaseKey(::vqRegKeys, BSTR, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP RenameSubKey(BSTR, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP CopySubKey(BSTR, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP CopySubKeyEx(_RegistryKey**, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP CopyValues(_RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP CopyValue(BSTR, _RegistryKey**) override { return E_NOTIMPL; }
    STDMETHODIMP RenameValue(BSTR, BSTR) override { return E_NOTIMPL; }

private:
    std::unique_ptr<RegistryKey> key_;
};

}  // namespace

_RegistryKey* WrapRegistryKey(std::unique_ptr<RegistryKey> key) {
    if (!key) return nullptr;
    return new RegistryKeyAdapter(std::move(key));
}

RegistryKey* UnwrapRegistryKey(_RegistryKey* object) {
    if (!object) return nullptr;
    RegistryKeyAdapter* adapter = nullptr;
    if (object->QueryInterface(IID_RegistryKeyAdapter, reinterpret_cast<void**>(&adapter)) != S_OK) return nullptr;
    adapter->Release();  // the caller's reference keeps it alive
    return &adapter->key();
}

}  // namespace orbex::com
