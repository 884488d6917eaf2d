#include "Module.h"

#include <atomic>

namespace orbex::com {
namespace {
HINSTANCE gInstance = nullptr;
std::atomic<long> gObjects{0};
std::atomic<long> gLocks{0};
}  // namespace

void SetModuleInstance(HINSTANCE instance) { gInstance = instance; }
HINSTANCE ModuleInstance() { return gInstance; }

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(gInstance, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

// Once the module has handed out a class object it stays loaded. The static thread runtime it
// is built with gives the loading thread a thread handle and an event that no unload returns,
// and under Wine the common dialog library it imports keeps a mutex per load: a host that frees
// unused libraries and creates again would lose them on every round. COM still asks
// DllCanUnloadNow, whose yes releases the type library.
void PinModule() {
    static std::atomic<bool> pinned{false};
    if (pinned.exchange(true)) return;
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(gInstance), &self);
}

void ObjectCreated() { ++gObjects; }
void ObjectDestroyed() { --gObjects; }
void LockModule(bool lock) { lock ? ++gLocks : --gLocks; }
bool CanUnloadModule() { return gObjects == 0 && gLocks == 0; }

}  // namespace orbex::com
