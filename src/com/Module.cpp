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

void ObjectCreated() { ++gObjects; }
void ObjectDestroyed() { --gObjects; }
void LockModule(bool lock) { lock ? ++gLocks : --gLocks; }
bool CanUnloadModule() { return gObjects == 0 && gLocks == 0; }

}  // namespace orbex::com
