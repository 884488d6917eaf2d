// The IDispatch fuzzer: makes every class through the class factories it links, and calls
// their members through GetIDsOfNames and Invoke with hostile arguments, checking after each
// call that the process lives, the failure is a clean one, and a refused call changed nothing.
//
//   orbex_fuzz --seed N --calls N --seconds N
//
// Run it only inside a throwaway Wine prefix (tests/fuzz/RunFuzz.cmake makes one).
#include "Arguments.h"
#include "Catalogue.h"
#include "PlatformFakes.h"
#include "Sandbox.h"

#include "com/Catalogue.h"
#include "com/ClassFactory.h"
#include "com/Invoke.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace orbex::fuzz;

namespace {

constexpr ULONGLONG HangMilliseconds = 10000;
constexpr size_t MaxObjects = 48;
constexpr const wchar_t* StaleMarker = L"stale error info of an earlier call";

// What the crash filter and the watchdog print: the call in progress.
char gCurrent[8192];
std::uint64_t gSeed = 0;
std::atomic<ULONGLONG> gCallStarted{0};
orbex::platform::testing::Recorder* gRecorder = nullptr;
const char* gPhase = "setting up";

[[noreturn]] void Fail(const char* what, const std::string& detail) {
    std::fprintf(stdout, "FUZZ FAILURE: %s%s%s (%s)\n  seed %llu, %s\n", what, detail.empty() ? "" : ": ",
                 detail.c_str(), gPhase, static_cast<unsigned long long>(gSeed), gCurrent);
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 1);
    std::abort();
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* info) {
    char detail[128];
    std::snprintf(detail, sizeof detail, "exception 0x%08lx at %p", info->ExceptionRecord->ExceptionCode,
                  info->ExceptionRecord->ExceptionAddress);
    // The words on the stack that point into the program: the way back, for addr2line.
#if defined(__i386__)
    const auto* stack = reinterpret_cast<const std::uintptr_t*>(info->ContextRecord->Esp);
#else
    const auto* stack = reinterpret_cast<const std::uintptr_t*>(info->ContextRecord->Rsp);
#endif
    const auto base = reinterpret_cast<std::uintptr_t>(GetModuleHandleW(nullptr));
    std::fprintf(stdout, "stack:");
    for (int i = 0; i < 256; ++i)
        if (stack[i] > base && stack[i] < base + 0x1000000) std::fprintf(stdout, " %p", reinterpret_cast<void*>(stack[i]));
    std::fprintf(stdout, "\n");
    Fail("crash", detail);
}

DWORD WINAPI Watchdog(void*) {
    for (;;) {
        Sleep(250);
        const ULONGLONG started = gCallStarted.load();
        if (started && GetTickCount64() - started > HangMilliseconds) {
            if (gRecorder) {
                const auto& calls = gRecorder->calls();
                std::printf("platform calls: %zu, the last:", calls.size());
                for (size_t i = calls.size() > 40 ? calls.size() - 40 : 0; i < calls.size(); ++i)
                    std::printf(" %.*s", static_cast<int>(calls[i].size()), calls[i].data());
                std::printf("\n");
            }
            Fail("hang", "one call ran over 10 seconds");
        }
    }
}

const char* NameOf(HRESULT hr) {
    switch (hr) {
    case S_OK: return "S_OK";
    case DISP_E_EXCEPTION: return "DISP_E_EXCEPTION";
    case DISP_E_MEMBERNOTFOUND: return "DISP_E_MEMBERNOTFOUND";
    case DISP_E_BADPARAMCOUNT: return "DISP_E_BADPARAMCOUNT";
    case DISP_E_PARAMNOTOPTIONAL: return "DISP_E_PARAMNOTOPTIONAL";
    case DISP_E_TYPEMISMATCH: return "DISP_E_TYPEMISMATCH";
    case DISP_E_PARAMNOTFOUND: return "DISP_E_PARAMNOTFOUND";
    case DISP_E_OVERFLOW: return "DISP_E_OVERFLOW";
    case DISP_E_BADVARTYPE: return "DISP_E_BADVARTYPE";
    case DISP_E_NONAMEDARGS: return "DISP_E_NONAMEDARGS";
    case DISP_E_UNKNOWNINTERFACE: return "DISP_E_UNKNOWNINTERFACE";
    case E_INVALIDARG: return "E_INVALIDARG";
    case E_OUTOFMEMORY: return "E_OUTOFMEMORY";
    default: return nullptr;
    }
}

// The codes Invoke answers itself, before or instead of running the member.
bool IsDispatchLevel(HRESULT hr) { return hr != S_OK && hr != DISP_E_EXCEPTION && NameOf(hr); }

// The codes that name an argument in puArgErr.
bool NamesArgument(HRESULT hr) {
    return hr == DISP_E_TYPEMISMATCH || hr == DISP_E_PARAMNOTFOUND || hr == DISP_E_OVERFLOW ||
           hr == DISP_E_BADVARTYPE;
}

// Copies and renames are made of the key's own members, and one that fails on its way keeps
// what it wrote so far (a rename deletes its source only after a whole copy). Their refusals
// before the first write are held to the rule like every other failure.
bool MayFailPartway(const std::wstring& member, const std::string& description) {
    static const wchar_t* const composed[] = {L"CopySubKey", L"RenameSubKey", L"CopySubKeyEx", L"CopyValues",
                                              L"CopyValue", L"RenameValue"};
    static const char* const refusals[] = {"The target key is the source key or one of its subkeys.",
                                           "The destination key does not exist.", "The registry key is closed."};
    if (std::none_of(std::begin(composed), std::end(composed), [&](const wchar_t* name) { return member == name; }))
        return false;
    return std::none_of(std::begin(refusals), std::end(refusals),
                        [&](const char* refusal) { return description == refusal; });
}

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

struct Options {
    std::uint64_t seed = 1;
    std::uint64_t calls = 2000;
    double seconds = 60;
    std::uint64_t record = ~0ull;  // the call whose platform calls the hang report lists
    std::uint64_t traceFrom = ~0ull;  // the first call printed before it runs
};

Options Parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        if (name == "--seed") options.seed = std::strtoull(argv[i + 1], nullptr, 10);
        else if (name == "--calls") options.calls = std::strtoull(argv[i + 1], nullptr, 10);
        else if (name == "--seconds") options.seconds = std::strtod(argv[i + 1], nullptr);
        else if (name == "--trace-from") options.traceFrom = std::strtoull(argv[i + 1], nullptr, 10);
        else if (name == "--record") options.record = std::strtoull(argv[i + 1], nullptr, 10);
    }
    return options;
}

class Fuzzer {
public:
    Fuzzer(const Options& options, Sandbox& sandbox)
        : options_(options), random_(options.seed), sandbox_(sandbox), fakes_(options.seed, sandbox) {}
    ~Fuzzer() {
        for (Object& object : pool_) object.dispatch->Release();
    }

    void run();

private:
    IDispatch* create(const orbex::com::ClassEntry& entry);
    void add(IDispatch* object);
    void refill();
    IDispatch* openOwnKey();
    bool receiverAllows(const Object& object, const Member& member);
    void call(std::uint64_t index);
    void check(HRESULT hr, const DISPPARAMS& parameters, bool haveException, const EXCEPINFO& exception,
               bool haveArgumentError, UINT argumentError, bool planted);

    Options options_;
    Random random_;
    Sandbox& sandbox_;
    PlatformFakes fakes_;
    std::vector<Object> pool_;
    std::map<std::wstring, std::vector<Member>> members_;
    std::map<HRESULT, unsigned long> outcomes_;
    std::string before_;
    bool beforeIsCurrent_ = false;  // no unwatched call since before_ was taken
    std::string refusal_;  // the failed call's Description
    unsigned long resets_ = 0;
};

IDispatch* Fuzzer::create(const orbex::com::ClassEntry& entry) {
    IClassFactory* factory = nullptr;
    if (FAILED(orbex::com::GetClassFactory(entry, IID_IClassFactory, reinterpret_cast<void**>(&factory))))
        return nullptr;
    IDispatch* object = nullptr;
    factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object));
    factory->Release();
    return object;
}

void Fuzzer::add(IDispatch* object) {
    const std::wstring className = ClassOf(object);
    if (className.empty()) {
        object->Release();
        return;
    }
    if (members_.find(className) == members_.end()) members_[className] = MembersOf(object, className);
    if (pool_.size() >= MaxObjects) {
        const size_t victim = random_.below(static_cast<std::uint32_t>(pool_.size()));
        pool_[victim].dispatch->Release();
        pool_[victim] = pool_.back();
        pool_.pop_back();
    }
    pool_.push_back({object, className});
}

// The fuzzer's own key, opened writeable through RegLib as a client would.
IDispatch* Fuzzer::openOwnKey() {
    for (const Object& object : pool_) {
        if (object.className != L"RegLib") continue;
        VARIANT user, own;
        VariantInit(&user);
        VariantInit(&own);
        if (FAILED(CallByName(object.dispatch, L"CurrentUser", DISPATCH_PROPERTYGET, {}, &user)) ||
            V_VT(&user) != VT_DISPATCH)
            return nullptr;
        VARIANT name, writeable;
        V_VT(&name) = VT_BSTR, V_BSTR(&name) = SysAllocString(Sandbox::KeyPath);
        V_VT(&writeable) = VT_BOOL, V_BOOL(&writeable) = VARIANT_TRUE;
        CallByName(V_DISPATCH(&user), L"OpenSubKey", DISPATCH_METHOD, {name, writeable}, &own);
        VariantClear(&name);
        VariantClear(&user);
        if (V_VT(&own) == VT_DISPATCH && V_DISPATCH(&own)) return V_DISPATCH(&own);
        VariantClear(&own);
        return nullptr;
    }
    return nullptr;
}

// One object of every creatable class, an INILib reading the sandbox's file, and the own key.
void Fuzzer::refill() {
    for (const orbex::com::ClassEntry& entry : orbex::com::Classes()) {
        if (!entry.create) continue;
        bool present = false;
        for (const Object& object : pool_) present = present || object.className == entry.name;
        if (present) continue;
        IDispatch* object = create(entry);
        if (!object) Fail("setup", "the class factory made no " + Narrow(entry.name));
        if (std::wstring(entry.name) == L"INILib") {
            VARIANT file;
            V_VT(&file) = VT_BSTR, V_BSTR(&file) = SysAllocString((sandbox_.folder() + L"\\settings.ini").c_str());
            CallByName(object, L"Filename", DISPATCH_PROPERTYPUT, {file}, nullptr);
            VariantClear(&file);
        }
        add(object);
    }
    for (const Object& object : pool_)
        if (object.className == L"RegistryKey" && Sandbox::ownsKey(ReadText(object.dispatch, L"Name"), false))
            return;
    if (IDispatch* own = openOwnKey()) add(own);
}

bool Fuzzer::receiverAllows(const Object& object, const Member& member) {
    switch (member.receiver) {
    case Receiver::Any: return true;
    case Receiver::OwnKey: return Sandbox::ownsKey(ReadText(object.dispatch, L"Name"), false);
    case Receiver::OwnKeyBelow: return Sandbox::ownsKey(ReadText(object.dispatch, L"Name"), true);
    case Receiver::OwnFile: {
        const std::wstring file = ReadText(object.dispatch, L"Filename");
        return file.empty() || sandbox_.holdsFile(file);
    }
    case Receiver::OwnIniFile: return sandbox_.holdsIniFile(ReadText(object.dispatch, L"Filename"));
    }
    return false;
}

void Fuzzer::run() {
    sandbox_.reset();
    refill();
    before_ = sandbox_.snapshot();
    beforeIsCurrent_ = true;
    const ULONGLONG start = GetTickCount64();
    std::uint64_t index = 0;
    for (; index < options_.calls; ++index) {
        if ((GetTickCount64() - start) / 1000.0 >= options_.seconds) break;
        if (index % 64 == 0) refill();
        call(index);
        if (index && index % 20000 == 0) {
            std::printf("... %llu calls\n", static_cast<unsigned long long>(index));
            std::fflush(stdout);
        }
    }
    const double seconds = (GetTickCount64() - start) / 1000.0;
    std::printf("orbex-fuzz: seed %llu, %llu calls in %.1f s, %lu sandbox resets\n  outcomes:",
                static_cast<unsigned long long>(options_.seed), static_cast<unsigned long long>(index), seconds,
                resets_);
    for (const auto& [hr, count] : outcomes_) {
        const char* name = NameOf(hr);
        if (name) std::printf(" %s %lu;", name, count);
        else std::printf(" 0x%08lx %lu;", static_cast<unsigned long>(hr), count);
    }
    std::printf("\n  platform fakes: %s\nORBEX-FUZZ-PASSED\n", fakes_.summary().c_str());
}

void Fuzzer::call(std::uint64_t index) {
    gPhase = "choosing the call";
    // The receiver and the member; members that change the receiver's world need it to be ours.
    const Object* object = nullptr;
    const Member* member = nullptr;
    for (int attempt = 0; attempt < 16 && !member; ++attempt) {
        object = &pool_[random_.below(static_cast<std::uint32_t>(pool_.size()))];
        const std::vector<Member>& members = members_[object->className];
        if (members.empty()) continue;
        const Member& candidate = members[random_.below(static_cast<std::uint32_t>(members.size()))];
        if (receiverAllows(*object, candidate)) member = &candidate;
    }
    if (!member) return;
    IDispatch* receiver = object->dispatch;
    const std::wstring memberName = member->name;
    receiver->AddRef();  // the call may release the pool's reference through a result

    Arguments arguments(random_, {&pool_, &sandbox_});
    const size_t declared = member->parameters.size();
    size_t required = 0;
    for (const Parameter& parameter : member->parameters) required += parameter.optional ? 0 : 1;
    size_t count = declared;
    switch (random_.below(10)) {
    case 0: count = required ? random_.below(static_cast<std::uint32_t>(required)) : 0; break;
    case 1: count = declared + 1 + random_.below(3); break;
    case 2: case 3: break;
    default: count = required + random_.below(static_cast<std::uint32_t>(declared - required + 1)); break;
    }
    std::vector<VARIANT> given;
    for (size_t i = 0; i < count; ++i)
        given.push_back(i < declared ? arguments.forParameter(member->parameters[i]) : arguments.anything());

    // Trailing arguments passed by name: by the ids GetIDsOfNames gives, sometimes wrong ones.
    const bool put = member->kind == INVOKE_PROPERTYPUT || member->kind == INVOKE_PROPERTYPUTREF;
    std::vector<DISPID> namedIds;
    size_t named = 0;
    if (put && count >= 1 && random_.percent(50)) {
        named = 1;
        namedIds.push_back(DISPID_PROPERTYPUT);
    } else if (!put && count && count <= declared && random_.percent(20)) {
        named = 1 + random_.below(static_cast<std::uint32_t>(count));
        std::vector<LPOLESTR> names{const_cast<LPOLESTR>(member->name.c_str())};
        for (size_t i = count - named; i < count; ++i)
            names.push_back(const_cast<LPOLESTR>(member->parameters[i].name.c_str()));
        std::vector<DISPID> ids(names.size(), DISPID_UNKNOWN);
        if (FAILED(receiver->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), 0, ids.data())))
            for (size_t i = 1; i < ids.size(); ++i) ids[i] = static_cast<DISPID>(count - named + i - 1);
        namedIds.assign(ids.begin() + 1, ids.end());
        if (random_.percent(15)) namedIds[random_.below(static_cast<std::uint32_t>(named))] =
            random_.pick<DISPID>({-7, static_cast<DISPID>(declared + 3), namedIds[0], DISPID_PROPERTYPUT});
    }
    // rgvarg holds the named arguments first, then the positional ones last to first.
    std::vector<VARIANT>& rgvarg = arguments.topLevel();
    for (size_t i = count - named; i < count; ++i) rgvarg.push_back(given[i]);
    for (size_t i = count - named; i-- > 0;) rgvarg.push_back(given[i]);
    if (put && named == 1) {
        rgvarg.clear();
        rgvarg.push_back(given[count - 1]);
        for (size_t i = count - 1; i-- > 0;) rgvarg.push_back(given[i]);
    }

    DISPPARAMS parameters{rgvarg.empty() ? nullptr : rgvarg.data(), namedIds.empty() ? nullptr : namedIds.data(),
                          static_cast<UINT>(rgvarg.size()), static_cast<UINT>(named)};
    DISPPARAMS* passed = &parameters;
    // Counts and pointers that disagree, as a broken client's would.
    if (random_.percent(3)) {
        switch (random_.below(4)) {
        case 0: passed = nullptr; break;
        case 1: parameters.rgvarg = nullptr; parameters.cArgs = parameters.cArgs ? parameters.cArgs : 1; break;
        case 2: parameters.rgdispidNamedArgs = nullptr; parameters.cNamedArgs = parameters.cNamedArgs ? parameters.cNamedArgs : 1; break;
        default: parameters.cNamedArgs = parameters.cArgs + 1; break;
        }
    }

    WORD flags = 0;
    switch (member->kind) {
    case INVOKE_FUNC: flags = random_.percent(30) ? DISPATCH_METHOD | DISPATCH_PROPERTYGET : DISPATCH_METHOD; break;
    case INVOKE_PROPERTYGET: flags = random_.percent(50) ? DISPATCH_METHOD | DISPATCH_PROPERTYGET : DISPATCH_PROPERTYGET; break;
    case INVOKE_PROPERTYPUT: flags = DISPATCH_PROPERTYPUT; break;
    case INVOKE_PROPERTYPUTREF: flags = DISPATCH_PROPERTYPUTREF; break;
    }
    if (random_.percent(5)) flags = random_.pick<WORD>({0, DISPATCH_METHOD, DISPATCH_PROPERTYGET, 0xFFFF});
    DISPID id = member->id;
    if (random_.percent(2)) id = random_.pick<DISPID>({-1, 0, 0x7FFFFFFF, DISPID_NEWENUM, 999});
    const IID& interfaceId = random_.percent(1) ? IID_IDispatch : IID_NULL;

    VARIANT result;
    VariantInit(&result);
    EXCEPINFO exception{};
    UINT argumentError = 0xDEAD;
    const bool wantResult = random_.percent(92), wantException = random_.percent(92),
               wantArgumentError = random_.percent(92);
    const bool planted = random_.percent(20);
    if (planted) {
        ICreateErrorInfo* create = nullptr;
        if (SUCCEEDED(CreateErrorInfo(&create))) {
            create->SetSource(const_cast<LPOLESTR>(StaleMarker));
            create->SetDescription(const_cast<LPOLESTR>(StaleMarker));
            IErrorInfo* info = nullptr;
            create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info));
            SetErrorInfo(0, info);
            info->Release();
            create->Release();
        }
    }

    const wchar_t* identity = member->className == L"RegistryKey" ? L"Name"
                              : member->className == L"FileInfo" || member->className == L"INILib" ? L"Filename"
                                                                                                       : nullptr;
    std::string described = "call " + std::to_string(index) + ": " + Narrow(member->className) + "." +
                             Narrow(member->name) +
                             (identity ? " on \"" + Narrow(ReadText(receiver, identity)).substr(0, 200) + "\"" : "") +
                             " id " + std::to_string(id) + " flags " + std::to_string(flags) +
                             (passed ? "" : " no DISPPARAMS") + (parameters.rgvarg ? "" : " rgvarg null") +
                             (parameters.rgdispidNamedArgs ? "" : " rgdispidNamedArgs null") + " cArgs " + std::to_string(parameters.cArgs) +
                             " cNamedArgs " + std::to_string(parameters.cNamedArgs) + " [";
    for (size_t i = 0; i < rgvarg.size() && described.size() < sizeof gCurrent - 200; ++i)
        described += (i ? ", " : "") + arguments.describe(rgvarg[i]);
    described += "] named [";
    for (DISPID named : namedIds) described += std::to_string(named) + " ";
    described += "]";
    std::snprintf(gCurrent, sizeof gCurrent, "%s", described.c_str());
    if (index >= options_.traceFrom) {
        std::printf("%s\n", gCurrent);
        std::fflush(stdout);
    }

    gCallStarted = GetTickCount64();
    // The sandbox is photographed around every call that may write, and around every eighth
    // other call: the photographs cost more than the calls.
    const bool watched = member->receiver != Receiver::Any || member->className == L"SystemLib" ||
                         member->className == L"DiskInfo" || index % 8 == 0 ||
                         std::any_of(member->parameters.begin(), member->parameters.end(),
                                     [](const Parameter& p) { return p.confined != Confined::No; });
    if (watched && !beforeIsCurrent_) before_ = sandbox_.snapshot();
    beforeIsCurrent_ = watched;

    gPhase = "in Invoke";
    std::unique_ptr<orbex::platform::testing::Recorder> recorder;
    if (index == options_.record) gRecorder = (recorder = std::make_unique<orbex::platform::testing::Recorder>()).get();
    const HRESULT hr = receiver->Invoke(id, interfaceId, 0, flags, passed, wantResult ? &result : nullptr,
                                        wantException ? &exception : nullptr,
                                        wantArgumentError ? &argumentError : nullptr);
    gCallStarted = 0;
    gPhase = "checking the call";
    ++outcomes_[hr];
    check(hr, parameters, wantException, exception, wantArgumentError, argumentError, planted);

    std::string problem;
    if (!arguments.referencesValid(&problem)) Fail("invalid by-reference variable", problem);
    if (!orbex::com::IsVariantType(V_VT(&result)) && V_VT(&result) != VT_EMPTY)
        Fail("invalid result", "type " + std::to_string(V_VT(&result)));
    if (V_VT(&result) == VT_DISPATCH && V_DISPATCH(&result)) {
        V_DISPATCH(&result)->AddRef();
        add(V_DISPATCH(&result));
    }
    VariantClear(&result);
    refusal_ = exception.bstrDescription ? Narrow(exception.bstrDescription) : std::string();
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    receiver->Release();

    if (!watched) return;
    gPhase = "comparing the sandbox";
    std::string after = sandbox_.snapshot();
    if (FAILED(hr) && after != before_ && !MayFailPartway(memberName, refusal_)) {
        size_t at = 0;
        while (at < after.size() && at < before_.size() && after[at] == before_[at]) ++at;
        const size_t line = before_.rfind('\n', at) == std::string::npos ? 0 : before_.rfind('\n', at) + 1;
        std::string context;
        for (size_t i = line; i < line + 160 && i < after.size(); ++i)
            context += after[i] >= 32 && after[i] < 127 ? after[i] : '~';
        char code[16];
        std::snprintf(code, sizeof code, "0x%08lx", static_cast<unsigned long>(hr));
        Fail("a refused call changed the sandbox", std::string(code) + " \"" + refusal_ + "\" near \"" + context + "\"");
    }
    if (sandbox_.keepUsable(after)) {
        ++resets_;
        after = sandbox_.snapshot();
    }
    before_ = std::move(after);
}

void Fuzzer::check(HRESULT hr, const DISPPARAMS& parameters, bool haveException, const EXCEPINFO& exception,
                   bool haveArgumentError, UINT argumentError, bool planted) {
    IErrorInfo* info = nullptr;
    const bool infoLeft = GetErrorInfo(0, &info) == S_OK && info;
    BSTR source = nullptr, description = nullptr;
    if (infoLeft) {
        info->GetSource(&source);
        info->GetDescription(&description);
        info->Release();
    }
    const bool stale = infoLeft && description && std::wstring(description) == StaleMarker;
    const bool infoComplete = infoLeft && source && description && SysStringLen(description);
    SysFreeString(source);
    SysFreeString(description);

    if (hr == S_OK) return;
    if (SUCCEEDED(hr)) Fail("unexpected success code", std::to_string(hr));
    if (hr == DISP_E_EXCEPTION) {
        if (!haveException) Fail("DISP_E_EXCEPTION without an EXCEPINFO to fill", "");
        if (!FAILED(exception.scode) && !exception.wCode) Fail("EXCEPINFO without a failed scode", "");
        if (!exception.bstrSource || !exception.bstrDescription || !SysStringLen(exception.bstrDescription))
            Fail("EXCEPINFO without Source or Description", "");
        if (std::wstring(exception.bstrDescription) == StaleMarker)
            Fail("EXCEPINFO filled from stale error info", "");
        return;
    }
    if (IsDispatchLevel(hr)) {
        if (planted && stale) Fail("stale error info left after a dispatch-level failure", NameOf(hr));
        if (haveArgumentError && NamesArgument(hr) && parameters.cArgs && argumentError >= parameters.cArgs)
            Fail("puArgErr out of range", std::to_string(argumentError));
        return;
    }
    // Without an EXCEPINFO the member's own failure comes back, its error info set.
    if (haveException) Fail("unexpected HRESULT", NameOf(hr) ? NameOf(hr) : std::to_string(hr));
    if (!infoComplete || stale) Fail("a member failure without its own error info", std::to_string(hr));
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = Parse(argc, argv);
    gSeed = options.seed;
    std::snprintf(gCurrent, sizeof gCurrent, "before the first call");
    SetUnhandledExceptionFilter(OnCrash);
    ULONG reserve = 64 * 1024;  // room for the report when the stack overflows
    SetThreadStackGuarantee(&reserve);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    CloseHandle(CreateThread(nullptr, 0, Watchdog, nullptr, 0, nullptr));
    if (FAILED(CoInitialize(nullptr))) Fail("setup", "CoInitialize failed");
    {
        Sandbox sandbox;
        Fuzzer fuzzer(options, sandbox);
        fuzzer.run();
    }
    CoUninitialize();
    return 0;
}
