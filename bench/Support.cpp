#include "Bench.h"

namespace bench {

DWORD RunProcess(const std::string& commandLine) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE nul = CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                             OPEN_EXISTING, 0, nullptr);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = startup.hStdOutput = startup.hStdError = nul;
    PROCESS_INFORMATION process{};
    std::string line = commandLine;
    const BOOL started = CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &startup, &process);
    CloseHandle(nul);
    Check(started, "starting " + commandLine);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return code;
}

void ClaimRegistryBranch(Suite& suite, const char* branch) {
    const auto clean = [branch] {
        RegDeleteTreeA(HKEY_CURRENT_USER, branch);
        RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\OrbexBench");
    };
    clean();
    suite.cleanups.push_back(clean);
}

IDispatch* CreateByProgId(const wchar_t* progId) {
    CLSID clsid;
    CheckHr(CLSIDFromProgID(progId, &clsid), "CLSIDFromProgID");
    IDispatch* object = nullptr;
    CheckHr(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(&object)),
            "CoCreateInstance");
    return object;
}

DISPID DispatchId(IDispatch* object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    CheckHr(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
    return id;
}

long ArrayCount(SAFEARRAY* array) {
    Check(array && SafeArrayGetDim(array) == 1, "a one-dimensional array");
    LONG lower = 0, upper = 0;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    return upper - lower + 1;
}

}  // namespace bench
