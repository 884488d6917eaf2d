// The SystemLib adapter: the object properties hand out new COM objects of the information
// classes; the actions convert their flags and results.
#include "Adapters.h"
#include "DispatchObject.h"
#include "SystemAdapters.h"
#include "Values.h"
#include "system/SystemLib.h"

namespace orbex::com {
namespace {

class SystemLibAdapter final : public DispatchObject<_SystemLib, IID__SystemLib> {
public:
    STDMETHODIMP get_OSInfo(_OSInfo** result) override {
        return Out(result, [&] { return WrapOSInfo(lib_.OSInfo()); });
    }
    STDMETHODIMP get_PowerInfo(_PowerInfo** result) override {
        return Out(result, [&] { return WrapPowerInfo(lib_.PowerInfo()); });
    }
    STDMETHODIMP get_MemoryInfo(_MemoryInfo** result) override {
        return Out(result, [&] { return WrapMemoryInfo(lib_.MemoryInfo()); });
    }
    STDMETHODIMP get_ScreenInfo(_ScreenInfo** result) override {
        return Out(result, [&] { return WrapScreenInfo(lib_.ScreenInfo()); });
    }
    STDMETHODIMP get_IsHibernateAllowed(VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(lib_.IsHibernateAllowed()); });
    }
    STDMETHODIMP get_IsShutdownAllowed(VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(lib_.IsShutdownAllowed()); });
    }
    STDMETHODIMP get_IsSuspendAllowed(VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(lib_.IsSuspendAllowed()); });
    }
    STDMETHODIMP get_IsSystemResumeAutomatic(VARIANT_BOOL* result) override {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(lib_.IsSystemResumeAutomatic()); });
    }
    STDMETHODIMP get_ComputerName(BSTR* result) override {
        return Out(result, [&] { return ToBstr(lib_.ComputerName()); });
    }
    STDMETHODIMP get_UserName(BSTR* result) override {
        return Out(result, [&] { return ToBstr(lib_.UserName()); });
    }
    STDMETHODIMP LogOff(::vqExitFlag exitFlag, VARIANT_BOOL* result) override {
        return Exit(&SystemLib::LogOff, exitFlag, result);
    }
    STDMETHODIMP Shutdown(::vqExitFlag exitFlag, VARIANT_BOOL* result) override {
        return Exit(&SystemLib::Shutdown, exitFlag, result);
    }
    STDMETHODIMP PowerOff(::vqExitFlag exitFlag, VARIANT_BOOL* result) override {
        return Exit(&SystemLib::PowerOff, exitFlag, result);
    }
    STDMETHODIMP Reboot(::vqExitFlag exitFlag, VARIANT_BOOL* result) override {
        return Exit(&SystemLib::Reboot, exitFlag, result);
    }
    STDMETHODIMP Hibernate(::vqSleepFlag sleepFlag, VARIANT_BOOL disableWakeEvent, VARIANT_BOOL* result) override {
        return Sleep(&SystemLib::Hibernate, sleepFlag, disableWakeEvent, result);
    }
    STDMETHODIMP Suspend(::vqSleepFlag sleepFlag, VARIANT_BOOL disableWakeEvent, VARIANT_BOOL* result) override {
        return Sleep(&SystemLib::Suspend, sleepFlag, disableWakeEvent, result);
    }
    // The caller's messages run during the capture and may drop the caller's last reference;
    // the object stays alive until the member returns, also when called through the vtable.
    STDMETHODIMP CaptureScreen(VARIANT_BOOL activeWindow) override {
        AddRef();
        const HRESULT hr = Guard([&] { lib_.CaptureScreen(activeWindow); });
        Release();
        return hr;
    }
    STDMETHODIMP GetGUID(BSTR* result) override {
        return Out(result, [&] { return ToBstr(lib_.GetGUID()); });
    }

private:
    using ExitAction = Boolean (SystemLib::*)(vqExitFlag) const;
    using SleepAction = Boolean (SystemLib::*)(vqSleepFlag, Boolean) const;

    HRESULT Exit(ExitAction action, ::vqExitFlag exitFlag, VARIANT_BOOL* result) {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>((lib_.*action)(static_cast<vqExitFlag>(exitFlag))); });
    }
    HRESULT Sleep(SleepAction action, ::vqSleepFlag sleepFlag, VARIANT_BOOL disableWakeEvent, VARIANT_BOOL* result) {
        return Out(result, [&] {
            return static_cast<VARIANT_BOOL>((lib_.*action)(static_cast<vqSleepFlag>(sleepFlag), disableWakeEvent));
        });
    }

    SystemLib lib_;
};

}  // namespace

HRESULT CreateSystemLib(REFIID riid, void** object) { return CreateAdapter<SystemLibAdapter>(riid, object); }

}  // namespace orbex::com
