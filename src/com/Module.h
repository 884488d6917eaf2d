// What the module knows about itself: its instance, its path, and the live objects and locks
// that decide whether it may be unloaded.
#pragma once
#include <windows.h>

#include <string>

namespace orbex::com {

void SetModuleInstance(HINSTANCE instance);  // from DllMain
HINSTANCE ModuleInstance();
std::wstring ModulePath();

// Keeps the module loaded for the rest of the process; see Module.cpp.
void PinModule();

void ObjectCreated();
void ObjectDestroyed();
void LockModule(bool lock);
bool CanUnloadModule();

}  // namespace orbex::com
