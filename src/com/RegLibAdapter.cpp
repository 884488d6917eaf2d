// The RegLib adapter: seven root properties, each a new RegistryKey object.
#include "Adapters.h"
#include "DispatchObject.h"
#include "RegistryKeyAdapter.h"
#include "Values.h"
#include "registry/RegLib.h"

namespace orbex::com {
namespace {

using RootProperty = std::unique_ptr<RegistryKey> (RegLib::*)(const String&);

class RegLibAdapter final : public DispatchObject<_RegLib, IID__RegLib> {
public:
    STDMETHODIMP get_ClassesRoot(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::ClassesRoot, machine, result);
    }
    STDMETHODIMP get_CurrentConfig(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::CurrentConfig, machine, result);
    }
    STDMETHODIMP get_CurrentUser(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::CurrentUser, machine, result);
    }
    STDMETHODIMP get_DynData(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::DynData, machine, result);
    }
    STDMETHODIMP get_LocalMachine(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::LocalMachine, machine, result);
    }
    STDMETHODIMP get_PerformanceData(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::PerformanceData, machine, result);
    }
    STDMETHODIMP get_Users(BSTR machine, _RegistryKey** result) override {
        return Root(&RegLib::Users, machine, result);
    }

private:
    HRESULT Root(RootProperty property, BSTR machine, _RegistryKey** result) {
        if (!result) return E_POINTER;
        *result = nullptr;
        return Guard([&] { *result = WrapRegistryKey((lib_.*property)(ToString(machine))); });
    }

    RegLib lib_;
};

}  // namespace

HRESULT CreateRegLib(REFIID riid, void** object) { return CreateAdapter<RegLibAdapter>(riid, object); }

}  // namespace orbex::com
