// Owners for what the test programs hold of COM: an interface pointer and a VARIANT, each
// released when it goes out of scope. Shared by the test programs and the benchmarks.
#pragma once
#include <windows.h>
#include <oleauto.h>

#include <utility>

namespace orbex::client {

// An owned interface pointer.
template <class T>
struct Ref {
    T* p = nullptr;
    Ref() = default;
    explicit Ref(T* adopted) : p(adopted) {}
    Ref(Ref&& other) noexcept : p(other.p) { other.p = nullptr; }
    Ref& operator=(Ref&& other) noexcept { std::swap(p, other.p); return *this; }
    ~Ref() { if (p) p->Release(); }
    T** put() { if (p) p->Release(); p = nullptr; return &p; }
    void** putVoid() { return reinterpret_cast<void**>(put()); }
    T* operator->() const { return p; }
    T* get() const { return p; }
};

struct Variant : VARIANT {
    Variant() { VariantInit(this); }
    ~Variant() { VariantClear(this); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    VARIANT* put() { VariantClear(this); return this; }
};

}  // namespace orbex::client
