// The benchmark's frame: a case is a piece of work done by several contenders (the floor first,
// then Orbex and its peers); every round times each contender once, in an order that rotates
// from round to round, so that all rivals share the same moment of the machine.
#pragma once
#include <windows.h>
#include <oleauto.h>

#include "ComOwners.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

struct Contender {
    std::string name;                // as the report shows it: "floor: RegEnumKeyExA", "Orbex vtable", "reg query"
    std::function<void()> run;       // the timed work; throws on a wrong result
    std::function<void()> before{};  // untimed, just before `run`
    std::function<void()> after{};   // untimed, just after `run`
};

struct Case {
    std::string name;                     // "GetSubKeyNames, 10,000 sub-keys"
    std::vector<Contender> contenders;    // the floor first
    std::string note{};                   // written beside the row: a peer Wine lacks, a reason
};

// Everything one run measures, and the clean-ups that undo its data at the end.
struct Suite {
    std::string dataFolder;  // a scratch folder of the run's own (Windows path, no trailing backslash)
    std::vector<Case> cases;
    std::vector<std::function<void()>> cleanups;
};

// A wrong result stops the run: a fast contender that did not do the work proves nothing.
[[noreturn]] inline void Fail(const std::string& what) { throw std::runtime_error(what); }
inline void Check(bool ok, const std::string& what) { if (!ok) Fail(what); }
inline void CheckHr(HRESULT hr, const std::string& what) {
    if (FAILED(hr)) {
        char code[16];
        wsprintfA(code, "0x%08lX", static_cast<unsigned long>(hr));
        Fail(what + " failed: " + code);
    }
}

// Runs a command line as a child process, output discarded, and waits for it; its exit code.
DWORD RunProcess(const std::string& commandLine);

// Removes what an interrupted run left under HKCU\`branch` now, and everything there at the end,
// with the common parent once no other area has keys under it.
void ClaimRegistryBranch(Suite& suite, const char* branch);

// Creates an Orbex class by ProgID as a script would; the caller releases it.
IDispatch* CreateByProgId(const wchar_t* progId);
// IDispatch::GetIDsOfNames for one name.
DISPID DispatchId(IDispatch* object, const wchar_t* name);

using orbex::client::Ref;
using orbex::client::Variant;

// A BSTR for the length of a call.
struct Bstr {
    BSTR b;
    explicit Bstr(const wchar_t* s) : b(SysAllocString(s)) {}
    ~Bstr() { SysFreeString(b); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
};

// A string array's element count, checking its bounds' form.
long ArrayCount(SAFEARRAY* array);

// Each area adds its cases; defined in its own file.
void AddRegistryListingCases(Suite& suite);
void AddRegistryTreeCases(Suite& suite);
void AddFolderSizeCases(Suite& suite);
void AddIniCases(Suite& suite);
void AddCallCases(Suite& suite);

}  // namespace bench
