// Owners for what the test programs hold of COM: an interface pointer and a VARIANT, each
// released when it goes out of scope. Shared by the client, soak and registration-free programs.
#pragma once
#include <windows.h>
#include <oleauto.h>

namespace orbex::client {

// An owned interface pointer.
template <class T>
struct Ref {
    T* p = nullptr;
    Ref() = default;
    Ref(Ref&& other) noexcept : p(other.p) { other.p = nullptr; }
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
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
