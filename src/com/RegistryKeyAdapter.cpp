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
    STDMETHODIMP OpenSubKey(BSTR name, VARIANT_BOOL writeable, _RegistryKey** result) override {
        return Out(result, [&] { return WrapRegistryKey(key_->OpenSubKey(ToString(name), writeable)); });
    }
    STDMETHODIMP CreateSubKey(BSTR name, _RegistryKey** result) override {
        return Out(result, [&] { return WrapRegistryKey(key_->CreateSubKey(ToString(name))); });
    }
    STDMETHODIMP GetSubKeyNames(SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(key_->GetSubKeyNames()); });
    }
    STDMETHODIMP GetValueNames(SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(key_->GetValueNames()); });
    }
    STDMETHODIMP Flush() override {
        return Guard([&] { key_->Flush(); });
    }
    STDMETHODIMP SubKeyExists(BSTR name, VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(toBoolean(key_->SubKeyExists(ToString(name)))); });
    }
    STDMETHODIMP DeleteSubKey(BSTR name, VARIANT_BOOL errorOnMissing) override {
        return Guard([&] { key_->DeleteSubKey(ToString(name), errorOnMissing); });
    }
    STDMETHODIMP DeleteSubKeyTree(BSTR name, VARIANT_BOOL errorOnMissing) override {
        return Guard([&] { key_->DeleteSubKeyTree(ToString(name), errorOnMissing); });
    }
    STDMETHODIMP DeleteValue(BSTR name, VARIANT_BOOL errorOnMissing) override {
        return Guard([&] { key_->DeleteValue(ToString(name), errorOnMissing); });
    }
    STDMETHODIMP HasDefaultValue(VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(toBoolean(key_->HasDefaultValue())); });
    }
    STDMETHODIMP GetValue(BSTR name, VARIANT defaultValue, VARIANT_BOOL expand, VARIANT* result) override {
        if (!result) return E_POINTER;
        VariantInit(result);
        return Guard([&] { ToVariant(key_->GetValue(ToString(name), DefaultOf(defaultValue), expand), result); });
    }
    STDMETHODIMP GetValueEx(BSTR name, LONG* dataType, VARIANT defaultValue, VARIANT_BOOL expand,
                            VARIANT* result) override {
        if (!result || !dataType) return E_POINTER;
        VariantInit(result);
        // The member sets the type before it may fail later, so it is handed back either way.
        Long type = *dataType;
        const HRESULT hr = Guard([&] {
            ToVariant(key_->GetValueEx(ToString(name), type, DefaultOf(defaultValue), expand), result);
        });
        *dataType = type;
        return hr;
    }
    STDMETHODIMP SetValue(BSTR name, VARIANT value, ::vqRegValueType valueType) override {
        return Guard([&] { key_->SetValue(ToString(name), ToValue(value), valueType); });
    }
    STDMETHODIMP OpenRemoteBaseKey(::vqRegKeys rootKey, BSTR machineName, _RegistryKey** result) override {
        return Out(result, [&] { return WrapRegistryKey(key_->OpenRemoteBaseKey(rootKey, ToString(machineName))); });
    }
    STDMETHODIMP RenameSubKey(BSTR name, _RegistryKey** result) override {
        return Out(result, [&] { return WrapRegistryKey(key_->RenameSubKey(ToString(name))); });
    }
    STDMETHODIMP CopySubKey(BSTR name, _RegistryKey** result) override {
        return Out(result, [&] { return WrapRegistryKey(key_->CopySubKey(ToString(name))); });
    }
    STDMETHODIMP CopySubKeyEx(_RegistryKey** destination, _RegistryKey** result) override {
        if (!destination) return E_POINTER;
        return Out(result, [&] {
            key_->CopySubKeyEx(Destination(*destination));
            if (*destination) (*destination)->AddRef();
            return *destination;
        });
    }
    STDMETHODIMP CopyValues(_RegistryKey** destination) override {
        if (!destination) return E_POINTER;
        return Guard([&] { key_->CopyValues(Destination(*destination)); });
    }
    STDMETHODIMP CopyValue(BSTR name, _RegistryKey** destination) override {
        if (!destination) return E_POINTER;
        return Guard([&] { key_->CopyValue(ToString(name), Destination(*destination)); });
    }
    STDMETHODIMP RenameValue(BSTR oldName, BSTR newName) override {
        return Guard([&] { key_->RenameValue(ToString(oldName), ToString(newName)); });
    }

private:
    // An omitted DefaultValue arrives as "missing"; the member's default is the empty text.
    static Variant DefaultOf(const VARIANT& value) {
        Variant converted = ToValue(value);
        if (const auto* error = std::get_if<ErrorValue>(&converted); error && error->scode == DISP_E_PARAMNOTFOUND)
            return String();
        return converted;
    }

    // The key behind a Destination argument: nullptr is the empty reference; an object that is
    // not one of ours has no key to copy into.
    static RegistryKey* Destination(_RegistryKey* object) {
        RegistryKey* key = UnwrapRegistryKey(object);
        if (object && !key) RaiseRunTime(RunTime::TypeMismatch);
        return key;
    }

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
