// Test-only: replace one platform function for a scope, or record every call made through the
// table. Replacements nest and restore in reverse order; `Replace::original()` forwards.
//
//   platform::testing::Replace<&Api::GetVersionExA> fake{[](OsVersionInfoEx* info) { ...; return 1; }};
//   platform::testing::Recorder recorder;  ...  recorder.count("RegEnumKeyExA")
#pragma once
#include "Api.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

namespace orbex::platform::testing {

template <auto Entry, class Pointer = decltype(Entry)>
class Replace;

template <auto Entry, class R, class... P>
class Replace<Entry, R (*Api::*)(P...)> {
public:
    using Function = std::function<R(P...)>;

    explicit Replace(Function replacement) : saved_(api().*Entry), previousHandler_(handler()) {
        handler() = std::move(replacement);
        api().*Entry = &trampoline;
    }
    ~Replace() {
        api().*Entry = saved_;
        handler() = std::move(previousHandler_);
    }
    Replace(const Replace&) = delete;
    Replace& operator=(const Replace&) = delete;

    // The entry in force before this replacement.
    R original(P... arguments) const { return saved_(arguments...); }

private:
    static Function& handler() {
        static Function current;
        return current;
    }
    static R trampoline(P... arguments) { return handler()(arguments...); }

    R (*saved_)(P...);
    Function previousHandler_;
};

// Records the name of every platform call while alive, then forwards it unchanged.
class Recorder {
public:
    Recorder() : saved_(api()) {
        active() = this;
#define ORBEX_HOOK_ENTRY(result, name, parameters) \
    Hook<&Api::name>::label = #name;                \
    api().name = &Hook<&Api::name>::call;
        ORBEX_PLATFORM_FUNCTIONS(ORBEX_HOOK_ENTRY)
#undef ORBEX_HOOK_ENTRY
    }
    ~Recorder() {
        api() = saved_;
        active() = nullptr;
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    const std::vector<std::string_view>& calls() const { return calls_; }
    std::size_t count(std::string_view name) const {
        return static_cast<std::size_t>(std::count(calls_.begin(), calls_.end(), name));
    }
    void clear() { calls_.clear(); }

private:
    static Recorder*& active() {
        static Recorder* recorder = nullptr;
        return recorder;
    }

    template <auto Entry, class Pointer = decltype(Entry)>
    struct Hook;

    template <auto Entry, class R, class... P>
    struct Hook<Entry, R (*Api::*)(P...)> {
        static inline std::string_view label;
        static R call(P... arguments) {
            Recorder* self = active();
            self->calls_.push_back(label);
            return (self->saved_.*Entry)(arguments...);
        }
    };

    Api saved_;
    std::vector<std::string_view> calls_;
};

}  // namespace orbex::platform::testing
