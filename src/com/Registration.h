// Writes and removes the registration entries of the library: for each creatable class its
// ProgID and CLSID keys with the in-process server, and the type library with its interfaces.
// One code path serves both scopes; only the classes root below which the entries go differs.
#pragma once
#include <windows.h>

namespace orbex::com {

enum class Scope {
    Machine,  // HKEY_LOCAL_MACHINE\Software\Classes: every user of the machine
    User,     // HKEY_CURRENT_USER\Software\Classes: the current user alone, no administrator needed
};

// Both answer an HRESULT and throw nothing.
HRESULT RegisterServer(Scope scope);
HRESULT UnregisterServer(Scope scope);

// The scope a DllInstall command line names, compared without regard to case and surrounding
// blanks: "user" the current user, "machine", "" or none the whole machine. False for any other text.
bool ScopeOfCommandLine(const wchar_t* commandLine, Scope* scope);

}  // namespace orbex::com
